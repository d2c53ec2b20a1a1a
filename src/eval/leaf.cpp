#include "eval/leaf.h"

#include "base/ply_stack.h"
#include "eval/estimate.h"
#include "eval/judgement.h"
#include "eval/leaf_sums.h"
#include "eval/weights.h"

namespace ondrel {
namespace {

// The leaf under judgement.
struct UnderJudgement {
    CachedLeaf* kept = nullptr;
    bool counted = false;  // `counters` are those of this leaf
    Counters counters;
};
UnderJudgement at_hand;

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

template <Colour stm>
void count(const Leaf& leaf) {
    count_in_sets<stm>(leaf.sets, leaf.king, at_hand.counters);
    at_hand.counted = true;
}

template <Colour own, Colour stm>
void judge_tab2(const std::array<int, 2>& roque) {
    prepare_weights(own);
    const PieceSets sets = piece_sets(trial.tab2);
    const Leaf leaf{sets, trial.p_xy_R, roque};
    estimate_leaf<own, stm>(leaf);
    judge_estimated_leaf<own, stm>(leaf);
}

}  // namespace

template <Colour own, Colour stm>
Known estimate_leaf(const Leaf& leaf) {
    judgement.EMPAT = is_dead_draw(leaf.sets) ? 1 : 0;
    CachedLeaf& kept = cached_leaf(leaf.sets, leaf.king, stm);
    at_hand.kept = &kept;
    at_hand.counted = false;
    if (kept.known == Known::not_at_all) {
        count<stm>(leaf);
        const auto sum = estimated_position_sum(own, at_hand.counters);
        if (!sum) {
            return Known::not_at_all;
        }
        kept.sum = *sum;
        kept.known = Known::by_estimate;
    }
    const double sum = with_line(sum_input(own, leaf), kept.sum);
    const auto exact = kept.known == Known::exactly ? rounded_as_exactly(sum) : std::nullopt;
    judgement.extraeval = within_piecesac(exact.value_or(static_cast<float>(sum)));
    return exact ? Known::exactly : Known::by_estimate;
}

template <Colour own, Colour stm>
void judge_estimated_leaf(const Leaf& leaf) {
    if (!at_hand.counted) {
        count<stm>(leaf);
    }
    const Board board = board_of(leaf.sets);
    sum_in_order<stm>(view_of(board, leaf.sets, leaf.king), at_hand.counters);
    const SumInput in = sum_input(own, leaf);
    std::optional<float> sum;
    if (const auto of_position = position_sum(own, at_hand.counters)) {
        at_hand.kept->sum = *of_position;
        at_hand.kept->known = Known::exactly;
        sum = rounded_as_exactly(with_line(in, *of_position));
    }
    judgement.extraeval = within_piecesac(sum ? *sum : sum_exactly(in, at_hand.counters));
}

template <Colour own>
void judge_own_leaf(const Leaf& leaf) {
    if (estimate_leaf<own, own>(leaf) != Known::exactly) {
        judge_estimated_leaf<own, own>(leaf);
    }
}

void judge_leaf(Colour own, const Leaf& leaf) {
    own == white ? judge_own_leaf<white>(leaf) : judge_own_leaf<black>(leaf);
}

template <Colour own>
void extra_eval(const std::array<int, 2>& roque) {
    judge_tab2<own, own>(roque);
}

template <Colour own>
void extra_evall(const std::array<int, 2>& roque) {
    judge_tab2<own, other(own)>(roque);
}

template Known estimate_leaf<white, white>(const Leaf& leaf);
template Known estimate_leaf<white, black>(const Leaf& leaf);
template Known estimate_leaf<black, white>(const Leaf& leaf);
template Known estimate_leaf<black, black>(const Leaf& leaf);
template void judge_estimated_leaf<white, white>(const Leaf& leaf);
template void judge_estimated_leaf<white, black>(const Leaf& leaf);
template void judge_estimated_leaf<black, white>(const Leaf& leaf);
template void judge_estimated_leaf<black, black>(const Leaf& leaf);
template void extra_eval<white>(const std::array<int, 2>& roque);
template void extra_eval<black>(const std::array<int, 2>& roque);
template void extra_evall<white>(const std::array<int, 2>& roque);
template void extra_evall<black>(const std::array<int, 2>& roque);

}  // namespace ondrel
