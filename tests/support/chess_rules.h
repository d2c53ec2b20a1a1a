// The rules of chess written down as plainly as possible, for the tests to hold the engine against.
//
// Nothing here is fast and nothing is shared with the engine: every move is played on a copy of the board, and the
// king is looked for and examined afterwards. Slowness buys code that can be believed by reading it.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rules {

constexpr char empty_square = '.';

struct Position {
    // The men are their FEN letters: PNBRQK white, pnbrqk black, '.' for an empty square.
    // Files and ranks run 0..7, so a1 is (0, 0), h1 is (7, 0) and e8 is (4, 7). Index rank * 8 + file; prefer at().
    std::array<signed char, 64> squares{};
    bool white_to_move = true;
    bool white_castles_short = false;
    bool white_castles_long = false;
    bool black_castles_short = false;
    bool black_castles_long = false;
    // The square a pawn has just jumped over, -1 when the last move was no double step. It is set after every double
    // step, whether or not a pawn stands ready to capture.
    int en_passant_file = -1;
    int en_passant_rank = -1;
    int halfmove_clock = 0;
    int fullmove_number = 1;

    bool operator==(const Position&) const = default;
    [[nodiscard]] char at(int file, int rank) const { return static_cast<char>(squares[rank * 8 + file]); }
    void put(int file, int rank, char man) { squares[rank * 8 + file] = static_cast<signed char>(man); }
};

// Castling is the king's move of two files. The promotion is 'q', 'r', 'b' or 'n' for either colour, 0 for none.
struct Move {
    int from_file = 0, from_rank = 0, to_file = 0, to_rank = 0;
    char promotion = 0;

    bool operator==(const Move&) const = default;
};

// Reads four to six fields; the clock defaults to 0 and the move number to 1. Nothing if the text is malformed.
// Whether the position could arise in a game is not asked: see is_legal_position.
std::optional<Position> from_fen(std::string_view fen);
std::string to_fen(const Position& position);
Position start_position();

// The move as e2e4 or e7e8q. from_uci looks at the text alone, not at any position.
std::string to_uci(const Move& move);
std::optional<Move> from_uci(std::string_view text);

// In no promised order.
std::vector<Move> legal_moves(const Position& position);
bool is_legal(const Position& position, const Move& move);
// Plays a legal move; of an illegal one the result means nothing.
Position play(const Position& position, const Move& move);

bool is_attacked(const Position& position, int file, int rank, bool by_white);
bool in_check(const Position& position, bool white);
// How many men attack that king: 2 is a double check.
int count_checkers(const Position& position, bool white);
bool is_checkmate(const Position& position);
bool is_stalemate(const Position& position);

// What a legal move is in the position it is played from. Capturing en passant is a capture too.
bool gives_check(const Position& position, const Move& move);
bool is_capture(const Position& position, const Move& move);
bool is_en_passant(const Position& position, const Move& move);
bool is_castling(const Position& position, const Move& move);

// One king each, no pawn on a last rank, the side that has just moved not in check, castling rights with king and
// rook at home, an en-passant square that a double step can really have left behind.
bool is_legal_position(const Position& position);

// Number of move sequences of that length.
std::uint64_t perft(const Position& position, int depth);

// The same position seen from the other side: colours and ranks exchanged, files kept.
Position mirrored(const Position& position);

// Plays games of uniformly random legal moves from the start position and returns every position met after a move,
// in order of appearance and each but once (clocks aside). A game ends by mate or stalemate, with bare kings, at a
// halfmove clock of 100 or after max_plies; the position it ends in is returned too, so some have no legal move.
// The same arguments give the same positions everywhere.
std::vector<Position> positions_from_random_games(std::uint64_t seed, int games, int max_plies);

// A file of tests/data, its lines without blank ones and '#' comments (throws if it cannot be read), and the positions
// of such a file of FEN lines (throws at a malformed one).
std::filesystem::path data_file(std::string_view name);
std::vector<std::string> data_lines(std::string_view name);
std::vector<Position> data_positions(std::string_view name);

}  // namespace rules
