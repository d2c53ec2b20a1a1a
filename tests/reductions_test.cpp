// Passes that shorten or skip a subtree: late-move reduction, the free move given by the parent (Amr), null moves and
// the shallow pass. The children of the node under test are scripted, so each rule is seen to act or not to act by the
// depth that they find and by the counters.
#include "memory/shallow_tables.h"
#include "support/engine.h"
#include "support/plain_chess.h"
#include "support/scripted.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using namespace teste;
using namespace ondrel;

bool even(int n) { return n % 2 == 0; }
float& bound(int n) { return even(n) ? alfa[n] : beta[n]; }
float start_value(int n) { return even(n) ? -16500.0F : 16500.0F; }

// White: a queen with a quiet move, a check and a capture, and pawns to push.
constexpr auto queen_of_all_trades = "4k3/pppp4/8/8/6n1/8/PPPP4/3QK3 w - - 0 1";
constexpr auto quiet = "d1b1";
constexpr auto check = "d1e2";
constexpr auto capture = "d1g4";
constexpr auto push = "a2a3";

class Selective : public testing::Test {
protected:
    void SetUp() override {
        processo_novo();
        busca_nua();
    }

    // The depths that the replies of node n find in its runs, one number a run, when each of them is worth v.
    static std::vector<int> depths_of_runs(int n, std::string_view move, const std::function<float(int)>& v) {
        std::vector<int> depths;
        const Roteiro children([&](const Chamada& x) -> std::optional<float> {
            if (x.n != n + 1) {
                return 0.0F;
            }
            // In a pass of two runs the second one starts its bound anew.
            if (bound(n) == start_value(n) && ply[n].X_D) {
                depths.push_back(x.deep);
            }
            return v(x.deep);
        });
        busca_no(n, lance(move));
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
        monta_ply(n - 1, queen_of_all_trades);
        LMR = 1;
        deep = DEEP = least_deep(n);
        curr_N[n] = 4;
        LmrT[n] = 0;
        AmrT[n] = 1;
        bound(n - 1) = even(n) ? 300.0F : -300.0F;
        zera_contadores();
    }
    static bool reduces(int n, std::string_view move) {
        depths_of_runs(n, move, [](int) { return 7.0F; });
        return quantas_vezes(Regra::reducao) > 0;
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
        EXPECT_EQ(bound(n), 7.0F);
        EXPECT_EQ(quantas_vezes(Regra::reducao), 1U);
        EXPECT_EQ(quantas_vezes(Regra::reducao_repetida), 0U);
        EXPECT_EQ(LmrT[n], 0);
        EXPECT_EQ(deep, full);
    }
}

TEST_F(Reduction, OptionSwitchesItOff) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_late_child(n);
        LMR = 0;
        EXPECT_FALSE(reduces(n, quiet));
    }
}

TEST_F(Reduction, NeedsItsLeastDepth) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_late_child(n);
        EXPECT_TRUE(reduces(n, quiet));
        stand_before_a_late_child(n);
        deep = DEEP = least_deep(n) - 2;
        EXPECT_FALSE(reduces(n, quiet));
    }
}

TEST_F(Reduction, NeedsFourChildrenBefore) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_late_child(n);
        curr_N[n] = 3;
        EXPECT_FALSE(reduces(n, quiet));
        EXPECT_EQ(curr_N[n], 4);
        EXPECT_TRUE((stand_before_a_late_child(n), curr_N[n] = 20, reduces(n, quiet)));
    }
}

TEST_F(Reduction, NeedsAFinishedMoveOfTheParent) {
    // The start value is the sign of a node without a finished move: anything else, however near, is a value.
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_late_child(n);
        bound(n - 1) = start_value(n - 1);
        EXPECT_FALSE(reduces(n, quiet));
        stand_before_a_late_child(n);
        bound(n - 1) = std::nextafter(start_value(n - 1), 0.0F);
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
        LmrT[n] = 1;
        EXPECT_FALSE(reduces(n, quiet));
    }
}

