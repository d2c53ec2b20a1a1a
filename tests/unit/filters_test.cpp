// The tests between the storing of a node's material and the copy of its board: the vertical filter, the search
// extension and the time check. The replies are scripted. The clock is real, so a test sets the start of the search far
// into the past, or the budget so large that the time spent here is nothing.
#include "base/clock.h"
#include "support/bare_search.h"

#include <cmath>

namespace {

using namespace tests;
using namespace ondrel;

// Equal material, so that the static score of every quiet move is 0. The queen has a quiet move, a check and a capture;
// there are a pawn to push and one to promote.
constexpr auto balanced = "3qk3/pppp4/8/8/6n1/5N2/PPPP4/3QK3 w - - 0 1";
constexpr auto quiet = "d1b1";
constexpr auto push = "a2a3";
constexpr auto knight_move = "f3g5";

// A node with the filters' surroundings.
class Filters : public BareSearch {
protected:
    static void stand_before(int n, int depth, std::string_view fen = balanced) {
        set_up_ply(n - 1, fen);
        search.deep = pass.DEEP = depth;
        pass.corte_MAXcut = 0;
        clear_counts();
    }
    struct Outcome {
        float value;
        std::vector<int> depths;  // that the replies find

        [[nodiscard]] int first_depth() const { return depths.empty() ? -1 : depths.front(); }
    };
    // Searches node n with replies worth v.
    static Outcome search_with_replies(int n, std::string_view move, float v) {
        const Script children(every_child(n + 1, v));
        Outcome o{search_node(n, move_from(move)), {}};
        for (const Call& x : children.calls()) {
            o.depths.push_back(x.deep);
        }
        return o;
    }
};

// --- The vertical filter ---

class VerticalFilter : public Filters {
protected:
    void SetUp() override {
        Filters::SetUp();
        options.VERTICAL_filt = 1;
    }
    static constexpr float far = 700.0F;  // a value of the replies that no test mistakes for a static score
};

TEST_F(VerticalFilter, EndsALostLineAtTheLastPly) {
    for (int n = 9; n <= 21; n += 2) {
        for (int k = 0; k < n; k += 2) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", bound " << k);
            stand_before(n, n);
            bounds.alfa[k] = 10.0F;
            const Outcome lost = search_with_replies(n, quiet, far);
            EXPECT_EQ(lost.value, 0.0F);
            EXPECT_TRUE(lost.depths.empty());
            EXPECT_EQ(times(Rule::vertical_ends_node), 1U);
            EXPECT_EQ(search.deep, n);

            stand_before(n, n);
            bounds.alfa[k] = 9.9F;
            EXPECT_EQ(search_with_replies(n, quiet, far).value, far);
            EXPECT_EQ(times(Rule::vertical_ends_node), 0U);
        }
    }
}

TEST_F(VerticalFilter, BoundsOfPliesBelowTheNodeDoNotCount) {
    stand_before(9, 9);
    bounds.alfa[10] = bounds.alfa[12] = 900.0F;
    EXPECT_EQ(search_with_replies(9, quiet, far).value, far);
}

TEST_F(VerticalFilter, StaticScoreIsTheLeadWithTheRatioAfterTheMove) {
    for (int n = 9; n <= 21; n += 2) {
        SCOPED_TRACE(n);
        // The queen takes the knight: White leads by it.
        stand_before(n, n, "3qk3/pppp4/8/8/6n1/8/PPPP4/3QK3 w - - 0 1");
        bounds.alfa[0] = 900.0F;
        // cppcheck-suppress duplicateExpression; the men left have the same worth
        EXPECT_EQ(search_with_replies(n, "d1g4", far).value,
                  static_cast<float>(0.0L + 5.0L * std::log(240.0L / 240.0L)));
        stand_before(n, n, "3qk3/pppp4/8/8/6n1/8/PPPP4/3QK3 w - - 0 1");
        bounds.alfa[0] = 900.0F;
        EXPECT_EQ(search_with_replies(n, quiet, far).value,
                  static_cast<float>(-32.0L + 5.0L * std::log(240.0L / 272.0L)));
    }
    // A promotion counts its eighty on top of the pawn.
    options.MQ = 0;
    stand_before(9, 9, "8/P3k3/8/8/8/8/7r/3K4 w - - 0 1");
    bounds.alfa[0] = 900.0F;
    EXPECT_EQ(search_with_replies(9, "a7a8", far).value, 110.0F + 10.0F + 80.0F - 110.0F - 50.0F);
}

