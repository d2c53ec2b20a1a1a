// What differs from ply to ply: the table, cell by cell, against the same table written as rows of text, and the
// behaviour of the shallow plies that only the table tells.
#include "search/ply_table.h"

#include "eval/leaf.h"
#include "support/engine.h"
#include "support/scripted.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace tests;
using namespace ondrel;

// Columns, blanks between them: ply; depth at which it is a leaf; range of nominal depths of its gate; evaluator; extra
// moves; what may answer for it; least null-move level; IID pass; least depths of late-move reduction and of Amr;
// vertical filter; range of nominal depths of the extension; depth above which the clock is read; capture slot dropped
// before the horizon.
constexpr auto rows = R"(
 1  0  -     material   staged      -       1  yes  -  -   -     -      -   no
 2  1  -     ratio      -           repeat  1  yes  9  9   -     -      -   no
 3  -  -     -          -           table   2  yes  9  9   -     -      -   no
 4  3  -     eval       -           table   2  no   9  9   -     -      -   no
 5  -  -     -          -           table   2  no   9  9   -     -      -   no
 6  5  -     eval       -           -       -  no   9  11  -     -      -   yes
 7  -  -     -          promotions  -       -  no   9  11  7     -      8   no
 8  7  -     eval       -           -       -  no   11 13  -     -      -   yes
 9  -  -     -          promotions  -       -  no   11 13  9-21  9-9    10  no
10  9  9-9   eval       -           -       -  no   -  -   -     -      -   yes
11  -  9-9   evall      promotions  -       -  no   -  -   9-21  9-11   12  no
12 11  0-11  eval       -           -       -  no   -  -   -     -      -   yes
13  -  0-11  evall      promotions  -       -  no   -  -   9-21  11-13  14  no
14 13  0-13  eval       -           -       -  no   -  -   -     -      -   yes
15  -  0-13  evall      promotions  -       -  no   -  -   9-21  13-15  16  no
16 15  0-15  eval       -           -       -  no   -  -   -     -      -   yes
17  -  0-15  evall      promotions  -       -  no   -  -   9-21  15-17  18  no
18 17  0-17  eval       -           -       -  no   -  -   -     -      -   yes
19  -  0-17  evall      promotions  -       -  no   -  -   9-21  17-19  20  no
20 19  0-19  eval       -           -       -  no   -  -   -     -      -   yes
21  -  0-19  evall      promotions  -       -  no   -  -   9-21  19-21  22  no
22 21  0-21  eval       -           -       -  no   -  -   -     -      -   yes
23  -  0-21  evall      promotions  -       -  no   -  -   23    -      -   no
24 23  -     eval       none        -       -  no   -  -   -     -      -   no
)";

struct TextRow {
    int n = 0;
    std::string leaf, gate, evaluator, moves, answered, null_move, iid, lmr, amr, vertical, extension, clock, slot;
};

std::ostream& operator<<(std::ostream& out, const TextRow& row) { return out << "ply " << row.n; }

std::vector<TextRow> table_of_text() {
    std::vector<TextRow> table;
    std::istringstream text(rows);
    for (TextRow r; text >> r.n >> r.leaf >> r.gate >> r.evaluator >> r.moves >> r.answered >> r.null_move >> r.iid >>
                    r.lmr >> r.amr >> r.vertical >> r.extension >> r.clock >> r.slot;) {
        table.push_back(r);
    }
    return table;
}

int number(const std::string& cell, int none) { return cell == "-" ? none : std::stoi(cell); }

std::pair<int, int> range_of(const std::string& cell) {
    if (cell == "-") {
        return {never, never};
    }
    const std::size_t dash = cell.find('-');
    return {std::stoi(cell.substr(0, dash)), std::stoi(cell.substr(dash + 1))};
}
std::pair<int, int> range_of(DepthRange range) { return {range.from, range.to}; }

class PlyTable : public testing::TestWithParam<TextRow> {};

TEST_P(PlyTable, AgreesInLeavesAndGates) {
    const TextRow& row = GetParam();
    const PlyRow& ply_row = ply_table[row.n];
    const std::map<std::string, LeafValue> leaves{{"-", LeafValue::none},
                                                  {"material", LeafValue::material},
                                                  {"ratio", LeafValue::plain_ratio},
                                                  {"eval", LeafValue::extra_eval},
                                                  {"evall", LeafValue::extra_evall}};
    EXPECT_EQ(ply_row.leaf_deep, number(row.leaf, never));
    EXPECT_EQ(range_of(ply_row.gate), range_of(row.gate));
    EXPECT_EQ(ply_row.leaf, leaves.at(row.evaluator));
}

