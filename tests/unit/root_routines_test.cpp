// The root routines: the moves of each class and piece, the gate of class and check, and what the best move leaves.
#include "search/root_routines.h"

#include "eval/root_trial.h"
#include "eval/strategy.h"
#include "search/observers.h"
#include "support/boards.h"
#include "support/moves.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

namespace {

using namespace tests;
using namespace ondrel;

class RootRoutines : public testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

constexpr bool ch = true;
constexpr bool sh = false;
constexpr std::array capture_stages{positive1, positive2, positive3, positive4, positive5};

void call_routine(Stage stage, bool with_check, int from) {
    const auto piece = static_cast<Piece>(value_of(tab[from]));
    side_to_search() == white ? analise100<white>(stage, with_check, piece, from)
                              : analise100<black>(stage, with_check, piece, from);
}

// A root search that has not begun, in a process that has made no trial: castling is classed by what the last has left.
void begin_root() {
    bounds = {};
    pass = {};
    search.E = no_score;
    search.EP = 0;
    search.nodes = 0;
    root_trial = {};
    visits = {};
}

// The moves that the routine searches over all classes, from the best class to the worst, on the root as it stands.
Texts sweep(Stage stage, bool with_check, std::string_view from, const ChildrenOf::OnEntry& on_entry = {}) {
    const ChildrenOf children(0, on_entry);
    for (pass.ataque = highest_class; pass.ataque >= lowest_class; --pass.ataque) {
        call_routine(stage, with_check, square_of(from));
    }
    return texts_of(children.moves());
}

// The same on a root search that begins with the position.
Texts moves_of_routine(std::string_view fen, Stage stage, bool with_check, std::string_view from,
                       const ChildrenOf::OnEntry& on_entry = {}) {
    place_fen(fen);
    begin_root();
    return sweep(stage, with_check, from, on_entry);
}

// The moves of one class, on the root as it stands.
Texts moves_of_class(int ataque, Stage stage, bool with_check, std::string_view from,
                     const ChildrenOf::OnEntry& on_entry = {}) {
    const ChildrenOf children(0, on_entry);
    pass.ataque = ataque;
    call_routine(stage, with_check, square_of(from));
    return texts_of(children.moves());
}

// The square that the moves of a case start from.
std::string start_of(const Case& side) { return side.moves[0].substr(0, 2); }

// --- Stages ---

TEST_F(RootRoutines, EachStageTakesItsVictimAlone) {
    const char* fen = "8/7k/2p1q3/1b3r2/3N4/1n6/8/7K w - - 0 1";
    for (const Case& side : for_both_colours(fen, {"d4c6", "d4b5", "d4b3", "d4f5", "d4e6"})) {
        const std::string from = start_of(side);
        for (const Stage stage : capture_stages) {
            Texts moves = moves_of_routine(side.fen, stage, sh, from);
            const Texts with_check = moves_of_routine(side.fen, stage, ch, from);
            moves.insert(moves.end(), with_check.begin(), with_check.end());
            EXPECT_EQ(moves, (Texts{side.moves[stage - 1]})) << stage;
        }
        Texts quiet = moves_of_routine(side.fen, livre, sh, from);
        EXPECT_EQ(quiet.size() + moves_of_routine(side.fen, livre, ch, from).size(), 3U) << "c2, e2, f3";
    }
}

TEST_F(RootRoutines, ACheckingMoveIsSearchedInTheRoutineOfChecksAlone) {
    for (const Case& side : for_both_colours("4k3/8/8/n7/8/8/8/R3K3 w - - 0 1", {"a1a5", "a1a3"})) {
        const std::string from = start_of(side);
        EXPECT_EQ(moves_of_routine(side.fen, positive3, sh, from), (Texts{side.moves[0]}));
        EXPECT_EQ(moves_of_routine(side.fen, positive3, ch, from), Texts{});
        EXPECT_EQ(count_of(moves_of_routine(side.fen, livre, ch, from), side.moves[1]), 0);
        EXPECT_EQ(count_of(moves_of_routine(side.fen, livre, sh, from), side.moves[1]), 1);
    }
    for (const Case& side : for_both_colours("n3k3/8/8/8/8/8/8/R3K3 w - - 0 1", {"a1a8"})) {
        const std::string from = start_of(side);
        EXPECT_EQ(moves_of_routine(side.fen, positive3, ch, from), side.moves);
        EXPECT_EQ(moves_of_routine(side.fen, positive3, sh, from), Texts{});
    }
    for (const Case& side : for_both_colours("6k1/8/8/8/8/8/8/R3K3 w - - 0 1", {"a1a8"})) {
        const std::string from = start_of(side);
        EXPECT_EQ(moves_of_routine(side.fen, livre, ch, from), side.moves);
        EXPECT_EQ(count_of(moves_of_routine(side.fen, livre, sh, from), side.moves[0]), 0);
    }
}

TEST_F(RootRoutines, TheCheckCountsThatTheMoveDiscovers) {
    for (const Case& side : for_both_colours("4k3/8/8/8/4N3/8/8/K3R3 w - - 0 1", {"e4"})) {
        EXPECT_EQ(moves_of_routine(side.fen, livre, ch, side.moves[0]).size(), 8U);
        EXPECT_EQ(moves_of_routine(side.fen, livre, sh, side.moves[0]).size(), 0U);
    }
}

TEST_F(RootRoutines, IllegalMovesAreDropped) {
    for (const Case& side : for_both_colours("4r1k1/8/8/8/8/8/4N3/4K3 w - - 0 1", {"e2"})) {
        EXPECT_EQ(moves_of_routine(side.fen, livre, sh, side.moves[0]), Texts{});
        EXPECT_EQ(search.nodes, 0U);
    }
}

// --- Walks: without the positional tables moves that threaten nothing share class 0 and come in the order of the walk

Texts quiet_moves_of_class_0(std::string_view fen, std::string_view from) {
    options.matrix = 0;
    place_fen(fen);
    begin_root();
    return moves_of_class(0, livre, sh, from);
}

TEST_F(RootRoutines, QuietMovesComeInTheOrderOfTheWalk) {
    struct Row {
        const char *fen, *from;
        Texts moves;
    };
    for (const Row& row : {
             Row{"7k/8/8/8/3N4/8/8/7K w - - 0 1",
                 "d4",
                 {"d4f5", "d4f3", "d4b3", "d4b5", "d4c6", "d4e6", "d4e2", "d4c2"}},
             Row{"7k/8/8/8/2B5/8/8/7K w - - 0 1",
                 "c4",
                 {"c4d5", "c4e6", "c4f7", "c4d3", "c4e2", "c4f1", "c4b3", "c4a2", "c4b5", "c4a6"}},
             Row{"7k/8/8/8/3R4/8/8/7K w - - 0 1",
                 "d4",
                 {"d4e4", "d4f4", "d4g4", "d4c4", "d4b4", "d4a4", "d4d5", "d4d6", "d4d7", "d4d3", "d4d2", "d4d1"}},
             Row{"7k/6pp/8/8/3Q4/8/8/K7 w - - 0 1",
                 "d4",
                 {"d4e4", "d4f4", "d4g4", "d4h4", "d4c4", "d4b4", "d4a4", "d4d5", "d4d6", "d4d7", "d4d3",
                  "d4d2", "d4d1", "d4e5", "d4e3", "d4f2", "d4g1", "d4c3", "d4b2", "d4c5", "d4b6", "d4a7"}},
             Row{"7k/8/8/8/3K4/8/8/8 w - - 0 1",
                 "d4",
                 {"d4e4", "d4c4", "d4d5", "d4d3", "d4c3", "d4e5", "d4c5", "d4e3"}},
         }) {
        // Checks are another routine's, and where the enemy attacks the class is lower.
        EXPECT_EQ(quiet_moves_of_class_0(row.fen, row.from), row.moves) << row.fen;
    }
}

TEST_F(RootRoutines, BlacksWalkIsTheSameOnTheBoard) {
    EXPECT_EQ(quiet_moves_of_class_0("7K/8/8/8/3n4/8/8/7k b - - 0 1", "d4"),
              (Texts{"d4f5", "d4f3", "d4b3", "d4b5", "d4c6", "d4e6", "d4e2", "d4c2"}));
    EXPECT_EQ(quiet_moves_of_class_0("7K/8/8/8/3r4/8/8/7k b - - 0 1", "d4"),
              (Texts{"d4e4", "d4f4", "d4g4", "d4c4", "d4b4", "d4a4", "d4d5", "d4d6", "d4d7", "d4d3", "d4d2", "d4d1"}));
}

TEST_F(RootRoutines, RaysEndAtTheFirstMan) {
    const char* fen = "7k/3p4/8/3N4/p2R1b1p/8/3r4/7K w - - 0 1";
    EXPECT_EQ(sorted(moves_of_routine(fen, livre, sh, "d4")), (Texts{"d4b4", "d4c4", "d4d3", "d4e4"}));
    EXPECT_EQ(moves_of_routine(fen, positive1, sh, "d4"), (Texts{"d4a4"}))
        << "h4 lies behind the bishop, d7 behind the knight";
    EXPECT_EQ(moves_of_routine(fen, positive2, sh, "d4"), (Texts{"d4f4"}));
    EXPECT_EQ(moves_of_routine(fen, positive4, sh, "d4"), (Texts{"d4d2"}));
}

TEST_F(RootRoutines, CapturesOfOneClassComeInTheOrderOfTheWalk) {
    // Wherever the rook takes, it attacks the pawn at the other end of the line: class 10 each.
    options.matrix = 0;
    place_fen("6k1/3p4/8/8/1p1R3p/8/3p4/5K2 w - - 0 1");
    begin_root();
    EXPECT_EQ(moves_of_class(10, positive1, sh, "d4"), (Texts{"d4h4", "d4b4", "d4d7", "d4d2"}));
    place_fen("6K1/3P4/8/8/1P1r3P/8/3P4/5k2 b - - 0 1");
    begin_root();
    EXPECT_EQ(moves_of_class(10, positive1, sh, "d4"), (Texts{"d4h4", "d4b4", "d4d7", "d4d2"}));
}

TEST_F(RootRoutines, PawnsStepTwiceBeforeOnce) {
    for (const Case& side : for_both_colours("7k/8/8/8/8/8/3P4/K7 w - - 0 1", {"d2d4", "d2d3"})) {
        EXPECT_EQ(quiet_moves_of_class_0(side.fen, start_of(side)), side.moves);
    }
    for (const Case& side : for_both_colours("7k/8/8/8/3n4/8/3P4/K7 w - - 0 1", {"d2d3"})) {
        EXPECT_EQ(moves_of_routine(side.fen, livre, sh, start_of(side)), side.moves);
    }
    for (const Case& side : for_both_colours("7k/8/8/8/8/3n4/3P4/K7 w - - 0 1", {"d2d3"})) {
        EXPECT_EQ(moves_of_routine(side.fen, livre, sh, start_of(side)), Texts{});
    }
    for (const Case& side : for_both_colours("7k/8/8/8/8/3P4/8/K7 w - - 0 1", {"d3d4"})) {
        EXPECT_EQ(moves_of_routine(side.fen, livre, sh, start_of(side)), side.moves);
    }
    for (const Case& side : for_both_colours("7k/3P4/8/8/8/8/8/K7 w - - 0 1", {"d7d8"})) {
        EXPECT_EQ(moves_of_routine(side.fen, livre, ch, start_of(side)), side.moves) << "a queen with check";
    }
}

TEST_F(RootRoutines, PawnsTakeTowardsTheHigherFileFirst) {
    for (const Case& side : for_both_colours("7k/8/8/2r1r3/3P4/8/8/K7 w - - 0 1", {"d4e5", "d4c5"})) {
        // Both captures leave as much: one class.
        options.matrix = 0;
        const Texts moves = moves_of_routine(side.fen, positive4, sh, start_of(side));
        EXPECT_EQ(moves, side.moves);
    }
}

TEST_F(RootRoutines, EnPassantClosesThePawnsCapturesOfPawns) {
    for (const Case& side : for_both_colours("7k/8/8/2pPp3/8/8/8/K7 w - e6 0 1", {"d5e6", "d5c6"})) {
        options.matrix = 0;
        const std::string from = start_of(side);
        EXPECT_EQ(moves_of_routine(side.fen, positive1, sh, from), (Texts{side.moves[0]}));
        for (const Stage stage : {livre, positive2, positive3, positive4, positive5}) {
            EXPECT_EQ(count_of(moves_of_routine(side.fen, stage, sh, from), side.moves[0]), 0) << stage;
        }
        const Colour c = place_fen(side.fen);
        begin_root();
        jm.p_ah[other(c)][2] = 1;
        EXPECT_EQ(sweep(positive1, sh, from), side.moves) << "the higher file first";
        jm.p_ah = {};
        jm.p_ah[c].fill(1);
        EXPECT_EQ(sweep(positive1, sh, from), Texts{});
    }
}

TEST_F(RootRoutines, ACapturingPawnPromotesInTheStageOfItsVictim) {
    for (const Case& side : for_both_colours("2r5/3P3k/8/8/8/8/8/K7 w - - 0 1", {"d7c8"})) {
        EXPECT_EQ(moves_of_routine(side.fen, positive4, sh, start_of(side)), side.moves);
    }
}

// --- The class ---

int class_of(Move m) {
    if (side_to_search() == white) {
        init_tabuleiro2<white>(m);
        classify<white>();
    } else {
        init_tabuleiro2<black>(m);
        classify<black>();
    }
    return move_class.ESTRATEGIA;
}

TEST_F(RootRoutines, AMoveIsSearchedAtItsOwnClassAlone) {
    for (const Case& side : for_both_colours("r3k2r/pp1n1ppp/2p1bn2/3pP3/3P4/2N1BN2/PPP2PPP/R3K2R w KQkq - 0 1",
                                             {"f3d2", "f3g1", "f3g5", "f3h4"})) {
        place_fen(side.fen);
        begin_root();
        Texts all;
        for (int ataque = highest_class; ataque >= lowest_class; --ataque) {
            for (const std::string& m : moves_of_class(ataque, livre, sh, start_of(side))) {
                all.push_back(m);
                EXPECT_EQ(class_of(move_from(m)), ataque) << m;
            }
        }
        EXPECT_EQ(sorted(all), sorted(side.moves));
    }
}

// --- The best move ---

const char* const knight_on_a1 = "7k/8/8/8/8/8/8/N6K w - - 0 1";  // the knight goes to c2 and b3

TEST_F(RootRoutines, AStrictlyBetterScoreTakesOver) {
    options.matrix = 0;
    place_fen(knight_on_a1);
    begin_root();
    float best_score = 0;
    const auto best_of = [&](float first, float second) {
        begin_root();
        game.abcd = slots.aab_ddb = move_from("h8h8");
        const Texts moves =
            moves_of_class(0, livre, sh, "a1", [&](Move m) { bounds.beta[1] = text_of(m) == "a1c2" ? first : second; });
        EXPECT_EQ(moves, (Texts{"a1c2", "a1b3"}));
        EXPECT_EQ(slots.aab_ddb, game.abcd);
        EXPECT_EQ(search.nodes, 2U);
        best_score = search.E;
        return text_of(game.abcd);
    };
    EXPECT_EQ(best_of(5.0F, 6.0F), "a1b3");
    EXPECT_EQ(best_score, 6.0F);
    EXPECT_EQ(bounds.alfa[0], 6.0F);
    EXPECT_EQ(best_of(5.0F, 5.0F), "a1c2") << "the first to reach the best score keeps it";
    EXPECT_EQ(best_of(5.0F, 4.0F), "a1c2");
    EXPECT_EQ(best_score, 5.0F);
    EXPECT_EQ(bounds.alfa[0], 5.0F);
}

// The bound and the best score are two things: either may be the higher one.
TEST_F(RootRoutines, BoundAndBestScoreRiseEachOnItsOwn) {
    options.matrix = 0;
    place_fen(knight_on_a1);
    const auto run = [](float alfa0, float best) {
        begin_root();
        game.abcd = move_from("h8h8");
        bounds.alfa[0] = alfa0;
        search.E = best;
        moves_of_class(0, livre, sh, "a1", [](Move) { bounds.beta[1] = 5.0F; });
    };
    run(7.0F, 3.0F);
    EXPECT_EQ(bounds.alfa[0], 7.0F);
    EXPECT_EQ(search.E, 5.0F);
    EXPECT_EQ(text_of(game.abcd), "a1c2");
    run(3.0F, 7.0F);
    EXPECT_EQ(bounds.alfa[0], 5.0F);
    EXPECT_EQ(search.E, 7.0F);
    EXPECT_EQ(text_of(game.abcd), "h8h8");
}

TEST_F(RootRoutines, WithoutALegalMoveTheBestMoveStays) {
    place_fen("k7/2Q5/1K6/8/8/8/8/8 b - - 0 1");
    begin_root();
    game.abcd = move_from("c1c7");
    for (const Stage stage : {livre, positive1, positive2, positive3, positive4, positive5}) {
        for (const bool with_check : {ch, sh}) {
            EXPECT_EQ(sweep(stage, with_check, "a8"), Texts{});
        }
    }
    EXPECT_EQ(text_of(game.abcd), "c1c7");
    EXPECT_EQ(search.E, -10000000.0F);
}

TEST_F(RootRoutines, AtItsLimitTheRootStops) {
    options.matrix = 0;
    place_fen(knight_on_a1);
    for (const auto& [v, stops] : {std::pair{49.0F, false}, {50.0F, true}, {51.0F, true}}) {
        begin_root();
        bounds.MAXcut[0] = 50.0F;
        const Texts moves = moves_of_class(0, livre, sh, "a1", [v = v](Move) { bounds.beta[1] = v; });
        EXPECT_EQ(moves.size(), stops ? 1U : 2U) << v;
        EXPECT_EQ(pass.corte_MAXcut, stops ? 1 : 0) << v;
        EXPECT_EQ(text_of(game.abcd), "a1c2");
    }
}

TEST_F(RootRoutines, ABoundAlreadyAtTheLimitStopsBehindTheFirstMove) {
    options.matrix = 0;
    place_fen(knight_on_a1);
    begin_root();
    bounds.MAXcut[0] = 50.0F;
    bounds.alfa[0] = 50.0F;
    EXPECT_EQ(moves_of_class(0, livre, sh, "a1", [](Move) { bounds.beta[1] = 0.0F; }).size(), 1U);
    EXPECT_EQ(pass.corte_MAXcut, 1);
}

TEST_F(RootRoutines, AFlagSetByTheSearchBelowStopsToo) {
    options.matrix = 0;
    place_fen(knight_on_a1);
    begin_root();
    EXPECT_EQ(moves_of_class(0, livre, sh, "a1", [](Move) { pass.corte_MAXcut = 1; }).size(), 1U);
}

TEST_F(RootRoutines, EveryKindOfPieceStopsAtTheLimit) {
    options.matrix = 0;
    for (const char* fen :
         {"7k/8/8/8/3P4/8/3P4/K7 w - - 0 1", "7k/8/8/8/3B4/8/8/7K w - - 0 1", "7k/8/8/8/3R4/8/8/7K w - - 0 1",
          "6k1/8/8/8/3Q4/8/8/7K w - - 0 1", "7k/8/8/8/3K4/8/8/8 w - - 0 1"}) {
        place_fen(fen);
        begin_root();
        bounds.MAXcut[0] = -16000.0F;
        EXPECT_EQ(moves_of_class(0, livre, sh, "d4", [](Move) { bounds.beta[1] = 0.0F; }).size(), 1U) << fen;
        EXPECT_EQ(pass.corte_MAXcut, 1) << fen;
    }
}

TEST_F(RootRoutines, TheSearchCountsOneNodeForEachMove) {
    place_fen("7k/8/8/8/3R4/8/8/7K w - - 0 1");
    EXPECT_EQ(moves_of_routine("7k/8/8/8/3R4/8/8/7K w - - 0 1", livre, sh, "d4").size(), 12U);
    EXPECT_EQ(search.nodes, 12U);
}

// --- Promotion ---

TEST_F(RootRoutines, ABestMoveFromTheSeventhRankIsAPromotion) {
    for (const auto& [fen, stage, with_check, m] : {std::tuple{"8/P6k/8/8/8/8/8/7K w - - 0 1", livre, sh, "a7a8"},
                                                    {"8/P7/8/7k/8/8/8/7K w - - 0 1", livre, sh, "a7a8"},
                                                    {"1r6/P6k/8/8/8/8/8/7K w - - 0 1", positive4, sh, "a7b8"},
                                                    {"1r4k1/P7/8/8/8/8/8/7K w - - 0 1", positive4, ch, "a7b8"}}) {
        for (const Case& side : for_both_colours(fen, {m})) {
            int queens = 0;
            const Texts moves = moves_of_routine(side.fen, stage, with_check, start_of(side), [&](Move x) {
                queens += value_of(trial.tab2[x.to()]) == dama ? 1 : 0;
            });
            EXPECT_EQ(moves, side.moves) << side.fen;
            EXPECT_EQ(queens, 1);
            EXPECT_EQ(game_line.PRs, 'q') << side.fen;
        }
    }
}

TEST_F(RootRoutines, OtherBestMovesAreNone) {
    for (const auto& [fen, from] : {std::pair{"8/R6k/8/8/8/8/8/7K w - - 0 1", "a7"},
                                    {"8/7k/P7/8/8/8/8/7K w - - 0 1", "a6"},
                                    {"8/7k/8/8/8/8/P7/7K w - - 0 1", "a2"}}) {
        for (const Case& side : for_both_colours(fen, {from})) {
            EXPECT_FALSE(moves_of_routine(side.fen, livre, sh, side.moves[0]).empty());
            EXPECT_EQ(game_line.PRs, '0') << side.fen;
        }
    }
}

TEST_F(RootRoutines, APromotionThatIsNotTheBestLeavesNoLetter) {
    place_fen("8/P6k/8/8/8/8/8/7K w - - 0 1");
    begin_root();
    search.E = 10.0F;
    EXPECT_EQ(sweep(livre, sh, "a7", [](Move) { bounds.beta[1] = 10.0F; }).size(), 1U);
    EXPECT_EQ(game_line.PRs, '0');
}

TEST_F(RootRoutines, AnotherBestMoveDoesNotClearTheLetter) {
    options.matrix = 0;
    place_fen(knight_on_a1);
    begin_root();
    game_line.PRs = 'q';
    moves_of_class(0, livre, sh, "a1", [](Move) { bounds.beta[1] = 5.0F; });
    EXPECT_EQ(text_of(game.abcd), "a1c2");
    EXPECT_EQ(game_line.PRs, 'q');
}

// --- The gate of the pass ---

TEST_F(RootRoutines, ThePassOfTheBestMoveSearchesItAlone) {
    options.matrix = 0;
    place_fen(knight_on_a1);
    begin_root();
    slots.aab_ddb = move_from("a1b3");
    pass.SCAN1 = 1;
    EXPECT_EQ(moves_of_class(0, livre, sh, "a1", [](Move) { bounds.beta[1] = start_of_alfa; }), (Texts{"a1b3"}));
}

TEST_F(RootRoutines, ThePassOfAllOthersLeavesItOut) {
    options.matrix = 0;
    place_fen(knight_on_a1);
    begin_root();
    search.E = 100.0F;
    slots.aab_ddb = move_from("a1b3");
    pass.SCANT = 1;
    EXPECT_EQ(moves_of_class(0, livre, sh, "a1"), (Texts{"a1c2"}));
}

// --- Repetition ---

// The root before a move that repeats a position of the game: a1c2.
void begin_before_repetition() {
    options.matrix = 0;
    const Board after = board_from("7k/8/8/8/8/8/2N5/7K");
    place_fen(knight_on_a1);
    begin_root();
    game_line.tabr1[0] = after;
    search.emp = -7;
}

TEST_F(RootRoutines, ARepetitionHasTheDrawScoreAndNoSearch) {
    begin_before_repetition();
    EXPECT_EQ(moves_of_class(0, livre, sh, "a1", [](Move) { bounds.beta[1] = -50.0F; }), (Texts{"a1b3"}));
    EXPECT_EQ(search.E, -7.0F);
    EXPECT_EQ(search.EP, -7.0F);
    EXPECT_EQ(bounds.alfa[0], -7.0F);
    EXPECT_EQ(text_of(game.abcd), "a1c2");
    EXPECT_EQ(text_of(slots.aab_ddb), "a1c2");
    EXPECT_EQ(search.nodes, 1U);
}

TEST_F(RootRoutines, ARepetitionIsBestOnlyIfItBeatsTheBestScore) {
    for (const float best : {-7.0F, 0.0F}) {
        begin_before_repetition();
        search.E = best;
        bounds.alfa[0] = best;
        game.abcd = move_from("h8h8");
        moves_of_class(0, livre, sh, "a1", [](Move) { bounds.beta[1] = -50.0F; });
        EXPECT_EQ(search.E, best);
        EXPECT_EQ(bounds.alfa[0], best);
        EXPECT_EQ(text_of(game.abcd), "h8h8");
        EXPECT_EQ(search.EP, -7.0F) << "the score last given to a drawn move";
    }
}

TEST_F(RootRoutines, ADrawLowersAHigherBoundToItsScore) {
    begin_before_repetition();
    bounds.alfa[0] = 3.0F;
    search.E = -20.0F;
    moves_of_class(0, livre, sh, "a1", [](Move) { bounds.beta[1] = -50.0F; });
    EXPECT_EQ(bounds.alfa[0], -7.0F);
}

TEST_F(RootRoutines, ARepetitionObeysTheGate) {
    begin_before_repetition();
    pass.SCAN1 = 1;
    slots.aab_ddb = move_from("a1b3");
    moves_of_class(0, livre, sh, "a1", [](Move) { bounds.beta[1] = -50.0F; });
    EXPECT_EQ(search.E, -50.0F);
    EXPECT_EQ(search.EP, 0.0F);
}

TEST_F(RootRoutines, ARepetitionByACheckBelongsToTheRoutineOfChecks) {
    const Board after = board_from("R5k1/8/8/8/8/8/8/7K");
    for (const bool with_check : {ch, sh}) {
        place_fen("6k1/8/8/8/8/8/8/R6K w - - 0 1");
        begin_root();
        game_line.tabr1[0] = after;
        search.emp = -7;
        EXPECT_EQ(count_of(sweep(livre, with_check, "a1"), "a1a8"), 0);
        EXPECT_EQ(search.EP == -7.0F, with_check);
    }
}

TEST_F(RootRoutines, PawnMovesAreNotAskedForRepetition) {
    options.matrix = 0;
    for (const auto& [fen, m, after, stage] :
         {std::tuple{"7k/8/8/8/8/8/P7/7K w - - 0 1", "a2a3", "7k/8/8/8/8/P7/8/7K", livre},
          {"7k/8/8/8/8/1p6/P7/7K w - - 0 1", "a2b3", "7k/8/8/8/8/1P6/8/7K", positive1}}) {
        const Board repeated = board_from(after);
        place_fen(fen);
        begin_root();
        game_line.tabr1[0] = repeated;
        trial.pempate = 1;  // whatever is left of another move's test
        EXPECT_EQ(count_of(sweep(stage, sh, "a2"), m), 1) << m;
        EXPECT_EQ(search.EP, 0.0F);
    }
}

TEST_F(RootRoutines, EveryOtherPieceIsAskedForRepetition) {
    for (const auto& [fen, m, after] : {std::tuple{"7k/8/8/8/3B4/8/8/7K w - - 0 1", "d4a1", "7k/8/8/8/8/8/8/B6K"},
                                        {"7k/8/8/8/3R4/8/8/7K w - - 0 1", "d4a4", "7k/8/8/8/R7/8/8/7K"},
                                        {"7k/8/8/8/3Q4/8/8/7K w - - 0 1", "d4a1", "7k/8/8/8/8/8/8/Q6K"},
                                        {"7k/8/8/8/3K4/8/8/8 w - - 0 1", "d4d3", "7k/8/8/8/8/3K4/8/8"}}) {
        const Board repeated = board_from(after);
        place_fen(fen);
        begin_root();
        game_line.tabr1[0] = repeated;
        search.emp = -7;
        for (const bool with_check : {ch, sh}) {
            EXPECT_EQ(count_of(sweep(livre, with_check, "d4"), m), 0) << fen;
        }
        EXPECT_EQ(search.EP, -7.0F) << fen;
    }
}

// The flag is read again behind the search, which may have met a repetition at ply 2.
TEST_F(RootRoutines, ARepetitionFoundBelowGivesTheDrawScoreToTheMoveItself) {
    options.matrix = 0;
    for (const bool king_attacked : {false, true}) {
        place_fen(knight_on_a1);
        begin_root();
        search.emp = -7;
        const Texts moves = moves_of_class(0, livre, sh, "a1", [&](Move m) {
            bounds.beta[1] = -50.0F;
            trial.pempate = text_of(m) == "a1c2" ? 1 : 0;
            trial.Y = king_attacked ? 1 : 0;
        });
        EXPECT_EQ(moves, (Texts{"a1c2", "a1b3"}));
        // Y too is as the search has left it: attacked, and the move is done with.
        EXPECT_EQ(search.E, king_attacked ? -50.0F : -7.0F);
        EXPECT_EQ(search.EP, king_attacked ? 0.0F : -7.0F);
        EXPECT_EQ(text_of(game.abcd), "a1c2");
    }
}

TEST_F(RootRoutines, APawnsMoveHasNoDrawBehindItsSearch) {
    options.matrix = 0;
    place_fen("7k/8/8/8/8/8/P7/7K w - - 0 1");
    begin_root();
    search.emp = -7;
    moves_of_class(0, livre, sh, "a2", [](Move) {
        bounds.beta[1] = -50.0F;
        trial.pempate = 1;
        trial.Y = 0;
    });
    EXPECT_EQ(search.E, -50.0F);
    EXPECT_EQ(search.EP, 0.0F);
}

// --- The filter of a front end ---

TEST_F(RootRoutines, ARootFilterKeepsTheSearchToTheMovesThatItPasses) {
    options.matrix = 0;
    place_fen(knight_on_a1);
    begin_root();
    observers.root_filter.on = true;
    EXPECT_EQ(moves_of_class(0, livre, sh, "a1"), Texts{});
    observers.root_filter.allowed[square_of("a1")][square_of("b3")] = true;
    EXPECT_EQ(moves_of_class(0, livre, sh, "a1"), (Texts{"a1b3"}));
    pass.SCANT = 1;
    slots.aab_ddb = move_from("a1b3");
    EXPECT_EQ(moves_of_class(0, livre, sh, "a1"), Texts{}) << "the gate of the pass stands beside it";
}

TEST_F(RootRoutines, ARootFilterHoldsForRepetitionsAndCastling) {
    begin_before_repetition();
    observers.root_filter.on = true;
    observers.root_filter.allowed[square_of("a1")][square_of("b3")] = true;
    moves_of_class(0, livre, sh, "a1", [](Move) { bounds.beta[1] = -50.0F; });
    EXPECT_EQ(search.E, -50.0F);
    place_fen("1k6/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    begin_root();
    observers.root_filter.allowed[square_of("e1")][square_of("c1")] = true;
    EXPECT_EQ(sweep(positive1, sh, "e1"), (Texts{"e1c1"}));
}

// --- Castling ---

Texts castlings(std::string_view fen, bool with_check, const ChildrenOf::OnEntry& on_entry = {}) {
    const bool white_moves = position_of(fen).white_to_move;
    Texts moves = moves_of_routine(fen, positive1, with_check, white_moves ? "e1" : "e8", on_entry);
    std::erase_if(moves, [](const std::string& m) { return std::abs(m[0] - m[2]) != 2; });
    return moves;
}

TEST_F(RootRoutines, CastlingStandsAtTheEndOfTheKingsCapturesOfPawns) {
    for (const Case& side : for_both_colours("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        EXPECT_EQ(sorted(castlings(side.fen, sh)), sorted(side.moves));
        EXPECT_EQ(castlings(side.fen, ch), Texts{});
        for (const Stage stage : {livre, positive2, positive3, positive4, positive5}) {
            const Texts moves = moves_of_routine(side.fen, stage, sh, start_of(side));
            EXPECT_EQ(count_of(moves, side.moves[0]) + count_of(moves, side.moves[1]), 0) << stage;
        }
    }
}

TEST_F(RootRoutines, OfBothSidesInOneClassTheShortOneComesFirst) {
    options.matrix = 0;
    place_fen("1k6/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    begin_root();
    EXPECT_EQ(sweep(positive1, sh, "e1"), (Texts{"e1g1", "e1c1"}));
}

TEST_F(RootRoutines, TheCastlingValueIsTenDuringTheSearch) {
    for (const Case& side : for_both_colours("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        const Colour c = position_of(side.fen).white_to_move ? white : black;
        const Texts moves = castlings(side.fen, sh, [&](Move m) {
            EXPECT_EQ(pass.roque[c], 10);
            EXPECT_EQ(pass.roque[other(c)], 0);
            EXPECT_EQ(trial.tab2[m.to()], code(c, rei)) << "the castled position";
        });
        EXPECT_EQ(moves.size(), 2U);
    }
}

TEST_F(RootRoutines, TheCastlingValueIsGoneWhenTheSearchHasComeBack) {
    for (const Case& side : for_both_colours("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1"})) {
        place_fen(side.fen);
        begin_root();
        search.deep = 0;
        for (pass.ataque = highest_class; pass.ataque >= lowest_class; --pass.ataque) {
            call_routine(positive1, sh, square_of(side.moves[0]));
        }
        EXPECT_EQ(search.nodes, 2U);
        EXPECT_EQ(pass.roque, (std::array{0, 0}));
    }
}

TEST_F(RootRoutines, CastlingIsNotAskedForRepetition) {
    const Board after = board_from("6k1/8/8/8/8/8/8/R4RK1");
    place_fen("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    begin_root();
    game_line.tabr1[0] = after;
    const Texts moves = sweep(positive1, sh, "e1");
    EXPECT_EQ(count_of(moves, "e1g1"), 1);
    EXPECT_EQ(search.EP, 0.0F);
}

// It has no trial of its own: the attack maps are those of the move visited last, searched or not.
TEST_F(RootRoutines, CastlingIsClassedByWhatTheLastTrialLeft) {
    options.matrix = 0;
    struct Row {
        const char* fen;
        int searched_class;  // the class of a move before the last one of the knight's walk
        Texts moves;
        int castling_class;  // the class that castling has behind it
    };
    for (const Row& row : {
             // The walk ends at c3: the rook attacks the loose knight on a4, which is worth 17. The move to a3, which
             // hides the knight from the rook, is searched in between.
             Row{"6k1/8/8/8/n7/8/8/RN2K2R w K - 0 1", 0, {"b1a3"}, 17},
             // With c3 occupied it ends at a3, and the pawn on c3 is attacked and not defended: 10 less.
             Row{"6k1/8/8/8/n7/2P5/8/RN2K2R w K - 0 1", 7, {"b1d2"}, -10},
         }) {
        place_fen(row.fen);
        begin_root();
        sweep(livre, sh, "b1");
        EXPECT_EQ(moves_of_class(row.searched_class, livre, sh, "b1"), row.moves);
        for (int ataque = highest_class; ataque >= lowest_class; --ataque) {
            EXPECT_EQ(moves_of_class(ataque, positive1, sh, "e1"),
                      ataque == row.castling_class ? (Texts{"e1g1"}) : Texts{})
                << row.fen << ataque;
        }
    }
}

TEST_F(RootRoutines, CastlingObeysTheGate) {
    for (const auto& [scan1, scant, expected] :
         {std::tuple{1, 0, Texts{"e1c1"}}, {0, 1, Texts{"e1g1"}}, {0, 0, Texts{"e1g1", "e1c1"}}}) {
        place_fen("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1");
        begin_root();
        search.E = 100.0F;  // the best move stays
        slots.aab_ddb = move_from("e1c1");
        pass.SCAN1 = static_cast<std::uint8_t>(scan1);
        pass.SCANT = static_cast<std::uint8_t>(scant);
        EXPECT_EQ(sweep(positive1, sh, "e1"), expected);
    }
}

TEST_F(RootRoutines, ARootAtItsLimitDoesNotGoOnToTheLongSide) {
    place_fen("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    begin_root();
    bounds.MAXcut[0] = 50.0F;
    const ChildrenOf children(0, [](Move) { bounds.beta[1] = 50.0F; });
    for (pass.ataque = highest_class; pass.ataque >= lowest_class && !pass.corte_MAXcut; --pass.ataque) {
        call_routine(positive1, sh, square_of("e1"));
    }
    EXPECT_EQ(children.moves().size(), 1U);
    EXPECT_EQ(text_of(game.abcd), "e1g1");
}

TEST_F(RootRoutines, ACastlingWithCheckBelongsToTheRoutineOfChecks) {
    for (const Case& side : for_both_colours("5k2/8/8/8/8/8/8/4K2R w K - 0 1", {"e1g1"})) {
        EXPECT_EQ(castlings(side.fen, ch), side.moves);
        EXPECT_EQ(castlings(side.fen, sh), Texts{});
    }
}

// White's long castling with check is judged by the short side: its squares and its check. So it stands.
TEST_F(RootRoutines, WhitesLongCastlingWithCheckIsJudgedByTheShortSide) {
    // The rook on d8 attacks d1; nothing attacks f1, from where a rook would check on f8.
    const char* fen = "3r1k2/8/8/8/8/8/8/R3K3 w Q - 0 1";
    EXPECT_EQ(castlings(fen, ch), (Texts{"e1c1"})) << "the wrong side does not refuse it";
    EXPECT_EQ(castlings(fen, sh), Texts{});
    EXPECT_EQ(castlings(mirrored_fen(fen), ch), Texts{});
    EXPECT_EQ(castlings(mirrored_fen(fen), sh), Texts{});
}

TEST_F(RootRoutines, WhitesLongCastlingMissesTheChecksOfItsOwnRook) {
    const char* fen = "3k4/8/8/8/8/8/8/R3K3 w Q - 0 1";
    EXPECT_EQ(castlings(fen, ch), Texts{}) << "from f1 there is no check";
    EXPECT_EQ(castlings(fen, sh), Texts{}) << "and here it is seen";
    EXPECT_EQ(castlings(mirrored_fen(fen), ch), (Texts{"e8c8"}));
    EXPECT_EQ(castlings(mirrored_fen(fen), sh), Texts{});
}

TEST_F(RootRoutines, WhitesLongCastlingWithCheckGoesByTheGateOfTheShortOne) {
    for (const auto& [stored, scan1, scant, times_searched] :
         {std::tuple{"e1g1", 1, 0, 1}, {"e1c1", 1, 0, 0}, {"e1g1", 0, 1, 0}, {"e1c1", 0, 1, 1}}) {
        place_fen("5k2/8/8/8/8/8/8/R3K3 w Q - 0 1");
        begin_root();
        search.E = 100.0F;
        slots.aab_ddb = move_from(stored);
        pass.SCAN1 = static_cast<std::uint8_t>(scan1);
        pass.SCANT = static_cast<std::uint8_t>(scant);
        const Texts moves = sweep(positive1, ch, "e1");
        EXPECT_EQ(moves.size(), static_cast<std::size_t>(times_searched)) << stored << scan1;
    }
}

}  // namespace
