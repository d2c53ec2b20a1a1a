#include "standard_uci/rules.h"

#include "standard_uci/engine_port.h"

#include <algorithm>
#include <cctype>
#include <span>

namespace ondrel::standard_uci {
namespace {

constexpr std::string_view promotion_letters = "qrbn";
constexpr int men_of_a_side = 16;
constexpr int pawns_of_a_side = 8;

struct Step {
    int file, rank;
};

constexpr std::array<Step, 8> knight_steps{{{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}}};
// Straight ones first, then diagonal ones: a rook takes the first four, a bishop the last four.
constexpr std::array<Step, 8> king_steps{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {1, -1}, {-1, 1}, {-1, -1}}};

constexpr bool on_board(int file, int rank) { return file >= 0 && file < 8 && rank >= 0 && rank < 8; }
constexpr int first_rank(Colour c) { return c == Colour::white ? 0 : 7; }
constexpr int forward(Colour c) { return c == Colour::white ? 1 : -1; }
constexpr int rank_for(Colour c, int rank) { return c == Colour::white ? rank : 7 - rank; }

char lower(char man) { return static_cast<char>(std::tolower(static_cast<unsigned char>(man))); }
char man_of(Colour c, char kind) {
    return c == Colour::white ? static_cast<char>(std::toupper(static_cast<unsigned char>(kind))) : kind;
}
bool is_man_of(Colour c, char man) { return man != empty_square && (man < 'a') == (c == Colour::white); }

bool king_is_safe(const Position& position, Colour c) {
    return !square_attacked(position.men, king_square(position, c), opponent_of(c));
}

// --- Moves of men, the king's safety not yet asked ---

class PseudoLegalMoves {
public:
    PseudoLegalMoves(const Position& position, std::vector<Move>& moves) : position_(position), moves_(moves) {}

    void of_man_on(int square) {
        switch (lower(position_.men[square])) {
            case 'p': return of_pawn(square);
            case 'n': return along(square, knight_steps, 1);
            case 'b': return along(square, std::span(king_steps).subspan(4), 7);
            case 'r': return along(square, std::span(king_steps).first(4), 7);
            case 'q': return along(square, king_steps, 7);
            default: return along(square, king_steps, 1);
        }
    }

private:
    void along(int square, std::span<const Step> steps, int reach) {
        for (const Step s : steps) {
            for (int k = 1; k <= reach; ++k) {
                const int file = file_of(square) + k * s.file;
                const int rank = rank_of(square) + k * s.rank;
                if (!on_board(file, rank) || is_man_of(position_.to_move, position_.men[square_at(file, rank)])) {
                    break;
                }
                moves_.push_back({square, square_at(file, rank)});
                if (position_.men[square_at(file, rank)] != empty_square) {
                    break;
                }
            }
        }
    }

    void of_pawn(int square) {
        const Colour c = position_.to_move;
        const int file = file_of(square);
        const int ahead = rank_of(square) + forward(c);
        if (!on_board(file, ahead)) {
            return;
        }
        if (position_.men[square_at(file, ahead)] == empty_square) {
            add_pawn_move(square, square_at(file, ahead));
            const int two_ahead = ahead + forward(c);
            if (rank_of(square) == rank_for(c, 1) && position_.men[square_at(file, two_ahead)] == empty_square) {
                moves_.push_back({square, square_at(file, two_ahead)});
            }
        }
        for (const int beside : {file + 1, file - 1}) {
            if (on_board(beside, ahead) && pawn_takes_on(square_at(beside, ahead))) {
                add_pawn_move(square, square_at(beside, ahead));
            }
        }
    }

    [[nodiscard]] bool pawn_takes_on(int square) const {
        return is_man_of(opponent_of(position_.to_move), position_.men[square]) || square == position_.en_passant;
    }

    void add_pawn_move(int from, int to) {
        if (rank_of(to) != 0 && rank_of(to) != 7) {
            moves_.push_back({from, to});
            return;
        }
        for (const char kind : promotion_letters) {
            moves_.push_back({from, to, kind});
        }
    }

