// Rays at the speed of the leaf: no question whether a ray has a man, no search from above.
#pragma once

#include "base/masks.h"

#include <utility>

namespace ondrel {

// Along a direction that falls the board is seen mirrored: the first man of a ray is then always the lowest bit of a
// set, which every processor finds quickly.
constexpr Mascara espelhada(Mascara m) {
    m = (m >> 1U & 0x5555555555555555U) | (m & 0x5555555555555555U) << 1U;
    m = (m >> 2U & 0x3333333333333333U) | (m & 0x3333333333333333U) << 2U;
    m = (m >> 4U & 0x0F0F0F0F0F0F0F0FU) | (m & 0x0F0F0F0F0F0F0F0FU) << 4U;
    return __builtin_bswap64(m);
}
constexpr int vista(int d, int i) { return direcao_sobe(d) ? i : 63 - i; }

struct Raio {
    Mascara casas;
    Mascara visto;
    Mascara fim_visto;  // its last square; the man's own where the ray is empty
};
constexpr std::array<std::array<Raio, 64>, direcoes> raios_vistos = [] {
    std::array<std::array<Raio, 64>, direcoes> t{};
    for (int d = 0; d < direcoes; ++d) {
        for (int i = 0; i < 64; ++i) {
            const Mascara raio = direcao_sobe(d) ? raios[d][i] : espelhada(raios[d][i]);
            t[d][i] = {raios[d][i], raio, bit(raio == 0 ? vista(d, i) : ultima_casa(raio))};
        }
    }
    return t;
}();
// The squares beyond one, as seen.
constexpr std::array<std::array<Mascara, 64>, direcoes> alem = [] {
    std::array<std::array<Mascara, 64>, direcoes> t{};
    for (int d = 0; d < direcoes; ++d) {
        for (int i = 0; i < 64; ++i) {
            t[d][vista(d, i)] = raios[d][i];
        }
    }
    return t;
}();

// The men on the board, seen both ways.
struct Ocupadas {
    Mascara diretas;
    Mascara no_espelho;
};
constexpr Ocupadas ocupadas_vistas(Mascara m) { return {m, espelhada(m)}; }

// Where a man on i goes along one ray: the squares attacked, and the last of them as seen.
struct Alcance {
    Mascara casas;
    int ultima;
};
template <int d>
inline Alcance alcance(int i, Ocupadas ocupadas) {
    const Raio& raio = raios_vistos[d][i];
    const int ultima =
        primeira_casa((raio.visto & (direcao_sobe(d) ? ocupadas.diretas : ocupadas.no_espelho)) | raio.fim_visto);
    return {raio.casas & ~alem[d][ultima], ultima};
}

using Retas = std::integer_sequence<int, 0, 1, 2, 3>;
using Diagonais = std::integer_sequence<int, 4, 5, 6, 7>;
using Todas = std::integer_sequence<int, 0, 1, 2, 3, 4, 5, 6, 7>;

}  // namespace ondrel
