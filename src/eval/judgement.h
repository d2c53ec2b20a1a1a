// The final sum of a judgement: the logarithms of the ratios between what the two colours count. Told once, for the
// exact form and for the quick ones. Called for leaves and for the position after a root move.
#pragma once

#include "eval/counters.h"
#include "eval/weights.h"

#include <optional>

namespace ondrel {

// What a final sum takes besides the counters.
struct SumInput {
    Colour own;                // the colour that the engine plays: the sum is in its view
    std::array<int, 2> roque;  // roque_b, roque_p: castling value of the line, 0 for none
    float start;               // what the terms are added to
};

// How far the men of a colour have come, per man; and how densely its pawns fill the box of pawns and king.
template <class Real>
Real advance_per_man(const SideCounters& x) {
    return (static_cast<Real>(x.avanco) + advance_offset) / (x.pecas + x.peoes + 1);
}
template <class Real>
Real pawns_per_square(const SideCounters& x) {
    return static_cast<Real>(x.peoes + 1) / x.caixa();
}

// The sum of all terms, in extended precision and in the order that fixes the rounding; rounded once.
float sum_exactly(const SumInput& in, const Counters& counters);

// The part of the sum that the position alone decides, in double and by tables, for the colour `own`. None where a
// counter lies beyond the tables.
std::optional<double> position_sum(Colour own, const Counters& counters);

// The same in float logarithms, for float sums that are near theirs. None where a small error in the sums could be a
// large one in the result, too.
std::optional<double> estimated_position_sum(Colour own, const Counters& counters);

// The whole sum: that part, and what the line adds.
double with_line(const SumInput& in, double position_sum);

// What sum_exactly gives, told from with_line; none where that is too near to where the rounding turns.
std::optional<float> rounded_as_exactly(double sum);

// extraevalll, the base value of a root move: a hundredth of the sum without the terms in regimen, and these behind it.
float base_value(const SumInput& in, const Counters& counters);

// Within -piecesac..piecesac; what is no number stays so.
float within_piecesac(float r);

}  // namespace ondrel
