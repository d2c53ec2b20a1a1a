// The float sums of a leaf in the order of the rule, at the speed of the tree. Called for the leaves that an estimate
// does not settle.
#pragma once

#include "eval/walk.h"

namespace ondrel {

// Leaves in `counters` the positional sum, the centre and both king sums of the position with `stm` to move, to the last
// bit those of the rule. The whole-number counters stay as they are.
template <Colour stm>
void sum_in_order(const View& v, Counters& counters);

}  // namespace ondrel
