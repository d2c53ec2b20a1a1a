// The preparation of the root position: what it plays, counts and weighs after each move of the game.
#include "support/evaluation.h"

#include "eval/preparation.h"
#include "eval/tables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using namespace ondrel;
using namespace teste;

class RootPreparation : public ::testing::Test {
protected:
    void SetUp() override { processo_novo(); }
};

// --- Nearness to the kings ---

// The choice of the numerator precedes the recount: the move that bares a king does not show yet.
TEST_F(RootPreparation, BareKingWeighsMoreOnlyFromTheMoveAfterTheOneThatBaredIt) {
    coloca("position fen 4k3/8/8/8/8/8/4p3/4K2R w - - 0 1 moves e1e2");
    EXPECT_EQ(material_a[pretas], 110.0F);
    EXPECT_EQ(Xr[pretas][casa_de("e8")], 15 / 2);
    coloca("position fen 4k3/8/8/8/8/8/4p3/4K2R w - - 0 1 moves e1e2 e8d8");
    EXPECT_EQ(Xr[pretas][casa_de("d8")], 375 / 2);
    EXPECT_EQ(Xr[pretas][casa_de("d5")], 375 / (9 + 2));
    EXPECT_EQ(Xr[brancas][casa_de("e2")], 15 / 2);
}

TEST_F(RootPreparation, BareWhiteKingWeighsMoreToo) {
    coloca("position fen 4k2r/4P3/8/8/8/8/8/4K3 b - - 0 1 moves e8e7");
    EXPECT_EQ(Xr[brancas][casa_de("e1")], 15 / 2);
    coloca("position fen 4k2r/4P3/8/8/8/8/8/4K3 b - - 0 1 moves e8e7 e1e2");
    EXPECT_EQ(Xr[brancas][casa_de("e2")], 375 / 2);
    EXPECT_EQ(Xr[brancas][casa_de("h2")], 375 / (9 + 2));
}

// Nothing is played on a bare FEN, so its own material chooses.
TEST_F(RootPreparation, BareKingOfAFenWeighsMoreAtOnce) {
    coloca_fen("4k3/8/8/8/8/8/8/4K2R w - - 0 1");
    EXPECT_EQ(Xr[pretas][casa_de("e8")], 375 / 2);
    EXPECT_EQ(Xr[brancas][casa_de("e1")], 15 / 2);
}

TEST_F(RootPreparation, NearnessToAKingFallsWithTheSquaredDistance) {
    coloca_fen("6k1/7p/8/8/8/8/P7/1K6 w - - 0 1");
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            EXPECT_EQ(Xr[brancas][casa(f, r)], 15 / ((f - 1) * (f - 1) + r * r + 2)) << f << ' ' << r;
            EXPECT_EQ(Xr[pretas][casa(f, r)], 15 / ((f - 6) * (f - 6) + (r - 7) * (r - 7) + 2)) << f << ' ' << r;
        }
    }
}

// Below the weight of a king there is none to be near to.
TEST_F(RootPreparation, NearnessStandsAsItWasWithoutAKing) {
    coloca_fen("4k3/8/8/8/8/8/P7/4K3 w - - 0 1");
    const TabelaInteira antes = Xr[pretas];
    coloca_fen("8/7p/8/8/8/8/P7/K7 w - - 0 1");
    EXPECT_EQ(Xr[pretas], antes);
    EXPECT_EQ(Xr[brancas][casa_de("a1")], 15 / 2);
}

TEST_F(RootPreparation, NearnessIsToTheKingsSquareAfterTheMove) {
    coloca("position fen 4k3/p7/8/8/8/8/P7/4K3 w - - 0 1 moves e1d2");
    EXPECT_EQ(Xr[brancas][casa_de("d2")], 15 / 2);
    EXPECT_EQ(Xr[brancas][casa_de("d1")], 15 / 3);
}

// --- Nearness to the foremost pawns ---

TEST_F(RootPreparation, WithoutPawnsNothingIsNear) {
    coloca_fen("4k3/pppppppp/8/8/8/8/PPPPPPPP/4K3 w - - 0 1");
    coloca_fen("4k2r/8/8/8/8/8/8/4K2R w - - 0 1");
    EXPECT_EQ(XP[brancas], TabelaInteira{});
    EXPECT_EQ(XP[pretas], TabelaInteira{});
}

