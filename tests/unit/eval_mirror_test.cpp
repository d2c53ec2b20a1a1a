// Black is White seen from the other side: a position with colours and ranks exchanged gives the exchanged counters.
//
// What does not carry over:
//  - float sums: squares are walked ranks upward for either colour, so the same terms are added in another order and
//    may round to other last bits. Integers are compared exactly, sums closely.
//  - nothing else under this mirror: the bishop tables peak on file d where the others peak on e, and the nearness to
//    pawns prefers the higher file, but both hold for either colour. Files are therefore no mirror at all.
#include "support/chess_rules.h"
#include "support/evaluation.h"
#include "support/scripted.h"

#include "eval/leaf.h"
#include "eval/strategy.h"
#include "eval/tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace {

using namespace ondrel;
using namespace tests;

// Sums of a few hundred terms in float.
constexpr float nearly = 1e-5F;

bool near(float a, float b) { return std::fabs(a - b) <= nearly * (1 + std::fabs(a)); }

void expect_mirror(const SideCounters& a, const SideCounters& b, const std::string& where) {
    EXPECT_EQ(a.mobilidade, b.mobilidade) << where;
    EXPECT_EQ(a.alvos, b.alvos) << where;
    EXPECT_EQ(a.apoios, b.apoios) << where;
    EXPECT_EQ(a.pecas, b.pecas) << where;
    EXPECT_EQ(a.peoes, b.peoes) << where;
    EXPECT_EQ(a.pontos, b.pontos) << where;
    EXPECT_EQ(a.avanco, b.avanco) << where;
    EXPECT_EQ(a.abrigo, b.abrigo) << where;
    EXPECT_EQ(a.caixa(), b.caixa()) << where;
    EXPECT_EQ(a.lowest_file, b.lowest_file) << where;
    EXPECT_EQ(a.highest_file, b.highest_file) << where;
    EXPECT_EQ(a.lowest_rank, 7 - b.highest_rank) << where;
    EXPECT_EQ(a.highest_rank, 7 - b.lowest_rank) << where;
    EXPECT_TRUE(near(a.posicao, b.posicao)) << where << ": " << a.posicao << ' ' << b.posicao;
    EXPECT_TRUE(near(a.centro, b.centro)) << where << ": " << a.centro << ' ' << b.centro;
    EXPECT_TRUE(near(a.atack_ksf, b.atack_ksf)) << where << ": " << a.atack_ksf << ' ' << b.atack_ksf;
    EXPECT_TRUE(near(a.defesa_ksf, b.defesa_ksf)) << where << ": " << a.defesa_ksf << ' ' << b.defesa_ksf;
}

void expect_mirror(const Counters& a, const Counters& b, const std::string& where) {
    expect_mirror(a[white], b[black], where + " White");
    expect_mirror(a[black], b[white], where + " Black");
}

class EvalMirror : public ::testing::Test {
protected:
    void SetUp() override {
        fresh_process();
        options.agres = 2;
        options.agresprxrei = 3;
    }
    static const std::vector<rules::Position>& positions() {
        static const std::vector<rules::Position> all = rules::data_positions("positions.fen");
        return all;
    }
};

TEST_F(EvalMirror, Leaves) {
    for (const rules::Position& p : positions()) {
        const std::string fen = rules::to_fen(p);
        for (const Colour own : colours) {
            for (const Colour stm : colours) {
                place_leaf(fen);
                judgement.extraevalll = 0.5F;
                pass.roque = {1, 0};
                const float v = judge(own, stm);
                const Counters here = counted;
                place_leaf(rules::to_fen(rules::mirrored(p)));
                judgement.extraevalll = 0.5F;
                pass.roque = {0, 1};
                const float there = judge(other(own), other(stm));
                expect_mirror(here, counted, fen);
                EXPECT_NEAR(v, there, 1e-3) << fen;
            }
        }
        if (HasFailure()) {
            return;
        }
    }
}

