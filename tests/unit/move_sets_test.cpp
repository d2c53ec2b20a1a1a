// Whole move sets of the engine, held against an independent generator: on every position the legal moves, each once.
// A legal move stands for all its promotions, as the search promotes to the queen alone.
#include "support/chess_rules.h"
#include "support/engine.h"
#include "support/moves.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

namespace {

using namespace tests;
using rules::Position;

// --- The positions ---

const std::vector<Position>& all_positions() {
    static const std::vector<Position> all = [] {
        std::vector<Position> positions = rules::data_positions("positions.fen");
        const std::vector<Position> played = rules::positions_from_random_games(20260711, 4, 160);
        positions.insert(positions.end(), played.begin(), played.end());
        return positions;
    }();
    return all;
}

// Every `step`-th position from `first` on.
std::vector<Position> sample(std::size_t first, std::size_t step) {
    std::vector<Position> chosen;
    for (std::size_t i = first; i < all_positions().size(); i += step) {
        chosen.push_back(all_positions()[i]);
    }
    return chosen;
}

// --- What is expected ---

std::string name_of(const rules::Move& m) { return rules::to_uci(m).substr(0, 4); }

bool is_underpromotion(const rules::Move& m) { return m.promotion != 0 && m.promotion != 'q'; }

// Of ply 1, en passant is tried with the captures of pawns and again with the quiet pawn moves.
int times_of_en_passant(int n) { return n == 1 ? 2 : 1; }

// The replies expected of ply n, sorted: the legal moves, under-promotions left out.
Texts expected_replies(const Position& p, int n) {
    Texts legal;
    for (const rules::Move& m : rules::legal_moves(p)) {
        if (!is_underpromotion(m)) {
            legal.insert(legal.end(), rules::is_en_passant(p, m) ? times_of_en_passant(n) : 1, name_of(m));
        }
    }
    return sorted(legal);
}

// The captures and the quiet moves as ply n has them: at ply 1 castling and en passant stand with the captures,
// elsewhere with the quiet moves.
struct MovesByKind {
    std::vector<rules::Move> captures, quiet;
};

MovesByKind moves_by_kind(const Position& p, int n) {
    MovesByKind kinds;
    for (const rules::Move& m : rules::legal_moves(p)) {
        if (is_underpromotion(m)) {
            continue;
        }
        const bool is_special = rules::is_castling(p, m) || rules::is_en_passant(p, m);
        const bool with_captures = is_special ? n == 1 : rules::is_capture(p, m);
        (with_captures ? kinds.captures : kinds.quiet).push_back(m);
    }
    return kinds;
}

// --- The replies ---

// The capture slot of ply 1 holds the attacker first, that of the other plies the victim.
void store_capture(int n, Move m) {
    ondrel::slots.aag_ddg[n] = n == 1 ? m : Move{m.to_file, m.to_rank, m.from_file, m.from_rank};
}

class Replies : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override { fresh_process(); }

    // The moves tried at the ply, with what `store` puts into its slots.
    template <class F>
    static Texts tried(const Position& p, F store) {
        set_up_ply(GetParam(), rules::to_fen(p));
        store();
        return sorted(texts_of(replies_tried(GetParam())));
    }
};

TEST_P(Replies, AreTheLegalMovesEachOnce) {
    const int n = GetParam();
    ASSERT_GE(all_positions().size(), 1200U);
    for (const Position& p : all_positions()) {
        EXPECT_EQ(tried(p, [] {}), expected_replies(p, n)) << "ply " << n << ' ' << rules::to_fen(p);
    }
}

TEST_P(Replies, AreTheSameWithStoredMoves) {
    const int n = GetParam();
    std::size_t choice = 0;
    for (const Position& p : all_positions()) {
        const MovesByKind kinds = moves_by_kind(p, n);
        ++choice;
        const auto one_of = [choice](const std::vector<rules::Move>& moves) {
            return moves.empty() ? nullptr : &moves[choice % moves.size()];
        };
        const rules::Move* const capture = one_of(kinds.captures);
        const rules::Move* const quiet = one_of(kinds.quiet);
        Texts expected = expected_replies(p, n);
        if (n == 1 && capture != nullptr && rules::is_en_passant(p, *capture)) {
            // A stored en passant is passed by among the captures, and the test form finds no victim on its square:
            // the quiet walk alone tries it.
            expected.erase(std::find(expected.begin(), expected.end(), name_of(*capture)));
        }
        const auto store = [&] {
            if (capture != nullptr) {
                store_capture(n, move_from(name_of(*capture)));
            }
            if (quiet != nullptr) {
                ondrel::slots.aa_dd[n] = move_from(name_of(*quiet));
            }
        };
        EXPECT_EQ(tried(p, store), expected)
            << "ply " << n << ' ' << rules::to_fen(p) << ' ' << (capture != nullptr ? name_of(*capture) : "-") << ' '
            << (quiet != nullptr ? name_of(*quiet) : "-");
    }
}

// Slots outlive the node that filled them: most of what they hold fits no later position.
TEST_P(Replies, AreTheSameWithStaleSlots) {
    const int n = GetParam();
    rules::Move stale = rules::legal_moves(rules::start_position()).front();
    for (const Position& p : all_positions()) {
        const bool is_stored_en_passant = n == 1 && rules::is_legal(p, stale) && rules::is_en_passant(p, stale);
        if (!is_stored_en_passant) {
            const auto store = [n, m = move_from(name_of(stale))] {
                store_capture(n, m);
                ondrel::slots.aa_dd[n] = m;
            };
            EXPECT_EQ(tried(p, store), expected_replies(p, n))
                << "ply " << n << ' ' << rules::to_fen(p) << ' ' << name_of(stale);
        }
        if (const std::vector<rules::Move> legal = rules::legal_moves(p); !legal.empty()) {
            stale = legal[legal.size() / 2];
        }
    }
}