TEST_F(RootPreparation, ForemostPawnOfWhiteIsTheOneOnTheHighestRank) {
    coloca_fen("4k3/8/8/1P6/8/8/P6P/4K3 w - - 0 1");
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            EXPECT_EQ(XP[brancas][casa(f, r)], 75 / ((f - 1) * (f - 1) + (r - 4) * (r - 4) + 2)) << f << ' ' << r;
        }
    }
}

TEST_F(RootPreparation, ForemostPawnOfBlackIsTheOneOnTheLowestRank) {
    coloca_fen("4k3/p6p/8/8/1p6/8/8/4K3 w - - 0 1");
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            EXPECT_EQ(XP[pretas][casa(f, r)], 75 / ((f - 1) * (f - 1) + (r - 3) * (r - 3) + 2)) << f << ' ' << r;
        }
    }
}

TEST_F(RootPreparation, OfTwoForemostPawnsTheOneOnTheHigherFileCounts) {
    coloca_fen("4k3/8/1p3p2/8/8/2P3P1/8/4K3 w - - 0 1");
    EXPECT_EQ(XP[brancas][casa_de("g3")], 75 / 2);
    EXPECT_EQ(XP[brancas][casa_de("c3")], 75 / (16 + 2));
    EXPECT_EQ(XP[pretas][casa_de("f6")], 75 / 2);
    EXPECT_EQ(XP[pretas][casa_de("b6")], 75 / (16 + 2));
}

// --- Material and men ---

TEST_F(RootPreparation, CountsTheStartPosition) {
    coloca("position fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    for (const Cor c : {brancas, pretas}) {
        EXPECT_EQ(material_a[c], 510.0F);
        EXPECT_EQ(materialmaior[c], 320.0F);
        EXPECT_EQ(npecas[c], 15);
        EXPECT_EQ(npecas_dp[c], 7);
    }
    EXPECT_EQ(materialflot0, 0.0F);
    EXPECT_EQ(p_x_R, (std::array<int, 2>{4, 4}));
    EXPECT_EQ(p_y_R, (std::array<int, 2>{0, 7}));
}

TEST_F(RootPreparation, CountsEachKindByItsCode) {
    coloca_fen("3qk3/8/8/8/8/8/P1N1B3/R3K3 w - - 0 1");
    EXPECT_EQ(material_a[brancas], 110.0F + 10 + 32 + 33 + 50);
    EXPECT_EQ(material_a[pretas], 110.0F + 90);
    EXPECT_EQ(materialmaior[brancas], 32.0F + 33 + 50);
    EXPECT_EQ(materialmaior[pretas], 90.0F);
    EXPECT_EQ(npecas, (std::array<int, 2>{4, 1}));
    EXPECT_EQ(npecas_dp, (std::array<int, 2>{3, 1}));
}

TEST_F(RootPreparation, MaterialDifferenceIsOfTheSideToSearch) {
    coloca_fen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
    EXPECT_EQ(materialflot0, 50.0F);
    coloca_fen("4k3/8/8/8/8/8/8/R3K3 b - - 0 1");
    EXPECT_EQ(materialflot0, -50.0F);
}

TEST_F(RootPreparation, CountsTheBoardAfterACapture) {
    coloca("position fen 4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1 moves e4d5");
    EXPECT_EQ(material_a[pretas], 110.0F);
    EXPECT_EQ(npecas, (std::array<int, 2>{1, 0}));
    EXPECT_EQ(materialflot0, -10.0F);
}

TEST_F(RootPreparation, FindsTheKingsAfterTheMove) {
    coloca("position fen 4k3/8/8/8/8/8/8/4K3 w - - 0 1 moves e1f2 e8c8");
    EXPECT_EQ(p_x_R[brancas], 5);
    EXPECT_EQ(p_y_R[brancas], 1);
    EXPECT_EQ(p_x_R[pretas], 2);
    EXPECT_EQ(p_y_R[pretas], 7);
}

// --- The move itself ---

TEST_F(RootPreparation, ASearchPromotionWithAnotherLetterReadLeavesThePawn) {
    coloca_fen("8/P6k/8/8/8/8/8/4K3 w - - 0 1");
    abcd = lance("a7a8");
    PRs = 'q';
    PRe = 'r';
    init_tabuleiro();
    EXPECT_EQ(tab[casa_de("a8")], peao);
    EXPECT_EQ(tab[casa_de("a7")], vazia);
}

