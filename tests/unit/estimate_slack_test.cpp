// How far a bound must lie from an estimate before the estimate may stand for the judgement of a leaf: leaves whose value
// lies on the bound that decides, with an estimate on its other side.
#include "support/chess_rules.h"
#include "support/evaluation.h"
#include "support/plain_judge.h"

#include "eval/leaf.h"
#include "search/noted_leaves.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace ondrel;
using namespace tests;

constexpr float infinity = std::numeric_limits<float>::infinity();

float next_above(float x) { return std::nextafter(x, infinity); }
float next_below(float x) { return std::nextafter(x, -infinity); }

// A position at an odd ply and the reply that is the best there, the material and the root being the position's own; the
// value of the leaf behind it, and the float beside that on the side of the estimate.
struct SharpLeaf {
    const char* name;
    const char* fen;
    const char* move;
    float value;
    float bound;
};
void PrintTo(const SharpLeaf& x, std::ostream* os) { *os << x.fen << ' ' << x.move; }

// Leaves are alike at all the even plies that may be estimated.
constexpr std::array<int, 5> estimated_plies{6, 8, 10, 12, 24};

// Ply n - 1 with all bounds open and its replies as leaves. The test sets the bounds of the plies above.
void set_up_parent_of_leaf(int n, const std::string& fen) {
    set_up_ply(n - 1, fen);
    search.deep = pass.DEEP = n - 1;
    ply[n - 2].chain = start_of_beta;
    clear_counts();
}

class SharpLeafTest : public ::testing::TestWithParam<SharpLeaf> {
protected:
    void SetUp() override { fresh_process(); }
    // The leaf is judged, and its value is the exact one.
    static void expect_exact_value(int n) {
        const SharpLeaf& x = GetParam();
        EXPECT_TRUE(same_bits(search_node(n, move_from(x.move)), x.value)) << "ply " << n;
        EXPECT_EQ(times(Rule::judged_exactly), 1U) << "ply " << n;
    }
};

// --- The bound of the parent: what lies above it is not taken ---

class LeafBelowItsParentsBound : public SharpLeafTest {};

TEST_P(LeafBelowItsParentsBound, HasItsExactValue) {
    for (const int n : estimated_plies) {
        set_up_parent_of_leaf(n, GetParam().fen);
        bounds.beta[n - 1] = GetParam().bound;
        expect_exact_value(n);
    }
}

TEST_P(LeafBelowItsParentsBound, IsTaken) {
    set_up_parent_of_leaf(6, GetParam().fen);
    bounds.beta[5] = GetParam().bound;
    run_replies(5);
    EXPECT_TRUE(same_bits(bounds.beta[5], GetParam().value));
    EXPECT_EQ(ply[5].X_D, 0);  // a reply has improved the bound
}

// --- The bound of the grandparent: what lies below it ends the parent ---

class LeafAboveItsGrandparentsBound : public SharpLeafTest {};

TEST_P(LeafAboveItsGrandparentsBound, HasItsExactValue) {
    for (const int n : estimated_plies) {
        set_up_parent_of_leaf(n, GetParam().fen);
        bounds.alfa[n - 2] = GetParam().bound;
        expect_exact_value(n);
    }
}

TEST_P(LeafAboveItsGrandparentsBound, DoesNotEndItsParent) {
    set_up_parent_of_leaf(6, GetParam().fen);
    bounds.alfa[4] = GetParam().bound;
    run_replies(5);
    EXPECT_TRUE(same_bits(bounds.beta[5], GetParam().value));
    EXPECT_EQ(cut_flag_of(5), 0);
}

// Nor does it where a bound higher up would.
TEST_P(LeafAboveItsGrandparentsBound, DoesNotEndItsParentByABoundHigherUp) {
    set_up_parent_of_leaf(6, GetParam().fen);
    bounds.alfa[2] = GetParam().bound;
    run_replies(5);
    EXPECT_TRUE(same_bits(bounds.beta[5], GetParam().value));
    EXPECT_EQ(cut_flag_of(5), 0);
}

