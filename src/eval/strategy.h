// The class of a root move.
#pragma once

#include "base/types.h"

namespace ondrel {

// verifica_estrategia_<c>: after init_tabuleiro2 of a root move of c. Leaves extraevalll (the base value, computed
// first), ATAQUE and ESTRATEGIA (ATAQUE clamped to -100..100); scales MATRIZ in place when incentiva_promo is set.
template <Cor c>
void verifica_estrategia();

// The class alone: ATAQUE, ESTRATEGIA and MATRIZ as verifica_estrategia_<c> leaves them, without the base value.
template <Cor c>
void classifica();

}  // namespace ondrel
