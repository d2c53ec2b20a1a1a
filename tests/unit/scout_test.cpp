// Scout passes of plies 1 and 2, and the windows that ply 1 opens around the root's score. The replies are scripted;
// what a pass does to the limits is read where the replies stand.
#include "search/observers.h"
#include "support/bare_search.h"
#include "uci/report.h"

#include <algorithm>
#include <cmath>

namespace {

using namespace tests;
using namespace ondrel;

constexpr auto position = "4k3/pppp4/8/8/6n1/8/PPPP4/3QK3 w - - 0 1";
constexpr auto quiet = "d1b1";
constexpr float none_yet = -16500.0F;

// --- Ply 2 ---

class ScoutOfPlyTwo : public BareSearch {
protected:
    // A reply at ply 2 after a first one has left beta1 at 100.
    static void stand_before_a_second_reply() {
        set_up_ply(1, position);
        options.PVS = 1;
        search.deep = pass.DEEP = 5;
        bounds.beta[1] = 100.0F;
        clear_counts();
    }
    struct Run {
        std::uint8_t PVSm2;
        std::array<float, 24> limits;
    };
    // The runs of the node when its replies are worth v.
    static std::vector<Run> runs(const std::function<float(bool in_scout)>& v) {
        std::vector<Run> seen;
        const Script children([&](const Call& x) -> std::optional<float> {
            if (seen.empty() || seen.back().PVSm2 != x.PVSm2) {
                seen.push_back({x.PVSm2, x.MAXcut});
            }
            return v(x.PVSm2 != 0);
        });
        search_node(2, move_from(quiet));
        return seen;
    }
    static std::vector<Run> runs(float v) {
        return runs([v](bool) { return v; });
    }
};

TEST_F(ScoutOfPlyTwo, ReplyThatCannotLowerTheBoundByATenthOfAPawnIsSettled) {
    stand_before_a_second_reply();
    const auto seen = runs(99.5F);
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].PVSm2, 1);
    EXPECT_EQ(bounds.alfa[2], 99.5F);
    EXPECT_EQ(times(Rule::scout_of_ply_2), 1U);
    EXPECT_EQ(times(Rule::scout_of_ply_2_settles), 1U);
}

TEST_F(ScoutOfPlyTwo, ReplyThatLowersItIsSearchedAgainWithTheNormalLimits) {
    // A whole point is enough.
    stand_before_a_second_reply();
    const auto before = bounds.MAXcut;
    const auto seen = runs([](bool in_scout) { return in_scout ? 99.0F : 98.0F; });
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[1].PVSm2, 0);
    EXPECT_EQ(seen[1].limits, before);
    EXPECT_EQ(bounds.alfa[2], 98.0F);
    EXPECT_EQ(times(Rule::scout_of_ply_2), 1U);
    EXPECT_EQ(times(Rule::scout_of_ply_2_settles), 0U);
}

TEST_F(ScoutOfPlyTwo, ReplyAtTheLimitOfPlyOneIsSettledHoweverLow) {
    for (const float v : {-50.0F, -49.9F}) {
        stand_before_a_second_reply();
        bounds.MAXcut[1] = bounds.MAXcutt[1] = 50.0F;
        EXPECT_EQ(runs(v).size(), v == -50.0F ? 1U : 2U);
    }
}

TEST_F(ScoutOfPlyTwo, TheFirstReplyHasNone) {
    stand_before_a_second_reply();
    bounds.beta[1] = 16500.0F;
    const auto seen = runs(7.0F);
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].PVSm2, 0);
    EXPECT_EQ(times(Rule::scout_of_ply_2), 0U);
}

TEST_F(ScoutOfPlyTwo, OptionSwitchesItOff) {
    stand_before_a_second_reply();
    options.PVS = 0;
    const auto seen = runs(99.5F);
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].PVSm2, 0);
    EXPECT_EQ(times(Rule::scout_of_ply_2), 0U);
}

TEST_F(ScoutOfPlyTwo, TightensTheOddLimitsBelowAndNoOther) {
    stand_before_a_second_reply();
    for (int k = 0; k < 24; ++k) {
        bounds.MAXcut[k] = bounds.MAXcutt[k] = static_cast<float>(200 + k);
    }
    bounds.MAXcut[9] = bounds.MAXcutt[9] = -99.0F;     // as tight as the scout's own: beta1 - 1 is not above it
    bounds.MAXcut[11] = bounds.MAXcutt[11] = -150.0F;  // tighter
    const auto before = bounds.MAXcut;
    const auto seen = runs(99.5F);
    ASSERT_EQ(seen.size(), 1U);
    for (int k = 0; k < 24; ++k) {
        const bool tightened = k >= 3 && k % 2 == 1 && k != 11;
        EXPECT_EQ(seen[0].limits[k], tightened ? -99.0F : before[k]) << "ply " << k;
    }
    EXPECT_EQ(bounds.MAXcut, before);
    EXPECT_EQ(root_move.PVSm2, 0);
}

