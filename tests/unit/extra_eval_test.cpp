// The judgement of a leaf: the terms of its sum, its bound, the dead draws, and the four routines' differences.
#include "support/evaluation.h"
#include "support/plain_judge.h"

#include "eval/leaf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace {

using namespace ondrel;
using namespace tests;

constexpr float strong = 320.0F;  // the enemy's pieces keep the kings at home

class Judgement : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }

    // Judges the board in the opening, kings at home, with the root in balance.
    static float judge_field(std::string_view field, Colour own = white, Colour stm = white) {
        place_leaf(std::string(field) + " w - - 0 1");
        set_phase(20, strong);
        root.regimen = regimen_of_root;
        return judge(own, stm);
    }
    static void fixed_terms_alone() {
        options.MOB = 0;
        options.PM = 0;
    }

    static inline float regimen_of_root = 0;
    void TearDown() override { regimen_of_root = 0; }
};

// Bare kings: no moves, no marks. What remains is the advance and a box of one square each.
constexpr std::string_view kings = "4k3/8/8/8/8/4K3/8/8";

// --- The terms ---

TEST_F(Judgement, AdvanceOfTheEngineCountsForIt) { EXPECT_NEAR(judge_field(kings, white), 3.1 - 1.1, 1e-5); }

TEST_F(Judgement, AdvanceOfTheEnemyCountsAgainstIt) { EXPECT_NEAR(judge_field(kings, black, black), 1.1 - 3.1, 1e-5); }

TEST_F(Judgement, AdvanceIsSharedAmongTheMen) {
    // A pawn that has been left on the last rank does nothing but advance and widen the box.
    EXPECT_NEAR(judge_field("P3k3/8/8/8/8/8/8/4K3"), (1 + 8 + 0.1) / 2 + 2.0 / 40 - 1.1 - 1, 1e-5);
}

TEST_F(Judgement, PawnsCountByTheDensityOfTheirBox) {
    const float wide = judge_field("P3k3/8/8/8/8/8/8/4K3");
    const float narrow = judge_field("4P1k1/8/8/8/8/8/8/4K3");
    EXPECT_NEAR(narrow - wide, 2.0 / 8 - 2.0 / 40, 1e-5);
}

TEST_F(Judgement, PawnsOfTheEnemyCountAgainstTheEngine) {
    const float wide = judge_field("P3k3/8/8/8/8/8/8/4K3", black, black);
    const float narrow = judge_field("4P1k1/8/8/8/8/8/8/4K3", black, black);
    EXPECT_NEAR(narrow - wide, 2.0 / 40 - 2.0 / 8, 1e-5);
}

// White's knight a1 attacks c2 and b3.
constexpr std::string_view knight_up = "7k/8/8/8/8/8/8/N6K";
const double advance_and_pawns = (1 + 1 + 0.1) / 2 + 1 - 1.1 - 1;
const double points_of_knight = 2 * std::log(13.1 / 10.1);
const double defence_of_knight = 1.0 / 28 + 1.0 / 42;
const double attack_of_knight = 2.0 / 63;
const double king_safety = 5 * std::log((defence_of_knight + 3) / 3) + 5 * std::log((attack_of_knight + 3) / 3);

TEST_F(Judgement, PointsCountTwiceAndMarksAroundBothKings) {
    fixed_terms_alone();
    EXPECT_NEAR(judge_field(knight_up), advance_and_pawns + points_of_knight + king_safety, 1e-5);
    EXPECT_NEAR(judge_field(knight_up, black, black), -advance_and_pawns - points_of_knight - king_safety, 1e-5);
}

// A pawn left on the last rank shelters a king below it and marks nothing.
TEST_F(Judgement, ShelterOfTheEnginesKingCountsAgainstTheEnemysAttack) {
    const double without_shelter = (6 + 8 + 0.1) / 2 + 2.0 / 6 - 1.1 - 1;
    EXPECT_NEAR(judge_field("P3k3/8/1K6/8/8/8/8/8"), without_shelter + 5 * std::log(4.0 / 3), 1e-5);
}

