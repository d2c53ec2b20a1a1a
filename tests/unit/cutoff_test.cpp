// The score scale, the two chains of live bounds and the tests that end a node's move loop. The children of the node
// under test are scripted.
#include "support/bare_search.h"
#include "support/moves.h"
#include "uci/position.h"

#include <cmath>

namespace {

using namespace tests;
using namespace ondrel;

bool even(int n) { return n % 2 == 0; }

// The bound at ply k of the chain that node n is tested against: the opponent's of whoever replies there.
float& opposing(int n, int k) { return even(n) ? bounds.beta[k] : bounds.alfa[k]; }
int nearest_opposing(int n) { return n - 1; }
int farthest_opposing(int n) { return even(n) ? 1 : 0; }
// A little better for the root's opponent at even, for the root side at odd plies: not enough to cut node n at v.
float out_of_reach(int n, float v) { return std::nextafter(v, even(n) ? 20000.0F : -20000.0F); }

class Cutoff : public BareSearch {
protected:
    // Node n is about to be searched from the position, its replies well above the horizon.
    static void stand_before(int n, std::string_view fen) {
        set_up_ply(n - 1, fen);
        search.deep = even(n) ? n + 3 : n + 2;
        pass.DEEP = search.deep;
    }
    // The same with node n the last that tries replies.
    static void stand_at_the_last_ply(int n, std::string_view fen) {
        set_up_ply(n - 1, fen);
        search.deep = n;
        pass.DEEP = n;
    }

    // The replies that node n tries to the move when each of them is worth v.
    static Texts replies(int n, std::string_view move, float v) {
        const Script children(every_child(n + 1, v));
        search_node(n, move_from(move));
        return children.moves(n + 1);
    }
};

// After the king's move White has two captures, pushes, and moves of a knight and the king.
constexpr auto many_replies = "7k/8/8/2p1p3/3P4/8/PP6/1N2K3 b - - 0 1";
const Texts all_of_them{"d4c5", "d4e5", "a2a4", "a2a3", "b2b4", "b2b3", "d4d5", "b1d2",
                        "b1a3", "b1c3", "e1f1", "e1d1", "e1e2", "e1f2", "e1d2"};

// --- The scale ---

TEST_F(Cutoff, MatesShrinkByElevenHundredAtEveryMoveAndEndAtThirtyThreeHundred) {
    const std::array<float, 24> sizes{0,    15400, 15400, 14300, 14300, 13200, 13200, 12100, 12100, 11000, 11000, 9900,
                                      9900, 8800,  8800,  7700,  7700,  6600,  6600,  5500,  5500,  4400,  4400,  3300};
    for (int n = 1; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, "6k1/5ppp/8/8/8/8/8/R3K3 w - - 0 1");
        EXPECT_EQ(search_node(n, move_from("a1a8")), even(n) ? -sizes[n] : sizes[n]);
    }
}

TEST_F(Cutoff, LimitsOfANewGameAndOfAPositionAreTheNearestMatesThatCanFollow) {
    const std::array<float, 24> limits{15400, 15400, 14300, 14300, 13200, 13200, 12100, 12100,
                                       11000, 11000, 9900,  9900,  8800,  8800,  7700,  7700,
                                       6600,  6600,  5500,  5500,  4400,  4400,  3300,  3300};
    const auto expect_limits_after = [&limits](const std::function<void()>& beginning) {
        bounds.MAXcut.fill(1.0F);
        bounds.MAXcutt.fill(2.0F);
        beginning();
        EXPECT_EQ(bounds.MAXcut, limits);
        EXPECT_EQ(bounds.MAXcutt, limits);
    };
    expect_limits_after([] { begin_game(white); });
    expect_limits_after([] { place_fen(many_replies); });
}

