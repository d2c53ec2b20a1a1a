// The memory of finished searches: which position lines are answered from it, with what, and how its ring turns.
#include "memory/game_memory.h"

#include "support/engine.h"
#include "support/process.h"
#include "support/sanitizers.h"
#include "support/transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>

namespace {

using namespace ondrel;
using namespace tests;

constexpr int records_of_the_ring = mem_records - 1;

constexpr auto rooks = "position fen 8/5pk1/6p1/8/3R4/6P1/r4PK1/8 w - - 0 1";
constexpr auto queen = "position fen 6k1/5ppp/8/8/8/8/1Q3PPP/6K1 w - - 0 1";
constexpr auto pawn = "position fen 8/8/4k3/8/8/4K3/4P3/8 w - - 0 1";
constexpr auto one_hour = "go wtime 3600000 btime 3600000";    // seven digits: 3000000 ms
constexpr auto five_minutes = "go wtime 300000 btime 300000";  // six digits: 300000 ms
constexpr auto two_minutes = "go wtime 200000 btime 200000";   // 200000 ms

// The lines of a conversation that show whether there was a search, and what came out of it.
struct Answer {
    std::vector<std::string> lines;

    [[nodiscard]] std::string reply() const { return lines.empty() ? "" : lines.back(); }
    [[nodiscard]] std::string final_line() const { return lines.size() < 2 ? "" : lines[lines.size() - 2]; }
    // A search reports its root moves; an answer from memory is the final line alone, without a node.
    [[nodiscard]] bool searched() const { return lines.size() != 2; }
    [[nodiscard]] bool without_nodes() const { return final_line().find(" nodes 0 ") != std::string::npos; }
};

Answer ask(std::string_view position, std::string_view go) {
    return {converse({std::string(position), std::string(go)})};
}

void set_depth(std::string_view value) { set_option("Deep", value); }

// The line as the preparation of a search makes it a key.
LineKey key_of_line(std::string_view line) {
    LineKey key{};
    key.fill('9');
    std::copy(line.begin(), line.end(), key.begin());
    return key;
}

SearchDemand demand(int tempo, int deep) { return {static_cast<float>(tempo), static_cast<float>(deep)}; }

void store(std::string_view line, SearchDemand with, float score) {
    hash_mem_build(key_of_line(line), with, {score, move_from("b1c3"), '0'});
}

// The score found, nothing for a miss.
std::optional<float> look_up(std::string_view line, SearchDemand with) {
    const auto found = hash_mem_scan(key_of_line(line), with);
    return found ? std::optional(found->E) : std::nullopt;
}

class GameMemory : public testing::Test {
protected:
    void SetUp() override {
        fresh_process();
        set_depth("2");
        set_option("Time control", "false");
    }
};

// --- In the conversation ---

TEST_F(GameMemory, ARepeatedPositionLineIsAnsweredWithoutASearch) {
    const Answer first = ask(rooks, five_minutes);
    EXPECT_TRUE(first.searched());
    const float score = search.E;
    const Move m = game.abcd;
    game.abcd = {0, 0, 0, 0};
    const Answer second = ask(rooks, five_minutes);
    EXPECT_FALSE(second.searched());
    EXPECT_TRUE(second.without_nodes()) << second.final_line();
    EXPECT_EQ(second.reply(), first.reply());
    EXPECT_EQ(search.E, score);
    EXPECT_EQ(game.abcd, m);
}

TEST_F(GameMemory, TheSameLineWithAShorterClockHits) {
    const Answer first = ask(rooks, five_minutes);
    const Answer second = ask(rooks, two_minutes);
    EXPECT_FALSE(second.searched());
    EXPECT_EQ(second.reply(), first.reply());
}

TEST_F(GameMemory, TheSameLineWithALongerClockMisses) {
    ask(rooks, five_minutes);
    EXPECT_TRUE(ask(rooks, one_hour).searched());
    // That search is remembered too, and answers what the first one could not.
    EXPECT_FALSE(ask(rooks, one_hour).searched());
}

TEST_F(GameMemory, ALowerDepthHitsAndAHigherOneMisses) {
    ask(rooks, five_minutes);
    set_depth("1");
    EXPECT_FALSE(ask(rooks, five_minutes).searched());
    set_depth("3");
    EXPECT_TRUE(ask(rooks, five_minutes).searched());
}

// The depth is read after the clock: a short one lowers the demand in both.
TEST_F(GameMemory, AClockThatLowersTheDepthLowersTheDemand) {
    ask(rooks, five_minutes);
    set_depth("8");
    EXPECT_FALSE(ask(rooks, "go wtime 150 btime 150").searched());  // three digits: depth 1
}

TEST_F(GameMemory, TheStoredScoreIsShownAsAfterASearch) {
    const Answer first = ask("position fen 7k/8/5K2/8/8/8/8/6R1 w - - 0 1", five_minutes);
    ASSERT_EQ(first.final_line().substr(0, 22), "info score mate 1  dep");
    const Answer second = ask("position fen 7k/8/5K2/8/8/8/8/6R1 w - - 0 1", five_minutes);
    EXPECT_FALSE(second.searched());
    // Nothing was searched, so the depth shown is that of no ply.
    EXPECT_EQ(second.final_line(), "info score mate 1  depth 1 nodes 0 pv " + second.reply().substr(9));
}

TEST_F(GameMemory, AStoredPromotionKeepsItsLetter) {
    constexpr auto promotion = "position fen 8/4P1k1/8/8/8/8/6K1/8 w - - 0 1";
    const Answer first = ask(promotion, five_minutes);
    ASSERT_EQ(first.reply(), "bestmove e7e8q");
    const Answer second = ask(promotion, five_minutes);
    EXPECT_FALSE(second.searched());
    EXPECT_EQ(second.reply(), "bestmove e7e8q");
    // The letter belongs to that record alone.
    EXPECT_EQ(ask(rooks, five_minutes).reply().size(), std::string("bestmove e7e8").size());
}

// The reply is not played: the board stays that of the position line.
TEST_F(GameMemory, AStoredMoveIsNotPlayedOnTheRootBoard) {
    ask(rooks, five_minutes);
    const Board after_the_search = tab;
    place(rooks);
    const Board of_the_line = tab;
    EXPECT_NE(after_the_search, of_the_line);
    ASSERT_FALSE(ask(rooks, five_minutes).searched());
    EXPECT_EQ(tab, of_the_line);
}

TEST_F(GameMemory, AnAnswerFromMemoryIsNotStoredAgain) {
    ask(rooks, five_minutes);
    EXPECT_EQ(next_mem_record(), 1);
    ASSERT_FALSE(ask(rooks, five_minutes).searched());
    EXPECT_EQ(next_mem_record(), 1);
}

TEST_F(GameMemory, TheSamePositionGivenByAFenIsAnotherKey) {
    set_option("Own book", "false");
    const std::string moves = "position startpos moves a2a3 a7a6";
    ask(moves, five_minutes);
    EXPECT_TRUE(
        ask("position fen rnbqkbnr/1ppppppp/p7/8/8/P7/1PPPPPPP/RNBQKBNR w KQkq - 0 2", five_minutes).searched());
    EXPECT_FALSE(ask(moves, five_minutes).searched());
}

// The key is the text, so that a transposition is another position.
TEST_F(GameMemory, TheSamePositionByAnotherOrderOfMovesIsAnotherKey) {
    set_option("Own book", "false");
    ask("position startpos moves a2a3 a7a6 h2h3 h7h6", five_minutes);
    EXPECT_TRUE(ask("position startpos moves h2h3 a7a6 a2a3 h7h6", five_minutes).searched());
}

TEST_F(GameMemory, WithMemoryOffNothingIsStored) {
    set_option("Memory", "false");
    ask(rooks, five_minutes);
    EXPECT_EQ(next_mem_record(), 0);
    set_option("Memory", "true");
    EXPECT_TRUE(ask(rooks, five_minutes).searched());
}

TEST_F(GameMemory, WithMemoryOffNothingIsLookedUp) {
    ask(rooks, five_minutes);
    set_option("Memory", "false");
    EXPECT_TRUE(ask(rooks, five_minutes).searched());
}

TEST_F(GameMemory, UciEmptiesTheMemoryAndWithMemoryOffLeavesIt) {
    ask(rooks, five_minutes);
    set_option("Memory", "false");
    converse({"uci"});
    EXPECT_EQ(next_mem_record(), 1);
    set_option("Memory", "true");
    EXPECT_FALSE(ask(rooks, five_minutes).searched());
    converse({"uci"});
    EXPECT_EQ(next_mem_record(), 0);
    EXPECT_TRUE(ask(rooks, five_minutes).searched());
}

TEST_F(GameMemory, TheButtonClearMemoryEmptiesIt) {
    ask(rooks, five_minutes);
    converse({"setoption name Clear memory"});
    EXPECT_EQ(next_mem_record(), 0);
    EXPECT_TRUE(ask(rooks, five_minutes).searched());
}

TEST_F(GameMemory, ItOutlastsANewGameAndOtherPositions) {
    ask(rooks, five_minutes);
    converse({"position startpos"});
    ask(queen, five_minutes);
    converse({"position startpos moves e2e4", "setoption name Clear deep memory"});
    EXPECT_FALSE(ask(rooks, five_minutes).searched());
}

// A line of the length wanted: nothing behind the castling field of a FEN is read but the en-passant square.
std::string line_of_size(std::size_t size) {
    std::string line = std::string(rooks) + ' ';
    line.append(size - line.size(), '1');
    return line;
}

TEST_F(GameMemory, ALineOf1000CharactersOrMoreIsNeverRemembered) {
    for (const std::size_t size : {std::size_t{1000}, std::size_t{1001}, std::size_t{2500}}) {
        ask(line_of_size(size), five_minutes);
        EXPECT_EQ(next_mem_record(), 0) << size;
        EXPECT_TRUE(ask(line_of_size(size), five_minutes).searched()) << size;
    }
    ask(line_of_size(999), five_minutes);
    EXPECT_EQ(next_mem_record(), 1);
    EXPECT_FALSE(ask(line_of_size(999), five_minutes).searched());
}

// Nor is it looked up, though its first thousand characters may be those of a record.
TEST_F(GameMemory, ALineOf1000CharactersIsNotLookedUp) {
    const std::string longest_line = line_of_size(999);
    ask(longest_line, five_minutes);
    EXPECT_TRUE(ask(longest_line + '9', five_minutes).searched());
}

// What the record holds of the demand is the depth that the search ended with, not the one it began with.
TEST_F(GameMemory, TheDepthStoredIsTheLastOneSearched) {
    set_depth("7");
    ask(pawn, five_minutes);
    ASSERT_EQ(options.deepp, 13);
    // The passes go on by two plies while one more stays below the limit.
    EXPECT_TRUE(look_up(pawn, demand(300000, 13)));
    EXPECT_FALSE(look_up(pawn, demand(300000, 14)));
}

// --- Records ---

TEST_F(GameMemory, ARecordGivesBackMoveLetterAndScore) {
    hash_mem_build(key_of_line("position fen a"), demand(1000, 5), {-12.25F, move_from("e7e8"), 'q'});
    const auto found = hash_mem_scan(key_of_line("position fen a"), demand(1000, 5));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->E, -12.25F);
    EXPECT_EQ(text_of(found->abcd), "e7e8");
    EXPECT_EQ(found->PR, 'q');
    EXPECT_FALSE(hash_mem_scan(key_of_line("position fen b"), demand(1000, 5)));
}

