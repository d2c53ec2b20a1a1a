// The two services of the walks: whether a move is legal, and what a marked square is worth.
#include "support/evaluation.h"

#include "eval/mobility.h"
#include "eval/root_walk.h"

#include <gtest/gtest.h>

namespace {

using namespace ondrel;
using namespace tests;

class Liberty : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }

    static bool is_illegal(std::string_view fen, Colour c, std::string_view m) {
        place_fen(fen);
        c == white ? verifica_liberdade<white>(tab, move_from(m)) : verifica_liberdade<black>(tab, move_from(m));
        return liberty.YY != 0;
    }
};

TEST_F(Liberty, PinnedRookMayMoveAlongItsLineOnly) {
    constexpr std::string_view fen = "4r2k/8/8/8/8/8/4R3/4K3 w - - 0 1";
    EXPECT_TRUE(is_illegal(fen, white, "e2d2"));
    EXPECT_FALSE(is_illegal(fen, white, "e2e5"));
    EXPECT_FALSE(is_illegal(fen, white, "e2e8"));
}

TEST_F(Liberty, PinnedRookCountsAllItsMovesAtALeafAndTheLegalOnesAtTheRoot) {
    place_leaf("4r2k/8/8/8/8/8/4R3/4K3 w - - 0 1");
    judge(white, white);
    EXPECT_EQ(counted[white].mobilidade, 13 + 4);
    judge_root_move(white);
    EXPECT_EQ(counted[white].mobilidade, 6 + 4);
    judge_root_move(black);
    EXPECT_EQ(counted[white].mobilidade, 6 + 4);
}

TEST_F(Liberty, PinnedRookOfBlackLikewise) {
    place_leaf("4k3/4r3/8/8/8/8/8/4R2K b - - 0 1");
    judge(black, black);
    EXPECT_EQ(counted[black].mobilidade, 13 + 4);
    judge_root_move(black);
    EXPECT_EQ(counted[black].mobilidade, 6 + 4);
}

TEST_F(Liberty, KingMayNotTakeADefendedMan) {
    EXPECT_TRUE(is_illegal("k7/8/8/8/8/2r5/2p5/3K4 w - - 0 1", white, "d1c2"));
    EXPECT_FALSE(is_illegal("k7/8/8/8/8/8/2p5/3K4 w - - 0 1", white, "d1c2"));
}

TEST_F(Liberty, KingTakingADefendedManIsNoMoveAtTheRootButATargetAllTheSame) {
    place_leaf("k7/8/8/8/8/2r5/2p5/3K4 w - - 0 1");
    judge(white, white);
    EXPECT_EQ(counted[white].mobilidade, 5);
    EXPECT_EQ(counted[white].alvos, 1);
    judge_root_move(white);
    EXPECT_EQ(counted[white].mobilidade, 4);
    EXPECT_EQ(counted[white].alvos, 1);
}

// The test knows the plain transfer only: the pawn taken in passing stays and keeps the rank closed.
TEST_F(Liberty, EnPassantThatOpensARankPasses) {
    EXPECT_FALSE(is_illegal("7k/8/8/K2pP2r/8/8/8/8 w - d6 0 1", white, "e5d6"));
}

TEST_F(Liberty, KingMayNotCastleOutOfItsWayByThisTest) {
    // The rook stays at home, so the king lands on an open rank.
    EXPECT_TRUE(is_illegal("4k3/8/8/8/8/8/8/r3K2R w K - 0 1", white, "e1g1"));
}

TEST_F(Liberty, SeesEveryKindOfAttacker) {
    EXPECT_TRUE(is_illegal("k7/8/8/8/8/5p2/8/4K3 w - - 0 1", white, "e1e2"));    // pawn, from the higher file
    EXPECT_TRUE(is_illegal("k7/8/8/8/8/3p4/8/4K3 w - - 0 1", white, "e1e2"));    // pawn, from the lower file
    EXPECT_TRUE(is_illegal("8/8/8/8/8/4k3/8/4K3 w - - 0 1", white, "e1e2"));     // king
    EXPECT_TRUE(is_illegal("k7/8/8/8/5n2/8/8/4K3 w - - 0 1", white, "e1e2"));    // knight
    EXPECT_TRUE(is_illegal("k7/8/8/7b/8/8/8/4K3 w - - 0 1", white, "e1e2"));     // bishop
    EXPECT_TRUE(is_illegal("k7/8/8/7q/8/8/8/4K3 w - - 0 1", white, "e1e2"));     // queen, on the diagonal
    EXPECT_TRUE(is_illegal("k7/8/8/8/8/8/r7/4K3 w - - 0 1", white, "e1e2"));     // rook
    EXPECT_TRUE(is_illegal("k7/8/8/8/8/8/q7/4K3 w - - 0 1", white, "e1e2"));     // queen, on the rank
    EXPECT_FALSE(is_illegal("k7/8/8/8/8/8/b7/4K3 w - - 0 1", white, "e1e2"));    // a bishop has no rank
    EXPECT_FALSE(is_illegal("k7/8/8/7r/8/8/8/4K3 w - - 0 1", white, "e1e2"));    // a rook has no diagonal
    EXPECT_FALSE(is_illegal("k7/8/8/8/8/8/r2P4/4K3 w - - 0 1", white, "e1e2"));  // the way is closed
    EXPECT_TRUE(is_illegal("b6k/8/8/8/8/8/8/6K1 w - - 0 1", white, "g1h1"));     // from corner to corner
}

