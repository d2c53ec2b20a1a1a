// The base value of a root move: one hundredth of the judgement right after it, with true mobility.
#include "support/evaluation.h"

#include "eval/leaf.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using namespace ondrel;
using namespace tests;

constexpr float strong = 320.0F;

class BaseValue : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }

    static void place_board(std::string_view field) {
        place_leaf(std::string(field) + " w - - 0 1");
        set_phase(20, strong);
        root.regimen = 0;
    }
    static float base_value_of(std::string_view field, Colour own = white) {
        place_board(field);
        return judge_root_move(own);
    }
};

// Bare kings at home: the advance alone.
constexpr std::string_view kings = "4k3/8/8/8/8/4K3/8/8";

TEST_F(BaseValue, IsOneHundredthOfTheJudgement) {
    EXPECT_NEAR(base_value_of(kings, white), 0.01 * (3.1 - 1.1), 1e-7);
    EXPECT_NEAR(base_value_of(kings, black), 0.01 * (1.1 - 3.1), 1e-7);
}

TEST_F(BaseValue, DoesNotAddUp) {
    place_board(kings);
    judgement.extraevalll = 10;
    EXPECT_NEAR(judge_root_move(white), 0.02, 1e-7);
    EXPECT_NEAR(judge_root_move(white), 0.02, 1e-7);
}

// White's knight a1 attacks c2 and b3.
constexpr std::string_view knight_up = "7k/8/8/8/8/8/8/N6K";
constexpr double advance_and_pawns = (1 + 1 + 0.1) / 2 + 1 - 1.1 - 1;

TEST_F(BaseValue, HasTheTermsOfALeaf) {
    options.MOB = 0;
    options.PM = 0;
    const double points = 2 * std::log(13.1 / 10.1);
    const double defence = 5 * std::log((1.0 / 28 + 1.0 / 42 + 3) / 3);
    const double attack = 5 * std::log((2.0 / 63 + 3) / 3);
    const double s = advance_and_pawns + points + defence + attack;
    EXPECT_NEAR(base_value_of(knight_up), 0.01 * s, 1e-7);
    EXPECT_NEAR(base_value_of(knight_up, black), -0.01 * s, 1e-7);
    options.MOB = 5;
    EXPECT_NEAR(base_value_of(knight_up), 0.01 * (s + 5 * std::log(5.0 / 3)), 1e-7);
    options.MOB = 0;
    options.PM = 5;
    const double positional = 5.0 / 100 + 25 / 26.5 + 2 * 50 / 10.5;
    EXPECT_NEAR(base_value_of(knight_up), 0.01 * (s + 5 * std::log((positional + 10.1) / 10.1)), 1e-7);
}

TEST_F(BaseValue, CountsCastlingOfTheLine) {
    const float without = base_value_of(kings);
    pass.roque = {1, 0};
    EXPECT_NEAR(judge_root_move(white) - without, 0.01 * 3 * std::log(4.0 / 3), 1e-7);
    pass.roque = {0, 2};
    EXPECT_NEAR(judge_root_move(white) - without, 0.01 * 3 * std::log(3.0 / 5), 1e-7);
    pass.roque = {0, 0};
    options.roque_v = 10;
    EXPECT_TRUE(same_bits(judge_root_move(white), without));
}

TEST_F(BaseValue, ScalesKingProximityOfTheMover) {
    options.MOB = 0;
    place_board(knight_up);
    root.npecas = {5, 5};
    options.agresprxrei = 9;
    judge_root_move(white);
    EXPECT_NEAR(counted[white].posicao, 15 * 9.0 / 100 + 10 / 26.5, 1e-5);
    judge_root_move(black);
    EXPECT_NEAR(counted[white].posicao, 15 * 1.0 / 100 + 10 / 26.5, 1e-5);
}

// White's rooks hit one man and support three times; Black's pawn does neither.
constexpr std::string_view rooks = "7k/8/8/3p4/8/8/8/R2R3K";

// The terms in the balance ride with their own weights, not one hundredth of them.
TEST_F(BaseValue, HitsOfTheMoverWeighOneHundredthOfTheBalance) {
    const float without = base_value_of(rooks);
    root.regimen = 50;
    EXPECT_NEAR(judge_root_move(white) - without, 0.01 * 50 * std::log(4.0 / 6), 1e-6);
}

TEST_F(BaseValue, HitsOfTheOpponentWeighOneThousandth) {
    const float without = base_value_of(rooks, black);
    root.regimen = 50;
    EXPECT_NEAR(judge_root_move(black) - without, 0.001 * 50 * std::log(4.0 / 6), 1e-6);
}

