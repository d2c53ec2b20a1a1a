#include "eval/tables.h"

namespace ondrel {
namespace {

// A peak of `altura` halves on (f, r as the colour sees it), falling off with the squared distance.
void preenche_pico(std::array<TabelaInteira, 2>& tabela, Cor c, int altura, int f, int r) {
    for (int i = 0; i < 64; ++i) {
        tabela[c][i] = altura / proximidade(i / 8, i % 8, f, fila(c, r));
    }
}

void preenche_pesos() {
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            const double distancia = (f - 3.5) * (f - 3.5) + (r - 3.5) * (r - 3.5) + 2.0;
            centro[casa(f, r)] = static_cast<float>(1.0 / distancia);
            centroo[casa(f, r)] = static_cast<float>(50.0 / distancia);
            for (const Cor c : {brancas, pretas}) {
                const int faltam = 7 - fila(c, r);
                promo[c][casa(f, r)] = static_cast<float>(1.0 / (2 * faltam * faltam + 2));
            }
        }
    }
}

}  // namespace

void preenche_tabelas_da_partida(Cor c) {
    preenche_pico(posix_peao_inici, c, 10, 4, 3);
    preenche_pico(posix_cavalo, c, 10, 4, 4);
    preenche_pesos();
}

void preenche_tabelas(Cor c) {
    preenche_tabelas_da_partida(c);
    preenche_pico(posix_bispo, c, 10, 3, 4);  // the bishop alone peaks on file d
    preenche_pico(posix_dama, c, 10, 4, 5);
    preenche_pico(posix_reifinal, c, 500, 4, 3);
    posix_torre[c] = {};
    constexpr std::array<int, 8> peao_medio{0, 0, 0, 1, 2, 5, 12, 25};
    for (int i = 0; i < 64; ++i) {
        posix_peao_medio[c][i] = peao_medio[fila(c, i % 8)];
    }
}

}  // namespace ondrel