TEST_F(VerticalFilter, SparesAMoveThatGivesCheckAtTheLastPly) {
    for (int n = 9; n <= 21; n += 2) {
        SCOPED_TRACE(n);
        stand_before(n, n, "4k3/pppp3q/8/8/6n1/5N2/PPPP4/3QK3 w - - 0 1");
        bounds.alfa[0] = 900.0F;
        EXPECT_EQ(search_with_replies(n, "d1e2", far).value, far);
        EXPECT_EQ(times(Rule::vertical_ends_node), 0U);
    }
}

TEST_F(VerticalFilter, PawnMovesAndCapturesAtTheLastPlyAreNoException) {
    for (int n = 9; n <= 21; n += 2) {
        SCOPED_TRACE(n);
        stand_before(n, n);
        bounds.alfa[n - 1] = 10.0F;
        EXPECT_EQ(search_with_replies(n, push, far).value, 0.0F);
        stand_before(n, n, "3qk3/pppp4/8/8/6n1/8/PPPP4/3QK3 w - - 0 1");
        bounds.alfa[n - 1] = 10.0F;
        EXPECT_EQ(search_with_replies(n, "d1g4", far).value, 0.0F);
    }
}

TEST_F(VerticalFilter, GivesUpTwoPliesOfALostLineWhileTheScoreIsHeld) {
    for (int n = 9; n <= 21; n += 2) {
        for (int k = 2; k < n; k += 2) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", bound " << k);
            const auto depth_below = [&](float alfa0, float old, float bound) {
                stand_before(n, n + 2);
                bounds.alfa[0] = alfa0;
                bounds.ALFA0 = old;
                bounds.alfa[k] = bound;
                const Outcome o = search_with_replies(n, quiet, far);
                EXPECT_EQ(o.value, far);
                EXPECT_EQ(search.deep, n + 2);
                EXPECT_EQ(times(Rule::vertical_shortens), o.first_depth() == n ? 1U : 0U);
                return o.first_depth();
            };
            EXPECT_EQ(depth_below(-15.0F, -10.0F, 10.0F), n);
            EXPECT_EQ(depth_below(-15.0F, -10.0F, 9.9F), n + 2);
            EXPECT_EQ(depth_below(-15.0F, -9.9F, 10.0F), n + 2);
            EXPECT_EQ(depth_below(-15.1F, -20.0F, 10.0F), n + 2);
            EXPECT_EQ(depth_below(9.0F, 900.0F, 10.0F), n + 2);
        }
        // The first limit of the held score is 15 here.
        for (const float alfa0 : {15.0F, 14.9F}) {
            stand_before(n, n + 2);
            bounds.alfa[0] = alfa0;
            bounds.ALFA0 = 900.0F;
            EXPECT_EQ(search_with_replies(n, quiet, far).first_depth(), alfa0 == 15.0F ? n : n + 2);
        }
    }
}

TEST_F(VerticalFilter, LeavesTheOtherDepthsOfThosePliesAlone) {
    for (int n = 9; n <= 19; n += 2) {
        SCOPED_TRACE(n);
        stand_before(n, n + 4);
        bounds.alfa[0] = 15.0F;
        const Outcome o = search_with_replies(n, quiet, far);
        EXPECT_EQ(o.value, far);
        EXPECT_EQ(o.first_depth(), n + 4);
    }
}

