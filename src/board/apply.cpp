#include "board/apply.h"

#include "base/options.h"
#include "base/root.h"

namespace ondrel {
namespace {

// In Chess960 a king that moves onto a rook of its own castles, whichever squares the two came from.
template <Cor c>
bool rocar_960(Lance m) {
    if (tab[m.destino()] != codigo(c, torre)) {
        return false;
    }
    constexpr int base = fila(c, 0);
    const bool longo = m.c < m.a;
    tab[m.origem()] = vazia;
    tab[m.destino()] = vazia;
    tab[casa(longo ? 2 : 6, base)] = codigo(c, rei);
    tab[casa(longo ? 3 : 5, base)] = codigo(c, torre);
    return true;
}

template <Cor c>
void aplica_regras(Lance m) {
    const int x = tab[m.origem()];
    if (x == codigo(c, rei)) {
        if (!CHESS_960) {
            salta_a_torre<c>(tab, m);
        } else if (rocar_960<c>(m)) {
            pp = 1;
        }
    }
    marca_partida<c>(jm, x, m);
    if (captura_en_passant<c>(tab, jm, m)) {
        pp = 1;
    }
}

// The piece that a pawn on its last rank becomes; vazia for no change.
Peca promocao_da_raiz() {
    if (deeppromo) {
        return dama;
    }
    if (PRs == 'q') {
        if (PRe != '0') {
            return vazia;
        }
        PR = 'q';
        return dama;
    }
    if (PRs != '0') {
        return vazia;
    }
    switch (PRe) {
        case 'q': return dama;
        case 'r': return torre;
        case 'n': return cavalo;
        case 'b': return bispo;
        default: return vazia;
    }
}

template <Cor c>
void promove_na_raiz(Lance m) {
    if (m.d != fila(c, 7) || tab[m.destino()] != codigo(c, peao)) {
        return;
    }
    if (const Peca nova = promocao_da_raiz(); nova != vazia) {
        tab[m.destino()] = static_cast<std::int8_t>(codigo(c, nova));
    }
}

template <Cor c>
bool joga() {
    return !deeppromo || joga_com_b == (c == brancas ? 1 : 0);
}

}  // namespace

void aplica_na_raiz() {
    const Lance m = abcd;
    if (joga<brancas>()) {
        aplica_regras<brancas>(m);
    }
    if (joga<pretas>()) {
        aplica_regras<pretas>(m);
    }
    jm.p_ah = {};
    if (joga<brancas>()) {
        marca_passo_duplo<brancas>(tab, jm, m);
    }
    if (joga<pretas>()) {
        marca_passo_duplo<pretas>(tab, jm, m);
    }
    if (!pp) {
        transfere(tab, m);
    }
    promove_na_raiz<brancas>(m);
    promove_na_raiz<pretas>(m);
}

}  // namespace ondrel
