// The preparation of the root position: what it plays, counts and weighs after each move of the game.
#include "support/evaluation.h"
#include "support/plain_judge.h"

#include "eval/preparation.h"
#include "plain/eval.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using namespace ondrel;
using namespace tests;

class RootPreparation : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

// --- Nearness to the kings ---

// The choice of the numerator precedes the recount: the move that bares a king does not show yet.
TEST_F(RootPreparation, BareKingWeighsMoreOnlyFromTheMoveAfterTheOneThatBaredIt) {
    place("position fen 4k3/8/8/8/8/8/4p3/4K2R w - - 0 1 moves e1e2");
    EXPECT_EQ(root.material_a[black], 110.0F);
    EXPECT_EQ(root.Xr[black][square_of("e8")], 15 / 2);
    place("position fen 4k3/8/8/8/8/8/4p3/4K2R w - - 0 1 moves e1e2 e8d8");
    EXPECT_EQ(root.Xr[black][square_of("d8")], 375 / 2);
    EXPECT_EQ(root.Xr[black][square_of("d5")], 375 / (9 + 2));
    EXPECT_EQ(root.Xr[white][square_of("e2")], 15 / 2);
}

TEST_F(RootPreparation, BareWhiteKingWeighsMoreToo) {
    place("position fen 4k2r/4P3/8/8/8/8/8/4K3 b - - 0 1 moves e8e7");
    EXPECT_EQ(root.Xr[white][square_of("e1")], 15 / 2);
    place("position fen 4k2r/4P3/8/8/8/8/8/4K3 b - - 0 1 moves e8e7 e1e2");
    EXPECT_EQ(root.Xr[white][square_of("e2")], 375 / 2);
    EXPECT_EQ(root.Xr[white][square_of("h2")], 375 / (9 + 2));
}

// Nothing is played on a bare FEN, so its own material chooses.
TEST_F(RootPreparation, BareKingOfAFenWeighsMoreAtOnce) {
    place_fen("4k3/8/8/8/8/8/8/4K2R w - - 0 1");
    EXPECT_EQ(root.Xr[black][square_of("e8")], 375 / 2);
    EXPECT_EQ(root.Xr[white][square_of("e1")], 15 / 2);
}

TEST_F(RootPreparation, NearnessToAKingFallsWithTheSquaredDistance) {
    place_fen("6k1/7p/8/8/8/8/P7/1K6 w - - 0 1");
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            EXPECT_EQ(root.Xr[white][square(f, r)], 15 / ((f - 1) * (f - 1) + r * r + 2)) << f << ' ' << r;
            EXPECT_EQ(root.Xr[black][square(f, r)], 15 / ((f - 6) * (f - 6) + (r - 7) * (r - 7) + 2)) << f << ' ' << r;
        }
    }
}

// Below the weight of a king there is none to be near to.
TEST_F(RootPreparation, NearnessStandsAsItWasWithoutAKing) {
    place_fen("4k3/8/8/8/8/8/P7/4K3 w - - 0 1");
    const IntTable before = root.Xr[black];
    place_fen("8/7p/8/8/8/8/P7/K7 w - - 0 1");
    EXPECT_EQ(root.Xr[black], before);
    EXPECT_EQ(root.Xr[white][square_of("a1")], 15 / 2);
}

TEST_F(RootPreparation, NearnessIsToTheKingsSquareAfterTheMove) {
    place("position fen 4k3/p7/8/8/8/8/P7/4K3 w - - 0 1 moves e1d2");
    EXPECT_EQ(root.Xr[white][square_of("d2")], 15 / 2);
    EXPECT_EQ(root.Xr[white][square_of("d1")], 15 / 3);
}

// --- Nearness to the foremost pawns ---

TEST_F(RootPreparation, WithoutPawnsNothingIsNear) {
    place_fen("4k3/pppppppp/8/8/8/8/PPPPPPPP/4K3 w - - 0 1");
    place_fen("4k2r/8/8/8/8/8/8/4K2R w - - 0 1");
    EXPECT_EQ(root.XP[white], IntTable{});
    EXPECT_EQ(root.XP[black], IntTable{});
}

