// Mobility and king proximity: two services of the board walks.
#pragma once

#include "eval/tables.h"

namespace ondrel {

// Scratch board and result of the legality test; no other routine touches them.
inline Tabuleiro tab2t{};
inline std::uint8_t YY = 0;  // 1 = the mover's king stands attacked after the move

// verifica_liberdade_<c> when `de` is tab, verifica_liberdadee_<c> when it is tab2: plays the plain transfer (neither
// en passant nor castling) on tab2t, a pawn on its last rank becoming a queen, and leaves the result in YY.
void verifica_liberdade(Cor c, const Tabuleiro& de, Lance m);

// The counters of a colour in one walk of the board.
struct Contagem {
    float posicao = 0;     // posicao_<c>: positional sum
    float centro = 0;      // centro_<c>: sum of centroo over the squares attacked
    float atack_ksf = 0;   // atack_ksf_<c>: sum of 1/d over the squares attacked, d to the enemy king
    float defesa_ksf = 0;  // defesa_ksf_<c>: the same, d to the own king
    int mobilidade = 0;    // empty or enemy squares reached
    int alvos = 0;         // enemy men attacked
    int apoios = 0;        // own men attacked, so defended
    int pecas = 0;         // knights, bishops, rooks, queens
    int peoes = 0;         // pawns
    int pontos = 0;        // 3, 3, 5, 9 per knight, bishop, rook, queen
    int avanco = 0;        // ranks advanced, over all men
    int abrigo = 0;        // pawns sheltering the own king
    int menor_file = 7;    // the box of pawns and king
    int maior_file = 0;
    int menor_rank = 7;
    int maior_rank = 0;

    [[nodiscard]] int caixa() const { return (maior_rank - menor_rank + 1) * (maior_file - menor_file + 1); }
};

// The counters of the last walk, by Cor: outputs, which the next walk overwrites.
inline std::array<Contagem, 2> contagem{};

// Adds a term to a float sum: in double, rounded to float at once.
inline void soma(float& total, double termo) { total = static_cast<float>(static_cast<double>(total) + termo); }

// King_safety_<c>: accounts for one square that c attacks.
void King_safety(Cor c, Contagem& lado, int f, int r);

}  // namespace ondrel