TEST_F(Reduction, ValueThatWouldCutTheParentIsSearchedAgainInFull) {
    for (int n = 2; n <= 9; ++n) {
        for (int k = n - 2; k >= (even(n) ? 0 : 1); k -= 2) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", bound " << k);
            stand_before_a_late_child(n);
            const int full = least_deep(n);
            bound(k) = 7.0F;  // equal is enough
            const Depths depths = depths_of_runs(n, quiet, [full](int d) { return d == full ? 9.0F : 7.0F; });
            ASSERT_GE(depths.size(), 2U);
            EXPECT_EQ(depths[depths.size() - 2], full - 2);
            EXPECT_EQ(depths.back(), full);
            EXPECT_EQ(bound(n), 9.0F);
            EXPECT_EQ(quantas_vezes(Regra::reducao_repetida), 1U);
            EXPECT_EQ(LmrT[n], 1);
            EXPECT_EQ(deep, full);

            stand_before_a_late_child(n);
            bound(k) = even(n) ? 6.9F : 7.1F;
            depths_of_runs(n, quiet, [](int) { return 7.0F; });
            EXPECT_EQ(quantas_vezes(Regra::reducao), 1U);
            EXPECT_EQ(quantas_vezes(Regra::reducao_repetida), 0U);
            EXPECT_EQ(LmrT[n], 0);
        }
    }
}

TEST_F(Reduction, ValueThatOnlyRaisesTheParentIsNotSearchedAgain) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_late_child(n);
        bound(n - 1) = even(n) ? 8.0F : 6.0F;  // 7 is better for the parent's side
        depths_of_runs(n, quiet, [](int) { return 7.0F; });
        EXPECT_EQ(quantas_vezes(Regra::reducao), 1U);
        EXPECT_EQ(quantas_vezes(Regra::reducao_repetida), 0U);
    }
}

TEST_F(Reduction, TheShallowTablesRestAtPliesTwoToFiveOnly) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_late_child(n);
        HASHf = 1;
        int seen = -1;
        const Roteiro children([&](const Chamada& x) -> std::optional<float> {
            seen = x.HASHf;
            return 7.0F;
        });
        busca_no(n, lance(quiet));
        EXPECT_EQ(quantas_vezes(Regra::reducao), 1U);
        EXPECT_EQ(seen, n <= 5 ? 0 : 1);
        EXPECT_EQ(HASHf, 1);
    }
}

// A parent at ply 8 whose eight knight moves come first, each child of ply 9 being searched for real.
constexpr auto roaming_knight = "7k/8/8/8/3N4/8/8/K7 b - - 0 1";

// The depths that ply 10 finds behind each child of ply 9, the first call of every run.
std::vector<Depths> depths_by_child(const std::vector<Chamada>& calls) {
    std::vector<Depths> depths;
    for (const Chamada& x : calls) {
        if (x.n == 9) {
            depths.emplace_back();
        } else if (x.n == 10 && (depths.back().empty() || depths.back().back() != x.deep)) {
            depths.back().push_back(x.deep);
        }
    }
    return depths;
}

TEST_F(Reduction, TheFifthKnightMoveAtPlyNineWithDepthElevenIsSearchedWithNine) {
    monta_ply(7, roaming_knight);
    LMR = 1;
    LmrT[8] = AmrT[8] = 1;
    deep = DEEP = 11;
    const Roteiro children(sempre(10, 20.0F));
    busca_no(8, lance("h8h7"));
    const std::vector<Depths> depths = depths_by_child(children.chamadas());
    ASSERT_GE(depths.size(), 9U);
    for (std::size_t k = 0; k < depths.size(); ++k) {
        EXPECT_EQ(depths[k], (k < 4 ? Depths{11} : Depths{9})) << "child " << k + 1;
    }
    EXPECT_EQ(quantas_vezes(Regra::reducao_repetida), 0U);
}

TEST_F(Reduction, NoSiblingIsReducedOnceAReducedValueHasFailed) {
    monta_ply(7, roaming_knight);
    LMR = 1;
    LmrT[8] = AmrT[8] = 1;
    deep = DEEP = 11;
    beta[5] = 100.0F;
    const Roteiro children([](const Chamada& x) -> std::optional<float> {
        return x.n == 10 ? std::optional(x.deep == 9 ? 500.0F : 20.0F) : std::nullopt;
    });
    busca_no(8, lance("h8h7"));
    const std::vector<Depths> depths = depths_by_child(children.chamadas());
    ASSERT_GE(depths.size(), 9U);
    for (std::size_t k = 0; k < depths.size(); ++k) {
        EXPECT_EQ(depths[k], (k == 4 ? Depths{9, 11} : Depths{11})) << "child " << k + 1;
    }
    EXPECT_EQ(quantas_vezes(Regra::reducao), 1U);
}

