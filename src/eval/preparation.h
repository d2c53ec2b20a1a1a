// The position of the game: playing a move on it, and all that the search treats as its constants.
#pragma once

namespace ondrel {

// Plays abcd on tab with the root flags, whatever stands there, and prepares the position: king squares, Xr, XP,
// material, counts, regimen. Xr is filled by the material before the move. Reads joga_com_b (the side to search), PRs,
// PRe, deeppromo, CHESS_960. Sets X, clears pp, sets PRe to '0' and, for the search's own promotion, PR to 'q'.
//
// With more moves to follow at once, what the preparation of the next move overwrites unread is left out: XP, regimen.
void init_tabuleiro(bool mais_lances = false);

// The same preparation of the board as it stands, nothing being played; the material is counted first.
void prepara_posicao_do_fen();

}  // namespace ondrel
