// What the interface sees of a search: the running lines and the final one.
#include "uci/report.h"

#include "base/clock.h"
#include "support/dialogue.h"
#include "support/engine.h"
#include "support/shallow_records.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

namespace {

using namespace tests;
using namespace ondrel;

struct Mate {
    float score;
    int number;
};

// The two nearest own mates are both "mate 1", so that the engine's own run one number behind.
constexpr std::array<Mate, 24> ladder{{
    {15400.0F, 1},   {14300.0F, 1},   {13200.0F, 2},   {12100.0F, 3},   {11000.0F, 4},   {9900.0F, 5},
    {8800.0F, 6},    {7700.0F, 7},    {6600.0F, 8},    {5500.0F, 9},    {4400.0F, 10},   {3300.0F, 11},
    {-15400.0F, -1}, {-14300.0F, -2}, {-13200.0F, -3}, {-12100.0F, -4}, {-11000.0F, -5}, {-9900.0F, -6},
    {-8800.0F, -7},  {-7700.0F, -8},  {-6600.0F, -9},  {-5500.0F, -10}, {-4400.0F, -11}, {-3300.0F, -12},
}};

class Report : public testing::Test {
protected:
    void SetUp() override {
        fresh_process();
        search.deep = 9;
        process.ddep = 14;
        search.dddep = 11;
        search.curr = 3;
        search.nodes = 123456;
        search.emp = search.emppp = -15;
        command.ABCD = {'e', '2', 'e', '4'};
        for (auto& text : root_move.A0_D7) {
            text = {' ', ' ', ' ', ' '};
        }
        root_move.A0_D7[0] = {'g', '1', 'f', '3'};
        root_move.A0_D7[1] = {'b', '8', 'c', '6'};
        search.inicio = clock_ms() - 7;
    }

    static std::string written(void (*reporter)()) { return with_input("", reporter); }

    static std::string final_line(float score) {
        search.EP = score;
        return written(info_final);
    }

    // The running report: the line of the move and that of the speed, either may be empty.
    struct RunningReport {
        std::string move, speed;
    };
    static RunningReport running(float score) {
        bounds.beta[1] = score;
        std::istringstream lines(written(info_deept));
        RunningReport r;
        for (std::string line; std::getline(lines, line);) {
            (line.starts_with("info nps ") ? r.speed : r.move) = line;
        }
        return r;
    }

    // The value behind "info score cp ".
    static std::string cp(const std::string& line) {
        constexpr std::string_view start = "info score cp ";
        EXPECT_TRUE(line.starts_with(start)) << line;
        return line.substr(start.size(), line.find(' ', start.size()) - start.size());
    }

    static void expect_cp(float score, const char* text) {
        EXPECT_EQ(cp(final_line(score)), text) << "deep " << search.deep;
        EXPECT_EQ(cp(running(score).move), text) << "deep " << search.deep;
    }
};

// --- Mates ---

TEST_F(Report, EveryStepOfTheLadderIsAMateInBothReports) {
    for (const int d : {9, 10}) {
        for (const Mate& x : ladder) {
            search.deep = d;
            search.dddep = 11;
            const std::string start = "info score mate " + std::to_string(x.number) + "  depth ";
            EXPECT_EQ(final_line(x.score), start + "12 nodes 123456 pv e2e4\n");
            EXPECT_TRUE(running(x.score).move.starts_with(start + std::to_string(d + 1) + " seldepth 15 "))
                << running(x.score).move;
        }
    }
}

TEST_F(Report, OnlyTheLadderItselfIsAMate) {
    for (const Mate& x : ladder) {
        for (const float y : {std::nextafter(x.score, 0.0F), std::nextafter(x.score, 2.0F * x.score)}) {
            EXPECT_TRUE(final_line(y).starts_with("info score cp ")) << y;
            EXPECT_TRUE(running(y).move.starts_with("info score cp ")) << y;
        }
    }
    for (const float y : {16500.0F, -16500.0F, 2200.0F, -2200.0F, 0.0F}) {
        EXPECT_TRUE(final_line(y).starts_with("info score cp ")) << y;
    }
}

TEST_F(Report, MateOneAndMateTwo) {
    EXPECT_TRUE(final_line(14300.0F).starts_with("info score mate 1 "));
    EXPECT_TRUE(final_line(13200.0F).starts_with("info score mate 2 "));
}

TEST_F(Report, FarthestMateAgainstTheEngine) { EXPECT_TRUE(final_line(-3300.0F).starts_with("info score mate -12 ")); }

// --- Centipawns and the draw offset ---

TEST_F(Report, OffsetGoesWithTheParityOfTheDepth) {
    for (search.deep = 0; search.deep <= 23; ++search.deep) {
        expect_cp(15.0F, search.deep % 2 == 0 ? "50" : "250");
        expect_cp(-15.0F, search.deep % 2 == 0 ? "-250" : "-50");
    }
}

TEST_F(Report, PawnAndAHalfAtNineAndTen) {
    search.deep = 9;
    expect_cp(15.0F, "250");
    search.deep = 10;
    expect_cp(15.0F, "50");
}

TEST_F(Report, OffsetVanishesOnceTheDrawScoreHasRisen) {
    search.emp = search.emppp + 10;
    for (search.deep = 0; search.deep <= 23; ++search.deep) {
        expect_cp(15.0F, "150");
    }
}

TEST_F(Report, CentipawnsAreCutTowardZeroBeforeTheOffset) {
    search.emp = 0;
    for (const auto& [score, text] : {std::pair{0.06F, "0"},
                                      {-0.06F, "0"},
                                      {1.55F, "15"},
                                      {-1.55F, "-15"},
                                      {-0.15F, "-1"},
                                      {123.456F, "1234"},
                                      {-123.456F, "-1234"}}) {
        expect_cp(score, text);
    }
    search.emp = search.emppp;
    expect_cp(-0.06F, "100");
    expect_cp(-0.15F, "99");
    search.deep = 8;
    expect_cp(0.15F, "-99");
}

TEST_F(Report, NoLegalMoveShowsTheWorstScore) {
    EXPECT_EQ(cp(final_line(-10000000.0F)), "-99999900");
    search.deep = 8;
    EXPECT_EQ(cp(final_line(-10000000.0F)), "-100000100");
}

// What no number can show is shown as the lowest one.
TEST_F(Report, ScoreThatIsNoNumberOfCentipawnsIsTheLowest) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    for (const float score : {infinity, -infinity, std::numeric_limits<float>::quiet_NaN(), 3e8F, -3e8F}) {
        search.deep = 9;
        expect_cp(score, "-2147483548");
        search.deep = 10;
        expect_cp(score, "-2147483748");
        search.emp = search.emppp + 10;
        expect_cp(score, "-2147483648");
        search.emp = search.emppp;
    }
}

