// The small parts: words, commands, options, scores, time, lines in pieces, the page, the private protocol, games.
#include "standard_uci/limits.h"
#include "standard_uci/line_splitter.h"
#include "standard_uci/platform.h"
#include "standard_uci/score.h"

#include <gtest/gtest.h>

namespace {

using namespace ondrel::standard_uci;

// --- Words and commands ---

TEST(Commands, AreFoundBehindUnknownWords) {
    EXPECT_EQ(read_command("joho debug on")->verb, Verb::debug);
    EXPECT_EQ(read_command(" \t go\r")->verb, Verb::go);
    EXPECT_FALSE(read_command("").has_value());
    EXPECT_FALSE(read_command("hello world").has_value());
    EXPECT_FALSE(read_command("GO").has_value());
}

TEST(Commands, TakeLimitsInAnyOrder) {
    const GoLimits limits =
        read_go(words_of("xyz 3 binc 5 movestogo 7 wtime 100 searchmoves e2e4 a7a8q btime -20 ponder"));
    EXPECT_EQ(limits.binc, 5);
    EXPECT_EQ(limits.movestogo, 7);
    EXPECT_EQ(limits.wtime, 100);
    EXPECT_EQ(limits.btime, -20);
    EXPECT_EQ(limits.searchmoves, (Words{"e2e4", "a7a8q"}));
    EXPECT_TRUE(limits.ponder);
    EXPECT_FALSE(limits.infinite);
    EXPECT_TRUE(limits.faults.empty());
}

TEST(Commands, SayWhereANumberIsMissing) {
    const GoLimits limits = read_go(words_of("depth infinite wtime"));
    EXPECT_EQ(limits.faults, (Words{"go: no number behind 'depth'", "go: no number behind 'wtime'"}));
    EXPECT_TRUE(limits.infinite);
    EXPECT_EQ(read_go(words_of("nodes 99999999999999999999")).nodes, std::numeric_limits<std::int64_t>::max());
}

TEST(Commands, SplitAnOptionAtItsLastValue) {
    EXPECT_EQ(read_setoption(words_of("name Castle value value 4")).name, "Castle value");
    EXPECT_EQ(read_setoption(words_of("name Castle value value 4")).value, "4");
    EXPECT_EQ(read_setoption(words_of("name Clear memory")).name, "Clear memory");
    EXPECT_EQ(read_setoption(words_of("value 3")).name, "");
}

TEST(Commands, TellAPositionInItsParts) {
    const PositionWords fen = read_position(words_of("what fen a b c moves e2e4 e7e5"));
    EXPECT_EQ(fen.fen, (Words{"a", "b", "c"}));
    EXPECT_EQ(fen.moves, (Words{"e2e4", "e7e5"}));
    EXPECT_TRUE(read_position(words_of("startpos")).from_start);
    EXPECT_FALSE(read_position(words_of("e2e4")).fault.empty());
    EXPECT_FALSE(read_position({}).fault.empty());
}

TEST(Lines, ComeTogetherFromPieces) {
    LineSplitter lines(8);
    Words taken;
    int refused = 0;
    const auto take = [&](std::string_view line) { taken.emplace_back(line); };
    const auto refuse = [&] { ++refused; };
    for (const char* piece : {"ab", "c\nde\r\n", "\n123456789", "0\nlast"}) {
        lines.feed(piece, take, refuse);
    }
    EXPECT_EQ(taken, (Words{"abc", "de", ""}));
    EXPECT_EQ(refused, 1);
    lines.end(take, refuse);
    EXPECT_EQ(taken.back(), "last");
}

// --- Options ---

TEST(Options, TakeEveryDefaultAndRefuseWhatIsNoValue) {
    Options options;
    std::string fault;
    const Options fresh;
    for (const Option& option : fresh.all()) {
        EXPECT_NE(options.set({option.name, option.value}, fault), nullptr) << option.name << ": " << fault;
    }
    EXPECT_EQ(options.set({"MultiPV", "11"}, fault), nullptr);
    EXPECT_EQ(options.set({"Ponder", "yes"}, fault), nullptr);
    EXPECT_EQ(options.set({"Temperament", "angry"}, fault), nullptr);
    EXPECT_EQ(options.set({"Move Overhead", ""}, fault), nullptr);
    EXPECT_NE(options.set({"temperament", "Positional"}, fault), nullptr);
    EXPECT_EQ(options.value("Temperament"), "positional");
}

TEST(Options, HaveTheBookOffAndWhatGoSaysNotAtAll) {
    const Options options;
    EXPECT_EQ(options.value("Own book"), "false");
    for (const Option& option : options.all()) {
        EXPECT_NE(option.name, "Deep");
        EXPECT_NE(option.name, "Time control");
    }
}

// --- Scores ---

TEST(Scores, AreCentipawnsOrMovesToMate) {
    EXPECT_EQ(score_text(0), "cp 0");
    EXPECT_EQ(score_text(1.57F), "cp 15");
    EXPECT_EQ(score_text(-12.39F), "cp -123");
    const std::vector<std::pair<float, int>> mates{{15400, 1},   {14300, 2},   {13200, 3},  {3300, 12},
                                                   {-15400, -1}, {-14300, -2}, {-3300, -12}};
    for (const auto& [score, moves] : mates) {
        EXPECT_EQ(score_text(score), "mate " + std::to_string(moves));
    }
    EXPECT_FALSE(is_mate(3299));
}

// --- Time ---

TEST(Time, LeavesSomethingForTheMovesToCome) {
    for (const std::int64_t left : {20, 50, 100, 1000, 10000, 300000}) {
        for (const std::int64_t increment : {0, 10, 100, 3000}) {
            for (const std::int64_t moves : {0, 1, 2, 40}) {
                const TimeBudget budget = budget_from({left, increment, moves, 10});
                EXPECT_LE(budget.last_new_depth, budget.end);
                EXPECT_LE(budget.end, (left - 10) * (moves == 1 ? 8 : 3) / 10);
                EXPECT_LE(budget.end_without_move, std::max<std::int64_t>(budget.end, 15));
            }
        }
    }
}

TEST(Time, IsNeverSpentTwiceOver) {
    for (const std::int64_t increment : {0, 10, 100}) {
        std::int64_t left = 1000;
        for (int move = 0; move < 300; ++move) {
            left += increment - budget_from({left, increment, 0, 10}).end - 2;
            ASSERT_GT(left, 5) << "move " << move << ", increment " << increment;
            if (increment == 0 && left < 50) {
                break;
            }
        }
    }
}

TEST(Time, OfAMoveIsUsedButForTheOverhead) {
    EXPECT_EQ(budget_of_fixed_time(100, 10).end, 85);
    EXPECT_EQ(budget_of_fixed_time(100000, 10).end, 99890);
    EXPECT_EQ(budget_of_fixed_time(10, 10).end, 5);
    EXPECT_EQ(budget_of_fixed_time(-5, 10).end, 0);
}

TEST(Time, OfWildClocksStaysInBounds) {
    const auto huge = std::numeric_limits<std::int64_t>::max();
    const auto least = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(budget_from({least, least, 0, 10}).end, 0);
    EXPECT_GT(budget_from({huge, huge, huge, 10}).end, 0);
}

// --- The private protocol ---

TEST(WorkerProtocol, GivesBackWhatItWrites) {
    FoundLine line{.rank = 2,
                   .depth = 10,
                   .deepest_ply = 12,
                   .hashfull = 34,
                   .score = -0.1F,
                   .is_upper_bound = true,
                   .is_hidden = true,
                   .nodes = 5000000000U,
                   .serial = 7,
                   .moves = {"e2e4", "e7e5"}};
    const auto message = read_worker_message(line_of(line));
    ASSERT_TRUE(message.has_value());
    const auto& read = std::get<FoundLine>(*message);
    EXPECT_EQ(line_of(read), line_of(line));
    EXPECT_EQ(read.score, line.score);
    EXPECT_EQ(read.nodes, line.nodes);
    EXPECT_EQ(line_of(*read_worker_message("begun 4 2 e2e4")), "begun 4 2 e2e4");
    EXPECT_EQ(line_of(*read_worker_message("depth 4")), "depth 4");
    EXPECT_EQ(line_of(*read_worker_message("finished")), "finished");
    for (const float score : {std::numeric_limits<float>::quiet_NaN(), -1e7F, 16500.0F}) {
        line.score = score;
        EXPECT_FALSE(read_worker_message(line_of(line)).has_value()) << score;
    }
    for (const char* strange : {"", "found", "found 1 2", "depth", "depth x", "begun 1", "bestmove e2e4"}) {
        EXPECT_FALSE(read_worker_message(strange).has_value()) << strange;
    }
}

TEST(WorkerProtocol, PutsAnOrderTogetherFromItsLines) {
    OrderReader orders;
    const SearchTask task{"position startpos moves e2e4", {"e7e5", "c7c5"}, 12, true, 3, 400};
    std::optional<std::variant<EngineSetting, SearchTask>> order;
    for (const std::string& line : lines_of(task)) {
        EXPECT_FALSE(order.has_value());
        order = orders.read(line);
    }
    ASSERT_TRUE(order.has_value());
    EXPECT_EQ(lines_of(std::get<SearchTask>(*order)), lines_of(task));
    const auto setting = std::get<EngineSetting>(*orders.read(line_of(EngineSetting{"Castle value", "3"})));
    EXPECT_EQ(setting.name, "Castle value");
    EXPECT_EQ(setting.value, "3");
}

TEST(Page, ShowsWhatWasPublished) {
    const auto made = make_page();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->page().line()->serial, 0U);
    SharedPage page;
    page.publish_nodes(77);
    PublishedLine line{.serial = 3, .depth = 6, .score = 1.5F};
    page.publish(line);
    EXPECT_EQ(page.nodes(), 77U);
    EXPECT_EQ(page.line()->serial, 3U);
    EXPECT_EQ(page.line()->score, 1.5F);
}

