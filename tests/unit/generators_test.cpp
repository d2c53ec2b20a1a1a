// The generators of plies 2 to 23: their orders, which are the orders of search, and what they do with each child.
#include "support/boards.h"
#include "support/engine.h"
#include "support/moves.h"
#include "support/scripted.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <optional>
#include <ostream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace tests;
using namespace ondrel;

class Captures : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

class QuietMoves : public Captures {};
class CutOffs : public Captures {};

// A capture as the slot of a ply holds it.
Move victim_first(Move m) { return {m.to_file, m.to_rank, m.from_file, m.from_rank}; }

constexpr std::array plies{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23};

// What the generator of captures tries of a victim, and that of quiet moves of one man, in order.
Texts capture_order(int n, std::string_view fen, std::string_view victim) {
    set_up_ply(n, fen);
    return texts_of(captures_tried(n, victim));
}

Texts quiet_order(int n, std::string_view fen, std::string_view from) {
    set_up_ply(n, fen);
    return texts_of(quiet_moves_tried(n, from));
}

// --- Captures: the order of the attackers ---

TEST_F(Captures, WhitesAttackersComeInTheOrderOfTheRays) {
    const char* fen = "3R4/1QN1NB1k/1N3N2/R2q3R/1NP1PN2/2N1N3/8/3Q2K1 w - - 0 1";
    for (const int n : plies) {
        EXPECT_EQ(capture_order(n, fen, "d5"), (Texts{"e4d5", "c4d5", "f7d5", "b7d5", "h5d5", "a5d5", "d8d5", "d1d5",
                                                      "f6d5", "f4d5", "b4d5", "b6d5", "c7d5", "e7d5", "e3d5", "c3d5"}))
            << n;
    }
}

// Black's pawns stand above the victim: the two lower diagonals come last. The other rays and the knights keep their
// order.
TEST_F(Captures, BlacksAttackersComeInTheOrderOfTheRays) {
    const char* fen = "3r2k1/2n1n3/1np1pn2/r2Q3r/1n3n2/2n1n3/1q3b1K/3q4 b - - 0 1";
    for (const int n : plies) {
        EXPECT_EQ(capture_order(n, fen, "d5"), (Texts{"e6d5", "c6d5", "h5d5", "a5d5", "d8d5", "d1d5", "f6d5", "f4d5",
                                                      "b4d5", "b6d5", "c7d5", "e7d5", "e3d5", "c3d5"}))
            << n;
    }
    EXPECT_EQ(capture_order(2, "6k1/1b3b2/8/3Q4/8/8/1q3b1K/7q b - - 0 1", "d5"), (Texts{"f7d5", "b7d5", "h1d5"}));
    EXPECT_EQ(capture_order(2, "6k1/1b3b2/8/3Q4/8/1b3b2/7K/8 b - - 0 1", "d5"),
              (Texts{"f7d5", "b7d5", "f3d5", "b3d5"}));
    EXPECT_EQ(capture_order(2, "6K1/1B3B2/8/3q4/8/1B3B2/7k/8 w - - 0 1", "d5"),
              (Texts{"f3d5", "b3d5", "f7d5", "b7d5"}));
}

TEST_F(Captures, OfTwoPiecesOfAKindTheOneOnTheEarlierRayComesFirst) {
    EXPECT_EQ(capture_order(4, "6k1/8/8/8/Q2p3Q/8/8/6K1 w - - 0 1", "d4"), (Texts{"h4d4", "a4d4"}));
    EXPECT_EQ(capture_order(4, "6k1/8/8/3R4/3p4/3R4/8/6K1 w - - 0 1", "d4"), (Texts{"d5d4", "d3d4"}));
    EXPECT_EQ(capture_order(4, "6k1/8/8/2Q1Q3/3p4/2Q1Q3/8/1K6 w - - 0 1", "d4"),
              (Texts{"e3d4", "c3d4", "e5d4", "c5d4"}));
}

TEST_F(Captures, TheKingTakesFromTheFirstStepOfEveryRay) {
    for (const Case& each : for_both_colours("7k/8/8/3p4/8/8/8/8 w - - 0 1", {})) {
        for (const char* from : {"e4", "c4", "e6", "c6", "e5", "c5", "d6", "d4"}) {
            rules::Position p = position_of(each.fen);
            const Colour c = p.white_to_move ? white : black;
            const std::string at = seen_by(c, from);
            p.put(at[0] - 'a', at[1] - '1', c == white ? 'K' : 'k');
            EXPECT_EQ(capture_order(5, rules::to_fen(p), seen_by(c, "d5")), Texts{at + seen_by(c, "d5")});
        }
    }
    EXPECT_EQ(capture_order(5, "7k/8/8/3p1K2/8/8/8/8 w - - 0 1", "d5"), Texts{}) << "two steps away";
}

TEST_F(Captures, APawnTakesForwardAndFromTheFirstStepOnly) {
    for (const auto& [fen, expected] : {std::pair{"7k/8/8/3p4/4P3/8/8/K7 w - - 0 1", Texts{"e4d5"}},
                                        {"7k/8/4P3/3p4/8/8/8/K7 w - - 0 1", Texts{}},
                                        {"7k/8/8/3p4/3P4/8/8/K7 w - - 0 1", Texts{}},
                                        {"7k/8/8/3pP3/8/8/8/K7 w - - 0 1", Texts{}},
                                        {"7k/8/8/3p4/8/5P2/8/K7 w - - 0 1", Texts{}}}) {
        for (const Case& each : for_both_colours(fen, expected)) {
            const bool white_to_move = position_of(each.fen).white_to_move;
            EXPECT_EQ(capture_order(4, each.fen, white_to_move ? "d5" : "d4"), each.moves) << each.fen;
        }
    }
}

