// The class of a root move, by which the root sweeps its moves. Called at every visit of a root move.
#pragma once

#include "base/types.h"

namespace ondrel {

constexpr int highest_class = 100;
constexpr int lowest_class = -100;

// What the last classification left.
struct MoveClass {
    int ESTRATEGIA = 0;  // the class, -100..100
    int ATAQUE = 0;      // the same before clamping
};
inline MoveClass move_class;

// verifica_estrategia_<c>: after init_tabuleiro2 of a root move of c, or after a castling test on what that left. Leaves
// extraevalll (the base value, worked out first), ATAQUE and ESTRATEGIA; scales MATRIZ in place when incentiva_promo is
// set. `roque` is the castling value of the line.
template <Colour c>
void verifica_estrategia(const std::array<int, 2>& roque);

// The class alone, without the base value.
template <Colour c>
void classify();

}  // namespace ondrel
