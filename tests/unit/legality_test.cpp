// Legality and check asked in sets, as the tree asks them, against the plain trial of the move on a board and the plain
// test of the king: over every candidate of positions of games and of boards that no game reaches.
#include "board/legality.h"
#include "board/castling.h"
#include "search/child_trial.h"
#include "search/move_walks.h"
#include "support/boards.h"
#include "support/engine.h"
#include "support/moves.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

using namespace tests;
using namespace ondrel;

constexpr int n = 5;  // the ply that holds the position
constexpr std::array<int, 2> elsewhere{20, 41};

// --- The positions ---

struct Position {
    Board board{};
    MovedFlags flags;
};

// The same numbers every time.
class Random {
public:
    std::size_t below(std::size_t limit) { return next_() % limit; }
    bool coin() { return below(2) != 0; }

private:
    std::mt19937 next_{20261121};  // NOLINT(cert-msc51-cpp): the seed is meant to be constant
};

std::vector<Position> positions_of_games() {
    std::vector<Position> positions;
    for (const rules::Position& p : rules::positions_from_random_games(20261121, 16, 200)) {
        Position x{board_from(p), {}};
        if (p.en_passant_file >= 0) {
            x.flags.p_ah[p.white_to_move ? black : white][p.en_passant_file] = 1;
        }
        positions.push_back(x);
    }
    return positions;
}

Board scattered(Random& random, std::string_view letters) {
    rules::Position p;
    for (int i = 0; i < squares; ++i) {
        const char letter = letters[random.below(letters.size())];
        const bool last_rank = rank_of(i) == 0 || rank_of(i) == 7;
        const bool is_pawn = letter == 'P' || letter == 'p';
        p.put(file_of(i), rank_of(i), is_pawn && last_rank ? rules::empty_square : letter);
    }
    return board_from(p);
}

void put_king(Random& random, Board& t, Colour c) { t[random.below(squares)] = man(c, rei); }

// Double steps as no game leaves them: on many files at once, with or without a pawn that could have made them.
void flag_double_steps(Random& random, MovedFlags& flags) {
    for (auto& of_colour : flags.p_ah) {
        for (std::uint8_t& flag : of_colour) {
            flag = random.coin() ? 1 : 0;
        }
    }
}

Position with_one_king_each(Random& random) {
    Position x{scattered(random, "PNBRQpnbrqPp........................"), {}};
    put_king(random, x.board, white);
    put_king(random, x.board, black);
    flag_double_steps(random, x.flags);
    return x;
}

Position with_several_kings(Random& random) {
    Position x{scattered(random, "KkPNBRQpnbrq............................"), {}};
    flag_double_steps(random, x.flags);
    return x;
}

Position without_a_king(Random& random) {
    Position x{scattered(random, "PNBRQpnbrq...................."), {}};
    if (random.coin()) {
        put_king(random, x.board, random.coin() ? white : black);
    }
    return x;
}

Position with_many_queens(Random& random) {
    Position x{scattered(random, "QQQqqqPp......................"), {}};
    put_king(random, x.board, white);
    put_king(random, x.board, black);
    return x;
}

// Pawns side by side on both fifth ranks, and lines that the capture may open.
Position with_en_passant(Random& random) {
    Position x{scattered(random, "RQBrqb........................................."), {}};
    for (int f = 0; f < 8; ++f) {
        for (const Colour c : {white, black}) {
            const int i = square(f, relative_rank(c, 4));
            if (random.coin()) {
                x.board[i] = man(random.coin() ? white : black, peao);
            }
            x.flags.p_ah[other(c)][f] = x.board[i] == code(other(c), peao);
        }
    }
    put_king(random, x.board, white);
    put_king(random, x.board, black);
    return x;
}

// All rights to castle, with anything at home: king and rooks may be missing, and others may stand there.
Position with_castling_rights(Random& random) {
    Position x{scattered(random, "PNBRpnbr........................................"), {}};
    put_king(random, x.board, white);
    put_king(random, x.board, black);
    for (const Colour c : {white, black}) {
        const int home = relative_rank(c, 0);
        for (int f = 0; f < 8; ++f) {
            if (random.below(8) != 0) {
                x.board[square(f, home)] = f == file_a || f == file_h ? man(c, torre) : man(c, no_piece);
            }
        }
        const std::array<std::int8_t, 6> at_home{man(c, rei),  man(c, rei),         man(c, no_piece),
                                                 man(c, dama), man(other(c), dama), man(other(c), peao)};
        x.board[square(king_file, home)] = at_home[random.below(at_home.size())];
    }
    return x;
}

