// The weights of a leaf's judgement that are no options: its terms and its final sum. A weight of a term is in units of the positional
// sum (posicao_<c>), which enters the score only under a logarithm; a weight of the final sum is in score units.
#pragma once

#include "base/square_sets.h"
#include "eval/tables.h"

namespace ondrel {

// --- Terms that are the same in every position ---

constexpr int developed_man = 15;  // knight, bishop, queen off the first rank; rook off the edge files
constexpr int bishop_on_long_diagonal_many_men = 11;
constexpr int bishop_on_long_diagonal_few_men = 5;
constexpr int advanced_rook = 11;         // on its last two ranks, with very few men left
constexpr int rook_backs_along_rank = 3;  // a rook behind an own rook or queen
constexpr int rook_backs_along_file = 5;
constexpr int queen_backs = 1;
constexpr int pawn_on_seventh = 100;
constexpr int pawn_beside = 13;        // for each own pawn beside
constexpr int pawn_defends_pawn = 11;  // for each own pawn diagonally ahead
constexpr int pawn_breaks_through = 25;
constexpr int pawn_beside_the_way = 10;        // an own pawn beside the way to promotion
constexpr int passed_pawn = 33;                // a way without a stop
constexpr double pawn_takes_at_a_cost = 10.0;  // off the worth of what a pawn of the side to move attacks
constexpr int defended_pawn_attacks = 2;       // divides the worth of what a defended pawn of the other side attacks

// --- Terms by nearness and by square; the first weight of a pair with few men on the board, the second with many ---

struct ByPhase {
    double few_men, many_men;
};
constexpr ByPhase knight_near_king{15.0, 5.0};
constexpr ByPhase knight_near_centre{10.0, 25.0};
constexpr ByPhase queen_near_king{25.0, 5.0};
constexpr ByPhase queen_near_centre{15.0, 10.0};
constexpr double rook_near_king = 10.0;        // with few men only
constexpr double king_near_bare_king = 75.0;   // where the enemy has no men
constexpr double king_near_centre = 50.0;      // where the enemy is down to a queen or less
constexpr double pawn_near_promotion = 100.0;  // the same
constexpr double pawn_draws_king = 25.0;       // each king toward it

// --- The phases of the game, told from the root ---

constexpr int few_men = 15;       // below this many men without the kings
constexpr int very_few_men = 11;  // below this
constexpr float queen_or_less = 90.0F;

// --- The final sum ---

constexpr int points_of_minor = 3;
constexpr int points_of_rook = 5;
constexpr int points_of_queen = 9;

constexpr double weight_of_points = 2;          // the counter is kept twice
constexpr double weight_of_own_hits = 0.01;     // of regimen
constexpr double weight_of_enemy_hits = 0.001;  // of regimen
constexpr double weight_of_king_safety = 5;
constexpr double weight_of_base_value = 0.01;  // of the judgement of the position after the root move
constexpr double weight_of_material_in_balance = 0.1;
constexpr int count_offset = 3;               // added to a count or king sum under a logarithm
constexpr double points_offset = 10.1;        // to points, and to posicao + centro
constexpr double advance_offset = 0.1;        // to avanco and to material
constexpr double least_positional_sum = 0.1;  // a sum below it counts as it, so that its logarithm is a number

// --- What the terms weigh during one search, by what the root and the options say ---

constexpr int highest_proximidade = 100;
using ByProximidade = std::array<double, highest_proximidade + 1>;
using BySquare = std::array<double, squares>;

struct LeafWeights {
    // What the rest is worked out from.
    Colour own = white;
    std::array<int, 2> npecas{-1, -1};
    std::array<float, 2> materialmaior{};
    float agresprxrei = 0;

    bool few_men = false;
    bool very_few_men = false;
    std::array<bool, 2> endgame_for{};       // by Colour: its enemy is down to a queen or less
    std::array<bool, 2> enemy_has_no_men{};  // by Colour
    // Terms by Colour and the nearness of the enemy king, and by the square.
    std::array<ByProximidade, 2> knight_near_king{}, rook_near_king{}, queen_near_king{}, king_near_king{};
    BySquare knight_near_centre{}, queen_near_centre{}, king_near_centre{};
    int bishop_on_long_diagonal = 0;
};

// Written by prepare_weights alone. Lifetime: until what they are worked out from changes, mostly a search.
inline LeafWeights weights;

// Brings the weights up to date with npecas, materialmaior and agresprxrei for the colour that the engine plays, and the
// context (context.h); cheap when nothing has changed. Called before every walk of the root and before a search enters its
// tree.
void prepare_weights(Colour own);

// --- Tables that depend on nothing ---

// proximidade by index.
constexpr std::array<std::array<std::uint8_t, squares>, squares> nearness = [] {
    std::array<std::array<std::uint8_t, squares>, squares> t{};
    for (int i = 0; i < squares; ++i) {
        for (int j = 0; j < squares; ++j) {
            t[i][j] = static_cast<std::uint8_t>(proximidade(i, j));
        }
    }
    return t;
}();

constexpr ByProximidade divided_by_proximidade(double numerator) {
    ByProximidade t{};
    for (int d = 2; d <= highest_proximidade; ++d) {
        t[d] = numerator / d;
    }
    return t;
}
constexpr ByProximidade pawn_draws_king_from = divided_by_proximidade(pawn_draws_king);

// The term of a pawn's own colour where the enemy is down to a queen or less.
inline double endgame_pawn(Colour c, int i, int own_king) {
    return pawn_near_promotion * static_cast<double>(promo[c][i]) + pawn_draws_king_from[nearness[i][own_king]];
}

constexpr SquareSet long_diagonals = 0x8142241818244281U;

// Where a pawn shelters a king of c on a square: its own and the neighbouring files, beside it and up to two ranks ahead.
constexpr std::array<std::array<SquareSet, squares>, 2> shelters = [] {
    std::array<std::array<SquareSet, squares>, 2> t{};
    for (const Colour c : {white, black}) {
        for (int i = 0; i < squares; ++i) {
            for (int f = file_of(i) - 1; f <= file_of(i) + 1; ++f) {
                for (int ahead = 0; ahead <= 2; ++ahead) {
                    const int r = rank_of(i) + forward(c) * ahead;
                    t[c][i] |= on_board(f, r) ? set_of(square(f, r)) : 0;
                }
            }
        }
    }
    return t;
}();

}  // namespace ondrel
