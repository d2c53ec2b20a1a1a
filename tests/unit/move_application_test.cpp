// Putting a move on a board: in the tree, on trial, at the root; the gate of the pass; and what the root trial adds for
// the class of the move.
#include "board/apply.h"
#include "eval/preparation.h"
#include "eval/root_trial.h"
#include "eval/tables.h"
#include "search/root_routines.h"
#include "support/boards.h"
#include "support/engine.h"
#include "support/moves.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace tests;
using namespace ondrel;

class MoveApplication : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

int at(const Board& t, std::string_view name) { return t[square_of(name)]; }

bool are_equal(const MovedFlags& a, const MovedFlags& b) {
    return a.R_jm == b.R_jm && a.T_a_jm == b.T_a_jm && a.T_h_jm == b.T_h_jm && a.p_ah == b.p_ah;
}

// The rule seen with both colours: men and squares are White's, and for Black they are mirrored here.
class Mover {
public:
    explicit Mover(Colour c) : c_(c) {}

    [[nodiscard]] Ply node(std::string_view field) const {
        Ply p;
        p.tabd = seen(board_from(field));
        return p;
    }
    [[nodiscard]] Move move(std::string_view m) const { return move_from(seen_by(c_, m)); }
    void play(Ply& p, std::string_view m) const {
        c_ == white ? init_tabuleiro_ply<white>(p, move(m)) : init_tabuleiro_ply<black>(p, move(m));
    }
    void try_on(int n, const Ply& p, std::string_view m) const {
        ply[n] = p;
        c_ == white ? init_tabuleiro2_deep<white>(n, move(m)) : init_tabuleiro2_deep<black>(n, move(m));
    }
    [[nodiscard]] Board seen(const Board& t) const { return seen_by(c_, t); }
    [[nodiscard]] Colour colour() const { return c_; }
    [[nodiscard]] Colour enemy() const { return other(c_); }

private:
    Colour c_;
};

const std::array both_movers{Mover(white), Mover(black)};

// --- The ply form: en passant and double steps ---

TEST_F(MoveApplication, ADoubleStepSetsItsFlagAndClearsEveryOther) {
    for (const Mover& mover : both_movers) {
        Ply p = mover.node("4k3/8/8/8/8/8/1P6/4K3");
        p.jm_D.p_ah[mover.colour()][6] = 1;
        p.jm_D.p_ah[mover.enemy()][2] = 1;
        mover.play(p, "b2b4");
        MovedFlags expected;
        expected.p_ah[mover.colour()][1] = 1;
        EXPECT_TRUE(are_equal(p.jm_D, expected));
        EXPECT_EQ(at(mover.seen(p.tabd), "b4"), 10);
        EXPECT_EQ(at(mover.seen(p.tabd), "b2"), 0);
    }
}

TEST_F(MoveApplication, BlacksDoubleStepFromB7SetsTheBlackFlagOfTheBFile) {
    Ply p;
    p.tabd = board_from("4k3/1p6/8/8/8/8/8/4K3");
    init_tabuleiro_ply<black>(p, move_from("b7b5"));
    EXPECT_EQ(p.jm_D.p_ah[black][1], 1);
    EXPECT_EQ(p.jm_D.p_ah[white], MovedFlags{}.p_ah[white]);
}

TEST_F(MoveApplication, TheRightToEnPassantLastsOnePly) {
    for (const Mover& mover : both_movers) {
        Ply p = mover.node("4k3/8/8/8/8/8/1P6/4K3");
        p.jm_D.p_ah[mover.enemy()][3] = 1;
        mover.play(p, "e1e2");
        EXPECT_EQ(p.jm_D.p_ah, MovedFlags{}.p_ah);
    }
}

TEST_F(MoveApplication, OnlyAPawnsStepOfTwoRanksFromItsOwnRankSetsAFlag) {
    for (const Mover& mover : both_movers) {
        for (const auto& [field, m] : {std::pair{"4k3/8/8/8/8/8/R7/4K3", "a2a4"},
                                       {"4k3/8/8/8/8/8/P7/4K3", "a2a3"},
                                       {"4k3/8/8/8/8/P7/8/4K3", "a3a4"},
                                       {"4k3/8/8/8/8/8/Q7/4K3", "a2a4"}}) {
            Ply p = mover.node(field);
            mover.play(p, m);
            EXPECT_EQ(p.jm_D.p_ah, MovedFlags{}.p_ah) << field << ' ' << m;
        }
    }
}