TEST_F(ScoutOfPlyTwo, RestoresTheOddLimitsFromTheSavedOnes) {
    stand_before_a_second_reply();
    for (int k = 0; k < 24; ++k) {
        bounds.MAXcut[k] = static_cast<float>(500 + k);
        bounds.MAXcutt[k] = static_cast<float>(700 + k);
    }
    runs(99.5F);
    for (int k = 0; k < 24; ++k) {
        const bool restored = k >= 3 && k % 2 == 1;
        EXPECT_EQ(bounds.MAXcut[k], static_cast<float>((restored ? 700 : 500) + k)) << "ply " << k;
    }
}

TEST_F(ScoutOfPlyTwo, AFreeMoveThatRefutesTheParentSettlesTheNodeInTheScoutPass) {
    // Without the free move the value would send the node to its full run.
    stand_before_a_second_reply();
    options.LMR = 1;
    search.deep = pass.DEEP = 9;
    tree.curr_N[2] = 0;
    tree.LmrT[2] = tree.AmrT[2] = 0;
    bounds.alfa[0] = 50.0F;
    const Script children([](const Call&) { return std::optional(50.0F); });
    search_node(2, move_from(quiet));
    EXPECT_EQ(times(Rule::amr_refutes), 1U);
    EXPECT_EQ(times(Rule::scout_of_ply_2_settles), 1U);
    EXPECT_EQ(bounds.alfa[2], 50.0F);
    EXPECT_EQ(tree.curr_N[2], 1);
    EXPECT_EQ(root_move.PVSm2, 0);
    EXPECT_EQ(bounds.MAXcut, bounds.MAXcutt);
}

// --- Ply 1 ---

struct PassSeen {
    int deep;
    std::uint8_t PVSm, LMRtest;
    float beta1_at_start;
    std::array<float, 24> limits;
    float alfa0, E;
};

class PassesOfPlyOne : public BareSearch {
protected:
    enum Kind { build, first_alone, all_others };

    // A root move about to be searched at a depth without null move and shallow pass.
    static void stand_before_a_root_move(Kind kind) {
        set_up_ply(0, position);
        options.PVS = 1;
        search.deep = pass.DEEP = 5;
        pass.SCAN1 = kind == first_alone ? 1 : 0;
        pass.SCANT = kind == all_others ? 1 : 0;
        search.DEEP9 = 0;
        root.materialflot0 = 0;
        game_line.peca = 0;
        bounds.alfa[0] = 0;
        bounds.ALFA0 = 0;
        search.E = 0;
        search.curr = 0;
        root_move.BETA1 = 16500.0F;
        clear_counts();
    }

    // The passes of the move, each with its replies worth what the script says.
    static std::vector<PassSeen> passes(const std::function<float(const PassSeen&)>& v) {
        std::vector<PassSeen> seen;
        const Script replies([&](const Call& x) -> std::optional<float> {
            const bool begins = tree.nd == 1 && (seen.empty() || seen.back().deep != x.deep ||
                                                 seen.back().PVSm != x.PVSm || seen.back().LMRtest != x.LMRtest);
            if (begins) {
                seen.push_back({x.deep, x.PVSm, x.LMRtest, bounds.beta[1], x.MAXcut, x.alfa0, x.E});
            }
            return v(seen.back());
        });
        search_node(1, move_from(quiet));
        if (seen.empty()) {
            ADD_FAILURE() << "no pass";
            seen.push_back({});
        }
        return seen;
    }
    static std::vector<PassSeen> passes(float v) {
        return passes([v](const PassSeen&) { return v; });
    }
    static bool scouts(const std::vector<PassSeen>& seen) {
        return std::any_of(seen.begin(), seen.end(), [](const PassSeen& x) { return x.PVSm != 0; });
    }
    static bool runs_in_full(const std::vector<PassSeen>& seen) { return seen.back().PVSm == 0; }

    static void expect_even_limits(const std::array<float, 24>& limits, const std::function<float(int)>& expected) {
        for (int k = 2; k <= 22; k += 2) {
            EXPECT_EQ(limits[k], expected(k)) << "ply " << k;
        }
    }
};

