// Rays at the speed of a leaf: no question whether a ray has a man, no search from above.
#pragma once

#include "base/square_sets.h"

#include <utility>

namespace ondrel {

// Along a direction that falls the board is seen mirrored: the first man of a ray is then always the lowest bit of a
// set, which every processor finds quickly.
constexpr SquareSet mirrored(SquareSet s) {
    s = (s >> 1U & 0x5555555555555555U) | (s & 0x5555555555555555U) << 1U;
    s = (s >> 2U & 0x3333333333333333U) | (s & 0x3333333333333333U) << 2U;
    s = (s >> 4U & 0x0F0F0F0F0F0F0F0FU) | (s & 0x0F0F0F0F0F0F0F0FU) << 4U;
    return __builtin_bswap64(s);
}
constexpr int as_seen(int d, int i) { return rises(d) ? i : 63 - i; }

struct SeenRay {
    SquareSet all;       // its squares
    SquareSet seen;      // the same, mirrored where it falls
    SquareSet end_seen;  // its last square; the man's own where the ray is empty
};
constexpr std::array<std::array<SeenRay, squares>, directions> seen_rays = [] {
    std::array<std::array<SeenRay, squares>, directions> t{};
    for (int d = 0; d < directions; ++d) {
        for (int i = 0; i < squares; ++i) {
            const SquareSet seen = rises(d) ? ray[d][i] : mirrored(ray[d][i]);
            t[d][i] = {ray[d][i], seen, set_of(seen == 0 ? as_seen(d, i) : last_square(seen))};
        }
    }
    return t;
}();
// The squares beyond one, by the square as it is seen.
constexpr std::array<std::array<SquareSet, squares>, directions> beyond = [] {
    std::array<std::array<SquareSet, squares>, directions> t{};
    for (int d = 0; d < directions; ++d) {
        for (int i = 0; i < squares; ++i) {
            t[d][as_seen(d, i)] = ray[d][i];
        }
    }
    return t;
}();

// The men on the board, seen both ways.
struct SeenMen {
    SquareSet direct;
    SquareSet mirror;
};
constexpr SeenMen seen_men(SquareSet occupied) { return {occupied, mirrored(occupied)}; }

// Where a man on i goes along one ray: the squares attacked, and the last of them as seen.
struct Reach {
    SquareSet attacked;
    int last_seen;
};
template <int d>
inline Reach reach(int i, SeenMen men) {
    const SeenRay& r = seen_rays[d][i];
    const int last = first_square((r.seen & (rises(d) ? men.direct : men.mirror)) | r.end_seen);
    return {r.all & ~beyond[d][last], last};
}

using StraightDirections = std::integer_sequence<int, 0, 1, 2, 3>;
using DiagonalDirections = std::integer_sequence<int, 4, 5, 6, 7>;
using AllDirections = std::integer_sequence<int, 0, 1, 2, 3, 4, 5, 6, 7>;

constexpr bool along_rank(int d) { return queen_steps[d].rank == 0; }

}  // namespace ondrel