// The search that follows a miss begins as one that nobody has asked for.
TEST_F(GameMemory, AMissLeavesMoveLetterAndScoreAlone) {
    hash_mem_build(key_of_line(rooks), demand(1000, 1), {-12.25F, move_from("e7e8"), 'q'});
    set_depth("0");
    const Answer miss = ask(rooks, five_minutes);
    fresh_process();
    set_depth("0");
    set_option("Time control", "false");
    const Answer never_stored = ask(rooks, five_minutes);
    EXPECT_TRUE(miss.searched());
    EXPECT_EQ(without_clock(miss.lines), without_clock(never_stored.lines));
}

TEST_F(GameMemory, TimeAndDepthMustBothSuffice) {
    store("position fen a", demand(1000, 5), 1.0F);
    EXPECT_TRUE(look_up("position fen a", demand(1000, 5)));
    EXPECT_TRUE(look_up("position fen a", demand(999, 4)));
    EXPECT_FALSE(look_up("position fen a", demand(1001, 5)));
    EXPECT_FALSE(look_up("position fen a", demand(1000, 6)));
    EXPECT_FALSE(look_up("position fen a", demand(1001, 4)));
    EXPECT_FALSE(look_up("position fen a", demand(999, 6)));
}

TEST_F(GameMemory, TheLowestRecordThatSufficesAnswers) {
    store("position fen a", demand(1000, 5), 1.0F);
    store("position fen a", demand(3000, 9), 2.0F);
    store("position fen a", demand(3000, 9), 3.0F);
    EXPECT_EQ(look_up("position fen a", demand(1000, 5)), 1.0F);
    EXPECT_EQ(look_up("position fen a", demand(2000, 5)), 2.0F);
    EXPECT_EQ(look_up("position fen a", demand(1000, 9)), 2.0F);
}