    const Position& position_;
    std::vector<Move>& moves_;
};

// --- Castling ---

struct CastlingSquares {
    int king_from, rook_from, king_to, rook_to;
};

CastlingSquares castling_squares(int king, int rook) {
    const int base = rank_of(king);
    const bool is_short = rook > king;
    return {king, rook, square_at(is_short ? 6 : 2, base), square_at(is_short ? 5 : 3, base)};
}

// Whether all squares from one to the other are empty but for king and rook themselves.
bool way_is_free(const Men& men, const CastlingSquares& x, int from, int to) {
    for (int k = std::min(from, to); k <= std::max(from, to); ++k) {
        if (k != x.king_from && k != x.rook_from && men[k] != empty_square) {
            return false;
        }
    }
    return true;
}

bool king_passes_unattacked(const Position& position, const CastlingSquares& x) {
    Men without_both = position.men;
    without_both[x.king_from] = without_both[x.rook_from] = empty_square;
    const Colour enemy = opponent_of(position.to_move);
    for (int k = std::min(x.king_from, x.king_to); k <= std::max(x.king_from, x.king_to); ++k) {
        // On its way the king has the rook still behind it; at the end the rook may have bared it.
        if (square_attacked(k == x.king_to ? without_both : position.men, k, enemy)) {
            return false;
        }
    }
    return true;
}

void add_castlings(const Position& position, std::vector<Move>& moves) {
    const Colour c = position.to_move;
    for (const Wing w : {Wing::long_side, Wing::short_side}) {
        const int rook = position.castling_rook(c, w);
        if (rook == no_square) {
            continue;
        }
        const CastlingSquares x = castling_squares(king_square(position, c), rook);
        if (way_is_free(position.men, x, x.king_from, x.king_to) &&
            way_is_free(position.men, x, x.rook_from, x.rook_to) && king_passes_unattacked(position, x)) {
            moves.push_back({x.king_from, x.rook_from, 0, true});
        }
    }
}

// --- Playing ---

void lose_castling_rights(Position& position, const Move& move) {
    for (const Colour c : {Colour::white, Colour::black}) {
        const bool king_moves = position.men[move.from] == man_of(c, 'k');
        for (const Wing w : {Wing::long_side, Wing::short_side}) {
            int& rook = position.castling_rook(c, w);
            if (king_moves || rook == move.from || rook == move.to) {
                rook = no_square;
            }
        }
    }
}

void move_men(Men& men, const Position& before, const Move& move) {
    const char man = men[move.from];
    if (move.castling) {
        const CastlingSquares x = castling_squares(move.from, move.to);
        const char rook = men[move.to];
        men[x.king_from] = men[x.rook_from] = empty_square;
        men[x.king_to] = man;
        men[x.rook_to] = rook;
        return;
    }
    if (lower(man) == 'p' && move.to == before.en_passant) {
        men[square_at(file_of(move.to), rank_of(move.from))] = empty_square;
    }
    men[move.from] = empty_square;
    men[move.to] = move.promotion != 0 ? man_of(before.to_move, move.promotion) : man;
}

bool is_legal(const Position& position, const Move& move) {
    return move.castling || king_is_safe(after(position, move), position.to_move);
}

// --- FEN ---

// Reads one field after the other; the first fault ends it.
class FenReader {
public:
    explicit FenReader(const std::vector<std::string>& fields) : fields_(fields) {}

    ReadFen read() {
        ReadFen result;
        if (read_board() && read_side() && check_men() && read_castling() && read_en_passant() && read_counters()) {
            result.position = position_;
        }
        result.fault = std::move(fault_);
        result.left_out = std::move(left_out_);
        return result;
    }

private:
    bool fail(std::string fault) {
        fault_ = std::move(fault);
        return false;
    }

    [[nodiscard]] std::string_view field(std::size_t k) const {
        return k < fields_.size() ? std::string_view(fields_[k]) : "-";
    }

    bool read_board() {
        if (fields_.empty()) {
            return fail("the FEN is empty");
        }
        position_.men.fill(empty_square);
        int rank = 7;
        int file = 0;
        for (const char x : fields_[0]) {
            if (x == '/') {
                if (file != 8 || rank == 0) {
                    return fail(file != 8 ? fault_of_rank(rank, file) : "the board has more than 8 ranks");
                }
                --rank;
                file = 0;
            } else if (!place(x, file, rank)) {
                return false;
            }
        }
        if (rank != 0) {
            return fail("the board has only " + std::to_string(8 - rank) + " ranks");
        }
        return file == 8 || fail(fault_of_rank(0, file));
    }

    static std::string fault_of_rank(int rank, int files) {
        return "rank " + std::to_string(rank + 1) + " of the board has " + std::to_string(files) + " squares";
    }

    // Takes one character of a rank, a count of empty squares or a man.
    bool place(char x, int& file, int rank) {
        const bool is_count = x >= '1' && x <= '8';
        if (!is_count && std::string_view("pnbrqkPNBRQK").find(x) == std::string_view::npos) {
            return fail("'" + std::string(1, x) + "' on rank " + std::to_string(rank + 1) + " of the board is no man");
        }
        if (!is_count && file < 8) {
            position_.men[square_at(file, rank)] = x;
        }
        file += is_count ? x - '0' : 1;
        return file <= 8 || fail(fault_of_rank(rank, file));
    }

