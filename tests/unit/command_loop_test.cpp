// The command loop: which line is understood where, what is answered at once, and what a new game puts back.
#include "uci/command_loop.h"

#include "eval/leaf.h"
#include "eval/strategy.h"
#include "eval/tables.h"
#include "memory/game_memory.h"
#include "search/root_routines.h"
#include "support/chess_rules.h"
#include "support/dialogue.h"
#include "support/engine.h"
#include "support/process.h"
#include "support/shallow_records.h"
#include "support/transcript.h"
#include "uci/position.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <tuple>

namespace {

using namespace tests;
using namespace ondrel;

const Lines nothing;
const std::string shallow_search = "setoption name Deep value 1";
const std::string without_book = "setoption name Own book value false";
const std::string out_of_book = "position startpos moves e2e4 a7a6";

class CommandLoop : public testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

// --- What each of the three places understands ---

TEST_F(CommandLoop, UciIsAnsweredBeforeAnythingElse) {
    const Lines lines = converse({"uci"});
    ASSERT_EQ(lines.size(), 36U);  // two of identity, 33 options, uciok
    EXPECT_EQ(lines.front(), "id name Ondrel 29.1 64bit");
    EXPECT_EQ(lines.back(), "uciok");
}

TEST_F(CommandLoop, UciIsNotAnsweredAfterTheFirstPosition) {
    EXPECT_EQ(dialogue({"position startpos", "uci", "isready"}),
              (std::vector<Lines>{{"bestmove e2e4"}, nothing, {"readyok"}}));
}

TEST_F(CommandLoop, StartPositionIsAnsweredBeforeAnyGo) {
    EXPECT_EQ(dialogue({"position startpos", "go wtime 300000 btime 300000"}),
              (std::vector<Lines>{{"bestmove e2e4"}, nothing}));
}

TEST_F(CommandLoop, IsreadyIsAnsweredIdleAndBetweenMovesButNotWhileWaitingForGo) {
    const auto answers =
        dialogue({shallow_search, "isready", "position startpos", "isready", out_of_book, "isready", "go", "isready"});
    ASSERT_EQ(answers.size(), 8U);
    EXPECT_EQ(answers[1], Lines{"readyok"});
    EXPECT_EQ(answers[3], Lines{"readyok"});
    EXPECT_EQ(answers[5], nothing);
    EXPECT_EQ(count_starting(answers[6], "readyok"), 0);
    EXPECT_EQ(answers[7], Lines{"readyok"});
}

TEST_F(CommandLoop, FirstMoveOutsideTheSixHasNoReplyAndItsGoNeither) {
    EXPECT_EQ(dialogue({"position startpos moves c2c4", "go wtime 300000 btime 300000", "isready"}),
              (std::vector<Lines>{nothing, nothing, {"readyok"}}));
}

TEST_F(CommandLoop, ReplyToTheFirstMoveNeedsNoGo) {
    EXPECT_EQ(dialogue({"position startpos moves e2e4", "go"}), (std::vector<Lines>{{"bestmove d7d5"}, nothing}));
}

TEST_F(CommandLoop, StopDoesNotEndASearchAndIsDroppedAfterIt) {
    const Lines without_stop = converse({shallow_search, out_of_book, "go"});
    fresh_process();
    const auto answers = dialogue({shallow_search, out_of_book, "go", "stop", "isready"});
    ASSERT_EQ(answers.size(), 5U);
    // The final report and the reply; the lines before them tell the time.
    ASSERT_GE(answers[2].size(), 2U);
    ASSERT_EQ(count_starting(answers[2], "info score"), count_starting(without_stop, "info score"));
    EXPECT_EQ(answers[2].back(), without_stop.back());
    EXPECT_EQ(*(answers[2].end() - 2), *(without_stop.end() - 2));
    EXPECT_EQ(answers[3], nothing);
    EXPECT_EQ(answers[4], Lines{"readyok"});
}

TEST_F(CommandLoop, NothingIsReadWhileItSearches) {
    const auto answers = dialogue({shallow_search, out_of_book, "go", "isready"});
    EXPECT_EQ(count_starting(answers[2], "bestmove "), 1);
}

TEST_F(CommandLoop, WordsAreComparedWholeAndUntrimmed) {
    for (const char* line : {"uci ", " uci", "UCI", "ucinewgame", "uc", "isready ", " isready", "Isready", "quit ",
                             " quit", "QUIT", "position startpos ", " position startpos", "positionstartpos", ""}) {
        fresh_process();
        EXPECT_EQ(dialogue({line, "isready"}), (std::vector<Lines>{nothing, {"readyok"}})) << '"' << line << '"';
    }
}

TEST_F(CommandLoop, WordsAreComparedWholeBetweenMovesToo) {
    for (const char* line : {"isready ", " isready", "quit ", " quit", "position startpos ", "uci", ""}) {
        fresh_process();
        EXPECT_EQ(dialogue({"position startpos", line, "isready"}),
                  (std::vector<Lines>{{"bestmove e2e4"}, nothing, {"readyok"}}))
            << '"' << line << '"';
    }
}

TEST_F(CommandLoop, UnknownWordsAreDroppedInBothLoops) {
    for (const char* line : {"ucinewgame", "stop", "ponderhit", "debug on", "register later", "go", "go infinite",
                             "setoption name Nothing value 1", "help", "position", "d"}) {
        fresh_process();
        EXPECT_EQ(dialogue({line, "position startpos", line, "isready"}),
                  (std::vector<Lines>{nothing, {"bestmove e2e4"}, nothing, {"readyok"}}))
            << line;
    }
}

TEST_F(CommandLoop, GoWaitLosesEveryOtherCommand) {
    const auto answers =
        dialogue({shallow_search, without_book, out_of_book, "position startpos", "isready", "uci", "quit",
                  "setoption name Castle value value 9", "stop", " go", "Go", "g", "go", "isready"});
    ASSERT_EQ(answers.size(), 14U);
    for (std::size_t k = 2; k < 12; ++k) {
        EXPECT_EQ(answers[k], nothing) << k;
    }
    EXPECT_EQ(count_starting(answers[12], "bestmove "), 1);
    EXPECT_EQ(answers[13], Lines{"readyok"});
    EXPECT_EQ(options.roque_v, 3);
    EXPECT_EQ(tab[square_of("a6")], -peao);  // a7a6 stands: the position line in the wait was lost
}

TEST_F(CommandLoop, AnyLineThatBeginsWithGoStartsTheSearch) {
    for (const char* line : {"go", "gone", "go infinite", "go movetime 1000", "go depth 10", "goal"}) {
        fresh_process();
        const auto answers = dialogue({shallow_search, out_of_book, line});
        EXPECT_EQ(count_starting(answers[2], "bestmove "), 1) << line;
    }
}

// --- The four forms of position are known by single characters, in both loops alike ---

struct Form {
    std::string line;
    int as_white, as_black, in_game, fen;
};

const std::vector<Form> forms{
    {"position startpos", 1, 0, 0, 0},
    {"position startpos moves e2e4", 0, 1, 0, 0},
    {"position startpos moves e2e4 ", 0, 0, 1, 0},
    {"position startpos moves e2e4 e7e5", 0, 0, 1, 0},
    {"position fen 8/8/8/8/8/8/8/K1k5 w - - 0 1", 0, 0, 0, 1},
    // Nothing but the characters at 0, 9, 18 and 28, or 0, 5 and 9, is looked at.
    {"p--------s--------m---------", 0, 1, 0, 0},
    {"p--------s--------m---------x", 0, 0, 1, 0},
    {"p--------s--------m", 0, 1, 0, 0},
    {"p----i---f", 0, 0, 0, 1},
    // With the characters of both, the game from the start position comes first: 9 cannot be "s" and "f".
    {"p----i---s--------m---------x", 0, 0, 1, 0},
};

TEST_F(CommandLoop, ReaderBetweenMovesTellsTheFormsApart) {
    for (const Form& form : forms) {
        command.joga_c_b = command.joga_c_p = command.joga_c_ob = command.joga_c_fen = 1;
        with_input("stop\n" + form.line + "\nisready\n", convert_a1a2_to_0000);
        EXPECT_EQ(command.joga_c_b, form.as_white) << form.line;
        EXPECT_EQ(command.joga_c_p, form.as_black) << form.line;
        EXPECT_EQ(command.joga_c_ob, form.in_game) << form.line;
        EXPECT_EQ(command.joga_c_fen, form.fen) << form.line;
        EXPECT_EQ(command.SAIR_PROGRAMA, 0) << form.line;
        EXPECT_EQ(command.in, form.line);
    }
}

TEST_F(CommandLoop, ReaderBetweenMovesStopsAtQuit) {
    EXPECT_EQ(with_input("isready\nquit\nisready\n", convert_a1a2_to_0000), "readyok\n");
    EXPECT_EQ(command.SAIR_PROGRAMA, 1);
    EXPECT_EQ(command.joga_c_b + command.joga_c_p + command.joga_c_ob + command.joga_c_fen, 0);
}

TEST_F(CommandLoop, ReaderBetweenMovesComesBackWithoutAFlagAtTheEndOfInput) {
    command.joga_c_b = command.joga_c_p = command.joga_c_ob = command.joga_c_fen = 1;
    EXPECT_EQ(with_input("isready\n", convert_a1a2_to_0000), "readyok\n");
    EXPECT_EQ(command.joga_c_b + command.joga_c_p + command.joga_c_ob + command.joga_c_fen + command.SAIR_PROGRAMA, 0);
}

// A clock in low time lowers the depth of its own search alone.
TEST_F(CommandLoop, EverySearchBeginsAtTheDepthOfTheOption) {
    const std::string with_two_pawns = "position fen 4k3/p7/8/8/8/8/P7/4K3 w - - 0 1";
    int deep = -1;
    dialogue({"setoption name Deep value 3",
              with_two_pawns,
              "go wtime 50 btime 50",
              with_two_pawns + ' ',
              {"go", [&deep] { deep = search.deep; }}});
    EXPECT_EQ(deep, 5);
}

TEST_F(CommandLoop, IdleLoopTellsTheFormsApart) {
    for (const Form& form : forms) {
        fresh_process();
        options.OwnBook = 0;
        options.deepp = 0;
        bool asked_on = false;
        const auto answers = dialogue({{form.line}, {"go", [&] { asked_on = true; }}});
        ASSERT_TRUE(asked_on);
        // A first move is searched on the spot, everything else waits for go.
        const std::size_t searched_at = form.as_white || form.as_black ? 0 : 1;
        EXPECT_EQ(count_starting(answers[searched_at], "bestmove "), 1) << form.line;
        EXPECT_EQ(answers[1 - searched_at], nothing) << form.line;
    }
}

TEST_F(CommandLoop, CharactersInTheWrongPlaceMakeNoPosition) {
    for (const char* line : {"Position startpos", "xosition startpos moves e2e4 e7e5", "position xtartpos moves e2e4",
                             "position startpos xoves e2e4", "position  startpos moves e2e4 e7e5",
                             "position  fen 8/8/8/8/8/8/8/K1k5 w - - 0 1", "posit-on fen 8/8/8/8/8/8/8/K1k5 w - - 0 1",
                             "position Fen 8/8/8/8/8/8/8/K1k5 w - - 0 1"}) {
        fresh_process();
        EXPECT_EQ(dialogue({line, "isready"}), (std::vector<Lines>{nothing, {"readyok"}})) << line;
        EXPECT_EQ(dialogue({"position startpos", line, "isready"}),
                  (std::vector<Lines>{{"bestmove e2e4"}, nothing, {"readyok"}}))
            << line;
    }
}

// --- The text of the reply ---

TEST_F(CommandLoop, ReplyNamesTheMoveInFourCharacters) {
    game.abcd = {0, 0, 7, 7};
    game_line.PR = '0';
    game_line.PRs = 'q';
    convert_0000_to_a1a2();
    EXPECT_EQ(command.out, "bestmove a1h8");
    EXPECT_EQ(std::string(command.ABCD.data(), 4), "a1h8");
    EXPECT_EQ(game_line.PRs, '0');
    EXPECT_EQ(game_line.PR, '0');
}

TEST_F(CommandLoop, ReplyNamesAQueenOnce) {
    game.abcd = {6, 6, 6, 7};
    game_line.PR = 'q';
    game_line.PRs = 'q';
    convert_0000_to_a1a2();
    EXPECT_EQ(command.out, "bestmove g7g8q");
    EXPECT_EQ(game_line.PR, '0');
    EXPECT_EQ(game_line.PRs, '0');
    convert_0000_to_a1a2();
    EXPECT_EQ(command.out, "bestmove g7g8");
}

TEST_F(CommandLoop, ReplyKeepsItsOldTextForAnyOtherPromotionLetter) {
    game.abcd = {4, 1, 4, 3};
    convert_0000_to_a1a2();
    game.abcd = {6, 6, 6, 7};
    for (const char letter : {'n', 'r', 'b', 'Q', 'x', '\0'}) {
        game_line.PR = letter;
        game_line.PRs = 'q';
        convert_0000_to_a1a2();
        EXPECT_EQ(command.out, "bestmove e2e4");
        EXPECT_EQ(std::string(command.ABCD.data(), 4), "e2e4");
        EXPECT_EQ(game_line.PR, letter);
        EXPECT_EQ(game_line.PRs, 'q');
    }
}

TEST_F(CommandLoop, ReplyNamesEverySquare) {
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            game.abcd = move_of(f, r, 7 - f, 7 - r);
            convert_0000_to_a1a2();
            const std::string from{static_cast<char>('a' + f), static_cast<char>('1' + r)};
            const std::string to{static_cast<char>('h' - f), static_cast<char>('8' - r)};
            EXPECT_EQ(command.out, std::string("bestmove ").append(from).append(to));
        }
    }
}

