// What a walk of the board counts, for each colour.
#pragma once

#include "base/types.h"

namespace ondrel {

// The counters of one colour; a float sum is rounded to float after every addition.
struct SideCounters {
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
    int lowest_file = 7;   // the box of pawns and king; a colour that has neither has one of 36 squares
    int highest_file = 0;
    int lowest_rank = 7;
    int highest_rank = 0;

    // caixa_<c>: the squares of that box.
    [[nodiscard]] int caixa() const { return (highest_rank - lowest_rank + 1) * (highest_file - lowest_file + 1); }
};

using Counters = std::array<SideCounters, 2>;  // by Colour

// Adds a term to a float sum: in double, rounded to float at once.
inline void add_term(float& sum, double term) { sum = static_cast<float>(static_cast<double>(sum) + term); }

}  // namespace ondrel
