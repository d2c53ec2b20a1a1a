// The tree below the root.
#pragma once

#include "base/types.h"

namespace ondrel {

// deep_<c>1: searches the root move m of c and leaves its value in beta1. The caller has counted the node, left the
// trial on tab2 and, for a castling, set roque[c]. Reports the move, but for the build pass. Leaves roque and deeppromo
// at 0.
template <Cor c>
void deep_1(Lance m);

// Writes the line of the root move just searched (the front end defines it).
void info_deept();

}  // namespace ondrel
