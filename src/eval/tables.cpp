#include "eval/tables.h"

namespace ondrel {
namespace {

// A peak of `altura` halves on (f, r as the colour sees it), falling off with the squared distance.
void preenche_pico(std::array<TabelaInteira, 2>& tabela, Cor c, int altura, int f, int r) {
    for (int i = 0; i < 64; ++i) {
        tabela[c][i] = altura / proximidade(i / 8, i % 8, f, fila(c, r));
    }
}

}  // namespace

void preenche_tabelas_da_partida(Cor c) {
    preenche_pico(posix_peao_inici, c, 10, 4, 3);
    preenche_pico(posix_cavalo, c, 10, 4, 4);
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
