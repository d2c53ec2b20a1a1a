// Whole conversations at random: options, positions and clocks, new games, buttons, two to four searches.
#pragma once

#include "compare/engine_run.h"
#include "compare/random.h"

namespace compare {

enum class Clock { real, counting };

Conversation random_conversation(std::uint64_t seed, Clock clock);

}  // namespace compare