TEST_F(CommandLoop, PromotionOfTheSearchReachesTheReply) {
    const auto lines = converse({shallow_search, "position fen 8/6P1/8/8/8/k7/8/7K w - - 0 1", "go"});
    EXPECT_EQ(lines.back(), "bestmove g7g8q");
    // The report names the move without its letter.
    EXPECT_TRUE((lines.end() - 2)->ends_with(" pv g7g8")) << *(lines.end() - 2);
}

// --- The order on the wire ---

TEST_F(CommandLoop, FinalReportStandsRightBeforeTheReply) {
    const Lines lines = converse({shallow_search, out_of_book, "go"});
    ASSERT_GE(lines.size(), 2U);
    const std::string& report = *(lines.end() - 2);
    EXPECT_TRUE(report.starts_with("info score ")) << report;
    EXPECT_EQ(report.find("currmove"), std::string::npos) << report;
    EXPECT_TRUE(lines.back().starts_with("bestmove ")) << lines.back();
    EXPECT_EQ(report.substr(report.size() - 4), lines.back().substr(9, 4));
}

TEST_F(CommandLoop, RememberedSearchWritesItsFinalReportAndReplyAlone) {
    const auto answers = dialogue({shallow_search, out_of_book, "go", out_of_book, "go"});
    ASSERT_EQ(answers[4].size(), 2U);
    EXPECT_TRUE(answers[4][0].starts_with("info score ")) << answers[4][0];
    EXPECT_EQ(answers[4][1], answers[2].back());
}

