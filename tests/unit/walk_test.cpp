// The walk of the board: each of its terms alone, and whole walks worked out by hand to the last bit.
#include "support/evaluation.h"

#include "eval/tables.h"

#include <gtest/gtest.h>

namespace {

using namespace ondrel;
using namespace tests;

// Phases, by the men of both colours.
constexpr int many = 20;          // 15 and more: opening and middle game
constexpr int few = 14;           // 11 to 14
constexpr int very_few = 10;      // up to 10
constexpr float strong = 320.0F;  // the enemy's pieces keep the kings at home
constexpr float weak = 90.0F;     // kings come out

class Walk : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }

    // Judges the board in the given phase, for `own` with `stm` to move.
    static void walk_board(std::string_view field, int men, float major = strong, Colour own = white,
                           Colour stm = white) {
        place_leaf(std::string(field) + " w - - 0 1");
        set_phase(men, major);
        judge(own, stm);
    }
    static float posicao_of_white(std::string_view field, int men, float major = strong, Colour own = white,
                                  Colour stm = white) {
        walk_board(field, men, major, own, stm);
        return counted[white].posicao;
    }
    static float posicao_of_black(std::string_view field, int men, float major = strong, Colour own = white,
                                  Colour stm = white) {
        walk_board(field, men, major, own, stm);
        return counted[black].posicao;
    }
};

// --- Pieces by their squares ---

using PieceTerms = Walk;

TEST_F(PieceTerms, OffItsFirstRankGetsFifteen) {
    EXPECT_FLOAT_EQ(posicao_of_white("k7/8/8/8/8/8/2B5/7K", many), 15.0F);
    EXPECT_FLOAT_EQ(posicao_of_white("k7/8/8/8/8/8/8/2B4K", many), 0.0F);
    EXPECT_FLOAT_EQ(posicao_of_black("k1b5/8/8/8/8/8/8/7K", many), 0.0F);
    EXPECT_FLOAT_EQ(posicao_of_black("k7/2b5/8/8/8/8/8/7K", many), 15.0F);
    EXPECT_FLOAT_EQ(posicao_of_black("k7/8/8/8/8/8/8/2b4K", many), 15.0F);
}

TEST_F(PieceTerms, KnightOffItsFirstRankGetsFifteen) {
    const double in_the_corner = posicao_of_white("k7/8/8/8/8/8/8/6NK", many);
    EXPECT_NEAR(in_the_corner, 5.0 / (36 + 49 + 2) + 25 * centro_on("g1"), 1e-5);
    EXPECT_NEAR(posicao_of_white("k7/8/8/8/8/8/6N1/7K", many), 15 + 5.0 / (36 + 36 + 2) + 25 * centro_on("g2"), 1e-5);
}

TEST_F(PieceTerms, QueenOffItsFirstRankGetsFifteen) {
    EXPECT_NEAR(posicao_of_white("k7/8/8/8/8/8/8/3Q3K", many), 5.0 / (9 + 49 + 2) + 10 * centro_on("d1"), 1e-5);
    EXPECT_NEAR(posicao_of_white("k7/8/8/8/8/8/3Q4/7K", many), 15 + 5.0 / (9 + 36 + 2) + 10 * centro_on("d2"), 1e-5);
}

TEST_F(PieceTerms, RookOffTheEdgeFilesGetsFifteen) {
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/8/8/8/8/1R5K", many), 15.0F);
    EXPECT_FLOAT_EQ(posicao_of_white("k7/8/8/8/8/8/8/K5R1", many), 15.0F);
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/8/8/8/8/R6K", many), 0.0F);
    EXPECT_FLOAT_EQ(posicao_of_white("k7/8/8/8/8/8/8/K6R", many), 0.0F);
    // Its first rank is no matter.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/R7/8/8/8/7K", many), 0.0F);
}

TEST_F(PieceTerms, KnightWithFewMenLooksForTheKing) {
    EXPECT_NEAR(posicao_of_white("k7/8/8/8/4N3/8/8/7K", few), 15 + 15.0 / 34 + 10 * 0.4, 1e-5);
}

TEST_F(PieceTerms, KnightWithManyMenLooksForTheMiddle) {
    EXPECT_NEAR(posicao_of_white("k7/8/8/8/4N3/8/8/7K", 15), 15 + 5.0 / 34 + 25 * 0.4, 1e-5);
}

TEST_F(PieceTerms, BishopOnALongDiagonalWithManyMenGetsEleven) {
    EXPECT_FLOAT_EQ(posicao_of_white("6k1/8/8/8/3B4/8/8/K7", 15), 15.0F + 11.0F);
    EXPECT_FLOAT_EQ(posicao_of_white("1k6/8/8/8/4B3/8/8/7K", 15), 15.0F + 11.0F);
    EXPECT_FLOAT_EQ(posicao_of_white("k7/8/8/8/5B2/8/8/7K", 15), 15.0F);
}

TEST_F(PieceTerms, BishopOnALongDiagonalWithFewMenGetsFive) {
    EXPECT_FLOAT_EQ(posicao_of_white("6k1/8/8/8/3B4/8/8/K7", few), 15.0F + 5.0F);
    EXPECT_FLOAT_EQ(posicao_of_white("1k6/8/8/8/4B3/8/8/7K", few), 15.0F + 5.0F);
    EXPECT_FLOAT_EQ(posicao_of_white("k7/8/8/8/5B2/8/8/7K", few), 15.0F);
}

TEST_F(PieceTerms, RookWithFewMenLooksForTheKing) {
    EXPECT_NEAR(posicao_of_white("7k/8/8/8/8/8/8/R6K", few), 10.0 / (49 + 49 + 2), 1e-6);
    EXPECT_EQ(posicao_of_white("7k/8/8/8/8/8/8/R6K", 15), 0.0F);
}