// The ray ends at the first man, attacker or not.
TEST_F(Captures, AManBehindAnotherIsNotSeen) {
    EXPECT_EQ(capture_order(4, "6k1/8/8/3p4/8/3Q4/8/3R2K1 w - - 0 1", "d5"), (Texts{"d3d5"}));
    EXPECT_EQ(capture_order(4, "6k1/8/8/3p4/8/3N4/8/3R2K1 w - - 0 1", "d5"), Texts{});
    EXPECT_EQ(capture_order(4, "6k1/8/8/3p4/3n4/8/8/3R2K1 w - - 0 1", "d5"), Texts{});
    EXPECT_EQ(capture_order(4, "6k1/8/4P3/3p4/8/8/B7/6K1 w - - 0 1", "d5"), (Texts{"a2d5"}));
    EXPECT_EQ(capture_order(4, "6k1/5B2/4P3/3p4/8/8/8/6K1 w - - 0 1", "d5"), Texts{}) << "behind the own pawn";
    EXPECT_EQ(capture_order(4, "6k1/8/8/3p4/4P3/5B2/8/6K1 w - - 0 1", "d5"), (Texts{"e4d5"}));
}

TEST_F(Captures, BishopsTakeAlongDiagonalsAndRooksAlongLinesOnly) {
    EXPECT_EQ(capture_order(4, "6k1/8/8/3p3B/8/8/8/3B2K1 w - - 0 1", "d5"), Texts{});
    EXPECT_EQ(capture_order(4, "6k1/5R2/8/3p4/8/1R6/8/6K1 w - - 0 1", "d5"), Texts{});
}

TEST_F(Captures, IllegalOnesAreDroppedAndTheWalkGoesOn) {
    search.nodes = 0;
    EXPECT_EQ(capture_order(4, "6k1/8/8/3p4/8/3R1B2/8/4rK2 w - - 0 1", "d5"), Texts{}) << "in check by the rook";
    EXPECT_EQ(search.nodes, 0U);
    EXPECT_EQ(capture_order(4, "5rk1/8/8/3p4/8/3R1B2/8/5K2 w - - 0 1", "d5"), (Texts{"d3d5"}))
        << "the bishop is pinned";
    EXPECT_EQ(capture_order(4, "3r2k1/8/8/3p4/4K3/8/8/3R4 w - - 0 1", "d5"), (Texts{"d1d5"})) << "the pawn is defended";
}

TEST_F(Captures, EnPassantIsNotAmongThem) {
    EXPECT_EQ(capture_order(4, "6k1/8/8/3Pp3/8/8/8/6K1 w - e6 0 1", "e5"), Texts{});
}

// --- Captures: the pawn on the seventh rank ---

TEST_F(Captures, APawnOnTheSeventhRankTakesAtPliesTwoToSixAndAtEvenPlies) {
    for (const Case& each : for_both_colours("3r2k1/4P3/8/8/8/8/8/6K1 w - - 0 1", {"e7d8"})) {
        const std::string victim = each.moves[0].substr(2);
        for (const int n : plies) {
            const bool left_out = n % 2 == 1 && n >= 7;
            EXPECT_EQ(capture_order(n, each.fen, victim), left_out ? Texts{} : each.moves) << n;
        }
    }
}

TEST_F(Captures, AtOddPliesFromSevenOnThatPawnEndsItsRay) {
    for (const Case& each : for_both_colours("3r2k1/4P3/5B2/8/8/8/8/6K1 w - - 0 1", {})) {
        for (const int n : {7, 9, 23}) {
            EXPECT_EQ(capture_order(n, each.fen, position_of(each.fen).white_to_move ? "d8" : "d1"), Texts{}) << n;
        }
    }
}

// --- Captures: victims ---

TEST_F(Captures, TheMostValuableVictimComesFirstAndTheKingNever) {
    const char* fen = "k7/8/1q3p2/2r1b3/3N4/1n3p2/2b1n3/7K w - - 0 1";
    for (const int n : {2, 3, 6, 7, 8}) {
        set_up_ply(n, fen);
        Texts moves = texts_of(replies_tried(n));
        moves.resize(3);
        EXPECT_EQ(moves, (Texts{"d4b3", "d4e2", "d4c2"})) << "knights before the bishop, ply " << n;
    }
    for (const Case& each : for_both_colours("7k/5p2/8/q3r2n/8/2b5/8/R3R2K w - - 0 1", {"a1a5", "e1e5"})) {
        for (const int n : {2, 3, 6, 7, 8}) {
            set_up_ply(n, each.fen);
            Texts moves = texts_of(replies_tried(n));
            moves.resize(2);
            EXPECT_EQ(moves, each.moves) << n;
        }
    }
    // White to move with Black's king attacked: no such position arises, and no victim is made of it.
    set_up_ply(4, "R3k3/8/8/8/8/8/8/6K1 w - - 0 1");
    EXPECT_EQ(count_of(texts_of(replies_tried(4)), "a8e8"), 0);
}

TEST_F(Captures, VictimsOfAKindAreVisitedByFileAndThenByRank) {
    set_up_ply(4, "7k/8/5p2/1p6/3N4/1p3p2/2p1p3/7K w - - 0 1");
    Texts moves = texts_of(replies_tried(4));
    moves.resize(4);
    EXPECT_EQ(moves, (Texts{"d4b3", "d4b5", "d4c2", "d4e2"}));
}

// --- Captures: the slot ---

TEST_F(Captures, TheFullFormPassesTheStoredOneByAndTheTestFormTriesItAlone) {
    for (const int n : plies) {
        set_up_ply(n, "6k1/8/8/3q4/4P3/1B3N2/3R4/6K1 w - - 0 1");
        slots.aag_ddg[n] = move_from("d5b3");
        EXPECT_EQ(texts_of(captures_tried(n, "d5")), (Texts{"e4d5", "d2d5"})) << n;
        EXPECT_EQ(texts_of(captures_tried(n, "d5", true)), (Texts{"b3d5"})) << n;
        EXPECT_EQ(text_of(slots.aag_ddg[n]), "d5b3");
    }
}