TEST_F(Cutoff, MateAtPlyThreeIsPreferredToOneAtPlyFive) {
    for (const bool sooner_first : {true, false}) {
        stand_before(2, many_replies);
        int k = 0;
        const Script children([&](const Call& x) -> std::optional<float> {
            if (x.n != 3) {
                return std::nullopt;
            }
            ++k;
            return (k == 1) == sooner_first ? mate_value(3) : mate_value(5);
        });
        EXPECT_EQ(search_node(2, move_from("h8g8")), 14300.0F);
        // Nothing is better than the nearer mate: no further reply is looked at once it is there.
        EXPECT_EQ(children.count(3), sooner_first ? 1U : 2U);
    }
}

// --- The chain ---

TEST_F(Cutoff, ValueEqualToAnyBoundOfTheOtherChainCuts) {
    for (int n = 1; n <= 23; ++n) {
        for (int k = nearest_opposing(n); k >= farthest_opposing(n); k -= 2) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", bound " << k);
            stand_before(n, many_replies);
            opposing(n, k) = 5.0F;
            EXPECT_EQ(replies(n, "h8g8", 5.0F).size(), 1U);
        }
    }
}

TEST_F(Cutoff, ValueJustInsideEveryBoundOfTheOtherChainDoesNotCut) {
    for (int n = 1; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, many_replies);
        for (int k = nearest_opposing(n); k >= farthest_opposing(n); k -= 2) {
            opposing(n, k) = out_of_reach(n, 5.0F);
        }
        EXPECT_EQ(replies(n, "h8g8", 5.0F).size(), all_of_them.size());
    }
}

TEST_F(Cutoff, OwnChainAboveDoesNotCut) {
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, many_replies);
        for (int k = n - 2; k >= 0; k -= 2) {
            value_of_ply(k) = 5.0F;
        }
        EXPECT_EQ(replies(n, "h8g8", 5.0F).size(), all_of_them.size());
    }
}

TEST_F(Cutoff, TestRunsAfterAChildThatImprovesNothing) {
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, many_replies);
        int k = 0;
        const Script children([&](const Call& x) -> std::optional<float> {
            if (x.n != n + 1) {
                return std::nullopt;
            }
            if (++k == 2) {
                ply[n].cut_at = 5.0F;  // the bound that ends the loop, as taken on entry
                return even(n) ? -100.0F : 100.0F;
            }
            return 5.0F;
        });
        search_node(n, move_from("h8g8"));
        EXPECT_EQ(children.count(n + 1), 2U);
    }
}

TEST_F(Cutoff, ValueBeyondTheBoundIsHandedUpUnclamped) {
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, many_replies);
        opposing(n, n - 1) = even(n) ? 5.0F : -5.0F;
        const float far = even(n) ? 300.0F : -300.0F;
        EXPECT_EQ(replies(n, "h8g8", far).size(), 1U);
        EXPECT_EQ(value_of_ply(n), far);
    }
}

TEST_F(Cutoff, EqualValueChangesNothing) {
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, many_replies);
        std::vector<int> mark_found;
        const Script children([&](const Call& x) -> std::optional<float> {
            if (x.n != n + 1) {
                return std::nullopt;
            }
            mark_found.push_back(ply[n].X_D);
            ply[n].X_D = 1;
            const float better = even(n) ? 6.0F : 4.0F;
            return mark_found.size() <= 2 ? 5.0F : better;
        });
        search_node(n, move_from("h8g8"));
        ASSERT_GE(mark_found.size(), 5U);
        EXPECT_EQ(mark_found[1], 0);  // the first child improved the bound
        EXPECT_EQ(mark_found[2], 1);  // the second was equal
        EXPECT_EQ(mark_found[3], 0);  // the third was better
        EXPECT_EQ(mark_found[4], 1);
    }
}

