// The judgement of a leaf at the speed of the tree: the rules of the walk and the final sum, asked in sets of squares
// and tables. A checked build holds every call against the plain rule.
#pragma once

#include "base/masks.h"
#include "base/types.h"

namespace ondrel {

// Brings what the judgement takes from the root and the options up to date: npecas, materialmaior, agres, agresprxrei,
// regimen, PM, MOB. Called before a search enters its tree; cheap when nothing has changed.
void prepara_julgamento(Cor own);

// extra_eval_<c> (own = stm) and extra_evall_<c>, but for ddep, on the position t, m: leaves extraeval, EMPAT and
// contagem.
template <Cor own, Cor stm>
void julga_a_folha(const Tabuleiro& t, const Mascaras& m);

}  // namespace ondrel
