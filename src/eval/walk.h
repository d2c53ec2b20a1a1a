// The walk of the board, told once: men in scan order, each with its terms in the order of the rule. Who walks gives a
// sink that takes what the walk finds: the exact float sums of a leaf (leaf_sums.h), or all counters of a position at
// the root (root_walk.h). The order of the terms is the order of summation: each float sum is rounded at every step.
//
// In all of these c is the colour of the man at hand and stm the side to move. A sink has:
//   counts                          whether it wants the whole-number counters
//   cursor(c), commit(c, cursor)    where the squares that c attacks go: cursor.mark(squares in order, how many)
//   whole(c, term), real(c, term)   terms of posicao_<c>
//   man_done()                      called after each man
// and, where it counts, side[c] and moves<c>(view, from, to), the number of moves that count as mobility.
#pragma once

#include "base/options.h"
#include "eval/counters.h"
#include "eval/rays.h"
#include "eval/weights.h"

namespace ondrel {

struct View {
    const Board& board;
    const PieceSets& sets;
    SeenMen men;
    std::array<int, 2> king;  // p_xy_R: where the tests last saw the kings, not necessarily on this board
};

inline View view_of(const Board& board, const PieceSets& sets, const std::array<int, 2>& king) {
    return {board, sets, seen_men(sets.occupied()), king};
}

namespace walking {

template <Colour c>
int near_enemy_king(const View& v, int i) {
    return nearness[i][v.king[other(c)]];
}

// --- Attacks ---

template <Colour c, class Sink>
void count_attacks(const View& v, Sink& s, int from, SquareSet attacked) {
    if constexpr (Sink::counts) {
        const SquareSet own = v.sets.of_colour[c];
        s.side[c].apoios += std::popcount(attacked & own);
        s.side[c].alvos += std::popcount(attacked & v.sets.of_colour[other(c)]);
        s.side[c].mobilidade += s.template moves<c>(v, from, attacked & ~own);
    }
}

// A man of the side to move looks for richer enemies; the queen gets no term for what it attacks.
template <Colour stm, Colour c, Piece who>
constexpr bool hunts = c == stm && (who == cavalo || who == bispo || who == torre);

// The men that bring a term when they are met by an attack of this kind.
template <Colour stm, Colour c, Piece who>
SquareSet men_with_a_term(const PieceSets& m) {
    SquareSet men = 0;
    if constexpr (hunts<stm, c, who>) {
        for (const Piece x : {bispo, torre, dama, rei}) {
            men |= x > who ? m.of(other(c), x) : 0;
        }
    }
    if constexpr (who == torre || who == dama) {
        men |= m.of_colour[c] & m.rooks_and_queens();
    }
    return men;
}

// The term of the man met on i: a richer enemy, or an own rook or queen that a rook or queen backs.
template <Colour stm, Colour c, Piece who, class Sink>
void meet(const View& v, Sink& s, int i, bool on_the_rank) {
    const int x = forward(c) * v.board[i];
    if (x < 0) {
        if (hunts<stm, c, who> && -x > who) {
            s.whole(c, -x - who);
        }
    } else if ((who == torre || who == dama) && (x == torre || x == dama)) {
        s.whole(c, who == dama ? queen_backs : (on_the_rank ? rook_backs_along_rank : rook_backs_along_file));
    }
}

template <Colour stm, Colour c, Piece who, class Sink>
void leap(const View& v, Sink& s, int i, const Leaps& leaps) {
    auto cursor = s.cursor(c);
    cursor.mark(leaps.in_order.data(), leaps.count);
    s.commit(c, cursor);
    count_attacks<c>(v, s, i, leaps.to);
    if (who == cavalo && (leaps.to & men_with_a_term<stm, c, who>(v.sets)) != 0) {
        for (int k = 0; k < leaps.count; ++k) {
            if (v.board[leaps.in_order[k]] != no_piece) {
                meet<stm, c, who>(v, s, leaps.in_order[k], false);
            }
        }
    }
}

// Marks a ray up to its first man.
template <int d, class Cursor>
SquareSet mark_ray(const View& v, Cursor& cursor, int i) {
    const SquareSet attacked = reach<d>(i, v.men).attacked;
    cursor.mark(ray_in_order[d][i].data(), std::popcount(attacked));
    return attacked;
}

template <Colour stm, Colour c, Piece who, int d, class Sink>
void meet_on_ray(const View& v, Sink& s, int i, SquareSet men) {
    if (const SquareSet met = men & ray[d][i]; met != 0) {
        meet<stm, c, who>(v, s, first_square(met), along_rank(d));
    }
}

template <Colour stm, Colour c, Piece who, class Sink, int... d>
void slide(const View& v, Sink& s, int i, std::integer_sequence<int, d...>) {
    auto cursor = s.cursor(c);
    SquareSet attacked = 0;
    ((attacked |= mark_ray<d>(v, cursor, i)), ...);
    s.commit(c, cursor);
    count_attacks<c>(v, s, i, attacked);
    if (const SquareSet men = attacked & men_with_a_term<stm, c, who>(v.sets); men != 0) {
        (meet_on_ray<stm, c, who, d>(v, s, i, men), ...);
    }
}

// --- Pieces, by the rows of their terms ---

template <Colour c, class Sink>
void count_piece(Sink& s, int points) {
    if constexpr (Sink::counts) {
        ++s.side[c].pecas;
        s.side[c].pontos += points;
    }
}

template <Colour c, class Sink>
void develop(Sink& s, int i) {
    if (relative_rank(c, rank_of(i)) != 0) {
        s.whole(c, developed_man);
    }
}

template <Colour stm, Colour c, class Sink>
void visit_knight(const View& v, Sink& s, int i) {
    count_piece<c>(s, points_of_minor);
    develop<c>(s, i);
    s.real(c, weights.knight_near_king[c][near_enemy_king<c>(v, i)] + weights.knight_near_centre[i]);
    leap<stm, c, cavalo>(v, s, i, knight_leaps[i]);
}

template <Colour stm, Colour c, class Sink>
void visit_bishop(const View& v, Sink& s, int i) {
    count_piece<c>(s, points_of_minor);
    develop<c>(s, i);
    if ((set_of(i) & long_diagonals) != 0) {
        s.whole(c, weights.bishop_on_long_diagonal);
    }
    slide<stm, c, bispo>(v, s, i, DiagonalDirections{});
}

template <Colour stm, Colour c, class Sink>
void visit_rook(const View& v, Sink& s, int i) {
    count_piece<c>(s, points_of_rook);
    if (file_of(i) != file_a && file_of(i) != file_h) {
        s.whole(c, developed_man);
    }
    if (weights.few_men) {
        s.real(c, weights.rook_near_king[c][near_enemy_king<c>(v, i)]);
    }
    if (weights.very_few_men && relative_rank(c, rank_of(i)) >= seventh_rank) {
        s.whole(c, advanced_rook);
    }
    slide<stm, c, torre>(v, s, i, StraightDirections{});
}

template <Colour stm, Colour c, class Sink>
void visit_queen(const View& v, Sink& s, int i) {
    count_piece<c>(s, points_of_queen);
    develop<c>(s, i);
    s.real(c, weights.queen_near_king[c][near_enemy_king<c>(v, i)] + weights.queen_near_centre[i]);
    slide<stm, c, dama>(v, s, i, AllDirections{});
}

template <Colour c, class Sink>
void widen_box(Sink& s, int i) {
    if constexpr (Sink::counts) {
        SideCounters& me = s.side[c];
        me.lowest_file = std::min(me.lowest_file, file_of(i));
        me.highest_file = std::max(me.highest_file, file_of(i));
        me.lowest_rank = std::min(me.lowest_rank, rank_of(i));
        me.highest_rank = std::max(me.highest_rank, rank_of(i));
    }
}

// Against a queen or less the king comes out: only then does it attack anything.
template <Colour stm, Colour c, class Sink>
void visit_king(const View& v, Sink& s, int i) {
    widen_box<c>(s, i);
    if (weights.endgame_for[c]) {
        s.real(c, weights.king_near_centre[i]);
    }
    if (weights.enemy_has_no_men[c]) {
        s.real(c, weights.king_near_king[c][near_enemy_king<c>(v, i)]);
    }
    if (weights.endgame_for[c]) {
        leap<stm, c, rei>(v, s, i, king_leaps[i]);
    }
}

// --- Pawns, by the items of their terms ---

// Item 1, and item 2 against a queen or less.
template <Colour c, class Sink>
void mark_or_draw_kings(const View& v, Sink& s, int i) {
    if (weights.endgame_for[c]) {
        s.real(c, endgame_pawn(c, i, v.king[c]));
        s.real(other(c), pawn_draws_king_from[near_enemy_king<c>(v, i)]);
        return;
    }
    if constexpr (Sink::counts) {
        s.side[c].abrigo += (shelters[c][v.king[c]] & set_of(i)) != 0 ? 1 : 0;
    }
    auto cursor = s.cursor(c);
    cursor.mark(pawn_leaps[c][i].in_order.data(), pawn_leaps[c][i].count);
    s.commit(c, cursor);
}

// Item 3: the worth of what the pawn attacks, the higher file first (for both colours the higher square). A pawn of the
// other side must be defended by one of its own.
template <Colour stm, Colour c, class Sink>
void attack_with_pawn(const View& v, Sink& s, int i, SquareSet targets) {
    for (SquareSet rest = targets; rest != 0; rest ^= set_of(last_square(rest))) {
        const int x = value_of(v.board[last_square(rest)]);
        if constexpr (c == stm) {
            s.real(c, x * static_cast<double>(options.agres) - pawn_takes_at_a_cost);
        } else if (x > peao && (pawn_leaps[other(c)][i].to & v.sets.of(c, peao)) != 0) {
            s.whole(c, x / defended_pawn_attacks);
        }
    }
}

// Items 3 to 5: the moves of the pawn, and what it attacks and defends.
template <Colour c, class Sink>
void count_pawn(const View& v, Sink& s, int i, SquareSet targets) {
    if constexpr (Sink::counts) {
        SideCounters& me = s.side[c];
        ++me.peoes;
        widen_box<c>(s, i);
        me.alvos += std::popcount(targets);
        me.apoios += std::popcount(pawn_leaps[c][i].to & v.sets.of_colour[c]);
        SquareSet to = targets;
        const int ahead = rank_of(i) + forward(c);
        if (on_board(file_of(i), ahead) && v.board[square(file_of(i), ahead)] == no_piece) {
            to |= set_of(square(file_of(i), ahead));
            const int two_ahead = square(file_of(i), ahead + forward(c));
            if (relative_rank(c, rank_of(i)) == 1 && v.board[two_ahead] == no_piece) {
                to |= set_of(two_ahead);
            }
        }
        me.mobilidade += s.template moves<c>(v, i, to);
    }
}

// Where an enemy pawn stops a breakthrough of a pawn of c on i toward the higher [0] or lower [1] file: on its own file
// and on the file beyond the capture, from two ranks ahead up to its seventh rank.
constexpr std::array<std::array<std::array<SquareSet, 2>, squares>, 2> breakthrough_stops = [] {
    std::array<std::array<std::array<SquareSet, 2>, squares>, 2> t{};
    for (const Colour c : {white, black}) {
        for (int i = 0; i < squares; ++i) {
            for (int r = relative_rank(c, rank_of(i)) + 2; r <= seventh_rank; ++r) {
                for (int side = 0; side < 2; ++side) {
                    const int file_beyond = file_of(i) + (side == 0 ? 2 : -2);
                    t[c][i][side] |= set_of(square(file_of(i), relative_rank(c, r)));
                    t[c][i][side] |= on_board(file_beyond, 0) ? set_of(square(file_beyond, relative_rank(c, r))) : 0;
                }
            }
        }
    }
    return t;
}();

// Item 9: nobody to stop this pawn once it has captured; nothing where the rule has no rank to walk.
template <Colour c, class Sink>
void break_through(const View& v, Sink& s, int i) {
    if (relative_rank(c, rank_of(i)) + 2 > seventh_rank) {
        return;
    }
    const SquareSet pawns = v.sets.kind(peao);
    for (const int side : {0, 1}) {
        const int f = file_of(i) + (side == 0 ? 1 : -1);
        if (on_board(f, 0) && (pawns & set_of(square(f, rank_of(i) + forward(c)))) == 0 &&
            (breakthrough_stops[c][i][side] & v.sets.of(other(c), peao)) == 0) {
            s.whole(c, pawn_breaks_through);
        }
    }
}

// A pawn's way to promotion, up to its seventh rank: its own file, and both files beside.
struct Way {
    SquareSet ahead = 0;
    SquareSet beside = 0;
};
constexpr std::array<std::array<Way, squares>, 2> ways = [] {
    std::array<std::array<Way, squares>, 2> t{};
    for (const Colour c : {white, black}) {
        for (int i = 0; i < squares; ++i) {
            for (int r = relative_rank(c, rank_of(i)) + 1; r <= seventh_rank; ++r) {
                const int rank = relative_rank(c, r);
                t[c][i].ahead |= set_of(square(file_of(i), rank));
                t[c][i].beside |= file_of(i) < file_h ? set_of(square(file_of(i) + 1, rank)) : 0;
                t[c][i].beside |= file_of(i) > file_a ? set_of(square(file_of(i) - 1, rank)) : 0;
            }
        }
    }
    return t;
}();

// The ranks of one file of a set, bit 0 the first rank as the colour sees it.
constexpr std::array<unsigned, 256> reversed_ranks = [] {
    std::array<unsigned, 256> t{};
    for (unsigned x = 0; x < 256; ++x) {
        for (unsigned r = 0; r < 8; ++r) {
            t[x] |= ((x >> r) & 1U) << (7 - r);
        }
    }
    return t;
}();
template <Colour c>
unsigned ranks_on(SquareSet s, int f) {
    if (!on_board(f, 0)) {
        return 0;
    }
    const unsigned ranks = static_cast<unsigned>(s >> static_cast<unsigned>(8 * f)) & 0xFFU;
    return c == white ? ranks : reversed_ranks[ranks];
}

// Item 10: own pawns beside the way count up to the rank of the first stop; a way without a stop is a passed pawn's.
template <Colour c, class Sink>
void walk_to_promotion(const View& v, Sink& s, int i) {
    const Way& way = ways[c][i];
    const SquareSet own = v.sets.of(c, peao);
    const SquareSet enemy = v.sets.of(other(c), peao);
    const SquareSet stops = (way.ahead & (own | enemy)) | (way.beside & enemy);
    if (const SquareSet beside = way.beside & own; beside != 0) {
        const int f = file_of(i);
        // All three files laid over one another, as the colour sees them.
        const unsigned stop = ranks_on<c>(stops, f) | ranks_on<c>(stops, f + 1) | ranks_on<c>(stops, f - 1);
        const unsigned walked = (stop & (0U - stop)) - 1U;
        const int met =
            std::popcount(ranks_on<c>(beside, f + 1) & walked) + std::popcount(ranks_on<c>(beside, f - 1) & walked);
        for (int k = 0; k < met; ++k) {
            s.whole(c, pawn_beside_the_way);
        }
    }
    if (stops == 0 && way.ahead != 0) {
        s.whole(c, passed_pawn);
    }
}

// Items 6 to 8: the seventh rank, neighbours and chains.
template <Colour c, class Sink>
void add_pawn_structure(const View& v, Sink& s, int i) {
    const SquareSet own = v.sets.of(c, peao);
    if (relative_rank(c, rank_of(i)) == seventh_rank) {
        s.whole(c, pawn_on_seventh);
    }
    const SquareSet neighbours = set_of(i) << 8U | set_of(i) >> 8U;
    for (int k = std::popcount(neighbours & own); k > 0; --k) {
        s.whole(c, pawn_beside);
    }
    for (int k = std::popcount(pawn_leaps[c][i].to & own); k > 0; --k) {
        s.whole(c, pawn_defends_pawn);
    }
}

template <Colour stm, Colour c, class Sink>
void visit_pawn(const View& v, Sink& s, int i) {
    mark_or_draw_kings<c>(v, s, i);
    const SquareSet targets = pawn_leaps[c][i].to & v.sets.of_colour[other(c)];
    if (targets != 0) {
        attack_with_pawn<stm, c>(v, s, i, targets);
    }
    count_pawn<c>(v, s, i, targets);
    add_pawn_structure<c>(v, s, i);
    break_through<c>(v, s, i);
    walk_to_promotion<c>(v, s, i);
}

template <Colour stm, Colour c, class Sink>
void visit(const View& v, Sink& s, int i, int piece) {
    if constexpr (Sink::counts) {
        s.side[c].avanco += relative_rank(c, rank_of(i)) + 1;
    }
    switch (piece) {
        case peao: return visit_pawn<stm, c>(v, s, i);
        case cavalo: return visit_knight<stm, c>(v, s, i);
        case bispo: return visit_bishop<stm, c>(v, s, i);
        case torre: return visit_rook<stm, c>(v, s, i);
        case dama: return visit_queen<stm, c>(v, s, i);
        default: return visit_king<stm, c>(v, s, i);
    }
}

}  // namespace walking

// Walks the position with `stm` to move. Reads `weights` and the option Aggressiveness.
template <Colour stm, class Sink>
void walk(const View& v, Sink& s) {
    for (SquareSet rest = v.men.direct; rest != 0; rest = without_first(rest)) {
        const int i = first_square(rest);
        const int x = v.board[i];
        if (x > 0) {
            walking::visit<stm, white>(v, s, i, x);
        } else {
            walking::visit<stm, black>(v, s, i, -x);
        }
        s.man_done();
    }
}

}  // namespace ondrel