TEST_F(VerticalFilter, WarnsTheParentAtPlySevenWithDepthSeven) {
    for (int k = 0; k <= 6; k += 2) {
        SCOPED_TRACE(k);
        const auto warns = [k](float bound) {
            stand_before(7, 7);
            bounds.corte_beta[5] = 0;
            bounds.alfa[k] = bound;
            const Outcome o = search_with_replies(7, quiet, far);
            EXPECT_FALSE(o.depths.empty());  // searched all the same
            return bounds.corte_beta[5] != 0;
        };
        EXPECT_TRUE(warns(10.0F));
        EXPECT_FALSE(warns(9.9F));
        EXPECT_TRUE(warns(3299.0F));
        EXPECT_FALSE(warns(3300.0F));  // a mate is no reason
    }
    EXPECT_EQ(times(Rule::vertical_ends_node), 0U);
}

TEST_F(VerticalFilter, AWarningAtPlySevenEndsTheParentsLoopAfterThatChild) {
    // White's replies at ply 6 are searched at ply 7; the bound of the root is out of reach for all of them.
    for (const float alfa0 : {10.0F, 9.9F}) {
        stand_before(6, 7, "3qk3/pppp4/8/8/8/8/PPPP4/3QK3 b - - 0 1");
        bounds.alfa[0] = alfa0;
        const Script children([](const Call& x) { return x.n == 8 ? std::optional(9.0F) : std::nullopt; });
        search_node(6, move_from("a7a6"));
        if (alfa0 == 10.0F) {
            EXPECT_EQ(children.count(7), 1U);
        } else {
            EXPECT_GT(children.count(7), 5U);
        }
    }
}

TEST_F(VerticalFilter, EndsALostQuietLineAtPlySevenWithDepthNine) {
    for (int k = 0; k <= 6; k += 2) {
        SCOPED_TRACE(k);
        stand_before(7, 9);
        bounds.alfa[k] = 10.0F;
        const Outcome lost = search_with_replies(7, quiet, far);
        EXPECT_EQ(lost.value, 0.0F);
        EXPECT_TRUE(lost.depths.empty());
        EXPECT_EQ(times(Rule::vertical_ends_node), 1U);
        stand_before(7, 9);
        bounds.alfa[k] = 9.9F;
        EXPECT_EQ(search_with_replies(7, quiet, far).value, far);
    }
}

TEST_F(VerticalFilter, SparesCapturesPromotionsAndChecksAtPlySevenWithDepthNine) {
    const auto spared = [](std::string_view fen, std::string_view move) {
        stand_before(7, 9, fen);
        bounds.alfa[0] = 900.0F;
        return !search_with_replies(7, move, 950.0F).depths.empty();
    };
    EXPECT_FALSE(spared(balanced, push));
    EXPECT_FALSE(spared(balanced, knight_move));
    EXPECT_TRUE(spared("3qk3/pppp4/8/8/6n1/8/PPPP4/3QK3 w - - 0 1", "d1g4"));
    EXPECT_TRUE(spared("7k/P7/8/8/8/8/7r/3K4 w - - 0 1", "a7a8"));
    EXPECT_FALSE(spared("7k/P7/8/8/8/8/7r/3K4 w - - 0 1", "d1e1"));
    EXPECT_TRUE(spared("4k3/pppp3q/8/8/6n1/5N2/PPPP4/3QK3 w - - 0 1", "d1e2"));
    // En passant is no capture here: its to-square is empty.
    EXPECT_FALSE(spared("7k/8/8/3pP3/8/8/7r/3K4 w - d6 0 1", "e5d6"));
}

TEST_F(VerticalFilter, DoesNothingAtPlySevenWithAnotherDepth) {
    stand_before(7, 11);
    bounds.alfa[0] = 900.0F;
    bounds.corte_beta[5] = 0;
    EXPECT_FALSE(search_with_replies(7, quiet, far).depths.empty());
    EXPECT_EQ(bounds.corte_beta[5], 0);
}

