// The same lines give the same lines: in another process, and in one process that has forgotten what it remembers. All
// state is static and outlives the search, so that whatever a search leaves behind would show here.
#include "support/dialogue.h"
#include "support/process.h"
#include "support/transcript.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace tests;

// Searches of all kinds, without the clock: from the start position and from FEN, for both colours, with every option
// as shipped but for the depth.
Lines varied_conversation() {
    Lines lines{"setoption name Time control value false", "setoption name Own book value false"};
    const auto ask = [&lines](char deep, std::string_view position) {
        lines.push_back(std::string("setoption name Deep value ") + deep);
        lines.push_back("position " + std::string(position));
        lines.emplace_back("go wtime 99999999 btime 99999999");
    };
    ask('2', "startpos moves e2e4 e7e5 g1f3");
    ask('2', "startpos moves d2d4 g8f6 c2c4 e7e6");
    ask('5', "fen 8/5pk1/6p1/3P4/8/6P1/2p2PK1/8 w - - 0 1");
    ask('5', "fen 8/2p2pk1/1p4p1/8/P1P2P2/6K1/6P1/8 b - - 0 1");
    ask('3', "fen r3k2r/pp3ppp/8/3q4/3Q4/8/PP3PPP/R3K2R w KQkq - 0 1");
    ask('2', "fen 8/1P4k1/8/8/8/8/1p4K1/8 b - - 0 1");
    ask('4', "fen 8/8/3k4/8/8/3K4/3P4/8 w - - 0 1 moves d3e4 d6e6");
    return lines;
}

// Other searches, which leave other things behind: stored moves, bounds, flags of castling and of double steps.
Lines other_conversation() {
    return {"setoption name Time control value false",
            "setoption name Deep value 3",
            "position fen rnb1kbn1/pp1p2p1/3r4/q1p1p1Bp/P3PpP1/2NP3P/1PP1QP2/R3KBNR b Qq g3 0 11",
            "go wtime 99999999 btime 99999999",
            "position fen 5rk1/1b3p1p/pp3p2/3n1N2/1P6/P1qB1PP1/3Q3P/4R1K1 w - - 0 1",
            "go wtime 500 btime 500",
            "setoption name Deep value 5",
            "position fen 8/8/8/8/8/2k5/1p6/K7 w - - 0 1",
            "go wtime 99999999 btime 99999999"};
}

std::string as_input(const Lines& lines) {
    std::string all;
    for (const std::string& line : lines) {
        all += line + '\n';
    }
    return all;
}

Lines joined(std::initializer_list<Lines> parts) {
    Lines all;
    for (const Lines& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

// What the process has written to the lines behind the last "isready".
Lines written_since_ready(const Lines& lines) {
    const auto ready = std::find(lines.rbegin(), lines.rend(), "readyok");
    EXPECT_NE(ready, lines.rend());
    return {ready.base(), lines.end()};
}

const Lines forget_everything{"setoption name Clear memory", "setoption name Clear deep memory", "isready"};

TEST(Determinism, TwoProcessesWriteTheSame) {
    const std::string input = as_input(varied_conversation());
    const Lines one = without_clock(run_engine(input).lines());
    const Lines another = without_clock(run_engine(input).lines());
    EXPECT_GT(one.size(), 60U);
    EXPECT_EQ(one, another);
}

// The deepest ply shown is of the process, and so it is left out.
TEST(Determinism, OneProcessWritesTheSameTwiceOnceItsMemoryIsCleared) {
    const Lines conversation = varied_conversation();
    const Lines first = without_depths_reached(run_engine(as_input(conversation)).lines());
    const Lines both =
        without_depths_reached(run_engine(as_input(joined({conversation, forget_everything, conversation}))).lines());
    EXPECT_EQ(written_since_ready(both), first);
}

TEST(Determinism, AProcessThatRemembersAnswersTheSecondTimeFromMemory) {
    const Lines conversation = varied_conversation();
    const Lines both =
        without_depths_reached(run_engine(as_input(joined({conversation, {"isready"}, conversation}))).lines());
    const Lines second = written_since_ready(both);
    EXPECT_EQ(count_starting(second, "bestmove"), 7);
    EXPECT_EQ(second.size(), 14U) << "a final line and a reply each";
}

TEST(Determinism, ASearchDoesNotDependOnTheSearchesBeforeIt) {
    const Lines conversation = varied_conversation();
    const Lines alone = without_depths_reached(run_engine(as_input(conversation)).lines());
    const Lines after = without_depths_reached(
        run_engine(as_input(joined({other_conversation(), forget_everything, conversation}))).lines());
    EXPECT_EQ(written_since_ready(after), alone);
}

TEST(Determinism, AGameDoesNotDependOnTheGameBeforeIt) {
    const Lines conversation{"setoption name Own book value false",
                             "setoption name Deep value 2",
                             "position startpos",
                             "position startpos moves g1f3",
                             "position startpos moves g1f3 d7d5 d2d4",
                             "go wtime 99999999 btime 99999999"};
    const Lines alone = without_depths_reached(run_engine(as_input(conversation)).lines());
    const Lines after = without_depths_reached(
        run_engine(as_input(joined({other_conversation(), forget_everything, conversation}))).lines());
    EXPECT_EQ(written_since_ready(after), alone);
}

// Each search begins with empty shallow tables, though nobody has cleared them: a position searched again takes as many
// nodes as the first time.
TEST(Determinism, APositionSearchedAgainWritesTheSame) {
    Lines asked_once;
    Lines asked_twice;
    Lines question;
    for (const std::string& line : varied_conversation()) {
        question.push_back(line);
        if (line.starts_with("go ")) {
            asked_once = joined({asked_once, question, {"isready"}});
            asked_twice = joined({asked_twice, question, {"setoption name Clear memory"}, question, {"isready"}});
            question.clear();
        }
    }
    // Between two "readyok" stands one answer, and then the same answer twice.
    const auto answers = [](const Lines& lines) {
        std::vector<Lines> all(1);
        for (const std::string& line : lines) {
            if (line == "readyok") {
                all.emplace_back();
            } else {
                all.back().push_back(line);
            }
        }
        return all;
    };
    const auto once = answers(without_depths_reached(run_engine(as_input(asked_once)).lines()));
    const auto twice = answers(without_depths_reached(run_engine(as_input(asked_twice)).lines()));
    ASSERT_EQ(once.size(), 8U);
    ASSERT_EQ(twice.size(), once.size());
    for (std::size_t k = 0; k < once.size(); ++k) {
        EXPECT_EQ(twice[k], joined({once[k], once[k]})) << "question " << k;
    }
}

}  // namespace
