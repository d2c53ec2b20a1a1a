// The root schedule and the iteration over depths. The root moves are scripted, so that the order and the passes of the
// schedule are seen at any depth.
#include "search/schedule.h"
#include "base/clock.h"
#include "memory/shallow_tables.h"
#include "search/observers.h"
#include "support/chess_rules.h"
#include "support/scripted.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <sstream>
#include <tuple>

namespace {

using namespace tests;
using namespace ondrel;

// --- The order of the root routines ---

// Each row is one sweep over the classes; "5ch PNB" stands for the captures of a queen with check, by pawns, then
// knights, then bishops. L are the quiet moves.
const std::vector<std::string> strong_captures{"5ch PNBRQK 5sh PNBRQK", "4ch PNBRK 4sh PNBRK", "3ch PNBK 3sh PNBK",
                                               "2ch PNBK 2sh PNBK", "1ch PK 1sh PK"};
constexpr auto all_the_rest =
    "3ch R 2ch R 4ch Q 1ch B 1ch N 1ch R 3ch Q 2ch Q 1ch Q Lch PNBRQK "
    "3sh R 2sh R 4sh Q 1sh B 1sh N 1sh R 3sh Q 2sh Q 1sh Q Lsh PNBRQK";
const std::vector<std::string> dynamic_captures{"5ch PNBRQK", "5sh PNBRQK", "4ch PNBRQK", "4sh PNBRQK", "3ch PNBRQK",
                                                "3sh PNBRQK", "2ch PNBRQK", "2sh PNBRQK", "1ch PNBRQK", "1sh PNBRQK"};
constexpr auto dynamic_quiet = "Lch PNBRQK Lsh PNBRQK";
const std::vector<std::string> against_a_bare_king{"Lch P Lsh P", "Lch NBRQ Lsh NBRQK Lch K", "1ch K 1sh K"};

using Routine = std::string;        // "5chP"
using Place = std::pair<int, int>;  // sweep, and place within it
using Order = std::map<Routine, Place>;

std::vector<Routine> routines(const std::string& row) {
    std::vector<Routine> names;
    std::istringstream words(row);
    for (std::string stage, pieces; words >> stage >> pieces;) {
        for (const char piece : pieces) {
            names.push_back(stage + piece);
        }
    }
    return names;
}

class OrderMaker {
public:
    void one_sweep(const std::string& row) {
        int place = 0;
        for (const Routine& name : routines(row)) {
            order_[name] = {sweep_, place++};
        }
        ++sweep_;
    }
    void a_sweep_each(const std::string& row) {
        for (const Routine& name : routines(row)) {
            order_[name] = {sweep_++, 0};
        }
    }
    [[nodiscard]] const Order& order() const { return order_; }

private:
    int sweep_ = 0;
    Order order_;
};

Order order_of(int temperament, bool bare_king) {
    OrderMaker maker;
    if (bare_king) {
        for (const std::string& row : against_a_bare_king) {
            maker.one_sweep(row);
        }
    } else if (temperament == 3) {
        for (const std::string& row : dynamic_captures) {
            maker.a_sweep_each(row);
        }
        maker.one_sweep(dynamic_quiet);
    } else {
        for (const std::string& row : strong_captures) {
            temperament == 1 ? maker.one_sweep(row) : maker.a_sweep_each(row);
        }
        maker.one_sweep(all_the_rest);
    }
    return maker.order();
}

Routine routine_of(const rules::Position& position, const rules::Move& move) {
    const auto upper = [](char man) { return man >= 'a' ? static_cast<char>(man - 'a' + 'A') : man; };
    const char victim = upper(position.at(move.to_file, move.to_rank));
    char stage = 'L';
    if (rules::is_en_passant(position, move) || rules::is_castling(position, move)) {
        stage = '1';
    } else if (victim != rules::empty_square) {
        stage = static_cast<char>('1' + std::string_view("PBNRQ").find(victim));
    }
    return std::string(1, stage) + (rules::gives_check(position, move) ? "ch" : "sh") +
           upper(position.at(move.from_file, move.from_rank));
}

// The legal moves of a position with their routines, a promotion once and to a queen.
std::map<std::string, Routine> routines_of(const rules::Position& position) {
    std::map<std::string, Routine> all;
    for (const rules::Move& move : rules::legal_moves(position)) {
        if (move.promotion == 0 || move.promotion == 'q') {
            all[rules::to_uci(move).substr(0, 4)] = routine_of(position, move);
        }
    }
    return all;
}

bool has_castling(const rules::Position& position) {
    const std::vector<rules::Move> moves = rules::legal_moves(position);
    return std::any_of(moves.begin(), moves.end(),
                       [&](const rules::Move& m) { return rules::is_castling(position, m); });
}

bool bare_opponent(const rules::Position& position) {
    return std::count_if(position.squares.begin(), position.squares.end(), [&](signed char man) {
               return position.white_to_move ? man >= 'a' && man <= 'z' : man >= 'A' && man <= 'Z';
           }) == 1;
}

// One sweep of the schedule over the position, each move being worth nothing.
std::vector<Call> root_moves(const rules::Position& position, int temperament, bool tables = true) {
    fresh_process();
    options.Temperamento = temperament;
    options.matrix = tables ? 1 : 0;
    options.deepp = 7;
    const Colour own = place_fen(rules::to_fen(position));
    const Script moves(every_child(1, 0.0F));
    search_whole(own);
    return moves.calls();
}

// The classes in which each routine had a move.
using Classes = std::map<Routine, std::set<int>>;

// Holds the order of the root moves against the table, and gives the classes seen.
Classes expect_scheduled(const rules::Position& position, int temperament, bool tables = true) {
    SCOPED_TRACE(testing::Message() << rules::to_fen(position) << ", temperament " << temperament);
    EXPECT_TRUE(rules::is_legal_position(position));
    const std::map<std::string, Routine> legal = routines_of(position);
    const Order order = order_of(temperament, bare_opponent(position));
    using Key = std::tuple<int, int, int, int>;  // sweep, class from above, place in the sweep, square
    std::vector<Key> keys;
    std::set<std::string> searched;
    Classes classes;
    for (const Call& x : root_moves(position, temperament, tables)) {
        const std::string move = text_of(x.m);
        if (!legal.contains(move)) {
            ADD_FAILURE() << move << " is not legal";
            continue;
        }
        classes[legal.at(move)].insert(x.ataque);
        EXPECT_TRUE(searched.insert(move).second) << move << " twice";
        const Place place = order.at(legal.at(move));
        EXPECT_EQ(x.ataque, x.ESTRATEGIA) << move;
        keys.emplace_back(place.first, -x.ataque, place.second, x.m.from());
    }
    EXPECT_EQ(searched.size(), legal.size());
    EXPECT_TRUE(std::is_sorted(keys.begin(), keys.end()));
    return classes;
}

// Two routines of one sweep whose order a position has decided: both had moves of one class.
using Pair = std::pair<Routine, Routine>;

void take_decided(std::set<Pair>& open, const Classes& classes) {
    std::erase_if(open, [&](const Pair& pair) {
        const auto first = classes.find(pair.first);
        const auto second = classes.find(pair.second);
        return first != classes.end() && second != classes.end() &&
               std::any_of(first->second.begin(), first->second.end(),
                           [&](int x) { return second->second.contains(x); });
    });
}

// Neighbours in a sweep.
void add_neighbours(std::set<Pair>& pairs, const std::string& row) {
    const std::vector<Routine> names = routines(row);
    for (std::size_t k = 0; k + 1 < names.size(); ++k) {
        pairs.emplace(names[k], names[k + 1]);
    }
}

class RootSchedule : public testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

TEST_F(RootSchedule, FollowsItsTableInEveryTemperament) {
    // Castling is left out: its class is that of whatever was tried before it.
    const std::vector<rules::Position> positions = rules::data_positions("positions.fen");
    int seen = 0;
    for (std::size_t k = 0; k < positions.size(); k += 67) {
        if (!has_castling(positions[k])) {
            expect_scheduled(positions[k], 1 + seen % 3);
            ++seen;
        }
    }
    EXPECT_GE(seen, 9);
}

// Pawns that attack queens put nearly all moves of these positions into the highest class, so that the order of the
// routines alone decides.
constexpr std::array one_class{"3rB1b1/1N6/3p4/4R3/1Bqq4/p1PPPnQ1/2k5/Rn3Kb1 w - - 0 1",
                               "5Q2/p3Q2b/2qR1nr1/3PK2P/6b1/1q6/p1P5/2Bnk1N1 w - - 0 1",
                               "8/RB4kN/1n1bqqb1/P1N2PP1/7K/pB6/2pQ1Q2/8 w - - 0 1",
                               "8/8/n1p5/2q1qBQ1/kp1PNP2/1n3r1p/1b1NK1Q1/5R2 w - - 0 1",
                               "6r1/3n1k2/B7/1bN5/1Q2pBq1/4q1nP/K4P2/1Q6 w - - 0 1",
                               "n3K3/5N2/1q3R2/2P3b1/1N1k2q1/3r3P/1pp1PRp1/BB6 w - - 0 1",
                               "2R3K1/1r6/6R1/1pqp1kp1/2QP2n1/6Q1/4n2b/1b2B3 w - - 0 1",
                               "4n3/Q3p1N1/3qP2N/1q1pP1Qb/n1Pr2B1/2R2RK1/7p/3k1b2 w - - 0 1",
                               "3Q4/1Q3RPp/2qNbK2/N2P4/1b5p/1q4p1/2P2k2/5Bnr w - - 0 1",
                               "1B2R3/1p3P2/5r2/1pRnq1b1/1q2BP2/2Pn3N/k2KQ3/8 w - - 0 1",
                               "2B5/K6p/2r3b1/1bPq4/nNqRPk2/Q2P2p1/3n2B1/4QN2 w - - 0 1",
                               "6Q1/4r1p1/1qn2k2/2P2p2/3NqQ1K/N4Pb1/3PB2B/R7 w - - 0 1",
                               "3B4/3R3R/k3q3/n3NP2/6p1/1q1NP1Q1/2P1p2b/4r1bK w - - 0 1",
                               "2n2n2/1Np1K1Rb/8/7p/2q1B1Br/3Pkpq1/1Rb4P/8 w - - 0 1",
                               "6Bb/4N3/P1p5/2b2pQ1/2q2R1Q/3P1nK1/r4N2/k7 w - - 0 1",
                               "1Rn5/1bk3P1/p4B2/6p1/4q3/N1q2P2/2pP3K/4rN2 w - - 0 1",
                               "1b6/3P3p/3b3B/N4qq1/p1p2kPP/3R4/5BK1/3n1Q2 w - - 0 1",
                               "6K1/4B3/3r1qnp/1pNRq1Pk/5Pp1/QP3b2/B7/1b1n4 w - - 0 1",
                               "6B1/5pK1/3R4/k3B2N/2qn4/b1PPq1r1/3b1P2/7N w - - 0 1",
                               "6k1/7N/8/1q2pB1Q/2Pq1P2/1n2P3/n4pK1/R2RrN2 w - - 0 1",
                               "1kBQ3N/r1npp3/3B4/1b6/5K1P/p2Rq1QN/5Pb1/n7 w - - 0 1",
                               "3n4/4p2R/Q2p3n/4bqp1/6PB/2kqQ1b1/4P3/2KR4 w - - 0 1",
                               "7B/b3R2r/k4pq1/3QRq1P/b1n3PN/3P1pK1/2QN2p1/n7 w - - 0 1",
                               "1K4R1/p3R1N1/3k1p2/6Qb/4Bb2/3Nq3/Q1nn1P2/8 w - - 0 1",
                               "2Q1B2k/1B3n2/Q1R4N/6r1/5pq1/np2qp1P/bKb2PP1/8 w - - 0 1",
                               "4K3/1nQ3p1/3B1k2/b4qR1/1p1q2PN/2B1P1n1/1N2r1QP/7R w - - 0 1",
                               "2b1K2b/2p3Np/8/1R1R1qnr/PB1n1BP1/6q1/1k5P/8 w - - 0 1",
                               "Qb4R1/N2Pp3/2QB4/2p3q1/1q5P/2PK4/3NR3/6kr w - - 0 1",
                               "1b5N/6PB/4q2b/5Pq1/p1k2n1P/3N1QQ1/R4p1K/3R1B2 w - - 0 1",
                               "4n2b/Q7/3kNQpp/6B1/5qPb/4q1P1/1K3P2/2Nr4 w - - 0 1",
                               "RN6/8/1B4k1/p5p1/4K3/1n1Qq2R/2b2P2/2r1b1n1 w - - 0 1",
                               "8/1p1B3p/n4Rb1/p3QP2/2R2Nk1/6q1/7P/1QbKBN2 w - - 0 1",
                               "5N1K/3b2Rb/1kB3Q1/1qrPp3/2P1B1q1/7P/8/Q4R2 w - - 0 1",
                               "2r3N1/4n3/3b2k1/1RPq1q1n/1B2P1P1/p2Q4/2QN2pp/4K3 w - - 0 1",
                               "n1n1B3/b2p4/1R1q1N2/2pqP3/3NP1Q1/4Kr2/1p4B1/6k1 w - - 0 1",
                               "3kr3/5P2/3N2B1/p3q2p/5P2/1p1Qbq1B/2nR2P1/7K w - - 0 1",
                               "8/3R1K1k/1Q1qQr1B/3qP1p1/b3P3/bn1R2p1/7P/8 w - - 0 1",
                               "1B2n2k/2p5/b1N1p3/r1R1K3/3Q1p2/1qQqP3/2PbP3/1N6 w - - 0 1",
                               "3B4/1P3b2/4pK2/8/Npqn3k/3P4/3B2pn/R2Rb3 w - - 0 1",
                               "7n/b3K2N/2p4Q/B2qbq2/1r2P1Pp/k7/1R4p1/2B5 w - - 0 1",
                               "5b2/4R3/2q1q3/2kP1Pb1/8/5n2/1nN2KP1/6B1 w - - 0 1",
                               "4k2r/8/q1q5/1P6/8/3r4/4K3/4R2R w - - 0 1",
                               "4k3/5p2/q1q3P1/1P6/8/8/3pK3/4R3 w - - 0 1"};

TEST_F(RootSchedule, FollowsItsTableInTheOrderOfEveryTwoNeighbours) {
    std::set<Pair> undecided;
    for (const std::string& row : strong_captures) {
        add_neighbours(undecided, row);
    }
    add_neighbours(undecided, all_the_rest);
    for (const char* fen : one_class) {
        take_decided(undecided, expect_scheduled(*rules::from_fen(fen), 1));
    }
    // No king can take a queen and uncover a check while a queen can take one with check: the queen that the king takes
    // has given check, so both would have to take that one, on one line with the other king.
    EXPECT_EQ(undecided, (std::set<Pair>{{"5chQ", "5chK"}}));
}

TEST_F(RootSchedule, ConsistentTemperamentSharesTheLastSweep) {
    for (std::size_t k = 0; k < one_class.size(); k += 9) {
        expect_scheduled(*rules::from_fen(one_class[k]), 2);
    }
}

TEST_F(RootSchedule, DynamicTemperamentHasOneSweepOfQuietMoves) {
    std::set<Pair> undecided;
    add_neighbours(undecided, dynamic_quiet);
    for (const char* fen : {"Qb4R1/N2Pp3/2QB4/2p3q1/1q5P/2PK4/3NR3/6kr w - - 0 1",
                            "3Q4/1Q3RPp/2qNbK2/N2P4/1b5p/1q4p1/2P2k2/5Bnr w - - 0 1",
                            "n7/b3P3/1n4K1/N1R2p2/Rq3N2/1qPb1Q2/1BP5/4k3 w - - 0 1"}) {
        take_decided(undecided, expect_scheduled(*rules::from_fen(fen), 3));
    }
    EXPECT_EQ(undecided, std::set<Pair>{});
}

TEST_F(RootSchedule, BareKingScheduleIsDecidedByTheOrderOfItsRoutinesToo) {
    // Without the tables every quiet move that loses nothing is of one class.
    std::set<Pair> undecided;
    for (const std::string& row : {against_a_bare_king[0], against_a_bare_king[1]}) {
        add_neighbours(undecided, row);
    }
    for (const char* fen : {"8/2P5/3k4/8/1P1K4/8/P2R4/BN4QB w - - 0 1", "8/8/3k4/8/1PP5/8/P7/K7 w - - 0 1",
                            "8/8/3k4/8/8/6N1/7R/Q3B2K w - - 0 1"}) {
        const rules::Position position = *rules::from_fen(fen);
        EXPECT_TRUE(bare_opponent(position));
        take_decided(undecided, expect_scheduled(position, 3, false));
    }
    EXPECT_EQ(undecided, std::set<Pair>{});
}

// Captures of every victim by several kinds of men, with check and without, for either side.
constexpr std::array crowded{
    "3q2k1/2P1r1pp/1b3n2/3p4/2PPN3/B2Q1R2/5PPP/4R1K1 w - - 0 1",
    "r2q1rk1/1b2bppp/p1n2n2/1pp1p3/3PP3/1BN1BN2/PP3PPP/R2Q1RK1 w - - 0 1",
    "3k4/1P1r2b1/q1n5/1B1N4/R3R3/8/5Q2/4K3 w - - 0 1",
};

TEST_F(RootSchedule, FollowsItsTableForEitherColour) {
    for (const char* fen : crowded) {
        for (const int temperament : {2, 3}) {
            expect_scheduled(rules::mirrored(*rules::from_fen(fen)), temperament);
        }
    }
}

TEST_F(RootSchedule, TemperamentsSearchTheSameMovesInDifferentOrders) {
    std::set<std::vector<std::string>> orders;  // by temperament, over all positions
    for (const int temperament : {1, 2, 3}) {
        std::vector<std::string> order;
        for (const char* fen : crowded) {
            std::set<std::string> moves;
            for (const Call& x : root_moves(*rules::from_fen(fen), temperament)) {
                order.push_back(text_of(x.m));
                moves.insert(order.back());
            }
            EXPECT_EQ(moves.size(), routines_of(*rules::from_fen(fen)).size());
        }
        orders.insert(order);
    }
    EXPECT_EQ(orders.size(), 3U);
}

TEST_F(RootSchedule, AgainstABareKingQuietPawnMovesComeFirstInEveryTemperament) {
    const rules::Position position = *rules::from_fen("8/8/3k4/8/1P6/8/P2NBR2/Q3K3 w - - 0 1");
    for (const rules::Position& p : {position, rules::mirrored(position)}) {
        expect_scheduled(p, 3);
        std::set<std::vector<std::string>> orders;
        for (const int temperament : {1, 2, 3}) {
            std::vector<std::string> moves;
            for (const Call& x : root_moves(p, temperament)) {
                moves.push_back(text_of(x.m));
            }
            ASSERT_GE(moves.size(), 4U);
            for (std::size_t k = 0; k < 3; ++k) {
                EXPECT_TRUE(moves[k][0] == 'a' || moves[k][0] == 'b') << moves[k];
                EXPECT_EQ(routines_of(p).at(moves[k])[3], 'P') << moves[k];
            }
            EXPECT_NE(routines_of(p).at(moves[3])[3], 'P');
            orders.insert(moves);
        }
        EXPECT_EQ(orders.size(), 1U);
    }
}

TEST_F(RootSchedule, KingsChecksComeLastOfTheQuietMovesAgainstABareKing) {
    // The king uncovers its rook: in the game's schedules checks come first.
    const rules::Position bare = *rules::from_fen("8/8/8/R2K2k1/8/8/8/8 w - - 0 1");
    const auto moves = root_moves(bare, 3);
    ASSERT_FALSE(moves.empty());
    const auto is_king_check = [&](const Call& x) { return routines_of(bare).at(text_of(x.m)) == "LchK"; };
    const auto first = std::find_if(moves.begin(), moves.end(), is_king_check);
    ASSERT_NE(first, moves.end());
    ASSERT_NE(first, moves.begin());
    EXPECT_TRUE(std::any_of(first, moves.end(), is_king_check));
}

TEST_F(RootSchedule, AtEqualScoresTheFirstMoveStaysAndABetterOneTakesOver) {
    for (const int temperament : {1, 2, 3}) {
        const auto moves = root_moves(*rules::from_fen(crowded[0]), temperament);
        EXPECT_EQ(game.abcd, moves.front().m);
        EXPECT_EQ(search.E, 0.0F);
        fresh_process();
        options.Temperamento = temperament;
        options.deepp = 7;
        const Colour own = place_fen(crowded[0]);
        std::vector<Move> seen;
        const Script better([&](const Call& x) {
            seen.push_back(x.m);
            return std::optional(seen.size() == 5 ? 0.1F : 0.0F);
        });
        search_whole(own);
        ASSERT_GE(seen.size(), 6U);
        EXPECT_EQ(game.abcd, seen[4]);
        EXPECT_EQ(search.E, 0.1F);
    }
}

// --- The iteration over depths ---

struct PassSeen {
    int deep, SCAN1, SCANT;
    std::size_t moves;
    bool operator==(const PassSeen&) const = default;
};
std::ostream& operator<<(std::ostream& out, const PassSeen& p) {
    return out << "{" << p.deep << " " << p.SCAN1 << p.SCANT << " x" << p.moves << "}";
}
using Passes = std::vector<PassSeen>;

// Four moves, of which a2a4 is the best unless told otherwise.
constexpr auto four_moves = "7k/7p/8/8/8/8/P7/K7 w - - 0 1";
constexpr auto best = "a2a4";

class Iteration : public testing::Test {
protected:
    using Value = std::function<float(const Call&)>;