TEST_F(PassesOfPlyOne, HasAScoutPassInItsOwnPassAndAmongTheOthersOnceThereIsAScore) {
    stand_before_a_root_move(build);
    EXPECT_FALSE(scouts(passes(10.0F)));
    stand_before_a_root_move(first_alone);
    EXPECT_TRUE(scouts(passes(10.0F)));
    stand_before_a_root_move(first_alone);
    bounds.ALFA0 = none_yet;
    EXPECT_TRUE(scouts(passes(10.0F)));
    stand_before_a_root_move(all_others);
    EXPECT_TRUE(scouts(passes(10.0F)));
    stand_before_a_root_move(all_others);
    bounds.ALFA0 = none_yet;
    EXPECT_FALSE(scouts(passes(10.0F)));
}

TEST_F(PassesOfPlyOne, WithoutPvsNoMoveHasAScoutPass) {
    for (const Kind kind : {build, first_alone, all_others}) {
        stand_before_a_root_move(kind);
        options.PVS = 0;
        const auto seen = passes(10.0F);
        ASSERT_EQ(seen.size(), 1U);
        EXPECT_EQ(seen[0].PVSm, 0);
        EXPECT_EQ(seen[0].LMRtest, 0);
        EXPECT_EQ(times(Rule::scout_of_ply_1), 0U);
        EXPECT_EQ(times(Rule::full_pass), 1U);
    }
}

TEST_F(PassesOfPlyOne, IsCountedOnce) {
    for (const Kind kind : {build, first_alone, all_others}) {
        for (const float v : {-300.0F, 6.0F}) {
            stand_before_a_root_move(kind);
            bounds.alfa[0] = -200.0F;
            bounds.ALFA0 = 0.0F;
            passes(v);
            EXPECT_EQ(search.curr, 1);
        }
    }
}

TEST_F(PassesOfPlyOne, FullPassOfAMoveThatCameThroughItsScoutPassIsMarked) {
    stand_before_a_root_move(first_alone);
    const auto seen = passes(10.0F);
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[0].PVSm, 1);
    EXPECT_EQ(seen[0].LMRtest, 0);
    EXPECT_EQ(seen[1].PVSm, 0);
    EXPECT_EQ(seen[1].LMRtest, 1);
    stand_before_a_root_move(build);
    EXPECT_EQ(passes(10.0F)[0].LMRtest, 0);
}

TEST_F(PassesOfPlyOne, BestMoveAloneIsSettledByAFailureOrAGreatSuccess) {
    // Settled below ALFA0 + 5 and from 15 over the balance with the last capture on top.
    const auto settled = [](float v, float balance, int taken) {
        stand_before_a_root_move(first_alone);
        bounds.alfa[0] = -10.0F;
        root.materialflot0 = balance;
        game_line.peca = taken;
        return !runs_in_full(passes(v));
    };
    EXPECT_TRUE(settled(4.9F, 0.0F, 0));
    EXPECT_FALSE(settled(5.0F, 0.0F, 0));
    EXPECT_FALSE(settled(14.9F, 0.0F, 0));
    EXPECT_TRUE(settled(15.0F, 0.0F, 0));
    EXPECT_FALSE(settled(15.0F, 10.0F, 0));
    EXPECT_TRUE(settled(25.0F, 10.0F, 0));
    EXPECT_FALSE(settled(46.9F, 0.0F, -32));
    EXPECT_TRUE(settled(47.0F, 0.0F, -32));
    EXPECT_TRUE(settled(47.0F, 0.0F, 32));
}

TEST_F(PassesOfPlyOne, FailingBestMoveIsSearchedInFullUpToDepthNineOnALighterBoard) {
    const auto settled = [](int depth, std::uint8_t many_men, float v) {
        stand_before_a_root_move(first_alone);
        search.deep = pass.DEEP = depth;
        search.DEEP9 = many_men;
        return !runs_in_full(passes(v));
    };
    EXPECT_FALSE(settled(5, 0, 0.0F));  // equal to alfa0 is a failure
    EXPECT_FALSE(settled(9, 0, -1.0F));
    EXPECT_TRUE(settled(9, 0, 0.1F));
    EXPECT_TRUE(settled(11, 0, -1.0F));
    EXPECT_TRUE(settled(9, 1, -1.0F));
    EXPECT_TRUE(settled(5, 1, -1.0F));
}

TEST_F(PassesOfPlyOne, OtherMovesAreSettledUnlessTheyBeatTheRootBound) {
    const auto settled = [](float v) {
        stand_before_a_root_move(all_others);
        bounds.alfa[0] = -200.0F;  // not held: the limits stay wide
        return !runs_in_full(passes(v));
    };
    EXPECT_TRUE(settled(-200.0F));
    EXPECT_TRUE(settled(-199.9995F));
    EXPECT_FALSE(settled(-199.99F));
    EXPECT_EQ(times(Rule::scout_of_ply_1_settles), 0U);
}

