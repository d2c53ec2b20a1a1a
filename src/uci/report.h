// What the interface sees of a search besides bestmove. The running lines, info_deept, are declared where the tree
// calls them.
#pragma once

namespace ondrel {

// info_b, info_p: the final line, with the score EP and the move ABCD.
void info_final();

}  // namespace ondrel
