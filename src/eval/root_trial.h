// The trial of a root move, with everything that its class is made of.
#pragma once

#include "eval/tables.h"

namespace ondrel {

// Attack maps of the position after the root move, by Cor and square: how often a kind of man attacks it, defence
// included. The queen counts in her own map only.
struct Ataques {
    TabelaInteira peao{};    // peao_<c>_ataca
    TabelaInteira cavalo{};  // cavalo_<c>_ataca
    TabelaInteira bispo{};   // bispo_<c>_ataca
    TabelaInteira torre{};   // torre_<c>_ataca
    TabelaInteira dama{};    // dama_<c>_ataca
    TabelaInteira rei{};     // rei_<c>_ataca
    TabelaInteira N_A{};     // N_A_<c>: all of them
};
inline std::array<Ataques, 2> ataca{};

inline int MATRIZ = 0;                    // positional value of the destination; verifica_estrategia scales it in place
inline std::uint8_t incentiva_promo = 0;  // a pawn move late in the game

// init_tabuleiro2: the gate of the pass (TEST1IID), MATRIZ and incentiva_promo, the move of joga_com_b's side on tab2,
// and the attack maps of tab2. tab and the root flags stay as they are.
void init_tabuleiro2(Lance m);

}  // namespace ondrel