TEST_F(VerticalFilter, WarnsTheParentAtPlyTwentyThree) {
    for (int k = 0; k <= 22; k += 2) {
        SCOPED_TRACE(k);
        const auto warns = [k](float bound) {
            stand_before(23, 23);
            bounds.corte_beta[21] = 0;
            bounds.alfa[k] = bound;
            EXPECT_FALSE(search_with_replies(23, quiet, far).depths.empty());
            return bounds.corte_beta[21] != 0;
        };
        EXPECT_TRUE(warns(10.0F));
        EXPECT_FALSE(warns(9.9F));
        EXPECT_TRUE(warns(3300.0F));  // a mate warns here
    }
}

TEST_F(VerticalFilter, LeavesPliesThreeAndFiveAlone) {
    for (const int n : {3, 5}) {
        SCOPED_TRACE(n);
        stand_before(n, n);
        bounds.alfa[0] = 900.0F;
        bounds.corte_beta[n - 2] = 0;
        EXPECT_FALSE(search_with_replies(n, quiet, far).depths.empty());
        EXPECT_EQ(bounds.corte_beta[n - 2], 0);
    }
}

TEST_F(VerticalFilter, OptionSwitchesAllOfItOff) {
    for (int n = 7; n <= 23; n += 2) {
        for (const int depth : {n, n + 2}) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", depth " << depth);
            stand_before(n, depth);
            options.VERTICAL_filt = 0;
            bounds.alfa[0] = 900.0F;
            bounds.corte_beta[n - 2] = 0;
            const Outcome o = search_with_replies(n, quiet, 950.0F);
            ASSERT_FALSE(o.depths.empty());
            EXPECT_EQ(o.first_depth(), depth);
            EXPECT_EQ(bounds.corte_beta[n - 2], 0);
            EXPECT_EQ(
                times(Rule::vertical_ends_node) + times(Rule::vertical_shortens) + times(Rule::vertical_ends_parent),
                0U);
            options.VERTICAL_filt = 1;
        }
    }
}

TEST_F(VerticalFilter, SeesTheDepthThatALateMoveReductionLeaves) {
    stand_before(9, 11);
    options.LMR = 1;
    tree.curr_N[9] = 4;
    tree.LmrT[9] = 0;
    tree.AmrT[9] = 1;
    bounds.alfa[8] = 10.0F;
    EXPECT_EQ(search_with_replies(9, quiet, far).value, 0.0F);
    EXPECT_EQ(times(Rule::reduction), 1U);
    EXPECT_EQ(times(Rule::vertical_ends_node), 1U);
}

TEST_F(VerticalFilter, IsPartOfAFreeMoveRun) {
    // The mover passes, so the material is that of the ply above: level, though the move would win a rook.
    stand_before(9, 13, "3qk3/pppp4/8/8/6r1/8/PPPP4/R2QK3 w - - 0 1");
    options.LMR = 1;
    tree.curr_N[9] = 0;
    tree.LmrT[9] = tree.AmrT[9] = 0;
    bounds.alfa[0] = 15.0F;
    bounds.beta[7] = 900.0F;
    const Outcome o = search_with_replies(9, "d1g4", far);
    EXPECT_EQ(times(Rule::amr), 1U);
    EXPECT_EQ(times(Rule::vertical_shortens), 1U);
    EXPECT_EQ(o.first_depth(), 9);
    EXPECT_EQ(search.deep, 13);
}

// --- The search extension ---

