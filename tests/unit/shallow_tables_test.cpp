// The tables of plies 3, 4 and 5: what makes a record the same, which record answers, how the ring turns, and when the
// search uses them at all.
#include "memory/shallow_tables.h"

#include "search/node.h"
#include "support/engine.h"
#include "support/sanitizers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <random>

namespace {

using namespace ondrel;
using namespace tests;

constexpr std::array plies_with_table{3, 4, 5};
constexpr int records_of_ring = shallow_records - 1;

// A scan by the window as it stands.
std::optional<float> scan(int n, Colour c) { return hash_table_scan(n, c, key_of(n)); }

// A whole node under the window as it stands. Tells whether the ring has wrapped.
bool store(int n, Colour c, float v) {
    hash_table_build(n, c, key_of(n));
    return hash_table_store(n, c, v);
}

// A position that no other number gives.
Board numbered_board(int k) {
    Board t = start_board;
    for (int i = 0; i < 32; ++i, k /= 2) {
        t[i] = static_cast<std::int8_t>(k % 2 != 0 ? -cavalo : bispo);
    }
    return t;
}

class ShallowTables : public testing::Test {
protected:
    void SetUp() override {
        fresh_process();
        trial.tab2 = start_board;
        open_windows();
        search.deep = 9;
    }

    static void open_windows() {
        bounds.alfa.fill(-50.0F);
        bounds.beta.fill(50.0F);
    }

