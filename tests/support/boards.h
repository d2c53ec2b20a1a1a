// The engine's boards beside those of the rules: the same squares in the other's words.
#pragma once

#include "base/types.h"
#include "support/chess_rules.h"

#include <string>
#include <string_view>

namespace tests {

// The board of a position, or of the first field of a FEN. Unlike board_of these touch nothing of the engine's state.
ondrel::Board board_from(const rules::Position& p);
ondrel::Board board_from(std::string_view field);

// The board as the first field of a FEN shows it.
std::string field_of(const ondrel::Board& t);

// The board, or the squares of a move, as they are for c when they are given for White: for Black the mirror image. The
// same again turns them back.
ondrel::Board seen_by(ondrel::Colour c, const ondrel::Board& t);
std::string seen_by(ondrel::Colour c, std::string_view squares);

}  // namespace tests
