// The game: the move in hand, and what the position line tells beside the board. Written by the front end, which replays
// the line; the search writes its best move and the letter for it.
#pragma once

#include "base/types.h"

namespace ondrel {

// Lifetime: the process. A line that leaves part of a move or the side unsaid leaves them as they were.
struct Game {
    Move abcd{0, 0, 0, 0};        // a, b, c, d: the move being played; after a search its best root move
    std::uint8_t joga_com_b = 0;  // the side to search: 1 = white
};
inline Game game;

inline Colour side_to_search() { return game.joga_com_b ? white : black; }

constexpr int tabr1_rows = 1000;

// Lifetime: one position line, or a new game.
struct GameLine {
    int nb = 1;      // half-moves replayed, 1 at the start
    int peca = 0;    // signed code taken by the last replayed move, 0 if none
    char PR = '0';   // promotion letter of the chosen move, '0' for none
    char PRs = '0';  // 'q' when the best move is a pawn's from its seventh rank
    char PRe = '0';  // promotion letter read from the line
    // Row nb-1: tab after half-move nb. Unwritten rows hold a value that no square can hold.
    std::array<Board, tabr1_rows> tabr1 = [] {
        std::array<Board, tabr1_rows> rows{};
        for (Board& row : rows) {
            row.fill(1);
        }
        return rows;
    }();
};
inline GameLine game_line;

// The root position as its preparation (eval/preparation.cpp, which alone fills it) finds it; arrays by Colour.
// Lifetime: a game, for the tables of nearness and the king squares outlast a line that has nothing to fill them with.
struct RootPosition {
    std::array<float, 2> material_a{510.0F, 510.0F};     // materialba, materialpa: score units, kings included
    std::array<float, 2> materialmaior{320.0F, 320.0F};  // materialmaiorb, materialmaiorp: without pawns and king
    std::array<int, 2> npecas{15, 15};                   // npecasb, npecasp: men without the king
    float materialflot0 = 0;                             // material of the side to search less its opponent's
    float regimen = 0;                                   // balance value of the root position
    std::array<std::array<int, squares>, 2> Xr{};        // Xr_b, Xr_p: nearness to a king
    std::array<std::array<int, squares>, 2> XP{};        // XP_b, XP_p: nearness to the foremost pawn
};
inline RootPosition root;

// The men on the board, both colours, without the kings: the phase of the game in many a rule.
inline int men_at_root() { return root.npecas[white] + root.npecas[black]; }

}  // namespace ondrel