TEST_F(Captures, AStoredCaptureThatDoesNotFitTheBoardIsPassedByWithoutHarm) {
    const char* fen = "6k1/8/8/3q4/4P3/1B3N2/3R4/6K1 w - - 0 1";
    set_up_ply(4, fen);
    const Texts all = texts_of(replies_tried(4));
    for (const char* stored : {"d5h1", "a1b3", "g8b3", "d5g8", "e4d5", "f3d5", "d5f3"}) {
        set_up_ply(4, fen);
        slots.aag_ddg[4] = move_from(stored);
        EXPECT_EQ(texts_of(replies_tried(4)), all) << stored;
        EXPECT_EQ(text_of(slots.aag_ddg[4]), stored);
    }
}

TEST_F(Captures, AStoredCaptureThatFitsComesFirstAndOnce) {
    for (const Case& each : for_both_colours("6k1/8/8/3q4/4P3/1B3N2/3R4/6K1 w - - 0 1", {"d2d5"})) {
        for (const int n : {2, 3, 6, 7, 8, 9}) {
            set_up_ply(n, each.fen);
            const Move m = move_from(each.moves[0]);
            slots.aag_ddg[n] = victim_first(m);
            const Texts moves = texts_of(replies_tried(n));
            EXPECT_EQ(moves.front(), each.moves[0]) << n;
            EXPECT_EQ(count_of(moves, each.moves[0]), 1) << n;
        }
    }
}

// --- Quiet moves: the orders ---

struct Order {
    const char* fen;
    const char* from;
    Texts moves;
};

// The kings are out of the way, and the steps are those of the board, not of the colour.
const std::vector<Order> orders{
    {"7k/8/8/8/3N4/8/8/7K w - - 0 1", "d4", {"d4f5", "d4f3", "d4b3", "d4b5", "d4c6", "d4e6", "d4e2", "d4c2"}},
    {"7k/8/8/8/2B5/8/8/7K w - - 0 1",
     "c4",
     {"c4d5", "c4e6", "c4f7", "c4g8", "c4d3", "c4e2", "c4f1", "c4b3", "c4a2", "c4b5", "c4a6"}},
    {"7k/8/8/8/3R4/8/8/7K w - - 0 1",
     "d4",
     {"d4e4", "d4f4", "d4g4", "d4h4", "d4c4", "d4b4", "d4a4", "d4d5", "d4d6", "d4d7", "d4d8", "d4d3", "d4d2", "d4d1"}},
    {"7k/8/8/8/2Q5/8/8/7K w - - 0 1", "c4", {"c4d4", "c4e4", "c4f4", "c4g4", "c4h4", "c4b4", "c4a4", "c4c5", "c4c6",
                                             "c4c7", "c4c8", "c4c3", "c4c2", "c4c1", "c4d5", "c4e6", "c4f7", "c4g8",
                                             "c4d3", "c4e2", "c4f1", "c4b3", "c4a2", "c4b5", "c4a6"}},
    {"7k/8/8/8/3K4/8/8/8 w - - 0 1", "d4", {"d4e4", "d4c4", "d4d5", "d4d3", "d4c3", "d4e5", "d4c5", "d4e3"}},
};

TEST_F(QuietMoves, EachPieceHasItsOrderTheNearestSquareFirst) {
    for (const Order& o : orders) {
        for (int n = 1; n <= 23; ++n) {
            EXPECT_EQ(quiet_order(n, o.fen, o.from), o.moves) << n;
        }
    }
}

// The colours exchanged, the squares kept; White is to move.
std::string with_colours_exchanged(std::string fen) {
    const std::size_t end_of_field = fen.find(' ');
    for (std::size_t i = 0; i < end_of_field; ++i) {
        const auto x = static_cast<unsigned char>(fen[i]);
        fen[i] = static_cast<char>(std::islower(x) ? std::toupper(x) : std::tolower(x));
    }
    fen[end_of_field + 1] = 'b';
    return fen;
}

TEST_F(QuietMoves, BlacksPiecesHaveTheSameOrder) {
    for (const Order& o : orders) {
        const std::string fen = with_colours_exchanged(o.fen);
        for (const int n : {1, 2, 3, 8, 9}) {
            EXPECT_EQ(quiet_order(n, fen, o.from), o.moves) << n << ' ' << fen;
        }
    }
}

TEST_F(QuietMoves, ARayEndsAtTheFirstManAndNothingIsTaken) {
    for (const Case& each :
         for_both_colours("7k/8/3p4/8/1P1R1n2/8/3K4/8 w - - 0 1", {"d4e4", "d4c4", "d4d5", "d4d3"})) {
        for (const int n : {1, 2, 3, 8, 9}) {
            const std::string from = each.moves[0].substr(0, 2);
            EXPECT_EQ(sorted(quiet_order(n, each.fen, from)), sorted(each.moves)) << n;
        }
    }
    EXPECT_EQ(sorted(quiet_order(4, "7k/8/2p1P3/5n2/3N4/8/8/K7 w - - 0 1", "d4")),
              (Texts{"d4b3", "d4b5", "d4c2", "d4e2", "d4f3"}));
}

TEST_F(QuietMoves, AKingsStepToAnOccupiedSquareIsNone) {
    EXPECT_EQ(quiet_order(4, "7k/8/8/2ppp3/2PKP3/2PPP3/8/8 w - - 0 1", "d4"), Texts{});
    EXPECT_EQ(quiet_order(4, "7k/8/8/3p4/3K4/3P4/8/8 w - - 0 1", "d4"), (Texts{"d4c3", "d4e5", "d4c5", "d4e3"}));
}

