// Repetition of positions of the game, and the draw score.
#include "support/engine.h"
#include "support/moves.h"

#include "base/bounds.h"
#include "board/apply.h"
#include "board/repetition.h"
#include "search/schedule.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace {

using namespace teste;
using namespace ondrel;

class Repetition : public ::testing::Test {
protected:
    void SetUp() override { processo_novo(); }
};

class DrawScore : public Repetition {};

const Tabuleiro esta = [] {
    Tabuleiro t{};
    t[0] = 110;
    t[63] = -110;
    t[20] = 50;
    return t;
}();

// Whether the position on tab2 repeats, the given rows of the history holding it.
bool repete(int nb_, bool brancas_jogam, bool na_ply_2, std::initializer_list<int> linhas) {
    for (Tabuleiro& linha : tabr1) {
        linha.fill(1);
    }
    for (const int linha : linhas) {
        tabr1[linha] = esta;
    }
    tab2 = esta;
    nb = nb_;
    joga_com_b = brancas_jogam ? 1 : 0;
    deeppromo = na_ply_2 ? 1 : 0;
    pempate = 2;
    verifica_empate();
    EXPECT_LE(pempate, 1);
    return pempate == 1;
}

// --- Which rows count ---

TEST_F(Repetition, AtTheFirstMoveNothingRepeats) {
    coloca_fen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    ASSERT_EQ(nb, 1);
    tab2 = tab;
    for (const int c : {0, 1}) {
        joga_com_b = static_cast<std::uint8_t>(c);
        for (const int d : {0, 1}) {
            deeppromo = static_cast<std::uint8_t>(d);
            verifica_empate();
            EXPECT_EQ(pempate, 0);
        }
    }
    EXPECT_EQ(lances_da_raiz().size(), 20U);
}

TEST_F(Repetition, RowsNotYetWrittenEqualNoBoard) {
    coloca("position startpos moves e2e4 e7e5 g1f3 b8c6");
    ASSERT_EQ(nb, 4);
    for (int linha = 4; linha < 1000; ++linha) {
        for (const std::int8_t x : tabr1[linha]) {
            ASSERT_EQ(x, 1) << linha;
        }
    }
    coloca("position startpos moves e2e4 e7e5");  // the history is that of its own line
    EXPECT_EQ(tabr1[2][0], 1);
    EXPECT_EQ(tabr1[1], tab);
}

// A root move needs one earlier position, after a move of the same side, no later than the last half-move.
TEST_F(Repetition, ARootMoveNeedsOneEarlierPositionOfItsOwnSide) {
    for (const bool b : {true, false}) {
        for (int n = 1; n <= 14; ++n) {
            const int limite = b ? 2 * ((n - 1) / 2) : (n < 2 ? -1 : 1 + 2 * ((n - 2) / 2));
            for (int linha = 0; linha < 18; ++linha) {
                const bool da_vez = linha % 2 == (b ? 0 : 1) && linha <= limite;
                EXPECT_EQ(repete(n, b, false, {linha}), da_vez) << "nb " << n << " row " << linha << ' ' << b;
            }
        }
    }
}

// A reply at ply 2 is the root side's opponent's, and needs two.
TEST_F(Repetition, AReplyNeedsTwoEarlierPositionsOfTheOtherSide) {
    for (const bool b : {true, false}) {
        for (int n = 1; n <= 14; ++n) {
            const int limite = b ? (n < 2 ? -1 : 1 + 2 * ((n - 2) / 2)) : 2 * ((n - 1) / 2);
            for (int linha = 0; linha < 18; ++linha) {
                EXPECT_FALSE(repete(n, b, true, {linha})) << "one is not enough";
                for (int outra_ = linha + 1; outra_ < 18; ++outra_) {
                    const bool da_vez = linha % 2 == (b ? 1 : 0) && outra_ % 2 == (b ? 1 : 0) && outra_ <= limite;
                    EXPECT_EQ(repete(n, b, true, {linha, outra_}), da_vez)
                        << "nb " << n << " rows " << linha << ' ' << outra_ << ' ' << b;
                }
            }
        }
    }
}

TEST_F(Repetition, MoreHitsThanNeededAreARepetitionToo) {
    EXPECT_TRUE(repete(9, true, false, {0, 2, 4, 6}));
    EXPECT_TRUE(repete(9, true, true, {1, 3, 5}));
}

