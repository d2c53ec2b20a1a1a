// Whether a king is attacked, and what becomes of a node without a reply.
#include "board/apply.h"
#include "board/attacks.h"
#include "board/castling.h"
#include "board/legality.h"
#include "support/boards.h"
#include "support/engine.h"
#include "support/moves.h"
#include "support/scripted.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

using namespace tests;
using namespace ondrel;

class Check : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

class MateAndStalemate : public Check {};

// The tests of the king of c: on tab2, on tab2 for the side that has just moved, and of its square on a ply.
void test_king(Colour c) { c == white ? verifica_rei<white>() : verifica_rei<black>(); }
void test_check_by(Colour c) { c == white ? verifica_xeque<white>() : verifica_xeque<black>(); }
void test_square(Colour c, int n, int i) {
    c == white ? verifica_xequemate<white>(n, i) : verifica_xequemate<black>(n, i);
}
bool attacked_in_sets(Colour c, const Board& t) {
    const PieceSets sets = piece_sets(t);
    return c == white ? king_attacked<white>(sets) : king_attacked<black>(sets);
}

// Whether the white king is attacked on the board; and, the board being mirrored, the black one. All tests must agree,
// each with its own flag.
bool is_king_attacked(const Board& t) {
    bool answer = false;
    for (const Colour c : {white, black}) {
        trial.tab2 = seen_by(c, t);
        trial.Y = trial.XEQUE = trial.XM = 2;
        test_king(c);
        const std::uint8_t Y = trial.Y;
        test_check_by(other(c));
        ply[7].tabd = trial.tab2;
        test_square(c, 7, trial.p_xy_R[c]);
        EXPECT_EQ(trial.XEQUE, Y);
        EXPECT_EQ(trial.XM, Y);
        EXPECT_EQ(attacked_in_sets(c, trial.tab2), Y == 1);
        EXPECT_EQ(trial.Y, Y);
        EXPECT_LE(Y, 1);
        EXPECT_TRUE(c == white || (Y == 1) == answer) << "the colours differ";
        answer = Y == 1;
    }
    return answer;
}

bool is_king_attacked(std::string_view field) { return is_king_attacked(board_from(field)); }

TEST_F(Check, SevenStepsFromCornerToCornerAreSeen) {
    for (const Piece piece : {dama, bispo}) {
        for (const auto& [king, corner] : {std::pair{0, 63}, {63, 0}, {7, 56}, {56, 7}}) {
            Board t{};
            t[king] = man(white, rei);
            t[corner] = man(black, piece);
            EXPECT_TRUE(is_king_attacked(t)) << king;
            t[corner] = man(white, piece);
            EXPECT_FALSE(is_king_attacked(t)) << "one's own";
        }
    }
    EXPECT_FALSE(is_king_attacked("7q/8/8/3P4/4P3/2P5/8/K7")) << "the pawn on c3 stands between";
}

TEST_F(Check, TheOtherKingNextToItAttacks) {
    for (const int step : {-9, -8, -7, -1, 1, 7, 8, 9}) {
        Board t{};
        t[27] = 110;
        t[27 + step] = -110;
        EXPECT_TRUE(is_king_attacked(t)) << step;
    }
    EXPECT_FALSE(is_king_attacked("8/8/8/3k4/8/3K4/8/8"));
}

TEST_F(Check, AKingMayNotStepNextToTheOther) {
    set_up_ply(2, "8/8/8/3k4/8/3K4/8/8 w - - 0 1");
    init_tabuleiro2_deep<white>(2, move_from("d3d4"));
    verifica_rei<white>();
    EXPECT_EQ(trial.Y, 1);
    EXPECT_EQ(sorted(texts_of(replies_tried(2))), (Texts{"d3c2", "d3c3", "d3d2", "d3e2", "d3e3"}));
}

TEST_F(Check, AnAttackerBehindAManOfEitherColourIsBlind) {
    for (const char* field : {"4q3/8/4P3/8/8/8/8/4K3", "4q3/8/4n3/8/8/8/8/4K3", "8/8/8/7q/6n1/8/8/3K4",
                              "8/8/8/8/8/8/8/K2N3r", "8/8/8/8/8/8/8/K2n3r", "8/6b1/8/4P3/8/8/8/K7"}) {
        EXPECT_FALSE(is_king_attacked(field)) << field;
    }
    EXPECT_TRUE(is_king_attacked("4q3/4q3/8/8/8/8/8/4K3"));
}

