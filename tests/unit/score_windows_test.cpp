// The hard score window around the lead that material promises, mode by mode and row by row.
#include "search/score_windows.h"
#include "support/engine.h"
#include "support/scripted.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <optional>
#include <string>

namespace {

using namespace tests;
using namespace ondrel;

enum Mode { off = 0, manual = 1, automatic = 2, full = 3 };

// A root position in numbers, from the view of the side to search.
struct Root {
    float own = 300, opponent = 300;  // material with the king
    int own_men = 8, opponents_men = 8;
    int taken = 0;  // own man that the last move took
};

float ladder(int n) { return 15400.0F - 1100.0F * static_cast<float>(n / 2); }

class ScoreWindows : public testing::TestWithParam<Colour> {
protected:
    void SetUp() override {
        fresh_process();
        // What no rule should leave behind.
        bounds.MAXcut.fill(-7.0F);
    }

    static Colour own() { return GetParam(); }

    static void set(Mode positive, Mode negative, const Root& r) {
        bounds.MAXcut.fill(-7.0F);
        options.Positive_filterp = positive;
        options.Negative_filterp = negative;
        root.material_a[own()] = r.own;
        root.material_a[other(own())] = r.opponent;
        root.npecas[own()] = r.own_men;
        root.npecas[other(own())] = r.opponents_men;
        root.materialflot0 = r.own - r.opponent;
        game_line.peca = forward(own()) * r.taken;
        set_score_windows(own());
    }

    // The sums of the table: margin over the balance, the last capture and the weighed logarithm of the ratio; and
    // margin below.
    static float above(float margin, const Root& r) {
        const long double ratio = std::log(static_cast<long double>(r.own) / r.opponent) * options.MQ;
        return static_cast<float>(static_cast<long double>(r.own - r.opponent) + margin + r.taken + ratio);
    }
    static float below(float margin, const Root& r) {
        const long double ratio = std::log(static_cast<long double>(r.own) / r.opponent) * options.MQ;
        return static_cast<float>(margin - static_cast<long double>(r.own - r.opponent) - ratio);
    }