TEST_F(CommandLoop, EachPositionLineBuildsTheGameAnew) {
    converse({shallow_search, "position startpos moves d2d4 a7a6", "go", "position startpos moves e2e4 h7h6", "go"});
    const auto moves =
        rules::legal_moves(*rules::from_fen("rnbqkbnr/ppppppp1/7p/8/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2"));
    const std::string played = command.out.substr(9);
    EXPECT_TRUE(std::ranges::any_of(moves, [&](const auto& m) { return rules::to_uci(m) == played; })) << played;
    EXPECT_EQ(game_line.tabr1[1][square_of("d2")], peao);  // d2d4 is of the game before
    EXPECT_EQ(game_line.tabr1[1][square_of("h6")], -peao);
}

TEST_F(CommandLoop, ReplyIsPlayedOnTheBoardOfTheGame) {
    converse({shallow_search, out_of_book, "go"});
    EXPECT_EQ(tab[game.abcd.from()], no_piece);
    EXPECT_GT(tab[game.abcd.to()], 0);
}

// --- Ends ---

TEST(CommandLoopProcess, SaysNothingUntilAsked) {
    EngineProcess engine;
    std::string line;
    EXPECT_FALSE(engine.read(line, std::chrono::milliseconds(100)));
    engine.write("isready");
    ASSERT_TRUE(engine.read(line));
    EXPECT_EQ(line, "readyok");
}