TEST_F(Cutoff, AfterACutAtADistantBoundTheNodeAboveGoesOn) {
    for (const int n : {10, 11, 12, 13, 16, 17, 20, 21}) {
        SCOPED_TRACE(n);
        // Black replies at node n, White at n + 1, whose children are scripted.
        stand_before(n, "7k/p7/8/8/8/8/P7/K7 w - - 0 1");
        const int distant = even(n) ? 4 : 3;
        opposing(n + 1, distant) = 5.0F;
        const Script children(every_child(n + 2, 5.0F));
        search_node(n, move_from("a1b1"));
        EXPECT_EQ(children.moves(n + 1), (Texts{"a7a5", "a7a6", "h8g8", "h8h7", "h8g7"}));
        EXPECT_EQ(children.count(n + 2), 5U);  // each ended by its first reply
        EXPECT_EQ(cut_flag_of(n), 0);
    }
}

// --- The limits ---

TEST_F(Cutoff, ValueAtTheLimitOfThePlyCuts) {
    for (int n = 1; n <= 23; ++n) {
        SCOPED_TRACE(n);
        const float at_limit = even(n) ? 50.0F : -50.0F;
        stand_before(n, many_replies);
        bounds.MAXcut[n] = 50.0F;
        bounds.MAXcutt[n] = 50.0F;
        EXPECT_EQ(replies(n, "h8g8", at_limit).size(), 1U);

        stand_before(n, many_replies);
        bounds.MAXcut[n] = 50.0F;
        bounds.MAXcutt[n] = 50.0F;
        EXPECT_EQ(replies(n, "h8g8", std::nextafter(at_limit, 0.0F)).size(), all_of_them.size());
    }
}

TEST_F(Cutoff, LimitsOfOtherPliesDoNotCut) {
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, many_replies);
        for (int k = 0; k < 24; ++k) {
            if (k != n) {
                bounds.MAXcut[k] = bounds.MAXcutt[k] = -400.0F;
            }
        }
        EXPECT_EQ(replies(n, "h8g8", 0.0F).size(), all_of_them.size());
    }
}

TEST_F(Cutoff, FindingTheMateOfTheNextPlyEndsTheNodeAtOnce) {
    for (int n = 1; n <= 22; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, many_replies);
        EXPECT_EQ(replies(n, "h8g8", mate_value(n + 1)).size(), 1U);
        // A mate one move farther off leaves a nearer one to look for.
        stand_before(n, many_replies);
        EXPECT_EQ(replies(n, "h8g8", mate_value(n + 3)).size(), all_of_them.size());
    }
    // With a real mate: the rook's ray is walked up to the mate, and the king is not asked any more.
    for (int n = 4; n <= 20; n += 2) {
        SCOPED_TRACE(n);
        stand_before(n, "6k1/5ppp/8/8/8/8/8/R3K3 b - - 0 1");
        search.deep = pass.DEEP = n + 1;
        const Script children([](const Call&) { return std::nullopt; });
        EXPECT_EQ(search_node(n, move_from("g8h8")), mate_value(n + 1));
        EXPECT_EQ(children.moves(n + 1),
                  (Texts{"a1b1", "a1c1", "a1d1", "a1a2", "a1a3", "a1a4", "a1a5", "a1a6", "a1a7", "a1a8"}));
    }
}

// --- Contentment of the last ply ---

TEST_F(Cutoff, LastPlySearchesOnlyTheFirstOfTwoCaptures) {
    for (int n = 7; n <= 23; n += 2) {
        SCOPED_TRACE(n);
        stand_at_the_last_ply(n, many_replies);
        EXPECT_EQ(replies(n, "h8g8", 0.0F), (Texts{"d4c5"}));
        stand_before(n, many_replies);
        EXPECT_EQ(replies(n, "h8g8", 0.0F), all_of_them);
    }
}

TEST_F(Cutoff, LastPlyTakesTheFirstLegalCaptureNotTheFirstFound) {
    // The pawn on d4 is pinned on its file and may not take; the knight may.
    for (int n = 7; n <= 23; n += 2) {
        SCOPED_TRACE(n);
        stand_at_the_last_ply(n, "3r3k/8/8/2p5/3P4/1N6/8/3K4 b - - 0 1");
        EXPECT_EQ(replies(n, "h8g8", 0.0F), (Texts{"b3c5"}));
    }
}

