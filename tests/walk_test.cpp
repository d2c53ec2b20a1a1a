// The walk of the board: each of its terms alone, and whole walks worked out by hand to the last bit.
#include "support/evaluation.h"

#include "eval/tables.h"

#include <gtest/gtest.h>

namespace {

using namespace ondrel;
using namespace teste;

// Phases, by the men of both colours.
constexpr int cheio = 20;        // 15 and more: opening and middle game
constexpr int meio = 14;         // 11 to 14
constexpr int vazio = 10;        // up to 10
constexpr float forte = 320.0F;  // the enemy's pieces keep the kings at home
constexpr float fraco = 90.0F;   // kings come out

double centro_em(std::string_view nome) {
    const double f = nome[0] - 'a' - 3.5;
    const double r = nome[1] - '1' - 3.5;
    return static_cast<double>(static_cast<float>(1.0 / (f * f + r * r + 2.0)));
}

class Walk : public ::testing::Test {
protected:
    void SetUp() override { processo_novo(); }

    // Judges the board in the given phase, for `own` with `stm` to move.
    static void anda(std::string_view campo, int homens, float maior = forte, Cor own = brancas, Cor stm = brancas) {
        poe_folha(std::string(campo) + " w - - 0 1");
        poe_fase(homens, maior);
        julga(own, stm);
    }
    static float posicao_das_brancas(std::string_view campo, int homens, float maior = forte, Cor own = brancas,
                                     Cor stm = brancas) {
        anda(campo, homens, maior, own, stm);
        return brancas_contadas().posicao;
    }
    static float posicao_das_pretas(std::string_view campo, int homens, float maior = forte, Cor own = brancas,
                                    Cor stm = brancas) {
        anda(campo, homens, maior, own, stm);
        return pretas_contadas().posicao;
    }
};

// --- Pieces by their squares ---

using PieceTerms = Walk;

TEST_F(PieceTerms, OffItsFirstRankGetsFifteen) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("k7/8/8/8/8/8/2B5/7K", cheio), 15.0F);
    EXPECT_FLOAT_EQ(posicao_das_brancas("k7/8/8/8/8/8/8/2B4K", cheio), 0.0F);
    EXPECT_FLOAT_EQ(posicao_das_pretas("k1b5/8/8/8/8/8/8/7K", cheio), 0.0F);
    EXPECT_FLOAT_EQ(posicao_das_pretas("k7/2b5/8/8/8/8/8/7K", cheio), 15.0F);
    EXPECT_FLOAT_EQ(posicao_das_pretas("k7/8/8/8/8/8/8/2b4K", cheio), 15.0F);
}

TEST_F(PieceTerms, KnightOffItsFirstRankGetsFifteen) {
    const double no_canto = posicao_das_brancas("k7/8/8/8/8/8/8/6NK", cheio);
    EXPECT_NEAR(no_canto, 5.0 / (36 + 49 + 2) + 25 * centro_em("g1"), 1e-5);
    EXPECT_NEAR(posicao_das_brancas("k7/8/8/8/8/8/6N1/7K", cheio), 15 + 5.0 / (36 + 36 + 2) + 25 * centro_em("g2"),
                1e-5);
}

TEST_F(PieceTerms, QueenOffItsFirstRankGetsFifteen) {
    EXPECT_NEAR(posicao_das_brancas("k7/8/8/8/8/8/8/3Q3K", cheio), 5.0 / (9 + 49 + 2) + 10 * centro_em("d1"), 1e-5);
    EXPECT_NEAR(posicao_das_brancas("k7/8/8/8/8/8/3Q4/7K", cheio), 15 + 5.0 / (9 + 36 + 2) + 10 * centro_em("d2"),
                1e-5);
}

TEST_F(PieceTerms, RookOffTheEdgeFilesGetsFifteen) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/8/8/8/8/1R5K", cheio), 15.0F);
    EXPECT_FLOAT_EQ(posicao_das_brancas("k7/8/8/8/8/8/8/K5R1", cheio), 15.0F);
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/8/8/8/8/R6K", cheio), 0.0F);
    EXPECT_FLOAT_EQ(posicao_das_brancas("k7/8/8/8/8/8/8/K6R", cheio), 0.0F);
    // Its first rank is no matter.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/R7/8/8/8/7K", cheio), 0.0F);
}

TEST_F(PieceTerms, KnightWithFewMenLooksForTheKing) {
    EXPECT_NEAR(posicao_das_brancas("k7/8/8/8/4N3/8/8/7K", meio), 15 + 15.0 / 34 + 10 * 0.4, 1e-5);
}

TEST_F(PieceTerms, KnightWithManyMenLooksForTheMiddle) {
    EXPECT_NEAR(posicao_das_brancas("k7/8/8/8/4N3/8/8/7K", 15), 15 + 5.0 / 34 + 25 * 0.4, 1e-5);
}

TEST_F(PieceTerms, BishopOnALongDiagonalWithManyMenGetsEleven) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("6k1/8/8/8/3B4/8/8/K7", 15), 15.0F + 11.0F);
    EXPECT_FLOAT_EQ(posicao_das_brancas("1k6/8/8/8/4B3/8/8/7K", 15), 15.0F + 11.0F);
    EXPECT_FLOAT_EQ(posicao_das_brancas("k7/8/8/8/5B2/8/8/7K", 15), 15.0F);
}

TEST_F(PieceTerms, BishopOnALongDiagonalWithFewMenGetsFive) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("6k1/8/8/8/3B4/8/8/K7", meio), 15.0F + 5.0F);
    EXPECT_FLOAT_EQ(posicao_das_brancas("1k6/8/8/8/4B3/8/8/7K", meio), 15.0F + 5.0F);
    EXPECT_FLOAT_EQ(posicao_das_brancas("k7/8/8/8/5B2/8/8/7K", meio), 15.0F);
}

TEST_F(PieceTerms, RookWithFewMenLooksForTheKing) {
    EXPECT_NEAR(posicao_das_brancas("7k/8/8/8/8/8/8/R6K", meio), 10.0 / (49 + 49 + 2), 1e-6);
    EXPECT_EQ(posicao_das_brancas("7k/8/8/8/8/8/8/R6K", 15), 0.0F);
}

