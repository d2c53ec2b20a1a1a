// The trial of a root move and the class it is given. Each case stands for White and, mirrored, for Black.
#include "support/evaluation.h"

#include "eval/root_trial.h"
#include "eval/strategy.h"
#include "eval/tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace ondrel;
using namespace teste;

// The position and the move as given, or with colours and ranks exchanged.
struct Visao {
    Cor c;
    [[nodiscard]] std::string fen(const std::string& de_brancas) const {
        if (c == brancas) {
            return de_brancas;
        }
        return plain::to_fen(plain::mirrored(plain::from_fen(de_brancas).value()));
    }
    [[nodiscard]] Lance move(std::string_view t) const {
        const Lance m = lance(t);
        return c == brancas ? m : Lance{m.a, 7 - m.b, m.c, 7 - m.d};
    }
    [[nodiscard]] int square(std::string_view nome) const {
        const int i = casa_de(nome);
        return c == brancas ? i : casa(i / 8, 7 - i % 8);
    }
};

void visita(Cor c, Lance m) {
    init_tabuleiro2(m);
    c == brancas ? verifica_estrategia<brancas>() : verifica_estrategia<pretas>();
}

void visita(Visao v, const std::string& fen, std::string_view m) {
    coloca_fen(v.fen(fen));
    visita(v.c, v.move(m));
}

class Classifier : public ::testing::TestWithParam<Cor> {
protected:
    void SetUp() override { processo_novo(); }
    [[nodiscard]] static Visao visao() { return {GetParam()}; }
};

std::string nome_da_cor(const ::testing::TestParamInfo<Cor>& info) { return info.param == brancas ? "White" : "Black"; }

INSTANTIATE_TEST_SUITE_P(Both, Classifier, ::testing::Values(brancas, pretas), nome_da_cor);

// --- The tally ---

// What a quiet king move from h1 leaves on the board, and the tally expected of it, the tables being off.
struct Contas {
    const char* nome;
    const char* campo;
    int esperado;
    const char* lance = "h1g1";
};
void PrintTo(const Contas& x, std::ostream* os) { *os << x.campo << ' ' << x.lance; }

class Tally : public ::testing::TestWithParam<Contas> {
protected:
    void SetUp() override { processo_novo(); }
};

TEST_P(Tally, IsThisForEitherColour) {
    const Contas& x = GetParam();
    for (const Cor c : {brancas, pretas}) {
        matrix = 0;
        visita({c}, std::string(x.campo) + " w - - 0 1", x.lance);
        EXPECT_EQ(ATAQUE, x.esperado) << (c == brancas ? "White" : "Black");
    }
}