TEST_F(Cutoff, BelowPlySevenTheLastPlyTriesEveryReply) {
    for (const int n : {3, 5}) {
        SCOPED_TRACE(n);
        stand_at_the_last_ply(n, many_replies);
        EXPECT_EQ(replies(n, "h8g8", 0.0F), all_of_them);
    }
}

TEST_F(Cutoff, AtTheLastPlyPushesDoNotEndTheLoopButAQuietKnightMoveDoes) {
    for (int n = 7; n <= 23; n += 2) {
        SCOPED_TRACE(n);
        stand_at_the_last_ply(n, "7k/8/8/8/8/8/PP6/1N2K3 b - - 0 1");
        EXPECT_EQ(replies(n, "h8g8", 0.0F), (Texts{"a2a4", "a2a3", "b2b4", "b2b3", "b1d2"}));
    }
}

TEST_F(Cutoff, AtTheLastPlyAQuietMoveOfAnyPieceEndsTheLoop) {
    for (const char piece : {'N', 'B', 'R', 'Q', '1'}) {
        for (int n = 7; n <= 23; n += 2) {
            SCOPED_TRACE(testing::Message() << "ply " << n << " " << piece);
            stand_at_the_last_ply(n, std::string("7k/8/8/8/8/8/8/2") + piece + "1K3 b - - 0 1");
            EXPECT_EQ(replies(n, "h8g8", 0.0F).size(), 1U);
        }
    }
}

TEST_F(Cutoff, AtTheLastPlyStoredMovesDoNotEndTheLoop) {
    for (int n = 7; n <= 23; n += 2) {
        SCOPED_TRACE(n);
        stand_at_the_last_ply(n, many_replies);
        slots.aag_ddg[n] = {4, 4, 3, 3};  // the pawn on e5, taken from d4
        EXPECT_EQ(replies(n, "h8g8", 0.0F), (Texts{"d4e5", "d4c5"}));
        for (const char* quiet : {"b1c3", "e1f2", "b2b3"}) {
            stand_at_the_last_ply(n, "7k/8/8/8/8/8/PP6/1N2K3 b - - 0 1");
            slots.aa_dd[n] = move_from(quiet);
            Texts expected{quiet};
            for (const char* m : {"a2a4", "a2a3", "b2b4", "b2b3", "b1d2"}) {
                if (std::string(m) != quiet) {
                    expected.emplace_back(m);
                }
            }
            EXPECT_EQ(replies(n, "h8g8", 0.0F), expected);
        }
    }
}

TEST_F(Cutoff, AtTheLastPlyPromotionsDoNotEndTheLoop) {
    for (int n = 7; n <= 23; n += 2) {
        SCOPED_TRACE(n);
        stand_at_the_last_ply(n, "1n5k/P7/8/8/8/8/P7/4K3 b - - 0 1");
        EXPECT_EQ(replies(n, "h8g7", 0.0F), (Texts{"a7b8", "a7a8", "a2a4", "a2a3", "e1f1"}));
    }
}

TEST_F(Cutoff, AtTheLastPlyEnPassantEndsTheLoopStoredOrNot) {
    constexpr auto fen = "7k/3p4/8/4P3/8/8/8/4K3 b - - 0 1";
    for (int n = 7; n <= 23; n += 2) {
        SCOPED_TRACE(n);
        stand_at_the_last_ply(n, fen);
        EXPECT_EQ(replies(n, "d7d5", 0.0F), (Texts{"e5d6"}));
        stand_at_the_last_ply(n, fen);
        slots.aa_dd[n] = move_from("e5d6");
        EXPECT_EQ(replies(n, "d7d5", 0.0F), (Texts{"e5d6"}));
        stand_before(n, fen);
        EXPECT_EQ(replies(n, "d7d5", 0.0F).size(), 7U);
    }
}

