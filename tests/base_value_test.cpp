// The base value of a root move: one hundredth of the judgement right after it, with true mobility.
#include "support/evaluation.h"

#include "eval/extra_eval.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using namespace ondrel;
using namespace teste;

constexpr float forte = 320.0F;

class BaseValue : public ::testing::Test {
protected:
    void SetUp() override { processo_novo(); }

    static void poe(std::string_view campo) {
        poe_folha(std::string(campo) + " w - - 0 1");
        poe_fase(20, forte);
        regimen = 0;
    }
    static float vale(std::string_view campo, Cor own = brancas) {
        poe(campo);
        return valor_da_base(own);
    }
};

// Bare kings at home: the advance alone.
constexpr std::string_view reis = "4k3/8/8/8/8/4K3/8/8";

TEST_F(BaseValue, IsOneHundredthOfTheJudgement) {
    EXPECT_NEAR(vale(reis, brancas), 0.01 * (3.1 - 1.1), 1e-7);
    EXPECT_NEAR(vale(reis, pretas), 0.01 * (1.1 - 3.1), 1e-7);
}

TEST_F(BaseValue, DoesNotAddUp) {
    poe(reis);
    extraevalll = 10;
    EXPECT_NEAR(valor_da_base(brancas), 0.02, 1e-7);
    EXPECT_NEAR(valor_da_base(brancas), 0.02, 1e-7);
}

// White's knight a1 attacks c2 and b3.
constexpr std::string_view cavalo_a_mais = "7k/8/8/8/8/8/8/N6K";
constexpr double avanco_e_peoes = (1 + 1 + 0.1) / 2 + 1 - 1.1 - 1;

TEST_F(BaseValue, HasTheTermsOfALeaf) {
    MOB = 0;
    PM = 0;
    const double pontos = 2 * std::log(13.1 / 10.1);
    const double defesa = 5 * std::log((1.0 / 28 + 1.0 / 42 + 3) / 3);
    const double ataque = 5 * std::log((2.0 / 63 + 3) / 3);
    const double s = avanco_e_peoes + pontos + defesa + ataque;
    EXPECT_NEAR(vale(cavalo_a_mais), 0.01 * s, 1e-7);
    EXPECT_NEAR(vale(cavalo_a_mais, pretas), -0.01 * s, 1e-7);
    MOB = 5;
    EXPECT_NEAR(vale(cavalo_a_mais), 0.01 * (s + 5 * std::log(5.0 / 3)), 1e-7);
    MOB = 0;
    PM = 5;
    const double posicao = 5.0 / 100 + 25 / 26.5 + 2 * 50 / 10.5;
    EXPECT_NEAR(vale(cavalo_a_mais), 0.01 * (s + 5 * std::log((posicao + 10.1) / 10.1)), 1e-7);
}

TEST_F(BaseValue, CountsCastlingOfTheLine) {
    const float sem = vale(reis);
    roque = {1, 0};
    EXPECT_NEAR(valor_da_base(brancas) - sem, 0.01 * 3 * std::log(4.0 / 3), 1e-7);
    roque = {0, 2};
    EXPECT_NEAR(valor_da_base(brancas) - sem, 0.01 * 3 * std::log(3.0 / 5), 1e-7);
    roque = {0, 0};
    roque_v = 10;
    EXPECT_TRUE(mesmos_bits(valor_da_base(brancas), sem));
}

TEST_F(BaseValue, ScalesKingProximityOfTheMover) {
    MOB = 0;
    poe(cavalo_a_mais);
    npecas = {5, 5};
    agresprxrei = 9;
    valor_da_base(brancas);
    EXPECT_NEAR(contagem[brancas].posicao, 15 * 9.0 / 100 + 10 / 26.5, 1e-5);
    valor_da_base(pretas);
    EXPECT_NEAR(contagem[brancas].posicao, 15 * 1.0 / 100 + 10 / 26.5, 1e-5);
}

// White's rooks hit one man and support three times; Black's pawn does neither.
constexpr std::string_view torres = "7k/8/8/3p4/8/8/8/R2R3K";

// The terms in the balance ride with their own weights, not one hundredth of them.
TEST_F(BaseValue, HitsOfTheMoverWeighOneHundredthOfTheBalance) {
    const float sem = vale(torres);
    regimen = 50;
    EXPECT_NEAR(valor_da_base(brancas) - sem, 0.01 * 50 * std::log(4.0 / 6), 1e-6);
}

TEST_F(BaseValue, HitsOfTheOpponentWeighOneThousandth) {
    const float sem = vale(torres, pretas);
    regimen = 50;
    EXPECT_NEAR(valor_da_base(pretas) - sem, 0.001 * 50 * std::log(4.0 / 6), 1e-6);
}