TEST_F(Repetition, AllSixtyFourSquaresAreCompared) {
    for (int i = 0; i < 64; ++i) {
        ASSERT_TRUE(repete(5, true, false, {2}));
        tab2[i] = static_cast<std::int8_t>(tab2[i] == 10 ? 0 : 10);
        verifica_empate();
        EXPECT_EQ(pempate, 0) << i;
    }
}

TEST_F(Repetition, GamesBeyondAThousandHalfMovesAreNotTested) {
    EXPECT_TRUE(repete(1000, true, false, {998}));
    EXPECT_TRUE(repete(1000, false, false, {999}));
    EXPECT_TRUE(repete(1000, true, true, {1, 999}));
    for (const int n : {1001, 1002, 5000}) {
        for (const bool b : {true, false}) {
            EXPECT_FALSE(repete(n, b, false, {0, 1, 2, 3, 998, 999})) << n;
            EXPECT_FALSE(repete(n, b, true, {0, 1, 2, 3, 998, 999})) << n;
        }
    }
}

TEST_F(Repetition, SwitchedOffNothingEverRepeats) {
    pempatee = 0;
    EXPECT_FALSE(repete(9, true, false, {0, 2, 4, 6}));
    EXPECT_FALSE(repete(9, true, true, {1, 3, 5}));
    EXPECT_FALSE(repete(9, false, false, {1, 3, 5}));
    EXPECT_FALSE(repete(9, false, true, {0, 2, 4, 6}));
    pempatee = 1;
    EXPECT_TRUE(repete(9, true, false, {0}));
}

TEST_F(Repetition, TheGameFillsTheHistoryAfterEachHalfMove) {
    const Tabuleiro depois_de_um = tabuleiro("rnbqkbnr/pppppppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R");
    const Tabuleiro depois_de_quatro = tabuleiro("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR");
    coloca("position startpos moves g1f3 g8f6 f3g1 f6g8");
    EXPECT_EQ(tabr1[0], depois_de_um);
    EXPECT_EQ(tabr1[3], depois_de_quatro);
    EXPECT_EQ(tabr1[4][0], 1);
    EXPECT_EQ(nb, 4);
}

// --- At the root ---

const char* const vaivem = "position startpos moves g1f3 g8f6 f3g1 f6g8";

TEST_F(Repetition, ARootMoveThatRepeatsIsNotSearched) {
    coloca(vaivem);
    emp = -7;
    const Textos lances = textos(lances_da_raiz());
    EXPECT_EQ(quantos(lances, "g1f3"), 0);
    EXPECT_EQ(lances.size(), 19U);
    // All others come back with the lowest value: the draw is the best of them.
    EXPECT_EQ(texto(abcd), "g1f3");
    EXPECT_EQ(texto(aab_ddb), "g1f3");
    EXPECT_EQ(E, -7.0F);
    EXPECT_EQ(EP, -7.0F);
    EXPECT_EQ(alfa[0], -7.0F);
    EXPECT_EQ(X, 0);
}

TEST_F(Repetition, BlacksRootMovesTheSame) {
    coloca(std::string(vaivem) + " e2e4 g8f6 g1f3 f6g8 f3g1");
    // e2e4 and g1 home with g8f6 played has stood once, after Black's move.
    const Textos lances = textos(lances_da_raiz());
    EXPECT_EQ(quantos(lances, "g8f6"), 0);
    EXPECT_EQ(lances.size(), 19U);
}

TEST_F(Repetition, WithThePassSwitchedOffItIsSearched) {
    coloca(vaivem);
    pempatee = 0;
    EXPECT_EQ(lances_da_raiz().size(), 20U);
}

TEST_F(Repetition, CastlingRightsAreNotCompared) {
    coloca("position startpos moves g1f3 g8f6 h1g1 f6g8");
    const Textos lances = textos(lances_da_raiz());  // g1h1 gives the board after g1f3, the right being lost
    EXPECT_EQ(quantos(lances, "g1h1"), 0);
    EXPECT_GT(quantos(lances, "a2a3"), 0);
}

TEST_F(Repetition, EnPassantRightsAreNotCompared) {
    coloca("position startpos moves e2e4 g8f6 g1f3 f6g8");
    const Textos lances = textos(lances_da_raiz());  // f3g1 gives the board after e2e4, the double step being old
    EXPECT_EQ(quantos(lances, "f3g1"), 0);
    EXPECT_GT(quantos(lances, "a2a3"), 0);
}

// --- At ply 2 ---