TEST_F(Judgement, ShelterOfTheEnemysKingCountsAgainstTheEnginesAttack) {
    const double without_shelter = 1.1 + 1 - (6 + 8 + 0.1) / 2 - 2.0 / 6;
    EXPECT_NEAR(judge_field("P3k3/8/1K6/8/8/8/8/8", black, black), without_shelter + 5 * std::log(3.0 / 4), 1e-5);
}

TEST_F(Judgement, MobilityCountsByItsWeight) {
    options.PM = 0;
    options.MOB = 0;
    const float without = judge_field(knight_up);
    options.MOB = 5;
    EXPECT_NEAR(judge_field(knight_up) - without, 5 * std::log(5.0 / 3), 1e-5);
    options.MOB = 10;
    EXPECT_NEAR(judge_field(knight_up) - without, 10 * std::log(5.0 / 3), 1e-5);
}

TEST_F(Judgement, PositionAndMiddleCountByTheirWeight) {
    options.MOB = 0;
    options.PM = 0;
    const float without = judge_field(knight_up);
    const double positional = 5.0 / 100 + 25 / 26.5;
    const double middle = 2 * 50 / 10.5;
    options.PM = 5;
    EXPECT_NEAR(judge_field(knight_up) - without, 5 * std::log((positional + middle + 10.1) / 10.1), 1e-5);
    options.PM = 10;
    EXPECT_NEAR(judge_field(knight_up) - without, 10 * std::log((positional + middle + 10.1) / 10.1), 1e-5);
}

TEST_F(Judgement, CastlingCountsByItsWeight) {
    const float without = judge_field(kings);
    set_phase(20, strong);
    root.regimen = 0;
    pass.roque = {1, 0};
    EXPECT_NEAR(judge(white, white) - without, 3 * std::log(4.0 / 3), 1e-5);
    pass.roque = {0, 1};
    EXPECT_NEAR(judge(white, white) - without, 3 * std::log(3.0 / 4), 1e-5);
    pass.roque = {2, 1};
    options.roque_v = 10;
    EXPECT_NEAR(judge(white, white) - without, 10 * std::log(5.0 / 4), 1e-5);
    EXPECT_NEAR(judge(black, white) + without, 10 * std::log(4.0 / 5), 1e-5);
}

// The term itself is rounded to float before it is added.
TEST_F(Judgement, CastlingIsRoundedBeforeItIsAdded) {
    judge_field(kings);
    pass.roque = {1, 0};
    options.roque_v = 7;
    const auto term = static_cast<float>(7 * std::log(4.0L / 3.0L));
    const long double expected = (3 + static_cast<long double>(0.1)) - (1 + static_cast<long double>(0.1)) + term;
    EXPECT_TRUE(same_bits(judge(white, white), static_cast<float>(expected)));
}

TEST_F(Judgement, WithoutCastlingInTheLineThereIsNoSuchTerm) {
    const float without = judge_field(kings);
    options.roque_v = 10;
    pass.roque = {0, 0};
    EXPECT_TRUE(same_bits(judge(white, white), without));
}

// White's rooks hit one man and support three times; Black's pawn does neither.
constexpr std::string_view rooks = "7k/8/8/3p4/8/8/8/R2R3K";

TEST_F(Judgement, HitsOfTheEngineWeighOneHundredthOfTheBalance) {
    const float without = judge_field(rooks);
    regimen_of_root = 100;
    EXPECT_NEAR(judge_field(rooks) - without, 0.01 * 100 * std::log(4.0 / 6), 1e-5);
}

TEST_F(Judgement, HitsOfTheEnemyWeighOneThousandth) {
    const float without = judge_field(rooks, black, black);
    regimen_of_root = 100;
    EXPECT_NEAR(judge_field(rooks, black, black) - without, 0.001 * 100 * std::log(4.0 / 6), 1e-5);
}