// Every man of either side stands so that nothing but the row in question counts.
INSTANTIATE_TEST_SUITE_P(
    Threat, Tally,
    ::testing::Values(
        Contas{"NothingInSight", "k7/8/8/8/8/8/8/7K", 0}, Contas{"King", "k7/7p/8/8/8/8/8/R6K", 11},
        Contas{"KingWithoutMen", "k7/8/8/8/8/8/8/R6K", 0}, Contas{"KingOutOfReach", "k7/7p/8/8/8/8/8/1R5K", 0},
        Contas{"QueenByPawn", "k7/8/8/3q4/4P3/5P2/8/7K", 100}, Contas{"QueenByKnight", "k7/8/8/3q4/8/2N5/8/7K", 100},
        Contas{"QueenByBishop", "k7/8/8/3q4/8/5B2/8/7K", 100, "h1g2"},
        Contas{"QueenByRook", "k7/8/8/3q4/8/8/3R4/1N5K", 100}, Contas{"QueenByQueen", "k7/8/8/3q4/8/8/3Q4/1N5K", 0},
        Contas{"QueenByKing", "k7/8/8/8/8/8/5q2/7K", 0}, Contas{"QueenGuarded", "k7/8/1n6/3q4/8/2N5/8/7K", 100},
        Contas{"RookByPawn", "k7/8/8/3r4/4P3/8/8/7K", 50}, Contas{"RookByBishop", "k7/8/8/3r4/8/5B2/8/7K", 50},
        Contas{"RookByKnight", "k7/8/8/3r4/8/2N5/8/7K", 50},
        Contas{"RookGuardedByKnight", "k7/8/1n6/3r4/8/2N5/8/7K", 50},
        Contas{"LooseRookByQueen", "k7/8/8/3r4/8/5Q2/8/7K", 25}, Contas{"LooseRookByKing", "k7/8/8/8/8/8/5r2/7K", 25},
        Contas{"GuardedRookByQueen", "k7/8/1n6/3r4/8/5Q2/8/7K", 0}, Contas{"RookByRook", "k7/8/8/3r4/8/8/1N6/3R3K", 0},
        Contas{"KnightByPawn", "k7/8/8/3n4/4P3/8/8/7K", 35},
        Contas{"GuardedKnightByPawn", "k7/8/4p3/3n4/4P3/8/8/7K", 35},
        Contas{"LooseKnightByBishop", "k7/8/8/3n4/8/5B2/8/7K", 17},
        Contas{"LooseKnightByRook", "k7/8/8/3n4/8/8/8/3R3K", 17},
        Contas{"LooseKnightByQueen", "k7/8/8/3n4/8/5Q2/8/7K", 17},
        Contas{"LooseKnightByKing", "k7/8/8/8/8/8/5n2/7K", 17},
        Contas{"GuardedKnightByBishop", "k7/8/4p3/3n4/8/5B2/8/7K", 0},
        Contas{"KnightByKnight", "k7/8/8/3n4/8/2N5/1P6/7K", 0}, Contas{"BishopByPawn", "k7/8/8/3b4/4P3/5P2/8/7K", 30},
        Contas{"LooseBishopByKnight", "k7/8/8/3b4/8/2N5/8/7K", 15},
        Contas{"LooseBishopByRook", "k7/8/8/3b4/8/8/8/3R3K", 15},
        Contas{"LooseBishopByKing", "k7/8/8/8/8/8/5b2/7K", 15},
        Contas{"GuardedBishopByKnight", "k7/8/4p3/3b4/8/2N5/8/7K", 0},
        Contas{"BishopByQueen", "k7/8/8/3b4/8/8/8/3Q3K", 0},
        Contas{"BishopByBishop", "k7/8/8/3b4/8/5B2/8/7K", 0, "h1g2"},
        Contas{"LoosePawnByBishop", "k7/8/8/3p4/8/5B2/8/7K", 10},
        Contas{"LoosePawnByKnight", "k7/8/8/3p4/8/2N5/8/7K", 10},
        Contas{"LoosePawnByRook", "k7/8/8/3p4/8/8/8/3R3K", 10}, Contas{"LoosePawnByQueen", "k7/8/8/3p4/8/8/8/3Q3K", 10},
        Contas{"LoosePawnByKing", "k7/8/8/8/8/8/5p2/7K", 10}, Contas{"PawnByPawnToo", "k7/8/8/3p4/4P3/2N5/8/7K", 0},
        Contas{"PawnByPawnAlone", "k7/8/8/3p4/4P3/5P2/8/7K", 0},
        Contas{"PawnGuardedByPawn", "k7/8/4p3/3p4/8/2N5/8/7K", 0},
        Contas{"PawnGuardedByPiece", "k7/8/1n6/3p4/8/2N5/8/7K", 0}),
    [](const auto& info) { return std::string(info.param.nome); });

