// The two services of the walks: whether a move is legal, and what a marked square is worth.
#include "support/evaluation.h"

#include "eval/tables.h"

#include <gtest/gtest.h>

namespace {

using namespace ondrel;
using namespace teste;

class Liberty : public ::testing::Test {
protected:
    void SetUp() override { processo_novo(); }

    static bool ilegal(std::string_view fen, Cor c, std::string_view m) {
        coloca_fen(fen);
        verifica_liberdade(c, tab, lance(m));
        return YY != 0;
    }
};

TEST_F(Liberty, PinnedRookMayMoveAlongItsLineOnly) {
    constexpr std::string_view fen = "4r2k/8/8/8/8/8/4R3/4K3 w - - 0 1";
    EXPECT_TRUE(ilegal(fen, brancas, "e2d2"));
    EXPECT_FALSE(ilegal(fen, brancas, "e2e5"));
    EXPECT_FALSE(ilegal(fen, brancas, "e2e8"));
}

TEST_F(Liberty, PinnedRookCountsAllItsMovesAtALeafAndTheLegalOnesAtTheRoot) {
    poe_folha("4r2k/8/8/8/8/8/4R3/4K3 w - - 0 1");
    julga(brancas, brancas);
    EXPECT_EQ(brancas_contadas().mobilidade, 13 + 4);
    valor_da_base(brancas);
    EXPECT_EQ(brancas_contadas().mobilidade, 6 + 4);
    valor_da_base(pretas);
    EXPECT_EQ(brancas_contadas().mobilidade, 6 + 4);
}

TEST_F(Liberty, PinnedRookOfBlackLikewise) {
    poe_folha("4k3/4r3/8/8/8/8/8/4R2K b - - 0 1");
    julga(pretas, pretas);
    EXPECT_EQ(pretas_contadas().mobilidade, 13 + 4);
    valor_da_base(pretas);
    EXPECT_EQ(pretas_contadas().mobilidade, 6 + 4);
}

TEST_F(Liberty, KingMayNotTakeADefendedMan) {
    EXPECT_TRUE(ilegal("k7/8/8/8/8/2r5/2p5/3K4 w - - 0 1", brancas, "d1c2"));
    EXPECT_FALSE(ilegal("k7/8/8/8/8/8/2p5/3K4 w - - 0 1", brancas, "d1c2"));
}

TEST_F(Liberty, KingTakingADefendedManIsNoMoveAtTheRootButATargetAllTheSame) {
    poe_folha("k7/8/8/8/8/2r5/2p5/3K4 w - - 0 1");
    julga(brancas, brancas);
    EXPECT_EQ(brancas_contadas().mobilidade, 5);
    EXPECT_EQ(brancas_contadas().alvos, 1);
    valor_da_base(brancas);
    EXPECT_EQ(brancas_contadas().mobilidade, 4);
    EXPECT_EQ(brancas_contadas().alvos, 1);
}

// The test knows the plain transfer only: the pawn taken in passing stays and keeps the rank closed.
TEST_F(Liberty, EnPassantThatOpensARankPasses) {
    EXPECT_FALSE(ilegal("7k/8/8/K2pP2r/8/8/8/8 w - d6 0 1", brancas, "e5d6"));
}

TEST_F(Liberty, KingMayNotCastleOutOfItsWayByThisTest) {
    // The rook stays at home, so the king lands on an open rank.
    EXPECT_TRUE(ilegal("4k3/8/8/8/8/8/8/r3K2R w K - 0 1", brancas, "e1g1"));
}

TEST_F(Liberty, SeesEveryKindOfAttacker) {
    EXPECT_TRUE(ilegal("k7/8/8/8/8/5p2/8/4K3 w - - 0 1", brancas, "e1e2"));    // pawn, from the higher file
    EXPECT_TRUE(ilegal("k7/8/8/8/8/3p4/8/4K3 w - - 0 1", brancas, "e1e2"));    // pawn, from the lower file
    EXPECT_TRUE(ilegal("8/8/8/8/8/4k3/8/4K3 w - - 0 1", brancas, "e1e2"));     // king
    EXPECT_TRUE(ilegal("k7/8/8/8/5n2/8/8/4K3 w - - 0 1", brancas, "e1e2"));    // knight
    EXPECT_TRUE(ilegal("k7/8/8/7b/8/8/8/4K3 w - - 0 1", brancas, "e1e2"));     // bishop
    EXPECT_TRUE(ilegal("k7/8/8/7q/8/8/8/4K3 w - - 0 1", brancas, "e1e2"));     // queen, on the diagonal
    EXPECT_TRUE(ilegal("k7/8/8/8/8/8/r7/4K3 w - - 0 1", brancas, "e1e2"));     // rook
    EXPECT_TRUE(ilegal("k7/8/8/8/8/8/q7/4K3 w - - 0 1", brancas, "e1e2"));     // queen, on the rank
    EXPECT_FALSE(ilegal("k7/8/8/8/8/8/b7/4K3 w - - 0 1", brancas, "e1e2"));    // a bishop has no rank
    EXPECT_FALSE(ilegal("k7/8/8/7r/8/8/8/4K3 w - - 0 1", brancas, "e1e2"));    // a rook has no diagonal
    EXPECT_FALSE(ilegal("k7/8/8/8/8/8/r2P4/4K3 w - - 0 1", brancas, "e1e2"));  // the way is closed
    EXPECT_TRUE(ilegal("b6k/8/8/8/8/8/8/6K1 w - - 0 1", brancas, "g1h1"));     // from corner to corner
}

// A pawn of Black attacks downward, one of White upward.
TEST_F(Liberty, PawnsAttackForward) {
    EXPECT_FALSE(ilegal("k7/8/8/8/8/4K3/3p4/8 w - - 0 1", brancas, "e3e4"));
    EXPECT_FALSE(ilegal("k7/8/8/8/8/4K3/3p4/8 w - - 0 1", brancas, "e3e2"));
    EXPECT_TRUE(ilegal("4k3/8/3P4/8/8/8/8/K7 b - - 0 1", pretas, "e8e7"));
    EXPECT_FALSE(ilegal("8/3P4/4k3/8/8/8/8/K7 b - - 0 1", pretas, "e6e7"));
}

TEST_F(Liberty, NothingWrapsAroundTheEdges) {
    EXPECT_FALSE(ilegal("k7/8/8/8/8/7r/8/K7 w - - 0 1", brancas, "a1a2"));
    EXPECT_FALSE(ilegal("k7/8/8/8/8/8/7p/K7 w - - 0 1", brancas, "a1a2"));
    EXPECT_FALSE(ilegal("7k/8/8/8/8/6n1/8/K7 w - - 0 1", brancas, "a1a2"));
}

TEST_F(Liberty, WithoutAKingEveryMoveIsLegal) { EXPECT_FALSE(ilegal("k6r/8/8/8/8/8/8/R7 w - - 0 1", brancas, "a1b1")); }

TEST_F(Liberty, OfTwoKingsEitherMayBeAttacked) {
    EXPECT_TRUE(ilegal("r6k/8/8/8/8/8/8/K3K2P w - - 0 1", brancas, "e1e2"));
    EXPECT_TRUE(ilegal("4r2k/8/8/8/8/8/8/K3K2P w - - 0 1", brancas, "a1b2"));
}

TEST_F(Liberty, LeavesTheBoardInQuestionAlone) {
    coloca_fen("4r2k/8/8/8/8/8/4R3/4K3 w - - 0 1");
    const Tabuleiro antes = tab;
    tab2 = tab;
    verifica_liberdade(brancas, tab, lance("e2d2"));
    EXPECT_EQ(tab, antes);
    EXPECT_EQ(tab2, antes);
}

// --- King safety ---

class KingSafety : public ::testing::Test {
protected:
    void SetUp() override {
        processo_novo();
        coloca_fen("7k/8/8/8/8/8/8/K7 w - - 0 1");
    }
};

TEST_F(KingSafety, WeighsASquareByBothKingsAndTheMiddle) {
    Contagem lado;
    King_safety(brancas, lado, 3, 3);
    EXPECT_TRUE(mesmos_bits(lado.atack_ksf, soma_dos_inversos({16 + 16 + 2})));  // d4 to h8
    EXPECT_TRUE(mesmos_bits(lado.defesa_ksf, soma_dos_inversos({9 + 9 + 2})));   // d4 to a1
    EXPECT_TRUE(mesmos_bits(lado.centro, 20.0F));
}

TEST_F(KingSafety, SwapsTheKingsForBlack) {
    Contagem lado;
    King_safety(pretas, lado, 3, 3);
    EXPECT_TRUE(mesmos_bits(lado.atack_ksf, soma_dos_inversos({9 + 9 + 2})));
    EXPECT_TRUE(mesmos_bits(lado.defesa_ksf, soma_dos_inversos({16 + 16 + 2})));
}

TEST_F(KingSafety, WeighsAHalfOnTheKingAndAThirdBesideIt) {
    Contagem lado;
    King_safety(brancas, lado, 7, 7);
    EXPECT_EQ(lado.atack_ksf, 0.5F);
    King_safety(brancas, lado, 7, 6);
    EXPECT_TRUE(mesmos_bits(lado.atack_ksf, soma_dos_inversos({2, 3})));
}

// Rounded to float after each square: a sum kept in double and rounded at the end differs in the last bits.
TEST_F(KingSafety, RoundsAfterEachSquare) {
    Contagem lado;
    double exata = 0;
    float rodada = 0;
    for (int i = 0; i < 5 * 64; ++i) {
        const int f = i / 8 % 8;
        const int r = i % 8;
        const double termo = 1.0 / ((f - 7) * (f - 7) + (r - 7) * (r - 7) + 2);
        King_safety(brancas, lado, f, r);
        exata += termo;
        rodada = static_cast<float>(static_cast<double>(rodada) + termo);
    }
    EXPECT_TRUE(mesmos_bits(lado.atack_ksf, rodada));
    EXPECT_FALSE(mesmos_bits(lado.atack_ksf, static_cast<float>(exata)));
}

}  // namespace
