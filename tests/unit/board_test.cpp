// The board and the stack of plies: what a move leaves on them, and what it must leave alone.
#include "board/apply.h"
#include "board/attacks.h"
#include "search/schedule.h"
#include "support/boards.h"
#include "support/engine.h"
#include "support/moves.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace tests;
using namespace ondrel;

const std::string start_fen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

class BoardModel : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

int at(const Board& t, std::string_view name) { return t[square_of(name)]; }

std::string first_field(const std::string& fen) { return fen.substr(0, fen.find(' ')); }

std::string field_after(std::string_view fen, std::string_view move) {
    return first_field(rules::to_fen(rules::play(position_of(fen), *rules::from_uci(move))));
}

// Searches the move as the child of ply n-1, entering none of its own children.
void enter(int n, std::string_view fen, std::string_view move) {
    set_up_ply(n - 1, fen);
    const ChildrenOf none(n);
    search_node(n, move_from(move));
}

// --- Squares and codes ---

TEST_F(BoardModel, SquaresRunByFileAndThenByRank) {
    EXPECT_EQ(square(0, 0), 0);
    EXPECT_EQ(square(0, 1), 1);
    EXPECT_EQ(square(1, 0), 8);
    EXPECT_EQ(square(4, 0), 32);
    EXPECT_EQ(square(4, 7), 39);
    EXPECT_EQ(square(7, 7), 63);
}

TEST_F(BoardModel, CodesAreTheValuesOfTheMenAndBlackHasTheNegatives) {
    place_fen(start_fen);
    const std::array<int, 8> first_rank{50, 32, 33, 90, 110, 33, 32, 50};
    for (int f = 0; f < 8; ++f) {
        EXPECT_EQ(tab[f * 8], first_rank[f]);
        EXPECT_EQ(tab[f * 8 + 1], 10);
        for (int r = 2; r < 6; ++r) {
            EXPECT_EQ(tab[f * 8 + r], 0);
        }
        EXPECT_EQ(tab[f * 8 + 6], -10);
        EXPECT_EQ(tab[f * 8 + 7], -first_rank[f]);
    }
}

TEST_F(BoardModel, RootSumsOfTheStartPosition) {
    place_fen(start_fen);
    for (const Colour c : {white, black}) {
        EXPECT_EQ(root.material_a[c], 510.0F);
        EXPECT_EQ(root.materialmaior[c], 320.0F);
        EXPECT_EQ(root.npecas[c], 15);
    }
    EXPECT_EQ(root.materialflot0, 0.0F);
}

TEST_F(BoardModel, RootSumsCountWhatIsLeft) {
    // White: king, queen, two pawns. Black: king, rook, bishop, knight, one pawn.
    place_fen("4k3/r4bn1/8/3p4/8/8/PP6/3QK3 b - - 0 1");
    EXPECT_EQ(root.material_a[white], 220.0F);
    EXPECT_EQ(root.material_a[black], 235.0F);
    EXPECT_EQ(root.materialmaior[white], 90.0F);
    EXPECT_EQ(root.materialmaior[black], 115.0F);
    EXPECT_EQ(root.npecas[white], 3);
    EXPECT_EQ(root.npecas[black], 4);
    EXPECT_EQ(root.materialflot0, 15.0F);  // of the side to move
}

// --- The game ---

TEST_F(BoardModel, ANewGameLeavesNoStaleDoubleStepFlag) {
    place("position startpos moves e2e4 e7e5 d2d4");
    ASSERT_EQ(jm.p_ah[white][3], 1);
    converse({"position startpos"});
    EXPECT_EQ(jm.p_ah, MovedFlags{}.p_ah);
}

TEST_F(BoardModel, ANewGameForgetsEveryStoredMove) {
    place("position startpos moves e2e4 e7e5");
    slots.aa_dd.fill(move_from("a2a3"));
    slots.aag_ddg.fill(move_from("a2a3"));
    slots.aab_ddb = move_from("a2a3");
    converse({"position startpos"});
    for (int n = 1; n < last_ply; ++n) {
        EXPECT_FALSE(is_move(slots.aa_dd[n])) << n;
        EXPECT_FALSE(is_move(slots.aag_ddg[n])) << n;
    }
    EXPECT_FALSE(is_move(slots.aab_ddb));
}

