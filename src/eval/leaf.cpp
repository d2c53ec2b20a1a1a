#include "eval/leaf.h"

#include "base/ply_stack.h"
#include "eval/estimate.h"
#include "eval/judgement.h"
#include "eval/leaf_sums.h"
#include "eval/weights.h"

namespace ondrel {
namespace {

// The counters of the leaf under judgement.
Counters counters;

// No pawn, rook or queen on the board, and each colour has at most two knights, or at most one bishop.
bool is_dead_draw(const PieceSets& m) {
    if ((m.kind(peao) | m.rooks_and_queens()) != 0) {
        return false;
    }
    const auto cannot_win = [&m](Colour c) {
        const int knights = std::popcount(m.of(c, cavalo));
        const int bishops = std::popcount(m.of(c, bispo));
        return (bishops == 0 && knights <= 2) || (knights == 0 && bishops <= 1);
    };
    return cannot_win(white) && cannot_win(black);
}

SumInput sum_input(Colour own, const Leaf& leaf) { return {own, leaf.roque, judgement.extraevalll}; }

template <Colour own, Colour stm>
void judge_tab2(const std::array<int, 2>& roque) {
    prepare_weights(own);
    const PieceSets sets = piece_sets(trial.tab2);
    const Leaf leaf{sets, trial.p_xy_R, roque};
    estimate_leaf<own, stm>(leaf);
    judge_estimated_leaf<own, stm>(leaf, trial.tab2);
}

}  // namespace

template <Colour own, Colour stm>
bool estimate_leaf(const Leaf& leaf) {
    judgement.EMPAT = is_dead_draw(leaf.sets) ? 1 : 0;
    count_in_sets<stm>(leaf.sets, leaf.king, counters);
    float estimate = 0;
    if (!estimate_sum(sum_input(own, leaf), counters, estimate)) {
        return false;
    }
    judgement.extraeval = within_piecesac(estimate);
    return true;
}

template <Colour own, Colour stm>
void judge_estimated_leaf(const Leaf& leaf, const Board& board) {
    sum_in_order<stm>(view_of(board, leaf.sets, leaf.king), counters);
    judgement.extraeval = within_piecesac(sum_quickly(sum_input(own, leaf), counters));
}

template <Colour own>
void extra_eval(const std::array<int, 2>& roque) {
    judge_tab2<own, own>(roque);
}

template <Colour own>
void extra_evall(const std::array<int, 2>& roque) {
    judge_tab2<own, other(own)>(roque);
}

template bool estimate_leaf<white, white>(const Leaf& leaf);
template bool estimate_leaf<white, black>(const Leaf& leaf);
template bool estimate_leaf<black, white>(const Leaf& leaf);
template bool estimate_leaf<black, black>(const Leaf& leaf);
template void judge_estimated_leaf<white, white>(const Leaf& leaf, const Board& board);
template void judge_estimated_leaf<white, black>(const Leaf& leaf, const Board& board);
template void judge_estimated_leaf<black, white>(const Leaf& leaf, const Board& board);
template void judge_estimated_leaf<black, black>(const Leaf& leaf, const Board& board);
template void extra_eval<white>(const std::array<int, 2>& roque);
template void extra_eval<black>(const std::array<int, 2>& roque);
template void extra_evall<white>(const std::array<int, 2>& roque);
template void extra_evall<black>(const std::array<int, 2>& roque);

}  // namespace ondrel