// --- The flags ---

TEST_F(Cutoff, AFlagSetByTheChildEndsThePlySixLoopAtOnceAndOtherLoopsBehindTheGenerator) {
    for (int n = 2; n <= 22; n += 2) {
        SCOPED_TRACE(n);
        stand_before(n, "7k/8/8/8/8/8/8/1N2K3 b - - 0 1");
        const Script children([n](const Call& x) -> std::optional<float> {
            bounds.corte_beta[n - 1] = 1;
            return x.n == n + 1 ? std::optional(0.0F) : std::nullopt;
        });
        search_node(n, move_from("h8g8"));
        EXPECT_EQ(children.moves(n + 1), n == 6 ? (Texts{"b1d2"}) : (Texts{"b1d2", "b1a3", "b1c3"}));
    }
}

TEST_F(Cutoff, ANodeClearsItsFlagWhenItNextStarts) {
    for (int n = 1; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, many_replies);
        cut_flag_of(n) = 1;
        EXPECT_EQ(replies(n, "h8g8", 0.0F).size(), all_of_them.size());
    }
}

TEST_F(Cutoff, ACutIsKeptInTheSlotOfItsKind) {
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, many_replies);
        opposing(n, n - 1) = 0.0F;
        replies(n, "h8g8", 0.0F);
        EXPECT_EQ(slots.aag_ddg[n], (Move{2, 4, 3, 3}));  // the pawn on c5, taken from d4: victim first
        EXPECT_EQ(slots.aa_dd[n], no_move);

        stand_before(n, "7k/8/8/8/8/8/8/1N2K3 b - - 0 1");
        opposing(n, n - 1) = 0.0F;
        replies(n, "h8g8", 0.0F);
        EXPECT_EQ(slots.aag_ddg[n], no_move);
        EXPECT_EQ(slots.aa_dd[n], move_from("b1d2"));
    }
}

TEST_F(Cutoff, APromotionThatCutsBeforeAllElseIsNotKept) {
    for (int n = 7; n <= 23; n += 2) {
        SCOPED_TRACE(n);
        stand_before(n, "1n5k/P7/8/8/8/8/8/4K3 b - - 0 1");
        opposing(n, n - 1) = 0.0F;
        EXPECT_EQ(replies(n, "h8g7", 0.0F), (Texts{"a7b8"}));
        EXPECT_EQ(slots.aag_ddg[n], no_move);
        EXPECT_EQ(slots.aa_dd[n], no_move);
    }
}

TEST_F(Cutoff, AStoredMoveThatCutsLeavesTheSlotsAlone) {
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, many_replies);
        slots.aag_ddg[n] = {4, 4, 3, 3};
        slots.aa_dd[n] = move_from("b1a3");
        opposing(n, n - 1) = 0.0F;
        EXPECT_EQ(replies(n, "h8g8", 0.0F), (Texts{"d4e5"}));
        EXPECT_EQ(slots.aag_ddg[n], (Move{4, 4, 3, 3}));
        EXPECT_EQ(slots.aa_dd[n], move_from("b1a3"));
    }
}

// --- Ply 1 ---

TEST_F(Cutoff, PlyOneStandsStillOnceTheRootMoveIsRefuted) {
    // A whole stage of captures, then of quiet moves, is left out as soon as beta1 is down at alfa0.
    for (const float bound : {5.0F, 4.9F}) {
        stand_before(1, many_replies);
        bounds.alfa[0] = bound;
        int k = 0;
        const Script children([&](const Call&) { return std::optional(++k == 3 ? 5.0F : 9.0F); });
        search_node(1, move_from("h8g8"));
        EXPECT_EQ(children.count(2), bound == 5.0F ? 3U : all_of_them.size());
    }
}

}  // namespace