using Make = Position (*)(Random&);

std::vector<Position> made(Make make) {
    Random random;
    constexpr int many = 1200;
    std::vector<Position> positions;
    positions.reserve(many);
    for (int k = 0; k < many; ++k) {
        positions.push_back(make(random));
    }
    return positions;
}

// --- The candidates ---

// What the generators ask about a man of c: quiet moves, captures of all men but the king, en passant.
template <Colour c>
std::vector<Move> candidates(const Ply& node) {
    std::vector<Move> moves;
    const auto keep = [&moves](Move m) {
        moves.push_back(m);
        return false;
    };
    const auto keep_capture = [&](Move m) {
        const int victim = node.tabd[m.to()];
        return is_of(other(c), victim) && value_of(victim) != rei && keep(m);
    };
    for_each_square(node.sets.of_colour[c], [&](int from) {
        const auto piece = static_cast<Piece>(value_of(node.tabd[from]));
        if (piece == peao) {
            pawn_pushes<c>(node, from, keep);
            pawn_captures<c>(from, keep_capture);
            en_passant_captures<c>(node, from, keep);
        } else {
            quiet_moves(node, piece, from, keep);
            moves_onto_men(node, piece, from, keep_capture);
        }
    });
    return moves;
}

// --- The comparison ---

// What a test of the king of one colour has left.
struct KingTest {
    bool attacked = false;
    int king_at = 0;

    bool operator==(const KingTest&) const = default;
};

std::ostream& operator<<(std::ostream& out, const KingTest& x) {
    return out << (x.attacked ? "attacked" : "safe") << ", king at " << x.king_at;
}

// Runs a test that leaves Y and the king's square of c.
template <Colour c, class F>
KingTest left_by(F test) {
    trial.p_xy_R = elsewhere;
    trial.Y = 2;
    test();
    EXPECT_LE(trial.Y, 1);
    EXPECT_EQ(trial.p_xy_R[other(c)], elsewhere[other(c)]);
    return {trial.Y == 1, trial.p_xy_R[c]};
}

struct Counts {
    int moves = 0, illegal = 0, checks = 0, en_passant = 0, promotions = 0, castlings = 0;
};

template <Colour c>
void compare_candidate(Move m, Counts& counts) {
    init_tabuleiro2_deep<c>(n, m);
    const KingTest own = left_by<c>([] { verifica_rei<c>(); });
    const KingTest enemy = left_by<other(c)>([] { verifica_rei<other(c)>(); });
    ASSERT_EQ(sets_after<c>(ply[n], m), piece_sets(trial.tab2));
    bool legal = false;
    ASSERT_EQ(left_by<c>([&] { legal = is_legal<c>(n, m); }), own);
    ASSERT_EQ(legal, !own.attacked);
    bool check = false;
    ASSERT_EQ(left_by<other(c)>([&] { check = gives_check<c>(n + 1, m); }), enemy);
    ASSERT_EQ(check, enemy.attacked);
    Ply after = ply[n];
    init_tabuleiro_ply<c>(after, m);
    ASSERT_EQ(after.tabd, trial.tab2);
    ++counts.moves;
    counts.illegal += legal ? 0 : 1;
    counts.checks += check ? 1 : 0;
    counts.en_passant += is_en_passant<c>(ply[n].tabd, ply[n].jm_D, m) ? 1 : 0;
    counts.promotions += after.tabd[m.to()] != ply[n].tabd[m.from()] ? 1 : 0;
}

