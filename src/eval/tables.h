// Positional tables, indexed as a board; those of one colour by Cor first.
#pragma once

#include "base/types.h"

namespace ondrel {

using TabelaInteira = std::array<int, 64>;
using TabelaReal = std::array<float, 64>;

// Values of a root move's destination. Of these the tables of the colour that the engine plays alone are filled.
inline std::array<TabelaInteira, 2> posix_peao_inici{};
inline std::array<TabelaInteira, 2> posix_peao_medio{};
inline std::array<TabelaInteira, 2> posix_cavalo{};
inline std::array<TabelaInteira, 2> posix_bispo{};
inline std::array<TabelaInteira, 2> posix_torre{};
inline std::array<TabelaInteira, 2> posix_dama{};
inline std::array<TabelaInteira, 2> posix_reifinal{};

// A square counts for a colour by its rank as that colour sees it; edge files count less.
constexpr std::array<TabelaInteira, 2> posix_peao_final = [] {
    constexpr std::array<int, 8> borda{0, 0, 20, 20, 20, 25, 30, 100};
    constexpr std::array<int, 8> centro_da_linha{0, 0, 25, 25, 25, 30, 35, 100};
    std::array<TabelaInteira, 2> t{};
    for (const Cor c : {brancas, pretas}) {
        for (int f = 0; f < 8; ++f) {
            for (int r = 0; r < 8; ++r) {
                t[c][casa(f, r)] = (f == 0 || f == 7 ? borda : centro_da_linha)[fila(c, r)];
            }
        }
    }
    return t;
}();

// Weights of the leaf evaluation: nearness of a square to the centre, and of a pawn to its promotion.
template <class Peso>
constexpr TabelaReal tabela_de_pesos(Peso peso) {
    TabelaReal t{};
    for (int i = 0; i < 64; ++i) {
        t[i] = static_cast<float>(peso(i / 8, i % 8));
    }
    return t;
}

constexpr double longe_do_centro(int f, int r) { return (f - 3.5) * (f - 3.5) + (r - 3.5) * (r - 3.5) + 2.0; }

constexpr TabelaReal centro = tabela_de_pesos([](int f, int r) { return 1.0 / longe_do_centro(f, r); });
constexpr TabelaReal centroo = tabela_de_pesos([](int f, int r) { return 50.0 / longe_do_centro(f, r); });
constexpr std::array<TabelaReal, 2> promo{// promo_b, promo_p
                                          tabela_de_pesos([](int, int r) { return 1.0 / (2 * (r - 7) * (r - 7) + 2); }),
                                          tabela_de_pesos([](int, int r) { return 1.0 / (2 * r * r + 2); })};

// Tables of the position of the game, filled by init_tabuleiro: nearness to the kings and to the foremost pawns.
inline std::array<TabelaInteira, 2> Xr{};  // Xr_b, Xr_p
inline std::array<TabelaInteira, 2> XP{};  // XP_b, XP_p

// Fills what a new game with the engine as c needs: pawns and knights.
void preenche_tabelas_da_partida(Cor c);

// Fills all tables of c.
void preenche_tabelas(Cor c);

// Nearness of two squares: squared distance plus 2.
constexpr int proximidade(int f, int r, int kf, int kr) { return (f - kf) * (f - kf) + (r - kr) * (r - kr) + 2; }

}  // namespace ondrel
