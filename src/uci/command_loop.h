// The front end: reads commands, keeps the game, answers.
#pragma once

#include <string>

namespace ondrel {

inline std::string out = "bestmove 0000";  // the text of the engine's reply

// convert_a1a2_to_0000: the command reader between moves. Reads lines until one of position or quit, or the end of
// input, and leaves its finding in joga_c_b, joga_c_p, joga_c_ob, joga_c_fen or SAIR_PROGRAMA; sets deep to deepp.
void convert_a1a2_to_0000();

// convert_0000_to_a1a2: writes the move abcd, with PR as its promotion, into ABCD and out. Knows no promotion letter
// but 'q' and '0': for any other nothing changes.
void convert_0000_to_a1a2();

// Reads commands until quit or the end of input.
void laco_de_comandos();

}  // namespace ondrel
