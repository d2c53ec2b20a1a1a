// The rules: moves put on boards, attacks on kings, castling, repetition.
#pragma once

#include "plain/state.h"

namespace plain {

inline constexpr std::array<Step, 8> knight_jumps{
    {{2, 1}, {2, -1}, {-2, -1}, {-2, 1}, {-1, 2}, {1, 2}, {1, -2}, {-1, -2}}};
inline constexpr std::array<Step, 8> king_steps{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {-1, -1}, {1, 1}, {-1, 1}, {1, -1}}};
inline constexpr std::array<Step, 4> bishop_rays{{{1, 1}, {1, -1}, {-1, -1}, {-1, 1}}};
inline constexpr std::array<Step, 4> rook_rays{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}};
inline constexpr std::array<Step, 8> queen_rays{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {1, -1}, {-1, -1}, {-1, 1}}};

Board start_position();

// Is the square attacked by a man of that colour?
bool is_attacked(const Board& board, int file, int rank, Colour by);
// Is any king of the colour attacked?
bool king_attacked(const Board& board, Colour c);

// --- Moves put on boards ---
void init_tabuleiro_ply(int N, Move m);    // in place on tabd<N>, with the flags of ply N
void init_tabuleiro2_deep(int N, Move m);  // from tabd<N> on tab2
void init_tabuleiro2(Move m);              // from tab on tab2, with the gate, MATRIZ and the attack maps
void play_on_root(Move m);                 // in place on tab: the part of init_tabuleiro that moves

// --- Tests on tab2: they leave Y and the king's square, XEQUE, pempate ---
void verifica_rei(Colour c);
void verifica_xeque(Colour c);
void verifica_empate();

// --- Tests on tabd<N>, ply 0 being the root: they leave XM; R, tab2 and at the root TEST1IID ---
void verifica_xequemate(Colour c, int N, int file, int rank);
enum class Castling { long_side, short_side };
constexpr Move castling_move(Colour c, Castling side) {
    return {4, rank_of(c, 0), side == Castling::long_side ? 2 : 6, rank_of(c, 0)};
}
// Rights, rook and empty squares, which the caller of verifica_roque looks at.
bool castling_is_open(Colour c, int N, Castling side);
void verifica_roque(Colour c, int N, Castling side);

// Would the plain transfer leave the mover's king attacked? The result of verifica_liberdade and verifica_liberdadee.
bool leaves_king_attacked(const Board& board, Colour c, Move m);

}  // namespace plain
