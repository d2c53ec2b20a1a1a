#include "support/boards.h"

#include "support/moves.h"

#include <cctype>

namespace tests {

using namespace ondrel;

namespace {

constexpr std::array<char, 6> letters{'P', 'N', 'B', 'R', 'Q', 'K'};  // in piece_order

std::int8_t code_of_letter(char letter) {
    const bool is_white = std::isupper(static_cast<unsigned char>(letter)) != 0;
    for (std::size_t k = 0; k < letters.size(); ++k) {
        if (letters[k] == std::toupper(static_cast<unsigned char>(letter))) {
            return man(is_white ? white : black, piece_order[k]);
        }
    }
    return no_piece;
}

char letter_of_code(int x) {
    for (std::size_t k = 0; k < letters.size(); ++k) {
        if (piece_order[k] == value_of(x)) {
            return static_cast<char>(x > 0 ? letters[k] : std::tolower(letters[k]));
        }
    }
    return rules::empty_square;
}

}  // namespace

Board board_from(const rules::Position& p) {
    Board t{};
    for (int i = 0; i < squares; ++i) {
        t[i] = code_of_letter(p.at(file_of(i), rank_of(i)));
    }
    return t;
}

Board board_from(std::string_view field) { return board_from(position_of(std::string(field) + " w - - 0 1")); }

std::string field_of(const Board& t) {
    rules::Position p;
    for (int i = 0; i < squares; ++i) {
        p.put(file_of(i), rank_of(i), letter_of_code(t[i]));
    }
    const std::string fen = rules::to_fen(p);
    return fen.substr(0, fen.find(' '));
}

Board seen_by(Colour c, const Board& t) { return c == white ? t : mirrored_board(t); }

std::string seen_by(Colour c, std::string_view squares) {
    return c == white ? std::string(squares) : mirrored_squares(squares);
}

}  // namespace tests
