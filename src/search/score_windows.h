// The hard score window around the lead that material promises. Called by the root before the first pass of a search.
#pragma once

#include "base/types.h"

namespace ondrel {

// Sets MAXcut[0] to MAXcut[17] for a search of `own`, from the options Positive and Negative float filter and the root's
// material.
void set_score_windows(Colour own);

}  // namespace ondrel
