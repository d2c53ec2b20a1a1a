// The yardstick of the evaluation is measured first: what the plain engine says of small positions is worked out here by
// hand.
#include "plain/board.h"
#include "plain/eval.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <string_view>

namespace {

using plain::black;
using plain::Colour;
using plain::white;

int square(std::string_view name) { return plain::at(name[0] - 'a', name[1] - '1'); }

plain::Move move(std::string_view text) { return {text[0] - 'a', text[1] - '1', text[2] - 'a', text[3] - '1'}; }

struct Man {
    std::string_view where;
    int code;
};

class PlainEval : public ::testing::Test {
protected:
    void SetUp() override {
        plain::settings = {};
        plain::root = {};
        plain::tree = {};
        plain::fill_tables(white);
        plain::fill_tables(black);
    }

    // Men on tab and tab2, the kings remembered where they stand. The root has all its men, so that kings stay at home.
    static void put(std::initializer_list<Man> men) {
        plain::Board board{};
        for (const Man x : men) {
            const int i = square(x.where);
            board[static_cast<std::size_t>(i)] = static_cast<signed char>(x.code);
            if (plain::size_of(x.code) == plain::rei) {
                plain::root.p_x_R[x.code > 0 ? white : black] = i / 8;
                plain::root.p_y_R[x.code > 0 ? white : black] = i % 8;
            }
        }
        plain::tree.tab2 = plain::tree.ply[0].tabd = board;
    }

