// The final sum in its three forms: exactly, quickly, and as an estimate.
#include "support/evaluation.h"

#include "eval/judgement.h"
#include "eval/leaf.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ondrel;
using namespace tests;

constexpr int tabled_counts = 512;  // up to here logarithms of counts come from a table

// Counters of no board: each as large as it may become, whatever the others are.
SideCounters any_counters(Chance& chance) {
    const auto real = [&chance](int limit) { return static_cast<float>(chance.below(limit * 1024)) / 1024.0F; };
    SideCounters x;
    x.posicao = real(2000);
    x.centro = real(5000);
    x.atack_ksf = real(100);
    x.defesa_ksf = real(100);
    x.mobilidade = chance.below(tabled_counts);
    x.alvos = chance.below(tabled_counts);
    x.apoios = chance.below(tabled_counts);
    x.pontos = chance.below(tabled_counts);
    x.pecas = chance.below(64);
    x.peoes = chance.below(64);
    x.avanco = chance.below(500);
    x.abrigo = chance.below(10);
    x.lowest_file = chance.below(4);
    x.highest_file = 4 + chance.below(4);
    x.lowest_rank = chance.below(4);
    x.highest_rank = 4 + chance.below(4);
    return x;
}

SumInput any_input(Chance& chance) {
    vary_options(chance);
    vary_line(chance);
    return {chance.coin() ? white : black, pass.roque, judgement.extraevalll};
}

class FinalSum : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }

    // The estimate, which must stand aside or be near.
    static bool expect_near_estimate(const SumInput& in, const Counters& counters) {
        const auto estimate = estimated_position_sum(in.own, counters);
        if (estimate) {
            EXPECT_NEAR(with_line(in, *estimate), sum_exactly(in, counters), estimate_slack / 100);
        }
        return estimate.has_value();
    }
    // The sum in double, which must stand aside or be the same; whether it stood.
    static bool expect_same_sums(const SumInput& in, const Counters& counters) {
        const float exact = sum_exactly(in, counters);
        const auto of_position = position_sum(in.own, counters);
        const auto quick = of_position ? rounded_as_exactly(with_line(in, *of_position)) : std::nullopt;
        EXPECT_TRUE(!quick || same_bits(exact, *quick)) << *quick << " for " << exact;
        return quick.has_value();
    }
};

TEST_F(FinalSum, QuicklyIsTheSameToTheLastBit) {
    Chance chance(1);
    constexpr int sums = 50000;
    int told = 0;
    for (int k = 0; k < sums && !HasFailure(); ++k) {
        const Counters counters{any_counters(chance), any_counters(chance)};
        told += expect_same_sums(any_input(chance), counters) ? 1 : 0;
    }
    EXPECT_GT(told, sums * 99 / 100);
}

TEST_F(FinalSum, QuicklyIsTheSameOnBoards) {
    Chance chance(2);
    place_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    for (int k = 0; k < 3000 && !HasFailure(); ++k) {
        fill_board(chance);
        vary_phase(chance);
        vary_kings(chance);
        const SumInput in = any_input(chance);
        expect_same_sums(in, count_all_of_leaf(in.own, chance.coin() ? white : black));
    }
}

// Where the sum lies halfway between two floats, the table cannot tell which it is. The sum is brought near nothing, and
// then to the next float and the one after that, by its start.
TEST_F(FinalSum, QuicklyIsTheSameNearNothing) {
    Chance chance(3);
    for (int k = 0; k < 5000 && !HasFailure(); ++k) {
        const Counters counters{any_counters(chance), any_counters(chance)};
        SumInput in = any_input(chance);
        in.start -= sum_exactly(in, counters);
        for (int step = 0; step < 3; ++step) {
            expect_same_sums(in, counters);
            in.start = std::nextafter(in.start, 1000.0F);
        }
    }
}

TEST_F(FinalSum, IsNotToldQuicklyBeyondTheTables) {
    Chance chance(4);
    for (int k = 0; k < 1000; ++k) {
        Counters counters{any_counters(chance), any_counters(chance)};
        const std::array<int*, 4> counts{&counters[white].mobilidade, &counters[black].alvos, &counters[white].apoios,
                                         &counters[black].pontos};
        *chance.one_of(counts) = tabled_counts + chance.below(1000);
        EXPECT_FALSE(expect_same_sums(any_input(chance), counters));
    }
}

TEST_F(FinalSum, EstimateIsNear) {
    Chance chance(5);
    for (int k = 0; k < 20000 && !HasFailure(); ++k) {
        const Counters counters{any_counters(chance), any_counters(chance)};
        EXPECT_TRUE(expect_near_estimate(any_input(chance), counters));
    }
}

// A small error in a sum near zero would be a large one in its logarithm.
TEST_F(FinalSum, EstimateStandsAsideBelowZero) {
    Chance chance(6);
    for (const Colour c : colours) {
        Counters counters{any_counters(chance), any_counters(chance)};
        counters[c].centro = 3;
        counters[c].posicao = -3;
        EXPECT_TRUE(expect_near_estimate(any_input(chance), counters));
        counters[c].posicao = -3.5F;
        EXPECT_FALSE(expect_near_estimate(any_input(chance), counters));
        expect_same_sums(any_input(chance), counters);
        counters[c].posicao = -1000;
        EXPECT_FALSE(expect_near_estimate(any_input(chance), counters));
        expect_same_sums(any_input(chance), counters);
    }
}

TEST_F(FinalSum, EstimateStandsAsideBeyondTheTables) {
    Chance chance(7);
    for (const Colour c : colours) {
        for (const auto count :
             {&SideCounters::mobilidade, &SideCounters::alvos, &SideCounters::apoios, &SideCounters::pontos}) {
            Counters counters{any_counters(chance), any_counters(chance)};
            counters[c].*count = tabled_counts - 1;
            EXPECT_TRUE(expect_near_estimate(any_input(chance), counters));
            counters[c].*count = tabled_counts;
            EXPECT_FALSE(expect_near_estimate(any_input(chance), counters));
        }
    }
}

// What lies below a tenth counts as it, to the last bit.
TEST_F(FinalSum, PositionalSumIsATenthAtLeast) {
    Chance chance(8);
    Counters counters{any_counters(chance), any_counters(chance)};
    const SumInput in = any_input(chance);
    options.PM = 10;
    counters[white].centro = 0;
    counters[white].posicao = -1000;
    const float least = sum_exactly(in, counters);
    counters[white].posicao = -10.01F;
    EXPECT_TRUE(same_bits(sum_exactly(in, counters), least));
    counters[white].posicao = -9.99F;
    EXPECT_FALSE(same_bits(sum_exactly(in, counters), least));
    counters[black].centro = 0;
    counters[black].posicao = counters[white].posicao = -500;
    const float both = sum_exactly(in, counters);
    options.PM = 0;
    EXPECT_TRUE(same_bits(sum_exactly(in, counters), both));
}

TEST_F(FinalSum, StaysWithinTheBoundOfAJudgement) {
    EXPECT_EQ(within_piecesac(50.5F), 50.0F);
    EXPECT_EQ(within_piecesac(50.0F), 50.0F);
    EXPECT_EQ(within_piecesac(-12.25F), -12.25F);
    EXPECT_EQ(within_piecesac(-50.5F), -50.0F);
    EXPECT_TRUE(std::isnan(within_piecesac(std::nanf(""))));
}

}  // namespace
