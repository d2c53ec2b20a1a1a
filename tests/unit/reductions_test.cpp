// Passes that shorten or skip a subtree: late-move reduction, the free move given by the parent (Amr), null moves and
// the shallow pass. The children of the node under test are scripted, so each rule is seen to act or not to act by the
// depth that they find and by the counters.
#include "memory/shallow_tables.h"
#include "support/bare_search.h"
#include "support/chess_rules.h"

#include <algorithm>
#include <cmath>

namespace {

using namespace tests;
using namespace ondrel;

bool even(int n) { return n % 2 == 0; }
// The value that the bound of ply n starts from.
float start_of_value(int n) { return even(n) ? -16500.0F : 16500.0F; }

// White: a queen with a quiet move, a check and a capture, and pawns to push.
constexpr auto queen_of_all_trades = "4k3/pppp4/8/8/6n1/8/PPPP4/3QK3 w - - 0 1";
constexpr auto quiet = "d1b1";
constexpr auto check = "d1e2";
constexpr auto capture = "d1g4";
constexpr auto push = "a2a3";

class Selective : public BareSearch {
protected:
    // The depths that the replies of node n find in its runs, one number a run, when each of them is worth v.
    static std::vector<int> depths_of_runs(int n, std::string_view move, const std::function<float(int)>& v) {
        std::vector<int> depths;
        const Script children([&](const Call& x) -> std::optional<float> {
            if (x.n != n + 1) {
                return 0.0F;
            }
            // In a pass of two runs the second one starts its bound anew.
            if (value_of_ply(n) == start_of_value(n) && ply[n].X_D) {
                depths.push_back(x.deep);
            }
            return v(x.deep);
        });
        search_node(n, move_from(move));
        if (depths.empty()) {
            depths.push_back(-1);
        }
        return depths;
    }
};

using Depths = std::vector<int>;

// --- Late-move reduction ---

class Reduction : public Selective {
protected:
    static int least_deep(int n) { return n <= 7 ? 9 : 11; }

    // The fifth child of a parent that has a value, with everything in favour of reducing it.
    static void stand_before_a_late_child(int n) {
        set_up_ply(n - 1, queen_of_all_trades);
        options.LMR = 1;
        search.deep = pass.DEEP = least_deep(n);
        tree.curr_N[n] = 4;
        tree.LmrT[n] = 0;
        tree.AmrT[n] = 1;
        value_of_ply(n - 1) = even(n) ? 300.0F : -300.0F;
        clear_counts();
    }
    static bool reduces(int n, std::string_view move) {
        depths_of_runs(n, move, [](int) { return 7.0F; });
        return times(Rule::reduction) > 0;
    }
};

TEST_F(Reduction, ALateQuietMoveIsSearchedTwoPliesShallower) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_late_child(n);
        const int full = least_deep(n);
        const Depths depths = depths_of_runs(n, quiet, [](int) { return 7.0F; });
        EXPECT_EQ(depths.back(), full - 2);
        EXPECT_EQ(depths.size(), n <= 3 ? 2U : 1U);  // plies 2 and 3 have their shallow pass in front
        EXPECT_EQ(value_of_ply(n), 7.0F);
        EXPECT_EQ(times(Rule::reduction), 1U);
        EXPECT_EQ(times(Rule::reduction_repeated), 0U);
        EXPECT_EQ(tree.LmrT[n], 0);
        EXPECT_EQ(search.deep, full);
    }
}

TEST_F(Reduction, OptionSwitchesItOff) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_late_child(n);
        options.LMR = 0;
        EXPECT_FALSE(reduces(n, quiet));
    }
}

TEST_F(Reduction, NeedsItsLeastDepth) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_late_child(n);
        EXPECT_TRUE(reduces(n, quiet));
        stand_before_a_late_child(n);
        search.deep = pass.DEEP = least_deep(n) - 2;
        EXPECT_FALSE(reduces(n, quiet));
    }
}

TEST_F(Reduction, NeedsFourChildrenBefore) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_late_child(n);
        tree.curr_N[n] = 3;
        EXPECT_FALSE(reduces(n, quiet));
        EXPECT_EQ(tree.curr_N[n], 4);
        EXPECT_TRUE((stand_before_a_late_child(n), tree.curr_N[n] = 20, reduces(n, quiet)));
    }
}

TEST_F(Reduction, NeedsAFinishedMoveOfTheParent) {
    // The start value is the sign of a node without a finished move: anything else, however near, is a value.
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_late_child(n);
        value_of_ply(n - 1) = start_of_value(n - 1);
        EXPECT_FALSE(reduces(n, quiet));
        stand_before_a_late_child(n);
        value_of_ply(n - 1) = std::nextafter(start_of_value(n - 1), 0.0F);
        EXPECT_TRUE(reduces(n, quiet));
    }
}