TEST_F(PieceTerms, RookOnItsLastTwoRanksWithVeryFewMenGetsEleven) {
    EXPECT_NEAR(posicao_of_white("7k/R7/8/8/8/8/8/7K", very_few), 10.0 / (49 + 1 + 2) + 11, 1e-5);
    EXPECT_NEAR(posicao_of_white("R7/8/8/8/8/7k/8/7K", very_few), 10.0 / (49 + 25 + 2) + 11, 1e-5);
    EXPECT_NEAR(posicao_of_white("7k/8/R7/8/8/8/8/7K", very_few), 10.0 / (49 + 4 + 2), 1e-5);
    EXPECT_NEAR(posicao_of_white("7k/R7/8/8/8/8/8/7K", 11), 10.0 / (49 + 1 + 2), 1e-5);
    EXPECT_NEAR(posicao_of_black("7k/8/8/8/8/8/r7/7K", very_few), 10.0 / (49 + 1 + 2) + 11, 1e-5);
    EXPECT_NEAR(posicao_of_black("7k/8/8/8/8/7K/8/r7", very_few), 10.0 / (49 + 4 + 2) + 11, 1e-5);
    EXPECT_NEAR(posicao_of_black("7k/8/8/8/8/r7/8/7K", very_few), 10.0 / (49 + 4 + 2), 1e-5);
}

TEST_F(PieceTerms, QueenWithFewMenLooksForTheKing) {
    EXPECT_NEAR(posicao_of_white("k7/8/8/8/4Q3/8/8/6K1", few), 15 + 25.0 / 34 + 15 * 0.4, 1e-5);
}

TEST_F(PieceTerms, QueenWithManyMenLooksForBoth) {
    EXPECT_NEAR(posicao_of_white("k7/8/8/8/4Q3/8/8/6K1", 15), 15 + 5.0 / 34 + 10 * 0.4, 1e-5);
}

TEST_F(PieceTerms, ThePhaseIsTakenFromTheRoot) {
    // Two men on the board, but the root has many.
    walk_board("k7/8/8/8/3B4/8/8/7K", 30);
    EXPECT_FLOAT_EQ(counted[white].posicao, 26.0F);
    change_leaf("k7/pppppppp/8/8/3B4/8/PPPPPPPP/7K");
    set_phase(2, strong);
    judge(white, white);
    const float with_few = counted[white].posicao;
    set_phase(30, strong);
    judge(white, white);
    EXPECT_FLOAT_EQ(counted[white].posicao, with_few + 6.0F);
}

// --- The option Attack to King proximity ---

TEST_F(PieceTerms, NearnessToTheKingIsScaledForTheEnginesMenAlone) {
    constexpr std::string_view field = "k3n3/8/8/8/4N3/8/8/7K";
    options.agresprxrei = 3;
    walk_board(field, few, strong, white, white);
    EXPECT_NEAR(counted[white].posicao, 15 + 45.0 / 34 + 10 * 0.4, 1e-5);
    EXPECT_NEAR(counted[black].posicao, 15.0 / (9 + 49 + 2) + 10 * centro_on("e8"), 1e-5);
    walk_board(field, few, strong, black, white);
    EXPECT_NEAR(counted[white].posicao, 15 + 15.0 / 34 + 10 * 0.4, 1e-5);
    EXPECT_NEAR(counted[black].posicao, 45.0 / (9 + 49 + 2) + 10 * centro_on("e8"), 1e-5);
}

TEST_F(PieceTerms, AtZeroTheEnginesNearnessVanishesAndTheEnemysStays) {
    options.agresprxrei = 0;
    walk_board("k3n3/8/8/8/4N3/8/8/7K", few);
    EXPECT_NEAR(counted[white].posicao, 15 + 10 * 0.4, 1e-5);
    EXPECT_NEAR(counted[black].posicao, 15.0 / (9 + 49 + 2) + 10 * centro_on("e8"), 1e-5);
}

TEST_F(PieceTerms, EveryNearnessTermIsScaled) {
    options.agresprxrei = 0;
    EXPECT_NEAR(posicao_of_white("k7/8/8/8/4N3/8/8/7K", 15), 15 + 25 * 0.4, 1e-5);
    EXPECT_NEAR(posicao_of_white("7k/8/8/8/8/8/8/R6K", few), 0, 1e-6);
    EXPECT_NEAR(posicao_of_white("k7/8/8/8/4Q3/8/8/6K1", few), 15 + 15 * 0.4, 1e-5);
    EXPECT_NEAR(posicao_of_white("k7/8/8/8/4Q3/8/8/6K1", 15), 15 + 10 * 0.4, 1e-5);
}

// --- Attacks of the pieces ---

using AttackTerms = Walk;

TEST_F(AttackTerms, AnEmptySquareIsAMove) {
    walk_board("7k/8/8/8/8/8/8/N6K", many);
    EXPECT_EQ(counted[white].mobilidade, 2);
    EXPECT_EQ(counted[white].alvos, 0);
    EXPECT_EQ(counted[white].apoios, 0);
}

TEST_F(AttackTerms, AnEnemyManIsAMoveAndATarget) {
    walk_board("7k/8/8/8/8/1p6/8/N6K", many);
    EXPECT_EQ(counted[white].mobilidade, 2);
    EXPECT_EQ(counted[white].alvos, 1);
}

TEST_F(AttackTerms, AnOwnManIsSupportedAndNoMove) {
    walk_board("7k/8/8/8/8/1B6/8/N6K", many);
    // The bishop on b3: c4, d5, e6, f7, g8; c2, d1; a2; a4.
    EXPECT_EQ(counted[white].mobilidade, 1 + 9);
    EXPECT_EQ(counted[white].apoios, 1);
    EXPECT_EQ(counted[white].alvos, 0);
}

TEST_F(AttackTerms, ARayEndsOnTheFirstMan) {
    walk_board("7k/8/p7/p7/8/8/8/R2B3K", many);
    // The rook: a2, a3, a4, a5; b1, c1, d1. The bishop: c2, b3, a4; e2, f3, g4, h5.
    EXPECT_EQ(counted[white].mobilidade, 4 + 2 + 7);
    EXPECT_EQ(counted[white].alvos, 1);
    EXPECT_EQ(counted[white].apoios, 1);
}

TEST_F(AttackTerms, AQueenUsesAllEightRays) {
    walk_board("7k/8/8/8/3Q4/8/8/K7", many);
    EXPECT_EQ(counted[white].mobilidade, 7 + 7 + 6 + 7 - 1 + 0);
    // a1 to h8: own king at one end, the enemy's at the other.
    EXPECT_EQ(counted[white].alvos, 1);
    EXPECT_EQ(counted[white].apoios, 1);
}

