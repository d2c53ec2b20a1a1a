// The positional tables, value by value: where each peaks, how it falls off, and which colour's are filled.
#include "support/evaluation.h"

#include "eval/tables.h"
#include "uci/position.h"

#include <gtest/gtest.h>

namespace {

using namespace ondrel;
using namespace teste;

class PositionalTables : public ::testing::Test {
protected:
    // The tables of both colours, as two searches leave them.
    void SetUp() override {
        processo_novo();
        coloca_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
        coloca_fen("4k3/8/8/8/8/8/8/4K3 b - - 0 1");
    }
};

// A table whose value is `altura` over the squared distance to its peak plus 2, cut to an integer.
void espera_pico(const TabelaInteira& tabela, int altura, int pico_f, int pico_r) {
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            const int d = (f - pico_f) * (f - pico_f) + (r - pico_r) * (r - pico_r) + 2;
            EXPECT_EQ(tabela[casa(f, r)], altura / d) << "file " << f << " rank " << r;
        }
    }
}

void espera_fileira(const TabelaInteira& tabela, int f, const std::array<int, 8>& valores) {
    for (int r = 0; r < 8; ++r) {
        EXPECT_EQ(tabela[casa(f, r)], valores[r]) << "file " << f << " rank " << r;
    }
}

TEST_F(PositionalTables, OpeningPawnsOfWhitePeakOnE4) {
    espera_pico(posix_peao_inici[brancas], 10, 4, 3);
    EXPECT_EQ(posix_peao_inici[brancas][casa_de("e4")], 5);
    EXPECT_EQ(posix_peao_inici[brancas][casa_de("d4")], 3);
    EXPECT_EQ(posix_peao_inici[brancas][casa_de("d3")], 2);
    EXPECT_EQ(posix_peao_inici[brancas][casa_de("e2")], 1);
    EXPECT_EQ(posix_peao_inici[brancas][casa_de("a4")], 0);
}
TEST_F(PositionalTables, OpeningPawnsOfBlackPeakOnE5) { espera_pico(posix_peao_inici[pretas], 10, 4, 4); }
TEST_F(PositionalTables, KnightsOfWhitePeakOnE5) { espera_pico(posix_cavalo[brancas], 10, 4, 4); }
TEST_F(PositionalTables, KnightsOfBlackPeakOnE4) { espera_pico(posix_cavalo[pretas], 10, 4, 3); }
TEST_F(PositionalTables, BishopsOfWhitePeakOnD5) { espera_pico(posix_bispo[brancas], 10, 3, 4); }
TEST_F(PositionalTables, BishopsOfBlackPeakOnD4) { espera_pico(posix_bispo[pretas], 10, 3, 3); }
TEST_F(PositionalTables, QueensOfWhitePeakOnE6) { espera_pico(posix_dama[brancas], 10, 4, 5); }
TEST_F(PositionalTables, QueensOfBlackPeakOnE3) { espera_pico(posix_dama[pretas], 10, 4, 2); }
TEST_F(PositionalTables, BareKingOfWhitePeaksOnE4) { espera_pico(posix_reifinal[brancas], 500, 4, 3); }
TEST_F(PositionalTables, BareKingOfBlackPeaksOnE5) { espera_pico(posix_reifinal[pretas], 500, 4, 4); }

TEST_F(PositionalTables, BareKingIsWorth250OnItsPeakAnd14InTheFarCorner) {
    EXPECT_EQ(posix_reifinal[brancas][casa_de("e4")], 250);
    EXPECT_EQ(posix_reifinal[brancas][casa_de("a8")], 14);  // 500 over 16 + 16 + 2
    EXPECT_EQ(posix_reifinal[pretas][casa_de("e5")], 250);
    EXPECT_EQ(posix_reifinal[pretas][casa_de("a1")], 14);
}

TEST_F(PositionalTables, RooksAreAtHomeEverywhere) {
    EXPECT_EQ(posix_torre[brancas], TabelaInteira{});
    EXPECT_EQ(posix_torre[pretas], TabelaInteira{});
}

TEST_F(PositionalTables, MiddleGamePawnsCountByTheirRank) {
    for (int f = 0; f < 8; ++f) {
        espera_fileira(posix_peao_medio[brancas], f, {0, 0, 0, 1, 2, 5, 12, 25});
        espera_fileira(posix_peao_medio[pretas], f, {25, 12, 5, 2, 1, 0, 0, 0});
    }
}

TEST_F(PositionalTables, EndGamePawnsCountLessOnTheEdge) {
    for (const int f : {0, 7}) {
        espera_fileira(posix_peao_final[brancas], f, {0, 0, 20, 20, 20, 25, 30, 100});
        espera_fileira(posix_peao_final[pretas], f, {100, 30, 25, 20, 20, 20, 0, 0});
    }
    for (int f = 1; f <= 6; ++f) {
        espera_fileira(posix_peao_final[brancas], f, {0, 0, 25, 25, 25, 30, 35, 100});
        espera_fileira(posix_peao_final[pretas], f, {100, 35, 30, 25, 25, 25, 0, 0});
    }
}

