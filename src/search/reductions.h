// Passes that shorten or skip a subtree by depth.
#pragma once

#include "search/run.h"

namespace ondrel {

// Lowers deep, and takes the shallow tables out of use, until it goes out of scope: no way out can forget it.
class DeepReduzido {
public:
    DeepReduzido(int quanto, bool sem_tabelas) : deep_(deep), HASHf_(HASHf) {
        deep -= quanto;
        if (sem_tabelas) {
            HASHf = 0;
        }
    }
    ~DeepReduzido() {
        deep = deep_;
        HASHf = HASHf_;
    }
    DeepReduzido(const DeepReduzido&) = delete;
    DeepReduzido& operator=(const DeepReduzido&) = delete;

private:
    int deep_;
    std::uint8_t HASHf_;
};

// Plies 2 to 5 keep their reduced runs out of the shallow tables.
inline bool guarda_tabelas(int n) { return n <= 5; }

// --- Late-move reduction and Amr, plies 2 to 9 ---

// A late quiet move of a piece without check, once a sibling has given the parent a value.
template <Cor c, class P>
inline bool reduz(P n, Lance m) {
    return !LmrT[n] && LMR && deep >= tabela_das_plies[n].lmr && valor<!P::par>(n - 1) != valor_inicial<!P::par> &&
           ply[n - 1].tabd[m.origem()] != codigo(c, peao) && ply[n - 1].tabd[m.destino()] == vazia && curr_N[n] >= 5 &&
           !da_xeque<c>(n, m);
}

// A null move for the parent's side, from its first children.
template <Cor c, class P>
inline bool aplica_amr(P n, Lance m) {
    return !AmrT[n] && LMR && deep >= tabela_das_plies[n].amr && curr_N[n] <= 4 && !da_xeque<c>(n, m);
}

// Runs the node, first reduced where a rule says so, and again in full where the reduced value would cut the parent.
// Tells whether a free move has refuted the parent: the value then stands.
template <Cor c, class P>
bool tenta(P n, Lance m) {
    ++curr_N[n];
    if (reduz<c>(n, m)) {
        conta(Regra::reducao);
        {
            const DeepReduzido guarda(2, guarda_tabelas(n));
            corre<c>(n, m, false);
        }
        if (!corta_o_pai(n)) {
            return false;
        }
        conta(Regra::reducao_repetida);
        LmrT[n] = 1;
    } else if (aplica_amr<c>(n, m)) {
        conta(Regra::amr);
        {
            const DeepReduzido guarda(2, guarda_tabelas(n));
            corre<c>(n, m, true);
        }
        if (corta_o_pai(n)) {
            conta(Regra::amr_refuta);
            return true;
        }
        AmrT[n] = 1;
    }
    corre<c>(n, m, false);
    return false;
}

// --- Null move, plies 1 to 5 ---

// Takes the bounds of the node's own parity out of the chains until it goes out of scope.
template <class P>
class LimitesNeutros {
public:
    explicit LimitesNeutros(P n) : n_(n) {
        for (int k = n_ - 2; k >= 0; k -= 2) {
            guardados_[k] = valor<P::par>(k);
            valor<P::par>(k) = valor_inicial<P::par>;
        }
    }
    ~LimitesNeutros() {
        for (int k = n_ - 2; k >= 0; k -= 2) {
            valor<P::par>(k) = guardados_[k];
        }
    }
    LimitesNeutros(const LimitesNeutros&) = delete;
    LimitesNeutros& operator=(const LimitesNeutros&) = delete;

private:
    P n_;
    std::array<float, 4> guardados_{};
};

// Whether some node above, of the other parity than n, has a value already.
template <class P>
inline bool ha_valor_acima(P n) {
    for (int k = n - 1; k >= 1; k -= 2) {
        if (valor<!P::par>(k) != valor_inicial<!P::par>) {
            return true;
        }
    }
    return false;
}

template <Cor c, class P>
inline bool permite_null_move(P n) {
    const LinhaDaPly& linha = tabela_das_plies[n];
    return deep >= linha.null_deep && NULL_MOVE >= linha.null_move && npecas[outra(c)] >= 5 && npecas[c] >= 3 &&
           ((!P::par && SCANT) || ha_valor_acima(n));
}

// The null window: just under the least bound above an even node, just over the highest above an odd one.
template <class P>
inline void abre_janela_nula(P n) {
    float limite = valor<!P::par>(n - 1);
    for (int k = n - 3; k >= 0; k -= 2) {
        const float v = valor<!P::par>(k);
        limite = (P::par ? v < limite : v > limite) ? v : limite;
    }
    valor<P::par>(n) = static_cast<float>(static_cast<double>(limite) + (P::par ? -0.001 : 0.001));
}

// The side that should reply passes, and c plays twice: the replies of c are tried at ply n + 1. Tells whether the
// node is settled, with its value set.
template <Cor c, class P>
bool passe_nulo(P n, Lance m) {
    if (!permite_null_move<c>(n) || da_xeque<c>(n, m)) {
        return false;
    }
    conta(Regra::null_move);
    zera_filhos(n);
    avalia_lance<c>(ply[n - 1].tabd, m);
    const auto filha = n.filha();
    ply[filha].material = material_depois<c>(ply[n - 1], m);
    {
        const DeepReduzido guarda(2, true);
        const LimitesNeutros<P> neutros(n);
        abre_janela_nula(n);
        valor<!P::par>(filha) = valor_inicial<!P::par>;
        nd = n;
        desce<c>(n - 1, filha, m);
        ply[filha].joga_com_b_deep = c == brancas ? 1 : 0;
        corte<!P::par>(filha) = 0;
        ordem_dos_lances<c>(filha);
    }
    const float v = valor<!P::par>(filha);
    if ((P::par ? v < mate_minimo : v > -mate_minimo) && cruza_a_cadeia<P::par>(v, n - 1)) {
        conta(Regra::null_move_resolve);
        valor<P::par>(n) = v;
        return true;
    }
    return false;
}

// --- IID, plies 2 and 3 ---

// A shallower run that fills the stored moves of the plies below. Tells whether it ran.
template <Cor c, class P>
inline bool passe_iid(P n, Lance m) {
    constexpr int deep_minimo = 7;
    if (deep < deep_minimo) {
        return false;
    }
    conta(Regra::iid);
    const DeepReduzido guarda(4, true);
    corre<c>(n, m, false);
    return true;
}

}  // namespace ondrel
