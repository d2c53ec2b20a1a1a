// Positional tables, indexed as a board; those of one colour by Colour first. The root's move classes read the tables of
// whole numbers, the evaluation of leaves the float tables.
#pragma once

#include "base/types.h"

namespace ondrel {

using IntTable = std::array<int, squares>;
using FloatTable = std::array<float, squares>;

// Values of a root move's destination. Lifetime: the process; filled at a new game and at every search, and only those
// of the colour that the engine plays, which alone are read.
struct PositionalTables {
    std::array<IntTable, 2> posix_peao_inici{};
    std::array<IntTable, 2> posix_peao_medio{};
    std::array<IntTable, 2> posix_cavalo{};
    std::array<IntTable, 2> posix_bispo{};
    std::array<IntTable, 2> posix_torre{};
    std::array<IntTable, 2> posix_dama{};
    std::array<IntTable, 2> posix_reifinal{};
};
inline PositionalTables tables;

// Fills what a new game with the engine as c needs: pawns and knights.
void fill_tables_of_new_game(Colour c);

// Fills all tables of c.
void fill_tables(Colour c);

// posix_b_peao_final, posix_p_peao_final: by the rank as the colour sees it; edge files count less.
constexpr std::array<IntTable, 2> posix_peao_final = [] {
    constexpr std::array<int, 8> on_edge_files{0, 0, 20, 20, 20, 25, 30, 100};
    constexpr std::array<int, 8> on_other_files{0, 0, 25, 25, 25, 30, 35, 100};
    std::array<IntTable, 2> t{};
    for (const Colour c : {white, black}) {
        for (int i = 0; i < squares; ++i) {
            const bool edge = file_of(i) == file_a || file_of(i) == file_h;
            t[c][i] = (edge ? on_edge_files : on_other_files)[relative_rank(c, rank_of(i))];
        }
    }
    return t;
}();

// Nearness of two squares: squared distance plus 2.
constexpr int proximidade(int i, int j) {
    const int files = file_of(i) - file_of(j);
    const int ranks = rank_of(i) - rank_of(j);
    return files * files + ranks * ranks + 2;
}

// --- Weights of squares at the leaves: nearness to the centre, and of a pawn to its promotion ---

template <class Weight>
constexpr FloatTable float_table(Weight weight) {
    FloatTable t{};
    for (int i = 0; i < squares; ++i) {
        t[i] = static_cast<float>(weight(file_of(i), rank_of(i)));
    }
    return t;
}

constexpr double distance_to_centre(int f, int r) { return (f - 3.5) * (f - 3.5) + (r - 3.5) * (r - 3.5) + 2.0; }

constexpr FloatTable centro = float_table([](int f, int r) { return 1.0 / distance_to_centre(f, r); });
constexpr FloatTable centroo = float_table([](int f, int r) { return 50.0 / distance_to_centre(f, r); });
constexpr std::array<FloatTable, 2> promo{// promo_b, promo_p
                                          float_table([](int, int r) { return 1.0 / (2 * (r - 7) * (r - 7) + 2); }),
                                          float_table([](int, int r) { return 1.0 / (2 * r * r + 2); })};

}  // namespace ondrel
