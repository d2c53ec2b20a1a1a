// How much of the clock a move may take. The session asks at each go, and at ponderhit.
#pragma once

#include <cstdint>

namespace ondrel::standard_uci {

// The mover's clock, in milliseconds.
struct ClockReading {
    std::int64_t left = 0;
    std::int64_t increment = 0;
    std::int64_t moves_to_go = 0;  // 0: the rest of the game
    std::int64_t overhead = 0;     // lost on the way between client and engine at each move
};

// Milliseconds from the start of the move.
struct TimeBudget {
    std::int64_t last_new_depth = 0;    // no new depth is begun after it
    std::int64_t end = 0;               // the move is out by then, whatever the search is at
    std::int64_t end_without_move = 0;  // the same while nothing has been found: a few milliseconds find a sane move
};

TimeBudget budget_from(const ClockReading& clock);

// For a move of so many milliseconds.
TimeBudget budget_of_fixed_time(std::int64_t milliseconds, std::int64_t overhead);

// For a search that keeps to the engine's own rules: they are left alone while the clock allows it.
TimeBudget budget_of_engine_rules(const ClockReading& clock);

// For a search told to stop when so much was used.
TimeBudget budget_of_stop(std::int64_t used);

}  // namespace ondrel::standard_uci
