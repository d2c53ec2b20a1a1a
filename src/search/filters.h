// Tests of the odd nodes from ply 7 on, between the storing of the material and the copy of the board: the vertical
// filter, the search extension and the time check. The side that replies is o = outra(c), the opponent of the root.
#pragma once

#include "base/clock.h"
#include "search/node.h"

namespace ondrel {

// The score that the root has reached is held at `primeiro` points, or nearly that of the depth before.
inline bool placar_mantido(float primeiro = 5.0F) {
    return alfa[0] >= primeiro || (alfa[0] >= ALFA0 - 5.0F && alfa[0] >= -15.0F);
}

// Asks whether the incoming move m of ply n gives check: verifica_rei_<o> about the position that the caller's trial
// left. At ply 1 that is what stands on tab2, which for one castling is not the position after the move.
template <Cor c>
inline bool da_xeque(int n, Lance m) {
    if (n == 1) {
        verifica_rei<outra(c)>();
        return Y;
    }
    return rei_atacado<outra(c)>(mascaras_do_ensaio<c>(n, m));
}

// T(10): some bound of the root side at an even ply above n lies 10 or more over S.
inline bool perdida(int n, float S) {
    for (int k = 0; k < n; k += 2) {
        if (alfa[k] - 10.0F >= S) {
            return true;
        }
    }
    return false;
}

// The vertical filter gives up lines that the root side is losing at the last full plies. Tells whether the node ends,
// with S, its static score, as its value.
template <Cor c, class P>
inline bool filtro_vertical(P n, Lance m) {
    const Vertical regras = tabela_das_plies[n].vertical;
    if (!VERTICAL_filt || regras == Vertical::nenhum) {
        return false;
    }
    const float S = material_com_razao(ply[n].material[c], ply[n].material[outra(c)]);
    switch (regras) {
        case Vertical::das_plies_9_a_21:
            if (deep == n && perdida(n, S) && !da_xeque<c>(n, m)) {
                conta(Regra::vertical_corta);
                beta[n] = S;
                return true;
            }
            if (deep == n + 2 && placar_mantido(15.0F) && perdida(n, S)) {
                conta(Regra::vertical_encurta);
                deep = n;
            }
            return false;
        case Vertical::da_ply_7:
            if (deep == 7) {
                for (int k = 0; k < n; k += 2) {
                    if (alfa[k] - 10.0F >= S && alfa[k] < mate_minimo) {
                        conta(Regra::vertical_avisa_o_pai);
                        corte_beta[n - 2] = 1;
                    }
                }
            } else if (deep == 9 && ply[n - 1].tabd[m.destino()] == vazia && !promocao && perdida(n, S) &&
                       !da_xeque<c>(n, m)) {
                conta(Regra::vertical_corta);
                beta[n] = S;
                return true;
            }
            return false;
        default:
            if (perdida(n, S)) {
                conta(Regra::vertical_avisa_o_pai);
                corte_beta[n - 2] = 1;
            }
            return false;
    }
}

// While time is plentiful the lines of the full pass of a root move grow by two plies at their end.
template <class P>
inline void estende(P n) {
    const LinhaDaPly& linha = tabela_das_plies[n];
    if (!SEARCH_E || !LMRtest || deep != n || !SCANT || DEEP < linha.extensao_de || DEEP > linha.extensao_ate) {
        return;
    }
    fim = relogio();
    if (tempo_usado() <= limite_suave() && CPU != 0) {
        conta(Regra::extensao);
        deep = n + 2;
    }
}

// Past the hard limit the line is cut down to this ply for good, the schedule stops after the move, and a parent with a
// real score is left at once with its own bound. Tells whether the node ends.
template <class P>
inline bool tempo_esgotado(P n, int& deep_guardado) {
    if (!TC || deep <= tabela_das_plies[n].relogio_deep) {
        return false;
    }
    fim = relogio();
    if (tempo_usado() < limite_duro()) {
        return false;
    }
    conta(Regra::tempo_esgotado);
    deep = n;
    deep_guardado = n;
    corte_MAXcut = 1;
    if (alfa[n - 1] > -mate_minimo) {
        corte_beta[n - 2] = 1;
        beta[n] = alfa[n - 1];
        return true;
    }
    return false;
}

}  // namespace ondrel
