// Legality of a move for the walks at the root, which count true mobility. Called once per pseudo-legal move.
#pragma once

#include "base/types.h"

namespace ondrel {

// Scratch board and result of the test; no other routine touches them.
struct LibertyTest {
    Board tab2t{};
    std::uint8_t YY = 0;  // 1 = the mover's king stands attacked after the move
};
inline LibertyTest liberty;

// verifica_liberdade_<c> when `from` is tab, verifica_liberdadee_<c> when it is tab2: plays the plain transfer (neither
// en passant nor castling) on tab2t, a pawn on its last rank becoming a queen, and leaves the result in YY.
template <Colour c>
void verifica_liberdade(const Board& from, Move m);

}  // namespace ondrel