TEST_F(PositionalTables, CentroIsFourTenthsInTheMiddleAndLeastInTheCorner) {
    EXPECT_EQ(centro[casa_de("d4")], 0.4F);
    EXPECT_EQ(centro[casa_de("e5")], 0.4F);
    EXPECT_EQ(centro[casa_de("a1")], static_cast<float>(1.0 / 26.5));
    EXPECT_EQ(centro[casa_de("h8")], static_cast<float>(1.0 / 26.5));
    EXPECT_EQ(centro[casa_de("c3")], static_cast<float>(1.0 / 6.5));
    EXPECT_EQ(centro[casa_de("a4")], static_cast<float>(1.0 / 14.5));
}

TEST_F(PositionalTables, CentrooIsTwentyInTheMiddle) {
    EXPECT_EQ(centroo[casa_de("d4")], 20.0F);
    EXPECT_EQ(centroo[casa_de("a1")], static_cast<float>(50.0 / 26.5));
    EXPECT_EQ(centroo[casa_de("f6")], static_cast<float>(50.0 / 6.5));
    EXPECT_EQ(centroo[casa_de("d1")], static_cast<float>(50.0 / 14.5));
}

// Rounded once, from double: fifty times the rounded weight would differ.
TEST_F(PositionalTables, WeightsAreRoundedOnce) {
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            const double d = (f - 3.5) * (f - 3.5) + (r - 3.5) * (r - 3.5) + 2.0;
            EXPECT_TRUE(mesmos_bits(centro[casa(f, r)], static_cast<float>(1.0 / d))) << f << ' ' << r;
            EXPECT_TRUE(mesmos_bits(centroo[casa(f, r)], static_cast<float>(50.0 / d))) << f << ' ' << r;
        }
    }
}

TEST_F(PositionalTables, PromoGrowsTowardTheColoursLastRank) {
    constexpr std::array<float, 8> de_baixo{static_cast<float>(1.0 / 100),
                                            static_cast<float>(1.0 / 74),
                                            static_cast<float>(1.0 / 52),
                                            static_cast<float>(1.0 / 34),
                                            static_cast<float>(1.0 / 20),
                                            0.1F,
                                            0.25F,
                                            0.5F};
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            EXPECT_EQ(promo[brancas][casa(f, r)], de_baixo[r]) << f << ' ' << r;
            EXPECT_EQ(promo[pretas][casa(f, 7 - r)], de_baixo[r]) << f << ' ' << r;
        }
    }
}

TEST_F(PositionalTables, OfOneColourAreTheOthersMirroredByRank) {
    const auto espelha = [](const std::array<TabelaInteira, 2>& t) {
        for (int f = 0; f < 8; ++f) {
            for (int r = 0; r < 8; ++r) {
                EXPECT_EQ(t[brancas][casa(f, r)], t[pretas][casa(f, 7 - r)]) << f << ' ' << r;
            }
        }
    };
    espelha(posix_peao_final);
    for (const auto* t : {&posix_peao_inici, &posix_peao_medio, &posix_cavalo, &posix_bispo, &posix_torre, &posix_dama,
                          &posix_reifinal}) {
        espelha(*t);
    }
}

class FillingTables : public ::testing::Test {
protected:
    void SetUp() override {
        processo_novo();
        for (auto* t : {&posix_peao_inici, &posix_peao_medio, &posix_cavalo, &posix_bispo, &posix_torre, &posix_dama,
                        &posix_reifinal}) {
            *t = {};
        }
    }
};

TEST_F(FillingTables, NewGameFillsPawnsKnightsAndWeightsOfTheEnginesColour) {
    nova_partida(pretas);
    EXPECT_EQ(posix_peao_inici[pretas][casa_de("e5")], 5);
    EXPECT_EQ(posix_cavalo[pretas][casa_de("e4")], 5);
    EXPECT_EQ(centro[casa_de("d4")], 0.4F);
    EXPECT_EQ(centroo[casa_de("d4")], 20.0F);
    EXPECT_EQ(promo[brancas][casa_de("a8")], 0.5F);
    EXPECT_EQ(promo[pretas][casa_de("a1")], 0.5F);
}

TEST_F(FillingTables, EverySearchFillsAllTablesOfItsColour) {
    coloca_fen("4k3/8/8/8/8/8/8/4K3 b - - 0 1");
    espera_pico(posix_peao_inici[pretas], 10, 4, 4);
    espera_pico(posix_cavalo[pretas], 10, 4, 3);
    espera_pico(posix_bispo[pretas], 10, 3, 3);
    espera_pico(posix_dama[pretas], 10, 4, 2);
    espera_pico(posix_reifinal[pretas], 500, 4, 4);
    EXPECT_EQ(posix_peao_medio[pretas][casa_de("a2")], 12);
    EXPECT_EQ(centro[casa_de("d4")], 0.4F);
    EXPECT_EQ(promo[brancas][casa_de("a8")], 0.5F);
}

TEST(Proximidade, IsTheSquaredDistancePlusTwo) {
    EXPECT_EQ(proximidade(3, 3, 3, 3), 2);
    EXPECT_EQ(proximidade(3, 4, 3, 3), 3);
    EXPECT_EQ(proximidade(0, 0, 7, 7), 100);
    EXPECT_EQ(proximidade(7, 0, 5, 3), 15);
}

}  // namespace
