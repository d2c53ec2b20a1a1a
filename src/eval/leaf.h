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

// How far at most an estimate lies from the judgement, score units.
constexpr float folga_da_estimativa = 0.01F;

// The same without an order of summation, and so without the board: leaves EMPAT, and in extraeval and in the float sums
// of contagem an estimate. Tells whether the estimate holds its bound; if it does not, extraeval is as it was.
template <Cor own, Cor stm>
bool estima_a_folha(const Mascaras& m);

// Turns the estimate that was the last call here into the judgement.
template <Cor own, Cor stm>
void afina_a_folha(const Tabuleiro& t, const Mascaras& m);

#if ONDREL_CHECKED
// Holds the estimate that was the last call here against the judgement, and leaves everything as the estimate did.
template <Cor own, Cor stm>
void prova_a_estimativa(const Tabuleiro& t, const Mascaras& m);
#endif

}  // namespace ondrel
