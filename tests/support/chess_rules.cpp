#include "support/chess_rules.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <unordered_set>
#include <utility>

namespace rules {

namespace {

struct Step {
    int file, rank;
};

constexpr std::array<Step, 4> straight_steps{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}};
constexpr std::array<Step, 4> diagonal_steps{{{1, 1}, {1, -1}, {-1, 1}, {-1, -1}}};
constexpr std::array<Step, 8> king_steps{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {1, -1}, {-1, 1}, {-1, -1}}};
constexpr std::array<Step, 8> knight_steps{{{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}}};

constexpr int king_home_file = 4;

bool on_board(int file, int rank) { return file >= 0 && file < 8 && rank >= 0 && rank < 8; }

bool is_white(char man) { return man >= 'A' && man <= 'Z'; }
bool is_black(char man) { return man >= 'a' && man <= 'z'; }
bool belongs_to(char man, bool white) { return white ? is_white(man) : is_black(man); }
char lower(char man) { return is_white(man) ? static_cast<char>(man - 'A' + 'a') : man; }
char upper(char man) { return is_black(man) ? static_cast<char>(man - 'a' + 'A') : man; }
char of_colour(char man, bool white) { return white ? upper(man) : lower(man); }

// What differs between the colours.
int forward(bool white) { return white ? 1 : -1; }
int home_rank(bool white) { return white ? 0 : 7; }
int pawn_rank(bool white) { return white ? 1 : 6; }
int last_rank(bool white) { return white ? 7 : 0; }

// The member of Position that holds a right: position.*castling_right(white, short_side).
bool Position::*castling_right(bool white, bool short_side) {
    if (white) {
        return short_side ? &Position::white_castles_short : &Position::white_castles_long;
    }
    return short_side ? &Position::black_castles_short : &Position::black_castles_long;
}

bool king_and_rook_at_home(const Position& position, bool white, bool short_side) {
    const int rank = home_rank(white);
    return position.at(king_home_file, rank) == of_colour('k', white) &&
           position.at(short_side ? 7 : 0, rank) == of_colour('r', white);
}

std::vector<std::string_view> split_at_spaces(std::string_view text) {
    std::vector<std::string_view> fields;
    while (true) {
        const auto begin = text.find_first_not_of(" \t\r\n");
        if (begin == std::string_view::npos) {
            return fields;
        }
        const auto end = std::min(text.find_first_of(" \t\r\n", begin), text.size());
        fields.push_back(text.substr(begin, end - begin));
        text.remove_prefix(end);
    }
}

bool read_rank(Position& position, int rank, std::string_view text) {
    int file = 0;
    bool after_digit = false;
    for (const char c : text) {
        if (c >= '1' && c <= '8') {
            if (after_digit) {
                return false;
            }
            file += c - '0';
            after_digit = true;
        } else {
            if (std::string_view("PNBRQKpnbrqk").find(c) == std::string_view::npos || file > 7) {
                return false;
            }
            position.put(file, rank, c);
            ++file;
            after_digit = false;
        }
    }
    return file == 8;
}

bool read_board(Position& position, std::string_view text) {
    position.squares.fill(empty_square);
    for (int rank = 7; rank >= 0; --rank) {
        const auto end = text.find('/');
        if ((end == std::string_view::npos) != (rank == 0)) {
            return false;
        }
        if (!read_rank(position, rank, text.substr(0, end))) {
            return false;
        }
        text.remove_prefix(rank == 0 ? text.size() : end + 1);
    }
    return true;
}

bool read_side(Position& position, std::string_view text) {
    position.white_to_move = text == "w";
    return text == "w" || text == "b";
}

bool read_castling(Position& position, std::string_view text) {
    if (text == "-") {
        return true;
    }
    for (const char c : text) {
        if (lower(c) != 'k' && lower(c) != 'q') {
            return false;
        }
        bool& right = position.*castling_right(is_white(c), lower(c) == 'k');
        if (right) {
            return false;
        }
        right = true;
    }
    return true;
}

bool read_en_passant(Position& position, std::string_view text) {
    if (text == "-") {
        return true;
    }
    if (text.size() != 2 || text[0] < 'a' || text[0] > 'h') {
        return false;
    }
    if (text[1] != (position.white_to_move ? '6' : '3')) {
        return false;
    }
    position.en_passant_file = text[0] - 'a';
    position.en_passant_rank = text[1] - '1';
    return true;
}

bool read_number(int& number, std::string_view text, int least) {
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc{} && result.ptr == end && number >= least;
}

