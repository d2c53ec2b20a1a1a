// Whatever comes in: nothing crashes, nothing hangs, and every search writes its one reply.
#include "support/dialogue.h"
#include "support/engine.h"
#include "support/process.h"
#include "support/sanitizers.h"
#include "uci/position.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <regex>

namespace {

using namespace tests;
using namespace ondrel;

const std::string without_replies = "setoption name Deep value 0";
const std::string shallow_search = "setoption name Deep value 1";
const std::string out_of_book = "position startpos moves e2e4 a7a6";
const std::string start_field = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";

bool is_reply(const std::string& line) {
    static const std::regex form("bestmove [a-h][1-8][a-h][1-8]q?");
    return std::regex_match(line, form);
}

class BadInput : public testing::Test {
protected:
    void SetUp() override { fresh_process(); }

    // The search of the position ends by itself: a final report and one reply, last of all.
    static void expect_one_reply(const std::string& position, const std::string& depth = without_replies,
                                 const std::string& go = "go") {
        fresh_process();
        const auto answers = dialogue({depth, position, go, "isready"});
        const std::string shown = position.substr(0, 200);
        ASSERT_EQ(answers.size(), 4U) << shown;
        EXPECT_EQ(answers[1], Lines{}) << shown;
        ASSERT_GE(answers[2].size(), 2U) << shown;
        EXPECT_TRUE(is_reply(answers[2].back())) << answers[2].back() << " to " << shown;
        EXPECT_EQ(count_starting(answers[2], "bestmove"), 1) << shown;
        EXPECT_TRUE((answers[2].end() - 2)->starts_with("info score ")) << shown;
        EXPECT_EQ(answers[3], Lines{"readyok"}) << shown;
    }

