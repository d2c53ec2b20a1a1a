#include "search/root_routines.h"

#include "base/bounds.h"
#include "base/probe.h"
#include "base/root.h"
#include "board/castling.h"
#include "board/repetition.h"
#include "eval/root_trial.h"
#include "eval/strategy.h"
#include "search/tree.h"

#include <cassert>
#include <span>

namespace ondrel {

namespace {

// Victims by Etapa; vazia for the quiet moves.
constexpr std::array<Peca, 6> vitima{vazia, peao, bispo, cavalo, torre, dama};

struct Visita {
    Etapa etapa;
    bool ch;
    Peca piece;
    int f, r;
};

// Takes the move as the best one so far.
void guarda_melhor(Lance m, float v) {
    E = v;
    abcd = m;
    aab_ddb = m;
    X = 0;
}

// Searches the move and folds its value in. Tells whether the root has enough.
template <Cor c>
bool busca(const Visita& v, Lance m) {
    ++nodes;
    observa_filho(1, m, beta[1], [m] { deep_1<c>(m); });
    if (beta[1] > alfa[0]) {
        alfa[0] = beta[1];
    }
    if (beta[1] > E) {
        guarda_melhor(m, beta[1]);
        if (v.piece == peao && m.b == fila(c, 6)) {
            PRs = 'q';
        }
    }
    if (alfa[0] >= MAXcut[0]) {
        corte_MAXcut = 1;
    }
    return corte_MAXcut;
}

bool passa_pela_porta(const Visita& v) { return TEST1IID && (XEQUE != 0) == v.ch; }

// --- Classes kept ---
//
// Every visit of a root move would make its trial and classify it, at all 201 values of ataque. But the class of a
// move, its check and its legality are the same at every visit of a pass: they are worked out once, and a move is
// visited in full only where it is searched. Castling alone is judged by what the visit before it left, be it of the
// pass or of the search before, so that the last move passed by is remembered and visited then, or at the end of the
// search at the latest, before tab changes.

struct Classe {
    bool conhecida = false;
    std::uint8_t Y = 0, XEQUE = 0;
    int ESTRATEGIA = 0;
};

std::array<std::array<Classe, 64>, 64> classes;  // by from-square and to-square
Lance passado = nenhum_lance;                    // the last move passed by; a = -1: the state is that of the last visit

// What a visit leaves of the move on the board, the maps and the flags.
template <Cor c>
void visita(Lance m) {
    init_tabuleiro2(m);
    verifica_rei<c>();
    verifica_xeque<c>();
    passado = nenhum_lance;
}

template <Cor c>
const Classe& classe_de(Lance m) {
    Classe& x = classes[m.origem()][m.destino()];
    if (!x.conhecida) {
        visita<c>(m);
        classifica<c>();
        x = {true, Y, XEQUE, ESTRATEGIA};
    }
    return x;
}

// Whether the move is one that this routine searches at this value of ataque.
template <Cor c>
bool da_classe(const Visita& v, Lance m) {
    const Classe& x = classe_de<c>(m);
    const bool serve = !x.Y && x.ESTRATEGIA == ataque && (x.XEQUE != 0) == v.ch;
#if ONDREL_CHECKED
    visita<c>(m);
    classifica<c>();
    assert(Y == x.Y && XEQUE == x.XEQUE && ESTRATEGIA == x.ESTRATEGIA);
#else
    if (!serve) {
        passado = m;
    }
#endif
    return serve;
}

// Leaves everything as the last visit would have left it.
template <Cor c>
void chega_ao_ultimo_visitado() {
    if (passado.a != -1) {
        visita<c>(Lance{passado});
        classifica<c>();
    }
}

// A root move of the stage. Tells whether the root has enough.
template <Cor c>
bool candidato(const Visita& v, Lance m) {
    if (!da_classe<c>(v, m)) {
        return false;
    }
    visita<c>(m);
    verifica_estrategia<c>();
    if (v.piece != peao) {
        verifica_empate();  // a pawn move cannot repeat a position
    }
    if (!passa_pela_porta(v)) {
        return false;
    }
    if (v.piece == peao) {
        return busca<c>(v, m);
    }
    if (!pempate) {
        if (busca<c>(v, m)) {
            return true;
        }
        if (Y) {  // as the deeper search has left it, like pempate below
            return false;
        }
    }
    if (pempate) {
        EP = static_cast<float>(emp);
        if (EP > E) {
            alfa[0] = EP;
            guarda_melhor(m, EP);
        }
    }
    return false;
}

template <Cor c>
bool cabe(const Visita& v, int x) {
    return x == codigo(outra(c), vitima[v.etapa]);
}

template <Cor c>
bool aos_saltos(const Visita& v, std::span<const Passo> saltos) {
    for (const Passo s : saltos) {
        const Lance m{v.f, v.r, v.f + s.file, v.r + s.rank};
        if (no_tabuleiro(m.c, m.d) && cabe<c>(v, tab[m.destino()]) && candidato<c>(v, m)) {
            return true;
        }
    }
    return false;
}

template <Cor c>
void nos_raios(const Visita& v, std::span<const Passo> raios) {
    for (const Passo s : raios) {
        Lance m{v.f, v.r, v.f + s.file, v.r + s.rank};
        for (; no_tabuleiro(m.c, m.d); m.c += s.file, m.d += s.rank) {
            const int x = tab[m.destino()];
            if (cabe<c>(v, x) && candidato<c>(v, m)) {
                return;
            }
            if (x != vazia) {
                break;
            }
        }
    }
}

bool livre_em(int f, int r) { return no_tabuleiro(f, r) && tab[casa(f, r)] == vazia; }

template <Cor c>
void livres_de_peao(const Visita& v) {
    const int um = v.r + sinal(c);
    const int dois = um + sinal(c);
    if (fila(c, v.r) == 1 && livre_em(v.f, um) && livre_em(v.f, dois) && candidato<c>(v, {v.f, v.r, v.f, dois})) {
        return;
    }
    if (livre_em(v.f, um)) {
        candidato<c>(v, {v.f, v.r, v.f, um});
    }
}

template <Cor c>
void capturas_de_peao(const Visita& v) {
    constexpr std::array<Passo, 2> diagonais{{{1, sinal(c)}, {-1, sinal(c)}}};
    if (aos_saltos<c>(v, diagonais) || v.etapa != positive1 || fila(c, v.r) != 4) {
        return;
    }
    for (const Passo s : diagonais) {
        const int para_f = v.f + s.file;
        if (livre_em(para_f, v.r + s.rank) && jm.p_ah[outra(c)][para_f] &&
            candidato<c>(v, {v.f, v.r, para_f, v.r + s.rank})) {
            return;
        }
    }
}

// One side of castling. Tells whether the root has enough.
template <Cor c>
bool roca_na_raiz(const Visita& v, Lado k) {
    verifica_xequemate<c>(0, v.f, v.r);
    if (XM || !roque_livre<c>(0, k)) {
        return false;
    }
    chega_ao_ultimo_visitado<c>();
    // White's long castling with check is judged by the squares, the gate and the board of the short one.
    verifica_roque<c>(c == brancas && v.ch ? lado_curto : k);
    verifica_xeque<c>();
    verifica_estrategia<c>();
    if (R || ESTRATEGIA != ataque || !passa_pela_porta(v)) {
        return false;
    }
    roque[c] = 10;
    return busca<c>(v, lance_do_roque(c, k));
}

template <Cor c>
void capturas_de_rei(const Visita& v) {
    if (!aos_saltos<c>(v, passos_do_rei) && v.etapa == positive1 && !roca_na_raiz<c>(v, lado_curto)) {
        roca_na_raiz<c>(v, lado_longo);
    }
}

}  // namespace

void esquece_classes() { classes = {}; }

template <Cor c>
void conclui_visitas() {
    chega_ao_ultimo_visitado<c>();
}

template void conclui_visitas<brancas>();
template void conclui_visitas<pretas>();

template <Cor c>
void analise100(Etapa etapa, bool ch, Peca piece, int file, int rank) {
    const Visita v{etapa, ch, piece, file, rank};
    switch (piece) {
        case peao: return etapa == livre ? livres_de_peao<c>(v) : capturas_de_peao<c>(v);
        case cavalo: aos_saltos<c>(v, saltos_do_cavalo); return;
        case bispo: return nos_raios<c>(v, passos_do_bispo);
        case torre: return nos_raios<c>(v, passos_da_torre);
        case dama: return nos_raios<c>(v, passos_da_dama);
        default: return capturas_de_rei<c>(v);
    }
}

template void analise100<brancas>(Etapa etapa, bool ch, Peca piece, int file, int rank);
template void analise100<pretas>(Etapa etapa, bool ch, Peca piece, int file, int rank);

}  // namespace ondrel
