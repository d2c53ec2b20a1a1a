// The node of ply 1 and its passes: null move, IID, scout, full.
#include "search/ply_one.h"

#include "eval/weights.h"
#include "search/observers.h"
#include "search/ply_one_replies.h"
#include "search/windows.h"

namespace ondrel {
namespace {

// --- One run ---

// Begins the line shown anew with the root move.
void begin_line(Move m) {
    for (auto& text : root_move.A0_D7) {
        text.fill(' ');
    }
    show_in_line(1, m);
}

// Without depth a root move is worth its material.
template <Colour c>
void value_without_search(Move m) {
    appraise<c>(tab, m);
    const std::array<float, 2> material = material_after<c>(ply[0], m);
    bounds.beta[1] = material[c] - material[other(c)];
}

template <Colour c>
void run_ply_1(Move m, float start) {
    begin_line(m);
    if (search.deep == ply_table[1].leaf_deep) {
        value_without_search<c>(m);
        return;
    }
    clear_counters_of_children(1);
    appraise<c>(tab, m);
    bounds.beta[1] = start;
    ply[1].material = material_after<c>(ply[0], m);
    tree.nd = 1;
    descend<c>(0, 1, m);
    bounds.corte_alfa[0] = 0;
    search_replies_of_ply_1<other(c)>();
    end_without_reply(ply_1);
}

// --- The passes ---

// Leaves BETA1.
template <Colour c>
void iid_of_ply_1(Move m) {
    count_rule(Rule::iid);
    const ReducedDepth reduced(iid_reduction, true);
    if (options.TURBO) {
        open_widest_window();
    }
    run_ply_1<c>(m, start_of_beta);
    restore_even_limits();
    root_move.BETA1 = bounds.beta[1];
}

// What the scout pass has settled: the best move of the depth before has fallen out of its window, another move does not
// reach the best or passes the limit of ply 2.
bool scout_settles(float limit_of_ply_2) {
    constexpr float safe_lead = 15.0F;
    const float v = bounds.beta[1];
    const float best = bounds.alfa[0];
    const bool failed_at_critical_depth = v <= best && !search.DEEP9 && search.deep <= critical_depth;
    if (pass.SCAN1 && !failed_at_critical_depth &&
        (v < bounds.ALFA0 + scout_width || v >= safe_lead + lead_at_root())) {
        return true;
    }
    return pass.SCANT && (static_cast<double>(best) + scout_step > static_cast<double>(v) || v >= limit_of_ply_2);
}

// The scout pass asks whether the move can matter at all. Tells whether it settles the move.
template <Colour c>
bool scout_ply_1(Move m, bool iid_ran) {
    count_rule(Rule::scout_of_ply_1);
    root_move.PVSm = 1;
    open_turbo_windows(iid_ran);
    open_scout_windows();
    ++search.curr;
    run_ply_1<c>(m, start_of_beta);
    root_move.PVSm = 0;
    const float limit_of_ply_2 = bounds.MAXcut[2];
    restore_even_limits();
    return scout_settles(limit_of_ply_2);
}

// A best move that fails at the critical depth widens the root window. Gives the start value of the full pass.
template <Colour c>
float widen_root() {
    constexpr float widening = 75.0F;
    if (!pass.SCAN1 || search.DEEP9 || search.deep != critical_depth || bounds.alfa[0] < bounds.beta[1]) {
        return start_of_beta;
    }
    count_rule(Rule::root_widened);
    const float start = bounds.alfa[0];
    const long double line = static_cast<long double>(least_held_score) + root.materialflot0 +
                             value_of(game_line.peca) +
                             log_of_ratio(root.material_a[c], root.material_a[other(c)]) * options.MQ;
    if (bounds.alfa[0] >= least_held_score && search.E >= line) {
        bounds.alfa[0] -= widening;
        search.E -= widening;
    }
    if (bounds.alfa[0] < least_held_score || search.E < line) {
        bounds.alfa[0] = start_of_alfa;
        search.E = no_score;
    }
    return start;
}

template <Colour c>
void full_pass_of_ply_1(Move m, bool iid_ran) {
    count_rule(Rule::full_pass);
    const float start = widen_root<c>();
    open_turbo_windows(iid_ran);
    run_ply_1<c>(m, start);
    restore_even_limits();
    tell_root_move_searched();
}

// What the tree below reads of the root.
void prepare_root_of_tree(Colour own) {
    constexpr float share_of_king = 100.0F;  // differences stand, and ratios are those of the men
    ply[0].sets = piece_sets(tab);
    prepare_weights(own);
    ply[0].material = {root.material_a[white] - share_of_king, root.material_a[black] - share_of_king};
}

template <Colour c>
void passes_of_ply_1(Move m) {
    prepare_root_of_tree(c);
    const bool iid = search.deep >= least_deep_of_iid;
    if (iid) {
        if (null_move_pass<c>(ply_1, m)) {
            return;
        }
        iid_of_ply_1<c>(m);
        if (bounds.beta[1] >= least_mate) {
            return;
        }
    }
    const bool scout = options.PVS && (pass.SCAN1 || (pass.SCANT && bounds.ALFA0 != start_of_alfa));
    if (scout && scout_ply_1<c>(m, iid)) {
        count_rule(Rule::scout_of_ply_1_settles);
        tell_root_move_searched();
        return;
    }
    if (scout) {
        root_move.LMRtest = 1;
    } else {
        ++search.curr;
    }
    full_pass_of_ply_1<c>(m, iid);
}

}  // namespace

template <Colour c>
void deep_1(Move m) {
    root_move = RootMove{};
    if (search.deep >= 0) {
        passes_of_ply_1<c>(m);
    }
    pass.roque = {};
}

template void deep_1<white>(Move m);
template void deep_1<black>(Move m);

}  // namespace ondrel