TEST_F(QuietMoves, IllegalOnesAreDropped) {
    EXPECT_EQ(sorted(quiet_order(4, "4r2k/8/8/8/4R3/8/8/4K3 w - - 0 1", "e4")),
              (Texts{"e4e2", "e4e3", "e4e5", "e4e6", "e4e7"}));
}

// --- Quiet moves: pawns ---

TEST_F(QuietMoves, TheDoubleStepComesBeforeTheSingleOne) {
    for (const Case& each : for_both_colours("7k/8/8/8/8/8/3P4/K7 w - - 0 1", {"d2d4", "d2d3"})) {
        for (int n = 1; n <= 23; ++n) {
            EXPECT_EQ(quiet_order(n, each.fen, each.moves[0].substr(0, 2)), each.moves) << n;
        }
    }
}

TEST_F(QuietMoves, APawnDoesNotJump) {
    for (const Case& each : for_both_colours("7k/8/8/8/3n4/8/3P4/K7 w - - 0 1", {"d2d3"})) {
        EXPECT_EQ(quiet_order(4, each.fen, each.moves[0].substr(0, 2)), each.moves);
    }
    for (const Case& each : for_both_colours("7k/8/8/8/8/3n4/3P4/K7 w - - 0 1", {"d2d3"})) {
        EXPECT_EQ(quiet_order(4, each.fen, each.moves[0].substr(0, 2)), Texts{});
    }
}

TEST_F(QuietMoves, OnlyFromItsOwnRankAPawnStepsTwice) {
    for (const Case& each : for_both_colours("7k/8/8/8/8/3P4/8/K7 w - - 0 1", {"d3d4"})) {
        EXPECT_EQ(quiet_order(4, each.fen, each.moves[0].substr(0, 2)), each.moves);
    }
}

TEST_F(QuietMoves, EnPassantComesBeforeThePush) {
    for (const Case& each : for_both_colours("7k/8/8/3Pp3/8/8/8/K7 w - e6 0 1", {"d5e6", "d5d6"})) {
        for (int n = 1; n <= 23; ++n) {
            EXPECT_EQ(quiet_order(n, each.fen, each.moves[0].substr(0, 2)), each.moves) << n;
        }
    }
}

TEST_F(QuietMoves, EnPassantToTheHigherFileComesFirst) {
    for (const Case& each : for_both_colours("7k/8/8/2pPp3/8/8/8/K7 w - e6 0 1", {"d5e6", "d5c6", "d5d6"})) {
        for (const int n : {1, 2, 3, 8, 9}) {
            const Colour c = set_up_ply(n, each.fen);
            ply[n].jm_D.p_ah[other(c)][2] = 1;
            EXPECT_EQ(texts_of(quiet_moves_tried(n, each.moves[0].substr(0, 2))), each.moves) << n;
        }
    }
}

TEST_F(QuietMoves, EnPassantNeedsTheFlagTheRankAndAnEmptySquare) {
    const auto tried = [](const Case& each, auto mark) {
        const Colour c = set_up_ply(4, each.fen);
        mark(ply[4].jm_D.p_ah, c);
        return texts_of(quiet_moves_tried(4, each.moves[0].substr(0, 2)));
    };
    for (const Case& each : for_both_colours("7k/8/8/2pPp3/8/8/8/K7 w - - 0 1", {"d5d6"})) {
        EXPECT_EQ(tried(each, [](auto&, Colour) {}), each.moves);
        EXPECT_EQ(tried(each, [](auto& p, Colour c) { p[c].fill(1); }), each.moves) << "the own colour's flags";
        EXPECT_EQ(tried(each, [](auto& p, Colour c) { p[other(c)][3] = p[other(c)][5] = 1; }), each.moves)
            << "other files";
    }
    for (const Case& each : for_both_colours("7k/8/2r1n3/2pPp3/8/8/8/K7 w - - 0 1", {"d5d6"})) {
        EXPECT_EQ(tried(each, [](auto& p, Colour c) { p[other(c)].fill(1); }), each.moves) << "occupied";
    }
    for (const Case& each : for_both_colours("7k/8/8/8/2pPp3/8/8/K7 w - - 0 1", {"d4d5"})) {
        EXPECT_EQ(tried(each, [](auto& p, Colour c) { p[other(c)].fill(1); }), each.moves) << "another rank";
    }
}

TEST_F(QuietMoves, EnPassantOfTheEdgeFilesStaysOnTheBoard) {
    for (const Case& each : for_both_colours("7k/8/8/Pp6/8/8/8/K7 w - b6 0 1", {"a5b6", "a5a6"})) {
        const Colour c = set_up_ply(4, each.fen);
        ply[4].jm_D.p_ah[other(c)].fill(1);
        EXPECT_EQ(texts_of(quiet_moves_tried(4, each.moves[0].substr(0, 2))), each.moves);
    }
    for (const Case& each : for_both_colours("k7/8/8/6pP/8/8/8/K7 w - g6 0 1", {"h5g6", "h5h6"})) {
        const Colour c = set_up_ply(4, each.fen);
        ply[4].jm_D.p_ah[other(c)].fill(1);
        EXPECT_EQ(texts_of(quiet_moves_tried(4, each.moves[0].substr(0, 2))), each.moves);
    }
}

TEST_F(QuietMoves, ThePushToTheLastRankIsLeftOutAtOddPliesFromSevenOn) {
    for (const Case& each : for_both_colours("7k/3P4/8/8/8/8/8/K7 w - - 0 1", {"d7d8"})) {
        for (int n = 1; n <= 23; ++n) {
            const bool left_out = n % 2 == 1 && n >= 7;
            EXPECT_EQ(quiet_order(n, each.fen, each.moves[0].substr(0, 2)), left_out ? Texts{} : each.moves) << n;
        }
    }
}

