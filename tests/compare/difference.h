// Two engines on one conversation: what they write is compared line by line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "compare/engine_run.h"

namespace compare {

struct Engines {
    std::string first, second;     // the first is the judge: the plain engine
    double limit_in_seconds = 30;  // of processor time, for one conversation
};

struct Difference {
    std::size_t line = 0;  // of the output, counted from 1
    std::string first, second;
};

// What the counting clock has done, in searches.
struct ClockCounts {
    int searches = 0, hard_stops = 0, soft_stops = 0, extensions = 0, refused_extensions = 0;
};

struct Verdict {
    bool too_dear = false;  // the judge did not end within its limit: nothing was compared
    std::optional<Difference> difference;
    std::int64_t nodes = 0;
    ClockCounts clock;
    double seconds_of_judge = 0;
};

// On real time the fields that tell the time are left out; with the counting clock every character counts.
Verdict compare_on(const Engines& engines, const Conversation& conversation);

}  // namespace compare