TEST_F(RootPreparation, ClearsWhatServedTheMoveAlone) {
    coloca_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    abcd = lance("e1e2");
    X = 0;
    PRe = 'r';
    pp = 0;
    extraeval = 3;
    init_tabuleiro();
    EXPECT_EQ(X, 1);
    EXPECT_EQ(PRe, '0');
    EXPECT_EQ(pp, 0);
    EXPECT_EQ(extraeval, 0.0F);
}

TEST_F(RootPreparation, KeepsTheLetterWhileTheSearchPromotesToQueensOnly) {
    coloca_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    abcd = lance("e1e2");
    PRe = 'r';
    deeppromo = 1;
    init_tabuleiro();
    EXPECT_EQ(PRe, 'r');
}

// --- The balance of the root ---

class RootBalance : public RootPreparation {};

// The terms of the balance, from counters worked out by hand.
struct Lado {
    double material, pontos, abrigo, atack, defesa, mobilidade, avanco;
    int homens, peoes, caixa;
};
double avancado(const Lado& x) { return (x.avanco + 0.1) / (x.homens + 1); }
double denso(const Lado& x) { return (x.peoes + 1.0) / x.caixa; }
double balanco(const Lado& eu, const Lado& outro, double peso_da_mobilidade) {
    return 0.1 * std::log((outro.material + 0.1) / (eu.material + 0.1)) +
           2 * std::log((eu.pontos + 10.1) / (outro.pontos + 10.1)) +
           5 * std::log((eu.defesa + 3 + eu.abrigo) / (outro.atack + 3)) +
           5 * std::log((eu.atack + 3) / (outro.defesa + 3 + outro.abrigo)) +
           peso_da_mobilidade * std::log((eu.mobilidade + 3) / (outro.mobilidade + 3)) + avancado(outro) -
           avancado(eu) + denso(eu) - denso(outro);
}

TEST_F(RootBalance, IsZeroBeforeAnyMove) { EXPECT_EQ(regimen, 0.0F); }

TEST_F(RootBalance, IsZeroInASymmetricPosition) {
    coloca_fen("4k3/pppppppp/8/8/8/8/PPPPPPPP/4K3 w - - 0 1");
    EXPECT_NEAR(regimen, 0.0, 1e-6);
}

// White: King a1 and pawn a2; a bare black king on h8. Both kings count their neighbours.
constexpr std::string_view rei_e_peao = "7k/8/8/8/8/8/P7/K7 ";
// Neighbours of a1 are b1, a2, b2; of h8 g8, h7, g7.
const Lado rei_e_peao_branco{120, 0, 0, 1.0 / 87 + 1.0 / 87 + 1.0 / 74, 1.0 / 3 + 1.0 / 3 + 1.0 / 4, 4, 1 + 2, 1, 1, 2};
const Lado rei_preto{110, 0, 0, 1.0 / 87 + 1.0 / 87 + 1.0 / 74, 1.0 / 3 + 1.0 / 3 + 1.0 / 4, 3, 1, 0, 0, 1};

TEST_F(RootBalance, OfKingAndPawnAgainstKing) {
    coloca_fen(std::string(rei_e_peao) + "w - - 0 1");
    EXPECT_EQ(contagem[brancas].mobilidade, 4);  // b1, b2, a3, a4
    EXPECT_EQ(contagem[pretas].mobilidade, 3);
    EXPECT_NEAR(regimen, balanco(rei_e_peao_branco, rei_preto, 5), 1e-6);
}

TEST_F(RootBalance, IsInTheViewOfTheSideToSearch) {
    coloca_fen(std::string(rei_e_peao) + "b - - 0 1");
    EXPECT_NEAR(regimen, balanco(rei_preto, rei_e_peao_branco, 5), 1e-6);
}

TEST_F(RootBalance, ReadsTheOptionMobility) {
    opcao("Mobility", "9");
    coloca_fen(std::string(rei_e_peao) + "w - - 0 1");
    EXPECT_NEAR(regimen, balanco(rei_e_peao_branco, rei_preto, 10), 1e-6);
    opcao("Mobility", "0");
    coloca_fen(std::string(rei_e_peao) + "w - - 0 1");
    EXPECT_NEAR(regimen, balanco(rei_e_peao_branco, rei_preto, 0), 1e-6);
}