INSTANTIATE_TEST_SUITE_P(
    Danger, Tally,
    ::testing::Values(
        Contas{"QueenByPawn", "k7/8/5p2/4p3/3Q4/8/8/7K", -100}, Contas{"QueenByBishop", "k7/8/1b6/8/3Q4/8/8/7K", -100},
        Contas{"QueenByKnight", "k7/8/4n3/8/3Q4/8/8/7K", -100}, Contas{"QueenByRook", "2kr4/8/8/8/3Q4/8/8/7K", -100},
        Contas{"QueenByKnightThoughGuarded", "k7/8/4n3/8/3Q4/2P5/8/7K", -100},
        Contas{"OutnumberedQueen", "k2q4/8/8/8/3Q4/8/8/7K", -100},
        Contas{"QueenEvenlyGuarded", "k2q4/8/8/8/3Q4/8/2N5/7K", 0},
        // Three queens against guards: two pieces or a pawn are enough, one piece is not.
        Contas{"OutnumberedQueenWithTwoPieces", "k2q4/q7/8/8/3Q3q/8/2N1N3/7K", 0},
        Contas{"OutnumberedQueenWithOnePiece", "k2q4/q7/8/8/3Q3q/8/2N5/7K", -100},
        Contas{"OutnumberedQueenWithOneRook", "k2q4/q7/8/8/3Q3q/8/8/3R3K", -100},
        Contas{"OutnumberedQueenWithKnightAndRook", "k2q4/q7/8/8/3Q3q/8/2N5/3R3K", 0},
        Contas{"OutnumberedQueenWithKnightAndBishop", "k2q4/q7/8/8/3Q3q/8/1BN5/7K", 0},
        Contas{"OutnumberedQueenWithAPawn", "k2q4/q7/8/8/3Q3q/2P5/8/7K", 0},
        Contas{"RookByPawn", "k7/8/8/4p3/3R4/8/8/7K", -50}, Contas{"RookByBishop", "k7/8/1b6/8/3R4/8/8/7K", -50},
        Contas{"RookByKnight", "k7/8/4n3/8/3R4/8/8/7K", -50},
        Contas{"RookByKnightThoughGuarded", "k7/8/4n3/8/3R4/2P5/8/7K", -50},
        Contas{"OutnumberedRook", "k2r4/8/8/8/3R4/8/8/7K", -50},
        Contas{"RookEvenlyGuarded", "k2r4/8/8/8/3R4/8/2N5/7K", 0},
        Contas{"OutnumberedRookWithTwoPieces", "k2r4/8/8/8/r2R3r/8/2N1N3/7K", 0},
        Contas{"OutnumberedRookWithKnightAndBishop", "k2r4/8/8/8/r2R3r/8/1BN5/7K", 0},
        Contas{"OutnumberedRookWithOnePiece", "k2r4/8/8/8/r2R3r/8/2N5/7K", -50},
        // A rook does not guard a rook here.
        Contas{"OutnumberedRooksWithOnePiece", "k2r4/8/8/8/r2R3r/8/2N5/3R3K", -50},
        Contas{"OutnumberedRookWithAPawn", "k2r4/8/8/8/r2R3r/2P5/8/7K", 0},
        Contas{"KnightByPawn", "k7/8/8/4p3/3N4/8/8/7K", -30},
        Contas{"KnightByPawnThoughGuarded", "k7/8/8/4p3/3N4/2P5/8/7K", -30},
        Contas{"OutnumberedKnight", "k2r4/8/8/8/3N4/8/8/7K", -30},
        Contas{"KnightEvenlyGuarded", "k2r4/8/8/8/3N4/8/2N5/7K", 0},
        Contas{"OutnumberedKnightWithAPiece", "k2r4/8/8/8/r2N4/8/2N5/7K", -30},
        Contas{"OutnumberedKnightWithAPawn", "k2r4/8/8/8/r2N4/2P5/8/7K", 0},
        Contas{"BishopByPawn", "k7/8/5p2/4p3/3B4/8/8/7K", -30},
        Contas{"OutnumberedBishop", "k2r4/8/8/8/3B4/8/8/7K", -30},
        Contas{"OutnumberedBishopWithAPawn", "k2r4/8/8/8/r2B4/2P5/8/7K", 0},
        Contas{"OutnumberedPawn", "k2r4/8/8/8/3P4/8/8/7K", -10},
        Contas{"PawnEvenlyGuarded", "k2r4/8/8/8/3P4/8/2N5/7K", 0},
        Contas{"OutnumberedPawnWithAPawn", "k2r4/8/8/8/r2P4/2P5/8/7K", -10},
        Contas{"TheKingIsNotJudged", "k5r1/8/8/8/8/8/8/7K", 0}),
    [](const auto& info) { return std::string(info.param.nome); });

INSTANTIATE_TEST_SUITE_P(Sum, Tally,
                         ::testing::Values(Contas{"EveryManCounts", "k7/8/8/3r1r2/4P3/8/8/7K", 100},
                                           // The rook hits the knight and hangs to the pawn.
                                           Contas{"ThreatsLessDangers", "k7/8/8/4p3/3R3n/8/8/7K", 17 - 50}),
                         [](const auto& info) { return std::string(info.param.nome); });

// --- Options and the clamp ---

TEST_P(Classifier, ChecksWeighByTheirOption) {
    opcao("Attack by check to King", "9");
    matrix = 0;
    visita(visao(), "k7/7p/8/8/8/8/8/R6K w - - 0 1", "h1g1");
    EXPECT_EQ(ATAQUE, 110);
    EXPECT_EQ(ESTRATEGIA, 100);
    opcao("Attack by check to King", "0");
    visita(visao(), "k7/7p/8/8/8/8/8/R6K w - - 0 1", "h1g1");
    EXPECT_EQ(ATAQUE, 0);
}

