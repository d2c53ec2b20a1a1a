#include "support/moves.h"

#include <algorithm>
#include <iostream>
#include <sstream>
#include <stdexcept>

namespace tests {

Texts texts_of(const std::vector<Move>& moves) {
    Texts t;
    for (const Move m : moves) {
        t.push_back(text_of(m));
    }
    return t;
}

Texts sorted(Texts texts) {
    std::sort(texts.begin(), texts.end());
    return texts;
}

int count_of(const Texts& list, std::string_view move) {
    return static_cast<int>(std::count(list.begin(), list.end(), move));
}

Texts from_square(const Texts& list, std::string_view square) {
    Texts t;
    for (const std::string& x : list) {
        if (x.starts_with(square)) {
            t.push_back(x);
        }
    }
    return t;
}

rules::Position position_of(std::string_view fen) {
    const auto position = rules::from_fen(fen);
    if (!position) {
        throw std::invalid_argument("malformed FEN: " + std::string(fen));
    }
    return *position;
}

std::string mirrored_fen(std::string_view fen) { return rules::to_fen(rules::mirrored(position_of(fen))); }

std::string mirrored_squares(std::string_view squares) {
    std::string t(squares);
    for (char& x : t) {
        if (x >= '1' && x <= '8') {
            x = static_cast<char>('1' + '8' - x);
        }
    }
    return t;
}

Texts mirrored_moves(const Texts& moves) {
    Texts t;
    for (const std::string& x : moves) {
        t.push_back(mirrored_squares(x));
    }
    return t;
}

Board mirrored_board(const Board& t) {
    Board seen{};
    for (int i = 0; i < ondrel::squares; ++i) {
        seen[ondrel::square(ondrel::file_of(i), 7 - ondrel::rank_of(i))] = static_cast<std::int8_t>(-t[i]);
    }
    return seen;
}

void without_report(const std::function<void()>& search) {
    std::ostringstream nowhere;
    auto* const before = std::cout.rdbuf(nowhere.rdbuf());
    search();
    std::cout.rdbuf(before);
}

std::vector<Case> for_both_colours(std::string_view fen, const Texts& moves) {
    return {{std::string(fen), moves}, {mirrored_fen(fen), mirrored_moves(moves)}};
}

}  // namespace tests