TEST_F(MoveApplication, EnPassantClearsTheVictimsSquareAndLandsBehindIt) {
    for (const Mover& mover : both_movers) {
        for (const int f : {2, 4}) {
            Ply p = mover.node("4k3/8/8/2pPp3/8/8/8/4K3");
            p.jm_D.p_ah[mover.enemy()][f] = 1;
            mover.play(p, f == 2 ? "d5c6" : "d5e6");
            const Board t = mover.seen(p.tabd);
            EXPECT_EQ(at(t, f == 2 ? "c6" : "e6"), 10);
            EXPECT_EQ(at(t, f == 2 ? "c5" : "e5"), 0);
            EXPECT_EQ(at(t, f == 2 ? "e5" : "c5"), -10);
            EXPECT_EQ(at(t, "d5"), 0);
            EXPECT_EQ(p.jm_D.p_ah, MovedFlags{}.p_ah);
        }
    }
}

TEST_F(MoveApplication, WithoutTheFlagOfItsFileTheNeighbourStays) {
    for (const Mover& mover : both_movers) {
        Ply p = mover.node("4k3/8/8/2pPp3/8/8/8/4K3");
        p.jm_D.p_ah[mover.enemy()][2] = 1;   // of the other neighbour
        p.jm_D.p_ah[mover.colour()][4] = 1;  // of the other colour
        mover.play(p, "d5e6");
        const Board t = mover.seen(p.tabd);
        EXPECT_EQ(at(t, "e6"), 10);
        EXPECT_EQ(at(t, "e5"), -10);
    }
}

TEST_F(MoveApplication, AnyOtherPawnMoveToTheFlaggedFileLeavesTheNeighbour) {
    for (const Mover& mover : both_movers) {
        for (const auto& [field, m, after] : {std::tuple{"4k3/8/8/4p3/8/8/4P3/4K3", "e2e3", "4k3/8/8/4p3/8/4P3/8/4K3"},
                                              {"4k3/8/8/4p3/8/8/4P3/4K3", "e2e4", "4k3/8/8/4p3/4P3/8/8/4K3"},
                                              {"4k3/4n3/3P4/4p3/8/8/8/4K3", "d6e7", "4k3/4P3/8/4p3/8/8/8/4K3"}}) {
            Ply p = mover.node(field);
            p.jm_D.p_ah[mover.enemy()][4] = 1;
            mover.try_on(5, p, m);
            mover.play(p, m);
            EXPECT_EQ(trial.tab2, p.tabd) << m;
            EXPECT_EQ(mover.seen(p.tabd), board_from(after)) << m;
        }
    }
}

TEST_F(MoveApplication, OnlyPawnsCaptureEnPassant) {
    for (const Mover& mover : both_movers) {
        Ply p = mover.node("4k3/8/8/3Bp3/8/8/8/4K3");
        p.jm_D.p_ah[mover.enemy()][4] = 1;
        mover.play(p, "d5e6");
        EXPECT_EQ(at(mover.seen(p.tabd), "e5"), -10);
    }
}

// --- The ply form: transfer and promotion ---

TEST_F(MoveApplication, ACaptureOverwritesTheVictim) {
    for (const Mover& mover : both_movers) {
        Ply p = mover.node("4k3/8/8/n7/8/8/8/R3K3");
        mover.play(p, "a1a5");
        EXPECT_EQ(at(mover.seen(p.tabd), "a5"), 50);
        EXPECT_EQ(at(mover.seen(p.tabd), "a1"), 0);
    }
}

TEST_F(MoveApplication, APawnOnItsLastRankBecomesAQueenByPushAndByCapture) {
    for (const Mover& mover : both_movers) {
        for (const auto& [m, to] : {std::pair{"b7b8", "b8"}, {"b7a8", "a8"}, {"b7c8", "c8"}}) {
            Ply p = mover.node("r1n1k3/1P6/8/8/8/8/8/4K3");
            mover.play(p, m);
            EXPECT_EQ(at(mover.seen(p.tabd), to), 90) << m;
            EXPECT_EQ(at(mover.seen(p.tabd), "b7"), 0) << m;
        }
    }
}

TEST_F(MoveApplication, NoOtherManPromotes) {
    for (const Mover& mover : both_movers) {
        Ply p = mover.node("4k3/1N6/8/8/8/8/8/4K3");
        mover.play(p, "b7d8");
        EXPECT_EQ(at(mover.seen(p.tabd), "d8"), 32);
    }
}

TEST_F(MoveApplication, ThePlyHasShownNoReplyYet) {
    for (const Mover& mover : both_movers) {
        Ply p = mover.node("4k3/8/8/8/8/8/8/4K3");
        p.X_D = 0;
        mover.play(p, "e1e2");
        EXPECT_EQ(p.X_D, 1);
    }
}

// --- The ply form: king and rooks ---

TEST_F(MoveApplication, AKingsMoveIsNoted) {
    for (const Mover& mover : both_movers) {
        Ply p = mover.node("r3k2r/8/8/8/8/8/8/R3K2R");
        mover.play(p, "e1e2");
        EXPECT_EQ(p.jm_D.R_jm[mover.colour()], 1);
        EXPECT_EQ(p.jm_D.R_jm[mover.enemy()], 0);
        EXPECT_EQ(p.jm_D.T_a_jm[mover.colour()] + p.jm_D.T_h_jm[mover.colour()], 0);
    }
}