// The opponent is to move after a root move: it has the value terms.
TEST_F(BaseValue, GivesTheValueTermsToTheOpponent) {
    constexpr std::string_view field = "7k/8/8/8/8/1q6/8/N6K";
    base_value_of(field, white);
    const float quiet = counted[white].posicao;
    base_value_of(field, black);
    EXPECT_NEAR(counted[white].posicao - quiet, 58, 1e-4);
}

TEST_F(BaseValue, GivesTheHeldPawnsTermToTheMover) {
    constexpr std::string_view field = "7k/8/8/5b2/4P3/3P4/8/K7";
    options.agres = 3;
    base_value_of(field, white);
    const float held = counted[white].posicao;
    base_value_of(field, black);
    EXPECT_NEAR(counted[white].posicao - held, (3 * 33 - 10) - 16, 1e-4);
}

// A pinned knight has no move at all here, and two at a leaf; a push and a capture of a pinned pawn likewise.
TEST_F(BaseValue, CountsLegalMovesOnly) {
    const auto moves = [](std::string_view field) {
        place_board(field);
        judge(white, black);
        const int at_a_leaf = counted[white].mobilidade;
        judge_root_move(white);
        return std::pair{at_a_leaf, counted[white].mobilidade};
    };
    EXPECT_EQ(moves("r6k/8/8/8/8/8/N7/K7"), std::pair(3, 0));     // b4, c3, c1
    EXPECT_EQ(moves("7k/8/8/8/8/8/8/K1P4r"), std::pair(1, 0));    // a push
    EXPECT_EQ(moves("7k/8/8/8/8/8/KP5r/8"), std::pair(2, 0));     // a double push
    EXPECT_EQ(moves("7k/8/8/8/8/1p6/K1P4r/8"), std::pair(3, 0));  // a capture too: here nothing helps
    EXPECT_EQ(moves("7k/8/8/8/4b3/3P4/2K5/8"), std::pair(2, 1));  // the pinned pawn may take the pinner
    EXPECT_EQ(moves("7k/8/8/8/8/8/8/K1B4r"), std::pair(7, 0));    // a bishop on a rank
}

TEST_F(BaseValue, CountsLegalMovesOfTheOpponentToo) {
    place_board("k7/n7/8/8/8/8/8/R6K");
    judge_root_move(white);
    EXPECT_EQ(counted[black].mobilidade, 0);
    judge_root_move(black);
    EXPECT_EQ(counted[black].mobilidade, 0);
    judge(white, black);
    EXPECT_EQ(counted[black].mobilidade, 3);
}

// A side in check counts only what meets it.
TEST_F(BaseValue, CountsAnswersToACheckOnly) {
    place_board("7k/8/8/8/8/8/6PP/r5BK");
    // g2 and h2 keep the king in; the bishop is pinned, and the pawns' pushes are free.
    judge_root_move(black);
    EXPECT_EQ(counted[white].mobilidade, 4);
    change_leaf("7k/8/8/8/8/7B/6PP/r6K");
    // Only Bf1 would do, and g2 stands in its way: no move of bishop or pawn helps.
    judge_root_move(black);
    EXPECT_EQ(counted[white].mobilidade, 0);
}

TEST_F(BaseValue, MarksAndTargetsDoNotAskForLegality) {
    place_board("r6k/8/8/8/1p6/8/N7/K7");
    judge_root_move(white);
    EXPECT_EQ(counted[white].mobilidade, 0);
    EXPECT_EQ(counted[white].alvos, 1);
    EXPECT_TRUE(same_bits(counted[white].centro, sum_of_centroo({"c3", "c1", "b4"})));
}

// The whole: with the positional weight chosen so that the judgement is 100, every leaf has 1 more.
TEST_F(BaseValue, OfAHundredAddsOneToEveryLeaf) {
    options.MOB = 0;
    options.PM = 0;
    const double without = 100.0 * base_value_of(knight_up);
    const double positional = 5.0 / 100 + 25 / 26.5 + 2 * 50 / 10.5;
    options.PM = static_cast<float>((100.0 - without) / std::log((positional + 10.1) / 10.1));
    const float base = base_value_of(knight_up);
    EXPECT_NEAR(base, 1.0, 1e-5);
    options.PM = 0;
    change_leaf("7k/8/8/8/8/8/8/7K");
    judgement.extraevalll = 0;
    const float leaf_value = judge(white, white);
    judgement.extraevalll = base;
    EXPECT_NEAR(judge(white, white) - leaf_value, 1.0, 1e-5);
}

// It has no bound of its own.
TEST_F(BaseValue, IsNotBounded) {
    options.PM = 100000;
    EXPECT_GT(base_value_of(knight_up), 50.0F);
    EXPECT_LT(base_value_of(knight_up, black), -50.0F);
}

}  // namespace
