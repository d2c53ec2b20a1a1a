// Castling: the conditions on flags and squares, and the test of the squares that the king passes and reaches. Called by
// the king's generators of the tree and by the king's root routine.
#pragma once

#include "board/attacks.h"

namespace ondrel {

// The sides of castling by the number in the routines' names.
enum CastlingSide : int { long_side = 0, short_side = 8 };

// The squares of one side by their files, on the colour's first rank: verifica_roque<K>.
struct CastlingFiles {
    int corner, crossed, destination;
};
constexpr CastlingFiles castling_files(CastlingSide k) {
    return k == long_side ? CastlingFiles{file_a, 3, 2} : CastlingFiles{file_h, 5, 6};
}

constexpr Move castling_move(Colour c, CastlingSide k) {
    const int home = relative_rank(c, 0);
    return move_of(king_file, home, castling_files(k).destination, home);
}

// The cheap conditions on ply n: the rook on its corner, neither man moved, the squares between empty. The king's own
// square is not looked at: a king that has not moved stands on it.
template <Colour c>
inline bool may_castle(int n, CastlingSide k) {
    const Board& t = ply[n].tabd;
    const MovedFlags& flags = ply[n].jm_D;
    constexpr int home = relative_rank(c, 0);
    const auto is_empty = [&t](int f) { return t[square(f, home)] == no_piece; };
    const bool rook_moved = k == long_side ? flags.T_a_jm[c] : flags.T_h_jm[c];
    if (flags.R_jm[c] || rook_moved || t[square(castling_files(k).corner, home)] != code(c, torre)) {
        return false;
    }
    return k == short_side ? is_empty(5) && is_empty(6) : is_empty(1) && is_empty(2) && is_empty(3);
}

// verifica_roque<K>d<N>_<c>, and with n = 0 the test of the root form: R tells whether the crossed square or the
// destination is attacked. The square that the rook alone crosses is not tested. tab2 is left with the castled position,
// whatever R came to.
template <Colour c>
inline void verifica_roque(int n, CastlingSide k) {
    constexpr int home = relative_rank(c, 0);
    const CastlingFiles files = castling_files(k);
    Board& t = trial.tab2;
    t = ply[n].tabd;
    const bool crossing_attacked = is_attacked<c>(t, files.crossed, home);
    t[square(files.crossed, home)] = man(c, torre);
    t[square(files.corner, home)] = no_piece;
    t[square(files.destination, home)] = man(c, rei);
    t[square(king_file, home)] = no_piece;
    trial.R = crossing_attacked || is_attacked<c>(t, files.destination, home) ? 1 : 0;
}

}  // namespace ondrel