    // The line has no answer, idle or between moves, and both loops go on behind it.
    static void expect_silence(const std::string& line) {
        fresh_process();
        EXPECT_EQ(converse({line, "isready", "position startpos", line, "isready"}),
                  (Lines{"readyok", "bestmove e2e4", "readyok"}))
            << line.substr(0, 200);
    }
};

// --- Length ---

const std::vector<std::size_t> sizes{0,   1,    2,    3,    4,    5,    8,    9,     10,    15,     16,
                                     17,  18,   20,   28,   29,   37,   50,   100,   255,   256,    998,
                                     999, 1000, 1001, 1023, 1024, 1025, 4096, 65535, 65536, 1000000};

TEST_F(BadInput, LinesOfNoughtToAMillionCharactersAreDropped) {
    for (const std::size_t n : sizes) {
        for (const char x : {'x', ' ', '/', '0', 's', 'g', '\0'}) {
            expect_silence(std::string(n, x));
        }
    }
}

TEST_F(BadInput, LongLinesWhileWaitingForGoAreDropped) {
    for (const std::size_t n : sizes) {
        const auto answers = dialogue({without_replies, "position fen 4k3/8/8/8/8/8/8/4K3 w - - 0 1",
                                       std::string(n, 'p'), std::string(n, ' '), "go"});
        EXPECT_EQ(count_starting(answers[4], "bestmove"), 1) << n;
    }
}

TEST_F(BadInput, OptionLinesOfAnyLengthAreDroppedOrRead) {
    for (const std::size_t n : sizes) {
        expect_silence("setoption name " + std::string(n, 'C'));
        expect_silence("setoption name Castle value value " + std::string(n, '9'));
        EXPECT_EQ(options.roque_v, n == 0 ? 3 : 10);
    }
}

TEST_F(BadInput, FenLinesOfAnyLength) {
    for (const std::size_t n : {0U, 1U, 7U, 8U, 9U, 64U, 65U, 1000U, 1000000U}) {
        for (const char x : {'8', '1', 'K', 'k', '/', ' ', 'x', '\0'}) {
            expect_one_reply("position fen " + std::string(n, x));
        }
    }
}

TEST_F(BadInput, GoLinesOfAnyLength) {
    for (const std::size_t n : sizes) {
        for (const char* start : {"go", "go ", "go wtime ", "go movestogo ", "go movestogo 40 wtime "}) {
            for (const char x : {'9', ' ', 't'}) {
                const auto answers = dialogue({without_replies, "position fen 4k3/8/8/8/8/8/8/4K3 w - - 0 1",
                                               std::string(start) + std::string(n, x)});
                EXPECT_EQ(count_starting(answers[2], "bestmove"), 1) << start << n << x;
            }
        }
    }
}

TEST_F(BadInput, MillionCharactersOfMoves) {
    std::string line = "position startpos moves";
    while (line.size() < 1000000) {
        line += " e2e4";
    }
    EXPECT_EQ(count_starting(converse({without_replies, line, "go"}), "bestmove"), 1);
}

// --- FENs ---

TEST_F(BadInput, FenCutOffAtEveryCharacter) {
    const std::string line = "position fen 4k2r/3P4/8/8/3pP3/8/7p/R3K3 b Qk e3 0 1 moves d4e3 d7e8q";
    for (std::size_t n = std::string("position f").size(); n <= line.size(); ++n) {
        expect_one_reply(line.substr(0, n));
    }
}

TEST_F(BadInput, FullFenCutOffAtEveryCharacterIsReplayed) {
    const std::string line =
        "position fen r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1 moves "
        "e1g1 e8c8 a2a4 b4a3";
    for (std::size_t n = 0; n <= line.size(); ++n) {
        place(line.substr(0, n));
        EXPECT_LE(std::ranges::count_if(tab, [](int x) { return x != 0; }), 32) << n;
    }
    EXPECT_EQ(game_line.nb, 4);
}

TEST_F(BadInput, FenWithoutKings) {
    for (const char* fen :
         {"8/8/8/8/8/8/8/8 w - - 0 1", "8/8/8/8/8/8/8/8 b KQkq e3 0 1", "8/pppp4/8/8/8/8/PPPP4/8 w - - 0 1",
          "8/pppp4/8/8/8/8/PPPP4/8 b KQkq - 0 1", "rnbq1bnr/8/8/8/8/8/8/RNBQ1BNR w KQkq - 0 1",
          "4k3/8/8/8/8/8/8/RNBQ1BNR w KQ - 0 1", "4k3/8/8/8/8/8/8/RNBQ1BNR b kq - 0 1",
          "rnbq1bnr/8/8/8/8/8/8/4K3 w KQ - 0 1", "rnbq1bnr/8/8/8/8/8/8/4K3 b kq - 0 1", "8/8/8/8/8/8/8/K7 w - - 0 1",
          "8/8/8/8/8/8/8/k7 w - - 0 1", "8/P7/8/8/8/8/p7/8 w - - 0 1"}) {
        expect_one_reply(std::string("position fen ") + fen, shallow_search);
    }
}

std::string eight_ranks(const std::string& first_of_pair, const std::string& second_of_pair) {
    std::string field = first_of_pair;
    for (int r = 1; r < 8; ++r) {
        field.append("/").append(r % 2 == 0 ? first_of_pair : second_of_pair);
    }
    return field;
}

TEST_F(BadInput, FenWithSixtyFourQueens) {
    expect_one_reply("position fen " + eight_ranks("QQQQQQQQ", "QQQQQQQQ") + " w KQkq - 0 1", shallow_search);
    expect_one_reply("position fen " + eight_ranks("qqqqqqqq", "qqqqqqqq") + " w - - 0 1", shallow_search);
    expect_one_reply("position fen " + eight_ranks("QQQQqqqq", "QQQQqqqq") + " b - - 0 1");
}

TEST_F(BadInput, FenWithSixtyFourOfAnyMan) {
    for (const char man : {'P', 'p', 'N', 'n', 'B', 'b', 'R', 'r', 'K', 'k'}) {
        const std::string rank(8, man);
        expect_one_reply("position fen " + eight_ranks(rank, rank) + " w KQkq - 0 1", shallow_search);
        expect_one_reply("position fen " + eight_ranks(rank, rank) + " b KQkq - 0 1", shallow_search);
    }
}

TEST_F(BadInput, FenWithManyKings) {
    for (const char* fen : {"kkk5/8/8/8/8/8/8/5KKK w KQkq - 0 1", "kKkK4/8/8/8/8/8/8/4KkKk b - - 0 1",
                            "4k3/8/8/3kK3/8/8/8/4K3 w KQkq - 0 1"}) {
        expect_one_reply(std::string("position fen ") + fen, shallow_search);
    }
}

TEST_F(BadInput, FenWithPawnsOnTheFirstAndLastRank) {
    for (const char* fen : {"PPPPkPPP/8/8/8/8/8/8/ppppKppp w - - 0 1", "PPPPkPPP/8/8/8/8/8/8/ppppKppp b - - 0 1",
                            "ppppkppp/8/8/8/8/8/8/PPPPKPPP w - - 0 1", "ppppkppp/8/8/8/8/8/8/PPPPKPPP b KQkq - 0 1",
                            "p3k2P/P6p/8/8/8/8/P6p/p3K2P w - - 0 1", "p3k2P/P6p/8/8/8/8/P6p/p3K2P b - - 0 1"}) {
        expect_one_reply(std::string("position fen ") + fen, shallow_search);
    }
}

TEST_F(BadInput, FenOfFourFields) {
    expect_one_reply("position fen 4k3/8/8/8/8/8/4P3/4K3 w - -", shallow_search);
    EXPECT_EQ(game.joga_com_b, 1);
    EXPECT_EQ(game_line.tabr1[0][0], 1);  // no move was replayed
}

TEST_F(BadInput, FenOfFewerFields) {
    for (const char* fen : {"4k3/8/8/8/8/8/4P3/4K3 w -", "4k3/8/8/8/8/8/4P3/4K3 w", "4k3/8/8/8/8/8/4P3/4K3 ",
                            "4k3/8/8/8/8/8/4P3/4K3", "4k3", "", "w - - 0 1"}) {
        expect_one_reply(std::string("position fen ") + fen, shallow_search);
    }
    expect_one_reply("position fen", shallow_search);
}

TEST_F(BadInput, FenThatIsNone) {
    for (const char* fen : {"blah", "blah blah blah", "////////////////", "9/9/9/9",
                            "kkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkk w", "4k3\t8\t8 w", "-1/-1/-1 w - - -1 -1"}) {
        expect_one_reply(std::string("position fen ") + fen, shallow_search);
    }
}

TEST_F(BadInput, FenWithASideInCheckThatIsNotToMove) {
    expect_one_reply("position fen 4k3/8/8/8/8/8/4R3/4K3 w - - 0 1", shallow_search);
    expect_one_reply("position fen 4k3/4q3/8/8/8/8/4R3/4K3 b - - 0 1", shallow_search);
}

TEST_F(BadInput, FenWithAnEnPassantNobodyCanHaveLeft) {
    for (const char* field : {"a3", "h3", "a6", "h6", "d3", "d6"}) {
        expect_one_reply(std::string("position fen 4k3/8/8/1pP1pP2/1Pp1pP2/8/8/4K3 w - ") + field + " 0 1",
                         shallow_search);
        expect_one_reply(std::string("position fen 4k3/8/8/1pP1pP2/1Pp1pP2/8/8/4K3 b - ") + field + " 0 1",
                         shallow_search);
    }
}

TEST_F(BadInput, FenWithCastlingRightsWithoutKingAndRook) {
    expect_one_reply("position fen 4k3/8/8/8/8/8/8/4K3 w KQkq - 0 1", shallow_search);
    expect_one_reply("position fen r6r/4k3/8/8/8/8/4K3/R6R b KQkq - 0 1", shallow_search);
}

// --- Moves ---

std::string repeated(const std::vector<std::string>& moves, std::size_t count) {
    std::string text;
    for (std::size_t k = 0; k < count; ++k) {
        text.append(" ").append(moves[k % moves.size()]);
    }
    return text;
}

const std::vector<std::string> knight_moves{"g1f3", "g8f6", "f3g1", "f6g8"};

TEST_F(BadInput, GamesOfThousandsOfMoves) {
    for (const std::size_t n : {199U, 999U, 1000U, 1001U, 2000U, 4000U}) {
        expect_one_reply("position startpos moves" + repeated(knight_moves, n));
        EXPECT_EQ(game_line.tabr1[0][square_of("f3")], cavalo);
    }
    expect_one_reply("position fen " + start_field + " w KQkq - 0 1 moves" + repeated(knight_moves, 2000));
}

TEST_F(BadInput, GameOfTwoThousandRandomMoves) {
    std::mt19937 random(7);
    for (int line_number = 0; line_number < 5; ++line_number) {
        std::string line = "position startpos moves";
        for (int k = 0; k < 2000; ++k) {
            line += ' ';
            for (const char lowest : {'a', '1', 'a', '1'}) {
                line += static_cast<char>(lowest + static_cast<int>(random() % 8));
            }
            if (random() % 8 == 0) {
                line += "qrbnQx"[random() % 5];
            }
        }
        expect_one_reply(line);
    }
}

TEST_F(BadInput, MovesFromEmptySquares) {
    for (const char* moves : {"e4e5 e5e4", "a3h8 h6a1", "e3e1 e6e8", "d4d4 d5d5", "e1e1 e8e8"}) {
        expect_one_reply(std::string("position startpos moves ") + moves, shallow_search);
    }
}

TEST_F(BadInput, IllegalMovesInTheList) {
    for (const char* moves : {"e2e5 e7e4", "a1a8 h8h1", "e1e8 d8d1", "e1c1 e8g8", "b1b1 g8g8", "e7e5 e2e4",
                              "e2e8q e7e1n", "e4e5 0000", "0000 0000", "zzzz zzzz", "e2 e7", "e2e4e7 e7"}) {
        expect_one_reply(std::string("position startpos moves ") + moves, shallow_search);
    }
}

TEST_F(BadInput, PositionOfOneMoveThatIsNone) {
    for (const char* rest : {"", " ", " e", " e2", " e2e", " zzzz", " 0000", " a1h8", " e4e5"}) {
        fresh_process();
        const Lines lines = converse({"setoption name Own book value false", shallow_search,
                                      std::string("position startpos moves") + rest, "go", "isready"});
        EXPECT_EQ(count_starting(lines, "bestmove"), 1) << rest;
        EXPECT_EQ(lines.back(), "readyok") << rest;
    }
}

TEST_F(BadInput, GoInMateAndStalemate) {
    for (const char* fen : {"rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3",        // mated
                            "R5k1/5ppp/8/8/8/8/8/4K3 b - - 0 1", "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1",  // stalemated
                            "8/8/8/8/8/6q1/5p2/5K2 w - - 0 1"}) {
        const std::string line = std::string("position fen ") + fen;
        for (const char* depth :
             {"setoption name Deep value 0", "setoption name Deep value 3", "setoption name Deep value 9"}) {
            expect_one_reply(line, depth);
        }
        const Lines lines = converse({line, "go"});
        // The worst score, less the steps of the root window.
        constexpr std::string_view start = "info score cp ";
        ASSERT_TRUE(lines.front().starts_with(start)) << lines.front();
        EXPECT_NEAR(std::stod(lines.front().substr(start.size())), -100000000, 2000);
    }
}

// --- Bytes ---

TEST_F(BadInput, EveryByteAlone) {
    for (int byte = 0; byte < 256; ++byte) {
        std::string twice(1, static_cast<char>(byte));
        twice.append("\nisready\nposition startpos\n").append(1, twice[0]).append("\nisready\n");
        EXPECT_EQ(converse_raw(twice), "readyok\nbestmove e2e4\nreadyok\n") << byte;
    }
}

TEST_F(BadInput, EveryByteInEveryPlaceOfAPosition) {
    const std::string fen = "position fen 4k3/8/8/8/8/8/4P3/4K3 w - e3 0 1 moves e2e4";
    const std::string from_start = "position startpos moves e2e4 e7e5";
    for (int byte = 0; byte < 256; ++byte) {
        for (const std::string& line : {fen, from_start}) {
            for (std::size_t k = 0; k < line.size(); ++k) {
                std::string damaged = line;
                damaged[k] = static_cast<char>(byte);
                place(damaged);
                EXPECT_TRUE(on_board(game.abcd.from_file, game.abcd.from_rank));
                EXPECT_TRUE(on_board(game.abcd.to_file, game.abcd.to_rank));
            }
        }
    }
}

TEST_F(BadInput, EveryByteInAMoveIsSearched) {
    for (int byte = 0; byte < 256; ++byte) {
        if (byte != '\n' && byte != '\r') {
            const std::string x(1, static_cast<char>(byte));
            expect_one_reply("position fen 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1 moves e2e" + x + " e8e7");
        }
    }
}

std::string noise(std::mt19937& random, std::size_t n) {
    std::string text(n, '\0');
    std::ranges::generate(text, [&random] { return static_cast<char>(random() % 256); });
    return text;
}

TEST_F(BadInput, BinaryNoise) {
    std::mt19937 random(1);
    for (int k = 0; k < 20; ++k) {
        EXPECT_EQ(converse_raw(noise(random, 10000) + "\nisready\n"), "readyok\n");
    }
}

TEST_F(BadInput, BinaryNoiseBehindEveryCommand) {
    std::mt19937 random(2);
    for (const char* start : {"position ", "position fen ", "position startpos moves ", "position startpos moves e2e4 ",
                              "setoption name ", "setoption name Castle value value ", "uci", "isready", "quit"}) {
        for (int k = 0; k < 6; ++k) {
            std::string rest = noise(random, 200);
            std::erase_if(rest, [](char x) { return x == '\n' || x == '\r'; });
            fresh_process();
            const Lines lines = converse({without_replies, start + rest, "go", "isready"});
            EXPECT_EQ(lines.back(), "readyok") << start;
            EXPECT_LE(count_starting(lines, "bestmove"), 1) << start;
        }
    }
}

// Conversations with a few characters changed, lost or doubled.
TEST_F(BadInput, DamagedConversations) {
    const std::string whole =
        "uci\nisready\nposition fen 4k3/7p/8/8/3pP3/8/P7/R3K3 b Q e3 0 1\ngo wtime 1000 btime 1000\n"
        "position fen 4k3/7p/8/8/3pP3/8/P7/R3K3 b Q e3 0 1 moves d4e3 e1c1\ngo movestogo 40 wtime 500 btime 1\n"
        "setoption name Castle value value 9\nisready\nposition startpos\ngo\nposition startpos moves e2e4\n";
    std::mt19937 random(3);
    for (int k = 0; k < 60; ++k) {
        std::string text = whole;
        for (int changes = 1 + static_cast<int>(random() % 6); changes > 0; --changes) {
            const std::size_t place_of_change = random() % text.size();
            switch (random() % 4) {
                case 0: text[place_of_change] = static_cast<char>(random() % 256); break;
                case 1: text.erase(place_of_change, 1 + random() % 4); break;
                case 2: text.insert(place_of_change, text.substr(place_of_change, 1 + random() % 20)); break;
                default: std::swap(text[place_of_change], text[random() % text.size()]); break;
            }
        }
        fresh_process();
        const std::string output =
            converse_raw(std::string(without_replies).append("\n").append(text).append("\nquit\n"));
        EXPECT_TRUE(output.empty() || output.back() == '\n');
    }
}

// --- Line ends and blanks ---

// The output without what the clock says.
std::string without_times(const std::string& output) {
    static const std::regex of_the_clock(" time [0-9]+|info nps [0-9]+\n");
    return std::regex_replace(output, of_the_clock, "");
}

TEST_F(BadInput, LinesMayEndInCarriageReturnAndLineFeed) {
    const std::string lf =
        shallow_search + "\nuci\nisready\n" + out_of_book + "\ngo wtime 300000 btime 300000\nisready\nquit\n";
    const std::string before = without_times(converse_raw(lf));
    fresh_process();
    EXPECT_EQ(without_times(converse_raw(std::regex_replace(lf, std::regex("\n"), "\r\n"))), before);
    EXPECT_EQ(before.find('\r'), std::string::npos);
}

TEST_F(BadInput, OnlyOneCarriageReturnIsOfTheLineEnd) {
    EXPECT_EQ(converse_raw("isready\r\r\nisready\r\nis\rready\n\r\n"), "readyok\n");
}

TEST_F(BadInput, LeadingBlanksMakeAnotherLine) {
    for (const char* line : {" uci", " isready", " quit", " position startpos", " position startpos moves e2e4 e7e5",
                             " position fen 4k3/8/8/8/8/8/8/4K3 w - - 0 1", "\tisready", " go"}) {
        expect_silence(line);
    }
}

TEST_F(BadInput, OptionsWithoutNameOrValue) {
    for (const char* line :
         {"setoption", "setoption ", "setoption name", "setoption name ", "setoption name  value ", "setoption value 3",
          "setoption name Deep", "setoption name Deep value", "setoption name Deep value ",
          "setoption name Time usage value 0", "setoption name Clear", "setoption name value value value"}) {
        expect_silence(line);
        EXPECT_EQ(options.deepp, no_depth_limit);
        EXPECT_EQ(options.Tu, 3);
    }
}

TEST_F(BadInput, NegativeAndBrokenClocks) {
    for (const char* go :
         {"go wtime -1 btime -1", "go wtime -100 btime -100", "go wtime -99999 btime 1", "go wtime", "go wtime ",
          "go wtime x", "go wtime 99999999999999999999 btime 1", "go movestogo", "go movestogo 1",
          "go movestogo -1 wtime -1", "go depth -1", "go movetime -1", "go perft 5"}) {
        expect_one_reply("position fen 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", shallow_search, go);
    }
}

// With the clock alone to end it: a nonsense position with every option as it is.
TEST_F(BadInput, NonsenseIsSearchedWithinItsClock) {
    for (const char* fen : {"kkk5/pp6/8/8/8/8/6PP/5KKK w - - 0 1", "8/pp6/8/8/8/8/6PP/8 b - - 0 1",
                            "PPPPk3/8/8/8/8/8/8/ppppK3 w - - 0 1"}) {
        for (const char* go :
             {"go wtime 5 btime 5", "go wtime 50 btime 5", "go wtime 500 btime 5", "go wtime 5000 btime 5"}) {
            expect_one_reply(std::string("position fen ") + fen, "setoption name Deep value 9", go);
        }
    }
}

// --- End of input ---

TEST_F(BadInput, EndOfInputAtEveryCharacterOfAConversation) {
    const std::string whole =
        "uci\nisready\n" + without_replies + "\nposition startpos\ngo wtime 1000 btime 1000\n" +
        "position fen 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1 moves e2e4\ngo wtime 1000 btime 1000\nisready\nquit\n";
    const std::size_t in_the_fen = whole.find("position f") + 10;
    const std::size_t in_the_start = whole.find("position startpos") + 17;
    for (std::size_t n = 0; n <= whole.size(); ++n) {
        fresh_process();
        const std::string output = converse_raw(whole.substr(0, n));
        int answers = 0;
        for (std::size_t k = output.find("bestmove"); k != std::string::npos; k = output.find("bestmove", k + 1)) {
            ++answers;
        }
        // A position that has been begun is searched, since the end of input stands for its go.
        EXPECT_EQ(answers, (n >= in_the_start ? 1 : 0) + (n >= in_the_fen ? 1 : 0)) << n;
    }
}

TEST(BadInputProcess, EndOfInputWhileIdle) {
    EngineProcess engine;
    engine.close_input();
    EXPECT_EQ(engine.wait_for_exit(), 0);
}

TEST(BadInputProcess, EndOfInputWhileWaitingForGo) {
    EngineProcess engine;
    engine.write(shallow_search);
    engine.write(out_of_book);
    engine.close_input();
    std::string line;
    std::string last;
    while (engine.read(line)) {
        last = line;
    }
    EXPECT_TRUE(is_reply(last)) << last;
    EXPECT_EQ(engine.wait_for_exit(), 0);
}

TEST(BadInputProcess, EndOfInputDuringASearch) {
    EngineProcess engine;
    engine.write("setoption name Deep value 3");
    engine.write(out_of_book);
    engine.write("go infinite");
    std::string line;
    ASSERT_TRUE(engine.read(line));  // it searches
    engine.close_input();
    std::string last;
    while (engine.read(line)) {
        last = line;
    }
    EXPECT_TRUE(is_reply(last)) << last;
    EXPECT_EQ(engine.wait_for_exit(), 0);
}

TEST(BadInputProcess, CommandsQueuedBehindASearchAreAnsweredAfterIt) {
    const Outcome r = run_engine(shallow_search + "\n" + out_of_book + "\ngo\nisready\nstop\nisready\nquit\nisready\n");
    EXPECT_EQ(r.exit_code, 0);
    const auto lines = r.lines();
    ASSERT_GE(lines.size(), 3U);
    EXPECT_TRUE(is_reply(*(lines.end() - 3)));
    EXPECT_EQ(*(lines.end() - 2), "readyok");
    EXPECT_EQ(lines.back(), "readyok");
    EXPECT_EQ(r.count_starting("readyok"), 2);
}

TEST(BadInputProcess, NoiseLeavesNoTrace) {
    std::mt19937 random(4);
    const Outcome r = run_engine(noise(random, 300000) + "\nisready\nquit\n");
    EXPECT_EQ(r.output, "readyok\n");
    EXPECT_EQ(r.error, "");
    EXPECT_EQ(r.exit_code, 0);
    EXPECT_EQ(r.signal, 0);
}

TEST(BadInputProcess, LineOfAMillionCharacters) {
    const Outcome r = run_engine(std::string(1000000, 'p') + "\nisready\n" + std::string(1000000, '\0') + "\nquit\n");
    EXPECT_EQ(r.output, "readyok\n");
    EXPECT_EQ(r.exit_code, 0);
}

// --- Starting up ---

TEST(BadInputProcess, AnswersUciAtOnce) {
    auto shortest = std::chrono::milliseconds(1000000);
    for (int k = 0; k < 5; ++k) {
        const auto before = std::chrono::steady_clock::now();
        EngineProcess engine;
        engine.write("uci");
        std::string line;
        while (engine.read(line) && line != "uciok") {
        }
        ASSERT_EQ(line, "uciok");
        shortest = std::min(
            shortest, std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - before));
    }
    EXPECT_LT(shortest.count(), with_sanitizers ? 5000 : 50);
}

}  // namespace
