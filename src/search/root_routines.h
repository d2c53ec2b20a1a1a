// The root routines: there is no list of root moves either.
#pragma once

#include "base/types.h"

namespace ondrel {

// The class of moves that a root routine tries: captures of one victim, or quiet moves. positive1 also holds en passant
// and castling.
enum Etapa : int { livre = 0, positive1 = 1, positive2 = 2, positive3 = 3, positive4 = 4, positive5 = 5 };

// Forgets the classes of root moves: they hold while tab and the tables of the root stand. Called before each pass.
void esquece_classes();

// Makes the visit of a root move of c that is still owed: castling of the next search is judged by what it leaves.
// Called at the end of a search, before tab changes.
template <Cor c>
void conclui_visitas();

// analise100<stage><h>_<piece>_<c>(file, rank): tries the moves of the stage of the piece of c on (file, rank) of tab
// and searches those whose class equals ataque and, by `ch`, that give check or give none. Raises alfa[0], keeps the
// best move in abcd and aab_ddb with E, and sets corte_MAXcut when the root has enough. A move that repeats a position
// of the game gets the draw score instead of a search.
template <Cor c>
void analise100(Etapa etapa, bool ch, Peca piece, int file, int rank);

}  // namespace ondrel
