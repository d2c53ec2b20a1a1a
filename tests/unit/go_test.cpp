// The go line: its clock by the count of digits and the first of them, and the limits that follow from it.
#include "uci/go.h"

#include "support/dialogue.h"
#include "support/engine.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace tests;
using namespace ondrel;

// What a go line may change.
struct Budget {
    int tempo, deep;
    bool ample;  // SEARCH_E, IIDS and EXTRA_EVAL stand: no low time

    bool operator==(const Budget&) const = default;
};

void PrintTo(const Budget& x, std::ostream* os) {
    *os << "tempo " << x.tempo << " deep " << x.deep << (x.ample ? "" : " low time");
}

class Go : public testing::Test {
protected:
    void SetUp() override { fresh_process(); }

    // As after a position with that many men and the default options.
    static void prepare(int men) {
        search.deep = 9;
        search.tempo = 300000;
        search.SEARCH_E = search.IIDS = search.EXTRA_EVAL = 1;
        root.npecas = {men - men / 2, men / 2};
    }

    static Budget read(const std::string& line, int men = 30) {
        prepare(men);
        command.in = line;
        read_clock();
        EXPECT_EQ(search.SEARCH_E, search.IIDS);
        EXPECT_EQ(search.SEARCH_E, search.EXTRA_EVAL);
        return {search.tempo, search.deep, search.SEARCH_E != 0};
    }
};

// The first clock behind each of the four beginnings, and a second one that nobody reads.
const std::vector<std::string> starts{"go wtime ",
                                      "go btime ",
                                      "go movestogo 5 wtime ",
                                      "go movestogo 40 wtime ",
                                      "go movestogo 120 wtime ",
                                      "go movestogo 5 btime ",
                                      "go movestogo 40 btime "};

constexpr Budget unchanged{300000, 9, true};

// --- Digits ---

TEST_F(Go, ClockIsReadByItsDigitsInEveryForm) {
    const std::vector<std::pair<std::string, Budget>> clocks{
        {"7", {300000, 0, false}},           {"99", {300000, 0, false}},        {"999", {300000, 1, false}},
        {"9999", {300000, 3, false}},        {"99999", {90000, 7, true}},       {"123456", {100000, 9, true}},
        {"9876543", {9000000, 9, true}},     {"12345678", {10000000, 9, true}}, {"123456789", {10000000, 9, true}},
        {"1234567890", {10000000, 9, true}},
    };
    for (const std::string& start : starts) {
        for (const auto& [digits, expected] : clocks) {
            EXPECT_EQ(read(start + digits + " btime 1 winc 0 binc 0"), expected) << start << digits;
        }
    }
}

TEST_F(Go, LowTimeGoesDeeperWithFewMen) {
    struct Row {
        const char* clock;
        int men, deep;
    };
    for (const Row& x : {Row{"5", 0, 0}, Row{"5", 30, 0}, Row{"50", 0, 1}, Row{"50", 1, 1}, Row{"50", 2, 0},
                         Row{"500", 3, 3}, Row{"500", 4, 1}, Row{"500", 0, 3}, Row{"5000", 5, 5}, Row{"5000", 6, 3},
                         Row{"5000", 0, 5}, Row{"5000", 30, 3}}) {
        EXPECT_EQ(read(std::string("go wtime ") + x.clock + " btime 1", x.men), (Budget{300000, x.deep, false}))
            << x.clock << " with " << x.men;
    }
}

TEST_F(Go, FirstDigitGivesTheBudget) {
    for (int first = 1; first <= 9; ++first) {
        const std::string digit = std::to_string(first);
        EXPECT_EQ(read("go wtime " + digit + "00000 btime 1").tempo, first * 100000);
        EXPECT_EQ(read("go wtime " + digit + "99999 btime 1").tempo, first * 100000);
        EXPECT_EQ(read("go wtime " + digit + "999999 btime 1").tempo, first * 1000000);
        EXPECT_EQ(read("go wtime " + digit + "9999 btime 1").tempo, first * 10000);
    }
}