// Two rooks without a king are worth nothing beside the king's share that both sides give up: at the leaf of ply 2 the
// ratio has nothing to divide by, unless one of them is taken.
TEST_F(Report, RatioWithNothingToDivideByIsShown) {
    for (const char* fen : {"8/8/8/3k4/8/8/3RR3/8 w - - 0 1", "8/3rr3/8/8/3K4/8/8/8 b - - 0 1"}) {
        fresh_process();
        const Lines lines = converse(
            {"setoption name Deep value 1", std::string("position fen ") + fen, "go wtime 9000000 btime 9000000"});
        EXPECT_EQ(count_holding(lines, " currmove "), 16);
        EXPECT_EQ(count_starting(lines, "info score cp -2147483548 depth 2 "), 12);
        EXPECT_EQ(count_starting(lines, "info score cp -497 depth 2 "), 4);
        EXPECT_TRUE((lines.end() - 2)->starts_with("info score cp -497 depth 1 ")) << *(lines.end() - 2);
    }
}

TEST_F(Report, WithoutExtraDefinitionThereIsNoRatioToShow) {
    const Lines lines = converse({"setoption name Extra definition value false", "setoption name Deep value 1",
                                  "position fen 8/8/8/3k4/8/8/3RR3/8 w - - 0 1", "go wtime 9000000 btime 9000000"});
    EXPECT_EQ(count_holding(lines, " currmove "), 16);
    EXPECT_EQ(count_starting(lines, "info score cp -2147483"), 0);
}

// --- The final line ---

TEST_F(Report, FinalLineIsComplete) {
    EXPECT_EQ(final_line(15.0F), "info score cp 250 depth 12 nodes 123456 pv e2e4\n");
}

TEST_F(Report, FinalDepthIsThatOfTheSearchWithoutExtraEvaluation) {
    search.EXTRA_EVAL = 0;
    search.deep = 5;
    EXPECT_EQ(final_line(15.0F), "info score cp 250 depth 6 nodes 123456 pv e2e4\n");
    EXPECT_EQ(search.dddep, 5);
}

TEST_F(Report, FinalLineLooksAtNoRunningScore) {
    bounds.beta[1] = 14300.0F;
    EXPECT_EQ(cp(final_line(15.0F)), "250");
    search.EP = 14300.0F;
    EXPECT_EQ(cp(running(15.0F).move), "250");
}

// --- The running line ---

// The fields behind the score, the time taken out of the line since it is the clock's.
std::string with_time_of(const std::string& line, std::string before, const std::string& after) {
    const auto k = line.find(" time ") + 6;
    return before.append(" time ").append(line.substr(k, line.find(' ', k) - k)).append(after);
}