// The opponent is to move after a root move: it has the value terms.
TEST_F(BaseValue, GivesTheValueTermsToTheOpponent) {
    constexpr std::string_view campo = "7k/8/8/8/8/1q6/8/N6K";
    vale(campo, brancas);
    const float quieto = contagem[brancas].posicao;
    vale(campo, pretas);
    EXPECT_NEAR(contagem[brancas].posicao - quieto, 58, 1e-4);
}

TEST_F(BaseValue, GivesTheHeldPawnsTermToTheMover) {
    constexpr std::string_view campo = "7k/8/8/5b2/4P3/3P4/8/K7";
    agres = 3;
    vale(campo, brancas);
    const float segura = contagem[brancas].posicao;
    vale(campo, pretas);
    EXPECT_NEAR(contagem[brancas].posicao - segura, (3 * 33 - 10) - 16, 1e-4);
}

// A pinned knight has no move at all here, and two at a leaf; a push and a capture of a pinned pawn likewise.
TEST_F(BaseValue, CountsLegalMovesOnly) {
    const auto lances = [](std::string_view campo) {
        poe(campo);
        julga(brancas, pretas);
        const int na_folha = contagem[brancas].mobilidade;
        valor_da_base(brancas);
        return std::pair{na_folha, contagem[brancas].mobilidade};
    };
    EXPECT_EQ(lances("r6k/8/8/8/8/8/N7/K7"), std::pair(3, 0));     // b4, c3, c1
    EXPECT_EQ(lances("7k/8/8/8/8/8/8/K1P4r"), std::pair(1, 0));    // a push
    EXPECT_EQ(lances("7k/8/8/8/8/8/KP5r/8"), std::pair(2, 0));     // a double push
    EXPECT_EQ(lances("7k/8/8/8/8/1p6/K1P4r/8"), std::pair(3, 0));  // a capture too: here nothing helps
    EXPECT_EQ(lances("7k/8/8/8/4b3/3P4/2K5/8"), std::pair(2, 1));  // the pinned pawn may take the pinner
    EXPECT_EQ(lances("7k/8/8/8/8/8/8/K1B4r"), std::pair(7, 0));    // a bishop on a rank
}

TEST_F(BaseValue, CountsLegalMovesOfTheOpponentToo) {
    poe("k7/n7/8/8/8/8/8/R6K");
    valor_da_base(brancas);
    EXPECT_EQ(contagem[pretas].mobilidade, 0);
    valor_da_base(pretas);
    EXPECT_EQ(contagem[pretas].mobilidade, 0);
    julga(brancas, pretas);
    EXPECT_EQ(contagem[pretas].mobilidade, 3);
}

// A side in check counts only what meets it.
TEST_F(BaseValue, CountsAnswersToACheckOnly) {
    poe("7k/8/8/8/8/8/6PP/r5BK");
    // g2 and h2 keep the king in; the bishop is pinned, and the pawns' pushes are free.
    valor_da_base(pretas);
    EXPECT_EQ(contagem[brancas].mobilidade, 4);
    muda_folha("7k/8/8/8/8/7B/6PP/r6K");
    // Only Bf1 would do, and g2 stands in its way: no move of bishop or pawn helps.
    valor_da_base(pretas);
    EXPECT_EQ(contagem[brancas].mobilidade, 0);
}

TEST_F(BaseValue, MarksAndTargetsDoNotAskForLegality) {
    poe("r6k/8/8/8/1p6/8/N7/K7");
    valor_da_base(brancas);
    EXPECT_EQ(contagem[brancas].mobilidade, 0);
    EXPECT_EQ(contagem[brancas].alvos, 1);
    EXPECT_TRUE(mesmos_bits(contagem[brancas].centro, soma_do_centroo({"c3", "c1", "b4"})));
}

// The whole: with the positional weight chosen so that the judgement is 100, every leaf has 1 more.
TEST_F(BaseValue, OfAHundredAddsOneToEveryLeaf) {
    MOB = 0;
    PM = 0;
    const double sem = 100.0 * vale(cavalo_a_mais);
    const double posicao = 5.0 / 100 + 25 / 26.5 + 2 * 50 / 10.5;
    PM = static_cast<float>((100.0 - sem) / std::log((posicao + 10.1) / 10.1));
    const float base = vale(cavalo_a_mais);
    EXPECT_NEAR(base, 1.0, 1e-5);
    PM = 0;
    muda_folha("7k/8/8/8/8/8/8/7K");
    extraevalll = 0;
    const float folha = julga(brancas, brancas);
    extraevalll = base;
    EXPECT_NEAR(julga(brancas, brancas) - folha, 1.0, 1e-5);
}

// It has no bound of its own.
TEST_F(BaseValue, IsNotBounded) {
    PM = 100000;
    EXPECT_GT(vale(cavalo_a_mais), 50.0F);
    EXPECT_LT(vale(cavalo_a_mais, pretas), -50.0F);
}

}  // namespace
