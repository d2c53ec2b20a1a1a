// One node of the tree: what ends a line, what a leaf is worth, what a node expands to and in which order it tries its
// replies. Below the node the children are scripted, so that nothing but the node itself is seen.
#include "eval/leaf.h"
#include "search/noted_leaves.h"
#include "search/observers.h"
#include "support/bare_search.h"
#include "support/moves.h"

#include <cmath>

namespace {

using namespace tests;
using namespace ondrel;

// The worth of material at a leaf in its plainest form: the lead, and five times the logarithm of the ratio.
float lead_with_ratio(float own, float other) {
    return static_cast<float>(static_cast<long double>(own - other) +
                              5.0L * std::log(static_cast<long double>(own) / static_cast<long double>(other)));
}

class Node : public BareSearch {
protected:
    // Node n is about to be searched from the position, with all its replies above the horizon.
    static void stand_before(int n, std::string_view fen) {
        set_up_ply(n - 1, fen);
        search.deep = n % 2 == 0 ? n + 1 : n;
        pass.DEEP = search.deep;
    }
    // The same with node n as the horizon.
    static void stand_at_the_horizon(int n, std::string_view fen) {
        set_up_ply(n - 1, fen);
        search.deep = n - 1;
        pass.DEEP = search.deep;
    }
};

constexpr std::array plies_at_the_horizon{4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24};

// White to move can take a rook with the knight.
constexpr auto rook_hangs = "4k3/8/8/3r4/8/4N3/8/4K3 w - - 0 1";
// White mates on the last rank.
constexpr auto back_rank = "6k1/5ppp/8/8/8/8/8/R3K3 w - - 0 1";
// The queen can make a quiet move, a check and a capture without check; a pawn can be pushed.
constexpr auto queen_of_all_trades = "4k3/pppp4/8/8/6n1/8/PPPP4/3QK3 w - - 0 1";

// --- Leaves ---

TEST_F(Node, LeafByACaptureCountsTheCapturedManThoughNoBoardHoldsTheMove) {
    options.EXTRA_EVALL = 0;
    for (const int n : plies_at_the_horizon) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, rook_hangs);
        const Board before = ply[n - 1].tabd;
        // Black is the root side at even plies: a bare king against king and knight.
        EXPECT_EQ(search_node(n, move_from("e3d5")), lead_with_ratio(110.0F, 142.0F));
        EXPECT_EQ(ply[n - 1].tabd, before);
    }
}

TEST_F(Node, LeafTouchesNoBoardAndNoMarkOfItsPly) {
    for (const int n : plies_at_the_horizon) {
        if (n == last_ply) {
            continue;  // has no board at all
        }
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, rook_hangs);
        ply[n].tabd.fill(7);
        ply[n].X_D = 9;
        ply[n].material = {1.0F, 2.0F};
        tree.nd = 77;
        search_node(n, move_from("e3d5"));
        EXPECT_EQ(ply[n].tabd[0], 7);
        EXPECT_EQ(ply[n].tabd[63], 7);
        EXPECT_EQ(ply[n].X_D, 9);
        EXPECT_EQ(ply[n].material[white], 1.0F);
        EXPECT_EQ(tree.nd, 77);
    }
}

TEST_F(Node, MatingMoveAtTheHorizonIsWorthItsMaterialAlone) {
    options.EXTRA_EVALL = 0;
    for (const int n : plies_at_the_horizon) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, back_rank);
        EXPECT_EQ(search_node(n, move_from("a1a8")), lead_with_ratio(140.0F, 160.0F));
    }
    // One ply inside the horizon the same move is mate.
    for (int n = 4; n <= 22; n += 2) {
        SCOPED_TRACE(n);
        stand_before(n, back_rank);
        EXPECT_EQ(search_node(n, move_from("a1a8")), mate_value(n));
    }
}

TEST_F(Node, PromotionByCaptureCountsEightyAndTheVictim) {
    options.EXTRA_EVALL = 0;
    for (const int n : plies_at_the_horizon) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, "1n2k3/P7/8/8/8/8/8/4K3 w - - 0 1");
        EXPECT_EQ(search_node(n, move_from("a7b8")), lead_with_ratio(110.0F, 200.0F));
    }
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, "1n2k3/P7/8/8/8/8/8/4K3 w - - 0 1");
        const Script replies(every_child(n + 1, 0.0F));
        search_node(n, move_from("a7b8"));
        EXPECT_EQ(ply[n].material[white], 120.0F + 80.0F);
        EXPECT_EQ(ply[n].material[black], 142.0F - 32.0F);
    }
}