TEST_F(Reduction, NeverTouchesPawnMovesCapturesAndChecks) {
    for (int n = 2; n <= 9; ++n) {
        for (const char* move : {push, capture, check}) {
            SCOPED_TRACE(testing::Message() << "ply " << n << " " << move);
            stand_before_a_late_child(n);
            EXPECT_FALSE(reduces(n, move));
        }
    }
}

TEST_F(Reduction, IsBlockedByTheFlagOfThePly) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_late_child(n);
        tree.LmrT[n] = 1;
        EXPECT_FALSE(reduces(n, quiet));
    }
}

TEST_F(Reduction, ValueThatWouldCutTheParentIsSearchedAgainInFull) {
    for (int n = 2; n <= 9; ++n) {
        for (int k = n - 2; k >= (even(n) ? 0 : 1); k -= 2) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", bound " << k);
            stand_before_a_late_child(n);
            const int full = least_deep(n);
            value_of_ply(k) = 7.0F;  // equal is enough
            const Depths depths = depths_of_runs(n, quiet, [full](int d) { return d == full ? 9.0F : 7.0F; });
            ASSERT_GE(depths.size(), 2U);
            EXPECT_EQ(depths[depths.size() - 2], full - 2);
            EXPECT_EQ(depths.back(), full);
            EXPECT_EQ(value_of_ply(n), 9.0F);
            EXPECT_EQ(times(Rule::reduction_repeated), 1U);
            EXPECT_EQ(tree.LmrT[n], 1);
            EXPECT_EQ(search.deep, full);

            stand_before_a_late_child(n);
            value_of_ply(k) = even(n) ? 6.9F : 7.1F;
            depths_of_runs(n, quiet, [](int) { return 7.0F; });
            EXPECT_EQ(times(Rule::reduction), 1U);
            EXPECT_EQ(times(Rule::reduction_repeated), 0U);
            EXPECT_EQ(tree.LmrT[n], 0);
        }
    }
}

TEST_F(Reduction, ValueThatOnlyRaisesTheParentIsNotSearchedAgain) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_late_child(n);
        value_of_ply(n - 1) = even(n) ? 8.0F : 6.0F;  // 7 is better for the parent's side
        depths_of_runs(n, quiet, [](int) { return 7.0F; });
        EXPECT_EQ(times(Rule::reduction), 1U);
        EXPECT_EQ(times(Rule::reduction_repeated), 0U);
    }
}

TEST_F(Reduction, TheShallowTablesRestAtPliesTwoToFiveOnly) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_late_child(n);
        search.HASHf = 1;
        int seen = -1;
        const Script children([&](const Call& x) -> std::optional<float> {
            seen = x.HASHf;
            return 7.0F;
        });
        search_node(n, move_from(quiet));
        EXPECT_EQ(times(Rule::reduction), 1U);
        EXPECT_EQ(seen, n <= 5 ? 0 : 1);
        EXPECT_EQ(search.HASHf, 1);
    }
}

// A parent at ply 8 whose eight knight moves come first, each child of ply 9 being searched for real.
constexpr auto roaming_knight = "7k/8/8/8/3N4/8/8/K7 b - - 0 1";

// The depths that ply 10 finds behind each child of ply 9, the first call of every run.
std::vector<Depths> depths_by_child(const std::vector<Call>& calls) {
    std::vector<Depths> depths;
    for (const Call& x : calls) {
        if (x.n == 9) {
            depths.emplace_back();
        } else if (x.n == 10 && (depths.back().empty() || depths.back().back() != x.deep)) {
            depths.back().push_back(x.deep);
        }
    }
    return depths;
}

TEST_F(Reduction, TheFifthKnightMoveAtPlyNineWithDepthElevenIsSearchedWithNine) {
    set_up_ply(7, roaming_knight);
    options.LMR = 1;
    tree.LmrT[8] = tree.AmrT[8] = 1;
    search.deep = pass.DEEP = 11;
    const Script children(every_child(10, 20.0F));
    search_node(8, move_from("h8h7"));
    const std::vector<Depths> depths = depths_by_child(children.calls());
    ASSERT_GE(depths.size(), 9U);
    for (std::size_t k = 0; k < depths.size(); ++k) {
        EXPECT_EQ(depths[k], (k < 4 ? Depths{11} : Depths{9})) << "child " << k + 1;
    }
    EXPECT_EQ(times(Rule::reduction_repeated), 0U);
}

