// The evaluation once more, in the plainest way: what the engine's fast evaluation is compared with.
//
// Plain values in, plain values out: no globals, no tables kept between calls, nothing taken from the engine. Colours
// are 0 for white and 1 for black, boards hold signed piece codes (10 pawn, 32 knight, 33 bishop, 50 rook, 90 queen,
// 110 king, black negative) at index file * 8 + rank. Every sum is rounded where the engine rounds it, so that results
// may be compared for equality.
#pragma once

#include <array>

namespace plain {

using Board = std::array<int, 64>;

// --- Positional tables, by their formulas ---
int posix_pawn(int colour, int nb, int square);                   // opening, middle game or end game, by half-move nb
int posix_piece(int colour, int kind, int square);                // kind: 32, 33, 50 or 90
int posix_king_final(int colour, int square);                     // a bare king seeks the middle
float centro(int square);                                         // 0.4 in the middle
float centroo(int square);                                        // fifty times as much
float promo(int colour, int square);                              // 0.5 on the colour's last rank
int xr_numerator(float material_before_the_move);                 // 375 for a bare king, else 15
int xr(int numerator, int king_file, int king_rank, int square);  // proximity to a king
int xp(const Board& root, int colour, int square);                // proximity to the colour's most advanced pawn

// --- Leaf evaluation ---
struct EvalInput {
    Board board{};
    // The remembered king squares by colour, not necessarily where the kings stand.
    std::array<int, 2> king_file{4, 4};
    std::array<int, 2> king_rank{0, 7};
    std::array<int, 2> men{15, 15};                       // of the root, without the king
    std::array<float, 2> piece_material{320.0F, 320.0F};  // of the root, without pawns and king
    float regimen = 0;
    float base = 0;               // base value of the root move, which every leaf under it carries
    std::array<int, 2> castle{};  // castling value of the line
    float agres = 1.0F;
    float agresprxrei = 1.0F;
    float MOB = 5.0F;
    float PM = 5.0F;
    int roque_v = 3;
};

struct SideCounts {
    float posicao = 0;
    float centro = 0;
    float atack_ksf = 0;
    float defesa_ksf = 0;
    int mobilidade = 0;
    int alvos = 0;
    int apoios = 0;
    int pecas = 0;
    int peoes = 0;
    int pontos = 0;
    int avanco = 0;
    int abrigo = 0;
    // The box of pawns and king.
    int lowest_file = 8;
    int highest_file = -1;
    int lowest_rank = 8;
    int highest_rank = -1;
    int caixa = 0;
};

struct Walk {
    std::array<SideCounts, 2> side;
    bool dead_draw = false;
};

// The walk of a leaf. With legal_mobility only legal moves count as mobility: that is the walk of a root move.
Walk walk(const EvalInput& in, int own, int side_to_move, bool legal_mobility);

// The judgement of a leaf from the view of `own`, bounded; `counts` is a walk without legal mobility.
float extra_eval(const EvalInput& in, int own, const Walk& counts);

// The base value of a root move of `own`; `counts` is a walk with legal mobility and the opponent to move.
float base_value(const EvalInput& in, int own, const Walk& counts);

// --- Root position ---
// The walk behind the balance value, on the root board: posicao, alvos and apoios stay zero.
Walk balance_walk(const EvalInput& in);

// The balance value. `material` is each side's sum of piece codes, king included.
float balance(const EvalInput& in, int own, const std::array<float, 2>& material);

// Is a king of the colour attacked?
bool king_attacked(const Board& board, int colour);

// --- Class of a root move ---
struct RootMove {
    Board root{};   // before the move
    int piece = 0;  // the moving man, signed
    int to = 0;
    int nb = 1;
    std::array<float, 2> material{510.0F, 510.0F};  // of the root, kings included
    std::array<int, 2> men{15, 15};                 // of the root, without the king
    std::array<int, 2> king_file{4, 4};             // of the root
    std::array<int, 2> king_rank{0, 7};
    std::array<int, 2> numerator{15, 15};  // of the proximity to each king
};

struct RootValue {
    int matriz = 0;
    bool incentiva_promo = false;
};

RootValue root_value(const RootMove& move);

struct AttackMaps {
    // By colour: pawn, knight, bishop, rook, queen, king; then all of them together.
    std::array<std::array<Board, 6>, 2> by_kind{};
    std::array<Board, 2> total{};
};

AttackMaps attack_maps(const Board& board);

struct Class {
    int ataque = 0;
    int estrategia = 0;
    int matriz = 0;  // as scaled here, which is what a castling move finds
};

// The board and the maps are those after the move.
Class classify(const Board& after, const AttackMaps& maps, int mover, const RootValue& value,
               const std::array<float, 2>& material, const std::array<int, 2>& men, int agreschrei, int matrix);
Class classify(const Board& after, int mover, const RootValue& value, const std::array<float, 2>& material,
               const std::array<int, 2>& men, int agreschrei, int matrix);

}  // namespace plain
