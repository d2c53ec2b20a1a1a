// The option lines. Called by the command loop, before a game and between moves.
#pragma once

namespace ondrel {

// Writes the line of every option.
void announce_options();

// Tries the line `in` as an option line. An option is known by single characters at fixed positions and its value by one
// character; a line or value that hits none of them changes nothing. Writes `options`, and runs the two buttons.
void read_option();

}  // namespace ondrel
