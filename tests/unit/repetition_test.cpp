// Repetition of positions of the game, and the draw score.
#include "board/repetition.h"
#include "support/boards.h"
#include "support/engine.h"
#include "support/moves.h"
#include "support/scripted.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>
#include <string>

namespace {

using namespace tests;
using namespace ondrel;

class Repetition : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

class DrawScore : public Repetition {};

constexpr Board position = [] {
    Board t{};
    t[0] = man(white, rei);
    t[63] = man(black, rei);
    t[20] = man(white, torre);
    return t;
}();

// Whether the position on tab2 repeats, the given rows of the history holding it.
bool repeats(int half_moves, bool white_to_move, Repeats who, std::initializer_list<int> rows) {
    for (Board& row : game_line.tabr1) {
        row.fill(1);
    }
    for (const int row : rows) {
        game_line.tabr1[row] = position;
    }
    trial.tab2 = position;
    game_line.nb = half_moves;
    game.joga_com_b = white_to_move ? 1 : 0;
    trial.pempate = 2;
    verifica_empate(who);
    EXPECT_LE(trial.pempate, 1);
    return trial.pempate == 1;
}

// The last row of the history after a move of White or of Black, -1 if there is none.
int last_row_of_white(int half_moves) { return 2 * ((half_moves - 1) / 2); }
int last_row_of_black(int half_moves) { return half_moves < 2 ? -1 : 1 + 2 * ((half_moves - 2) / 2); }

// --- Which rows count ---

TEST_F(Repetition, AtTheFirstMoveNothingRepeats) {
    place_fen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    ASSERT_EQ(game_line.nb, 1);
    trial.tab2 = tab;
    for (const std::uint8_t white_to_move : {std::uint8_t{0}, std::uint8_t{1}}) {
        game.joga_com_b = white_to_move;
        for (const Repeats who : {Repeats::root_move, Repeats::reply}) {
            verifica_empate(who);
            EXPECT_EQ(trial.pempate, 0);
        }
    }
    game.joga_com_b = 1;
    EXPECT_EQ(root_moves_tried().size(), 20U);
}

TEST_F(Repetition, RowsNotYetWrittenEqualNoBoard) {
    place("position startpos moves e2e4 e7e5 g1f3 b8c6");
    ASSERT_EQ(game_line.nb, 4);
    for (int row = 4; row < tabr1_rows; ++row) {
        for (const std::int8_t x : game_line.tabr1[row]) {
            ASSERT_EQ(x, 1) << row;
        }
    }
    place("position startpos moves e2e4 e7e5");  // the history is that of its own line
    EXPECT_EQ(game_line.tabr1[2][0], 1);
    EXPECT_EQ(game_line.tabr1[1], tab);
}

// A root move needs one earlier position, after a move of the same side, no later than the last half-move.
TEST_F(Repetition, ARootMoveNeedsOneEarlierPositionOfItsOwnSide) {
    for (const bool white_to_move : {true, false}) {
        for (int half_moves = 1; half_moves <= 14; ++half_moves) {
            const int last = white_to_move ? last_row_of_white(half_moves) : last_row_of_black(half_moves);
            for (int row = 0; row < 18; ++row) {
                const bool counts = row % 2 == (white_to_move ? 0 : 1) && row <= last;
                EXPECT_EQ(repeats(half_moves, white_to_move, Repeats::root_move, {row}), counts)
                    << "nb " << half_moves << " row " << row << ' ' << white_to_move;
            }
        }
    }
}

// A reply at ply 2 is the root side's opponent's, and needs two.
TEST_F(Repetition, AReplyNeedsTwoEarlierPositionsOfTheOtherSide) {
    for (const bool white_to_move : {true, false}) {
        for (int half_moves = 1; half_moves <= 14; ++half_moves) {
            const int last = white_to_move ? last_row_of_black(half_moves) : last_row_of_white(half_moves);
            for (int row = 0; row < 18; ++row) {
                EXPECT_FALSE(repeats(half_moves, white_to_move, Repeats::reply, {row})) << "one is not enough";
                for (int second = row + 1; second < 18; ++second) {
                    const int parity = white_to_move ? 1 : 0;
                    const bool count = row % 2 == parity && second % 2 == parity && second <= last;
                    EXPECT_EQ(repeats(half_moves, white_to_move, Repeats::reply, {row, second}), count)
                        << "nb " << half_moves << " rows " << row << ' ' << second << ' ' << white_to_move;
                }
            }
        }
    }
}

TEST_F(Repetition, MoreHitsThanNeededAreARepetitionToo) {
    EXPECT_TRUE(repeats(9, true, Repeats::root_move, {0, 2, 4, 6}));
    EXPECT_TRUE(repeats(9, true, Repeats::reply, {1, 3, 5}));
}

TEST_F(Repetition, AllSixtyFourSquaresAreCompared) {
    for (int i = 0; i < squares; ++i) {
        ASSERT_TRUE(repeats(5, true, Repeats::root_move, {2}));
        trial.tab2[i] = static_cast<std::int8_t>(trial.tab2[i] == peao ? no_piece : peao);
        verifica_empate(Repeats::root_move);
        EXPECT_EQ(trial.pempate, 0) << i;
    }
}

TEST_F(Repetition, GamesBeyondAThousandHalfMovesAreNotTested) {
    EXPECT_TRUE(repeats(1000, true, Repeats::root_move, {998}));
    EXPECT_TRUE(repeats(1000, false, Repeats::root_move, {999}));
    EXPECT_TRUE(repeats(1000, true, Repeats::reply, {1, 999}));
    for (const int half_moves : {1001, 1002, 5000}) {
        for (const bool white_to_move : {true, false}) {
            for (const Repeats who : {Repeats::root_move, Repeats::reply}) {
                EXPECT_FALSE(repeats(half_moves, white_to_move, who, {0, 1, 2, 3, 998, 999})) << half_moves;
            }
        }
    }
}

TEST_F(Repetition, TheGameFillsTheHistoryAfterEachHalfMove) {
    place("position startpos moves g1f3 g8f6 f3g1 f6g8");
    EXPECT_EQ(game_line.tabr1[0], board_from("rnbqkbnr/pppppppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R"));
    EXPECT_EQ(game_line.tabr1[3], start_board);
    EXPECT_EQ(game_line.tabr1[4][0], 1);
    EXPECT_EQ(game_line.nb, 4);
}

// --- At the root ---

const char* const shuffle = "position startpos moves g1f3 g8f6 f3g1 f6g8";
const char* const shuffled_twice = "position startpos moves g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1 f6g8";

// The root moves that the schedule's passes of one depth search, each worth less than a draw.
Texts root_moves_worth_less_than_a_draw() {
    const Script children(every_child(1, -50.0F));
    search_whole(side_to_search());
    return children.moves(1);
}

TEST_F(Repetition, ARootMoveThatRepeatsIsNotSearched) {
    place(shuffle);
    search.deep = 3;
    search.emp = -7;
    const Texts moves = root_moves_worth_less_than_a_draw();
    EXPECT_EQ(count_of(moves, "g1f3"), 0);
    EXPECT_EQ(moves.size(), 19U);
    // The draw is the best of them.
    EXPECT_EQ(text_of(game.abcd), "g1f3");
    EXPECT_EQ(text_of(slots.aab_ddb), "g1f3");
    EXPECT_EQ(search.E, -7.0F);
    EXPECT_EQ(search.EP, -7.0F);
    EXPECT_EQ(bounds.alfa[0], -7.0F);
}

TEST_F(Repetition, BlacksRootMovesTheSame) {
    place(std::string(shuffle) + " e2e4 g8f6 g1f3 f6g8 f3g1");
    // e2e4 and g1 home with g8f6 played has stood once, after Black's move.
    const Texts moves = texts_of(root_moves_tried());
    EXPECT_EQ(count_of(moves, "g8f6"), 0);
    EXPECT_EQ(moves.size(), 19U);
}

// The pass that builds the first best move does not look for repetitions; those after it do.
TEST_F(Repetition, InThePassThatDoesNotLookItIsSearched) {
    place(shuffle);
    search.deep = 9;
    options.TC = 0;
    options.deepp = 9;
    const Script children(every_child(1, -50.0F));
    search_whole(side_to_search());
    int built = 0;
    for (const Call& x : children.calls()) {
        if (text_of(x.m) == "g1f3") {
            ++built;
            EXPECT_EQ(x.pempatee, 0);
            EXPECT_EQ(x.DEEP, 7);
        }
    }
    EXPECT_EQ(built, 1);
    EXPECT_GT(children.calls().size(), 30U);
}

TEST_F(Repetition, CastlingRightsAreNotCompared) {
    place("position startpos moves g1f3 g8f6 h1g1 f6g8");
    const Texts moves = texts_of(root_moves_tried());  // g1h1 gives the board after g1f3, the right being lost
    EXPECT_EQ(count_of(moves, "g1h1"), 0);
    EXPECT_GT(count_of(moves, "a2a3"), 0);
}

TEST_F(Repetition, EnPassantRightsAreNotCompared) {
    place("position startpos moves e2e4 g8f6 g1f3 f6g8");
    const Texts moves = texts_of(root_moves_tried());  // f3g1 gives the board after e2e4, the double step being old
    EXPECT_EQ(count_of(moves, "f3g1"), 0);
    EXPECT_GT(count_of(moves, "a2a3"), 0);
}

// --- At ply 2 ---

struct SearchedReply {
    float value;
    bool was_entered;  // its own replies have been tried
};

// Searches a root move at depth 3 with one reply: that is worth 3 by its own replies, or the draw score.
SearchedReply search_reply_to(std::string_view line, std::string_view root_text, std::string_view reply,
                              bool looks = true) {
    place(line);
    search.emp = -7;
    search.deep = 3;
    pass.pempatee = looks ? 1 : 0;
    const Script children([reply](const Call& x) -> std::optional<float> {
        if (x.n == 2) {
            return text_of(x.m) == reply ? std::nullopt : std::optional(50.0F);
        }
        return 3.0F;
    });
    const float value = search_node(1, move_from(root_text));
    EXPECT_EQ(count_of(children.moves(2), reply), 1);
    EXPECT_EQ(tree.nd, children.count(3) == 0 ? 1 : 2) << "the ply of the node entered last";
    return {value, children.count(3) != 0};
}

TEST_F(Repetition, AReplyThatRepeatsForTheFirstTimeIsNoDraw) {
    // After g1f3 g8f6 the board has stood once.
    EXPECT_EQ(search_reply_to(shuffle, "g1f3", "g8f6").value, 3.0F);
    EXPECT_EQ(times(Rule::repetition), 0U);
}

TEST_F(Repetition, AReplyThatRepeatsForTheSecondTimeIsADraw) {
    EXPECT_EQ(search_reply_to(shuffled_twice, "g1f3", "g8f6").value, -7.0F);
    EXPECT_EQ(times(Rule::repetition), 1U);
}

TEST_F(Repetition, InAPassThatDoesNotLookNoReplyIsADraw) {
    const SearchedReply reply = search_reply_to(shuffled_twice, "g1f3", "g8f6", false);
    EXPECT_EQ(reply.value, 3.0F);
    EXPECT_EQ(times(Rule::repetition), 0U);
}

TEST_F(Repetition, ADrawnReplyEntersNoNode) {
    EXPECT_TRUE(search_reply_to(shuffle, "g1f3", "g8f6").was_entered);
    EXPECT_FALSE(search_reply_to(shuffled_twice, "g1f3", "g8f6").was_entered);
}

TEST_F(Repetition, DeeperPliesDoNotLook) {
    for (const int n : {3, 4, 5, 8}) {
        set_up_ply(n - 1, "6k1/8/8/8/8/8/8/R5K1 w - - 0 1");
        game_line.tabr1.fill(board_from("6k1/8/8/8/8/8/R7/6K1"));
        game_line.nb = 100;
        clear_counts();
        const ChildrenOf none(n);
        search_node(n, move_from("a1a2"));
        EXPECT_EQ(times(Rule::repetition), 0U) << n;
        EXPECT_EQ(tree.nd, n);
    }
}

// --- The draw score ---

TEST_F(DrawScore, AtEqualMaterialItIsTheContemptLessAPawn) {
    place_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_EQ(search.emp, -15);
    EXPECT_EQ(search.emppp, -15);
}

TEST_F(DrawScore, TheContemptIsThatOfTheOption) {
    for (const auto& [contempt, expected] :
         {std::pair{10, 0}, {7, -3}, {5, -5}, {3, -7}, {0, -10}, {-3, -13}, {-5, -15}, {-7, -17}, {-10, -20}}) {
        options.empp = contempt;
        place_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
        EXPECT_EQ(search.emp, expected) << contempt;
    }
}

// The logarithm is that of all material, kings included.
TEST_F(DrawScore, TheRatioOfMaterialIsAddedAndTheSumCutTowardsZero) {
    // 200 to 110: ln = 0.5978, times 5 = 2.989.
    const std::string fen = "4k3/8/8/8/8/8/8/3QK3 w - - 0 1";
    place_fen(fen);
    EXPECT_EQ(search.emp, -12);  // -12.011
    place_fen("4k3/8/8/8/8/8/8/3QK3 b - - 0 1");
    EXPECT_EQ(search.emp, -17);  // -17.989
    place_fen(mirrored_fen(fen));
    EXPECT_EQ(search.emp, -12);
    EXPECT_EQ(search.emppp, -12);
    options.empp = 10;
    place_fen("4k3/8/8/8/8/8/8/3QK3 b - - 0 1");
    EXPECT_EQ(search.emp, -2);  // -2.989
    place_fen(fen);
    EXPECT_EQ(search.emp, 2);
}

TEST_F(DrawScore, TheWeightOfTheRatioIsItsOption) {
    options.MQ = 10.0F;
    place_fen("4k3/8/8/8/8/8/8/3QK3 w - - 0 1");
    EXPECT_EQ(search.emp, -9);  // -15 + 5.978
    options.MQ = 0.0F;
    place_fen("4k3/8/8/8/8/8/8/3QK3 w - - 0 1");
    EXPECT_EQ(search.emp, -15);
}

}  // namespace