TEST_F(RootPreparation, ForemostPawnOfWhiteIsTheOneOnTheHighestRank) {
    place_fen("4k3/8/8/1P6/8/8/P6P/4K3 w - - 0 1");
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            EXPECT_EQ(root.XP[white][square(f, r)], 75 / ((f - 1) * (f - 1) + (r - 4) * (r - 4) + 2)) << f << ' ' << r;
        }
    }
}

TEST_F(RootPreparation, ForemostPawnOfBlackIsTheOneOnTheLowestRank) {
    place_fen("4k3/p6p/8/8/1p6/8/8/4K3 w - - 0 1");
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            EXPECT_EQ(root.XP[black][square(f, r)], 75 / ((f - 1) * (f - 1) + (r - 3) * (r - 3) + 2)) << f << ' ' << r;
        }
    }
}

TEST_F(RootPreparation, OfTwoForemostPawnsTheOneOnTheHigherFileCounts) {
    place_fen("4k3/8/1p3p2/8/8/2P3P1/8/4K3 w - - 0 1");
    EXPECT_EQ(root.XP[white][square_of("g3")], 75 / 2);
    EXPECT_EQ(root.XP[white][square_of("c3")], 75 / (16 + 2));
    EXPECT_EQ(root.XP[black][square_of("f6")], 75 / 2);
    EXPECT_EQ(root.XP[black][square_of("b6")], 75 / (16 + 2));
}

// --- Material and men ---

TEST_F(RootPreparation, CountsTheStartPosition) {
    place("position fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    for (const Colour c : {white, black}) {
        EXPECT_EQ(root.material_a[c], 510.0F);
        EXPECT_EQ(root.materialmaior[c], 320.0F);
        EXPECT_EQ(root.npecas[c], 15);
    }
    EXPECT_EQ(root.materialflot0, 0.0F);
    EXPECT_EQ(trial.p_xy_R, (std::array{square_of("e1"), square_of("e8")}));
}

TEST_F(RootPreparation, CountsEachKindByItsCode) {
    place_fen("3qk3/8/8/8/8/8/P1N1B3/R3K3 w - - 0 1");
    EXPECT_EQ(root.material_a[white], 110.0F + 10 + 32 + 33 + 50);
    EXPECT_EQ(root.material_a[black], 110.0F + 90);
    EXPECT_EQ(root.materialmaior[white], 32.0F + 33 + 50);
    EXPECT_EQ(root.materialmaior[black], 90.0F);
    EXPECT_EQ(root.npecas, (std::array<int, 2>{4, 1}));
}

TEST_F(RootPreparation, MaterialDifferenceIsOfTheSideToSearch) {
    place_fen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
    EXPECT_EQ(root.materialflot0, 50.0F);
    place_fen("4k3/8/8/8/8/8/8/R3K3 b - - 0 1");
    EXPECT_EQ(root.materialflot0, -50.0F);
}

TEST_F(RootPreparation, CountsTheBoardAfterACapture) {
    place("position fen 4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1 moves e4d5");
    EXPECT_EQ(root.material_a[black], 110.0F);
    EXPECT_EQ(root.npecas, (std::array<int, 2>{1, 0}));
    EXPECT_EQ(root.materialflot0, -10.0F);
}

TEST_F(RootPreparation, FindsTheKingsAfterTheMove) {
    place("position fen 4k3/8/8/8/8/8/8/4K3 w - - 0 1 moves e1f2 e8c8");
    EXPECT_EQ(trial.p_xy_R, (std::array{square_of("f2"), square_of("c8")}));
}

// --- The move itself ---

TEST_F(RootPreparation, ASearchPromotionWithAnotherLetterReadLeavesThePawn) {
    place_fen("8/P6k/8/8/8/8/8/4K3 w - - 0 1");
    game.abcd = move_from("a7a8");
    game_line.PRs = 'q';
    game_line.PRe = 'r';
    init_tabuleiro();
    EXPECT_EQ(tab[square_of("a8")], peao);
    EXPECT_EQ(tab[square_of("a7")], no_piece);
}

TEST_F(RootPreparation, ForgetsTheLetterThatServedTheMove) {
    place_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    game.abcd = move_from("e1e2");
    game_line.PRe = 'r';
    init_tabuleiro();
    EXPECT_EQ(game_line.PRe, '0');
}

