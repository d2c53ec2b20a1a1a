// The judgement of a leaf: the terms of its sum, its bound, the dead draws, and the four routines' differences.
#include "support/evaluation.h"

#include "eval/extra_eval.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace {

using namespace ondrel;
using namespace teste;

constexpr float forte = 320.0F;  // the enemy's pieces keep the kings at home

class Judgement : public ::testing::Test {
protected:
    void SetUp() override { processo_novo(); }

    // Judges the board in the opening, kings at home, with the root in balance.
    static float julga_campo(std::string_view campo, Cor own = brancas, Cor stm = brancas) {
        poe_folha(std::string(campo) + " w - - 0 1");
        poe_fase(20, forte);
        regimen = regimen_da_raiz;
        return julga(own, stm);
    }
    static void so_as_parcelas_fixas() {
        MOB = 0;
        PM = 0;
    }

    static inline float regimen_da_raiz = 0;
    void TearDown() override { regimen_da_raiz = 0; }
};

// Bare kings: no moves, no marks. What remains is the advance and a box of one square each.
constexpr std::string_view reis = "4k3/8/8/8/8/4K3/8/8";

// --- The terms ---

TEST_F(Judgement, AdvanceOfTheEngineCountsForIt) { EXPECT_NEAR(julga_campo(reis, brancas), 3.1 - 1.1, 1e-5); }

TEST_F(Judgement, AdvanceOfTheEnemyCountsAgainstIt) { EXPECT_NEAR(julga_campo(reis, pretas, pretas), 1.1 - 3.1, 1e-5); }

TEST_F(Judgement, AdvanceIsSharedAmongTheMen) {
    // A pawn that has been left on the last rank does nothing but advance and widen the box.
    EXPECT_NEAR(julga_campo("P3k3/8/8/8/8/8/8/4K3"), (1 + 8 + 0.1) / 2 + 2.0 / 40 - 1.1 - 1, 1e-5);
}

TEST_F(Judgement, PawnsCountByTheDensityOfTheirBox) {
    const float largo = julga_campo("P3k3/8/8/8/8/8/8/4K3");
    const float estreito = julga_campo("4P1k1/8/8/8/8/8/8/4K3");
    EXPECT_NEAR(estreito - largo, 2.0 / 8 - 2.0 / 40, 1e-5);
}

TEST_F(Judgement, PawnsOfTheEnemyCountAgainstTheEngine) {
    const float largo = julga_campo("P3k3/8/8/8/8/8/8/4K3", pretas, pretas);
    const float estreito = julga_campo("4P1k1/8/8/8/8/8/8/4K3", pretas, pretas);
    EXPECT_NEAR(estreito - largo, 2.0 / 40 - 2.0 / 8, 1e-5);
}

// White's knight a1 attacks c2 and b3.
constexpr std::string_view cavalo_a_mais = "7k/8/8/8/8/8/8/N6K";
const double avanco_e_peoes = (1 + 1 + 0.1) / 2 + 1 - 1.1 - 1;
const double pontos_do_cavalo = 2 * std::log(13.1 / 10.1);
const double defesa_do_cavalo = 1.0 / 28 + 1.0 / 42;
const double ataque_do_cavalo = 2.0 / 63;
const double abrigo_e_tempestade = 5 * std::log((defesa_do_cavalo + 3) / 3) + 5 * std::log((ataque_do_cavalo + 3) / 3);

TEST_F(Judgement, PointsCountTwiceAndMarksAroundBothKings) {
    so_as_parcelas_fixas();
    EXPECT_NEAR(julga_campo(cavalo_a_mais), avanco_e_peoes + pontos_do_cavalo + abrigo_e_tempestade, 1e-5);
    EXPECT_NEAR(julga_campo(cavalo_a_mais, pretas, pretas), -avanco_e_peoes - pontos_do_cavalo - abrigo_e_tempestade,
                1e-5);
}

// A pawn left on the last rank shelters a king below it and marks nothing.
TEST_F(Judgement, ShelterOfTheEnginesKingCountsAgainstTheEnemysAttack) {
    const double sem_abrigo = (6 + 8 + 0.1) / 2 + 2.0 / 6 - 1.1 - 1;
    EXPECT_NEAR(julga_campo("P3k3/8/1K6/8/8/8/8/8"), sem_abrigo + 5 * std::log(4.0 / 3), 1e-5);
}