std::string square_name(int file, int rank) { return {static_cast<char>('a' + file), static_cast<char>('1' + rank)}; }

std::string rank_text(const Position& position, int rank) {
    std::string text;
    int empties = 0;
    for (int file = 0; file < 8; ++file) {
        const char man = position.at(file, rank);
        if (man == empty_square) {
            ++empties;
            continue;
        }
        if (empties > 0) {
            text += static_cast<char>('0' + empties);
        }
        empties = 0;
        text += man;
    }
    if (empties > 0) {
        text += static_cast<char>('0' + empties);
    }
    return text;
}

std::string castling_text(const Position& position) {
    std::string text;
    if (position.white_castles_short) {
        text += 'K';
    }
    if (position.white_castles_long) {
        text += 'Q';
    }
    if (position.black_castles_short) {
        text += 'k';
    }
    if (position.black_castles_long) {
        text += 'q';
    }
    return text.empty() ? "-" : text;
}

std::string en_passant_text(const Position& position) {
    return position.en_passant_file < 0 ? "-" : square_name(position.en_passant_file, position.en_passant_rank);
}

// The FEN without the two counters: what makes two positions the same.
std::string identity(const Position& position) {
    std::string text;
    for (int rank = 7; rank >= 0; --rank) {
        text += rank_text(position, rank) + (rank > 0 ? "/" : "");
    }
    text += position.white_to_move ? " w " : " b ";
    return text + castling_text(position) + ' ' + en_passant_text(position);
}

// The first man met when walking from a square, without that square itself; empty_square at the edge.
char first_man(const Position& position, int file, int rank, Step step) {
    do {
        file += step.file;
        rank += step.rank;
    } while (on_board(file, rank) && position.at(file, rank) == empty_square);
    return on_board(file, rank) ? position.at(file, rank) : empty_square;
}

bool stands_at(const Position& position, int file, int rank, char man) {
    return on_board(file, rank) && position.at(file, rank) == man;
}

int count_attackers(const Position& position, int file, int rank, bool by_white) {
    int attackers = 0;
    for (const Step step : straight_steps) {
        const char man = first_man(position, file, rank, step);
        attackers += man == of_colour('r', by_white) || man == of_colour('q', by_white);
    }
    for (const Step step : diagonal_steps) {
        const char man = first_man(position, file, rank, step);
        attackers += man == of_colour('b', by_white) || man == of_colour('q', by_white);
    }
    for (const Step step : knight_steps) {
        attackers += stands_at(position, file + step.file, rank + step.rank, of_colour('n', by_white));
    }
    for (const Step step : king_steps) {
        attackers += stands_at(position, file + step.file, rank + step.rank, of_colour('k', by_white));
    }
    // A pawn attacks forward, so it stands one rank behind the square, on a neighbouring file.
    for (const int side : {-1, 1}) {
        attackers += stands_at(position, file + side, rank - forward(by_white), of_colour('p', by_white));
    }
    return attackers;
}

template <std::size_t n>
void add_steps(const Position& position, int file, int rank, const std::array<Step, n>& steps, bool sliding,
               std::vector<Move>& moves) {
    for (const Step step : steps) {
        int to_file = file + step.file;
        int to_rank = rank + step.rank;
        while (on_board(to_file, to_rank) && !belongs_to(position.at(to_file, to_rank), position.white_to_move)) {
            moves.push_back({file, rank, to_file, to_rank});
            if (!sliding || position.at(to_file, to_rank) != empty_square) {
                break;
            }
            to_file += step.file;
            to_rank += step.rank;
        }
    }
}

void add_pawn_move(const Position& position, Move move, std::vector<Move>& moves) {
    if (move.to_rank != last_rank(position.white_to_move)) {
        moves.push_back(move);
        return;
    }
    for (const char promotion : {'q', 'r', 'b', 'n'}) {
        move.promotion = promotion;
        moves.push_back(move);
    }
}

bool can_be_taken_en_passant(const Position& position, int file, int rank) {
    return file == position.en_passant_file && rank == position.en_passant_rank &&
           stands_at(position, file, rank - forward(position.white_to_move), of_colour('p', !position.white_to_move));
}