TEST(CommandLoopProcess, QuitQueuedBehindASearchEndsItAfterTheReply) {
    const Outcome r = run_engine(shallow_search + "\n" + out_of_book + "\ngo\nquit\nisready\n");
    EXPECT_EQ(r.exit_code, 0);
    EXPECT_TRUE(r.lines().back().starts_with("bestmove ")) << r.output;
    EXPECT_EQ(r.count_starting("bestmove "), 1);
    EXPECT_EQ(r.error, "");
}

// The book would answer this line: without it the search is waited for, and the end of input is its go.
TEST(CommandLoopProcess, EndOfInputAfterAPositionStartsTheSearch) {
    const Outcome r = run_engine(shallow_search + "\n" + without_book + "\nposition startpos moves e2e4 e7e5\n");
    EXPECT_EQ(r.exit_code, 0);
    EXPECT_EQ(r.count_starting("bestmove "), 1);
    EXPECT_TRUE(r.lines().back().starts_with("bestmove ")) << r.output;
}

TEST(CommandLoopProcess, EndOfInputAndQuitExitWithZeroEverywhere) {
    for (const char* input : {"", "\n", "uci\n", "quit\n", "position startpos\n", "position startpos\nquit\n",
                              "position startpos moves e2e4 e7e5\n", "position startpos moves e2e4 e7e5\nquit\n"}) {
        const Outcome r = run_engine(input);
        EXPECT_EQ(r.exit_code, 0) << input;
        EXPECT_EQ(r.error, "") << input;
    }
}

TEST(CommandLoopProcess, LastLineCountsWithoutItsLineEnd) {
    EXPECT_EQ(run_engine("isready").output, "readyok\n");
    EXPECT_EQ(run_engine("position startpos").output, "bestmove e2e4\n");
}

// --- The first move without the book ---

// The root moves of the first search of a game in the order in which they are tried, with their class.
struct FirstMove {
    int ESTRATEGIA;
    Move m;
};
std::vector<FirstMove> first_moves_tried;

Lines search_first(const std::string& line) {
    first_moves_tried.clear();
    probes.child_entered = [](int n, Move m) {
        if (n == 1) {
            first_moves_tried.push_back({pass.ataque, m});
        }
    };
    return converse({without_book, shallow_search, line});
}