// clang-format off
constexpr std::array<SharpLeaf, 5> overestimated{{
    {"RookTakesAPawn",    "5B1q/7k/Bp4p1/r4N2/4p1P1/7K/8/1R6 w - - 0 1",                       "b1b6", -4.69527531F, -4.69527483F},
    {"KnightTakesAQueen", "2b3n1/3r2pr/4pp1p/p2Np2k/2pP1P1P/bB5q/R5R1/2B2KN1 w - - 0 1",       "g1h3",  5.40927887F,  5.40927935F},
    {"KingTakesAPawn",    "r3k2r/p4Ppp/1p3n2/2qp4/3Q4/5N2/P1P2PPP/R3R1K1 b kq - 0 1",          "e8f7",  3.5395875F,   3.53958774F},
    {"PawnPromotes",      "b5r1/3q2kP/2R5/3nr3/2p2p2/B2P3P/8/1B3K2 w - - 0 1",                 "h7g8",  1.15404618F,  1.1540463F},
    {"KingStepsAside",    "2rb2n1/5p2/1p1p4/p1pP1P2/1P6/P3B1KB/2k5/2R5 b - - 0 1",             "c2b3", -3.33156204F, -3.3315618F},
}};
constexpr std::array<SharpLeaf, 6> underestimated{{
    {"PawnTakesAQueen",   "rn2k1n1/2p1p1r1/p7/2P2ppp/3pQ1P1/2PPPP2/2N1N1bP/R2K1BR1 b - - 0 1", "f5e4",  3.86003089F,  3.86003065F},
    {"QueenTakesAPawn",   "2rq1bk1/p4p1p/1p4p1/3b4/3B1Q2/8/P4PpP/3RR1K1 w - - 0 1",            "f4f7",  2.04748678F,  2.04748654F},
    {"PawnTakesAPawn",    "rn4n1/qb3pbr/pp2kp1p/2Pp2pP/Q1P5/5PP1/PP2P2N/R1B1KBR1 w Q - 0 1",  "c4d5",  0.88432312F,  0.884323061F},
    {"KnightTakesAPawn",  "rnbqkbnr/pp2pppp/2p5/8/3Pp3/2N5/PPP2PPP/R1BQKBNR w KQkq - 0 4",     "c3e4", -3.28063679F, -3.28063703F},
    {"QueenTakesABishop", "r1b1kbn1/1p4Q1/p1qp2p1/2p1pp2/n3PP1r/7P/P1PP2PR/RNB2KN1 w q - 0 1", "g7f8",  3.22493649F,  3.22493625F},
    {"KingTakesAKnight",  "r1b2Nk1/pp2p3/8/5r1P/3Pp3/2N2P1B/PB1K1bn1/1R3R2 b - - 0 1",         "g8f8", -2.10223269F, -2.10223293F},
}};
// clang-format on

std::string name_of_leaf(const ::testing::TestParamInfo<SharpLeaf>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Overestimated, LeafBelowItsParentsBound, ::testing::ValuesIn(overestimated), name_of_leaf);
INSTANTIATE_TEST_SUITE_P(Underestimated, LeafAboveItsGrandparentsBound, ::testing::ValuesIn(underestimated),
                         name_of_leaf);

class EstimateSlack : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }

    // The value that the leaf at ply 6 would have by its estimate.
    static float estimated_value(const SharpLeaf& x) {
        set_up_parent_of_leaf(6, x.fen);
        const float exact = search_node(6, move_from(x.move));
        const float material = exact - judgement.extraeval;
        const Colour own = other(side_on_ply());
        EXPECT_TRUE(estimate(own, own));
        return material + judgement.extraeval;
    }
};

// The leaves above are what they are said to be, wherever logarithms in float are as they are here.
TEST_F(EstimateSlack, LeavesLieBetweenTheirEstimateAndTheBound) {
    int sharp = 0;
    for (const SharpLeaf& x : overestimated) {
        EXPECT_EQ(x.bound, next_above(x.value)) << x.fen;
        sharp += estimated_value(x) > x.bound ? 1 : 0;
    }
    for (const SharpLeaf& x : underestimated) {
        EXPECT_EQ(x.bound, next_below(x.value)) << x.fen;
        sharp += estimated_value(x) < x.bound ? 1 : 0;
    }
    EXPECT_GE(sharp, 6);
}

TEST_F(EstimateSlack, LeavesAreTheBestRepliesByThePlainEngineToo) {
    for (const auto& leaves : {std::vector(overestimated.begin(), overestimated.end()),
                               std::vector(underestimated.begin(), underestimated.end())}) {
        for (const SharpLeaf& x : leaves) {
            set_up_parent_of_leaf(6, x.fen);
            EXPECT_TRUE(same_bits(plain_replies(5).value, x.value)) << x.fen;
        }
    }
}

// Farther from the bound than the slack the estimate stands, nearer it does not.
TEST_F(EstimateSlack, IsThisWide) {
    const SharpLeaf& x = overestimated.front();
    const auto judged_exactly = [&](float beta, float alfa) {
        set_up_parent_of_leaf(6, x.fen);
        bounds.beta[5] = beta;
        bounds.alfa[4] = alfa;
        search_node(6, move_from(x.move));
        EXPECT_EQ(times(Rule::judged), 1U);
        return times(Rule::judged_exactly) != 0;
    };
    constexpr float nearer = 0.005F;
    constexpr float farther = 0.015F;
    EXPECT_TRUE(judged_exactly(x.value - nearer, start_of_alfa));
    EXPECT_FALSE(judged_exactly(x.value - farther, start_of_alfa));
    EXPECT_TRUE(judged_exactly(start_of_beta, x.value + nearer));
    EXPECT_FALSE(judged_exactly(start_of_beta, x.value + farther));
    // Between the bounds, too; but it is a note of the leaf that is handed on, and made exact before anybody keeps it.
    EXPECT_FALSE(judged_exactly(x.value + 1, x.value - 1));
    EXPECT_TRUE(noted.is_noted[6]);
    settle(6);
    EXPECT_TRUE(same_bits(value_of_ply(6), x.value));
    EXPECT_EQ(times(Rule::settled), 1U);
}