TEST_F(MoveApplication, CastlingTakesTheRookAlong) {
    for (const Mover& mover : both_movers) {
        Ply short_castling = mover.node("r3k2r/8/8/8/8/8/8/R3K2R");
        mover.play(short_castling, "e1g1");
        EXPECT_EQ(mover.seen(short_castling.tabd), board_from("r3k2r/8/8/8/8/8/8/R4RK1"));
        Ply long_castling = mover.node("r3k2r/8/8/8/8/8/8/R3K2R");
        mover.play(long_castling, "e1c1");
        EXPECT_EQ(mover.seen(long_castling.tabd), board_from("r3k2r/8/8/8/8/8/8/2KR3R"));
        EXPECT_EQ(long_castling.jm_D.R_jm[mover.colour()], 1);
        EXPECT_EQ(long_castling.jm_D.T_a_jm[mover.colour()], 0) << "the rook's own flag tells of its own moves";
    }
}

// Only files are looked at: no generator makes such moves, so that nothing needs to be asked.
TEST_F(MoveApplication, TheRookJumpsWhateverStandsOnTheCorner) {
    for (const Mover& mover : both_movers) {
        for (const char* field : {"4k3/8/8/8/8/8/8/4K3", "4k3/8/8/8/8/8/8/N3K3", "4k3/8/8/8/8/8/8/q3K3"}) {
            Ply p = mover.node(field);
            p.jm_D.R_jm[mover.colour()] = 1;
            mover.play(p, "e1c1");
            EXPECT_EQ(mover.seen(p.tabd), board_from("4k3/8/8/8/8/8/8/2KR4")) << field;
        }
        Ply p = mover.node("4k3/8/8/8/8/8/8/4K3");
        mover.play(p, "e1g2");  // nor is the to-rank asked
        EXPECT_EQ(mover.seen(p.tabd), board_from("4k3/8/8/8/8/8/6K1/5R2"));
    }
}

TEST_F(MoveApplication, AKingFromAnotherSquareTakesNoRookAlong) {
    for (const Mover& mover : both_movers) {
        for (const auto& [field, m, after] : {std::tuple{"4k3/8/8/8/8/8/8/R4K1R", "f1g1", "4k3/8/8/8/8/8/8/R5KR"},
                                              {"4k3/8/8/8/8/8/4K3/R6R", "e2g2", "4k3/8/8/8/8/8/6K1/R6R"},
                                              {"4k3/8/8/8/8/8/8/R2K3R", "d1c1", "4k3/8/8/8/8/8/8/R1K4R"}}) {
            Ply p = mover.node(field);
            mover.play(p, m);
            EXPECT_EQ(mover.seen(p.tabd), board_from(after)) << m;
        }
    }
}

TEST_F(MoveApplication, OtherMenOnTheKingsSquareTakeNoRookAlong) {
    for (const Mover& mover : both_movers) {
        Ply p = mover.node("4k3/8/8/8/8/4K3/8/R3Q2R");
        mover.play(p, "e1g1");
        EXPECT_EQ(mover.seen(p.tabd), board_from("4k3/8/8/8/8/4K3/8/R5QR"));
    }
}

TEST_F(MoveApplication, ARookIsNotedByTheFileItLeavesOnAnyRank) {
    for (const Mover& mover : both_movers) {
        for (const auto& [field, m, a, h] : {std::tuple{"4k3/8/8/8/8/8/8/R3K3", "a1a2", 1, 0},
                                             {"4k3/8/8/R7/8/8/8/4K3", "a5b5", 1, 0},
                                             {"4k3/8/8/8/8/8/8/4K2R", "h1h3", 0, 1},
                                             {"4k3/7R/8/8/8/8/8/4K3", "h7g7", 0, 1},
                                             {"4k3/8/8/8/8/8/8/1R2K3", "b1a1", 0, 0},
                                             {"4k3/8/8/8/8/8/8/Q3K3", "a1a2", 0, 0}}) {
            Ply p = mover.node(field);
            mover.play(p, m);
            EXPECT_EQ(p.jm_D.T_a_jm[mover.colour()], a) << m;
            EXPECT_EQ(p.jm_D.T_h_jm[mover.colour()], h) << m;
            EXPECT_EQ(p.jm_D.T_a_jm[mover.enemy()] + p.jm_D.T_h_jm[mover.enemy()] + p.jm_D.R_jm[mover.colour()], 0)
                << m;
        }
    }
}

TEST_F(MoveApplication, TakingARookNotesNothingForItsOwner) {
    for (const Mover& mover : both_movers) {
        Ply p = mover.node("r3k2r/8/8/3B4/8/8/8/4K3");
        mover.play(p, "d5a8");
        EXPECT_TRUE(are_equal(p.jm_D, MovedFlags{}));
    }
}

// --- The trial ---