TEST_F(PieceTerms, RookOnItsLastTwoRanksWithVeryFewMenGetsEleven) {
    EXPECT_NEAR(posicao_das_brancas("7k/R7/8/8/8/8/8/7K", vazio), 10.0 / (49 + 1 + 2) + 11, 1e-5);
    EXPECT_NEAR(posicao_das_brancas("R7/8/8/8/8/7k/8/7K", vazio), 10.0 / (49 + 25 + 2) + 11, 1e-5);
    EXPECT_NEAR(posicao_das_brancas("7k/8/R7/8/8/8/8/7K", vazio), 10.0 / (49 + 4 + 2), 1e-5);
    EXPECT_NEAR(posicao_das_brancas("7k/R7/8/8/8/8/8/7K", 11), 10.0 / (49 + 1 + 2), 1e-5);
    EXPECT_NEAR(posicao_das_pretas("7k/8/8/8/8/8/r7/7K", vazio), 10.0 / (49 + 1 + 2) + 11, 1e-5);
    EXPECT_NEAR(posicao_das_pretas("7k/8/8/8/8/7K/8/r7", vazio), 10.0 / (49 + 4 + 2) + 11, 1e-5);
    EXPECT_NEAR(posicao_das_pretas("7k/8/8/8/8/r7/8/7K", vazio), 10.0 / (49 + 4 + 2), 1e-5);
}

TEST_F(PieceTerms, QueenWithFewMenLooksForTheKing) {
    EXPECT_NEAR(posicao_das_brancas("k7/8/8/8/4Q3/8/8/6K1", meio), 15 + 25.0 / 34 + 15 * 0.4, 1e-5);
}

TEST_F(PieceTerms, QueenWithManyMenLooksForBoth) {
    EXPECT_NEAR(posicao_das_brancas("k7/8/8/8/4Q3/8/8/6K1", 15), 15 + 5.0 / 34 + 10 * 0.4, 1e-5);
}

TEST_F(PieceTerms, ThePhaseIsTakenFromTheRoot) {
    // Two men on the board, but the root has many.
    anda("k7/8/8/8/3B4/8/8/7K", 30);
    EXPECT_FLOAT_EQ(brancas_contadas().posicao, 26.0F);
    muda_folha("k7/pppppppp/8/8/3B4/8/PPPPPPPP/7K");
    poe_fase(2, forte);
    julga(brancas, brancas);
    const float com_poucos = brancas_contadas().posicao;
    poe_fase(30, forte);
    julga(brancas, brancas);
    EXPECT_FLOAT_EQ(brancas_contadas().posicao, com_poucos + 6.0F);
}

// --- The option Attack to King proximity ---

TEST_F(PieceTerms, NearnessToTheKingIsScaledForTheEnginesMenAlone) {
    constexpr std::string_view campo = "k3n3/8/8/8/4N3/8/8/7K";
    agresprxrei = 3;
    anda(campo, meio, forte, brancas, brancas);
    EXPECT_NEAR(brancas_contadas().posicao, 15 + 45.0 / 34 + 10 * 0.4, 1e-5);
    EXPECT_NEAR(pretas_contadas().posicao, 15.0 / (9 + 49 + 2) + 10 * centro_em("e8"), 1e-5);
    anda(campo, meio, forte, pretas, brancas);
    EXPECT_NEAR(brancas_contadas().posicao, 15 + 15.0 / 34 + 10 * 0.4, 1e-5);
    EXPECT_NEAR(pretas_contadas().posicao, 45.0 / (9 + 49 + 2) + 10 * centro_em("e8"), 1e-5);
}

TEST_F(PieceTerms, AtZeroTheEnginesNearnessVanishesAndTheEnemysStays) {
    agresprxrei = 0;
    anda("k3n3/8/8/8/4N3/8/8/7K", meio);
    EXPECT_NEAR(brancas_contadas().posicao, 15 + 10 * 0.4, 1e-5);
    EXPECT_NEAR(pretas_contadas().posicao, 15.0 / (9 + 49 + 2) + 10 * centro_em("e8"), 1e-5);
}

TEST_F(PieceTerms, EveryNearnessTermIsScaled) {
    agresprxrei = 0;
    EXPECT_NEAR(posicao_das_brancas("k7/8/8/8/4N3/8/8/7K", 15), 15 + 25 * 0.4, 1e-5);
    EXPECT_NEAR(posicao_das_brancas("7k/8/8/8/8/8/8/R6K", meio), 0, 1e-6);
    EXPECT_NEAR(posicao_das_brancas("k7/8/8/8/4Q3/8/8/6K1", meio), 15 + 15 * 0.4, 1e-5);
    EXPECT_NEAR(posicao_das_brancas("k7/8/8/8/4Q3/8/8/6K1", 15), 15 + 10 * 0.4, 1e-5);
}

// --- Attacks of the pieces ---

using AttackTerms = Walk;

TEST_F(AttackTerms, AnEmptySquareIsAMove) {
    anda("7k/8/8/8/8/8/8/N6K", cheio);
    EXPECT_EQ(brancas_contadas().mobilidade, 2);
    EXPECT_EQ(brancas_contadas().alvos, 0);
    EXPECT_EQ(brancas_contadas().apoios, 0);
}

TEST_F(AttackTerms, AnEnemyManIsAMoveAndATarget) {
    anda("7k/8/8/8/8/1p6/8/N6K", cheio);
    EXPECT_EQ(brancas_contadas().mobilidade, 2);
    EXPECT_EQ(brancas_contadas().alvos, 1);
}

TEST_F(AttackTerms, AnOwnManIsSupportedAndNoMove) {
    anda("7k/8/8/8/8/1B6/8/N6K", cheio);
    // The bishop on b3: c4, d5, e6, f7, g8; c2, d1; a2; a4.
    EXPECT_EQ(brancas_contadas().mobilidade, 1 + 9);
    EXPECT_EQ(brancas_contadas().apoios, 1);
    EXPECT_EQ(brancas_contadas().alvos, 0);
}

TEST_F(AttackTerms, ARayEndsOnTheFirstMan) {
    anda("7k/8/p7/p7/8/8/8/R2B3K", cheio);
    // The rook: a2, a3, a4, a5; b1, c1, d1. The bishop: c2, b3, a4; e2, f3, g4, h5.
    EXPECT_EQ(brancas_contadas().mobilidade, 4 + 2 + 7);
    EXPECT_EQ(brancas_contadas().alvos, 1);
    EXPECT_EQ(brancas_contadas().apoios, 1);
}

TEST_F(AttackTerms, AQueenUsesAllEightRays) {
    anda("7k/8/8/8/3Q4/8/8/K7", cheio);
    EXPECT_EQ(brancas_contadas().mobilidade, 7 + 7 + 6 + 7 - 1 + 0);
    // a1 to h8: own king at one end, the enemy's at the other.
    EXPECT_EQ(brancas_contadas().alvos, 1);
    EXPECT_EQ(brancas_contadas().apoios, 1);
}