    // Whether a change of the state makes a record of ply n unknown.
    template <class Change>
    static bool changes_key(int n, Change change) {
        clear_shallow_tables();
        store(n, white, 1.0F);
        change();
        return !scan(n, white);
    }
};

// --- The key ---

TEST_F(ShallowTables, ARecordAnswersUnderTheWindowItWasMadeIn) {
    for (const int n : plies_with_table) {
        store(n, white, 12.5F);
        EXPECT_EQ(scan(n, white), 12.5F) << "ply " << n;
    }
}

TEST_F(ShallowTables, TheSamePositionAtPlyFourWithAnotherBeta3Misses) {
    store(4, black, 3.0F);
    bounds.beta[3] = 49.0F;
    EXPECT_FALSE(scan(4, black));
    bounds.beta[3] = 50.0F;
    EXPECT_TRUE(scan(4, black));
}

// The window is what the bounds above the node come to: one that is not the tightest may be anything.
TEST_F(ShallowTables, TheAlphaKeyIsTheHighestAlfaAboveTheNode) {
    for (const int n : plies_with_table) {
        for (const int k : {0, 2, 4}) {
            const bool is_above = k < 4 || n == 5;
            open_windows();
            EXPECT_EQ(changes_key(n, [k] { bounds.alfa[k] = -49.0F; }), is_above) << "ply " << n << ", alfa" << k;
            open_windows();
            EXPECT_FALSE(changes_key(n, [k] { bounds.alfa[k] = -51.0F; })) << "ply " << n << ", alfa" << k;
        }
    }
}

TEST_F(ShallowTables, TheBetaKeyIsTheLowestBetaAboveTheNode) {
    for (const int n : plies_with_table) {
        for (const int k : {1, 3}) {
            const bool is_above = k == 1 || n > 3;
            open_windows();
            bounds.beta[k == 1 ? 3 : 1] = 60.0F;
            bounds.beta[k] = 60.0F;
            EXPECT_EQ(changes_key(n, [k] { bounds.beta[k] = 59.0F; }), is_above) << "ply " << n << ", beta" << k;
        }
        open_windows();
        bounds.beta[3] = 40.0F;
        EXPECT_EQ(changes_key(n, [] { bounds.beta[1] = 51.0F; }), n == 3) << "ply " << n << ", beta1 above beta3";
    }
}

TEST_F(ShallowTables, APositionSeenInTheScoutPassOfPlyOneIsNotFoundInTheFullPass) {
    for (const int n : plies_with_table) {
        root_move.PVSm = 1;
        EXPECT_TRUE(changes_key(n, [] { root_move.PVSm = 0; })) << "ply " << n;
        EXPECT_TRUE(changes_key(n, [] { root_move.PVSm = 1; })) << "ply " << n;
    }
}

TEST_F(ShallowTables, APositionSeenInTheScoutPassOfPlyTwoIsNotFoundInTheFullPass) {
    for (const int n : plies_with_table) {
        root_move.PVSm2 = 1;
        EXPECT_TRUE(changes_key(n, [] { root_move.PVSm2 = 0; })) << "ply " << n;
        EXPECT_TRUE(changes_key(n, [] { root_move.PVSm2 = 1; })) << "ply " << n;
    }
}

TEST_F(ShallowTables, AnotherDepthIsAnotherKey) {
    for (const int n : plies_with_table) {
        search.deep = 9;
        EXPECT_TRUE(changes_key(n, [] { search.deep = 11; })) << "ply " << n;
    }
}

TEST_F(ShallowTables, EverySquareOfThePositionCounts) {
    for (int i = 0; i < squares; ++i) {
        trial.tab2 = start_board;
        EXPECT_TRUE(changes_key(5, [i] { trial.tab2[i] = trial.tab2[i] == dama ? torre : dama; })) << "square " << i;
    }
}

// The bounds are compared as numbers: the two zeros are one, and what is no number is like nothing.
TEST_F(ShallowTables, BoundsAreComparedAsNumbers) {
    bounds.alfa[0] = bounds.alfa[2] = 0.0F;
    EXPECT_FALSE(changes_key(3, [] { bounds.alfa[0] = bounds.alfa[2] = -0.0F; }));
    bounds.beta[1] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_TRUE(changes_key(3, [] {}));
}

TEST_F(ShallowTables, TheTablesOfWhiteAndBlackNeverMix) {
    for (const int n : plies_with_table) {
        store(n, white, 1.0F);
        EXPECT_FALSE(scan(n, black)) << "ply " << n;
        store(n, black, 2.0F);
        EXPECT_EQ(scan(n, black), 2.0F) << "ply " << n;
        EXPECT_EQ(scan(n, white), 1.0F) << "ply " << n;
    }
}

TEST_F(ShallowTables, TheTablesOfThePliesNeverMix) {
    for (const int n : plies_with_table) {
        store(n, white, static_cast<float>(n));
        for (const int k : plies_with_table) {
            EXPECT_EQ(scan(k, white).has_value(), k <= n) << n << " and " << k;
        }
    }
}

// --- The ring ---

// So many records of other positions than the start position, from the number given on. Tells whether the ring has
// wrapped at the last of them.
bool store_numbered(int n, Colour c, int first, int count) {
    bool wrapped = false;
    for (int k = first; k < first + count; ++k) {
        trial.tab2 = numbered_board(k);
        wrapped = store(n, c, static_cast<float>(k));
    }
    return wrapped;
}

TEST_F(ShallowTables, OfEqualRecordsTheLowestAnswers) {
    store(4, white, 1.0F);
    store(4, white, 2.0F);
    EXPECT_EQ(scan(4, white), 1.0F);
}

// The lowest is not the oldest once the ring has turned.
TEST_F(ShallowTables, TheLowestRecordAnswersWhenItIsTheNewestToo) {
    store(4, white, 1.0F);
    store(4, white, 2.0F);
    EXPECT_TRUE(store_numbered(4, white, 0, records_of_ring - 2));
    trial.tab2 = start_board;
    EXPECT_EQ(scan(4, white), 1.0F);
    store(4, white, 3.0F);
    EXPECT_EQ(scan(4, white), 3.0F);
}

TEST_F(ShallowTables, TheRecordAt9999IsNeverWritten) {
    for (const int n : plies_with_table) {
        for (int k = 0; k < records_of_ring - 1; ++k) {
            ASSERT_FALSE(store_numbered(n, black, k, 1)) << "ply " << n << ", record " << k;
            ASSERT_EQ(next_shallow_record(n, black), k + 1);
        }
        EXPECT_TRUE(store_numbered(n, black, 9998, 1)) << "ply " << n;
        EXPECT_EQ(next_shallow_record(n, black), 0) << "after record 9998 comes record 0, ply " << n;
    }
}

TEST_F(ShallowTables, AFullRingOverwritesTheOldestRecord) {
    store_numbered(5, white, 0, records_of_ring);
    store_numbered(5, white, 20000, 1);
    EXPECT_EQ(scan(5, white), 20000.0F);
    trial.tab2 = numbered_board(0);
    EXPECT_FALSE(scan(5, white));
    for (const int k : {1, 5000, 9998}) {
        trial.tab2 = numbered_board(k);
        EXPECT_EQ(scan(5, white), static_cast<float>(k));
    }
}

// A node's own children store in the tables of the plies below, never in its own.
TEST_F(ShallowTables, ARecordUnderConstructionKeepsItsKey) {
    hash_table_build(3, white, key_of(3));
    trial.tab2 = numbered_board(1);
    store(4, black, 1.0F);
    bounds.alfa[0] = 30.0F;
    hash_table_store(3, white, 2.0F);
    EXPECT_FALSE(scan(3, white));
    trial.tab2 = start_board;
    bounds.alfa[0] = -50.0F;
    EXPECT_EQ(scan(3, white), 2.0F);
}

void store_in_all_six() {
    for (const int n : plies_with_table) {
        store(n, white, 5.0F);
        store(n, black, 5.0F);
    }
}

TEST_F(ShallowTables, ClearingOneTableLeavesTheOthers) {
    store_in_all_six();
    clear_shallow_table(4, black);
    for (const int n : plies_with_table) {
        for (const Colour c : {white, black}) {
            const bool cleared = n == 4 && c == black;
            EXPECT_EQ(next_shallow_record(n, c), cleared ? 0 : 1) << n << ' ' << c;
            EXPECT_EQ(scan(n, c).has_value(), !cleared) << n << ' ' << c;
        }
    }
}

TEST_F(ShallowTables, ThePreparationOfASearchClearsTheChainOfItsColour) {
    for (const Colour own : {white, black}) {
        clear_shallow_tables();
        store_in_all_six();
        place_fen(own == white ? "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1" : "4k3/8/8/8/8/8/4P3/4K3 b - - 0 1");
        for (const int n : plies_with_table) {
            // 3b, 4p, 5b when White moves at the root, 3p, 4b, 5p when Black does.
            const Colour of_chain = n == 4 ? other(own) : own;
            EXPECT_EQ(next_shallow_record(n, of_chain), 0) << "ply " << n;
            EXPECT_EQ(next_shallow_record(n, other(of_chain)), 1) << "ply " << n;
        }
    }
}

TEST_F(ShallowTables, WithoutDeepMemoryThePreparationOfASearchClearsNothing) {
    store_in_all_six();
    set_option("Deep memory", "false");
    place_fen("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
    for (const int n : plies_with_table) {
        EXPECT_EQ(next_shallow_record(n, white), 1) << "ply " << n;
        EXPECT_EQ(next_shallow_record(n, black), 1) << "ply " << n;
    }
}

TEST_F(ShallowTables, TheButtonClearDeepMemoryEmptiesAllSix) {
    store_in_all_six();
    converse({"setoption name Clear deep memory"});
    for (const int n : plies_with_table) {
        for (const Colour c : {white, black}) {
            EXPECT_EQ(next_shallow_record(n, c), 0) << n << ' ' << c;
            EXPECT_FALSE(scan(n, c)) << n << ' ' << c;
        }
    }
}

// --- In the node ---

// Ply n - 1 as the position, and node n about to be searched at the depth by material alone.
void stand_before(int n, int depth) {
    options.EXTRA_EVALL = 0;
    options.NULL_MOVE = 0;
    set_up_ply(n - 1, "r1bq1rk1/ppp2ppp/2np1n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1BQ1RK1 w - - 0 7");
    clear_shallow_tables();
    search.deep = pass.DEEP = depth;
}

constexpr auto knight_move = "c3d5";

// What a first search of the node came to, and a second one of the same.
struct Twice {
    float first, second;
    std::uint32_t nodes_of_second;
};

Twice search_twice(int n) {
    const float first = search_node(n, move_from(knight_move));
    const std::uint32_t before = search.nodes;
    const float second = search_node(n, move_from(knight_move));
    return {first, second, search.nodes - before};
}

TEST_F(ShallowTables, AHitReplacesTheNode) {
    for (const int n : plies_with_table) {
        stand_before(n, n == 3 ? 4 : 8);
        const Twice twice = search_twice(n);
        EXPECT_EQ(twice.nodes_of_second, 1U) << "ply " << n;
        EXPECT_EQ(twice.first, twice.second) << "ply " << n;
        EXPECT_EQ(times(Rule::scan_hits), 1U) << "ply " << n;
        EXPECT_EQ(next_shallow_record(n, white), 1) << "ply " << n;
        clear_counts();
    }
}

TEST_F(ShallowTables, AHitWritesTheValueOfItsOwnPlyAndNothingElse) {
    for (const int n : plies_with_table) {
        stand_before(n, n == 3 ? 4 : 8);
        init_tabuleiro2_deep<white>(n - 1, move_from(knight_move));
        store(n, white, 12.5F);
        Bounds expected = bounds;
        (n % 2 == 0 ? expected.alfa : expected.beta)[n] = 12.5F;
        search_node(n, move_from(knight_move));
        EXPECT_EQ(bounds.alfa, expected.alfa) << "ply " << n;
        EXPECT_EQ(bounds.beta, expected.beta) << "ply " << n;
        EXPECT_EQ(search.nodes, 1U) << "ply " << n;
    }
}

TEST_F(ShallowTables, PliesFourAndFiveDoNotScanBelowDepthEight) {
    for (const int n : {4, 5}) {
        stand_before(n, 7);
        const Twice twice = search_twice(n);
        EXPECT_GT(twice.nodes_of_second, 1U) << "ply " << n;
        EXPECT_EQ(twice.first, twice.second) << "ply " << n;
    }
}

TEST_F(ShallowTables, TheSearchNotesThatARingHasWrapped) {
    for (const int n : plies_with_table) {
        stand_before(n, n == 3 ? 4 : 8);
        for (const int free : {2, 1}) {
            clear_shallow_tables();
            store_numbered(n, white, 0, records_of_ring - free);
            search_node(n, move_from(knight_move));
            EXPECT_EQ(search.FULL[n], free == 1 ? 1 : 0) << "ply " << n;
            EXPECT_EQ(next_shallow_record(n, white), free == 1 ? 0 : records_of_ring - 1) << "ply " << n;
        }
    }
}

// --- In the search ---

constexpr auto pawn_ending = "8/5pk1/6p1/3P4/8/6P1/2p2PK1/8 w - - 0 1";
constexpr auto knight_ending = "8/5pk1/6p1/4n3/8/5NP1/5PK1/8 w - - 0 1";

void search_with(std::string_view depth, std::string_view fen = pawn_ending) {
    converse({"setoption name Deep value " + std::string(depth), "setoption name Time control value false",
              "position fen " + std::string(fen), "go wtime 99999999 btime 99999999"});
}

TEST_F(ShallowTables, WithDepthSevenNothingIsStoredAtPliesFourAndFiveButAtPlyThreeItIs) {
    search_with("4");
    EXPECT_GT(next_shallow_record(3, white), 0);
    EXPECT_EQ(next_shallow_record(4, black), 0);
    EXPECT_EQ(next_shallow_record(5, white), 0);
}

TEST_F(ShallowTables, WithDepthNineAllThreePliesStore) {
    search_with("5");
    EXPECT_GT(next_shallow_record(3, white), 0);
    EXPECT_GT(next_shallow_record(4, black), 0);
    EXPECT_GT(next_shallow_record(5, white), 0);
}

TEST_F(ShallowTables, BelowDepthThreeNothingIsStored) {
    search_with("1");
    EXPECT_EQ(next_shallow_record(3, white), 0);
    search_with("2");
    EXPECT_GT(next_shallow_record(3, white), 0);
}

TEST_F(ShallowTables, ASearchStoresInTheChainOfTheRootSideAlone) {
    search_with("5", "8/5pk1/6p1/3P4/8/6P1/2p2PK1/8 b - - 0 1");
    for (const int n : plies_with_table) {
        const Colour of_chain = n == 4 ? white : black;
        EXPECT_GT(next_shallow_record(n, of_chain), 0) << "ply " << n;
        EXPECT_EQ(next_shallow_record(n, other(of_chain)), 0) << "ply " << n;
    }
}

TEST_F(ShallowTables, WithoutDeepMemoryNothingIsStored) {
    set_option("Deep memory", "false");
    search_with("3");
    for (const int n : plies_with_table) {
        EXPECT_EQ(next_shallow_record(n, white), 0) << "ply " << n;
        EXPECT_EQ(next_shallow_record(n, black), 0) << "ply " << n;
    }
    EXPECT_EQ(times(Rule::scan), 0U);
}

// A value searched at a lowered depth is not remembered: the IID, null-move and reduced runs go without the tables.
int records_made() {
    int sum = 0;
    for (const int n : plies_with_table) {
        sum += next_shallow_record(n, white) + next_shallow_record(n, black) + search.FULL[n] * records_of_ring;
    }
    return sum;
}

struct Watched {
    int without_tables = 0;         // children entered while the tables were out of use
    int stored_without_tables = 0;  // records made from one such child to the next
    int iid_with_tables = 0;        // children of ply 1's IID pass, lower than any other, that had them
    int records_before = -1;        // when the last child was entered without the tables
};
Watched watched;

void watch_tables(int n, Move) {
    if (search.HASHf) {
        watched.records_before = -1;
        watched.iid_with_tables += n == 2 && search.deep < 7 ? 1 : 0;
        return;
    }
    ++watched.without_tables;
    if (watched.records_before >= 0) {
        watched.stored_without_tables += records_made() - watched.records_before;
    }
    watched.records_before = records_made();
}

TEST_F(ShallowTables, ThePassesAtALoweredDepthGoWithoutTheTables) {
    watched = {};
    probes.child_entered = watch_tables;
    search_with("5", knight_ending);
    EXPECT_GT(times(Rule::iid), 0U);
    EXPECT_GT(watched.without_tables, 0);
    EXPECT_EQ(watched.stored_without_tables, 0);
    EXPECT_EQ(watched.iid_with_tables, 0);
    EXPECT_EQ(search.HASHf, 1);
}

TEST_F(ShallowTables, ASearchFindsAgainWhatItHasStored) {
    search_with("5");
    EXPECT_GT(times(Rule::scan_hits), 0U);
    EXPECT_GT(times(Rule::scan), times(Rule::scan_hits));
}

// --- Against a table without an index ---

// What a record is known by, with the bounds as the node's window gives them.
struct PlainKey {
    int board;
    float alfa, beta;
    int deep;
    std::uint8_t PVSm, PVSm2;

    bool operator==(const PlainKey&) const = default;
};

// The same ring with nothing but a walk from the first record on.
class PlainTable {
public:
    [[nodiscard]] std::optional<float> scan(const PlainKey& k) const {
        for (std::size_t i = 0; i < keys_.size(); ++i) {
            if (keys_[i] == k) {
                return values_[i];
            }
        }
        return std::nullopt;
    }
    // Tells whether the ring has wrapped.
    bool store(const PlainKey& k, float v) {
        if (static_cast<std::size_t>(next_) == keys_.size()) {
            keys_.push_back(k);
            values_.push_back(v);
        } else {
            keys_[next_] = k;
            values_[next_] = v;
        }
        if (++next_ == records_of_ring) {
            next_ = 0;
            return true;
        }
        return false;
    }
    void clear() {
        keys_.clear();
        values_.clear();
        next_ = 0;
    }
    [[nodiscard]] int next() const { return next_; }

private:
    std::vector<PlainKey> keys_;
    std::vector<float> values_;
    int next_ = 0;
};

// The engine's six tables and six plain ones, driven over keys drawn from so many positions. Any difference is counted.
class TwoTables {
public:
    TwoTables(std::uint32_t seed, int boards) : random_(seed), boards_(boards) {}

    // One node of the search with children at the plies below: a scan, and after a miss a build, the children and the
    // store.
    void search_node(int n, Colour c) {
        const PlainKey k = draw_key(n);
        if (compare_scans(n, c, k)) {
            return;
        }
        hash_table_build(n, c, key_of(n));
        const int children = n < 5 ? draw(3) : 0;
        for (int i = 0; i < children; ++i) {
            search_node(n + 1, other(c));
        }
        compare_stores(n, c, k);
    }

    // A store without a scan before it: equal records come to stand side by side.
    void store_unseen(int n, Colour c) {
        const PlainKey k = draw_key(n);
        hash_table_build(n, c, key_of(n));
        compare_stores(n, c, k);
    }

    void scan(int n, Colour c) { compare_scans(n, c, draw_key(n)); }

    void clear(int n, Colour c) {
        clear_shallow_table(n, c);
        plain(n, c).clear();
        ++operations;
        compare_rings(n, c);
    }

    void clear_chain(Colour own) {
        clear_shallow_chain(own);
        for (const int n : plies_with_table) {
            plain(n, n == 4 ? other(own) : own).clear();
        }
        ++operations;
    }

    int draw(int count) { return static_cast<int>(random_() % static_cast<std::uint32_t>(count)); }

    int operations = 0;
    int differences = 0;
    int hits = 0;
    int misses = 0;
    int wraps = 0;  // times that a ring has turned

private:
    PlainTable& plain(int n, Colour c) { return plain_[n - 3][c]; }

    // Draws a state for a node of ply n, and gives its key by the rule of the windows.
    PlainKey draw_key(int n) {
        constexpr std::array<float, 4> alphas{-30.0F, -0.0F, 0.0F, 12.5F};
        constexpr std::array<float, 3> betas{12.5F, 40.0F, start_of_beta};
        constexpr std::array<int, 3> depths{9, 11, 8};
        const int board = draw(boards_);
        trial.tab2 = numbered_board(board);
        for (const int k : {0, 2, 4}) {
            bounds.alfa[k] = alphas[draw(4)];
        }
        for (const int k : {1, 3, 5}) {
            bounds.beta[k] = betas[draw(3)];
        }
        search.deep = depths[draw(3)];
        root_move.PVSm = static_cast<std::uint8_t>(draw(2));
        root_move.PVSm2 = static_cast<std::uint8_t>(draw(2));
        const auto& alfa = bounds.alfa;
        const auto& beta = bounds.beta;
        const float highest = n == 5 ? std::max({alfa[4], alfa[2], alfa[0]}) : std::max(alfa[2], alfa[0]);
        const float lowest = n == 3 ? beta[1] : std::min(beta[3], beta[1]);
        return {board, highest, lowest, search.deep, root_move.PVSm, root_move.PVSm2};
    }

    bool compare_scans(int n, Colour c, const PlainKey& k) {
        const auto known = hash_table_scan(n, c, key_of(n));
        differences += known != plain(n, c).scan(k) ? 1 : 0;
        (known ? hits : misses) += 1;
        ++operations;
        return known.has_value();
    }

    void compare_stores(int n, Colour c, const PlainKey& k) {
        const auto v = static_cast<float>(draw(1000000));
        const bool wraps_here = hash_table_store(n, c, v);
        differences += wraps_here != plain(n, c).store(k, v) ? 1 : 0;
        wraps += wraps_here ? 1 : 0;
        ++operations;
        compare_rings(n, c);
    }

    void compare_rings(int n, Colour c) { differences += next_shallow_record(n, c) != plain(n, c).next() ? 1 : 0; }

    std::mt19937 random_;
    int boards_;
    std::array<std::array<PlainTable, 2>, 3> plain_;
};

constexpr int operations_of_test = with_sanitizers ? 50000 : 1000000;

// As the search goes: no record twice, tables cleared by chains.
TEST_F(ShallowTables, AMillionNodesFindWhatAWalkOverAllRecordsFinds) {
    TwoTables both(1, 30);
    while (both.operations < operations_of_test) {
        both.search_node(3, both.draw(2) == 0 ? white : black);
        if (both.draw(20000) == 0) {
            both.clear_chain(both.draw(2) == 0 ? white : black);
        }
    }
    EXPECT_EQ(both.differences, 0);
    EXPECT_GT(both.hits, operations_of_test / 10);
    EXPECT_GT(both.misses, operations_of_test / 100);
}

// As no search goes: many equal records, rings that turn again and again, single tables cleared half full.
TEST_F(ShallowTables, AMillionStoresAndScansFindWhatAWalkOverAllRecordsFinds) {
    TwoTables both(2, 8);
    while (both.operations < operations_of_test) {
        const Colour c = both.draw(2) == 0 ? white : black;
        const int n = 3 + both.draw(3);
        both.draw(3) == 0 ? both.scan(n, c) : both.store_unseen(n, c);
        if (both.draw(100000) == 0) {
            both.clear(n, c);
        }
    }
    EXPECT_EQ(both.differences, 0);
    EXPECT_GT(both.hits, operations_of_test / 10);
    EXPECT_TRUE(with_sanitizers || both.wraps > 12);
}

// So many positions that rings turn with no record twice: a scan must miss what was overwritten.
TEST_F(ShallowTables, NodesOfVeryManyPositionsForgetWhatWasOverwritten) {
    TwoTables both(3, 400);
    const int nodes = with_sanitizers ? 12000 : 30000;
    while (both.operations < nodes * 2) {
        both.search_node(5, white);
    }
    EXPECT_EQ(both.differences, 0);
    EXPECT_GT(both.hits, nodes / 10);
    EXPECT_TRUE(with_sanitizers || both.wraps > 0);
}

}  // namespace