TEST_F(PassesOfPlyOne, OtherMovesAreSettledAtTheLimitThatTheScoutPassHad) {
    const auto settled = [](float v) {
        stand_before_a_root_move(all_others);
        bounds.alfa[0] = -200.0F;
        for (int k = 2; k <= 22; k += 2) {
            bounds.MAXcut[k] = bounds.MAXcutt[k] = 80.0F;
        }
        return !runs_in_full(passes(v));
    };
    EXPECT_FALSE(settled(79.9F));
    EXPECT_TRUE(settled(80.0F));
    // With the score held the scout's own limit is the root bound, so that a better move is taken at its word.
    stand_before_a_root_move(all_others);
    EXPECT_FALSE(runs_in_full(passes(1.0F)));
    EXPECT_EQ(bounds.beta[1], 1.0F);
}

TEST_F(PassesOfPlyOne, ScoutPassOfTheBestMoveLimitsTheEvenPliesToFiveOverTheOldScore) {
    stand_before_a_root_move(first_alone);
    bounds.ALFA0 = 40.0F;
    bounds.MAXcut[8] = bounds.MAXcutt[8] = 20.0F;
    const auto odd = bounds.MAXcut;
    const auto seen = passes(47.0F);
    ASSERT_TRUE(scouts(seen));
    expect_even_limits(seen[0].limits, [](int k) { return k == 8 ? 20.0F : 45.0F; });
    for (int k = 1; k < 24; k += 2) {
        EXPECT_EQ(seen[0].limits[k], odd[k]);
    }
    EXPECT_EQ(seen[0].limits[0], odd[0]);
    EXPECT_EQ(bounds.MAXcut, bounds.MAXcutt);
}

TEST_F(PassesOfPlyOne, ScoutPassOfTheOthersAsksOnlyWhetherTheRootBoundIsBeaten) {
    // A held score: at 5, or within 5 of the old one and not under -15.
    const auto narrowed = [](float alfa0, float old) {
        stand_before_a_root_move(all_others);
        bounds.alfa[0] = alfa0;
        bounds.ALFA0 = old;
        bounds.MAXcut[8] = bounds.MAXcutt[8] = -20.0F;
        const auto seen = passes(alfa0 - 3.0F);
        const auto limit = static_cast<float>(static_cast<double>(alfa0) + 0.001);
        if (seen[0].limits[2] != limit) {
            expect_even_limits(seen[0].limits, [](int k) { return bounds.MAXcutt[k]; });
            return false;
        }
        expect_even_limits(seen[0].limits, [limit](int k) { return k == 8 ? -20.0F : limit; });
        return true;
    };
    EXPECT_TRUE(narrowed(5.0F, 900.0F));
    EXPECT_FALSE(narrowed(4.9F, 900.0F));
    EXPECT_TRUE(narrowed(4.0F, 9.0F));
    EXPECT_FALSE(narrowed(4.0F, 9.1F));
    EXPECT_TRUE(narrowed(-15.0F, -10.0F));
    EXPECT_FALSE(narrowed(-15.0F, -9.9F));
    EXPECT_FALSE(narrowed(-15.1F, -20.0F));
}

TEST_F(PassesOfPlyOne, EvenLimitsReturnToTheSavedOnesAfterEveryPass) {
    for (const Kind kind : {build, first_alone, all_others}) {
        stand_before_a_root_move(kind);
        options.TURBO = 1;
        for (int k = 0; k < 24; ++k) {
            bounds.MAXcut[k] = static_cast<float>(500 + k);
            bounds.MAXcutt[k] = static_cast<float>(700 + k);
        }
        passes(10.0F);
        for (int k = 0; k < 24; ++k) {
            const bool restored = k >= 2 && k % 2 == 0;
            EXPECT_EQ(bounds.MAXcut[k], static_cast<float>((restored ? 700 : 500) + k)) << "ply " << k;
        }
    }
}

TEST_F(PassesOfPlyOne, IsToldToTheObserverOnceByTheScoutPassThatSettlesItOrByTheFullPass) {
    static int told;
    const auto tells = [](Kind kind, int depth, float v) {
        stand_before_a_root_move(kind);
        search.deep = pass.DEEP = depth;
        told = 0;
        observers.root_move_searched = [] { ++told; };
        passes(v);
        return told;
    };
    EXPECT_EQ(tells(build, 5, 10.0F), 1);
    EXPECT_EQ(tells(first_alone, 5, 4.0F), 1);   // settled by the scout pass
    EXPECT_EQ(tells(first_alone, 5, 10.0F), 1);  // in full
    EXPECT_EQ(tells(all_others, 5, -10.0F), 1);
    EXPECT_EQ(tells(all_others, 7, 3300.0F), 0);  // a mate of the shallow pass
}