class Extension : public Filters {
protected:
    // Node n as the last ply of a root move's full pass, with time in plenty.
    static void stand_before_a_last_ply(int n, int nominal) {
        stand_before(n, n);
        pass.DEEP = nominal;
        search.SEARCH_E = 1;
        root_move.LMRtest = 1;
        pass.SCANT = 1;
        pass.SCAN1 = 0;
        options.CPU = 2;
        root.npecas = {15, 15};
        options.Tu = 3;
        search.tempo = 2000000000;
        search.inicio = clock_ms();
    }
    static int depth_below(int n) {
        const Outcome o = search_with_replies(n, push, 700.0F);
        EXPECT_EQ(search.deep, n);
        EXPECT_EQ(times(Rule::extension), o.first_depth() == n ? 0U : 1U);
        return o.first_depth();
    }
};

TEST_F(Extension, GrowsALineOfAFullPassByTwoPlies) {
    for (int n = 9; n <= 21; n += 2) {
        SCOPED_TRACE(n);
        stand_before_a_last_ply(n, n);
        EXPECT_EQ(depth_below(n), n + 2);
    }
}

TEST_F(Extension, NeedsANominalDepthWithinTwoPliesAboveThatOfTheNode) {
    for (int n = 9; n <= 21; n += 2) {
        for (int nominal = 7; nominal <= 23; ++nominal) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", nominal depth " << nominal);
            stand_before_a_last_ply(n, nominal);
            const bool within = n == 9 ? nominal == 9 : (nominal >= n - 2 && nominal <= n);
            EXPECT_EQ(depth_below(n), within ? n + 2 : n);
        }
    }
}

TEST_F(Extension, IsGrantedAtPlyElevenFromDepthNineOnButAtPlyNineNotFromEleven) {
    stand_before_a_last_ply(9, 11);
    EXPECT_EQ(depth_below(9), 9);
    for (const int nominal : {9, 10, 11}) {
        stand_before_a_last_ply(11, nominal);
        EXPECT_EQ(depth_below(11), 13);
    }
}

TEST_F(Extension, NeedsEachOfItsSwitches) {
    for (int n = 9; n <= 21; n += 2) {
        SCOPED_TRACE(n);
        stand_before_a_last_ply(n, n);
        search.SEARCH_E = 0;
        EXPECT_EQ(depth_below(n), n);
        stand_before_a_last_ply(n, n);
        root_move.LMRtest = 0;
        EXPECT_EQ(depth_below(n), n);
        stand_before_a_last_ply(n, n);
        pass.SCANT = 0;
        EXPECT_EQ(depth_below(n), n);
        stand_before_a_last_ply(n, n);
        options.CPU = 0;
        EXPECT_EQ(depth_below(n), n);
    }
}

TEST_F(Extension, NeedsTheNodeToBeTheLastPly) {
    for (int n = 9; n <= 19; n += 2) {
        SCOPED_TRACE(n);
        stand_before_a_last_ply(n, n);
        search.deep = n + 2;
        EXPECT_EQ(search_with_replies(n, push, 700.0F).first_depth(), n + 2);
        EXPECT_EQ(times(Rule::extension), 0U);
    }
}

TEST_F(Extension, IsNotGrantedAtOtherPlies) {
    for (const int n : {3, 5, 7, 23}) {
        SCOPED_TRACE(n);
        stand_before_a_last_ply(n, n);
        EXPECT_EQ(search_with_replies(n, push, 700.0F).first_depth(), n);
    }
}

TEST_F(Extension, EndsAtTheSoftLimitOfTheTime) {
    // Thirty men at a third each: the soft limit is the budget over 150.
    for (int n = 9; n <= 21; n += 2) {
        SCOPED_TRACE(n);
        stand_before_a_last_ply(n, n);
        search.inicio = clock_ms() - 1000000;
        search.tempo = 165000000;
        EXPECT_EQ(depth_below(n), n + 2);
        EXPECT_GE(search.fim - search.inicio, 1000000);
        stand_before_a_last_ply(n, n);
        search.inicio = clock_ms() - 1000000;
        search.tempo = 135000000;
        EXPECT_EQ(depth_below(n), n);
    }
    // Fewer men, or a larger divisor, leave more of it.
    stand_before_a_last_ply(9, 9);
    search.inicio = clock_ms() - 1000000;
    search.tempo = 135000000;
    root.npecas = {12, 12};
    EXPECT_EQ(depth_below(9), 11);
    stand_before_a_last_ply(9, 9);
    search.inicio = clock_ms() - 1000000;
    search.tempo = 135000000;
    options.Tu = 4;
    EXPECT_EQ(depth_below(9), 11);
}