TEST_F(Node, QuietPromotionCountsEighty) {
    options.EXTRA_EVALL = 0;
    stand_at_the_horizon(4, "4k3/P7/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_EQ(search_node(4, move_from("a7a8")), lead_with_ratio(110.0F, 200.0F));
    // The seventh rank is the mover's own: a black pawn on the rank of White's seventh is at home.
    stand_at_the_horizon(4, "4k3/p7/8/8/8/8/8/4K3 b - - 0 1");
    EXPECT_EQ(search_node(4, move_from("a7a6")), lead_with_ratio(110.0F, 120.0F));
}

TEST_F(Node, EnPassantCountsTenForTheMoverAndTakesNothingFromTheOther) {
    // The to-square is empty: what is found there says nothing, so the pawn is booked as the mover's gain.
    options.EXTRA_EVALL = 0;
    constexpr auto en_passant = "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1";
    for (const int n : plies_at_the_horizon) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, en_passant);
        EXPECT_EQ(search_node(n, move_from("e5d6")), lead_with_ratio(120.0F, 130.0F));
    }
    stand_before(5, en_passant);
    const Script replies(every_child(6, 0.0F));
    search_node(5, move_from("e5d6"));
    EXPECT_EQ(ply[5].material[white], 130.0F);
    EXPECT_EQ(ply[5].material[black], 120.0F);
}

TEST_F(Node, WithoutExtraDefinitionALeafIsTheBareLead) {
    options.EXTRA_EVALL = 0;
    options.extradef = 0;
    for (const int n : plies_at_the_horizon) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, rook_hangs);
        EXPECT_EQ(search_node(n, move_from("e3d5")), -32.0F);
    }
}

TEST_F(Node, RatioAtALeafIsWeighedByItsOption) {
    options.EXTRA_EVALL = 0;
    options.MQ = 0;
    stand_at_the_horizon(4, rook_hangs);
    EXPECT_EQ(search_node(4, move_from("e3d5")), -32.0F);
    options.MQ = 10;
    stand_at_the_horizon(4, rook_hangs);
    EXPECT_EQ(search_node(4, move_from("e3d5")), static_cast<float>(-32.0L + 10.0L * std::log(110.0L / 142.0L)));
}

TEST_F(Node, WithExtraEvaluationOffALeafIsMaterialAndRatioAndADeadDrawIsNotSeen) {
    constexpr auto lone_knight = "4k3/8/8/8/8/8/8/1N2K3 w - - 0 1";
    for (const int n : plies_at_the_horizon) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, lone_knight);
        search.EXTRA_EVAL = 0;
        judgement.EMPAT = 1;
        search.emp = -7;
        EXPECT_EQ(search_node(n, move_from("b1c3")), lead_with_ratio(110.0F, 142.0F));
        EXPECT_EQ(times(Rule::judged), 0U);
    }
    for (const int n : plies_at_the_horizon) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, lone_knight);
        search.EXTRA_EVAL = 1;
        search.emp = -7;
        EXPECT_EQ(search_node(n, move_from("b1c3")), -7.0F);
    }
}

TEST_F(Node, LeafAddsTheJudgementOfTheRootSideWhoeverIsToMove) {
    constexpr auto fen = "r3k3/ppp5/8/3n4/8/2N5/PP3PPP/R3K3 w - - 0 1";
    for (const int n : plies_at_the_horizon) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, fen);
        search.EXTRA_EVAL = 1;
        search_node(n, move_from("c3e4"));
        settle(n);
        const float v = value_of_ply(n);
        judgement.extraeval = 0;
        extra_eval<black>(pass.roque);
        EXPECT_EQ(
            v, lead_with_ratio(110.0F + 50.0F + 32.0F + 30.0F, 110.0F + 50.0F + 32.0F + 50.0F) + judgement.extraeval);
    }
    for (int n = 11; n <= 23; n += 2) {
        SCOPED_TRACE(n);
        stand_before(n, fen);
        pass.DEEP = 9;
        search.EXTRA_EVAL = 1;
        const float v = search_node(n, move_from("c3e4"));
        judgement.extraeval = 0;
        extra_evall<white>(pass.roque);
        EXPECT_EQ(
            v, lead_with_ratio(110.0F + 50.0F + 32.0F + 50.0F, 110.0F + 50.0F + 32.0F + 30.0F) + judgement.extraeval);
    }
}

// --- The lazy test ---