TEST_F(GameMemory, AllThousandCharactersOfTheKeyCount) {
    store(std::string(999, 'a'), demand(1000, 5), 1.0F);
    EXPECT_TRUE(look_up(std::string(999, 'a'), demand(1000, 5)));
    EXPECT_FALSE(look_up(std::string(998, 'a') + 'b', demand(1000, 5)));
    EXPECT_FALSE(look_up(std::string(998, 'a'), demand(1000, 5)));
    EXPECT_FALSE(look_up(std::string(1000, 'a'), demand(1000, 5)));
}

TEST_F(GameMemory, TheRingHolds99999RecordsAndOverwritesTheOldest) {
    for (int k = 0; k < records_of_the_ring; ++k) {
        ASSERT_EQ(next_mem_record(), k);
        store(std::to_string(k) + ' ', demand(1000, 5), static_cast<float>(k));
    }
    EXPECT_EQ(next_mem_record(), 0) << "after record 99998 comes record 0";
    EXPECT_EQ(look_up("0 ", demand(1000, 5)), 0.0F);
    EXPECT_EQ(look_up("99998 ", demand(1000, 5)), 99998.0F);
    store("new", demand(1000, 5), -1.0F);
    EXPECT_EQ(look_up("new", demand(1000, 5)), -1.0F);
    EXPECT_FALSE(look_up("0 ", demand(1000, 5)));
    EXPECT_EQ(look_up("1 ", demand(1000, 5)), 1.0F);
    EXPECT_EQ(next_mem_record(), 1);
}

