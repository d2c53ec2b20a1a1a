// A node of the tree below the root, from top to bottom: deep_<c><N> for plies 2 to 24, and the steps that ply 1
// (ply_one.cpp) shares with it. A node is given the move that colour c has just chosen at ply N, as yet unplayed, and
// leaves its value in alfa<N> or beta<N>; there is no return value and no move list, and the recursion is node to
// generator to node.
//
// In all of these c is the colour of the incoming move and us the side that replies on tabd<N>. At even plies us is the
// root side and the node maximises, at odd plies it minimises.
#pragma once

#include "board/castling.h"
#include "board/repetition.h"
#include "memory/shallow_tables.h"
#include "search/child_trial.h"
#include "search/filters.h"
#include "search/for_a_time.h"
#include "search/leaf_value.h"
#include "search/move_walks.h"
#include "search/observers.h"
#include "search/ply_table.h"
#include "search/probe.h"
#include "search/state.h"

#include <algorithm>

namespace ondrel {

// --- The steps, in the order in which a node takes them ---

// 1. What may answer for the node before it is searched: a repetition, a shallow table. The caller has counted the node
// and found c's king safe after the move.
template <Colour c, class P>
void deep_(P n, Move m);
// 2. The null-move pass, plies 1 to 5. Tells whether the node is settled, with its value set.
template <Colour c, class P>
bool null_move_pass(P n, Move m);
// 3. The IID pass, plies 2 and 3. Tells whether it ran.
template <Colour c, class P>
bool iid_pass(P n, Move m);
// 4. The retry loop, plies 2 to 9: a run, reduced first where a rule says so. Tells whether a free move for the opponent
// has refuted the parent: the value then stands.
template <Colour c, class P>
bool run_with_retries(P n, Move m);
// 5. One run at the present deep: leaf tests, material, filters, the copy of the ply above and the move.
template <Colour c, class P>
void run(P n, Move m, bool amr);
// 6. The replies, in their order.
template <Colour us, class P>
void search_replies(P n);
// 7. A reply: the child searched, its value folded in, the cut. Tells whether it ends the move loop of ply n. With
// `last_ply_rule` the last ply that generates replies is content with its first one.
template <Colour us, class P>
bool search_reply(P n, Move m, bool last_ply_rule);
// 8. The end without a reply.
template <class P>
void end_without_reply(P n);

// --- 1. What may answer ---

// The main routine of plies 3 to 5: everything behind the scan.
template <Colour c, class P>
void deep_with_table(P n, Move m);

// The window of the node on entry, as its key.
inline NodeKey key_of(int n) {
    float highest_alfa = std::max(bounds.alfa[2], bounds.alfa[0]);
    float lowest_beta = bounds.beta[1];
    if (n == 5) {
        highest_alfa = std::max(highest_alfa, bounds.alfa[4]);
    }
    if (n >= 4) {
        lowest_beta = std::min(lowest_beta, bounds.beta[3]);
    }
    return {trial.tab2, highest_alfa, lowest_beta, static_cast<float>(search.deep), root_move.PVSm, root_move.PVSm2};
}

// Clears what the children of ply n count.
inline void clear_flags_of_children(int n) {
    if (n + 1 < selective_plies) {
        tree.LmrT[n + 1] = 0;
        tree.AmrT[n + 1] = 0;
    }
}

template <Colour c, class P>
void deep_with_scan(P n, Move m) {
    const PlyRow& row = ply_table[n];
    if (n == 3) {
        tell_shallow_node_entered();
    } else {
        clear_flags_of_children(n);
    }
    if (search.HASHf) {
        make_trial<c>(n, m);
    }
    if (search.HASHf && search.deep >= row.scan_deep) {
        count_rule(Rule::scan);
        if (const auto known = hash_table_scan(n, c, key_of(n))) {
            count_rule(Rule::scan_hits);
            value<P::even>(n) = *known;
            return;
        }
    }
    deep_with_table<c>(n, m);
}

template <Colour c, class P>
void deep_with_table(P n, Move m) {
    const PlyRow& row = ply_table[n];
    if (search.deep < row.least_deep) {
        return;
    }
    if (n == 3) {
        clear_flags_of_children(n);
    }
    const bool keeps = search.HASHf && (n == 3 || search.deep >= row.scan_deep);
    if (keeps) {
        hash_table_build(n, c, key_of(n));
    }
    const auto is_mate = [n] { return P::even ? bounds.alfa[n] <= -least_mate : bounds.beta[n] >= least_mate; };
    const bool settled = null_move_pass<c>(n, m) || (row.iid && iid_pass<c>(n, m) && is_mate());
    if (!settled) {
        run_with_retries<c>(n, m);
    }
    if (keeps && hash_table_store(n, c, value<P::even>(n))) {
        search.FULL[n] = 1;
    }
}

// Ply 2: repetition, and a scout pass before the full one.
template <Colour c, class P>
void deep_2(P n, Move m) {
    tell_shallow_node_entered();
    if (search.deep < ply_table[n].least_deep) {
        return;
    }
    make_trial<c>(n, m);
    trial.pempate = 0;
    if (pass.pempatee) {
        verifica_empate(Repeats::reply);
    }
    if (trial.pempate) {
        count_rule(Rule::repetition);
        bounds.alfa[n] = static_cast<float>(search.emp);
        return;
    }
    if (null_move_pass<c>(n, m) || (iid_pass<c>(n, m) && bounds.alfa[n] <= -least_mate)) {
        return;
    }
    if (options.PVS && bounds.beta[1] != start_of_beta) {
        count_rule(Rule::scout_of_ply_2);
        bool refuted = false;
        {
            const ScoutLimits limits;
            refuted = run_with_retries<c>(n, m);
        }
        if (refuted || bounds.alfa[n] > bounds.beta[1] - ScoutLimits::width || bounds.alfa[n] <= -bounds.MAXcutt[1]) {
            count_rule(Rule::scout_of_ply_2_settles);
            return;
        }
    }
    run_with_retries<c>(n, m);
}

template <Colour c, class P>
void deep_(P n, Move m) {
    switch (ply_table[n].answer) {
        case Answer::repetition: return deep_2<c>(n, m);
        case Answer::shallow_table: return deep_with_scan<c>(n, m);
        case Answer::none: break;
    }
    if (n < selective_plies) {
        run_with_retries<c>(n, m);
    } else if (n < last_ply) {
        run<c>(n, m, false);
    } else if (search.deep == ply_table[n].leaf_deep) {
        leaf<c>(n, m);
    }
}

// --- 2. Null move: the side that should reply passes, and c plays twice ---

constexpr int null_move_reduction = 2;
constexpr int least_men_of_passer = 5;
constexpr int least_men_of_mover = 3;
constexpr double null_window = 0.001;

inline void clear_counters_of_children(int n) {
    if (n + 1 < selective_plies) {
        tree.curr_N[n + 1] = 0;
    }
    clear_flags_of_children(n);
}

// Whether some node above, of the other parity than n, has a value already.
template <class P>
inline bool has_value_above(P n) {
    for (int k = n - 1; k >= 1; k -= 2) {
        if (value<!P::even>(k) != start_value<!P::even>) {
            return true;
        }
    }
    return false;
}

template <Colour c, class P>
inline bool allows_null_move(P n) {
    const NullMove rule = ply_table[n].null_move;
    return search.deep >= rule.deep && options.NULL_MOVE >= rule.option &&
           root.npecas[other(c)] >= least_men_of_passer && root.npecas[c] >= least_men_of_mover &&
           ((!P::even && pass.SCANT) || has_value_above(n));
}

// Just under the least bound above an even node, just over the highest above an odd one.
template <class P>
inline void open_null_window(P n) {
    float limit = value<!P::even>(n - 1);
    for (int k = n - 3; k >= 0; k -= 2) {
        const float v = value<!P::even>(k);
        limit = (P::even ? v < limit : v > limit) ? v : limit;
    }
    value<P::even>(n) = static_cast<float>(static_cast<double>(limit) + (P::even ? -null_window : null_window));
}

// Whether v, a value of ply n, crosses a bound of the other side at any of the plies from `nearest` up to the root.
template <bool even>
inline bool crosses_chain(float v, int nearest) {
    for (int k = nearest; k >= 0; k -= 2) {
        if (even ? v >= bounds.beta[k] : v <= bounds.alfa[k]) {
            return true;
        }
    }
    return false;
}

// Copies the ply `from` to ply n and plays there the move m of c.
template <Colour c>
inline void descend(int from, int n, Move m) {
    ply[n].tabd = ply[from].tabd;
    ply[n].jm_D = ply[from].jm_D;
    ply[n].sets = sets_after<c>(ply[from], m);
    init_tabuleiro_ply<c>(ply[n], m);
    ply[n].XEQUE_MATE = 1;
}

template <Colour c, class P>
bool null_move_pass(P n, Move m) {
    if (!allows_null_move<c>(n) || gives_check<c>(n, m)) {
        return false;
    }
    count_rule(Rule::null_move);
    clear_counters_of_children(n);
    appraise<c>(ply[n - 1].tabd, m);
    const auto child = n.child();
    ply[child].material = material_after<c>(ply[n - 1], m);
    {
        const ReducedDepth reduced(null_move_reduction, true);
        const NeutralBounds<P> neutral(n);
        open_null_window(n);
        begin_value(child);
        tree.nd = n;
        descend<c>(n - 1, child, m);
        cut_flag<!P::even>(child) = 0;
        search_replies<c>(child);
        settle(child);
    }
    const float v = value<!P::even>(child);
    if ((P::even ? v < least_mate : v > -least_mate) && crosses_chain<P::even>(v, n - 1)) {
        count_rule(Rule::null_move_settles);
        value<P::even>(n) = v;
        return true;
    }
    return false;
}

// --- 3. IID: a shallower run that fills the stored moves of the plies below ---

constexpr int iid_reduction = 4;
constexpr int least_deep_of_iid = 7;

template <Colour c, class P>
bool iid_pass(P n, Move m) {
    if (search.deep < least_deep_of_iid) {
        return false;
    }
    count_rule(Rule::iid);
    const ReducedDepth reduced(iid_reduction, true);
    run<c>(n, m, false);
    return true;
}

// --- 4. The retry loop ---

constexpr int lmr_reduction = 2;
constexpr int late_child = 5;        // the first that may be reduced
constexpr int last_early_child = 4;  // the last that Amr may try

// Plies 2 to 5 keep their reduced runs out of the shallow tables.
inline bool reduces_without_tables(int n) { return n <= 5; }

// Whether the value of node n would cut its parent.
template <class P>
inline bool cuts_parent(P n) {
    return crosses_chain<!P::even>(value<P::even>(n), n - 2);
}

// A late quiet move of a piece without check, once a sibling has given the parent a value.
template <Colour c, class P>
inline bool is_reduced(P n, Move m) {
    return !tree.LmrT[n] && options.LMR && search.deep >= ply_table[n].lmr &&
           value<!P::even>(n - 1) != start_value<!P::even> && ply[n - 1].tabd[m.from()] != code(c, peao) &&
           ply[n - 1].tabd[m.to()] == no_piece && tree.curr_N[n] >= late_child && !gives_check<c>(n, m);
}

// Amr: a null move for the parent's side, from its first children.
template <Colour c, class P>
inline bool is_tried_by_amr(P n, Move m) {
    return !tree.AmrT[n] && options.LMR && search.deep >= ply_table[n].amr && tree.curr_N[n] <= last_early_child &&
           !gives_check<c>(n, m);
}

template <Colour c, class P>
inline void run_reduced(P n, Move m, bool amr) {
    const ReducedDepth reduced(lmr_reduction, reduces_without_tables(n));
    run<c>(n, m, amr);
}

template <Colour c, class P>
bool run_with_retries(P n, Move m) {
    ++tree.curr_N[n];
    if (is_reduced<c>(n, m)) {
        count_rule(Rule::reduction);
        run_reduced<c>(n, m, false);
        if (!cuts_parent(n)) {
            return false;
        }
        count_rule(Rule::reduction_repeated);
        tree.LmrT[n] = 1;
    } else if (is_tried_by_amr<c>(n, m)) {
        count_rule(Rule::amr);
        run_reduced<c>(n, m, true);
        if (cuts_parent(n)) {
            count_rule(Rule::amr_refutes);
            return true;
        }
        tree.AmrT[n] = 1;
    }
    run<c>(n, m, false);
    return false;
}

// --- 5. One run ---

// 5a. A leaf by depth or, beyond the nominal depth, by a quiet move of a piece without check.
template <Colour c, class P>
inline bool ends_line(P n, Move m) {
    const PlyRow& row = ply_table[n];
    if (P::even && search.deep == row.leaf_deep) {
        return true;
    }
    if (!row.gate.holds(pass.DEEP)) {
        return false;
    }
    const Board& before = ply[n - 1].tabd;
    if (before[m.to()] != no_piece || before[m.from()] == code(c, peao) || gives_check<c>(n, m)) {
        return false;
    }
    count_rule(Rule::gate);
    return true;
}

// 5d. Notes the move of ply n in the line shown, if it is the first one searched there.
constexpr int plies_shown = 8;

inline void show_in_line(int n, Move m) {
    auto& text = root_move.A0_D7[n - 1];
    if (text[0] == ' ') {
        text = {static_cast<char>('a' + m.from_file), static_cast<char>('1' + m.from_rank),
                static_cast<char>('a' + m.to_file), static_cast<char>('1' + m.to_rank)};
    }
}

// The Amr form of `descend`: ply n is the plain copy of the ply above, and the mover has passed.
inline void descend_without_move(int n) {
    ply[n].tabd = ply[n - 1].tabd;
    ply[n].jm_D = ply[n - 1].jm_D;
    ply[n].sets = ply[n - 1].sets;
    ply[n].X_D = ply[n - 1].X_D;
    ply[n].XEQUE_MATE = 1;
}

// Plays the move and tries the replies.
template <Colour c, class P>
inline void expand(P n, Move m, bool amr) {
    tree.nd = n;
    if (amr) {
        descend_without_move(n);
    } else {
        if (n <= plies_shown) {
            show_in_line(n, m);
        }
        descend<c>(n - 1, n, m);
    }
    cut_flag<P::even>(n) = 0;
    search_replies<other(c)>(n);
    end_without_reply(n);
    hand_up(n);
}

// 5c. The filters of the odd plies stand before the copy, and may end the node or change deep; its exit restores deep.
template <Colour c, class P>
inline void expand_odd(P n, Move m, bool amr) {
    int saved_deep = search.deep;
    bool ended = vertical_filter<c>(n, m);
    if (!ended) {
        extend(n);
        ended = out_of_time(n, saved_deep);
    }
    if (!ended) {
        expand<c>(n, m, amr);
    }
    search.deep = saved_deep;
}

// In an Amr run the mover passes: no leaf test, no move, the material of the ply above.
template <Colour c, class P>
void run(P n, Move m, bool amr) {
    clear_counters_of_children(n);
    if (!amr && ends_line<c>(n, m)) {
        return n == 2 ? leaf_of_ply_2<c>(m) : leaf<c>(n, m);
    }
    if (!amr && search.deep < n) {
        return;
    }
    appraise<c>(ply[n - 1].tabd, m);
    begin_value(n);
    ply[n].material = amr ? ply[n - 1].material : material_after<c>(ply[n - 1], m);
    if constexpr (P::even) {
        expand<c>(n, m, amr);
    } else {
        expand_odd<c>(n, m, amr);
    }
}

// --- 6. The replies ---

// The bounds above ply n that end its move loop, as one number each: none of them changes while the loop runs.
template <class P>
inline void prepare_chain(P n) {
    float limit = value<!P::even>(n - 1);
    for (int k = n - 3; k >= 0; k -= 2) {
        limit = P::even ? std::min(limit, bounds.beta[k]) : std::max(limit, bounds.alfa[k]);
    }
    ply[n].chain = limit;
    ply[n].cut_at = P::even ? std::min(limit, bounds.MAXcut[n]) : std::max(limit, -bounds.MAXcut[n]);
}

template <Colour us, class P>
inline void prepare_move_loop(P n) {
    find_checks_and_pins<us>(n);
    prepare_chain(n);
}

// Ends the move loop of ply n.
template <class P>
inline bool cut(P n) {
    cut_flag<P::even>(n) = 1;
    return true;
}

// gerador_<us>_deep<N>, and with `test` geradortest_<us>_deep<N>: captures of the man on a square. The test form tries the
// stored capture alone, the full form passes it by and stores what cuts.
template <Colour us, bool test, class P>
void gerador_deep(P n, int victim) {
    captures_of<us>(ply[n], victim, ply_table[n].seventh_rank_moves, [n](Move m) {
        const Move stored{m.to_file, m.to_rank, m.from_file, m.from_rank};
        if ((slots.aag_ddg[n] == stored) != test || !is_legal<us>(n, m) || !search_reply<us>(n, m, !test)) {
            return false;
        }
        if (!test) {
            slots.aag_ddg[n] = stored;
        }
        return cut(n);
    });
}

// Searches a quiet move that has passed its legality test, and stores it if it cuts in the full form.
template <Colour us, bool test, class P>
inline bool search_quiet(P n, Move m, bool last_ply_rule) {
    if (!search_reply<us>(n, m, last_ply_rule)) {
        return false;
    }
    if (!test) {
        slots.aa_dd[n] = m;
    }
    return cut(n);
}

template <Colour us, bool test, class P>
inline bool try_quiet(P n, Move m, bool last_ply_rule) {
    return (m == slots.aa_dd[n]) == test && is_legal<us>(n, m) && search_quiet<us, test>(n, m, last_ply_rule);
}

// En passant first, then the pushes; these know no last-ply rule.
template <Colour us, bool test, class P>
inline void analiselivre_peao_deep(P n, int from) {
    if (en_passant_captures<us>(ply[n], from, [n](Move m) { return try_quiet<us, test>(n, m, true); })) {
        return;
    }
    if (relative_rank(us, rank_of(from)) != seventh_rank || ply_table[n].seventh_rank_moves) {
        pawn_pushes<us>(ply[n], from, [n](Move m) { return try_quiet<us, test>(n, m, false); });
    }
}

// verifica_xequemate<us>d<N>, told from the sets of the node where it has one king, the one asked about.
template <Colour us>
inline void test_check(int n, int king) {
    if (ply[n].king_at == king) {
        trial.XM = ply[n].in_check ? 1 : 0;
    } else {
        verifica_xequemate<us>(n, king);
    }
}

// One side of castling for a king on `from`. Tells whether it has ended the node.
template <Colour us, bool test, class P>
inline bool try_castling(P n, int from, CastlingSide k) {
    const Move m = castling_move(us, k);
    test_check<us>(n, from);
    if (trial.XM || !may_castle<us>(n, k) || (m == slots.aa_dd[n]) != test) {
        return false;
    }
    verifica_roque<us>(n, k);
    if (trial.R) {
        return false;
    }
    const CastlingTrial<us> kept(n + 1);
    const CastlingMark mark(us, ply_table[n].castling);
    return search_quiet<us, test>(n, m, !test);
}

// The king's test of check is also the node's word on mate or stalemate. At ply 1 castling stands with the captures.
template <Colour us, bool test, class P>
inline void analiselivre_rei_deep(P n, int from) {
    test_check<us>(n, from);
    if (!trial.XM) {
        ply[n].XEQUE_MATE = 0;
    }
    if (n != 1 && (try_castling<us, test>(n, from, short_side) || try_castling<us, test>(n, from, long_side))) {
        return;
    }
    quiet_leaps(ply[n], rei, from, [n](Move m) { return try_quiet<us, test>(n, m, !test); });
}

// The generators of ply 1 stand still once the root move is refuted.
template <class P>
inline bool refuted_at_ply_1(P n) {
    return n == 1 && !(bounds.beta[1] > bounds.alfa[0]);
}

// analiselivre_<piece>_<us>_deep<N>, and with `test` analiselivretest_<piece>_<us>_deep<N>: quiet moves of one man. The
// test form tries the stored move alone, the full form passes it by and stores what cuts.
template <Colour us, bool test, class P>
void analiselivre_deep(P n, Piece piece, int from) {
    if (refuted_at_ply_1(n)) {
        return;
    }
    switch (piece) {
        case peao: return analiselivre_peao_deep<us, test>(n, from);
        case rei: return analiselivre_rei_deep<us, test>(n, from);
        default: quiet_moves(ply[n], piece, from, [n](Move m) { return try_quiet<us, test>(n, m, !test); });
    }
}

// analisepositive_peao_<us>_deep<N>: the captures and the push of a pawn on its seventh rank, at the odd plies from 7 on.
template <Colour us, class P>
void analisepositive_peao_deep(P n, int from) {
    if (relative_rank(us, rank_of(from)) != seventh_rank) {
        return;
    }
    const auto try_promotion = [n](Move m) { return is_legal<us>(n, m) && search_reply<us>(n, m, false) && cut(n); };
    const auto takes_a_man = [n](Move m) {
        const int x = ply[n].tabd[m.to()];
        return is_of(other(us), x) && value_of(x) != rei;
    };
    if (!pawn_captures<us>(from, [&](Move m) { return takes_a_man(m) && try_promotion(m); })) {
        pawn_pushes<us>(ply[n], from, try_promotion);
    }
}

// 6a. The stored capture, if its squares fit the board. At the last ply before a leaf it is dropped instead.
template <Colour us, class P>
inline bool stored_capture(P n) {
    Move& slot = slots.aag_ddg[n];
    if (ply_table[n].drops_capture_slot && search.deep == n + 1) {
        slot.from_file = no_move.from_file;
        return false;
    }
    if (!is_move(slot)) {
        return false;
    }
    const int victim = ply[n].tabd[slot.from()];
    if (!is_of(other(us), victim) || value_of(victim) == rei || !is_of(us, ply[n].tabd[slot.to()])) {
        return false;
    }
    gerador_deep<us, true>(n, slot.from());
    return cut_flag<P::even>(n);
}

// 6b. Promotions, at the odd plies from 7 on.
template <Colour us, class P>
inline bool promotions(P n) {
    return squares_of(ply[n].sets.of(us, peao) & rank_set(us, seventh_rank), [n](int from) {
        analisepositive_peao_deep<us>(n, from);
        return cut_flag<P::even>(n) != 0;
    });
}

// 6c. Captures by victim.
template <Colour us, class P>
inline bool captures(P n) {
    for (const Piece victim : victim_order) {
        if (squares_of(ply[n].sets.of(other(us), victim), [n](int i) {
                gerador_deep<us, false>(n, i);
                return cut_flag<P::even>(n) != 0;
            })) {
            return true;
        }
    }
    return false;
}

// 6d. The stored quiet move, if a man of the side to move stands on its from-square.
template <Colour us, class P>
inline bool stored_quiet(P n) {
    const Move slot = slots.aa_dd[n];
    if (!is_move(slot)) {
        return false;
    }
    const int x = ply[n].tabd[slot.from()];
    if (!is_of(us, x)) {
        return false;
    }
    analiselivre_deep<us, true>(n, static_cast<Piece>(value_of(x)), slot.from());
    return cut_flag<P::even>(n);
}

// 6e. Quiet moves by piece.
template <Colour us, class P>
inline bool quiet(P n) {
    for (const Piece piece : piece_order) {
        if (men_of<us>(ply[n], piece, [n, piece](int from) {
                analiselivre_deep<us, false>(n, piece, from);
                return cut_flag<P::even>(n) != 0;
            })) {
            return true;
        }
    }
    return false;
}

// Each step tells whether it has ended the node.
template <Colour us, class P>
void search_replies(P n) {
    prepare_move_loop<us>(n);
    if (stored_capture<us>(n)) {
        return;
    }
    if (ply_table[n].order == MoveOrder::promotions_first && promotions<us>(n)) {
        return;
    }
    if (captures<us>(n) || stored_quiet<us>(n)) {
        return;
    }
    quiet<us>(n);
}

// --- 7. A reply ---

// Takes the child's value into the bound of ply n, if it improves it.
template <class P>
inline void take_value(P n) {
    settle_if_close(n);
    const float v = value<!P::even>(n + 1);
    float& bound = value<P::even>(n);
    if (P::even ? v > bound : v < bound) {
        bound = v;
        ply[n].X_D = 0;
        take_note(n);
    }
}

// Fail-soft: the value is not clamped to the bound that it crosses.
template <class P>
inline bool cuts(P n) {
    const float v = value<P::even>(n);
    return (P::even ? v >= ply[n].cut_at : v <= ply[n].cut_at) || (ply_table[n].flag_cuts && bounds.corte_beta[n - 1]);
}

template <Colour us, class P>
inline bool search_reply(P n, Move m, bool last_ply_rule) {
    ++search.nodes;
    forget_note(n + 1);
    watch_child(n + 1, m, value<!P::even>(n + 1), [n, m] { deep_<us>(n.child(), m); });
    take_value(n);
    return cuts(n) || (last_ply_rule && ply_table[n].last_ply_cut && search.deep == n);
}

// --- 8. The end without a reply ---

// A node without a legal reply is mate or stalemate: no child entered, and none that improved the bound as a leaf.
template <class P>
inline void end_without_reply(P n) {
    if (ply[n].X_D && tree.nd == n) {
        const float mate = P::even ? -mate_of_ply(n) : mate_of_ply(n);
        value<P::even>(n) = ply[n].XEQUE_MATE ? mate : static_cast<float>(search.emp);
    }
}

}  // namespace ondrel
