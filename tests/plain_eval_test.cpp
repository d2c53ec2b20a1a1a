// The yardstick of the evaluation is measured first: what it says of small positions is worked out here by hand.
#include "support/plain_eval.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using plain::Board;
using plain::EvalInput;

int square(const char* name) { return (name[0] - 'a') * 8 + name[1] - '1'; }

Board kings(const char* white, const char* black) {
    Board b{};
    b[square(white)] = 110;
    b[square(black)] = -110;
    return b;
}

// Kings at home: the pieces of both sides at the root are strong, the board holds what the test puts there.
EvalInput input(const Board& board) {
    EvalInput in;
    in.board = board;
    for (int i = 0; i < 64; ++i) {
        if (board[i] == 110 || board[i] == -110) {
            const int c = board[i] > 0 ? 0 : 1;
            in.king_file[c] = i / 8;
            in.king_rank[c] = i % 8;
        }
    }
    return in;
}

TEST(PlainEval, TablesFollowTheirFormulas) {
    EXPECT_EQ(plain::posix_king_final(0, square("e4")), 250);
    EXPECT_EQ(plain::posix_king_final(0, square("a8")), 14);
    EXPECT_EQ(plain::posix_king_final(1, square("e5")), 250);
    EXPECT_EQ(plain::posix_pawn(0, 1, square("e4")), 5);
    EXPECT_EQ(plain::posix_pawn(1, 29, square("e5")), 5);
    EXPECT_EQ(plain::posix_pawn(0, 30, square("e7")), 12);
    EXPECT_EQ(plain::posix_pawn(0, 69, square("e8")), 25);
    EXPECT_EQ(plain::posix_pawn(0, 70, square("e7")), 35);
    EXPECT_EQ(plain::posix_pawn(1, 70, square("a2")), 30);
    EXPECT_EQ(plain::posix_piece(0, 33, square("d5")), 5);
    EXPECT_EQ(plain::posix_piece(1, 90, square("e3")), 5);
    EXPECT_EQ(plain::posix_piece(0, 50, square("e4")), 0);
    EXPECT_EQ(plain::centro(square("d4")), 0.4F);
    EXPECT_EQ(plain::centroo(square("d4")), 20.0F);
    EXPECT_EQ(plain::promo(1, square("c1")), 0.5F);
    EXPECT_EQ(plain::xr_numerator(110), 375);
    EXPECT_EQ(plain::xr_numerator(120), 15);
    EXPECT_EQ(plain::xr(15, 4, 7, square("e8")), 7);
}

TEST(PlainEval, ForemostPawnIsTheOneOfTheHigherFile) {
    Board b = kings("e1", "e8");
    EXPECT_EQ(plain::xp(b, 0, square("e4")), 0);
    b[square("b5")] = b[square("f5")] = b[square("h2")] = 10;
    EXPECT_EQ(plain::xp(b, 0, square("f5")), 75 / 2);
    b[square("b4")] = b[square("f4")] = b[square("h7")] = -10;
    EXPECT_EQ(plain::xp(b, 1, square("f4")), 75 / 2);
}

TEST(PlainEval, JudgesAdvancedKings) {
    const EvalInput in = input(kings("e3", "e8"));
    const plain::Walk w = plain::walk(in, 0, 0, false);
    EXPECT_NEAR(plain::extra_eval(in, 0, w), 2.0, 1e-6);
    EXPECT_NEAR(plain::extra_eval(in, 1, w), -2.0, 1e-6);
    EXPECT_NEAR(plain::base_value(in, 0, w), 0.02, 1e-8);
    EXPECT_TRUE(w.dead_draw);
}

TEST(PlainEval, BoundsItsJudgement) {
    EvalInput in = input(kings("e3", "e8"));
    in.base = 60;
    EXPECT_EQ(plain::extra_eval(in, 0, plain::walk(in, 0, 0, false)), 50.0F);
    in.base = -60;
    EXPECT_EQ(plain::extra_eval(in, 0, plain::walk(in, 0, 0, false)), -50.0F);
}

TEST(PlainEval, WalksAKnightInTheCorner) {
    Board b = kings("h1", "h8");
    b[square("a1")] = 32;
    EvalInput in = input(b);
    in.men = {7, 7};
    const plain::Walk w = plain::walk(in, 0, 0, false);
    const plain::SideCounts& s = w.side[0];
    EXPECT_EQ(s.mobilidade, 2);
    EXPECT_EQ(s.pontos, 3);
    EXPECT_EQ(s.pecas, 1);
    EXPECT_EQ(s.avanco, 2);
    EXPECT_NEAR(s.posicao, 15.0 / 100 + 10 / 26.5, 1e-6);
    EXPECT_NEAR(s.centro, 2 * 50 / 10.5, 1e-5);
    EXPECT_NEAR(s.atack_ksf, 2.0 / 63, 1e-7);
    EXPECT_NEAR(s.defesa_ksf, 1.0 / 28 + 1.0 / 42, 1e-7);
}