// What the side to move wins by the exchange: the victim's worth less the attacker's.
class HitTerms : public Walk {
protected:
    // What the attack on the victim adds, beyond the same board with a black pawn on the victim's square.
    static float worth(std::string field, char victim, Colour own = white, Colour stm = white) {
        const std::size_t where = field.find('*');
        field[where] = victim;
        const float with = posicao_of_white(field, many, strong, own, stm);
        field[where] = 'p';
        return with - posicao_of_white(field, many, strong, own, stm);
    }
    static constexpr const char* knight_attacks = "7k/8/8/8/8/1*6/8/N6K";
    static constexpr const char* bishop_attacks = "7k/8/8/8/8/2*5/8/B6K";
    static constexpr const char* rook_attacks = "7k/8/8/8/8/*7/8/R6K";
    static constexpr const char* queen_attacks = "7k/8/8/8/8/*7/8/Q6K";
};

TEST_F(HitTerms, OfAKnightCountsWhatIsWorthMore) {
    EXPECT_NEAR(worth(knight_attacks, 'q'), 58, 1e-4);
    EXPECT_NEAR(worth(knight_attacks, 'r'), 18, 1e-4);
    EXPECT_NEAR(worth(knight_attacks, 'b'), 1, 1e-4);
    EXPECT_NEAR(worth(knight_attacks, 'k'), 78, 1e-4);
    EXPECT_NEAR(worth(knight_attacks, 'n'), 0, 1e-4);
}

TEST_F(HitTerms, OfABishopCountsWhatIsWorthMore) {
    EXPECT_NEAR(worth(bishop_attacks, 'q'), 57, 1e-4);
    EXPECT_NEAR(worth(bishop_attacks, 'r'), 17, 1e-4);
    EXPECT_NEAR(worth(bishop_attacks, 'b'), 0, 1e-4);
    EXPECT_NEAR(worth(bishop_attacks, 'n'), 0, 1e-4);
}

TEST_F(HitTerms, OfARookCountsWhatIsWorthMore) {
    EXPECT_NEAR(worth(rook_attacks, 'q'), 40, 1e-4);
    EXPECT_NEAR(worth(rook_attacks, 'r'), 0, 1e-4);
    EXPECT_NEAR(worth(rook_attacks, 'n'), 0, 1e-4);
}

TEST_F(HitTerms, OfAQueenCountsNothing) {
    for (const char victim : {'k', 'q', 'r', 'b', 'n'}) {
        EXPECT_NEAR(worth(queen_attacks, victim), 0, 1e-4) << victim;
    }
}

TEST_F(HitTerms, CountsForTheSideToMoveWhoeverTheEngineIs) {
    EXPECT_NEAR(worth(knight_attacks, 'q', white, white), 58, 1e-4);
    EXPECT_NEAR(worth(knight_attacks, 'q', black, white), 58, 1e-4);
    EXPECT_NEAR(worth(knight_attacks, 'q', white, black), 0, 1e-4);
    EXPECT_NEAR(worth(knight_attacks, 'q', black, black), 0, 1e-4);
}

// --- Batteries ---

using BatteryTerms = Walk;

TEST_F(BatteryTerms, RooksOnARankGetThreeEach) {
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/8/8/8/8/R2R3K", many), 15.0F + 3.0F + 3.0F);
}

TEST_F(BatteryTerms, RooksOnAFileGetFiveEach) {
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/R7/8/8/8/R6K", many), 5.0F + 5.0F);
}

TEST_F(BatteryTerms, ARookBehindTheQueenGetsItsOwnAndTheQueenOne) {
    const double queen_on_d1 = 5.0 / (16 + 49 + 2) + 10 * centro_on("d1");
    EXPECT_NEAR(posicao_of_white("7k/8/8/8/8/8/8/R2Q3K", many), queen_on_d1 + 3 + 1, 1e-5);
    const double queen_on_a5 = 15 + 5.0 / (49 + 9 + 2) + 10 * centro_on("a5");
    EXPECT_NEAR(posicao_of_white("7k/8/8/Q7/8/8/8/R6K", many), queen_on_a5 + 5 + 1, 1e-5);
}

TEST_F(BatteryTerms, QueensGetOneOnAnyRay) {
    const double on_a1 = 5.0 / (49 + 49 + 2) + 10 * centro_on("a1");
    const double on_d4 = 15 + 5.0 / (16 + 16 + 2) + 10 * 0.4;
    EXPECT_NEAR(posicao_of_white("7k/8/8/8/3Q4/8/8/Q6K", many), on_a1 + on_d4 + 2, 1e-5);
}

TEST_F(BatteryTerms, OnlyRooksAndQueensMakeOne) {
    // A bishop behind the queen; a rook behind a knight.
    const double queen_on_d4 = 15 + 5.0 / (16 + 16 + 2) + 10 * 0.4;
    EXPECT_NEAR(posicao_of_white("7k/8/8/8/3Q4/8/8/B6K", many), queen_on_d4 + 11, 1e-5);
    const double knight_on_a3 = 15 + 5.0 / (49 + 25 + 2) + 25 * centro_on("a3");
    EXPECT_NEAR(posicao_of_white("7k/8/8/8/8/N7/8/R6K", many), knight_on_a3, 1e-5);
}

