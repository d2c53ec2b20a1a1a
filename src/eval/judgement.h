// The final sum of a judgement, from the counters of the last walk (contagem).
#pragma once

#include "base/types.h"

namespace ondrel {

// All terms on top of `inicio`, in extended precision and in the order that fixes the rounding. The base value of a
// root move goes without the terms in regimen.
template <bool com_regimen>
float julgamento(Cor own, long double inicio);

// One term in regimen: hits against support of colour c.
long double termo_do_regimen(double peso, Cor c);

// The same float as julgamento<true>, in double and by tables where that can be told for certain, and by the rule
// itself where it cannot.
float julgamento_rapido(Cor own, float inicio);

// The same in float logarithms, for float sums that are near theirs: leaves it in `estimativa`. False, and nothing left,
// where a small error in the sums could be a large one in the result.
bool julgamento_estimado(Cor own, float inicio, float& estimativa);

// Within -piecesac..piecesac; what is no number stays so.
float limita(float r);

}  // namespace ondrel