TEST_F(QuietMoves, PromotionIsToAQueen) {
    for (const Case& each : for_both_colours("7k/3P4/8/8/8/8/8/K7 w - - 0 1", {"d7d8"})) {
        const Colour c = set_up_ply(4, each.fen);
        const int promoted = move_from(each.moves[0]).to();
        const Script children([&](const Call& x) -> std::optional<float> {
            if (x.n == 5) {
                return std::nullopt;
            }
            EXPECT_EQ(ply[5].tabd[promoted], code(c, dama)) << "where the child's replies are tried";
            return 0.0F;
        });
        run_quiet(4, each.moves[0].substr(0, 2));
        EXPECT_EQ(children.moves(5), each.moves);
        EXPECT_GT(children.count(6), 0U);
    }
}

TEST_F(QuietMoves, PawnsAreVisitedByFileAndTheMostAdvancedFirst) {
    for (const Case& each : for_both_colours("7k/8/1P6/1p2P3/1P6/4P3/8/K7 w - - 0 1", {"b6b7", "e5e6", "e3e4"})) {
        for (const int n : {1, 2, 3, 8, 9}) {
            set_up_ply(n, each.fen);
            Texts moves = texts_of(replies_tried(n));
            moves.resize(3);
            EXPECT_EQ(moves, each.moves) << n;
        }
    }
}

TEST_F(QuietMoves, PiecesAreVisitedInTheirOrder) {
    for (const Case& each : for_both_colours("7k/8/8/8/8/8/7P/KQRBN3 w - - 0 1", {})) {
        for (const int n : {1, 2, 3, 8, 9}) {
            set_up_ply(n, each.fen);
            std::string files;
            for (const std::string& m : texts_of(replies_tried(n))) {
                if (files.empty() || files.back() != m[0]) {
                    files += m[0];
                }
            }
            EXPECT_EQ(files, "hedcba") << "pawn, knight, bishop, rook, queen, king";
        }
    }
}

TEST_F(QuietMoves, PiecesOfAKindAreVisitedByFileAndThenByRank) {
    for (const int n : {1, 2, 3, 8, 9}) {
        set_up_ply(n, "k7/8/3N4/6N1/1N6/8/3N4/6K1 w - - 0 1");
        std::string visited;
        for (const std::string& m : texts_of(replies_tried(n))) {
            if (!visited.ends_with(m.substr(0, 2))) {
                visited += m.substr(0, 2);
            }
        }
        EXPECT_EQ(visited, "b4d2d6g5g1");
    }
}

// --- Quiet moves: castling ---

TEST_F(QuietMoves, CastlingComesBeforeTheKingsSteps) {
    for (const Case& each : for_both_colours("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        const bool white_to_move = position_of(each.fen).white_to_move;
        const Texts expected = white_to_move ? Texts{"e1g1", "e1c1", "e1f1", "e1d1", "e1e2", "e1f2", "e1d2"}
                                             : Texts{"e8g8", "e8c8", "e8f8", "e8d8", "e8e7", "e8d7", "e8f7"};
        for (const int n : plies) {
            EXPECT_EQ(quiet_order(n, each.fen, white_to_move ? "e1" : "e8"), expected) << n;
        }
    }
}

// Runs the king's generator of a ply and looks at the castling values while children are searched: the castling named
// has the ply's value, all others have none.
void expect_castling_value(int n, const std::string& fen, const std::string& castling, bool test_form, int value) {
    const Colour c = set_up_ply(n, fen);
    if (test_form) {
        slots.aa_dd[n] = move_from(castling);
    }
    pass.roque = {77, 77};
    int seen = 0;
    const ChildrenOf children(n, [&](Move m) {
        if (text_of(m) == castling) {
            ++seen;
            EXPECT_EQ(pass.roque[c], value) << n;
            EXPECT_EQ(pass.roque[other(c)], 77) << "the other colour's is left alone";
        } else if (std::abs(m.to_file - m.from_file) != 2) {
            EXPECT_EQ(pass.roque[c], 0);
        }
    });
    run_quiet(n, castling.substr(0, 2), test_form);
    EXPECT_EQ(seen, 1) << n << castling << test_form;
    EXPECT_EQ(pass.roque[c], 0) << n;
}

TEST_F(QuietMoves, ThePliesCastlingValueStandsDuringTheRecursionAlone) {
    constexpr std::array value_of_ply_n{0, 10, 9, 9, 8, 8, 7, 7, 6, 6, 5, 5, 4, 4, 3, 3, 2, 2, 2, 2, 2, 2, 2, 2};
    for (const Case& each : for_both_colours("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        for (const int n : plies) {
            for (const std::string& castling : each.moves) {
                for (const bool test_form : {false, true}) {
                    expect_castling_value(n, each.fen, castling, test_form, value_of_ply_n[n]);
                }
            }
        }
    }
}

TEST_F(QuietMoves, TheKingsWalkTellsWhetherItsSideIsInCheck) {
    for (const bool test_form : {false, true}) {
        for (const Case& each : for_both_colours("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1"})) {
            for (int n = 1; n <= 23; ++n) {
                set_up_ply(n, each.fen);
                slots.aa_dd[n] = move_from("a1a2");
                quiet_moves_tried(n, each.moves[0], test_form);
                EXPECT_EQ(ply[n].XEQUE_MATE, 0) << n << test_form;
            }
        }
        for (const Case& each : for_both_colours("4r1k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1"})) {
            for (int n = 1; n <= 23; ++n) {
                set_up_ply(n, each.fen);
                quiet_moves_tried(n, each.moves[0], test_form);
                EXPECT_EQ(ply[n].XEQUE_MATE, 1) << n << test_form;
            }
        }
    }
}