const std::string pv_of_two = " pv g1f3 b8c6                              ";

TEST_F(Report, RunningLineIsComplete) {
    const std::string line = running(15.0F).move;
    EXPECT_EQ(line,
              with_time_of(line, "info score cp 250 depth 10 seldepth 15 currmove g1f3 currmovenumber 3 nodes 123456",
                           " hashfull 0" + pv_of_two));
    EXPECT_EQ(pv_of_two.size(), 3 + 8 * 5U);
}

TEST_F(Report, WithoutDeepMemoryTheLineLosesItsHashfullAlone) {
    search.HASHf = 0;
    complete_records(3, white, 3000);
    const std::string line = running(15.0F).move;
    EXPECT_EQ(line,
              with_time_of(line, "info score cp 250 depth 10 seldepth 15 currmove g1f3 currmovenumber 3 nodes 123456",
                           pv_of_two));
}

TEST_F(Report, AllEightMovesAreWritten) {
    for (std::size_t k = 0; k < 8; ++k) {
        root_move.A0_D7[k] = {static_cast<char>('a' + k), '2', static_cast<char>('a' + k), '4'};
    }
    EXPECT_TRUE(running(15.0F).move.ends_with(" pv a2a4 b2b4 c2c4 d2d4 e2e4 f2f4 g2g4 h2h4"));
}

TEST_F(Report, SeldepthIsTheDepthWithoutExtraEvaluation) {
    search.EXTRA_EVAL = 0;
    EXPECT_NE(running(15.0F).move.find(" depth 10 seldepth 10 "), std::string::npos);
    EXPECT_EQ(process.ddep, 9);
}

TEST_F(Report, DeepestPlyIsKept) {
    running(15.0F);
    EXPECT_EQ(search.dddep, 14);
    process.ddep = 12;
    running(15.0F);
    EXPECT_EQ(search.dddep, 14);
    EXPECT_EQ(final_line(15.0F).substr(0, 26), "info score cp 250 depth 15");
}

TEST_F(Report, NodesAreShownSigned) {
    search.nodes = 0xFFFFFFFFU;
    EXPECT_NE(final_line(15.0F).find(" nodes -1 "), std::string::npos);
    EXPECT_NE(running(15.0F).move.find(" nodes -1 "), std::string::npos);
}

// --- Time ---

TEST_F(Report, TimeCountsFromThePositionLine) {
    const int before = clock_ms() - search.inicio;
    const std::string line = running(15.0F).move;
    const int after = clock_ms() - search.inicio;
    const int shown = std::stoi(line.substr(line.find(" time ") + 6));
    EXPECT_GE(shown, before);
    EXPECT_LE(shown, after);
    EXPECT_EQ(shown, search.fim - search.inicio);
}

TEST_F(Report, SpeedDividesFirst) {
    search.nodes = 99999;
    const RunningReport r = running(15.0F);
    const int time_shown = std::stoi(r.move.substr(r.move.find(" time ") + 6));
    EXPECT_EQ(r.speed, "info nps " + std::to_string(99999 / time_shown * 1000));
    EXPECT_TRUE(r.speed.ends_with("000"));
}

TEST_F(Report, FewNodesInAMillisecondAreNoSpeedAtAll) {
    search.nodes = 5;
    EXPECT_EQ(running(15.0F).speed, "info nps 0");
}

TEST_F(Report, NoSpeedWithinTheTickOfThePosition) {
    bool in_the_same_tick = false;
    for (int attempt = 0; attempt < 1000 && !in_the_same_tick; ++attempt) {
        search.inicio = clock_ms();
        const RunningReport r = running(15.0F);
        in_the_same_tick = search.fim == search.inicio;
        EXPECT_EQ(r.speed.empty(), in_the_same_tick);
        EXPECT_FALSE(r.move.empty());
    }
    EXPECT_TRUE(in_the_same_tick);
}

// --- Hash figure ---

std::string hashfull_of(const std::string& line) {
    const auto k = line.find(" hashfull ") + 10;
    return line.substr(k, line.find(' ', k) - k);
}

TEST_F(Report, HashFigureIsTheSumOfThreeTables) {
    complete_records(3, white, 100);
    complete_records(3, black, 9000);
    complete_records(4, white, 9000);
    complete_records(4, black, 20);
    complete_records(5, white, 9);
    complete_records(5, black, 9000);
    EXPECT_EQ(hashfull_of(running(15.0F).move), "4");  // 129 / 30, the other chain aside
    complete_records(3, white, 9998);
    EXPECT_EQ(hashfull_of(running(15.0F).move), "334");  // 10027 / 30
}

