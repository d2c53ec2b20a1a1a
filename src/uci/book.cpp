#include "uci/book.h"

#include "uci/command_line.h"
#include "uci/output.h"

#include <array>
#include <span>

namespace ondrel {
namespace {

// The moves of a position line that begins from the start position, and the reply.
struct BookLine {
    std::string_view moves;
    std::string_view reply;
};

constexpr std::string_view beginning = "position startpos moves ";

constexpr std::array<BookLine, 6> first_moves{{
    {"e2e4", "bestmove d7d5"},
    {"d2d4", "bestmove c7c5"},
    {"g1f3", "bestmove g8f6"},
    {"b1c3", "bestmove e7e5"},
    {"b2b3", "bestmove e7e5"},
    {"g2g3", "bestmove d7d5"},
}};

constexpr std::array<BookLine, 22> book_of_white{{
    {"e2e4 e7e5", "bestmove g1f3"},
    {"e2e4 e7e5 g1f3 b8c6", "bestmove f1c4"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 f8c5", "bestmove c2c3"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 f8c5 c2c3 g8f6", "bestmove d2d4"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6", "bestmove f3g5"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5", "bestmove e4d5"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5 e4d5 f6d5", "bestmove g5f7"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5 e4d5 f6d5 g5f7 e8f7", "bestmove d1f3"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5 e4d5 f6d5 g5f7 e8f7 d1f3 f7e6", "bestmove b1c3"},
    {"e2e4 e7e5 g1f3 g8f6", "bestmove b1c3"},
    {"e2e4 d7d5", "bestmove e4d5"},
    {"e2e4 g8f6", "bestmove b1c3"},
    {"e2e4 b8c6", "bestmove d2d4"},
    {"e2e4 c7c5", "bestmove g1f3"},
    {"e2e4 c7c5 g1f3 b8c6", "bestmove f1c4"},
    {"e2e4 c7c6", "bestmove d2d4"},
    {"e2e4 c7c6 d2d4 d7d5", "bestmove e4d5"},
    {"e2e4 d7d6", "bestmove d2d4"},
    {"e2e4 e7e6", "bestmove d2d4"},
    {"e2e4 e7e6 d2d4 d7d5", "bestmove e4d5"},
    {"e2e4 b7b6", "bestmove d2d4"},
    {"e2e4 g7g6", "bestmove d2d4"},
}};

constexpr std::array<BookLine, 14> book_of_black{{
    {"e2e4 d7d5 e4e5", "bestmove c8f5"},
    {"e2e4 d7d5 e4d5", "bestmove g8f6"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4", "bestmove f6d5"},
    {"e2e4 d7d5 e4d5 g8f6 c2c4", "bestmove e7e6"},
    {"e2e4 d7d5 e4d5 g8f6 f1b5", "bestmove c8d7"},
    {"e2e4 d7d5 e4d5 g8f6 f1b5 c8d7 b5c4", "bestmove b7b5"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4", "bestmove d5b4"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4", "bestmove b8c6"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4 b8c6 d4d5", "bestmove b7b5"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4 b8c6 d4d5 b7b5 c4b5", "bestmove c8f5"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4 b8c6 d4d5 b7b5 c4b5 c8f5 b1a3", "bestmove d8d5"},
    {"d2d4 c7c5 d4c5", "bestmove e7e6"},
    {"d2d4 c7c5 d4c5 e7e6 b2b4", "bestmove a7a5"},
    {"d2d4 c7c5 d4d5", "bestmove d7d6"},
}};

std::string_view find_reply(std::span<const BookLine> book, std::string_view line) {
    if (!line.starts_with(beginning)) {
        return {};
    }
    for (const BookLine& x : book) {
        if (line.substr(beginning.size()) == x.moves) {
            return x.reply;
        }
    }
    return {};
}

void answer(std::span<const BookLine> book) {
    const std::string_view reply = find_reply(book, command.in);
    own_book.OwnBk = reply.empty() ? 0 : 1;
    if (own_book.OwnBk) {
        write_line(reply);
    }
}

}  // namespace

void Own_Book_b() { answer(book_of_white); }
void Own_Book_p() { answer(book_of_black); }

std::string_view reply_to_first_move(std::string_view line) { return find_reply(first_moves, line); }

}  // namespace ondrel
