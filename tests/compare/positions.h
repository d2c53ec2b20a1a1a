// Random positions: games from the start position, games from a FEN, and boards that no game would give.
#pragma once

#include <string>
#include <vector>

#include "compare/random.h"
#include "plain/questions.h"

namespace compare {

struct Place {
    std::string start = "startpos";  // or "fen ..."
    std::vector<std::string> moves;
    plain::Situation now = plain::start_situation();  // after the moves, as far as they are legal
};

std::string position_line(const Place& place);
int men_without_kings(const plain::Situation& situation);
// The material of the side to move less that of the other, a pawn being 10.
int lead(const plain::Situation& situation);
// The geometric mean of the numbers of moves of both sides.
double branching(const plain::Situation& situation);

Place random_place(Random& random);
// Up to so many legal moves more; false when there was none.
bool play_on(Random& random, Place& place, int half_moves);

}  // namespace compare