    void SetUp() override { fresh_process(); }

    static float plainly(const Call& x) { return text_of(x.m) == best ? 3.0F : 0.0F; }

    static Colour place_with_limit(int limit, std::string_view fen = four_moves) {
        options.deepp = limit;
        const Colour own = place_fen(fen);
        options.TC = 0;
        return own;
    }
    // A search of the placed position with scripted root moves.
    Passes search_root_moves(Colour own, const Value& value = plainly) {
        const Script moves([&](const Call& x) -> std::optional<float> {
            ++search.curr;  // as ply 1 does
            return value(x);
        });
        search_whole(own);
        calls_ = moves.calls();
        Passes passes;
        for (const Call& x : calls_) {
            if (passes.empty() || passes.back().deep != x.deep || passes.back().SCAN1 != x.SCAN1 ||
                passes.back().SCANT != x.SCANT) {
                passes.push_back({x.deep, x.SCAN1, x.SCANT, 0});
            }
            ++passes.back().moves;
        }
        return passes;
    }
    // The first call of a pass.
    [[nodiscard]] const Call& first_of(int depth, int scan1, int scant) const {
        const auto at = std::find_if(calls_.begin(), calls_.end(), [&](const Call& x) {
            return x.deep == depth && x.SCAN1 == scan1 && x.SCANT == scant;
        });
        if (at == calls_.end()) {
            throw std::logic_error("no such pass");
        }
        return *at;
    }

