// Application of moves: called by every node, by every trial, and by the replay of the game. Nothing here checks that a
// move is legal or that the piece can go there: what is given is carried out. Squares must lie on the board.
#pragma once

#include "base/ply_stack.h"

namespace ondrel {

// --- The rules shared by all forms; c is the moving side ---

// A king that leaves its e-square for file c or g takes the rook of that side along. Neither the to-rank nor the corner
// is looked at.
template <Colour c>
inline void move_castling_rook(Board& t, Move m) {
    constexpr int home = relative_rank(c, 0);
    if (m.from_file != king_file || m.from_rank != home) {
        return;
    }
    if (m.to_file == 2) {
        t[square(3, home)] = man(c, torre);
        t[square(file_a, home)] = no_piece;
    } else if (m.to_file == 6) {
        t[square(5, home)] = man(c, torre);
        t[square(file_h, home)] = no_piece;
    }
}

// Whether the pawn move m of c captures en passant, by the flags given.
template <Colour c>
inline bool is_en_passant(const Board& t, const MovedFlags& flags, Move m) {
    return m.to_rank == relative_rank(c, 5) && flags.p_ah[other(c)][m.to_file] && t[m.from()] == code(c, peao);
}

// Captures en passant if it is one, and tells whether it did: the move is then on the board.
template <Colour c>
inline bool capture_en_passant(Board& t, const MovedFlags& flags, Move m) {
    if (!is_en_passant<c>(t, flags, m)) {
        return false;
    }
    t[m.from()] = no_piece;
    t[square(m.to_file, relative_rank(c, 4))] = no_piece;
    t[m.to()] = man(c, peao);
    return true;
}

// The copy comes first: a move onto its own square empties it.
inline void transfer(Board& t, Move m) {
    t[m.to()] = t[m.from()];
    t[m.from()] = no_piece;
}

// The search promotes to the queen only.
template <Colour c>
inline void promote_to_queen(Board& t, Move m) {
    if (m.to_rank == relative_rank(c, last_rank) && t[m.to()] == code(c, peao)) {
        t[m.to()] = man(c, dama);
    }
}

// Notes in the flags that x, the piece that is about to leave, has moved. A rook counts by its file, on any rank.
template <Colour c>
inline void note_departure(MovedFlags& flags, int x, Move m) {
    if (x == code(c, rei)) {
        flags.R_jm[c] = 1;
    } else if (x == code(c, torre)) {
        if (m.from_file == file_a) {
            flags.T_a_jm[c] = 1;
        } else if (m.from_file == file_h) {
            flags.T_h_jm[c] = 1;
        }
    }
}

// Notes a double step of the pawn that still stands on the from-square.
template <Colour c>
inline void note_double_step(const Board& t, MovedFlags& flags, Move m) {
    if (t[m.from()] == code(c, peao) && m.from_rank == relative_rank(c, 1) && m.to_rank == relative_rank(c, 3)) {
        flags.p_ah[c][m.from_file] = 1;
    }
}

// --- The forms ---

// init_tabuleiro<N>: plays a move of c on a ply's own board and flags, in place; the caller has copied both from the ply
// above. Leaves X_D at 1.
template <Colour c>
inline void init_tabuleiro_ply(Ply& node, Move m) {
    Board& t = node.tabd;
    const int x = t[m.from()];
    if (x == code(c, rei)) {
        move_castling_rook<c>(t, m);
    }
    note_departure<c>(node.jm_D, x, m);
    const bool captured_en_passant = capture_en_passant<c>(t, node.jm_D, m);
    node.jm_D.p_ah = {};
    note_double_step<c>(t, node.jm_D, m);
    if (!captured_en_passant) {
        transfer(t, m);
    }
    promote_to_queen<c>(t, m);
    node.X_D = 1;
}

// The trial form: the position after a move of c from the given board and flags, on tab2. No flag is set.
template <Colour c>
inline void try_move(const Board& from, const MovedFlags& flags, Move m) {
    Board& t = trial.tab2;
    t = from;
    if (t[m.from()] == code(c, rei)) {
        move_castling_rook<c>(t, m);
    }
    if (!capture_en_passant<c>(t, flags, m)) {
        transfer(t, m);
    }
    promote_to_queen<c>(t, m);
}

// init_tabuleiro2_deep<N>: the trial of a move of c, the side to move on tabd<N>.
template <Colour c>
inline void init_tabuleiro2_deep(int n, Move m) {
    try_move<c>(ply[n].tabd, ply[n].jm_D, m);
}

// The board part of init_tabuleiro: plays game.abcd on tab and the root flags, with under-promotion by PRs and PRe and
// the castling of Chess960. The colour is read from the piece. Leaves PR at 'q' when the search's own pawn has become a
// queen.
void apply_to_root();

}  // namespace ondrel
