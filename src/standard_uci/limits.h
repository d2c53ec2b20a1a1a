// What a go line asks for, in terms of the search: which moves, how deep, how long. The session asks once for each go.
#pragma once

#include "standard_uci/game.h"
#include "standard_uci/options.h"
#include "standard_uci/time_control.h"
#include "standard_uci/worker_protocol.h"

namespace ondrel::standard_uci {

// Whether nothing but stop ends it.
bool is_endless(const GoLimits& limits);

// The clock and increment of the side to move.
ClockReading own_clock(const GoLimits& limits, Colour mover, const Options& options);
bool has_own_clock(const GoLimits& limits, Colour mover);

// Nothing where neither clock nor time of a move is set.
std::optional<TimeBudget> budget_of(const GoLimits& limits, Colour mover, const Options& options);

// The legal moves of searchmoves, or all of them; `remarks` take what is not legal.
std::vector<Move> allowed_moves(const Position& position, const GoLimits& limits, bool chess960, Words& remarks);

SearchTask task_of(const GoLimits& limits, const Game& game, const std::vector<Move>& allowed, const Options& options);

}  // namespace ondrel::standard_uci