// A value that another node reads from its store must be exact: the shallow tables keep those of plies 3 to 5.
TEST_F(EstimateSlack, IsOfNoUseAtPly4) {
    const SharpLeaf& x = overestimated.front();
    set_up_parent_of_leaf(4, x.fen);
    bounds.beta[3] = x.value - 1;
    EXPECT_TRUE(same_bits(search_node(4, move_from(x.move)), x.value));
    EXPECT_EQ(times(Rule::judged_exactly), 1U);
}

TEST_F(EstimateSlack, IsOfNoUseAtOddPlies) {
    for (const float alfa : {start_of_alfa, 40.0F}) {
        fresh_process();  // nothing is known of the leaf
        set_up_ply(10, "4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
        search.deep = 11;
        pass.DEEP = 9;
        bounds.alfa[10] = alfa;
        clear_counts();
        search_node(11, move_from("e1e2"));
        EXPECT_EQ(times(Rule::judged_exactly), 1U);
    }
}

// The lazy test and the bound of the judgement meet: at the greatest judgement there is, a leaf just inside the margin
// comes out just above the bound, and one on the margin is not judged.
TEST_F(EstimateSlack, LeavesTheLazyTestAlone) {
    const SharpLeaf& x = overestimated.front();
    options.extradef = 0;  // sums of whole pawns, so that nothing is rounded
    set_up_parent_of_leaf(6, x.fen);
    search.EXTRA_EVAL = 0;
    const float material = search_node(6, move_from(x.move));
    const auto value_below = [&](float alfa) {
        set_up_parent_of_leaf(6, x.fen);
        search.EXTRA_EVAL = 1;
        judgement.extraevalll = 1000;
        bounds.alfa[4] = alfa;
        return search_node(6, move_from(x.move));
    };
    const float bound = material + piecesac;
    EXPECT_EQ(value_below(bound), material);
    EXPECT_EQ(times(Rule::lazy), 1U);
    EXPECT_GT(value_below(next_below(bound)), next_below(bound));
    EXPECT_EQ(times(Rule::judged_exactly), 1U);
}

// --- Parents by chance ---

// What the replies of ply 5 come to under bounds on and around the value that they have by themselves. A value that ends
// the parent is read by nobody and may be an estimate.
void compare_replies(const std::string& fen, float beta, float alfa) {
    set_up_parent_of_leaf(6, fen);
    bounds.beta[5] = beta;
    bounds.alfa[4] = alfa;
    const PlainReplies expected = plain_replies(5);
    search.nodes = 0;
    run_replies(5);
    EXPECT_EQ(cut_flag_of(5) != 0, expected.cut) << fen << ' ' << beta << ' ' << alfa;
    EXPECT_EQ(static_cast<int>(search.nodes), expected.nodes) << fen << ' ' << beta << ' ' << alfa;
    if (expected.value > alfa) {
        settle(5);
        EXPECT_TRUE(same_bits(bounds.beta[5], expected.value))
            << fen << ' ' << beta << ' ' << alfa << ": " << bounds.beta[5] << " for " << expected.value;
    } else {
        EXPECT_LE(bounds.beta[5], alfa) << fen << ' ' << beta << ' ' << alfa;
    }
}

TEST_F(EstimateSlack, ParentsDecideAsThePlainEngineDoes) {
    std::uint64_t estimates = 0;
    for (const rules::Position& p : rules::positions_from_random_games(20250301, 3, 120)) {
        const std::string fen = rules::to_fen(p);
        set_up_parent_of_leaf(6, fen);
        const float v = plain_replies(5).value;
        for (const float beta : {start_of_beta, v, next_above(v), next_below(v), v + 0.02F, v - 0.02F}) {
            compare_replies(fen, beta, start_of_alfa);
            estimates += times(Rule::judged) - times(Rule::judged_exactly);
        }
        for (const float alfa : {v, next_above(v), next_below(v), v + 0.02F, v - 0.02F}) {
            compare_replies(fen, start_of_beta, alfa);
            estimates += times(Rule::judged) - times(Rule::judged_exactly);
        }
        if (HasFailure()) {
            return;
        }
    }
    EXPECT_GT(estimates, 10000U);
}

}  // namespace