TEST_F(Node, LeafFivePawnsUnderAnyBoundOfTheRootSideIsNotJudged) {
    options.extradef = 0;  // so that the material value, -32, is exact
    for (const int n : plies_at_the_horizon) {
        for (int k = 0; k <= n - 2; k += 2) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", bound " << k);
            stand_at_the_horizon(n, rook_hangs);
            search.EXTRA_EVAL = 1;
            bounds.alfa[k] = -32.0F + 50.0F;
            clear_counts();
            EXPECT_EQ(search_node(n, move_from("e3d5")), -32.0F);
            EXPECT_EQ(times(Rule::lazy), 1U);
            EXPECT_EQ(times(Rule::judged), 0U);

            stand_at_the_horizon(n, rook_hangs);
            search.EXTRA_EVAL = 1;
            bounds.alfa[k] = -32.0F + 49.5F;
            clear_counts();
            search_node(n, move_from("e3d5"));
            EXPECT_EQ(times(Rule::lazy), 0U);
            EXPECT_EQ(times(Rule::judged), 1U);
        }
    }
}

TEST_F(Node, LeafFivePawnsOverAnyBoundOfTheOpponentIsNotJudged) {
    options.extradef = 0;
    for (int n = 11; n <= 23; n += 2) {
        for (int k = 1; k <= n - 2; k += 2) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", bound " << k);
            for (const float over : {50.0F, 49.5F}) {
                stand_before(n, "4k3/8/8/8/8/4N3/8/4K3 w - - 0 1");  // White, the root side, leads by 32
                pass.DEEP = 9;
                search.EXTRA_EVAL = 1;
                bounds.beta[k] = 32.0F - over;
                clear_counts();
                search_node(n, move_from("e3d5"));
                EXPECT_EQ(times(Rule::lazy), over == 50.0F ? 1U : 0U);
                EXPECT_EQ(times(Rule::judged), over == 50.0F ? 0U : 1U);
            }
        }
    }
}

// --- The gate beyond the nominal depth ---

// Whether node n tried any reply to the move.
bool expands(int n, std::string_view move) {
    const Script children(every_child(n + 1, 0.0F));
    search_node(n, move_from(move));
    return children.count(n + 1) > 0;
}

// The deepest nominal depth that still lies under ply n's gate.
int gate_depth(int n) { return n <= 11 ? 9 : (n % 2 == 0 ? n - 1 : n - 2); }

TEST_F(Node, BeyondTheNominalDepthOnlyCapturesPawnMovesAndChecksGoOn) {
    for (int n = 10; n <= 23; ++n) {
        SCOPED_TRACE(n);
        const auto beyond = [n](std::string_view move) {
            stand_before(n, queen_of_all_trades);
            pass.DEEP = gate_depth(n);
            return expands(n, move);
        };
        EXPECT_FALSE(beyond("d1b1"));
        EXPECT_EQ(times(Rule::gate), 1U);
        EXPECT_TRUE(beyond("a2a3"));
        EXPECT_TRUE(beyond("d1g4"));
        EXPECT_TRUE(beyond("d1e2"));
        EXPECT_EQ(times(Rule::gate), 1U);
        clear_counts();
    }
}

TEST_F(Node, WithinTheNominalDepthAQuietMoveGoesOn) {
    for (int n = 2; n <= 22; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, queen_of_all_trades);
        pass.DEEP = gate_depth(n) + 2;
        EXPECT_TRUE(expands(n, "d1b1"));
    }
}

TEST_F(Node, PliesUpToNineHaveNoGate) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, queen_of_all_trades);
        pass.DEEP = 1;
        EXPECT_TRUE(expands(n, "d1b1"));
    }
}

TEST_F(Node, UnderItsDepthANodeReturnsWithNothingWritten) {
    for (int n = 12; n <= 22; n += 2) {
        SCOPED_TRACE(n);
        stand_before(n, rook_hangs);
        search.deep = n - 3;
        pass.DEEP = search.deep;
        bounds.alfa[n] = 123.0F;
        const Script children(every_child(n + 1, 0.0F));
        EXPECT_EQ(search_node(n, move_from("e3d5")), 123.0F);  // a capture: no leaf by the gate
        EXPECT_EQ(children.count(n + 1), 0U);
    }
}

// --- No reply ---

TEST_F(Node, MateIsWorthItsPlyAlone) {
    for (int n = 1; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, back_rank);
        EXPECT_EQ(search_node(n, move_from("a1a8")), mate_value(n));
        stand_before(n, mirrored(back_rank));
        EXPECT_EQ(search_node(n, mirrored(move_from("a1a8"))), mate_value(n));
    }
}

TEST_F(Node, SoonerMateIsTheLarger) {
    for (int n = 1; n <= 21; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, back_rank);
        const float sooner = search_node(n, move_from("a1a8"));
        stand_before(n + 2, back_rank);
        const float later = search_node(n + 2, move_from("a1a8"));
        EXPECT_EQ(std::fabs(sooner) - std::fabs(later), 1100.0F);
        EXPECT_GE(std::fabs(later), 3300.0F);
    }
}