TEST_F(BoardModel, ANewGamePutsTheStartPositionAndClearsTheFlags) {
    place("position startpos moves e2e4 e7e5 e1e2 e8e7 a2a3 a7a6 a1a2 a8a7 h2h3 h7h6 h1h2 h8h7");
    ASSERT_EQ(jm.R_jm[white] + jm.R_jm[black] + jm.T_a_jm[white] + jm.T_h_jm[black], 4);
    converse({"position startpos"});
    EXPECT_EQ(field_of(tab), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR");
    EXPECT_EQ(jm.R_jm, MovedFlags{}.R_jm);
    EXPECT_EQ(jm.T_a_jm, MovedFlags{}.T_a_jm);
    EXPECT_EQ(jm.T_h_jm, MovedFlags{}.T_h_jm);
    EXPECT_EQ(game_line.nb, 1);
}

// The flag tells of moves alone: whoever takes the rook changes only the board, and there castling must look.
const char* const rook_taken_on_h1 = "position startpos moves g2g4 b7b6 g1h3 c8b7 f1g2 b7g2 a2a3 g2h1";

TEST_F(BoardModel, ARookTakenOnItsCornerHasNotMoved) {
    place(rook_taken_on_h1);
    EXPECT_EQ(at(tab, "h1"), -33);
    EXPECT_EQ(jm.T_h_jm[white], 0);
    EXPECT_EQ(jm.R_jm[white], 0);
    EXPECT_EQ(at(tab, "f1"), 0);
    EXPECT_EQ(at(tab, "g1"), 0);
    EXPECT_EQ(count_of(texts_of(root_moves_tried()), "e1g1"), 0) << "a foreign man on the corner";
}

TEST_F(BoardModel, AnEmptyCornerHasNoCastlingEither) {
    place(std::string(rook_taken_on_h1) + " a3a4 h1d5");
    EXPECT_EQ(at(tab, "h1"), 0);
    EXPECT_EQ(jm.T_h_jm[white], 0);
    EXPECT_EQ(count_of(texts_of(root_moves_tried()), "e1g1"), 0);
}

TEST_F(BoardModel, TheSameSquaresWithTheRookAtHomeAllowCastling) {
    place("position startpos moves g2g4 b7b6 g1h3 c8b7 f1g2 b7g2 a2a3 g2d5");
    EXPECT_EQ(count_of(texts_of(root_moves_tried()), "e1g1"), 1);
}

// --- The search and the root ---

TEST_F(BoardModel, ASearchLeavesTheRootAsItWas) {
    for (const std::string fen : {"r3k2r/pp1n1ppp/2p1bn2/3pP3/3P4/2N1BN2/PPP2PPP/R3K2R w KQkq d6 0 1",
                                  "r3k2r/ppp2ppp/2n1bn2/3p4/3Pp3/2P1BN2/PP1N1PPP/R3K2R b KQkq d3 0 1"}) {
        fresh_process();
        const Colour c = place_fen(fen);
        search.deep = 3;
        const Board board = tab;
        const MovedFlags flags = jm;
        const auto material = root.material_a;
        const auto without_pawns = root.materialmaior;
        const auto men = root.npecas;
        without_report([c] { search_root(c); });
        EXPECT_GT(search.nodes, 1000U);
        EXPECT_EQ(tab, board);
        EXPECT_EQ(jm.R_jm, flags.R_jm);
        EXPECT_EQ(jm.T_a_jm, flags.T_a_jm);
        EXPECT_EQ(jm.T_h_jm, flags.T_h_jm);
        EXPECT_EQ(jm.p_ah, flags.p_ah);
        EXPECT_EQ(root.material_a, material);
        EXPECT_EQ(root.materialmaior, without_pawns);
        EXPECT_EQ(root.npecas, men);
    }
}

TEST_F(BoardModel, KingSquaresAreThoseOfTheBoardLastTested) {
    set_up_ply(2, "4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_EQ(trial.p_xy_R[white], square_of("e1"));
    EXPECT_EQ(trial.p_xy_R[black], square_of("e8"));
    init_tabuleiro2_deep<white>(2, move_from("e1d2"));
    verifica_rei<white>();
    EXPECT_EQ(trial.p_xy_R[white], square_of("d2")) << "the trial's, though the ply still has its king on e1";
    EXPECT_EQ(at(ply[2].tabd, "e1"), 110);
    EXPECT_EQ(trial.p_xy_R[black], square_of("e8"));
    trial.tab2 = tab;
    verifica_rei<white>();
    EXPECT_EQ(trial.p_xy_R[white], square_of("e1"));
}

TEST_F(BoardModel, TheRootFindsBothKings) {
    place_fen("8/1k6/8/8/8/8/6K1/8 w - - 0 1");
    EXPECT_EQ(trial.p_xy_R, (std::array{square_of("g2"), square_of("b7")}));
}

// --- The stack ---

// Every ply owns its board and flags: a node copies those above it and plays its move there.
TEST_F(BoardModel, ANodeCopiesThePlyAboveAndPlaysItsMove) {
    for (const Case& each : for_both_colours("r3k2r/1p3ppp/8/3Pp3/8/8/PP3PPP/R3K2R w KQkq e6 0 1", {"h1g1"})) {
        for (int n = 2; n < last_ply; ++n) {
            fresh_process();
            const Colour c = set_up_ply(n - 1, each.fen);
            const Board board = ply[n - 1].tabd;
            const MovedFlags flags = ply[n - 1].jm_D;
            ASSERT_EQ(flags.p_ah[other(c)][4], 1);
            {
                const ChildrenOf none(n);
                search_node(n, move_from(each.moves[0]));
            }
            EXPECT_EQ(field_of(ply[n].tabd), field_after(each.fen, each.moves[0])) << n;
            EXPECT_EQ(ply[n].sets, piece_sets(ply[n].tabd)) << n;
            EXPECT_EQ(ply[n].jm_D.T_h_jm[c], 1) << n;
            EXPECT_EQ(ply[n].jm_D.T_a_jm[c], 0) << n;
            EXPECT_EQ(ply[n].jm_D.R_jm[c], 0) << n;
            EXPECT_EQ(ply[n].jm_D.R_jm[other(c)], 0) << n;
            EXPECT_EQ(ply[n].jm_D.p_ah, MovedFlags{}.p_ah) << n;
            EXPECT_EQ(ply[n].X_D, 1) << n << ": no child has improved the bound";
            EXPECT_EQ(tree.nd, n);
            EXPECT_EQ(ply[n - 1].tabd, board) << n;
            EXPECT_EQ(ply[n - 1].jm_D.T_h_jm[c], 0) << n;
            EXPECT_EQ(ply[n - 1].jm_D.p_ah, flags.p_ah) << n;
        }
    }
}

TEST_F(BoardModel, PlyOneIsCopiedFromTheRoot) {
    place_fen("r3k2r/1p3ppp/8/3Pp3/8/8/PP3PPP/R3K2R w KQkq e6 0 1");
    search.deep = 3;
    {
        const ChildrenOf none(1);
        search_node(1, move_from("d5e6"));
    }
    EXPECT_EQ(field_of(ply[1].tabd), "r3k2r/1p3ppp/4P3/8/8/8/PP3PPP/R3K2R");
    EXPECT_EQ(ply[1].sets, piece_sets(ply[1].tabd));
    EXPECT_EQ(ply[1].jm_D.p_ah, MovedFlags{}.p_ah);
    EXPECT_EQ(jm.p_ah[black][4], 1);
}

// --- Running material ---

struct MaterialChange {
    const char* what;
    const char* fen;
    const char* move;
    int gain, loss;  // of the mover, of the other side
};

const std::vector<MaterialChange> material_changes{
    {"a quiet move", "4k3/8/8/8/8/8/4P3/R3K3 w - - 0 1", "a1a5", 0, 0},
    {"a capture", "4k3/8/8/n7/8/8/4P3/R3K3 w - - 0 1", "a1a5", 0, 32},
    {"a promotion", "4k3/1P6/8/8/8/8/8/4K3 w - - 0 1", "b7b8", 80, 0},
    {"a promotion by capture", "r3k3/1P6/8/8/8/8/8/4K3 w - - 0 1", "b7a8", 80, 50},
    // The taken pawn is not subtracted from its side: its worth goes to the taker.
    {"en passant", "4k3/8/8/3Pp3/8/8/8/4K3 w - e6 0 1", "d5e6", 10, 0},
    {"a pawn's capture", "4k3/8/4p3/3P4/8/8/8/4K3 w - - 0 1", "d5e6", 0, 10},
    {"a pawn's push to the seventh rank", "4k3/8/1P6/8/8/8/8/4K3 w - - 0 1", "b6b7", 0, 0},
    {"a rook's move from the seventh rank", "4k3/1R6/8/8/8/8/8/4K3 w - - 0 1", "b7b8", 0, 0},
};

TEST_F(BoardModel, RunningMaterialFollowsTheMove) {
    for (const MaterialChange& x : material_changes) {
        for (const Case& each : for_both_colours(x.fen, {x.move})) {
            for (const int n : {2, 3, 6, 7, 14, 21}) {
                const Colour c = set_up_ply(n - 1, each.fen);
                ply[n - 1].material = {300.0F, 400.0F};
                {
                    const ChildrenOf none(n);
                    search_node(n, move_from(each.moves[0]));
                }
                const float before = c == white ? 300.0F : 400.0F;
                EXPECT_EQ(ply[n].material[c], before + static_cast<float>(x.gain)) << x.what << ", ply " << n;
                EXPECT_EQ(ply[n].material[other(c)], 700.0F - before - static_cast<float>(x.loss))
                    << x.what << ", ply " << n;
            }
        }
    }
}

TEST_F(BoardModel, TheWorthOfTheMoveIsReckonedAnew) {
    enter(3, "4k3/1P6/8/8/8/8/8/4K3 w - - 0 1", "b7b8");
    EXPECT_EQ(tree.promocao, 80);
    enter(3, "4k3/8/8/3Pp3/8/8/8/4K3 w - e6 0 1", "d5e6");
    EXPECT_EQ(tree.promocao, 0);
    EXPECT_EQ(tree.ppassado, 10);
    enter(3, "4k3/8/8/3Pp3/8/8/8/4K3 w - e6 0 1", "e1e2");
    EXPECT_EQ(tree.ppassado, 0);
}

// --- Stored moves ---

// The value of a child that cuts its parent off.
float cutting_value(int n) { return n % 2 == 0 ? start_of_beta : start_of_alfa; }

TEST_F(BoardModel, QuietSlotsHoldTheMoveFromItsFirstSquare) {
    for (const int n : {1, 2, 3, 8, 9}) {
        fresh_process();
        set_up_ply(n, "4k3/8/8/8/8/8/8/N3K3 w - - 0 1");
        const ChildrenOf cutting(n, [n](Move) { value_of_child(n) = cutting_value(n); });
        run_quiet(n, "a1");
        EXPECT_EQ(text_of(slots.aa_dd[n]), "a1c2") << n;
        EXPECT_FALSE(is_move(slots.aag_ddg[n])) << n;
    }
}

TEST_F(BoardModel, CaptureSlotsHoldTheVictimFirst) {
    for (const int n : {2, 3, 8, 9}) {
        fresh_process();
        set_up_ply(n, "4k3/8/8/8/8/8/2p5/N3K3 w - - 0 1");
        const ChildrenOf cutting(n, [n](Move) { value_of_child(n) = cutting_value(n); });
        run_captures(n, "c2");
        EXPECT_EQ(text_of(slots.aag_ddg[n]), "c2a1") << n;
        EXPECT_FALSE(is_move(slots.aa_dd[n])) << n;
    }
}

TEST_F(BoardModel, TheCaptureSlotOfPlyOneHoldsTheAttackerFirst) {
    set_up_ply(1, "4k3/8/8/8/8/8/2p5/N3K3 w - - 0 1");
    const ChildrenOf cutting(1, [](Move) { value_of_child(1) = cutting_value(1); });
    run_stage(1, "a1");
    EXPECT_EQ(text_of(slots.aag_ddg[1]), "a1c2");
    EXPECT_FALSE(is_move(slots.aa_dd[1]));
}

// --- Counters ---

TEST_F(BoardModel, EveryLegalMoveCountsOneNode) {
    // The knight on e2 is pinned: its moves are tried and dropped.
    const std::string fen = "4r1k1/8/8/8/8/8/4N3/4K2R w - - 0 1";
    const auto legal = rules::legal_moves(position_of(fen)).size();
    for (const int n : {1, 2, 3, 7, 22}) {
        set_up_ply(n, fen);
        search.nodes = 0;
        EXPECT_EQ(replies_tried(n).size(), legal) << n;
        EXPECT_EQ(search.nodes, legal) << n;
    }
}

}  // namespace