// --- Games ---

std::string line_for(const char* said, bool chess960 = false) {
    std::string fault;
    Words remarks;
    const auto game = Game::read(read_position(words_of(said)), chess960, fault, remarks);
    return game ? game->line_for_engine() : "refused: " + fault;
}

TEST(Games, ReachTheEngineInTheFormsThatItReads) {
    const std::string start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";
    EXPECT_EQ(line_for("startpos"), "position fen " + start + " w KQkq - 0 1");
    EXPECT_EQ(line_for("startpos moves e2e4"), "position startpos moves e2e4");
    EXPECT_EQ(line_for("fen 4k3/8/8/8/8/8/8/4K2R w K - 9 9 moves e1g1 e8e7"),
              "position fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1 moves e1g1 e8e7");
}

TEST(Games, BeginWithAMoveOfWhitesForTheEngine) {
    EXPECT_EQ(line_for("fen 4k3/8/8/8/8/8/8/4K2R b - - 0 1 moves e8e7 h1h2"),
              "position fen 8/4k3/8/8/8/8/8/4K2R w - - 0 1 moves h1h2");
    EXPECT_EQ(line_for("fen 4k3/8/8/8/8/8/8/4K2R b - - 0 1"), "position fen 4k3/8/8/8/8/8/8/4K2R b - - 0 1");
}

