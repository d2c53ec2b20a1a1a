// The root routines: the moves of each class and piece, the gate of class and check, and what the best move leaves.
#include "support/engine.h"
#include "support/moves.h"

#include "base/bounds.h"
#include "eval/root_trial.h"
#include "eval/strategy.h"
#include "search/root_routines.h"
#include "search/score_windows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

namespace {

using namespace teste;
using namespace ondrel;

class RootRoutines : public ::testing::Test {
protected:
    void SetUp() override { processo_novo(); }
};

constexpr bool ch = true;
constexpr bool sh = false;

Cor lado_da_raiz() { return joga_com_b ? brancas : pretas; }

void chama(Etapa etapa, bool com_xeque, std::string_view de) {
    const int f = de[0] - 'a';
    const int r = de[1] - '1';
    const auto piece = static_cast<Peca>(valor_da_peca(tab[casa(f, r)]));
    lado_da_raiz() == brancas ? analise100<brancas>(etapa, com_xeque, piece, f, r)
                              : analise100<pretas>(etapa, com_xeque, piece, f, r);
}

// A root search that has not begun.
void comeca() {
    limites_de_mate();
    SCAN1 = SCANT = 0;
    corte_MAXcut = 0;
    alfa[0] = inicio_alfa;
    E = -10000000.0F;
    EP = 0;
    nodes = 0;
    X = 1;
    ataca = {};  // no trial before this one: castling is classed by what the last has left
    MATRIZ = 0;
    incentiva_promo = 0;
}

// The moves that the routine would search over all classes, from the best class to the worst.
Textos rotina(std::string_view fen, Etapa etapa, bool com_xeque, std::string_view de,
              const Filhos::AoEntrar& ao_entrar = {}) {
    coloca_fen(fen);
    comeca();
    const Filhos filhos(0, ao_entrar);
    for (ataque = 100; ataque >= -100; --ataque) {
        chama(etapa, com_xeque, de);
    }
    return filhos.lances();
}

// The same for one class, on the root as it stands.
Textos classe(int ataque_, Etapa etapa, bool com_xeque, std::string_view de, const Filhos::AoEntrar& ao_entrar = {}) {
    const Filhos filhos(0, ao_entrar);
    ataque = ataque_;
    chama(etapa, com_xeque, de);
    return filhos.lances();
}

// --- Stages ---

TEST_F(RootRoutines, EachStageTakesItsVictimAlone) {
    const char* fen = "8/7k/2p1q3/1b3r2/3N4/1n6/8/7K w - - 0 1";
    for (const Caso& caso : das_duas_cores(fen, {"d4c6", "d4b5", "d4b3", "d4f5", "d4e6"})) {
        const std::string de = caso.lances[0].substr(0, 2);
        for (const Etapa e : {positive1, positive2, positive3, positive4, positive5}) {
            Textos lances = rotina(caso.fen, e, sh, de);
            const Textos com_xeque = rotina(caso.fen, e, ch, de);
            lances.insert(lances.end(), com_xeque.begin(), com_xeque.end());
            EXPECT_EQ(lances, (Textos{caso.lances[e - 1]})) << e;
        }
        Textos quietos = rotina(caso.fen, livre, sh, de);
        EXPECT_EQ(quietos.size() + rotina(caso.fen, livre, ch, de).size(), 3U) << "c2, e2, f3";
    }
}

TEST_F(RootRoutines, ACheckingMoveIsSearchedInTheRoutineOfChecksAlone) {
    for (const Caso& caso : das_duas_cores("4k3/8/8/n7/8/8/8/R3K3 w - - 0 1", {"a1a5", "a1a3"})) {
        const std::string de = caso.lances[0].substr(0, 2);
        EXPECT_EQ(rotina(caso.fen, positive3, sh, de), (Textos{caso.lances[0]}));
        EXPECT_EQ(rotina(caso.fen, positive3, ch, de), Textos{});
        EXPECT_EQ(quantos(rotina(caso.fen, livre, ch, de), caso.lances[1]), 0);
        EXPECT_EQ(quantos(rotina(caso.fen, livre, sh, de), caso.lances[1]), 1);
    }
    for (const Caso& caso : das_duas_cores("n3k3/8/8/8/8/8/8/R3K3 w - - 0 1", {"a1a8"})) {
        const std::string de = caso.lances[0].substr(0, 2);
        EXPECT_EQ(rotina(caso.fen, positive3, ch, de), caso.lances);
        EXPECT_EQ(rotina(caso.fen, positive3, sh, de), Textos{});
    }
    for (const Caso& caso : das_duas_cores("6k1/8/8/8/8/8/8/R3K3 w - - 0 1", {"a1a8"})) {
        const std::string de = caso.lances[0].substr(0, 2);
        EXPECT_EQ(rotina(caso.fen, livre, ch, de), caso.lances);
        EXPECT_EQ(quantos(rotina(caso.fen, livre, sh, de), caso.lances[0]), 0);
    }
}

TEST_F(RootRoutines, TheCheckCountsThatTheMoveDiscovers) {
    for (const Caso& caso : das_duas_cores("4k3/8/8/8/4N3/8/8/K3R3 w - - 0 1", {"e4"})) {
        EXPECT_EQ(rotina(caso.fen, livre, ch, caso.lances[0]).size(), 8U);
        EXPECT_EQ(rotina(caso.fen, livre, sh, caso.lances[0]).size(), 0U);
    }
}

TEST_F(RootRoutines, IllegalMovesAreDropped) {
    for (const Caso& caso : das_duas_cores("4r1k1/8/8/8/8/8/4N3/4K3 w - - 0 1", {"e2"})) {
        EXPECT_EQ(rotina(caso.fen, livre, sh, caso.lances[0]), Textos{});
        EXPECT_EQ(nodes, 0U);
    }
}

// --- Walks: with the positional tables off, moves that threaten nothing share class 0 and come in the order of the walk

Textos quietos_da_classe_0(std::string_view fen, std::string_view de) {
    matrix = 0;
    coloca_fen(fen);
    comeca();
    return classe(0, livre, sh, de);
}

TEST_F(RootRoutines, QuietMovesComeInTheOrderOfTheWalk) {
    struct Linha {
        const char *fen, *de;
        Textos lances;
    };
    for (const Linha& l : {
             Linha{"7k/8/8/8/3N4/8/8/7K w - - 0 1",
                   "d4",
                   {"d4f5", "d4f3", "d4b3", "d4b5", "d4c6", "d4e6", "d4e2", "d4c2"}},
             Linha{"7k/8/8/8/2B5/8/8/7K w - - 0 1",
                   "c4",
                   {"c4d5", "c4e6", "c4f7", "c4d3", "c4e2", "c4f1", "c4b3", "c4a2", "c4b5", "c4a6"}},
             Linha{"7k/8/8/8/3R4/8/8/7K w - - 0 1",
                   "d4",
                   {"d4e4", "d4f4", "d4g4", "d4c4", "d4b4", "d4a4", "d4d5", "d4d6", "d4d7", "d4d3", "d4d2", "d4d1"}},
             Linha{"7k/6pp/8/8/3Q4/8/8/K7 w - - 0 1",
                   "d4",
                   {"d4e4", "d4f4", "d4g4", "d4h4", "d4c4", "d4b4", "d4a4", "d4d5", "d4d6", "d4d7", "d4d3",
                    "d4d2", "d4d1", "d4e5", "d4e3", "d4f2", "d4g1", "d4c3", "d4b2", "d4c5", "d4b6", "d4a7"}},
             Linha{"7k/8/8/8/3K4/8/8/8 w - - 0 1",
                   "d4",
                   {"d4e4", "d4c4", "d4d5", "d4d3", "d4c3", "d4e5", "d4c5", "d4e3"}},
         }) {
        // Checks are another routine's, and where the enemy attacks the class is lower.
        EXPECT_EQ(quietos_da_classe_0(l.fen, l.de), l.lances) << l.fen;
    }
}

TEST_F(RootRoutines, BlacksWalkIsTheSameOnTheBoard) {
    EXPECT_EQ(quietos_da_classe_0("7K/8/8/8/3n4/8/8/7k b - - 0 1", "d4"),
              (Textos{"d4f5", "d4f3", "d4b3", "d4b5", "d4c6", "d4e6", "d4e2", "d4c2"}));
    EXPECT_EQ(quietos_da_classe_0("7K/8/8/8/3r4/8/8/7k b - - 0 1", "d4"),
              (Textos{"d4e4", "d4f4", "d4g4", "d4c4", "d4b4", "d4a4", "d4d5", "d4d6", "d4d7", "d4d3", "d4d2", "d4d1"}));
}

TEST_F(RootRoutines, RaysEndAtTheFirstMan) {
    const char* fen = "7k/3p4/8/3N4/p2R1b1p/8/3r4/7K w - - 0 1";
    EXPECT_EQ(em_ordem(rotina(fen, livre, sh, "d4")), (Textos{"d4b4", "d4c4", "d4d3", "d4e4"}));
    EXPECT_EQ(rotina(fen, positive1, sh, "d4"), (Textos{"d4a4"})) << "h4 lies behind the bishop, d7 behind the knight";
    EXPECT_EQ(rotina(fen, positive2, sh, "d4"), (Textos{"d4f4"}));
    EXPECT_EQ(rotina(fen, positive4, sh, "d4"), (Textos{"d4d2"}));
}

TEST_F(RootRoutines, CapturesOfOneClassComeInTheOrderOfTheWalk) {
    // Wherever the rook takes, it attacks the pawn at the other end of the line: class 10 each.
    matrix = 0;
    coloca_fen("6k1/3p4/8/8/1p1R3p/8/3p4/5K2 w - - 0 1");
    comeca();
    EXPECT_EQ(classe(10, positive1, sh, "d4"), (Textos{"d4h4", "d4b4", "d4d7", "d4d2"}));
    coloca_fen("6K1/3P4/8/8/1P1r3P/8/3P4/5k2 b - - 0 1");
    comeca();
    EXPECT_EQ(classe(10, positive1, sh, "d4"), (Textos{"d4h4", "d4b4", "d4d7", "d4d2"}));
}

TEST_F(RootRoutines, PawnsStepTwiceBeforeOnce) {
    for (const Caso& caso : das_duas_cores("7k/8/8/8/8/8/3P4/K7 w - - 0 1", {"d2d4", "d2d3"})) {
        EXPECT_EQ(quietos_da_classe_0(caso.fen, caso.lances[0].substr(0, 2)), caso.lances);
    }
    for (const Caso& caso : das_duas_cores("7k/8/8/8/3n4/8/3P4/K7 w - - 0 1", {"d2d3"})) {
        EXPECT_EQ(rotina(caso.fen, livre, sh, caso.lances[0].substr(0, 2)), caso.lances);
    }
    for (const Caso& caso : das_duas_cores("7k/8/8/8/8/3n4/3P4/K7 w - - 0 1", {"d2d3"})) {
        EXPECT_EQ(rotina(caso.fen, livre, sh, caso.lances[0].substr(0, 2)), Textos{});
    }
    for (const Caso& caso : das_duas_cores("7k/8/8/8/8/3P4/8/K7 w - - 0 1", {"d3d4"})) {
        EXPECT_EQ(rotina(caso.fen, livre, sh, caso.lances[0].substr(0, 2)), caso.lances);
    }
    for (const Caso& caso : das_duas_cores("7k/3P4/8/8/8/8/8/K7 w - - 0 1", {"d7d8"})) {
        EXPECT_EQ(rotina(caso.fen, livre, ch, caso.lances[0].substr(0, 2)), caso.lances) << "a queen with check";
    }
}

TEST_F(RootRoutines, PawnsTakeTowardsTheHigherFileFirst) {
    for (const Caso& caso : das_duas_cores("7k/8/8/2r1r3/3P4/8/8/K7 w - - 0 1", {"d4e5", "d4c5"})) {
        // Both captures leave as much: one class.
        matrix = 0;
        const Textos lances = rotina(caso.fen, positive4, sh, caso.lances[0].substr(0, 2));
        EXPECT_EQ(lances, caso.lances);
    }
}

TEST_F(RootRoutines, EnPassantClosesThePawnsCapturesOfPawns) {
    for (const Caso& caso : das_duas_cores("7k/8/8/2pPp3/8/8/8/K7 w - e6 0 1", {"d5e6", "d5c6"})) {
        matrix = 0;
        const std::string de = caso.lances[0].substr(0, 2);
        EXPECT_EQ(rotina(caso.fen, positive1, sh, de), (Textos{caso.lances[0]}));
        for (const Etapa e : {livre, positive2, positive3, positive4, positive5}) {
            EXPECT_EQ(quantos(rotina(caso.fen, e, sh, de), caso.lances[0]), 0) << e;
        }
        const Cor c = coloca_fen(caso.fen);
        comeca();
        jm.p_ah[outra(c)][2] = 1;
        Filhos filhos(0);
        for (ataque = 100; ataque >= -100; --ataque) {
            chama(positive1, sh, de);
        }
        EXPECT_EQ(filhos.lances(), caso.lances) << "the higher file first";
        jm.p_ah = {};
        jm.p_ah[c].fill(1);
        filhos.esquece();
        for (ataque = 100; ataque >= -100; --ataque) {
            chama(positive1, sh, de);
        }
        EXPECT_EQ(filhos.lances(), Textos{});
    }
}

TEST_F(RootRoutines, ACapturingPawnPromotesInTheStageOfItsVictim) {
    for (const Caso& caso : das_duas_cores("2r5/3P3k/8/8/8/8/8/K7 w - - 0 1", {"d7c8"})) {
        EXPECT_EQ(rotina(caso.fen, positive4, sh, caso.lances[0].substr(0, 2)), caso.lances);
    }
}

// --- The class ---

TEST_F(RootRoutines, AMoveIsSearchedAtItsOwnClassAlone) {
    for (const Caso& caso : das_duas_cores("r3k2r/pp1n1ppp/2p1bn2/3pP3/3P4/2N1BN2/PPP2PPP/R3K2R w KQkq - 0 1",
                                           {"f3d2", "f3g1", "f3g5", "f3h4"})) {
        coloca_fen(caso.fen);
        comeca();
        Textos todos;
        for (int a = 100; a >= -100; --a) {
            for (const std::string& m : classe(a, livre, sh, caso.lances[0].substr(0, 2))) {
                todos.push_back(m);
                init_tabuleiro2(lance(m));
                lado_da_raiz() == brancas ? verifica_estrategia<brancas>() : verifica_estrategia<pretas>();
                EXPECT_EQ(ESTRATEGIA, a) << m;
            }
        }
        EXPECT_EQ(em_ordem(todos), em_ordem(caso.lances));
    }
}

// --- The best move ---

const char* const tres_lances = "7k/8/8/8/8/8/8/N6K w - - 0 1";  // the knight goes to c2 and b3

TEST_F(RootRoutines, AStrictlyBetterScoreTakesOver) {
    matrix = 0;
    coloca_fen(tres_lances);
    comeca();
    float v = 0;
    const auto valores = [&](float primeiro, float segundo) {
        comeca();
        abcd = aab_ddb = lance("h8h8");
        const Textos lances =
            classe(0, livre, sh, "a1", [&](Lance m) { beta[1] = texto(m) == "a1c2" ? primeiro : segundo; });
        EXPECT_EQ(lances, (Textos{"a1c2", "a1b3"}));
        EXPECT_EQ(aab_ddb, abcd);
        EXPECT_EQ(X, 0);
        EXPECT_EQ(nodes, 2U);
        v = E;
        return texto(abcd);
    };
    EXPECT_EQ(valores(5.0F, 6.0F), "a1b3");
    EXPECT_EQ(v, 6.0F);
    EXPECT_EQ(alfa[0], 6.0F);
    EXPECT_EQ(valores(5.0F, 5.0F), "a1c2") << "the first to reach the best score keeps it";
    EXPECT_EQ(valores(5.0F, 4.0F), "a1c2");
    EXPECT_EQ(v, 5.0F);
    EXPECT_EQ(alfa[0], 5.0F);
}

// The bound and the best score are two things: either may be the higher one.
TEST_F(RootRoutines, BoundAndBestScoreRiseEachOnItsOwn) {
    matrix = 0;
    coloca_fen(tres_lances);
    const auto corre = [](float alfa0, float e) {
        comeca();
        abcd = lance("h8h8");
        alfa[0] = alfa0;
        E = e;
        classe(0, livre, sh, "a1", [](Lance) { beta[1] = 5.0F; });
    };
    corre(7.0F, 3.0F);
    EXPECT_EQ(alfa[0], 7.0F);
    EXPECT_EQ(E, 5.0F);
    EXPECT_EQ(texto(abcd), "a1c2");
    corre(3.0F, 7.0F);
    EXPECT_EQ(alfa[0], 5.0F);
    EXPECT_EQ(E, 7.0F);
    EXPECT_EQ(texto(abcd), "h8h8");
    EXPECT_EQ(X, 1);
}

TEST_F(RootRoutines, WithoutALegalMoveTheBestMoveStays) {
    coloca_fen("k7/2Q5/1K6/8/8/8/8/8 b - - 0 1");
    comeca();
    abcd = lance("c1c7");
    for (const Etapa e : {livre, positive1, positive2, positive3, positive4, positive5}) {
        for (const bool x : {ch, sh}) {
            for (int a = 100; a >= -100; --a) {
                EXPECT_EQ(classe(a, e, x, "a8"), Textos{});
            }
        }
    }
    EXPECT_EQ(texto(abcd), "c1c7");
    EXPECT_EQ(X, 1);
    EXPECT_EQ(E, -10000000.0F);
}

TEST_F(RootRoutines, AtItsLimitTheRootStops) {
    matrix = 0;
    coloca_fen(tres_lances);
    for (const auto& [v, corta] : {std::pair{49.0F, false}, {50.0F, true}, {51.0F, true}}) {
        comeca();
        MAXcut[0] = 50.0F;
        const Textos lances = classe(0, livre, sh, "a1", [v = v](Lance) { beta[1] = v; });
        EXPECT_EQ(lances.size(), corta ? 1U : 2U) << v;
        EXPECT_EQ(corte_MAXcut, corta ? 1 : 0) << v;
        EXPECT_EQ(texto(abcd), "a1c2");
    }
}

TEST_F(RootRoutines, ABoundAlreadyAtTheLimitStopsBehindTheFirstMove) {
    matrix = 0;
    coloca_fen(tres_lances);
    comeca();
    MAXcut[0] = 50.0F;
    alfa[0] = 50.0F;
    EXPECT_EQ(classe(0, livre, sh, "a1", [](Lance) { beta[1] = 0.0F; }).size(), 1U);
    EXPECT_EQ(corte_MAXcut, 1);
}

TEST_F(RootRoutines, AFlagSetByTheSearchBelowStopsToo) {
    matrix = 0;
    coloca_fen(tres_lances);
    comeca();
    EXPECT_EQ(classe(0, livre, sh, "a1", [](Lance) { corte_MAXcut = 1; }).size(), 1U);
}

TEST_F(RootRoutines, EveryKindOfPieceStopsAtTheLimit) {
    matrix = 0;
    for (const char* fen :
         {"7k/8/8/8/3P4/8/3P4/K7 w - - 0 1", "7k/8/8/8/3B4/8/8/7K w - - 0 1", "7k/8/8/8/3R4/8/8/7K w - - 0 1",
          "6k1/8/8/8/3Q4/8/8/7K w - - 0 1", "7k/8/8/8/3K4/8/8/8 w - - 0 1"}) {
        coloca_fen(fen);
        comeca();
        MAXcut[0] = -16000.0F;
        EXPECT_EQ(classe(0, livre, sh, "d4", [](Lance) { beta[1] = 0.0F; }).size(), 1U) << fen;
        EXPECT_EQ(corte_MAXcut, 1) << fen;
    }
}

TEST_F(RootRoutines, TheSearchCountsOneNodeForEachMove) {
    coloca_fen("7k/8/8/8/3R4/8/8/7K w - - 0 1");
    EXPECT_EQ(rotina("7k/8/8/8/3R4/8/8/7K w - - 0 1", livre, sh, "d4").size(), 12U);
    EXPECT_EQ(nodes, 12U);
}

// --- Promotion ---

TEST_F(RootRoutines, ABestMoveFromTheSeventhRankIsAPromotion) {
    for (const auto& [fen, e, x, m] : {std::tuple{"8/P6k/8/8/8/8/8/7K w - - 0 1", livre, sh, "a7a8"},
                                       {"8/P7/8/7k/8/8/8/7K w - - 0 1", livre, sh, "a7a8"},
                                       {"1r6/P6k/8/8/8/8/8/7K w - - 0 1", positive4, sh, "a7b8"},
                                       {"1r4k1/P7/8/8/8/8/8/7K w - - 0 1", positive4, ch, "a7b8"}}) {
        for (const Caso& caso : das_duas_cores(fen, {m})) {
            int rainhas = 0;
            const Textos lances = rotina(caso.fen, e, x, caso.lances[0].substr(0, 2),
                                         [&](Lance l) { rainhas += std::abs(tab2[l.destino()]) == 90 ? 1 : 0; });
            EXPECT_EQ(lances, caso.lances) << caso.fen;
            EXPECT_EQ(rainhas, 1);
            EXPECT_EQ(PRs, 'q') << caso.fen;
        }
    }
}

TEST_F(RootRoutines, OtherBestMovesAreNone) {
    for (const auto& [fen, de] : {std::pair{"8/R6k/8/8/8/8/8/7K w - - 0 1", "a7"},
                                  {"8/7k/P7/8/8/8/8/7K w - - 0 1", "a6"},
                                  {"8/7k/8/8/8/8/P7/7K w - - 0 1", "a2"}}) {
        for (const Caso& caso : das_duas_cores(fen, {de})) {
            EXPECT_FALSE(rotina(caso.fen, livre, sh, caso.lances[0]).empty());
            EXPECT_EQ(PRs, '0') << caso.fen;
        }
    }
}

TEST_F(RootRoutines, APromotionThatIsNotTheBestLeavesNoLetter) {
    coloca_fen("8/P6k/8/8/8/8/8/7K w - - 0 1");
    comeca();
    E = 10.0F;
    const Filhos filhos(0, [](Lance) { beta[1] = 10.0F; });
    for (ataque = 100; ataque >= -100; --ataque) {
        chama(livre, sh, "a7");
    }
    EXPECT_EQ(filhos.lances().size(), 1U);
    EXPECT_EQ(PRs, '0');
}

TEST_F(RootRoutines, AnotherBestMoveDoesNotClearTheLetter) {
    matrix = 0;
    coloca_fen(tres_lances);
    comeca();
    PRs = 'q';
    classe(0, livre, sh, "a1", [](Lance) { beta[1] = 5.0F; });
    EXPECT_EQ(texto(abcd), "a1c2");
    EXPECT_EQ(PRs, 'q');
}

// --- The gate of the pass ---

TEST_F(RootRoutines, ThePassOfTheBestMoveSearchesItAlone) {
    matrix = 0;
    coloca_fen(tres_lances);
    comeca();
    aab_ddb = lance("a1b3");
    SCAN1 = 1;
    EXPECT_EQ(classe(0, livre, sh, "a1", [](Lance) { beta[1] = inicio_alfa; }), (Textos{"a1b3"}));
}

TEST_F(RootRoutines, ThePassOfAllOthersLeavesItOut) {
    matrix = 0;
    coloca_fen(tres_lances);
    comeca();
    E = 100.0F;
    aab_ddb = lance("a1b3");
    SCANT = 1;
    EXPECT_EQ(classe(0, livre, sh, "a1"), (Textos{"a1c2"}));
}

// --- Repetition ---

// The root before a move that repeats a position of the game: a1c2.
void com_repeticao() {
    matrix = 0;
    const Tabuleiro depois = tabuleiro("7k/8/8/8/8/8/2N5/7K");
    coloca_fen(tres_lances);
    comeca();
    tabr1[0] = depois;
    emp = -7;
}

TEST_F(RootRoutines, ARepetitionHasTheDrawScoreAndNoSearch) {
    com_repeticao();
    EXPECT_EQ(classe(0, livre, sh, "a1", [](Lance) { beta[1] = -50.0F; }), (Textos{"a1b3"}));
    EXPECT_EQ(E, -7.0F);
    EXPECT_EQ(EP, -7.0F);
    EXPECT_EQ(alfa[0], -7.0F);
    EXPECT_EQ(texto(abcd), "a1c2");
    EXPECT_EQ(texto(aab_ddb), "a1c2");
    EXPECT_EQ(nodes, 1U);
}

TEST_F(RootRoutines, ARepetitionIsBestOnlyIfItBeatsTheBestScore) {
    for (const float e : {-7.0F, 0.0F}) {
        com_repeticao();
        E = e;
        alfa[0] = e;
        abcd = lance("h8h8");
        classe(0, livre, sh, "a1", [](Lance) { beta[1] = -50.0F; });
        EXPECT_EQ(E, e);
        EXPECT_EQ(alfa[0], e);
        EXPECT_EQ(texto(abcd), "h8h8");
        EXPECT_EQ(EP, -7.0F) << "the score last given to a drawn move";
    }
}

TEST_F(RootRoutines, ADrawLowersAHigherBoundToItsScore) {
    com_repeticao();
    alfa[0] = 3.0F;
    E = -20.0F;
    classe(0, livre, sh, "a1", [](Lance) { beta[1] = -50.0F; });
    EXPECT_EQ(alfa[0], -7.0F);
}

TEST_F(RootRoutines, ARepetitionObeysTheGate) {
    com_repeticao();
    SCAN1 = 1;
    aab_ddb = lance("a1b3");
    classe(0, livre, sh, "a1", [](Lance) { beta[1] = -50.0F; });
    EXPECT_EQ(E, -50.0F);
    EXPECT_EQ(EP, 0.0F);
}

TEST_F(RootRoutines, ARepetitionByACheckBelongsToTheRoutineOfChecks) {
    const Tabuleiro depois = tabuleiro("R5k1/8/8/8/8/8/8/7K");
    for (const bool x : {ch, sh}) {
        coloca_fen("6k1/8/8/8/8/8/8/R6K w - - 0 1");
        comeca();
        tabr1[0] = depois;
        emp = -7;
        for (int a = 100; a >= -100; --a) {
            EXPECT_EQ(quantos(classe(a, livre, x, "a1"), "a1a8"), 0);
        }
        EXPECT_EQ(EP == -7.0F, x);
    }
}

TEST_F(RootRoutines, PawnMovesAreNotAskedForRepetition) {
    matrix = 0;
    for (const auto& [fen, m, depois, e] :
         {std::tuple{"7k/8/8/8/8/8/P7/7K w - - 0 1", "a2a3", "7k/8/8/8/8/P7/8/7K", livre},
          {"7k/8/8/8/8/1p6/P7/7K w - - 0 1", "a2b3", "7k/8/8/8/8/1P6/8/7K", positive1}}) {
        const Tabuleiro t = tabuleiro(depois);
        coloca_fen(fen);
        comeca();
        tabr1[0] = t;
        pempate = 1;  // whatever is left of another move's test
        int vezes_ = 0;
        for (int a = 100; a >= -100; --a) {
            vezes_ += quantos(classe(a, e, sh, "a2"), m);
        }
        EXPECT_EQ(vezes_, 1) << m;
        EXPECT_EQ(EP, 0.0F);
    }
}

TEST_F(RootRoutines, EveryOtherPieceIsAskedForRepetition) {
    for (const auto& [fen, m, depois] : {std::tuple{"7k/8/8/8/3B4/8/8/7K w - - 0 1", "d4a1", "7k/8/8/8/8/8/8/B6K"},
                                         {"7k/8/8/8/3R4/8/8/7K w - - 0 1", "d4a4", "7k/8/8/8/R7/8/8/7K"},
                                         {"7k/8/8/8/3Q4/8/8/7K w - - 0 1", "d4a1", "7k/8/8/8/8/8/8/Q6K"},
                                         {"7k/8/8/8/3K4/8/8/8 w - - 0 1", "d4d3", "7k/8/8/8/8/3K4/8/8"}}) {
        const Tabuleiro t = tabuleiro(depois);
        coloca_fen(fen);
        comeca();
        tabr1[0] = t;
        emp = -7;
        for (const bool x : {ch, sh}) {
            for (int a = 100; a >= -100; --a) {
                EXPECT_EQ(quantos(classe(a, livre, x, "d4"), m), 0) << fen;
            }
        }
        EXPECT_EQ(EP, -7.0F) << fen;
    }
}

// The flag is read again behind the search, which may have met a repetition at ply 2.
TEST_F(RootRoutines, ARepetitionFoundBelowGivesTheDrawScoreToTheMoveItself) {
    matrix = 0;
    for (const bool rei_atacado : {false, true}) {
        coloca_fen(tres_lances);
        comeca();
        emp = -7;
        const Textos lances = classe(0, livre, sh, "a1", [&](Lance m) {
            beta[1] = -50.0F;
            pempate = texto(m) == "a1c2" ? 1 : 0;
            Y = rei_atacado ? 1 : 0;
        });
        EXPECT_EQ(lances, (Textos{"a1c2", "a1b3"}));
        // Y too is as the search has left it: attacked, and the move is done with.
        EXPECT_EQ(E, rei_atacado ? -50.0F : -7.0F);
        EXPECT_EQ(EP, rei_atacado ? 0.0F : -7.0F);
        EXPECT_EQ(texto(abcd), "a1c2");
    }
}

TEST_F(RootRoutines, APawnsMoveHasNoDrawBehindItsSearch) {
    matrix = 0;
    coloca_fen("7k/8/8/8/8/8/P7/7K w - - 0 1");
    comeca();
    emp = -7;
    classe(0, livre, sh, "a2", [](Lance) {
        beta[1] = -50.0F;
        pempate = 1;
        Y = 0;
    });
    EXPECT_EQ(E, -50.0F);
    EXPECT_EQ(EP, 0.0F);
}

// --- Castling ---

Textos roques(std::string_view fen, bool com_xeque, const Filhos::AoEntrar& ao_entrar = {}) {
    const bool brancas_jogam = posicao(fen).white_to_move;
    Textos lances = rotina(fen, positive1, com_xeque, brancas_jogam ? "e1" : "e8", ao_entrar);
    std::erase_if(lances, [](const std::string& m) { return std::abs(m[0] - m[2]) != 2; });
    return lances;
}

TEST_F(RootRoutines, CastlingStandsAtTheEndOfTheKingsCapturesOfPawns) {
    for (const Caso& caso : das_duas_cores("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        EXPECT_EQ(em_ordem(roques(caso.fen, sh)), em_ordem(caso.lances));
        EXPECT_EQ(roques(caso.fen, ch), Textos{});
        for (const Etapa e : {livre, positive2, positive3, positive4, positive5}) {
            const Textos lances = rotina(caso.fen, e, sh, caso.lances[0].substr(0, 2));
            EXPECT_EQ(quantos(lances, caso.lances[0]) + quantos(lances, caso.lances[1]), 0) << e;
        }
    }
}

TEST_F(RootRoutines, OfBothSidesInOneClassTheShortOneComesFirst) {
    matrix = 0;
    coloca_fen("1k6/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    comeca();
    const Filhos filhos(0);
    for (ataque = 100; ataque >= -100; --ataque) {
        chama(positive1, sh, "e1");
    }
    EXPECT_EQ(filhos.lances(), (Textos{"e1g1", "e1c1"}));
}

TEST_F(RootRoutines, TheCastlingValueIsTenDuringTheSearch) {
    for (const Caso& caso : das_duas_cores("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        const Cor c = posicao(caso.fen).white_to_move ? brancas : pretas;
        const Textos lances = roques(caso.fen, sh, [&](Lance m) {
            EXPECT_EQ(roque[c], 10);
            EXPECT_EQ(roque[outra(c)], 0);
            EXPECT_EQ(tab2[m.destino()], codigo(c, rei)) << "the castled position";
            roque = {};  // as the search below leaves it
        });
        EXPECT_EQ(lances.size(), 2U);
    }
}

TEST_F(RootRoutines, TheCastlingValueIsGoneWhenTheSearchHasComeBack) {
    for (const Caso& caso : das_duas_cores("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1"})) {
        coloca_fen(caso.fen);
        comeca();
        deep = 0;
        sem_relato([&] {
            for (ataque = 100; ataque >= -100; --ataque) {
                chama(positive1, sh, caso.lances[0]);
            }
        });
        EXPECT_EQ(nodes, 2U);
        EXPECT_EQ(roque, (std::array{0, 0}));
    }
}

TEST_F(RootRoutines, CastlingIsNotAskedForRepetition) {
    const Tabuleiro depois = tabuleiro("6k1/8/8/8/8/8/8/R4RK1");
    coloca_fen("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    comeca();
    tabr1[0] = depois;
    const Filhos filhos(0);
    for (ataque = 100; ataque >= -100; --ataque) {
        chama(positive1, sh, "e1");
    }
    EXPECT_EQ(quantos(filhos.lances(), "e1g1"), 1);
    EXPECT_EQ(EP, 0.0F);
}

// It has no trial of its own: the attack maps are those of the move visited last, searched or not.
TEST_F(RootRoutines, CastlingIsClassedByWhatTheLastTrialLeft) {
    matrix = 0;
    struct Linha {
        const char* fen;
        int procurado;  // the class of a move before the last one of the knight's walk
        Textos deste;
        int roque;  // the class that castling has behind it
    };
    for (const Linha& l : {
             // The walk ends at c3: the rook attacks the loose knight on a4, which is worth 17. The move to a3, which
             // hides the knight from the rook, is searched in between.
             Linha{"6k1/8/8/8/n7/8/8/RN2K2R w K - 0 1", 0, {"b1a3"}, 17},
             // With c3 occupied it ends at a3, and the pawn on c3 is attacked and not defended: 10 less.
             Linha{"6k1/8/8/8/n7/2P5/8/RN2K2R w K - 0 1", 7, {"b1d2"}, -10},
         }) {
        coloca_fen(l.fen);
        comeca();
        for (int a = 100; a >= -100; --a) {
            classe(a, livre, sh, "b1");
        }
        EXPECT_EQ(classe(l.procurado, livre, sh, "b1"), l.deste);
        for (int a = 100; a >= -100; --a) {
            EXPECT_EQ(classe(a, positive1, sh, "e1"), a == l.roque ? (Textos{"e1g1"}) : Textos{}) << l.fen << a;
        }
    }
}

TEST_F(RootRoutines, CastlingObeysTheGate) {
    for (const auto& [scan1, scant, esperados] :
         {std::tuple{1, 0, Textos{"e1c1"}}, {0, 1, Textos{"e1g1"}}, {0, 0, Textos{"e1g1", "e1c1"}}}) {
        coloca_fen("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1");
        comeca();
        E = 100.0F;  // the best move stays
        aab_ddb = lance("e1c1");
        SCAN1 = static_cast<std::uint8_t>(scan1);
        SCANT = static_cast<std::uint8_t>(scant);
        const Filhos filhos(0);
        for (ataque = 100; ataque >= -100; --ataque) {
            chama(positive1, sh, "e1");
        }
        EXPECT_EQ(filhos.lances(), esperados);
    }
}

TEST_F(RootRoutines, ARootAtItsLimitDoesNotGoOnToTheLongSide) {
    coloca_fen("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    comeca();
    MAXcut[0] = 50.0F;
    const Filhos filhos(0, [](Lance) { beta[1] = 50.0F; });
    for (ataque = 100; ataque >= -100 && !corte_MAXcut; --ataque) {
        chama(positive1, sh, "e1");
    }
    EXPECT_EQ(filhos.lances().size(), 1U);
    EXPECT_EQ(texto(abcd), "e1g1");
}

TEST_F(RootRoutines, ACastlingWithCheckBelongsToTheRoutineOfChecks) {
    for (const Caso& caso : das_duas_cores("5k2/8/8/8/8/8/8/4K2R w K - 0 1", {"e1g1"})) {
        EXPECT_EQ(roques(caso.fen, ch), caso.lances);
        EXPECT_EQ(roques(caso.fen, sh), Textos{});
    }
}

// White's long castling with check is judged by the short side: its squares and its check. So it stands.
TEST_F(RootRoutines, WhitesLongCastlingWithCheckIsJudgedByTheShortSide) {
    // The rook on d8 attacks d1; nothing attacks f1, from where a rook would check on f8.
    const char* fen = "3r1k2/8/8/8/8/8/8/R3K3 w Q - 0 1";
    EXPECT_EQ(roques(fen, ch), (Textos{"e1c1"})) << "the wrong side does not refuse it";
    EXPECT_EQ(roques(fen, sh), Textos{});
    EXPECT_EQ(roques(fen_espelhado(fen), ch), Textos{});
    EXPECT_EQ(roques(fen_espelhado(fen), sh), Textos{});
}

TEST_F(RootRoutines, WhitesLongCastlingMissesTheChecksOfItsOwnRook) {
    const char* fen = "3k4/8/8/8/8/8/8/R3K3 w Q - 0 1";
    EXPECT_EQ(roques(fen, ch), Textos{}) << "from f1 there is no check";
    EXPECT_EQ(roques(fen, sh), Textos{}) << "and here it is seen";
    EXPECT_EQ(roques(fen_espelhado(fen), ch), (Textos{"e8c8"}));
    EXPECT_EQ(roques(fen_espelhado(fen), sh), Textos{});
}

TEST_F(RootRoutines, WhitesLongCastlingWithCheckGoesByTheGateOfTheShortOne) {
    for (const auto& [guardado, scan1, scant, vezes_] :
         {std::tuple{"e1g1", 1, 0, 1}, {"e1c1", 1, 0, 0}, {"e1g1", 0, 1, 0}, {"e1c1", 0, 1, 1}}) {
        coloca_fen("5k2/8/8/8/8/8/8/R3K3 w Q - 0 1");
        comeca();
        E = 100.0F;
        aab_ddb = lance(guardado);
        SCAN1 = static_cast<std::uint8_t>(scan1);
        SCANT = static_cast<std::uint8_t>(scant);
        const Filhos filhos(0);
        for (ataque = 100; ataque >= -100; --ataque) {
            chama(positive1, ch, "e1");
        }
        EXPECT_EQ(filhos.lances().size(), static_cast<std::size_t>(vezes_)) << guardado << scan1;
    }
}

}  // namespace
