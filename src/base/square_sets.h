// Sets of squares as 64-bit words, bit = board index, and a board told in such sets beside its 64 bytes. Bits ascend in
// the scan order of the board. Used wherever the tree must be quick.
#pragma once

#include "base/types.h"

#include <bit>

namespace ondrel {

using SquareSet = std::uint64_t;

constexpr SquareSet set_of(int i) { return SquareSet{1} << static_cast<unsigned>(i); }

// The first and the last square of a set, which must hold one: the question is not asked again, as <bit> would.
constexpr int first_square(SquareSet s) { return __builtin_ctzll(s); }
constexpr int last_square(SquareSet s) { return 63 ^ __builtin_clzll(s); }
constexpr SquareSet without_first(SquareSet s) { return s & (s - 1); }

// Calls `f` with the index of every square of the set, ascending.
template <class F>
constexpr void for_each_square(SquareSet s, F f) {
    for (; s != 0; s = without_first(s)) {
        f(first_square(s));
    }
}

constexpr SquareSet rank_set(Colour c, int rank) {
    return 0x0101010101010101U << static_cast<unsigned>(relative_rank(c, rank));
}
constexpr SquareSet file_set(int f) { return SquareSet{0xFF} << static_cast<unsigned>(8 * f); }

// --- A board in sets ---

// Index of a kind of man in PieceSets::of_kind.
constexpr int kind_of(int v) {
    switch (v) {
        case peao: return 0;
        case cavalo: return 1;
        case bispo: return 2;
        case torre: return 3;
        case dama: return 4;
        default: return 5;
    }
}

struct PieceSets {
    std::array<SquareSet, 2> of_colour{};
    std::array<SquareSet, 6> of_kind{};  // of both colours

    constexpr bool operator==(const PieceSets&) const = default;

    [[nodiscard]] constexpr SquareSet occupied() const { return of_colour[white] | of_colour[black]; }
    [[nodiscard]] constexpr SquareSet kind(Piece x) const { return of_kind[kind_of(x)]; }
    [[nodiscard]] constexpr SquareSet of(Colour c, Piece x) const { return of_colour[c] & kind(x); }
    [[nodiscard]] constexpr SquareSet rooks_and_queens() const { return kind(torre) | kind(dama); }
    [[nodiscard]] constexpr SquareSet bishops_and_queens() const { return kind(bispo) | kind(dama); }