TEST_F(PassesOfPlyOne, IsReportedOnceInEveryPassButTheBuildPass) {
    const auto reports = [](Kind kind, float v) {
        stand_before_a_root_move(kind);
        options.FULL_inf = 1;
        observers.root_move_searched = report_root_move;
        const Written output;
        passes(v);
        const std::string text = output.text();
        std::size_t count = 0;
        for (std::size_t at = text.find("currmove "); at != std::string::npos; at = text.find("currmove ", at + 1)) {
            ++count;
        }
        return count;
    };
    EXPECT_EQ(reports(build, 10.0F), 0U);
    EXPECT_EQ(reports(first_alone, 4.0F), 1U);   // settled by the scout pass
    EXPECT_EQ(reports(first_alone, 10.0F), 1U);  // in full
    EXPECT_EQ(reports(all_others, -10.0F), 1U);
}

// --- The widening of the root at depth 9 ---

class Widening : public PassesOfPlyOne {
protected:
    struct RootBounds {
        float alfa0, E;
        bool operator==(const RootBounds&) const = default;
    };
    // The root's bounds in the full pass of a best move that has failed at depth 9, and the start of beta1 there.
    static RootBounds root_in_full_pass(float alfa0, float best, float balance, int taken, float& start) {
        stand_before_a_root_move(first_alone);
        search.deep = pass.DEEP = 9;
        bounds.alfa[0] = alfa0;
        search.E = best;
        bounds.ALFA0 = alfa0;
        root.materialflot0 = balance;
        game_line.peca = taken;
        root.material_a = {300.0F, 300.0F};
        const auto seen = passes([alfa0](const PassSeen&) { return alfa0 - 1.0F; });
        EXPECT_EQ(seen.back().LMRtest, 1);
        start = seen.back().beta1_at_start;
        return {seen.back().alfa0, seen.back().E};
    }
};

TEST_F(Widening, LowersTheRootBySeventyFiveWhenThatIsEnough) {
    float start = 0;
    EXPECT_EQ(root_in_full_pass(80.0F, 90.0F, 0.0F, 0, start), (RootBounds{5.0F, 15.0F}));
    EXPECT_EQ(start, 80.0F);  // beta1 starts at the bound that the move has failed to reach
    EXPECT_EQ(times(Rule::root_widened), 1U);
    EXPECT_EQ(root_in_full_pass(60.0F, 60.0F, 0.0F, 0, start), (RootBounds{-15.0F, -15.0F}));
}

TEST_F(Widening, OpensTheWholeRootWhenTheLoweredBoundsAreTooLow) {
    constexpr RootBounds open{-16500.0F, -10000000.0F};
    float start = 0;
    EXPECT_EQ(root_in_full_pass(59.9F, 90.0F, 0.0F, 0, start), open);
    EXPECT_EQ(root_in_full_pass(90.0F, 59.9F, 0.0F, 0, start), open);
    EXPECT_EQ(root_in_full_pass(0.0F, 0.0F, 0.0F, 0, start), open);
    EXPECT_EQ(start, 0.0F);
}

TEST_F(Widening, OpensTheWholeRootOfAPositionThatStandsBadlyAlready) {
    constexpr RootBounds open{-16500.0F, -10000000.0F};
    float start = 0;
    EXPECT_EQ(root_in_full_pass(-15.1F, 900.0F, 0.0F, 0, start), open);
    EXPECT_EQ(root_in_full_pass(500.0F, -15.1F, 0.0F, 0, start), open);
    // The line that E is held against counts the balance and the man that the opponent has just taken.
    EXPECT_EQ(root_in_full_pass(500.0F, 110.0F, 50.0F, 0, start), (RootBounds{425.0F, 35.0F}));
    EXPECT_EQ(root_in_full_pass(500.0F, 109.0F, 50.0F, 0, start), open);
    EXPECT_EQ(root_in_full_pass(500.0F, 110.0F, 0.0F, -50, start), (RootBounds{425.0F, 35.0F}));
    EXPECT_EQ(root_in_full_pass(500.0F, 109.0F, 0.0F, 50, start), open);
}