TEST_F(BatteryTerms, AnEnemyRookMakesNone) { EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/r7/8/8/8/R6K", many), 0.0F); }

// --- Kings ---

using KingTerms = Walk;

TEST_F(KingTerms, CountsItsAdvanceAndItsBox) {
    walk_board("7k/8/8/8/8/2K5/8/8", many);
    EXPECT_EQ(counted[white].avanco, 3);
    EXPECT_EQ(counted[black].avanco, 1);
    EXPECT_EQ(counted[white].caixa(), 1);
    EXPECT_EQ(counted[white].pecas, 0);
    EXPECT_EQ(counted[white].pontos, 0);
    EXPECT_EQ(counted[white].peoes, 0);
}

TEST_F(KingTerms, ComesOutOnceTheEnemyHasAQueenOrLess) {
    EXPECT_NEAR(posicao_of_white("7k/8/8/8/3K4/8/8/8", few, weak), 50 * 0.4, 1e-5);
    EXPECT_EQ(posicao_of_white("7k/8/8/8/3K4/8/8/8", few, 90.5F), 0.0F);
}

TEST_F(KingTerms, LooksAtTheEnemysMaterialAlone) {
    place_leaf("7k/8/8/8/3K4/8/8/8 w - - 0 1");
    set_phase(few, strong);
    root.materialmaior = {320.0F, 90.0F};
    judge(white, white);
    EXPECT_NEAR(counted[white].posicao, 50 * 0.4, 1e-5);
    EXPECT_EQ(counted[black].posicao, 0.0F);
}

TEST_F(KingTerms, HuntsABareKing) {
    place_leaf("7k/8/8/8/3K4/8/8/8 w - - 0 1");
    root.materialmaior = {strong, strong};
    root.npecas = {14, 0};
    options.agresprxrei = 2;
    judge(white, white);
    EXPECT_NEAR(counted[white].posicao, 75 * 2.0 / (16 + 16 + 2), 1e-5);
    EXPECT_EQ(counted[black].posicao, 0.0F);
    root.npecas = {0, 14};
    judge(white, white);
    EXPECT_EQ(counted[white].posicao, 0.0F);
    EXPECT_NEAR(counted[black].posicao, 75 * 1.0 / (16 + 16 + 2), 1e-5);
}

TEST_F(KingTerms, MarksAndJudgesItsNeighboursOnceItComesOut) {
    walk_board("7k/8/8/8/8/8/1r6/KB6", few, weak);
    const SideCounters& b = counted[white];
    // b1 an own man, b2 an enemy rook, a2 empty; the bishop: c2 to h7, and a2.
    EXPECT_EQ(b.mobilidade, 2 + 7);
    EXPECT_EQ(b.alvos, 1);
    EXPECT_EQ(b.apoios, 1);
}

TEST_F(KingTerms, GetsNoTermForWhatItAttacks) {
    EXPECT_NEAR(posicao_of_white("7k/8/8/8/8/8/1q6/K7", few, weak), 50 * centro_on("a1"), 1e-5);
    EXPECT_NEAR(posicao_of_white("7k/8/8/8/8/8/8/KR6", many, weak), 50 * centro_on("a1") + 15, 1e-5);
}

TEST_F(KingTerms, AtHomeMarksNothing) {
    walk_board("7k/8/8/8/8/8/1r6/K7", few, 90.5F);
    EXPECT_EQ(counted[white].mobilidade, 0);
    EXPECT_EQ(counted[white].alvos, 0);
    EXPECT_EQ(counted[white].centro, 0.0F);
}

// --- Pawns ---

using PawnTerms = Walk;

// A lone pawn in the middle game has two ways to break through (25 each) and a free way (33).
constexpr float free_off_the_edge = 25 + 25 + 33;
// At the edge there is one way to break through.
constexpr float free_on_the_edge = 25 + 33;

TEST_F(PawnTerms, CountsItsAdvanceAndTheBox) {
    walk_board("7k/8/8/8/1P6/8/8/3K4", many);
    EXPECT_EQ(counted[white].peoes, 1);
    EXPECT_EQ(counted[white].avanco, 1 + 4);
    EXPECT_EQ(counted[white].caixa(), 3 * 4);
    EXPECT_EQ(counted[white].lowest_file, 1);
    EXPECT_EQ(counted[white].highest_file, 3);
    EXPECT_EQ(counted[white].lowest_rank, 0);
    EXPECT_EQ(counted[white].highest_rank, 3);
    EXPECT_EQ(counted[white].pecas, 0);
}

TEST_F(PawnTerms, PiecesDoNotWidenTheBox) {
    walk_board("7k/8/8/8/8/8/8/K6R", many);
    EXPECT_EQ(counted[white].caixa(), 1);
}

TEST_F(PawnTerms, SheltersTheKingFromThreeFilesAndThreeRanks) {
    const auto abrigo = [](std::string_view field) {
        walk_board(field, many);
        return counted[white].abrigo;
    };
    EXPECT_EQ(abrigo("7k/8/8/8/8/8/3PPP2/4K3"), 3);
    EXPECT_EQ(abrigo("7k/8/8/8/8/3PPP2/8/4K3"), 3);
    EXPECT_EQ(abrigo("7k/8/8/8/3PPP2/8/8/4K3"), 0);
    EXPECT_EQ(abrigo("7k/8/8/8/8/8/2P3P1/4K3"), 0);
    EXPECT_EQ(abrigo("7k/8/8/8/8/3PKP2/8/8"), 2);
    EXPECT_EQ(abrigo("7k/8/8/8/8/4K3/3PPP2/8"), 0);
}

TEST_F(PawnTerms, SheltersABlackKingFromBelow) {
    const auto abrigo = [](std::string_view field) {
        walk_board(field, many);
        return counted[black].abrigo;
    };
    EXPECT_EQ(abrigo("4k3/3ppp2/8/8/8/8/8/7K"), 3);
    EXPECT_EQ(abrigo("4k3/8/3ppp2/8/8/8/8/7K"), 3);
    EXPECT_EQ(abrigo("4k3/8/8/3ppp2/8/8/8/7K"), 0);
    EXPECT_EQ(abrigo("8/3ppp2/4k3/8/8/8/8/7K"), 0);
}

TEST_F(PawnTerms, ShelterIsSoughtWhereTheKingIsRemembered) {
    place_leaf("7k/8/8/8/8/8/5PPP/K7 w - - 0 1");
    set_phase(many, strong);
    trial.p_xy_R[white] = square_of("g1");
    judge(white, white);
    EXPECT_EQ(counted[white].abrigo, 3);
}

TEST_F(PawnTerms, MarksItsDiagonalsWhileTheEnemyIsStrong) {
    walk_board("7k/8/8/8/4P3/8/8/K7", many);
    EXPECT_TRUE(same_bits(counted[white].centro, sum_of_centroo({"f5", "d5"})));
    walk_board("7k/8/8/8/P7/8/8/K7", many);
    EXPECT_TRUE(same_bits(counted[white].centro, sum_of_centroo({"b5"})));
    walk_board("7k/8/8/4p3/8/8/8/K7", many);
    EXPECT_TRUE(same_bits(counted[black].centro, sum_of_centroo({"f4", "d4"})));
}

TEST_F(PawnTerms, NeitherSheltersNorMarksInTheEndGame) {
    walk_board("7k/8/8/8/8/8/1P6/K7", many, weak);
    EXPECT_EQ(counted[white].abrigo, 0);
    EXPECT_TRUE(same_bits(counted[white].centro, sum_of_centroo({"b1", "a2", "b2"})));  // the king's
}

TEST_F(PawnTerms, InTheEndGameIsWeighedByItsWayAndDrawsBothKings) {
    walk_board("7k/8/8/8/8/1P6/8/K7", many, weak);
    const double white_king = 50 * centro_on("a1");
    const double black_king = 50 * centro_on("h8");
    EXPECT_NEAR(counted[white].posicao, white_king + 100.0 / 52 + 25.0 / (1 + 4 + 2) + free_off_the_edge, 1e-4);
    EXPECT_NEAR(counted[black].posicao, black_king + 25.0 / (36 + 25 + 2), 1e-4);
}

TEST_F(PawnTerms, OfBlackInTheEndGameLikewise) {
    walk_board("7k/8/1p6/8/8/8/8/K7", many, weak);
    EXPECT_NEAR(counted[black].posicao, 50 * centro_on("h8") + 100.0 / 52 + 25.0 / (36 + 4 + 2) + free_off_the_edge,
                1e-4);
    EXPECT_NEAR(counted[white].posicao, 50 * centro_on("a1") + 25.0 / (1 + 25 + 2), 1e-4);
}

TEST_F(PawnTerms, AttackIsAMoveAndATarget) {
    walk_board("7k/8/8/3n1n2/4P3/8/8/K7", many);
    EXPECT_EQ(counted[white].alvos, 2);
    EXPECT_EQ(counted[white].mobilidade, 2 + 1);
}

TEST_F(PawnTerms, AttackOfTheSideToMoveIsWorthTheManLessTen) {
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/5n2/4P3/8/8/K7", many), free_off_the_edge + 22);
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/5q2/4P3/8/8/K7", many), free_off_the_edge + 80);
}

TEST_F(PawnTerms, AttackIsScaledByAggressiveness) {
    options.agres = 3;
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/5n2/4P3/8/8/K7", many), free_off_the_edge + 3 * 32 - 10);
    // Whoever the engine is.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/5n2/4P3/8/8/K7", many, strong, black, white),
                    free_off_the_edge + 3 * 32 - 10);
}