    bool read_side() {
        if (fields_.size() < 2) {
            return fail("the FEN does not say who is to move");
        }
        if (fields_[1] != "w" && fields_[1] != "b") {
            return fail("the side to move is '" + fields_[1] + "', not w or b");
        }
        position_.to_move = fields_[1] == "w" ? Colour::white : Colour::black;
        return true;
    }

    bool check_men() {
        for (const Colour c : {Colour::white, Colour::black}) {
            const std::string side = c == Colour::white ? "White" : "Black";
            const auto count = [&](char kind) { return std::ranges::count(position_.men, man_of(c, kind)); };
            if (const auto kings = count('k'); kings != 1) {
                return fail(side + " has " + std::to_string(kings) + " kings");
            }
            if (count('p') > pawns_of_a_side) {
                return fail(side + " has " + std::to_string(count('p')) + " pawns");
            }
            if (std::ranges::count_if(position_.men, [c](char man) { return is_man_of(c, man); }) > men_of_a_side) {
                return fail(side + " has more than 16 men");
            }
        }
        for (int k = 0; k < 64; ++k) {
            if (lower(position_.men[k]) == 'p' && (rank_of(k) == 0 || rank_of(k) == 7)) {
                return fail("a pawn stands on " + square_name(k));
            }
        }
        const Colour waiting = opponent_of(position_.to_move);
        return king_is_safe(position_, waiting) ||
               fail("the king on " + square_name(king_square(position_, waiting)) + " could be taken");
    }

    bool read_castling() {
        if (field(2) == "-") {
            return true;
        }
        for (const char x : field(2)) {
            if (!std::isalpha(static_cast<unsigned char>(x)) ||
                std::string_view("kqabcdefgh").find(lower(x)) == std::string_view::npos) {
                return fail("'" + std::string(1, x) + "' is no castling right");
            }
            give_right(x);
        }
        return true;
    }

    void give_right(char x) {
        const Colour c = x < 'a' ? Colour::white : Colour::black;
        const int king = king_square(position_, c);
        const int rook = rank_of(king) == first_rank(c) ? rook_of_right(c, lower(x), king) : no_square;
        if (rook == no_square) {
            left_out_.push_back("castling right " + std::string(1, x) + " left out: king or rook stand elsewhere");
            return;
        }
        position_.castling_rook(c, rook > king ? Wing::short_side : Wing::long_side) = rook;
    }

    // The outermost rook of a wing, or the one on the file named.
    [[nodiscard]] int rook_of_right(Colour c, char letter, int king) const {
        const int base = first_rank(c);
        const auto is_rook = [&](int file) { return position_.men[square_at(file, base)] == man_of(c, 'r'); };
        if (letter == 'k' || letter == 'q') {
            const int step = letter == 'k' ? -1 : 1;
            for (int file = letter == 'k' ? 7 : 0; file != file_of(king); file += step) {
                if (is_rook(file)) {
                    return square_at(file, base);
                }
            }
            return no_square;
        }
        return is_rook(letter - 'a') ? square_at(letter - 'a', base) : no_square;
    }

    bool read_en_passant() {
        const std::string_view x = field(3);
        if (x == "-") {
            return true;
        }
        if (x.size() != 2 || x[0] < 'a' || x[0] > 'h' || (x[1] != '3' && x[1] != '6')) {
            return fail("'" + std::string(x) + "' is no square of en passant");
        }
        const int square = square_at(x[0] - 'a', x[1] - '1');
        const Colour stepped = opponent_of(position_.to_move);
        const int from = square - 8 * forward(stepped);
        const int to = square + 8 * forward(stepped);
        if (rank_of(square) == rank_for(stepped, 2) && position_.men[to] == man_of(stepped, 'p') &&
            position_.men[square] == empty_square && position_.men[from] == empty_square) {
            position_.en_passant = square;
        } else {
            left_out_.push_back("en passant on " + std::string(x) + " left out: no pawn has just passed there");
        }
        return true;
    }

    bool read_counters() {
        constexpr std::array<std::string_view, 2> names{"halfmove clock", "move number"};
        for (std::size_t k = 0; k < names.size(); ++k) {
            const std::string_view x = field(4 + k);
            if (x != "-" && !std::ranges::all_of(x, [](unsigned char d) { return std::isdigit(d) != 0; })) {
                return fail("the " + std::string(names[k]) + " is '" + std::string(x) + "'");
            }
        }
        return fields_.size() <= 6 || fail("the FEN has more than 6 fields: '" + fields_[6] + "'");
    }

