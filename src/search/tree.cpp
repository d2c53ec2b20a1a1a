#include "search/tree.h"

#include "board/repetition.h"
#include "memory/shallow_tables.h"
#include "search/reductions.h"
#include "search/scout.h"
#include "search/seams.h"
#include "search/staged_generators.h"

#include <type_traits>

namespace ondrel {

// --- Plies 3 to 5: the shallow tables answer or learn ---

// The main routine: everything behind the scan.
template <Cor c, class P>
void deep_com_tabela(P n, Lance m) {
    const LinhaDaPly& linha = tabela_das_plies[n];
    if (deep < linha.volta_deep) {
        return;
    }
    if (n == 3) {
        LmrT[4] = 0;
        AmrT[4] = 0;
    }
    const bool guarda = HASHf && (n == 3 || deep >= linha.scan_deep);
    if (guarda) {
        hash_table_build(n, c);
    }
    const bool resolvido = passe_nulo<c>(n, m) || (linha.iid && passe_iid<c>(n, m) &&
                                                   (P::par ? alfa[n] <= -mate_minimo : beta[n] >= mate_minimo));
    if (!resolvido) {
        tenta<c>(n, m);
    }
    if (guarda) {
        hash_table_store(n, c, valor<P::par>(n));
    }
}

template <Cor c, class P>
void deep_com_scan(P n, Lance m) {
    HASHTABLE[n] = 0;
    if (n != 3) {
        LmrT[n + 1] = 0;
        AmrT[n + 1] = 0;
    }
    if (HASHf) {
        faz_ensaio<c>(n, m);
    }
    if (HASHf && deep >= tabela_das_plies[n].scan_deep) {
        conta(Regra::scan);
        hash_table_scan(n, c);
    }
    if (HASHTABLE[n]) {
        conta(Regra::scan_acerta);
    } else {
        deep_com_tabela<c>(n, m);
    }
}

// --- Ply 2: repetition, and the scout pass ---

template <Cor c, class P>
void deep_2(P n, Lance m) {
    if (deep < tabela_das_plies[n].volta_deep) {
        return;
    }
    faz_ensaio<c>(n, m);
    verifica_empate();
    if (pempate) {
        conta(Regra::repeticao);
        alfa[n] = static_cast<float>(emp);
        return;
    }
    if (passe_nulo<c>(n, m)) {
        return;
    }
    if (passe_iid<c>(n, m) && alfa[n] <= -mate_minimo) {
        return;
    }
    if (PVS && beta[1] != inicio_beta) {
        conta(Regra::sonda_da_ply_2);
        bool refutado = false;
        {
            const JanelaDaPly2 janela;
            refutado = tenta<c>(n, m);
        }
        if (refutado || alfa[n] > beta[1] - 1.0F || alfa[n] <= -MAXcutt[1]) {
            conta(Regra::sonda_da_ply_2_resolve);
            return;
        }
    }
    tenta<c>(n, m);
}

// --- Every ply below the first ---

template <Cor c, class P>
void deep_(P n, Lance m) {
    switch (tabela_das_plies[n].memoria) {
        case Memoria::repeticao: return deep_2<c>(n, m);
        case Memoria::tabela_rasa: return deep_com_scan<c>(n, m);
        case Memoria::nenhuma: break;
    }
    if (n < plies_seletivas) {
        tenta<c>(n, m);
    } else if (n < ultima_ply) {
        corre<c>(n, m, false);
    } else if (deep == tabela_das_plies[n].folha_deep) {
        avalia_lance<c>(ply[n - 1].tabd, m);
        folha<c>(n, m);
    }
}

// --- Ply 1 ---

namespace {

constexpr PlyUm ply_um{1};

template <Cor c>
bool captura_guardada_da_ply_1() {
    if (aag_ddg[1].a == -1) {
        return false;
    }
    const int x = ply[1].tabd[aag_ddg[1].origem()];
    if (da_cor(c, x)) {
        analisepositive_deep1<c>(etapa_do_teste, static_cast<Peca>(valor_da_peca(x)), aag_ddg[1].a, aag_ddg[1].b);
    }
    return corte_alfa[0];
}

template <Cor c>
void ordem_da_ply_1() {
    prepara_lances<c>(ply_um);
    if (captura_guardada_da_ply_1<c>()) {
        return;
    }
    for (int K = 5; K >= 1; --K) {
        for (const Peca piece : ordem_das_pecas) {
            if (por_peca<c>(ply_um, piece, [&](int f, int r) { analisepositive_deep1<c>(K, piece, f, r); })) {
                return;
            }
        }
    }
    if (!livre_guardado<c>(ply_um)) {
        livres<c>(ply_um);
    }
}

void comeca_linha(Lance m) {
    for (auto& texto : A0_D7) {
        texto.fill(' ');
    }
    escreve_na_linha(1, m);
}

// Without depth a root move is worth its material.
template <Cor c>
void valor_sem_busca(Lance m) {
    avalia_lance<c>(tab, m);
    const std::array<float, 2> material = material_depois<c>(ply[0], m);
    beta[1] = material[c] - material[outra(c)];
}

// One complete run of the node of ply 1, its bound starting at `inicio`.
template <Cor c>
void corre_ply_1(Lance m, float valor_de_partida) {
    deeppromo = 1;
    comeca_linha(m);
    if (deep == 0) {
        valor_sem_busca<c>(m);
        return;
    }
    zera_filhos(1);
    avalia_lance<c>(tab, m);
    beta[1] = valor_de_partida;
    ply[1].material = material_depois<c>(ply[0], m);
    nd = 1;
    desce<c>(0, 1, m);
    corte_alfa[0] = 0;
    ordem_da_ply_1<outra(c)>();
    sem_resposta(ply_um);
}

// The IID pass: leaves BETA1.
template <Cor c>
void iid_da_ply_1(Lance m) {
    conta(Regra::iid);
    const DeepReduzido guarda(4, true);
    if (TURBO) {
        turbo_largo();
    }
    corre_ply_1<c>(m, inicio_beta);
    devolve_limites_pares();
    BETA1 = beta[1];
    deeppromo = 0;
}

// The scout pass asks whether the move can matter at all. Tells whether it settles the move.
template <Cor c>
bool sonda_da_ply_1(Lance m, bool iid_correu) {
    conta(Regra::sonda_da_ply_1);
    PVSm = 1;
    abre_turbo(iid_correu);
    abre_janela_de_sonda();
    ++curr;
    corre_ply_1<c>(m, inicio_beta);
    PVSm = 0;
    const float MAXcut2 = MAXcut[2];
    devolve_limites_pares();
    const bool falhou_no_9 = beta[1] <= alfa[0] && !DEEP9 && deep <= 9;
    if (SCAN1 && !falhou_no_9 && (beta[1] < ALFA0 + 5.0F || beta[1] >= 15.0F + saldo_da_raiz())) {
        return true;
    }
    return SCANT && (static_cast<double>(alfa[0]) + 0.001 > static_cast<double>(beta[1]) || beta[1] >= MAXcut2);
}

// A best move that fails at the critical depth 9 widens the root window. Gives the start value of the full pass.
template <Cor c>
float alarga_a_raiz() {
    if (!SCAN1 || DEEP9 || deep != 9 || alfa[0] < beta[1]) {
        return inicio_beta;
    }
    conta(Regra::alarga_a_raiz);
    const float partida = alfa[0];
    const long double linha =
        -15.0L + materialflot0 + valor_da_peca(peca) + ln_da_razao(material_a[c], material_a[outra(c)]) * MQ;
    if (alfa[0] >= -15.0F && E >= linha) {
        alfa[0] -= 75.0F;
        E -= 75.0F;
    }
    if (alfa[0] < -15.0F || E < linha) {
        alfa[0] = inicio_alfa;
        E = -10000000.0F;
    }
    return partida;
}

template <Cor c>
void passes_da_ply_1(Lance m) {
    // Both sums go without the hundred of a king: differences stand, and ratios are those of the men.
    ply[0].mascaras = mascaras_de(tab);
    prepara_julgamento(c);
    ply[0].material = {material_a[brancas] - 100.0F, material_a[pretas] - 100.0F};
    bool iid_correu = false;
    if (deep >= tabela_das_plies[1].null_deep) {
        if (passe_nulo<c>(ply_um, m)) {
            return;
        }
        iid_da_ply_1<c>(m);
        iid_correu = true;
        if (beta[1] >= mate_minimo) {
            return;
        }
    }
    const bool sonda = PVS && (SCAN1 || (SCANT && ALFA0 != inicio_alfa));
    if (sonda && sonda_da_ply_1<c>(m, iid_correu)) {
        conta(Regra::sonda_da_ply_1_resolve);
        info_deept();
        return;
    }
    if (sonda) {
        LMRtest = 1;
    } else {
        ++curr;
    }
    conta(Regra::passe_pleno);
    const float partida = alarga_a_raiz<c>();
    abre_turbo(iid_correu);
    corre_ply_1<c>(m, partida);
    devolve_limites_pares();
    if (SCAN1 || SCANT) {
        info_deept();
    }
}

}  // namespace

template <Cor c>
void deep_1(Lance m) {
    PVSm = 0;
    LMRtest = 0;
    BETA1 = inicio_beta;
    if (deep >= 0) {
        passes_da_ply_1<c>(m);
    }
    deeppromo = 0;
    roque = {};
}

template void deep_1<brancas>(Lance m);
template void deep_1<pretas>(Lance m);

#if ONDREL_TRACE

namespace {

// Calls `f` with the colour and the ply as the templates want them.
template <class F>
void com_cor_e_ply(int n, Cor c, F f) {
    const auto com_ply = [&](auto cor) { n % 2 == 0 ? f(cor, PlyMovel<true>{n}) : f(cor, PlyMovel<false>{n}); };
    c == brancas ? com_ply(std::integral_constant<Cor, brancas>{}) : com_ply(std::integral_constant<Cor, pretas>{});
}

}  // namespace

void ordem_dos_lances_da_ply(int n, Cor c) {
    com_cor_e_ply(n, c, [n](auto cor, auto p) {
        if (n == 1) {
            ordem_da_ply_1<cor()>();
        } else {
            ordem_dos_lances<cor()>(p);
        }
    });
}

void gerador_da_ply(int n, Cor c, int vitima, bool teste) {
    com_cor_e_ply(n, c, [=](auto cor, auto p) {
        prepara_lances<cor()>(p);
        teste ? gerador_deep<cor(), true>(p, vitima) : gerador_deep<cor(), false>(p, vitima);
    });
}

void analiselivre_da_ply(int n, Cor c, int origem, bool teste) {
    const auto piece = static_cast<Peca>(valor_da_peca(ply[n].tabd[origem]));
    com_cor_e_ply(n, c, [=](auto cor, auto p) {
        prepara_lances<cor()>(p);
        teste ? analiselivre_deep<cor(), true>(p, piece, origem / 8, origem % 8)
              : analiselivre_deep<cor(), false>(p, piece, origem / 8, origem % 8);
    });
}

void analisepositive_peao_da_ply(int n, Cor c, int origem) {
    com_cor_e_ply(n, c, [=](auto cor, auto p) {
        prepara_lances<cor()>(p);
        analisepositive_peao_deep<cor()>(p, origem / 8, origem % 8);
    });
}

void analisepositive_da_ply_1(Cor c, int K, int origem) {
    const auto piece = static_cast<Peca>(valor_da_peca(ply[1].tabd[origem]));
    com_cor_e_ply(1, c, [=](auto cor, auto) {
        prepara_lances<cor()>(ply_um);
        analisepositive_deep1<cor()>(K, piece, origem / 8, origem % 8);
    });
}

void deep_da_ply(int n, Cor c, Lance m) {
    com_cor_e_ply(n, c, [=](auto cor, auto p) {
        if (n == 1) {
            deep_1<cor()>(m);
        } else {
            const PlyMovel<!decltype(p)::par> acima{n - 1};
            prepara_julgamento(n % 2 == 0 ? outra(c) : c);
            prepara_lances<cor()>(acima);
            deep_<cor()>(p, m);
        }
    });
}

#endif

}  // namespace ondrel
