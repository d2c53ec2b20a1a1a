// The ply stack: one record per ply, copied from the ply above by its node, so that nothing is ever undone; and the
// scratch board on which candidates are tried. Lifetime: a node, a trial.
#pragma once

#include "base/square_sets.h"
#include "base/types.h"

namespace ondrel {

constexpr int last_ply = 24;  // a leaf only: it has no board of its own
constexpr int no_square = -1;

// The 22 flag bytes that travel with a board; each 0 or 1, the first index a Colour.
struct MovedFlags {
    std::array<std::uint8_t, 2> R_jm{};    // R_b_jm, R_p_jm: the king has moved
    std::array<std::uint8_t, 2> T_a_jm{};  // T_b_a_jm, T_p_a_jm: a rook has left file a
    std::array<std::uint8_t, 2> T_h_jm{};  // T_b_h_jm, T_p_h_jm: a rook has left file h
    // pba .. pbh, ppa .. pph: the last half-move was a double step of this colour's pawn on that file
    std::array<std::array<std::uint8_t, 8>, 2> p_ah{};
};
static_assert(sizeof(MovedFlags) == 22);

// The position after N plies of the line now being searched. Written by the node of ply N alone (and by the null-move
// pass of ply N-1 for its time). Ply 0 is the position of the game: the front end writes it, the search leaves board and
// flags as they are.
struct Ply {
    Board tabd{};
    MovedFlags jm_D{};
    std::uint8_t X_D = 0;         // 1 until a reply has improved the ply's bound
    std::uint8_t XEQUE_MATE = 0;  // 1 until the king's generator has found its side not in check
    // materialb<N>, materialp<N>: running material by Colour, score units. At ply 0 the sums that a search starts from:
    // those of the root less a hundred each.
    std::array<float, 2> material{};
    PieceSets sets;  // tabd in sets of squares

    // Worked out by prepare_move_loop, and constant while the move loop of the ply runs.
    SquareSet targets = 0;    // where a man other than the king may go: all squares, or those that answer a check
    SquareSet pinned = 0;     // men of the side to move that may leave its king on their line alone
    int king_at = no_square;  // the king of the side to move; no_square where it has none or several
    bool in_check = false;    // that king is attacked
    float chain = 0;          // the bound above that cuts first: the highest alfa above an odd ply, the lowest beta
    float cut_at = 0;         // the same with the ply's own limit: a value that reaches it ends the loop
};

inline std::array<Ply, last_ply> ply;

// The root board and its flags, R_b_jm .. pph: ply 0 of the stack.
inline Board& tab = ply[0].tabd;
inline MovedFlags& jm = ply[0].jm_D;

// What the last trial and the last test left. Every trial and every test overwrites its own; the caller reads it at
// once, or stale where a rule says so. A new game begins with a fresh one.
struct Trial {
    Board tab2{};              // the position after the move under test
    std::uint8_t Y = 0;        // verifica_rei: the king tested is attacked
    std::uint8_t XEQUE = 0;    // verifica_xeque: the mover gives check
    std::uint8_t XM = 0;       // verifica_xequemate: the square is attacked
    std::uint8_t R = 0;        // verifica_roque: the castling path is attacked
    std::uint8_t pempate = 0;  // verifica_empate: the position repeats
    // p_x_R, p_y_R by Colour as one board index: the king's square on the board last tested, not on any given ply.
    std::array<int, 2> p_xy_R{square(king_file, 0), square(king_file, 7)};
};

inline Trial trial;

}  // namespace ondrel
