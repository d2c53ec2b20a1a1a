// From a position line to the root of a search. Called by the command loop.
#pragma once

#include "base/types.h"

namespace ondrel {

// Begins a game with the engine as c: tab, the root and the trials are as at its start, and what belongs to a line is new.
void begin_game(Colour c);

// Replays the position line `in` into tab, tabr1 and the root's flags, counts its moves in nb and leaves the side to
// search in joga_com_b. Nothing is validated: what the line says is played, what it leaves out is empty.
void read_position();

// Plays the move of the line at o on tab. With `more_moves` the next move follows at once: see init_tabuleiro.
void play_move_of_line(bool more_moves = false);

// Prepares the search of `own` from the position replayed: key, tables, draw score, depth.
void prepare_search(Colour own);

// Which form of position line `in` has: from the start position with more than one move, or a FEN.
bool is_line_from_start();
bool is_fen_line();

}  // namespace ondrel