// A castling is judged by its own test, which leaves the board that the child is entered with.
template <Colour c>
void compare_castling(CastlingSide side, Counts& counts) {
    if (!may_castle<c>(n, side)) {
        return;
    }
    const Move m = castling_move(c, side);
    init_tabuleiro2_deep<c>(n, m);
    ASSERT_EQ(sets_after<c>(ply[n], m), piece_sets(trial.tab2));
    verifica_roque<c>(n, side);
    const Board castled = trial.tab2;
    const KingTest enemy = left_by<other(c)>([] { verifica_rei<other(c)>(); });
    const CastlingTrial<c> kept(n + 1);
    ASSERT_EQ(sets_of_trial<c>(n + 1, m), piece_sets(castled));
    ASSERT_EQ(left_by<other(c)>([m] { gives_check<c>(n + 1, m); }), enemy);
    trial.tab2 = {};
    make_trial<c>(n + 1, m);
    ASSERT_EQ(trial.tab2, castled);
    ++counts.castlings;
}

template <Colour c>
void compare_squares() {
    const Ply& node = ply[n];
    for (int i = 0; i < squares; ++i) {
        const bool attacked = is_attacked<c>(node.tabd, file_of(i), rank_of(i));
        ASSERT_EQ(is_attacked(node.sets, c, i, node.sets.occupied()), attacked) << i;
        ASSERT_TRUE(node.king_at != i || node.in_check == attacked) << i;
    }
}

template <Colour c>
void compare_side(const Position& p, Counts& counts) {
    ply[n] = {};
    ply[n].tabd = p.board;
    ply[n].jm_D = p.flags;
    ply[n].sets = piece_sets(p.board);
    find_checks_and_pins<c>(n);
    compare_squares<c>();
    for (const Move m : candidates<c>(ply[n])) {
        SCOPED_TRACE(field_of(p.board) + (c == white ? " w " : " b ") + text_of(m));
        compare_candidate<c>(m, counts);
        if (testing::Test::HasFailure()) {
            return;
        }
    }
    for (const CastlingSide side : {short_side, long_side}) {
        SCOPED_TRACE(field_of(p.board) + " " + text_of(castling_move(c, side)));
        compare_castling<c>(side, counts);
    }
}

Counts compare(const std::vector<Position>& positions) {
    Counts counts;
    for (const Position& p : positions) {
        compare_side<white>(p, counts);
        compare_side<black>(p, counts);
        if (testing::Test::HasFailure()) {
            break;
        }
    }
    return counts;
}

class LegalityInSets : public testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

TEST_F(LegalityInSets, IsThatOfTheTrialInPositionsOfGames) {
    const std::vector<Position> positions = positions_of_games();
    EXPECT_GT(positions.size(), 2000U);
    const Counts counts = compare(positions);
    EXPECT_GT(counts.moves, 80000);
    EXPECT_GT(counts.illegal, 3000);
    EXPECT_GT(counts.checks, 2000);
    EXPECT_GT(counts.en_passant, 10);
    EXPECT_GT(counts.promotions, 100);
    EXPECT_GT(counts.castlings, 100);
}

TEST_F(LegalityInSets, IsThatOfTheTrialOnCrowdedBoards) {
    const Counts counts = compare(made(with_one_king_each));
    EXPECT_GT(counts.moves, 50000);
    EXPECT_GT(counts.illegal, 10000);
    EXPECT_GT(counts.promotions, 500);
}

TEST_F(LegalityInSets, IsThatOfTheTrialWithSeveralKings) {
    const Counts counts = compare(made(with_several_kings));
    EXPECT_GT(counts.moves, 50000);
    EXPECT_GT(counts.illegal, 10000);
}

TEST_F(LegalityInSets, IsThatOfTheTrialWithoutAKing) {
    const Counts counts = compare(made(without_a_king));
    EXPECT_GT(counts.moves, 50000);
    EXPECT_LT(counts.illegal, counts.moves / 2);
}

TEST_F(LegalityInSets, IsThatOfTheTrialAmongManyQueens) {
    const Counts counts = compare(made(with_many_queens));
    EXPECT_GT(counts.moves, 50000);
    EXPECT_GT(counts.checks, 10000);
}

TEST_F(LegalityInSets, IsThatOfTheTrialForEnPassant) {
    const Counts counts = compare(made(with_en_passant));
    EXPECT_GT(counts.en_passant, 1000);
    EXPECT_GT(counts.illegal, 10000);
}

TEST_F(LegalityInSets, IsThatOfTheTrialForCastlingWithoutItsMen) {
    const Counts counts = compare(made(with_castling_rights));
    EXPECT_GT(counts.castlings, 1000);
    EXPECT_GT(counts.moves, 20000);
}

}  // namespace
