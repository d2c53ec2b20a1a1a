// Forced mates in one, two and three moves, found by whole searches with the defaults and a clock of a minute. A small
// brute-force solver on an independent move generator says what is true of each position.
#include "support/chess_rules.h"
#include "support/engine.h"
#include "support/scripted.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace tests;
using namespace ondrel;

// --- The solver ---

bool mates_within(const rules::Position& position, int moves);

// Whether every reply, and be it none at all, is mated within that many moves.
bool loses_within(const rules::Position& position, int moves) {
    const std::vector<rules::Move> replies = rules::legal_moves(position);
    if (replies.empty()) {
        return rules::is_checkmate(position);
    }
    return moves > 0 && std::all_of(replies.begin(), replies.end(), [&](const rules::Move& reply) {
               return mates_within(rules::play(position, reply), moves);
           });
}

bool mates_within(const rules::Position& position, int moves) {
    const std::vector<rules::Move> all = rules::legal_moves(position);
    return std::any_of(all.begin(), all.end(), [&](const rules::Move& move) {
        return (moves > 1 || rules::gives_check(position, move)) &&
               loses_within(rules::play(position, move), moves - 1);
    });
}

// Moves to the nearest mate, 0 if there is none within three.
int mate_distance(const rules::Position& position) {
    for (int moves = 1; moves <= 3; ++moves) {
        if (mates_within(position, moves)) {
            return moves;
        }
    }
    return 0;
}

TEST(MateSolver, KnowsMateFromStalemateAndFromAMereCheck) {
    EXPECT_EQ(mate_distance(*rules::from_fen("6k1/5ppp/8/8/8/8/8/R3K3 w - - 0 1")), 1);
    EXPECT_EQ(mate_distance(*rules::from_fen("6k1/5pp1/7p/8/8/8/8/R3K3 w - - 0 1")), 0);
    EXPECT_EQ(mate_distance(*rules::from_fen("k7/8/1K6/8/8/8/8/2B5 w - - 0 1")), 0);
    EXPECT_EQ(mate_distance(*rules::from_fen("5r1k/6pp/7N/8/2Q5/8/8/1K6 w - - 0 1")), 2);
    EXPECT_EQ(mate_distance(*rules::from_fen("8/8/7Q/8/8/4K3/6k1/8 w - - 0 1")), 3);
}

// --- The engine ---

struct Problem {
    const char* name;
    const char* fen;
    int distance;
};

std::ostream& operator<<(std::ostream& out, const Problem& p) { return out << p.fen; }

