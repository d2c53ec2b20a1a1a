// The walks that find moves, and their orders. There is no move list: a walk offers each move to `try_move` where it finds
// it, and ends when that says so. The root, ply 1 and the deeper plies share these walks; what a move must be beside, and
// what is done with it, is theirs. c is the side to move on the ply given. A walk gives back whether it was ended.
#pragma once

#include "base/ply_stack.h"

namespace ondrel {

// The directions of a piece, in the order of queen_steps.
struct DirectionRange {
    int first, last;
};
constexpr DirectionRange ray_directions(Piece piece) {
    switch (piece) {
        case bispo: return {first_diagonal, directions - 1};
        case torre: return {0, first_diagonal - 1};
        default: return {0, directions - 1};
    }
}
constexpr bool is_slider(Piece piece) { return piece == bispo || piece == torre || piece == dama; }
constexpr const std::array<Leaps, squares>& leaps_of(Piece piece) {
    return piece == cavalo ? knight_leaps : king_leaps;
}

// --- Quiet moves of one man, to empty squares ---

// Of knight and king.
template <class Try>
inline bool quiet_leaps(const Ply& at, Piece piece, int from, Try try_move) {
    const Leaps& leaps = leaps_of(piece)[from];
    const SquareSet occupied = at.sets.occupied();
    for (int k = 0; k < leaps.count; ++k) {
        if ((set_of(leaps.in_order[k]) & occupied) == 0 && try_move(move_between(from, leaps.in_order[k]))) {
            return true;
        }
    }
    return false;
}

// Of bishop, rook and queen, the nearest square first.
template <class Try>
inline bool quiet_slides(const Ply& at, Piece piece, int from, Try try_move) {
    const DirectionRange range = ray_directions(piece);
    const SquareSet occupied = at.sets.occupied();
    for (int d = range.first; d <= range.last; ++d) {
        const RaySquares& line = ray_in_order[d][from];
        const int n = empty_on_ray(from, d, occupied);
        for (int k = 0; k < n; ++k) {
            if (try_move(move_between(from, line[k]))) {
                return true;
            }
        }
    }
    return false;
}

template <class Try>
inline bool quiet_moves(const Ply& at, Piece piece, int from, Try try_move) {
    return is_slider(piece) ? quiet_slides(at, piece, from, try_move) : quiet_leaps(at, piece, from, try_move);
}

// Of a pawn: the double step, then the single one.
template <Colour c, class Try>
inline bool pawn_pushes(const Ply& at, int from, Try try_move) {
    const int f = file_of(from);
    const int one = rank_of(from) + forward(c);
    const int two = one + forward(c);
    const auto is_empty = [&](int r) { return on_board(f, r) && at.tabd[square(f, r)] == no_piece; };
    if (relative_rank(c, rank_of(from)) == 1 && is_empty(one) && is_empty(two) &&
        try_move(move_of(f, rank_of(from), f, two))) {
        return true;
    }
    return is_empty(one) && try_move(move_of(f, rank_of(from), f, one));
}

// --- Captures by one man ---

// The two squares that a pawn attacks, the higher file first; what stands there is for try_move to ask.
template <Colour c, class Try>
inline bool pawn_captures(int from, Try try_move) {
    const Leaps& attacked = pawn_leaps[c][from];
    for (int k = 0; k < attacked.count; ++k) {
        if (try_move(move_between(from, attacked.in_order[k]))) {
            return true;
        }
    }
    return false;
}

// En passant, toward the higher file first.
template <Colour c, class Try>
inline bool en_passant_captures(const Ply& at, int from, Try try_move) {
    if (relative_rank(c, rank_of(from)) != 4) {
        return false;
    }
    return pawn_captures<c>(
        from, [&](Move m) { return at.tabd[m.to()] == no_piece && at.jm_D.p_ah[other(c)][m.to_file] && try_move(m); });
}

// Every square that knight or king reaches, whatever stands there.
template <class Try>
inline bool all_leaps(Piece piece, int from, Try try_move) {
    const Leaps& leaps = leaps_of(piece)[from];
    for (int k = 0; k < leaps.count; ++k) {
        if (try_move(move_between(from, leaps.in_order[k]))) {
            return true;
        }
    }
    return false;
}

// The first man on each ray of bishop, rook and queen, of either colour.
template <class Try>
inline bool slides_to_men(const Ply& at, Piece piece, int from, Try try_move) {
    const DirectionRange range = ray_directions(piece);
    const SquareSet occupied = at.sets.occupied();
    for (int d = range.first; d <= range.last; ++d) {
        const SquareSet men = ray[d][from] & occupied;
        if (men != 0 && try_move(move_between(from, first_on_ray(d, men)))) {
            return true;
        }
    }
    return false;
}

// The moves of a piece, no pawn, onto men.
template <class Try>
inline bool moves_onto_men(const Ply& at, Piece piece, int from, Try try_move) {
    return is_slider(piece) ? slides_to_men(at, piece, from, try_move) : all_leaps(piece, from, try_move);
}

// --- Captures of one man, backwards from the victim ---

// The men of c that stand where they could capture on a square, whatever lies between.
struct Attackers {
    SquareSet on_diagonals, on_lines, knights;
};

template <Colour c>
inline Attackers attackers_around(const Ply& at, int victim, bool seventh_rank_pawns) {
    const PieceSets& m = at.sets;
    const SquareSet own = m.of_colour[c];
    const SquareSet king = m.of(c, rei) & king_leaps[victim].to;
    const SquareSet excluded = seventh_rank_pawns ? 0 : rank_set(c, seventh_rank);
    const SquareSet pawns = m.of(c, peao) & pawn_leaps[other(c)][victim].to & ~excluded;
    return {(own & m.bishops_and_queens() & diagonals[victim]) | king | pawns,
            (own & m.rooks_and_queens() & straight_lines[victim]) | king, m.of(c, cavalo) & knight_leaps[victim].to};
}

// Tries the first man met on each ray from the victim, if it is one of `who`.
template <class Try>
inline bool attackers_on_rays(const Ply& at, int victim, SquareSet who, const std::array<int, 4>& order, Try try_move) {
    const SquareSet occupied = at.sets.occupied();
    for (const int d : order) {
        const SquareSet line = ray[d][victim];
        if ((line & who) == 0) {
            continue;
        }
        const int first = first_on_ray(d, line & occupied);
        if ((set_of(first) & who) != 0 && try_move(move_between(first, victim))) {
            return true;
        }
    }
    return false;
}

// The rays that hold the capturing side's pawns come first: as directions of the queen (+1,-1), (-1,-1), (+1,+1),
// (-1,+1) for White, with the ranks mirrored for Black.
template <Colour c>
constexpr std::array<int, 4> diagonals_from_victim = c == white ? std::array{5, 6, 4, 7} : std::array{4, 7, 5, 6};
constexpr std::array<int, 4> lines_from_victim{0, 1, 2, 3};

template <Colour c, class Try>
inline bool captures_of(const Ply& at, int victim, bool seventh_rank_pawns, Try try_move) {
    const Attackers who = attackers_around<c>(at, victim, seventh_rank_pawns);
    if ((who.on_diagonals != 0 &&
         attackers_on_rays(at, victim, who.on_diagonals, diagonals_from_victim<c>, try_move)) ||
        (who.on_lines != 0 && attackers_on_rays(at, victim, who.on_lines, lines_from_victim, try_move))) {
        return true;
    }
    if (who.knights == 0) {
        return false;
    }
    const Leaps& leaps = knight_leaps[victim];
    for (int k = 0; k < leaps.count; ++k) {
        if ((set_of(leaps.in_order[k]) & who.knights) != 0 && try_move(move_between(leaps.in_order[k], victim))) {
            return true;
        }
    }
    return false;
}

// --- The men of a colour, in the order of search; `visit` gives back whether the walk ends ---

// The pawns of ranks 1 to 6 (from 0), file by file, the most advanced first: White's from the top of each file down.
template <Colour c, class Visit>
inline bool pawns_of(const Ply& at, Visit visit) {
    constexpr SquareSet ranks_1_to_6 = 0x7E7E7E7E7E7E7E7EU;
    for (SquareSet rest = at.sets.of(c, peao) & ranks_1_to_6; rest != 0;) {
        int i = first_square(rest);
        if (c == white) {
            i = last_square(rest & file_set(file_of(i)));
        }
        rest ^= set_of(i);
        if (visit(i)) {
            return true;
        }
    }
    return false;
}

// The squares of a set in scan order.
template <class Visit>
inline bool squares_of(SquareSet set, Visit visit) {
    for (; set != 0; set = without_first(set)) {
        if (visit(first_square(set))) {
            return true;
        }
    }
    return false;
}

// A piece of c as a node walks it: pawns as above, other pieces by ascending rank.
template <Colour c, class Visit>
inline bool men_of(const Ply& at, Piece piece, Visit visit) {
    return piece == peao ? pawns_of<c>(at, visit) : squares_of(at.sets.of(c, piece), visit);
}

}  // namespace ondrel
