// The evaluation: tables, the preparation of the root, classes and base values of root moves, leaves.
#pragma once

#include "plain/state.h"

namespace plain {

// --- Arithmetic ---
int to_int(long double x);                                // toward zero; the lowest int when it does not fit
long double ratio(long double above, long double below);  // with a divisor of 0 an infinity or no number
long double log_ratio(long double above, long double below);
int wrap(unsigned x);  // 32-bit arithmetic wraps

// --- Tables ---
void fill_tables(Colour c);           // at every search
void fill_new_game_tables(Colour c);  // at a new game

// Plays root.a .. root.d on tab and prepares the position.
void init_tabuleiro();
// The preparation of a FEN's board, nothing being played: here the material is counted first.
void prepare_fen_board();

// --- Root moves, on tab2 after init_tabuleiro2 ---
void set_destination_value(Move m);  // MATRIZ and incentiva_promo, of a move still unplayed on tab
void verifica_estrategia(Colour c);  // extraevalll, ATAQUE, ESTRATEGIA

// --- Leaves, on tab2: extraeval and EMPAT ---
void extra_eval(Colour own);   // the opponent has just moved
void extra_evall(Colour own);  // own has just moved

}  // namespace plain