TEST_F(Reduction, EveryRunClearsWhatTheChildrenCount) {
    for (int n = 1; n <= 8; ++n) {
        SCOPED_TRACE(n);
        const Escrita silence;
        monta_ply(n - 1, queen_of_all_trades);
        deep = DEEP = even(n) ? n + 1 : n;
        curr_N[n + 1] = 5;
        LmrT[n + 1] = 1;
        AmrT[n + 1] = 1;
        bool clear = false;
        const Roteiro children([&](const Chamada&) -> std::optional<float> {
            clear = curr_N[n + 1] == 0 && LmrT[n + 1] == 0 && AmrT[n + 1] == 0;
            return 0.0F;
        });
        busca_no(n, lance(quiet));
        EXPECT_TRUE(clear);
    }
}

TEST_F(Reduction, AChildThatRunsAScoutPassAndAFullOneCountsTwiceAtPlyTwo) {
    monta_ply(1, queen_of_all_trades);
    deep = DEEP = 5;
    PVS = 1;
    beta[1] = 100.0F;
    curr_N[2] = 0;
    {
        const Roteiro children(sempre(3, 50.0F));  // lowers beta1: the scout pass does not settle it
        busca_no(2, lance(quiet));
    }
    EXPECT_EQ(curr_N[2], 2);
    {
        const Roteiro children(sempre(3, 150.0F));  // settled
        busca_no(2, lance(quiet));
    }
    EXPECT_EQ(curr_N[2], 3);
}

// --- Amr ---

class FreeMove : public Selective {
protected:
    static int least_deep(int n) { return n <= 5 ? 9 : (n <= 7 ? 11 : 13); }

    static void stand_before_an_early_child(int n) {
        monta_ply(n - 1, queen_of_all_trades);
        LMR = 1;
        deep = DEEP = least_deep(n);
        curr_N[n] = 0;
        LmrT[n] = 0;
        AmrT[n] = 0;
        zera_contadores();
    }
    static bool tries(int n, std::string_view move) {
        depths_of_runs(n, move, [](int) { return 7.0F; });
        return quantas_vezes(Regra::amr) > 0;
    }
};

TEST_F(FreeMove, IsARunTwoPliesShallowerWithTheMoverPassing) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_an_early_child(n);
        HASHf = 1;
        const int full = least_deep(n);
        const Tabuleiro above = ply[n - 1].tabd;
        ply[n - 1].X_D = 1;
        for (auto& text : A0_D7) {
            text.fill(' ');
        }
        struct Run {
            int depth, tables, passed, material_kept, written, to_move;
        };
        std::vector<Run> runs;
        const Roteiro children([&](const Chamada& x) -> std::optional<float> {
            if (x.n == n + 1) {
                runs.push_back({x.deep, x.HASHf, ply[n].tabd == above, ply[n].material == ply[n - 1].material,
                                n < 9 && A0_D7[n - 1][0] != ' ', ply[n].joga_com_b_deep});
            }
            return 7.0F;
        });
        busca_no(n, lance(capture));
        const auto in_amr = [&](const Run& r) { return r.passed != 0; };
        const auto first = std::find_if(runs.begin(), runs.end(), in_amr);
        ASSERT_NE(first, runs.end());
        EXPECT_EQ(first->depth, full - 2);
        EXPECT_EQ(first->tables, n <= 5 ? 0 : 1);
        EXPECT_TRUE(first->material_kept);
        EXPECT_EQ(first->to_move, 0);
        // Plies 2 and 3 have written the line in their shallow pass already.
        EXPECT_EQ(first->written, n <= 3 ? 1 : 0);
        // It failed, so the move is played and searched as ever.
        EXPECT_FALSE(runs.back().passed);
        EXPECT_EQ(runs.back().depth, full);
        EXPECT_EQ(runs.back().tables, 1);
        EXPECT_FALSE(runs.back().material_kept);
        EXPECT_EQ(runs.back().written, n < 9 ? 1 : 0);
        EXPECT_EQ(AmrT[n], 1);
        EXPECT_EQ(deep, full);
        EXPECT_EQ(HASHf, 1);
        EXPECT_EQ(quantas_vezes(Regra::amr), 1U);
        EXPECT_EQ(quantas_vezes(Regra::amr_refuta), 0U);
    }
}