// The value of Black's reply after White's move: that of its own replies, 3, or the draw score.
float valor_da_resposta(std::string_view linha, std::string_view raiz, std::string_view resposta) {
    const Cor c = coloca(linha);
    emp = -7;
    deep = 3;
    deeppromo = 1;  // as while a root move is searched
    alfa.fill(inicio_alfa);
    beta.fill(inicio_beta);
    ply[1] = ply[0];
    c == brancas ? init_tabuleiro_ply<brancas>(ply[1], lance(raiz)) : init_tabuleiro_ply<pretas>(ply[1], lance(raiz));
    ply[1].mascaras = mascaras_de(ply[1].tabd);
    ply[1].joga_com_b_deep = c == brancas ? 0 : 1;
    const Filhos filhos(2, [](Lance) { valor_do_filho(2) = 3.0F; });
    return busca_no(2, lance(resposta));
}

TEST_F(Repetition, AReplyThatRepeatsForTheFirstTimeIsNoDraw) {
    // After g1f3 g8f6 the board has stood once.
    EXPECT_EQ(valor_da_resposta(vaivem, "g1f3", "g8f6"), 3.0F);
    EXPECT_EQ(quantas_vezes(Regra::repeticao), 0U);
}

TEST_F(Repetition, AReplyThatRepeatsForTheSecondTimeIsADraw) {
    EXPECT_EQ(valor_da_resposta(std::string(vaivem) + " g1f3 g8f6 f3g1 f6g8", "g1f3", "g8f6"), -7.0F);
    EXPECT_EQ(quantas_vezes(Regra::repeticao), 1U);
}

TEST_F(Repetition, ADrawnReplyEntersNoNode) {
    nd = 77;
    valor_da_resposta(std::string(vaivem) + " g1f3 g8f6 f3g1 f6g8", "g1f3", "g8f6");
    EXPECT_EQ(nd, 77);
}

TEST_F(Repetition, DeeperPliesDoNotLook) {
    for (const int n : {3, 4, 5, 8}) {
        const Tabuleiro depois = tabuleiro("6k1/8/8/8/8/8/R7/6K1");
        monta_ply(n - 1, "6k1/8/8/8/8/8/8/R5K1 w - - 0 1");
        tabr1.fill(depois);
        nb = 100;
        zera_contadores();
        const Filhos nenhum(n);
        busca_no(n, lance("a1a2"));
        EXPECT_EQ(quantas_vezes(Regra::repeticao), 0U) << n;
        EXPECT_EQ(nd, n);
    }
}

// --- The draw score ---

TEST_F(DrawScore, AtEqualMaterialItIsTheContemptLessAPawn) {
    coloca_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_EQ(emp, -15);
    EXPECT_EQ(emppp, -15);
}

TEST_F(DrawScore, TheContemptIsThatOfTheOption) {
    for (const auto& [valor_, esperado] :
         {std::pair{10, 0}, {7, -3}, {5, -5}, {3, -7}, {0, -10}, {-3, -13}, {-5, -15}, {-7, -17}, {-10, -20}}) {
        empp = valor_;
        coloca_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
        EXPECT_EQ(emp, esperado) << valor_;
    }
}

// The logarithm is that of all material, kings included.
TEST_F(DrawScore, TheRatioOfMaterialIsAddedAndTheSumCutTowardsZero) {
    // 200 to 110: ln = 0.5978, times 5 = 2.989.
    const std::string fen = "4k3/8/8/8/8/8/8/3QK3 w - - 0 1";
    coloca_fen(fen);
    EXPECT_EQ(emp, -12);  // -12.011
    coloca_fen("4k3/8/8/8/8/8/8/3QK3 b - - 0 1");
    EXPECT_EQ(emp, -17);  // -17.989
    coloca_fen(fen_espelhado(fen));
    EXPECT_EQ(emp, -12);
    EXPECT_EQ(emppp, -12);
    empp = 10;
    coloca_fen("4k3/8/8/8/8/8/8/3QK3 b - - 0 1");
    EXPECT_EQ(emp, -2);  // -2.989
    coloca_fen(fen);
    EXPECT_EQ(emp, 2);
}

TEST_F(DrawScore, TheWeightOfTheRatioIsItsOption) {
    MQ = 10.0F;
    coloca_fen("4k3/8/8/8/8/8/8/3QK3 w - - 0 1");
    EXPECT_EQ(emp, -9);  // -15 + 5.978
    MQ = 0.0F;
    coloca_fen("4k3/8/8/8/8/8/8/3QK3 w - - 0 1");
    EXPECT_EQ(emp, -15);
}

}  // namespace