TEST_F(Judgement, ShelterOfTheEnemysKingCountsAgainstTheEnginesAttack) {
    const double sem_abrigo = 1.1 + 1 - (6 + 8 + 0.1) / 2 - 2.0 / 6;
    EXPECT_NEAR(julga_campo("P3k3/8/1K6/8/8/8/8/8", pretas, pretas), sem_abrigo + 5 * std::log(3.0 / 4), 1e-5);
}

TEST_F(Judgement, MobilityCountsByItsWeight) {
    PM = 0;
    MOB = 0;
    const float sem = julga_campo(cavalo_a_mais);
    MOB = 5;
    EXPECT_NEAR(julga_campo(cavalo_a_mais) - sem, 5 * std::log(5.0 / 3), 1e-5);
    MOB = 10;
    EXPECT_NEAR(julga_campo(cavalo_a_mais) - sem, 10 * std::log(5.0 / 3), 1e-5);
}

TEST_F(Judgement, PositionAndMiddleCountByTheirWeight) {
    MOB = 0;
    PM = 0;
    const float sem = julga_campo(cavalo_a_mais);
    const double posicao = 5.0 / 100 + 25 / 26.5;
    const double meio = 2 * 50 / 10.5;
    PM = 5;
    EXPECT_NEAR(julga_campo(cavalo_a_mais) - sem, 5 * std::log((posicao + meio + 10.1) / 10.1), 1e-5);
    PM = 10;
    EXPECT_NEAR(julga_campo(cavalo_a_mais) - sem, 10 * std::log((posicao + meio + 10.1) / 10.1), 1e-5);
}

TEST_F(Judgement, CastlingCountsByItsWeight) {
    const float sem = julga_campo(reis);
    poe_fase(20, forte);
    regimen = 0;
    roque = {1, 0};
    EXPECT_NEAR(julga(brancas, brancas) - sem, 3 * std::log(4.0 / 3), 1e-5);
    roque = {0, 1};
    EXPECT_NEAR(julga(brancas, brancas) - sem, 3 * std::log(3.0 / 4), 1e-5);
    roque = {2, 1};
    roque_v = 10;
    EXPECT_NEAR(julga(brancas, brancas) - sem, 10 * std::log(5.0 / 4), 1e-5);
    EXPECT_NEAR(julga(pretas, brancas) + sem, 10 * std::log(4.0 / 5), 1e-5);
}

// The term itself is rounded to float before it is added.
TEST_F(Judgement, CastlingIsRoundedBeforeItIsAdded) {
    julga_campo(reis);
    roque = {1, 0};
    roque_v = 7;
    const auto termo = static_cast<float>(7 * std::log(4.0L / 3.0L));
    const long double certo = (3 + static_cast<long double>(0.1)) - (1 + static_cast<long double>(0.1)) + termo;
    EXPECT_TRUE(mesmos_bits(julga(brancas, brancas), static_cast<float>(certo)));
}

TEST_F(Judgement, WithoutCastlingInTheLineThereIsNoSuchTerm) {
    const float sem = julga_campo(reis);
    roque_v = 10;
    roque = {0, 0};
    EXPECT_TRUE(mesmos_bits(julga(brancas, brancas), sem));
}

// White's rooks hit one man and support three times; Black's pawn does neither.
constexpr std::string_view torres = "7k/8/8/3p4/8/8/8/R2R3K";

TEST_F(Judgement, HitsOfTheEngineWeighOneHundredthOfTheBalance) {
    const float sem = julga_campo(torres);
    regimen_da_raiz = 100;
    EXPECT_NEAR(julga_campo(torres) - sem, 0.01 * 100 * std::log(4.0 / 6), 1e-5);
}

TEST_F(Judgement, HitsOfTheEnemyWeighOneThousandth) {
    const float sem = julga_campo(torres, pretas, pretas);
    regimen_da_raiz = 100;
    EXPECT_NEAR(julga_campo(torres, pretas, pretas) - sem, 0.001 * 100 * std::log(4.0 / 6), 1e-5);
}