// With more moves to follow the nearness to pawns and the balance wait for the last of them.
TEST_F(RootPreparation, LeavesOutWhatTheNextMoveMakesAnew) {
    place_fen("4k3/p7/8/8/8/8/P7/4K3 w - - 0 1");
    root.regimen = 3;
    const IntTable near_pawn = root.XP[white];
    game.abcd = move_from("a2a4");
    init_tabuleiro(true);
    EXPECT_EQ(tab[square_of("a4")], peao);
    EXPECT_EQ(root.regimen, 3.0F);
    EXPECT_EQ(root.XP[white], near_pawn);
    game.abcd = move_from("a7a5");
    init_tabuleiro();
    EXPECT_NE(root.regimen, 3.0F);
    EXPECT_EQ(root.XP[white][square_of("a4")], 75 / 2);
}

// --- The balance of the root ---

class RootBalance : public RootPreparation {};

// The terms of the balance, from counters worked out by hand.
struct Side {
    double material, points, shelter, attack, defence, mobility, advance;
    int men, pawns, box;
};
double advancement(const Side& x) { return (x.advance + 0.1) / (x.men + 1); }
double density(const Side& x) { return (x.pawns + 1.0) / x.box; }
double balance_of(const Side& me, const Side& opponent, double weight_of_mobility) {
    return 0.1 * std::log((opponent.material + 0.1) / (me.material + 0.1)) +
           2 * std::log((me.points + 10.1) / (opponent.points + 10.1)) +
           5 * std::log((me.defence + 3 + me.shelter) / (opponent.attack + 3)) +
           5 * std::log((me.attack + 3) / (opponent.defence + 3 + opponent.shelter)) +
           weight_of_mobility * std::log((me.mobility + 3) / (opponent.mobility + 3)) + advancement(opponent) -
           advancement(me) + density(me) - density(opponent);
}

TEST_F(RootBalance, IsZeroBeforeAnyMove) { EXPECT_EQ(root.regimen, 0.0F); }

TEST_F(RootBalance, IsZeroInASymmetricPosition) {
    place_fen("4k3/pppppppp/8/8/8/8/PPPPPPPP/4K3 w - - 0 1");
    EXPECT_NEAR(root.regimen, 0.0, 1e-6);
}

// White: King a1 and pawn a2; a bare black king on h8. Both kings count their neighbours.
constexpr std::string_view king_and_pawn = "7k/8/8/8/8/8/P7/K7 ";
// Neighbours of a1 are b1, a2, b2; of h8 g8, h7, g7.
const Side white_king_and_pawn{120, 0, 0, 1.0 / 87 + 1.0 / 87 + 1.0 / 74, 1.0 / 3 + 1.0 / 3 + 1.0 / 4, 4, 1 + 2,
                               1,   1, 2};
const Side black_king{110, 0, 0, 1.0 / 87 + 1.0 / 87 + 1.0 / 74, 1.0 / 3 + 1.0 / 3 + 1.0 / 4, 3, 1, 0, 0, 1};

TEST_F(RootBalance, OfKingAndPawnAgainstKing) {
    place_fen(std::string(king_and_pawn) + "w - - 0 1");
    EXPECT_EQ(count_root()[white].mobilidade, 4);  // b1, b2, a3, a4
    EXPECT_EQ(count_root()[black].mobilidade, 3);
    EXPECT_NEAR(root.regimen, balance_of(white_king_and_pawn, black_king, 5), 1e-6);
}

TEST_F(RootBalance, IsInTheViewOfTheSideToSearch) {
    place_fen(std::string(king_and_pawn) + "b - - 0 1");
    EXPECT_NEAR(root.regimen, balance_of(black_king, white_king_and_pawn, 5), 1e-6);
}

TEST_F(RootBalance, ReadsTheOptionMobility) {
    set_option("Mobility", "9");
    place_fen(std::string(king_and_pawn) + "w - - 0 1");
    EXPECT_NEAR(root.regimen, balance_of(white_king_and_pawn, black_king, 10), 1e-6);
    set_option("Mobility", "0");
    place_fen(std::string(king_and_pawn) + "w - - 0 1");
    EXPECT_NEAR(root.regimen, balance_of(white_king_and_pawn, black_king, 0), 1e-6);
}