TEST_F(Widening, CountsTheRatioOfTheMaterialInTheLine) {
    // Twice the material is worth 5 ln 2, about 3.47, so the line lies at -11.53 instead of -15.
    for (const float best : {63.4F, 63.5F}) {
        stand_before_a_root_move(first_alone);
        search.deep = pass.DEEP = 9;
        bounds.alfa[0] = bounds.ALFA0 = 500.0F;
        search.E = best;
        root.material_a = {400.0F, 200.0F};
        const auto seen = passes([](const PassSeen&) { return 499.0F; });
        EXPECT_EQ(seen.back().E, best == 63.5F ? best - 75.0F : -10000000.0F);
    }
}

TEST_F(Widening, HappensAtDepthNineToAFailingBestMoveOfALighterBoardOnly) {
    const auto widens = [](Kind kind, int depth, std::uint8_t many_men, float v) {
        stand_before_a_root_move(kind);
        search.deep = pass.DEEP = depth;
        search.DEEP9 = many_men;
        bounds.ALFA0 = -9.0F;
        passes(v);
        return times(Rule::root_widened) > 0;
    };
    EXPECT_TRUE(widens(first_alone, 9, 0, 0.0F));
    EXPECT_TRUE(widens(first_alone, 9, 0, -1.0F));
    EXPECT_FALSE(widens(first_alone, 9, 0, 1.0F));
    EXPECT_FALSE(widens(first_alone, 9, 1, 0.0F));
    EXPECT_FALSE(widens(first_alone, 11, 0, 0.0F));
    EXPECT_FALSE(widens(first_alone, 7, 0, 0.0F));
    EXPECT_FALSE(widens(all_others, 9, 0, 0.0F));
}

// --- Turbo windows ---

class Turbo : public PassesOfPlyOne {
protected:
    // The full pass of a root move of the build kind, so that no scout pass comes in between.
    static void stand_before_a_root_move_with_turbo(int depth) {
        stand_before_a_root_move(build);
        options.TURBO = 1;
        search.deep = pass.DEEP = depth;
        bounds.alfa[0] = -100.0F;  // nothing is held
        bounds.ALFA0 = 0.0F;
        search.E = -100.0F;
    }
    // How far over E the even limits are in the full pass; the shallow pass finds the value given.
    static constexpr float wide = 99999.0F;
    static float width(float shallow = 0.0F) {
        const auto seen = passes([shallow](const PassSeen& x) { return x.deep == pass.DEEP ? 0.0F : shallow; });
        const std::array<float, 24>& limits = seen.back().limits;
        for (int k = 4; k <= 22; k += 2) {
            EXPECT_EQ(limits[k] == bounds.MAXcutt[k], limits[2] == bounds.MAXcutt[2]);
        }
        if (limits[2] == bounds.MAXcutt[2]) {
            return wide;
        }
        expect_even_limits(limits, [&](int) { return limits[2]; });
        return limits[2] - search.E;
    }
};

TEST_F(Turbo, RuleOneNeedsNothingButTheScore) {
    stand_before_a_root_move_with_turbo(5);
    search.E = -33.0F;
    EXPECT_EQ(width(), 33.0F);
    stand_before_a_root_move_with_turbo(5);
    search.E = -33.5F;
    EXPECT_EQ(width(), wide);
    // The balance and the last capture, of whatever colour, move the line.
    stand_before_a_root_move_with_turbo(5);
    search.E = 17.0F;
    root.materialflot0 = 50.0F;
    EXPECT_EQ(width(), 33.0F);
    stand_before_a_root_move_with_turbo(5);
    search.E = 16.5F;
    root.materialflot0 = 50.0F;
    EXPECT_EQ(width(), wide);
    for (const int taken : {50, -50}) {
        stand_before_a_root_move_with_turbo(5);
        search.E = 17.0F;
        game_line.peca = taken;
        EXPECT_EQ(width(), 33.0F);
        stand_before_a_root_move_with_turbo(5);
        search.E = 16.5F;
        game_line.peca = taken;
        EXPECT_EQ(width(), wide);
    }
}

TEST_F(Turbo, AWindowNeverRaisesALimit) {
    stand_before_a_root_move_with_turbo(5);
    search.E = 0;
    bounds.MAXcut[6] = bounds.MAXcutt[6] = 20.0F;
    bounds.MAXcut[8] = bounds.MAXcutt[8] = 40.0F;
    const auto seen = passes(0.0F);
    expect_even_limits(seen.back().limits, [](int k) { return k == 6 ? 20.0F : 33.0F; });
}

TEST_F(Turbo, OptionSwitchesTheWindowsOff) {
    stand_before_a_root_move_with_turbo(9);
    options.TURBO = 0;
    search.E = 0;
    bounds.alfa[0] = 10.0F;
    search.DEEP9 = 1;
    const auto seen = passes(0.0F);
    for (const PassSeen& x : seen) {
        EXPECT_EQ(x.limits, bounds.MAXcutt);
    }
}