TEST_F(MoveApplication, ATrialLeavesThePlyAsItIs) {
    for (const Mover& mover : both_movers) {
        for (const auto& [field, m] : {std::pair{"r3k2r/8/8/8/8/8/8/R3K2R", "e1g1"},
                                       {"4k3/8/8/8/8/8/1P6/4K3", "b2b4"},
                                       {"4k3/8/8/3Pp3/8/8/8/4K3", "d5e6"},
                                       {"4k3/1P6/8/8/8/8/8/4K3", "b7b8"},
                                       {"4k3/8/8/8/8/8/8/R3K3", "a1a5"}}) {
            Ply p = mover.node(field);
            p.jm_D.p_ah[mover.enemy()][4] = 1;
            p.X_D = 0;
            mover.try_on(5, p, m);
            EXPECT_EQ(ply[5].tabd, p.tabd) << m;
            EXPECT_TRUE(are_equal(ply[5].jm_D, p.jm_D)) << m;
            EXPECT_EQ(ply[5].X_D, 0) << m;
        }
    }
}

TEST_F(MoveApplication, ATrialShowsThePositionAfterTheMove) {
    for (const Mover& mover : both_movers) {
        for (const auto& [field, m, after] : {std::tuple{"r3k2r/8/8/8/8/8/8/R3K2R", "e1g1", "r3k2r/8/8/8/8/8/8/R4RK1"},
                                              {"r3k2r/8/8/8/8/8/8/R3K2R", "e1c1", "r3k2r/8/8/8/8/8/8/2KR3R"},
                                              {"4k3/8/8/3Pp3/8/8/8/4K3", "d5e6", "4k3/8/4P3/8/8/8/8/4K3"},
                                              {"4k3/1P6/8/8/8/8/8/4K3", "b7b8", "1Q2k3/8/8/8/8/8/8/4K3"},
                                              {"r3k3/1P6/8/8/8/8/8/4K3", "b7a8", "Q3k3/8/8/8/8/8/8/4K3"},
                                              {"4k3/8/8/n7/8/8/8/R3K3", "a1a5", "4k3/8/8/R7/8/8/8/4K3"}}) {
            Ply p = mover.node(field);
            p.jm_D.p_ah[mover.enemy()][4] = 1;
            mover.try_on(5, p, m);
            const Board tried = mover.seen(trial.tab2);
            EXPECT_EQ(tried, board_from(after)) << m;
        }
    }
}

// --- The root ---

std::string line_of(std::string_view fen, std::string_view moves) {
    return "position fen " + std::string(fen) + " moves " + std::string(moves);
}

TEST_F(MoveApplication, TheLineTellsThePromotionOfTheGame) {
    const std::string fen = "4k3/P7/8/8/8/8/8/4K3 w - - 0 1";
    for (const auto& [m, code_of_man] :
         {std::pair{"a7a8q", 90}, {"a7a8r", 50}, {"a7a8n", 32}, {"a7a8b", 33}, {"a7a8", 10}}) {
        place(line_of(fen, m));
        EXPECT_EQ(at(tab, "a8"), code_of_man) << m;
        EXPECT_EQ(at(tab, "a7"), 0) << m;
        EXPECT_EQ(game_line.PRe, '0') << m;
    }
    place(line_of(mirrored_fen(fen), "a2a1n"));
    EXPECT_EQ(at(tab, "a1"), -32);
}

TEST_F(MoveApplication, TheSearchsOwnPromotionBecomesAQueen) {
    struct Letters {
        char PRs, PRe;
        int becomes;
        char PR_after;
    };
    for (const Letters& x : {Letters{'q', '0', 90, 'q'},
                             {'q', 'r', 10, '0'},
                             {'q', 'q', 10, '0'},
                             {'0', 'q', 90, '0'},
                             {'0', 'r', 50, '0'},
                             {'0', 'n', 32, '0'},
                             {'0', 'b', 33, '0'},
                             {'0', '0', 10, '0'}}) {
        for (const Colour c : {white, black}) {
            fresh_process();
            tab = seen_by(c, board_from("4k3/P7/8/8/8/8/8/4K3"));
            game.abcd = move_from(seen_by(c, "a7a8"));
            game_line.PRs = x.PRs;
            game_line.PRe = x.PRe;
            game_line.PR = '0';
            init_tabuleiro();
            EXPECT_EQ(at(seen_by(c, tab), "a8"), x.becomes) << x.PRs << x.PRe;
            EXPECT_EQ(game_line.PR, x.PR_after) << x.PRs << x.PRe;
            EXPECT_EQ(game_line.PRe, '0') << x.PRs << x.PRe;
        }
    }
}

TEST_F(MoveApplication, TheRootReadsTheColourFromTheMan) {
    tab = board_from("r3k3/8/8/8/8/8/8/R3K2R");
    jm = {};
    game.joga_com_b = 0;  // Black's turn, and yet the rook's
    game.abcd = move_from("e1g1");
    init_tabuleiro();
    EXPECT_EQ(tab, board_from("r3k3/8/8/8/8/8/8/R4RK1"));
}