void add_pawn_moves(const Position& position, int file, int rank, std::vector<Move>& moves) {
    const bool white = position.white_to_move;
    const int ahead = rank + forward(white);
    if (!on_board(file, ahead)) {
        return;
    }
    if (position.at(file, ahead) == empty_square) {
        add_pawn_move(position, {file, rank, file, ahead}, moves);
        const int two_ahead = ahead + forward(white);
        if (rank == pawn_rank(white) && position.at(file, two_ahead) == empty_square) {
            add_pawn_move(position, {file, rank, file, two_ahead}, moves);
        }
    }
    for (const int to_file : {file - 1, file + 1}) {
        if (!on_board(to_file, ahead)) {
            continue;
        }
        const char target = position.at(to_file, ahead);
        if (belongs_to(target, !white)) {
            add_pawn_move(position, {file, rank, to_file, ahead}, moves);
        }
        if (target == empty_square && can_be_taken_en_passant(position, to_file, ahead)) {
            add_pawn_move(position, {file, rank, to_file, ahead}, moves);
        }
    }
}

// Out of check, over an unattacked square and through empty ones; that the king does not arrive in check is seen to
// with all the other moves.
void add_castling(const Position& position, bool short_side, std::vector<Move>& moves) {
    const bool white = position.white_to_move;
    const int rank = home_rank(white);
    if (!(position.*castling_right(white, short_side)) || !king_and_rook_at_home(position, white, short_side)) {
        return;
    }
    const int first_between = short_side ? king_home_file + 1 : 1;
    const int last_between = short_side ? 6 : king_home_file - 1;
    for (int file = first_between; file <= last_between; ++file) {
        if (position.at(file, rank) != empty_square) {
            return;
        }
    }
    const int direction = short_side ? 1 : -1;
    if (is_attacked(position, king_home_file, rank, !white)) {
        return;
    }
    if (is_attacked(position, king_home_file + direction, rank, !white)) {
        return;
    }
    moves.push_back({king_home_file, rank, king_home_file + 2 * direction, rank});
}

void add_moves_of(const Position& position, int file, int rank, std::vector<Move>& moves) {
    switch (lower(position.at(file, rank))) {
        case 'p': add_pawn_moves(position, file, rank, moves); break;
        case 'n': add_steps(position, file, rank, knight_steps, false, moves); break;
        case 'b': add_steps(position, file, rank, diagonal_steps, true, moves); break;
        case 'r': add_steps(position, file, rank, straight_steps, true, moves); break;
        case 'q': add_steps(position, file, rank, king_steps, true, moves); break;
        case 'k': add_steps(position, file, rank, king_steps, false, moves); break;
        default: break;
    }
}

std::vector<Move> moves_regardless_of_check(const Position& position) {
    std::vector<Move> moves;
    moves.reserve(64);
    for (int rank = 0; rank < 8; ++rank) {
        for (int file = 0; file < 8; ++file) {
            if (belongs_to(position.at(file, rank), position.white_to_move)) {
                add_moves_of(position, file, rank, moves);
            }
        }
    }
    add_castling(position, true, moves);
    add_castling(position, false, moves);
    return moves;
}

// Once something has left or reached the home square of a king or a rook, what is there later has moved.
void forbid_castling_touching(Position& position, int file, int rank) {
    for (const bool white : {true, false}) {
        if (rank != home_rank(white)) {
            continue;
        }
        if (file == king_home_file || file == 7) {
            position.*castling_right(white, true) = false;
        }
        if (file == king_home_file || file == 0) {
            position.*castling_right(white, false) = false;
        }
    }
}

int count_men(const Position& position, char man) {
    return static_cast<int>(std::count(position.squares.begin(), position.squares.end(), man));
}

bool has_pawn_on_last_ranks(const Position& position) {
    for (int file = 0; file < 8; ++file) {
        for (const int rank : {0, 7}) {
            if (lower(position.at(file, rank)) == 'p') {
                return true;
            }
        }
    }
    return false;
}

bool castling_rights_are_backed(const Position& position) {
    for (const bool white : {true, false}) {
        for (const bool short_side : {true, false}) {
            if (position.*castling_right(white, short_side) && !king_and_rook_at_home(position, white, short_side)) {
                return false;
            }
        }
    }
    return true;
}

// The double step is taken back: it must have been possible, by a side whose opponent was not in check.
bool en_passant_is_sound(const Position& position) {
    if (position.en_passant_file < 0) {
        return true;
    }
    const bool mover = !position.white_to_move;
    const int file = position.en_passant_file;
    const int from_rank = pawn_rank(mover);
    const int over_rank = from_rank + forward(mover);
    const int to_rank = over_rank + forward(mover);
    if (position.en_passant_rank != over_rank || position.halfmove_clock != 0) {
        return false;
    }
    if (position.at(file, from_rank) != empty_square || position.at(file, over_rank) != empty_square) {
        return false;
    }
    if (position.at(file, to_rank) != of_colour('p', mover)) {
        return false;
    }
    Position before = position;
    before.put(file, from_rank, of_colour('p', mover));
    before.put(file, to_rank, empty_square);
    return !in_check(before, !mover);
}