// Classes fall; within one all pawns come before all knights, each kind by files and then ranks.
void expect_order_of_first_moves(const Board& t) {
    const auto comes_before = [&t](const FirstMove& x, const FirstMove& y) {
        const auto place_in_order = [&t](const FirstMove& x) {
            return std::tuple(-x.ESTRATEGIA, value_of(t[x.m.from()]) == peao ? 0 : 1, x.m.from());
        };
        return place_in_order(x) < place_in_order(y);
    };
    EXPECT_TRUE(std::ranges::is_sorted(first_moves_tried, comes_before));
    for (const FirstMove& x : first_moves_tried) {
        const int piece = value_of(t[x.m.from()]);
        EXPECT_TRUE(piece == peao || piece == cavalo) << text_of(x.m);
    }
}

TEST_F(CommandLoop, FirstMoveAsWhiteIsSearchedWithoutTheBook) {
    const Lines lines = search_first("position startpos");
    EXPECT_EQ(first_moves_tried.size(), 20U);
    expect_order_of_first_moves(start_board);
    EXPECT_EQ(count_starting(lines, "bestmove "), 1);
    EXPECT_EQ(tab[game.abcd.from()], no_piece);  // played
    EXPECT_EQ(search.EP, search.E);
    EXPECT_EQ(search.tempo, 180000);
    EXPECT_EQ(game.joga_com_b, 1);
    EXPECT_TRUE((lines.end() - 2)->starts_with("info score cp ")) << *(lines.end() - 2);
}

TEST_F(CommandLoop, FirstMoveAsBlackIsSearchedWithoutTheBook) {
    const Lines lines = search_first("position startpos moves b1c3");
    Board t = start_board;
    t[square_of("c3")] = t[square_of("b1")];
    t[square_of("b1")] = no_piece;
    EXPECT_EQ(first_moves_tried.size(), 20U);
    expect_order_of_first_moves(t);
    EXPECT_EQ(count_starting(lines, "bestmove "), 1);
    EXPECT_LT(tab[game.abcd.to()], 0);
    EXPECT_EQ(tab[square_of("c3")], cavalo);
    EXPECT_EQ(game.joga_com_b, 0);
}

TEST_F(CommandLoop, FirstMoveAfterAnUnknownMoveIsSearchedWithoutTheBook) {
    EXPECT_EQ(count_starting(converse({without_book, shallow_search, "position startpos moves c2c4"}), "bestmove "), 1);
}

TEST_F(CommandLoop, FirstSearchHasOnePassAtTheDepthOfTheOption) {
    for (const auto& [value, depth] : {std::pair("0", " depth 1 "), {"1", " depth 2 "}, {"2", " depth 4 "}}) {
        fresh_process();
        const Lines lines =
            converse({without_book, std::string("setoption name Deep value ") + value, "position startpos"});
        int reports = 0;
        for (const std::string& line : lines) {
            reports += line.find(" currmove ") != std::string::npos ? 1 : 0;
            EXPECT_TRUE(line.find(" currmove ") == std::string::npos || line.find(depth) != std::string::npos) << line;
        }
        EXPECT_EQ(reports, 20) << value;
    }
}

TEST_F(CommandLoop, FirstSearchOfASecondGameRunsAtTheDepthOfTheOption) {
    const auto answers =
        dialogue({without_book, shallow_search, out_of_book, "go wtime 50 btime 50", "position startpos"});
    EXPECT_GT(count_holding(answers[4], " depth 2 "), 0);
}

TEST_F(CommandLoop, GameDoesNotDependOnTheGameBefore) {
    const auto alone = dialogue({without_book, shallow_search, "position startpos"});
    fresh_process();
    const auto after = dialogue({without_book, shallow_search, "position fen 4k3/PP6/8/8/8/8/6pp/K7 b - - 0 1", "go",
                                 "position startpos moves g1f3", "position startpos"});
    EXPECT_EQ(without_clock(after[5]), without_clock(alone[2]));
}

TEST_F(CommandLoop, OneMoveFormPlaysTheMoveOnTheBoardEvenWithoutAReply) {
    converse({"position startpos moves h2h4"});
    EXPECT_EQ(tab[square_of("h4")], peao);
    EXPECT_EQ(tab[square_of("h2")], no_piece);
    EXPECT_EQ(jm.p_ah[white][7], 1);
    EXPECT_EQ(game.joga_com_b, 0);
}

// --- What a new game and a position line put back: every item is spoilt first ---

struct Item {
    const char* name;
    std::function<void()> spoil;
    std::function<void()> check;
};

void PrintTo(const Item& item, std::ostream* os) { *os << item.name; }

// An item that is one variable. NOLINTNEXTLINE(cppcoreguidelines-macro-usage): of any type, written and read
#define ITEM(name, variable, spoilt, clean)                                     \
    Item {                                                                      \
        name, [] { (variable) = spoilt; }, [] { EXPECT_EQ((variable), clean); } \
    }

