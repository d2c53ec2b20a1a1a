// The judgement of a leaf, and of the position after a root move.
#pragma once

#include "base/bounds.h"
#include "base/root.h"

namespace ondrel {

// Both judge the position on tab2 in the view of c, the colour that the engine plays, and leave the result in
// extraeval (-50..50), EMPAT, and the counters in contagem. The king squares must be those of tab2, as the test of
// both kings leaves them; npecas, materialmaior and regimen are the root's.
//
// extra_eval_<c> serves leaves after the opponent's move and raises ddep to deep; extra_evall_<c> serves leaves after
// the engine's own move.
template <Cor c>
void extra_eval();
template <Cor c>
void extra_evall();

// The base value of a root move of c, on tab2: leaves it in extraevalll. Counts legal moves only.
template <Cor c>
void valor_base();

// No pawn, rook or queen on tab2, and each colour has at most two knights, or at most one bishop.
bool empate_por_material();

}  // namespace ondrel