TEST_F(Judgement, HitsAreScoredDownInABadBalance) {
    constexpr std::string_view um_alvo = "7k/8/8/8/8/1p6/8/N6K";
    const float sem = julga_campo(um_alvo);
    regimen_da_raiz = -100;
    EXPECT_NEAR(julga_campo(um_alvo) - sem, -0.01 * 100 * std::log(4.0 / 3), 1e-5);
}

TEST_F(Judgement, BaseValueOfTheRootMoveRidesOnEveryLeaf) {
    const float sem = julga_campo(reis);
    extraevalll = 1.25F;
    EXPECT_NEAR(julga(brancas, brancas) - sem, 1.25, 1e-6);
    EXPECT_NEAR(julga(brancas, pretas) - sem, 1.25, 1e-6);
}

// --- The bound ---

TEST_F(Judgement, IsBoundedByFivePawns) {
    extraevalll = 58;
    EXPECT_EQ(julga_campo(reis), 50.0F);
    extraevalll = -62;
    EXPECT_EQ(julga_campo(reis), -50.0F);
    extraevalll = 47;
    EXPECT_NEAR(julga_campo(reis), 49, 1e-4);
    extraevalll = -51;
    EXPECT_NEAR(julga_campo(reis), -49, 1e-4);
}

TEST_F(Judgement, LeavesTheBoundedValueOnlyInExtraeval) {
    extraevalll = 58;
    julga_campo(reis);
    EXPECT_EQ(extraevalll, 58.0F);
}

// --- Dead draws ---

class DeadDraw : public Judgement {
protected:
    static bool morto(std::string_view campo) {
        for (const Cor own : {brancas, pretas}) {
            for (const Cor stm : {brancas, pretas}) {
                EMPAT = 2;
                julga_campo(campo, own, stm);
                EXPECT_EQ(EMPAT, empate_por_material() ? 1 : 0) << campo;
            }
        }
        return EMPAT != 0;
    }
};

TEST_F(DeadDraw, BareKings) { EXPECT_TRUE(morto("4k3/8/8/8/8/8/8/4K3")); }

TEST_F(DeadDraw, UpToTwoKnights) {
    EXPECT_TRUE(morto("4k3/8/8/8/8/8/8/4KN2"));
    EXPECT_TRUE(morto("4k3/8/8/8/8/8/8/3NKN2"));
    EXPECT_TRUE(morto("3nkn2/8/8/8/8/8/8/3NKN2"));
    EXPECT_FALSE(morto("4k3/8/8/8/8/8/8/2NNKN2"));
    EXPECT_FALSE(morto("2nnkn2/8/8/8/8/8/8/4K3"));
}

TEST_F(DeadDraw, OneBishop) {
    EXPECT_TRUE(morto("4k3/8/8/8/8/8/8/4KB2"));
    EXPECT_TRUE(morto("4kb2/8/8/8/8/8/8/4KB2"));
    EXPECT_FALSE(morto("4k3/8/8/8/8/8/8/3BKB2"));
    EXPECT_FALSE(morto("3bkb2/8/8/8/8/8/8/4K3"));
}

TEST_F(DeadDraw, TwoKnightsAgainstABishop) { EXPECT_TRUE(morto("4kb2/8/8/8/8/8/8/3NKN2")); }

TEST_F(DeadDraw, NotKnightAndBishopTogether) {
    EXPECT_FALSE(morto("4k3/8/8/8/8/8/8/4KBN1"));
    EXPECT_FALSE(morto("4kbn1/8/8/8/8/8/8/4K3"));
}

TEST_F(DeadDraw, NotWithAPawnARookOrAQueen) {
    for (const std::string homem : {"P", "R", "Q", "p", "r", "q"}) {
        EXPECT_FALSE(morto("4k3/8/8/8/" + homem + "7/8/8/4K3")) << homem;
    }
}

// --- The four routines ---

TEST_F(Judgement, WithoutContactTheSideToMoveIsNoMatter) {
    constexpr std::string_view campo = "r3k3/p7/8/8/8/8/5PPP/6KR";
    for (const Cor own : {brancas, pretas}) {
        EXPECT_TRUE(mesmos_bits(julga_campo(campo, own, brancas), julga_campo(campo, own, pretas)));
    }
}