TEST(PlainEval, WalksAFreePawn) {
    Board b = kings("a1", "h8");
    b[square("e4")] = 10;
    const plain::Walk w = plain::walk(input(b), 0, 0, false);
    EXPECT_EQ(w.side[0].posicao, 25.0F + 25.0F + 33.0F);
    EXPECT_EQ(w.side[0].caixa, 5 * 4);
    EXPECT_EQ(w.side[0].mobilidade, 1);
}

TEST(PlainEval, GivesHitsToTheSideToMove) {
    Board b = kings("h1", "h8");
    b[square("a1")] = 32;
    b[square("b3")] = -90;
    const EvalInput in = input(b);
    const float em_turno = plain::walk(in, 0, 0, false).side[0].posicao;
    const float fora = plain::walk(in, 0, 1, false).side[0].posicao;
    EXPECT_NEAR(em_turno - fora, 58, 1e-4);
}

TEST(PlainEval, CountsLegalMovesWhereAsked) {
    Board b = kings("e1", "h8");
    b[square("e2")] = 50;
    b[square("e8")] = -50;
    EvalInput in = input(b);
    in.piece_material = {50, 50};
    EXPECT_EQ(plain::walk(in, 0, 0, false).side[0].mobilidade, 17);
    EXPECT_EQ(plain::walk(in, 0, 1, true).side[0].mobilidade, 10);
    EXPECT_EQ(plain::balance_walk(in).side[0].mobilidade, 10);
}

TEST(PlainEval, BalanceCountsMaterialAgainstItsOwner) {
    // Kings alone, at home: what differs is the material that is told.
    const EvalInput in = input(kings("e1", "e8"));
    EXPECT_NEAR(plain::balance(in, 0, {200, 110}), 0.1 * std::log(110.1 / 200.1), 1e-7);
    EXPECT_NEAR(plain::balance(in, 1, {200, 110}), 0.1 * std::log(200.1 / 110.1), 1e-7);
}

TEST(PlainEval, SeesAttackedKings) {
    Board b = kings("e1", "h8");
    b[square("e8")] = -50;
    EXPECT_TRUE(plain::king_attacked(b, 0));
    EXPECT_FALSE(plain::king_attacked(b, 1));
    b[square("e4")] = 10;
    EXPECT_FALSE(plain::king_attacked(b, 0));
}

TEST(PlainEval, ClassifiesAPawnThatHitsAQueen) {
    Board b = kings("g1", "a8");
    b[square("d5")] = -90;
    b[square("e4")] = b[square("f3")] = 10;
    const plain::Class c = plain::classify(b, 0, {4, false}, {130, 200}, {2, 1}, 1, 1);
    EXPECT_EQ(c.ataque, 104);
    EXPECT_EQ(c.estrategia, 100);
}

TEST(PlainEval, ScalesAPawnsValueLateInTheGame) {
    Board b = kings("g1", "a8");
    b[square("e7")] = 10;
    EXPECT_EQ(plain::classify(b, 0, {35, true}, {120, 120}, {1, 1}, 1, 1).matriz, 140);
    EXPECT_EQ(plain::classify(b, 0, {35, true}, {130, 120}, {1, 1}, 1, 1).matriz, 175);
    EXPECT_EQ(plain::classify(b, 0, {35, true}, {120, 130}, {1, 1}, 1, 1).matriz, 105);
    b[square("a7")] = 32;
    b[square("b8")] = -10;  // a pawn attacks downward: the knight a7 hangs
    EXPECT_EQ(plain::classify(b, 0, {35, true}, {120, 120}, {1, 1}, 1, 1).matriz, 35 / 4);
}

TEST(PlainEval, MapsAttacksWithDefence) {
    Board b = kings("g1", "a8");
    b[square("d1")] = 50;
    b[square("d4")] = 32;
    const plain::AttackMaps maps = plain::attack_maps(b);
    EXPECT_EQ(maps.by_kind[0][3][square("d4")], 1);
    EXPECT_EQ(maps.by_kind[0][3][square("d5")], 0);
    EXPECT_EQ(maps.by_kind[0][1][square("e6")], 1);
    EXPECT_EQ(maps.total[0][square("d4")], 1);
    EXPECT_EQ(maps.total[1][square("a7")], 1);
}

}  // namespace
