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
inline bool candidato_de_captura(P n, int de, int vitima) {
    const Lance m{de / 8, de % 8, vitima / 8, vitima % 8};
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

// The men of c that stand where they could capture on a square, whatever lies between.
struct Atacantes {
    Mascara diagonais, retas, saltos;

    [[nodiscard]] bool nenhum() const { return (diagonais | retas | saltos) == 0; }
};

template <Cor c, class P>
inline Atacantes atacantes_de(P n, int vitima) {
    const Mascaras& m = ply[n].mascaras;
    const Mascara setima = tabela_das_plies[n].promove ? 0 : 0x0101010101010101U << static_cast<unsigned>(fila(c, 6));
    const Mascara encostado = m.de(c, rei) & saltos_de_rei[vitima].casas;
    const Mascara peoes = m.de(c, peao) & saltos_de_peao[outra(c)][vitima].casas & ~setima;
    return {(m.cor[c] & (m.tipo[tipo_de(bispo)] | m.tipo[tipo_de(dama)]) & xis[vitima]) | encostado | peoes,
            (m.cor[c] & (m.tipo[tipo_de(torre)] | m.tipo[tipo_de(dama)]) & cruz[vitima]) | encostado,
            m.de(c, cavalo) & saltos_de_cavalo[vitima].casas};
}

// Tries the first man met on each ray from the victim, if it is one of `quem`.
template <Cor c, bool teste, class P, std::size_t quantos>
inline bool captura_nos_raios(P n, int vitima, Mascara quem, const std::array<int, quantos>& ordem) {
    const Mascara ocupadas = ply[n].mascaras.ocupadas();
    for (const int d : ordem) {
        const Mascara raio = raios[d][vitima];
        if ((raio & quem) == 0) {
            continue;
        }
        const int primeiro = primeiro_no_raio(d, raio & ocupadas);
        if ((bit(primeiro) & quem) != 0 && candidato_de_captura<c, teste>(n, primeiro, vitima)) {
            return true;
        }
    }
    return false;
}

// gerador_<c>_deep<N>, and with `teste` geradortest_<c>_deep<N>: captures of the man on the square.
template <Cor c, bool teste, class P>
void gerador_deep(P n, int vitima) {
    // The rays that hold the capturing side's pawns come first: in the queen's order of directions (+1,-1), (-1,-1),
    // (+1,+1), (-1,+1) for White, with the ranks mirrored for Black.
    constexpr std::array<int, 4> diagonais = c == brancas ? std::array{5, 6, 4, 7} : std::array{4, 7, 5, 6};
    constexpr std::array<int, 4> retas{0, 1, 2, 3};
    const Atacantes quem = atacantes_de<c>(n, vitima);
    if (quem.nenhum()) {
        return;
    }
    if ((quem.diagonais != 0 && captura_nos_raios<c, teste>(n, vitima, quem.diagonais, diagonais)) ||
        (quem.retas != 0 && captura_nos_raios<c, teste>(n, vitima, quem.retas, retas)) || quem.saltos == 0) {
        return;
    }
    const Saltos& saltos = saltos_de_cavalo[vitima];
    for (int k = 0; k < saltos.quantas; ++k) {
        if ((bit(saltos.em_ordem[k]) & quem.saltos) != 0 &&
            candidato_de_captura<c, teste>(n, saltos.em_ordem[k], vitima)) {
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
inline void livre_aos_saltos(P n, int f, int r, const std::array<Saltos, 64>& tabela) {
    const Saltos& saltos = tabela[casa(f, r)];
    const Mascara ocupadas = ply[n].mascaras.ocupadas();
    for (int k = 0; k < saltos.quantas; ++k) {
        const int para = saltos.em_ordem[k];
        if ((bit(para) & ocupadas) == 0 && candidato_livre<c, teste>(n, {f, r, para / 8, para % 8}, !teste)) {
            return;
        }
    }
}

// Rays of bishop, rook and queen, the nearest square first.
template <Cor c, bool teste, class P>
inline void livre_nos_raios(P n, int f, int r, int primeira_direcao, int ultima_direcao) {
    const Mascara ocupadas = ply[n].mascaras.ocupadas();
    for (int d = primeira_direcao; d <= ultima_direcao; ++d) {
        const Fileira& raio = raios_em_ordem[d][casa(f, r)];
        const int quantas = livres_no_raio(casa(f, r), d, ocupadas);
        for (int k = 0; k < quantas; ++k) {
            const int para = raio[k];
            if (candidato_livre<c, teste>(n, {f, r, para / 8, para % 8}, !teste)) {
                return;
            }
        }
    }
}

// verifica_xequemate<c>d<N>, told from the sets of the node where it has one king, the one on (f, r).
template <Cor c>
inline void testa_xequemate(int n, int f, int r) {
    if (ply[n].rei_em == casa(f, r)) {
        XM = ply[n].em_xeque ? 1 : 0;
    } else {
        verifica_xequemate<c>(n, f, r);
    }
}

// One side of castling for a king that stands on (f, r): the search goes on if it does not end the node.
template <Cor c, bool teste, class P>
inline bool roca(P n, int f, int r, Lado k) {
    const Lance m = lance_do_roque(c, k);
    testa_xequemate<c>(n, f, r);
    if (XM || !roque_livre<c>(n, k) || (m == aa_dd[n]) != teste) {
        return false;
    }
    verifica_roque_deep<c>(n, k);
    if (R) {
        return false;
    }
    const EnsaioDoRoque<c> ensaio(n + 1);
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
    testa_xequemate<c>(n, f, r);
    if (!XM) {
        ply[n].XEQUE_MATE = 0;
    }
    if (n != 1 && (roca<c, teste>(n, f, r, lado_curto) || roca<c, teste>(n, f, r, lado_longo))) {
        return;
    }
    livre_aos_saltos<c, teste>(n, f, r, saltos_de_rei);
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
        case cavalo: return livre_aos_saltos<c, teste>(n, f, r, saltos_de_cavalo);
        case bispo: return livre_nos_raios<c, teste>(n, f, r, 4, 7);
        case torre: return livre_nos_raios<c, teste>(n, f, r, 0, 3);
        case dama: return livre_nos_raios<c, teste>(n, f, r, 0, 7);
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