TEST_F(PawnTerms, AttackCostsTenAtNoAggressiveness) {
    options.agres = 0;
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/5q2/4P3/8/8/K7", many), free_off_the_edge - 10);
}

TEST_F(PawnTerms, AttackOnAPawnIsWorthNothingAtOneAggressiveness) {
    // Both pawns are blocked by each other's files: f5 stops e4's way, and the exchange frees neither.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/5p2/4P3/8/8/K7", many), 25.0F);
    options.agres = 2;
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/5p2/4P3/8/8/K7", many), 25.0F + 10.0F);
}

// Out of turn an attack holds only if the pawn itself is held.
TEST_F(PawnTerms, HeldPawnAttackingOutOfTurnGetsHalfTheMan) {
    // d3 holds e4: its own terms are the break-through to the left, the support, the company and the free way.
    constexpr float d3_with_e4 = 11 + 25 + 10 + 33;
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/8/4P3/3P4/8/K7", many, strong, white, black),
                    free_off_the_edge + d3_with_e4);
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/5b2/4P3/3P4/8/K7", many, strong, white, black),
                    free_off_the_edge + d3_with_e4 + 16);
    // From the other side, and once for each man attacked.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/3r1b2/4P3/5P2/8/K7", many, strong, white, black),
                    free_off_the_edge + d3_with_e4 + 16 + 25);
    // Held twice is held once.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/5b2/4P3/3P1P2/8/K7", many, strong, white, black) -
                        posicao_of_white("7k/8/8/8/4P3/3P1P2/8/K7", many, strong, white, black),
                    16.0F);
}

TEST_F(PawnTerms, HeldPawnAttackingOutOfTurnCountsForTheEngineAndItsEnemyAlike) {
    const float with = posicao_of_white("7k/8/8/5b2/4P3/3P4/8/K7", many, strong, black, black);
    EXPECT_FLOAT_EQ(with, free_off_the_edge + 11 + 25 + 10 + 33 + 16);
}

TEST_F(PawnTerms, LoosePawnAttackingOutOfTurnGetsNothing) {
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/5b2/4P3/8/8/K7", many, strong, white, black), free_off_the_edge);
    // A piece behind it does not hold it so.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/5b2/4P3/3B4/8/K7", many, strong, white, black), free_off_the_edge + 15);
}

TEST_F(PawnTerms, HeldPawnAttackingAPawnOutOfTurnGetsNothing) {
    // What d3 brings along: its support 11, its break to the left, 10 for passing e4 and 33 for its free way.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/5p2/4P3/3P4/8/K7", many, strong, white, black) -
                        posicao_of_white("7k/8/8/5p2/4P3/8/8/K7", many, strong, white, black),
                    11.0F + 25.0F + 10.0F + 33.0F);
}

TEST_F(PawnTerms, PushIsAMoveWhereTheSquareIsEmpty) {
    const auto moves = [](std::string_view field) {
        walk_board(field, many);
        return counted[white].mobilidade;
    };
    EXPECT_EQ(moves("7k/8/8/8/4P3/8/8/K7"), 1);
    EXPECT_EQ(moves("7k/8/8/4n3/4P3/8/8/K7"), 0);
    EXPECT_EQ(moves("7k/8/8/8/8/8/4P3/K7"), 2);
    EXPECT_EQ(moves("7k/8/8/8/4n3/8/4P3/K7"), 1);
    EXPECT_EQ(moves("7k/8/8/8/8/4n3/4P3/K7"), 0);
    EXPECT_EQ(moves("7k/4P3/8/8/8/8/8/K7"), 1);
}

TEST_F(PawnTerms, OfBlackPushesDownward) {
    const auto moves = [](std::string_view field) {
        walk_board(field, many);
        return counted[black].mobilidade;
    };
    EXPECT_EQ(moves("k7/4p3/8/8/8/8/8/7K"), 2);
    EXPECT_EQ(moves("k7/8/4p3/8/8/8/8/7K"), 1);
    EXPECT_EQ(moves("k7/4p3/8/4N3/8/8/8/7K"), 1);
}

TEST_F(PawnTerms, SupportsWhatStandsOnItsDiagonals) {
    walk_board("7k/8/8/3N1N2/4P3/8/8/K7", many);
    EXPECT_EQ(counted[white].apoios, 2);
    walk_board("7k/8/8/3N4/4P3/8/8/K7", many);
    EXPECT_EQ(counted[white].apoios, 1);
    walk_board("7k/8/8/8/4P3/3P4/8/K7", many);
    EXPECT_EQ(counted[white].apoios, 1);
}

