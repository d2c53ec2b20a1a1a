// The trial of the move that enters a ply, as the caller's test left it on tab2: what a node asks about check, and what a
// leaf is judged on. It is made on tab2 only where something reads the bytes.
#pragma once

#include "board/legality.h"

namespace ondrel {

// Castling by rights that the line gives without a king on his square shows another board to the test than a ply's own
// application makes. By ply: that board while such a move is entered, null for every other move.
struct StrangeTrials {
    std::array<const Board*, last_ply + 1> board{};
};
inline StrangeTrials strange_trials;

// Keeps tab2 as the trial of the castling that is about to enter ply n, until it goes out of scope, if no king of c
// stands on his square.
template <Colour c>
class CastlingTrial {
public:
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): board_ is filled only where it is lent
    explicit CastlingTrial(int n) : n_(n) {
        if (ply[n - 1].tabd[square(king_file, relative_rank(c, 0))] != code(c, rei)) {
            board_ = trial.tab2;
            strange_trials.board[n] = &board_;
        }
    }
    ~CastlingTrial() { strange_trials.board[n_] = nullptr; }
    CastlingTrial(const CastlingTrial&) = delete;
    CastlingTrial& operator=(const CastlingTrial&) = delete;

private:
    int n_;
    Board board_;
};

// Leaves on tab2 the trial of the move m of c that enters ply n.
template <Colour c>
inline void make_trial(int n, Move m) {
    if (strange_trials.board[n] != nullptr) {
        trial.tab2 = *strange_trials.board[n];
    } else {
        init_tabuleiro2_deep<c>(n - 1, m);
    }
}

// The same position in sets.
template <Colour c>
inline PieceSets sets_of_trial(int n, Move m) {
    return strange_trials.board[n] != nullptr ? piece_sets(*strange_trials.board[n]) : sets_after<c>(ply[n - 1], m);
}

// Whether the move m of c that enters ply n gives check: verifica_rei_<o> on that trial. At ply 1 that is what stands on
// tab2, which for one castling is not the position after the move.
template <Colour c>
inline bool gives_check(int n, Move m) {
    if (n == 1) {
        verifica_rei<other(c)>();
        return trial.Y;
    }
    return king_attacked<other(c)>(sets_of_trial<c>(n, m));
}

}  // namespace ondrel