constexpr Move spoilt_move{1, 2, 3, 4};

void spoil_moves() {
    slots.aab_ddb = spoilt_move;
    slots.aa_dd.fill(spoilt_move);
    slots.aag_ddg.fill(spoilt_move);
}

void check_moves() {
    EXPECT_EQ(slots.aab_ddb, no_move);
    EXPECT_EQ(std::ranges::count(slots.aa_dd, no_move), last_ply);
    EXPECT_EQ(std::ranges::count(slots.aag_ddg, no_move), last_ply);
}

void check_no_en_passant() {
    for (const Colour c : {white, black}) {
        EXPECT_EQ(std::ranges::count(jm.p_ah[c], 0), 8);
    }
}

void check_empty_history() {
    for (const Board& row : game_line.tabr1) {
        EXPECT_EQ(std::ranges::count(row, 1), squares);
    }
}

// The mates that the plies still allow, the root's own that of ply 1.
void check_ladder(const std::array<float, last_ply>& limits) {
    EXPECT_EQ(limits[0], 15400.0F);
    for (int n = 1; n < last_ply; ++n) {
        EXPECT_EQ(limits[n], 15400.0F - 1100.0F * static_cast<float>(n / 2)) << n;
    }
}

// What the reset of a position line does; that of a new game does it too.
const std::vector<Item> items_of_position{
    {"inicio", [] { search.inicio = -1000000; }, [] { EXPECT_GE(search.inicio, 0); }},
    ITEM("deep", search.deep, 7, options.deepp),
    ITEM("IIDS", search.IIDS, 0, 1),
    {"FULL", [] { search.FULL.fill(1); }, [] { EXPECT_EQ(std::ranges::count(search.FULL, 0), 6); }},
    {"SEARCH_E", [] { options.SEARCH_EE = 1, search.SEARCH_E = 0; }, [] { EXPECT_EQ(search.SEARCH_E, 1); }},
    {"SEARCH_E_off", [] { options.SEARCH_EE = 0, search.SEARCH_E = 1; }, [] { EXPECT_EQ(search.SEARCH_E, 0); }},
    {"HASHf", [] { options.HASHf = 1, search.HASHf = 0; }, [] { EXPECT_EQ(search.HASHf, 1); }},
    {"HASHf_off", [] { options.HASHf = 0, search.HASHf = 1; }, [] { EXPECT_EQ(search.HASHf, 0); }},
    ITEM("DEEP9", search.DEEP9, 1, 0),
    ITEM("E", search.E, 77.0F, -10000000.0F),
    ITEM("EP", search.EP, 77.0F, 0.0F),
    ITEM("curr", search.curr, 7, 0),
    ITEM("nodes", search.nodes, 77U, 0U),
    ITEM("dddep", search.dddep, 7, 0),
    ITEM("mem_TEST", search.mem_TEST, 1, 0),
    ITEM("peca", game_line.peca, 50, 0),
    ITEM("alfa0", bounds.alfa[0], 77.0F, -16500.0F),
    ITEM("ALFA0", bounds.ALFA0, 77.0F, -16500.0F),
    {"MAXcut", [] { bounds.MAXcut.fill(7); }, [] { check_ladder(bounds.MAXcut); }},
    {"MAXcutt", [] { bounds.MAXcutt.fill(7); }, [] { check_ladder(bounds.MAXcutt); }},
    {"moves", spoil_moves, check_moves},
    ITEM("nb", game_line.nb, 77, 1),
    ITEM("o", command.o, 77, 24),
    ITEM("PR", game_line.PR, 'q', '0'),
    ITEM("PRs", game_line.PRs, 'q', '0'),
    ITEM("PRe", game_line.PRe, 'n', '0'),
    ITEM("SAIR_PROGRAMA", command.SAIR_PROGRAMA, 1, 0),
    {"en_passant", [] { jm.p_ah[white].fill(1), jm.p_ah[black].fill(1); }, check_no_en_passant},
    ITEM("joga_c_b", command.joga_c_b, 1, 0),
    ITEM("joga_c_p", command.joga_c_p, 1, 0),
    {"history", [] { game_line.tabr1[0].fill(7), game_line.tabr1[999].fill(7); }, check_empty_history},
};

// An item that is one array, as it is in every new game.
template <auto start, class T>
Item array_item(const char* name, T& variable, const T& spoilt) {
    return {name, [&variable, spoilt] { variable = spoilt; }, [&variable] { EXPECT_EQ(variable, (T{start, start})); }};
}