TEST_F(Go, ZeroAsTheFirstDigitSetsNothing) {
    for (const char* clock : {"00000", "09999", "000000", "099999", "0000000"}) {
        EXPECT_EQ(read(std::string("go wtime ") + clock + " btime 1"), unchanged) << clock;
    }
}

// Eight digits do not ask for the first.
TEST_F(Go, ZeroAsTheFirstOfEightDigitsIsLongAllTheSame) {
    EXPECT_EQ(read("go wtime 00000000 btime 1"), (Budget{10000000, 9, true}));
}

TEST_F(Go, ClockAtTheEndOfTheLineIsReadAsEightDigits) {
    for (const std::string& start : starts) {
        for (const char* clock : {"300000", "5", "99999", ""}) {
            EXPECT_EQ(read(start + clock), (Budget{10000000, 9, true})) << start << clock;
        }
    }
}

// The blank is looked for at seven positions behind the first digit, not at the first digit itself.
TEST_F(Go, DigitsAreTheDistanceToTheFirstBlankBehindTheFirst) {
    EXPECT_EQ(read("go wtime  5 btime 1"), (Budget{300000, 0, false}));   // blank, digit, blank: two
    EXPECT_EQ(read("go wtime  300000 btime 1"), unchanged);               // seven, the first no digit
    EXPECT_EQ(read("go wtime abc btime 1"), (Budget{300000, 1, false}));  // three
    EXPECT_EQ(read("go wtime 1234567x btime 1"), (Budget{10000000, 9, true}));
}

// A minus is a digit like any other: an interface whose time is up gets a quick reply.
TEST_F(Go, NegativeTimeCountsItsMinus) {
    EXPECT_EQ(read("go wtime -5 btime 1"), (Budget{300000, 0, false}));
    EXPECT_EQ(read("go wtime -50 btime 1"), (Budget{300000, 1, false}));
    EXPECT_EQ(read("go wtime -100 btime 1"), (Budget{300000, 3, false}));
    EXPECT_EQ(read("go wtime -1000 btime 1"), unchanged);
    EXPECT_EQ(read("go wtime -10000 btime 1"), unchanged);
}

// --- Forms ---

TEST_F(Go, LineWithoutAClockChangesNothing) {
    for (const char* line :
         {"go", "go ", "go infinite", "go movetime 1000", "go depth 10", "go ponder", "go mate 3", "go nodes 100000",
          "go winc 0 wtime 5 btime 5", "go ponder wtime 5 btime 5", "go movestogo 1234 wtime 5 btime 5"}) {
        EXPECT_EQ(read(line), unchanged) << line;
    }
}

TEST_F(Go, OnlyTheFirstClockIsReadWhoseverItIs) {
    EXPECT_EQ(read("go wtime 300000 btime 5 winc 0 binc 0").tempo, 300000);
    EXPECT_EQ(read("go btime 300000 wtime 5 winc 0 binc 0").tempo, 300000);
    EXPECT_EQ(read("go btime 5 wtime 300000 "), (Budget{300000, 0, false}));
}

TEST_F(Go, MovesToGoAreNotRead) {
    for (const char* count : {"1", "9", "10", "99", "100", "999"}) {
        EXPECT_EQ(read(std::string("go movestogo ") + count + " wtime 200000 btime 5"), (Budget{200000, 9, true}));
    }
}

TEST_F(Go, FormIsKnownBySingleCharacters) {
    EXPECT_EQ(read("goXXtXXXX200000 "), (Budget{200000, 9, true}));
    EXPECT_EQ(read("goXmXXXXXXXXXXXXtXXXX200000 "), (Budget{200000, 9, true}));
    EXPECT_EQ(read("goXmXXXXXXXXXXXXXtXXXX200000 "), (Budget{200000, 9, true}));
    EXPECT_EQ(read("goXmXXXXXXXXXXXXXXtXXXX200000 "), (Budget{200000, 9, true}));
    EXPECT_EQ(read("goXXXXXXXXXXXXXXtXXXX200000 "), unchanged);
}