// What the side to move wins by the exchange: the victim's worth less the attacker's.
class HitTerms : public Walk {
protected:
    // What the attack on the victim adds, beyond the same board with a black pawn on the victim's square.
    static float valor(std::string campo, char vitima, Cor own = brancas, Cor stm = brancas) {
        const std::size_t onde = campo.find('*');
        campo[onde] = vitima;
        const float com = posicao_das_brancas(campo, cheio, forte, own, stm);
        campo[onde] = 'p';
        return com - posicao_das_brancas(campo, cheio, forte, own, stm);
    }
    static constexpr const char* cavalo_ataca = "7k/8/8/8/8/1*6/8/N6K";
    static constexpr const char* bispo_ataca = "7k/8/8/8/8/2*5/8/B6K";
    static constexpr const char* torre_ataca = "7k/8/8/8/8/*7/8/R6K";
    static constexpr const char* dama_ataca = "7k/8/8/8/8/*7/8/Q6K";
};

TEST_F(HitTerms, OfAKnightCountsWhatIsWorthMore) {
    EXPECT_NEAR(valor(cavalo_ataca, 'q'), 58, 1e-4);
    EXPECT_NEAR(valor(cavalo_ataca, 'r'), 18, 1e-4);
    EXPECT_NEAR(valor(cavalo_ataca, 'b'), 1, 1e-4);
    EXPECT_NEAR(valor(cavalo_ataca, 'k'), 78, 1e-4);
    EXPECT_NEAR(valor(cavalo_ataca, 'n'), 0, 1e-4);
}

TEST_F(HitTerms, OfABishopCountsWhatIsWorthMore) {
    EXPECT_NEAR(valor(bispo_ataca, 'q'), 57, 1e-4);
    EXPECT_NEAR(valor(bispo_ataca, 'r'), 17, 1e-4);
    EXPECT_NEAR(valor(bispo_ataca, 'b'), 0, 1e-4);
    EXPECT_NEAR(valor(bispo_ataca, 'n'), 0, 1e-4);
}

TEST_F(HitTerms, OfARookCountsWhatIsWorthMore) {
    EXPECT_NEAR(valor(torre_ataca, 'q'), 40, 1e-4);
    EXPECT_NEAR(valor(torre_ataca, 'r'), 0, 1e-4);
    EXPECT_NEAR(valor(torre_ataca, 'n'), 0, 1e-4);
}

TEST_F(HitTerms, OfAQueenCountsNothing) {
    for (const char vitima : {'k', 'q', 'r', 'b', 'n'}) {
        EXPECT_NEAR(valor(dama_ataca, vitima), 0, 1e-4) << vitima;
    }
}

TEST_F(HitTerms, CountsForTheSideToMoveWhoeverTheEngineIs) {
    EXPECT_NEAR(valor(cavalo_ataca, 'q', brancas, brancas), 58, 1e-4);
    EXPECT_NEAR(valor(cavalo_ataca, 'q', pretas, brancas), 58, 1e-4);
    EXPECT_NEAR(valor(cavalo_ataca, 'q', brancas, pretas), 0, 1e-4);
    EXPECT_NEAR(valor(cavalo_ataca, 'q', pretas, pretas), 0, 1e-4);
}

// --- Batteries ---

using BatteryTerms = Walk;

TEST_F(BatteryTerms, RooksOnARankGetThreeEach) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/8/8/8/8/R2R3K", cheio), 15.0F + 3.0F + 3.0F);
}

TEST_F(BatteryTerms, RooksOnAFileGetFiveEach) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/R7/8/8/8/R6K", cheio), 5.0F + 5.0F);
}

TEST_F(BatteryTerms, ARookBehindTheQueenGetsItsOwnAndTheQueenOne) {
    const double dama_em_d1 = 5.0 / (16 + 49 + 2) + 10 * centro_em("d1");
    EXPECT_NEAR(posicao_das_brancas("7k/8/8/8/8/8/8/R2Q3K", cheio), dama_em_d1 + 3 + 1, 1e-5);
    const double dama_em_a5 = 15 + 5.0 / (49 + 9 + 2) + 10 * centro_em("a5");
    EXPECT_NEAR(posicao_das_brancas("7k/8/8/Q7/8/8/8/R6K", cheio), dama_em_a5 + 5 + 1, 1e-5);
}

TEST_F(BatteryTerms, QueensGetOneOnAnyRay) {
    const double em_a1 = 5.0 / (49 + 49 + 2) + 10 * centro_em("a1");
    const double em_d4 = 15 + 5.0 / (16 + 16 + 2) + 10 * 0.4;
    EXPECT_NEAR(posicao_das_brancas("7k/8/8/8/3Q4/8/8/Q6K", cheio), em_a1 + em_d4 + 2, 1e-5);
}

TEST_F(BatteryTerms, OnlyRooksAndQueensMakeOne) {
    // A bishop behind the queen; a rook behind a knight.
    const double dama_em_d4 = 15 + 5.0 / (16 + 16 + 2) + 10 * 0.4;
    EXPECT_NEAR(posicao_das_brancas("7k/8/8/8/3Q4/8/8/B6K", cheio), dama_em_d4 + 11, 1e-5);
    const double cavalo_em_a3 = 15 + 5.0 / (49 + 25 + 2) + 25 * centro_em("a3");
    EXPECT_NEAR(posicao_das_brancas("7k/8/8/8/8/N7/8/R6K", cheio), cavalo_em_a3, 1e-5);
}

