#include "board/apply.h"

#include "base/options.h"
#include "board/game.h"

namespace ondrel {
namespace {

// In Chess960 a king that moves onto a rook of its own castles, whichever squares the two came from. Tells whether it
// did.
template <Colour c>
bool castle_960(Move m) {
    if (tab[m.to()] != code(c, torre)) {
        return false;
    }
    constexpr int home = relative_rank(c, 0);
    const bool to_the_long_side = m.to_file < m.from_file;
    tab[m.from()] = no_piece;
    tab[m.to()] = no_piece;
    tab[square(to_the_long_side ? 2 : 6, home)] = man(c, rei);
    tab[square(to_the_long_side ? 3 : 5, home)] = man(c, torre);
    return true;
}

// Plays what a plain transfer cannot, and notes what has moved. Tells whether the move is on the board.
template <Colour c>
bool apply_special_rules(Move m) {
    const int x = tab[m.from()];
    bool placed = false;
    if (x == code(c, rei)) {
        if (!options.CHESS_960) {
            move_castling_rook<c>(tab, m);
        } else {
            placed = castle_960<c>(m);
        }
    }
    note_departure<c>(jm, x, m);
    return capture_en_passant<c>(tab, jm, m) || placed;
}

// The piece that a pawn on its last rank becomes; no_piece for no change.
Piece promotion_at_root() {
    if (game_line.PRs == 'q') {
        if (game_line.PRe != '0') {
            return no_piece;
        }
        game_line.PR = 'q';
        return dama;
    }
    switch (game_line.PRe) {
        case 'q': return dama;
        case 'r': return torre;
        case 'n': return cavalo;
        case 'b': return bispo;
        default: return no_piece;
    }
}

template <Colour c>
void promote_at_root(Move m) {
    if (m.to_rank != relative_rank(c, last_rank) || tab[m.to()] != code(c, peao)) {
        return;
    }
    if (const Piece piece = promotion_at_root(); piece != no_piece) {
        tab[m.to()] = man(c, piece);
    }
}

}  // namespace

void apply_to_root() {
    const Move m = game.abcd;
    const bool placed_by_white = apply_special_rules<white>(m);
    const bool placed_by_black = apply_special_rules<black>(m);
    jm.p_ah = {};
    note_double_step<white>(tab, jm, m);
    note_double_step<black>(tab, jm, m);
    if (!placed_by_white && !placed_by_black) {
        transfer(tab, m);
    }
    promote_at_root<white>(m);
    promote_at_root<black>(m);
}

}  // namespace ondrel
