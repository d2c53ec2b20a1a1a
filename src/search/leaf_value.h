// What a leaf is worth: material, its logarithm, and where that is near the bounds the judgement. Called by the runs of
// nodes (node.h).
#pragma once

#include "eval/leaf.h"
#include "search/child_trial.h"
#include "search/filters.h"
#include "search/noted_leaves.h"
#include "search/state.h"

namespace ondrel {

// --- Material ---

constexpr int worth_of_promotion = 80;  // a queen less a pawn
constexpr int worth_of_en_passant = 10;

// Leaves promocao and ppassado of the move m of c on the board before it.
template <Colour c>
inline void appraise(const Board& before, Move m) {
    const bool by_pawn = before[m.from()] == code(c, peao);
    tree.promocao = by_pawn && m.from_rank == relative_rank(c, seventh_rank) ? worth_of_promotion : 0;
    tree.ppassado = by_pawn && m.from_file != m.to_file && before[m.to()] == no_piece ? worth_of_en_passant : 0;
}

// Material after the move m of c, by Colour, from the ply above it; en passant is a gain of the taker's.
template <Colour c>
inline std::array<float, 2> material_after(const Ply& above, Move m) {
    std::array<float, 2> sums = above.material;
    sums[c] += static_cast<float>(tree.promocao + tree.ppassado);
    sums[other(c)] -= static_cast<float>(value_of(above.tabd[m.to()]));
    return sums;
}

// --- Judgement ---

// Whether some bound above the parent puts a judgement of v out of the question: v must be within piecesac of every alfa
// above an even node, of every beta above an odd one.
template <bool even>
inline bool is_hopeless(int n, float v) {
    const float limit = ply[n - 1].chain;
    return even ? !(v > limit - piecesac) : !(v < limit + piecesac);
}

// Whether the parent p of an even leaf, which ends there by its depth, can go on with `estimate` for its value: it lies
// clear of what p has and of what would end p.
inline bool estimate_suffices(int p, float estimate) {
    return !is_close(estimate, bounds.beta[p], estimate_slack + slack_of(p)) &&
           !is_close(estimate, ply[p].cut_at, estimate_slack);
}

// Adds the judgement to v, the material score of a leaf. A dead draw is worth the draw score.
template <Colour c, class P>
inline void judge(P n, Move m, float& v) {
    constexpr Colour own = P::even ? other(c) : c;
    const PieceSets position = sets_of_trial<c>(n, m);
    const Leaf seen{position, trial.p_xy_R, pass.roque};
    count_rule(Rule::judged);
    if (P::even && search.deep > process.ddep) {
        process.ddep = search.deep;
    }
    const Known known = estimate_leaf<own, other(c)>(seen);
    if (judgement.EMPAT) {
        v = static_cast<float>(search.emp);
        return;
    }
    if (P::even && n >= first_estimated_ply && search.deep == n - 1 && known == Known::by_estimate &&
        estimate_suffices(n - 1, v + judgement.extraeval)) {
        note_leaf(n, seen, v);
    } else if (known != Known::exactly) {
        count_rule(Rule::judged_exactly);
        judge_estimated_leaf<own, other(c)>(seen);
    }
    v += judgement.extraeval;
}

template <Colour c, class P>
void leaf(P n, Move m) {
    constexpr Colour own = P::even ? other(c) : c;
    appraise<c>(ply[n - 1].tabd, m);
    const std::array<float, 2> material = material_after<c>(ply[n - 1], m);
    float& v = value<P::even>(n);
    v = options.extradef ? material_score(material[own], material[other(own)]) : material[own] - material[other(own)];
    if (!search.EXTRA_EVAL) {
        return;
    }
    if (is_hopeless<P::even>(n, v)) {
        count_rule(Rule::lazy);
        return;
    }
    judge<c>(n, m, v);
}

// The leaf of ply 2, for the shallowest depth only: lead less the plain ratio, without a judgement.
template <Colour c>
inline void leaf_of_ply_2(Move m) {
    appraise<c>(ply[1].tabd, m);
    const std::array<float, 2> material = material_after<c>(ply[1], m);
    const float lead = material[other(c)] - material[c];
    bounds.alfa[2] = lead;
    if (options.extradef) {
        bounds.alfa[2] = static_cast<float>(static_cast<long double>(lead) - ratio(material[c], material[other(c)]));
    }
}

}  // namespace ondrel