constexpr std::array problems{
    Problem{"BackRank", "6k1/5ppp/8/8/8/8/8/R3K3 w - - 0 1", 1},
    Problem{"BackRankBehindARook", "4r1k1/5ppp/8/8/8/8/4R3/K3R3 w - - 0 1", 1},
    Problem{"Smothered", "6rk/6pp/8/6N1/8/8/8/K7 w - - 0 1", 1},
    Problem{"LadderEnd", "7k/R7/8/8/8/8/8/1R4K1 w - - 0 1", 1},
    Problem{"QueenAndKingOnTheEdge", "7k/8/6K1/8/8/8/8/1Q6 w - - 0 1", 1},
    Problem{"QueenAndKingFaceToFace", "6k1/8/6K1/8/8/8/8/3Q4 w - - 0 1", 1},
    Problem{"QueenInTheCorner", "8/8/8/8/2Q5/K7/8/k7 w - - 0 1", 1},
    Problem{"Promotion", "6k1/P4ppp/8/8/8/8/8/K7 w - - 0 1", 1},
    Problem{"QueenAndKnight", "7k/6pp/8/6N1/8/8/8/K6Q w - - 0 1", 1},
    Problem{"KnightGuardsTheQueen", "4N3/7k/8/4Q2p/8/8/8/K7 w - - 0 1", 1},
    Problem{"QueenAndBishop", "5rk1/5ppp/8/8/8/3B4/8/K6Q w - - 0 1", 1},
    Problem{"KingUncoversTheBishop", "7k/7p/5K2/8/8/8/1B6/8 w - - 0 1", 1},
    Problem{"RookAndKing", "7k/8/6K1/8/8/8/8/R7 w - - 0 1", 1},
    Problem{"PawnPush", "7k/5K1p/6P1/8/8/8/8/8 w - - 0 1", 1},
    Problem{"Epaulettes", "3rkr2/8/8/8/8/1Q6/8/4K3 w - - 0 1", 1},
    Problem{"RookAndKnightInTheCorner", "7k/R7/5N2/8/8/8/8/K7 w - - 0 1", 1},
    Problem{"ScholarsMate", "r1bqkb1r/pppp1ppp/2n2n2/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR w KQkq - 4 4", 1},
    Problem{"FoolsMate", "rnbqkbnr/pppp1ppp/8/4p3/6P1/5P2/PPPPP2P/RNBQKBNR b KQkq - 0 2", 1},
    Problem{"RookBehindThePawn", "6k1/8/5KP1/8/8/8/8/R7 w - - 0 1", 1},

    Problem{"RookWaits", "7k/8/5K2/8/8/8/8/R7 w - - 0 1", 2},
    Problem{"RookCutsTheKingOff", "7k/8/4K3/8/8/8/8/R7 w - - 0 1", 2},
    Problem{"QueenNoStalemate", "7k/8/5K2/8/8/8/8/1Q6 w - - 0 1", 2},
    Problem{"SmotheredByASacrifice", "5r1k/6pp/7N/8/2Q5/8/8/1K6 w - - 0 1", 2},
    Problem{"BackRankBySacrifice", "2rr2k1/5ppp/8/8/8/8/3Q4/3R2K1 w - - 0 1", 2},
    Problem{"BackRankOnTheSecondFile", "1r2r1k1/5ppp/8/8/8/8/4R3/KQ2R3 w - - 0 1", 2},
    Problem{"KingBeforePromotion", "7k/P7/5K2/8/8/8/8/8 w - - 0 1", 2},
    Problem{"PromotionThenMate", "8/P6k/5K2/8/8/8/8/8 w - - 0 1", 2},
    Problem{"Ladder", "8/k7/1R6/8/8/8/5R2/K7 w - - 0 1", 2},
    Problem{"QueenAndKnightAgainstAPawn", "8/8/6K1/p7/8/k7/8/N3Q3 w - - 0 1", 2},
    Problem{"CaptureThenMate", "1k6/4Q3/8/8/8/5R2/8/5r1K w - - 0 1", 2},
    Problem{"RookAndPawns", "8/5K2/7k/5R2/p7/P7/8/8 w - - 0 1", 2},
    Problem{"RookAndBishop", "8/8/8/7p/R7/8/5B1k/4K3 w - - 0 1", 2},
    Problem{"QueenAndBishopAgainstPawns", "8/p7/5p2/8/1Q6/8/2k1K3/6B1 w - - 0 1", 2},

    Problem{"QueenAndKingFromAfar", "8/8/7Q/8/8/4K3/6k1/8 w - - 0 1", 3},
    Problem{"LadderWithTheKing", "4R3/8/8/8/4K3/7k/8/5R2 w - - 0 1", 3},
    Problem{"QueenAndKnightDrive", "4N3/1Q6/7k/8/8/3p4/1K6/8 w - - 0 1", 3},
    Problem{"RookTakesRook", "1k6/4K3/8/7Q/8/8/8/4r1R1 w - - 0 1", 3},
    Problem{"QueenAndBishopDrive", "2k5/8/3Q4/7B/p1K5/4p3/8/8 w - - 0 1", 3},
    Problem{"RookAndPawnCage", "8/8/8/8/7k/5K2/2p1R1P1/8 w - - 0 1", 3},
    Problem{"RookAndBishopCage", "8/4R3/3K4/k1p5/8/5B2/8/8 w - - 0 1", 3},
};

float score_of_mate_in(int moves) { return 16500.0F - 1100.0F * static_cast<float>(moves); }

class Mates : public testing::TestWithParam<Problem> {
protected:
    void SetUp() override { fresh_process(); }

    static std::vector<std::string> answer(const std::string& fen) {
        return converse({"position fen " + fen, "go wtime 60000 btime 60000", "quit"});
    }
    // The move of a "bestmove" line.
    static rules::Move best_move_of(const std::string& line) {
        constexpr std::string_view head = "bestmove ";
        EXPECT_TRUE(line.starts_with(head)) << line;
        return rules::from_uci(line.substr(head.size())).value_or(rules::Move{});
    }
    static void expect_mate(const rules::Position& position, int distance) {
        SCOPED_TRACE(rules::to_fen(position));
        const std::vector<std::string> lines = answer(rules::to_fen(position));
        ASSERT_GE(lines.size(), 2U);
        EXPECT_EQ(search.E, score_of_mate_in(distance));
        // The two nearest mates share a number in what is shown.
        const std::string shown = "info score mate " + std::to_string(std::max(1, distance - 1)) + " ";
        EXPECT_TRUE(lines[lines.size() - 2].starts_with(shown)) << lines[lines.size() - 2];
        const rules::Move move = best_move_of(lines.back());
        ASSERT_TRUE(rules::is_legal(position, move)) << lines.back();
        EXPECT_TRUE(loses_within(rules::play(position, move), distance - 1)) << lines.back();
    }
};