TEST_F(Reduction, NoSiblingIsReducedOnceAReducedValueHasFailed) {
    set_up_ply(7, roaming_knight);
    options.LMR = 1;
    tree.LmrT[8] = tree.AmrT[8] = 1;
    search.deep = pass.DEEP = 11;
    bounds.beta[5] = 100.0F;
    const Script children([](const Call& x) -> std::optional<float> {
        return x.n == 10 ? std::optional(x.deep == 9 ? 500.0F : 20.0F) : std::nullopt;
    });
    search_node(8, move_from("h8h7"));
    const std::vector<Depths> depths = depths_by_child(children.calls());
    ASSERT_GE(depths.size(), 9U);
    for (std::size_t k = 0; k < depths.size(); ++k) {
        EXPECT_EQ(depths[k], (k == 4 ? Depths{9, 11} : Depths{11})) << "child " << k + 1;
    }
    EXPECT_EQ(times(Rule::reduction), 1U);
}

TEST_F(Reduction, EveryRunClearsWhatTheChildrenCount) {
    for (int n = 1; n <= 8; ++n) {
        SCOPED_TRACE(n);
        set_up_ply(n - 1, queen_of_all_trades);
        search.deep = pass.DEEP = even(n) ? n + 1 : n;
        tree.curr_N[n + 1] = 5;
        tree.LmrT[n + 1] = 1;
        tree.AmrT[n + 1] = 1;
        bool clear = false;
        const Script children([&](const Call&) -> std::optional<float> {
            clear = tree.curr_N[n + 1] == 0 && tree.LmrT[n + 1] == 0 && tree.AmrT[n + 1] == 0;
            return 0.0F;
        });
        search_node(n, move_from(quiet));
        EXPECT_TRUE(clear);
    }
}

TEST_F(Reduction, AChildThatRunsAScoutPassAndAFullOneCountsTwiceAtPlyTwo) {
    set_up_ply(1, queen_of_all_trades);
    search.deep = pass.DEEP = 5;
    options.PVS = 1;
    bounds.beta[1] = 100.0F;
    tree.curr_N[2] = 0;
    {
        const Script children(every_child(3, 50.0F));  // lowers beta1: the scout pass does not settle it
        search_node(2, move_from(quiet));
    }
    EXPECT_EQ(tree.curr_N[2], 2);
    {
        const Script children(every_child(3, 150.0F));  // settled
        search_node(2, move_from(quiet));
    }
    EXPECT_EQ(tree.curr_N[2], 3);
}

// --- Amr ---

class FreeMove : public Selective {
protected:
    static int least_deep(int n) { return n <= 5 ? 9 : (n <= 7 ? 11 : 13); }

    static void stand_before_an_early_child(int n) {
        set_up_ply(n - 1, queen_of_all_trades);
        options.LMR = 1;
        search.deep = pass.DEEP = least_deep(n);
        tree.curr_N[n] = 0;
        tree.LmrT[n] = 0;
        tree.AmrT[n] = 0;
        clear_counts();
    }
    static bool tries(int n, std::string_view move) {
        depths_of_runs(n, move, [](int) { return 7.0F; });
        return times(Rule::amr) > 0;
    }
};

TEST_F(FreeMove, IsARunTwoPliesShallowerWithTheMoverPassing) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_an_early_child(n);
        search.HASHf = 1;
        const int full = least_deep(n);
        const Board above = ply[n - 1].tabd;
        ply[n - 1].X_D = 1;
        for (auto& text : root_move.A0_D7) {
            text.fill(' ');
        }
        struct Run {
            int depth, tables, passed, material_kept, written, by_black;
        };
        std::vector<Run> runs;
        const Script children([&](const Call& x) -> std::optional<float> {
            if (x.n == n + 1) {
                runs.push_back({x.deep, x.HASHf, ply[n].tabd == above, ply[n].material == ply[n - 1].material,
                                n < 9 && root_move.A0_D7[n - 1][0] != ' ', ply[n].tabd[x.m.from()] < 0});
            }
            return 7.0F;
        });
        search_node(n, move_from(capture));
        const auto in_amr = [&](const Run& r) { return r.passed != 0; };
        const auto first = std::find_if(runs.begin(), runs.end(), in_amr);
        ASSERT_NE(first, runs.end());
        EXPECT_EQ(first->depth, full - 2);
        EXPECT_EQ(first->tables, n <= 5 ? 0 : 1);
        EXPECT_TRUE(first->material_kept);
        EXPECT_TRUE(first->by_black);
        // Plies 2 and 3 have written the line in their shallow pass already.
        EXPECT_EQ(first->written, n <= 3 ? 1 : 0);
        // It failed, so the move is played and searched as ever.
        EXPECT_FALSE(runs.back().passed);
        EXPECT_EQ(runs.back().depth, full);
        EXPECT_EQ(runs.back().tables, 1);
        EXPECT_FALSE(runs.back().material_kept);
        EXPECT_EQ(runs.back().written, n < 9 ? 1 : 0);
        EXPECT_EQ(tree.AmrT[n], 1);
        EXPECT_EQ(search.deep, full);
        EXPECT_EQ(search.HASHf, 1);
        EXPECT_EQ(times(Rule::amr), 1U);
        EXPECT_EQ(times(Rule::amr_refutes), 0U);
    }
}