TEST_F(MoveApplication, EnPassantAtTheRootTakesThePawnAndEveryFlag) {
    tab = board_from("4k3/8/8/3Pp3/8/8/8/4K3");
    jm = {};
    jm.p_ah[black][4] = 1;
    game.abcd = move_from("d5e6");
    init_tabuleiro();
    EXPECT_EQ(tab, board_from("4k3/8/4P3/8/8/8/8/4K3"));
    EXPECT_EQ(jm.p_ah, MovedFlags{}.p_ah);
}

TEST_F(MoveApplication, AnIllegalMoveOfTheGameIsCarriedOut) {
    place("position startpos moves e2e4 e4e5 a1a8");
    EXPECT_EQ(at(tab, "a8"), 50);
    EXPECT_EQ(at(tab, "e5"), 10);
    EXPECT_EQ(jm.T_a_jm[white], 1);
}

TEST_F(MoveApplication, AGameNotesKingsRooksAndDoubleSteps) {
    place("position startpos moves e2e4 e7e5 e1e2 a7a5 h2h4 a8a6 h1h3 d7d5");
    EXPECT_EQ(jm.R_jm, (std::array<std::uint8_t, 2>{1, 0}));
    EXPECT_EQ(jm.T_h_jm, (std::array<std::uint8_t, 2>{1, 0}));
    EXPECT_EQ(jm.T_a_jm, (std::array<std::uint8_t, 2>{0, 1}));
    MovedFlags only_d;
    only_d.p_ah[black][3] = 1;
    EXPECT_EQ(jm.p_ah, only_d.p_ah);
}

// --- Chess960 at the root ---

// The board after the move, the men and squares being White's and c playing.
Board after_960_move(Colour c, std::string_view field, std::string_view m) {
    fresh_process();
    options.CHESS_960 = 1;
    tab = seen_by(c, board_from(field));
    jm = {};
    game.abcd = move_from(seen_by(c, m));
    init_tabuleiro();
    return seen_by(c, tab);
}

TEST_F(MoveApplication, In960AKingThatTakesItsOwnRookCastles) {
    for (const Colour c : {white, black}) {
        for (const auto& [field, m, after] : {std::tuple{"4k3/8/8/8/8/8/8/R4K1R", "f1h1", "4k3/8/8/8/8/8/8/R4RK1"},
                                              {"4k3/8/8/8/8/8/8/R4K1R", "f1a1", "4k3/8/8/8/8/8/8/2KR3R"},
                                              {"4k3/8/8/8/8/8/8/1R4KR", "g1h1", "4k3/8/8/8/8/8/8/1R3RK1"},
                                              {"4k3/8/8/8/8/8/8/1R4KR", "g1b1", "4k3/8/8/8/8/8/8/2KR3R"},
                                              {"4k3/8/8/8/8/8/8/1KR5", "b1c1", "4k3/8/8/8/8/8/8/5RK1"},
                                              {"4k3/8/8/8/8/8/8/2RK4", "d1c1", "4k3/8/8/8/8/8/8/2KR4"},
                                              {"4k3/8/8/8/8/8/8/R3K2R", "e1h1", "4k3/8/8/8/8/8/8/R4RK1"}}) {
            const Board board = after_960_move(c, field, m);
            EXPECT_EQ(jm.R_jm[c], 1) << m;
            EXPECT_EQ(board, board_from(after)) << m;
        }
    }
}

TEST_F(MoveApplication, In960AKingsStepOfTwoFilesTakesNoRookAlong) {
    for (const Colour c : {white, black}) {
        EXPECT_EQ(after_960_move(c, "4k3/8/8/8/8/8/8/R3K2R", "e1g1"), board_from("4k3/8/8/8/8/8/8/R5KR"));
    }
}

TEST_F(MoveApplication, In960ARooksMoveIsNotedByItsFile) {
    after_960_move(white, "4k3/8/8/8/8/8/8/R3K2R", "h1h4");
    EXPECT_EQ(jm.T_h_jm[white], 1);
    EXPECT_EQ(jm.T_a_jm[white], 0);
}

TEST_F(MoveApplication, Without960AKingOntoItsRookIsATransfer) {
    tab = board_from("4k3/8/8/8/8/8/8/R4K1R");
    game.abcd = move_from("f1h1");
    init_tabuleiro();
    EXPECT_EQ(tab, board_from("4k3/8/8/8/8/8/8/R6K"));
}

// --- The gate of the pass ---

// What the root routine of quiet moves searches of the man on a square, in a pass of that kind.
Texts quiet_root_moves(std::string_view from, bool scan1, bool scant) {
    const int i = square_of(from);
    pass = Pass{};
    pass.SCAN1 = scan1;
    pass.SCANT = scant;
    search.E = 0;  // no move that is tried becomes the best one
    forget_classes();
    const ChildrenOf children(0);
    for (const bool ch : {true, false}) {
        for (pass.ataque = 100; pass.ataque >= -100; --pass.ataque) {
            analise100<white>(livre, ch, static_cast<Piece>(value_of(tab[i])), i);
        }
    }
    return texts_of(children.moves());
}

