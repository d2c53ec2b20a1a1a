// Scores of the engine in the terms of UCI. The session shows them, the search plan asks what is a mate.
#pragma once

#include <string>

namespace ondrel::standard_uci {

// Whether a search can have found it: a number, and no more than a mate at once.
bool is_score(float score);

// Whether the score, in tenths of a pawn from the mover's view, is that of a forced mate.
bool is_mate(float score);

// Moves to the mate of such a score: positive for the mover's own, negative for one that he suffers.
int moves_to_mate(float score);

// "cp <centipawns>" or "mate <moves>".
std::string score_text(float score);

}  // namespace ondrel::standard_uci