TEST_F(FreeMove, ThatStillCutsTheParentSettlesTheNode) {
    for (int n = 2; n <= 9; ++n) {
        for (int k = n - 2; k >= (even(n) ? 0 : 1); k -= 2) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", bound " << k);
            stand_before_an_early_child(n);
            const int full = least_deep(n);
            bound(k) = 7.0F;
            const Depths depths = depths_of_runs(n, quiet, [](int) { return 7.0F; });
            EXPECT_EQ(depths.back(), full - 2);
            EXPECT_EQ(bound(n), 7.0F);
            EXPECT_EQ(quantas_vezes(Regra::amr_refuta), 1U);
            EXPECT_EQ(AmrT[n], 0);
            EXPECT_EQ(deep, full);

            stand_before_an_early_child(n);
            bound(k) = even(n) ? 6.9F : 7.1F;
            EXPECT_EQ(depths_of_runs(n, quiet, [](int) { return 7.0F; }).back(), full);
            EXPECT_EQ(quantas_vezes(Regra::amr_refuta), 0U);
        }
    }
}

TEST_F(FreeMove, IsTriedForAnyMoveButACheckAndACheckLeavesTheFlagAlone) {
    for (int n = 2; n <= 9; ++n) {
        for (const char* move : {quiet, push, capture}) {
            SCOPED_TRACE(testing::Message() << "ply " << n << " " << move);
            stand_before_an_early_child(n);
            EXPECT_TRUE(tries(n, move));
            EXPECT_EQ(AmrT[n], 1);
        }
        stand_before_an_early_child(n);
        EXPECT_FALSE(tries(n, check));
        EXPECT_EQ(AmrT[n], 0);
    }
}

TEST_F(FreeMove, NeedsOptionDepthAndAPlaceAmongTheFirstFour) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before_an_early_child(n);
        LMR = 0;
        EXPECT_FALSE(tries(n, quiet));
        stand_before_an_early_child(n);
        deep = DEEP = least_deep(n) - 2;
        EXPECT_FALSE(tries(n, quiet));
        stand_before_an_early_child(n);
        AmrT[n] = 1;
        EXPECT_FALSE(tries(n, quiet));
        stand_before_an_early_child(n);
        curr_N[n] = 4;
        EXPECT_FALSE(tries(n, quiet));
        stand_before_an_early_child(n);
        curr_N[n] = 3;
        EXPECT_TRUE(tries(n, quiet));
    }
}

// White's replies at ply 8 to a king's move at depth 13, each with the count of free moves tried before it.
std::vector<std::pair<std::string, std::uint64_t>> tries_before_each_child(std::string_view king_move) {
    monta_ply(7, "4k3/8/8/4N3/8/8/8/K7 b - - 0 1");
    LMR = 1;
    LmrT[8] = AmrT[8] = 1;
    deep = DEEP = 13;
    zera_contadores();
    std::vector<std::pair<std::string, std::uint64_t>> before;
    const Roteiro children([&](const Chamada& x) -> std::optional<float> {
        if (x.n == 9) {
            before.emplace_back(texto(x.m), quantas_vezes(Regra::amr));
        }
        return x.n == 10 ? std::optional(20.0F) : std::nullopt;
    });
    busca_no(8, lance(king_move));
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
        alfa[0] = alfa[2] = alfa[4] = -16501.0F;  // so that the trial does not cut
        std::vector<int> seen;
        const Roteiro children([&](const Chamada&) -> std::optional<float> {
            seen.push_back(ply[6].X_D);
            return -16500.0F;  // improves nothing
        });
        busca_no(6, lance(quiet));
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
        monta_ply(n - 1, fen);
        NULL_MOVE = n <= 2 ? 1 : 2;
        deep = DEEP = least_deep(n);
        SCANT = even(n) ? 0 : 1;
        SCAN1 = 0;
        npecas = {3, 5};  // White moves twice, Black passes
        if (even(n)) {
            beta[1] = 100.0F;
        }
        zera_contadores();
    }
    // Whether the pass is made, all children being scripted.
    static bool passes(int n, std::string_view move) {
        const Escrita silence;
        const Roteiro children([](const Chamada&) { return std::optional(0.0F); });
        busca_no(n, lance(move));
        return quantas_vezes(Regra::null_move) > 0;
    }
};

