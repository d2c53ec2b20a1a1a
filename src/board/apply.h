// Application of moves. Nothing here checks that a move is legal or that the piece can go there: what is given is
// carried out. Squares must lie on the board.
#pragma once

#include "base/ply_stack.h"

namespace ondrel {

// --- The rules shared by all forms; c is the moving side ---

// A king that leaves its e-square for file c or g takes the rook of that side along. Neither the to-rank nor the corner
// is looked at.
template <Cor c>
inline void salta_a_torre(Tabuleiro& t, Lance m) {
    constexpr int base = fila(c, 0);
    if (m.a != 4 || m.b != base) {
        return;
    }
    if (m.c == 2) {
        t[casa(3, base)] = codigo(c, torre);
        t[casa(0, base)] = vazia;
    } else if (m.c == 6) {
        t[casa(5, base)] = codigo(c, torre);
        t[casa(7, base)] = vazia;
    }
}

// Captures en passant if the flag of the to-file allows it, and tells whether it did: the move is then on the board.
template <Cor c>
inline bool captura_en_passant(Tabuleiro& t, const Bandeiras& jm_D, Lance m) {
    if (t[m.origem()] != codigo(c, peao) || m.d != fila(c, 5) || !jm_D.p_ah[outra(c)][m.c]) {
        return false;
    }
    t[m.origem()] = vazia;
    t[casa(m.c, fila(c, 4))] = vazia;
    t[m.destino()] = codigo(c, peao);
    return true;
}

// The copy comes first: a move onto its own square empties it.
inline void transfere(Tabuleiro& t, Lance m) {
    t[m.destino()] = t[m.origem()];
    t[m.origem()] = vazia;
}

// The search promotes to the queen only.
template <Cor c>
inline void promove(Tabuleiro& t, Lance m) {
    if (m.d == fila(c, 7) && t[m.destino()] == codigo(c, peao)) {
        t[m.destino()] = codigo(c, dama);
    }
}

// Notes in the flags that x, the piece that is about to leave, has moved. A rook counts by its file, on any rank.
template <Cor c>
inline void marca_partida(Bandeiras& jm_D, int x, Lance m) {
    if (x == codigo(c, rei)) {
        jm_D.R_jm[c] = 1;
    } else if (x == codigo(c, torre)) {
        if (m.a == 0) {
            jm_D.T_a_jm[c] = 1;
        } else if (m.a == 7) {
            jm_D.T_h_jm[c] = 1;
        }
    }
}

// Notes a double step of the pawn that still stands on the from-square.
template <Cor c>
inline void marca_passo_duplo(const Tabuleiro& t, Bandeiras& jm_D, Lance m) {
    if (t[m.origem()] == codigo(c, peao) && m.b == fila(c, 1) && m.d == fila(c, 3)) {
        jm_D.p_ah[c][m.a] = 1;
    }
}

// --- The forms ---

// init_tabuleiro<N>: plays a move of c on a ply's own board and flags, in place. The caller has copied both from the
// ply above and cleared pp_D. Leaves X_D at 1 and pp_D at 0.
template <Cor c>
inline void init_tabuleiro_ply(Ply& no, Lance m) {
    Tabuleiro& t = no.tabd;
    const int x = t[m.origem()];
    if (x == codigo(c, rei)) {
        salta_a_torre<c>(t, m);
    }
    marca_partida<c>(no.jm_D, x, m);
    no.pp_D = captura_en_passant<c>(t, no.jm_D, m) ? 1 : 0;
    no.jm_D.p_ah = {};
    marca_passo_duplo<c>(t, no.jm_D, m);
    if (!no.pp_D) {
        transfere(t, m);
    }
    promove<c>(t, m);
    no.X_D = 1;
    no.pp_D = 0;
}

// The trial form: the position after a move of c from the given board and flags, on tab2. No flag is set.
template <Cor c>
inline void experimenta(const Tabuleiro& de, const Bandeiras& jm_D, Lance m) {
    tab2 = de;
    if (tab2[m.origem()] == codigo(c, rei)) {
        salta_a_torre<c>(tab2, m);
    }
    if (!captura_en_passant<c>(tab2, jm_D, m)) {
        transfere(tab2, m);
    }
    promove<c>(tab2, m);
}

// init_tabuleiro2_deep<N>: the trial of a move of c, the side to move on tabd<N>.
template <Cor c>
inline void init_tabuleiro2_deep(int n, Lance m) {
    experimenta<c>(ply[n].tabd, ply[n].jm_D, m);
}

// The board part of init_tabuleiro: plays abcd on tab and the root flags, with under-promotion by PRs and PRe and the
// castling of Chess960. The colour is read from the piece. Leaves pp set until the preparation clears it, and PR at 'q'
// when the search's own pawn has become a queen.
void aplica_na_raiz();

}  // namespace ondrel
