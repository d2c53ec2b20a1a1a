// The words that everything is told in: colours, pieces, squares, boards, moves, steps. Includes nothing of Ondrel's.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

namespace ondrel {

// The two colours. Families of routines and tables exist once per colour and take it as template argument or index.
enum Colour : int { white = 0, black = 1 };

constexpr Colour other(Colour c) { return c == white ? black : white; }

// The way that a colour's pawns go, in ranks; also the sign of its piece codes.
constexpr int forward(Colour c) { return c == white ? 1 : -1; }

// Piece codes: identity and value in the score unit (one pawn = 10) at once. Black pieces are the negatives.
enum Piece : int { no_piece = 0, peao = 10, cavalo = 32, bispo = 33, torre = 50, dama = 90, rei = 110 };

// The order in which a node walks its own pieces.
constexpr std::array<Piece, 6> piece_order{peao, cavalo, bispo, torre, dama, rei};
// The order in which a node walks its victims: the knight before the bishop though its code is the lower.
constexpr std::array<Piece, 5> victim_order{dama, torre, cavalo, bispo, peao};

constexpr int code(Colour c, Piece x) { return forward(c) * x; }
constexpr bool is_of(Colour c, int x) { return c == white ? x > 0 : x < 0; }
constexpr int value_of(int x) { return x < 0 ? -x : x; }  // of a code of either colour
constexpr Colour colour_of(int x) { return x > 0 ? white : black; }

// --- Squares: index file * 8 + rank (a1 = 0, a2 = 1, b1 = 8, h8 = 63), the scan order of every walk ---

constexpr int squares = 64;
constexpr int square(int file, int rank) { return file * 8 + rank; }
constexpr int file_of(int i) { return i / 8; }
constexpr int rank_of(int i) { return i % 8; }
constexpr bool on_board(int file, int rank) { return file >= 0 && file < 8 && rank >= 0 && rank < 8; }

// A rank counted from the colour's own side, and back: 0 is its first rank, 6 its seventh.
constexpr int relative_rank(Colour c, int rank) { return c == white ? rank : 7 - rank; }

constexpr int seventh_rank = 6;
constexpr int last_rank = 7;
constexpr int file_a = 0;
constexpr int file_h = 7;
constexpr int king_file = 4;  // of a king at home

// A board: signed piece codes, 0 for an empty square.
using Board = std::array<std::int8_t, squares>;

constexpr std::int8_t man(Colour c, Piece x) { return static_cast<std::int8_t>(code(c, x)); }

constexpr Board start_board = [] {
    Board t{};
    constexpr std::array<Piece, 8> first_rank{torre, cavalo, bispo, dama, rei, bispo, cavalo, torre};
    for (int f = 0; f < 8; ++f) {
        for (const Colour c : {white, black}) {
            t[square(f, relative_rank(c, 0))] = man(c, first_rank[f]);
            t[square(f, relative_rank(c, 1))] = man(c, peao);
        }
    }
    return t;
}();

// --- Moves ---

// From file, from rank, to file, to rank, each 0..7; a slot without a move holds -1 in all four.
struct Move {
    std::int8_t from_file, from_rank, to_file, to_rank;

    constexpr bool operator==(const Move& m) const {
        return std::bit_cast<std::uint32_t>(*this) == std::bit_cast<std::uint32_t>(m);
    }
    [[nodiscard]] constexpr int from() const { return square(from_file, from_rank); }
    [[nodiscard]] constexpr int to() const { return square(to_file, to_rank); }
};

constexpr Move no_move{-1, -1, -1, -1};
constexpr bool is_move(Move m) { return m.from_file != -1; }

constexpr Move move_of(int from_file, int from_rank, int to_file, int to_rank) {
    return {static_cast<std::int8_t>(from_file), static_cast<std::int8_t>(from_rank), static_cast<std::int8_t>(to_file),
            static_cast<std::int8_t>(to_rank)};
}
constexpr Move move_between(int from, int to) {
    return move_of(file_of(from), rank_of(from), file_of(to), rank_of(to));
}

// --- Steps: files and ranks to add. Their orders are the order of search and of summation: nothing may reorder them. ---

struct Step {
    int file, rank;
};

constexpr std::array<Step, 4> rook_steps{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}};
constexpr std::array<Step, 4> bishop_steps{{{1, 1}, {1, -1}, {-1, -1}, {-1, 1}}};
constexpr std::array<Step, 8> queen_steps{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {1, -1}, {-1, -1}, {-1, 1}}};
constexpr std::array<Step, 8> king_steps{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {-1, -1}, {1, 1}, {-1, 1}, {1, -1}}};
constexpr std::array<Step, 8> knight_steps{{{2, 1}, {2, -1}, {-2, -1}, {-2, 1}, {-1, 2}, {1, 2}, {1, -2}, {-1, -2}}};

}  // namespace ondrel