// A pawn of Black attacks downward, one of White upward.
TEST_F(Liberty, PawnsAttackForward) {
    EXPECT_FALSE(is_illegal("k7/8/8/8/8/4K3/3p4/8 w - - 0 1", white, "e3e4"));
    EXPECT_FALSE(is_illegal("k7/8/8/8/8/4K3/3p4/8 w - - 0 1", white, "e3e2"));
    EXPECT_TRUE(is_illegal("4k3/8/3P4/8/8/8/8/K7 b - - 0 1", black, "e8e7"));
    EXPECT_FALSE(is_illegal("8/3P4/4k3/8/8/8/8/K7 b - - 0 1", black, "e6e7"));
}

TEST_F(Liberty, NothingWrapsAroundTheEdges) {
    EXPECT_FALSE(is_illegal("k7/8/8/8/8/7r/8/K7 w - - 0 1", white, "a1a2"));
    EXPECT_FALSE(is_illegal("k7/8/8/8/8/8/7p/K7 w - - 0 1", white, "a1a2"));
    EXPECT_FALSE(is_illegal("7k/8/8/8/8/6n1/8/K7 w - - 0 1", white, "a1a2"));
}

TEST_F(Liberty, WithoutAKingEveryMoveIsLegal) {
    EXPECT_FALSE(is_illegal("k6r/8/8/8/8/8/8/R7 w - - 0 1", white, "a1b1"));
}

TEST_F(Liberty, OfTwoKingsEitherMayBeAttacked) {
    EXPECT_TRUE(is_illegal("r6k/8/8/8/8/8/8/K3K2P w - - 0 1", white, "e1e2"));
    EXPECT_TRUE(is_illegal("4r2k/8/8/8/8/8/8/K3K2P w - - 0 1", white, "a1b2"));
}

TEST_F(Liberty, LeavesTheBoardInQuestionAlone) {
    place_fen("4r2k/8/8/8/8/8/4R3/4K3 w - - 0 1");
    const Board before = tab;
    trial.tab2 = tab;
    verifica_liberdade<white>(tab, move_from("e2d2"));
    EXPECT_EQ(tab, before);
    EXPECT_EQ(trial.tab2, before);
}

TEST_F(Liberty, PromotesAPawnOnItsLastRankToAQueen) {
    place_fen("k7/4P3/8/8/8/8/8/4K3 w - - 0 1");
    verifica_liberdade<white>(tab, move_from("e7e8"));
    EXPECT_EQ(liberty.tab2t[square_of("e8")], man(white, dama));
    verifica_liberdade<white>(tab, move_from("e1e2"));
    EXPECT_EQ(liberty.tab2t[square_of("e7")], man(white, peao));
}

// --- King safety ---

class KingSafety : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }

    // What the squares, one after the other, add to the sums of c, whose kings stand on a1 and h8.
    static SideCounters marked(Colour c, std::initializer_list<std::string_view> names) {
        AllCounters<EveryMove> sink({square_of("a1"), square_of("h8")});
        for (const std::string_view name : names) {
            const auto i = static_cast<std::uint8_t>(square_of(name));
            sink.cursor(c).mark(&i, 1);
        }
        return sink.side[c];
    }
};

TEST_F(KingSafety, WeighsASquareByBothKingsAndTheMiddle) {
    const SideCounters side = marked(white, {"d4"});
    EXPECT_TRUE(same_bits(side.atack_ksf, sum_of_inverses({16 + 16 + 2})));  // d4 to h8
    EXPECT_TRUE(same_bits(side.defesa_ksf, sum_of_inverses({9 + 9 + 2})));   // d4 to a1
    EXPECT_TRUE(same_bits(side.centro, 20.0F));
}

TEST_F(KingSafety, SwapsTheKingsForBlack) {
    const SideCounters side = marked(black, {"d4"});
    EXPECT_TRUE(same_bits(side.atack_ksf, sum_of_inverses({9 + 9 + 2})));
    EXPECT_TRUE(same_bits(side.defesa_ksf, sum_of_inverses({16 + 16 + 2})));
}

TEST_F(KingSafety, WeighsAHalfOnTheKingAndAThirdBesideIt) {
    EXPECT_EQ(marked(white, {"h8"}).atack_ksf, 0.5F);
    EXPECT_TRUE(same_bits(marked(white, {"h8", "h7"}).atack_ksf, sum_of_inverses({2, 3})));
}

// Rounded to float after each square: a sum kept in double and rounded at the end differs in the last bits.
TEST_F(KingSafety, RoundsAfterEachSquare) {
    AllCounters<EveryMove> sink({square_of("a1"), square_of("h8")});
    double exact = 0;
    float rounded = 0;
    for (int k = 0; k < 5 * squares; ++k) {
        const auto i = static_cast<std::uint8_t>(k % squares);
        const int files = file_of(i) - file_h;
        const int ranks = rank_of(i) - last_rank;
        const double term = 1.0 / (files * files + ranks * ranks + 2);
        sink.cursor(white).mark(&i, 1);
        exact += term;
        rounded = static_cast<float>(static_cast<double>(rounded) + term);
    }
    EXPECT_TRUE(same_bits(sink.side[white].atack_ksf, rounded));
    EXPECT_FALSE(same_bits(sink.side[white].atack_ksf, static_cast<float>(exact)));
}

}  // namespace