TEST_F(FreeMove, ThatStillCutsTheParentSettlesTheNode) {
    for (int n = 2; n <= 9; ++n) {
        for (int k = n - 2; k >= (even(n) ? 0 : 1); k -= 2) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", bound " << k);
            stand_before_an_early_child(n);
            const int full = least_deep(n);
            value_of_ply(k) = 7.0F;
            const Depths depths = depths_of_runs(n, quiet, [](int) { return 7.0F; });
            EXPECT_EQ(depths.back(), full - 2);
            EXPECT_EQ(value_of_ply(n), 7.0F);
            EXPECT_EQ(times(Rule::amr_refutes), 1U);
            EXPECT_EQ(tree.AmrT[n], 0);
            EXPECT_EQ(search.deep, full);

            stand_before_an_early_child(n);
            value_of_ply(k) = even(n) ? 6.9F : 7.1F;
            EXPECT_EQ(depths_of_runs(n, quiet, [](int) { return 7.0F; }).back(), full);
            EXPECT_EQ(times(Rule::amr_refutes), 0U);
        }
    }
}

TEST_F(FreeMove, IsTriedForAnyMoveButACheckAndACheckLeavesTheFlagAlone) {
    for (int n = 2; n <= 9; ++n) {
        for (const char* move : {quiet, push, capture}) {
            SCOPED_TRACE(testing::Message() << "ply " << n << " " << move);
            stand_before_an_early_child(n);
            EXPECT_TRUE(tries(n, move));
            EXPECT_EQ(tree.AmrT[n], 1);
        }
        stand_before_an_early_child(n);
        EXPECT_FALSE(tries(n, check));
        EXPECT_EQ(tree.AmrT[n], 0);
    }
}

TEST_F(FreeMove, NeedsOptionDepthAndAPlaceAmongTheFirstFour) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_an_early_child(n);
        options.LMR = 0;
        EXPECT_FALSE(tries(n, quiet));
        stand_before_an_early_child(n);
        search.deep = pass.DEEP = least_deep(n) - 2;
        EXPECT_FALSE(tries(n, quiet));
        stand_before_an_early_child(n);
        tree.AmrT[n] = 1;
        EXPECT_FALSE(tries(n, quiet));
        stand_before_an_early_child(n);
        tree.curr_N[n] = 4;
        EXPECT_FALSE(tries(n, quiet));
        stand_before_an_early_child(n);
        tree.curr_N[n] = 3;
        EXPECT_TRUE(tries(n, quiet));
    }
}

// White's replies at ply 8 to a king's move at depth 13, each with the count of free moves tried before it.
std::vector<std::pair<std::string, std::uint64_t>> tries_before_each_child(std::string_view king_move) {
    set_up_ply(7, "4k3/8/8/4N3/8/8/8/K7 b - - 0 1");
    options.LMR = 1;
    tree.LmrT[8] = tree.AmrT[8] = 1;
    search.deep = pass.DEEP = 13;
    clear_counts();
    std::vector<std::pair<std::string, std::uint64_t>> before;
    const Script children([&](const Call& x) -> std::optional<float> {
        if (x.n == 9) {
            before.emplace_back(text_of(x.m), times(Rule::amr));
        }
        return x.n == 10 ? std::optional(20.0F) : std::nullopt;
    });
    search_node(8, move_from(king_move));
    return before;
}

TEST_F(FreeMove, TheFirstFourChildrenMayTryItUntilOneHasFailed) {
    const auto no_check = tries_before_each_child("e8d8");
    ASSERT_GE(no_check.size(), 8U);
    EXPECT_EQ(no_check[0].first, "e5g6");
    EXPECT_EQ(no_check[1].second, 1U);
    EXPECT_EQ(no_check.back().second, 1U);
    // The knight's first move gives check and does not use the trial up.
    const auto check_first = tries_before_each_child("e8f8");
    ASSERT_GE(check_first.size(), 8U);
    EXPECT_EQ(check_first[0].first, "e5g6");
    EXPECT_EQ(check_first[1].second, 0U);
    EXPECT_EQ(check_first[2].second, 1U);
    EXPECT_EQ(check_first.back().second, 1U);
}

TEST_F(FreeMove, KeepsTheMarkOfThePlyAbove) {
    // The mark of improvement comes with the copy of the flags; a played move would set it.
    for (const std::uint8_t mark : {std::uint8_t{0}, std::uint8_t{1}}) {
        stand_before_an_early_child(6);
        ply[5].X_D = mark;
        bounds.alfa[0] = bounds.alfa[2] = bounds.alfa[4] = -16501.0F;  // so that the trial does not cut
        std::vector<int> seen;
        const Script children([&](const Call&) -> std::optional<float> {
            seen.push_back(ply[6].X_D);
            return -16500.0F;  // improves nothing
        });
        search_node(6, move_from(quiet));
        EXPECT_EQ(seen.front(), mark);
        EXPECT_EQ(seen.back(), 1);
    }
}

