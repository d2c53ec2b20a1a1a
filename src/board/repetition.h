// Repetition of a position of the game.
#pragma once

namespace ondrel {

// Clears pempate and, while pempatee is set and the game has at most 1000 half-moves, sets it if tab2 equals enough
// positions of the game after moves of the same side: one for a root move, two for a reply at ply 2 (deeppromo tells
// the two apart). Boards alone are compared.
void verifica_empate();

}  // namespace ondrel
