// The rules of chess for what a client says: FENs, moves, Chess960. The session checks positions, moves and lines with
// them before the search or the client sees any. Attacks are asked of the board floor through the port.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ondrel::standard_uci {

enum class Colour : unsigned char { white, black };
constexpr Colour opponent_of(Colour c) { return c == Colour::white ? Colour::black : Colour::white; }

enum class Wing : unsigned char { long_side, short_side };

constexpr int no_square = -1;
constexpr char empty_square = '.';

// Squares count rank by rank from a1.
constexpr int square_at(int file, int rank) { return rank * 8 + file; }
constexpr int file_of(int square) { return square % 8; }
constexpr int rank_of(int square) { return square / 8; }
std::string square_name(int square);

using Men = std::array<char, 64>;  // letters as in a FEN

struct Move {
    int from = no_square;
    int to = no_square;  // of a castling, the square of the rook
    char promotion = 0;  // lower case; 0 for none
    bool castling = false;

    bool operator==(const Move&) const = default;
};

struct Position {
    Men men{};
    Colour to_move = Colour::white;
    // Squares of the rooks that may still castle, by colour and wing.
    std::array<std::array<int, 2>, 2> castling_rooks{{{no_square, no_square}, {no_square, no_square}}};
    int en_passant = no_square;  // the square that a pawn has just passed over

    [[nodiscard]] int castling_rook(Colour c, Wing w) const {
        return castling_rooks[static_cast<int>(c)][static_cast<int>(w)];
    }
    int& castling_rook(Colour c, Wing w) { return castling_rooks[static_cast<int>(c)][static_cast<int>(w)]; }
};

// What a FEN came to: a position, or the reason why there is none; and what was left out of it.
struct ReadFen {
    std::optional<Position> position;
    std::string fault;
    std::vector<std::string> left_out;
};

// Reads the 2 to 6 fields of a FEN, Shredder's and X-FEN's castling letters included.
ReadFen read_fen(const std::vector<std::string>& fields);

Position start_position();

// The first four fields and counters of a new game. Rights of other squares than those of the usual game are left out.
std::string usual_fen(const Position& position);

int king_square(const Position& position, Colour c);
bool in_check(const Position& position);
std::vector<Move> legal_moves(const Position& position);
Position after(const Position& position, const Move& move);

// Whether the castling is one between the squares of the usual game.
bool usual_castling(const Move& move);

// The move as UCI writes it; in Chess960 a castling king takes its rook.
std::string text_of(const Move& move, bool chess960);

// The legal move of this text, if there is one.
std::optional<Move> read_move(const Position& position, std::string_view text, bool chess960);

}  // namespace ondrel::standard_uci
