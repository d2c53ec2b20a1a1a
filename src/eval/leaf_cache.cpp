#include "eval/leaf_cache.h"

#include "eval/context.h"

namespace ondrel {
namespace {

constexpr int places_bits = 16;

struct LeafCache {
    std::array<CachedLeaf, std::size_t{1} << places_bits> places{};
    // A part of the hash of what stands there. A leaf that is not there need not be waited for: it is only written.
    std::array<std::uint16_t, std::size_t{1} << places_bits> tags{};
};
LeafCache cache;

// One factor for each word of the key, odd and without a pattern.
constexpr std::array<std::uint64_t, 5> factors{0x9E3779B97F4A7C15U, 0xC2B2AE3D27D4EB4FU, 0x165667B19E3779F9U,
                                               0xD6E8FEB86659FD93U, 0xA0761D6478BD642FU};

std::uint64_t hash_of(const std::array<SquareSet, 4>& planes, std::uint64_t rest) {
    std::uint64_t h = rest * factors[4];
    for (int k = 0; k < 4; ++k) {
        h += planes[k] * factors[k];
    }
    return (h ^ h >> 32U) * factors[0];
}

}  // namespace

CachedLeaf& cached_leaf(const PieceSets& sets, const std::array<int, 2>& king, Colour stm) {
    const std::array<SquareSet, 4> planes{sets.of_colour[white], sets.kind(peao) | sets.kind(bispo) | sets.kind(dama),
                                          sets.kind(cavalo) | sets.kind(bispo) | sets.kind(rei),
                                          sets.kind(torre) | sets.kind(dama) | sets.kind(rei)};
    const std::array<std::uint8_t, 2> seen{static_cast<std::uint8_t>(king[white]),
                                           static_cast<std::uint8_t>(king[black])};
    const std::uint64_t hash =
        hash_of(planes, seen[white] | unsigned{seen[black]} << 8U | static_cast<unsigned>(stm) << 16U |
                            std::uint64_t{context.stamp} << 32U);
    const std::size_t place = hash >> (64U - places_bits);
    const auto tag = static_cast<std::uint16_t>(hash >> (48U - places_bits));
    CachedLeaf& x = cache.places[place];
    if (cache.tags[place] != tag || x.stamp != context.stamp || x.planes != planes || x.king != seen || x.stm != stm) {
        cache.tags[place] = tag;
        x = CachedLeaf{planes, seen, static_cast<std::uint8_t>(stm), Known::not_at_all, context.stamp, 0};
    }
    return x;
}

}  // namespace ondrel
