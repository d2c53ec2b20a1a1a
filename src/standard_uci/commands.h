// What a client may say, read from its lines. Knows the words of UCI and nothing of chess or of the search.
#pragma once

#include "standard_uci/words.h"

#include <cstdint>

namespace ondrel::standard_uci {

enum class Verb : unsigned char {
    uci,
    debug,
    isready,
    setoption,
    registration,
    ucinewgame,
    position,
    go,
    stop,
    ponderhit,
    quit
};

struct Command {
    Verb verb;
    Words words;  // behind the verb
};

// Words before the first one known are skipped. Nothing, if none is known.
std::optional<Command> read_command(std::string_view line);

struct SetOption {
    std::string name;
    std::string value;
};
SetOption read_setoption(const Words& words);

struct PositionWords {
    bool from_start = false;
    Words fen;
    Words moves;
    std::string fault;  // not empty: neither startpos nor fen
};
PositionWords read_position(const Words& words);

struct GoLimits {
    std::optional<std::int64_t> wtime, btime, winc, binc, movestogo, movetime, nodes, depth, mate;
    bool infinite = false;
    bool ponder = false;
    Words searchmoves;
    Words faults;  // what was said but makes no sense
};
GoLimits read_go(const Words& words);

}  // namespace ondrel::standard_uci