INSTANTIATE_TEST_SUITE_P(OfPly, Replies, ::testing::Range(1, 24), ::testing::PrintToStringParamName());

// --- The root ---

// White's long castling with check is judged by the short side: its squares, its check.
bool short_castling_gives_check(const Position& p) {
    if (rules::is_attacked(p, 5, 0, false)) {
        return false;
    }
    Position castled = p;
    castled.put(4, 0, rules::empty_square);
    castled.put(7, 0, rules::empty_square);
    castled.put(5, 0, 'R');
    castled.put(6, 0, 'K');
    return !rules::is_attacked(castled, 6, 0, false) && rules::in_check(castled, false);
}

// Rights, empty squares between and no check: all that is known of a castling before its squares are tested.
bool may_try_whites_long_castling(const Position& p) {
    return p.white_to_move && p.white_castles_long && !rules::in_check(p, true) && p.at(1, 0) == rules::empty_square &&
           p.at(2, 0) == rules::empty_square && p.at(3, 0) == rules::empty_square;
}

bool is_whites_long_castling(const Position& p, const rules::Move& m) {
    return p.white_to_move && name_of(m) == "e1c1" && rules::is_castling(p, m);
}

Texts expected_root_moves(const Position& p) {
    Texts expected;
    for (const rules::Move& m : rules::legal_moves(p)) {
        if (!is_underpromotion(m) && !(is_whites_long_castling(p, m) && rules::gives_check(p, m))) {
            expected.push_back(name_of(m));
        }
    }
    if (may_try_whites_long_castling(p) && short_castling_gives_check(p)) {
        expected.emplace_back("e1c1");
    }
    return sorted(expected);
}

void remove_castlings(const Position& p, Texts& moves) {
    const int home = p.white_to_move ? 0 : 7;
    if (p.at(4, home) == (p.white_to_move ? 'K' : 'k')) {
        std::erase_if(moves, [&](const std::string& m) {
            return m == (p.white_to_move ? "e1g1" : "e8g8") || m == (p.white_to_move ? "e1c1" : "e8c8");
        });
    }
}

// Each temperament takes a third of all positions, in shares.
constexpr std::size_t shares = 3;

std::vector<Position> root_sample(int temperament, std::size_t share) {
    return sample(static_cast<std::size_t>(temperament) - 1 + 3 * share, 3 * shares);
}

// A temperament and a share of the positions.
class RootMoves : public ::testing::TestWithParam<std::tuple<int, std::size_t>> {
protected:
    void SetUp() override {
        fresh_process();
        ondrel::options.Temperamento = std::get<0>(GetParam());
    }
};

std::string name_of_root_sample(const testing::TestParamInfo<std::tuple<int, std::size_t>>& info) {
    return "Temperament" + std::to_string(std::get<0>(info.param)) + "Share" + std::to_string(std::get<1>(info.param));
}

TEST_P(RootMoves, AreTheLegalMovesEachOnce) {
    const auto [temperament, share] = GetParam();
    for (const Position& p : root_sample(temperament, share)) {
        place_fen(rules::to_fen(p));
        Texts expected = expected_root_moves(p);
        Texts tried = sorted(texts_of(root_moves_tried()));
        if (temperament == 1) {
            // Castling has no trial of its own: its class is made of what the last trial left. In the "positional"
            // schedule pawns share its sweep, so that its class may change from visit to visit.
            for (const std::string& m : tried) {
                EXPECT_GT(count_of(expected, m), 0) << m << ' ' << rules::to_fen(p);
            }
            remove_castlings(p, tried);
            remove_castlings(p, expected);
        }
        EXPECT_EQ(tried, expected) << rules::to_fen(p);
    }
}

// What the sample holds, counted.
struct Sampled {
    int positions = 0, castlings = 0, en_passant = 0, promotions = 0, ends = 0, bare_kings = 0;

    void count(const Position& p) {
        const std::vector<rules::Move> legal = rules::legal_moves(p);
        const auto any = [&legal](auto asked) { return std::any_of(legal.begin(), legal.end(), asked) ? 1 : 0; };
        ++positions;
        castlings += any([&](const rules::Move& m) { return rules::is_castling(p, m); });
        en_passant += any([&](const rules::Move& m) { return rules::is_en_passant(p, m); });
        promotions += any([](const rules::Move& m) { return m.promotion != 0; });
        ends += legal.empty() ? 1 : 0;
        bare_kings += std::none_of(p.squares.begin(), p.squares.end(), [&](signed char x) {
            return x != 'k' && x != 'K' && x != rules::empty_square && (x >= 'a') == p.white_to_move;
        });
    }
};

TEST(RootMovesSample, HoldsEveryKindOfMove) {
    Sampled sampled;
    for (const int temperament : {1, 2, 3}) {
        for (std::size_t share = 0; share < shares; ++share) {
            for (const Position& p : root_sample(temperament, share)) {
                sampled.count(p);
            }
        }
    }
    EXPECT_GE(sampled.positions, 1200);
    EXPECT_GE(sampled.castlings, 10);
    EXPECT_GE(sampled.en_passant, 10);
    EXPECT_GE(sampled.promotions, 10);
    EXPECT_GE(sampled.ends, 3);
    EXPECT_GE(sampled.bare_kings, 3);  // they have a schedule of their own
}

INSTANTIATE_TEST_SUITE_P(OfTemperament, RootMoves,
                         ::testing::Combine(::testing::Values(1, 2, 3), ::testing::Range<std::size_t>(0, shares)),
                         name_of_root_sample);

}  // namespace
