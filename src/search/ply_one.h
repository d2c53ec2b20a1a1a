// Ply 1: a root move under search. The one node with several full passes.
#pragma once

#include "base/types.h"

namespace ondrel {

// deep_<c>1: searches the root move m of c and leaves its value in beta1. The caller has counted the node, left the trial
// on tab2 and, for a castling, set roque[c]. Tells the observer of root moves. Leaves roque at 0.
template <Colour c>
void deep_1(Move m);

}  // namespace ondrel