TEST_F(EvalMirror, BaseValues) {
    for (const rules::Position& p : positions()) {
        const std::string fen = rules::to_fen(p);
        for (const Colour own : colours) {
            place_leaf(fen);
            const float v = judge_root_move(own);
            const Counters here = counted;
            place_leaf(rules::to_fen(rules::mirrored(p)));
            const float there = judge_root_move(other(own));
            expect_mirror(here, counted, fen);
            EXPECT_NEAR(v, there, 1e-4) << fen;
        }
        if (HasFailure()) {
            return;
        }
    }
}

TEST_F(EvalMirror, Preparation) {
    for (const rules::Position& p : positions()) {
        const std::string fen = rules::to_fen(p);
        place_fen(fen);
        const float here = root.regimen;
        const Counters found = count_root();
        const auto near_kings = root.Xr;
        const auto near_pawns = root.XP;
        const float difference = root.materialflot0;
        place_fen(rules::to_fen(rules::mirrored(p)));
        EXPECT_NEAR(here, root.regimen, 1e-4) << fen;
        EXPECT_EQ(difference, root.materialflot0) << fen;
        expect_mirror(found, count_root(), fen);
        for (int f = 0; f < 8; ++f) {
            for (int r = 0; r < 8; ++r) {
                for (const Colour c : colours) {
                    EXPECT_EQ(near_kings[c][square(f, r)], root.Xr[other(c)][square(f, 7 - r)]) << fen;
                    EXPECT_EQ(near_pawns[c][square(f, r)], root.XP[other(c)][square(f, 7 - r)]) << fen;
                }
            }
        }
        if (HasFailure()) {
            return;
        }
    }
}

// Classes are integers: the mirror is exact, the bishops' file d included.
TEST_F(EvalMirror, ClassesOfRootMoves) {
    for (const rules::Position& p : positions()) {
        const std::string fen = rules::to_fen(p);
        const std::string there = rules::to_fen(rules::mirrored(p));
        const std::vector<rules::Move> moves = rules::legal_moves(p);
        // Some moves of each position are enough.
        for (std::size_t i = 0; i < moves.size(); i += 5) {
            const Move m = move_of(moves[i].from_file, moves[i].from_rank, moves[i].to_file, moves[i].to_rank);
            const auto classified = [](const std::string& where, Move x) {
                const Colour c = place_fen(where);
                game_line.nb = 75;
                try_root_move(c, x);
                classify_trial(c);
                return std::pair{move_class.ATAQUE, move_class.ESTRATEGIA};
            };
            EXPECT_EQ(classified(fen, m), classified(there, mirrored(m))) << fen << ' ' << text_of(m);
        }
        if (HasFailure()) {
            return;
        }
    }
}

// --- What is no mirror ---

TEST_F(EvalMirror, OfFilesDoesNotHoldForBishops) {
    place_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_NE(tables.posix_bispo[white][square_of("d5")], tables.posix_bispo[white][square_of("e5")]);
    EXPECT_EQ(tables.posix_bispo[white][square_of("d5")], tables.posix_cavalo[white][square_of("e5")]);
}

TEST_F(EvalMirror, OfFilesDoesNotHoldForTheForemostPawn) {
    place_fen("4k3/8/8/8/1P4P1/8/8/4K3 w - - 0 1");
    EXPECT_GT(root.XP[white][square_of("g4")], root.XP[white][square_of("b4")]);
}

// The order of the additions shows in the last bits of some position at least; were it not so, the mirror could be
// asked for to the last bit.
TEST_F(EvalMirror, IsNotOneOfTheLastBits) {
    int different = 0;
    for (const rules::Position& p : positions()) {
        place_leaf(rules::to_fen(p));
        judge(white, white);
        const Counters here = counted;
        place_leaf(rules::to_fen(rules::mirrored(p)));
        judge(black, black);
        different += same_bits(here[white].centro, counted[black].centro) ? 0 : 1;
    }
    EXPECT_GT(different, 0);
}

}  // namespace