TEST_P(Classifier, ClassIsClampedAtBothEnds) {
    matrix = 0;
    visita(visao(), "k7/8/8/3q1q2/4P3/5P2/8/7K w - - 0 1", "h1g1");
    EXPECT_EQ(ATAQUE, 200 - 10 - 10);  // the queens outnumber what guards the pawns
    EXPECT_EQ(ESTRATEGIA, 100);
    visita(visao(), "k7/8/8/4p3/3Q1Q2/8/8/7K w - - 0 1", "h1g1");
    EXPECT_LT(ATAQUE, -100);
    EXPECT_EQ(ESTRATEGIA, -100);
}

TEST_P(Classifier, MoveThatLeavesTheQueenToAKnightComesLate) {
    // e4 to d4, into the knight's reach; the knight stands guarded.
    visita(visao(), "k7/5p2/4n3/8/4Q3/8/8/7K w - - 0 1", "e4d4");
    EXPECT_EQ(ATAQUE,
              -100 + posix_dama[GetParam()][visao().square("d4")] + Xr[outra(GetParam())][visao().square("d4")]);
    EXPECT_LT(ESTRATEGIA, -90);
}

TEST_P(Classifier, PawnMoveThatHitsTheQueenComesFirst) {
    visita(visao(), "k7/8/8/3q4/8/4PP2/8/7K w - - 0 1", "e3e4");
    EXPECT_EQ(ATAQUE, 100 + 5);
    EXPECT_EQ(ESTRATEGIA, 100);
}

TEST_P(Classifier, TablesRankQuietMoves) {
    visita(visao(), "4k3/pppp1ppp/8/8/8/8/PPPPPPPP/4K1N1 w - - 0 1", "e2e4");
    EXPECT_EQ(ATAQUE, 5);
    visita(visao(), "4k3/pppp1ppp/8/8/8/8/PPPPPPPP/4K1N1 w - - 0 1", "d2d4");
    EXPECT_EQ(ATAQUE, 3);
    visita(visao(), "4k3/pppp1ppp/8/8/8/8/PPPPPPPP/4K1N1 w - - 0 1", "a2a3");
    EXPECT_EQ(ATAQUE, 0);
}

TEST_P(Classifier, WithoutTablesQuietMovesAreAllOfClassZero) {
    opcao("Positional matrices", "false");
    const std::string fen = "4k3/pppp1ppp/8/8/8/8/PPPPPPPP/4K1N1 w - - 0 1";
    for (const char* m : {"e2e4", "d2d4", "g1f3", "e1d1", "a2a3"}) {
        visita(visao(), fen, m);
        EXPECT_EQ(ESTRATEGIA, 0) << m;
    }
}

TEST_P(Classifier, ComputesTheBaseValueFirst) {
    coloca_fen(visao().fen("4k3/8/8/8/8/8/8/4KN2 w - - 0 1"));
    visita(GetParam(), visao().move("e1e2"));
    const float base = extraevalll;
    extraevalll = 0;
    EXPECT_TRUE(mesmos_bits(valor_da_base(GetParam()), base));
    EXPECT_NE(base, 0.0F);
}

TEST_P(Classifier, ClassIsTheSameAtEveryVisit) {
    coloca_fen(visao().fen("7k/8/8/4P3/8/8/8/7K w - - 0 1"));
    nb = 70;
    visita(GetParam(), visao().move("e5e6"));
    const int primeira = ATAQUE;
    visita(GetParam(), visao().move("e5e6"));
    EXPECT_EQ(ATAQUE, primeira);
}

// --- A pawn late in the game ---

// The value of e5e6 there, 30, scaled by the tally and by who is ahead.
struct Escala {
    const char* nome;
    const char* campo;
    int matriz;
};
void PrintTo(const Escala& x, std::ostream* os) { *os << x.campo; }

class PromotionScaling : public ::testing::TestWithParam<Escala> {
protected:
    void SetUp() override { processo_novo(); }
};

TEST_P(PromotionScaling, IsScaled) {
    for (const Cor c : {brancas, pretas}) {
        const Visao v{c};
        coloca_fen(v.fen(std::string(GetParam().campo) + " w - - 0 1"));
        nb = 70;
        matrix = 0;
        visita(c, v.move("e5e6"));
        const int contas = ATAQUE;
        EXPECT_EQ(MATRIZ, GetParam().matriz) << contas;
        EXPECT_EQ(incentiva_promo, 1);
        matrix = 1;
        visita(c, v.move("e5e6"));
        EXPECT_EQ(ATAQUE, contas + GetParam().matriz);
    }
}

