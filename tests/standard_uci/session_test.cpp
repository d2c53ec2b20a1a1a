// The session without processes: what is answered to what, when, and that each go has one bestmove.
#include "standard_uci/support/surroundings.h"

#include <gtest/gtest.h>

namespace {

using namespace standard_uci_test;

constexpr const char* open_game = "position startpos moves e2e4 e7e5";

// --- Answers at once ---

TEST(Session, IntroducesItselfAndItsOptions) {
    Conversation c;
    const Lines said = c.say({"uci"});
    EXPECT_EQ(said.front().substr(0, 8), "id name ");
    EXPECT_EQ(said.back(), "uciok");
    for (const char* name : {"Hash", "Threads", "Ponder", "MultiPV", "Move Overhead", "Clock", "UCI_Chess960",
                             "UCI_AnalyseMode", "Temperament", "Own book"}) {
        EXPECT_EQ(only(said, std::string("option name ") + name + " type ").size(), 1U) << name;
    }
    EXPECT_TRUE(only(said, "option name Deep type").empty());
    EXPECT_TRUE(only(said, "option name Time control").empty());
    EXPECT_EQ(c.around.workers, 0) << "a client that only looks needs no worker";
}

TEST(Session, IsReadyAtAnyTime) {
    Conversation c;
    EXPECT_EQ(c.say({"isready"}), Lines{"readyok"});
    EXPECT_EQ(c.say({open_game, "isready"}), Lines{"readyok"});
    EXPECT_EQ(c.say({"go infinite", "isready"}), Lines{"readyok"});
    EXPECT_EQ(c.say({"joho   isready  now"}), Lines{"readyok"});
}

TEST(Session, IsSilentWhereNothingIsAsked) {
    Conversation c;
    EXPECT_TRUE(c.say({"", "   ", "stop", "ponderhit", "foo bar", "register later", "debug on", "ucinewgame"}).empty());
}

TEST(Session, SaysWhatIsWrongWithAnOption) {
    Conversation c;
    EXPECT_EQ(c.say({"setoption name Hash value 99"}),
              Lines{"info string setoption: '99' is no value of Hash: 16 to 16"});
    EXPECT_EQ(c.say({"setoption name nonsense value 3"}), Lines{"info string setoption: no option 'nonsense'"});
    EXPECT_EQ(c.say({"setoption"}), Lines{"info string setoption: no name"});
    EXPECT_TRUE(c.say({"setoption name Castle value value 5", "setoption name move overhead value 20"}).empty());
}

TEST(Session, KeepsThePositionBeforeABadOne) {
    Conversation c;
    c.say({open_game});
    EXPECT_EQ(c.say({"position startpos moves e2e5"}),
              Lines{"info string position refused: move 1, 'e2e5', is not legal"});
    c.say({"go depth 1"});
    EXPECT_EQ(c.around.to_worker.at(0), "position startpos moves e2e4 e7e5");
}

TEST(Session, QuotesNoMoreThanALineOfWhatIsWrong) {
    Conversation c;
    const Lines said = c.say({"position fen " + std::string(5000, 'x')});
    ASSERT_EQ(said.size(), 1U);
    EXPECT_LT(said[0].size(), 300U);
}

// --- A search ---

TEST(Session, OrdersASearchOfTheLegalMoves) {
    Conversation c;
    c.say({"position fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1", "go depth 7 searchmoves e1g1 h1h8 a1a2"});
    const Lines order{"position fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1", "allow e1g1 h1h8", "search 6 1 0 1"};
    EXPECT_EQ(c.around.to_worker, order);
}

TEST(Session, ShowsEachImprovementAndAnswersWhenTheSearchIsDone) {
    Conversation c;
    c.say({open_game, "go depth 2"});
    c.around.time += 50;
    const Lines said = c.worker_says(
        {found_line(1, 1, 3.21F, {"g1f3"}), found_line(2, 2, 15400.0F, {"d2d4", "e5d4"}), "depth 2", "finished"});
    const Lines expected{"info depth 1 seldepth 1 score cp 32 nodes 100 nps 2000 hashfull 0 time 50 pv g1f3",
                         "info depth 2 seldepth 2 score mate 1 nodes 200 nps 4000 hashfull 0 time 50 pv d2d4 e5d4",
                         "bestmove d2d4 ponder e5d4"};
    EXPECT_EQ(said, expected);
    EXPECT_FALSE(c.session.is_searching());
    EXPECT_TRUE(c.say({"stop"}).empty());
}

TEST(Session, ShowsTheLegalBeginningOfALine) {
    Conversation c;
    c.say({"position fen 8/P7/8/8/8/8/k6p/2K5 w - - 0 1", "go infinite"});
    const Lines said = c.worker_says({found_line(1, 4, 90.0F, {"a7a8", "h2h1", "c1b1", "a8a2"})});
    EXPECT_EQ(said.at(0), "info depth 4 seldepth 4 score cp 900 nodes 100 nps 100000 hashfull 0 time 0 pv a7a8q");
}

TEST(Session, TakesTheBestOfThePageWhenItIsStopped) {
    Conversation c;
    c.say({open_game, "go infinite"});
    c.worker_says({found_line(1, 1, 0, {"g1f3"})});
    c.around.published.serial = 2;
    c.around.published.depth = 4;
    c.around.published.length = 1;
    c.around.published.moves[0] = {'d', '2', 'd', '4'};
    const Lines said = c.say({"stop"});
    ASSERT_EQ(said.size(), 2U);
    EXPECT_EQ(only(said, "info depth 4").size(), 1U);
    EXPECT_EQ(said.back(), "bestmove d2d4");
}

TEST(Session, EndsTheWorkerOfASearchThatItStopsAndKeepsOneThatIsDone) {
    Conversation c;
    c.say({open_game, "go depth 1"});
    EXPECT_EQ(c.around.workers, 1);
    c.worker_says({found_line(1, 1, 0, {"g1f3"}), "finished"});
    c.say({"go infinite"});
    EXPECT_EQ(c.around.workers, 1);
    c.worker_says({found_line(1, 1, 0, {"g1f3"})});
    c.say({"stop"});
    EXPECT_EQ(c.around.workers, 2);
}

TEST(Session, WaitsAMomentForTheFirstMoveOfAStoppedSearch) {
    Conversation c;
    EXPECT_TRUE(c.say({open_game, "go infinite", "stop"}).empty());
    const Lines said = c.worker_says({found_line(1, 1, 0, {"g1f3"})});
    EXPECT_EQ(said.back(), "bestmove g1f3");
}

TEST(Session, AnswersALegalMoveWhenNothingWasFound) {
    Conversation c;
    c.say({open_game, "go infinite", "stop"});
    const Lines said = c.pass(20);
    EXPECT_EQ(only(said, "bestmove ").size(), 1U);
    EXPECT_EQ(only(said, "info string").size(), 1U);
}

TEST(Session, AnswersEachGoBeforeTheNext) {
    Conversation c;
    c.say({open_game, "go infinite"});
    c.worker_says({found_line(1, 1, 0, {"g1f3"})});
    EXPECT_EQ(c.say({"go infinite"}).back(), "bestmove g1f3");
    c.worker_says({found_line(1, 1, 0, {"d2d4"})});
    EXPECT_EQ(c.say({"stop"}), Lines{"bestmove d2d4"});
}

TEST(Session, HasNoMoveToAnswerInMateAndStalemate) {
    Conversation c;
    EXPECT_EQ(c.say({"position fen 7k/6Q1/6K1/8/8/8/8/8 b - - 0 1", "go movetime 100"}),
              (Lines{"info depth 0 score mate 0", "bestmove 0000"}));
    EXPECT_EQ(c.say({"position fen 7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", "go infinite"}), Lines{"info depth 0 score cp 0"});
    EXPECT_EQ(c.say({"stop"}), Lines{"bestmove 0000"});
}

// --- Time ---

TEST(Session, KeepsAFixedTime) {
    Conversation c;
    c.say({open_game, "go movetime 200"});
    c.worker_says({found_line(1, 1, 0, {"g1f3"}), "depth 1"});
    EXPECT_TRUE(c.pass(175).empty());
    EXPECT_EQ(c.pass(10), Lines{"bestmove g1f3"});
}

TEST(Session, BeginsNoNewDepthLate) {
    Conversation c;
    c.say({open_game, "go wtime 60000 btime 1"});
    c.worker_says({found_line(1, 1, 0, {"g1f3"}), "depth 1"});
    EXPECT_TRUE(c.pass(900).empty());
    EXPECT_FALSE(only(c.pass(1000), "info nodes").empty());
    EXPECT_EQ(c.worker_says({found_line(2, 2, 1.0F, {"d2d4"}), "depth 2"}).back(), "bestmove d2d4");
}

TEST(Session, ReadsTheClockOfTheSideToMove) {
    Conversation c;
    c.say({"position startpos moves e2e4", "go wtime 600000 btime 50"});
    c.worker_says({found_line(1, 1, 0, {"e7e5"})});
    EXPECT_EQ(c.pass(45).back(), "bestmove e7e5");
}

TEST(Session, AnswersAnEmptyClockAtOnce) {
    for (const char* go : {"go wtime 1 btime 1", "go wtime 0 btime 0", "go wtime -20 btime -20"}) {
        Conversation c;
        c.say({open_game, go});
        EXPECT_EQ(c.worker_says({found_line(1, 1, 0, {"g1f3"})}).back(), "bestmove g1f3") << go;
        c.say({go});
        EXPECT_EQ(only(c.pass(20), "bestmove ").size(), 1U) << go;
    }
}

TEST(Session, DoesNotThinkAboutAnOnlyMove) {
    Conversation c;
    c.say({"position fen 7k/8/8/8/8/8/r7/1r5K w - - 0 1"});
    EXPECT_EQ(only(c.say({"go wtime 60000 btime 60000"}), "bestmove").size(), 1U) << "mated";
    c.say({"position fen 7k/8/8/8/8/8/r7/6rK w - - 0 1", "go wtime 60000 btime 60000"});
    EXPECT_EQ(c.worker_says({found_line(1, 1, 0, {"h1g1"})}).back(), "bestmove h1g1");
}

TEST(Session, EndsAtALimitOfNodes) {
    Conversation c;
    c.say({open_game, "go nodes 5000"});
    c.worker_says({found_line(1, 1, 0, {"g1f3"})});
    c.around.nodes = 4999;
    EXPECT_TRUE(only(c.pass(10), "bestmove").empty());
    c.around.nodes = 5000;
    EXPECT_EQ(c.pass(5), Lines{"bestmove g1f3"});
}

TEST(Session, LetsTheEngineSpendItsClockByItsOwnRules) {
    Conversation c;
    c.say({"setoption name Clock value engine", "position startpos moves e2e4", "go wtime 5 btime 30000"});
    EXPECT_EQ(c.around.to_worker.back(), "search 24 1 30000 0");
    c.say({"stop"});
    c.pass(20);
    c.say({"go movetime 100"});
    EXPECT_EQ(c.around.to_worker.back(), "search 24 1 0 0");
}

// --- Pondering and analysis ---

TEST(Session, AnswersNoSoonerThanThePonderhit) {
    Conversation c;
    c.say({open_game, "go ponder wtime 3000 btime 3000"});
    EXPECT_TRUE(only(c.worker_says({found_line(1, 1, 0, {"g1f3"}), "depth 1"}), "bestmove").empty());
    EXPECT_TRUE(only(c.pass(5000), "bestmove").empty());
    EXPECT_TRUE(c.say({"ponderhit"}).empty());
    EXPECT_EQ(only(c.pass(3000), "bestmove"), Lines{"bestmove g1f3"});
}

TEST(Session, AnswersThePonderhitAtOnceWhenEnoughWasSearched) {
    Conversation c;
    c.say({open_game, "go ponder wtime 3000 btime 3000"});
    c.pass(5000);
    c.worker_says({found_line(1, 6, 0, {"g1f3"}), "depth 6"});
    EXPECT_EQ(c.say({"ponderhit"}), Lines{"bestmove g1f3"});
}

TEST(Session, GoesOnInfinitelyThoughTheSearchIsDone) {
    Conversation c;
    c.say({open_game, "go infinite"});
    EXPECT_TRUE(only(c.worker_says({found_line(1, 24, 0, {"g1f3"}), "finished"}), "bestmove").empty());
    EXPECT_TRUE(only(c.pass(100000), "bestmove").empty());
    EXPECT_EQ(c.say({"stop"}), Lines{"bestmove g1f3"});
}

TEST(Session, TellsOfEachSecondThatItSearches) {
    Conversation c;
    c.say({open_game, "go infinite"});
    c.worker_says({found_line(1, 1, 0, {"g1f3"})});
    EXPECT_TRUE(c.worker_says({"begun 1 2 d2d4"}).empty()) << "too soon";
    c.around.nodes = 3000;
    EXPECT_EQ(c.pass(2500), (Lines{"info nodes 3000 nps 3000 time 1000", "info nodes 3000 nps 1500 time 2000"}));
    EXPECT_EQ(c.worker_says({"begun 8 3 e1e2"}), Lines{"info depth 8 currmove e1e2 currmovenumber 3"});
}

TEST(Session, ShowsSeveralLinesWhenAllOfADepthAreThere) {
    Conversation c;
    c.say({"setoption name MultiPV value 2", open_game, "go infinite"});
    EXPECT_EQ(c.around.to_worker.back(), "search 24 2 0 0");
    FoundLine second = found(2, 4, 1.0F, {"d2d4"});
    second.rank = 2;
    EXPECT_TRUE(c.worker_says({found_line(1, 4, 2.0F, {"g1f3"}), line_of(second)}).empty());
    const Lines said = c.worker_says({"depth 4"});
    ASSERT_EQ(said.size(), 2U);
    EXPECT_NE(said[0].find(" multipv 1 score cp 20 "), std::string::npos);
    EXPECT_NE(said[1].find(" multipv 2 score cp 10 "), std::string::npos);
    c.worker_says({found_line(3, 6, 2.0F, {"b1c3"})});
    EXPECT_EQ(c.say({"stop"}), Lines{"bestmove g1f3"}) << "the depth was not complete";
}

TEST(Session, EndsWithTheMateThatIsLookedFor) {
    Conversation c;
    c.say({open_game, "go mate 2"});
    EXPECT_EQ(c.around.to_worker.back(), "search 4 1 0 0");
    EXPECT_TRUE(only(c.worker_says({found_line(1, 2, 13200.0F, {"g1f3"})}), "bestmove").empty());
    EXPECT_EQ(c.worker_says({found_line(2, 4, 14300.0F, {"d2d4"})}).back(), "bestmove d2d4");
}

// --- Workers that are lost ---

TEST(Session, TakesTheSearchUpWithAnotherWorker) {
    Conversation c;
    c.say({"setoption name Temperament value positional", open_game, "go infinite"});
    c.worker_says({found_line(1, 4, 0, {"g1f3"})});
    c.session.worker_ended();
    EXPECT_EQ(c.around.workers, 2);
    EXPECT_EQ(c.around.to_worker.front(), "option Temperament value positional");
    EXPECT_EQ(c.around.to_worker.back(), "search 24 1 0 0");
    EXPECT_TRUE(c.worker_says({found_line(1, 1, 0, {"a2a3"})}).empty()) << "less than was known";
    EXPECT_EQ(c.worker_says({found_line(2, 4, 0, {"d2d4"})}).size(), 1U);
    EXPECT_EQ(c.say({"stop"}), Lines{"bestmove d2d4"});
}

TEST(Session, AnswersThoughNoWorkerLives) {
    Conversation c;
    c.say({open_game, "go movetime 1000"});
    for (int k = 0; k < 4; ++k) {
        EXPECT_TRUE(c.session.is_searching());
        c.session.worker_ended();
    }
    EXPECT_FALSE(c.session.is_searching());
    EXPECT_EQ(only(c.around.to_client, "bestmove").size(), 1U);
}

TEST(Session, GivesANewGameAFreshWorker) {
    Conversation c;
    c.say({"ucinewgame", "isready", "ucinewgame"});
    EXPECT_EQ(c.around.workers, 1) << "it is fresh already";
    c.say({open_game, "go depth 1"});
    c.worker_says({found_line(1, 1, 0, {"g1f3"}), "finished"});
    c.say({"ucinewgame"});
    EXPECT_EQ(c.around.workers, 2);
}

TEST(Session, LetsASearchGoOnWhenTheNextGameIsAnnounced) {
    Conversation c;
    c.say({open_game, "go depth 8"});
    EXPECT_EQ(c.say({"ucinewgame", "isready", "position startpos"}), Lines{"readyok"});
    EXPECT_EQ(c.around.workers, 1);
    c.worker_says({found_line(1, 8, 0, {"g1f3"}), "finished"});
    EXPECT_EQ(c.around.workers, 2) << "the next game has a fresh one";
    EXPECT_EQ(c.say({"go depth 1"}), Lines{});
    EXPECT_EQ(c.around.workers, 2);
}

TEST(Session, RemembersAMoveForASearchThatFindsNone) {
    Conversation c;
    c.say({open_game, "go depth 1"});
    c.worker_says({found_line(1, 1, 0, {"d2d4"}), "finished"});
    c.say({"go infinite", "stop"});
    EXPECT_EQ(c.pass(20).back(), "bestmove d2d4");
    c.say({"setoption name Clear memory", "go infinite", "stop"});
    EXPECT_NE(c.pass(20).back(), "bestmove d2d4");
}

// --- The end ---

TEST(Session, AnswersAndLeavesAtTheEndOfInput) {
    Conversation c;
    c.say({open_game, "go infinite"});
    c.worker_says({found_line(1, 1, 0, {"g1f3"})});
    c.session.client_left();
    EXPECT_EQ(c.around.to_client, Lines{"bestmove g1f3"});
    EXPECT_TRUE(c.around.has_left);
    EXPECT_EQ(c.around.workers, 1) << "nobody is left to need another";
    EXPECT_TRUE(c.say({"isready"}).empty());
}

// --- The book, Chess960 ---

TEST(Session, AsksTheBookOnlyWhenItIsSwitchedOn) {
    Conversation c;
    EXPECT_TRUE(only(c.say({"position startpos", "go movetime 50"}), "bestmove").empty());
    c.say({"stop"});
    c.pass(20);
    c.say({"setoption name Own book value true"});
    EXPECT_EQ(c.say({"position startpos", "go movetime 50"}), Lines{"bestmove e2e4"});
    EXPECT_EQ(c.say({"position startpos moves e2e4 e7e5", "go movetime 50"}), Lines{"bestmove g1f3"});
    EXPECT_EQ(c.say({"position startpos moves d2d4", "go movetime 50"}), Lines{"bestmove c7c5"});
    EXPECT_TRUE(c.say({"setoption name UCI_AnalyseMode value true", "go movetime 50"}).empty());
}

TEST(Session, WritesCastlingOfChess960AsKingTakesRook) {
    Conversation c;
    c.say({"setoption name UCI_Chess960 value true", "position fen 4k3/8/8/8/8/8/8/4K2R w H - 0 1", "go infinite"});
    EXPECT_EQ(c.around.to_worker.at(0), "position fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1");
    EXPECT_TRUE(c.worker_says({found_line(1, 1, 0, {"e1g1"})}).at(0).ends_with(" pv e1h1"));
    EXPECT_EQ(c.say({"stop"}), Lines{"bestmove e1h1"});
}

// --- What kinds of clients say ---

// A line of the client with what must come before the next one; `moves` stands for any number of info lines.
struct Exchange {
    const char* said;
    Lines due;  // without info lines
};

class Client : public testing::TestWithParam<std::vector<Exchange>> {};

// The worker of these conversations finds a move as soon as it is asked, and is done where a depth was asked for.
void answer_as_worker(Conversation& c) {
    if (c.session.is_searching() && !c.around.to_worker.empty() && c.around.to_worker.back().starts_with("search")) {
        const Words allowed = words_of(c.around.to_worker.at(c.around.to_worker.size() - 2));
        c.session.worker_said(found_line(1, 1, 0, {allowed.at(1)}));
        c.session.worker_said("depth 1");
    }
}

TEST_P(Client, GetsWhatItWaitsFor) {
    Conversation c;
    for (const Exchange& exchange : GetParam()) {
        c.session.client_said(exchange.said);
        answer_as_worker(c);
        if (std::string_view(exchange.said).starts_with("go wtime")) {
            const Lines before = c.around.to_client;
            const Lines later = c.pass(10000);
            c.around.to_client = before;
            c.around.to_client.insert(c.around.to_client.end(), later.begin(), later.end());
        }
        Lines due = std::exchange(c.around.to_client, {});
        std::erase_if(due, [](const std::string& line) { return line.starts_with("info "); });
        for (std::string& line : due) {
            line = line.starts_with("bestmove ") ? "bestmove" : line;
        }
        EXPECT_EQ(due, exchange.due) << exchange.said;
    }
    EXPECT_FALSE(c.session.is_searching());
}

const std::vector<Exchange> match_runner{
    {"ucinewgame", {}},
    {"isready", {"readyok"}},
    {"position startpos moves e2e4 c7c5", {}},
    {"isready", {"readyok"}},
    {"go wtime 1000 btime 1000 winc 10 binc 10", {"bestmove"}},
    {"isready", {"readyok"}},
    {"position startpos moves e2e4 c7c5 g1f3 d7d6", {}},
    {"isready", {"readyok"}},
    {"go wtime 900 btime 1000 winc 10 binc 10", {"bestmove"}},
    {"ucinewgame", {}},
    {"isready", {"readyok"}},
    {"position startpos", {}},
    {"go wtime 1000 btime 1000", {"bestmove"}},
};

const std::vector<Exchange> analysis_window{
    {"setoption name UCI_AnalyseMode value true", {}},
    {"position startpos moves e2e4", {}},
    {"go infinite", {}},
    {"stop", {"bestmove"}},
    {"position startpos moves e2e4 e7e5", {}},
    {"go infinite", {}},
    {"isready", {"readyok"}},
    {"stop", {"bestmove"}},
    {"stop", {}},
    {"setoption name MultiPV value 3", {}},
    {"position startpos moves e2e4 e7e5 f1c4", {}},
    {"go infinite", {}},
    {"stop", {"bestmove"}},
};

const std::vector<Exchange> bot{
    {"setoption name Ponder value true", {}},
    {"ucinewgame", {}},
    {"position startpos moves e2e4 e7e5", {}},
    {"go wtime 3000 btime 3000", {"bestmove"}},
    {"position startpos moves e2e4 e7e5 g1f3 b8c6", {}},
    {"go ponder wtime 3000 btime 3000", {}},
    {"stop", {"bestmove"}},
    {"position startpos moves e2e4 e7e5 g1f3 g8f6", {}},
    {"go wtime 3000 btime 3000", {"bestmove"}},
    {"quit", {}},
};

const std::vector<Exchange> hasty_client{
    {"position startpos moves e2e4", {}},
    {"go infinite", {}},
    {"position startpos moves d2d4", {}},
    {"ucinewgame", {}},
    {"setoption name Temperament value positional", {}},
    {"go infinite", {"bestmove"}},
    {"quit", {"bestmove"}},
};

INSTANTIATE_TEST_SUITE_P(OfEachKind, Client, testing::Values(match_runner, analysis_window, bot, hasty_client));

}  // namespace
