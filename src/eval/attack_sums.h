// Sums of square weights over what a man attacks, made beforehand and in fixed point, so that they add up in any order.
// Called by the estimate of a leaf (estimate.cpp, pawn_terms.cpp).
#pragma once

#include "eval/rays.h"

namespace ondrel {

// A weight of each square, summed beforehand for what a man attacks. The sum over a line, from the first man above to
// the first below, is the difference of two sums from the end of the line; the man's own square is in it.
struct AttackSums {
    bool ready = false;
    std::array<int, squares> weight{};
    // By direction and last square as seen: one of the two sums, signed.
    std::array<std::array<int, squares>, directions> up_to{};
    std::array<int, squares> knight{}, king{};
    std::array<std::array<int, squares>, 2> pawn{};
};

// What the sums are multiples of.
constexpr double king_units = 1 << 20;
constexpr double centre_units = 1 << 15;

// Filled at the first use of each; they depend on nothing.
struct AttackSumTables {
    std::array<AttackSums, squares> near_king;  // 1/d to a king on the square
    AttackSums in_centre;                       // centroo
};
inline AttackSumTables attack_sums;

void fill_sums_near_king(int king);
void fill_sums_in_centre();

inline const AttackSums& sums_near_king(int king) {
    if (!attack_sums.near_king[king].ready) [[unlikely]] {
        fill_sums_near_king(king);
    }
    return attack_sums.near_king[king];
}

inline const AttackSums& sums_in_centre() {
    if (!attack_sums.in_centre.ready) [[unlikely]] {
        fill_sums_in_centre();
    }
    return attack_sums.in_centre;
}

}  // namespace ondrel
