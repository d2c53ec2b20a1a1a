// The opening book: whole lines of text with a fixed reply.
#include "uci/book.h"

#include "support/chess_rules.h"
#include "support/dialogue.h"
#include "support/engine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace {

using namespace tests;
using namespace ondrel;

struct LineOfBook {
    std::string moves, reply;
};

void PrintTo(const LineOfBook& x, std::ostream* os) { *os << '"' << x.moves << "\": " << x.reply; }

const std::vector<LineOfBook> first_moves{
    {"", "e2e4"},     {"e2e4", "d7d5"}, {"d2d4", "c7c5"}, {"g1f3", "g8f6"},
    {"b1c3", "e7e5"}, {"b2b3", "e7e5"}, {"g2g3", "d7d5"},
};

const std::vector<LineOfBook> later_moves{
    // As White
    {"e2e4 e7e5", "g1f3"},
    {"e2e4 e7e5 g1f3 b8c6", "f1c4"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 f8c5", "c2c3"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 f8c5 c2c3 g8f6", "d2d4"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6", "f3g5"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5", "e4d5"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5 e4d5 f6d5", "g5f7"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5 e4d5 f6d5 g5f7 e8f7", "d1f3"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5 e4d5 f6d5 g5f7 e8f7 d1f3 f7e6", "b1c3"},
    {"e2e4 e7e5 g1f3 g8f6", "b1c3"},
    {"e2e4 d7d5", "e4d5"},
    {"e2e4 g8f6", "b1c3"},
    {"e2e4 b8c6", "d2d4"},
    {"e2e4 c7c5", "g1f3"},
    {"e2e4 c7c5 g1f3 b8c6", "f1c4"},
    {"e2e4 c7c6", "d2d4"},
    {"e2e4 c7c6 d2d4 d7d5", "e4d5"},
    {"e2e4 d7d6", "d2d4"},
    {"e2e4 e7e6", "d2d4"},
    {"e2e4 e7e6 d2d4 d7d5", "e4d5"},
    {"e2e4 b7b6", "d2d4"},
    {"e2e4 g7g6", "d2d4"},
    // As Black
    {"e2e4 d7d5 e4e5", "c8f5"},
    {"e2e4 d7d5 e4d5", "g8f6"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4", "f6d5"},
    {"e2e4 d7d5 e4d5 g8f6 c2c4", "e7e6"},
    {"e2e4 d7d5 e4d5 g8f6 f1b5", "c8d7"},
    {"e2e4 d7d5 e4d5 g8f6 f1b5 c8d7 b5c4", "b7b5"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4", "d5b4"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4", "b8c6"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4 b8c6 d4d5", "b7b5"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4 b8c6 d4d5 b7b5 c4b5", "c8f5"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4 b8c6 d4d5 b7b5 c4b5 c8f5 b1a3", "d8d5"},
    {"d2d4 c7c5 d4c5", "e7e6"},
    {"d2d4 c7c5 d4c5 e7e6 b2b4", "a7a5"},
    {"d2d4 c7c5 d4d5", "d7d6"},
};

std::string position_line(const LineOfBook& x) {
    return x.moves.empty() ? "position startpos" : "position startpos moves " + x.moves;
}

rules::Position position_after(const LineOfBook& x) {
    rules::Position p = rules::start_position();
    std::istringstream moves(x.moves);
    for (std::string m; moves >> m;) {
        const auto read = rules::from_uci(m);
        EXPECT_TRUE(read && rules::is_legal(p, *read)) << m;
        p = rules::play(p, *read);
    }
    return p;
}

class BookLine : public testing::TestWithParam<LineOfBook> {
protected:
    void SetUp() override { fresh_process(); }

    [[nodiscard]] static Lines reply() { return {"bestmove " + GetParam().reply}; }
};

TEST_P(BookLine, IsAnsweredAtOnceAndItsGoIsDropped) {
    EXPECT_EQ(dialogue({position_line(GetParam()), "go wtime 300000 btime 300000", "isready"}),
              (std::vector<Lines>{reply(), {}, {"readyok"}}));
}

TEST_P(BookLine, IsAnsweredBetweenMoves) {
    EXPECT_EQ(dialogue({"position startpos", position_line(GetParam()), "go"}),
              (std::vector<Lines>{{"bestmove e2e4"}, reply(), {}}));
}

TEST_P(BookLine, IsALegalMove) {
    const auto m = rules::from_uci(GetParam().reply);
    ASSERT_TRUE(m);
    EXPECT_TRUE(rules::is_legal(position_after(GetParam()), *m));
}

TEST_P(BookLine, IsOfTextNotOfPositions) {
    const std::string fen = "position fen " + rules::to_fen(position_after(GetParam()));
    const auto answers = dialogue({"setoption name Deep value 0", fen, "go"});
    EXPECT_EQ(answers[1], Lines{});
    EXPECT_EQ(count_starting(answers[2], "bestmove "), 1);
    EXPECT_GT(count_starting(answers[2], "info score "), 1);
}

TEST_P(BookLine, IsSearchedWithoutOwnBook) {
    const auto answers = dialogue(
        {"setoption name Own book value false", "setoption name Deep value 0", position_line(GetParam()), "go"});
    // The first move of a game is searched at once, a later one waits for go.
    const bool first = GetParam().moves.size() <= 4;
    EXPECT_GT(count_starting(answers[first ? 2 : 3], "info score "), 1);
    EXPECT_EQ(count_starting(answers[first ? 2 : 3], "bestmove "), 1);
    EXPECT_EQ(answers[first ? 3 : 2], Lines{});
}

// A first move has no search to fall back on.
class LaterBookLine : public BookLine {};

TEST_P(LaterBookLine, IsComparedWhole) {
    const auto answers = dialogue({"setoption name Deep value 0", position_line(GetParam()) + " ", "go"});
    EXPECT_EQ(answers[1], Lines{});
    EXPECT_EQ(count_starting(answers[2], "bestmove "), 1);
}

std::string name_of_line(const testing::TestParamInfo<LineOfBook>& info) {
    std::string name = "start_" + info.param.moves;
    for (char& x : name) {
        x = x == ' ' ? '_' : x;
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(First, BookLine, testing::ValuesIn(first_moves), name_of_line);
INSTANTIATE_TEST_SUITE_P(Later, BookLine, testing::ValuesIn(later_moves), name_of_line);
INSTANTIATE_TEST_SUITE_P(Later, LaterBookLine, testing::ValuesIn(later_moves), name_of_line);

class OpeningBook : public testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

TEST_F(OpeningBook, HasThirtySixLines) { EXPECT_EQ(later_moves.size(), 36U); }

TEST_F(OpeningBook, OpenGameNeedsNoGoAndNoInfo) {
    EXPECT_EQ(converse({"position startpos moves e2e4 e7e5"}), Lines{"bestmove g1f3"});
}

TEST_F(OpeningBook, QueensPawnPushedOn) {
    EXPECT_EQ(converse({"position startpos moves d2d4 c7c5 d4d5"}), Lines{"bestmove d7d6"});
}

TEST_F(OpeningBook, LineOutsideWaitsForGo) {
    const auto answers = dialogue({"setoption name Deep value 0", "position startpos moves e2e4 a7a6", "go"});
    EXPECT_EQ(answers[1], Lines{});
    EXPECT_EQ(count_starting(answers[2], "bestmove "), 1);
    EXPECT_GT(count_starting(answers[2], "info score "), 1);
}

TEST_F(OpeningBook, DifferentSpacingIsOutside) {
    for (const char* line : {"position startpos moves e2e4  e7e5", "position startpos moves e2e4 e7e5x",
                             "position startpos  moves e2e4 e7e5", "position startpos moves  e2e4 e7e5"}) {
        fresh_process();
        EXPECT_EQ(dialogue({"setoption name Deep value 0", line, "isready"})[1], Lines{}) << line;
    }
}

TEST_F(OpeningBook, TranspositionIsOutside) {
    const auto answers = dialogue({"setoption name Deep value 0", "position startpos moves e2e4 b8c6 g1f3 e7e5", "go"});
    EXPECT_EQ(answers[1], Lines{});
}

TEST_F(OpeningBook, FirstMovesAreComparedWhole) {
    EXPECT_EQ(converse({"position startpos moves E2e4"}), Lines{});
    // The one-move form is known by characters, the reply by the whole line.
    EXPECT_EQ(converse({"position startpos xoves e2e4"}), Lines{});
    EXPECT_EQ(converse({"position startpos mOves e2e4"}), Lines{});
    EXPECT_EQ(converse({"position startpos moves e2e"}), Lines{});
}

TEST_F(OpeningBook, OtherFirstMovesHaveNoReply) {
    for (const rules::Move& m : rules::legal_moves(rules::start_position())) {
        const std::string move = rules::to_uci(m);
        if (std::ranges::any_of(first_moves, [&](const auto& x) { return x.moves == move; })) {
            continue;
        }
        EXPECT_EQ(converse({"position startpos moves " + move, "go"}), Lines{}) << move;
    }
}

TEST_F(OpeningBook, IsEnteredAgainAfterALineOutside) {
    const auto answers = dialogue({"setoption name Deep value 0", "position startpos moves e2e4 a7a6", "go",
                                   "position startpos moves e2e4 e7e5", "position startpos moves e2e4 e7e5"});
    EXPECT_EQ(answers[3], Lines{"bestmove g1f3"});
    EXPECT_EQ(answers[4], Lines{"bestmove g1f3"});
}

// White's table is not asked for Black and the other way round.
TEST_F(OpeningBook, EachColourHasItsOwnTable) {
    for (const LineOfBook& x : later_moves) {
        const bool white_to_move = std::ranges::count(x.moves, ' ') % 2 == 1;
        command.in = position_line(x);
        EXPECT_EQ(with_input("", Own_Book_b), white_to_move ? "bestmove " + x.reply + "\n" : "");
        EXPECT_EQ(own_book.OwnBk, white_to_move ? 1 : 0);
        EXPECT_EQ(with_input("", Own_Book_p), white_to_move ? "" : "bestmove " + x.reply + "\n");
        EXPECT_EQ(own_book.OwnBk, white_to_move ? 0 : 1);
    }
}

TEST_F(OpeningBook, FirstMovesAreInNeitherTable) {
    for (const LineOfBook& x : first_moves) {
        command.in = position_line(x);
        EXPECT_EQ(with_input("", Own_Book_b) + with_input("", Own_Book_p), "") << command.in;
    }
}

TEST_F(OpeningBook, ResultIsLeftWhereTheBookIsNotAsked) {
    converse({"setoption name Deep value 0", "position startpos moves e2e4 e7e5"});
    EXPECT_EQ(own_book.OwnBk, 1);
    converse({"position fen 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", "go"});
    EXPECT_EQ(own_book.OwnBk, 1);
    converse({"position startpos moves e2e4 a7a6", "go"});
    EXPECT_EQ(own_book.OwnBk, 0);
}

}  // namespace