// --- Null move ---

class NullMove : public Selective {
protected:
    static int least_deep(int n) { return n <= 3 ? 7 : 9; }

    // Node n with just enough of everything for a null-move pass.
    static void stand_before_a_pass(int n, std::string_view fen = queen_of_all_trades) {
        set_up_ply(n - 1, fen);
        options.NULL_MOVE = n <= 2 ? 1 : 2;
        search.deep = pass.DEEP = least_deep(n);
        pass.SCANT = even(n) ? 0 : 1;
        pass.SCAN1 = 0;
        root.npecas = {3, 5};  // White moves twice, Black passes
        if (even(n)) {
            bounds.beta[1] = 100.0F;
        }
        clear_counts();
    }
    // Whether the pass is made, all children being scripted.
    static bool passes(int n, std::string_view move) {
        const Script children([](const Call&) { return std::optional(0.0F); });
        search_node(n, move_from(move));
        return times(Rule::null_move) > 0;
    }
};

TEST_F(NullMove, IsMadeAtPliesOneToFiveWithJustEnoughOfEverything) {
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_pass(n);
        EXPECT_TRUE(passes(n, quiet));
        EXPECT_EQ(times(Rule::null_move), 1U);
    }
}

TEST_F(NullMove, IsNeverMadeBelowPlyFive) {
    for (int n = 6; n <= 23; ++n) {
        SCOPED_TRACE(n);
        set_up_ply(n - 1, queen_of_all_trades);
        options.NULL_MOVE = 2;
        pass.SCANT = 1;
        bounds.beta[1] = 100.0F;
        bounds.alfa[2] = -100.0F;
        search.deep = pass.DEEP = 23;
        EXPECT_FALSE(passes(n, quiet));
    }
}

TEST_F(NullMove, OptionOneAllowsPliesOneAndTwoOnly) {
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_pass(n);
        options.NULL_MOVE = 1;
        EXPECT_EQ(passes(n, quiet), n <= 2);
        stand_before_a_pass(n);
        options.NULL_MOVE = 0;
        EXPECT_FALSE(passes(n, quiet));
    }
}

TEST_F(NullMove, NeedsItsLeastDepth) {
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_pass(n);
        search.deep = pass.DEEP = least_deep(n) - 2;
        EXPECT_FALSE(passes(n, quiet));
    }
}

TEST_F(NullMove, NeedsFiveMenOfThePassingSideAndThreeOfTheOther) {
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_pass(n);
        root.npecas = {3, 4};
        EXPECT_FALSE(passes(n, quiet));
        stand_before_a_pass(n);
        root.npecas = {2, 5};
        EXPECT_FALSE(passes(n, quiet));
        stand_before_a_pass(n);
        root.npecas = {15, 4};
        EXPECT_FALSE(passes(n, quiet));
        // The same for Black's moves.
        stand_before_a_pass(n, mirrored(queen_of_all_trades));
        root.npecas = {5, 3};
        EXPECT_TRUE(passes(n, text_of(mirrored(move_from(quiet)))));
        stand_before_a_pass(n, mirrored(queen_of_all_trades));
        root.npecas = {3, 5};
        EXPECT_FALSE(passes(n, text_of(mirrored(move_from(quiet)))));
    }
}

TEST_F(NullMove, IsNotMadeBySomeoneInCheck) {
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_pass(n);
        EXPECT_FALSE(passes(n, check));
    }
}

TEST_F(NullMove, AtOddPliesNeedsThePassOverAllMovesOrAValueAbove) {
    stand_before_a_pass(1);
    pass.SCANT = 0;
    bounds.alfa[0] = 50.0F;
    EXPECT_FALSE(passes(1, quiet));

    stand_before_a_pass(3);
    pass.SCANT = 0;
    bounds.alfa[0] = 50.0F;
    EXPECT_FALSE(passes(3, quiet));
    stand_before_a_pass(3);
    pass.SCANT = 0;
    bounds.alfa[2] = -50.0F;
    EXPECT_TRUE(passes(3, quiet));

    stand_before_a_pass(5);
    pass.SCANT = 0;
    bounds.alfa[0] = 50.0F;
    EXPECT_FALSE(passes(5, quiet));
    for (const int k : {2, 4}) {
        stand_before_a_pass(5);
        pass.SCANT = 0;
        bounds.alfa[k] = -50.0F;
        EXPECT_TRUE(passes(5, quiet)) << "bound " << k;
    }
}