bool only_kings_are_left(const Position& position) { return count_men(position, empty_square) == 62; }

// SplitMix64. The distributions of the standard library may differ between platforms, whole-number arithmetic cannot.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        state_ += 0x9E3779B97F4A7C15ULL;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }

    // The bias of the remainder is of no account for a few dozen moves.
    std::size_t below(std::size_t bound) { return static_cast<std::size_t>(next() % bound); }

private:
    std::uint64_t state_;
};

// The drawn index refers to the moves by name, so that reordering the generator does not change the games.
std::vector<Move> moves_in_name_order(const Position& position) {
    std::vector<Move> moves = legal_moves(position);
    std::sort(moves.begin(), moves.end(), [](const Move& a, const Move& b) { return to_uci(a) < to_uci(b); });
    return moves;
}

char mirrored_man(char man) { return is_white(man) ? lower(man) : upper(man); }

}  // namespace

std::optional<Position> from_fen(std::string_view fen) {
    const auto fields = split_at_spaces(fen);
    if (fields.size() < 4 || fields.size() > 6) {
        return std::nullopt;
    }
    Position position;
    if (!read_board(position, fields[0]) || !read_side(position, fields[1]) || !read_castling(position, fields[2]) ||
        !read_en_passant(position, fields[3])) {
        return std::nullopt;
    }
    if (fields.size() > 4 && !read_number(position.halfmove_clock, fields[4], 0)) {
        return std::nullopt;
    }
    if (fields.size() > 5 && !read_number(position.fullmove_number, fields[5], 1)) {
        return std::nullopt;
    }
    return position;
}

std::string to_fen(const Position& position) {
    return identity(position) + ' ' + std::to_string(position.halfmove_clock) + ' ' +
           std::to_string(position.fullmove_number);
}

