// Makes a conversation on which two engines differ as short as it still differs.
#pragma once

#include <functional>

#include "compare/engine_run.h"

namespace compare {

// `fails` tells whether a candidate still shows a difference. At most so many candidates are tried.
Conversation shorten(const Conversation& conversation, const std::function<bool(const Conversation&)>& fails,
                     int most_candidates);

}  // namespace compare
