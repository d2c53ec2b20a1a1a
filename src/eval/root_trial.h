// The trial of a root move, with everything that its class is made of. Called for every visit of a root move.
#pragma once

#include "eval/tables.h"

namespace ondrel {

// Attack maps of the position after the root move, by square: how often a kind of man of one colour attacks it, defence
// included. The queen counts in her own map only.
struct AttackMaps {
    IntTable peao_ataca{};
    IntTable cavalo_ataca{};
    IntTable bispo_ataca{};
    IntTable torre_ataca{};
    IntTable dama_ataca{};
    IntTable rei_ataca{};
    IntTable N_A{};  // all of them
};

// What the last trial left, which castling, that makes none of its own, is judged by. Lifetime: the process: not even a
// new game touches it.
struct RootTrial {
    std::array<AttackMaps, 2> maps{};  // by Colour: peao_b_ataca .. N_A_p
    int MATRIZ = 0;                    // positional value of the destination; the classifier scales it in place
    std::uint8_t incentiva_promo = 0;  // a pawn move late in the game
};
inline RootTrial root_trial;

// init_tabuleiro2, but for the gate of the pass, which the root keeps: MATRIZ and incentiva_promo, the move of c on tab2,
// and the attack maps of tab2. tab and the root flags stay as they are.
template <Colour c>
void init_tabuleiro2(Move m);

}  // namespace ondrel