TEST_F(NullMove, AtEvenPliesNeedsAValueAboveWhateverThePass) {
    for (const std::uint8_t scant : {std::uint8_t{0}, std::uint8_t{1}}) {
        stand_before_a_pass(2);
        pass.SCANT = scant;
        bounds.beta[1] = 16500.0F;
        EXPECT_FALSE(passes(2, quiet));

        stand_before_a_pass(4);
        pass.SCANT = scant;
        bounds.beta[1] = 16500.0F;
        EXPECT_FALSE(passes(4, quiet));
        stand_before_a_pass(4);
        pass.SCANT = scant;
        bounds.beta[1] = 16500.0F;
        bounds.beta[3] = 50.0F;
        EXPECT_TRUE(passes(4, quiet));
    }
}

TEST_F(NullMove, GivesTheMoverASecondMoveUnderANullWindow) {
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_pass(n);
        search.HASHf = 1;
        // Own bounds above, to be taken out for the pass; the other side's, of which the tightest makes the window.
        for (int k = n - 2; k >= 0; k -= 2) {
            value_of_ply(k) = even(n) ? -40.0F - static_cast<float>(k) : 40.0F + static_cast<float>(k);
        }
        for (int k = n - 1; k >= 0; k -= 2) {
            value_of_ply(k) = even(n) ? 60.0F + static_cast<float>(k) : -60.0F - static_cast<float>(k);
        }
        const float tightest = even(n) ? 61.0F : -60.0F;
        const auto window = static_cast<float>(static_cast<double>(tightest) + (even(n) ? -0.001 : 0.001));
        const std::array<float, 25> alfa_before = bounds.alfa;
        const std::array<float, 25> beta_before = bounds.beta;
        int calls = 0;
        const Script children([&](const Call& x) -> std::optional<float> {
            if (x.n == n + 2) {
                ++calls;
                EXPECT_EQ(x.deep, least_deep(n) - 2);
                EXPECT_EQ(x.HASHf, 0);
                EXPECT_EQ(tree.nd, n);
                EXPECT_EQ(value_of_ply(n), window);
                for (int k = n - 2; k >= 0; k -= 2) {
                    EXPECT_EQ(value_of_ply(k), start_of_value(k));
                }
                for (int k = n - 1; k >= 0; k -= 2) {
                    EXPECT_EQ(value_of_ply(k), (even(k) ? alfa_before : beta_before)[k]);
                }
                EXPECT_EQ(ply[n + 1].tabd[square(1, 0)], dama);
                EXPECT_EQ(ply[n + 1].tabd[square(3, 0)], no_piece);
                EXPECT_GT(ply[n + 1].tabd[x.m.from()], 0);
            }
            return 0.0F;
        });
        search_node(n, move_from(quiet));
        EXPECT_GT(calls, 0);
        EXPECT_EQ(search.HASHf, 1);
        EXPECT_EQ(search.deep, least_deep(n));
        for (int k = n - 1; k >= 0; --k) {
            EXPECT_EQ(bounds.alfa[k], alfa_before[k]);
            EXPECT_EQ(bounds.beta[k], beta_before[k]);
        }
    }
}

// Runs node n with its second moves (ply n + 2) worth v and its replies (ply n + 1) worth nothing, and tells whether
// the replies were looked at.
bool goes_on(int n, float v) {
    const Script children([n, v](const Call& x) { return std::optional(x.n == n + 2 ? v : 0.0F); });
    search_node(n, move_from(quiet));
    return children.count(n + 1) > 0;
}

TEST_F(NullMove, SettlesANodeThatFailsEvenWithTwoMovesInARow) {
    for (int n = 1; n <= 5; ++n) {
        for (int k = n - 1; k >= (even(n) ? 1 : 0); k -= 2) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", bound " << k);
            stand_before_a_pass(n);
            for (int j = n - 1; j >= 0; j -= 2) {
                value_of_ply(j) = even(n) ? 400.0F : -400.0F;
            }
            value_of_ply(k) = 30.0F;
            EXPECT_FALSE(goes_on(n, 30.0F));
            EXPECT_EQ(times(Rule::null_move_settles), 1U);
            EXPECT_EQ(value_of_ply(n), 30.0F);

            stand_before_a_pass(n);
            for (int j = n - 1; j >= 0; j -= 2) {
                value_of_ply(j) = even(n) ? 400.0F : -400.0F;
            }
            value_of_ply(k) = 30.0F;
            EXPECT_TRUE(goes_on(n, std::nextafter(30.0F, even(n) ? -1.0F : 100.0F)));
            EXPECT_EQ(times(Rule::null_move_settles), 0U);
        }
    }
}

