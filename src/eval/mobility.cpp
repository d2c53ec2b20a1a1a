#include "eval/mobility.h"

#include "board/apply.h"
#include "board/attacks.h"

namespace ondrel {

template <Colour c>
void verifica_liberdade(const Board& from, Move m) {
    liberty.tab2t = from;
    transfer(liberty.tab2t, m);
    promote_to_queen<c>(liberty.tab2t, m);
    liberty.YY = any_king_attacked<c>(liberty.tab2t) ? 1 : 0;
}

template void verifica_liberdade<white>(const Board& from, Move m);
template void verifica_liberdade<black>(const Board& from, Move m);

}  // namespace ondrel