    // Of one parity, that of both plies named.
    static void expect_limits(int from, int to, float value) {
        for (int n = from; n <= to; n += 2) {
            EXPECT_EQ(bounds.MAXcut[n], value) << "limit " << n;
        }
    }
    static void expect_ladder(int from, int to) {
        for (int n = from; n <= to; n += 2) {
            EXPECT_EQ(bounds.MAXcut[n], ladder(n)) << "limit " << n;
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Colours, ScoreWindows, testing::Values(white, black),
                         [](const auto& c) { return c.param == white ? "White" : "Black"; });

// One row of the table: the lead, and the margins of the two modes; -1 stands for the wide open 1100.
struct Margins {
    float lead;
    float positive_auto, negative_auto, positive_full, negative_full;
};
constexpr float open = -1;
constexpr std::array table{
    Margins{-180, open, open, 50, 90}, Margins{-34, open, open, 50, 90}, Margins{-33, open, open, 50, 90},
    Margins{-32, 100, 100, 32, 50},    Margins{-1, 100, 100, 32, 50},    Margins{0, 100, 100, 32, 50},
    Margins{49, 100, 100, 32, 50},     Margins{50, 90, 90, 33, 32},      Margins{89, 90, 90, 33, 32},
    Margins{90, 90, 90, 10, 33},       Margins{400, 90, 90, 10, 33},
};

TEST_P(ScoreWindows, OffLeavesTheMateLadder) {
    set(off, off, {450, 200});
    expect_ladder(0, 16);
    expect_ladder(1, 17);
}

TEST_P(ScoreWindows, LimitsBelowPlySeventeenAreNotTheirs) {
    for (const Mode mode : {off, manual, automatic, full}) {
        set(mode, mode, {});
        for (int n = 18; n < 24; ++n) {
            EXPECT_EQ(bounds.MAXcut[n], -7.0F);
        }
    }
}

TEST_P(ScoreWindows, ManualTakesTheLevelOfItsOption) {
    options.positfilter = 33;
    options.negatfilter = 50;
    const Root r{330, 280, 8, 8, 32};
    set(manual, manual, r);
    EXPECT_EQ(bounds.MAXcut[0], 15400.0F);
    EXPECT_EQ(bounds.MAXcut[2], 14300.0F);
    EXPECT_EQ(bounds.MAXcut[4], 13200.0F);
    expect_limits(6, 16, above(33, r));
    EXPECT_EQ(bounds.MAXcut[1], 15400.0F);
    EXPECT_EQ(bounds.MAXcut[3], 14300.0F);
    expect_limits(5, 17, below(50, r));
}

TEST_P(ScoreWindows, ManualKnowsNoEndgames) {
    const Root r{160, 110, 1, 0};
    set(manual, manual, r);
    expect_ladder(0, 4);
    expect_limits(6, 16, above(100, r));
    expect_ladder(1, 3);
    expect_limits(5, 17, below(100, r));
    set(manual, manual, {110, 160, 0, 1});
    expect_ladder(0, 4);
    expect_limits(6, 16, above(100, {110, 160}));
    expect_limits(5, 17, below(100, {110, 160}));
}

TEST_P(ScoreWindows, AutoFollowsTheLead) {
    for (const Margins& row : table) {
        for (const int taken : {0, 33}) {
            SCOPED_TRACE(testing::Message() << "lead " << row.lead << ", taken " << taken);
            const Root r{300 + row.lead, 300, 8, 8, taken};
            set(automatic, automatic, r);
            expect_ladder(0, 4);
            expect_ladder(1, 3);
            expect_limits(6, 16, row.positive_auto == open ? 1100.0F : above(row.positive_auto, r));
            expect_limits(5, 17, row.negative_auto == open ? 1100.0F : below(row.negative_auto, r));
        }
    }
}

TEST_P(ScoreWindows, FullFollowsTheLeadMoreNarrowly) {
    for (const Margins& row : table) {
        for (const int taken : {0, 33}) {
            SCOPED_TRACE(testing::Message() << "lead " << row.lead << ", taken " << taken);
            const Root r{300 + row.lead, 300, 8, 8, taken};
            set(full, full, r);
            expect_ladder(0, 4);
            expect_ladder(1, 3);
            expect_limits(6, 16, above(row.positive_full, r));
            expect_limits(5, 17, below(row.negative_full, r));
        }
    }
}

TEST_P(ScoreWindows, TheTwoFiltersAreIndependent) {
    const Root r{310, 300};
    for (const Mode positive : {off, manual, automatic, full}) {
        for (const Mode negative : {off, manual, automatic, full}) {
            SCOPED_TRACE(testing::Message() << positive << " " << negative);
            set(positive, negative, r);
            expect_limits(6, 6, positive == off ? ladder(6) : above(positive == full ? 32 : 100, r));
            expect_limits(5, 5, negative == off ? ladder(5) : below(negative == full ? 50 : 100, r));
        }
    }
}

TEST_P(ScoreWindows, EqualMaterialLeavesTheBareMargins) {
    set(automatic, automatic, {510, 510, 15, 15, 50});
    expect_limits(6, 16, 150.0F);
    expect_limits(5, 17, 100.0F);
}

TEST_P(ScoreWindows, RatioIsWeighedByItsOption) {
    options.MQ = 0;
    set(automatic, automatic, {330, 300});
    expect_limits(6, 16, 130.0F);
    expect_limits(5, 17, 70.0F);
}

TEST_P(ScoreWindows, FullWithManyMenLimitsTheRootItself) {
    const Root many{310, 300, 11, 10, 32};
    set(full, automatic, many);
    EXPECT_EQ(bounds.MAXcut[0], above(33, many));
    expect_ladder(2, 4);
    const Root twenty{310, 300, 10, 10, 32};
    set(full, automatic, twenty);
    EXPECT_EQ(bounds.MAXcut[0], 15400.0F);
    set(automatic, full, many);
    EXPECT_EQ(bounds.MAXcut[0], 15400.0F);
}

// --- Endgames of a few pieces ---

struct FewMen {
    float material;
    int men;
    bool almost_bare;
};
constexpr std::array few_men{
    FewMen{110, 0, true},  FewMen{142, 1, true},  FewMen{143, 1, true},  FewMen{174, 2, true},
    FewMen{120, 1, false}, FewMen{160, 1, false}, FewMen{175, 2, false}, FewMen{176, 2, false},
    FewMen{130, 2, false}, FewMen{142, 2, false}, FewMen{143, 2, false}, FewMen{174, 1, false},
};

TEST_P(ScoreWindows, AutoGoesForTheMateOfAnOpponentAlmostBare) {
    for (const FewMen& x : few_men) {
        SCOPED_TRACE(testing::Message() << x.material << " in " << x.men);
        const Root r{400, x.material, 5, x.men};
        set(automatic, off, r);
        expect_ladder(0, 4);
        if (!x.almost_bare) {
            expect_limits(6, 16, above(90, r));
        } else if (x.material == 110) {
            expect_limits(6, 16, 1100.0F);
        } else {
            expect_ladder(6, 16);
        }
    }
}

TEST_P(ScoreWindows, AgainstALoneKingThePositiveLimitIsElevenHundredFromARookUp) {
    set(automatic, off, {160, 110, 1, 0});
    expect_limits(6, 16, 1100.0F);
    set(automatic, off, {159, 110, 3, 0});
    expect_ladder(0, 16);
}

TEST_P(ScoreWindows, NegativeFiltersAreTightAgainstAnOpponentAlmostBare) {
    for (const Mode mode : {automatic, full}) {
        for (const FewMen& x : few_men) {
            SCOPED_TRACE(testing::Message() << mode << ", " << x.material << " in " << x.men);
            const Root r{400, x.material, 5, x.men};
            set(off, mode, r);
            if (x.almost_bare) {
                expect_limits(1, 17, below(33, r));
            } else {
                expect_ladder(1, 3);
                expect_limits(5, 17, below(mode == full ? 33 : 90, r));
            }
        }
    }
}

TEST_P(ScoreWindows, AutoIsWideForAnEngineAlmostBare) {
    for (const FewMen& x : few_men) {
        SCOPED_TRACE(testing::Message() << x.material << " in " << x.men);
        const Root r{x.material, 400, x.men, 5, 90};
        set(automatic, off, r);
        EXPECT_EQ(bounds.MAXcut[0], 15400.0F);
        if (x.almost_bare) {
            expect_limits(2, 16, above(90, r));
        } else {
            expect_ladder(2, 4);
            expect_limits(6, 16, 1100.0F);
        }
    }
}

TEST_P(ScoreWindows, FullLimitsEvenTheRootOfAnEngineAlmostBare) {
    for (const FewMen& x : few_men) {
        SCOPED_TRACE(testing::Message() << x.material << " in " << x.men);
        const Root r{x.material, 400, x.men, 5, 90};
        set(full, off, r);
        if (x.almost_bare) {
            expect_limits(0, 16, above(50, r));
        } else {
            expect_ladder(0, 4);
            expect_limits(6, 16, above(50, r));
        }
    }
}

TEST_P(ScoreWindows, FullDoesNotCareAboutAnOpponentAlmostBare) {
    const Root r{400, 110, 5, 0};
    set(full, off, r);
    expect_ladder(0, 4);
    expect_limits(6, 16, above(10, r));
}

TEST_P(ScoreWindows, NegativeFiltersSeeOnlyMateForAnEngineAlmostBare) {
    for (const Mode mode : {automatic, full}) {
        for (const FewMen& x : few_men) {
            SCOPED_TRACE(testing::Message() << mode << ", " << x.material << " in " << x.men);
            const Root r{x.material, 400, x.men, 5};
            set(off, mode, r);
            expect_ladder(1, 3);
            if (x.almost_bare) {
                expect_ladder(5, 17);
            } else {
                expect_limits(5, 17, mode == full ? below(90, r) : 1100.0F);
            }
        }
    }
}

TEST_P(ScoreWindows, WithBothSidesAlmostBareTheLastRowOfTheTableHolds) {
    const Root r{143, 142, 1, 1};
    set(automatic, automatic, r);
    EXPECT_EQ(bounds.MAXcut[0], 15400.0F);
    expect_limits(2, 16, above(90, r));
    expect_ladder(1, 17);
    set(full, full, r);
    expect_limits(0, 16, above(50, r));
    expect_ladder(1, 17);
}

// --- In a search ---

TEST_P(ScoreWindows, ASearchGivesTheLastPliesTheLimitsOfSixteenAndSeventeen) {
    set_option("Positive float filter", "full");
    set_option("Negative float filter", "off");
    options.deepp = 7;
    const std::string fen = "r5k1/pp3ppp/8/8/8/8/PP3PPP/R5K1 w - - 0 1";
    const Colour side = place_fen(own() == white ? fen : mirrored(fen));
    ASSERT_EQ(side, own());
    std::array<float, last_ply> seen{};
    const Script children([&](const Call& x) {
        seen = x.MAXcut;
        return std::optional(0.0F);
    });
    search_whole(side);
    for (int n = 6; n <= 22; n += 2) {
        EXPECT_EQ(seen[n], 32.0F) << "limit " << n;
    }
    for (int n = 1; n <= 17; n += 2) {
        EXPECT_EQ(seen[n], ladder(n)) << "limit " << n;
    }
    for (int n = 19; n <= 23; n += 2) {
        EXPECT_EQ(seen[n], ladder(17)) << "limit " << n;
    }
    EXPECT_EQ(bounds.MAXcutt, seen);
}

TEST_P(ScoreWindows, ASearchWithTheDefaultsOpensAHundredToEitherSide) {
    options.deepp = 7;
    const std::string fen = "r5k1/pp3ppp/8/8/8/8/PP3PPP/R5K1 w - - 0 1";
    const Colour side = place_fen(own() == white ? fen : mirrored(fen));
    std::array<float, last_ply> seen{};
    const Script children([&](const Call& x) {
        seen = x.MAXcut;
        return std::optional(0.0F);
    });
    search_whole(side);
    for (int n = 0; n < 24; ++n) {
        EXPECT_EQ(seen[n], n < 5 ? ladder(n) : 100.0F) << "limit " << n;
    }
}

}  // namespace
