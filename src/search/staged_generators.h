// Captures of ply 1, by attacker, in five stages of falling victim value. c is the side to move on tabd1.
#pragma once

#include "search/generators.h"

#include <span>

namespace ondrel {

// Victims of the stages 5 to 1, by index K; stage 0 stands for the test form, which takes any victim.
constexpr std::array<Peca, 6> vitima_da_etapa{vazia, peao, bispo, cavalo, torre, dama};
constexpr int etapa_do_teste = 0;

using PlyUm = PlyMovel<false>;

// A capture with its trial made and found legal: tells whether it refutes the root move.
template <Cor c>
inline bool procura_captura_da_ply_1(PlyUm n, int K, Lance m) {
    if (!procura<c>(n, m, false)) {
        return false;
    }
    corte<false>(n) = 1;
    if (K != etapa_do_teste) {
        aag_ddg[n] = m;
    }
    return true;
}

// Whether the stage may take this move: the test form the stored one alone, a stage every other one.
inline bool da_vez(int K, Lance m) { return (m == aag_ddg[1]) == (K == etapa_do_teste); }

template <Cor c>
inline bool vitima_da_vez(int K, int x) {
    if (K == etapa_do_teste) {
        return da_cor(outra(c), x) && valor_da_peca(x) != rei;
    }
    return x == codigo(outra(c), vitima_da_etapa[K]);
}

template <Cor c>
inline bool candidato_da_ply_1(PlyUm n, int K, Lance m) {
    return da_vez(K, m) && vitima_da_vez<c>(K, ply[1].tabd[m.destino()]) && legal<c>(n, m) &&
           procura_captura_da_ply_1<c>(n, K, m);
}

template <Cor c>
inline void captura_nos_raios(PlyUm n, int K, int f, int r, std::span<const Passo> raios) {
    const Tabuleiro& t = ply[1].tabd;
    for (const Passo s : raios) {
        int cf = f + s.file;
        int cr = r + s.rank;
        while (no_tabuleiro(cf, cr) && t[casa(cf, cr)] == vazia) {
            cf += s.file;
            cr += s.rank;
        }
        if (no_tabuleiro(cf, cr) && candidato_da_ply_1<c>(n, K, {f, r, cf, cr})) {
            return;
        }
    }
}

// Tells whether a capture has refuted the root move.
template <Cor c>
inline bool captura_aos_saltos(PlyUm n, int K, int f, int r, std::span<const Passo> saltos) {
    for (const Passo s : saltos) {
        if (no_tabuleiro(f + s.file, r + s.rank) && candidato_da_ply_1<c>(n, K, {f, r, f + s.file, r + s.rank})) {
            return true;
        }
    }
    return false;
}

template <Cor c>
inline void captura_en_passant_da_ply_1(PlyUm n, int K, int f, int r) {
    const int um = r + sinal(c);
    for (const int lado : {1, -1}) {
        const Lance m{f, r, f + lado, um};
        if (no_tabuleiro(f + lado, um) && ply[1].tabd[m.destino()] == vazia && ply[1].jm_D.p_ah[outra(c)][f + lado] &&
            da_vez(K, m) && legal<c>(n, m) && procura_captura_da_ply_1<c>(n, K, m)) {
            return;
        }
    }
}

// Castling closes the king's captures of pawns, and with it the word on check.
template <Cor c>
inline void roca_na_ply_1(PlyUm n, int K, int f, int r) {
    for (const Lado k : {lado_curto, lado_longo}) {
        const Lance m = lance_do_roque(c, k);
        verifica_xequemate<c>(n, f, r);
        if (XM) {
            return;
        }
        ply[1].XEQUE_MATE = 0;
        if (!roque_livre<c>(n, k) || !da_vez(K, m)) {
            continue;
        }
        verifica_roque_deep<c>(n, k);
        if (R) {
            continue;
        }
        const EnsaioDoRoque<c> ensaio(n + 1);
        roque[c] = tabela_das_plies[n].roque;
        const bool refutado = procura_captura_da_ply_1<c>(n, K, m);
        roque[c] = 0;
        if (refutado) {
            return;
        }
    }
}

template <Cor c>
inline void captura_de_peao(PlyUm n, int K, int f, int r) {
    constexpr std::array<Passo, 2> diagonais{{{1, sinal(c)}, {-1, sinal(c)}}};
    if (!captura_aos_saltos<c>(n, K, f, r, diagonais) && K == 1 && fila(c, r) == 4) {
        captura_en_passant_da_ply_1<c>(n, K, f, r);
    }
}

template <Cor c>
inline void captura_de_rei(PlyUm n, int K, int f, int r) {
    if (!captura_aos_saltos<c>(n, K, f, r, passos_do_rei) && (K == 1 || K == etapa_do_teste)) {
        roca_na_ply_1<c>(n, K, f, r);
    }
}

// analisepositive<K>_<piece>_<c>_deep1, and with K = etapa_do_teste analisepositivetest_<piece>_<c>_deep1: captures by
// the piece on (f, r) of the stage's victim. Does nothing once the root move is refuted.
template <Cor c>
void analisepositive_deep1(int K, Peca piece, int f, int r) {
    constexpr PlyUm n{1};
    if (refutado_na_ply_1(n)) {
        return;
    }
    switch (piece) {
        case peao: return captura_de_peao<c>(n, K, f, r);
        case cavalo: captura_aos_saltos<c>(n, K, f, r, saltos_do_cavalo); return;
        case bispo: return captura_nos_raios<c>(n, K, f, r, passos_do_bispo);
        case torre: return captura_nos_raios<c>(n, K, f, r, passos_da_torre);
        case dama: return captura_nos_raios<c>(n, K, f, r, passos_da_dama);
        case rei: return captura_de_rei<c>(n, K, f, r);
        default: return;
    }
}

}  // namespace ondrel
