// The position of the game: playing a move on it, and all that the search treats as its constants. Called by the replay
// of a line and for the engine's own move.
#pragma once

namespace ondrel {

// init_tabuleiro: plays game.abcd on tab with the root flags, whatever stands there, and prepares the position: king
// squares, Xr, XP, material, counts, regimen (all in `root`). Xr is filled by the material before the move. Reads the
// side to search, PRs, PRe, CHESS_960; sets PRe to '0' and, for the search's own promotion, PR to 'q'.
//
// With more moves to follow at once, what the preparation of the next move overwrites unread is left out: XP, regimen.
void init_tabuleiro(bool more_moves = false);

// The same preparation of the board as it stands, nothing being played; the material is counted first.
void prepare_position_of_fen();

}  // namespace ondrel
