// Castling: the squares that the king passes and reaches.
#pragma once

#include "base/root.h"
#include "board/attacks.h"

namespace ondrel {

// The sides of castling by the number in the routines' names: 0 the long one, 8 the short one.
enum Lado : int { lado_longo = 0, lado_curto = 8 };

constexpr Lance lance_do_roque(Cor c, Lado k) { return k == lado_longo ? roque_longo(c) : roque_curto(c); }

// The cheap conditions on ply n: the rook on its corner, neither man moved, the squares between empty. The king's own
// square is not looked at: a king that has not moved stands on it.
template <Cor c>
inline bool roque_livre(int n, Lado k) {
    const Tabuleiro& t = ply[n].tabd;
    const Bandeiras& m = ply[n].jm_D;
    constexpr int base = fila(c, 0);
    if (m.R_jm[c]) {
        return false;
    }
    if (k == lado_curto) {
        return t[casa(7, base)] == codigo(c, torre) && !m.T_h_jm[c] && t[casa(5, base)] == vazia &&
               t[casa(6, base)] == vazia;
    }
    return t[casa(0, base)] == codigo(c, torre) && !m.T_a_jm[c] && t[casa(1, base)] == vazia &&
           t[casa(2, base)] == vazia && t[casa(3, base)] == vazia;
}

// verifica_roque<K>d<N>_<c>: R tells whether the crossed square or the destination is attacked. The square that the
// rook alone crosses is not tested. tab2 is left with the castled position, whatever R came to.
template <Cor c>
inline void verifica_roque_deep(int n, Lado k) {
    constexpr int base = fila(c, 0);
    const int cruzada = k == lado_longo ? 3 : 5;
    const int chegada = k == lado_longo ? 2 : 6;
    tab2 = ply[n].tabd;
    R = casa_atacada<c>(tab2, cruzada, base) ? 1 : 0;
    tab2[casa(cruzada, base)] = codigo(c, torre);
    tab2[casa(k == lado_longo ? 0 : 7, base)] = vazia;
    tab2[casa(chegada, base)] = codigo(c, rei);
    tab2[casa(4, base)] = vazia;
    if (casa_atacada<c>(tab2, chegada, base)) {
        R = 1;
    }
}

// The gate of the pass: in a SCAN1 pass only the stored best move goes on to the search, in a SCANT pass all but it.
inline void porta_do_passe(Lance m) {
    TEST1IID = 1;
    if ((SCAN1 && m != aab_ddb) || (SCANT && m == aab_ddb)) {
        TEST1IID = 0;
    }
}

// verifica_roque<K>_<c>, the root form: the gate first, then the test on tab.
template <Cor c>
inline void verifica_roque(Lado k) {
    porta_do_passe(lance_do_roque(c, k));
    verifica_roque_deep<c>(0, k);
}

}  // namespace ondrel