TEST_F(Check, APawnAttacksForwardOnly) {
    EXPECT_TRUE(is_king_attacked("8/8/8/8/8/4p3/3K4/8"));
    EXPECT_TRUE(is_king_attacked("8/8/8/8/8/4p3/5K2/8"));
    for (const char* field : {"8/8/8/8/3K4/4p3/8/8", "8/8/8/8/5K2/4p3/8/8", "8/8/8/8/8/4p3/4K3/8",
                              "8/8/8/8/4K3/4p3/8/8", "8/8/8/8/8/3Kp3/8/8"}) {
        EXPECT_FALSE(is_king_attacked(field)) << field;
    }
}

TEST_F(Check, EdgesDoNotWrapAround) {
    for (const char* field : {"8/8/8/8/8/7p/K7/8", "8/8/8/8/8/p7/7K/8", "8/8/8/7n/8/8/8/K7", "8/8/8/8/8/7k/K7/8",
                              "8/8/8/8/8/7k/8/K7", "7n/8/8/8/8/8/8/K7", "8/8/8/8/8/8/7n/K7"}) {
        EXPECT_FALSE(is_king_attacked(field)) << field;
    }
}

// Every king's square against every attacker on every other.
TEST_F(Check, TwoMenOnAnEmptyBoardAgreeWithThePlainRules) {
    for (int k = 0; k < squares; ++k) {
        for (int i = 0; i < squares; ++i) {
            for (const char letter : {'p', 'n', 'b', 'r', 'q', 'k', 'P', 'N', 'B', 'R', 'Q'}) {
                if (i == k) {
                    continue;
                }
                rules::Position p;
                p.squares.fill(rules::empty_square);
                p.put(file_of(k), rank_of(k), 'K');
                p.put(file_of(i), rank_of(i), letter);
                ASSERT_EQ(is_king_attacked(board_from(p)), rules::is_attacked(p, file_of(k), rank_of(k), false))
                    << k << letter << i;
            }
        }
    }
}

// Crowded boards, legal or not.
TEST_F(Check, RandomBoardsAgreeWithThePlainRules) {
    std::mt19937 random(20260712);  // NOLINT(cert-msc51-cpp): the same boards every time
    constexpr std::string_view letters = "PNBRQpnbrqpn....................";
    int checks = 0;
    for (int count = 0; count < 3000; ++count) {
        rules::Position p;
        for (int i = 0; i < squares; ++i) {
            p.put(file_of(i), rank_of(i), letters[random() % letters.size()]);
        }
        const auto k = static_cast<int>(random() % 64);
        p.put(file_of(k), rank_of(k), 'K');
        const bool expected = rules::is_attacked(p, file_of(k), rank_of(k), false);
        checks += expected ? 1 : 0;
        ASSERT_EQ(is_king_attacked(board_from(p)), expected) << rules::to_fen(p);
    }
    EXPECT_GT(checks, 500);
    EXPECT_LT(checks, 2500);
}

TEST_F(Check, PositionsOfTheCollectionAgreeWithThePlainRules) {
    int checks = 0;
    for (const rules::Position& p : rules::data_positions("positions.fen")) {
        trial.tab2 = board_from(p);
        for (const Colour c : {white, black}) {
            const bool expected = rules::in_check(p, c == white);
            test_king(c);
            test_check_by(other(c));
            EXPECT_EQ(trial.Y == 1, expected) << rules::to_fen(p);
            EXPECT_EQ(trial.XEQUE == 1, expected) << rules::to_fen(p);
            EXPECT_EQ(trial.tab2[trial.p_xy_R[c]], code(c, rei));
            checks += expected ? 1 : 0;
        }
    }
    EXPECT_GE(checks, 20);
}

// The victim is gone from the trial, so that the rank lies open through both pawns.
TEST_F(Check, EnPassantThatOpensTheRankIsIllegal) {
    for (const Case& each : for_both_colours("8/8/8/K2pP2r/8/8/8/4k3 w - d6 0 1", {"e5d6"})) {
        const Colour c = set_up_ply(3, each.fen);
        const Move m = move_from(each.moves[0]);
        c == white ? init_tabuleiro2_deep<white>(3, m) : init_tabuleiro2_deep<black>(3, m);
        test_king(c);
        EXPECT_EQ(trial.Y, 1);
        EXPECT_EQ(count_of(texts_of(replies_tried(3)), each.moves[0]), 0);
    }
}