TEST_F(NullMove, IsMadeAtPliesOneToFiveWithJustEnoughOfEverything) {
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_pass(n);
        EXPECT_TRUE(passes(n, quiet));
        EXPECT_EQ(quantas_vezes(Regra::null_move), 1U);
    }
}

TEST_F(NullMove, IsNeverMadeBelowPlyFive) {
    for (int n = 6; n <= 23; ++n) {
        SCOPED_TRACE(n);
        monta_ply(n - 1, queen_of_all_trades);
        NULL_MOVE = 2;
        SCANT = 1;
        beta[1] = 100.0F;
        alfa[2] = -100.0F;
        deep = DEEP = 23;
        EXPECT_FALSE(passes(n, quiet));
    }
}

TEST_F(NullMove, OptionOneAllowsPliesOneAndTwoOnly) {
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_pass(n);
        NULL_MOVE = 1;
        EXPECT_EQ(passes(n, quiet), n <= 2);
        stand_before_a_pass(n);
        NULL_MOVE = 0;
        EXPECT_FALSE(passes(n, quiet));
    }
}

TEST_F(NullMove, NeedsItsLeastDepth) {
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_pass(n);
        deep = DEEP = least_deep(n) - 2;
        EXPECT_FALSE(passes(n, quiet));
    }
}

TEST_F(NullMove, NeedsFiveMenOfThePassingSideAndThreeOfTheOther) {
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_pass(n);
        npecas = {3, 4};
        EXPECT_FALSE(passes(n, quiet));
        stand_before_a_pass(n);
        npecas = {2, 5};
        EXPECT_FALSE(passes(n, quiet));
        stand_before_a_pass(n);
        npecas = {15, 4};
        EXPECT_FALSE(passes(n, quiet));
        // The same for Black's moves.
        stand_before_a_pass(n, espelho(queen_of_all_trades));
        npecas = {5, 3};
        EXPECT_TRUE(passes(n, texto(espelho(lance(quiet)))));
        stand_before_a_pass(n, espelho(queen_of_all_trades));
        npecas = {3, 5};
        EXPECT_FALSE(passes(n, texto(espelho(lance(quiet)))));
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
    SCANT = 0;
    alfa[0] = 50.0F;
    EXPECT_FALSE(passes(1, quiet));

    stand_before_a_pass(3);
    SCANT = 0;
    alfa[0] = 50.0F;
    EXPECT_FALSE(passes(3, quiet));
    stand_before_a_pass(3);
    SCANT = 0;
    alfa[2] = -50.0F;
    EXPECT_TRUE(passes(3, quiet));

    stand_before_a_pass(5);
    SCANT = 0;
    alfa[0] = 50.0F;
    EXPECT_FALSE(passes(5, quiet));
    for (const int k : {2, 4}) {
        stand_before_a_pass(5);
        SCANT = 0;
        alfa[k] = -50.0F;
        EXPECT_TRUE(passes(5, quiet)) << "bound " << k;
    }
}

TEST_F(NullMove, AtEvenPliesNeedsAValueAboveWhateverThePass) {
    for (const std::uint8_t scant : {std::uint8_t{0}, std::uint8_t{1}}) {
        stand_before_a_pass(2);
        SCANT = scant;
        beta[1] = 16500.0F;
        EXPECT_FALSE(passes(2, quiet));

        stand_before_a_pass(4);
        SCANT = scant;
        beta[1] = 16500.0F;
        EXPECT_FALSE(passes(4, quiet));
        stand_before_a_pass(4);
        SCANT = scant;
        beta[1] = 16500.0F;
        beta[3] = 50.0F;
        EXPECT_TRUE(passes(4, quiet));
    }
}

