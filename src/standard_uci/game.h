// The game that a position line tells: where it began, what was played, where it stands. The session keeps one, the
// engine is given it as a line of the form it reads.
#pragma once

#include "standard_uci/commands.h"
#include "standard_uci/engine_port.h"

namespace ondrel::standard_uci {

class Game {
public:
    Game();

    [[nodiscard]] const Position& position() const { return positions_.back(); }

    // The moves from the start position as UCI writes them, or nothing if the game began elsewhere.
    [[nodiscard]] std::optional<Words> moves_from_start() const;

    // The line that the engine reads. It leaves out what the engine cannot replay: what lies before a castling from
    // other squares than the usual ones, and more moves than it keeps for repetitions.
    [[nodiscard]] std::string line_for_engine() const;

    // The game of a position line; `remarks` take what was left out of it. Nothing, with the reason in `fault`, if the
    // line tells none.
    static std::optional<Game> read(const PositionWords& words, bool chess960, std::string& fault, Words& remarks);

private:
    explicit Game(const Position& start) : positions_{start} {}
    [[nodiscard]] std::size_t first_for_engine() const;

    bool from_start_ = true;
    std::vector<Position> positions_;  // one more than moves
    std::vector<Move> moves_;
};

// --- Moves of the engine in a position ---

// A move as the engine names it; empty for a castling that it does not know.
EngineMove engine_text(const Move& move);

// The moves that are legal from the position on, up to the first that is not.
std::vector<Move> legal_beginning(const Position& position, const std::vector<EngineMove>& line);

}  // namespace ondrel::standard_uci