TEST_F(Turbo, WithoutTheOptionTheScoutRulesStillAct) {
    stand_before_a_root_move(first_alone);
    bounds.ALFA0 = 40.0F;
    const auto seen = passes(47.0F);
    expect_even_limits(seen[0].limits, [](int) { return 45.0F; });
}

TEST_F(Turbo, AHeldScoreNearTheBalanceLetsTheNarrowWindowsIn) {
    // The second rule, ten wide, has the conditions of the narrowing by the shallow pass, which is never wider than
    // seven: what shows is the latter. At depth 11 rules 3 to 6 are asleep.
    const auto w = [](float best, float alfa0, float old) {
        stand_before_a_root_move_with_turbo(11);
        search.E = best;
        bounds.alfa[0] = alfa0;
        bounds.ALFA0 = old;
        return width(500.0F);
    };
    EXPECT_EQ(w(-10.5F, 5.0F, 900.0F), 33.0F);  // E too low
    EXPECT_EQ(w(-10.0F, 5.0F, 900.0F), 7.0F);
    EXPECT_EQ(w(-10.0F, 4.9F, 900.0F), 33.0F);
    EXPECT_EQ(w(-10.0F, 4.0F, 9.0F), 7.0F);
    EXPECT_EQ(w(-10.0F, 4.0F, 9.1F), 33.0F);
    EXPECT_EQ(w(-10.0F, -15.0F, -10.0F), 7.0F);
    EXPECT_EQ(w(-10.0F, -15.0F, -9.9F), 33.0F);
    EXPECT_EQ(w(-10.0F, -15.1F, -20.0F), 33.0F);
}

TEST_F(Turbo, RulesThreeToFiveTightenWithTheScoreAtDepthNine) {
    // The shallow value is above E, so its own limit of 7 over E is the ceiling where E is at -10 or more.
    struct Case {
        float best, alfa0, old, expected;
    };
    for (const Case& x : {
             Case{-15.5F, 5.0F, 900.0F, 33.0F},   // under rule 3
             Case{-15.0F, 5.0F, 900.0F, 9.0F},    // rule 3
             Case{-15.0F, 4.9F, 900.0F, 33.0F},   // not held
             Case{-15.0F, -15.0F, -15.0F, 9.0F},  // held at the old score
             Case{-15.0F, -15.0F, -14.9F, 33.0F},
             Case{-15.0F, -15.1F, -20.0F, 33.0F},
             Case{-5.5F, 5.0F, 900.0F, 7.0F},   // still rule 3, under the shallow pass's ceiling
             Case{-5.0F, 5.0F, 900.0F, 5.0F},   // rule 4
             Case{-5.0F, -5.0F, -5.0F, 5.0F},   // held at the old score
             Case{-5.0F, -5.1F, -20.0F, 7.0F},  // under rule 4's own limit
             Case{-5.0F, -4.0F, -3.9F, 7.0F},   // under the old score, though score held
             Case{0.0F, 5.0F, 900.0F, 3.0F},    // rule 5
             Case{-0.5F, 5.0F, 900.0F, 5.0F},
             Case{0.0F, 0.0F, 0.0F, 3.0F},
             Case{0.0F, -0.1F, -20.0F, 5.0F},
             Case{0.0F, 4.0F, 4.1F, 7.0F},
         }) {
        SCOPED_TRACE(testing::Message() << x.best << " " << x.alfa0 << " " << x.old);
        stand_before_a_root_move_with_turbo(9);
        search.E = x.best;
        bounds.alfa[0] = x.alfa0;
        bounds.ALFA0 = x.old;
        EXPECT_FLOAT_EQ(width(500.0F), x.expected);
    }
    // One step deeper only rules 1 and 2 are left.
    stand_before_a_root_move_with_turbo(11);
    search.E = 0;
    bounds.alfa[0] = 5.0F;
    EXPECT_EQ(width(500.0F), 7.0F);
}

TEST_F(Turbo, RuleSixHoldsTheFullBoardToOnePointWhateverTheScore) {
    const auto w = [](int depth, std::uint8_t many_men, float alfa0) {
        stand_before_a_root_move_with_turbo(depth);
        search.DEEP9 = many_men;
        search.E = -1000.0F;
        bounds.alfa[0] = alfa0;
        bounds.ALFA0 = 900.0F;
        return width(500.0F);
    };
    EXPECT_EQ(w(9, 1, -15.0F), 1.0F);
    EXPECT_EQ(w(9, 1, -15.1F), wide);
    EXPECT_EQ(w(9, 0, -15.0F), wide);
    EXPECT_EQ(w(11, 1, -15.0F), wide);
}

