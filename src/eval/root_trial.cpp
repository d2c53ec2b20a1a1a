#include "eval/root_trial.h"

#include "base/root.h"
#include "board/apply.h"
#include "board/castling.h"

#include <algorithm>
#include <span>

namespace ondrel {
namespace {

// --- MATRIZ ---

// A small ending named by the enemy's material, king included, and his men.
struct Final {
    int material, homens;
};

bool contem(std::span<const Final> finais, float material, int homens) {
    return std::ranges::any_of(
        finais, [&](Final x) { return static_cast<float>(x.material) == material && x.homens == homens; });
}

bool contem(std::span<const int> materiais, float material) {
    return std::ranges::any_of(materiais, [&](int x) { return static_cast<float>(x) == material; });
}

constexpr std::array poucas_pecas{153, 163, 186, 152, 162, 184, 185};
constexpr std::array<Final, 15> finais_de_peao{{{173, 4},
                                                {183, 5},
                                                {196, 4},
                                                {206, 5},
                                                {216, 6},
                                                {172, 4},
                                                {182, 5},
                                                {194, 4},
                                                {204, 5},
                                                {214, 6},
                                                {195, 4},
                                                {205, 5},
                                                {215, 6},
                                                {170, 2},
                                                {180, 3}}};
constexpr std::array<Final, 6> finais_proprios{{{142, 1}, {143, 1}, {160, 1}, {174, 2}, {175, 2}, {176, 2}}};

// The king's destination by the ending on the board; later cases overwrite earlier ones.
template <Cor c>
int matriz_do_rei(int para) {
    constexpr float rei_so = 110.0F;
    const float m = material_a[outra(c)];
    const float w = material_a[c];
    const int n = npecas[outra(c)];
    int valor = 0;
    if (m == rei_so) {
        valor = Xr[outra(c)][para] + XP[c][para];
    }
    if (w == rei_so) {
        valor = posix_reifinal[c][para] + XP[outra(c)][para];
    }
    if (m == 120.0F || m == 130.0F || m == 150.0F || (m == 140.0F && n != 1)) {
        valor = XP[outra(c)][para];
    }
    if (contem(poucas_pecas, m)) {
        valor = XP[outra(c)][para];
    }
    if (contem(finais_de_peao, m, n)) {
        valor = XP[outra(c)][para];
    }
    if (w != rei_so && contem(finais_proprios, m, n)) {
        valor = XP[c][para] / 5;
    }
    return valor;
}

template <Cor c>
int matriz_do_peao(int para) {
    if (nb < 30) {
        return posix_peao_inici[c][para];
    }
    return (nb < 70 ? posix_peao_medio : posix_peao_final)[c][para];
}

template <Cor c>
void avalia_destino(Lance m) {
    const int para = m.destino();
    const int perto_do_rei = Xr[outra(c)][para];
    MATRIZ = 0;
    incentiva_promo = 0;
    switch (tab[m.origem()]) {
        case codigo(c, peao):
            MATRIZ = matriz_do_peao<c>(para);
            incentiva_promo = nb >= 70 ? 1 : 0;
            break;
        case codigo(c, bispo): MATRIZ = posix_bispo[c][para] + perto_do_rei; break;
        case codigo(c, cavalo): MATRIZ = posix_cavalo[c][para] + perto_do_rei; break;
        case codigo(c, torre): MATRIZ = posix_torre[c][para] + perto_do_rei; break;
        case codigo(c, dama): MATRIZ = posix_dama[c][para] + perto_do_rei; break;
        case codigo(c, rei): MATRIZ = matriz_do_rei<c>(para); break;
        default: break;
    }
}

// --- Attack maps ---

void ataca_casa(Ataques& mapas, TabelaInteira& mapa, int f, int r) {
    if (no_tabuleiro(f, r)) {
        ++mapa[casa(f, r)];
        ++mapas.N_A[casa(f, r)];
    }
}

template <std::size_t quantos>
void salta(Ataques& mapas, TabelaInteira& mapa, int f, int r, const std::array<Passo, quantos>& passos) {
    for (const Passo s : passos) {
        ataca_casa(mapas, mapa, f + s.file, r + s.rank);
    }
}

template <std::size_t quantos>
void desliza(Ataques& mapas, TabelaInteira& mapa, int f, int r, const std::array<Passo, quantos>& passos) {
    for (const Passo s : passos) {
        for (int cf = f + s.file, cr = r + s.rank; no_tabuleiro(cf, cr); cf += s.file, cr += s.rank) {
            ataca_casa(mapas, mapa, cf, cr);
            if (tab2[casa(cf, cr)] != vazia) {
                break;
            }
        }
    }
}

void mapeia_homem(Cor c, int v, int f, int r) {
    Ataques& mapas = ataca[c];
    switch (v) {
        case peao:
            ataca_casa(mapas, mapas.peao, f + 1, r + sinal(c));
            ataca_casa(mapas, mapas.peao, f - 1, r + sinal(c));
            break;
        case cavalo: salta(mapas, mapas.cavalo, f, r, saltos_do_cavalo); break;
        case bispo: desliza(mapas, mapas.bispo, f, r, passos_do_bispo); break;
        case torre: desliza(mapas, mapas.torre, f, r, passos_da_torre); break;
        case dama: desliza(mapas, mapas.dama, f, r, passos_da_dama); break;
        default: salta(mapas, mapas.rei, f, r, passos_do_rei); break;
    }
}

void mapeia_ataques() {
    ataca = {};
    for (int i = 0; i < 64; ++i) {
        if (const int x = tab2[i]; x != vazia) {
            mapeia_homem(x > 0 ? brancas : pretas, valor_da_peca(x), i / 8, i % 8);
        }
    }
}

}  // namespace

void init_tabuleiro2(Lance m) {
    porta_do_passe(m);
    if (joga_com_b) {
        avalia_destino<brancas>(m);
        experimenta<brancas>(tab, jm, m);
    } else {
        avalia_destino<pretas>(m);
        experimenta<pretas>(tab, jm, m);
    }
    mapeia_ataques();
}

}  // namespace ondrel