    // Puts a man of c on a square, or takes him from it.
    constexpr void toggle(Colour c, int v, SquareSet where) {
        of_colour[c] ^= where;
        of_kind[kind_of(v)] ^= where;
    }
    // Empties a square that holds x, 0 for none.
    constexpr void clear(int x, int i) {
        if (x != no_piece) {
            toggle(colour_of(x), value_of(x), set_of(i));
        }
    }
};

constexpr PieceSets piece_sets(const Board& t) {
    PieceSets sets;
    for (int i = 0; i < squares; ++i) {
        sets.clear(t[i], i);
    }
    return sets;
}

constexpr Board board_of(const PieceSets& m) {
    Board t{};
    for (const Piece x : piece_order) {
        for_each_square(m.of(white, x), [&](int i) { t[i] = man(white, x); });
        for_each_square(m.of(black, x), [&](int i) { t[i] = man(black, x); });
    }
    return t;
}

// --- Rays ---

// Directions in the order of the queen's rays; of these the rook has the first four and the bishop the last four.
constexpr int directions = 8;
constexpr int first_diagonal = 4;

// Whether the board index rises along a direction.
constexpr bool rises(int d) { return queen_steps[d].file > 0 || (queen_steps[d].file == 0 && queen_steps[d].rank > 0); }

// A table of rays by direction and square, built by `add`(entry, square, how many squares lie before it).
template <class T, class F>
constexpr std::array<std::array<T, squares>, directions> ray_table(F add) {
    std::array<std::array<T, squares>, directions> t{};
    for (int d = 0; d < directions; ++d) {
        for (int i = 0; i < squares; ++i) {
            int before = 0;
            const Step s = queen_steps[d];
            for (int f = file_of(i) + s.file, r = rank_of(i) + s.rank; on_board(f, r); f += s.file, r += s.rank) {
                add(t[d][i], square(f, r), before++);
            }
        }
    }
    return t;
}

// From a square to the edge: the squares as a set, and in order, the nearest first.
constexpr auto ray = ray_table<SquareSet>([](SquareSet& s, int i, int) { s |= set_of(i); });
using RaySquares = std::array<std::uint8_t, 8>;
constexpr auto ray_in_order =
    ray_table<RaySquares>([](RaySquares& x, int i, int before) { x[before] = static_cast<std::uint8_t>(i); });

// The direction from one square to another, -1 if no ray joins them.
constexpr std::array<std::array<std::int8_t, squares>, squares> direction_between = [] {
    std::array<std::array<std::int8_t, squares>, squares> t{};
    for (int i = 0; i < squares; ++i) {
        t[i].fill(-1);
        for (int d = 0; d < directions; ++d) {
            for_each_square(ray[d][i], [&](int k) { t[i][k] = static_cast<std::int8_t>(d); });
        }
    }
    return t;
}();

// All squares on the lines through a square, without it.
constexpr std::array<SquareSet, squares> lines_through(int first_direction) {
    std::array<SquareSet, squares> t{};
    for (int i = 0; i < squares; ++i) {
        for (int d = first_direction; d < first_direction + 4; ++d) {
            t[i] |= ray[d][i];
        }
    }
    return t;
}
constexpr std::array<SquareSet, squares> straight_lines = lines_through(0);
constexpr std::array<SquareSet, squares> diagonals = lines_through(first_diagonal);

// The first man on a ray, of the men on it; there must be one.
constexpr int first_on_ray(int d, SquareSet men_on_it) {
    return rises(d) ? first_square(men_on_it) : last_square(men_on_it);
}

// How many squares of a ray are empty before its first man.
inline int empty_on_ray(int i, int d, SquareSet occupied) {
    const SquareSet all = ray[d][i];
    const SquareSet men = all & occupied;
    if (men == 0) {
        return std::popcount(all);
    }
    // Along a ray that rises the squares before the first man lie under its bit, along one that falls above it.
    const SquareSet below = (men & (0 - men)) - 1;
    const SquareSet above = ~SquareSet{0} << 1U << static_cast<unsigned>(last_square(men));
    return std::popcount(all & (rises(d) ? below : above));
}

// The squares strictly between two squares on a ray.
inline SquareSet between(int from, int to) {
    const int d = direction_between[from][to];
    return ray[d][from] & ~ray[d][to] & ~set_of(to);
}

// --- Leaps ---

// The squares that a man reaches by single steps, as a set and in the order of the steps.
struct Leaps {
    SquareSet to = 0;
    std::array<std::uint8_t, 8> in_order{};
    int count = 0;
};

template <std::size_t n>
constexpr std::array<Leaps, squares> leap_table(const std::array<Step, n>& steps) {
    std::array<Leaps, squares> t{};
    for (int i = 0; i < squares; ++i) {
        for (const Step s : steps) {
            const int f = file_of(i) + s.file;
            const int r = rank_of(i) + s.rank;
            if (on_board(f, r)) {
                t[i].to |= set_of(square(f, r));
                t[i].in_order[t[i].count++] = static_cast<std::uint8_t>(square(f, r));
            }
        }
    }
    return t;
}

constexpr std::array<Leaps, squares> knight_leaps = leap_table(knight_steps);
constexpr std::array<Leaps, squares> king_leaps = leap_table(king_steps);
// The squares that a pawn attacks, the higher file first.
constexpr std::array<std::array<Leaps, squares>, 2> pawn_leaps{leap_table(std::array<Step, 2>{{{1, 1}, {-1, 1}}}),
                                                               leap_table(std::array<Step, 2>{{{1, -1}, {-1, -1}}})};

// --- Attacks ---

// The enemies of c that attack square i by a single step.
inline SquareSet near_attackers(const PieceSets& m, Colour c, int i) {
    return m.of_colour[other(c)] & ((pawn_leaps[c][i].to & m.kind(peao)) | (knight_leaps[i].to & m.kind(cavalo)) |
                                    (king_leaps[i].to & m.kind(rei)));
}

// The enemies of c that would attack square i along a line if nothing stood between.
inline SquareSet line_attackers(const PieceSets& m, Colour c, int i) {
    return m.of_colour[other(c)] &
           ((m.rooks_and_queens() & straight_lines[i]) | (m.bishops_and_queens() & diagonals[i]));
}

// Whether an enemy of c attacks square i over the men `occupied`.
inline bool is_attacked(const PieceSets& m, Colour c, int i, SquareSet occupied) {
    if (near_attackers(m, c, i) != 0) {
        return true;
    }
    for (SquareSet far = line_attackers(m, c, i); far != 0; far = without_first(far)) {
        if ((between(i, first_square(far)) & occupied) == 0) {
            return true;
        }
    }
    return false;
}

}  // namespace ondrel
