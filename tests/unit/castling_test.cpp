// Castling: what the caller asks of flags and squares, and the test of the squares that the king passes and reaches.
#include "board/castling.h"
#include "search/root_routines.h"
#include "search/state.h"
#include "support/boards.h"
#include "support/engine.h"
#include "support/moves.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>

namespace {

using namespace tests;
using namespace ondrel;

class Castling : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

void test_castling(Colour c, int n, CastlingSide side) {
    c == white ? verifica_roque<white>(n, side) : verifica_roque<black>(n, side);
}

std::string name_of(Colour c, CastlingSide side) { return text_of(castling_move(c, side)); }

// R of the castling on the white board, and on its mirror image for Black: all must agree, at any ply and at the root.
bool is_refused(std::string_view field, CastlingSide side) {
    int answers = 0;
    for (const Colour c : {white, black}) {
        for (const int n : {0, 1, 2, 23}) {
            ply[n].tabd = seen_by(c, board_from(field));
            trial.R = 2;
            test_castling(c, n, side);
            EXPECT_LE(trial.R, 1);
            answers += trial.R;
        }
    }
    EXPECT_TRUE(answers == 0 || answers == 8) << field;
    return answers == 8;
}

// The moves that the king's root routines search for the captures of pawns, castling among them.
Texts root_moves_of_king(Colour c, const Pass& kind = Pass{}) {
    const ChildrenOf children(0);
    bounds = {};
    pass = kind;
    search.E = 0;  // no move that is tried becomes the best one
    forget_classes();
    for (const bool ch : {true, false}) {
        for (pass.ataque = 100; pass.ataque >= -100; --pass.ataque) {
            c == white ? analise100<white>(positive1, ch, rei, square_of("e1"))
                       : analise100<black>(positive1, ch, rei, square_of("e8"));
        }
    }
    return texts_of(children.moves());
}

// Whether the generators try the castling, at several plies and at the root, for both colours.
bool is_tried(std::string_view fen, CastlingSide side) {
    int times_tried = 0;
    for (const Case& each : for_both_colours(fen, {})) {
        for (const int n : {1, 2, 3, 8, 9}) {
            const Colour c = set_up_ply(n, each.fen);
            times_tried += count_of(texts_of(replies_tried(n)), name_of(c, side));
        }
        const Colour c = place_fen(each.fen);
        times_tried += count_of(root_moves_of_king(c), name_of(c, side));
    }
    EXPECT_TRUE(times_tried == 0 || times_tried == 12) << fen << ' ' << times_tried;
    return times_tried == 12;
}

// --- The squares of the king's path ---

TEST_F(Castling, AnOpenPathIsNotRefused) {
    EXPECT_FALSE(is_refused("r3k2r/8/8/8/8/8/8/R3K2R", short_side));
    EXPECT_FALSE(is_refused("r3k2r/8/8/8/8/8/8/R3K2R", long_side));
}

TEST_F(Castling, ARookOnTheOpenFFileRefusesTheShortSide) {
    EXPECT_TRUE(is_refused("5rk1/8/8/8/8/8/8/R3K2R", short_side));
    EXPECT_FALSE(is_tried("5rk1/8/8/8/8/8/8/R3K2R w KQ - 0 1", short_side));
    EXPECT_TRUE(is_tried("5rk1/8/8/8/8/8/8/R3K2R w KQ - 0 1", long_side));
}

// The rook alone crosses b1.
TEST_F(Castling, ARookOnTheOpenBFileDoesNotRefuseTheLongSide) {
    EXPECT_FALSE(is_refused("1r4k1/8/8/8/8/8/8/R3K2R", long_side));
    EXPECT_TRUE(is_tried("1r4k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", long_side));
}

TEST_F(Castling, AnAttackedRookDoesNotRefuseEitherSide) {
    EXPECT_TRUE(is_tried("r6r/6k1/8/8/8/8/8/R3K2R w KQ - 0 1", long_side));
    EXPECT_TRUE(is_tried("r6r/6k1/8/8/8/8/8/R3K2R w KQ - 0 1", short_side));
}

TEST_F(Castling, AKnightOnB3RefusesTheLongSide) {
    EXPECT_TRUE(is_refused("6k1/8/8/8/8/1n6/8/R3K2R", long_side));
    EXPECT_FALSE(is_refused("6k1/8/8/8/8/1n6/8/R3K2R", short_side));
    EXPECT_FALSE(is_tried("6k1/8/8/8/8/1n6/8/R3K2R w KQ - 0 1", long_side));
}

TEST_F(Castling, ABishopOnA6RefusesTheShortSide) {
    EXPECT_TRUE(is_refused("6k1/8/b7/8/8/8/8/R3K2R", short_side));
    EXPECT_FALSE(is_refused("6k1/8/b7/8/8/8/8/R3K2R", long_side));
    EXPECT_FALSE(is_refused("6k1/8/b7/1p6/8/8/8/R3K2R", short_side)) << "behind a pawn it is blind";
    EXPECT_FALSE(is_tried("6k1/8/b7/8/8/8/8/R3K2R w KQ - 0 1", short_side));
}

struct Attacker {
    char letter;
    const char* squares;  // one blank apart
};

void expect_refused_by(CastlingSide side, std::initializer_list<Attacker> attackers) {
    for (const Attacker& x : attackers) {
        const std::string names(x.squares);
        for (std::size_t i = 0; i < names.size(); i += 3) {
            rules::Position p = position_of("8/8/8/8/8/8/8/R3K2R w KQ - 0 1");
            p.put(names[i] - 'a', names[i + 1] - '1', x.letter);
            EXPECT_TRUE(is_refused(field_of(board_from(p)), side)) << x.letter << names.substr(i, 2);
        }
    }
}

TEST_F(Castling, EveryAttackerOfTheLongPathRefusesIt) {
    expect_refused_by(long_side, {{'p', "e2 c2"},
                                  {'k', "e2 c2 d2"},
                                  {'n', "f2 b2 c3 e3"},
                                  {'b', "e2 f3 g4 h5 c2 b3 a4"},
                                  {'q', "e2 f3 g4 h5 c2 b3 a4 d2 d3 d4 d5 d6 d7 d8"},
                                  {'r', "d2 d3 d4 d5 d6 d7 d8"}});
    expect_refused_by(long_side, {{'p', "d2 b2"},
                                  {'k', "d2 b2 c2 b1"},
                                  {'n', "e2 a2 b3 d3"},
                                  {'b', "d2 e3 f4 g5 h6 b2 a3"},
                                  {'q', "b2 a3 c2 c3 c4 c5 c6 c7 c8"},
                                  {'r', "c2 c3 c4 c5 c6 c7 c8"}});
}

TEST_F(Castling, EveryAttackerOfTheShortPathRefusesIt) {
    expect_refused_by(short_side, {{'p', "g2 e2"},
                                   {'k', "g2 e2 f2"},
                                   {'n', "h2 d2 e3 g3"},
                                   {'b', "g2 h3 e2 d3 c4 b5 a6"},
                                   {'q', "g2 h3 e2 d3 c4 b5 a6 f2 f3 f4 f5 f6 f7 f8"},
                                   {'r', "f2 f3 f4 f5 f6 f7 f8"}});
    expect_refused_by(short_side, {{'p', "h2 f2"},
                                   {'k', "h2 f2 g2"},
                                   {'n', "e2 f3 h3"},
                                   {'b', "f2 e3 d4 c5 b6 a7 h2"},
                                   {'q', "h2 g2 g3 g4 g5 g6 g7 g8"},
                                   {'r', "g2 g3 g4 g5 g6 g7 g8"}});
}

// Whether the plain rules find the king's way attacked: the crossed square as it stands, the destination when castled.
bool is_way_attacked(rules::Position p, CastlingSide side) {
    const CastlingFiles files = castling_files(side);
    const bool crossing = rules::is_attacked(p, files.crossed, 0, false);
    p.put(files.crossed, 0, 'R');
    p.put(files.corner, 0, rules::empty_square);
    p.put(files.destination, 0, 'K');
    p.put(king_file, 0, rules::empty_square);
    return crossing || rules::is_attacked(p, files.destination, 0, false);
}

// One enemy man on every square: only attackers of the two squares refuse.
TEST_F(Castling, OneAttackerAnywhereAgreesWithThePlainRules) {
    for (const CastlingSide side : {short_side, long_side}) {
        const CastlingFiles files = castling_files(side);
        for (int i = 0; i < squares; ++i) {
            for (const char letter : {'p', 'n', 'b', 'r', 'q', 'k'}) {
                rules::Position p = position_of("8/8/8/8/8/8/8/R3K2R w KQ - 0 1");
                if (p.at(file_of(i), rank_of(i)) != rules::empty_square || i == square(files.crossed, 0) ||
                    i == square(files.destination, 0)) {
                    continue;
                }
                p.put(file_of(i), rank_of(i), letter);
                EXPECT_EQ(is_refused(field_of(board_from(p)), side), is_way_attacked(p, side))
                    << letter << i << ' ' << side;
            }
        }
    }
}

TEST_F(Castling, TheKingItselfShieldsTheCrossedSquareAndTheRookTheDestination) {
    EXPECT_FALSE(is_refused("6k1/8/8/8/8/8/8/R3K2r", long_side));
    EXPECT_FALSE(is_refused("6k1/8/8/8/8/8/8/r3K2R", short_side));
}

TEST_F(Castling, TheOwnMenRefuseNothing) {
    EXPECT_FALSE(is_refused("6k1/8/8/8/8/1N1N1N2/1P1P1P1P/R3K2R", long_side));
    EXPECT_FALSE(is_refused("6k1/8/8/8/8/1N1N1N2/1P1P1P1P/R3K2R", short_side));
}

// --- What the test leaves ---

TEST_F(Castling, TheCastledPositionIsLeftWhateverTheAnswer) {
    for (const auto& [field, side, after, R] :
         {std::tuple{"6k1/8/8/8/8/8/8/R3K2R", short_side, "6k1/8/8/8/8/8/8/R4RK1", 0},
          {"6k1/8/8/8/8/8/8/R3K2R", long_side, "6k1/8/8/8/8/8/8/2KR3R", 0},
          {"5rk1/8/8/8/8/8/8/R3K2R", short_side, "5rk1/8/8/8/8/8/8/R4RK1", 1},
          {"6rk/8/8/8/8/8/8/R3K2R", short_side, "6rk/8/8/8/8/8/8/R4RK1", 1},
          {"3r2k1/8/8/8/8/8/8/R3K2R", long_side, "3r2k1/8/8/8/8/8/8/2KR3R", 1}}) {
        for (const Colour c : {white, black}) {
            const Board board = seen_by(c, board_from(field));
            ply[6].tabd = board;
            trial.tab2 = {};
            test_castling(c, 6, side);
            EXPECT_EQ(trial.R, R) << field;
            EXPECT_EQ(trial.tab2, seen_by(c, board_from(after))) << field;
            EXPECT_EQ(ply[6].tabd, board) << field;
        }
    }
}

TEST_F(Castling, TheAnswerIsMadeAnewAtEachCall) {
    ply[6].tabd = board_from("5rk1/8/8/8/8/8/8/R3K2R");
    test_castling(white, 6, short_side);
    ASSERT_EQ(trial.R, 1);
    test_castling(white, 6, long_side);
    EXPECT_EQ(trial.R, 0);
}

// --- What the caller asks ---

const char* const open_fen = "6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1";

TEST_F(Castling, BothSidesAreTriedFromAnOpenPosition) {
    EXPECT_TRUE(is_tried(open_fen, short_side));
    EXPECT_TRUE(is_tried(open_fen, long_side));
}

TEST_F(Castling, EachRightStandsForItsSide) {
    EXPECT_TRUE(is_tried("6k1/8/8/8/8/8/8/R3K2R w K - 0 1", short_side));
    EXPECT_FALSE(is_tried("6k1/8/8/8/8/8/8/R3K2R w K - 0 1", long_side));
    EXPECT_FALSE(is_tried("6k1/8/8/8/8/8/8/R3K2R w Q - 0 1", short_side));
    EXPECT_TRUE(is_tried("6k1/8/8/8/8/8/8/R3K2R w Q - 0 1", long_side));
    EXPECT_FALSE(is_tried("6k1/8/8/8/8/8/8/R3K2R w - - 0 1", short_side));
    EXPECT_FALSE(is_tried("6k1/8/8/8/8/8/8/R3K2R w - - 0 1", long_side));
}

// How often the two castlings are tried at a ply whose flags have been marked.
template <class Mark>
std::pair<int, int> tried_with(const Case& each, int n, Mark mark) {
    const Colour c = set_up_ply(n, each.fen);
    mark(ply[n].jm_D, c);
    const Texts moves = texts_of(replies_tried(n));
    return {count_of(moves, each.moves[0]), count_of(moves, each.moves[1])};
}

TEST_F(Castling, FlagsOfKingAndRooksForbidIt) {
    for (const Case& each : for_both_colours(open_fen, {"e1g1", "e1c1"})) {
        for (const int n : {1, 2, 9}) {
            const auto tried = [&](auto mark) { return tried_with(each, n, mark); };
            EXPECT_EQ(tried([](MovedFlags&, Colour) {}), std::pair(1, 1));
            EXPECT_EQ(tried([](MovedFlags& m, Colour c) { m.R_jm[c] = 1; }), std::pair(0, 0));
            EXPECT_EQ(tried([](MovedFlags& m, Colour c) { m.T_h_jm[c] = 1; }), std::pair(0, 1));
            EXPECT_EQ(tried([](MovedFlags& m, Colour c) { m.T_a_jm[c] = 1; }), std::pair(1, 0));
            EXPECT_EQ(
                tried([](MovedFlags& m, Colour c) { m.R_jm[other(c)] = m.T_a_jm[other(c)] = m.T_h_jm[other(c)] = 1; }),
                std::pair(1, 1))
                << "the other colour's flags";
        }
    }
}

TEST_F(Castling, EverySquareBetweenMustBeEmpty) {
    for (const char* fen : {"6k1/8/8/8/8/8/8/RN2K2R w KQ - 0 1", "6k1/8/8/8/8/8/8/R1B1K2R w KQ - 0 1",
                            "6k1/8/8/8/8/8/8/R2QK2R w KQ - 0 1", "6k1/8/8/8/8/8/8/Rn2K2R w KQ - 0 1"}) {
        EXPECT_FALSE(is_tried(fen, long_side)) << fen;
        EXPECT_TRUE(is_tried(fen, short_side)) << fen;
    }
    for (const char* fen : {"6k1/8/8/8/8/8/8/R3KB1R w KQ - 0 1", "6k1/8/8/8/8/8/8/R3K1NR w KQ - 0 1",
                            "6k1/8/8/8/8/8/8/R3K1bR w KQ - 0 1"}) {
        EXPECT_FALSE(is_tried(fen, short_side)) << fen;
        EXPECT_TRUE(is_tried(fen, long_side)) << fen;
    }
}

// The rook was taken on its corner: no flag tells, the board does.
TEST_F(Castling, TheCornerMustHoldTheOwnRook) {
    for (const char* fen :
         {"6k1/8/8/8/8/8/8/R3K2b w KQ - 0 1", "6k1/8/8/8/8/8/8/R3K2N w KQ - 0 1", "6k1/8/8/8/8/8/8/R3K3 w KQ - 0 1"}) {
        EXPECT_FALSE(is_tried(fen, short_side)) << fen;
        EXPECT_TRUE(is_tried(fen, long_side)) << fen;
    }
    for (const char* fen :
         {"6k1/8/8/8/8/8/8/b3K2R w KQ - 0 1", "6k1/8/8/8/8/8/8/Q3K2R w KQ - 0 1", "6k1/8/8/8/8/8/8/4K2R w KQ - 0 1"}) {
        EXPECT_FALSE(is_tried(fen, long_side)) << fen;
        EXPECT_TRUE(is_tried(fen, short_side)) << fen;
    }
}

// A king that has not moved stands on its square: nobody looks.
TEST_F(Castling, TheKingsSquareIsNotLookedAt) {
    for (const Case& each : for_both_colours("6k1/8/8/8/8/4K3/8/R6R w - - 0 1", {"e1g1", "e1c1"})) {
        const Colour c = set_up_ply(2, each.fen);
        ply[2].jm_D.R_jm[c] = ply[2].jm_D.T_a_jm[c] = ply[2].jm_D.T_h_jm[c] = 0;
        const Texts moves = texts_of(replies_tried(2));
        EXPECT_EQ(count_of(moves, each.moves[0]), 1);
        EXPECT_EQ(count_of(moves, each.moves[1]), 1);
    }
}

// The castled position comes to the child by the castling test alone: no trial, and no test that would note the king.
TEST_F(Castling, NoTrialIsMadeForIt) {
    for (const Case& each : for_both_colours(open_fen, {"e1g1"})) {
        const Colour c = set_up_ply(4, each.fen);
        trial.p_xy_R = {9, 9};
        int seen = 0;
        const ChildrenOf children(4, [&](Move m) {
            if (text_of(m) == each.moves[0]) {
                ++seen;
                EXPECT_EQ(trial.p_xy_R[c], 9);
                EXPECT_EQ(trial.tab2, seen_by(c, board_from("6k1/8/8/8/8/8/8/R4RK1")));
            }
        });
        run_quiet(4, c == white ? "e1" : "e8");
        EXPECT_EQ(seen, 1);
    }
}

// --- The gate of the root ---

TEST_F(Castling, TheGateOfTheRootKnowsEachCastling) {
    for (const Case& each : for_both_colours(open_fen, {"e1g1", "e1c1"})) {
        for (const std::size_t stored : {0U, 1U}) {
            const auto tried = [&](bool scan1, bool scant) {
                const Colour c = place_fen(each.fen);
                slots.aab_ddb = move_from(each.moves[stored]);
                return root_moves_of_king(c, Pass{.SCAN1 = scan1, .SCANT = scant});
            };
            EXPECT_EQ(tried(false, false), each.moves);
            EXPECT_EQ(tried(true, false), Texts{each.moves[stored]});
            EXPECT_EQ(tried(false, true), Texts{each.moves[1 - stored]});
        }
        const auto with_another_stored = [&](bool scan1, bool scant) {
            const Colour c = place_fen(each.fen);
            slots.aab_ddb = castling_move(other(c), short_side);
            return root_moves_of_king(c, Pass{.SCAN1 = scan1, .SCANT = scant});
        };
        EXPECT_EQ(with_another_stored(true, false), Texts{});
        EXPECT_EQ(with_another_stored(false, true), each.moves);
    }
}

TEST_F(Castling, ThePliesKnowNoGate) {
    for (const Case& each : for_both_colours(open_fen, {"e1g1", "e1c1"})) {
        for (const int n : {1, 3}) {
            set_up_ply(n, each.fen);
            pass.SCAN1 = 1;
            slots.aab_ddb = move_from("a1a2");
            const Texts moves = texts_of(replies_tried(n));
            EXPECT_EQ(count_of(moves, each.moves[0]) + count_of(moves, each.moves[1]), 2) << n;
        }
    }
}

}  // namespace