// --- The examples of play ---

TEST_F(Go, FiveMinutesChangeNothing) { EXPECT_EQ(read("go wtime 300000 btime 300000"), unchanged); }

TEST_F(Go, UnderAHundredSecondsIsOnePassOfSeven) {
    EXPECT_EQ(read("go wtime 99999 btime 99999"), (Budget{90000, 7, true}));
}

TEST_F(Go, TwentyFiveSecondsAreLowTimeForAMediumMachine) {
    EXPECT_EQ(read("go wtime 25000 btime 25000"), (Budget{20000, 5, false}));
}

TEST_F(Go, BlackTakesTheClockOfWhite) {
    place("position startpos moves g2g4");
    ASSERT_EQ(place("position startpos moves g2g4 e7e5 f2f3"), black);
    command.in = "go wtime 5000 btime 300000";
    read_clock();
    EXPECT_EQ(search.deep, 3);
    EXPECT_EQ(search.IIDS, 0);
}

TEST_F(Go, MovesToGoFortyOfTwoMinutes) {
    EXPECT_EQ(read("go movestogo 40 wtime 120000 btime 120000"), (Budget{100000, 9, true}));
}

// --- The table by CPU power ---

struct Power {
    const char* name;
    int CPU;
    int low_time;      // up to this budget time is low
    int men_under_90;  // up to this many men the depth is the higher one; by the budget in seconds
    int men_under_60;
    int men_under_30;
    int men_to_deep_9;  // up to this many it is 9, under 30 seconds
    int men_under_10;
};

void PrintTo(const Power& x, std::ostream* os) { *os << x.name; }

class GoPower : public testing::TestWithParam<Power> {
protected:
    void SetUp() override {
        fresh_process();
        set_option("CPU power level", GetParam().name);
        ASSERT_EQ(options.CPU, GetParam().CPU);
    }

    // The depth under a clock of that many tens of seconds, with that many men.
    static int deep_with(int first_digit, int men) {
        search.deep = 17;
        search.SEARCH_E = search.IIDS = search.EXTRA_EVAL = 1;
        root.npecas = {men, 0};
        command.in = "go wtime " + std::to_string(first_digit) + "0000 btime 1";
        read_clock();
        EXPECT_EQ(search.tempo, first_digit * 10000);
        EXPECT_EQ(search.SEARCH_E, first_digit * 10000 <= GetParam().low_time ? 0 : 1) << first_digit;
        EXPECT_EQ(search.IIDS, search.SEARCH_E);
        EXPECT_EQ(search.EXTRA_EVAL, search.SEARCH_E);
        return search.deep;
    }
};

// 70 to 90 seconds.
TEST_P(GoPower, UpToNinetySeconds) {
    for (const int first_digit : {7, 8, 9}) {
        EXPECT_EQ(deep_with(first_digit, GetParam().men_under_90), 9);
        EXPECT_EQ(deep_with(first_digit, GetParam().men_under_90 + 1), 7);
        EXPECT_EQ(deep_with(first_digit, 0), 9);
        EXPECT_EQ(deep_with(first_digit, 30), 7);
    }
}

// 40 to 60 seconds: the men of the longer clock no longer count.
TEST_P(GoPower, UpToSixtySeconds) {
    for (const int first_digit : {4, 5, 6}) {
        EXPECT_EQ(deep_with(first_digit, GetParam().men_under_60), 9);
        EXPECT_EQ(deep_with(first_digit, GetParam().men_under_60 + 1), 7);
        EXPECT_EQ(deep_with(first_digit, GetParam().men_under_90), 7);
        EXPECT_EQ(deep_with(first_digit, 0), 9);
        EXPECT_EQ(deep_with(first_digit, 30), 7);
    }
}