TEST_F(MoveApplication, TheGateKeepsTheBestMoveToItsOwnPass) {
    place_fen("4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    slots.aab_ddb = move_from("a1a2");
    const Texts all = sorted(quiet_root_moves("a1", false, false));
    EXPECT_EQ(all.size(), 10U);
    EXPECT_EQ(quiet_root_moves("a1", true, false), (Texts{"a1a2"}));
    Texts others = quiet_root_moves("a1", false, true);
    EXPECT_EQ(count_of(others, "a1a2"), 0);
    others.emplace_back("a1a2");
    EXPECT_EQ(sorted(others), all);
}

TEST_F(MoveApplication, AnEmptySlotExcludesNoRootMove) {
    place_fen("4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    ASSERT_FALSE(is_move(slots.aab_ddb));
    EXPECT_EQ(quiet_root_moves("a1", false, true).size(), 10U);
    EXPECT_EQ(quiet_root_moves("a1", true, false), Texts{});
}

// --- The root trial: board ---

void try_root_move(Colour c, Move m) { c == white ? init_tabuleiro2<white>(m) : init_tabuleiro2<black>(m); }

TEST_F(MoveApplication, ARootTrialShowsTheMoveAndLeavesTheRoot) {
    for (const auto& [fen, m, after] :
         {std::tuple{"4k3/8/8/3Pp3/8/8/8/4K3 w - e6 0 1", "d5e6", "4k3/8/4P3/8/8/8/8/4K3"},
          {"r3k3/1P6/8/8/8/8/8/4K3 w - - 0 1", "b7a8", "Q3k3/8/8/8/8/8/8/4K3"},
          {"4k3/8/8/8/8/8/8/R3K3 w - - 0 1", "a1a8", "R3k3/8/8/8/8/8/8/4K3"},
          {"4k3/8/8/8/8/8/P7/4K3 w - - 0 1", "a2a4", "4k3/8/8/8/P7/8/8/4K3"}}) {
        for (const Case& each : for_both_colours(fen, {m})) {
            const Colour c = place_fen(each.fen);
            const Board board = tab;
            const MovedFlags flags = jm;
            try_root_move(c, move_from(each.moves[0]));
            EXPECT_EQ(tab, board) << m;
            EXPECT_TRUE(are_equal(jm, flags)) << m;
            const Board tried = seen_by(c, trial.tab2);
            EXPECT_EQ(tried, board_from(after)) << m;
        }
    }
}

// --- The root trial: worth of the destination ---

// Tables that tell every square and every kind apart.
void fill_tables_that_tell_all_apart() {
    for (int i = 0; i < 64; ++i) {
        for (const Colour c : {white, black}) {
            tables.posix_peao_inici[c][i] = 1000 + i;
            tables.posix_peao_medio[c][i] = 2000 + i;
            tables.posix_cavalo[c][i] = 3000 + i;
            tables.posix_bispo[c][i] = 4000 + i;
            tables.posix_torre[c][i] = 5000 + i;
            tables.posix_dama[c][i] = 6000 + i;
            tables.posix_reifinal[c][i] = 7000 + i;
            root.Xr[c][i] = (c == white ? 10000 : 20000) + 100 * i;
            root.XP[c][i] = (c == white ? 100003 : 200003) + 1000 * i;
        }
    }
}

TEST_F(MoveApplication, TheDestinationOfAPieceIsWorthItsTableAndItsNearnessToTheEnemyKing) {
    const std::string fen = "4k3/8/8/8/8/8/8/RNBQK3 w - - 0 1";
    for (const auto& [m, base] : {std::pair{"a1a5", 5000}, {"b1c3", 3000}, {"c1f4", 4000}, {"d1d7", 6000}}) {
        for (const Colour c : {white, black}) {
            place_fen(c == white ? fen : mirrored_fen(fen));
            fill_tables_that_tell_all_apart();
            const Move move = move_from(seen_by(c, m));
            const int i = move.to();
            try_root_move(c, move);
            EXPECT_EQ(root_trial.MATRIZ, base + i + (c == white ? 20000 : 10000) + 100 * i) << m;
            EXPECT_EQ(root_trial.incentiva_promo, 0) << m;
        }
    }
}

TEST_F(MoveApplication, ThePhaseOfTheGameChoosesThePawnTable) {
    const std::string fen = "4k3/8/8/8/8/8/P7/4K3 w - - 0 1";
    for (const Colour c : {white, black}) {
        place_fen(c == white ? fen : mirrored_fen(fen));
        fill_tables_that_tell_all_apart();
        const Move move = move_from(c == white ? "a2a3" : "a7a6");
        const int i = move.to();
        for (const auto& [half_move, value, urged] : {std::tuple{1, 1000 + i, 0},
                                                      {29, 1000 + i, 0},
                                                      {30, 2000 + i, 0},
                                                      {69, 2000 + i, 0},
                                                      {70, posix_peao_final[c][i], 1},
                                                      {200, posix_peao_final[c][i], 1}}) {
            game_line.nb = half_move;
            try_root_move(c, move);
            EXPECT_EQ(root_trial.MATRIZ, value) << half_move;
            EXPECT_EQ(root_trial.incentiva_promo, urged) << half_move;
        }
    }
}

TEST_F(MoveApplication, OnlyPawnMovesAreUrgedOnLate) {
    place_fen("4k3/8/8/8/8/8/P7/R3K3 w - - 0 1");
    game_line.nb = 90;
    init_tabuleiro2<white>(move_from("a2a3"));
    ASSERT_EQ(root_trial.incentiva_promo, 1);
    init_tabuleiro2<white>(move_from("a1b1"));
    EXPECT_EQ(root_trial.incentiva_promo, 0);
}

struct KingCase {
    int m, n, w;  // the enemy's material and men, the mover's material
    enum { nothing, hunt, flight, enemy_pawns, fifth } worth;
};

std::vector<KingCase> king_cases() {
    std::vector<KingCase> cases{
        {110, 0, 200, KingCase::hunt},        {111, 0, 200, KingCase::nothing},
        {200, 2, 110, KingCase::flight},      {110, 0, 110, KingCase::flight},  // the later case stands
        {120, 1, 200, KingCase::enemy_pawns}, {130, 2, 200, KingCase::enemy_pawns},
        {150, 4, 200, KingCase::enemy_pawns}, {140, 3, 200, KingCase::enemy_pawns},
        {140, 1, 200, KingCase::nothing},     {160, 5, 200, KingCase::nothing},
        {142, 1, 200, KingCase::fifth},       {143, 1, 200, KingCase::fifth},
        {160, 1, 200, KingCase::fifth},       {174, 2, 200, KingCase::fifth},
        {175, 2, 200, KingCase::fifth},       {176, 2, 200, KingCase::fifth},
        {142, 2, 200, KingCase::nothing},     {143, 2, 200, KingCase::nothing},
        {160, 2, 200, KingCase::nothing},     {174, 1, 200, KingCase::nothing},
        {175, 3, 200, KingCase::nothing},     {176, 1, 200, KingCase::nothing},
        {142, 1, 110, KingCase::flight},      {174, 2, 110, KingCase::flight},  // a bare king does not hunt
        {120, 1, 110, KingCase::enemy_pawns}, {400, 9, 400, KingCase::nothing},
    };
    for (const int m : {153, 163, 186, 152, 162, 184, 185}) {
        cases.push_back({m, 7, 200, KingCase::enemy_pawns});
    }
    for (const auto& [m, n] : {std::pair{173, 4},
                               {183, 5},
                               {196, 4},
                               {206, 5},
                               {216, 6},
                               {172, 4},
                               {182, 5},
                               {194, 4},
                               {204, 5},
                               {214, 6},
                               {195, 4},
                               {205, 5},
                               {215, 6},
                               {170, 2},
                               {180, 3}}) {
        cases.push_back({m, n, 200, KingCase::enemy_pawns});
        cases.push_back({m, n + 1, 200, KingCase::nothing});
    }
    return cases;
}

// The worth of square i to the king of c.
int worth_to_king(const KingCase& x, Colour c, int i) {
    switch (x.worth) {
        case KingCase::hunt: return root.Xr[other(c)][i] + root.XP[c][i];
        case KingCase::flight: return tables.posix_reifinal[c][i] + root.XP[other(c)][i];
        case KingCase::enemy_pawns: return root.XP[other(c)][i];
        case KingCase::fifth: return root.XP[c][i] / 5;
        default: return 0;
    }
}

TEST_F(MoveApplication, TheKingsDestinationGoesByTheEnding) {
    const std::vector<KingCase> cases = king_cases();
    for (const Colour c : {white, black}) {
        place_fen(c == white ? "4k3/8/8/8/8/8/8/4K3 w - - 0 1" : "4k3/8/8/8/8/8/8/4K3 b - - 0 1");
        fill_tables_that_tell_all_apart();
        const Move move = move_from(c == white ? "e1f2" : "e8f7");
        for (const KingCase& x : cases) {
            root.material_a[other(c)] = static_cast<float>(x.m);
            root.material_a[c] = static_cast<float>(x.w);
            root.npecas[other(c)] = x.n;
            root_trial.MATRIZ = -1;
            try_root_move(c, move);
            EXPECT_EQ(root_trial.MATRIZ, worth_to_king(x, c, move.to())) << x.m << ' ' << x.n << ' ' << x.w;
        }
    }
}

TEST_F(MoveApplication, AFifthIsCutTowardsZero) {
    place_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    root.material_a = {200.0F, 142.0F};
    root.npecas[black] = 1;
    root.XP[white].fill(-9);
    init_tabuleiro2<white>(move_from("e1f2"));
    EXPECT_EQ(root_trial.MATRIZ, -1);
}

// --- The root trial: attack maps ---

int sum(const IntTable& t) {
    int s = 0;
    for (const int x : t) {
        s += x;
    }
    return s;
}

int on_map(const IntTable& t, std::string_view name) { return t[square_of(name)]; }

TEST_F(MoveApplication, AttackMapsAreThoseOfThePositionAfterTheMove) {
    place_fen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
    init_tabuleiro2<white>(move_from("a1a4"));
    EXPECT_EQ(sum(root_trial.maps[white].torre_ataca), 14);
    EXPECT_EQ(on_map(root_trial.maps[white].torre_ataca, "h4"), 1);
    EXPECT_EQ(on_map(root_trial.maps[white].torre_ataca, "b1"), 0);
    init_tabuleiro2<white>(move_from("a1a2"));  // nothing of the trial before it is left
    EXPECT_EQ(sum(root_trial.maps[white].torre_ataca), 14);
    EXPECT_EQ(on_map(root_trial.maps[white].torre_ataca, "h4"), 0);
}

TEST_F(MoveApplication, ARayEndsOnTheFirstManWhichCountsWhoeverItIs) {
    // The rook on d4 sees the own pawn on d6 and the enemy's on f4, and nothing behind them.
    place_fen("4k3/8/3P4/8/3R1p1p/8/8/4K3 w - - 0 1");
    init_tabuleiro2<white>(move_from("e1e2"));
    const IntTable& map = root_trial.maps[white].torre_ataca;
    for (const char* attacked : {"d5", "d6", "e4", "f4", "c4", "b4", "a4", "d3", "d2", "d1"}) {
        EXPECT_EQ(on_map(map, attacked), 1) << attacked;
    }
    EXPECT_EQ(sum(map), 10);
}

TEST_F(MoveApplication, AQueenCountsInHerOwnMapAndInTheTotal) {
    place_fen("4k3/8/8/8/3Q4/8/8/4K3 w - - 0 1");
    init_tabuleiro2<white>(move_from("e1e2"));
    EXPECT_EQ(sum(root_trial.maps[white].dama_ataca), 27);
    EXPECT_EQ(sum(root_trial.maps[white].torre_ataca), 0);
    EXPECT_EQ(sum(root_trial.maps[white].bispo_ataca), 0);
    EXPECT_EQ(on_map(root_trial.maps[white].N_A, "d8"), 1);
}

TEST_F(MoveApplication, PawnsAttackForwardAndNothingLeavesTheBoard) {
    place_fen("4k3/p6p/8/8/3p4/8/P6P/4K3 w - - 0 1");
    init_tabuleiro2<white>(move_from("e1e2"));
    EXPECT_EQ(sum(root_trial.maps[white].peao_ataca), 2);
    EXPECT_EQ(on_map(root_trial.maps[white].peao_ataca, "b3"), 1);
    EXPECT_EQ(on_map(root_trial.maps[white].peao_ataca, "g3"), 1);
    EXPECT_EQ(sum(root_trial.maps[black].peao_ataca), 4);
    for (const char* attacked : {"b6", "g6", "c3", "e3"}) {
        EXPECT_EQ(on_map(root_trial.maps[black].peao_ataca, attacked), 1) << attacked;
    }
}

TEST_F(MoveApplication, EveryAttackerAddsOneToItsKindAndToItsColoursTotal) {
    // On d5: a pawn, two knights, a bishop, a rook, the queen and the king.
    place_fen("7k/1B6/3K4/8/2P1QN2/2N5/8/3R4 w - - 0 1");
    init_tabuleiro2<white>(move_from("h1h1"));  // an empty square is moved: the board stays
    EXPECT_EQ(on_map(root_trial.maps[white].peao_ataca, "d5"), 1);
    EXPECT_EQ(on_map(root_trial.maps[white].cavalo_ataca, "d5"), 2);
    EXPECT_EQ(on_map(root_trial.maps[white].bispo_ataca, "d5"), 1);
    EXPECT_EQ(on_map(root_trial.maps[white].torre_ataca, "d5"), 1);
    EXPECT_EQ(on_map(root_trial.maps[white].dama_ataca, "d5"), 1);
    EXPECT_EQ(on_map(root_trial.maps[white].rei_ataca, "d5"), 1);
    EXPECT_EQ(on_map(root_trial.maps[white].N_A, "d5"), 7);
    EXPECT_EQ(on_map(root_trial.maps[black].N_A, "d5"), 0);
    EXPECT_EQ(on_map(root_trial.maps[black].rei_ataca, "g7"), 1);
}

}  // namespace