TEST_F(PawnTerms, OnItsSeventhRankGetsAHundredAndNothingForItsWay) {
    EXPECT_FLOAT_EQ(posicao_of_white("7k/4P3/8/8/8/8/8/K7", many), 100.0F);
    EXPECT_FLOAT_EQ(posicao_of_black("7k/8/8/8/8/8/4p3/K7", many), 100.0F);
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/4P3/8/8/8/8/K7", many), 33.0F);
}

TEST_F(PawnTerms, BesideAnotherGetsThirteen) {
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/8/3PP3/8/8/K7", many), 2 * (free_off_the_edge + 13));
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/8/2PPP3/8/8/K7", many), 3 * free_off_the_edge + 4 * 13);
    // Not with an enemy's, nor across a file.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/8/2P1P3/8/8/K7", many), 2 * free_off_the_edge);
}

TEST_F(PawnTerms, SupportingAnotherGetsEleven) {
    // e4: break to the left, support, a step beside f5, the end; f5 is alone on its way.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/5P2/4P3/8/8/K7", many), (25 + 11 + 10 + 33) + free_off_the_edge);
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/3P4/4P3/8/8/K7", many), (25 + 11 + 10 + 33) + free_off_the_edge);
}

// --- The break-through by a capture ---

using BreakThroughTerms = Walk;

// One break-through alone: a pawn one rank ahead bars the free way, but the break-through looks from two ranks ahead.
constexpr float breakthrough = 25;

TEST_F(BreakThroughTerms, NeedsTheOwnFileAndTheFileBeyondClean) {
    // Blocked at once by e5, which the break-through does not look at.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/4p3/4P3/8/8/K7", many), 2 * breakthrough);
    // A pawn on the own file closes both sides.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/4p3/8/8/4P3/8/8/K7", many), 0.0F);
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/4p3/8/4P3/8/8/K7", many), 0.0F);
    // One on the file beyond closes its side.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/6p1/8/8/4P3/8/8/K7", many), breakthrough + 33);
    EXPECT_FLOAT_EQ(posicao_of_white("7k/2p5/8/8/4P3/8/8/K7", many), breakthrough + 33);
    EXPECT_FLOAT_EQ(posicao_of_white("7k/2p3p1/8/8/4P3/8/8/K7", many), 33.0F);
    // One beside it on the file beyond, no longer ahead, closes nothing.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/6p1/4P3/8/8/K7", many), free_off_the_edge);
}

TEST_F(BreakThroughTerms, PassesThePawnThatItCaptures) {
    // A pawn on the neighbouring file ends the free way, not the break-through.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/5p2/8/8/4P3/8/8/K7", many), 2 * breakthrough);
}

TEST_F(BreakThroughTerms, DoesNotStartFromASquareWithAPawn) {
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/5p2/4P3/8/8/K7", many), breakthrough);
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/3p1p2/4P3/8/8/K7", many), 0.0F);
    // A piece there is no hindrance.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/5n2/4P3/8/8/K7", many, strong, white, black), free_off_the_edge);
}

TEST_F(BreakThroughTerms, AtTheEdgeLooksAtTheOwnFileAlone) {
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/8/P7/8/8/K7", many), free_on_the_edge);
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/8/1P6/8/8/K7", many), free_off_the_edge);
    EXPECT_FLOAT_EQ(posicao_of_white("k7/8/8/8/7P/8/8/K7", many), free_on_the_edge);
}

TEST_F(BreakThroughTerms, EndsWithTheFifthRank) {
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/4P3/8/8/8/K7", many), free_off_the_edge);
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/4P3/8/8/8/8/K7", many), 33.0F);
}

TEST_F(BreakThroughTerms, OfBlackLooksDownward) {
    EXPECT_FLOAT_EQ(posicao_of_black("7k/8/8/4p3/4P3/8/8/K7", many), 2 * breakthrough);
    EXPECT_FLOAT_EQ(posicao_of_black("7k/8/8/4p3/8/8/6P1/K7", many), breakthrough + 33);
    EXPECT_FLOAT_EQ(posicao_of_black("7k/8/8/4p3/8/8/4P3/K7", many), 0.0F);
}

// --- The free way ---

using PassedPawnTerms = Walk;

TEST_F(PassedPawnTerms, IsStoppedByAnEnemyPawnOnANeighbouringFile) {
    EXPECT_FLOAT_EQ(posicao_of_white("7k/3p4/8/8/4P3/8/8/K7", many), 2 * breakthrough);
    EXPECT_FLOAT_EQ(posicao_of_white("7k/5p2/8/8/4P3/8/8/K7", many), 2 * breakthrough);
    EXPECT_FLOAT_EQ(posicao_of_white("7k/p7/8/8/1P6/8/8/K7", many), 2 * breakthrough);
    // Not by one beside it, or behind.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/8/3pP3/8/8/K7", many), free_off_the_edge);
}

TEST_F(PassedPawnTerms, IsStoppedByAnEnemyPawnOnItsFile) {
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/4p3/4P3/8/8/K7", many), 2 * breakthrough);
    EXPECT_FLOAT_EQ(posicao_of_white("7k/4p3/8/8/4P3/8/8/K7", many), 0.0F);
}

TEST_F(PassedPawnTerms, IsStoppedByAnOwnPawnAhead) {
    // The one behind breaks through on both sides and goes no farther.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/4P3/8/4P3/8/8/K7", many), 2 * breakthrough + 33);
}

TEST_F(PassedPawnTerms, IsNotStoppedByPieces) {
    EXPECT_FLOAT_EQ(posicao_of_white("7k/3nnn2/8/8/4P3/8/8/K7", many), free_off_the_edge);
}

TEST_F(PassedPawnTerms, GetsTenForEveryOwnPawnThatItPasses) {
    // d5 and f6 beside the way of e4; e4 also supports d5, whose square bars the break to the left.
    const float e4 = 11 + breakthrough + 10 + 10 + 33;
    const float d5 = free_off_the_edge;  // f6 is two files off
    const float f6 = 33;
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/5P2/3P4/4P3/8/8/K7", many), e4 + d5 + f6);
}

