// What is kept between judgements: the sums of leaves by position and the terms of pawns by pawns. Whatever is kept must
// be what a fresh judgement would give, in the context in which it is asked for.
#include "support/evaluation.h"

#include "base/options.h"
#include "eval/context.h"
#include "eval/judgement.h"
#include "eval/leaf.h"
#include "eval/pawn_terms.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ondrel;
using namespace tests;

constexpr std::string_view middlegame = "2r2rk1/1b3p1p/1p1q1np1/pPnp4/3N4/P1N1P1P1/5PBP/R2Q1RK1 w - - 0 1";

class KeptJudgements : public ::testing::Test {
protected:
    void SetUp() override {
        fresh_process();
        place_leaf(middlegame);
    }

    template <Colour stm = white>
    static Known estimated_as(const std::array<int, 2>& king = trial.p_xy_R) {
        prepare_weights(white);
        const PieceSets sets = piece_sets(trial.tab2);
        return estimate_leaf<white, stm>({sets, king, pass.roque});
    }
    // The judgement of the leaf on tab2 with nothing kept.
    static float judged_anew(Colour own, Colour stm) {
        renew_context();
        return judge(own, stm);
    }
};

TEST_F(KeptJudgements, EstimateOfALeafIsKept) {
    EXPECT_EQ(estimated_as(), Known::by_estimate);
    const float first = judgement.extraeval;
    EXPECT_EQ(estimated_as(), Known::by_estimate);
    EXPECT_TRUE(same_bits(judgement.extraeval, first));
}

TEST_F(KeptJudgements, ExactSumIsKept) {
    const float exact = judge(white, white);
    EXPECT_EQ(estimated_as(), Known::exactly);
    EXPECT_TRUE(same_bits(judgement.extraeval, exact));
}

TEST_F(KeptJudgements, SideToMoveAndKingsBelongToTheLeaf) {
    judge(white, white);
    EXPECT_EQ(estimated_as<black>(), Known::by_estimate);
    std::array<int, 2> elsewhere = trial.p_xy_R;
    ++elsewhere[black];
    EXPECT_EQ(estimated_as(elsewhere), Known::by_estimate);
    EXPECT_EQ(estimated_as(), Known::exactly);
}

TEST_F(KeptJudgements, WhatTheLineAddsIsAddedAnew) {
    judge(white, white);
    for (const float base : {-3.5F, 0.25F, 4.0F}) {
        judgement.extraevalll = base;
        pass.roque = {base > 0 ? 1 : 0, 0};
        EXPECT_EQ(estimated_as(), Known::exactly);
        const float kept = judgement.extraeval;
        EXPECT_TRUE(same_bits(kept, judged_anew(white, white))) << base;
        judge(white, white);
    }
}

TEST_F(KeptJudgements, AnotherContextForgetsThem) {
    const auto is_forgotten = [](auto change) {
        judge(white, white);
        EXPECT_EQ(estimated_as(), Known::exactly);
        change();
        EXPECT_EQ(estimated_as(), Known::by_estimate);
        const float kept = judge(white, white);
        EXPECT_TRUE(same_bits(kept, judged_anew(white, white)));
    };
    is_forgotten([] { options.MOB += 1; });
    is_forgotten([] { options.PM += 1; });
    is_forgotten([] { options.agres += 1; });
    is_forgotten([] { options.agresprxrei += 1; });
    is_forgotten([] { root.regimen += 1; });
    is_forgotten([] { root.npecas[black] -= 10; });
    is_forgotten([] { root.materialmaior[white] = 50; });
}

TEST_F(KeptJudgements, AreThoseOfAFreshJudgementOnAnyBoards) {
    Chance chance(20261122);
    for (int k = 0; k < 3000 && !HasFailure(); ++k) {
        fill_board(chance);
        if (k % 10 == 0) {
            vary_phase(chance);
            vary_options(chance);
        }
        vary_kings(chance);
        const Colour own = chance.coin() ? white : black;
        const Colour stm = chance.coin() ? white : black;
        const float first = judge(own, stm);
        vary_line(chance);
        const float second = judge(own, stm);
        vary_line(chance);
        EXPECT_FALSE(std::isnan(first) || std::isnan(second));
        const float kept = judge(own, stm);
        EXPECT_TRUE(same_bits(kept, judged_anew(own, stm))) << "board " << k;
    }
}

// --- Pawns ---

TEST_F(KeptJudgements, PawnTermsAreToldApartByPawnsKingsAndContext) {
    prepare_weights(white);
    const SquareSet a2 = set_of(square(file_a, 1));
    const SquareSet h7 = set_of(square(file_h, 6));
    const std::array<int, 2> kings{square(4, 0), square(4, 7)};
    const auto same = [](const PawnTerms& x, const PawnTerms& y) {
        return x.side[white].whole_terms == y.side[white].whole_terms &&
               x.side[white].enemy_king == y.side[white].enemy_king && x.side[black].centre == y.side[black].centre;
    };
    const PawnTerms both = pawn_terms(a2, h7, kings);
    EXPECT_FALSE(same(both, pawn_terms(a2, 0, kings)));
    EXPECT_FALSE(same(both, pawn_terms(0, h7, kings)));
    EXPECT_FALSE(same(both, pawn_terms(a2, h7, {square(4, 0), square(0, 2)})));
    EXPECT_TRUE(same(both, pawn_terms(a2, h7, kings)));
    root.materialmaior = {0, 0};  // an ending: pawns are counted otherwise
    prepare_weights(white);
    EXPECT_FALSE(same(both, pawn_terms(a2, h7, kings)));
}

}  // namespace