// 20 and 30 seconds.
TEST_P(GoPower, UpToThirtySeconds) {
    for (const int first_digit : {2, 3}) {
        EXPECT_EQ(deep_with(first_digit, GetParam().men_to_deep_9), 9);
        EXPECT_EQ(deep_with(first_digit, GetParam().men_to_deep_9 + 1), 7);
        EXPECT_EQ(deep_with(first_digit, GetParam().men_under_30), 7);
        EXPECT_EQ(deep_with(first_digit, GetParam().men_under_30 + 1), 5);
        EXPECT_EQ(deep_with(first_digit, 0), 9);
        EXPECT_EQ(deep_with(first_digit, 30), 5);
    }
}

// 10 seconds: nor do those of 30, and no number of men gives 9.
TEST_P(GoPower, UpToTenSeconds) {
    EXPECT_EQ(deep_with(1, GetParam().men_under_10), 7);
    EXPECT_EQ(deep_with(1, GetParam().men_under_10 + 1), 5);
    EXPECT_EQ(deep_with(1, GetParam().men_to_deep_9), 7);
    EXPECT_EQ(deep_with(1, 0), 7);
    EXPECT_EQ(deep_with(1, 30), 5);
}

TEST_P(GoPower, MenOfBothColoursCount) {
    const int men = GetParam().men_under_90;
    deep_with(9, 30);
    for (const int black_men : {0, 1, men}) {
        root.npecas = {men - black_men, black_men};
        read_clock();
        EXPECT_EQ(search.deep, 9);
        root.npecas = {men - black_men, black_men + 1};
        read_clock();
        EXPECT_EQ(search.deep, 7);
    }
}

TEST_P(GoPower, LongClocksDoNotAskForThePower) {
    for (const char* line : {"go wtime 100000 btime 1", "go wtime 1000000 btime 1", "go wtime 10000000 btime 1"}) {
        search.deep = 9;
        search.SEARCH_E = 1;
        root.npecas = {0, 0};
        command.in = line;
        read_clock();
        EXPECT_EQ(search.deep, 9);
        EXPECT_EQ(search.SEARCH_E, 1);
    }
}

INSTANTIATE_TEST_SUITE_P(Go, GoPower,
                         testing::Values(Power{"extreme", 5, 10000, 15, 11, 17, 7, 9},
                                         Power{"high", 1, 20000, 13, 9, 15, 5, 7},
                                         Power{"medium", 2, 30000, 11, 7, 13, 3, 5},
                                         Power{"low", 3, 50000, 9, 5, 11, 1, 3}),
                         [](const auto& info) { return std::string(info.param.name); });

// --- Limits ---

TEST_F(Go, LimitsOfAFullBoardAndFiveMinutes) {
    prepare(30);
    EXPECT_EQ(soft_limit(), 2000);
    EXPECT_EQ(hard_limit(), 20000);
}

TEST_F(Go, LimitsRoundTheMenDown) {
    prepare(29);  // 29 / 3 = 9
    EXPECT_EQ(soft_limit(), 300000 / 140);
    EXPECT_EQ(hard_limit(), 300000 / 14);
    options.Tu = 10;
    EXPECT_EQ(soft_limit(), 300000 / 70);
    EXPECT_EQ(hard_limit(), 300000 / 7);
    prepare(0);
    EXPECT_EQ(soft_limit(), 6000);
    EXPECT_EQ(hard_limit(), 60000);
    search.tempo = 99;
    EXPECT_EQ(soft_limit(), 1);
    EXPECT_EQ(hard_limit(), 19);
}

// --- Whole searches ---

bool reaches(const Lines& lines, const std::string& depth) { return count_holding(lines, " depth " + depth + " ") > 0; }

// Two walls of pawns, a king shut in behind each: so few moves that every depth is done in no time.
const std::string walls = "position fen k2b4/p1pPp2p/P1P1P3/8/8/p1p1p3/P1PpP2P/K2B4 w - - 0 1";