TEST_F(PassedPawnTerms, KeepsWhatItGotBeforeItIsStopped) {
    // e4 passes d5 (10) and is stopped by f7; e4's breaks: none to the left (d5), to the right clean.
    const float e4 = 11 + breakthrough + 10;
    // d5: company on e-file is behind; f7 closes the break to the right; the free way is clean.
    const float d5 = breakthrough + 33;
    EXPECT_FLOAT_EQ(posicao_of_white("7k/5p2/8/3P4/4P3/8/8/K7", many), e4 + d5);
}

// At one rank all tests that stop come before the tens.
TEST_F(PassedPawnTerms, StopsBeforeItCountsTheSameRank) {
    // On the rank ahead of e4 an own pawn on d5 and an enemy's on f5: nothing for d5.
    const float e4 = 11;
    const float d5 = free_off_the_edge;
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/3P1p2/4P3/8/8/K7", many), e4 + d5);
    // The other way round.
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/8/3p1P2/4P3/8/8/K7", many), 11 + free_off_the_edge);
}

TEST_F(PassedPawnTerms, GetsThirtyThreeAtTheEndOnly) {
    EXPECT_FLOAT_EQ(posicao_of_white("7k/8/4P3/8/8/8/8/K7", many), 33.0F);
    EXPECT_FLOAT_EQ(posicao_of_white("7k/5p2/4P3/8/8/8/8/K7", many), 0.0F);
    EXPECT_FLOAT_EQ(posicao_of_white("5p1k/8/4P3/8/8/8/8/K7", many), 33.0F);
}

// --- Whole walks, worked out by hand ---

class WalkByHand : public Walk {
protected:
    // What was counted last, the leaf on tab2 having been judged with `stm` to move.
    static void expect_counts(Colour stm, const SideCounters& white_side, const SideCounters& black_side) {
        const Counters expected{white_side, black_side};
        EXPECT_TRUE(counts_like(expected, counted));
        EXPECT_TRUE(counts_like(expected, count_all_of_leaf(white, stm)));
    }
    static SideCounters with_box(SideCounters s, int lowest_file, int highest_file, int lowest_rank, int highest_rank) {
        s.lowest_file = lowest_file;
        s.highest_file = highest_file;
        s.lowest_rank = lowest_rank;
        s.highest_rank = highest_rank;
        return s;
    }
};

TEST_F(WalkByHand, AKnightInTheCorner) {
    walk_board("7k/8/8/8/8/8/8/N6K", few);
    SideCounters w;
    // The knight attacks c2 before b3.
    w.centro = sum_of_centroo({"c2", "b3"});
    w.atack_ksf = sum_of_inverses({25 + 36 + 2, 36 + 25 + 2});
    w.defesa_ksf = sum_of_inverses({25 + 1 + 2, 36 + 4 + 2});
    w.posicao = sum_of_terms({15.0 / 100 + 10.0 * centro_on("a1")});
    w.mobilidade = 2;
    w.pecas = 1;
    w.pontos = 3;
    w.avanco = 2;
    w = with_box(w, 7, 7, 0, 0);
    SideCounters b;
    b.avanco = 1;
    expect_counts(white, w, with_box(b, 7, 7, 7, 7));
}

TEST_F(WalkByHand, TwoRooksAgainstAPawn) {
    walk_board("7k/8/8/3p4/8/8/8/R2R3K", many);
    SideCounters w;
    // a1: along the rank to the other rook, then up the file. d1: to the own king, back to a1, up to the pawn.
    w.centro = sum_of_centroo({"b1", "c1", "d1", "a2", "a3", "a4", "a5", "a6", "a7", "a8", "e1",
                               "f1", "g1", "h1", "c1", "b1", "a1", "d2", "d3", "d4", "d5"});
    w.atack_ksf =
        sum_of_inverses({87, 76, 67, 87, 76, 67, 60, 55, 52, 51, 60, 55, 52, 51, 76, 87, 100, 54, 43, 34, 27});
    w.defesa_ksf = sum_of_inverses({38, 27, 18, 52, 55, 60, 67, 76, 87, 100, 11, 6, 3, 2, 27, 38, 51, 19, 22, 27, 34});
    w.posicao = 3 + 15 + 3;
    w.mobilidade = 18;
    w.alvos = 1;
    w.apoios = 3;
    w.pecas = 2;
    w.pontos = 10;
    w.avanco = 3;
    w = with_box(w, 7, 7, 0, 0);
    SideCounters b;
    b.centro = sum_of_centroo({"e4", "c4"});
    b.atack_ksf = sum_of_inverses({9 + 9 + 2, 25 + 9 + 2});
    b.defesa_ksf = sum_of_inverses({9 + 16 + 2, 25 + 16 + 2});
    b.posicao = 25 + 25 + 33;
    b.mobilidade = 1;
    b.peoes = 1;
    b.avanco = 4 + 1;
    expect_counts(white, w, with_box(b, 3, 7, 4, 7));
}

TEST_F(WalkByHand, KingAndPawnAgainstABareKing) {
    options.agresprxrei = 2;
    place_leaf("8/8/8/4k3/8/8/4P3/4K3 w - - 0 1");
    judge(white, white);
    SideCounters w;
    w.centro = sum_of_centroo({"f1", "d1", "e2", "f2", "d2"});
    w.atack_ksf = sum_of_inverses({19, 19, 11, 12, 12});
    w.defesa_ksf = sum_of_inverses({3, 3, 3, 4, 4});
    w.posicao = sum_of_terms({50.0 * centro_on("e1"), 75.0 * 2 / 18,
                              100.0 * static_cast<double>(static_cast<float>(1.0 / 74)) + 25.0 / 3, 25, 25, 33});
    w.mobilidade = 4 + 2;
    w.apoios = 1;
    w.peoes = 1;
    w.avanco = 3;
    w = with_box(w, 4, 4, 0, 1);
    SideCounters b;
    b.centro = sum_of_centroo({"f5", "d5", "e6", "e4", "d4", "f6", "d6", "f4"});
    b.atack_ksf = sum_of_inverses({19, 19, 27, 11, 12, 28, 28, 12});
    b.defesa_ksf = sum_of_inverses({3, 3, 3, 3, 4, 4, 4, 4});
    b.posicao = sum_of_terms({25.0 / 11, 50.0 * centro_on("e5")});
    b.mobilidade = 8;
    b.avanco = 4;
    expect_counts(white, w, with_box(b, 4, 4, 4, 4));
}

