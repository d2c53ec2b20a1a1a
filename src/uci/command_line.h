// The line that the front end works on, and what it has found there. Written by the command loop and by the readers of
// position lines; read by book, options, clock and report.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace ondrel {

// Lifetime: the process.
struct CommandLine {
    std::string in;  // the last line read, without its line end

    // What the reader between moves has found: the form of the position line, or the end.
    std::uint8_t joga_c_b = 0;       // the line was exactly "position startpos"
    std::uint8_t joga_c_p = 0;       // the line was the one-move form
    std::uint8_t joga_c_ob = 0;      // the line was "position startpos moves" and more
    std::uint8_t joga_c_fen = 0;     // the line was a FEN line
    std::uint8_t SAIR_PROGRAMA = 0;  // quit was read

    // The walk over the moves of the line.
    int o = 24;                 // position in `in` of the move being read; p, q, r are the three behind it
    std::uint8_t book = 0;      // another move follows the one being read
    std::uint8_t PROMO = 0;     // the move being read has a promotion letter
    std::uint8_t MOVESfen = 0;  // the FEN line has a move list

    std::array<char, 4> ABCD{};         // A, B, C, D: characters of the move last read or written
    std::string out = "bestmove 0000";  // the text of the engine's reply
};
inline CommandLine command;

// The character of the last line at position k; 0 past its end.
inline char in_at(std::size_t k) { return k < command.in.size() ? command.in[k] : '\0'; }

}  // namespace ondrel