TEST_P(PlyTable, AgreesInMovesAndAnswers) {
    const TextRow& row = GetParam();
    const PlyRow& ply_row = ply_table[row.n];
    const std::map<std::string, MoveOrder> orders{{"-", MoveOrder::common},
                                                  {"staged", MoveOrder::by_stages},
                                                  {"promotions", MoveOrder::promotions_first},
                                                  {"none", MoveOrder::none}};
    const std::map<std::string, Answer> answers{
        {"-", Answer::none}, {"repeat", Answer::repetition}, {"table", Answer::shallow_table}};
    EXPECT_EQ(ply_row.order, orders.at(row.moves));
    EXPECT_EQ(ply_row.answer, answers.at(row.answered));
    EXPECT_EQ(ply_row.drops_capture_slot, row.slot == "yes");
}

TEST_P(PlyTable, AgreesInPassesAndFilters) {
    const TextRow& row = GetParam();
    const PlyRow& ply_row = ply_table[row.n];
    const std::map<std::string, Vertical> verticals{
        {"-", Vertical::none}, {"7", Vertical::ply_7}, {"9-21", Vertical::plies_9_to_21}, {"23", Vertical::ply_23}};
    EXPECT_EQ(ply_row.null_move.option, number(row.null_move, never));
    EXPECT_EQ(ply_row.null_move.deep, row.null_move == "-" ? 0 : (row.n <= 3 ? 7 : 9));
    EXPECT_EQ(ply_row.iid, row.iid == "yes");
    EXPECT_EQ(ply_row.lmr, number(row.lmr, ondrel::always));
    EXPECT_EQ(ply_row.amr, number(row.amr, ondrel::always));
    EXPECT_EQ(ply_row.vertical, verticals.at(row.vertical));
    EXPECT_EQ(range_of(ply_row.extension), range_of(row.extension));
    EXPECT_EQ(ply_row.time_deep, number(row.clock, ondrel::always));
}

TEST_P(PlyTable, AgreesInWhatOtherRulesAddByPly) {
    const TextRow& row = GetParam();
    const int n = row.n;
    const PlyRow& ply_row = ply_table[n];
    const bool late_odd = n >= 7 && n <= 23 && n % 2 == 1;
    // The last ply that tries replies is content with one, from ply 7 on; those plies have their promotions in front.
    EXPECT_EQ(ply_row.last_ply_cut, late_odd);
    EXPECT_EQ(ply_row.flag_cuts, n == 6);
    if (n < last_ply) {
        EXPECT_EQ(ply_row.seventh_rank_moves, !late_odd);
        EXPECT_EQ(ply_row.castling, std::max(2, 10 - n / 2));
    }
    if (row.answered == "table") {
        EXPECT_EQ(ply_row.scan_deep, n == 3 ? 3 : 8);
    }
    if (n >= 2 && n <= 5) {
        const std::array<int, 4> least{1, 3, 3, 4};
        EXPECT_EQ(ply_row.least_deep, least[n - 2]);
    }
}

INSTANTIATE_TEST_SUITE_P(Plies, PlyTable, testing::ValuesIn(table_of_text()),
                         [](const auto& row) { return "Ply" + std::to_string(row.param.n); });

TEST(PlyTableAsAWhole, HasARowForEveryPly) {
    const std::vector<TextRow> table = table_of_text();
    ASSERT_EQ(table.size(), 24U);
    for (int n = 1; n <= 24; ++n) {
        EXPECT_EQ(table[n - 1].n, n);
    }
    EXPECT_EQ(ply_table.size(), 25U);
}

TEST(PlyTableAsAWhole, GivesTheRootTheCastlingValueOfItsMoves) { EXPECT_EQ(ply_table[0].castling, 10); }

// --- The shallow plies at work ---

class ShallowPlies : public testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

constexpr auto hanging_rook = "4k3/8/8/3r4/8/4N3/8/4K3 w - - 0 1";

float lead_with_ratio(float own, float other) {
    return static_cast<float>(static_cast<long double>(own - other) +
                              5.0L * std::log(static_cast<long double>(own) / static_cast<long double>(other)));
}