// Black's pawn a4 hangs over the knight b3 where the tally is to be negative; the rest stands idle.
INSTANTIATE_TEST_SUITE_P(Each, PromotionScaling,
                         ::testing::Values(Escala{"Ahead", "7k/8/8/4P3/8/8/8/R6K", 150},
                                           Escala{"Even", "7k/8/p7/4P3/8/8/8/7K", 120},
                                           Escala{"Behind", "r6k/8/8/4P3/8/8/8/7K", 90},
                                           Escala{"AheadInDanger", "7k/8/8/4P3/p7/1N6/8/7K", 10},
                                           Escala{"EvenInDanger", "7k/8/2n5/4P3/p7/1N6/8/7K", 7},
                                           Escala{"BehindInDanger", "r6k/8/8/4P3/p7/1N6/8/7K", 6}),
                         [](const auto& info) { return std::string(info.param.nome); });

TEST_P(Classifier, PawnToItsLastRankButOneLateInAnEvenGameComesFirst) {
    coloca_fen(visao().fen("7k/8/p3P3/8/8/8/8/7K w - - 0 1"));
    nb = 70;
    visita(GetParam(), visao().move("e6e7"));
    EXPECT_EQ(ATAQUE, 35 * 4);
    EXPECT_EQ(ESTRATEGIA, 100);
}

// A visit that does not renew the value, as castling's, scales it again; the product wraps.
TEST_P(Classifier, ValueLeftFromAnotherMoveIsScaledAgainAndWraps) {
    coloca_fen(visao().fen("7k/8/p3P3/8/8/8/8/7K w - - 0 1"));
    nb = 70;
    visita(GetParam(), visao().move("e6e7"));
    std::uint32_t certo = 35 * 4;
    for (int vez = 0; vez < 20; ++vez) {
        certo *= 4;
        GetParam() == brancas ? verifica_estrategia<brancas>() : verifica_estrategia<pretas>();
        EXPECT_EQ(MATRIZ, static_cast<int>(certo)) << vez;
        EXPECT_EQ(ATAQUE, MATRIZ) << vez;
        EXPECT_EQ(ESTRATEGIA, std::clamp(MATRIZ, -100, 100)) << vez;
    }
    EXPECT_EQ(certo, 0U);
}

// --- The value of the destination ---

TEST_P(Classifier, PawnsGoByThePhaseOfTheGame) {
    coloca_fen(visao().fen("7k/8/8/p7/8/4P3/8/7K w - - 0 1"));
    const auto valor = [&](int lances) {
        nb = lances;
        init_tabuleiro2(visao().move("e3e4"));
        return MATRIZ;
    };
    EXPECT_EQ(valor(1), 5);
    EXPECT_EQ(valor(29), 5);
    EXPECT_EQ(incentiva_promo, 0);
    EXPECT_EQ(valor(30), 1);
    EXPECT_EQ(valor(69), 1);
    EXPECT_EQ(incentiva_promo, 0);
    EXPECT_EQ(valor(70), 25);
    EXPECT_EQ(incentiva_promo, 1);
}

TEST_P(Classifier, PiecesAreNotUrgedLateInTheGame) {
    coloca_fen(visao().fen("7k/8/8/p7/8/8/8/3Q3K w - - 0 1"));
    nb = 90;
    incentiva_promo = 1;
    init_tabuleiro2(visao().move("d1d2"));
    EXPECT_EQ(incentiva_promo, 0);
}

// Each piece by its own table, and by the nearness to the enemy king.
TEST_P(Classifier, PiecesGoByTheirTableAndTheEnemyKing) {
    const Cor c = GetParam();
    const auto valor = [&](const char* homem, const char* m) {
        coloca_fen(visao().fen("8/p7/8/5k2/8/" + std::string(homem) + "/8/7K w - - 0 1"));
        init_tabuleiro2(visao().move(m));
        return MATRIZ;
    };
    // The black king on f5: e5 is beside it (15 over 3), d5 and e6 two off on the long side (4 + 2, 1 + 1 + 2).
    EXPECT_EQ(valor("3N4", "d3e5"), 5 + 5);
    EXPECT_EQ(valor("3B4", "d3d5"), 5 + 2);
    EXPECT_EQ(valor("3Q4", "d3e6"), 5 + 3);
    EXPECT_EQ(valor("3R4", "d3e5"), 0 + 5);
    EXPECT_EQ(Xr[outra(c)][visao().square("f5")], 7);
}