TEST_F(Node, StalemateIsWorthTheDrawScore) {
    constexpr auto stalemate = "k7/8/1K6/8/8/8/8/2Q5 w - - 0 1";
    for (int n = 1; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, stalemate);
        search.emp = -13;
        EXPECT_EQ(search_node(n, move_from("c1c7")), -13.0F);
        stand_before(n, mirrored(stalemate));
        search.emp = 21;
        EXPECT_EQ(search_node(n, mirrored(move_from("c1c7"))), 21.0F);
    }
}

TEST_F(Node, RepliesThatAllLoseAreNoMate) {
    // The bound has moved, so the node keeps what its children gave.
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, "4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
        const float bad = n % 2 == 0 ? -9000.0F : 9000.0F;
        const Script children(every_child(n + 1, bad));
        EXPECT_EQ(search_node(n, move_from("a1a8")), bad);
    }
}

// --- Expansion ---

TEST_F(Node, ExpansionCopiesThePlyAboveAndPlaysTheMoveThere) {
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1");
        tree.nd = 0;
        cut_flag_of(n) = 1;
        const Board above = ply[n - 1].tabd;
        int seen_nd = -1;
        int seen_flag = -1;
        const Script children([&](const Call& x) {
            seen_nd = tree.nd;
            seen_flag = cut_flag_of(n);
            return x.n == n + 1 ? std::optional(n % 2 == 0 ? -20.0F : 20.0F) : std::nullopt;
        });
        search_node(n, move_from("h1h8"));
        EXPECT_EQ(seen_nd, n);
        EXPECT_EQ(seen_flag, 0);
        EXPECT_EQ(ply[n - 1].tabd, above);
        Board played = above;
        played[square(7, 0)] = no_piece;
        played[square(7, 7)] = torre;
        EXPECT_EQ(ply[n].tabd, played);
        EXPECT_EQ(ply[n].jm_D.T_h_jm[white], 1);
        EXPECT_EQ(ply[n].jm_D.T_a_jm[white], 0);
        EXPECT_EQ(ply[n].jm_D.R_jm[black], 0);
        EXPECT_EQ(ply[n - 1].jm_D.T_h_jm[white], 0);
        EXPECT_EQ(ply[n].material[white], 210.0F);
        EXPECT_EQ(ply[n].material[black], 160.0F);
    }
}

TEST_F(Node, PliesTwoAndThreeTellTheObserverOnEveryEntry) {
    for (int n = 2; n <= 23; ++n) {
        static int told;
        SCOPED_TRACE(n);
        stand_before(n, queen_of_all_trades);
        told = 0;
        observers.shallow_node_entered = [] { ++told; };
        const Script replies(every_child(n + 1, n % 2 == 0 ? -20.0F : 20.0F));
        search_node(n, move_from("a2a3"));
        // At ply 2 its replies, played as they are, have entered ply 3.
        EXPECT_EQ(told, n == 2 ? 1 + static_cast<int>(replies.count(3)) : (n == 3 ? 1 : 0));
    }
}

TEST_F(Node, EveryReplyIsCountedAsANode) {
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, queen_of_all_trades);
        search.deep = n + (n % 2 == 0 ? 3 : 2);  // no ply that is content with its first reply
        const Script children(every_child(n + 1, n % 2 == 0 ? -20.0F : 20.0F));
        search.nodes = 0;
        search_node(n, move_from("a2a3"));
        EXPECT_EQ(search.nodes, 1U + children.count(n + 1));
    }
}

// --- The move order ---

// All victims within reach of pawns, and quiet moves of pawns, a knight and the king.
constexpr auto full_larder = "4k3/8/8/q1r1n1b1/1P1P1P1P/8/3P4/1N2K3 w - - 0 1";

Texts tried(int n) { return texts_of(replies_tried(n)); }

TEST_F(Node, CapturesComeByVictimThenQuietMovesByPiece) {
    for (int n = 2; n <= 22; ++n) {
        SCOPED_TRACE(n);
        set_up_ply(n, full_larder);
        EXPECT_EQ(tried(n), (Texts{"b4a5", "d4c5", "b4c5", "f4e5", "d4e5", "h4g5", "f4g5",  // Q R N B
                                   "b4b5", "d4d5", "d2d3", "f4f5", "h4h5",                  // pawns
                                   "b1a3", "b1c3", "e1f1", "e1d1", "e1e2", "e1f2"}));
    }
}

