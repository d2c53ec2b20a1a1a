// The evaluation against the plain engine's, to the last bit: thousands of positions, boards that no game leads to, every
// setting varied, kings remembered where they stand and elsewhere.
#include "support/chess_rules.h"
#include "support/evaluation.h"
#include "support/plain_judge.h"

#include "board/attacks.h"
#include "eval/leaf.h"
#include "eval/root_trial.h"
#include "eval/strategy.h"
#include "plain/board.h"
#include "plain/eval.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace {

using namespace ondrel;
using namespace tests;

const std::vector<rules::Position>& positions() {
    static const std::vector<rules::Position> all = [] {
        std::vector<rules::Position> x = rules::data_positions("positions.fen");
        const std::vector<rules::Position> played = rules::positions_from_random_games(20240711, 12, 160);
        x.insert(x.end(), played.begin(), played.end());
        return x;
    }();
    return all;
}

class EvalAgainstPlain : public ::testing::Test {
protected:
    void SetUp() override { fresh_process(); }

    // Calls f with the FEN of every position until one differs.
    template <class F>
    static void for_each_position(F f) {
        for (const rules::Position& p : positions()) {
            f(rules::to_fen(p));
            if (HasFailure()) {
                return;
            }
        }
    }

    // Calls f so many times with its number, until one differs.
    template <class F>
    static void for_each_board(int how_many, F f) {
        for (int number = 0; number < how_many && !HasFailure(); ++number) {
            f("board " + std::to_string(number));
        }
    }

    // The position as a leaf under settings, line and kings at random.
    static void place_varied_leaf(const std::string& fen, Chance& chance) {
        vary_options(chance);
        place_leaf(fen);
        vary_line(chance);
        if (chance.coin()) {
            vary_kings(chance);
        }
    }

    static void compare(float expected, float found, const std::string& where) {
        EXPECT_TRUE(same_bits(expected, found)) << where << ": " << found << " for " << expected;
    }

    static void compare_leaf(Colour own, Colour stm, const std::string& where) {
        const PlainLeaf expected = plain_leaf(own, stm);
        judgement.EMPAT = 2;
        compare(expected.extraeval, judge(own, stm), where);
        EXPECT_EQ(judgement.EMPAT, expected.EMPAT ? 1 : 0) << where;
    }

    // Puts the base value so that the judgement is next to nothing: no rounding hides what a counter differs by then.
    static void bring_to_zero(Colour own, Colour stm) {
        for (int k = 0; k < 4; ++k) {
            judgement.extraevalll -= judge(own, stm);
        }
        EXPECT_LT(std::abs(judge(own, stm)), 1e-4F);
    }

    static void compare_leaves(const std::string& where) {
        const float base = judgement.extraevalll;
        for (const Colour own : colours) {
            for (const Colour stm : colours) {
                compare_leaf(own, stm, where);
                bring_to_zero(own, stm);
                compare_leaf(own, stm, where + " brought to zero");
                judgement.extraevalll = base;
            }
        }
    }

    static void compare_base_values(const std::string& where) {
        for (const Colour own : colours) {
            const float expected = plain_base_value(own);
            compare(expected, judge_root_move(own), where);
        }
    }
};

TEST_F(EvalAgainstPlain, SetsOutFromAThousandPositionsAndMore) { EXPECT_GE(positions().size(), 1500U); }

TEST_F(EvalAgainstPlain, LeavesWithTheSettingsOfTheStart) {
    for_each_position([](const std::string& fen) {
        place_leaf(fen);
        compare_leaves(fen);
    });
}

TEST_F(EvalAgainstPlain, LeavesWithAllSettingsVaried) {
    Chance chance(1);
    for_each_position([&](const std::string& fen) {
        place_varied_leaf(fen, chance);
        compare_leaves(fen);
    });
}

// A leaf is not its root: men, piece material and balance are another position's.
TEST_F(EvalAgainstPlain, LeavesUnderAnotherRoot) {
    Chance chance(2);
    for_each_position([&](const std::string& fen) {
        const auto which = static_cast<std::size_t>(chance.below(static_cast<int>(positions().size())));
        place_leaf(fen);
        change_leaf(field_of(positions()[which]));
        vary_line(chance);
        compare_leaves(field_of(positions()[which]) + " under " + fen);
    });
}

TEST_F(EvalAgainstPlain, EveryPhase) {
    Chance chance(3);
    for_each_position([&](const std::string& fen) {
        place_leaf(fen);
        vary_phase(chance);
        compare_leaves(fen);
    });
}

TEST_F(EvalAgainstPlain, BoardsThatNoGameLeadsTo) {
    Chance chance(8);
    for_each_board(1000, [&](const std::string& where) {
        fill_board(chance);
        vary_options(chance);
        vary_line(chance);
        vary_kings(chance);
        vary_phase(chance);
        compare_leaves(where);
        compare_base_values(where);
    });
}

// A colour without pawns and king would have no box, and no rule says what its area is then: a pawn each there is.
TEST_F(EvalAgainstPlain, BoardsWithoutKings) {
    Chance chance(9);
    for_each_board(300, [&](const std::string& where) {
        fill_board(chance);
        for (std::int8_t& x : trial.tab2) {
            x = value_of(x) == rei ? std::int8_t{no_piece} : x;
        }
        trial.tab2[chance.below(32)] = man(white, peao);
        trial.tab2[32 + chance.below(32)] = man(black, peao);
        vary_options(chance);
        vary_line(chance);
        vary_phase(chance);
        compare_leaves(where);
        compare_base_values(where);
    });
}