// Knights in the far corner of a board of two rooks each, so that kings keep still and pawns mark their diagonals.
// White has the knight a1 more: its jumps b3 and c2.
TEST_F(RootBalance, CountsPointsTwiceAndMaterialAgainstTheEngine) {
    set_option("Mobility", "0");
    place_fen("r6k/r7/8/8/8/8/R7/R6K w - - 0 1");
    const double without = root.regimen;
    EXPECT_NEAR(without, 0.0, 1e-6);
    place_fen("r6k/r7/8/8/8/8/R7/R5NK w - - 0 1");
    // The rook on a1 ends its rank on g1 now instead of h1; the knight g1 marks e2, f3, h3.
    const Counters found = count_root();
    const SideCounters& w = found[white];
    const SideCounters& b = found[black];
    const Side white_side{242, 13, 0, static_cast<double>(w.atack_ksf), static_cast<double>(w.defesa_ksf), 0, 5,
                          3,   0,  1};
    const Side black_side{210, 10, 0, static_cast<double>(b.atack_ksf), static_cast<double>(b.defesa_ksf), 0, 4,
                          2,   0,  1};
    EXPECT_EQ(w.pontos, 13);
    EXPECT_EQ(b.pontos, 10);
    EXPECT_EQ(w.avanco, 1 + 1 + 2 + 1);
    EXPECT_EQ(b.avanco, 1 + 1 + 2);
    EXPECT_NEAR(root.regimen, balance_of(white_side, black_side, 0), 1e-6);
}

TEST_F(RootBalance, CountsThePawnsInFrontOfTheKing) {
    place_fen("r5k1/r7/8/8/8/8/R5P1/R5K1 w - - 0 1");
    EXPECT_EQ(count_root()[white].abrigo, 1);
    EXPECT_EQ(count_root()[black].abrigo, 0);
    place_fen("r5k1/r4ppp/8/8/8/8/R5P1/R5K1 w - - 0 1");
    EXPECT_EQ(count_root()[black].abrigo, 3);
}

// At a queen the enemy is weak enough for the king to come out and for the pawns to hide nobody.
TEST_F(RootBalance, AtNinetyOfPieceMaterialTheKingCountsAndPawnsDoNot) {
    place_fen("3q3k/8/8/8/8/8/6P1/7K w - - 0 1");
    EXPECT_EQ(root.materialmaior[black], 90.0F);
    const SideCounters w = count_root()[white];
    // Neighbours g1, g2, h2 and no diagonals of the pawn.
    EXPECT_TRUE(same_bits(w.centro, sum_of_centroo({"g1", "h2", "g2"})));
    EXPECT_EQ(w.abrigo, 0);
    EXPECT_EQ(w.mobilidade, 2 + 2);  // g1 and h2; g3 and g4
}

TEST_F(RootBalance, AboveNinetyOfPieceMaterialTheKingHidesAndPawnsCount) {
    place_fen("rr5k/8/8/8/8/8/6P1/7K w - - 0 1");
    EXPECT_EQ(root.materialmaior[black], 100.0F);
    const SideCounters w = count_root()[white];
    EXPECT_TRUE(same_bits(w.centro, sum_of_centroo({"h3", "f3"})));
    EXPECT_EQ(w.abrigo, 1);
    EXPECT_EQ(w.mobilidade, 2);  // the pawn's alone
}

// A pinned rook moves on its line only.
TEST_F(RootBalance, CountsLegalMovesOnly) {
    place_fen("4r2k/8/8/8/8/8/4R3/4K3 w - - 0 1");
    EXPECT_EQ(count_root()[white].mobilidade, 6 + 4);
}

// The plain engine prepares the same from the position after each move of a game, to the last bit.
TEST_F(RootBalance, FollowsAGameMoveByMove) {
    const std::vector<std::string> moves{"e7e5", "g1f3", "b8c6", "f1b5", "a7a6", "b5c6", "d7c6", "e1g1", "c8g4",
                                         "h2h3", "h7h5", "h3g4", "h5g4", "f3e5", "d8h4", "f2f3", "g4g3"};
    std::string line = "position startpos moves e2e4";
    for (const std::string& m : moves) {
        line += ' ' + m;
        place(line);
        tell_plain();
        plain::root.regimen = 0;
        plain::prepare_fen_board();
        EXPECT_TRUE(same_bits(root.regimen, plain::root.regimen)) << line;
        EXPECT_NE(root.regimen, 0.0F) << line;
    }
}

}  // namespace
