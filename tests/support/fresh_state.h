// The engine's globals as a process begins: what one test or input does, no other sees.
#pragma once

#include "base/bounds.h"
#include "base/options.h"
#include "base/root.h"
#include "eval/root_trial.h"
#include "memory/game_memory.h"
#include "memory/shallow_tables.h"
#include "uci/position.h"

namespace teste {

inline void opcoes_novas() {
    using namespace ondrel;
    CPU = 2;
    deep = deepp = 17;
    Tu = 3;
    TC = SEARCH_E = SEARCH_EE = PVS = TURBO = VERTICAL_filt = LMR = 1;
    Positive_filter = Positive_filterp = Negative_filter = Negative_filterp = NULL_MOVE = 2;
    positfilter = negatfilter = 100.0F;
    Temperamento = 3;
    agres = agresprxrei = 1.0F;
    agreschrei = matrix = 1;
    empp = -5;
    EXTRA_EVAL = EXTRA_EVALL = extradef = OwnBook = HASH1 = HASHf = FULL_inf = 1;
    PM = MOB = MQ = 5.0F;
    roque_v = 3;
    CHESS_960 = 0;
}

// What the rules of a search may find as the search before it left it.
inline void restos_de_busca_novos() {
    using namespace ondrel;
    curr_N = {};
    LmrT = AmrT = {};
    LMRtest = 0;
    SCAN1 = SCANT = 0;
    ataca = {};
    MATRIZ = 0;
    incentiva_promo = 0;
    extraevalll = 0;
    ddep = 0;
    A0_D7 = {};
}

// Settings at their start values, no game, nothing remembered.
inline void estado_novo() {
    using namespace ondrel;
    opcoes_novas();
    if (inc1 > 0) {
        limpa_memoria();
    }
    limpa_tabelas_rasas();
    nova_partida(brancas);
    restos_de_busca_novos();
    joga_com_b = 0;
    tab = {};
    jm = {};
    nb = 0;
    tempo = 300000;
    abcd = {0, 0, 0, 0};
    deep = deepp;
    in.clear();
    inn = {};
}

}  // namespace teste