TEST_F(Report, HashFigureOfAFullTableIsTenThousand) {
    complete_records(3, white, 3);
    complete_records(4, black, 3);
    complete_records(5, white, 3);
    search.FULL[3] = 1;
    EXPECT_EQ(hashfull_of(running(15.0F).move), "333");  // 10006 / 30
    search.FULL[4] = 1;
    EXPECT_EQ(hashfull_of(running(15.0F).move), "666");
    search.FULL[5] = 1;
    EXPECT_EQ(hashfull_of(running(15.0F).move), "1000");
    search.FULL[3] = search.FULL[4] = 0;
    EXPECT_EQ(hashfull_of(running(15.0F).move), "333");
}

TEST_F(Report, HashFigureOfAGameAsBlackIsThatOfTheSameThreeTables) {
    game.joga_com_b = 0;
    complete_records(3, black, 9000);
    complete_records(4, white, 9000);
    complete_records(5, black, 9000);
    EXPECT_EQ(hashfull_of(running(15.0F).move), "0");
}

// --- Full info ---

TEST_F(Report, WithoutFullInfoALosingMoveIsNotShown) {
    options.FULL_inf = 0;
    const RunningReport r = running(-200.0F);
    EXPECT_EQ(r.move, "");
    EXPECT_TRUE(r.speed.starts_with("info nps "));
}

TEST_F(Report, FullInfoShowsALosingMove) { EXPECT_EQ(cp(running(-200.0F).move), "-1900"); }

// Shown from 15 points below the material balance on, with the offset as it is shown.
TEST_F(Report, WithoutFullInfoTheMarginIsFifteenPointsAroundTheMaterial) {
    options.FULL_inf = 0;
    struct Margin {
        int deep;
        bool with_offset;
        float lowest;  // the lowest score shown, material 20 ahead
    };
    // 20 - 15 = 5 points; the offset is 10.
    for (const Margin& x : {Margin{9, true, -5.0F}, Margin{10, true, 15.0F}, Margin{9, false, 5.0F},
                            Margin{10, false, 5.0F}, Margin{0, true, 15.0F}, Margin{23, true, -5.0F}}) {
        search.deep = x.deep;
        search.emp = x.with_offset ? search.emppp : search.emppp + 10;
        root.materialflot0 = 20.0F;
        EXPECT_NE(running(x.lowest).move, "") << search.deep;
        EXPECT_EQ(running(x.lowest - 0.25F).move, "") << search.deep;
    }
}

TEST_F(Report, WithoutFullInfoMatesAreShownAllTheSame) {
    options.FULL_inf = 0;
    root.materialflot0 = 500.0F;
    for (const Mate& x : ladder) {
        EXPECT_TRUE(running(x.score).move.starts_with("info score mate ")) << x.score;
    }
}

TEST_F(Report, WithoutFullInfoTheFinalLineStands) {
    options.FULL_inf = 0;
    EXPECT_EQ(cp(final_line(-200.0F)), "-1900");
}

TEST_F(Report, DeepestPlyIsKeptOfAMoveThatIsNotShown) {
    options.FULL_inf = 0;
    running(-200.0F);
    EXPECT_EQ(search.dddep, 14);
}

// --- In a whole search ---

TEST_F(Report, BuildPassIsSilent) {
    const Lines lines = converse({"setoption name Deep value 5", "position fen 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", "go"});
    EXPECT_GT(count_holding(lines, " currmove "), 0);
    EXPECT_EQ(count_holding(lines, " depth 8 seldepth "), 0);
}

TEST_F(Report, EveryRootMoveIsReportedOnce) {
    const Lines lines = converse({"setoption name Deep value 0", "position startpos moves e2e4 a7a6", "go"});
    for (int k = 1; k <= 30; ++k) {
        const std::string number = " currmovenumber " + std::to_string(k) + " ";
        EXPECT_EQ(count_holding(lines, number), 1) << k;
    }
    EXPECT_EQ(count_starting(lines, "info score "), 31);  // 30 moves and the final line
}

TEST_F(Report, UnreachedMovesOfTheLineAreBlank) {
    const Lines lines = converse({"setoption name Deep value 0", "position startpos moves e2e4 a7a6", "go"});
    for (const std::string& line : lines) {
        if (const auto pv = line.find(" pv "); line.find(" currmove ") != std::string::npos) {
            EXPECT_EQ(line.size() - pv, 3 + 8 * 5U) << line;
            EXPECT_EQ(line.substr(pv + 4, 4), line.substr(line.find(" currmove ") + 10, 4));
        }
    }
}

TEST_F(Report, NodesCountOneSearch) {
    const auto answers =
        dialogue({"setoption name Deep value 0", "setoption name Memory value false",
                  "position startpos moves e2e4 a7a6", "go", "position startpos moves e2e4 a7a6", "go"});
    EXPECT_EQ(*(answers[3].end() - 2), *(answers[5].end() - 2));
}

}  // namespace