TEST_F(EvalAgainstPlain, BaseValues) {
    Chance chance(4);
    for_each_position([&](const std::string& fen) {
        place_varied_leaf(fen, chance);
        compare_base_values(fen);
    });
}

// --- The preparation of the root ---

TEST_F(EvalAgainstPlain, PreparationForEitherSide) {
    Chance chance(5);
    for (rules::Position p : positions()) {
        for (const bool white_to_move : {true, false}) {
            p.white_to_move = white_to_move;
            const std::string fen = rules::to_fen(p);
            options.MOB = option_step(chance, 10);
            place_fen(fen);
            tell_plain();
            plain::Root& expected = plain::root;
            expected.regimen = expected.materialflot0 = 0;
            expected.material_a = expected.materialmaior = {};
            expected.npecas = expected.p_x_R = expected.p_y_R = {};
            expected.Xr = expected.XP = {};
            plain::prepare_fen_board();
            compare(expected.regimen, root.regimen, fen);
            EXPECT_EQ(root.material_a, expected.material_a) << fen;
            EXPECT_EQ(root.materialmaior, expected.materialmaior) << fen;
            EXPECT_EQ(root.npecas, expected.npecas) << fen;
            EXPECT_EQ(root.materialflot0, expected.materialflot0) << fen;
            EXPECT_EQ(root.Xr, expected.Xr) << fen;
            EXPECT_EQ(root.XP, expected.XP) << fen;
            for (const Colour c : colours) {
                EXPECT_EQ(trial.p_xy_R[c], square(expected.p_x_R[c], expected.p_y_R[c])) << fen;
            }
        }
        if (HasFailure()) {
            return;
        }
    }
}

// --- Root moves ---

// A root move of a position; promotions to the queen alone.
std::vector<Move> moves_of(const rules::Position& p) {
    std::vector<Move> moves;
    for (const rules::Move& x : rules::legal_moves(p)) {
        if (x.promotion == 0 || x.promotion == 'q') {
            moves.push_back(move_of(x.from_file, x.from_rank, x.to_file, x.to_rank));
        }
    }
    return moves;
}

void test_king(Colour c) { c == white ? verifica_rei<white>() : verifica_rei<black>(); }

// The trial of a root move, in both engines.
void try_in_both(Colour c, Move m) {
    tell_plain();
    plain::init_tabuleiro2(to_plain(m));
    try_root_move(c, m);
}

TEST_F(EvalAgainstPlain, ClassesOfRootMoves) {
    Chance chance(6);
    int how_many = 0;
    for (const rules::Position& p : positions()) {
        const std::vector<Move> moves = moves_of(p);
        for (int k = 0; k < 4 && !moves.empty(); ++k) {
            const Move m = moves[static_cast<std::size_t>(chance.below(static_cast<int>(moves.size())))];
            vary_options(chance);
            const Colour c = place_fen(rules::to_fen(p));
            game_line.nb = chance.one_of(std::array{1, 29, 30, 69, 70, 120});
            vary_line(chance);
            const std::string where = rules::to_fen(p) + ' ' + text_of(m);
            try_in_both(c, m);
            ASSERT_EQ(trial.tab2, plain::tree.tab2) << where;
            EXPECT_EQ(root_trial.MATRIZ, plain::root.MATRIZ) << where;
            EXPECT_EQ(root_trial.incentiva_promo != 0, plain::root.incentiva_promo) << where;
            // The search tests the mover's king between the trial and the class, and so finds it.
            test_king(c);
            plain::verifica_rei(to_plain(c));
            // A second visit, as castling makes it, scales the value left again.
            for (int visit = 0; visit < 2; ++visit) {
                classify_trial(c);
                plain::verifica_estrategia(to_plain(c));
                EXPECT_EQ(move_class.ATAQUE, plain::root.ATAQUE) << where;
                EXPECT_EQ(move_class.ESTRATEGIA, plain::root.ESTRATEGIA) << where;
                EXPECT_EQ(root_trial.MATRIZ, plain::root.MATRIZ) << where;
                compare(plain::root.extraevalll, judgement.extraevalll, where);
            }
            ++how_many;
        }
        if (HasFailure()) {
            return;
        }
    }
    EXPECT_GT(how_many, 5000);
}

TEST_F(EvalAgainstPlain, AttackMapsOfRootMoves) {
    Chance chance(7);
    for (const rules::Position& p : positions()) {
        const std::vector<Move> moves = moves_of(p);
        if (moves.empty()) {
            continue;
        }
        const Move m = moves[static_cast<std::size_t>(chance.below(static_cast<int>(moves.size())))];
        const std::string where = rules::to_fen(p) + ' ' + text_of(m);
        try_in_both(place_fen(rules::to_fen(p)), m);
        for (const Colour c : colours) {
            const AttackMaps& maps = root_trial.maps[c];
            // By kind, in the order of the plain engine.
            const std::array<const IntTable*, 6> by_kind{&maps.peao_ataca,  &maps.cavalo_ataca, &maps.bispo_ataca,
                                                         &maps.torre_ataca, &maps.dama_ataca,   &maps.rei_ataca};
            for (std::size_t k = 0; k < by_kind.size(); ++k) {
                EXPECT_EQ(*by_kind[k], plain::root.ataca[c][k]) << where << " kind " << k;
            }
            EXPECT_EQ(maps.N_A, plain::root.N_A[c]) << where;
        }
        if (HasFailure()) {
            return;
        }
    }
}

}  // namespace
