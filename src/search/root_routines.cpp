#include "search/root_routines.h"

#include "board/castling.h"
#include "board/repetition.h"
#include "eval/root_trial.h"
#include "eval/strategy.h"
#include "search/move_walks.h"
#include "search/observers.h"
#include "search/ply_one.h"
#include "search/ply_table.h"
#include "search/probe.h"
#include "search/state.h"

namespace ondrel {
namespace {

// Victims by Stage; no_piece for the quiet moves.
constexpr std::array<Piece, 6> victim_of_stage{no_piece, peao, bispo, cavalo, torre, dama};

// What a routine is called with.
struct Routine {
    Stage stage;
    bool ch;
    Piece piece;
    int from;
};

// --- The gate of the pass ---

// In a SCAN1 pass only the stored best move goes on to the search, in a SCANT pass all but it.
void ask_gate(Move m) {
    const bool is_best = m == slots.aab_ddb;
    pass.TEST1IID = (pass.SCAN1 && !is_best) || (pass.SCANT && is_best) ? 0 : 1;
}

bool passes_gate(const Routine& r, Move m) {
    return pass.TEST1IID && observers.root_filter.passes(m) && (trial.XEQUE != 0) == r.ch;
}

// --- Classes kept ---
//
// Every visit of a root move would make its trial and classify it, at all 201 values of ataque. But the class of a move,
// its check and its legality are the same at every visit of a pass: they are worked out once, and a move is visited in
// full only where it is searched. Castling alone is judged by what the visit before it left, be it of the pass or of the
// search before: the last move passed by is owed its visit, which is made then, or at the end of the search at the
// latest, before tab changes.

// What a visit leaves of the move on the board, the maps and the flags.
template <Colour c>
void visit(Move m) {
    ask_gate(m);
    init_tabuleiro2<c>(m);
    verifica_rei<c>();
    verifica_xeque<c>();
    visits.owed = no_move;
}

template <Colour c>
const KnownClass& class_of(Move m) {
    KnownClass& x = visits.by_move[m.from()][m.to()];
    if (!x.known) {
        visit<c>(m);
        classify<c>();
        x = {true, !trial.Y, trial.XEQUE != 0, move_class.ESTRATEGIA};
    }
    return x;
}

// Whether the move is one that this routine searches at this value of ataque; if not, it is owed its visit.
template <Colour c>
bool is_of_class(const Routine& r, Move m) {
    const KnownClass& x = class_of<c>(m);
    if (x.legal && x.ESTRATEGIA == pass.ataque && x.gives_check == r.ch) {
        return true;
    }
    visits.owed = m;
    return false;
}

// --- One candidate ---

void keep_as_best(Move m, float v) {
    search.E = v;
    game.abcd = m;
    slots.aab_ddb = m;
}

// Searches the move and takes its value in. Tells whether the root has enough.
template <Colour c>
bool search_root_move(const Routine& r, Move m) {
    ++search.nodes;
    watch_child(1, m, bounds.beta[1], [m] { deep_1<c>(m); });
    const float v = bounds.beta[1];
    if (v > bounds.alfa[0]) {
        bounds.alfa[0] = v;
    }
    if (v > search.E) {
        keep_as_best(m, v);
        if (r.piece == peao && m.from_rank == relative_rank(c, seventh_rank)) {
            game_line.PRs = 'q';
        }
    }
    if (bounds.alfa[0] >= bounds.MAXcut[0]) {
        pass.corte_MAXcut = 1;
    }
    return pass.corte_MAXcut;
}

// A move that repeats a position is not searched: the draw score is its value.
void take_draw(Move m) {
    search.EP = static_cast<float>(search.emp);
    if (search.EP > search.E) {
        bounds.alfa[0] = search.EP;
        keep_as_best(m, search.EP);
    }
}

// A pawn move cannot repeat a position. Tells whether the root has enough.
template <Colour c>
bool try_candidate(const Routine& r, Move m) {
    if (!is_of_class<c>(r, m)) {
        return false;
    }
    visit<c>(m);
    verifica_estrategia<c>(pass.roque);
    if (r.piece == peao) {
        return passes_gate(r, m) && search_root_move<c>(r, m);
    }
    trial.pempate = 0;
    if (pass.pempatee) {
        verifica_empate(Repeats::root_move);
    }
    if (!passes_gate(r, m)) {
        return false;
    }
    if (!trial.pempate) {
        if (search_root_move<c>(r, m)) {
            return true;
        }
        if (trial.Y) {  // as the deeper search has left it, like pempate below
            return false;
        }
    }
    if (trial.pempate) {
        take_draw(m);
    }
    return false;
}

// --- The routines ---

template <Colour c>
bool try_if_victim(const Routine& r, Move m) {
    return tab[m.to()] == code(other(c), victim_of_stage[r.stage]) && try_candidate<c>(r, m);
}

template <Colour c>
void analise_peao(const Routine& r) {
    const auto try_it = [&r](Move m) { return try_candidate<c>(r, m); };
    if (r.stage == livre) {
        pawn_pushes<c>(ply[0], r.from, try_it);
        return;
    }
    const auto try_capture = [&r](Move m) { return try_if_victim<c>(r, m); };
    if (!pawn_captures<c>(r.from, try_capture) && r.stage == positive1) {
        en_passant_captures<c>(ply[0], r.from, try_it);
    }
}

// One side of castling. Tells whether the root has enough.
template <Colour c>
bool castle_at_root(const Routine& r, CastlingSide k) {
    verifica_xequemate<c>(0, r.from);
    if (trial.XM || !may_castle<c>(0, k)) {
        return false;
    }
    make_owed_visit<c>();
    // White's long castling with check is judged by the squares, the gate and the board of the short one.
    const CastlingSide judged = c == white && r.ch ? short_side : k;
    ask_gate(castling_move(c, judged));
    verifica_roque<c>(0, judged);
    verifica_xeque<c>();
    verifica_estrategia<c>(pass.roque);
    if (trial.R || move_class.ESTRATEGIA != pass.ataque || !passes_gate(r, castling_move(c, k))) {
        return false;
    }
    pass.roque[c] = ply_table[0].castling;
    return search_root_move<c>(r, castling_move(c, k));
}

template <Colour c>
void analise_piece(const Routine& r) {
    if (r.stage == livre) {
        quiet_moves(ply[0], r.piece, r.from, [&r](Move m) { return try_candidate<c>(r, m); });
        return;
    }
    const auto try_capture = [&r](Move m) { return try_if_victim<c>(r, m); };
    if (!moves_onto_men(ply[0], r.piece, r.from, try_capture) && r.piece == rei && r.stage == positive1 &&
        !castle_at_root<c>(r, short_side)) {
        castle_at_root<c>(r, long_side);
    }
}

}  // namespace

void forget_classes() { visits.by_move = {}; }

template <Colour c>
void make_owed_visit() {
    if (is_move(visits.owed)) {
        visit<c>(Move{visits.owed});
        classify<c>();
    }
}

template <Colour c>
void analise100(Stage stage, bool ch, Piece piece, int from) {
    const Routine r{stage, ch, piece, from};
    if (piece == peao) {
        analise_peao<c>(r);
    } else {
        analise_piece<c>(r);
    }
}

template void make_owed_visit<white>();
template void make_owed_visit<black>();
template void analise100<white>(Stage stage, bool ch, Piece piece, int from);
template void analise100<black>(Stage stage, bool ch, Piece piece, int from);

}  // namespace ondrel
