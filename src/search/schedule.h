// The top of the search: the root schedule and the iteration over depths. Called by the front end.
#pragma once

#include "memory/game_memory.h"

namespace ondrel {

// Searches the position of the root for `own`, unless the game-long memory answers (mem_TEST). Leaves the move in
// game.abcd, its score in E and PRs or PR for a promotion; with no legal move abcd keeps what it held.
void search_root(Colour own);

// The reduced search of a game's first move: pawns, then knights, for each class, at the present depth.
void search_first_move(Colour own);

// The demand with which the search of the root is asked for, as the game-long memory keeps it.
SearchDemand demand_of_search();

// emp and emppp at the start of a search of `own`.
void set_draw_score(Colour own);

}  // namespace ondrel