TEST_F(WalkByHand, AQueenAndABishopAroundAPawnChain) {
    // White: Kg1, Qd1, Bb2, pawns c3 and f2. Black: Kg8, knight e5. Black to move, White being the engine.
    place_leaf("6k1/8/8/4n3/8/2P5/1B3P2/3Q2K1 w - - 0 1");
    set_phase(many, strong);
    options.agresprxrei = 4;
    judge(white, black);
    SideCounters w;
    w.posicao = sum_of_terms({
        15.0,                                             // b2 off its first rank
        11.0,                                             // and on a long diagonal
        25.0, 25.0,                                       // c3 breaks through
        33.0,                                             // and is free
        5.0 * 4 / (9 + 49 + 2) + 10.0 * centro_on("d1"),  // d1
        25.0, 25.0, 33.0,                                 // f2
    });
    // b2: c3 own; c1; a1; a3. c3: d4, b4. d1: e1, f1, g1 own; c1, b1, a1; d2 to d8; e2 to h5; c2 to a4. f2: g3, e3.
    w.centro = sum_of_centroo({"c3", "c1", "a1", "a3", "d4", "b4", "e1", "f1", "g1", "c1", "b1", "a1", "d2", "d3",
                               "d4", "d5", "d6", "d7", "d8", "e2", "f3", "g4", "h5", "c2", "b3", "a4", "g3", "e3"});
    // To g8 and to g1.
    w.atack_ksf =
        sum_of_inverses({16 + 25 + 2, 16 + 49 + 2, 36 + 49 + 2, 36 + 25 + 2, 9 + 16 + 2,  25 + 16 + 2, 4 + 49 + 2,
                         1 + 49 + 2,  49 + 2,      16 + 49 + 2, 25 + 49 + 2, 36 + 49 + 2, 9 + 36 + 2,  9 + 25 + 2,
                         9 + 16 + 2,  9 + 9 + 2,   9 + 4 + 2,   9 + 1 + 2,   9 + 2,       4 + 36 + 2,  1 + 25 + 2,
                         16 + 2,      1 + 9 + 2,   16 + 36 + 2, 25 + 25 + 2, 36 + 16 + 2, 25 + 2,      4 + 25 + 2});
    w.defesa_ksf = sum_of_inverses({16 + 4 + 2, 16 + 2,     36 + 2,     36 + 4 + 2, 9 + 9 + 2,  25 + 9 + 2, 4 + 2,
                                    1 + 2,      2,          16 + 2,     25 + 2,     36 + 2,     9 + 1 + 2,  9 + 4 + 2,
                                    9 + 9 + 2,  9 + 16 + 2, 9 + 25 + 2, 9 + 36 + 2, 9 + 49 + 2, 4 + 1 + 2,  1 + 4 + 2,
                                    9 + 2,      1 + 16 + 2, 16 + 1 + 2, 25 + 4 + 2, 36 + 9 + 2, 4 + 2,      4 + 4 + 2});
    w.mobilidade = 3 + 1 + (2 + 3 + 7 + 4 + 3) + 2;
    w.apoios = 1 + 1;
    w.pecas = 2;
    w.pontos = 12;
    w.peoes = 2;
    w.abrigo = 1;
    w.avanco = 2 + 3 + 1 + 2 + 1;
    w = with_box(w, 2, 6, 0, 2);
    SideCounters b;
    b.posicao = sum_of_terms({15.0, 5.0 * 1 / (4 + 16 + 2) + 25.0 * centro_on("e5")});
    // g6, g4, c4, c6, d7, f7, f3, d3.
    b.centro = sum_of_centroo({"g6", "g4", "c4", "c6", "d7", "f7", "f3", "d3"});
    b.atack_ksf =
        sum_of_inverses({25 + 2, 9 + 2, 16 + 9 + 2, 16 + 25 + 2, 9 + 36 + 2, 1 + 36 + 2, 1 + 4 + 2, 9 + 4 + 2});
    b.defesa_ksf =
        sum_of_inverses({4 + 2, 16 + 2, 16 + 16 + 2, 16 + 4 + 2, 9 + 1 + 2, 1 + 1 + 2, 1 + 25 + 2, 9 + 25 + 2});
    b.mobilidade = 8;
    b.pecas = 1;
    b.pontos = 3;
    b.avanco = 4 + 1;
    expect_counts(black, w, with_box(b, 6, 6, 7, 7));
}

// A root move's walk differs from a leaf's in its mobility alone.
TEST_F(WalkByHand, RootMoveWithAPinnedRook) {
    place_leaf("4r2k/8/8/8/8/8/4R3/4K3 w - - 0 1");
    judge(white, black);
    const auto at_a_leaf = counted;
    judge_root_move(white);
    EXPECT_EQ(at_a_leaf[white].mobilidade, 17);
    EXPECT_EQ(counted[white].mobilidade, 10);
    EXPECT_EQ(at_a_leaf[black].mobilidade, counted[black].mobilidade);
    EXPECT_TRUE(same_bits(at_a_leaf[white].posicao, counted[white].posicao));
    EXPECT_TRUE(same_bits(at_a_leaf[white].centro, counted[white].centro));
    EXPECT_TRUE(same_bits(at_a_leaf[white].atack_ksf, counted[white].atack_ksf));
    EXPECT_EQ(at_a_leaf[white].alvos, counted[white].alvos);
}

// The balance has neither positions nor sides.
TEST_F(WalkByHand, BalanceOfTheRoot) {
    place_fen("8/8/8/4k3/8/8/4P3/4K3 w - - 0 1");
    const Counters found = count_root();
    SideCounters w;
    w.centro = sum_of_centroo({"f1", "d1", "e2", "f2", "d2"});
    w.atack_ksf = sum_of_inverses({19, 19, 11, 12, 12});
    w.defesa_ksf = sum_of_inverses({3, 3, 3, 4, 4});
    w.mobilidade = 4 + 2;
    w.apoios = 1;
    w.peoes = 1;
    w.avanco = 3;
    EXPECT_TRUE(counts_like(with_box(w, 4, 4, 0, 1), found[white]));
    EXPECT_EQ(found[black].mobilidade, 8);
    EXPECT_EQ(found[black].posicao, 0.0F);
}

}  // namespace