// What a new game does besides.
const std::vector<Item> items_of_game{
    {"EXTRA_EVAL", [] { options.EXTRA_EVALL = 0, search.EXTRA_EVAL = 0; }, [] { EXPECT_EQ(search.EXTRA_EVAL, 1); }},
    ITEM("Y", trial.Y, 1, 0),
    ITEM("materialflot0", root.materialflot0, 77.0F, 0.0F),
    ITEM("tempo", search.tempo, 7, 180000),
    array_item<0>("R_jm", jm.R_jm, {1, 1}),
    array_item<0>("T_a_jm", jm.T_a_jm, {1, 1}),
    array_item<0>("T_h_jm", jm.T_h_jm, {1, 1}),
    ITEM("joga_c_ob", command.joga_c_ob, 1, 0),
    ITEM("joga_c_fen", command.joga_c_fen, 1, 0),
    {"tab", [] { tab.fill(10); }, [] { EXPECT_EQ(tab, start_board); }},
    array_item<510>("material_a", root.material_a, {1, 2}),
    array_item<320>("materialmaior", root.materialmaior, {1, 2}),
    array_item<15>("npecas", root.npecas, {1, 2}),
    {"emp", [] { options.empp = -7, search.emp = 77; }, [] { EXPECT_EQ(search.emp, -17); }},
    {"emppp", [] { options.empp = 10, search.emppp = 77; }, [] { EXPECT_EQ(search.emppp, 0); }},
    // A game begins as the process does.
    ITEM("regimen", root.regimen, 77.0F, 0.0F),
    {"king_squares",
     [] {
         trial.p_xy_R = {10, 20};
     },
     [] {
         EXPECT_EQ(trial.p_xy_R, (std::array{square_of("e1"), square_of("e8")}));
     }},
    {"Xr", [] { root.Xr[white].fill(7), root.Xr[black].fill(7); }, [] { EXPECT_EQ(root.Xr, RootPosition{}.Xr); }},
    {"XP", [] { root.XP[white].fill(7), root.XP[black].fill(7); }, [] { EXPECT_EQ(root.XP, RootPosition{}.XP); }},
};

std::string name_of_item(const testing::TestParamInfo<Item>& info) { return info.param.name; }

class NewGameReset : public testing::TestWithParam<Item> {
protected:
    void SetUp() override { fresh_process(); }
};

TEST_P(NewGameReset, AsWhite) {
    GetParam().spoil();
    converse({"position startpos"});
    GetParam().check();
}

TEST_P(NewGameReset, AsBlack) {
    GetParam().spoil();
    begin_game(black);
    GetParam().check();
}

INSTANTIATE_TEST_SUITE_P(Common, NewGameReset, testing::ValuesIn(items_of_position), name_of_item);
INSTANTIATE_TEST_SUITE_P(Own, NewGameReset, testing::ValuesIn(items_of_game), name_of_item);

class PositionReset : public testing::TestWithParam<Item> {
protected:
    void SetUp() override { fresh_process(); }
};

// A line of neither form resets and sets nothing up.
TEST_P(PositionReset, IsDoneByEveryPositionLine) {
    GetParam().spoil();
    command.in = "position";
    command.joga_c_ob = 0;
    command.joga_c_fen = 0;
    read_position();
    GetParam().check();
}

INSTANTIATE_TEST_SUITE_P(Item, PositionReset, testing::ValuesIn(items_of_position), name_of_item);

TEST_F(CommandLoop, PositionResetLeavesWhatTheReplayLooksAt) {
    command.in = "position fen 4k3/8/8/8/8/8/8/4K3 w - - 0 1";
    command.joga_c_ob = 0;
    command.joga_c_fen = 1;
    read_position();
    EXPECT_EQ(command.joga_c_fen, 1);
    EXPECT_EQ(command.joga_c_ob, 0);
    command.joga_c_fen = 0;
    command.joga_c_ob = 1;
    command.in = "position startpos moves e2e4 e7e5";
    read_position();
    EXPECT_EQ(command.joga_c_ob, 1);
    EXPECT_EQ(command.joga_c_fen, 0);
}

// What a pass, a root move or a node begins for itself.
void spoil_working_values() {
    pass = {.SCAN1 = 1, .SCANT = 1, .pempatee = 0, .DEEP = 7, .ataque = 5, .corte_MAXcut = 1, .roque = {10, 9}};
    root_move = {.BETA1 = 7, .PVSm = 1, .PVSm2 = 1, .LMRtest = 1};
    tree.curr_N.fill(7);
    tree.LmrT.fill(1);
    tree.AmrT.fill(1);
    for (int n = 1; n < last_ply; ++n) {
        ply[n].X_D = 0;
        ply[n].XEQUE_MATE = 0;
        ply[n].material = {77, 77};
    }
    judgement = {.extraeval = 33, .extraevalll = 44, .EMPAT = 1};
    move_class.ESTRATEGIA = 7;
    for (auto& from : visits.by_move) {
        from.fill({.known = true});
    }
    command.book = 1;
    command.PROMO = 1;
}