// The nearness table of a bare king counts for every piece that hunts it, 375 over the distance.
TEST_P(Classifier, PiecesHuntABareKing) {
    coloca_fen(visao().fen("7k/8/8/8/8/8/8/R6K w - - 0 1"));
    init_tabuleiro2(visao().move("a1a8"));
    EXPECT_EQ(MATRIZ, 375 / (49 + 2));
}

// --- The king by the ending ---

// The enemy's material and men; which table the king's destination counts by.
enum class Conta { nada, ao_rei_e_peao, final_e_peao_inimigo, peao_inimigo, peao_proprio };
struct Fim {
    int m, n;
    Conta conta;
    int w = 200;
};
void PrintTo(const Fim& x, std::ostream* os) { *os << "enemy " << x.m << " in " << x.n << " men, own " << x.w; }

class KingEnding : public ::testing::TestWithParam<Fim> {
protected:
    void SetUp() override { processo_novo(); }
};

TEST_P(KingEnding, ChoosesTheKingsTable) {
    const Fim& x = GetParam();
    for (const Cor c : {brancas, pretas}) {
        const Visao v{c};
        coloca_fen(v.fen("8/8/8/2p5/6k1/5P2/8/3K4 w - - 0 1"));
        material_a[c] = static_cast<float>(x.w);
        material_a[outra(c)] = static_cast<float>(x.m);
        npecas[outra(c)] = x.n;
        init_tabuleiro2(v.move("d1d2"));
        // d2: own pawn f3 at 4 + 1, the enemy's c5 at 1 + 9, his king g4 at 9 + 4.
        const int peao_proprio = 75 / 7;
        const int peao_inimigo = 75 / 12;
        const int rei = 15 / 15;  // cppcheck-suppress duplicateExpression; 2 + 9 + 4 happens to be fifteen
        const int final = 500 / (1 + 4 + 2);
        switch (x.conta) {
            case Conta::nada: EXPECT_EQ(MATRIZ, 0); break;
            case Conta::ao_rei_e_peao: EXPECT_EQ(MATRIZ, rei + peao_proprio); break;
            case Conta::final_e_peao_inimigo: EXPECT_EQ(MATRIZ, final + peao_inimigo); break;
            case Conta::peao_inimigo: EXPECT_EQ(MATRIZ, peao_inimigo); break;
            case Conta::peao_proprio: EXPECT_EQ(MATRIZ, peao_proprio / 5); break;
        }
        EXPECT_EQ(incentiva_promo, 0);
    }
}

INSTANTIATE_TEST_SUITE_P(BareKings, KingEnding,
                         ::testing::Values(Fim{110, 0, Conta::ao_rei_e_peao},
                                           Fim{400, 9, Conta::final_e_peao_inimigo, 110},
                                           // Both bare: the later case holds.
                                           Fim{110, 0, Conta::final_e_peao_inimigo, 110}));

INSTANTIATE_TEST_SUITE_P(Pawns, KingEnding,
                         ::testing::Values(Fim{120, 1, Conta::peao_inimigo}, Fim{130, 2, Conta::peao_inimigo},
                                           Fim{150, 4, Conta::peao_inimigo}, Fim{140, 3, Conta::peao_inimigo},
                                           Fim{140, 1, Conta::nada}, Fim{160, 5, Conta::nada},
                                           // Overwrites what a bare own king would count by.
                                           Fim{120, 1, Conta::peao_inimigo, 110}));

INSTANTIATE_TEST_SUITE_P(FewPieces, KingEnding,
                         ::testing::Values(Fim{153, 2, Conta::peao_inimigo}, Fim{163, 3, Conta::peao_inimigo},
                                           Fim{186, 3, Conta::peao_inimigo}, Fim{152, 2, Conta::peao_inimigo},
                                           Fim{162, 3, Conta::peao_inimigo}, Fim{184, 3, Conta::peao_inimigo},
                                           Fim{185, 3, Conta::peao_inimigo}, Fim{153, 9, Conta::peao_inimigo},
                                           Fim{154, 2, Conta::nada}, Fim{187, 3, Conta::nada}));

INSTANTIATE_TEST_SUITE_P(PiecesAndPawns, KingEnding,
                         ::testing::Values(Fim{173, 4, Conta::peao_inimigo}, Fim{183, 5, Conta::peao_inimigo},
                                           Fim{196, 4, Conta::peao_inimigo}, Fim{206, 5, Conta::peao_inimigo},
                                           Fim{216, 6, Conta::peao_inimigo}, Fim{172, 4, Conta::peao_inimigo},
                                           Fim{182, 5, Conta::peao_inimigo}, Fim{194, 4, Conta::peao_inimigo},
                                           Fim{204, 5, Conta::peao_inimigo}, Fim{214, 6, Conta::peao_inimigo},
                                           Fim{195, 4, Conta::peao_inimigo}, Fim{205, 5, Conta::peao_inimigo},
                                           Fim{215, 6, Conta::peao_inimigo}, Fim{170, 2, Conta::peao_inimigo},
                                           Fim{180, 3, Conta::peao_inimigo}));