TEST_F(NullMove, GivesTheMoverASecondMoveUnderANullWindow) {
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        const Escrita silence;
        stand_before_a_pass(n);
        HASHf = 1;
        // Own bounds above, to be taken out for the pass; the other side's, of which the tightest makes the window.
        for (int k = n - 2; k >= 0; k -= 2) {
            bound(k) = even(n) ? -40.0F - static_cast<float>(k) : 40.0F + static_cast<float>(k);
        }
        for (int k = n - 1; k >= 0; k -= 2) {
            bound(k) = even(n) ? 60.0F + static_cast<float>(k) : -60.0F - static_cast<float>(k);
        }
        const float tightest = even(n) ? 61.0F : -60.0F;
        const auto window = static_cast<float>(static_cast<double>(tightest) + (even(n) ? -0.001 : 0.001));
        const std::array<float, 25> alfa_before = alfa;
        const std::array<float, 25> beta_before = beta;
        int calls = 0;
        const Roteiro children([&](const Chamada& x) -> std::optional<float> {
            if (x.n == n + 2) {
                ++calls;
                EXPECT_EQ(x.deep, least_deep(n) - 2);
                EXPECT_EQ(x.HASHf, 0);
                EXPECT_EQ(x.deeppromo, 0);
                EXPECT_EQ(nd, n);
                EXPECT_EQ(bound(n), window);
                for (int k = n - 2; k >= 0; k -= 2) {
                    EXPECT_EQ(bound(k), start_value(k));
                }
                for (int k = n - 1; k >= 0; k -= 2) {
                    EXPECT_EQ(bound(k), (even(k) ? alfa_before : beta_before)[k]);
                }
                EXPECT_EQ(ply[n + 1].joga_com_b_deep, 1);
                EXPECT_EQ(ply[n + 1].tabd[casa(1, 0)], dama);
                EXPECT_EQ(ply[n + 1].tabd[casa(3, 0)], vazia);
                EXPECT_GT(ply[n + 1].tabd[x.m.origem()], 0);
            }
            return 0.0F;
        });
        busca_no(n, lance(quiet));
        EXPECT_GT(calls, 0);
        EXPECT_EQ(HASHf, 1);
        EXPECT_EQ(deep, least_deep(n));
        for (int k = n - 1; k >= 0; --k) {
            EXPECT_EQ(alfa[k], alfa_before[k]);
            EXPECT_EQ(beta[k], beta_before[k]);
        }
    }
}

// Runs node n with its second moves (ply n + 2) worth v and its replies (ply n + 1) worth nothing, and tells whether
// the replies were looked at.
bool goes_on(int n, float v) {
    const Escrita silence;
    const Roteiro children([n, v](const Chamada& x) { return std::optional(x.n == n + 2 ? v : 0.0F); });
    busca_no(n, lance(quiet));
    return children.quantas(n + 1) > 0;
}

TEST_F(NullMove, SettlesANodeThatFailsEvenWithTwoMovesInARow) {
    for (int n = 1; n <= 5; ++n) {
        for (int k = n - 1; k >= (even(n) ? 1 : 0); k -= 2) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", bound " << k);
            stand_before_a_pass(n);
            for (int j = n - 1; j >= 0; j -= 2) {
                bound(j) = even(n) ? 400.0F : -400.0F;
            }
            bound(k) = 30.0F;
            EXPECT_FALSE(goes_on(n, 30.0F));
            EXPECT_EQ(quantas_vezes(Regra::null_move_resolve), 1U);
            EXPECT_EQ(bound(n), 30.0F);

            stand_before_a_pass(n);
            for (int j = n - 1; j >= 0; j -= 2) {
                bound(j) = even(n) ? 400.0F : -400.0F;
            }
            bound(k) = 30.0F;
            EXPECT_TRUE(goes_on(n, std::nextafter(30.0F, even(n) ? -1.0F : 100.0F)));
            EXPECT_EQ(quantas_vezes(Regra::null_move_resolve), 0U);
        }
    }
}

TEST_F(NullMove, MateIsNotBelieved) {
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        const float mate = even(n) ? 3300.0F : -3300.0F;
        stand_before_a_pass(n);
        bound(n - 1) = 0.0F;
        EXPECT_TRUE(goes_on(n, mate));
        stand_before_a_pass(n);
        bound(n - 1) = 0.0F;
        EXPECT_FALSE(goes_on(n, std::nextafter(mate, 0.0F)));
    }
}

