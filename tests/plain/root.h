// The root: its move routines, the schedule that calls them, the iteration over depths.
#pragma once

#include "plain/state.h"

namespace plain {

// The schedule of a whole search, or the answer of the game memory; the result is E and the best move.
void search(Colour c);
// The first move of a game without book: pawns and knights alone.
void search_first_move(Colour c);

void set_score_windows(Colour c);
void restore_limits();   // every MAXcut<N> from MAXcutt<N>
void set_mate_limits();  // the values of a new game, both sets

// info_<c>_deept; written with the rest of the front end.
void report_root_move();

}  // namespace plain
