// Steps of a node: the worth of the move, the leaf, the folding of a child's value, the cut-off test.
//
// In all of these c is the colour that made the incoming move of ply n and o = outra(c) the side that replies. At even
// plies o is the root side, at odd plies c is.
#pragma once

#include "base/bounds.h"
#include "base/numeric.h"
#include "base/options.h"
#include "base/probe.h"
#include "base/root.h"
#include "board/legality.h"
#include "eval/extra_eval.h"
#include "eval/leaf.h"
#include "search/ply_table.h"

#include <algorithm>

namespace ondrel {

// deep_<c><N>: searches the move m of c, unplayed on tabd<N-1>, and leaves its value in alfa<N> or beta<N>. The caller
// has counted the node and found c's king safe after the move. The trial of the move is made on tab2 only where
// something reads it.
template <Cor c, class P>
void deep_(P n, Lance m);

// Leaves promocao and ppassado of the move m of c on the board `antes`.
template <Cor c>
inline void avalia_lance(const Tabuleiro& antes, Lance m) {
    const bool de_peao = antes[m.origem()] == codigo(c, peao);
    promocao = de_peao && m.b == fila(c, 6) ? 80 : 0;
    ppassado = de_peao && m.a != m.c && antes[m.destino()] == vazia ? 10 : 0;
}

// Material after the move m of c, by Cor, from the ply above it.
template <Cor c>
inline std::array<float, 2> material_depois(const Ply& acima, Lance m) {
    std::array<float, 2> total = acima.material;
    total[c] += static_cast<float>(promocao + ppassado);
    total[outra(c)] -= static_cast<float>(valor_da_peca(acima.tabd[m.destino()]));
    return total;
}

// --- Leaf ---

// Whether some bound above the parent puts a full judgement of v out of the question: v must be within piecesac of
// every alfa above an even node, of every beta above an odd one.
template <bool par>
inline bool fora_da_janela(int n, float v) {
    const float limite = ply[n - 1].cadeia;
    return par ? !(v > limite - piecesac) : !(v < limite + piecesac);
}

// Material difference, with the logarithm of the ratio, of the root side r. Few pairs of sums occur in a search: each
// is worked out once.
inline float material_com_razao(float r, float outro) {
    struct Par {
        float r, outro, MQ, valor;
    };
    static std::array<Par, 4096> pares{};
    const std::uint32_t h =
        std::bit_cast<std::uint32_t>(r) * 0x9E3779B1U ^ std::bit_cast<std::uint32_t>(outro) * 0x85EBCA77U;
    Par& x = pares[h >> 20U];
    if (x.r != r || x.outro != outro || x.MQ != MQ || r == 0) {
        x = {r, outro, MQ, static_cast<float>(static_cast<long double>(r - outro) + ln_da_razao(r, outro) * MQ)};
    }
    return x.valor;
}

// Whether v, an estimate of the leaf of ply n, tells as much as the value itself would: the leaf falls short of what its
// parent has already, or it ends the parent, whose value then falls short of what the grandparent has. Nobody else
// reads either value. The shallow tables, which keep values, have no part in these plies.
template <class P>
inline bool basta_a_estimativa(P n, float v) {
    if constexpr (P::par && !rastreado) {
        if (n < 6) {
            return false;
        }
        const float folga = folga_da_estimativa;
        return v > std::max(beta[n - 1], ply[n - 1].cadeia) + folga ||
               v < std::min({alfa[n - 2], beta[n - 1], ply[n - 2].cadeia}) - folga;
    } else {
        return false;
    }
}

// The value of a leaf. tab2 still holds the position after the move.
template <Cor c, class P>
inline void folha(P n, Lance m) {
    constexpr Cor raiz = P::par ? outra(c) : c;
    const std::array<float, 2> material = material_depois<c>(ply[n - 1], m);
    float& v = valor<P::par>(n);
    v = material[raiz] - material[outra(raiz)];
    if (extradef) {
        v = material_com_razao(material[raiz], material[outra(raiz)]);
    }
    if (!EXTRA_EVAL) {
        return;
    }
    if (fora_da_janela<P::par>(n, v)) {
        conta(Regra::preguica);
        return;
    }
    conta(Regra::julgamento);
    const Mascaras posicao = mascaras_do_ensaio<c>(n, m);
    if (!estima_a_folha<raiz, outra(c)>(posicao) || !basta_a_estimativa(n, v + extraeval)) {
        faz_ensaio<c>(n, m);
        afina_a_folha<raiz, outra(c)>(tab2, posicao);
    }
#if ONDREL_CHECKED
    else {
        faz_ensaio<c>(n, m);
        prova_a_estimativa<raiz, outra(c)>(tab2, posicao);
    }
#endif
    if (P::par && deep > ddep) {
        ddep = deep;
    }
    v += extraeval;
    if (EMPAT) {
        v = static_cast<float>(emp);
    }
}

// The leaf of ply 2, for the shallowest depth only: lead less the plain ratio, without a judgement.
template <Cor c>
inline void folha_da_ply_2(Lance m) {
    const std::array<float, 2> material = material_depois<c>(ply[1], m);
    const float vantagem = material[outra(c)] - material[c];
    alfa[2] = vantagem;
    if (extradef) {
        alfa[2] = static_cast<float>(static_cast<long double>(vantagem) - razao(material[c], material[outra(c)]));
    }
}

// --- Bounds ---

// Takes the child's value into the bound of ply n, if it improves it.
template <class P>
inline void recolhe(P n) {
    if constexpr (P::par) {
        if (beta[n + 1] > alfa[n]) {
            alfa[n] = beta[n + 1];
            ply[n].X_D = 0;
        }
    } else {
        if (alfa[n + 1] < beta[n]) {
            beta[n] = alfa[n + 1];
            ply[n].X_D = 0;
        }
    }
}

// Whether v, a value of ply n, crosses a bound of the other side at any of the plies from `perto` up to the root.
template <bool par>
inline bool cruza_a_cadeia(float v, int perto) {
    for (int k = perto; k >= 0; k -= 2) {
        if (par ? v >= beta[k] : v <= alfa[k]) {
            return true;
        }
    }
    return false;
}

// The bounds above ply n that end its move loop, as one number each: none of them changes while the loop runs.
template <class P>
inline void prepara_cadeia(P n) {
    float limite = P::par ? beta[n - 1] : alfa[n - 1];
    for (int k = n - 3; k >= 0; k -= 2) {
        limite = P::par ? std::min(limite, beta[k]) : std::max(limite, alfa[k]);
    }
    ply[n].cadeia = limite;
    ply[n].corta_em = P::par ? std::min(limite, MAXcut[n]) : std::max(limite, -MAXcut[n]);
}

// The cut-off test of ply n's move loop.
template <class P>
inline bool corta(P n) {
    const float v = valor<P::par>(n);
    return (P::par ? v >= ply[n].corta_em : v <= ply[n].corta_em) ||
           (tabela_das_plies[n].pai_corta && corte_beta[n - 1]);
}

// Makes ready what the move loop of c on ply n reads: checks and pins, and the bounds that cut.
template <Cor c, class P>
inline void prepara_lances(P n) {
    prepara_legalidade<c>(n);
    prepara_cadeia(n);
}

// Whether the value of node n would cut its parent.
template <class P>
inline bool corta_o_pai(P n) {
    return cruza_a_cadeia<!P::par>(valor<P::par>(n), n - 2);
}

// --- Candidates, moves of the side to move on tabd<N> ---

// Searches m, which has passed its legality test, and tells whether it ends the move loop of ply n. With `regra_do_deep` the
// last ply that generates replies is content with its first move.
template <Cor c, class P>
inline bool procura(P n, Lance m, bool regra_do_deep) {
    ++nodes;
    if constexpr (rastreado) {
        faz_ensaio<c>(n + 1, m);  // the probes may look at the trial
    }
    observa_filho(n + 1, m, valor<!P::par>(n + 1), [n, m] { deep_<c>(n.filha(), m); });
    recolhe(n);
    return corta(n) || (regra_do_deep && tabela_das_plies[n].deep_corta && deep == n);
}

}  // namespace ondrel
