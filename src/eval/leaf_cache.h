// Leaves judged before. The same position comes up again and again in a search, under other root moves and at other
// depths; what a judgement adds up from the position alone is kept here. Called by the judgement of a leaf (leaf.cpp).
#pragma once

#include "base/square_sets.h"

namespace ondrel {

// How well the sum of a leaf is known.
enum class Known : std::uint8_t { not_at_all, by_estimate, exactly };

// A leaf in 64 bytes: what the sum depends on, and the sum. Kinds of men are told by three sets, each the union of those
// kinds whose number has that bit.
struct alignas(64) CachedLeaf {
    std::array<SquareSet, 4> planes{};   // white men, and the three bits of the kind
    std::array<std::uint8_t, 2> king{};  // where the tests last saw the kings
    std::uint8_t stm = white;
    Known known = Known::not_at_all;
    std::uint32_t stamp = 0;  // of the context in which it was judged
    double sum = 0;           // position_sum of judgement.h
};

// The place of a leaf with `stm` to move. It holds that leaf, with `known` telling what is known of it; what stood there
// for another leaf is gone.
CachedLeaf& cached_leaf(const PieceSets& sets, const std::array<int, 2>& king, Colour stm);

}  // namespace ondrel
