#include "standard_uci/time_control.h"

#include <algorithm>

namespace ondrel::standard_uci {
namespace {

constexpr std::int64_t longest_clock = std::int64_t{1} << 40;  // a month and more: sums of it fit
constexpr std::int64_t moves_of_the_rest = 30;                 // that a game of no set length is taken to last
constexpr std::int64_t most_moves_to_go = 40;
// A depth takes several times what those before it took: one that begins late is not ended.
constexpr double share_for_new_depths = 0.55;
// A depth under way is worth more than its share, but one move must not eat the game.
constexpr double stretch = 2.2;
constexpr double most_of_the_clock = 0.30;
constexpr double most_of_the_last_move = 0.80;  // the clock is filled up again behind it
constexpr std::int64_t least_patience = 5;
constexpr std::int64_t most_patience = 15;
// Of a move of fixed time, besides the overhead: what is late here is lost, and there is no clock to make up for it.
constexpr std::int64_t most_reserve = 100;
constexpr double share_of_increment = 0.85;

std::int64_t part(double share, std::int64_t of) { return static_cast<std::int64_t>(share * static_cast<double>(of)); }

std::int64_t sane(std::int64_t milliseconds) { return std::clamp<std::int64_t>(milliseconds, 0, longest_clock); }

TimeBudget with_patience(TimeBudget budget, std::int64_t usable) {
    budget.end_without_move = std::max(budget.end, std::clamp(usable / 2, least_patience, most_patience));
    return budget;
}

}  // namespace

TimeBudget budget_of_engine_rules(const ClockReading& clock) {
    const std::int64_t end = std::max<std::int64_t>(0, sane(clock.left) - clock.overhead);
    return with_patience({.last_new_depth = end, .end = end}, end);
}

TimeBudget budget_of_stop(std::int64_t used) {
    return {.last_new_depth = used, .end = used, .end_without_move = used + most_patience};
}

TimeBudget budget_from(const ClockReading& clock) {
    const std::int64_t usable = std::max<std::int64_t>(0, sane(clock.left) - clock.overhead);
    const std::int64_t moves =
        clock.moves_to_go > 0 ? std::min(clock.moves_to_go, most_moves_to_go) : moves_of_the_rest;
    const std::int64_t of_increment = std::max<std::int64_t>(0, sane(clock.increment) - clock.overhead);
    const std::int64_t fair = usable / moves + part(share_of_increment, of_increment);
    const std::int64_t most = part(moves == 1 ? most_of_the_last_move : most_of_the_clock, usable);
    return with_patience({.last_new_depth = std::min(most, part(share_for_new_depths, fair)),
                          .end = std::min(most, part(stretch, fair))},
                         usable);
}

TimeBudget budget_of_fixed_time(std::int64_t milliseconds, std::int64_t overhead) {
    const std::int64_t wanted = sane(milliseconds);
    const std::int64_t end = std::max(wanted / 2, wanted - overhead - std::min(wanted / 20, most_reserve));
    return with_patience({.last_new_depth = end, .end = end}, wanted);
}

}  // namespace ondrel::standard_uci