TEST_F(Go, InfiniteEndsByItself) {
    const Lines lines = converse({"setoption name Deep value 1", "position startpos moves e2e4 a7a6", "go infinite"});
    EXPECT_EQ(count_starting(lines, "bestmove "), 1);
    EXPECT_EQ(search.tempo, 300000);
}

TEST_F(Go, DepthDoesNotLimitTheDepth) {
    const Lines lines = converse({"setoption name Deep value 2", "position startpos moves e2e4 a7a6", "go depth 1"});
    EXPECT_TRUE(reaches(lines, "4"));
}

TEST_F(Go, SevenIsASinglePass) {
    const Lines lines = converse({walls, "go wtime 99999 btime 99999"});
    EXPECT_TRUE(reaches(lines, "8"));
    EXPECT_FALSE(reaches(lines, "10"));
}

// The position line, not go, starts the clock: a late go finds the time over.
Lines search_late(bool time_control, int ms) {
    const auto answers =
        dialogue({std::string("setoption name Time control value ") + (time_control ? "true" : "false"),
                  walls,
                  {"go wtime 100000 btime 100000", [ms] { search.inicio -= ms; }}});
    return answers[2];
}

TEST_F(Go, WithoutTimeControlTheSearchGoesOnToTheLastDepth) { EXPECT_TRUE(reaches(search_late(false, 4000), "24")); }

TEST_F(Go, WithTimeControlNoDepthIsBegunPastTheSoftLimit) {
    const Lines lines = search_late(true, 4000);
    EXPECT_TRUE(reaches(lines, "10"));
    EXPECT_FALSE(reaches(lines, "12"));
    EXPECT_LT(soft_limit(), 4000);
    EXPECT_GT(hard_limit(), 4000);
}

int count_reports(const Lines& lines) { return count_holding(lines, " currmove "); }

// Past the soft limit the depth that has begun is finished, with all its moves.
TEST_F(Go, PastTheSoftLimitAllMovesOfTheDepthAreSearched) { EXPECT_GT(count_reports(search_late(true, 4000)), 1); }

// Past the hard limit it ends with the first line that is deep enough to look at the clock.
TEST_F(Go, PastTheHardLimitTheSearchStopsWithinTheMove) {
    const Lines lines = search_late(true, 20000);
    EXPECT_GE(20000, hard_limit());
    EXPECT_EQ(count_reports(lines), 1);
    EXPECT_EQ(count_starting(lines, "bestmove "), 1);
}

TEST_F(Go, WithoutTimeControlThereIsNoHardLimit) { EXPECT_TRUE(reaches(search_late(false, 1000000), "24")); }

TEST_F(Go, LowTimeLastsForOneMove) {
    const auto answers =
        dialogue({{walls}, {"go wtime 5000 btime 5000"}, {walls + " "}, {"go wtime 3000000 btime 3000000", [] {
                                                                             EXPECT_EQ(search.SEARCH_E, 1);
                                                                             EXPECT_EQ(search.IIDS, 1);
                                                                             EXPECT_EQ(search.EXTRA_EVAL, 1);
                                                                             EXPECT_EQ(search.tempo, 300000);
                                                                             EXPECT_EQ(search.deep, 9);
                                                                         }}});
    EXPECT_FALSE(reaches(answers[1], "8"));
    EXPECT_TRUE(reaches(answers[3], "12"));
}

TEST_F(Go, LowTimeReturnsToTheSettingsNotToOne) {
    dialogue({"setoption name Search extension value false",
              "setoption name Extra evaluation value false",
              walls,
              "go wtime 50 btime 50",
              walls,
              {"go wtime 50 btime 50", [] {
                   EXPECT_EQ(search.SEARCH_E, 0);
                   EXPECT_EQ(search.EXTRA_EVAL, 0);
                   EXPECT_EQ(search.IIDS, 1);
               }}});
}

}  // namespace
