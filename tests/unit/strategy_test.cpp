// The trial of a root move and the class it is given. Each case stands for White and, mirrored, for Black.
#include "support/evaluation.h"
#include "support/moves.h"

#include "eval/leaf.h"
#include "eval/root_trial.h"
#include "eval/strategy.h"
#include "search/root_routines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace ondrel;
using namespace tests;

// The position, the move and the square as given for White, or with colours and ranks exchanged.
struct Seat {
    Colour c;
    [[nodiscard]] std::string fen(const std::string& for_white) const {
        return c == white ? for_white : mirrored_fen(for_white);
    }
    [[nodiscard]] Move move(std::string_view t) const {
        return move_from(c == white ? std::string(t) : mirrored_squares(t));
    }
    [[nodiscard]] int at(std::string_view name) const {
        return square_of(c == white ? std::string(name) : mirrored_squares(name));
    }
};

// Tries a root move and classifies it.
void visit(Colour c, Move m) {
    try_root_move(c, m);
    classify_trial(c);
}

void visit(Seat v, const std::string& fen, std::string_view m) {
    place_fen(v.fen(fen));
    visit(v.c, v.move(m));
}

class Classifier : public ::testing::TestWithParam<Colour> {
protected:
    void SetUp() override { fresh_process(); }
    [[nodiscard]] static Seat seat() { return {GetParam()}; }
};

std::string name_of_colour(const ::testing::TestParamInfo<Colour>& info) {
    return info.param == white ? "White" : "Black";
}

INSTANTIATE_TEST_SUITE_P(Both, Classifier, ::testing::Values(white, black), name_of_colour);

// --- The tally ---

// What a quiet king move from h1 leaves on the board, and the tally expected of it, the tables being off.
struct TallyCase {
    const char* name;
    const char* field;
    int expected;
    const char* move = "h1g1";
};
void PrintTo(const TallyCase& x, std::ostream* os) { *os << x.field << ' ' << x.move; }

class Tally : public ::testing::TestWithParam<TallyCase> {
protected:
    void SetUp() override { fresh_process(); }
};

TEST_P(Tally, IsThisForEitherColour) {
    const TallyCase& x = GetParam();
    for (const Colour c : {white, black}) {
        options.matrix = 0;
        visit({c}, std::string(x.field) + " w - - 0 1", x.move);
        EXPECT_EQ(move_class.ATAQUE, x.expected) << (c == white ? "White" : "Black");
    }
}