TEST_F(NullMove, MateIsNotBelieved) {
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        const float mate = even(n) ? 3300.0F : -3300.0F;
        stand_before_a_pass(n);
        value_of_ply(n - 1) = 0.0F;
        EXPECT_TRUE(goes_on(n, mate));
        stand_before_a_pass(n);
        value_of_ply(n - 1) = 0.0F;
        EXPECT_FALSE(goes_on(n, std::nextafter(mate, 0.0F)));
    }
}

TEST_F(NullMove, ASecondMoveThatDoesNotExistProvesNothing) {
    // After h3 White has no legal move left: that is no stalemate, because it would not be White's turn.
    constexpr auto blocked = "7k/8/8/8/7p/1q6/7P/K7 w - - 0 1";
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_pass(n, blocked);
        value_of_ply(n - 1) = even(n) ? -900.0F : 900.0F;  // anything but a mate would settle it
        search.emp = 0;
        const Script children([](const Call&) { return std::optional(0.0F); });
        search_node(n, move_from("h2h3"));
        EXPECT_EQ(times(Rule::null_move), 1U);
        EXPECT_EQ(times(Rule::null_move_settles), 0U);
        EXPECT_EQ(children.count(n + 2), 0U);
        EXPECT_GT(children.count(n + 1), 0U);
    }
}

TEST_F(NullMove, ASettledNodeIsStillRememberedAtPliesThreeToFive) {
    for (int n = 3; n <= 5; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_pass(n);
        search.HASHf = 1;
        value_of_ply(n - 1) = 30.0F;
        EXPECT_FALSE(goes_on(n, 30.0F));
        EXPECT_EQ(next_shallow_record(n, white), 1);
    }
}

TEST_F(NullMove, ClearsTheCountersOfThePlyItPassesOver) {
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_pass(n);
        tree.curr_N[n + 1] = 7;
        tree.LmrT[n + 1] = tree.AmrT[n + 1] = 1;
        bool clear = true;
        const Script children([&](const Call& x) {
            clear =
                clear && (x.n != n + 2 || (tree.curr_N[n + 1] == 0 && tree.LmrT[n + 1] == 0 && tree.AmrT[n + 1] == 0));
            return std::optional(0.0F);
        });
        search_node(n, move_from(quiet));
        EXPECT_TRUE(clear);
    }
}

// --- The shallow pass ---

class ShallowPass : public Selective {};

TEST_F(ShallowPass, RunsAtPliesOneToThreeFourPliesShallowerAndWithoutTables) {
    for (int n = 1; n <= 5; ++n) {
        for (const int depth : {5, 7, 9, 11}) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", depth " << depth);
            set_up_ply(n - 1, queen_of_all_trades);
            search.deep = pass.DEEP = depth;
            search.HASHf = 1;
            clear_counts();
            std::vector<std::pair<int, int>> runs;
            const Script children([&](const Call& x) -> std::optional<float> {
                if (runs.empty() || runs.back() != std::pair<int, int>{x.deep, x.HASHf}) {
                    runs.emplace_back(x.deep, x.HASHf);
                }
                return 7.0F;
            });
            search_node(n, move_from(quiet));
            const bool shallow = n <= 3 && depth >= 7;
            EXPECT_EQ(times(Rule::iid), shallow ? 1U : 0U);
            std::vector<std::pair<int, int>> expected{{depth, 1}};
            if (shallow) {
                expected.insert(expected.begin(), {depth - 4, 0});
            }
            EXPECT_EQ(runs, expected);
            EXPECT_EQ(search.deep, depth);
            EXPECT_EQ(search.HASHf, 1);
        }
    }
}

TEST_F(ShallowPass, AMateThatItFindsEndsTheNode) {
    // Plies 1 and 3 take a mate of the root's opponent, ply 2 one of the root side.
    for (int n = 1; n <= 3; ++n) {
        for (const float size : {3300.0F, 3299.0F}) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", " << size);
            set_up_ply(n - 1, queen_of_all_trades);
            search.deep = pass.DEEP = 9;
            search.HASHf = 1;
            clear_shallow_tables();
            const float v = even(n) ? -size : size;
            bool full = false;
            const Script children([&](const Call& x) -> std::optional<float> {
                full = full || x.deep == 9;
                return v;
            });
            EXPECT_EQ(search_node(n, move_from(quiet)), v);
            EXPECT_EQ(full, size < 3300.0F);
            if (n == 3) {
                EXPECT_EQ(next_shallow_record(3, white), 1);  // remembered on either way out
            }
        }
    }
}

TEST_F(ShallowPass, PlyOneKeepsItsResult) {
    set_up_ply(0, queen_of_all_trades);
    search.deep = pass.DEEP = 9;
    {
        const Script children([](const Call& x) { return std::optional(x.deep == 5 ? 12.0F : 34.0F); });
        search_node(1, move_from(quiet));
    }
    EXPECT_EQ(root_move.BETA1, 12.0F);
    EXPECT_EQ(bounds.beta[1], 34.0F);
    search.deep = pass.DEEP = 5;
    {
        const Script children([](const Call&) { return std::optional(34.0F); });
        search_node(1, move_from(quiet));
    }
    EXPECT_EQ(root_move.BETA1, 16500.0F);
}