TEST_F(CommandLoop, SearchDependsOnNoWorkingValueOfTheSearchBefore) {
    for (const char* line : {"position startpos", "position startpos moves g1f3",
                             "position fen r3k2r/pp3ppp/8/3q4/3Q4/8/PP3PPP/R3K2R w KQkq - 0 1",
                             "position fen r3k2r/pp3ppp/8/3q4/3Q4/8/PP3PPP/R3K2R b KQkq - 0 1"}) {
        fresh_process();
        const auto alone = dialogue({without_book, "setoption name Deep value 2", line, "go"});
        fresh_process();
        const auto after = dialogue({without_book, "setoption name Deep value 2", {line, spoil_working_values}, "go"});
        for (std::size_t k = 0; k < alone.size(); ++k) {
            EXPECT_EQ(without_clock(after[k]), without_clock(alone[k])) << line;
        }
    }
}

// Castling is judged by what the visit of a root move before it left; where its own search has visited none yet, by the
// last visit of the search before. In the first pair that visit may not be left out, in the second it may not be made
// on the board of the later search.
TEST_F(CommandLoop, CastlingIsJudgedByTheVisitThatTheSearchBeforeOwed) {
    struct Pair {
        const char* deep_before;
        const char* before;
        const char* with_castling;
        const char* reply;
    };
    for (const Pair& x : {Pair{"2", "r3k2r/3p1p1p/8/1pb3p1/1P4P1/2P2P2/N4B1P/R3K2R w KQkq - 0 1",
                               "r3k2r/pp3pp1/8/7p/8/1P6/P1PP3P/R3K2R w KQkq - 0 1", "bestmove e1g1"},
                          Pair{"1", "r3k2r/1p1b2p1/3p1p2/8/7P/3B4/1P1PPPP1/R3K2R w KQkq - 0 1",
                               "r3k2r/p5pp/2p5/4p3/P7/8/2P1PP1P/R3K2R w KQkq - 0 1", "bestmove e1c1"}}) {
        fresh_process();
        const auto answers =
            dialogue({std::string("setoption name Deep value ") + x.deep_before,
                      std::string("position fen ") + x.before, "go wtime 9000000 btime 9000000", shallow_search,
                      std::string("position fen ") + x.with_castling, "go wtime 9000000 btime 9000000"});
        EXPECT_EQ(answers[5].back(), x.reply);
    }
}

TEST_F(CommandLoop, NewGameTakesTheTimeOfItsLine) {
    search.inicio = -1;
    converse({"position startpos"});
    const int first = search.inicio;
    EXPECT_GE(first, 0);
    search.inicio = -1;
    converse({"position startpos"});
    EXPECT_GE(search.inicio, first);
}

TEST_F(CommandLoop, NewGameNamesTheSideOfTheEngine) {
    converse({"position startpos"});
    EXPECT_EQ(game.joga_com_b, 1);
    converse({"position startpos moves c2c4"});
    EXPECT_EQ(game.joga_com_b, 0);
}

const char* new_game_as(Colour c) { return c == white ? "position startpos" : "position startpos moves c2c4"; }

TEST_F(CommandLoop, NewGameFillsTheTablesOfItsColour) {
    for (const Colour c : {white, black}) {
        tables = {};
        fill_tables_of_new_game(c);
        const PositionalTables filled = tables;
        tables = {};
        converse({new_game_as(c)});
        EXPECT_EQ(tables.posix_peao_inici, filled.posix_peao_inici);
        EXPECT_EQ(tables.posix_cavalo, filled.posix_cavalo);
        EXPECT_EQ(tables.posix_peao_inici[c][square(4, relative_rank(c, 3))], 5);
    }
}

constexpr std::array no_records{0, 0, 0};
constexpr std::array seven_records{7, 7, 7};

TEST_F(CommandLoop, NewGameClearsTheShallowTablesOfItsColourAlone) {
    for (const Colour c : {white, black}) {
        complete_records_everywhere(7);
        converse({new_game_as(c)});
        EXPECT_EQ(records_of_chain(c), no_records);
        EXPECT_EQ(records_of_chain(other(c)), seven_records);
    }
}

TEST_F(CommandLoop, NewGameLeavesTheShallowTablesWithoutDeepMemory) {
    complete_records_everywhere(7);
    options.HASHf = 0;
    converse({new_game_as(white), new_game_as(black)});
    EXPECT_EQ(records_of_chain(white), seven_records);
    EXPECT_EQ(records_of_chain(black), seven_records);
}

TEST_F(CommandLoop, SettingsAndGameLongMemorySurviveANewGame) {
    converse({"setoption name Castle value value 9", "setoption name Confidence value 1", "position startpos",
              "position startpos moves c2c4"});
    EXPECT_EQ(options.roque_v, 10);
    EXPECT_EQ(options.empp, 10);
    hash_mem_build(LineKey{}, {300000, 9}, {});
    converse({"position startpos"});
    EXPECT_EQ(next_mem_record(), 1);
}

}  // namespace
