// One run of a node: its leaf tests, its move and its move order.
#pragma once

#include "search/filters.h"
#include "search/generators.h"

namespace ondrel {

// --- Move order; c is the side to move on tabd<N> ---

// The stored capture, if its squares fit the board. At the last ply before a leaf it is dropped instead.
template <Cor c, class P>
inline bool captura_guardada(P n) {
    Lance& gaveta = aag_ddg[n];
    if (tabela_das_plies[n].limpa_captura && deep == n + 1) {
        gaveta.a = -1;
        return false;
    }
    if (gaveta.a == -1) {
        return false;
    }
    const int vitima = ply[n].tabd[gaveta.origem()];
    if (!da_cor(outra(c), vitima) || valor_da_peca(vitima) == rei || !da_cor(c, ply[n].tabd[gaveta.destino()])) {
        return false;
    }
    gerador_deep<c, true>(n, gaveta.origem());
    return corte<P::par>(n);
}

template <Cor c, class P>
inline bool promocoes(P n) {
    constexpr Mascara setima = 0x0101010101010101U << static_cast<unsigned>(fila(c, 6));
    for (Mascara resto = ply[n].mascaras.de(c, peao) & setima; resto != 0; resto &= resto - 1) {
        const int i = primeira_casa(resto);
        analisepositive_peao_deep<c>(n, i / 8, i % 8);
        if (corte<P::par>(n)) {
            return true;
        }
    }
    return false;
}

template <Cor c, class P>
inline bool capturas(P n) {
    for (const Peca vitima : ordem_das_vitimas) {
        for (Mascara resto = ply[n].mascaras.de(outra(c), vitima); resto != 0; resto &= resto - 1) {
            gerador_deep<c, false>(n, primeira_casa(resto));
            if (corte<P::par>(n)) {
                return true;
            }
        }
    }
    return false;
}

template <Cor c, class P>
inline bool livre_guardado(P n) {
    if (aa_dd[n].a == -1) {
        return false;
    }
    const int x = ply[n].tabd[aa_dd[n].origem()];
    if (!da_cor(c, x)) {
        return false;
    }
    analiselivre_deep<c, true>(n, static_cast<Peca>(valor_da_peca(x)), aa_dd[n].a, aa_dd[n].b);
    return corte<P::par>(n);
}

// The pawns of one file after the other, the most advanced first: White's from the top of each file down.
template <Cor c, class P, class Gerador>
inline bool por_peao(P n, Gerador gerador) {
    constexpr Mascara filas_1_a_6 = 0x7E7E7E7E7E7E7E7EU;
    for (Mascara resto = ply[n].mascaras.de(c, peao) & filas_1_a_6; resto != 0;) {
        int i = primeira_casa(resto);
        if (c == brancas) {
            i = ultima_casa(resto & (Mascara{0xFF} << static_cast<unsigned>(i & ~7)));
        }
        resto ^= bit(i);
        gerador(i / 8, i % 8);
        if (corte<P::par>(n)) {
            return true;
        }
    }
    return false;
}

// Calls `gerador` for every `piece` of c on ply n in the order of search, pawns of ranks 1 to 6 the most advanced first
// and other pieces by ascending rank, until it has ended the node.
template <Cor c, class P, class Gerador>
inline bool por_peca(P n, Peca piece, Gerador gerador) {
    if (piece == peao) {
        return por_peao<c>(n, gerador);
    }
    for (Mascara resto = ply[n].mascaras.de(c, piece); resto != 0; resto &= resto - 1) {
        const int i = primeira_casa(resto);
        gerador(i / 8, i % 8);
        if (corte<P::par>(n)) {
            return true;
        }
    }
    return false;
}

template <Cor c, class P>
inline bool livres(P n) {
    for (const Peca piece : ordem_das_pecas) {
        if (por_peca<c>(n, piece, [&](int f, int r) { analiselivre_deep<c, false>(n, piece, f, r); })) {
            return true;
        }
    }
    return false;
}

// The move order of the common form. Each step tells whether it has ended the node.
template <Cor c, class P>
void ordem_dos_lances(P n) {
    prepara_lances<c>(n);
    if (captura_guardada<c>(n)) {
        return;
    }
    if (tabela_das_plies[n].lances == Lances::promocoes_antes && promocoes<c>(n)) {
        return;
    }
    if (capturas<c>(n) || livre_guardado<c>(n)) {
        return;
    }
    livres<c>(n);
}

// --- The run ---

// Notes the move of ply n in the line shown, if it is the first one searched there.
inline void escreve_na_linha(int n, Lance m) {
    auto& texto = A0_D7[n - 1];
    if (texto[0] == ' ') {
        texto = {static_cast<char>('a' + m.a), static_cast<char>('1' + m.b), static_cast<char>('a' + m.c),
                 static_cast<char>('1' + m.d)};
    }
}

// Clears what the children of ply n count.
inline void zera_filhos(int n) {
    if (n + 1 < plies_seletivas) {
        curr_N[n + 1] = 0;
        LmrT[n + 1] = 0;
        AmrT[n + 1] = 0;
    }
}

// Copies the ply `de` to ply n and plays there the move m of c; c's opponent is to move then.
template <Cor c>
inline void desce(int de, int n, Lance m) {
    ply[n].tabd = ply[de].tabd;
    ply[n].jm_D = ply[de].jm_D;
    ply[n].mascaras = depois<c>(ply[de], m);
    ply[n].pp_D = 0;
    ply[n].joga_com_b_deep = c == brancas ? 1 : 0;
    init_tabuleiro_ply<c>(ply[n], m);
    ply[n].XEQUE_MATE = 1;
    ply[n].joga_com_b_deep = c == brancas ? 0 : 1;
}

// The Amr form: ply n is the plain copy of the ply above, and the mover has passed.
template <Cor c>
inline void desce_sem_lance(int n) {
    ply[n].tabd = ply[n - 1].tabd;
    ply[n].jm_D = ply[n - 1].jm_D;
    ply[n].mascaras = ply[n - 1].mascaras;
    ply[n].X_D = ply[n - 1].X_D;
    ply[n].pp_D = 0;
    ply[n].XEQUE_MATE = 1;
    ply[n].joga_com_b_deep = c == brancas ? 0 : 1;
}

// A node without a legal reply is mate or stalemate. No child entered, and none that improved the bound as a leaf.
template <class P>
inline void sem_resposta(P n) {
    if (ply[n].X_D && nd == n) {
        const float mate = P::par ? -mate_da_ply(n) : mate_da_ply(n);
        valor<P::par>(n) = ply[n].XEQUE_MATE ? mate : static_cast<float>(emp);
    }
}

// Whether the move ends the line here by depth or, beyond the nominal depth, as a quiet move of a piece without check.
template <Cor c, class P>
inline bool fim_da_linha(P n, Lance m) {
    const LinhaDaPly& linha = tabela_das_plies[n];
    if (P::par && deep == linha.folha_deep) {
        return true;
    }
    if (DEEP < linha.porta_de || DEEP > linha.porta_ate || linha.porta_de == nunca) {
        return false;
    }
    const Tabuleiro& antes = ply[n - 1].tabd;
    if (antes[m.destino()] != vazia || antes[m.origem()] == codigo(c, peao)) {
        return false;
    }
    const bool quieto = !da_xeque<c>(n, m);
    if (quieto) {
        conta(Regra::porta);
    }
    return quieto;
}

// Plays the move and tries the replies.
template <Cor c, class P>
inline void expande(P n, Lance m, bool amr) {
    nd = n;
    if (amr) {
        desce_sem_lance<c>(n);
    } else {
        if (n < 9) {
            escreve_na_linha(n, m);
        }
        desce<c>(n - 1, n, m);
    }
    corte<P::par>(n) = 0;
    ordem_dos_lances<outra(c)>(n);
    sem_resposta(n);
}

// A complete run of a node of plies 2 to 23 at the present `deep`. In an Amr run the mover passes: no leaf test, no
// move, the material of the ply above.
template <Cor c, class P>
void corre(P n, Lance m, bool amr) {
    zera_filhos(n);
    avalia_lance<c>(ply[n - 1].tabd, m);
    int deep_guardado = deep;
    if (!amr) {
        if (fim_da_linha<c>(n, m)) {
            if (n == 2) {
                folha_da_ply_2<c>(m);
            } else {
                folha<c>(n, m);
            }
            return;
        }
        if (deep < n) {
            return;
        }
    }
    valor<P::par>(n) = valor_inicial<P::par>;
    ply[n].material = amr ? ply[n - 1].material : material_depois<c>(ply[n - 1], m);
    if constexpr (P::par) {
        expande<c>(n, m, amr);
    } else {
        bool fim_do_no = filtro_vertical<c>(n, m);
        if (!fim_do_no) {
            estende(n);
            fim_do_no = tempo_esgotado(n, deep_guardado);
        }
        if (!fim_do_no) {
            expande<c>(n, m, amr);
        }
        deep = deep_guardado;
    }
}

}  // namespace ondrel