TEST_F(Judgement, WithContactOnlyTheAttackTermsDiffer) {
    // The knight takes the queen, or the pawn f5, held by e4's fellow, has half the knight.
    constexpr std::string_view campo = "7k/8/1n6/8/2P5/1q1P4/8/N6K";
    julga_campo(campo, brancas, brancas);
    const auto minha = contagem;
    julga_campo(campo, brancas, pretas);
    for (const Cor c : {brancas, pretas}) {
        EXPECT_EQ(minha[c].mobilidade, contagem[c].mobilidade);
        EXPECT_EQ(minha[c].alvos, contagem[c].alvos);
        EXPECT_EQ(minha[c].apoios, contagem[c].apoios);
        EXPECT_TRUE(mesmos_bits(minha[c].centro, contagem[c].centro));
        EXPECT_TRUE(mesmos_bits(minha[c].atack_ksf, contagem[c].atack_ksf));
    }
    // In turn the knight's 58 against the queen; Black's knight takes no pawn for profit.
    EXPECT_NEAR(minha[brancas].posicao - contagem[brancas].posicao, 58, 1e-4);
    EXPECT_EQ(minha[pretas].posicao, contagem[pretas].posicao);
}

TEST_F(Judgement, KnightOnTheQueenCountsAfterTheEnemysMoveOnly) {
    constexpr std::string_view campo = "7k/8/8/8/8/1q6/8/N6K";
    const auto posicao_branca = [&](Cor own, Cor stm) {
        julga_campo(campo, own, stm);
        return contagem[brancas].posicao;
    };
    const float sem = posicao_branca(brancas, pretas);
    EXPECT_NEAR(posicao_branca(brancas, brancas) - sem, 58, 1e-4);
    EXPECT_NEAR(posicao_branca(pretas, brancas) - sem, 58, 1e-4);
    EXPECT_NEAR(posicao_branca(pretas, pretas) - sem, 0, 1e-4);
}

TEST_F(Judgement, OfOneSideIsTheOthersTurnedRound) {
    constexpr std::string_view campo = "r1bqk2r/pp3ppp/2n2n2/2bp4/8/2N1BN2/PPP2PPP/R2QKB1R";
    EXPECT_NEAR(julga_campo(campo, brancas, brancas), -julga_campo(campo, pretas, brancas), 1e-4);
    EXPECT_NEAR(julga_campo(campo, brancas, pretas), -julga_campo(campo, pretas, pretas), 1e-4);
}

TEST_F(Judgement, OfAnEvenPlyRaisesTheDepthReached) {
    julga_campo(reis);
    ddep = 7;
    deep = 9;
    julga(brancas, pretas);
    julga(pretas, brancas);
    EXPECT_EQ(ddep, 7);
    julga(brancas, brancas);
    EXPECT_EQ(ddep, 9);
    deep = 11;
    julga(pretas, pretas);
    EXPECT_EQ(ddep, 11);
    deep = 5;
    julga(pretas, pretas);
    EXPECT_EQ(ddep, 11);
}

TEST_F(Judgement, DependsOnNothingThatAnotherLeafLeft) {
    constexpr std::string_view campo = "r1bqk2r/pp3ppp/2n2n2/2bp4/8/2N1BN2/PPP2PPP/R2QKB1R";
    const float antes = julga_campo(campo);
    julga_campo("4k3/8/8/8/3Q4/8/8/4K3", pretas, brancas);
    EXPECT_TRUE(mesmos_bits(julga_campo(campo), antes));
}

// --- The score of a leaf ---

class LeafScore : public Judgement {
protected:
    // Ply 4 as a leaf: Black, the opponent, has just moved and White is the side at the root.
    static float folha(std::string_view fen, std::string_view m) {
        monta_ply(3, fen);
        deep = DEEP = 3;
        return busca_no(4, lance(m));
    }
    static constexpr std::string_view torre_a_mais = "4k3/8/8/8/8/8/8/R3K3 b - - 0 1";
};

TEST_F(LeafScore, WithoutExtraEvaluationIsMaterialAndItsLogarithm) {
    EXTRA_EVAL = 0;
    monta_ply(3, torre_a_mais);
    EXTRA_EVAL = 0;
    deep = DEEP = 3;
    EXPECT_NEAR(busca_no(4, lance("e8d8")), 50 + 5 * std::log(160.0 / 110), 1e-4);
}