TEST_F(Node, StoredMovesComeFirstOfTheirKindAndOnlyOnce) {
    for (int n = 2; n <= 22; ++n) {
        SCOPED_TRACE(n);
        set_up_ply(n, full_larder);
        slots.aag_ddg[n] = {6, 4, 5, 3};  // the bishop on g5, taken from f4
        slots.aa_dd[n] = move_from("b1c3");
        EXPECT_EQ(tried(n), (Texts{"f4g5", "b4a5", "d4c5", "b4c5", "f4e5", "d4e5", "h4g5", "b1c3", "b4b5", "d4d5",
                                   "d2d3", "f4f5", "h4h5", "b1a3", "e1f1", "e1d1", "e1e2", "e1f2"}));
    }
}

TEST_F(Node, StaleStoredMovesHaveNoEffect) {
    const std::vector<Move> stale_captures{
        {6, 4, 0, 0},  // no man stands on the attacker's square
        {6, 4, 0, 4},  // a man of the wrong colour stands there
        {7, 7, 5, 3},  // no victim
        {3, 3, 5, 3},  // an own man as the victim
        {4, 7, 5, 3},  // the king as the victim
        {6, 4, 1, 3},  // a pawn that does not reach the victim
    };
    const std::vector<Move> stale_quiet{
        {2, 2, 2, 3},  // no man on the from-square
        {4, 4, 2, 3},  // the opponent's man
        {1, 0, 4, 4},  // no move of that man
        {7, 3, 6, 4},  // a capture
    };
    for (int n = 2; n <= 22; ++n) {
        set_up_ply(n, full_larder);
        const Texts without_slots = tried(n);
        ASSERT_EQ(without_slots.size(), 18U);
        for (const Move capture : stale_captures) {
            for (const Move quiet : stale_quiet) {
                SCOPED_TRACE(testing::Message() << "ply " << n << " " << text_of(capture) << " " << text_of(quiet));
                set_up_ply(n, full_larder);
                slots.aag_ddg[n] = capture;
                slots.aa_dd[n] = quiet;
                EXPECT_EQ(tried(n), without_slots);
            }
        }
    }
}

TEST_F(Node, StoredCaptureIsDroppedAtTheLastPlyBeforeTheHorizon) {
    for (int n = 2; n <= 22; n += 2) {
        SCOPED_TRACE(n);
        set_up_ply(n, full_larder);
        search.deep = n + 1;
        slots.aag_ddg[n] = {6, 4, 5, 3};
        const bool dropped = n >= 6;
        EXPECT_EQ(tried(n).front(), dropped ? "b4a5" : "f4g5");
        EXPECT_EQ(slots.aag_ddg[n].from_file, dropped ? -1 : 6);
    }
}

TEST_F(Node, PromotionsComeFirstAtOddPliesFromSeven) {
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        set_up_ply(n, "1n2k3/P7/8/8/8/8/3r4/4K3 w - - 0 1");
        const bool first = n % 2 == 1 && n >= 7;
        EXPECT_EQ(tried(n), first ? (Texts{"a7b8", "a7a8", "e1d2", "e1f1"}) : (Texts{"e1d2", "a7b8", "a7a8", "e1f1"}));
    }
}

TEST_F(Node, BlackTriesTheMirroredRepliesInTheMirroredPosition) {
    // Files keep their order and each side's own direction comes first, so that the two orders are mirrors as long as
    // no man's walk goes by ranks.
    for (int n = 2; n <= 22; ++n) {
        SCOPED_TRACE(n);
        set_up_ply(n, mirrored("4k3/8/8/q1r1n1b1/1P1P1P1P/8/3P4/4K3 w - - 0 1"));
        const Texts moves = tried(n);
        ASSERT_GE(moves.size(), 12U);
        EXPECT_EQ(Texts(moves.begin(), moves.begin() + 12), (Texts{"b5a4", "d5c4", "b5c4", "f5e4", "d5e4", "h5g4",
                                                                   "f5g4", "b5b4", "d5d4", "d7d6", "f5f4", "h5h4"}));
    }
}

TEST_F(Node, CutEndsTheWholeOrder) {
    for (int n = 2; n <= 22; ++n) {
        SCOPED_TRACE(n);
        set_up_ply(n - 1, mirrored(full_larder));
        search.deep = n + (n % 2 == 0 ? 3 : 2);
        pass.DEEP = search.deep;
        // White answers the quiet move of the black king in the mirrored larder.
        value_of_ply(n - 1) = 0.0F;
        const Script children(every_child(n + 1, 0.0F));
        search_node(n, move_from("e8f8"));
        EXPECT_EQ(children.count(n + 1), 1U);
    }
}

}  // namespace
