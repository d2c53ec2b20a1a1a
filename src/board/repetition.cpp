#include "board/repetition.h"

#include "base/ply_stack.h"
#include "board/game.h"

namespace ondrel {

void verifica_empate(Repeats who) {
    trial.pempate = 0;
    if (game_line.nb > tabr1_rows) {
        return;
    }
    // Rows of even index are positions after moves of White in a game from the start position.
    const bool even_rows = (side_to_search() == white) == (who == Repeats::root_move);
    const int first = even_rows ? 0 : 1;
    if (game_line.nb < first + 1) {
        return;
    }
    const int last = first + 2 * ((game_line.nb - 1 - first) / 2);
    int missing = who == Repeats::root_move ? 1 : 2;
    for (int row = first; row <= last; row += 2) {
        if (game_line.tabr1[row] == trial.tab2 && --missing == 0) {
            trial.pempate = 1;
            return;
        }
    }
}

}  // namespace ondrel