TEST_F(Extension, ComesBehindTheVerticalFilter) {
    // The filter gives two plies up, and the extension gives them back.
    stand_before_a_last_ply(9, 9);
    options.VERTICAL_filt = 1;
    search.deep = 11;
    bounds.alfa[0] = 15.0F;
    const Outcome o = search_with_replies(9, push, 700.0F);
    EXPECT_EQ(times(Rule::vertical_shortens), 1U);
    EXPECT_EQ(times(Rule::extension), 1U);
    EXPECT_EQ(o.first_depth(), 11);
}

TEST_F(Extension, IsGrantedInAWholeSearchWithScoutPassesAndNeverWithout) {
    const auto granted = [](std::string_view name, std::string_view value) {
        fresh_process();
        set_option(name, value);
        options.deepp = 9;
        const Colour own = place_fen("8/1k4K1/8/p7/P7/2p5/8/8 w - - 0 1");
        options.TC = 0;
        search.tempo = 2000000000;
        search_whole(own);
        return times(Rule::extension);
    };
    EXPECT_GT(granted("Full info", "true"), 0U);
    EXPECT_EQ(granted("PVS", "false"), 0U);
    EXPECT_EQ(granted("Search extension", "false"), 0U);
}

// --- The time check ---

class TimeCheck : public Filters {
protected:
    // Node n inside a deeper line, the search having begun a thousand seconds ago. Thirty men at a third each: the
    // hard limit is the budget over 15.
    static void stand_before_a_check(int n, int limit_in_ms) {
        stand_before(n, n == 21 ? 23 : n + 2);
        options.TC = 1;
        root.npecas = {15, 15};
        options.Tu = 3;
        search.tempo = limit_in_ms * 15;
        search.inicio = clock_ms() - 1000000;
        search.fim = -12345;
        bounds.corte_beta[n - 2] = 0;
        bounds.alfa[n - 1] = -700.0F;
    }
};

constexpr int passed = 900000;
constexpr int ahead = 1100000;

TEST_F(TimeCheck, PastTheHardLimitANodeGivesItsParentsBoundBack) {
    for (int n = 7; n <= 21; n += 2) {
        SCOPED_TRACE(n);
        stand_before_a_check(n, passed);
        const Outcome o = search_with_replies(n, push, 700.0F);
        EXPECT_EQ(o.value, -700.0F);
        EXPECT_TRUE(o.depths.empty());
        EXPECT_EQ(bounds.corte_beta[n - 2], 1);
        EXPECT_EQ(pass.corte_MAXcut, 1);
        EXPECT_EQ(search.deep, n);  // stays down for the rest of the line
        EXPECT_EQ(times(Rule::out_of_time), 1U);
        EXPECT_GE(search.fim - search.inicio, 1000000);
    }
}

TEST_F(TimeCheck, WithinTheHardLimitANodeGoesOn) {
    for (int n = 7; n <= 21; n += 2) {
        SCOPED_TRACE(n);
        stand_before_a_check(n, ahead);
        const Outcome o = search_with_replies(n, push, 700.0F);
        EXPECT_EQ(o.value, 700.0F);
        EXPECT_EQ(o.first_depth(), n + 2);
        EXPECT_EQ(bounds.corte_beta[n - 2], 0);
        EXPECT_EQ(pass.corte_MAXcut, 0);
        EXPECT_EQ(search.deep, n + 2);
        EXPECT_EQ(times(Rule::out_of_time), 0U);
        EXPECT_GE(search.fim - search.inicio, 1000000);  // the clock was read
    }
}

