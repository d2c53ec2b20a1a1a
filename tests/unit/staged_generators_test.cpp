// The staged captures of ply 1, and the promotions of the odd plies from 7 on.
#include "support/boards.h"
#include "support/engine.h"
#include "support/moves.h"
#include "support/scripted.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

namespace {

using namespace tests;
using namespace ondrel;

class Stages : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

class Promotions : public Stages {};

// What a stage of ply 1 tries of one man, in order.
Texts stage_order(int K, std::string_view fen, std::string_view from) {
    set_up_ply(1, fen);
    return texts_of(stage_tried(K, from));
}

// The first moves that the whole move order of a ply tries.
Texts first_replies(int n, std::size_t count) {
    Texts moves = texts_of(replies_tried(n));
    moves.resize(count);
    return moves;
}

// Runs a generator of ply n, its children being searched: the man that has moved must be a queen of c when their
// replies are tried. Gives the moves tried.
template <class Run>
Texts tried_becoming_queens(int n, Colour c, Run run) {
    int to = no_square;
    const Script children([&](const Call& x) -> std::optional<float> {
        if (x.n == n + 1) {
            to = x.m.to();
            return std::nullopt;
        }
        EXPECT_EQ(ply[n + 1].tabd[to], code(c, dama)) << n;
        return 0.0F;
    });
    run();
    EXPECT_GT(children.count(n + 2), 0U) << n;
    return children.moves(n + 1);
}

constexpr int test_form = 0;

// --- The order of the stages ---

TEST_F(Stages, TheMostValuableVictimComesFirstWhoeverTakesIt) {
    // The rook takes the queen before the pawn takes anything.
    for (const Case& each :
         for_both_colours("k5q1/8/8/3p1n2/r3P3/8/8/R5RK w - - 0 1", {"g1g8", "a1a4", "e4f5", "e4d5"})) {
        set_up_ply(1, each.fen);
        EXPECT_EQ(first_replies(1, 4), each.moves);
    }
}

TEST_F(Stages, KnightsAreTakenBeforeBishops) {
    for (const Case& each : for_both_colours("k7/8/8/1b3n2/8/8/8/1R3R1K w - - 0 1", {"f1f5", "b1b5"})) {
        set_up_ply(1, each.fen);
        EXPECT_EQ(first_replies(1, 2), each.moves);
    }
}

TEST_F(Stages, WithinAStageTheLowestAttackerComesFirst) {
    // The black queen on d5 before pawn, knight, bishop, rook, queen and king.
    for (const Case& each : for_both_colours("k7/8/4K3/R2q4/2P4B/4N3/6B1/3Q4 w - - 0 1",
                                             {"c4d5", "e3d5", "g2d5", "a5d5", "d1d5", "e6d5"})) {
        set_up_ply(1, each.fen);
        EXPECT_EQ(first_replies(1, 6), each.moves) << each.fen;
    }
}

TEST_F(Stages, AQueenAttackedByAPawnAndARookIsTakenByThePawnFirst) {
    for (const Case& each : for_both_colours("k7/8/8/3q4/4P3/8/8/3R3K w - - 0 1", {"e4d5", "d1d5"})) {
        set_up_ply(1, each.fen);
        EXPECT_EQ(first_replies(1, 2), each.moves);
    }
}

TEST_F(Stages, EachStageTakesItsVictimAlone) {
    const char* fen = "k7/8/2p1q3/1b3r2/3N4/1n6/8/7K w - - 0 1";
    EXPECT_EQ(stage_order(5, fen, "d4"), (Texts{"d4e6"}));
    EXPECT_EQ(stage_order(4, fen, "d4"), (Texts{"d4f5"}));
    EXPECT_EQ(stage_order(3, fen, "d4"), (Texts{"d4b3"}));
    EXPECT_EQ(stage_order(2, fen, "d4"), (Texts{"d4b5"}));
    EXPECT_EQ(stage_order(1, fen, "d4"), (Texts{"d4c6"}));
}

TEST_F(Stages, CapturesComeBeforeQuietMoves) {
    for (const Case& each : for_both_colours("k7/8/8/p7/8/8/7P/R3K3 w Q - 0 1", {"a1a5", "e1c1", "h2h4"})) {
        set_up_ply(1, each.fen);
        EXPECT_EQ(first_replies(1, 3), each.moves) << "castling closes the captures";
    }
}

// --- The walks ---

TEST_F(Stages, KnightsGoByTheirJumps) {
    for (const char* fen :
         {"k7/8/2p1p3/1p3p2/3N4/1p3p2/2p1p3/7K w - - 0 1", "K7/8/2P1P3/1P3P2/3n4/1P3P2/2P1P3/7k b - - 0 1"}) {
        EXPECT_EQ(stage_order(1, fen, "d4"), (Texts{"d4f5", "d4f3", "d4b3", "d4b5", "d4c6", "d4e6", "d4e2", "d4c2"}));
        EXPECT_EQ(stage_order(5, fen, "d4"), Texts{});
    }
}

TEST_F(Stages, SlidersGoByTheirRaysAndStopAtTheFirstMan) {
    const char* lines = "k7/3p4/8/8/p2R2pp/3p4/3p4/7K w - - 0 1";
    EXPECT_EQ(stage_order(1, lines, "d4"), (Texts{"d4g4", "d4a4", "d4d7", "d4d3"}));
    const char* diagonals = "7k/6p1/1p6/8/3B4/8/1p3p2/p6K w - - 0 1";
    EXPECT_EQ(stage_order(1, diagonals, "d4"), (Texts{"d4g7", "d4f2", "d4b2", "d4b6"}));
    const char* all_lines = "7k/3p2p1/1p6/8/p2Q2p1/3p4/1p3p2/7K w - - 0 1";
    EXPECT_EQ(stage_order(1, all_lines, "d4"), (Texts{"d4g4", "d4a4", "d4d7", "d4d3", "d4g7", "d4f2", "d4b2", "d4b6"}));
    const char* all_of_black = "7K/3P2P1/1P6/8/P2q2P1/3P4/1P3P2/7k b - - 0 1";
    EXPECT_EQ(stage_order(1, all_of_black, "d4"),
              (Texts{"d4g4", "d4a4", "d4d7", "d4d3", "d4g7", "d4f2", "d4b2", "d4b6"}));
    // A man that is no victim of the stage, of either colour, ends the ray.
    EXPECT_EQ(stage_order(5, "k6q/8/8/8/q1NR1p1q/8/8/7K w - - 0 1", "d4"), Texts{});
}

TEST_F(Stages, PawnsTakeTowardsTheHigherFileFirst) {
    for (const Case& each : for_both_colours("k7/8/8/2r1r3/3P4/8/8/7K w - - 0 1", {"d4e5", "d4c5"})) {
        EXPECT_EQ(stage_order(4, each.fen, each.moves[0].substr(0, 2)), each.moves);
        EXPECT_EQ(stage_order(5, each.fen, each.moves[0].substr(0, 2)), Texts{});
    }
    for (const Case& each : for_both_colours("k7/8/8/1r5r/P7/8/8/6K1 w - - 0 1", {"a4b5"})) {
        EXPECT_EQ(stage_order(4, each.fen, each.moves[0].substr(0, 2)), each.moves);
    }
    for (const Case& each : for_both_colours("k7/8/8/r5r1/7P/8/8/7K w - - 0 1", {"h4g5"})) {
        EXPECT_EQ(stage_order(4, each.fen, each.moves[0].substr(0, 2)), each.moves);
    }
}

TEST_F(Stages, AKingTakesOnAllItsNeighbours) {
    EXPECT_EQ(sorted(stage_order(1, "7k/8/8/2p1p3/2pK4/2ppp3/8/8 w - - 0 1", "d4")),
              (Texts{"d4c3", "d4c4", "d4c5", "d4e3", "d4e5"}))
        << "all but the defended one";
    for (const auto& [f, r] : {std::pair{3, 4}, {3, 2}, {2, 3}, {4, 3}, {2, 4}, {4, 4}, {2, 2}, {4, 2}}) {
        rules::Position p = position_of("7k/8/8/8/3K4/8/8/8 w - - 0 1");
        p.put(f, r, 'r');
        const Texts moves = stage_order(4, rules::to_fen(p), "d4");
        EXPECT_EQ(moves.size(), 1U) << f << r;
    }
}

TEST_F(Stages, IllegalCapturesAreDropped) {
    search.nodes = 0;
    EXPECT_EQ(stage_order(1, "3rk3/8/8/3p4/4K3/8/8/8 w - - 0 1", "e4"), Texts{}) << "defended";
    EXPECT_EQ(stage_order(4, "4rk2/8/8/2r5/4N3/8/8/4K3 w - - 0 1", "e4"), Texts{}) << "pinned";
    EXPECT_EQ(search.nodes, 0U);
}

TEST_F(Stages, ACaptureWithPromotionStandsInTheStageOfItsVictim) {
    for (const Case& each : for_both_colours("2rq4/3P3k/8/8/8/8/8/7K w - - 0 1", {"d7c8"})) {
        const std::string from = each.moves[0].substr(0, 2);
        EXPECT_EQ(stage_order(4, each.fen, from), each.moves);
        for (const int K : {5, 3, 2, 1}) {
            EXPECT_EQ(stage_order(K, each.fen, from), Texts{}) << K;
        }
        const Colour c = set_up_ply(1, each.fen);
        EXPECT_EQ(tried_becoming_queens(1, c, [&from] { run_stage(4, from); }), each.moves);
    }
}

TEST_F(Stages, ThePushToTheLastRankComesWithTheQuietMoves) {
    set_up_ply(1, "7k/3P4/8/8/p7/8/8/R6K w - - 0 1");
    const Texts moves = texts_of(replies_tried(1));
    EXPECT_EQ(moves[0], "a1a4");
    EXPECT_EQ(moves[1], "d7d8");
}

// --- En passant ---

TEST_F(Stages, EnPassantClosesThePawnsCapturesOfPawns) {
    for (const Case& each : for_both_colours("k7/8/4p3/2pPp3/8/8/8/7K w - - 0 1", {"d5e6", "d5c6"})) {
        const Colour c = set_up_ply(1, each.fen);
        const std::string from = each.moves[0].substr(0, 2);
        ply[1].jm_D.p_ah[other(c)][2] = ply[1].jm_D.p_ah[other(c)][4] = 1;
        EXPECT_EQ(texts_of(stage_tried(1, from)), each.moves) << "the pawn on e6 is taken, c6 is empty";
        for (const int K : {5, 4, 3, 2}) {
            EXPECT_EQ(texts_of(stage_tried(K, from)), Texts{}) << K;
        }
    }
}

TEST_F(Stages, EnPassantToTheHigherFileComesFirst) {
    for (const Case& each : for_both_colours("k7/8/8/2pPp3/8/8/8/7K w - - 0 1", {"d5e6", "d5c6"})) {
        const Colour c = set_up_ply(1, each.fen);
        ply[1].jm_D.p_ah[other(c)][2] = ply[1].jm_D.p_ah[other(c)][4] = 1;
        EXPECT_EQ(texts_of(stage_tried(1, each.moves[0].substr(0, 2))), each.moves);
        ply[1].jm_D.p_ah = {};
        ply[1].jm_D.p_ah[c].fill(1);
        EXPECT_EQ(texts_of(stage_tried(1, each.moves[0].substr(0, 2))), Texts{}) << "without the flags";
    }
}

TEST_F(Stages, EnPassantIsTriedWithTheCapturesAndAgainWithTheQuietMoves) {
    for (const Case& each : for_both_colours("k7/8/8/3Pp3/8/8/8/7K w - e6 0 1", {"d5e6"})) {
        set_up_ply(1, each.fen);
        const Texts moves = texts_of(replies_tried(1));
        EXPECT_EQ(count_of(moves, each.moves[0]), 2);
        EXPECT_EQ(moves[0], each.moves[0]);
        EXPECT_EQ(moves[1], each.moves[0]);
    }
}

TEST_F(Stages, AStoredEnPassantIsLeftToTheQuietMoves) {
    for (const Case& each : for_both_colours("k7/8/8/3Pp3/8/8/8/7K w - e6 0 1", {"d5e6"})) {
        set_up_ply(1, each.fen);
        slots.aag_ddg[1] = move_from(each.moves[0]);
        const std::string from = each.moves[0].substr(0, 2);
        EXPECT_EQ(texts_of(stage_tried(test_form, from)), Texts{}) << "its square holds no victim";
        EXPECT_EQ(texts_of(stage_tried(1, from)), Texts{});
        EXPECT_EQ(count_of(texts_of(replies_tried(1)), each.moves[0]), 1);
    }
}

// --- Castling ---

TEST_F(Stages, CastlingClosesTheKingsCapturesOfPawns) {
    for (const Case& each : for_both_colours("6k1/8/8/8/8/8/3p4/R3K2R w KQ - 0 1", {"e1d2"})) {
        set_up_ply(1, each.fen);
        EXPECT_EQ(texts_of(stage_tried(1, each.moves[0].substr(0, 2))), each.moves) << "in check by the pawn";
    }
    for (const Case& each : for_both_colours("6k1/8/8/8/8/8/4p3/R3K2R w KQ - 0 1", {"e1e2"})) {
        set_up_ply(1, each.fen);
        EXPECT_EQ(texts_of(stage_tried(1, each.moves[0].substr(0, 2))), each.moves) << "d1 and f1 attacked";
    }
    for (const Case& each : for_both_colours("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        const std::string from = each.moves[0].substr(0, 2);
        EXPECT_EQ(stage_order(1, each.fen, from), each.moves);
        for (const int K : {5, 4, 3, 2}) {
            EXPECT_EQ(stage_order(K, each.fen, from), Texts{}) << K;
        }
    }
}

TEST_F(Stages, TheCastlingValueIsTenDuringTheRecursionAlone) {
    for (const Case& each : for_both_colours("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        for (const bool in_test_form : {false, true}) {
            for (const std::string& m : each.moves) {
                const Colour c = set_up_ply(1, each.fen);
                if (in_test_form) {
                    slots.aag_ddg[1] = move_from(m);
                }
                pass.roque = {77, 77};
                int seen = 0;
                const ChildrenOf children(1, [&](Move castling) {
                    seen += text_of(castling) == m ? 1 : 0;
                    EXPECT_EQ(pass.roque[c], 10);
                    EXPECT_EQ(pass.roque[other(c)], 77);
                    const int crossed = square((castling.to_file + king_file) / 2, castling.to_rank);
                    EXPECT_EQ(trial.tab2[castling.to()], code(c, rei)) << "the castled position";
                    EXPECT_EQ(trial.tab2[crossed], code(c, torre));
                });
                run_stage(in_test_form ? test_form : 1, m.substr(0, 2));
                EXPECT_EQ(seen, 1);
                EXPECT_EQ(pass.roque[c], 0);
            }
        }
    }
}

TEST_F(Stages, AStoredCastlingIsTriedByTheTestFormAndPassedByInItsStage) {
    for (const Case& each : for_both_colours("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        for (const std::size_t i : {0U, 1U}) {
            set_up_ply(1, each.fen);
            slots.aag_ddg[1] = move_from(each.moves[i]);
            const std::string from = each.moves[0].substr(0, 2);
            EXPECT_EQ(texts_of(stage_tried(test_form, from)), (Texts{each.moves[i]}));
            EXPECT_EQ(texts_of(stage_tried(1, from)), (Texts{each.moves[1 - i]}));
            const Texts moves = texts_of(replies_tried(1));
            EXPECT_EQ(moves[0], each.moves[i]);
            EXPECT_EQ(count_of(moves, each.moves[i]), 1);
        }
    }
}

TEST_F(Stages, TheKingsLastStageTellsWhetherItsSideIsInCheck) {
    for (const int K : {test_form, 1}) {
        for (const Case& each : for_both_colours("k7/8/8/8/8/8/8/4K3 w - - 0 1", {"e1"})) {
            set_up_ply(1, each.fen);
            stage_tried(K, each.moves[0]);
            EXPECT_EQ(ply[1].XEQUE_MATE, 0) << K;
        }
        for (const Case& each : for_both_colours("k3r3/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1"})) {
            set_up_ply(1, each.fen);
            slots.aag_ddg[1] = move_from(each.moves[0] == "e1" ? "e1g1" : "e8g8");
            EXPECT_EQ(texts_of(stage_tried(K, each.moves[0])), Texts{}) << "no castling out of check";
            EXPECT_EQ(ply[1].XEQUE_MATE, 1) << K;
        }
    }
    for (const int K : {5, 4, 3, 2}) {
        set_up_ply(1, "k7/8/8/8/8/8/8/4K3 w - - 0 1");
        stage_tried(K, "e1");
        EXPECT_EQ(ply[1].XEQUE_MATE, 1) << K;
    }
}

// The king passes through its last stage though it has nothing to take.
TEST_F(Stages, ASideWithoutAnyMoveReachesTheKingsLastStage) {
    for (const Case& each : for_both_colours("8/8/8/8/8/1q6/8/K1k5 w - - 0 1", {"a1"})) {
        set_up_ply(1, each.fen);
        EXPECT_EQ(replies_tried(1).size(), 0U);
        EXPECT_EQ(ply[1].XEQUE_MATE, 0);
        EXPECT_EQ(ply[1].X_D, 1);
    }
}

TEST_F(Stages, AStalemateByARootMoveHasTheDrawScore) {
    for (const Case& each : for_both_colours("k7/8/1K6/8/8/8/8/2Q5 w - - 0 1", {"c1c7"})) {
        place_fen(each.fen);
        search.deep = 3;
        search.emp = -7;
        EXPECT_EQ(search_node(1, move_from(each.moves[0])), -7.0F);
    }
}

// --- The slot ---

TEST_F(Stages, TheStoredCaptureComesFirstWhateverItsVictim) {
    for (const Case& each : for_both_colours("k7/8/2p1q3/1b3r2/3N4/1n6/8/7K w - - 0 1", {"d4c6"})) {
        set_up_ply(1, each.fen);
        slots.aag_ddg[1] = move_from(each.moves[0]);
        const Texts moves = texts_of(replies_tried(1));
        EXPECT_EQ(moves[0], each.moves[0]);
        EXPECT_EQ(count_of(moves, each.moves[0]), 1);
    }
}

TEST_F(Stages, TheTestFormTriesTheStoredCaptureOfEveryKindOfPieceAlone) {
    const char* fen = "k7/8/4K3/R2q4/2P5/4N3/6B1/3Q4 w - - 0 1";
    for (const Case& each : for_both_colours(fen, {"c4d5", "e3d5", "g2d5", "a5d5", "d1d5", "e6d5"})) {
        for (const std::string& m : each.moves) {
            set_up_ply(1, each.fen);
            slots.aag_ddg[1] = move_from(m);
            EXPECT_EQ(texts_of(stage_tried(test_form, m.substr(0, 2))), (Texts{m}));
            EXPECT_EQ(texts_of(stage_tried(5, m.substr(0, 2))), Texts{});
            for (const std::string& another : each.moves) {
                if (another != m) {
                    EXPECT_EQ(texts_of(stage_tried(test_form, another.substr(0, 2))), Texts{});
                }
            }
        }
    }
}

TEST_F(Stages, AStoredCaptureWhoseTargetHasChangedHandsIsNotTried) {
    for (const char* fen :
         {"k7/8/8/3P4/8/8/8/3R3K w - - 0 1", "k7/8/8/8/8/8/8/3R3K w - - 0 1", "8/8/8/3k4/8/8/8/3R3K w - - 0 1"}) {
        for (const Case& each : for_both_colours(fen, {"d1d5"})) {
            set_up_ply(1, each.fen);
            slots.aag_ddg[1] = move_from(each.moves[0]);
            EXPECT_EQ(texts_of(stage_tried(test_form, each.moves[0].substr(0, 2))), Texts{}) << fen;
        }
    }
}

TEST_F(Stages, AStoredCaptureOfAnotherKindOfPieceIsHarmless) {
    const char* fen = "k7/8/8/3q4/8/8/8/3B3K w - - 0 1";
    set_up_ply(1, fen);
    const Texts all = texts_of(replies_tried(1));
    for (const char* stored : {"d1d5", "a1a8", "a8a7", "h1d5"}) {
        set_up_ply(1, fen);
        slots.aag_ddg[1] = move_from(stored);
        EXPECT_EQ(texts_of(replies_tried(1)), all) << stored;
    }
}

// --- Refutation ---

TEST_F(Stages, ARootMoveRefutedInAStageRunsNoOther) {
    for (const Case& each :
         for_both_colours("k5q1/8/8/3p1n2/r3P3/8/8/R5RK w - - 0 1", {"g1g8", "a1a4", "e4f5", "e4d5"})) {
        for (const std::size_t refuting : {0U, 1U, 2U, 3U}) {
            set_up_ply(1, each.fen);
            bounds.alfa[0] = 6.0F;
            const ChildrenOf children(
                1, [&](Move m) { value_of_child(1) = text_of(m) == each.moves[refuting] ? 6.0F : 6.5F; });
            run_replies(1);
            EXPECT_EQ(texts_of(children.moves()),
                      Texts(each.moves.begin(), each.moves.begin() + static_cast<int>(refuting) + 1));
            EXPECT_EQ(bounds.corte_alfa[0], 1);
            EXPECT_EQ(text_of(slots.aag_ddg[1]), each.moves[refuting]) << "attacker first";
            EXPECT_EQ(bounds.beta[1], 6.0F);
            EXPECT_EQ(ply[1].X_D, 0);
        }
    }
}

TEST_F(Stages, TheLimitOfThePlyRefutesToo) {
    set_up_ply(1, "k7/8/8/3q4/8/1B6/8/3R3K w - - 0 1");
    bounds.MAXcut.fill(100000.0F);
    bounds.MAXcut[1] = 50.0F;
    const auto tried = [](float v) {
        bounds.beta[1] = start_of_beta;
        bounds.corte_alfa[0] = 0;
        slots.aag_ddg[1] = no_move;
        const ChildrenOf children(1, [v](Move) { value_of_child(1) = v; });
        run_stage(5, "d1");
        return bounds.corte_alfa[0];
    };
    EXPECT_EQ(tried(-49.0F), 0);
    EXPECT_EQ(tried(-50.0F), 1);
    EXPECT_EQ(tried(50.0F), 0);
}

TEST_F(Stages, ARefutedRootMoveHasNoMoreCaptures) {
    const char* fen = "k7/8/4K3/R2q4/2P5/4N3/6B1/3Q4 w - - 0 1";
    for (const char* from : {"c4", "e3", "g2", "a5", "d1", "e6"}) {
        set_up_ply(1, fen);
        bounds.alfa[0] = 5.0F;
        bounds.beta[1] = 5.0F;
        EXPECT_EQ(stage_tried(5, from).size(), 0U) << from;
        slots.aag_ddg[1] = move_from(std::string(from) + "d5");
        EXPECT_EQ(stage_tried(test_form, from).size(), 0U) << from;
        EXPECT_EQ(ply[1].XEQUE_MATE, 1);
        bounds.beta[1] = 5.5F;
        EXPECT_EQ(stage_tried(test_form, from).size(), 1U) << from;
    }
}

TEST_F(Stages, TheTestFormRefutesWithoutStoring) {
    set_up_ply(1, "k7/8/8/3q4/8/1B6/8/3R3K w - - 0 1");
    slots.aag_ddg[1] = move_from("d1d5");
    bounds.alfa[0] = 6.0F;
    const ChildrenOf children(1, [](Move) { value_of_child(1) = 6.0F; });
    run_replies(1);
    EXPECT_EQ(texts_of(children.moves()), (Texts{"d1d5"}));
    EXPECT_EQ(bounds.corte_alfa[0], 1);
}

// --- Promotions of the odd plies ---

constexpr std::array plies_of_promotions{7, 9, 11, 13, 15, 17, 19, 21, 23};

TEST_F(Promotions, CapturesTowardsTheHigherAndTheLowerFileAndThenThePush) {
    for (const Case& each : for_both_colours("2n1r2k/3P4/8/8/8/8/8/K7 w - - 0 1", {"d7e8", "d7c8", "d7d8"})) {
        for (const int n : plies_of_promotions) {
            set_up_ply(n, each.fen);
            EXPECT_EQ(texts_of(promotions_tried(n, each.moves[0].substr(0, 2))), each.moves) << n;
        }
    }
}

TEST_F(Promotions, AreToQueens) {
    for (const Case& each : for_both_colours("2n1r2k/3P4/8/8/8/8/8/K7 w - - 0 1", {"d7e8", "d7c8", "d7d8"})) {
        const std::string from = each.moves[0].substr(0, 2);
        for (int n = 7; n <= 21; n += 2) {  // the children of ply 23 are leaves
            const Colour c = set_up_ply(n, each.fen);
            EXPECT_EQ(tried_becoming_queens(n, c, [&] { run_promotions(n, from); }), each.moves) << n;
        }
    }
}

TEST_F(Promotions, OnlyFromTheSeventhRank) {
    for (const auto& [fen, from] :
         {std::pair{"7k/8/3P4/8/8/8/8/K7 w - - 0 1", "d6"}, {"7k/8/8/8/8/8/3P4/K7 w - - 0 1", "d2"}}) {
        for (const Case& each : for_both_colours(fen, {from})) {
            set_up_ply(7, each.fen);
            EXPECT_EQ(promotions_tried(7, each.moves[0]).size(), 0U) << each.fen;
        }
    }
}

TEST_F(Promotions, NoKingNoOwnManAndNothingBeyondTheEdgeIsTaken) {
    for (const auto& [fen, from, moves] : {std::tuple{"2N1k3/3P4/8/8/8/8/8/K7 w - - 0 1", "d7", Texts{"d7d8"}},
                                           {"2nnN2k/3P4/8/8/8/8/8/K7 w - - 0 1", "d7", Texts{"d7c8"}},
                                           {"3N3k/3P4/8/8/8/8/8/K7 w - - 0 1", "d7", Texts{}},
                                           {"nn5k/P7/8/8/8/8/8/K7 w - - 0 1", "a7", Texts{"a7b8"}},
                                           {"k5nn/7P/8/8/8/8/8/K7 w - - 0 1", "h7", Texts{"h7g8"}}}) {
        for (const Case& each : for_both_colours(fen, moves)) {
            const Colour c = set_up_ply(9, each.fen);
            EXPECT_EQ(texts_of(promotions_tried(9, seen_by(c, from))), each.moves) << each.fen;
        }
    }
}

TEST_F(Promotions, IllegalOnesAreDropped) {
    for (const Case& each : for_both_colours("4n3/K2P3r/8/8/8/8/8/7k w - - 0 1", {"d7"})) {
        set_up_ply(7, each.fen);
        EXPECT_EQ(promotions_tried(7, each.moves[0]).size(), 0U) << "pinned";
    }
}

TEST_F(Promotions, TheyComeBeforeAllCapturesAndBehindAStoredOne) {
    for (const Case& each : for_both_colours("7k/1P2P3/8/8/q7/8/8/R5K1 w - - 0 1", {"a1a4", "b7b8", "e7e8"})) {
        for (const int n : plies_of_promotions) {
            set_up_ply(n, each.fen);
            EXPECT_EQ(first_replies(n, 3), (Texts{each.moves[1], each.moves[2], each.moves[0]})) << n;
            set_up_ply(n, each.fen);
            const Move m = move_from(each.moves[0]);
            slots.aag_ddg[n] = {m.to_file, m.to_rank, m.from_file, m.from_rank};
            EXPECT_EQ(first_replies(n, 3), each.moves) << n;
        }
        for (const int n : {1, 2, 3, 5, 6, 8}) {
            set_up_ply(n, each.fen);
            EXPECT_EQ(texts_of(replies_tried(n))[0], each.moves[0]) << "no stage of their own at ply " << n;
        }
    }
}

TEST_F(Promotions, ACutEndsThemAndStoresNothing) {
    for (const int n : plies_of_promotions) {
        for (int k = n - 1; k >= 0; --k) {
            for (const std::size_t which : {0U, 1U, 2U}) {
                set_up_ply(n, "2n1r2k/3P4/8/8/8/8/8/K7 w - - 0 1");
                const Texts promotions{"d7e8", "d7c8", "d7d8"};
                bounds.alfa[k] = 6.0F;
                const ChildrenOf children(
                    n, [&](Move m) { value_of_child(n) = text_of(m) == promotions[which] ? 6.0F : 6.5F; });
                run_promotions(n, "d7");
                const bool cuts = k % 2 == 0;
                EXPECT_EQ(children.moves().size(), cuts ? which + 1 : 3U) << n << ' ' << k;
                EXPECT_EQ(cut_flag_of(n), cuts ? 1 : 0) << n << ' ' << k;
                EXPECT_EQ(bounds.beta[n], 6.0F);
                EXPECT_EQ(ply[n].X_D, 0);
                EXPECT_FALSE(is_move(slots.aa_dd[n]));
                EXPECT_FALSE(is_move(slots.aag_ddg[n]));
            }
        }
        set_up_ply(n, "2n1r2k/3P4/8/8/8/8/8/K7 w - - 0 1");
        bounds.MAXcut[n] = 50.0F;
        const ChildrenOf children(n, [n](Move) { value_of_child(n) = -50.0F; });
        run_promotions(n, "d7");
        EXPECT_EQ(children.moves().size(), 1U) << n << ": the limit of the ply";
    }
}

TEST_F(Promotions, AtItsLastPlyOneIsNotEnough) {
    for (const int n : plies_of_promotions) {
        set_up_ply(n, "2n1r2k/3P4/8/8/8/8/8/K7 w - - 0 1");
        search.deep = n;
        EXPECT_EQ(promotions_tried(n, "d7").size(), 3U) << n;
        EXPECT_EQ(cut_flag_of(n), 0) << n;
    }
}

TEST_F(Promotions, TheyAreTriedWhateverTheSlotsHold) {
    for (const int n : plies_of_promotions) {
        set_up_ply(n, "2n1r2k/3P4/8/8/8/8/8/K7 w - - 0 1");
        slots.aa_dd[n] = move_from("d7d8");
        slots.aag_ddg[n] = move_from("e8d7");
        const Texts moves = texts_of(replies_tried(n));
        for (const char* m : {"d7e8", "d7c8", "d7d8"}) {
            EXPECT_EQ(count_of(moves, m), 1) << n << m;
        }
    }
}

}  // namespace