TEST_F(Check, AfterACastlingTestTheRooksCheckIsSeen) {
    for (const auto& [fen, checking] :
         {std::pair{"5k2/8/8/8/8/8/8/R3K2R w KQ - 0 1", short_side}, {"3k4/8/8/8/8/8/8/R3K2R w KQ - 0 1", long_side}}) {
        for (const Case& each : for_both_colours(fen, {})) {
            const Colour c = set_up_ply(3, each.fen);
            for (const CastlingSide side : {short_side, long_side}) {
                c == white ? verifica_roque<white>(3, side) : verifica_roque<black>(3, side);
                test_check_by(c);
                EXPECT_EQ(trial.XEQUE, side == checking ? 1 : 0);
            }
        }
    }
}

TEST_F(Check, WithoutAKingThereIsNoCheckAndItsSquareStays) {
    trial.tab2 = board_from("8/8/8/3q4/8/8/8/8");
    trial.p_xy_R = {28, 46};
    trial.Y = trial.XEQUE = 1;
    verifica_rei<white>();
    verifica_xeque<black>();
    EXPECT_EQ(trial.Y, 0);
    EXPECT_EQ(trial.XEQUE, 0);
    EXPECT_EQ(trial.p_xy_R, (std::array{28, 46}));
    EXPECT_FALSE(attacked_in_sets(white, trial.tab2));
    EXPECT_EQ(trial.p_xy_R, (std::array{28, 46}));
}

TEST_F(Check, OnlyTheTestOfTheOwnKingNotesASquare) {
    trial.tab2 = board_from("8/1k6/8/8/8/8/6K1/8");
    trial.p_xy_R = {0, 0};
    verifica_xeque<white>();
    verifica_xeque<black>();
    EXPECT_EQ(trial.p_xy_R, (std::array{0, 0}));
    verifica_rei<white>();
    EXPECT_EQ(trial.p_xy_R, (std::array{square_of("g2"), 0}));
    verifica_rei<black>();
    EXPECT_EQ(trial.p_xy_R, (std::array{square_of("g2"), square_of("b7")}));
}

TEST_F(Check, EveryKingOnTheBoardIsTested) {
    for (const auto& [field, expected] :
         {std::pair{"8/8/8/8/8/q7/8/K6K", 1}, {"8/8/8/8/8/7q/8/K6K", 1}, {"8/8/8/8/8/3q4/8/K6K", 0}}) {
        trial.tab2 = board_from(field);
        verifica_rei<white>();
        verifica_xeque<black>();
        EXPECT_EQ(trial.Y, expected) << field;
        EXPECT_EQ(trial.XEQUE, expected) << field;
        EXPECT_EQ(trial.p_xy_R[white], square_of("h1")) << "the last one found";
        EXPECT_EQ(attacked_in_sets(white, trial.tab2), expected == 1) << field;
        EXPECT_EQ(trial.p_xy_R[white], square_of("h1"));
    }
}

TEST_F(Check, LegalityOfATrialIsTheMoversKingAlone) {
    // The white rook may give check; it may not leave the pin.
    set_up_ply(4, "4r1k1/8/8/8/8/8/4R3/4K3 w - - 0 1");
    const Texts moves = texts_of(replies_tried(4));
    EXPECT_EQ(count_of(moves, "e2e8"), 1);
    EXPECT_EQ(count_of(moves, "e2g2"), 0);
}

// --- The square of a king on the ply's own board ---

TEST_F(MateAndStalemate, TheSquareIsTestedOnTheBoardOfThePly) {
    const Board attacked = board_from("4q3/8/8/8/8/8/8/4K3");
    const Board not_attacked = board_from("8/8/8/8/8/8/8/4K3");
    for (const int n : {0, 1, 2, 23}) {
        ply[n].tabd = attacked;
        trial.tab2 = not_attacked;
        trial.p_xy_R = {0, 0};
        verifica_xequemate<white>(n, square_of("e1"));
        EXPECT_EQ(trial.XM, 1);
        verifica_xequemate<white>(n, square_of("d1"));  // the square given, not the king's
        EXPECT_EQ(trial.XM, 0);
        EXPECT_EQ(trial.tab2, not_attacked);
        EXPECT_EQ(trial.p_xy_R[white], 0);
        ply[n].tabd = {};
    }
}

