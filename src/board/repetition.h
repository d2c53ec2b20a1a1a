// Repetition of a position of the game. Called for root moves and for replies at ply 2.
#pragma once

namespace ondrel {

// How many positions of the game a repetition needs: one for a root move, two for a reply in the tree.
enum class Repeats { root_move, reply };

// Sets pempate if tab2 equals enough positions of the game after moves of the same side, and clears it if not; boards
// alone are compared. A game of more than 1000 half-moves is not looked at.
void verifica_empate(Repeats who);

}  // namespace ondrel