TEST(Games, BeginBehindACastlingThatTheEngineCannotReplay) {
    EXPECT_EQ(line_for("fen 4k3/8/8/8/8/8/8/4KR2 w F - 0 1 moves e1f1 e8e7 g1g2", true),
              "position fen 8/4k3/8/8/8/8/8/5RK1 w - - 0 1 moves g1g2");
    EXPECT_EQ(line_for("startpos moves e2e4 e7e5 g1f3 g8f6 f1c4 f8c5 e1h1 e8h8", true),
              "position startpos moves e2e4 e7e5 g1f3 g8f6 f1c4 f8c5 e1g1 e8g8");
}

TEST(Games, LeaveOutMoreMovesThanTheEngineKeeps) {
    std::string said = "startpos moves";
    for (int k = 0; k < 600; ++k) {
        said += " g1f3 g8f6 f3g1 f6g8";
    }
    const std::string line = line_for(said.c_str());
    EXPECT_TRUE(line.starts_with("position fen "));
    EXPECT_LE(words_of(line).size(), 8U + 1000U);
}

TEST(Games, OfMovesThatAreNotLegalAreRefused) {
    EXPECT_EQ(line_for("startpos moves e2e4 e2e4"), "refused: move 2, 'e2e4', is not legal");
    EXPECT_EQ(line_for("startpos moves e1g1"), "refused: move 1, 'e1g1', is not legal");
    EXPECT_EQ(line_for("nothing"), "refused: position: neither startpos nor fen, but 'nothing'");
}

// --- Limits ---

TEST(Limits, EndTheSearchAtTheDeepestDepthThatThereIs) {
    const Options options;
    const Game game;
    const auto depth_of = [&](const char* go) { return task_of(read_go(words_of(go)), game, {}, options).depth_limit; };
    EXPECT_EQ(depth_of("depth 0"), 1);
    EXPECT_EQ(depth_of("depth 1"), 1);
    EXPECT_EQ(depth_of("depth 3"), 2);
    EXPECT_EQ(depth_of("depth 10"), 10);
    EXPECT_EQ(depth_of("depth 23"), 22);
    EXPECT_EQ(depth_of("depth 1000000000000"), 24);
    EXPECT_EQ(depth_of("mate 3"), 6);
    EXPECT_EQ(depth_of("mate 3 depth 4"), 4);
    EXPECT_EQ(depth_of("infinite"), 24);
}

TEST(Limits, AreNoneForABareGo) {
    EXPECT_TRUE(is_endless(read_go({})));
    EXPECT_TRUE(is_endless(read_go({"infinite", "depth", "3"})));
    EXPECT_FALSE(is_endless(read_go({"depth", "3"})));
}

TEST(Limits, KeepToSearchmovesThatAreLegal) {
    Words remarks;
    const auto moves = allowed_moves(start_position(), read_go(words_of("searchmoves e2e4 e2e5 e2e4")), false, remarks);
    EXPECT_EQ(moves.size(), 1U);
    EXPECT_EQ(remarks, Words{"searchmoves: 'e2e5' is not legal"});
    EXPECT_EQ(allowed_moves(start_position(), read_go(words_of("searchmoves e2e5")), false, remarks).size(), 20U);
}

}  // namespace