INSTANTIATE_TEST_SUITE_P(OtherMen, KingEnding,
                         ::testing::Values(Fim{173, 3, Conta::nada}, Fim{183, 4, Conta::nada}, Fim{196, 3, Conta::nada},
                                           Fim{206, 4, Conta::nada}, Fim{216, 5, Conta::nada}, Fim{172, 3, Conta::nada},
                                           Fim{182, 4, Conta::nada}, Fim{194, 3, Conta::nada}, Fim{204, 4, Conta::nada},
                                           Fim{214, 5, Conta::nada}, Fim{195, 5, Conta::nada}, Fim{205, 6, Conta::nada},
                                           Fim{215, 5, Conta::nada}, Fim{170, 3, Conta::nada}, Fim{180, 4, Conta::nada},
                                           Fim{142, 2, Conta::nada}, Fim{143, 2, Conta::nada}, Fim{160, 2, Conta::nada},
                                           Fim{174, 3, Conta::nada}, Fim{175, 3, Conta::nada}, Fim{176, 3, Conta::nada},
                                           Fim{510, 15, Conta::nada}));

INSTANTIATE_TEST_SUITE_P(OwnPawn, KingEnding,
                         ::testing::Values(Fim{142, 1, Conta::peao_proprio}, Fim{143, 1, Conta::peao_proprio},
                                           Fim{160, 1, Conta::peao_proprio}, Fim{174, 2, Conta::peao_proprio},
                                           Fim{175, 2, Conta::peao_proprio}, Fim{176, 2, Conta::peao_proprio},
                                           // Not for a bare king.
                                           Fim{142, 1, Conta::final_e_peao_inimigo, 110}));

// --- The trial ---

TEST_P(Classifier, TrialLeavesTheGameAlone) {
    coloca_fen(visao().fen("r3k2r/1P6/8/3pP3/8/8/8/R3K2R w KQkq d6 0 1"));
    const Tabuleiro antes = tab;
    const Bandeiras bandeiras = jm;
    for (const char* m : {"e5d6", "b7b8", "b7a8", "e1g1", "e1c1", "e1e2", "a1b1"}) {
        init_tabuleiro2(visao().move(m));
        EXPECT_EQ(tab, antes) << m;
        EXPECT_EQ(jm.R_jm, bandeiras.R_jm) << m;
        EXPECT_EQ(jm.T_a_jm, bandeiras.T_a_jm) << m;
        EXPECT_EQ(jm.p_ah, bandeiras.p_ah) << m;
        EXPECT_NE(tab2, antes) << m;
    }
}

TEST_P(Classifier, TrialTakesInPassing) {
    const Cor c = GetParam();
    coloca_fen(visao().fen("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1"));
    init_tabuleiro2(visao().move("e5d6"));
    EXPECT_EQ(tab2[visao().square("d6")], codigo(c, peao));
    EXPECT_EQ(tab2[visao().square("d5")], vazia);
    EXPECT_EQ(tab2[visao().square("e5")], vazia);
}

TEST_P(Classifier, TrialPromotesToAQueen) {
    coloca_fen(visao().fen("8/P6k/8/8/8/8/8/4K3 w - - 0 1"));
    init_tabuleiro2(visao().move("a7a8"));
    EXPECT_EQ(tab2[visao().square("a8")], codigo(GetParam(), dama));
    EXPECT_EQ(MATRIZ, 10 / (16 + 16 + 2));  // still a pawn's move
}

TEST_P(Classifier, TrialOfACastlingKingTakesTheRookAlong) {
    const Cor c = GetParam();
    coloca_fen(visao().fen("4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1"));
    init_tabuleiro2(visao().move("e1g1"));
    EXPECT_EQ(tab2[visao().square("f1")], codigo(c, torre));
    EXPECT_EQ(tab2[visao().square("h1")], vazia);
    init_tabuleiro2(visao().move("e1c1"));
    EXPECT_EQ(tab2[visao().square("d1")], codigo(c, torre));
    EXPECT_EQ(tab2[visao().square("a1")], vazia);
}

