// The staged captures of ply 1, and the promotions of the odd plies from 7 on.
#include "support/engine.h"
#include "support/moves.h"

#include "base/bounds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>

namespace {

using namespace teste;
using namespace ondrel;

class Stages : public ::testing::Test {
protected:
    void SetUp() override { processo_novo(); }
};

class Promotions : public Stages {};

Textos etapa(int K, std::string_view fen, std::string_view casa_) {
    monta_ply(1, fen);
    return textos(gera_etapa_da_ply_1(K, casa_));
}

constexpr int forma_de_teste = 0;

// --- The order of the stages ---

TEST_F(Stages, TheMostValuableVictimComesFirstWhoeverTakesIt) {
    // The rook takes the queen before the pawn takes anything.
    for (const Caso& caso :
         das_duas_cores("k5q1/8/8/3p1n2/r3P3/8/8/R5RK w - - 0 1", {"g1g8", "a1a4", "e4f5", "e4d5"})) {
        monta_ply(1, caso.fen);
        Textos lances = textos(lances_tentados(1));
        lances.resize(4);
        EXPECT_EQ(lances, caso.lances);
    }
}

TEST_F(Stages, KnightsAreTakenBeforeBishops) {
    for (const Caso& caso : das_duas_cores("k7/8/8/1b3n2/8/8/8/1R3R1K w - - 0 1", {"f1f5", "b1b5"})) {
        monta_ply(1, caso.fen);
        Textos lances = textos(lances_tentados(1));
        lances.resize(2);
        EXPECT_EQ(lances, caso.lances);
    }
}

TEST_F(Stages, WithinAStageTheLowestAttackerComesFirst) {
    // The black queen on d5 before pawn, knight, bishop, rook, queen and king.
    for (const Caso& caso :
         das_duas_cores("k7/8/4K3/R2q4/2P4B/4N3/6B1/3Q4 w - - 0 1", {"c4d5", "e3d5", "g2d5", "a5d5", "d1d5", "e6d5"})) {
        monta_ply(1, caso.fen);
        Textos lances = textos(lances_tentados(1));
        lances.resize(6);
        EXPECT_EQ(lances, caso.lances) << caso.fen;
    }
}

TEST_F(Stages, AQueenAttackedByAPawnAndARookIsTakenByThePawnFirst) {
    for (const Caso& caso : das_duas_cores("k7/8/8/3q4/4P3/8/8/3R3K w - - 0 1", {"e4d5", "d1d5"})) {
        monta_ply(1, caso.fen);
        Textos lances = textos(lances_tentados(1));
        lances.resize(2);
        EXPECT_EQ(lances, caso.lances);
    }
}

TEST_F(Stages, EachStageTakesItsVictimAlone) {
    const char* fen = "k7/8/2p1q3/1b3r2/3N4/1n6/8/7K w - - 0 1";
    EXPECT_EQ(etapa(5, fen, "d4"), (Textos{"d4e6"}));
    EXPECT_EQ(etapa(4, fen, "d4"), (Textos{"d4f5"}));
    EXPECT_EQ(etapa(3, fen, "d4"), (Textos{"d4b3"}));
    EXPECT_EQ(etapa(2, fen, "d4"), (Textos{"d4b5"}));
    EXPECT_EQ(etapa(1, fen, "d4"), (Textos{"d4c6"}));
}

TEST_F(Stages, CapturesComeBeforeQuietMoves) {
    for (const Caso& caso : das_duas_cores("k7/8/8/p7/8/8/7P/R3K3 w Q - 0 1", {"a1a5", "e1c1", "h2h4"})) {
        monta_ply(1, caso.fen);
        Textos lances = textos(lances_tentados(1));
        lances.resize(3);
        EXPECT_EQ(lances, caso.lances) << "castling closes the captures";
    }
}

// --- The walks ---

TEST_F(Stages, KnightsGoByTheirJumps) {
    for (const char* fen :
         {"k7/8/2p1p3/1p3p2/3N4/1p3p2/2p1p3/7K w - - 0 1", "K7/8/2P1P3/1P3P2/3n4/1P3P2/2P1P3/7k b - - 0 1"}) {
        EXPECT_EQ(etapa(1, fen, "d4"), (Textos{"d4f5", "d4f3", "d4b3", "d4b5", "d4c6", "d4e6", "d4e2", "d4c2"}));
        EXPECT_EQ(etapa(5, fen, "d4"), Textos{});
    }
}

TEST_F(Stages, SlidersGoByTheirRaysAndStopAtTheFirstMan) {
    const char* linhas = "k7/3p4/8/8/p2R2pp/3p4/3p4/7K w - - 0 1";
    EXPECT_EQ(etapa(1, linhas, "d4"), (Textos{"d4g4", "d4a4", "d4d7", "d4d3"}));
    const char* diagonais = "7k/6p1/1p6/8/3B4/8/1p3p2/p6K w - - 0 1";
    EXPECT_EQ(etapa(1, diagonais, "d4"), (Textos{"d4g7", "d4f2", "d4b2", "d4b6"}));
    const char* todas = "7k/3p2p1/1p6/8/p2Q2p1/3p4/1p3p2/7K w - - 0 1";
    EXPECT_EQ(etapa(1, todas, "d4"), (Textos{"d4g4", "d4a4", "d4d7", "d4d3", "d4g7", "d4f2", "d4b2", "d4b6"}));
    const char* todas_pretas = "7K/3P2P1/1P6/8/P2q2P1/3P4/1P3P2/7k b - - 0 1";
    EXPECT_EQ(etapa(1, todas_pretas, "d4"), (Textos{"d4g4", "d4a4", "d4d7", "d4d3", "d4g7", "d4f2", "d4b2", "d4b6"}));
    // A man that is no victim of the stage, of either colour, ends the ray.
    EXPECT_EQ(etapa(5, "k6q/8/8/8/q1NR1p1q/8/8/7K w - - 0 1", "d4"), Textos{});
}

TEST_F(Stages, PawnsTakeTowardsTheHigherFileFirst) {
    for (const Caso& caso : das_duas_cores("k7/8/8/2r1r3/3P4/8/8/7K w - - 0 1", {"d4e5", "d4c5"})) {
        EXPECT_EQ(etapa(4, caso.fen, caso.lances[0].substr(0, 2)), caso.lances);
        EXPECT_EQ(etapa(5, caso.fen, caso.lances[0].substr(0, 2)), Textos{});
    }
    for (const Caso& caso : das_duas_cores("k7/8/8/1r5r/P7/8/8/6K1 w - - 0 1", {"a4b5"})) {
        EXPECT_EQ(etapa(4, caso.fen, caso.lances[0].substr(0, 2)), caso.lances);
    }
    for (const Caso& caso : das_duas_cores("k7/8/8/r5r1/7P/8/8/7K w - - 0 1", {"h4g5"})) {
        EXPECT_EQ(etapa(4, caso.fen, caso.lances[0].substr(0, 2)), caso.lances);
    }
}

TEST_F(Stages, AKingTakesOnAllItsNeighbours) {
    EXPECT_EQ(em_ordem(etapa(1, "7k/8/8/2p1p3/2pK4/2ppp3/8/8 w - - 0 1", "d4")),
              (Textos{"d4c3", "d4c4", "d4c5", "d4e3", "d4e5"}))
        << "all but the defended one";
    for (const auto& [f, r] : {std::pair{3, 4}, {3, 2}, {2, 3}, {4, 3}, {2, 4}, {4, 4}, {2, 2}, {4, 2}}) {
        plain::Position p = posicao("7k/8/8/8/3K4/8/8/8 w - - 0 1");
        p.put(f, r, 'r');
        const Textos lances = etapa(4, plain::to_fen(p), "d4");
        EXPECT_EQ(lances.size(), 1U) << f << r;
    }
}

TEST_F(Stages, IllegalCapturesAreDropped) {
    nodes = 0;
    EXPECT_EQ(etapa(1, "3rk3/8/8/3p4/4K3/8/8/8 w - - 0 1", "e4"), Textos{}) << "defended";
    EXPECT_EQ(etapa(4, "4rk2/8/8/2r5/4N3/8/8/4K3 w - - 0 1", "e4"), Textos{}) << "pinned";
    EXPECT_EQ(nodes, 0U);
}

TEST_F(Stages, ACaptureWithPromotionStandsInTheStageOfItsVictim) {
    for (const Caso& caso : das_duas_cores("2rq4/3P3k/8/8/8/8/8/7K w - - 0 1", {"d7c8"})) {
        const std::string de = caso.lances[0].substr(0, 2);
        EXPECT_EQ(etapa(4, caso.fen, de), caso.lances);
        for (const int K : {5, 3, 2, 1}) {
            EXPECT_EQ(etapa(K, caso.fen, de), Textos{}) << K;
        }
        monta_ply(1, caso.fen);
        const Filhos filhos(1, [&](Lance m) { EXPECT_EQ(std::abs(tab2[m.destino()]), 90); });
        roda_etapa_da_ply_1(4, de);
        EXPECT_EQ(filhos.lances(), caso.lances);
    }
}

TEST_F(Stages, ThePushToTheLastRankComesWithTheQuietMoves) {
    monta_ply(1, "7k/3P4/8/8/p7/8/8/R6K w - - 0 1");
    const Textos lances = textos(lances_tentados(1));
    EXPECT_EQ(lances[0], "a1a4");
    EXPECT_EQ(lances[1], "d7d8");
}

// --- En passant ---

TEST_F(Stages, EnPassantClosesThePawnsCapturesOfPawns) {
    for (const Caso& caso : das_duas_cores("k7/8/4p3/2pPp3/8/8/8/7K w - - 0 1", {"d5e6", "d5c6"})) {
        const Cor c = monta_ply(1, caso.fen);
        const std::string de = caso.lances[0].substr(0, 2);
        ply[1].jm_D.p_ah[outra(c)][2] = ply[1].jm_D.p_ah[outra(c)][4] = 1;
        EXPECT_EQ(textos(gera_etapa_da_ply_1(1, de)), caso.lances) << "the pawn on e6 is taken, c6 is empty";
        for (const int K : {5, 4, 3, 2}) {
            EXPECT_EQ(textos(gera_etapa_da_ply_1(K, de)), Textos{}) << K;
        }
    }
}

TEST_F(Stages, EnPassantToTheHigherFileComesFirst) {
    for (const Caso& caso : das_duas_cores("k7/8/8/2pPp3/8/8/8/7K w - - 0 1", {"d5e6", "d5c6"})) {
        const Cor c = monta_ply(1, caso.fen);
        ply[1].jm_D.p_ah[outra(c)][2] = ply[1].jm_D.p_ah[outra(c)][4] = 1;
        EXPECT_EQ(textos(gera_etapa_da_ply_1(1, caso.lances[0].substr(0, 2))), caso.lances);
        ply[1].jm_D.p_ah = {};
        ply[1].jm_D.p_ah[c].fill(1);
        EXPECT_EQ(textos(gera_etapa_da_ply_1(1, caso.lances[0].substr(0, 2))), Textos{}) << "without the flags";
    }
}

TEST_F(Stages, EnPassantIsTriedWithTheCapturesAndAgainWithTheQuietMoves) {
    for (const Caso& caso : das_duas_cores("k7/8/8/3Pp3/8/8/8/7K w - e6 0 1", {"d5e6"})) {
        monta_ply(1, caso.fen);
        const Textos lances = textos(lances_tentados(1));
        EXPECT_EQ(quantos(lances, caso.lances[0]), 2);
        EXPECT_EQ(lances[0], caso.lances[0]);
        EXPECT_EQ(lances[1], caso.lances[0]);
    }
}

TEST_F(Stages, AStoredEnPassantIsLeftToTheQuietMoves) {
    for (const Caso& caso : das_duas_cores("k7/8/8/3Pp3/8/8/8/7K w - e6 0 1", {"d5e6"})) {
        monta_ply(1, caso.fen);
        aag_ddg[1] = lance(caso.lances[0]);
        const std::string de = caso.lances[0].substr(0, 2);
        EXPECT_EQ(textos(gera_etapa_da_ply_1(forma_de_teste, de)), Textos{}) << "its square holds no victim";
        EXPECT_EQ(textos(gera_etapa_da_ply_1(1, de)), Textos{});
        EXPECT_EQ(quantos(textos(lances_tentados(1)), caso.lances[0]), 1);
    }
}

// --- Castling ---

TEST_F(Stages, CastlingClosesTheKingsCapturesOfPawns) {
    for (const Caso& caso : das_duas_cores("6k1/8/8/8/8/8/3p4/R3K2R w KQ - 0 1", {"e1d2"})) {
        monta_ply(1, caso.fen);
        EXPECT_EQ(textos(gera_etapa_da_ply_1(1, caso.lances[0].substr(0, 2))), caso.lances) << "in check by the pawn";
    }
    for (const Caso& caso : das_duas_cores("6k1/8/8/8/8/8/4p3/R3K2R w KQ - 0 1", {"e1e2"})) {
        monta_ply(1, caso.fen);
        EXPECT_EQ(textos(gera_etapa_da_ply_1(1, caso.lances[0].substr(0, 2))), caso.lances) << "d1 and f1 attacked";
    }
    for (const Caso& caso : das_duas_cores("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        const std::string de = caso.lances[0].substr(0, 2);
        EXPECT_EQ(etapa(1, caso.fen, de), caso.lances);
        for (const int K : {5, 4, 3, 2}) {
            EXPECT_EQ(etapa(K, caso.fen, de), Textos{}) << K;
        }
    }
}

TEST_F(Stages, TheCastlingValueIsTenDuringTheRecursionAlone) {
    for (const Caso& caso : das_duas_cores("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        for (const bool teste : {false, true}) {
            for (const std::string& m : caso.lances) {
                const Cor c = monta_ply(1, caso.fen);
                if (teste) {
                    aag_ddg[1] = lance(m);
                }
                roque = {77, 77};
                int vistos = 0;
                const Filhos filhos(1, [&](Lance l) {
                    vistos += texto(l) == m ? 1 : 0;
                    EXPECT_EQ(roque[c], 10);
                    EXPECT_EQ(roque[outra(c)], 77);
                    EXPECT_EQ(tab2[l.destino()], codigo(c, rei)) << "the castled position";
                    EXPECT_EQ(tab2[casa((l.c + 4) / 2, l.d)], codigo(c, torre));
                });
                roda_etapa_da_ply_1(teste ? forma_de_teste : 1, m.substr(0, 2));
                EXPECT_EQ(vistos, 1);
                EXPECT_EQ(roque[c], 0);
            }
        }
    }
}

TEST_F(Stages, AStoredCastlingIsTriedByTheTestFormAndPassedByInItsStage) {
    for (const Caso& caso : das_duas_cores("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        for (const std::size_t i : {0U, 1U}) {
            monta_ply(1, caso.fen);
            aag_ddg[1] = lance(caso.lances[i]);
            const std::string de = caso.lances[0].substr(0, 2);
            EXPECT_EQ(textos(gera_etapa_da_ply_1(forma_de_teste, de)), (Textos{caso.lances[i]}));
            EXPECT_EQ(textos(gera_etapa_da_ply_1(1, de)), (Textos{caso.lances[1 - i]}));
            const Textos lances = textos(lances_tentados(1));
            EXPECT_EQ(lances[0], caso.lances[i]);
            EXPECT_EQ(quantos(lances, caso.lances[i]), 1);
        }
    }
}

TEST_F(Stages, TheKingsLastStageTellsWhetherItsSideIsInCheck) {
    for (const int K : {forma_de_teste, 1}) {
        for (const Caso& caso : das_duas_cores("k7/8/8/8/8/8/8/4K3 w - - 0 1", {"e1"})) {
            monta_ply(1, caso.fen);
            gera_etapa_da_ply_1(K, caso.lances[0]);
            EXPECT_EQ(ply[1].XEQUE_MATE, 0) << K;
        }
        for (const Caso& caso : das_duas_cores("k3r3/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1"})) {
            monta_ply(1, caso.fen);
            aag_ddg[1] = lance(caso.lances[0] == "e1" ? "e1g1" : "e8g8");
            EXPECT_EQ(textos(gera_etapa_da_ply_1(K, caso.lances[0])), Textos{}) << "no castling out of check";
            EXPECT_EQ(ply[1].XEQUE_MATE, 1) << K;
        }
    }
    for (const int K : {5, 4, 3, 2}) {
        monta_ply(1, "k7/8/8/8/8/8/8/4K3 w - - 0 1");
        gera_etapa_da_ply_1(K, "e1");
        EXPECT_EQ(ply[1].XEQUE_MATE, 1) << K;
    }
}

// The king passes through its last stage though it has nothing to take.
TEST_F(Stages, ASideWithoutAnyMoveReachesTheKingsLastStage) {
    for (const Caso& caso : das_duas_cores("8/8/8/8/8/1q6/8/K1k5 w - - 0 1", {"a1"})) {
        monta_ply(1, caso.fen);
        EXPECT_EQ(lances_tentados(1).size(), 0U);
        EXPECT_EQ(ply[1].XEQUE_MATE, 0);
        EXPECT_EQ(ply[1].X_D, 1);
    }
}

TEST_F(Stages, AStalemateByARootMoveHasTheDrawScore) {
    for (const Caso& caso : das_duas_cores("k7/8/1K6/8/8/8/8/2Q5 w - - 0 1", {"c1c7"})) {
        coloca_fen(caso.fen);
        deep = 3;
        emp = -7;
        alfa.fill(inicio_alfa);
        beta.fill(inicio_beta);
        float v = 0;
        sem_relato([&] { v = busca_no(1, lance(caso.lances[0])); });
        EXPECT_EQ(v, -7.0F);
    }
}

// --- The slot ---

TEST_F(Stages, TheStoredCaptureComesFirstWhateverItsVictim) {
    for (const Caso& caso : das_duas_cores("k7/8/2p1q3/1b3r2/3N4/1n6/8/7K w - - 0 1", {"d4c6"})) {
        monta_ply(1, caso.fen);
        aag_ddg[1] = lance(caso.lances[0]);
        const Textos lances = textos(lances_tentados(1));
        EXPECT_EQ(lances[0], caso.lances[0]);
        EXPECT_EQ(quantos(lances, caso.lances[0]), 1);
    }
}

TEST_F(Stages, TheTestFormTriesTheStoredCaptureOfEveryKindOfPieceAlone) {
    const char* fen = "k7/8/4K3/R2q4/2P5/4N3/6B1/3Q4 w - - 0 1";
    for (const Caso& caso : das_duas_cores(fen, {"c4d5", "e3d5", "g2d5", "a5d5", "d1d5", "e6d5"})) {
        for (const std::string& m : caso.lances) {
            monta_ply(1, caso.fen);
            aag_ddg[1] = lance(m);
            EXPECT_EQ(textos(gera_etapa_da_ply_1(forma_de_teste, m.substr(0, 2))), (Textos{m}));
            EXPECT_EQ(textos(gera_etapa_da_ply_1(5, m.substr(0, 2))), Textos{});
            for (const std::string& outro : caso.lances) {
                if (outro != m) {
                    EXPECT_EQ(textos(gera_etapa_da_ply_1(forma_de_teste, outro.substr(0, 2))), Textos{});
                }
            }
        }
    }
}

TEST_F(Stages, AStoredCaptureWhoseTargetHasChangedHandsIsNotTried) {
    for (const char* fen :
         {"k7/8/8/3P4/8/8/8/3R3K w - - 0 1", "k7/8/8/8/8/8/8/3R3K w - - 0 1", "8/8/8/3k4/8/8/8/3R3K w - - 0 1"}) {
        for (const Caso& caso : das_duas_cores(fen, {"d1d5"})) {
            monta_ply(1, caso.fen);
            aag_ddg[1] = lance(caso.lances[0]);
            EXPECT_EQ(textos(gera_etapa_da_ply_1(forma_de_teste, caso.lances[0].substr(0, 2))), Textos{}) << fen;
        }
    }
}

TEST_F(Stages, AStoredCaptureOfAnotherKindOfPieceIsHarmless) {
    const char* fen = "k7/8/8/3q4/8/8/8/3B3K w - - 0 1";
    monta_ply(1, fen);
    const Textos todos = textos(lances_tentados(1));
    for (const char* gaveta : {"d1d5", "a1a8", "a8a7", "h1d5"}) {
        monta_ply(1, fen);
        aag_ddg[1] = lance(gaveta);
        EXPECT_EQ(textos(lances_tentados(1)), todos) << gaveta;
    }
}

// --- Refutation ---

TEST_F(Stages, ARootMoveRefutedInAStageRunsNoOther) {
    for (const Caso& caso :
         das_duas_cores("k5q1/8/8/3p1n2/r3P3/8/8/R5RK w - - 0 1", {"g1g8", "a1a4", "e4f5", "e4d5"})) {
        for (const std::size_t refuta : {0U, 1U, 2U, 3U}) {
            monta_ply(1, caso.fen);
            alfa[0] = 6.0F;
            const Filhos filhos(1, [&](Lance m) { valor_do_filho(1) = texto(m) == caso.lances[refuta] ? 6.0F : 6.5F; });
            roda_ordem(1);
            EXPECT_EQ(filhos.lances(), Textos(caso.lances.begin(), caso.lances.begin() + static_cast<int>(refuta) + 1));
            EXPECT_EQ(corte_alfa[0], 1);
            EXPECT_EQ(texto(aag_ddg[1]), caso.lances[refuta]) << "attacker first";
            EXPECT_EQ(beta[1], 6.0F);
            EXPECT_EQ(ply[1].X_D, 0);
        }
    }
}

TEST_F(Stages, TheLimitOfThePlyRefutesToo) {
    monta_ply(1, "k7/8/8/3q4/8/1B6/8/3R3K w - - 0 1");
    MAXcut.fill(100000.0F);
    MAXcut[1] = 50.0F;
    const auto tentados = [](float v) {
        beta[1] = inicio_beta;
        corte_alfa[0] = 0;
        aag_ddg[1] = nenhum_lance;
        const Filhos filhos(1, [v](Lance) { valor_do_filho(1) = v; });
        roda_etapa_da_ply_1(5, "d1");
        return corte_alfa[0];
    };
    EXPECT_EQ(tentados(-49.0F), 0);
    EXPECT_EQ(tentados(-50.0F), 1);
    EXPECT_EQ(tentados(50.0F), 0);
}

TEST_F(Stages, ARefutedRootMoveHasNoMoreCaptures) {
    const char* fen = "k7/8/4K3/R2q4/2P5/4N3/6B1/3Q4 w - - 0 1";
    for (const char* de : {"c4", "e3", "g2", "a5", "d1", "e6"}) {
        monta_ply(1, fen);
        alfa[0] = 5.0F;
        beta[1] = 5.0F;
        EXPECT_EQ(gera_etapa_da_ply_1(5, de).size(), 0U) << de;
        aag_ddg[1] = lance(std::string(de) + "d5");
        EXPECT_EQ(gera_etapa_da_ply_1(forma_de_teste, de).size(), 0U) << de;
        EXPECT_EQ(ply[1].XEQUE_MATE, 1);
        beta[1] = 5.5F;
        EXPECT_EQ(gera_etapa_da_ply_1(forma_de_teste, de).size(), 1U) << de;
    }
}

TEST_F(Stages, TheTestFormRefutesWithoutStoring) {
    monta_ply(1, "k7/8/8/3q4/8/1B6/8/3R3K w - - 0 1");
    aag_ddg[1] = lance("d1d5");
    alfa[0] = 6.0F;
    const Filhos filhos(1, [](Lance) { valor_do_filho(1) = 6.0F; });
    roda_ordem(1);
    EXPECT_EQ(filhos.lances(), (Textos{"d1d5"}));
    EXPECT_EQ(corte_alfa[0], 1);
}

// --- Promotions of the odd plies ---

constexpr int plies_da_promocao[] = {7, 9, 11, 13, 15, 17, 19, 21, 23};

TEST_F(Promotions, CapturesTowardsTheHigherAndTheLowerFileAndThenThePush) {
    for (const Caso& caso : das_duas_cores("2n1r2k/3P4/8/8/8/8/8/K7 w - - 0 1", {"d7e8", "d7c8", "d7d8"})) {
        for (const int n : plies_da_promocao) {
            const Cor c = monta_ply(n, caso.fen);
            const Filhos filhos(n, [&](Lance m) { EXPECT_EQ(tab2[m.destino()], codigo(c, dama)); });
            roda_promocoes(n, caso.lances[0].substr(0, 2));
            EXPECT_EQ(filhos.lances(), caso.lances) << n;
        }
    }
}

TEST_F(Promotions, OnlyFromTheSeventhRank) {
    for (const auto& [fen, de] :
         {std::pair{"7k/8/3P4/8/8/8/8/K7 w - - 0 1", "d6"}, {"7k/8/8/8/8/8/3P4/K7 w - - 0 1", "d2"}}) {
        for (const Caso& caso : das_duas_cores(fen, {de})) {
            monta_ply(7, caso.fen);
            EXPECT_EQ(gera_promocoes(7, caso.lances[0]).size(), 0U) << caso.fen;
        }
    }
}

TEST_F(Promotions, NoKingNoOwnManAndNothingBeyondTheEdgeIsTaken) {
    for (const auto& [fen, de, lances] : {std::tuple{"2N1k3/3P4/8/8/8/8/8/K7 w - - 0 1", "d7", Textos{"d7d8"}},
                                          {"2nnN2k/3P4/8/8/8/8/8/K7 w - - 0 1", "d7", Textos{"d7c8"}},
                                          {"3N3k/3P4/8/8/8/8/8/K7 w - - 0 1", "d7", Textos{}},
                                          {"nn5k/P7/8/8/8/8/8/K7 w - - 0 1", "a7", Textos{"a7b8"}},
                                          {"k5nn/7P/8/8/8/8/8/K7 w - - 0 1", "h7", Textos{"h7g8"}}}) {
        for (const Caso& caso : das_duas_cores(fen, lances)) {
            const Cor c = monta_ply(9, caso.fen);
            EXPECT_EQ(textos(gera_promocoes(9, c == brancas ? std::string(de) : espelhado(de))), caso.lances)
                << caso.fen;
        }
    }
}

TEST_F(Promotions, IllegalOnesAreDropped) {
    for (const Caso& caso : das_duas_cores("4n3/K2P3r/8/8/8/8/8/7k w - - 0 1", {"d7"})) {
        monta_ply(7, caso.fen);
        EXPECT_EQ(gera_promocoes(7, caso.lances[0]).size(), 0U) << "pinned";
    }
}

TEST_F(Promotions, TheyComeBeforeAllCapturesAndBehindAStoredOne) {
    for (const Caso& caso : das_duas_cores("7k/1P2P3/8/8/q7/8/8/R5K1 w - - 0 1", {"a1a4", "b7b8", "e7e8"})) {
        for (const int n : plies_da_promocao) {
            monta_ply(n, caso.fen);
            Textos lances = textos(lances_tentados(n));
            lances.resize(3);
            EXPECT_EQ(lances, (Textos{caso.lances[1], caso.lances[2], caso.lances[0]})) << n;
            monta_ply(n, caso.fen);
            const Lance m = lance(caso.lances[0]);
            aag_ddg[n] = {m.c, m.d, m.a, m.b};
            lances = textos(lances_tentados(n));
            lances.resize(3);
            EXPECT_EQ(lances, caso.lances) << n;
        }
        for (const int n : {1, 2, 3, 5, 6, 8}) {
            monta_ply(n, caso.fen);
            EXPECT_EQ(textos(lances_tentados(n))[0], caso.lances[0]) << "no stage of their own at ply " << n;
        }
    }
}

TEST_F(Promotions, ACutEndsThemAndStoresNothing) {
    for (const int n : plies_da_promocao) {
        for (int k = n - 1; k >= 0; --k) {
            for (const std::size_t qual : {0U, 1U, 2U}) {
                monta_ply(n, "2n1r2k/3P4/8/8/8/8/8/K7 w - - 0 1");
                const Textos todas{"d7e8", "d7c8", "d7d8"};
                alfa[k] = 6.0F;
                const Filhos filhos(n, [&](Lance m) { valor_do_filho(n) = texto(m) == todas[qual] ? 6.0F : 6.5F; });
                roda_promocoes(n, "d7");
                const bool corta = k % 2 == 0;
                EXPECT_EQ(filhos.lances().size(), corta ? qual + 1 : 3U) << n << ' ' << k;
                EXPECT_EQ(corte_do_no(n), corta ? 1 : 0) << n << ' ' << k;
                EXPECT_EQ(beta[n], 6.0F);
                EXPECT_EQ(ply[n].X_D, 0);
                EXPECT_EQ(aa_dd[n].a, -1);
                EXPECT_EQ(aag_ddg[n].a, -1);
            }
        }
        monta_ply(n, "2n1r2k/3P4/8/8/8/8/8/K7 w - - 0 1");
        MAXcut[n] = 50.0F;
        const Filhos filhos(n, [n](Lance) { valor_do_filho(n) = -50.0F; });
        roda_promocoes(n, "d7");
        EXPECT_EQ(filhos.lances().size(), 1U) << n << ": the limit of the ply";
    }
}

TEST_F(Promotions, AtItsLastPlyOneIsNotEnough) {
    for (const int n : plies_da_promocao) {
        monta_ply(n, "2n1r2k/3P4/8/8/8/8/8/K7 w - - 0 1");
        deep = n;
        EXPECT_EQ(gera_promocoes(n, "d7").size(), 3U) << n;
        EXPECT_EQ(corte_do_no(n), 0) << n;
    }
}

TEST_F(Promotions, TheyAreTriedWhateverTheSlotsHold) {
    for (const int n : plies_da_promocao) {
        monta_ply(n, "2n1r2k/3P4/8/8/8/8/8/K7 w - - 0 1");
        aa_dd[n] = lance("d7d8");
        aag_ddg[n] = lance("e8d7");
        const Textos lances = textos(lances_tentados(n));
        for (const char* m : {"d7e8", "d7c8", "d7d8"}) {
            EXPECT_EQ(quantos(lances, m), 1) << n << m;
        }
    }
}

}  // namespace
