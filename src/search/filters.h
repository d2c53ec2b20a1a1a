// Tests of the odd nodes from ply 7 on, between the storing of the material and the copy of the board: the vertical
// filter, the search extension and the time check. Called by the run of a node (node.h). c is the colour of the incoming
// move; the other one, the root's opponent, replies.
#pragma once

#include "base/clock.h"
#include "base/numeric.h"
#include "search/child_trial.h"
#include "search/noted_leaves.h"
#include "search/ply_table.h"
#include "search/probe.h"
#include "search/state.h"

namespace ondrel {

// --- The score that the root has reached ---

constexpr float held_score = 5.0F;          // a score is held from here on,
constexpr float held_drop = 5.0F;           // or within this of the depth before,
constexpr float least_held_score = -15.0F;  // if it is no worse than this

inline bool score_held(float held_from = held_score) {
    const float score = bounds.alfa[0];
    return score >= held_from || (score >= bounds.ALFA0 - held_drop && score >= least_held_score);
}

// Material difference, with the logarithm of the ratio, of the root side `own`. Few pairs of sums occur in a search: each
// is worked out once.
inline float material_score(float own, float opp) {
    struct Known {
        float own, opp, MQ, score;
    };
    static std::array<Known, 4096> known{};
    const std::uint32_t hash =
        std::bit_cast<std::uint32_t>(own) * 0x9E3779B1U ^ std::bit_cast<std::uint32_t>(opp) * 0x85EBCA77U;
    Known& x = known[hash >> 20U];
    if (x.own != own || x.opp != opp || x.MQ != options.MQ || own == 0) {
        const long double score = static_cast<long double>(own - opp) + log_of_ratio(own, opp) * options.MQ;
        x = {own, opp, options.MQ, static_cast<float>(score)};
    }
    return x.score;
}

// --- Vertical filter ---

constexpr float lost_margin = 10.0F;
constexpr float held_score_to_shorten = 15.0F;

// T(10): some bound of the root side at an even ply above n lies lost_margin or more over S.
inline bool is_lost(int n, float S) {
    for (int k = 0; k < n; k += 2) {
        if (bounds.alfa[k] - lost_margin >= S) {
            return true;
        }
    }
    return false;
}

// The parent's move loop ends after this child.
inline void end_parent(int n) {
    count_rule(Rule::vertical_ends_parent);
    bounds.corte_beta[n - 2] = 1;
}

// The node ends with its static score.
inline bool end_with(int n, float S) {
    count_rule(Rule::vertical_ends_node);
    bounds.beta[n] = S;
    return true;
}

template <Colour c, class P>
inline bool filter_plies_9_to_21(P n, Move m, float S) {
    if (search.deep == n && is_lost(n, S) && !gives_check<c>(n, m)) {
        return end_with(n, S);
    }
    if (search.deep == n + 2 && score_held(held_score_to_shorten) && is_lost(n, S)) {
        count_rule(Rule::vertical_shortens);
        search.deep = n;
    }
    return false;
}

template <Colour c, class P>
inline bool filter_ply_7(P n, Move m, float S) {
    if (search.deep == n) {
        for (int k = 0; k < n; k += 2) {
            if (bounds.alfa[k] - lost_margin >= S && bounds.alfa[k] < least_mate) {
                end_parent(n);
            }
        }
        return false;
    }
    const bool no_capture = ply[n - 1].tabd[m.to()] == no_piece;
    return search.deep == n + 2 && no_capture && !tree.promocao && is_lost(n, S) && !gives_check<c>(n, m) &&
           end_with(n, S);
}

// Gives up lines that the root side is losing at the last full plies. Tells whether the node ends.
template <Colour c, class P>
inline bool vertical_filter(P n, Move m) {
    const Vertical rules = ply_table[n].vertical;
    if (!options.VERTICAL_filt || rules == Vertical::none) {
        return false;
    }
    const float S = material_score(ply[n].material[c], ply[n].material[other(c)]);
    switch (rules) {
        case Vertical::plies_9_to_21: return filter_plies_9_to_21<c>(n, m, S);
        case Vertical::ply_7: return filter_ply_7<c>(n, m, S);
        default:
            if (is_lost(n, S)) {
                end_parent(n);
            }
            return false;
    }
}

// --- Clock ---

// While time is plentiful the lines of the full pass of a root move grow by two plies at their end.
template <class P>
inline void extend(P n) {
    if (!search.SEARCH_E || !root_move.LMRtest || search.deep != n || !pass.SCANT ||
        !ply_table[n].extension.holds(pass.DEEP)) {
        return;
    }
    search.fim = clock_ms();
    if (time_used() <= soft_limit() && options.CPU != 0) {
        count_rule(Rule::extension);
        search.deep = n + 2;
    }
}

// Past the hard limit the line is cut down to this ply for good, the schedule stops after the move, and a parent with a
// real score is left at once with its own bound. Tells whether the node ends; `saved_deep` is what its exit restores.
template <class P>
inline bool out_of_time(P n, int& saved_deep) {
    if (!options.TC || search.deep <= ply_table[n].time_deep) {
        return false;
    }
    search.fim = clock_ms();
    if (time_used() < hard_limit()) {
        return false;
    }
    count_rule(Rule::out_of_time);
    search.deep = n;
    saved_deep = n;
    pass.corte_MAXcut = 1;
    settle(n - 1);
    if (bounds.alfa[n - 1] > -least_mate) {
        bounds.corte_beta[n - 2] = 1;
        bounds.beta[n] = bounds.alfa[n - 1];
        return true;
    }
    return false;
}

}  // namespace ondrel
