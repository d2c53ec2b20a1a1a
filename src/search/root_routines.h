// The root routines: there is no list of root moves either. Called by the schedule, square by square.
#pragma once

#include "base/types.h"

namespace ondrel {

// The class of moves that a root routine tries: captures of one victim, or quiet moves. positive1 also holds en passant
// and castling.
enum Stage : int { livre = 0, positive1 = 1, positive2 = 2, positive3 = 3, positive4 = 4, positive5 = 5 };

// What is known of a root move since its first visit in a pass.
struct KnownClass {
    bool known = false;
    bool legal = false;
    bool gives_check = false;
    int ESTRATEGIA = 0;
};

// Lifetime: `by_move` (from-square, to-square) a pass, `owed` until the visit is made. Written by the root routines.
struct Visits {
    std::array<std::array<KnownClass, squares>, squares> by_move{};
    Move owed = no_move;  // the last move passed by without its visit
};
inline Visits visits;

// Forgets the classes of root moves: they hold while tab, the root's tables and the options stand. Called before each
// pass.
void forget_classes();

// analise100<stage><h>_<piece>_<c>: tries the moves of the stage of the piece of c on a square of tab and searches those
// whose class equals ataque and that give check (`ch`) or give none. Raises alfa[0], keeps the best move in game.abcd and
// aab_ddb with E, and sets corte_MAXcut when the root has enough. A move that repeats a position of the game gets the
// draw score instead of a search.
template <Colour c>
void analise100(Stage stage, bool ch, Piece piece, int from);

// Makes the visit of a root move of c that is still owed: castling of the next search is judged by what it leaves.
// Called at the end of a search, before tab changes.
template <Colour c>
void make_owed_visit();

}  // namespace ondrel