    static float leaf_with_opponent_moved(Colour own) {
        plain::extra_eval(own);
        return plain::tree.extraeval;
    }
    static float leaf_with_own_moved(Colour own) {
        plain::extra_evall(own);
        return plain::tree.extraeval;
    }
    static float base_value(Colour own) {
        plain::verifica_estrategia(own);
        return plain::root.extraevalll;
    }
    // MATRIZ of a move of c, played by the man put on its from-square.
    static int value_of_move(Colour c, int man, std::string_view text) {
        plain::root.joga_com_b = c;
        put({{"a1", plain::rei}, {"h8", -plain::rei}, {text.substr(0, 2), man}});
        plain::set_destination_value(move(text));
        return plain::root.MATRIZ;
    }
};

TEST_F(PlainEval, TablesFollowTheirFormulas) {
    EXPECT_EQ(value_of_move(white, plain::peao, "e2e4"), 5);
    EXPECT_EQ(value_of_move(black, -plain::peao, "e7e5"), 5);
    EXPECT_EQ(value_of_move(white, plain::bispo, "c4d5"), 5);
    EXPECT_EQ(value_of_move(white, plain::cavalo, "c4e5"), 5);
    EXPECT_EQ(value_of_move(black, -plain::dama, "e2e3"), 5);
    EXPECT_EQ(value_of_move(white, plain::torre, "e1e4"), 0);
    plain::root.nb = 30;
    EXPECT_EQ(value_of_move(white, plain::peao, "e6e7"), 12);
    plain::root.nb = 69;
    EXPECT_EQ(value_of_move(white, plain::peao, "e7e8"), 25);
    EXPECT_FALSE(plain::root.incentiva_promo);
    plain::root.nb = 70;
    EXPECT_EQ(value_of_move(white, plain::peao, "e6e7"), 35);
    EXPECT_EQ(value_of_move(black, -plain::peao, "a3a2"), 30);
    EXPECT_TRUE(plain::root.incentiva_promo);
}

TEST_F(PlainEval, BareKingSeeksTheMiddle) {
    plain::root.material_a = {110.0F, 510.0F};
    plain::root.joga_com_b = white;
    put({{"e3", plain::rei}, {"h8", -plain::rei}});
    plain::set_destination_value(move("e3e4"));
    EXPECT_EQ(plain::root.MATRIZ, 250);
    plain::set_destination_value(move("e3a8"));
    EXPECT_EQ(plain::root.MATRIZ, 14);
}

TEST_F(PlainEval, PreparesTheNearnessToAKing) {
    put({{"e1", plain::rei}, {"e8", -plain::rei}, {"a2", plain::peao}});
    plain::prepare_fen_board();
    EXPECT_EQ(plain::root.Xr[white][static_cast<std::size_t>(square("e1"))], 15 / 2);
    EXPECT_EQ(plain::root.Xr[black][static_cast<std::size_t>(square("e8"))], 375 / 2);
}

TEST_F(PlainEval, ForemostPawnIsTheOneOfTheHigherFile) {
    put({{"e1", plain::rei}, {"e8", -plain::rei}});
    plain::prepare_fen_board();
    EXPECT_EQ(plain::root.XP[white][static_cast<std::size_t>(square("e4"))], 0);
    put({{"e1", plain::rei},
         {"e8", -plain::rei},
         {"b5", plain::peao},
         {"f5", plain::peao},
         {"h2", plain::peao},
         {"b4", -plain::peao},
         {"f4", -plain::peao},
         {"h7", -plain::peao}});
    plain::prepare_fen_board();
    EXPECT_EQ(plain::root.XP[white][static_cast<std::size_t>(square("f5"))], 75 / 2);
    EXPECT_EQ(plain::root.XP[black][static_cast<std::size_t>(square("f4"))], 75 / 2);
}

TEST_F(PlainEval, JudgesAdvancedKings) {
    put({{"e3", plain::rei}, {"e8", -plain::rei}});
    EXPECT_NEAR(leaf_with_opponent_moved(white), 2.0, 1e-6);
    EXPECT_NEAR(leaf_with_opponent_moved(black), -2.0, 1e-6);
    EXPECT_TRUE(plain::tree.EMPAT);
    EXPECT_NEAR(base_value(white), 0.02, 1e-8);
}

TEST_F(PlainEval, BoundsItsJudgement) {
    put({{"e3", plain::rei}, {"e8", -plain::rei}});
    plain::root.extraevalll = 60;
    EXPECT_EQ(leaf_with_opponent_moved(white), 50.0F);
    plain::root.extraevalll = -60;
    EXPECT_EQ(leaf_with_opponent_moved(white), -50.0F);
}

// A knight in the corner attacks two squares of a weight of 50 over 10.5 each, 63 from the enemy's king, 28 and 42 from
// its own.
TEST_F(PlainEval, JudgesAKnightInTheCorner) {
    put({{"h1", plain::rei}, {"h8", -plain::rei}, {"a1", plain::cavalo}});
    plain::root.npecas = {7, 7};
    const double advance_and_pawns = (1 + 1 + 0.1) / 2 + 1 - 1.1 - 1;
    const double points = 2 * std::log(13.1 / 10.1);
    const double kings = 5 * std::log((1.0 / 28 + 1.0 / 42 + 3) / 3) + 5 * std::log((2.0 / 63 + 3) / 3);
    const double mobility = 5 * std::log(5.0 / 3);
    const double positional = 5 * std::log((15.0 / 100 + 10 / 26.5 + 2 * 50 / 10.5 + 10.1) / 10.1);
    EXPECT_NEAR(leaf_with_opponent_moved(white), advance_and_pawns + points + kings + mobility + positional, 1e-5);
}

// Two breakthroughs and a free way are 83, the two squares attacked 50 over 2.5 and over 4.5.
TEST_F(PlainEval, JudgesAFreePawn) {
    put({{"a1", plain::rei}, {"h8", -plain::rei}, {"e4", plain::peao}});
    plain::settings.MOB = 0;
    plain::settings.PM = 0;
    const float without = leaf_with_opponent_moved(white);
    plain::settings.PM = 5;
    // d5 and f5.
    const double sum = 25 + 25 + 33 + 50 / 2.5 + 50 / 4.5;
    EXPECT_NEAR(leaf_with_opponent_moved(white) - without, 5 * std::log((sum + 10.1) / 10.1), 1e-5);
    plain::settings.PM = 0;
    plain::settings.MOB = 5;
    EXPECT_NEAR(leaf_with_opponent_moved(white) - without, 5 * std::log(4.0 / 3), 1e-5);
}

TEST_F(PlainEval, GivesHitsToTheSideToMove) {
    put({{"h1", plain::rei}, {"h8", -plain::rei}, {"a1", plain::cavalo}, {"b3", -plain::dama}});
    const auto ratio_of_sums = [](float v) {
        plain::settings.PM = 0;
        return std::exp((v - leaf_with_opponent_moved(white)) / 5);
    };
    const double in_turn = ratio_of_sums(leaf_with_opponent_moved(white));
    plain::settings.PM = 5;
    const double out_of_turn = ratio_of_sums(leaf_with_own_moved(white));
    const double sum = 5.0 / 100 + 25 / 26.5 + 2 * 50 / 10.5 + 10.1;
    EXPECT_NEAR(in_turn / out_of_turn, (sum + 58) / sum, 1e-4);
}

TEST_F(PlainEval, CountsLegalMovesWhereAsked) {
    put({{"e1", plain::rei}, {"h8", -plain::rei}, {"e2", plain::torre}, {"e8", -plain::torre}});
    plain::root.materialmaior = {50, 50};
    plain::settings.PM = 0;
    const auto mobility_of_leaf = [] {
        plain::settings.MOB = 1;
        const double with = leaf_with_own_moved(white);
        plain::settings.MOB = 0;
        return with - leaf_with_own_moved(white);
    };
    const auto mobility_of_root_move = [] {
        plain::settings.MOB = 1;
        const double with = base_value(white);
        plain::settings.MOB = 0;
        return 100 * (with - base_value(white));
    };
    // White's rook is pinned: 13 moves or the 6 on its file, beside 4 of the king. Black's has 12 and its king 3.
    EXPECT_NEAR(mobility_of_leaf(), std::log((13 + 4 + 3.0) / (12 + 3 + 3)), 1e-4);
    EXPECT_NEAR(mobility_of_root_move(), std::log((6 + 4 + 3.0) / (12 + 3 + 3)), 1e-4);
}

TEST_F(PlainEval, BalanceCountsMaterialAgainstItsOwner) {
    put({{"e1", plain::rei}, {"e8", -plain::rei}, {"a1", plain::torre}, {"a8", -plain::cavalo}});
    for (const Colour own : {white, black}) {
        plain::root.joga_com_b = own;
        plain::settings.MOB = 0;
        plain::prepare_fen_board();
        const double here = plain::root.regimen;
        EXPECT_EQ(here > 0, own == white);
        EXPECT_EQ(plain::root.materialflot0, own == white ? 18.0F : -18.0F);
    }
}

TEST_F(PlainEval, SeesAttackedKings) {
    put({{"e1", plain::rei}, {"h8", -plain::rei}, {"e8", -plain::torre}});
    EXPECT_TRUE(plain::king_attacked(plain::tree.tab2, white));
    EXPECT_FALSE(plain::king_attacked(plain::tree.tab2, black));
    put({{"e1", plain::rei}, {"h8", -plain::rei}, {"e8", -plain::torre}, {"e4", plain::peao}});
    EXPECT_FALSE(plain::king_attacked(plain::tree.tab2, white));
}

TEST_F(PlainEval, ClassifiesAPawnThatHitsAQueen) {
    put({{"g1", plain::rei}, {"a8", -plain::rei}, {"d5", -plain::dama}, {"e3", plain::peao}, {"f3", plain::peao}});
    plain::root.joga_com_b = white;
    plain::init_tabuleiro2(move("e3e4"));
    plain::verifica_estrategia(white);
    EXPECT_EQ(plain::root.ATAQUE, 100 + 5);
    EXPECT_EQ(plain::root.ESTRATEGIA, 100);
}

TEST_F(PlainEval, ScalesAPawnsValueLateInTheGame) {
    const auto scaled = [](float own, float opp) {
        plain::root.nb = 70;
        plain::root.joga_com_b = white;
        plain::root.material_a = {own, opp};
        plain::init_tabuleiro2(move("e6e7"));
        plain::verifica_estrategia(white);
        return plain::root.MATRIZ;
    };
    put({{"g1", plain::rei}, {"a8", -plain::rei}, {"e6", plain::peao}});
    EXPECT_EQ(scaled(120, 120), 140);
    EXPECT_EQ(scaled(130, 120), 175);
    EXPECT_EQ(scaled(120, 130), 105);
    // A pawn attacks downward: the knight a7 hangs.
    put({{"g1", plain::rei}, {"a8", -plain::rei}, {"e6", plain::peao}, {"a7", plain::cavalo}, {"b8", -plain::peao}});
    EXPECT_EQ(scaled(120, 120), 35 / 4);
}

TEST_F(PlainEval, MapsAttacksWithDefence) {
    put({{"g1", plain::rei}, {"a8", -plain::rei}, {"d1", plain::torre}, {"d4", plain::cavalo}});
    plain::root.joga_com_b = white;
    plain::init_tabuleiro2(move("g1h1"));
    const auto at = [](std::string_view name) { return static_cast<std::size_t>(square(name)); };
    EXPECT_EQ(plain::root.ataca[white][3][at("d4")], 1);
    EXPECT_EQ(plain::root.ataca[white][3][at("d5")], 0);
    EXPECT_EQ(plain::root.ataca[white][1][at("e6")], 1);
    EXPECT_EQ(plain::root.N_A[white][at("d4")], 1);
    EXPECT_EQ(plain::root.N_A[black][at("a7")], 1);
}

}  // namespace