    std::vector<Call> calls_;
};

const Passes only_first_depth{{7, 0, 0, 4}, {9, 1, 0, 1}, {9, 0, 1, 3}};

Passes up_to(int depth) {
    Passes passes = only_first_depth;
    for (int d = 11; d <= depth; d += 2) {
        passes.push_back({d, 1, 0, 1});
        passes.push_back({d, 0, 1, 3});
    }
    return passes;
}

TEST_F(Iteration, WithoutADepthLimitTheDepthsRunToTwentyThree) {
    EXPECT_EQ(search_root_moves(place_with_limit(17)), up_to(23));
    EXPECT_EQ(search.deep, 23);
    EXPECT_EQ(text_of(game.abcd), best);
}

TEST_F(Iteration, ADepthLimitEndsIt) {
    for (const int limit : {9, 11, 13, 15}) {
        EXPECT_EQ(search_root_moves(place_with_limit(limit)), up_to(limit));
        EXPECT_EQ(search.deep, limit);
    }
}

TEST_F(Iteration, AtDepthsUpToEightOnePassOverAllMovesIsTheWholeSearch) {
    for (const int limit : {0, 1, 3, 5, 7}) {
        EXPECT_EQ(search_root_moves(place_with_limit(limit)), (Passes{{limit, 0, 1, 4}}));
        EXPECT_EQ(search.deep, limit);
        EXPECT_EQ(first_of(limit, 0, 1).pempatee, 1);
    }
}

TEST_F(Iteration, DeepAtZeroIsOnePassByMaterialAlone) {
    set_option("Deep", "0");
    const Colour own = place_fen("4k3/8/8/2pr4/3N4/8/1B6/4K3 w - - 0 1");
    std::set<std::pair<int, int>> kinds;
    const Script moves([&](const Call& x) -> std::optional<float> {
        EXPECT_EQ(x.n, 1);
        kinds.insert({x.deep, x.SCANT});
        return std::nullopt;
    });
    search_whole(own);
    EXPECT_EQ(kinds, (std::set<std::pair<int, int>>{{0, 1}}));
    EXPECT_EQ(search.E, 5.0F);  // nothing can be taken: knight and bishop against rook and pawn
}

TEST_F(Iteration, NominalDepthIsThatOfThePass) {
    search_root_moves(place_with_limit(11));
    for (const Call& x : calls_) {
        EXPECT_EQ(x.DEEP, x.deep);
    }
}

TEST_F(Iteration, FirstPassOfADepthSearchesTheRememberedMoveAndTheSecondAllOthers) {
    search_root_moves(place_with_limit(13));
    for (const Call& x : calls_) {
        if (x.SCAN1) {
            EXPECT_EQ(text_of(x.m), best);
        } else if (x.SCANT) {
            EXPECT_NE(text_of(x.m), best);
        }
    }
}

TEST_F(Iteration, AMoveThatTakesOverIsRememberedAtOnce) {
    // From then on it is the new one that the second pass leaves out, and the old one comes again in its turn.
    for (const char* better : {"a1b1", "a2a3"}) {
        search_root_moves(place_with_limit(9), [better](const Call& x) {
            return x.deep == 9 && x.SCANT && text_of(x.m) == better ? 20.0F : plainly(x);
        });
        std::vector<std::string> second_pass;
        for (const Call& x : calls_) {
            if (x.SCANT) {
                second_pass.push_back(text_of(x.m));
            }
        }
        const auto at = [&](std::string_view m) { return std::find(second_pass.begin(), second_pass.end(), m); };
        const auto built = [&](std::string_view m) {
            return std::find_if(calls_.begin(), calls_.end(), [m](const Call& x) { return text_of(x.m) == m; });
        };
        ASSERT_NE(at(better), second_pass.end());
        EXPECT_EQ(at(best) != second_pass.end(), built(better) < built(best)) << better;
    }
}

TEST_F(Iteration, RememberedMoveIsTheBestOfThePassBefore) {
    // At depth 9 another move takes over: it is the one searched alone at depth 11.
    search_root_moves(place_with_limit(11),
                      [](const Call& x) { return x.deep == 9 && text_of(x.m) == "a1b2" ? 20.0F : plainly(x); });
    EXPECT_EQ(text_of(first_of(9, 1, 0).m), best);
    EXPECT_EQ(text_of(first_of(11, 1, 0).m), "a1b2");
}

TEST_F(Iteration, ASingleLegalMoveEndsTheSearchAfterTheBuildPass) {
    constexpr auto one_move = "k7/8/8/8/p7/8/P4q2/7K w - - 0 1";
    EXPECT_EQ(search_root_moves(place_with_limit(17, one_move)), (Passes{{7, 0, 0, 1}}));
    EXPECT_EQ(text_of(game.abcd), "a2a3");
    EXPECT_EQ(search.deep, 9);
    // At a depth without a build pass it is not asked.
    EXPECT_EQ(search_root_moves(place_with_limit(7, one_move)), (Passes{{7, 0, 1, 1}}));
    // Searched for real the move counts itself.
    fresh_process();
    const Colour own = place_with_limit(17, one_move);
    const Script all([](const Call&) { return std::nullopt; });
    search_whole(own);
    EXPECT_EQ(all.count(1), 1U);
}

TEST_F(Iteration, ASingleMoveThatAFilterLeavesIsSearchedLikeAnyOther) {
    const Colour own = place_with_limit(11);
    observers.root_filter.on = true;
    observers.root_filter.allowed[square_of("a2")][square_of("a3")] = true;
    EXPECT_EQ(search_root_moves(own), (Passes{{7, 0, 0, 1}, {9, 1, 0, 1}, {11, 1, 0, 1}}));
    EXPECT_EQ(text_of(game.abcd), "a2a3");
}

TEST_F(Iteration, WithoutExtraEvaluationItEndsAfterTheFirstDepth) {
    set_option("Extra evaluation", "false");
    EXPECT_EQ(search_root_moves(place_with_limit(17)), only_first_depth);
}

TEST_F(Iteration, WithIterationForbiddenItEndsAfterTheFirstDepth) {
    const Colour own = place_with_limit(17);
    search.IIDS = 0;
    EXPECT_EQ(search_root_moves(own), only_first_depth);
}

TEST_F(Iteration, PastTheSoftLimitNoDepthIsBegun) {
    // With two men at a third each the soft limit is the budget over 50.
    for (const bool over : {false, true}) {
        const Colour own = place_with_limit(13);
        options.TC = 1;
        search.inicio = clock_ms() - 1000000;
        search.tempo = over ? 45000000 : 55000000;
        EXPECT_EQ(search_root_moves(own), over ? only_first_depth : up_to(13));
        EXPECT_GE(search.fim - search.inicio, 1000000);
    }
    const Colour own = place_with_limit(13);
    options.TC = 0;
    search.inicio = clock_ms() - 1000000;
    search.tempo = 0;
    EXPECT_EQ(search_root_moves(own), up_to(13));
}

TEST_F(Iteration, SoftLimitCountsTheMenByTimeUsage) {
    // Thirty men: the budget over 150; at a tenth each over 80.
    const auto stops = [&](int men, int usage, int budget) {
        const Colour own = place_with_limit(11);
        options.TC = 1;
        root.npecas = {men, men};
        options.Tu = usage;
        search.inicio = clock_ms() - 1000000;
        search.tempo = budget;
        return search_root_moves(own) == only_first_depth;
    };
    EXPECT_FALSE(stops(15, 3, 165000000));
    EXPECT_TRUE(stops(15, 3, 135000000));
    EXPECT_FALSE(stops(15, 10, 88000000));
    EXPECT_TRUE(stops(15, 10, 72000000));
}

TEST_F(Iteration, AMateEndsTheSearchAtTheNextDecision) {
    // Found by the best move at depth 11: its other moves are not searched any more.
    EXPECT_EQ(search_root_moves(place_with_limit(17),
                                [](const Call& x) { return x.deep == 11 && x.SCAN1 ? 3300.0F : plainly(x); }),
              (Passes{{7, 0, 0, 4}, {9, 1, 0, 1}, {9, 0, 1, 3}, {11, 1, 0, 1}}));
    EXPECT_EQ(search.E, 3300.0F);
    // Found at the first depth: its second pass runs in any case, no further depth does.
    EXPECT_EQ(search_root_moves(place_with_limit(17),
                                [](const Call& x) { return x.deep == 9 && x.SCAN1 ? 3300.0F : plainly(x); }),
              only_first_depth);
    EXPECT_EQ(
        search_root_moves(place_with_limit(17),
                          [](const Call& x) { return x.deep == 9 && text_of(x.m) == "a1b1" ? 3300.0F : plainly(x); }),
        (Passes{{7, 0, 0, 4}, {9, 1, 0, 1}, {9, 0, 1, 4}}));
    EXPECT_EQ(text_of(game.abcd), "a1b1");
    // A hair less is a score like any other.
    EXPECT_GT(search_root_moves(place_with_limit(17),
                                [](const Call& x) { return x.deep == 11 && x.SCAN1 ? 3299.5F : plainly(x); })
                  .size(),
              4U);
}

TEST_F(Iteration, AScoreAtTheRootLimitEndsTheSearchAtOnce) {
    // The nearest mate, found alone at depth 9: no second pass.
    EXPECT_EQ(search_root_moves(place_with_limit(17), [](const Call& x) { return x.SCAN1 ? 15400.0F : plainly(x); }),
              (Passes{{7, 0, 0, 4}, {9, 1, 0, 1}}));
    EXPECT_EQ(pass.corte_MAXcut, 1);
    // Found among the others: those behind it are left out.
    int k = 0;
    EXPECT_EQ(search_root_moves(place_with_limit(17),
                                [&k](const Call& x) { return x.SCANT && ++k == 2 ? 15400.0F : plainly(x); }),
              (Passes{{7, 0, 0, 4}, {9, 1, 0, 1}, {9, 0, 1, 2}}));
    // Found in the build pass, which is cut short, it is still confirmed at depth 9.
    k = 0;
    EXPECT_EQ(search_root_moves(place_with_limit(17), [&k](const Call&) { return ++k >= 2 ? 15400.0F : 0.0F; }),
              (Passes{{7, 0, 0, 2}, {9, 1, 0, 1}}));
}

TEST_F(Iteration, ACutBuildPassThatSawOneMoveOnlyLooksLikeASingleLegalMove) {
    EXPECT_EQ(search_root_moves(place_with_limit(17), [](const Call&) { return 15400.0F; }), (Passes{{7, 0, 0, 1}}));
}

TEST_F(Iteration, ATimeOutStopsTheScheduleBehindTheMoveBeingSearched) {
    EXPECT_EQ(search_root_moves(place_with_limit(17),
                                [](const Call& x) {
                                    if (x.deep == 11 && x.SCANT) {
                                        pass.corte_MAXcut = 1;
                                    }
                                    return plainly(x);
                                }),
              (Passes{{7, 0, 0, 4}, {9, 1, 0, 1}, {9, 0, 1, 3}, {11, 1, 0, 1}, {11, 0, 1, 1}}));
}

TEST_F(Iteration, EveryNewDepthOpensTheWindowByAStep) {
    for (const std::uint8_t many_men : {std::uint8_t{0}, std::uint8_t{1}}) {
        const float step = many_men ? 1.0F : 10.0F;
        const Colour own = place_with_limit(13);
        search.DEEP9 = many_men;
        search_root_moves(own);
        EXPECT_EQ(first_of(7, 0, 0).alfa0, -16500.0F);
        EXPECT_EQ(first_of(7, 0, 0).E, -10000000.0F);
        EXPECT_EQ(first_of(7, 0, 0).ALFA0, -16500.0F);
        for (const int depth : {9, 11, 13}) {
            EXPECT_EQ(first_of(depth, 1, 0).ALFA0, 3.0F);
            EXPECT_EQ(first_of(depth, 1, 0).alfa0, 3.0F - step);
            EXPECT_EQ(first_of(depth, 1, 0).E, 3.0F - step);
            EXPECT_EQ(first_of(depth, 0, 1).ALFA0, 3.0F);
            EXPECT_EQ(first_of(depth, 0, 1).alfa0, 3.0F);
        }
    }
}

TEST_F(Iteration, AMateOfTheBuildPassIsSearchedAgainInFull) {
    const auto build_finds = [&](float v) {
        search_root_moves(place_with_limit(9), [v](const Call& x) { return text_of(x.m) == best ? v : 0.0F; });
        return first_of(9, 1, 0);
    };
    // Judged behind the step.
    const Call mate = build_finds(3310.0F);
    EXPECT_EQ(mate.ALFA0, 3300.0F);
    EXPECT_EQ(mate.alfa0, -16500.0F);
    EXPECT_EQ(mate.E, -10000000.0F);
    const Call almost = build_finds(3309.0F);
    EXPECT_EQ(almost.ALFA0, 3309.0F);
    EXPECT_EQ(almost.alfa0, 3299.0F);
    EXPECT_EQ(almost.E, 3299.0F);
}

TEST_F(Iteration, ADepthWhoseMovesAllFailKeepsTheEarlierBestMove) {
    search_root_moves(place_with_limit(11), [](const Call& x) { return x.deep == 11 ? -100.0F : plainly(x); });
    EXPECT_EQ(text_of(game.abcd), best);
    EXPECT_EQ(search.E, -7.0F);
    // The first move that beats the lowered score takes over, though it is worse than the score of the depth before.
    search_root_moves(place_with_limit(11), [](const Call& x) {
        return x.deep != 11 ? plainly(x) : (text_of(x.m) == "a1b1" ? -6.5F : -100.0F);
    });
    EXPECT_EQ(text_of(game.abcd), "a1b1");
    EXPECT_EQ(search.E, -6.5F);
}

TEST_F(Iteration, RepetitionIsNotLookedForInTheBuildPass) {
    search_root_moves(place_with_limit(11));
    for (const Call& x : calls_) {
        EXPECT_EQ(x.pempatee, x.deep == 7 ? 0 : 1);
    }
}

TEST_F(Iteration, EveryPassBeginsWithTheSavedLimits) {
    std::vector<float> seen;
    int last = 0;
    search_root_moves(place_with_limit(13), [&](const Call& x) {
        const int pass_of_call = x.deep * 10 + x.SCANT;
        if (pass_of_call != last) {
            last = pass_of_call;
            seen.push_back(x.MAXcut[4]);
            seen.push_back(x.MAXcut[21]);
        }
        bounds.MAXcut[4] = 1.0F;
        bounds.MAXcut[21] = 1.0F;
        return plainly(x);
    });
    EXPECT_EQ(seen.size(), 14U);
    for (std::size_t k = 0; k < seen.size(); ++k) {
        EXPECT_EQ(seen[k], k % 2 == 0 ? 13200.0F : 100.0F);
    }
}

TEST_F(Iteration, CastlingValueIsClearedBeforeEveryPass) {
    static void (*leave_child)(int, Move, float);
    const Colour own = place_with_limit(11);
    pass.roque = {10, 10};
    int last = 0;
    int passes = 0;
    const Script moves([&](const Call& x) {
        ++search.curr;
        const int pass_of_call = x.deep * 10 + x.SCANT;
        if (pass_of_call != last) {
            last = pass_of_call;
            ++passes;
            EXPECT_EQ(pass.roque, (std::array<int, 2>{}));
        }
        return plainly(x);
    });
    leave_child = probes.child_left;
    probes.child_left = [](int n, Move m, float v) {
        leave_child(n, m, v);
        pass.roque = {10, 10};
    };
    search_whole(own);
    EXPECT_EQ(passes, 5);
}

void store_five_records_everywhere() {
    for (const int n : {3, 4, 5}) {
        for (const Colour c : {white, black}) {
            for (int k = 0; k < 5; ++k) {
                hash_table_build(n, c, {});
                hash_table_store(n, c, 0.0F);
            }
        }
    }
}

TEST_F(Iteration, ShallowTablesOfTheChainAreClearedBetweenBuildAndFirstDepth) {
    for (const bool on : {true, false}) {
        fresh_process();
        options.HASHf = on ? 1 : 0;
        std::array<int, 6> found{};
        bool stored = false;
        bool looked = false;
        search_root_moves(place_with_limit(9), [&](const Call& x) {
            if (x.deep == 7 && !stored) {
                stored = true;
                store_five_records_everywhere();
            } else if (x.deep > 7 && !looked) {
                looked = true;
                found = {next_shallow_record(3, white), next_shallow_record(4, black), next_shallow_record(5, white),
                         next_shallow_record(3, black), next_shallow_record(4, white), next_shallow_record(5, black)};
            }
            return plainly(x);
        });
        EXPECT_EQ(found, on ? (std::array<int, 6>{0, 0, 0, 5, 5, 5}) : (std::array<int, 6>{5, 5, 5, 5, 5, 5}));
    }
}

TEST_F(Iteration, ADrawIsWorthAPawnMoreOnceTheScoreIsKnownToHold) {
    // The line is the balance less 5 with the ratio of the material; a man just lost keeps the value as it is.
    const auto rises = [&](std::string_view fen, float score, int taken) {
        const Colour own = place_with_limit(11, fen);
        game_line.peca = taken;
        const int before = search.emp;
        int during_build = before;
        std::vector<int> later;
        search_root_moves(own, [&](const Call& x) {
            if (x.deep == 7) {
                during_build = search.emp;
            } else {
                later.push_back(search.emp);
            }
            return score;
        });
        EXPECT_EQ(during_build, before);
        EXPECT_FALSE(later.empty());
        for (const int value : later) {
            EXPECT_EQ(value, later.front());  // once a search
        }
        EXPECT_TRUE(later.front() == before || later.front() == before + 10);
        EXPECT_EQ(search.emppp, before);
        return later.front() != before;
    };
    EXPECT_TRUE(rises(four_moves, -5.0F, 0));
    EXPECT_FALSE(rises(four_moves, -5.1F, 0));
    EXPECT_FALSE(rises(four_moves, 50.0F, 10));
    EXPECT_FALSE(rises(four_moves, 50.0F, -10));
    // Black with a rook and a pawn against a pawn: 50 - 5 + 5 ln(170/120), about 46.74.
    constexpr auto rook_up = "r6k/7p/8/8/8/8/P7/1K6 b - - 0 1";
    EXPECT_TRUE(rises(rook_up, 46.8F, 0));
    EXPECT_FALSE(rises(rook_up, 46.7F, 0));
}

TEST_F(Iteration, ADrawnMoveScoreIsForgottenAtEveryNewDepth) {
    int last = 0;
    search_root_moves(place_with_limit(13), [&](const Call& x) {
        const int pass_of_call = x.deep * 10 + x.SCANT;
        if (pass_of_call != last && x.SCAN1) {
            EXPECT_EQ(search.EP, 0.0F);
        }
        last = pass_of_call;
        search.EP = 77.0F;
        return plainly(x);
    });
    EXPECT_EQ(search.EP, 77.0F);
}

TEST_F(Iteration, PassesAreSeenFromOutsideToo) {
    // The same without a script, through the children of a real search.
    options.deepp = 9;
    const Colour real = place_fen("8/8/7k/8/8/p7/8/K7 w - - 0 1");
    std::vector<std::tuple<int, int, int>> passes;
    const Script all([&](const Call& x) -> std::optional<float> {
        if (x.n == 1 && (passes.empty() || passes.back() != std::tuple<int, int, int>{x.deep, x.SCAN1, x.SCANT})) {
            passes.emplace_back(x.deep, x.SCAN1, x.SCANT);
        }
        return std::nullopt;
    });
    search_whole(real);
    EXPECT_EQ(passes, (std::vector<std::tuple<int, int, int>>{{7, 0, 0}, {9, 1, 0}, {9, 0, 1}}));
}

// --- No legal move ---

std::string last_line(const std::vector<std::string>& lines) { return lines.empty() ? std::string() : lines.back(); }

class RootWithoutMoves : public testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

TEST_F(RootWithoutMoves, RepeatsTheLastMoveOfTheLine) {
    EXPECT_EQ(last_line(converse({"setoption name Own book value false", "position startpos moves f2f3 e7e5 g2g4 d8h4",
                                  "go wtime 5000 btime 5000 winc 0", "quit"})),
              "bestmove d8h4");
    fresh_process();
    EXPECT_EQ(last_line(converse(
                  {"position fen k7/8/1K6/8/8/8/8/2Q5 w - - 0 1 moves c1c7", "go wtime 300000 btime 300000", "quit"})),
              "bestmove c1c7");
}

TEST_F(RootWithoutMoves, LeavesTheScoreNearItsStart) {
    const Colour own = place_fen("k7/2Q5/1K6/8/8/8/8/8 b - - 0 1");
    const Script moves(every_child(1, 0.0F));
    search_whole(own);
    EXPECT_TRUE(moves.calls().empty());
    EXPECT_LT(search.E, -9000000.0F);
}

}  // namespace
