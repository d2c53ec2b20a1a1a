// The built-in opening book: whole position lines with a fixed reply each. Asked by the command loop.
#pragma once

#include <cstdint>
#include <string_view>

namespace ondrel {

struct Book {
    std::uint8_t OwnBk = 0;  // the last call of a book routine wrote a reply
};
inline Book own_book;

// Own_Book_b, Own_Book_p: write the reply to the line `in`, if it is in the book of the colour to move. Leave OwnBk.
void Own_Book_b();
void Own_Book_p();

constexpr std::string_view reply_to_new_game = "bestmove e2e4";

// The reply to White's first move; empty if there is none.
std::string_view reply_to_first_move(std::string_view line);

}  // namespace ondrel