// --- Against a memory without an index ---

// The same ring with nothing but a walk from the first record on; equal keys have equal numbers.
struct PlainMemory {
    struct Record {
        int key;
        float tempo, deep, score;
    };
    std::vector<Record> records;
    int next = 0;

    [[nodiscard]] std::optional<float> look_up(int key, int t, int d) const {
        for (const Record& x : records) {
            if (x.key == key && static_cast<float>(t) <= x.tempo && static_cast<float>(d) <= x.deep) {
                return x.score;
            }
        }
        return std::nullopt;
    }
    void store(const Record& x) {
        if (static_cast<std::size_t>(next) == records.size()) {
            records.push_back(x);
        } else {
            records[next] = x;
        }
        next = next + 1 == records_of_the_ring ? 0 : next + 1;
    }
    void clear() {
        records.clear();
        next = 0;
    }
};

TEST_F(GameMemory, AMillionOperationsFindWhatAWalkOverAllRecordsFinds) {
    constexpr std::array<int, 6> budgets{10000, 90000, 300000, 300001, 3000000, 10000000};
    constexpr std::array<int, 6> depths{0, 1, 5, 9, 13, 17};
    constexpr int keys = 60;
    constexpr int operations = with_sanitizers ? 150000 : 1000000;
    PlainMemory plain;
    std::mt19937 random(11);
    const auto drawn = [&random](int n) { return static_cast<int>(random() % static_cast<std::uint32_t>(n)); };
    int differences = 0;
    int hits = 0;
    int misses = 0;
    int rounds = 0;
    for (int k = 0; k < operations; ++k) {
        const int key = drawn(keys);
        const std::string line = "position fen " + std::string(static_cast<std::size_t>(key), 'k');
        const int action = drawn(100);
        if (action < 55) {
            // Seldom with as much as a hard question asks for, so that the first record of a line seldom answers it.
            const int t = budgets[drawn(drawn(50) == 0 ? 6 : 4)];
            const int d = depths[drawn(5)];
            store(line, demand(t, d), static_cast<float>(k % 1000000));
            plain.store({key, static_cast<float>(t), static_cast<float>(d), static_cast<float>(k % 1000000)});
            differences += next_mem_record() != plain.next ? 1 : 0;
            rounds += next_mem_record() == 0 ? 1 : 0;
        } else {
            const int t = budgets[drawn(drawn(200) == 0 ? 6 : 3)];
            const int d = depths[drawn(drawn(200) == 0 ? 6 : 4)];
            const auto found = look_up(line, demand(t, d));
            differences += found != plain.look_up(key, t, d) ? 1 : 0;
            (found ? hits : misses) += 1;
        }
        if (drawn(400000) == 0) {
            clear_game_memory();
            plain.clear();
        }
    }
    EXPECT_EQ(differences, 0);
    EXPECT_GT(hits, operations / 10);
    EXPECT_GT(misses, operations / 5000);
    EXPECT_TRUE(with_sanitizers || rounds > 1) << rounds;
}

// --- Of the process ---

// A hundred megabytes stand ready for records, but take none of the machine's memory until they are written.
TEST_F(GameMemory, RecordsTakeNoMemoryUntilTheyAreWritten) {
    if (with_sanitizers) {
        GTEST_SKIP() << "the sanitizers have memory of their own";
    }
    EngineProcess engine;
    engine.write("uci");
    std::string line;
    while (line != "uciok") {
        ASSERT_TRUE(engine.read(line));
    }
    EXPECT_GT(engine.kilobytes_in_use(), 100);
    EXPECT_LT(engine.kilobytes_in_use(), 10 * 1024);
}

}  // namespace