// The same with the colours changed; the nearer mates are enough to show the mirror.
class MatesOfBlack : public Mates {};

std::vector<Problem> nearer_mates() {
    std::vector<Problem> near;
    std::copy_if(problems.begin(), problems.end(), std::back_inserter(near),
                 [](const Problem& p) { return p.distance <= 2; });
    return near;
}

std::string name_of(const testing::TestParamInfo<Problem>& p) {
    return std::string(p.param.name) + "In" + std::to_string(p.param.distance);
}

INSTANTIATE_TEST_SUITE_P(Problems, Mates, testing::ValuesIn(problems), name_of);
INSTANTIATE_TEST_SUITE_P(Problems, MatesOfBlack, testing::ValuesIn(nearer_mates()), name_of);

TEST_P(Mates, IsAsFarAsSaid) {
    const rules::Position position = *rules::from_fen(GetParam().fen);
    EXPECT_TRUE(rules::is_legal_position(position));
    EXPECT_EQ(mate_distance(position), GetParam().distance);
}

TEST_P(Mates, IsFoundAtItsDistance) { expect_mate(*rules::from_fen(GetParam().fen), GetParam().distance); }

TEST_P(MatesOfBlack, AreFoundAtTheirDistance) {
    expect_mate(rules::mirrored(*rules::from_fen(GetParam().fen)), GetParam().distance);
}

class MateChoice : public testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

// Of several mates in one the first in the order of the schedule is played: nothing can beat it.
TEST_F(MateChoice, FirstOfSeveralNearestMatesInTheScheduleIsPlayed) {
    for (const char* fen :
         {"8/8/8/Q7/8/6K1/8/7k w - - 0 1", "6k1/5ppp/8/8/8/8/8/RR2K3 w - - 0 1", "8/8/8/8/2Q5/K7/8/k7 w - - 0 1"}) {
        SCOPED_TRACE(fen);
        const rules::Position position = *rules::from_fen(fen);
        std::vector<std::string> mates;
        fresh_process();
        place_fen(fen);
        for (const Move m : root_moves_tried()) {
            const rules::Move move = *rules::from_uci(text_of(m));
            if (rules::is_checkmate(rules::play(position, move))) {
                mates.push_back(text_of(m));
            }
        }
        ASSERT_GE(mates.size(), 2U);
        fresh_process();
        const auto lines = converse({std::string("position fen ") + fen, "go wtime 60000 btime 60000", "quit"});
        EXPECT_EQ(lines.back(), "bestmove " + mates.front());
    }
}

// A nearer mate among the other moves takes over from the one that the first pass has found.
TEST_F(MateChoice, NearerMateIsPreferred) {
    options.deepp = 7;
    const Colour own = place_fen("6k1/5ppp/8/8/8/8/8/R3K2R w - - 0 1");
    const Script moves([](const Call& x) -> std::optional<float> {
        return text_of(x.m) == "a1a8" ? score_of_mate_in(2) : (text_of(x.m) == "h1h7" ? score_of_mate_in(3) : -50.0F);
    });
    search_whole(own);
    EXPECT_EQ(text_of(game.abcd), "a1a8");
    EXPECT_EQ(search.E, 14300.0F);
}

// The side that is mated puts it off as long as it can.
TEST_F(MateChoice, MateIsPutOff) {
    // Black's pawn move lets Rb8 mate at once; the king's moves hold out for one move more.
    constexpr auto fen = "7k/R7/p7/8/8/8/8/1R4K1 b - - 0 1";
    const rules::Position position = *rules::from_fen(fen);
    const auto lines = converse({std::string("position fen ") + fen, "go wtime 60000 btime 60000", "quit"});
    const rules::Move move = *rules::from_uci(lines.back().substr(9));
    int longest = 0;
    for (const rules::Move& m : rules::legal_moves(position)) {
        longest = std::max(longest, mate_distance(rules::play(position, m)));
    }
    EXPECT_EQ(mate_distance(rules::play(position, move)), longest);
    EXPECT_EQ(search.E, -16500.0F + 1100.0F * static_cast<float>(longest));
}

}  // namespace