TEST_F(NullMove, ASecondMoveThatDoesNotExistProvesNothing) {
    // After h3 White has no legal move left: that is no stalemate, because it would not be White's turn.
    constexpr auto blocked = "7k/8/8/8/7p/1q6/7P/K7 w - - 0 1";
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        const Escrita silence;
        stand_before_a_pass(n, blocked);
        bound(n - 1) = even(n) ? -900.0F : 900.0F;  // anything but a mate would settle it
        emp = 0;
        const Roteiro children([](const Chamada&) { return std::optional(0.0F); });
        busca_no(n, lance("h2h3"));
        EXPECT_EQ(quantas_vezes(Regra::null_move), 1U);
        EXPECT_EQ(quantas_vezes(Regra::null_move_resolve), 0U);
        EXPECT_EQ(children.quantas(n + 2), 0U);
        EXPECT_GT(children.quantas(n + 1), 0U);
    }
}

TEST_F(NullMove, ASettledNodeIsStillRememberedAtPliesThreeToFive) {
    for (int n = 3; n <= 5; ++n) {
        SCOPED_TRACE(n);
        stand_before_a_pass(n);
        HASHf = 1;
        bound(n - 1) = 30.0F;
        EXPECT_FALSE(goes_on(n, 30.0F));
        EXPECT_EQ(inc[n][brancas], 1);
    }
}

TEST_F(NullMove, ClearsTheCountersOfThePlyItPassesOver) {
    for (int n = 1; n <= 5; ++n) {
        SCOPED_TRACE(n);
        const Escrita silence;
        stand_before_a_pass(n);
        curr_N[n + 1] = 7;
        LmrT[n + 1] = AmrT[n + 1] = 1;
        bool clear = true;
        const Roteiro children([&](const Chamada& x) {
            clear = clear && (x.n != n + 2 || (curr_N[n + 1] == 0 && LmrT[n + 1] == 0 && AmrT[n + 1] == 0));
            return std::optional(0.0F);
        });
        busca_no(n, lance(quiet));
        EXPECT_TRUE(clear);
    }
}

// --- The shallow pass ---

class ShallowPass : public Selective {};

TEST_F(ShallowPass, RunsAtPliesOneToThreeFourPliesShallowerAndWithoutTables) {
    for (int n = 1; n <= 5; ++n) {
        for (const int depth : {5, 7, 9, 11}) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", depth " << depth);
            const Escrita silence;
            monta_ply(n - 1, queen_of_all_trades);
            deep = DEEP = depth;
            HASHf = 1;
            zera_contadores();
            std::vector<std::pair<int, int>> runs;
            const Roteiro children([&](const Chamada& x) -> std::optional<float> {
                if (runs.empty() || runs.back() != std::pair<int, int>{x.deep, x.HASHf}) {
                    runs.emplace_back(x.deep, x.HASHf);
                }
                return 7.0F;
            });
            busca_no(n, lance(quiet));
            const bool shallow = n <= 3 && depth >= 7;
            EXPECT_EQ(quantas_vezes(Regra::iid), shallow ? 1U : 0U);
            std::vector<std::pair<int, int>> expected{{depth, 1}};
            if (shallow) {
                expected.insert(expected.begin(), {depth - 4, 0});
            }
            EXPECT_EQ(runs, expected);
            EXPECT_EQ(deep, depth);
            EXPECT_EQ(HASHf, 1);
        }
    }
}

TEST_F(ShallowPass, AMateThatItFindsEndsTheNode) {
    // Plies 1 and 3 take a mate of the root's opponent, ply 2 one of the root side.
    for (int n = 1; n <= 3; ++n) {
        for (const float size : {3300.0F, 3299.0F}) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", " << size);
            const Escrita silence;
            monta_ply(n - 1, queen_of_all_trades);
            deep = DEEP = 9;
            HASHf = 1;
            const float v = even(n) ? -size : size;
            bool full = false;
            const Roteiro children([&](const Chamada& x) -> std::optional<float> {
                full = full || x.deep == 9;
                return v;
            });
            EXPECT_EQ(busca_no(n, lance(quiet)), v);
            EXPECT_EQ(full, size < 3300.0F);
            if (n == 3) {
                EXPECT_EQ(inc[3][brancas], 1);  // remembered on either way out
            }
        }
    }
}

TEST_F(ShallowPass, PlyOneKeepsItsResult) {
    const Escrita silence;
    monta_ply(0, queen_of_all_trades);
    deep = DEEP = 9;
    {
        const Roteiro children([](const Chamada& x) { return std::optional(x.deep == 5 ? 12.0F : 34.0F); });
        busca_no(1, lance(quiet));
    }
    EXPECT_EQ(BETA1, 12.0F);
    EXPECT_EQ(beta[1], 34.0F);
    deep = DEEP = 5;
    {
        const Roteiro children([](const Chamada&) { return std::optional(34.0F); });
        busca_no(1, lance(quiet));
    }
    EXPECT_EQ(BETA1, 16500.0F);
}

