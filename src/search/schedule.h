// The top of the search: the root schedule and the iteration over depths.
#pragma once

#include "base/types.h"

namespace ondrel {

// Searches the position of the root for `minha`, unless the game-long memory answers (mem_TEST). Leaves the move in
// abcd, its score in E and PRs or PR for a promotion; with no legal move abcd keeps what it held.
void busca_na_raiz(Cor minha);

// The reduced search of a game's first move: pawns, then knights, for each class, at the present depth.
void busca_do_primeiro_lance(Cor minha);

// The draw score at the start of a search of `minha`.
void valor_do_empate(Cor minha);

}  // namespace ondrel
