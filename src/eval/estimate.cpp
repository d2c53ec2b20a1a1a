#include "eval/estimate.h"

#include "base/options.h"
#include "eval/attack_sums.h"
#include "eval/pawn_terms.h"
#include "eval/weights.h"

namespace ondrel {
namespace {

// --- The counters of one colour ---

struct Tally {
    int mobilidade, alvos, apoios;
    int enemy_king, own_king, centre;  // sums over the squares attacked
    int whole_terms;                   // of the positional sum
    double real_terms;
};

struct Count {
    const PieceSets& m;
    SeenMen men;
    std::array<int, 2> king;
    std::array<const AttackSums*, 2> near_king;
    const AttackSums& in_centre;
    std::array<Tally, 2> side;
};

// Squares that a man of c attacks.
template <Colour c>
void count_attacks(Count& x, SquareSet attacked, int how_many) {
    const int own = std::popcount(attacked & x.m.of_colour[c]);
    x.side[c].apoios += own;
    x.side[c].alvos += std::popcount(attacked & x.m.of_colour[other(c)]);
    x.side[c].mobilidade += how_many - own;
}

// A man of the side to move before richer enemies.
template <Colour stm, Colour c, Piece who>
void count_richer(Count& x, SquareSet attacked) {
    if constexpr (c == stm && (who == cavalo || who == bispo || who == torre)) {
        const SquareSet enemies = attacked & x.m.of_colour[other(c)];
        for (const Piece v : {bispo, torre, dama, rei}) {
            if (v > who) {
                x.side[c].whole_terms += (v - who) * std::popcount(enemies & x.m.kind(v));
            }
        }
    }
}

template <Colour c>
void add_leaps(Count& x, int i, std::array<int, squares> AttackSums::*who) {
    Tally& me = x.side[c];
    me.enemy_king += (x.near_king[other(c)]->*who)[i];
    me.own_king += (x.near_king[c]->*who)[i];
    me.centre += (x.in_centre.*who)[i];
}

template <Colour stm, Colour c, Piece who, int... d>
void slide(Count& x, int i, std::integer_sequence<int, d...>) {
    const std::array<Reach, sizeof...(d)> reaches{reach<d>(i, x.men)...};
    constexpr int first = who == bispo ? first_diagonal : 0;
    constexpr int lines = sizeof...(d) / 2;
    const auto sum = [&](const AttackSums& s) {
        return (s.up_to[d][reaches[d - first].last_seen] + ...) - lines * s.weight[i];
    };
    Tally& me = x.side[c];
    me.enemy_king += sum(*x.near_king[other(c)]);
    me.own_king += sum(*x.near_king[c]);
    me.centre += sum(x.in_centre);
    const SquareSet on_rank = ((along_rank(d) ? reaches[d - first].attacked : 0) | ...);
    const SquareSet elsewhere = ((along_rank(d) ? 0 : reaches[d - first].attacked) | ...);
    const SquareSet attacked = on_rank | elsewhere;
    count_attacks<c>(x, attacked, std::popcount(attacked));
    count_richer<stm, c, who>(x, attacked);
    // A rook or queen behind an own rook or queen.
    const SquareSet backed = x.m.of_colour[c] & x.m.rooks_and_queens();
    if constexpr (who == torre) {
        me.whole_terms += rook_backs_along_rank * std::popcount(on_rank & backed) +
                          rook_backs_along_file * std::popcount(elsewhere & backed);
    } else if constexpr (who == dama) {
        me.whole_terms += queen_backs * std::popcount(attacked & backed);
    }
}

// --- Men ---

template <Colour c>
void count_developed(Count& x) {
    const SquareSet minors_and_queens = x.m.of(c, cavalo) | x.m.of(c, bispo) | x.m.of(c, dama);
    x.side[c].whole_terms += developed_man * (std::popcount(minors_and_queens & ~rank_set(c, 0)) +
                                              std::popcount(x.m.of(c, torre) & ~(file_set(file_a) | file_set(file_h))));
}

template <Colour stm, Colour c>
void count_knights(Count& x) {
    Tally& me = x.side[c];
    for_each_square(x.m.of(c, cavalo), [&](int i) {
        me.real_terms += weights.knight_near_king[c][nearness[i][x.king[other(c)]]] + weights.knight_near_centre[i];
        add_leaps<c>(x, i, &AttackSums::knight);
        count_attacks<c>(x, knight_leaps[i].to, knight_leaps[i].count);
        count_richer<stm, c, cavalo>(x, knight_leaps[i].to);
    });
}

template <Colour stm, Colour c>
void count_bishops(Count& x) {
    const SquareSet men = x.m.of(c, bispo);
    x.side[c].whole_terms += weights.bishop_on_long_diagonal * std::popcount(men & long_diagonals);
    for_each_square(men, [&](int i) { slide<stm, c, bispo>(x, i, DiagonalDirections{}); });
}

template <Colour stm, Colour c>
void count_rooks(Count& x) {
    Tally& me = x.side[c];
    const SquareSet men = x.m.of(c, torre);
    if (weights.very_few_men) {
        me.whole_terms += advanced_rook * std::popcount(men & (rank_set(c, seventh_rank) | rank_set(c, last_rank)));
    }
    for_each_square(men, [&](int i) {
        if (weights.few_men) {
            me.real_terms += weights.rook_near_king[c][nearness[i][x.king[other(c)]]];
        }
        slide<stm, c, torre>(x, i, StraightDirections{});
    });
}

template <Colour stm, Colour c>
void count_queens(Count& x) {
    Tally& me = x.side[c];
    for_each_square(x.m.of(c, dama), [&](int i) {
        me.real_terms += weights.queen_near_king[c][nearness[i][x.king[other(c)]]] + weights.queen_near_centre[i];
        slide<stm, c, dama>(x, i, AllDirections{});
    });
}

template <Colour c>
void count_kings(Count& x) {
    Tally& me = x.side[c];
    for_each_square(x.m.of(c, rei), [&](int i) {
        if (weights.enemy_has_no_men[c]) {
            me.real_terms += weights.king_near_king[c][nearness[i][x.king[other(c)]]];
        }
        if (weights.endgame_for[c]) {
            me.real_terms += weights.king_near_centre[i];
            add_leaps<c>(x, i, &AttackSums::king);
            count_attacks<c>(x, king_leaps[i].to, king_leaps[i].count);
        }
    });
}

// --- Pawns, all at once ---

// The worth of what pawns attack, seen from the squares before them: value by kind, divided or whole.
template <Colour c>
int worth_of_targets(const Count& x, SquareSet in_front, int divisor, bool pawns_too) {
    int worth = 0;
    for (const Piece v : piece_order) {
        if (v != peao || pawns_too) {
            worth += v / divisor * count_beside(x.m.of(other(c), v), in_front);
        }
    }
    return worth;
}

template <Colour stm, Colour c>
void count_pawn_attacks(Count& x, SquareSet own) {
    Tally& me = x.side[c];
    const SquareSet in_front = ahead<c>(own);
    const int targets = count_beside(x.m.of_colour[other(c)], in_front);
    me.alvos += targets;
    me.apoios += count_beside(x.m.of_colour[c], in_front);
    const SquareSet single_steps = in_front & ~x.men.direct;
    const SquareSet double_steps = ahead<c>(single_steps & rank_set(c, 2)) & ~x.men.direct;
    me.mobilidade += targets + std::popcount(single_steps) + std::popcount(double_steps);
    if (targets == 0) {
        return;
    }
    if constexpr (c == stm) {
        me.real_terms += worth_of_targets<c>(x, in_front, 1, true) * static_cast<double>(options.agres) -
                         pawn_takes_at_a_cost * targets;
    } else {
        const SquareSet defended = own & (in_front << 8U | in_front >> 8U);
        me.whole_terms += worth_of_targets<c>(x, ahead<c>(defended), defended_pawn_attacks, false);
    }
}

template <Colour stm, Colour c>
void count_pawns(Count& x, const PawnTerms& terms) {
    Tally& me = x.side[c];
    const PawnTally& pawns = terms.side[c];
    me.enemy_king += pawns.enemy_king;
    me.own_king += pawns.own_king;
    me.centre += pawns.centre;
    me.whole_terms += pawns.whole_terms;
    me.real_terms += pawns.real_terms;
    count_pawn_attacks<stm, c>(x, x.m.of(c, peao));
}

// --- The counters that need no attacks ---

int sum_of_ranks(Colour c, SquareSet men) {
    constexpr SquareSet ones = 0xAAAAAAAAAAAAAAAAU;
    constexpr SquareSet twos = 0xCCCCCCCCCCCCCCCCU;
    constexpr SquareSet fours = 0xF0F0F0F0F0F0F0F0U;
    const int ranks = std::popcount(men & ones) + 2 * std::popcount(men & twos) + 4 * std::popcount(men & fours);
    return c == white ? ranks + std::popcount(men) : 8 * std::popcount(men) - ranks;
}

void measure_box(SideCounters& me, SquareSet pawns_and_king) {
    if (pawns_and_king == 0) {
        return;
    }
    me.lowest_file = file_of(first_square(pawns_and_king));
    me.highest_file = file_of(last_square(pawns_and_king));
    SquareSet ranks = pawns_and_king | pawns_and_king >> 32U;
    ranks |= ranks >> 16U;
    ranks |= ranks >> 8U;
    ranks &= 0xFFU;
    me.lowest_rank = first_square(ranks);
    me.highest_rank = last_square(ranks);
}

template <Colour c>
void close_count(const Count& x, SideCounters& me) {
    const Tally& tally = x.side[c];
    const SquareSet pawns = x.m.of(c, peao);
    const int minors = std::popcount(x.m.of(c, cavalo) | x.m.of(c, bispo));
    const int rooks = std::popcount(x.m.of(c, torre));
    const int queens = std::popcount(x.m.of(c, dama));
    me = {};
    me.posicao = static_cast<float>(tally.whole_terms + tally.real_terms);
    me.centro = static_cast<float>(tally.centre / centre_units);
    me.atack_ksf = static_cast<float>(tally.enemy_king / king_units);
    me.defesa_ksf = static_cast<float>(tally.own_king / king_units);
    me.mobilidade = tally.mobilidade;
    me.alvos = tally.alvos;
    me.apoios = tally.apoios;
    me.pecas = minors + rooks + queens;
    me.pontos = points_of_minor * minors + points_of_rook * rooks + points_of_queen * queens;
    me.peoes = std::popcount(pawns);
    me.avanco = sum_of_ranks(c, x.m.of_colour[c]);
    me.abrigo = weights.endgame_for[c] ? 0 : std::popcount(pawns & shelters[c][x.king[c]]);
    measure_box(me, pawns | x.m.of(c, rei));
}

template <Colour stm, Colour c>
void count_colour(Count& x, const PawnTerms& pawns) {
    count_pawns<stm, c>(x, pawns);
    count_developed<c>(x);
    count_knights<stm, c>(x);
    count_bishops<stm, c>(x);
    count_rooks<stm, c>(x);
    count_queens<stm, c>(x);
    count_kings<c>(x);
}

}  // namespace

template <Colour stm>
void count_in_sets(const PieceSets& sets, const std::array<int, 2>& king, Counters& counters) {
    Count x{sets,
            seen_men(sets.occupied()),
            king,
            {&sums_near_king(king[white]), &sums_near_king(king[black])},
            sums_in_centre(),
            {{{0, 0, 0, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 0, 0, 0}}}};
    const PawnTerms& pawns = pawn_terms(sets.of(white, peao), sets.of(black, peao), king);
    count_colour<stm, white>(x, pawns);
    count_colour<stm, black>(x, pawns);
    close_count<white>(x, counters[white]);
    close_count<black>(x, counters[black]);
}

template void count_in_sets<white>(const PieceSets& sets, const std::array<int, 2>& king, Counters& counters);
template void count_in_sets<black>(const PieceSets& sets, const std::array<int, 2>& king, Counters& counters);

}  // namespace ondrel