TEST_F(QuietMoves, OtherPiecesWalksDoNotTell) {
    set_up_ply(4, "6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    quiet_moves_tried(4, "a1");
    EXPECT_EQ(ply[4].XEQUE_MATE, 1);
}

TEST_F(QuietMoves, ASideInCheckDoesNotCastle) {
    for (const Case& each : for_both_colours("4r1k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        for (const int n : plies) {
            const Texts moves = quiet_order(n, each.fen, each.moves[0].substr(0, 2));
            EXPECT_EQ(count_of(moves, each.moves[0]) + count_of(moves, each.moves[1]), 0) << n;
            set_up_ply(n, each.fen);
            slots.aa_dd[n] = move_from(each.moves[0]);
            EXPECT_EQ(quiet_moves_tried(n, each.moves[0].substr(0, 2), true).size(), 0U) << n;
        }
    }
}

TEST_F(QuietMoves, AStoredCastlingIsTriedByTheTestFormAndPassedByInTheWalk) {
    for (const Case& each : for_both_colours("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        for (const std::string& m : each.moves) {
            for (const int n : {2, 3, 8, 9, 23}) {
                set_up_ply(n, each.fen);
                slots.aa_dd[n] = move_from(m);
                EXPECT_EQ(texts_of(quiet_moves_tried(n, m.substr(0, 2), true)), (Texts{m})) << n;
                EXPECT_EQ(count_of(texts_of(quiet_moves_tried(n, m.substr(0, 2))), m), 0) << n;
            }
        }
    }
}

TEST_F(QuietMoves, AtPlyOneTheKingsWalkHasNoCastling) {
    for (const Case& each : for_both_colours("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        const Texts moves = quiet_order(1, each.fen, each.moves[0].substr(0, 2));
        EXPECT_EQ(moves.size(), 5U);
        EXPECT_EQ(count_of(moves, each.moves[0]) + count_of(moves, each.moves[1]), 0);
    }
}

// --- Quiet moves: the slot ---

TEST_F(QuietMoves, AStoredMoveComesBeforeTheWalkAndOnce) {
    for (const Case& each :
         for_both_colours("7k/8/3p4/8/1P1R1n2/4P3/3K4/8 w - - 0 1", {"d4d3", "e3f4", "d4f4", "d4d6"})) {
        for (const int n : {1, 2, 3, 6, 7, 8}) {
            set_up_ply(n, each.fen);
            slots.aa_dd[n] = move_from(each.moves[0]);
            const Texts moves = texts_of(replies_tried(n));
            EXPECT_EQ(count_of(moves, each.moves[0]), 1) << n;
            EXPECT_EQ(moves[3], each.moves[0]) << n << ": behind the three captures";
        }
    }
}

TEST_F(QuietMoves, TheTestFormTriesTheStoredMoveAlone) {
    for (const Order& o : orders) {
        for (const int n : {1, 2, 3, 8, 9}) {
            for (const std::string& m : o.moves) {
                set_up_ply(n, o.fen);
                slots.aa_dd[n] = move_from(m);
                EXPECT_EQ(texts_of(quiet_moves_tried(n, o.from, true)), (Texts{m})) << n;
                Texts others = o.moves;
                others.erase(std::find(others.begin(), others.end(), m));
                EXPECT_EQ(texts_of(quiet_moves_tried(n, o.from)), others) << n;
            }
        }
    }
}

TEST_F(QuietMoves, AStoredMoveOfAnotherKindOfPieceIsHarmless) {
    const char* fen = "7k/8/8/8/3N4/8/8/7K w - - 0 1";
    set_up_ply(4, fen);
    const Texts all = texts_of(replies_tried(4));
    for (const char* stored : {"d4d8", "d4g7", "d4d5", "d4h8", "h8g8", "a1a2", "d4d4"}) {
        set_up_ply(4, fen);
        slots.aa_dd[4] = move_from(stored);
        EXPECT_EQ(texts_of(replies_tried(4)), all) << stored;
    }
}

TEST_F(QuietMoves, AtPlyOneARefutedRootMoveHasNoMoreReplies) {
    for (const Order& o : orders) {
        for (const bool test_form : {false, true}) {
            set_up_ply(1, o.fen);
            slots.aa_dd[1] = move_from(o.moves[0]);
            bounds.alfa[0] = 5.0F;
            bounds.beta[1] = 5.0F;
            EXPECT_EQ(quiet_moves_tried(1, o.from, test_form).size(), 0U);
            EXPECT_EQ(ply[1].XEQUE_MATE, 1);
            bounds.beta[1] = 5.5F;
            EXPECT_GT(quiet_moves_tried(1, o.from, test_form).size(), 0U);
        }
    }
}

// --- The bound ---

TEST_F(CutOffs, TheBestChildMakesTheBoundOfThePly) {
    const std::array values{3.0F, -2.0F, 7.0F, 7.0F, -5.0F};
    for (const int n : plies) {
        for (const bool capturing : {false, true}) {
            set_up_ply(n, capturing ? "3R4/8/8/R2q3R/4P3/8/3R4/6K1 w - - 0 1" : "7k/8/8/8/3N4/8/8/7K w - - 0 1");
            std::size_t i = 0;
            const ChildrenOf children(n, [&](Move) { value_of_child(n) = values[i++ % 5]; });
            capturing ? run_captures(n, "d5") : run_quiet(n, "d4");
            EXPECT_GE(i, 5U);
            EXPECT_EQ(value_of_ply(n), n % 2 == 0 ? 7.0F : -5.0F) << n;
            EXPECT_EQ(ply[n].X_D, 0) << n;
            EXPECT_EQ(cut_flag_of(n), 0) << n;
        }
    }
}

TEST_F(CutOffs, WithoutAnImprovementThePlyHasShownNoReply) {
    for (const int n : plies) {
        set_up_ply(n, "7k/8/8/8/3N4/8/8/7K w - - 0 1");
        value_of_ply(n) = 4.0F;
        const ChildrenOf children(n, [n](Move) { value_of_child(n) = 4.0F; });  // as good is no improvement
        run_quiet(n, "d4");
        EXPECT_EQ(children.moves().size(), 8U);
        EXPECT_EQ(ply[n].X_D, 1) << n;
        EXPECT_EQ(value_of_ply(n), 4.0F);
    }
}

TEST_F(CutOffs, IllegalCandidatesLeaveThePlyWithoutReply) {
    for (const int n : plies) {
        set_up_ply(n, "5rk1/8/8/3p4/8/5B2/8/5K2 w - - 0 1");
        const ChildrenOf children(n, [n](Move) { value_of_child(n) = 0.0F; });
        run_captures(n, "d5");
        run_quiet(n, "f3");
        EXPECT_EQ(children.moves().size(), 0U) << n;
        EXPECT_EQ(ply[n].X_D, 1) << n;
    }
}

// --- Cut-offs: the chain ---

enum class Generator { captures, captures_test, quiet, quiet_test };
constexpr std::array generators{Generator::captures, Generator::captures_test, Generator::quiet, Generator::quiet_test};

std::ostream& operator<<(std::ostream& out, Generator g) {
    constexpr std::array names{"captures", "captures, test form", "quiet moves", "quiet moves, test form"};
    return out << names[static_cast<std::size_t>(g)];
}

struct Outcome {
    std::size_t tried;
    bool cut;
    std::string stored;
};

// Runs a generator of ply n on the position below, its children being worth v.
Outcome run_generator(int n, Generator g, float v) {
    const bool of_captures = g == Generator::captures || g == Generator::captures_test;
    const bool test_form = g == Generator::captures_test || g == Generator::quiet_test;
    slots.aa_dd[n] = slots.aag_ddg[n] = no_move;
    Move& slot = of_captures ? slots.aag_ddg[n] : slots.aa_dd[n];
    if (test_form) {
        slot = move_from(of_captures ? "d5e4" : "d2d4");
    }
    value_of_ply(n) = n % 2 == 0 ? start_of_alfa : start_of_beta;
    cut_flag_of(n) = 0;
    const ChildrenOf children(n, [&](Move) { value_of_child(n) = v; });
    of_captures ? run_captures(n, "d5", test_form) : run_quiet(n, "d2", test_form);
    return {children.moves().size(), cut_flag_of(n) != 0, is_move(slot) ? text_of(slot) : ""};
}

// Two captures of the queen, and a rook with quiet moves.
const char* const queen_attacked = "7k/8/8/3q4/4P3/1B6/3R4/6K1 w - - 0 1";

// A value that crosses the bound of any ancestor of the other side ends the node.
TEST_F(CutOffs, EveryAncestorOfTheOtherSideCuts) {
    for (const int n : plies) {
        const float beyond = n % 2 == 0 ? 0.25F : -0.25F;
        for (const Generator g : generators) {
            for (int k = n - 1; k >= 0; --k) {
                SCOPED_TRACE(testing::Message() << n << ' ' << k << ' ' << g);
                set_up_ply(n, queen_attacked);
                const bool of_other_side = (n - k) % 2 == 1;
                (n % 2 == 0 ? bounds.beta : bounds.alfa)[k] = 6.0F;  // the plies between are open
                EXPECT_EQ(run_generator(n, g, 6.0F).cut, of_other_side);
                EXPECT_FALSE(run_generator(n, g, 6.0F - beyond).cut);
                EXPECT_EQ(run_generator(n, g, 6.0F + beyond).cut, of_other_side);
            }
        }
    }
}

TEST_F(CutOffs, TheOwnLimitOfThePlyCuts) {
    for (const int n : plies) {
        for (const Generator g : generators) {
            SCOPED_TRACE(testing::Message() << n << ' ' << g);
            set_up_ply(n, queen_attacked);
            bounds.MAXcut.fill(100000.0F);
            bounds.MAXcut[n] = 50.0F;
            const float s = n % 2 == 0 ? 1.0F : -1.0F;
            EXPECT_TRUE(run_generator(n, g, s * 50.0F).cut);
            EXPECT_TRUE(run_generator(n, g, s * 51.0F).cut);
            EXPECT_FALSE(run_generator(n, g, s * 49.0F).cut);
            EXPECT_FALSE(run_generator(n, g, s * -60.0F).cut);
        }
    }
}

TEST_F(CutOffs, ACutStopsTheWalkAndTheFullFormStoresTheMove) {
    for (const int n : plies) {
        set_up_ply(n, queen_attacked);
        (n % 2 == 0 ? bounds.beta : bounds.alfa)[n - 1] = 6.0F;
        const Outcome captures = run_generator(n, Generator::captures, 6.0F);
        EXPECT_EQ(captures.tried, 1U) << n;
        EXPECT_EQ(captures.stored, "d5e4") << n;
        const Outcome quiet = run_generator(n, Generator::quiet, 6.0F);
        EXPECT_EQ(quiet.tried, 1U) << n;
        EXPECT_EQ(quiet.stored, "d2e2") << n;
    }
}

TEST_F(CutOffs, WithoutACutNothingIsStored) {
    for (const int n : plies) {
        set_up_ply(n, queen_attacked);
        const Outcome captures = run_generator(n, Generator::captures, 0.0F);
        EXPECT_GT(captures.tried, 1U) << n;
        EXPECT_EQ(captures.stored, "") << n;
        EXPECT_EQ(run_generator(n, Generator::quiet, 0.0F).stored, "") << n;
    }
}

// How many children are tried when each sets the flag of its parent's loop.
template <class Run>
std::size_t tried_while_flag_is_set(int n, Run run) {
    bounds.corte_beta[n - 1] = 0;
    const ChildrenOf children(n, [n](Move) { bounds.corte_beta[n - 1] = 1; });
    run();
    return children.moves().size();
}

TEST_F(CutOffs, AFlagSetBelowCountsAtPlySixAlone) {
    for (int n = 2; n < last_ply; n += 2) {
        set_up_ply(n, queen_attacked);
        slots.aa_dd[n] = slots.aag_ddg[n] = no_move;
        EXPECT_EQ(tried_while_flag_is_set(n, [n] { run_captures(n, "d5"); }), n == 6 ? 1U : 3U) << n;
        EXPECT_EQ(is_move(slots.aag_ddg[n]), n == 6) << n;
        EXPECT_EQ(tried_while_flag_is_set(n, [n] { run_quiet(n, "d2"); }) == 1, n == 6) << n;
        EXPECT_EQ(is_move(slots.aa_dd[n]), n == 6) << n;
    }
}

// --- The last ply that generates replies is content with its first move ---

TEST_F(CutOffs, AtItsLastPlyOneSearchedMoveIsEnoughAtOddPliesFromSevenOn) {
    for (const int n : plies) {
        const bool is_enough = n % 2 == 1 && n >= 7;
        for (const auto& [fen, from, number] : {std::tuple{"7k/8/8/8/3N4/8/8/7K w - - 0 1", "d4", 8U},
                                                {"7k/8/8/8/2B5/8/8/7K w - - 0 1", "c4", 11U},
                                                {"7k/8/8/8/3R4/8/8/7K w - - 0 1", "d4", 14U},
                                                {"7k/8/8/8/2Q5/8/8/7K w - - 0 1", "c4", 25U},
                                                {"7k/8/8/8/3K4/8/8/8 w - - 0 1", "d4", 8U},
                                                {"6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1", 7U}}) {
            set_up_ply(n, fen);
            search.deep = n;
            EXPECT_EQ(quiet_moves_tried(n, from).size(), is_enough ? 1U : number) << n << ' ' << fen;
            EXPECT_EQ(cut_flag_of(n), is_enough ? 1 : 0) << n;
            EXPECT_EQ(is_move(slots.aa_dd[n]), is_enough) << n;
        }
        set_up_ply(n, queen_attacked);
        search.deep = n;
        EXPECT_EQ(captures_tried(n, "d5").size(), is_enough ? 1U : 3U) << n;
        EXPECT_EQ(cut_flag_of(n), is_enough ? 1 : 0) << n;
        EXPECT_EQ(text_of(slots.aag_ddg[n]) == "d5e4", is_enough) << n;
    }
}

TEST_F(CutOffs, OneMoveIsNotEnoughAtAnyOtherDepth) {
    for (const int n : {7, 9, 15, 23}) {
        for (const int d : {n - 2, n + 2}) {
            set_up_ply(n, queen_attacked);
            search.deep = d;
            EXPECT_EQ(captures_tried(n, "d5").size(), 3U) << n;
            EXPECT_GT(quiet_moves_tried(n, "d2").size(), 1U) << n;
        }
    }
}

TEST_F(CutOffs, PawnPushesAreNotEnough) {
    for (const Case& each : for_both_colours("7k/8/8/8/8/8/3P4/K7 w - - 0 1", {"d2d4", "d2d3"})) {
        for (const int n : {7, 9, 15, 23}) {
            set_up_ply(n, each.fen);
            search.deep = n;
            EXPECT_EQ(texts_of(quiet_moves_tried(n, each.moves[0].substr(0, 2))), each.moves) << n;
            EXPECT_EQ(cut_flag_of(n), 0) << n;
        }
    }
}

TEST_F(CutOffs, AnEnPassantIsEnoughInBothForms) {
    for (const Case& each : for_both_colours("7k/8/8/2pPp3/8/8/8/K7 w - e6 0 1", {"d5e6", "d5c6", "d5d6"})) {
        const std::string from = each.moves[0].substr(0, 2);
        for (const int n : plies) {
            const bool is_enough = n % 2 == 1 && n >= 7;
            const Colour c = set_up_ply(n, each.fen);
            search.deep = n;
            ply[n].jm_D.p_ah[other(c)][2] = 1;
            EXPECT_EQ(quiet_moves_tried(n, from).size(), is_enough ? 1U : 3U) << n;
            EXPECT_EQ(cut_flag_of(n), is_enough ? 1 : 0) << n;
            for (const std::string& m : {each.moves[0], each.moves[1]}) {
                slots.aa_dd[n] = move_from(m);
                cut_flag_of(n) = 0;
                EXPECT_EQ(texts_of(quiet_moves_tried(n, from, true)), (Texts{m})) << n;
                EXPECT_EQ(cut_flag_of(n), is_enough ? 1 : 0) << n << m;
            }
        }
    }
}

TEST_F(CutOffs, TheTestFormsOfPiecesAndCapturesGoOn) {
    for (const int n : {7, 9, 15, 23}) {
        for (const Order& o : orders) {
            set_up_ply(n, o.fen);
            search.deep = n;
            slots.aa_dd[n] = move_from(o.moves[0]);
            EXPECT_EQ(quiet_moves_tried(n, o.from, true).size(), 1U);
            EXPECT_EQ(cut_flag_of(n), 0) << n << ' ' << o.fen;
        }
        set_up_ply(n, queen_attacked);
        search.deep = n;
        slots.aag_ddg[n] = move_from("d5e4");
        EXPECT_EQ(captures_tried(n, "d5", true).size(), 1U);
        EXPECT_EQ(cut_flag_of(n), 0) << n;
        set_up_ply(n, "6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1");
        search.deep = n;
        slots.aa_dd[n] = move_from("e1g1");
        EXPECT_EQ(quiet_moves_tried(n, "e1", true).size(), 1U);
        EXPECT_EQ(cut_flag_of(n), 0) << n;
    }
}

}  // namespace
