// Single questions to the plain engine, for the tests of the real one. They use the plain engine's own state: the
// settings and the root may be set directly, or the root by replay_position and prepare_search.
#pragma once

#include <string>
#include <vector>

#include "plain/state.h"

namespace plain {

// --- The rules of chess ---
struct Situation {
    Board board{};
    Flags flags;
    Colour to_move = white;
};

Situation start_situation();
// As text, e2e4 or e7e8q; castling is the king's move of two files. Without a king every move is legal.
std::vector<std::string> legal_moves(const Situation& situation);
Situation play(const Situation& situation, const std::string& move);
bool is_king_attacked(const Board& board, Colour c);
// Board, side, castling rights and en-passant square; the counters are 0 and 1.
std::string fen_of(const Situation& situation);

// --- Evaluation ---
struct LeafJudgement {
    float extraeval;
    bool EMPAT;
    bool operator==(const LeafJudgement&) const = default;
};
// The judgement of a leaf whose board it is: own is the root's side, stm the side to move. The kings are looked for.
LeafJudgement judge_leaf_board(const Board& board, Colour own, Colour stm);

struct RootMoveJudgement {
    bool legal;
    bool check;
    int ATAQUE, ESTRATEGIA;
    float extraevalll;
};
// Class and base value of a move of the root as it stands.
RootMoveJudgement judge_root_move(Move m);

}  // namespace plain