TEST_F(BatteryTerms, AnEnemyRookMakesNone) { EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/r7/8/8/8/R6K", cheio), 0.0F); }

// --- Kings ---

using KingTerms = Walk;

TEST_F(KingTerms, CountsItsAdvanceAndItsBox) {
    anda("7k/8/8/8/8/2K5/8/8", cheio);
    EXPECT_EQ(brancas_contadas().avanco, 3);
    EXPECT_EQ(pretas_contadas().avanco, 1);
    EXPECT_EQ(brancas_contadas().caixa(), 1);
    EXPECT_EQ(brancas_contadas().pecas, 0);
    EXPECT_EQ(brancas_contadas().pontos, 0);
    EXPECT_EQ(brancas_contadas().peoes, 0);
}

TEST_F(KingTerms, ComesOutOnceTheEnemyHasAQueenOrLess) {
    EXPECT_NEAR(posicao_das_brancas("7k/8/8/8/3K4/8/8/8", meio, fraco), 50 * 0.4, 1e-5);
    EXPECT_EQ(posicao_das_brancas("7k/8/8/8/3K4/8/8/8", meio, 90.5F), 0.0F);
}

TEST_F(KingTerms, LooksAtTheEnemysMaterialAlone) {
    poe_folha("7k/8/8/8/3K4/8/8/8 w - - 0 1");
    poe_fase(meio, forte);
    materialmaior = {320.0F, 90.0F};
    julga(brancas, brancas);
    EXPECT_NEAR(brancas_contadas().posicao, 50 * 0.4, 1e-5);
    EXPECT_EQ(pretas_contadas().posicao, 0.0F);
}

TEST_F(KingTerms, HuntsABareKing) {
    poe_folha("7k/8/8/8/3K4/8/8/8 w - - 0 1");
    materialmaior = {forte, forte};
    npecas = {14, 0};
    agresprxrei = 2;
    julga(brancas, brancas);
    EXPECT_NEAR(brancas_contadas().posicao, 75 * 2.0 / (16 + 16 + 2), 1e-5);
    EXPECT_EQ(pretas_contadas().posicao, 0.0F);
    npecas = {0, 14};
    julga(brancas, brancas);
    EXPECT_EQ(brancas_contadas().posicao, 0.0F);
    EXPECT_NEAR(pretas_contadas().posicao, 75 * 1.0 / (16 + 16 + 2), 1e-5);
}

TEST_F(KingTerms, MarksAndJudgesItsNeighboursOnceItComesOut) {
    anda("7k/8/8/8/8/8/1r6/KB6", meio, fraco);
    const Contagem& b = brancas_contadas();
    // b1 an own man, b2 an enemy rook, a2 empty; the bishop: c2 to h7, and a2.
    EXPECT_EQ(b.mobilidade, 2 + 7);
    EXPECT_EQ(b.alvos, 1);
    EXPECT_EQ(b.apoios, 1);
}

TEST_F(KingTerms, GetsNoTermForWhatItAttacks) {
    EXPECT_NEAR(posicao_das_brancas("7k/8/8/8/8/8/1q6/K7", meio, fraco), 50 * centro_em("a1"), 1e-5);
    EXPECT_NEAR(posicao_das_brancas("7k/8/8/8/8/8/8/KR6", cheio, fraco), 50 * centro_em("a1") + 15, 1e-5);
}

TEST_F(KingTerms, AtHomeMarksNothing) {
    anda("7k/8/8/8/8/8/1r6/K7", meio, 90.5F);
    EXPECT_EQ(brancas_contadas().mobilidade, 0);
    EXPECT_EQ(brancas_contadas().alvos, 0);
    EXPECT_EQ(brancas_contadas().centro, 0.0F);
}

// --- Pawns ---

using PawnTerms = Walk;

// A lone pawn in the middle game has two ways to break through (25 each) and a free way (33).
constexpr float livre_no_meio = 25 + 25 + 33;
// At the edge there is one way to break through.
constexpr float livre_na_borda = 25 + 33;

TEST_F(PawnTerms, CountsItsAdvanceAndTheBox) {
    anda("7k/8/8/8/1P6/8/8/3K4", cheio);
    EXPECT_EQ(brancas_contadas().peoes, 1);
    EXPECT_EQ(brancas_contadas().avanco, 1 + 4);
    EXPECT_EQ(brancas_contadas().caixa(), 3 * 4);
    EXPECT_EQ(brancas_contadas().menor_file, 1);
    EXPECT_EQ(brancas_contadas().maior_file, 3);
    EXPECT_EQ(brancas_contadas().menor_rank, 0);
    EXPECT_EQ(brancas_contadas().maior_rank, 3);
    EXPECT_EQ(brancas_contadas().pecas, 0);
}

TEST_F(PawnTerms, PiecesDoNotWidenTheBox) {
    anda("7k/8/8/8/8/8/8/K6R", cheio);
    EXPECT_EQ(brancas_contadas().caixa(), 1);
}

TEST_F(PawnTerms, SheltersTheKingFromThreeFilesAndThreeRanks) {
    const auto abrigo = [](std::string_view campo) {
        anda(campo, cheio);
        return brancas_contadas().abrigo;
    };
    EXPECT_EQ(abrigo("7k/8/8/8/8/8/3PPP2/4K3"), 3);
    EXPECT_EQ(abrigo("7k/8/8/8/8/3PPP2/8/4K3"), 3);
    EXPECT_EQ(abrigo("7k/8/8/8/3PPP2/8/8/4K3"), 0);
    EXPECT_EQ(abrigo("7k/8/8/8/8/8/2P3P1/4K3"), 0);
    EXPECT_EQ(abrigo("7k/8/8/8/8/3PKP2/8/8"), 2);
    EXPECT_EQ(abrigo("7k/8/8/8/8/4K3/3PPP2/8"), 0);
}

TEST_F(PawnTerms, SheltersABlackKingFromBelow) {
    const auto abrigo = [](std::string_view campo) {
        anda(campo, cheio);
        return pretas_contadas().abrigo;
    };
    EXPECT_EQ(abrigo("4k3/3ppp2/8/8/8/8/8/7K"), 3);
    EXPECT_EQ(abrigo("4k3/8/3ppp2/8/8/8/8/7K"), 3);
    EXPECT_EQ(abrigo("4k3/8/8/3ppp2/8/8/8/7K"), 0);
    EXPECT_EQ(abrigo("8/3ppp2/4k3/8/8/8/8/7K"), 0);
}

TEST_F(PawnTerms, ShelterIsSoughtWhereTheKingIsRemembered) {
    poe_folha("7k/8/8/8/8/8/5PPP/K7 w - - 0 1");
    poe_fase(cheio, forte);
    p_x_R[brancas] = 6;
    julga(brancas, brancas);
    EXPECT_EQ(brancas_contadas().abrigo, 3);
}

TEST_F(PawnTerms, MarksItsDiagonalsWhileTheEnemyIsStrong) {
    anda("7k/8/8/8/4P3/8/8/K7", cheio);
    EXPECT_TRUE(mesmos_bits(brancas_contadas().centro, soma_do_centroo({"f5", "d5"})));
    anda("7k/8/8/8/P7/8/8/K7", cheio);
    EXPECT_TRUE(mesmos_bits(brancas_contadas().centro, soma_do_centroo({"b5"})));
    anda("7k/8/8/4p3/8/8/8/K7", cheio);
    EXPECT_TRUE(mesmos_bits(pretas_contadas().centro, soma_do_centroo({"f4", "d4"})));
}

TEST_F(PawnTerms, NeitherSheltersNorMarksInTheEndGame) {
    anda("7k/8/8/8/8/8/1P6/K7", cheio, fraco);
    EXPECT_EQ(brancas_contadas().abrigo, 0);
    EXPECT_TRUE(mesmos_bits(brancas_contadas().centro, soma_do_centroo({"b1", "a2", "b2"})));  // the king's
}

TEST_F(PawnTerms, InTheEndGameIsWeighedByItsWayAndDrawsBothKings) {
    anda("7k/8/8/8/8/1P6/8/K7", cheio, fraco);
    const double rei_branco = 50 * centro_em("a1");
    const double rei_preto = 50 * centro_em("h8");
    EXPECT_NEAR(brancas_contadas().posicao, rei_branco + 100.0 / 52 + 25.0 / (1 + 4 + 2) + livre_no_meio, 1e-4);
    EXPECT_NEAR(pretas_contadas().posicao, rei_preto + 25.0 / (36 + 25 + 2), 1e-4);
}

TEST_F(PawnTerms, OfBlackInTheEndGameLikewise) {
    anda("7k/8/1p6/8/8/8/8/K7", cheio, fraco);
    EXPECT_NEAR(pretas_contadas().posicao, 50 * centro_em("h8") + 100.0 / 52 + 25.0 / (36 + 4 + 2) + livre_no_meio,
                1e-4);
    EXPECT_NEAR(brancas_contadas().posicao, 50 * centro_em("a1") + 25.0 / (1 + 25 + 2), 1e-4);
}

TEST_F(PawnTerms, AttackIsAMoveAndATarget) {
    anda("7k/8/8/3n1n2/4P3/8/8/K7", cheio);
    EXPECT_EQ(brancas_contadas().alvos, 2);
    EXPECT_EQ(brancas_contadas().mobilidade, 2 + 1);
}

TEST_F(PawnTerms, AttackOfTheSideToMoveIsWorthTheManLessTen) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/5n2/4P3/8/8/K7", cheio), livre_no_meio + 22);
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/5q2/4P3/8/8/K7", cheio), livre_no_meio + 80);
}

