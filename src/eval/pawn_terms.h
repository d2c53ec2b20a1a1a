// The terms of a leaf that pawns and kings alone decide. Pawns stand still while the men move, so the terms are kept by
// where they stand. Called by the estimate (estimate.cpp).
#pragma once

#include "base/square_sets.h"

namespace ondrel {

// What the pawns of one colour add to its sums: by the attacked squares in the units of attack_sums.h, and to posicao.
struct PawnTally {
    int enemy_king = 0, own_king = 0, centre = 0;
    int whole_terms = 0;
    double real_terms = 0;  // some of them for the enemy's pawns
};

struct PawnTerms {
    std::array<SquareSet, 2> pawns{};
    std::array<int, 2> king{-1, -1};
    std::uint32_t stamp = 0;  // of the context in which they were worked out
    std::array<PawnTally, 2> side;
};

// The terms for these pawns and for kings as the tests last saw them; they stand until the next call.
const PawnTerms& pawn_terms(SquareSet of_white, SquareSet of_black, const std::array<int, 2>& king);

// --- Sets as pawns move ---

constexpr SquareSet ranks_up_to(Colour c, int r) {
    SquareSet s = 0;
    for (int k = 0; k <= r; ++k) {
        s |= rank_set(c, k);
    }
    return s;
}

// A set n ranks further, or back, as the colour sees it; what leaves the board is gone.
template <Colour c>
constexpr SquareSet ahead(SquareSet s, int n = 1) {
    s &= ranks_up_to(c, last_rank - n);
    return c == white ? s << static_cast<unsigned>(n) : s >> static_cast<unsigned>(n);
}
template <Colour c>
constexpr SquareSet behind(SquareSet s, int n = 1) {
    return ahead<other(c)>(s, n);
}

// How many squares of the set lie beside the squares of another, each counted from either side.
constexpr int count_beside(SquareSet set, SquareSet of) {
    return std::popcount((of << 8U) & set) + std::popcount((of >> 8U) & set);
}

}  // namespace ondrel