// --- What every way out puts back ---

struct Kept {
    int n;
    int deep;
    std::uint8_t HASHf, deeppromo;
    std::array<int, 2> roque;
    std::array<float, 25> alfa, beta;
    std::array<float, 24> MAXcut;
};
std::vector<Kept> open_nodes;
std::uint64_t comparisons = 0;
std::uint64_t broken = 0;

Kept kept(int n) { return {n, deep, HASHf, deeppromo, roque, alfa, beta, MAXcut}; }

bool note_entry(int n, Lance) {
    open_nodes.push_back(kept(n));
    return true;
}

void compare_on_return(std::uint32_t, int n, float) {
    const Kept before = open_nodes.back();
    open_nodes.pop_back();
    ++comparisons;
    bool same = before.n == n && before.deep == deep && before.HASHf == HASHf;
    if (n == 1) {
        same = same && roque == std::array<int, 2>{} && deeppromo == 0 && MAXcut == MAXcutt;
    } else {
        same = same && before.deeppromo == deeppromo && before.roque == roque && before.MAXcut == MAXcut &&
               std::equal(alfa.begin(), alfa.begin() + n, before.alfa.begin()) &&
               std::equal(beta.begin(), beta.begin() + n, before.beta.begin());
    }
    broken += same ? 0 : 1;
}

struct Scene {
    std::string fen;
    int deep;
};

// Positions of all kinds: small endgames at a depth at which nearly every rule is awake, a few at one that allows null
// moves, fuller boards at a small depth.
std::vector<Scene> varied_scenes() {
    struct Group {
        std::ptrdiff_t least, most;
        int deep;
        std::size_t wanted;
    };
    std::vector<Scene> scenes;
    const std::vector<plain::Position> positions = plain::data_positions("positions.fen");
    for (const Group& group : {Group{4, 6, 9, 3}, Group{11, 15, 7, 2}, Group{10, 32, 5, 5}}) {
        std::size_t taken = 0;
        for (std::size_t k = 3; k < positions.size() && taken < group.wanted; k += 7) {
            const auto& squares = positions[k].squares;
            const auto men = 64 - std::count(squares.begin(), squares.end(), plain::empty_square);
            if (men >= group.least && men <= group.most) {
                scenes.push_back({plain::to_fen(positions[k]), group.deep});
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
    comparisons = broken = 0;
    for (const Scene& scene : varied_scenes()) {
        SCOPED_TRACE(scene.fen);
        processo_novo();
        TC = 0;  // a search ended by the clock leaves its last line cut down on purpose
        deepp = 9;
        const Cor own = coloca_fen(scene.fen);
        deep = scene.deep;
        tempo = 0x7fffffff;
        const int depth = deep;
        open_nodes.clear();
        entra_no_filho = note_entry;
        volta_do_filho = compare_on_return;
        busca_inteira(own);
        entra_no_filho = nullptr;
        volta_do_filho = nullptr;
        ASSERT_EQ(broken, 0U);
        EXPECT_EQ(deep, depth);
        EXPECT_EQ(HASHf, 1);
        EXPECT_EQ(deeppromo, 0);
        EXPECT_EQ(roque, (std::array<int, 2>{}));
        EXPECT_EQ(PVSm, 0);
        EXPECT_EQ(PVSm2, 0);
        null_moves += quantas_vezes(Regra::null_move);
        reductions += quantas_vezes(Regra::reducao) + quantas_vezes(Regra::amr);
        extensions += quantas_vezes(Regra::extensao) + quantas_vezes(Regra::vertical_encurta);
        scouts += quantas_vezes(Regra::sonda_da_ply_1) + quantas_vezes(Regra::sonda_da_ply_2);
    }
    EXPECT_GT(comparisons, 10000U);
    EXPECT_GT(null_moves, 0U);
    EXPECT_GT(reductions, 0U);
    EXPECT_GT(extensions, 0U);
    EXPECT_GT(scouts, 0U);
}

}  // namespace