TEST_F(PawnTerms, AttackIsScaledByAggressiveness) {
    agres = 3;
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/5n2/4P3/8/8/K7", cheio), livre_no_meio + 3 * 32 - 10);
    // Whoever the engine is.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/5n2/4P3/8/8/K7", cheio, forte, pretas, brancas),
                    livre_no_meio + 3 * 32 - 10);
}

TEST_F(PawnTerms, AttackCostsTenAtNoAggressiveness) {
    agres = 0;
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/5q2/4P3/8/8/K7", cheio), livre_no_meio - 10);
}

TEST_F(PawnTerms, AttackOnAPawnIsWorthNothingAtOneAggressiveness) {
    // Both pawns are blocked by each other's files: f5 stops e4's way, and the exchange frees neither.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/5p2/4P3/8/8/K7", cheio), 25.0F);
    agres = 2;
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/5p2/4P3/8/8/K7", cheio), 25.0F + 10.0F);
}

// Out of turn an attack holds only if the pawn itself is held.
TEST_F(PawnTerms, HeldPawnAttackingOutOfTurnGetsHalfTheMan) {
    // d3 holds e4: its own terms are the break-through to the left, the support, the company and the free way.
    constexpr float d3_com_e4 = 11 + 25 + 10 + 33;
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/8/4P3/3P4/8/K7", cheio, forte, brancas, pretas),
                    livre_no_meio + d3_com_e4);
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/5b2/4P3/3P4/8/K7", cheio, forte, brancas, pretas),
                    livre_no_meio + d3_com_e4 + 16);
    // From the other side, and once for each man attacked.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/3r1b2/4P3/5P2/8/K7", cheio, forte, brancas, pretas),
                    livre_no_meio + d3_com_e4 + 16 + 25);
    // Held twice is held once.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/5b2/4P3/3P1P2/8/K7", cheio, forte, brancas, pretas) -
                        posicao_das_brancas("7k/8/8/8/4P3/3P1P2/8/K7", cheio, forte, brancas, pretas),
                    16.0F);
}

TEST_F(PawnTerms, HeldPawnAttackingOutOfTurnCountsForTheEngineAndItsEnemyAlike) {
    const float com = posicao_das_brancas("7k/8/8/5b2/4P3/3P4/8/K7", cheio, forte, pretas, pretas);
    EXPECT_FLOAT_EQ(com, livre_no_meio + 11 + 25 + 10 + 33 + 16);
}

TEST_F(PawnTerms, LoosePawnAttackingOutOfTurnGetsNothing) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/5b2/4P3/8/8/K7", cheio, forte, brancas, pretas), livre_no_meio);
    // A piece behind it does not hold it so.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/5b2/4P3/3B4/8/K7", cheio, forte, brancas, pretas), livre_no_meio + 15);
}

TEST_F(PawnTerms, HeldPawnAttackingAPawnOutOfTurnGetsNothing) {
    // What d3 brings along: its support 11, its break to the left, 10 for passing e4 and 33 for its free way.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/5p2/4P3/3P4/8/K7", cheio, forte, brancas, pretas) -
                        posicao_das_brancas("7k/8/8/5p2/4P3/8/8/K7", cheio, forte, brancas, pretas),
                    11.0F + 25.0F + 10.0F + 33.0F);
}

TEST_F(PawnTerms, PushIsAMoveWhereTheSquareIsEmpty) {
    const auto lances = [](std::string_view campo) {
        anda(campo, cheio);
        return brancas_contadas().mobilidade;
    };
    EXPECT_EQ(lances("7k/8/8/8/4P3/8/8/K7"), 1);
    EXPECT_EQ(lances("7k/8/8/4n3/4P3/8/8/K7"), 0);
    EXPECT_EQ(lances("7k/8/8/8/8/8/4P3/K7"), 2);
    EXPECT_EQ(lances("7k/8/8/8/4n3/8/4P3/K7"), 1);
    EXPECT_EQ(lances("7k/8/8/8/8/4n3/4P3/K7"), 0);
    EXPECT_EQ(lances("7k/4P3/8/8/8/8/8/K7"), 1);
}

TEST_F(PawnTerms, OfBlackPushesDownward) {
    const auto lances = [](std::string_view campo) {
        anda(campo, cheio);
        return pretas_contadas().mobilidade;
    };
    EXPECT_EQ(lances("k7/4p3/8/8/8/8/8/7K"), 2);
    EXPECT_EQ(lances("k7/8/4p3/8/8/8/8/7K"), 1);
    EXPECT_EQ(lances("k7/4p3/8/4N3/8/8/8/7K"), 1);
}