TEST_F(Turbo, TheLastRuleThatAppliesWins) {
    // Rule 6 starts from the saved limits again and so undoes the three points of rule 5.
    stand_before_a_root_move_with_turbo(9);
    search.DEEP9 = 1;
    search.E = 0;
    bounds.alfa[0] = 5.0F;
    EXPECT_EQ(width(500.0F), 1.0F);
}

TEST_F(Turbo, TheShallowPassNarrowsFurther) {
    const auto w = [](float best, float shallow, float alfa0) {
        stand_before_a_root_move_with_turbo(11);
        search.E = best;
        bounds.alfa[0] = alfa0;
        bounds.ALFA0 = 900.0F;
        return width(shallow);
    };
    EXPECT_EQ(w(0.0F, -1.0F, 5.0F), 1.0F);   // the move looks worse than the best score
    EXPECT_EQ(w(0.0F, 0.0F, 5.0F), 3.0F);    // as good
    EXPECT_EQ(w(0.0F, 1.0F, 5.0F), 7.0F);    // better
    EXPECT_EQ(w(0.0F, -1.0F, 4.0F), 33.0F);  // not held
    EXPECT_EQ(w(-10.0F, -20.0F, 5.0F), 1.0F);
    EXPECT_EQ(w(-10.5F, -20.0F, 5.0F), 33.0F);  // too far below the balance
    // It never widens: rule 5 leaves 3, and a better shallow value keeps it there.
    stand_before_a_root_move_with_turbo(9);
    search.E = 0;
    bounds.alfa[0] = 5.0F;
    EXPECT_EQ(width(1.0F), 3.0F);
}

TEST_F(Turbo, WithoutAShallowPassNothingIsNarrowedFurther) {
    stand_before_a_root_move_with_turbo(5);
    search.E = 0;
    bounds.alfa[0] = 5.0F;
    EXPECT_EQ(width(), 33.0F);
}

TEST_F(Turbo, TheShallowPassItselfHasTheFirstRuleOnly) {
    stand_before_a_root_move_with_turbo(13);  // its shallow pass has depth 9
    search.DEEP9 = 1;
    search.E = 0;
    bounds.alfa[0] = 5.0F;
    const auto seen = passes(0.0F);
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[0].deep, 9);
    expect_even_limits(seen[0].limits, [](int) { return 33.0F; });
    stand_before_a_root_move_with_turbo(13);
    search.E = -33.5F;
    expect_even_limits(passes(0.0F)[0].limits, [](int k) { return bounds.MAXcutt[k]; });
}

TEST_F(Turbo, TheScoutPassHasTheWindowsToo) {
    // Among the other moves with a score that is not held the scout's own rule is asleep and only rule 1 is seen.
    stand_before_a_root_move(all_others);
    options.TURBO = 1;
    bounds.alfa[0] = -100.0F;
    search.E = 0;
    const auto seen = passes(-200.0F);
    ASSERT_TRUE(scouts(seen));
    expect_even_limits(seen[0].limits, [](int) { return 33.0F; });
}

TEST_F(Turbo, TheScoutRuleOfTheBestMoveStartsFromTheSavedLimits) {
    // So it can be wider than the window that stood before it.
    stand_before_a_root_move(first_alone);
    options.TURBO = 1;
    bounds.ALFA0 = 60.0F;
    search.E = 0;
    const auto seen = passes(100.0F);
    ASSERT_TRUE(scouts(seen));
    expect_even_limits(seen[0].limits, [](int) { return 65.0F; });
}

TEST_F(Turbo, TheScoutRuleOfTheOthersStartsFromTheWindow) {
    stand_before_a_root_move(all_others);
    options.TURBO = 1;
    bounds.alfa[0] = 50.0F;
    bounds.ALFA0 = 50.0F;
    search.E = 0;
    const auto seen = passes(0.0F);
    expect_even_limits(seen[0].limits, [](int) { return 33.0F; });
}

TEST_F(Turbo, OddLimitsAndTheRootsOwnAreNeverTouched) {
    stand_before_a_root_move_with_turbo(9);
    search.E = 0;
    bounds.alfa[0] = 5.0F;
    for (const PassSeen& x : passes(0.0F)) {
        EXPECT_EQ(x.limits[0], bounds.MAXcutt[0]);
        for (int k = 1; k < 24; k += 2) {
            EXPECT_EQ(x.limits[k], bounds.MAXcutt[k]);
        }
    }
}

}  // namespace
