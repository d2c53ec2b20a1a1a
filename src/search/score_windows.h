// The hard score window around the lead that material promises.
#pragma once

#include "base/types.h"

namespace ondrel {

// Mate-distance limits of the root and of every ply, in MAXcut and MAXcutt: the state of a new game.
void limites_de_mate();

// Sets MAXcut[0] to MAXcut[17] for a search of `minha`, from Positive_filter, Negative_filter and the root's material.
void janelas_de_placar(Cor minha);

}  // namespace ondrel