TEST_F(PawnTerms, SupportsWhatStandsOnItsDiagonals) {
    anda("7k/8/8/3N1N2/4P3/8/8/K7", cheio);
    EXPECT_EQ(brancas_contadas().apoios, 2);
    anda("7k/8/8/3N4/4P3/8/8/K7", cheio);
    EXPECT_EQ(brancas_contadas().apoios, 1);
    anda("7k/8/8/8/4P3/3P4/8/K7", cheio);
    EXPECT_EQ(brancas_contadas().apoios, 1);
}

TEST_F(PawnTerms, OnItsSeventhRankGetsAHundredAndNothingForItsWay) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/4P3/8/8/8/8/8/K7", cheio), 100.0F);
    EXPECT_FLOAT_EQ(posicao_das_pretas("7k/8/8/8/8/8/4p3/K7", cheio), 100.0F);
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/4P3/8/8/8/8/K7", cheio), 33.0F);
}

TEST_F(PawnTerms, BesideAnotherGetsThirteen) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/8/3PP3/8/8/K7", cheio), 2 * (livre_no_meio + 13));
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/8/2PPP3/8/8/K7", cheio), 3 * livre_no_meio + 4 * 13);
    // Not with an enemy's, nor across a file.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/8/2P1P3/8/8/K7", cheio), 2 * livre_no_meio);
}

TEST_F(PawnTerms, SupportingAnotherGetsEleven) {
    // e4: break to the left, support, a step beside f5, the end; f5 is alone on its way.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/5P2/4P3/8/8/K7", cheio), (25 + 11 + 10 + 33) + livre_no_meio);
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/3P4/4P3/8/8/K7", cheio), (25 + 11 + 10 + 33) + livre_no_meio);
}

// --- The break-through by a capture ---

using BreakThroughTerms = Walk;

// One break-through alone: a pawn one rank ahead bars the free way, but the break-through looks from two ranks ahead.
constexpr float so_rompe = 25;

TEST_F(BreakThroughTerms, NeedsTheOwnFileAndTheFileBeyondClean) {
    // Blocked at once by e5, which the break-through does not look at.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/4p3/4P3/8/8/K7", cheio), 2 * so_rompe);
    // A pawn on the own file closes both sides.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/4p3/8/8/4P3/8/8/K7", cheio), 0.0F);
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/4p3/8/4P3/8/8/K7", cheio), 0.0F);
    // One on the file beyond closes its side.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/6p1/8/8/4P3/8/8/K7", cheio), so_rompe + 33);
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/2p5/8/8/4P3/8/8/K7", cheio), so_rompe + 33);
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/2p3p1/8/8/4P3/8/8/K7", cheio), 33.0F);
    // One beside it on the file beyond, no longer ahead, closes nothing.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/6p1/4P3/8/8/K7", cheio), livre_no_meio);
}

TEST_F(BreakThroughTerms, PassesThePawnThatItCaptures) {
    // A pawn on the neighbouring file ends the free way, not the break-through.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/5p2/8/8/4P3/8/8/K7", cheio), 2 * so_rompe);
}

TEST_F(BreakThroughTerms, DoesNotStartFromASquareWithAPawn) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/5p2/4P3/8/8/K7", cheio), so_rompe);
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/3p1p2/4P3/8/8/K7", cheio), 0.0F);
    // A piece there is no hindrance.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/5n2/4P3/8/8/K7", cheio, forte, brancas, pretas), livre_no_meio);
}

TEST_F(BreakThroughTerms, AtTheEdgeLooksAtTheOwnFileAlone) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/8/P7/8/8/K7", cheio), livre_na_borda);
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/8/1P6/8/8/K7", cheio), livre_no_meio);
    EXPECT_FLOAT_EQ(posicao_das_brancas("k7/8/8/8/7P/8/8/K7", cheio), livre_na_borda);
}

TEST_F(BreakThroughTerms, EndsWithTheFifthRank) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/4P3/8/8/8/K7", cheio), livre_no_meio);
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/4P3/8/8/8/8/K7", cheio), 33.0F);
}

TEST_F(BreakThroughTerms, OfBlackLooksDownward) {
    EXPECT_FLOAT_EQ(posicao_das_pretas("7k/8/8/4p3/4P3/8/8/K7", cheio), 2 * so_rompe);
    EXPECT_FLOAT_EQ(posicao_das_pretas("7k/8/8/4p3/8/8/6P1/K7", cheio), so_rompe + 33);
    EXPECT_FLOAT_EQ(posicao_das_pretas("7k/8/8/4p3/8/8/4P3/K7", cheio), 0.0F);
}

// --- The free way ---

using PassedPawnTerms = Walk;

TEST_F(PassedPawnTerms, IsStoppedByAnEnemyPawnOnANeighbouringFile) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/3p4/8/8/4P3/8/8/K7", cheio), 2 * so_rompe);
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/5p2/8/8/4P3/8/8/K7", cheio), 2 * so_rompe);
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/p7/8/8/1P6/8/8/K7", cheio), 2 * so_rompe);
    // Not by one beside it, or behind.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/8/3pP3/8/8/K7", cheio), livre_no_meio);
}

TEST_F(PassedPawnTerms, IsStoppedByAnEnemyPawnOnItsFile) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/4p3/4P3/8/8/K7", cheio), 2 * so_rompe);
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/4p3/8/8/4P3/8/8/K7", cheio), 0.0F);
}

TEST_F(PassedPawnTerms, IsStoppedByAnOwnPawnAhead) {
    // The one behind breaks through on both sides and goes no farther.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/4P3/8/4P3/8/8/K7", cheio), 2 * so_rompe + 33);
}

TEST_F(PassedPawnTerms, IsNotStoppedByPieces) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/3nnn2/8/8/4P3/8/8/K7", cheio), livre_no_meio);
}

TEST_F(PassedPawnTerms, GetsTenForEveryOwnPawnThatItPasses) {
    // d5 and f6 beside the way of e4; e4 also supports d5, whose square bars the break to the left.
    const float e4 = 11 + so_rompe + 10 + 10 + 33;
    const float d5 = livre_no_meio;  // f6 is two files off
    const float f6 = 33;
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/5P2/3P4/4P3/8/8/K7", cheio), e4 + d5 + f6);
}

