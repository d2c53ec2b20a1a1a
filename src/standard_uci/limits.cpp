#include "standard_uci/limits.h"

#include "standard_uci/search_plan.h"

#include <algorithm>

namespace ondrel::standard_uci {
namespace {

bool spends_by_engine_rules(const GoLimits& limits, Colour mover, const Options& options) {
    return options.value("Clock") == "engine" && has_own_clock(limits, mover) && !limits.movetime && !limits.infinite &&
           !limits.ponder;
}

const std::optional<std::int64_t>& time_left(const GoLimits& limits, Colour mover) {
    return mover == Colour::white ? limits.wtime : limits.btime;
}

// A mate in so many moves is seen when the last of them and the missing reply are searched.
constexpr std::int64_t depth_for_mate(std::int64_t moves) { return 2 * moves; }

int depth_limit_of(const GoLimits& limits) {
    std::int64_t depth = deepest_depth;
    if (limits.depth) {
        depth = std::min(depth, *limits.depth);
    }
    if (limits.mate) {
        depth = std::min(depth, depth_for_mate(std::clamp<std::int64_t>(*limits.mate, 1, deepest_depth)));
    }
    return engine_depth_up_to(static_cast<int>(std::max<std::int64_t>(depth, 1)));
}

}  // namespace

bool is_endless(const GoLimits& limits) {
    const bool has_limit =
        limits.wtime || limits.btime || limits.movetime || limits.nodes || limits.depth || limits.mate;
    return limits.infinite || !has_limit;
}

bool has_own_clock(const GoLimits& limits, Colour mover) { return time_left(limits, mover).has_value(); }

ClockReading own_clock(const GoLimits& limits, Colour mover, const Options& options) {
    const auto& increment = mover == Colour::white ? limits.winc : limits.binc;
    return {.left = time_left(limits, mover).value_or(0),
            .increment = increment.value_or(0),
            .moves_to_go = std::max<std::int64_t>(0, limits.movestogo.value_or(0)),
            .overhead = options.number("Move Overhead")};
}

std::optional<TimeBudget> budget_of(const GoLimits& limits, Colour mover, const Options& options) {
    if (limits.movetime) {
        return budget_of_fixed_time(*limits.movetime, options.number("Move Overhead"));
    }
    if (!has_own_clock(limits, mover)) {
        return std::nullopt;
    }
    const ClockReading clock = own_clock(limits, mover, options);
    if (spends_by_engine_rules(limits, mover, options)) {
        return budget_of_engine_rules(clock);
    }
    return budget_from(clock);
}

std::vector<Move> allowed_moves(const Position& position, const GoLimits& limits, bool chess960, Words& remarks) {
    std::vector<Move> allowed;
    for (const std::string& text : limits.searchmoves) {
        const auto move = read_move(position, text, chess960);
        if (!move) {
            remarks.push_back("searchmoves: '" + text + "' is not legal");
        } else if (std::ranges::find(allowed, *move) == allowed.end()) {
            allowed.push_back(*move);
        }
    }
    return allowed.empty() ? legal_moves(position) : allowed;
}

SearchTask task_of(const GoLimits& limits, const Game& game, const std::vector<Move>& allowed, const Options& options) {
    const Colour mover = game.position().to_move;
    SearchTask task;
    task.position_line = game.line_for_engine();
    for (const Move& move : allowed) {
        const EngineMove text = engine_text(move);
        if (!text.empty() && std::ranges::find(task.allowed, text) == task.allowed.end()) {
            task.allowed.push_back(text);
        }
    }
    task.depth_limit = depth_limit_of(limits);
    task.to_the_limit = limits.depth.has_value();
    task.lines = static_cast<int>(options.number("MultiPV"));
    if (spends_by_engine_rules(limits, mover, options)) {
        task.engine_clock = std::max<std::int64_t>(1, own_clock(limits, mover, options).left);
    }
    return task;
}

}  // namespace ondrel::standard_uci