TEST_F(Judgement, HitsAreScoredDownInABadBalance) {
    constexpr std::string_view one_target = "7k/8/8/8/8/1p6/8/N6K";
    const float without = judge_field(one_target);
    regimen_of_root = -100;
    EXPECT_NEAR(judge_field(one_target) - without, -0.01 * 100 * std::log(4.0 / 3), 1e-5);
}

TEST_F(Judgement, BaseValueOfTheRootMoveRidesOnEveryLeaf) {
    const float without = judge_field(kings);
    judgement.extraevalll = 1.25F;
    EXPECT_NEAR(judge(white, white) - without, 1.25, 1e-6);
    EXPECT_NEAR(judge(white, black) - without, 1.25, 1e-6);
}

// --- The bound ---

TEST_F(Judgement, IsBoundedByFivePawns) {
    judgement.extraevalll = 58;
    EXPECT_EQ(judge_field(kings), 50.0F);
    judgement.extraevalll = -62;
    EXPECT_EQ(judge_field(kings), -50.0F);
    judgement.extraevalll = 47;
    EXPECT_NEAR(judge_field(kings), 49, 1e-4);
    judgement.extraevalll = -51;
    EXPECT_NEAR(judge_field(kings), -49, 1e-4);
}

TEST_F(Judgement, LeavesTheBoundedValueOnlyInExtraeval) {
    judgement.extraevalll = 58;
    judge_field(kings);
    EXPECT_EQ(judgement.extraevalll, 58.0F);
}

// --- Dead draws ---

class DeadDraw : public Judgement {
protected:
    // Whether all four routines say so; they agree.
    static bool is_dead(std::string_view field) {
        int verdicts = 0;
        for (const Colour own : colours) {
            for (const Colour stm : colours) {
                judgement.EMPAT = 2;
                judge_field(field, own, stm);
                EXPECT_LE(judgement.EMPAT, 1) << field;
                verdicts += judgement.EMPAT;
            }
        }
        EXPECT_TRUE(verdicts == 0 || verdicts == 4) << field;
        return verdicts != 0;
    }
};

TEST_F(DeadDraw, BareKings) { EXPECT_TRUE(is_dead("4k3/8/8/8/8/8/8/4K3")); }

TEST_F(DeadDraw, UpToTwoKnights) {
    EXPECT_TRUE(is_dead("4k3/8/8/8/8/8/8/4KN2"));
    EXPECT_TRUE(is_dead("4k3/8/8/8/8/8/8/3NKN2"));
    EXPECT_TRUE(is_dead("3nkn2/8/8/8/8/8/8/3NKN2"));
    EXPECT_FALSE(is_dead("4k3/8/8/8/8/8/8/2NNKN2"));
    EXPECT_FALSE(is_dead("2nnkn2/8/8/8/8/8/8/4K3"));
}

TEST_F(DeadDraw, OneBishop) {
    EXPECT_TRUE(is_dead("4k3/8/8/8/8/8/8/4KB2"));
    EXPECT_TRUE(is_dead("4kb2/8/8/8/8/8/8/4KB2"));
    EXPECT_FALSE(is_dead("4k3/8/8/8/8/8/8/3BKB2"));
    EXPECT_FALSE(is_dead("3bkb2/8/8/8/8/8/8/4K3"));
}

TEST_F(DeadDraw, TwoKnightsAgainstABishop) { EXPECT_TRUE(is_dead("4kb2/8/8/8/8/8/8/3NKN2")); }

TEST_F(DeadDraw, NotKnightAndBishopTogether) {
    EXPECT_FALSE(is_dead("4k3/8/8/8/8/8/8/4KBN1"));
    EXPECT_FALSE(is_dead("4kbn1/8/8/8/8/8/8/4K3"));
}

TEST_F(DeadDraw, NotWithAPawnARookOrAQueen) {
    for (const std::string man_letter : {"P", "R", "Q", "p", "r", "q"}) {
        EXPECT_FALSE(is_dead("4k3/8/8/8/" + man_letter + "7/8/8/4K3")) << man_letter;
    }
}

// --- The four routines ---

