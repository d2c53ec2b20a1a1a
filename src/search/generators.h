// Generators of plies 2 to 23 (of quiet moves: 1 to 23). There is no move list: each candidate is tried and searched
// where it is found, and the orders below are the order of search. c is the side to move on tabd<N>. Each routine
// writes the bound of its ply, X_D, the flag of the node's move loop and, in the full form, the ply's slot. The test
// form (`teste`) tries the stored move alone; the full form passes it by.
#pragma once

#include "board/apply.h"
#include "board/castling.h"
#include "search/node.h"

namespace ondrel {

// --- Captures, backwards from the victim ---

// One attacker found: tells whether it ends the node.
template <Cor c, bool teste, class P>
inline bool candidato_de_captura(P n, Lance m) {
    const Lance na_gaveta{m.c, m.d, m.a, m.b};
    if ((aag_ddg[n] == na_gaveta) != teste || !legal<c>(n, m) || !procura<c>(n, m, !teste)) {
        return false;
    }
    corte<P::par>(n) = 1;
    if (!teste) {
        aag_ddg[n] = na_gaveta;
    }
    return true;
}

// Walks from the victim on (f, r) to the first man on a ray and tries it if it attacks along the ray.
template <Cor c, bool teste, class P>
inline bool captura_no_raio(P n, int f, int r, Passo s, Peca deslizante, bool lado_do_peao) {
    const Tabuleiro& t = ply[n].tabd;
    int af = f + s.file;
    int ar = r + s.rank;
    const bool encostado = no_tabuleiro(af, ar) && t[casa(af, ar)] != vazia;
    while (no_tabuleiro(af, ar) && t[casa(af, ar)] == vazia) {
        af += s.file;
        ar += s.rank;
    }
    if (!no_tabuleiro(af, ar)) {
        return false;
    }
    const int x = t[casa(af, ar)];
    const bool peao_captura = lado_do_peao && x == codigo(c, peao) && (fila(c, ar) != 6 || tabela_das_plies[n].promove);
    if (x == codigo(c, dama) || x == codigo(c, deslizante) || (encostado && (x == codigo(c, rei) || peao_captura))) {
        return candidato_de_captura<c, teste>(n, {af, ar, f, r});
    }
    return false;
}

// gerador_<c>_deep<N>, and with `teste` geradortest_<c>_deep<N>: captures of the man on (f, r).
template <Cor c, bool teste, class P>
void gerador_deep(P n, int f, int r) {
    // The rays that hold the capturing side's pawns come first, as that colour sees the ranks.
    constexpr std::array<Passo, 4> diagonais{
        {{1, -sinal(c)}, {-1, -sinal(c)}, {1, sinal(c)}, {-1, sinal(c)}}};
    for (const Passo s : diagonais) {
        if (captura_no_raio<c, teste>(n, f, r, s, bispo, s.rank == -sinal(c))) {
            return;
        }
    }
    for (const Passo s : passos_da_torre) {
        if (captura_no_raio<c, teste>(n, f, r, s, torre, false)) {
            return;
        }
    }
    for (const Passo s : saltos_do_cavalo) {
        const int af = f + s.file;
        const int ar = r + s.rank;
        if (no_tabuleiro(af, ar) && ply[n].tabd[casa(af, ar)] == codigo(c, cavalo) &&
            candidato_de_captura<c, teste>(n, {af, ar, f, r})) {
            return;
        }
    }
}

// --- Quiet moves, by piece ---

// Plays the part of a candidate that has passed its legality test.
template <Cor c, bool teste, class P>
inline bool procura_livre(P n, Lance m, bool regra_do_deep) {
    if (!procura<c>(n, m, regra_do_deep)) {
        return false;
    }
    corte<P::par>(n) = 1;
    if (!teste) {
        aa_dd[n] = m;
    }
    return true;
}

template <Cor c, bool teste, class P>
inline bool candidato_livre(P n, Lance m, bool regra_do_deep) {
    return (m == aa_dd[n]) == teste && legal<c>(n, m) && procura_livre<c, teste>(n, m, regra_do_deep);
}

// The generators of ply 1 stand still once the root move is refuted.
template <class P>
inline bool refutado_na_ply_1(P n) {
    return n == 1 && !(beta[1] > alfa[0]);
}

// En passant first, then the double step, then the single one.
template <Cor c, bool teste, class P>
void analiselivre_peao_deep(P n, int f, int r) {
    if (refutado_na_ply_1(n)) {
        return;
    }
    const Tabuleiro& t = ply[n].tabd;
    const auto livre = [&t](int file, int rank) { return no_tabuleiro(file, rank) && t[casa(file, rank)] == vazia; };
    const int um = r + sinal(c);
    if (fila(c, r) == 4) {
        for (const int lado : {1, -1}) {
            if (livre(f + lado, um) && ply[n].jm_D.p_ah[outra(c)][f + lado] &&
                candidato_livre<c, teste>(n, {f, r, f + lado, um}, true)) {
                return;
            }
        }
    }
    if (fila(c, r) == 1 && livre(f, um) && livre(f, um + sinal(c)) &&
        candidato_livre<c, teste>(n, {f, r, f, um + sinal(c)}, false)) {
        return;
    }
    if (livre(f, um) && (fila(c, r) != 6 || tabela_das_plies[n].promove)) {
        candidato_livre<c, teste>(n, {f, r, f, um}, false);
    }
}

// Single steps of knight and king to empty squares.
template <Cor c, bool teste, class P>
inline void livre_aos_saltos(P n, int f, int r, const std::array<Passo, 8>& saltos) {
    for (const Passo s : saltos) {
        const int cf = f + s.file;
        const int cr = r + s.rank;
        if (no_tabuleiro(cf, cr) && ply[n].tabd[casa(cf, cr)] == vazia &&
            candidato_livre<c, teste>(n, {f, r, cf, cr}, !teste)) {
            return;
        }
    }
}

// Rays of bishop, rook and queen, the nearest square first.
template <Cor c, bool teste, class P, std::size_t quantos>
inline void livre_nos_raios(P n, int f, int r, const std::array<Passo, quantos>& raios) {
    for (const Passo s : raios) {
        for (int cf = f + s.file, cr = r + s.rank; no_tabuleiro(cf, cr) && ply[n].tabd[casa(cf, cr)] == vazia;
             cf += s.file, cr += s.rank) {
            if (candidato_livre<c, teste>(n, {f, r, cf, cr}, !teste)) {
                return;
            }
        }
    }
}

// One side of castling for a king that stands on (f, r): the search goes on if it does not end the node.
template <Cor c, bool teste, class P>
inline bool roca(P n, int f, int r, Lado k) {
    const Lance m = lance_do_roque(c, k);
    verifica_xequemate<c>(n, f, r);
    if (XM || !roque_livre<c>(n, k) || (m == aa_dd[n]) != teste) {
        return false;
    }
    verifica_roque_deep<c>(n, k);
    if (R) {
        return false;
    }
    roque[c] = tabela_das_plies[n].roque;
    const bool fim_do_no = procura_livre<c, teste>(n, m, !teste);
    roque[c] = 0;
    return fim_do_no;
}

// The king's test of check is also the node's word on mate or stalemate. At ply 1 castling stands with the captures.
template <Cor c, bool teste, class P>
void analiselivre_rei_deep(P n, int f, int r) {
    if (refutado_na_ply_1(n)) {
        return;
    }
    verifica_xequemate<c>(n, f, r);
    if (!XM) {
        ply[n].XEQUE_MATE = 0;
    }
    if (n != 1 && (roca<c, teste>(n, f, r, lado_curto) || roca<c, teste>(n, f, r, lado_longo))) {
        return;
    }
    livre_aos_saltos<c, teste>(n, f, r, passos_do_rei);
}

// analiselivre_<piece>_<c>_deep<N>, and with `teste` analiselivretest_<piece>_<c>_deep<N>: quiet moves of the piece on
// (f, r).
template <Cor c, bool teste, class P>
void analiselivre_deep(P n, Peca piece, int f, int r) {
    if (refutado_na_ply_1(n)) {
        return;
    }
    switch (piece) {
        case peao: return analiselivre_peao_deep<c, teste>(n, f, r);
        case cavalo: return livre_aos_saltos<c, teste>(n, f, r, saltos_do_cavalo);
        case bispo: return livre_nos_raios<c, teste>(n, f, r, passos_do_bispo);
        case torre: return livre_nos_raios<c, teste>(n, f, r, passos_da_torre);
        case dama: return livre_nos_raios<c, teste>(n, f, r, passos_da_dama);
        case rei: return analiselivre_rei_deep<c, teste>(n, f, r);
        default: return;
    }
}

// --- Promotions of the odd plies from 7 on, before all else ---

template <Cor c, class P>
inline bool candidato_a_promover(P n, Lance m) {
    if (!legal<c>(n, m) || !procura<c>(n, m, false)) {
        return false;
    }
    corte<P::par>(n) = 1;
    return true;
}

// analisepositive_peao_<c>_deep<N>: the captures and the push of a pawn on its seventh rank.
template <Cor c, class P>
void analisepositive_peao_deep(P n, int f, int r) {
    if (fila(c, r) != 6) {
        return;
    }
    const Tabuleiro& t = ply[n].tabd;
    const int ultima = r + sinal(c);
    for (const int lado : {1, -1}) {
        if (!no_tabuleiro(f + lado, ultima)) {
            continue;
        }
        const int x = t[casa(f + lado, ultima)];
        if (da_cor(outra(c), x) && valor_da_peca(x) != rei && candidato_a_promover<c>(n, {f, r, f + lado, ultima})) {
            return;
        }
    }
    if (t[casa(f, ultima)] == vazia) {
        candidato_a_promover<c>(n, {f, r, f, ultima});
    }
}

}  // namespace ondrel