TEST_P(Classifier, GateOfThePassKnowsTheBestMove) {
    coloca_fen(visao().fen("4k3/8/8/8/8/8/8/R3K2R w - - 0 1"));
    aab_ddb = visao().move("a1a2");
    const auto passa = [&](int scan1, int scant, const char* m) {
        SCAN1 = static_cast<std::uint8_t>(scan1);
        SCANT = static_cast<std::uint8_t>(scant);
        init_tabuleiro2(visao().move(m));
        return TEST1IID != 0;
    };
    EXPECT_TRUE(passa(0, 0, "a1a2"));
    EXPECT_TRUE(passa(0, 0, "a1a3"));
    EXPECT_TRUE(passa(1, 0, "a1a2"));
    EXPECT_FALSE(passa(1, 0, "a1a3"));
    EXPECT_FALSE(passa(1, 0, "h1h2"));
    EXPECT_FALSE(passa(0, 1, "a1a2"));
    EXPECT_TRUE(passa(0, 1, "a1a3"));
    // Each of the four coordinates counts.
    EXPECT_FALSE(passa(1, 0, "b1a2"));
    EXPECT_FALSE(passa(1, 0, "a3a2"));
    EXPECT_FALSE(passa(1, 0, "a1b2"));
}

// --- The attack maps ---

TEST_P(Classifier, MapsCountDefenceAndStopAtTheFirstMan) {
    const Cor c = GetParam();
    coloca_fen(visao().fen("7k/8/8/3p4/8/3B4/8/3R3K w - - 0 1"));
    init_tabuleiro2(visao().move("h1g1"));
    const Ataques& meus = ataca[c];
    EXPECT_EQ(meus.torre[visao().square("d2")], 1);
    EXPECT_EQ(meus.torre[visao().square("d3")], 1);  // its own bishop
    EXPECT_EQ(meus.torre[visao().square("d4")], 0);
    EXPECT_EQ(meus.torre[visao().square("g1")], 1);
    EXPECT_EQ(meus.torre[visao().square("h1")], 0);
    EXPECT_EQ(meus.bispo[visao().square("a6")], 1);
    EXPECT_EQ(meus.rei[visao().square("f1")], 1);
    EXPECT_EQ(meus.N_A[visao().square("f1")], 3);  // king, rook and bishop
}

TEST_P(Classifier, MapsOfAQueenAreHerOwn) {
    const Cor c = GetParam();
    coloca_fen(visao().fen("7k/8/8/8/3Q4/8/8/7K w - - 0 1"));
    init_tabuleiro2(visao().move("h1g2"));
    EXPECT_EQ(ataca[c].dama[visao().square("d8")], 1);
    EXPECT_EQ(ataca[c].dama[visao().square("h8")], 1);
    EXPECT_EQ(ataca[c].torre, TabelaInteira{});
    EXPECT_EQ(ataca[c].bispo, TabelaInteira{});
    EXPECT_EQ(ataca[c].N_A[visao().square("d8")], 1);
}

TEST_P(Classifier, MapsOfPawnsAreTheirDiagonals) {
    const Cor c = GetParam();
    coloca_fen(visao().fen("7k/8/1p6/8/2P1P3/8/8/7K w - - 0 1"));
    init_tabuleiro2(visao().move("h1g1"));
    EXPECT_EQ(ataca[c].peao[visao().square("d5")], 2);
    EXPECT_EQ(ataca[c].peao[visao().square("b5")], 1);
    EXPECT_EQ(ataca[c].peao[visao().square("f5")], 1);
    EXPECT_EQ(ataca[c].peao[visao().square("e5")], 0);
    EXPECT_EQ(ataca[outra(c)].peao[visao().square("a5")], 1);
    EXPECT_EQ(ataca[outra(c)].peao[visao().square("c5")], 1);
    EXPECT_EQ(ataca[outra(c)].N_A[visao().square("c5")], 1);
}

TEST_P(Classifier, MapsAreThoseAfterTheMove) {
    const Cor c = GetParam();
    coloca_fen(visao().fen("7k/8/8/8/8/8/8/N6K w - - 0 1"));
    init_tabuleiro2(visao().move("a1b3"));
    EXPECT_EQ(ataca[c].cavalo[visao().square("c2")], 0);
    EXPECT_EQ(ataca[c].cavalo[visao().square("d4")], 1);
    EXPECT_EQ(ataca[c].cavalo[visao().square("a1")], 1);
}

}  // namespace