TEST_F(ShallowPlies, WithoutDepthARootMoveIsWorthItsMaterial) {
    const auto value = [](std::string_view fen, std::string_view move) {
        set_up_ply(0, fen);
        bare_search();
        search.deep = pass.DEEP = 0;
        const Script children([](const Call&) { return std::optional(0.0F); });
        const float v = search_node(1, move_from(move));
        EXPECT_TRUE(children.calls().empty());
        return v;
    };
    EXPECT_EQ(value(hanging_rook, "e3d5"), 32.0F);
    EXPECT_EQ(value(hanging_rook, "e3c4"), -18.0F);
    EXPECT_EQ(value("1n2k3/P7/8/8/8/8/8/4K3 w - - 0 1", "a7b8"), 90.0F);
    EXPECT_EQ(value("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5d6"), 10.0F);
    EXPECT_EQ(value("4k3/8/4n3/8/3R4/8/8/4K3 b - - 0 1", "e6d4"), 32.0F);
}

TEST_F(ShallowPlies, WithDepthOneAReplyIsWorthMaterialAndPlainRatioWithoutAJudgement) {
    for (const std::uint8_t ratio : {std::uint8_t{1}, std::uint8_t{0}}) {
        options.extradef = ratio;
        set_up_ply(1, hanging_rook);
        bare_search();
        search.deep = pass.DEEP = 1;
        // Ply 1 has taken the hundred of each king away. White, the root's opponent here, takes the rook.
        ply[1].material = {42.0F, 60.0F};
        const float v = search_node(2, move_from("e3d5"));
        EXPECT_EQ(v, ratio ? static_cast<float>(-32.0L - 42.0L / 10.0L) : -32.0F);
    }
    options.extradef = 1;
    set_up_ply(1, hanging_rook);
    bare_search();
    search.deep = pass.DEEP = 1;
    ply[1].material = {42.0F, 60.0F};
    EXPECT_EQ(search_node(2, move_from("e3c4")), static_cast<float>(18.0L - 42.0L / 60.0L));
    EXPECT_EQ(times(Rule::judged), 0U);
}

TEST_F(ShallowPlies, PlyOneTakesAHundredFromBothSums) {
    std::array<float, 2> seen{};
    const Script children([&](const Call&) -> std::optional<float> {
        seen = ply[1].material;
        return 0.0F;
    });
    set_up_ply(0, "1n2k3/P7/8/8/8/8/8/4K3 w - - 0 1");
    bare_search();
    search.deep = pass.DEEP = 3;
    search_node(1, move_from("a7b8"));
    EXPECT_EQ(seen[white], 120.0F - 100.0F + 80.0F);
    EXPECT_EQ(seen[black], 142.0F - 100.0F - 32.0F);
    set_up_ply(0, "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1");
    bare_search();
    search.deep = pass.DEEP = 3;
    search_node(1, move_from("e5d6"));
    EXPECT_EQ(seen[white], 30.0F);
    EXPECT_EQ(seen[black], 20.0F);
}

TEST_F(ShallowPlies, WithDepthThreePlyFourLeavesAreJudgedAndBookEnPassantAsAGain) {
    set_up_ply(3, "r3k3/ppp5/8/3pP3/8/8/PP3PPP/R3K3 w - d6 0 1");
    bare_search();
    search.deep = pass.DEEP = 3;
    const float v = search_node(4, move_from("e5d6"));
    EXPECT_EQ(times(Rule::judged), 1U);
    // Black, the root side, still counts the pawn that is gone; White counts ten more.
    EXPECT_EQ(v, lead_with_ratio(110.0F + 50.0F + 40.0F, 110.0F + 50.0F + 60.0F + 10.0F) + judgement.extraeval);
}

TEST_F(ShallowPlies, BelowDepthSevenThereIsNeitherNullMoveNorIidPass) {
    constexpr auto fen = "r1bqkb1r/pppp1ppp/2n2n2/4p3/4P3/2N2N2/PPPP1PPP/R1BQKB1R w KQkq - 4 4";
    const Colour own = place_fen(fen);
    search.deep = 5;
    search_whole(own);
    EXPECT_GT(search.nodes, 1000U);
    EXPECT_EQ(times(Rule::null_move), 0U);
    EXPECT_EQ(times(Rule::iid), 0U);
    fresh_process();
    const Colour again = place_fen("r3k3/ppp2ppp/8/8/8/8/PPP2PPP/R3K3 w - - 0 1");
    search.deep = 7;
    search_whole(again);
    EXPECT_GT(times(Rule::null_move), 0U);
    EXPECT_GT(times(Rule::iid), 0U);
}

TEST_F(ShallowPlies, PlyTwentyFourWritesNothingUnderItsDepth) {
    for (const int depth : {21, 23}) {
        set_up_ply(23, hanging_rook);
        bare_search();
        search.EXTRA_EVAL = 0;
        search.deep = pass.DEEP = depth;
        bounds.alfa[24] = 123.0F;
        EXPECT_EQ(search_node(24, move_from("e3d5")), depth == 23 ? lead_with_ratio(110.0F, 142.0F) : 123.0F);
    }
}