TEST_F(LeafScore, WithoutExtraDefinitionIsMaterialAlone) {
    monta_ply(3, torre_a_mais);
    EXTRA_EVAL = 0;
    extradef = 0;
    deep = DEEP = 3;
    EXPECT_EQ(busca_no(4, lance("e8d8")), 50.0F);
}

TEST_F(LeafScore, AddsTheJudgement) {
    const float v = folha(torre_a_mais, "e8d8");
    const auto material = static_cast<float>(50 + 5 * std::log(160.0L / 110));
    EXPECT_TRUE(mesmos_bits(v, material + extraeval));
    EXPECT_NE(extraeval, 0.0F);
    EXPECT_EQ(quantas_vezes(Regra::julgamento), 1U);
}

TEST_F(LeafScore, OfADeadDrawIsTheDrawScore) {
    const float v = folha("4k3/8/8/8/8/8/8/4KN2 b - - 0 1", "e8d8");
    EXPECT_EQ(v, static_cast<float>(emp));
    EXPECT_EQ(EMPAT, 1);
}

// --- Boards that no game leads to ---

// The front end lets every board in: the judgement must come back from each, whatever the number.
class NonsenseBoard : public Judgement {
protected:
    static inline const std::vector<std::string> tabuleiros{
        "8/8/8/8/8/8/8/8",
        "8/8/8/8/8/8/8/K7",
        "k7/8/8/8/8/8/8/8",
        "QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ",
        "qqqqqqqq/qqqqqqqq/qqqqqqqq/qqqqqqqq/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ",
        "PPPPPPPP/PPPPPPPP/PPPPPPPP/PPPPPPPP/pppppppp/pppppppp/pppppppp/pppppppp",
        "4k3/1p1p1p1p/P1P1P1P1/1p1p1p1p/P1P1P1P1/1p1p1p1p/P1P1P1P1/4K3",
        "kkkkkkkk/8/8/8/8/8/8/KKKKKKKK",
        "pppppppp/8/8/8/8/8/8/PPPPPPPP",
        "NNNNNNNN/nnnnnnnn/8/8/8/8/8/8",
    };
};

TEST_F(NonsenseBoard, IsJudgedAllTheSame) {
    for (const float agressivo : {0.0F, 1.0F, 9.0F}) {
        for (const std::string& campo : tabuleiros) {
            agres = agressivo;
            poe_folha(campo + " w - - 0 1");
            for (const Cor own : {brancas, pretas}) {
                for (const Cor stm : {brancas, pretas}) {
                    const float v = julga(own, stm);
                    EXPECT_TRUE(std::isnan(v) || (v >= -50 && v <= 50)) << campo << ' ' << v;
                }
                valor_da_base(own);
            }
            extraevalll = 0;
        }
    }
}

// Six hits by pawns at no aggressiveness bring the sum below zero, and its logarithm is no number. Neither end of the
// bound holds it.
TEST_F(NonsenseBoard, SumBelowZeroGivesNoNumber) {
    agres = 0;
    poe_folha("7k/8/2p1p1p1/1q1q1q1q/2P1P1P1/8/8/K7 w - - 0 1");
    poe_fase(20, 90.0F);
    EXPECT_TRUE(std::isnan(julga(brancas, brancas)));
    EXPECT_LT(contagem[brancas].posicao + contagem[brancas].centro, -10.1F);
    EXPECT_FALSE(std::isnan(julga(brancas, pretas)));
}

TEST_F(NonsenseBoard, IsSearchedAndAnswered) {
    for (const std::string agressivo : {"0", "9"}) {
        std::vector<std::string> linhas{"setoption name Own book value false", "setoption name Deep value 2",
                                        "setoption name Aggressiveness value " + agressivo,
                                        "setoption name Time usage value 9"};
        for (const std::string& campo : tabuleiros) {
            for (const char lado : {'w', 'b'}) {
                linhas.push_back("position fen " + campo + ' ' + lado + " - - 0 1");
                linhas.emplace_back("go wtime 100000 btime 100000");
            }
        }
        linhas.emplace_back("quit");
        const std::vector<std::string> saida = conversa(linhas);
        const auto respostas = std::count_if(saida.begin(), saida.end(),
                                             [](const std::string& linha) { return linha.starts_with("bestmove "); });
        EXPECT_EQ(respostas, static_cast<std::ptrdiff_t>(2 * tabuleiros.size()));
    }
}

}  // namespace
