// The tests for check, square by square on the 64 bytes of a board: the root, the classifier and castling ask these; the
// tree asks the same in sets (board/legality.h). A square that is not on the board is never attacked.
#pragma once

#include "base/ply_stack.h"

namespace ondrel {

template <Colour c>
inline bool attacked_by_pawn(const Board& t, int f, int r) {
    const int ahead = r + forward(c);
    const int enemy = code(other(c), peao);
    return (on_board(f + 1, ahead) && t[square(f + 1, ahead)] == enemy) ||
           (on_board(f - 1, ahead) && t[square(f - 1, ahead)] == enemy);
}

template <std::size_t n>
inline bool attacked_by_leap(const Board& t, int f, int r, int enemy, const std::array<Step, n>& leaps) {
    for (const Step s : leaps) {
        if (on_board(f + s.file, r + s.rank) && t[square(f + s.file, r + s.rank)] == enemy) {
            return true;
        }
    }
    return false;
}

// By a queen or the piece `enemy` along one of its rays: the first man met counts, whoever it is.
inline bool attacked_along(const Board& t, int f, int r, int enemy, int enemy_queen, const std::array<Step, 4>& rays) {
    for (const Step s : rays) {
        int to_f = f + s.file;
        int to_r = r + s.rank;
        while (on_board(to_f, to_r) && t[square(to_f, to_r)] == no_piece) {
            to_f += s.file;
            to_r += s.rank;
        }
        if (on_board(to_f, to_r) && (t[square(to_f, to_r)] == enemy || t[square(to_f, to_r)] == enemy_queen)) {
            return true;
        }
    }
    return false;
}

// Whether a man of the other colour attacks (f, r), seen from a king of c there.
template <Colour c>
inline bool is_attacked(const Board& t, int f, int r) {
    constexpr Colour enemy = other(c);
    constexpr int queen = code(enemy, dama);
    return attacked_by_pawn<c>(t, f, r) || attacked_by_leap(t, f, r, code(enemy, rei), king_steps) ||
           attacked_by_leap(t, f, r, code(enemy, cavalo), knight_steps) ||
           attacked_along(t, f, r, code(enemy, bispo), queen, bishop_steps) ||
           attacked_along(t, f, r, code(enemy, torre), queen, rook_steps);
}

// Whether any king of c on the board is attacked. Calls `f` with the square of each.
template <Colour c, class F>
inline bool any_king_attacked(const Board& t, F f) {
    bool attacked = false;
    for (int i = 0; i < squares; ++i) {
        if (t[i] == code(c, rei)) {
            f(i);
            attacked = is_attacked<c>(t, file_of(i), rank_of(i)) || attacked;
        }
    }
    return attacked;
}
template <Colour c>
inline bool any_king_attacked(const Board& t) {
    return any_king_attacked<c>(t, [](int) {});
}

// verifica_rei_<c>: Y tells whether a king of c on tab2 is attacked; p_xy_R takes the square of the king found last.
// Without a king Y is 0 and the square keeps its value.
template <Colour c>
inline void verifica_rei() {
    trial.Y = any_king_attacked<c>(trial.tab2, [](int i) { trial.p_xy_R[c] = i; }) ? 1 : 0;
}

// verifica_xeque_<c>: XEQUE tells whether c, who has just moved, attacks a king of the other colour on tab2.
template <Colour c>
inline void verifica_xeque() {
    trial.XEQUE = any_king_attacked<other(c)>(trial.tab2) ? 1 : 0;
}

// verifica_xequemate<c>d<N>, and with n = 0 the root form: XM tells whether square i is attacked on tabd<N>.
template <Colour c>
inline void verifica_xequemate(int n, int i) {
    trial.XM = is_attacked<c>(ply[n].tabd, file_of(i), rank_of(i)) ? 1 : 0;
}

}  // namespace ondrel
