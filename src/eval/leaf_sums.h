// The float sums of a leaf in the order of the rule.
#pragma once

#include "base/masks.h"

namespace ondrel {

// Leaves in contagem the positional sum, the centre and both king sums of the position t, m with `stm` to move, to the
// last bit those of the rule. Reads `pesos` and the king squares.
template <Cor stm>
void soma_em_ordem(const Tabuleiro& t, const Mascaras& m);

}  // namespace ondrel
