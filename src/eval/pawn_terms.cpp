#include "eval/pawn_terms.h"

#include "eval/attack_sums.h"
#include "eval/context.h"
#include "eval/weights.h"

namespace ondrel {
namespace {

constexpr int places_bits = 10;

struct PawnTable {
    std::array<PawnTerms, std::size_t{1} << places_bits> places;
};
PawnTable table;

// --- The items of the terms, for all pawns of a colour at once ---

template <Colour c>
void mark_pawn_attacks(PawnTerms& x, SquareSet own, const std::array<int, 2>& king) {
    PawnTally& me = x.side[c];
    const auto& to_enemy_king = sums_near_king(king[other(c)]).pawn[c];
    const auto& to_own_king = sums_near_king(king[c]).pawn[c];
    const auto& in_centre = sums_in_centre().pawn[c];
    for_each_square(own, [&](int i) {
        me.enemy_king += to_enemy_king[i];
        me.own_king += to_own_king[i];
        me.centre += in_centre[i];
    });
}

template <Colour c>
void count_endgame_pawns(PawnTerms& x, SquareSet own, const std::array<int, 2>& king) {
    for_each_square(own, [&](int i) {
        x.side[c].real_terms += endgame_pawn(c, i, king[c]);
        x.side[other(c)].real_terms += pawn_draws_king_from[nearness[i][king[other(c)]]];
    });
}

// Breakthroughs: no pawn on the square of the capture, and no enemy pawn to stop it on the own file or on the file
// beyond.
template <Colour c>
int count_breakthroughs(SquareSet own, SquareSet enemy) {
    SquareSet stopped = behind<c>(enemy & ranks_up_to(c, seventh_rank), 2);
    stopped |= behind<c>(stopped, 1);
    stopped |= behind<c>(stopped, 2);
    stopped |= behind<c>(stopped, 4);
    const SquareSet pawns_ahead = behind<c>(own | enemy);
    const SquareSet who = own & ranks_up_to(c, seventh_rank - 2) & ~stopped;
    return std::popcount(who & ~file_set(file_h) & ~(stopped >> 16U) & ~(pawns_ahead >> 8U)) +
           std::popcount(who & ~file_set(file_a) & ~(stopped << 16U) & ~(pawns_ahead << 8U));
}

// Passed pawns, and the own pawns beside the way of each pawn up to its first stop: all pawns go forward together.
template <Colour c>
int ways_to_promotion(SquareSet own, SquareSet enemy) {
    const SquareSet free = ~(own | enemy | enemy << 8U | enemy >> 8U) & ranks_up_to(c, seventh_rank);
    int beside = 0;
    SquareSet arrived = 0;
    for (SquareSet walking = ahead<c>(own) & free; walking != 0; walking = ahead<c>(walking) & free) {
        beside += count_beside(own, walking);
        arrived |= walking & rank_set(c, seventh_rank);
    }
    return pawn_beside_the_way * beside + passed_pawn * std::popcount(arrived);
}

template <Colour c>
void add_pawns(PawnTerms& x) {
    const SquareSet own = x.pawns[c];
    const SquareSet enemy = x.pawns[other(c)];
    if (weights.endgame_for[c]) {
        count_endgame_pawns<c>(x, own, x.king);
    } else {
        mark_pawn_attacks<c>(x, own, x.king);
    }
    x.side[c].whole_terms +=
        pawn_on_seventh * std::popcount(own & rank_set(c, seventh_rank)) + pawn_beside * count_beside(own, own) +
        pawn_defends_pawn * count_beside(own, ahead<c>(own)) +
        pawn_breaks_through * count_breakthroughs<c>(own, enemy) + ways_to_promotion<c>(own, enemy);
}

PawnTerms& place_of(SquareSet of_white, SquareSet of_black, const std::array<int, 2>& king) {
    const std::uint64_t h = of_white * 0x9E3779B97F4A7C15U + of_black * 0xC2B2AE3D27D4EB4FU +
                            static_cast<std::uint64_t>(king[white] + squares * king[black]) * 0x165667B19E3779F9U;
    return table.places[(h ^ h >> 32U) * 0x9E3779B97F4A7C15U >> (64U - places_bits)];
}

}  // namespace

const PawnTerms& pawn_terms(SquareSet of_white, SquareSet of_black, const std::array<int, 2>& king) {
    PawnTerms& x = place_of(of_white, of_black, king);
    if (x.stamp != context.stamp || x.king != king || x.pawns[white] != of_white || x.pawns[black] != of_black) {
        x = PawnTerms{{of_white, of_black}, king, context.stamp, {}};
        add_pawns<white>(x);
        add_pawns<black>(x);
    }
    return x;
}

}  // namespace ondrel