    const std::vector<std::string>& fields_;
    Position position_;
    std::string fault_;
    std::vector<std::string> left_out_;
};

std::string board_field(const Men& men) {
    std::string text;
    for (int rank = 7; rank >= 0; --rank) {
        int empty = 0;
        for (int file = 0; file < 8; ++file) {
            const char man = men[square_at(file, rank)];
            if (man == empty_square) {
                ++empty;
                continue;
            }
            text += empty > 0 ? std::to_string(empty) : "";
            text += man;
            empty = 0;
        }
        text += empty > 0 ? std::to_string(empty) : "";
        text += rank > 0 ? "/" : "";
    }
    return text;
}

constexpr bool stands_on_usual_squares(int king, int rook) {
    return file_of(king) == 4 && (file_of(rook) == 0 || file_of(rook) == 7);
}

std::string usual_rights(const Position& position) {
    std::string text;
    for (const Colour c : {Colour::white, Colour::black}) {
        for (const Wing w : {Wing::short_side, Wing::long_side}) {
            const int rook = position.castling_rook(c, w);
            if (rook != no_square && stands_on_usual_squares(king_square(position, c), rook)) {
                text += man_of(c, w == Wing::short_side ? 'k' : 'q');
            }
        }
    }
    return text.empty() ? "-" : text;
}

}  // namespace

std::string square_name(int square) {
    return {static_cast<char>('a' + file_of(square)), static_cast<char>('1' + rank_of(square))};
}

ReadFen read_fen(const std::vector<std::string>& fields) { return FenReader(fields).read(); }

Position start_position() {
    return *read_fen({"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", "w", "KQkq", "-"}).position;
}

std::string usual_fen(const Position& position) {
    const std::string en_passant = position.en_passant == no_square ? "-" : square_name(position.en_passant);
    return board_field(position.men) + (position.to_move == Colour::white ? " w " : " b ") + usual_rights(position) +
           " " + en_passant + " 0 1";
}

int king_square(const Position& position, Colour c) {
    return static_cast<int>(std::ranges::find(position.men, man_of(c, 'k')) - position.men.begin());
}

bool in_check(const Position& position) { return !king_is_safe(position, position.to_move); }

std::vector<Move> legal_moves(const Position& position) {
    std::vector<Move> moves;
    PseudoLegalMoves generator(position, moves);
    for (int k = 0; k < 64; ++k) {
        if (is_man_of(position.to_move, position.men[k])) {
            generator.of_man_on(k);
        }
    }
    std::erase_if(moves, [&](const Move& m) { return !is_legal(position, m); });
    add_castlings(position, moves);
    return moves;
}

Position after(const Position& position, const Move& move) {
    Position next = position;
    lose_castling_rights(next, move);
    move_men(next.men, position, move);
    next.to_move = opponent_of(position.to_move);
    const bool double_step = lower(position.men[move.from]) == 'p' && std::abs(move.to - move.from) == 16;
    next.en_passant = double_step ? (move.from + move.to) / 2 : no_square;
    return next;
}

bool usual_castling(const Move& move) { return move.castling && stands_on_usual_squares(move.from, move.to); }

std::string text_of(const Move& move, bool chess960) {
    const int to = move.castling && !chess960 ? castling_squares(move.from, move.to).king_to : move.to;
    std::string text = square_name(move.from) + square_name(to);
    if (move.promotion != 0) {
        text += move.promotion;
    }
    return text;
}

std::optional<Move> read_move(const Position& position, std::string_view text, bool chess960) {
    if (text.size() < 4 || text[0] < 'a' || text[0] > 'h' || text[1] < '1' || text[1] > '8') {
        return std::nullopt;
    }
    const int from = square_at(text[0] - 'a', text[1] - '1');
    if (!is_man_of(position.to_move, position.men[from])) {
        return std::nullopt;
    }
    std::vector<Move> moves;
    PseudoLegalMoves(position, moves).of_man_on(from);
    const bool is_king = lower(position.men[from]) == 'k';
    if (is_king) {
        add_castlings(position, moves);
    }
    const auto is_meant = [&](const Move& m) { return text_of(m, chess960) == text && is_legal(position, m); };
    const auto found = std::ranges::find_if(moves, is_meant);
    return found == moves.end() ? std::nullopt : std::optional(*found);
}

}  // namespace ondrel::standard_uci
