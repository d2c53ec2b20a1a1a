// The front end: reads commands, keeps the game, answers. Called by main, and by the bench with a conversation of its own.
#pragma once

namespace ondrel {

// convert_a1a2_to_0000: the command reader between moves. Reads lines until one of position or quit, or the end of
// input, and leaves its finding in joga_c_b, joga_c_p, joga_c_ob, joga_c_fen or SAIR_PROGRAMA.
void convert_a1a2_to_0000();

// convert_0000_to_a1a2: writes the move game.abcd, with PR as its promotion, into ABCD and out. Knows no promotion letter
// but 'q' and '0': for any other nothing changes.
void convert_0000_to_a1a2();

// Reads commands until quit or the end of input.
void run_command_loop();

}  // namespace ondrel