// --- What every way out puts back ---

// What a child must find again when it is left.
struct Kept {
    int n, deep;
    std::uint8_t HASHf;
    std::array<int, 2> roque;
    std::array<float, last_ply + 1> alfa, beta;
    std::array<float, last_ply> MAXcut;
};

Kept kept_at(int n) { return {n, search.deep, search.HASHf, pass.roque, bounds.alfa, bounds.beta, bounds.MAXcut}; }

// The children that are open, and how often one came back to a changed search.
struct Balance {
    std::vector<Kept> open;
    std::uint64_t comparisons = 0;
    std::uint64_t broken = 0;
};
Balance balance;

void note_entry(int n, Move) { balance.open.push_back(kept_at(n)); }

bool same_behind_root_move(const Kept& before) {
    return before.deep == search.deep && before.HASHf == search.HASHf && pass.roque == std::array<int, 2>{} &&
           bounds.MAXcut == bounds.MAXcutt;
}

bool same_behind_child(const Kept& before) {
    const auto same_above = [n = before.n](const auto& now, const auto& then) {
        return std::equal(now.begin(), now.begin() + n, then.begin());
    };
    return before.deep == search.deep && before.HASHf == search.HASHf && before.roque == pass.roque &&
           before.MAXcut == bounds.MAXcut && same_above(bounds.alfa, before.alfa) &&
           same_above(bounds.beta, before.beta);
}

void compare_on_return(int n, Move, float) {
    const Kept before = balance.open.back();
    balance.open.pop_back();
    ++balance.comparisons;
    const bool same = before.n == n && (n == 1 ? same_behind_root_move(before) : same_behind_child(before));
    balance.broken += same ? 0 : 1;
}

struct Scene {
    std::string fen;
    int depth;
};

// Positions of all kinds: small endgames at a depth at which nearly every rule is awake, a few at one that allows null
// moves, fuller boards at a small depth.
std::vector<Scene> varied_scenes() {
    struct Group {
        std::ptrdiff_t least, most;
        int depth;
        std::size_t wanted;
    };
    std::vector<Scene> scenes;
    const std::vector<rules::Position> positions = rules::data_positions("positions.fen");
    for (const Group& group : {Group{4, 6, 9, 3}, Group{11, 15, 7, 2}, Group{10, 32, 5, 5}}) {
        std::size_t taken = 0;
        for (std::size_t k = 3; k < positions.size() && taken < group.wanted; k += 7) {
            const auto& squares = positions[k].squares;
            const auto men = 64 - std::count(squares.begin(), squares.end(), rules::empty_square);
            if (men >= group.least && men <= group.most) {
                scenes.push_back({rules::to_fen(positions[k]), group.depth});
                ++taken;
            }
        }
    }
    return scenes;
}

TEST_F(ShallowPass, NoChildLeavesDepthTablesBoundsLimitsOrCastlingChanged) {
    std::uint64_t null_moves = 0;
    std::uint64_t reductions = 0;
    std::uint64_t extensions = 0;
    std::uint64_t scouts = 0;
    balance = {};
    for (const Scene& scene : varied_scenes()) {
        SCOPED_TRACE(scene.fen);
        fresh_process();
        options.TC = 0;  // a search ended by the clock leaves its last line cut down on purpose
        options.deepp = 9;
        const Colour own = place_fen(scene.fen);
        search.deep = scene.depth;
        search.tempo = 0x7fffffff;
        probes.child_entered = note_entry;
        probes.child_left = compare_on_return;
        search_whole(own);
        ASSERT_EQ(balance.broken, 0U);
        EXPECT_TRUE(balance.open.empty());
        EXPECT_EQ(search.deep, scene.depth);
        EXPECT_EQ(search.HASHf, 1);
        EXPECT_EQ(pass.roque, (std::array<int, 2>{}));
        EXPECT_EQ(root_move.PVSm, 0);
        EXPECT_EQ(root_move.PVSm2, 0);
        null_moves += times(Rule::null_move);
        reductions += times(Rule::reduction) + times(Rule::amr);
        extensions += times(Rule::extension) + times(Rule::vertical_shortens);
        scouts += times(Rule::scout_of_ply_1) + times(Rule::scout_of_ply_2);
    }
    EXPECT_GT(balance.comparisons, 10000U);
    EXPECT_GT(null_moves, 0U);
    EXPECT_GT(reductions, 0U);
    EXPECT_GT(extensions, 0U);
    EXPECT_GT(scouts, 0U);
}

}  // namespace