// Knights in the far corner of a board of two rooks each, so that kings keep still and pawns mark their diagonals.
// White has the knight a1 more: its jumps b3 and c2.
TEST_F(RootBalance, CountsPointsTwiceAndMaterialAgainstTheEngine) {
    opcao("Mobility", "0");
    coloca_fen("r6k/r7/8/8/8/8/R7/R6K w - - 0 1");
    const double sem = regimen;
    EXPECT_NEAR(sem, 0.0, 1e-6);
    coloca_fen("r6k/r7/8/8/8/8/R7/R5NK w - - 0 1");
    // The rook on a1 ends its rank on g1 now instead of h1; the knight g1 marks e2, f3, h3.
    const Contagem& b = contagem[brancas];
    const Contagem& p = contagem[pretas];
    const Lado branco{242, 13, 0, static_cast<double>(b.atack_ksf), static_cast<double>(b.defesa_ksf), 0, 5, 3, 0, 1};
    const Lado preto{210, 10, 0, static_cast<double>(p.atack_ksf), static_cast<double>(p.defesa_ksf), 0, 4, 2, 0, 1};
    EXPECT_EQ(b.pontos, 13);
    EXPECT_EQ(p.pontos, 10);
    EXPECT_EQ(b.avanco, 1 + 1 + 2 + 1);
    EXPECT_EQ(p.avanco, 1 + 1 + 2);
    EXPECT_NEAR(regimen, balanco(branco, preto, 0), 1e-6);
}

TEST_F(RootBalance, CountsThePawnsInFrontOfTheKing) {
    coloca_fen("r5k1/r7/8/8/8/8/R5P1/R5K1 w - - 0 1");
    EXPECT_EQ(contagem[brancas].abrigo, 1);
    EXPECT_EQ(contagem[pretas].abrigo, 0);
    coloca_fen("r5k1/r4ppp/8/8/8/8/R5P1/R5K1 w - - 0 1");
    EXPECT_EQ(contagem[pretas].abrigo, 3);
}

// At a queen the enemy is weak enough for the king to come out and for the pawns to hide nobody.
TEST_F(RootBalance, AtNinetyOfPieceMaterialTheKingCountsAndPawnsDoNot) {
    coloca_fen("3q3k/8/8/8/8/8/6P1/7K w - - 0 1");
    EXPECT_EQ(materialmaior[pretas], 90.0F);
    const Contagem& b = contagem[brancas];
    // Neighbours g1, g2, h2 and no diagonals of the pawn.
    EXPECT_TRUE(mesmos_bits(b.centro, soma_do_centroo({"g1", "h2", "g2"})));
    EXPECT_EQ(b.abrigo, 0);
    EXPECT_EQ(b.mobilidade, 2 + 2);  // g1 and h2; g3 and g4
}

TEST_F(RootBalance, AboveNinetyOfPieceMaterialTheKingHidesAndPawnsCount) {
    coloca_fen("rr5k/8/8/8/8/8/6P1/7K w - - 0 1");
    EXPECT_EQ(materialmaior[pretas], 100.0F);
    const Contagem& b = contagem[brancas];
    EXPECT_TRUE(mesmos_bits(b.centro, soma_do_centroo({"h3", "f3"})));
    EXPECT_EQ(b.abrigo, 1);
    EXPECT_EQ(b.mobilidade, 2);  // the pawn's alone
}

// A pinned rook moves on its line only.
TEST_F(RootBalance, CountsLegalMovesOnly) {
    coloca_fen("4r2k/8/8/8/8/8/4R3/4K3 w - - 0 1");
    EXPECT_EQ(contagem[brancas].mobilidade, 6 + 4);
}

// The plain walk gives the same to the last bit in the position after each move of a game.
TEST_F(RootBalance, FollowsAGameMoveByMove) {
    const std::vector<std::string> lances{"e2e4", "e7e5", "g1f3", "b8c6", "f1b5", "a7a6", "b5c6", "d7c6", "e1g1",
                                          "c8g4", "h2h3", "h7h5", "h3g4", "h5g4", "f3e5", "d8h4", "f2f3", "g4g3"};
    std::string linha = "position startpos moves";
    for (const std::string& m : lances) {
        linha += ' ' + m;
        const Cor minha = coloca(linha);
        tab2 = tab;
        EXPECT_TRUE(mesmos_bits(regimen, plain::balance(entrada(), minha, material_a))) << linha;
    }
}

}  // namespace