TEST_F(Judgement, WithoutContactTheSideToMoveIsNoMatter) {
    constexpr std::string_view field = "r3k3/p7/8/8/8/8/5PPP/6KR";
    for (const Colour own : {white, black}) {
        EXPECT_TRUE(same_bits(judge_field(field, own, white), judge_field(field, own, black)));
    }
}

TEST_F(Judgement, WithContactOnlyTheAttackTermsDiffer) {
    // The knight a1 attacks the queen b3; the knight b6 attacks the pawn c4, which is worth less.
    constexpr std::string_view field = "7k/8/1n6/8/2P5/1q1P4/8/N6K";
    judge_field(field, white, white);
    const Counters in_turn = counted;
    judge_field(field, white, black);
    for (const Colour c : colours) {
        SideCounters expected = in_turn[c];
        expected.posicao = counted[c].posicao;
        EXPECT_TRUE(counts_like(expected, counted[c]));
    }
    EXPECT_NEAR(in_turn[white].posicao - counted[white].posicao, 58, 1e-4);
    EXPECT_EQ(in_turn[black].posicao, counted[black].posicao);
}

TEST_F(Judgement, KnightOnTheQueenCountsAfterTheEnemysMoveOnly) {
    constexpr std::string_view field = "7k/8/8/8/8/1q6/8/N6K";
    const auto posicao_of_white = [&](Colour own, Colour stm) {
        judge_field(field, own, stm);
        return counted[white].posicao;
    };
    const float without = posicao_of_white(white, black);
    EXPECT_NEAR(posicao_of_white(white, white) - without, 58, 1e-4);
    EXPECT_NEAR(posicao_of_white(black, white) - without, 58, 1e-4);
    EXPECT_NEAR(posicao_of_white(black, black) - without, 0, 1e-4);
}

TEST_F(Judgement, OfOneSideIsTheOthersTurnedRound) {
    constexpr std::string_view field = "r1bqk2r/pp3ppp/2n2n2/2bp4/8/2N1BN2/PPP2PPP/R2QKB1R";
    EXPECT_NEAR(judge_field(field, white, white), -judge_field(field, black, white), 1e-4);
    EXPECT_NEAR(judge_field(field, white, black), -judge_field(field, black, black), 1e-4);
}

TEST_F(Judgement, DependsOnNothingThatAnotherLeafLeft) {
    constexpr std::string_view field = "r1bqk2r/pp3ppp/2n2n2/2bp4/8/2N1BN2/PPP2PPP/R2QKB1R";
    const float before = judge_field(field);
    judge_field("4k3/8/8/8/3Q4/8/8/4K3", black, white);
    EXPECT_TRUE(same_bits(judge_field(field), before));
}

// --- The score of a leaf ---

class LeafScore : public Judgement {
protected:
    // Ply 4 as a leaf: Black, the opponent, has just moved and White is the side at the root.
    static float leaf_score(std::string_view fen, std::string_view m) {
        set_up_ply(3, fen);
        search.deep = pass.DEEP = 3;
        return search_node(4, move_from(m));
    }
    static constexpr std::string_view rook_up = "4k3/8/8/8/8/8/8/R3K3 b - - 0 1";
};

TEST_F(LeafScore, WithoutExtraEvaluationIsMaterialAndItsLogarithm) {
    set_up_ply(3, rook_up);
    search.EXTRA_EVAL = 0;
    search.deep = pass.DEEP = 3;
    EXPECT_NEAR(search_node(4, move_from("e8d8")), 50 + 5 * std::log(160.0 / 110), 1e-4);
}

TEST_F(LeafScore, WithoutExtraDefinitionIsMaterialAlone) {
    set_up_ply(3, rook_up);
    search.EXTRA_EVAL = 0;
    options.extradef = 0;
    search.deep = pass.DEEP = 3;
    EXPECT_EQ(search_node(4, move_from("e8d8")), 50.0F);
}

TEST_F(LeafScore, AddsTheJudgement) {
    const float v = leaf_score(rook_up, "e8d8");
    const auto material = static_cast<float>(50 + 5 * std::log(160.0L / 110));
    EXPECT_TRUE(same_bits(v, material + judgement.extraeval));
    EXPECT_NE(judgement.extraeval, 0.0F);
    EXPECT_EQ(times(Rule::judged), 1U);
}

