// What the interface sees of a search besides bestmove.
#pragma once

namespace ondrel {

// info_b_deept, info_p_deept: the lines of the root move just searched.
void info_deept();

// The same for every root move but those of the build pass: what the command loop has the search call.
void report_root_move();

// info_b, info_p: the final line, with the score EP and the move ABCD.
void info_final();

}  // namespace ondrel
