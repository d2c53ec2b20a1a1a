// The counters of a leaf asked in sets of squares, in no particular order.
#pragma once

#include "base/masks.h"

namespace ondrel {

// Fills contagem for the position m with `stm` to move: the whole numbers are those of the rule, the float sums near
// them (within a few units of 1e-6 of their size, of 1e-3 for the centre). Reads `pesos` and the king squares.
template <Cor stm>
void conta_em_conjuntos(const Mascaras& m);

}  // namespace ondrel