TEST_F(TimeCheck, LimitDependsOnTheMenAndOnTimeUsage) {
    for (const auto& [men, usage, fires] :
         {std::tuple{15, 3, true}, std::tuple{12, 3, false}, std::tuple{15, 4, false}, std::tuple{12, 2, true}}) {
        SCOPED_TRACE(testing::Message() << men << " " << usage);
        stand_before_a_check(9, passed);
        root.npecas = {men, men};
        options.Tu = usage;
        search_with_replies(9, push, 700.0F);
        EXPECT_EQ(times(Rule::out_of_time), fires ? 1U : 0U);
    }
}

TEST_F(TimeCheck, WhereTheParentIsBeingMatedTheNodeGoesOnAtItsLoweredDepth) {
    for (int n = 7; n <= 21; n += 2) {
        SCOPED_TRACE(n);
        stand_before_a_check(n, passed);
        bounds.alfa[n - 1] = -3300.0F;
        const Outcome o = search_with_replies(n, push, 700.0F);
        EXPECT_EQ(o.value, 700.0F);
        EXPECT_EQ(o.first_depth(), n);
        EXPECT_EQ(bounds.corte_beta[n - 2], 0);
        EXPECT_EQ(pass.corte_MAXcut, 1);
        EXPECT_EQ(search.deep, n);
        stand_before_a_check(n, passed);
        bounds.alfa[n - 1] = -3299.0F;
        EXPECT_TRUE(search_with_replies(n, push, 700.0F).depths.empty());
    }
}

TEST_F(TimeCheck, LastPlyDoesNotReadTheClock) {
    for (int n = 7; n <= 21; n += 2) {
        SCOPED_TRACE(n);
        stand_before_a_check(n, passed);
        search.deep = n;
        EXPECT_EQ(search_with_replies(n, push, 700.0F).value, 700.0F);
        EXPECT_EQ(search.fim, -12345);
        EXPECT_EQ(pass.corte_MAXcut, 0);
    }
}

TEST_F(TimeCheck, WithTimeControlOffNoNodeReadsTheClock) {
    for (int n = 7; n <= 21; n += 2) {
        SCOPED_TRACE(n);
        stand_before_a_check(n, passed);
        options.TC = 0;
        EXPECT_EQ(search_with_replies(n, push, 700.0F).value, 700.0F);
        EXPECT_EQ(search.fim, -12345);
        EXPECT_EQ(pass.corte_MAXcut, 0);
        EXPECT_EQ(search.deep, n == 21 ? 23 : n + 2);
    }
}

TEST_F(TimeCheck, OtherPliesDoNotReadTheClock) {
    for (int n = 2; n <= 23; ++n) {
        if (n >= 7 && n <= 21 && n % 2 == 1) {
            continue;
        }
        SCOPED_TRACE(n);
        set_up_ply(n - 1, balanced);
        search.deep = pass.DEEP = n <= 5 ? 5 : 23;
        options.TC = 1;
        search.tempo = 0;
        search.inicio = clock_ms() - 1000000;
        search.fim = -12345;
        search_with_replies(n, push, n % 2 == 0 ? -700.0F : 700.0F);
        EXPECT_EQ(search.fim, -12345);
    }
}

TEST_F(TimeCheck, StopsAWholeSearchAndKeepsTheMoveOfTheRoot) {
    // The hard limit is over before the search begins; the first line that reaches ply 7 in a deeper search stops it.
    fresh_process();
    const Colour own = place_fen("8/1p4k1/6p1/8/3P4/1P4P1/6K1/8 w - - 0 1");
    search.tempo = 0;
    search.inicio = clock_ms() - 1000000;
    game.abcd = no_move;
    search_whole(own);
    EXPECT_GT(times(Rule::out_of_time), 0U);
    EXPECT_EQ(pass.corte_MAXcut, 1);
    EXPECT_NE(game.abcd, no_move);
}

}  // namespace