TEST_F(PassedPawnTerms, KeepsWhatItGotBeforeItIsStopped) {
    // e4 passes d5 (10) and is stopped by f7; e4's breaks: none to the left (d5), to the right clean.
    const float e4 = 11 + so_rompe + 10;
    // d5: company on e-file is behind; f7 closes the break to the right; the free way is clean.
    const float d5 = so_rompe + 33;
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/5p2/8/3P4/4P3/8/8/K7", cheio), e4 + d5);
}

// At one rank all tests that stop come before the tens.
TEST_F(PassedPawnTerms, StopsBeforeItCountsTheSameRank) {
    // On the rank ahead of e4 an own pawn on d5 and an enemy's on f5: nothing for d5.
    const float e4 = 11;
    const float d5 = livre_no_meio;
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/3P1p2/4P3/8/8/K7", cheio), e4 + d5);
    // The other way round.
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/8/3p1P2/4P3/8/8/K7", cheio), 11 + livre_no_meio);
}

TEST_F(PassedPawnTerms, GetsThirtyThreeAtTheEndOnly) {
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/8/4P3/8/8/8/8/K7", cheio), 33.0F);
    EXPECT_FLOAT_EQ(posicao_das_brancas("7k/5p2/4P3/8/8/8/8/K7", cheio), 0.0F);
    EXPECT_FLOAT_EQ(posicao_das_brancas("5p1k/8/4P3/8/8/8/8/K7", cheio), 33.0F);
}

// --- Whole walks, worked out by hand ---

class WalkByHand : public Walk {
protected:
    static void espera(const plain::SideCounts& certo, const Contagem& contado) {
        EXPECT_TRUE(conta_como(certo, contado));
    }
    static plain::SideCounts caixa(plain::SideCounts s, int f0, int f1, int r0, int r1) {
        s.lowest_file = f0;
        s.highest_file = f1;
        s.lowest_rank = r0;
        s.highest_rank = r1;
        s.caixa = (f1 - f0 + 1) * (r1 - r0 + 1);
        return s;
    }
};

TEST_F(WalkByHand, AKnightInTheCorner) {
    anda("7k/8/8/8/8/8/8/N6K", meio);
    plain::SideCounts b;
    // The knight attacks c2 before b3.
    b.centro = soma_do_centroo({"c2", "b3"});
    b.atack_ksf = soma_dos_inversos({25 + 36 + 2, 36 + 25 + 2});
    b.defesa_ksf = soma_dos_inversos({25 + 1 + 2, 36 + 4 + 2});
    b.posicao = soma_dos_termos({15.0 / 100 + 10.0 * centro_em("a1")});
    b.mobilidade = 2;
    b.pecas = 1;
    b.pontos = 3;
    b.avanco = 2;
    espera(caixa(b, 7, 7, 0, 0), brancas_contadas());
    plain::SideCounts p;
    p.avanco = 1;
    espera(caixa(p, 7, 7, 7, 7), pretas_contadas());
}

TEST_F(WalkByHand, TwoRooksAgainstAPawn) {
    anda("7k/8/8/3p4/8/8/8/R2R3K", cheio);
    plain::SideCounts b;
    // a1: along the rank to the other rook, then up the file. d1: to the own king, back to a1, up to the pawn.
    b.centro = soma_do_centroo({"b1", "c1", "d1", "a2", "a3", "a4", "a5", "a6", "a7", "a8", "e1",
                                "f1", "g1", "h1", "c1", "b1", "a1", "d2", "d3", "d4", "d5"});
    b.atack_ksf =
        soma_dos_inversos({87, 76, 67, 87, 76, 67, 60, 55, 52, 51, 60, 55, 52, 51, 76, 87, 100, 54, 43, 34, 27});
    b.defesa_ksf =
        soma_dos_inversos({38, 27, 18, 52, 55, 60, 67, 76, 87, 100, 11, 6, 3, 2, 27, 38, 51, 19, 22, 27, 34});
    b.posicao = 3 + 15 + 3;
    b.mobilidade = 18;
    b.alvos = 1;
    b.apoios = 3;
    b.pecas = 2;
    b.pontos = 10;
    b.avanco = 3;
    espera(caixa(b, 7, 7, 0, 0), brancas_contadas());
    plain::SideCounts p;
    p.centro = soma_do_centroo({"e4", "c4"});
    p.atack_ksf = soma_dos_inversos({9 + 9 + 2, 25 + 9 + 2});
    p.defesa_ksf = soma_dos_inversos({9 + 16 + 2, 25 + 16 + 2});
    p.posicao = 25 + 25 + 33;
    p.mobilidade = 1;
    p.peoes = 1;
    p.avanco = 4 + 1;
    espera(caixa(p, 3, 7, 4, 7), pretas_contadas());
}

TEST_F(WalkByHand, KingAndPawnAgainstABareKing) {
    agresprxrei = 2;
    poe_folha("8/8/8/4k3/8/8/4P3/4K3 w - - 0 1");
    julga(brancas, brancas);
    plain::SideCounts b;
    b.centro = soma_do_centroo({"f1", "d1", "e2", "f2", "d2"});
    b.atack_ksf = soma_dos_inversos({19, 19, 11, 12, 12});
    b.defesa_ksf = soma_dos_inversos({3, 3, 3, 4, 4});
    b.posicao = soma_dos_termos({50.0 * centro_em("e1"), 75.0 * 2 / 18,
                                 100.0 * static_cast<double>(static_cast<float>(1.0 / 74)) + 25.0 / 3, 25, 25, 33});
    b.mobilidade = 4 + 2;
    b.apoios = 1;
    b.peoes = 1;
    b.avanco = 3;
    espera(caixa(b, 4, 4, 0, 1), brancas_contadas());
    plain::SideCounts p;
    p.centro = soma_do_centroo({"f5", "d5", "e6", "e4", "d4", "f6", "d6", "f4"});
    p.atack_ksf = soma_dos_inversos({19, 19, 27, 11, 12, 28, 28, 12});
    p.defesa_ksf = soma_dos_inversos({3, 3, 3, 3, 4, 4, 4, 4});
    p.posicao = soma_dos_termos({25.0 / 11, 50.0 * centro_em("e5")});
    p.mobilidade = 8;
    p.avanco = 4;
    espera(caixa(p, 4, 4, 4, 4), pretas_contadas());
}