TEST_F(LeafScore, OfADeadDrawIsTheDrawScore) {
    const float v = leaf_score("4k3/8/8/8/8/8/8/4KN2 b - - 0 1", "e8d8");
    EXPECT_EQ(v, static_cast<float>(search.emp));
    EXPECT_EQ(judgement.EMPAT, 1);
}

// The depth reached is that of the leaves that end with the opponent's move.
TEST_F(LeafScore, OfAnEvenPlyRaisesTheDepthReached) {
    process.ddep = 2;
    leaf_score(rook_up, "e8d8");
    EXPECT_EQ(process.ddep, 3);
    process.ddep = 7;
    leaf_score(rook_up, "e8d8");
    EXPECT_EQ(process.ddep, 7);
}

TEST_F(LeafScore, OfAnOddPlyDoesNotRaiseTheDepthReached) {
    // Ply 11 as a leaf: White, the engine, has just made a quiet move beyond the nominal depth.
    set_up_ply(10, "4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
    search.deep = 11;
    pass.DEEP = 9;
    process.ddep = 7;
    search_node(11, move_from("e1e2"));
    EXPECT_EQ(times(Rule::judged), 1U);
    EXPECT_EQ(process.ddep, 7);
}

TEST_F(LeafScore, OfALeafThatIsNotJudgedDoesNotRaiseTheDepthReached) {
    set_up_ply(3, rook_up);
    search.deep = pass.DEEP = 3;
    search.EXTRA_EVAL = 0;
    search_node(4, move_from("e8d8"));
    EXPECT_EQ(process.ddep, 0);
}

// --- A positional sum below a tenth ---

// Six hits by pawns at no aggressiveness bring White's sum below zero when White is to move: as a logarithm it would be
// no number, and as a value of a node it would look like none at all.
class SumBelowATenth : public Judgement {
protected:
    void SetUp() override {
        Judgement::SetUp();
        options.agres = 0;
        options.PM = 2;
        place_leaf("7k/8/2p1p1p1/1q1q1q1q/2P1P1P1/8/8/K7 w - - 0 1");
        set_phase(20, 90.0F);
    }
    static double sum_of(Colour c) { return static_cast<double>(counted[c].posicao) + counted[c].centro + 10.1; }
    // The positional term of a judgement by `judged`, with its weight.
    template <class F>
    static double positional_term(F judged) {
        const double with = judged();
        options.PM = 0;
        const double without = judged();
        options.PM = 2;
        return with - without;
    }
};

TEST_F(SumBelowATenth, CountsAsATenthAtALeaf) {
    for (const Colour own : colours) {
        const double sign = own == white ? 1 : -1;
        const double term = positional_term([own] { return static_cast<double>(judge(own, white)); });
        EXPECT_LT(sum_of(white), 0.0);
        EXPECT_GT(sum_of(black), 10.1);
        EXPECT_NEAR(term, sign * 2 * std::log(0.1 / sum_of(black)), 1e-4);
        EXPECT_TRUE(same_bits(judge(own, white), plain_leaf(own, white).extraeval));
    }
}

TEST_F(SumBelowATenth, CountsAsATenthInABaseValue) {
    // After a move of Black's White is to move.
    const double term = positional_term([] { return static_cast<double>(judge_root_move(black)); });
    EXPECT_LT(sum_of(white), 0.0);
    EXPECT_NEAR(term, 0.01 * 2 * std::log(sum_of(black) / 0.1), 1e-6);
    EXPECT_TRUE(same_bits(judge_root_move(black), plain_base_value(black)));
}

TEST_F(SumBelowATenth, AnyOtherCountsItself) {
    struct Row {
        const char* field;
        double sum;
    };
    // Fewer hits: still below, above a tenth, above what is added to it.
    for (const Row& x :
         {Row{"7k/8/2p1p1p1/1q1q1q2/2P1P1P1/8/8/K7", -15.9542}, Row{"7k/8/2p1p1p1/1q1q4/2P1P1P1/8/8/K7", 4.0458},
          Row{"7k/8/2p1p1p1/3q4/2P1P1P1/8/8/K7", 14.0458}}) {
        change_leaf(x.field);
        const double term = positional_term([] { return static_cast<double>(judge(white, white)); });
        EXPECT_NEAR(sum_of(white), x.sum, 1e-3) << x.field;
        EXPECT_NEAR(term, 2 * std::log(std::max(x.sum, 0.1) / sum_of(black)), 1e-3) << x.field;
    }
}

TEST_F(SumBelowATenth, IsAValueForTheNodeThatHasIt) {
    constexpr std::string_view fen = "7k/8/2p1p1p1/1q1q1q1q/2P1P1P1/8/8/K7 b - - 0 1";
    set_up_ply(5, fen);
    set_phase(20, 90.0F);
    search.deep = pass.DEEP = 5;
    // The queens are too much for the lazy test: their worth is told otherwise.
    ply[5].material = {400.0F, 400.0F};
    const float v = search_node(6, move_from("h8h7"));
    EXPECT_EQ(times(Rule::judged_exactly), 1U);
    EXPECT_TRUE(same_bits(v, plain_leaf(white, white).extraeval));
    EXPECT_TRUE(same_bits(v, judge(white, white)));
    EXPECT_LT(sum_of(white), 0.0);
    EXPECT_FALSE(std::isnan(v));
}

// --- Boards that no game leads to ---

// The front end lets every board in: the judgement of each must be a number.
class NonsenseBoard : public Judgement {
protected:
    static inline const std::vector<std::string> fields{
        "8/8/8/8/8/8/8/8",
        "8/8/8/8/8/8/8/K7",
        "k7/8/8/8/8/8/8/8",
        "QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ",
        "qqqqqqqq/qqqqqqqq/qqqqqqqq/qqqqqqqq/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ",
        "PPPPPPPP/PPPPPPPP/PPPPPPPP/PPPPPPPP/pppppppp/pppppppp/pppppppp/pppppppp",
        "4k3/1p1p1p1p/P1P1P1P1/1p1p1p1p/P1P1P1P1/1p1p1p1p/P1P1P1P1/4K3",
        "kkkkkkkk/8/8/8/8/8/8/KKKKKKKK",
        "pppppppp/8/8/8/8/8/8/PPPPPPPP",
        "NNNNNNNN/nnnnnnnn/8/8/8/8/8/8",
    };
};

TEST_F(NonsenseBoard, IsJudgedAllTheSame) {
    for (const float agres : {0.0F, 1.0F, 9.0F}) {
        for (const std::string& field : fields) {
            options.agres = agres;
            place_leaf(field + " w - - 0 1");
            for (const Colour own : {white, black}) {
                for (const Colour stm : {white, black}) {
                    const float v = judge(own, stm);
                    EXPECT_TRUE(v >= -50 && v <= 50) << field << ' ' << v;
                }
                EXPECT_FALSE(std::isnan(judge_root_move(own))) << field;
            }
            judgement.extraevalll = 0;
        }
    }
}

TEST_F(NonsenseBoard, IsSearchedAndAnswered) {
    for (const std::string agres : {"0", "9"}) {
        std::vector<std::string> lines{"setoption name Own book value false", "setoption name Deep value 2",
                                       "setoption name Aggressiveness value " + agres,
                                       "setoption name Time usage value 9"};
        for (const std::string& field : fields) {
            for (const char side : {'w', 'b'}) {
                lines.push_back("position fen " + field + ' ' + side + " - - 0 1");
                lines.emplace_back("go wtime 100000 btime 100000");
            }
        }
        lines.emplace_back("quit");
        const std::vector<std::string> output = converse(lines);
        const auto answers = std::count_if(output.begin(), output.end(),
                                           [](const std::string& line) { return line.starts_with("bestmove "); });
        EXPECT_EQ(answers, static_cast<std::ptrdiff_t>(2 * fields.size()));
    }
}

}  // namespace