TEST_F(MateAndStalemate, AnAttackedKingCastlesToNeitherSide) {
    for (const Case& each : for_both_colours("4q2k/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        for (const int n : {1, 2, 5, 8}) {
            set_up_ply(n, each.fen);
            const Texts moves = texts_of(replies_tried(n));
            EXPECT_EQ(count_of(moves, each.moves[0]) + count_of(moves, each.moves[1]), 0) << n;
            EXPECT_EQ(ply[n].XEQUE_MATE, 1) << n;
            EXPECT_FALSE(moves.empty());
        }
        place_fen(each.fen);
        const Texts moves = texts_of(root_moves_tried());
        EXPECT_EQ(count_of(moves, each.moves[0]) + count_of(moves, each.moves[1]), 0);
    }
    // The same without the queen.
    set_up_ply(2, "7k/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    const Texts moves = texts_of(replies_tried(2));
    EXPECT_EQ(count_of(moves, "e1g1") + count_of(moves, "e1c1"), 2);
    EXPECT_EQ(ply[2].XEQUE_MATE, 0);
}

// Searches the move at ply n and gives the value of the node, from the view of the root side.
float value_after(int n, std::string_view fen, std::string_view m) {
    fresh_process();
    set_up_ply(n - 1, fen);
    search.emp = -7;
    float v = 0;
    without_report([&] { v = search_node(n, move_from(m)); });
    return v;
}

TEST_F(MateAndStalemate, NoReplyToACheckIsMateAtEveryPly) {
    for (const auto& [fen, m] :
         {std::pair{"6k1/5ppp/8/8/8/8/8/R3K3 w - - 0 1", "a1a8"}, {"k7/2Q5/1K6/8/8/8/8/8 w - - 0 1", "c7b7"}}) {
        for (const Case& each : for_both_colours(fen, {m})) {
            for (int n = 1; n <= 23; ++n) {
                const float v = value_after(n, each.fen, each.moves[0]);
                EXPECT_EQ(v, mate_value(n)) << "ply " << n << ' ' << each.fen;
                EXPECT_EQ(tree.nd, n);
                EXPECT_EQ(ply[n].X_D, 1);
                EXPECT_EQ(ply[n].XEQUE_MATE, 1);
            }
        }
    }
}

TEST_F(MateAndStalemate, NoReplyWithoutCheckIsADrawAtEveryPly) {
    for (const Case& each : for_both_colours("k7/8/1K6/8/8/8/8/2Q5 w - - 0 1", {"c1c7"})) {
        for (int n = 1; n <= 23; ++n) {
            const float v = value_after(n, each.fen, each.moves[0]);
            EXPECT_EQ(v, -7.0F) << "ply " << n << ' ' << each.fen;
            EXPECT_EQ(tree.nd, n);
            EXPECT_EQ(ply[n].X_D, 1);
            EXPECT_EQ(ply[n].XEQUE_MATE, 0);
        }
    }
}

// Replies that would leave the king attacked are no replies, though there are pieces to move.
TEST_F(MateAndStalemate, IllegalRepliesAreNone) {
    // Smothered: every black man is shut in or pinned.
    for (const Case& each : for_both_colours("6rk/6pp/7N/8/8/8/8/4K3 w - - 0 1", {"h6f7"})) {
        EXPECT_EQ(value_after(4, each.fen, each.moves[0]), mate_value(4));
        EXPECT_EQ(ply[4].X_D, 1);
        EXPECT_EQ(tree.nd, 4);
    }
    // Stalemate with a pinned bishop.
    for (const Case& each : for_both_colours("kb5R/8/1K6/8/8/8/8/8 w - - 0 1", {"h8g8"})) {
        EXPECT_EQ(value_after(4, each.fen, each.moves[0]), -7.0F);
        EXPECT_EQ(ply[4].X_D, 1);
        EXPECT_EQ(tree.nd, 4);
    }
}

// X_D alone does not tell mate: children that were entered have moved nd on.
TEST_F(MateAndStalemate, RepliesThatImproveNothingAreStillReplies) {
    for (const bool in_check : {false, true}) {
        for (const int n : {2, 3, 6, 9, 12}) {
            set_up_ply(n - 1, "4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
            search.emp = -7;
            const ChildrenOf entered(n, [n](Move) { tree.nd = n + 1; });
            const float v = search_node(n, move_from(in_check ? "a1a8" : "a1a2"));
            EXPECT_FALSE(entered.moves().empty());
            EXPECT_EQ(ply[n].X_D, 1) << n;
            EXPECT_EQ(v, n % 2 == 0 ? -16500.0F : 16500.0F) << n << ": the start value stands";
        }
    }
}

TEST_F(MateAndStalemate, AnImprovementClearsTheFlagOfNoReply) {
    for (const int n : {2, 3, 6, 9, 12}) {
        set_up_ply(n - 1, "4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
        const ChildrenOf leaves(n, [n](Move) { value_of_child(n) = 5.0F; });  // leaves do not touch nd
        EXPECT_EQ(search_node(n, move_from("a1a2")), 5.0F) << n;
        EXPECT_EQ(ply[n].X_D, 0) << n;
        EXPECT_EQ(tree.nd, n);
    }
}

}  // namespace