Position start_position() { return *from_fen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"); }

std::string to_uci(const Move& move) {
    std::string text = square_name(move.from_file, move.from_rank) + square_name(move.to_file, move.to_rank);
    if (move.promotion != 0) {
        text += move.promotion;
    }
    return text;
}

std::optional<Move> from_uci(std::string_view text) {
    if (text.size() != 4 && text.size() != 5) {
        return std::nullopt;
    }
    Move move{text[0] - 'a', text[1] - '1', text[2] - 'a', text[3] - '1'};
    if (!on_board(move.from_file, move.from_rank) || !on_board(move.to_file, move.to_rank)) {
        return std::nullopt;
    }
    if (text.size() == 5) {
        if (std::string_view("qrbn").find(text[4]) == std::string_view::npos) {
            return std::nullopt;
        }
        move.promotion = text[4];
    }
    return move;
}

std::vector<Move> legal_moves(const Position& position) {
    std::vector<Move> moves = moves_regardless_of_check(position);
    std::erase_if(moves, [&](const Move& move) { return in_check(play(position, move), position.white_to_move); });
    return moves;
}

bool is_legal(const Position& position, const Move& move) {
    const auto moves = legal_moves(position);
    return std::find(moves.begin(), moves.end(), move) != moves.end();
}

Position play(const Position& position, const Move& move) {
    const bool white = position.white_to_move;
    const char man = position.at(move.from_file, move.from_rank);
    const bool pawn = lower(man) == 'p';
    Position after = position;

    if (is_en_passant(position, move)) {
        after.put(move.to_file, move.from_rank, empty_square);
    }
    if (is_castling(position, move)) {
        const bool short_side = move.to_file > move.from_file;
        after.put(short_side ? 7 : 0, move.from_rank, empty_square);
        after.put(short_side ? 5 : 3, move.from_rank, of_colour('r', white));
    }
    after.put(move.from_file, move.from_rank, empty_square);
    after.put(move.to_file, move.to_rank, move.promotion != 0 ? of_colour(move.promotion, white) : man);

    forbid_castling_touching(after, move.from_file, move.from_rank);
    forbid_castling_touching(after, move.to_file, move.to_rank);
    const bool double_step = pawn && std::abs(move.to_rank - move.from_rank) == 2;
    after.en_passant_file = double_step ? move.to_file : -1;
    after.en_passant_rank = double_step ? (move.from_rank + move.to_rank) / 2 : -1;
    after.halfmove_clock = pawn || is_capture(position, move) ? 0 : position.halfmove_clock + 1;
    after.fullmove_number = position.fullmove_number + (white ? 0 : 1);
    after.white_to_move = !white;
    return after;
}

bool is_attacked(const Position& position, int file, int rank, bool by_white) {
    return count_attackers(position, file, rank, by_white) > 0;
}

bool in_check(const Position& position, bool white) { return count_checkers(position, white) > 0; }

int count_checkers(const Position& position, bool white) {
    const char king = of_colour('k', white);
    for (int rank = 0; rank < 8; ++rank) {
        for (int file = 0; file < 8; ++file) {
            if (position.at(file, rank) == king) {
                return count_attackers(position, file, rank, !white);
            }
        }
    }
    return 0;
}

bool is_checkmate(const Position& position) {
    return in_check(position, position.white_to_move) && legal_moves(position).empty();
}

bool is_stalemate(const Position& position) {
    return !in_check(position, position.white_to_move) && legal_moves(position).empty();
}

bool gives_check(const Position& position, const Move& move) {
    return in_check(play(position, move), !position.white_to_move);
}

bool is_capture(const Position& position, const Move& move) {
    return position.at(move.to_file, move.to_rank) != empty_square || is_en_passant(position, move);
}

bool is_en_passant(const Position& position, const Move& move) {
    return lower(position.at(move.from_file, move.from_rank)) == 'p' && move.from_file != move.to_file &&
           position.at(move.to_file, move.to_rank) == empty_square;
}

bool is_castling(const Position& position, const Move& move) {
    return lower(position.at(move.from_file, move.from_rank)) == 'k' && std::abs(move.to_file - move.from_file) == 2;
}

bool is_legal_position(const Position& position) {
    return count_men(position, 'K') == 1 && count_men(position, 'k') == 1 && !has_pawn_on_last_ranks(position) &&
           !in_check(position, !position.white_to_move) && castling_rights_are_backed(position) &&
           en_passant_is_sound(position);
}

std::uint64_t perft(const Position& position, int depth) {
    if (depth <= 0) {
        return 1;
    }
    const auto moves = legal_moves(position);
    if (depth == 1) {
        return moves.size();
    }
    std::uint64_t count = 0;
    for (const Move& move : moves) {
        count += perft(play(position, move), depth - 1);
    }
    return count;
}

Position mirrored(const Position& position) {
    Position mirror = position;
    for (int rank = 0; rank < 8; ++rank) {
        for (int file = 0; file < 8; ++file) {
            mirror.put(file, 7 - rank, mirrored_man(position.at(file, rank)));
        }
    }
    mirror.white_to_move = !position.white_to_move;
    std::swap(mirror.white_castles_short, mirror.black_castles_short);
    std::swap(mirror.white_castles_long, mirror.black_castles_long);
    if (position.en_passant_file >= 0) {
        mirror.en_passant_rank = 7 - position.en_passant_rank;
    }
    return mirror;
}

std::vector<Position> positions_from_random_games(std::uint64_t seed, int games, int max_plies) {
    Random random(seed);
    std::vector<Position> positions;
    std::unordered_set<std::string> seen;
    for (int game = 0; game < games; ++game) {
        Position position = start_position();
        for (int ply = 0; ply < max_plies; ++ply) {
            const auto moves = moves_in_name_order(position);
            if (moves.empty() || position.halfmove_clock >= 100 || only_kings_are_left(position)) {
                break;
            }
            position = play(position, moves[random.below(moves.size())]);
            if (seen.insert(identity(position)).second) {
                positions.push_back(position);
            }
        }
    }
    return positions;
}

// The build may say where the data are; otherwise they are found beside this file.
std::filesystem::path data_file(std::string_view name) {
#ifdef ONDREL_TEST_DATA
    return std::filesystem::path(ONDREL_TEST_DATA) / name;
#else
    return std::filesystem::path(__FILE__).parent_path().parent_path() / "data" / name;
#endif
}

std::vector<std::string> data_lines(std::string_view name) {
    std::ifstream file(data_file(name));
    if (!file) {
        throw std::runtime_error("cannot read " + data_file(name).string());
    }
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (!line.empty() && line.front() != '#') {
            lines.push_back(line);
        }
    }
    return lines;
}

std::vector<Position> data_positions(std::string_view name) {
    std::vector<Position> positions;
    for (const std::string& line : data_lines(name)) {
        const auto position = from_fen(line);
        if (!position) {
            throw std::runtime_error("malformed FEN in " + std::string(name) + ": " + line);
        }
        positions.push_back(*position);
    }
    return positions;
}

}  // namespace rules