// Makes ply 1 what it is after g1f3, in a game in which g8f6 would bring a position for the third time.
void set_up_repetition() {
    set_up_ply(1, "rnbqkbnr/pppppppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R b KQkq - 1 5");
    const Ply after_root_move = ply[1];
    ASSERT_EQ(place("position startpos moves g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1 f6g8"), white);
    ply[1] = after_root_move;
    search.emp = -13;
    search.deep = pass.DEEP = 9;
    pass.SCANT = 1;
    bounds.beta[1] = 100.0F;
}

TEST_F(ShallowPlies, ARepetitionAtPlyTwoIsADrawBeforeNullMoveMemoryAndSearch) {
    set_up_repetition();
    const Script children([](const Call&) { return std::optional(0.0F); });
    EXPECT_EQ(search_node(2, move_from("g8f6")), -13.0F);
    EXPECT_TRUE(children.calls().empty());
    EXPECT_EQ(times(Rule::repetition), 1U);
    EXPECT_EQ(times(Rule::null_move), 0U);
    EXPECT_EQ(times(Rule::iid), 0U);
    EXPECT_EQ(times(Rule::scout_of_ply_2), 0U);
    // Another reply is searched, and so is the same one where repetitions are not looked for.
    search_node(2, move_from("b8c6"));
    EXPECT_FALSE(children.calls().empty());
    EXPECT_EQ(times(Rule::repetition), 1U);
    pass.pempatee = 0;
    EXPECT_NE(search_node(2, move_from("g8f6")), -13.0F);
    EXPECT_EQ(times(Rule::repetition), 1U);
}

TEST_F(ShallowPlies, NothingIsSearchedUnderItsLeastDepth) {
    const std::array<int, 4> least{1, 3, 3, 4};
    for (int n = 2; n <= 5; ++n) {
        SCOPED_TRACE(n);
        set_up_ply(n - 1, "4k3/pppp4/8/8/6n1/8/PPPP4/3QK3 w - - 0 1");
        bare_search();
        search.deep = pass.DEEP = least[n - 2] - 1;
        (n % 2 == 0 ? bounds.alfa : bounds.beta)[n] = 123.0F;
        const Script children([](const Call&) { return std::optional(0.0F); });
        EXPECT_EQ(search_node(n, move_from("a2a3")), 123.0F);
        EXPECT_TRUE(children.calls().empty());
    }
}

// In the null-move pass the opponent passes, so that the children of the pass are those of ply 3.
TEST_F(ShallowPlies, EachPassOfPlyOneHasItsOwnDepth) {
    set_up_ply(0, "r3k3/pppp4/8/8/6n1/8/PPPP4/3QK3 w - - 0 1");
    bare_search();
    search.deep = pass.DEEP = 9;
    search.HASHf = 1;
    options.NULL_MOVE = 2;
    options.PVS = 1;
    pass.SCANT = 1;
    bounds.alfa[0] = -100.0F;
    bounds.ALFA0 = 0;
    root.npecas = {5, 6};
    std::set<std::tuple<int, int, int, int>> passes;  // ply of the child, deep, HASHf, PVSm
    const Script children([&](const Call& x) {
        passes.insert({x.n, x.deep, x.HASHf, x.PVSm});
        return std::optional(0.0F);
    });
    search_node(1, move_from("d1b1"));
    EXPECT_EQ(passes,
              (std::set<std::tuple<int, int, int, int>>{{3, 7, 0, 0}, {2, 5, 0, 0}, {2, 9, 1, 1}, {2, 9, 1, 0}}));
}

TEST_F(ShallowPlies, TheLineShownIsThatOfTheFirstBranch) {
    set_up_ply(0, "4k3/pppp4/8/8/6n1/8/PPPP4/3QK3 w - - 0 1");
    bare_search();
    search.deep = pass.DEEP = 5;
    const Script children([](const Call& x) { return x.n == 4 ? std::optional(0.0F) : std::nullopt; });
    search_node(1, move_from("d1b1"));
    const auto line = [](int k) { return std::string(root_move.A0_D7[k].data(), root_move.A0_D7[k].size()); };
    EXPECT_EQ(line(0), "d1b1");
    EXPECT_EQ(line(1), children.moves(2).front());
    EXPECT_EQ(line(2), children.moves(3).front());
    for (int k = 3; k < 8; ++k) {
        EXPECT_EQ(line(k), "    ") << k;
    }
}

}  // namespace
