// The counters of a leaf asked in sets of squares, in no particular order: whole numbers exactly, float sums nearly.
// Called for every leaf that is judged.
#pragma once

#include "eval/counters.h"
#include "eval/rays.h"

namespace ondrel {

// Fills `counters` for the position with `stm` to move and the kings where the tests last saw them: the whole numbers are
// those of the walk, the float sums near them (within a few units of 1e-6 of their size, of 1e-3 for the centre). Reads
// `weights` and the option Aggressiveness.
template <Colour stm>
void count_in_sets(const PieceSets& sets, const std::array<int, 2>& king, Counters& counters);

}  // namespace ondrel