TEST_F(WalkByHand, AQueenAndABishopAroundAPawnChain) {
    // White: Kg1, Qd1, Bb2, pawns c3 and f2. Black: Kg8, knight e5. Black to move, White being the engine.
    poe_folha("6k1/8/8/4n3/8/2P5/1B3P2/3Q2K1 w - - 0 1");
    poe_fase(cheio, forte);
    agresprxrei = 4;
    julga(brancas, pretas);
    plain::SideCounts b;
    b.posicao = soma_dos_termos({
        15.0,                                             // b2 off its first rank
        11.0,                                             // and on a long diagonal
        25.0, 25.0,                                       // c3 breaks through
        33.0,                                             // and is free
        5.0 * 4 / (9 + 49 + 2) + 10.0 * centro_em("d1"),  // d1
        25.0, 25.0, 33.0,                                 // f2
    });
    // b2: c3 own; c1; a1; a3. c3: d4, b4. d1: e1, f1, g1 own; c1, b1, a1; d2 to d8; e2 to h5; c2 to a4. f2: g3, e3.
    b.centro = soma_do_centroo({"c3", "c1", "a1", "a3", "d4", "b4", "e1", "f1", "g1", "c1", "b1", "a1", "d2", "d3",
                                "d4", "d5", "d6", "d7", "d8", "e2", "f3", "g4", "h5", "c2", "b3", "a4", "g3", "e3"});
    // To g8 and to g1.
    b.atack_ksf =
        soma_dos_inversos({16 + 25 + 2, 16 + 49 + 2, 36 + 49 + 2, 36 + 25 + 2, 9 + 16 + 2,  25 + 16 + 2, 4 + 49 + 2,
                           1 + 49 + 2,  49 + 2,      16 + 49 + 2, 25 + 49 + 2, 36 + 49 + 2, 9 + 36 + 2,  9 + 25 + 2,
                           9 + 16 + 2,  9 + 9 + 2,   9 + 4 + 2,   9 + 1 + 2,   9 + 2,       4 + 36 + 2,  1 + 25 + 2,
                           16 + 2,      1 + 9 + 2,   16 + 36 + 2, 25 + 25 + 2, 36 + 16 + 2, 25 + 2,      4 + 25 + 2});
    b.defesa_ksf =
        soma_dos_inversos({16 + 4 + 2, 16 + 2,     36 + 2,     36 + 4 + 2, 9 + 9 + 2,  25 + 9 + 2, 4 + 2,
                           1 + 2,      2,          16 + 2,     25 + 2,     36 + 2,     9 + 1 + 2,  9 + 4 + 2,
                           9 + 9 + 2,  9 + 16 + 2, 9 + 25 + 2, 9 + 36 + 2, 9 + 49 + 2, 4 + 1 + 2,  1 + 4 + 2,
                           9 + 2,      1 + 16 + 2, 16 + 1 + 2, 25 + 4 + 2, 36 + 9 + 2, 4 + 2,      4 + 4 + 2});
    b.mobilidade = 3 + 1 + (2 + 3 + 7 + 4 + 3) + 2;
    b.apoios = 1 + 1;
    b.pecas = 2;
    b.pontos = 12;
    b.peoes = 2;
    b.abrigo = 1;
    b.avanco = 2 + 3 + 1 + 2 + 1;
    espera(caixa(b, 2, 6, 0, 2), brancas_contadas());
    plain::SideCounts p;
    p.posicao = soma_dos_termos({15.0, 5.0 * 1 / (4 + 16 + 2) + 25.0 * centro_em("e5")});
    // g6, g4, c4, c6, d7, f7, f3, d3.
    p.centro = soma_do_centroo({"g6", "g4", "c4", "c6", "d7", "f7", "f3", "d3"});
    p.atack_ksf =
        soma_dos_inversos({25 + 2, 9 + 2, 16 + 9 + 2, 16 + 25 + 2, 9 + 36 + 2, 1 + 36 + 2, 1 + 4 + 2, 9 + 4 + 2});
    p.defesa_ksf =
        soma_dos_inversos({4 + 2, 16 + 2, 16 + 16 + 2, 16 + 4 + 2, 9 + 1 + 2, 1 + 1 + 2, 1 + 25 + 2, 9 + 25 + 2});
    p.mobilidade = 8;
    p.pecas = 1;
    p.pontos = 3;
    p.avanco = 4 + 1;
    espera(caixa(p, 6, 6, 7, 7), pretas_contadas());
}

// A root move's walk differs from a leaf's in its mobility alone.
TEST_F(WalkByHand, RootMoveWithAPinnedRook) {
    poe_folha("4r2k/8/8/8/8/8/4R3/4K3 w - - 0 1");
    julga(brancas, pretas);
    const auto na_folha = contagem;
    valor_da_base(brancas);
    EXPECT_EQ(na_folha[brancas].mobilidade, 17);
    EXPECT_EQ(contagem[brancas].mobilidade, 10);
    EXPECT_EQ(na_folha[pretas].mobilidade, contagem[pretas].mobilidade);
    EXPECT_TRUE(mesmos_bits(na_folha[brancas].posicao, contagem[brancas].posicao));
    EXPECT_TRUE(mesmos_bits(na_folha[brancas].centro, contagem[brancas].centro));
    EXPECT_TRUE(mesmos_bits(na_folha[brancas].atack_ksf, contagem[brancas].atack_ksf));
    EXPECT_EQ(na_folha[brancas].alvos, contagem[brancas].alvos);
}

// The balance has neither positions nor sides.
TEST_F(WalkByHand, BalanceOfTheRoot) {
    coloca_fen("8/8/8/4k3/8/8/4P3/4K3 w - - 0 1");
    plain::SideCounts b;
    b.centro = soma_do_centroo({"f1", "d1", "e2", "f2", "d2"});
    b.atack_ksf = soma_dos_inversos({19, 19, 11, 12, 12});
    b.defesa_ksf = soma_dos_inversos({3, 3, 3, 4, 4});
    b.mobilidade = 4 + 2;
    b.peoes = 1;
    b.avanco = 3;
    EXPECT_TRUE(mesmos_bits(b.centro, contagem[brancas].centro));
    EXPECT_TRUE(mesmos_bits(b.atack_ksf, contagem[brancas].atack_ksf));
    EXPECT_TRUE(mesmos_bits(b.defesa_ksf, contagem[brancas].defesa_ksf));
    EXPECT_EQ(contagem[brancas].mobilidade, b.mobilidade);
    EXPECT_EQ(contagem[brancas].peoes, b.peoes);
    EXPECT_EQ(contagem[brancas].avanco, b.avanco);
    EXPECT_EQ(contagem[brancas].caixa(), 2);
    EXPECT_EQ(contagem[pretas].mobilidade, 8);
}

}  // namespace