// Every man of either side stands so that nothing but the row in question counts.
INSTANTIATE_TEST_SUITE_P(
    Threat, Tally,
    ::testing::Values(
        TallyCase{"NothingInSight", "k7/8/8/8/8/8/8/7K", 0}, TallyCase{"King", "k7/7p/8/8/8/8/8/R6K", 11},
        TallyCase{"KingWithoutMen", "k7/8/8/8/8/8/8/R6K", 0}, TallyCase{"KingOutOfReach", "k7/7p/8/8/8/8/8/1R5K", 0},
        TallyCase{"QueenByPawn", "k7/8/8/3q4/4P3/5P2/8/7K", 100},
        TallyCase{"QueenByKnight", "k7/8/8/3q4/8/2N5/8/7K", 100},
        TallyCase{"QueenByBishop", "k7/8/8/3q4/8/5B2/8/7K", 100, "h1g2"},
        TallyCase{"QueenByRook", "k7/8/8/3q4/8/8/3R4/1N5K", 100},
        TallyCase{"QueenByQueen", "k7/8/8/3q4/8/8/3Q4/1N5K", 0}, TallyCase{"QueenByKing", "k7/8/8/8/8/8/5q2/7K", 0},
        TallyCase{"QueenGuarded", "k7/8/1n6/3q4/8/2N5/8/7K", 100}, TallyCase{"RookByPawn", "k7/8/8/3r4/4P3/8/8/7K", 50},
        TallyCase{"RookByBishop", "k7/8/8/3r4/8/5B2/8/7K", 50}, TallyCase{"RookByKnight", "k7/8/8/3r4/8/2N5/8/7K", 50},
        TallyCase{"RookGuardedByKnight", "k7/8/1n6/3r4/8/2N5/8/7K", 50},
        TallyCase{"LooseRookByQueen", "k7/8/8/3r4/8/5Q2/8/7K", 25},
        TallyCase{"LooseRookByKing", "k7/8/8/8/8/8/5r2/7K", 25},
        TallyCase{"GuardedRookByQueen", "k7/8/1n6/3r4/8/5Q2/8/7K", 0},
        TallyCase{"RookByRook", "k7/8/8/3r4/8/8/1N6/3R3K", 0}, TallyCase{"KnightByPawn", "k7/8/8/3n4/4P3/8/8/7K", 35},
        TallyCase{"GuardedKnightByPawn", "k7/8/4p3/3n4/4P3/8/8/7K", 35},
        TallyCase{"LooseKnightByBishop", "k7/8/8/3n4/8/5B2/8/7K", 17},
        TallyCase{"LooseKnightByRook", "k7/8/8/3n4/8/8/8/3R3K", 17},
        TallyCase{"LooseKnightByQueen", "k7/8/8/3n4/8/5Q2/8/7K", 17},
        TallyCase{"LooseKnightByKing", "k7/8/8/8/8/8/5n2/7K", 17},
        TallyCase{"GuardedKnightByBishop", "k7/8/4p3/3n4/8/5B2/8/7K", 0},
        TallyCase{"KnightByKnight", "k7/8/8/3n4/8/2N5/1P6/7K", 0},
        TallyCase{"BishopByPawn", "k7/8/8/3b4/4P3/5P2/8/7K", 30},
        TallyCase{"LooseBishopByKnight", "k7/8/8/3b4/8/2N5/8/7K", 15},
        TallyCase{"LooseBishopByRook", "k7/8/8/3b4/8/8/8/3R3K", 15},
        TallyCase{"LooseBishopByKing", "k7/8/8/8/8/8/5b2/7K", 15},
        TallyCase{"GuardedBishopByKnight", "k7/8/4p3/3b4/8/2N5/8/7K", 0},
        TallyCase{"BishopByQueen", "k7/8/8/3b4/8/8/8/3Q3K", 0},
        TallyCase{"BishopByBishop", "k7/8/8/3b4/8/5B2/8/7K", 0, "h1g2"},
        TallyCase{"LoosePawnByBishop", "k7/8/8/3p4/8/5B2/8/7K", 10},
        TallyCase{"LoosePawnByKnight", "k7/8/8/3p4/8/2N5/8/7K", 10},
        TallyCase{"LoosePawnByRook", "k7/8/8/3p4/8/8/8/3R3K", 10},
        TallyCase{"LoosePawnByQueen", "k7/8/8/3p4/8/8/8/3Q3K", 10},
        TallyCase{"LoosePawnByKing", "k7/8/8/8/8/8/5p2/7K", 10},
        TallyCase{"PawnByPawnToo", "k7/8/8/3p4/4P3/2N5/8/7K", 0},
        TallyCase{"PawnByPawnAlone", "k7/8/8/3p4/4P3/5P2/8/7K", 0},
        TallyCase{"PawnGuardedByPawn", "k7/8/4p3/3p4/8/2N5/8/7K", 0},
        TallyCase{"PawnGuardedByPiece", "k7/8/1n6/3p4/8/2N5/8/7K", 0}),
    [](const auto& info) { return std::string(info.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Danger, Tally,
    ::testing::Values(TallyCase{"QueenByPawn", "k7/8/5p2/4p3/3Q4/8/8/7K", -100},
                      TallyCase{"QueenByBishop", "k7/8/1b6/8/3Q4/8/8/7K", -100},
                      TallyCase{"QueenByKnight", "k7/8/4n3/8/3Q4/8/8/7K", -100},
                      TallyCase{"QueenByRook", "2kr4/8/8/8/3Q4/8/8/7K", -100},
                      TallyCase{"QueenByKnightThoughGuarded", "k7/8/4n3/8/3Q4/2P5/8/7K", -100},
                      TallyCase{"OutnumberedQueen", "k2q4/8/8/8/3Q4/8/8/7K", -100},
                      TallyCase{"QueenEvenlyGuarded", "k2q4/8/8/8/3Q4/8/2N5/7K", 0},
                      // Three queens against guards: two pieces or a pawn are enough, one piece is not.
                      TallyCase{"OutnumberedQueenWithTwoPieces", "k2q4/q7/8/8/3Q3q/8/2N1N3/7K", 0},
                      TallyCase{"OutnumberedQueenWithOnePiece", "k2q4/q7/8/8/3Q3q/8/2N5/7K", -100},
                      TallyCase{"OutnumberedQueenWithOneRook", "k2q4/q7/8/8/3Q3q/8/8/3R3K", -100},
                      TallyCase{"OutnumberedQueenWithKnightAndRook", "k2q4/q7/8/8/3Q3q/8/2N5/3R3K", 0},
                      TallyCase{"OutnumberedQueenWithKnightAndBishop", "k2q4/q7/8/8/3Q3q/8/1BN5/7K", 0},
                      TallyCase{"OutnumberedQueenWithAPawn", "k2q4/q7/8/8/3Q3q/2P5/8/7K", 0},
                      TallyCase{"RookByPawn", "k7/8/8/4p3/3R4/8/8/7K", -50},
                      TallyCase{"RookByBishop", "k7/8/1b6/8/3R4/8/8/7K", -50},
                      TallyCase{"RookByKnight", "k7/8/4n3/8/3R4/8/8/7K", -50},
                      TallyCase{"RookByKnightThoughGuarded", "k7/8/4n3/8/3R4/2P5/8/7K", -50},
                      TallyCase{"OutnumberedRook", "k2r4/8/8/8/3R4/8/8/7K", -50},
                      TallyCase{"RookEvenlyGuarded", "k2r4/8/8/8/3R4/8/2N5/7K", 0},
                      TallyCase{"OutnumberedRookWithTwoPieces", "k2r4/8/8/8/r2R3r/8/2N1N3/7K", 0},
                      TallyCase{"OutnumberedRookWithKnightAndBishop", "k2r4/8/8/8/r2R3r/8/1BN5/7K", 0},
                      TallyCase{"OutnumberedRookWithOnePiece", "k2r4/8/8/8/r2R3r/8/2N5/7K", -50},
                      // A rook does not guard a rook here.
                      TallyCase{"OutnumberedRooksWithOnePiece", "k2r4/8/8/8/r2R3r/8/2N5/3R3K", -50},
                      TallyCase{"OutnumberedRookWithAPawn", "k2r4/8/8/8/r2R3r/2P5/8/7K", 0},
                      TallyCase{"KnightByPawn", "k7/8/8/4p3/3N4/8/8/7K", -30},
                      TallyCase{"KnightByPawnThoughGuarded", "k7/8/8/4p3/3N4/2P5/8/7K", -30},
                      TallyCase{"OutnumberedKnight", "k2r4/8/8/8/3N4/8/8/7K", -30},
                      TallyCase{"KnightEvenlyGuarded", "k2r4/8/8/8/3N4/8/2N5/7K", 0},
                      TallyCase{"OutnumberedKnightWithAPiece", "k2r4/8/8/8/r2N4/8/2N5/7K", -30},
                      TallyCase{"OutnumberedKnightWithAPawn", "k2r4/8/8/8/r2N4/2P5/8/7K", 0},
                      TallyCase{"BishopByPawn", "k7/8/5p2/4p3/3B4/8/8/7K", -30},
                      TallyCase{"OutnumberedBishop", "k2r4/8/8/8/3B4/8/8/7K", -30},
                      TallyCase{"OutnumberedBishopWithAPawn", "k2r4/8/8/8/r2B4/2P5/8/7K", 0},
                      TallyCase{"OutnumberedPawn", "k2r4/8/8/8/3P4/8/8/7K", -10},
                      TallyCase{"PawnEvenlyGuarded", "k2r4/8/8/8/3P4/8/2N5/7K", 0},
                      TallyCase{"OutnumberedPawnWithAPawn", "k2r4/8/8/8/r2P4/2P5/8/7K", -10},
                      TallyCase{"TheKingIsNotJudged", "k5r1/8/8/8/8/8/8/7K", 0}),
    [](const auto& info) { return std::string(info.param.name); });

INSTANTIATE_TEST_SUITE_P(Sum, Tally,
                         ::testing::Values(TallyCase{"EveryManCounts", "k7/8/8/3r1r2/4P3/8/8/7K", 100},
                                           // The rook hits the knight and hangs to the pawn.
                                           TallyCase{"ThreatsLessDangers", "k7/8/8/4p3/3R3n/8/8/7K", 17 - 50}),
                         [](const auto& info) { return std::string(info.param.name); });

// --- Options and the clamp ---

TEST_P(Classifier, ChecksWeighByTheirOption) {
    set_option("Attack by check to King", "9");
    options.matrix = 0;
    visit(seat(), "k7/7p/8/8/8/8/8/R6K w - - 0 1", "h1g1");
    EXPECT_EQ(move_class.ATAQUE, 110);
    EXPECT_EQ(move_class.ESTRATEGIA, 100);
    set_option("Attack by check to King", "0");
    visit(seat(), "k7/7p/8/8/8/8/8/R6K w - - 0 1", "h1g1");
    EXPECT_EQ(move_class.ATAQUE, 0);
}

TEST_P(Classifier, ClassIsClampedAtBothEnds) {
    options.matrix = 0;
    visit(seat(), "k7/8/8/3q1q2/4P3/5P2/8/7K w - - 0 1", "h1g1");
    EXPECT_EQ(move_class.ATAQUE, 200 - 10 - 10);  // the queens outnumber what guards the pawns
    EXPECT_EQ(move_class.ESTRATEGIA, 100);
    visit(seat(), "k7/8/8/4p3/3Q1Q2/8/8/7K w - - 0 1", "h1g1");
    EXPECT_LT(move_class.ATAQUE, -100);
    EXPECT_EQ(move_class.ESTRATEGIA, -100);
}

TEST_P(Classifier, MoveThatLeavesTheQueenToAKnightComesLate) {
    // e4 to d4, into the knight's reach; the knight stands guarded.
    visit(seat(), "k7/5p2/4n3/8/4Q3/8/8/7K w - - 0 1", "e4d4");
    EXPECT_EQ(move_class.ATAQUE,
              -100 + tables.posix_dama[GetParam()][seat().at("d4")] + root.Xr[other(GetParam())][seat().at("d4")]);
    EXPECT_LT(move_class.ESTRATEGIA, -90);
}

TEST_P(Classifier, PawnMoveThatHitsTheQueenComesFirst) {
    visit(seat(), "k7/8/8/3q4/8/4PP2/8/7K w - - 0 1", "e3e4");
    EXPECT_EQ(move_class.ATAQUE, 100 + 5);
    EXPECT_EQ(move_class.ESTRATEGIA, 100);
}

TEST_P(Classifier, TablesRankQuietMoves) {
    visit(seat(), "4k3/pppp1ppp/8/8/8/8/PPPPPPPP/4K1N1 w - - 0 1", "e2e4");
    EXPECT_EQ(move_class.ATAQUE, 5);
    visit(seat(), "4k3/pppp1ppp/8/8/8/8/PPPPPPPP/4K1N1 w - - 0 1", "d2d4");
    EXPECT_EQ(move_class.ATAQUE, 3);
    visit(seat(), "4k3/pppp1ppp/8/8/8/8/PPPPPPPP/4K1N1 w - - 0 1", "a2a3");
    EXPECT_EQ(move_class.ATAQUE, 0);
}

TEST_P(Classifier, WithoutTablesQuietMovesAreAllOfClassZero) {
    set_option("Positional matrices", "false");
    const std::string fen = "4k3/pppp1ppp/8/8/8/8/PPPPPPPP/4K1N1 w - - 0 1";
    for (const char* m : {"e2e4", "d2d4", "g1f3", "e1d1", "a2a3"}) {
        visit(seat(), fen, m);
        EXPECT_EQ(move_class.ESTRATEGIA, 0) << m;
    }
}

TEST_P(Classifier, ComputesTheBaseValueFirst) {
    place_fen(seat().fen("4k3/8/8/8/8/8/8/4KN2 w - - 0 1"));
    visit(GetParam(), seat().move("e1e2"));
    const float base = judgement.extraevalll;
    judgement.extraevalll = 0;
    EXPECT_TRUE(same_bits(judge_root_move(GetParam()), base));
    EXPECT_NE(base, 0.0F);
}

TEST_P(Classifier, ClassIsTheSameAtEveryVisit) {
    place_fen(seat().fen("7k/8/8/4P3/8/8/8/7K w - - 0 1"));
    game_line.nb = 70;
    visit(GetParam(), seat().move("e5e6"));
    const int first = move_class.ATAQUE;
    visit(GetParam(), seat().move("e5e6"));
    EXPECT_EQ(move_class.ATAQUE, first);
}

// --- A pawn late in the game ---

// The value of e5e6 there, 30, scaled by the tally and by who is ahead.
struct ScalingCase {
    const char* name;
    const char* field;
    int value;
};
void PrintTo(const ScalingCase& x, std::ostream* os) { *os << x.field; }

class PromotionScaling : public ::testing::TestWithParam<ScalingCase> {
protected:
    void SetUp() override { fresh_process(); }
};

TEST_P(PromotionScaling, IsScaled) {
    for (const Colour c : {white, black}) {
        const Seat v{c};
        place_fen(v.fen(std::string(GetParam().field) + " w - - 0 1"));
        game_line.nb = 70;
        options.matrix = 0;
        visit(c, v.move("e5e6"));
        const int tally = move_class.ATAQUE;
        EXPECT_EQ(root_trial.MATRIZ, GetParam().value) << tally;
        EXPECT_EQ(root_trial.incentiva_promo, 1);
        options.matrix = 1;
        visit(c, v.move("e5e6"));
        EXPECT_EQ(move_class.ATAQUE, tally + GetParam().value);
    }
}

// Black's pawn a4 hangs over the knight b3 where the tally is to be negative; the rest stands idle.
INSTANTIATE_TEST_SUITE_P(Each, PromotionScaling,
                         ::testing::Values(ScalingCase{"Ahead", "7k/8/8/4P3/8/8/8/R6K", 150},
                                           ScalingCase{"Even", "7k/8/p7/4P3/8/8/8/7K", 120},
                                           ScalingCase{"Behind", "r6k/8/8/4P3/8/8/8/7K", 90},
                                           ScalingCase{"AheadInDanger", "7k/8/8/4P3/p7/1N6/8/7K", 10},
                                           ScalingCase{"EvenInDanger", "7k/8/2n5/4P3/p7/1N6/8/7K", 7},
                                           ScalingCase{"BehindInDanger", "r6k/8/8/4P3/p7/1N6/8/7K", 6}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(Classifier, PawnToItsLastRankButOneLateInAnEvenGameComesFirst) {
    place_fen(seat().fen("7k/8/p3P3/8/8/8/8/7K w - - 0 1"));
    game_line.nb = 70;
    visit(GetParam(), seat().move("e6e7"));
    EXPECT_EQ(move_class.ATAQUE, 35 * 4);
    EXPECT_EQ(move_class.ESTRATEGIA, 100);
}

// A visit that does not renew the value, as castling's, scales it again; the product wraps.
TEST_P(Classifier, ValueLeftFromAnotherMoveIsScaledAgainAndWraps) {
    place_fen(seat().fen("7k/8/p3P3/8/8/8/8/7K w - - 0 1"));
    game_line.nb = 70;
    visit(GetParam(), seat().move("e6e7"));
    std::uint32_t expected = 35 * 4;
    for (int round = 0; round < 20; ++round) {
        expected *= 4;
        classify_trial(GetParam());
        EXPECT_EQ(root_trial.MATRIZ, static_cast<int>(expected)) << round;
        EXPECT_EQ(move_class.ATAQUE, root_trial.MATRIZ) << round;
        EXPECT_EQ(move_class.ESTRATEGIA, std::clamp(root_trial.MATRIZ, -100, 100)) << round;
    }
    EXPECT_EQ(expected, 0U);
}

// --- The value of the destination ---

TEST_P(Classifier, PawnsGoByThePhaseOfTheGame) {
    place_fen(seat().fen("7k/8/8/p7/8/4P3/8/7K w - - 0 1"));
    const auto value_after = [&](int moves) {
        game_line.nb = moves;
        try_root_move(GetParam(), seat().move("e3e4"));
        return root_trial.MATRIZ;
    };
    EXPECT_EQ(value_after(1), 5);
    EXPECT_EQ(value_after(29), 5);
    EXPECT_EQ(root_trial.incentiva_promo, 0);
    EXPECT_EQ(value_after(30), 1);
    EXPECT_EQ(value_after(69), 1);
    EXPECT_EQ(root_trial.incentiva_promo, 0);
    EXPECT_EQ(value_after(70), 25);
    EXPECT_EQ(root_trial.incentiva_promo, 1);
}

TEST_P(Classifier, PiecesAreNotUrgedLateInTheGame) {
    place_fen(seat().fen("7k/8/8/p7/8/8/8/3Q3K w - - 0 1"));
    game_line.nb = 90;
    root_trial.incentiva_promo = 1;
    try_root_move(GetParam(), seat().move("d1d2"));
    EXPECT_EQ(root_trial.incentiva_promo, 0);
}

// Each piece by its own table, and by the nearness to the enemy king.
TEST_P(Classifier, PiecesGoByTheirTableAndTheEnemyKing) {
    const Colour c = GetParam();
    const auto value_after = [&](const char* board_row, const char* m) {
        place_fen(seat().fen("8/p7/8/5k2/8/" + std::string(board_row) + "/8/7K w - - 0 1"));
        try_root_move(GetParam(), seat().move(m));
        return root_trial.MATRIZ;
    };
    // The black king on f5: e5 is beside it (15 over 3), d5 and e6 two off on the long side (4 + 2, 1 + 1 + 2).
    EXPECT_EQ(value_after("3N4", "d3e5"), 5 + 5);
    EXPECT_EQ(value_after("3B4", "d3d5"), 5 + 2);
    EXPECT_EQ(value_after("3Q4", "d3e6"), 5 + 3);
    EXPECT_EQ(value_after("3R4", "d3e5"), 0 + 5);
    EXPECT_EQ(root.Xr[other(c)][seat().at("f5")], 7);
}

// The nearness table of a bare king counts for every piece that hunts it, 375 over the distance.
TEST_P(Classifier, PiecesHuntABareKing) {
    place_fen(seat().fen("7k/8/8/8/8/8/8/R6K w - - 0 1"));
    try_root_move(GetParam(), seat().move("a1a8"));
    EXPECT_EQ(root_trial.MATRIZ, 375 / (49 + 2));
}

// --- The king by the ending ---

// The enemy's material and men; which table the king's destination counts by.
enum class KingTable { none, king_and_pawn, ending_and_enemy_pawn, enemy_pawn, own_pawn };
struct EndingCase {
    int m, n;
    KingTable table;
    int w = 200;
};
void PrintTo(const EndingCase& x, std::ostream* os) { *os << "enemy " << x.m << " in " << x.n << " men, own " << x.w; }

class KingEnding : public ::testing::TestWithParam<EndingCase> {
protected:
    void SetUp() override { fresh_process(); }
};

TEST_P(KingEnding, ChoosesTheKingsTable) {
    const EndingCase& x = GetParam();
    for (const Colour c : {white, black}) {
        const Seat v{c};
        place_fen(v.fen("8/8/8/2p5/6k1/5P2/8/3K4 w - - 0 1"));
        root.material_a[c] = static_cast<float>(x.w);
        root.material_a[other(c)] = static_cast<float>(x.m);
        root.npecas[other(c)] = x.n;
        try_root_move(c, v.move("d1d2"));
        // d2: own pawn f3 at 4 + 1, the enemy's c5 at 1 + 9, his king g4 at 9 + 4.
        const int own_pawn = 75 / 7;
        const int enemy_pawn = 75 / 12;
        const int near_king = 15 / 15;  // cppcheck-suppress duplicateExpression; 2 + 9 + 4 happens to be fifteen
        const int ending = 500 / (1 + 4 + 2);
        switch (x.table) {
            case KingTable::none: EXPECT_EQ(root_trial.MATRIZ, 0); break;
            case KingTable::king_and_pawn: EXPECT_EQ(root_trial.MATRIZ, near_king + own_pawn); break;
            case KingTable::ending_and_enemy_pawn: EXPECT_EQ(root_trial.MATRIZ, ending + enemy_pawn); break;
            case KingTable::enemy_pawn: EXPECT_EQ(root_trial.MATRIZ, enemy_pawn); break;
            case KingTable::own_pawn: EXPECT_EQ(root_trial.MATRIZ, own_pawn / 5); break;
        }
        EXPECT_EQ(root_trial.incentiva_promo, 0);
    }
}

std::string name_of_ending(const ::testing::TestParamInfo<EndingCase>& info) {
    const EndingCase& x = info.param;
    return "Enemy" + std::to_string(x.m) + "In" + std::to_string(x.n) + "Own" + std::to_string(x.w);
}

INSTANTIATE_TEST_SUITE_P(BareKings, KingEnding,
                         ::testing::Values(EndingCase{110, 0, KingTable::king_and_pawn},
                                           EndingCase{400, 9, KingTable::ending_and_enemy_pawn, 110},
                                           // Both bare: the later case holds.
                                           EndingCase{110, 0, KingTable::ending_and_enemy_pawn, 110}),
                         name_of_ending);

INSTANTIATE_TEST_SUITE_P(Pawns, KingEnding,
                         ::testing::Values(EndingCase{120, 1, KingTable::enemy_pawn},
                                           EndingCase{130, 2, KingTable::enemy_pawn},
                                           EndingCase{150, 4, KingTable::enemy_pawn},
                                           EndingCase{140, 3, KingTable::enemy_pawn},
                                           EndingCase{140, 1, KingTable::none}, EndingCase{160, 5, KingTable::none},
                                           // Overwrites what a bare own king would count by.
                                           EndingCase{120, 1, KingTable::enemy_pawn, 110}),
                         name_of_ending);

INSTANTIATE_TEST_SUITE_P(
    FewPieces, KingEnding,
    ::testing::Values(EndingCase{153, 2, KingTable::enemy_pawn}, EndingCase{163, 3, KingTable::enemy_pawn},
                      EndingCase{186, 3, KingTable::enemy_pawn}, EndingCase{152, 2, KingTable::enemy_pawn},
                      EndingCase{162, 3, KingTable::enemy_pawn}, EndingCase{184, 3, KingTable::enemy_pawn},
                      EndingCase{185, 3, KingTable::enemy_pawn}, EndingCase{153, 9, KingTable::enemy_pawn},
                      EndingCase{154, 2, KingTable::none}, EndingCase{187, 3, KingTable::none}),
    name_of_ending);

INSTANTIATE_TEST_SUITE_P(
    PiecesAndPawns, KingEnding,
    ::testing::Values(EndingCase{173, 4, KingTable::enemy_pawn}, EndingCase{183, 5, KingTable::enemy_pawn},
                      EndingCase{196, 4, KingTable::enemy_pawn}, EndingCase{206, 5, KingTable::enemy_pawn},
                      EndingCase{216, 6, KingTable::enemy_pawn}, EndingCase{172, 4, KingTable::enemy_pawn},
                      EndingCase{182, 5, KingTable::enemy_pawn}, EndingCase{194, 4, KingTable::enemy_pawn},
                      EndingCase{204, 5, KingTable::enemy_pawn}, EndingCase{214, 6, KingTable::enemy_pawn},
                      EndingCase{195, 4, KingTable::enemy_pawn}, EndingCase{205, 5, KingTable::enemy_pawn},
                      EndingCase{215, 6, KingTable::enemy_pawn}, EndingCase{170, 2, KingTable::enemy_pawn},
                      EndingCase{180, 3, KingTable::enemy_pawn}),
    name_of_ending);

INSTANTIATE_TEST_SUITE_P(OtherMen, KingEnding,
                         ::testing::Values(EndingCase{173, 3, KingTable::none}, EndingCase{183, 4, KingTable::none},
                                           EndingCase{196, 3, KingTable::none}, EndingCase{206, 4, KingTable::none},
                                           EndingCase{216, 5, KingTable::none}, EndingCase{172, 3, KingTable::none},
                                           EndingCase{182, 4, KingTable::none}, EndingCase{194, 3, KingTable::none},
                                           EndingCase{204, 4, KingTable::none}, EndingCase{214, 5, KingTable::none},
                                           EndingCase{195, 5, KingTable::none}, EndingCase{205, 6, KingTable::none},
                                           EndingCase{215, 5, KingTable::none}, EndingCase{170, 3, KingTable::none},
                                           EndingCase{180, 4, KingTable::none}, EndingCase{142, 2, KingTable::none},
                                           EndingCase{143, 2, KingTable::none}, EndingCase{160, 2, KingTable::none},
                                           EndingCase{174, 3, KingTable::none}, EndingCase{175, 3, KingTable::none},
                                           EndingCase{176, 3, KingTable::none}, EndingCase{510, 15, KingTable::none}),
                         name_of_ending);

INSTANTIATE_TEST_SUITE_P(
    OwnPawn, KingEnding,
    ::testing::Values(EndingCase{142, 1, KingTable::own_pawn}, EndingCase{143, 1, KingTable::own_pawn},
                      EndingCase{160, 1, KingTable::own_pawn}, EndingCase{174, 2, KingTable::own_pawn},
                      EndingCase{175, 2, KingTable::own_pawn}, EndingCase{176, 2, KingTable::own_pawn},
                      // Not for a bare king.
                      EndingCase{142, 1, KingTable::ending_and_enemy_pawn, 110}),
    name_of_ending);

// --- The trial ---

TEST_P(Classifier, TrialLeavesTheGameAlone) {
    place_fen(seat().fen("r3k2r/1P6/8/3pP3/8/8/8/R3K2R w KQkq d6 0 1"));
    const Board before = tab;
    const MovedFlags flags = jm;
    for (const char* m : {"e5d6", "b7b8", "b7a8", "e1g1", "e1c1", "e1e2", "a1b1"}) {
        try_root_move(GetParam(), seat().move(m));
        EXPECT_EQ(tab, before) << m;
        EXPECT_EQ(jm.R_jm, flags.R_jm) << m;
        EXPECT_EQ(jm.T_a_jm, flags.T_a_jm) << m;
        EXPECT_EQ(jm.p_ah, flags.p_ah) << m;
        EXPECT_NE(trial.tab2, before) << m;
    }
}

TEST_P(Classifier, TrialTakesInPassing) {
    const Colour c = GetParam();
    place_fen(seat().fen("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1"));
    try_root_move(GetParam(), seat().move("e5d6"));
    EXPECT_EQ(trial.tab2[seat().at("d6")], code(c, peao));
    EXPECT_EQ(trial.tab2[seat().at("d5")], no_piece);
    EXPECT_EQ(trial.tab2[seat().at("e5")], no_piece);
}

TEST_P(Classifier, TrialPromotesToAQueen) {
    place_fen(seat().fen("8/P6k/8/8/8/8/8/4K3 w - - 0 1"));
    try_root_move(GetParam(), seat().move("a7a8"));
    EXPECT_EQ(trial.tab2[seat().at("a8")], code(GetParam(), dama));
    EXPECT_EQ(root_trial.MATRIZ, 10 / (16 + 16 + 2));  // still a pawn's move
}

TEST_P(Classifier, TrialOfACastlingKingTakesTheRookAlong) {
    const Colour c = GetParam();
    place_fen(seat().fen("4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1"));
    try_root_move(GetParam(), seat().move("e1g1"));
    EXPECT_EQ(trial.tab2[seat().at("f1")], code(c, torre));
    EXPECT_EQ(trial.tab2[seat().at("h1")], no_piece);
    try_root_move(GetParam(), seat().move("e1c1"));
    EXPECT_EQ(trial.tab2[seat().at("d1")], code(c, torre));
    EXPECT_EQ(trial.tab2[seat().at("a1")], no_piece);
}

// The moves of the rooks on a1 and h1 that a pass searches, whatever their class.
Texts searched_by(Colour c, Seat seat) {
    const ChildrenOf children(0);
    const auto sweep = [&](auto colour) {
        forget_classes();
        for (pass.ataque = highest_class; pass.ataque >= lowest_class; --pass.ataque) {
            for (const bool ch : {false, true}) {
                analise100<colour()>(livre, ch, torre, seat.at("a1"));
                analise100<colour()>(livre, ch, torre, seat.at("h1"));
            }
        }
    };
    c == white ? sweep(std::integral_constant<Colour, white>{}) : sweep(std::integral_constant<Colour, black>{});
    return sorted(texts_of(children.moves()));
}

TEST_P(Classifier, GateOfThePassKnowsTheBestMove) {
    const Colour c = GetParam();
    place_fen(seat().fen("4k3/8/8/8/8/8/8/R3K2R w - - 0 1"));
    const Move best = seat().move("a1a2");
    const auto searched = [&](int scan1, int scant) {
        slots.aab_ddb = best;
        pass.SCAN1 = static_cast<std::uint8_t>(scan1);
        pass.SCANT = static_cast<std::uint8_t>(scant);
        return searched_by(c, seat());
    };
    const Texts all = searched(0, 0);
    EXPECT_EQ(all.size(), 7U + 3 + 7 + 2);
    EXPECT_EQ(searched(1, 0), Texts{text_of(best)});
    Texts others = all;
    std::erase(others, text_of(best));
    EXPECT_EQ(searched(0, 1), others);
    // Each of the four coordinates counts.
    for (const char* m : {"b1a2", "a3a2", "a1b2"}) {
        slots.aab_ddb = seat().move(m);
        pass.SCAN1 = 1;
        pass.SCANT = 0;
        EXPECT_EQ(searched_by(c, seat()), Texts{}) << m;
    }
}

// --- The attack maps ---

TEST_P(Classifier, MapsCountDefenceAndStopAtTheFirstMan) {
    const Colour c = GetParam();
    place_fen(seat().fen("7k/8/8/3p4/8/3B4/8/3R3K w - - 0 1"));
    try_root_move(GetParam(), seat().move("h1g1"));
    const AttackMaps& own = root_trial.maps[c];
    EXPECT_EQ(own.torre_ataca[seat().at("d2")], 1);
    EXPECT_EQ(own.torre_ataca[seat().at("d3")], 1);  // its own bishop
    EXPECT_EQ(own.torre_ataca[seat().at("d4")], 0);
    EXPECT_EQ(own.torre_ataca[seat().at("g1")], 1);
    EXPECT_EQ(own.torre_ataca[seat().at("h1")], 0);
    EXPECT_EQ(own.bispo_ataca[seat().at("a6")], 1);
    EXPECT_EQ(own.rei_ataca[seat().at("f1")], 1);
    EXPECT_EQ(own.N_A[seat().at("f1")], 3);  // king, rook and bishop
}

TEST_P(Classifier, MapsOfAQueenAreHerOwn) {
    const Colour c = GetParam();
    place_fen(seat().fen("7k/8/8/8/3Q4/8/8/7K w - - 0 1"));
    try_root_move(GetParam(), seat().move("h1g2"));
    EXPECT_EQ(root_trial.maps[c].dama_ataca[seat().at("d8")], 1);
    EXPECT_EQ(root_trial.maps[c].dama_ataca[seat().at("h8")], 1);
    EXPECT_EQ(root_trial.maps[c].torre_ataca, IntTable{});
    EXPECT_EQ(root_trial.maps[c].bispo_ataca, IntTable{});
    EXPECT_EQ(root_trial.maps[c].N_A[seat().at("d8")], 1);
}

TEST_P(Classifier, MapsOfPawnsAreTheirDiagonals) {
    const Colour c = GetParam();
    place_fen(seat().fen("7k/8/1p6/8/2P1P3/8/8/7K w - - 0 1"));
    try_root_move(GetParam(), seat().move("h1g1"));
    EXPECT_EQ(root_trial.maps[c].peao_ataca[seat().at("d5")], 2);
    EXPECT_EQ(root_trial.maps[c].peao_ataca[seat().at("b5")], 1);
    EXPECT_EQ(root_trial.maps[c].peao_ataca[seat().at("f5")], 1);
    EXPECT_EQ(root_trial.maps[c].peao_ataca[seat().at("e5")], 0);
    EXPECT_EQ(root_trial.maps[other(c)].peao_ataca[seat().at("a5")], 1);
    EXPECT_EQ(root_trial.maps[other(c)].peao_ataca[seat().at("c5")], 1);
    EXPECT_EQ(root_trial.maps[other(c)].N_A[seat().at("c5")], 1);
}

TEST_P(Classifier, MapsAreThoseAfterTheMove) {
    const Colour c = GetParam();
    place_fen(seat().fen("7k/8/8/8/8/8/8/N6K w - - 0 1"));
    try_root_move(GetParam(), seat().move("a1b3"));
    EXPECT_EQ(root_trial.maps[c].cavalo_ataca[seat().at("c2")], 0);
    EXPECT_EQ(root_trial.maps[c].cavalo_ataca[seat().at("d4")], 1);
    EXPECT_EQ(root_trial.maps[c].cavalo_ataca[seat().at("a1")], 1);
}

}  // namespace
