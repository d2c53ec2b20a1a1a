// The built-in opening book: whole position lines with a fixed reply each.
#pragma once

#include <cstdint>
#include <string_view>

namespace ondrel {

inline std::uint8_t OwnBk = 0;  // the last call of a book routine wrote a reply

// Own_Book_b, Own_Book_p: write the reply to the line `in`, if it is in the book of the colour to move. Leave OwnBk.
void Own_Book_b();
void Own_Book_p();

constexpr std::string_view resposta_ao_inicio = "bestmove e2e4";

// The reply to White's first move; empty if there is none.
std::string_view resposta_ao_primeiro_lance(std::string_view linha);

}  // namespace ondrel
