// Moves as texts, and positions and moves seen from the other side: what the tests of the rules share.
#pragma once

#include "support/chess_rules.h"
#include "support/engine.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tests {

using Texts = std::vector<std::string>;

// The moves as texts, in their order; the same sorted, a multiset.
Texts texts_of(const std::vector<Move>& moves);
Texts sorted(Texts texts);
// How often the move stands in the list.
int count_of(const Texts& list, std::string_view move);
// The moves of the list that start on the square, in their order.
Texts from_square(const Texts& list, std::string_view square);

// The position, the square or the moves seen from the other side: colours and ranks exchanged, files kept.
std::string mirrored_fen(std::string_view fen);
std::string mirrored_squares(std::string_view squares);
Texts mirrored_moves(const Texts& moves);
Board mirrored_board(const Board& t);

// Reads a FEN, which must be sound.
rules::Position position_of(std::string_view fen);

// Lets a search write its lines to nowhere.
void without_report(const std::function<void()>& search);

// A position and what is expected of it.
struct Case {
    std::string fen;
    Texts moves;
};
// The case itself and its mirror image.
std::vector<Case> for_both_colours(std::string_view fen, const Texts& moves);

}  // namespace tests
