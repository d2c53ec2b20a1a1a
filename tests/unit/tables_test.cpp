// The positional tables, value by value: where each peaks, how it falls off, and which colour's are filled.
#include "support/evaluation.h"

#include "eval/tables.h"
#include "uci/position.h"

#include <gtest/gtest.h>

namespace {

using namespace ondrel;
using namespace tests;

std::array<std::array<IntTable, 2>*, 7> every_table() {
    return {&tables.posix_peao_inici, &tables.posix_peao_medio, &tables.posix_cavalo,  &tables.posix_bispo,
            &tables.posix_torre,      &tables.posix_dama,       &tables.posix_reifinal};
}

class PositionalTables : public ::testing::Test {
protected:
    // The tables of both colours, as two searches leave them.
    void SetUp() override {
        fresh_process();
        place_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
        place_fen("4k3/8/8/8/8/8/8/4K3 b - - 0 1");
    }
};

// A table whose value is `height` over the squared distance to its peak plus 2, cut to an integer.
void expect_peak(const IntTable& table, int height, int peak_file, int peak_rank) {
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            const int d = (f - peak_file) * (f - peak_file) + (r - peak_rank) * (r - peak_rank) + 2;
            EXPECT_EQ(table[square(f, r)], height / d) << "file " << f << " rank " << r;
        }
    }
}

void expect_file(const IntTable& table, int f, const std::array<int, 8>& values) {
    for (int r = 0; r < 8; ++r) {
        EXPECT_EQ(table[square(f, r)], values[r]) << "file " << f << " rank " << r;
    }
}

TEST_F(PositionalTables, OpeningPawnsOfWhitePeakOnE4) {
    expect_peak(tables.posix_peao_inici[white], 10, 4, 3);
    EXPECT_EQ(tables.posix_peao_inici[white][square_of("e4")], 5);
    EXPECT_EQ(tables.posix_peao_inici[white][square_of("d4")], 3);
    EXPECT_EQ(tables.posix_peao_inici[white][square_of("d3")], 2);
    EXPECT_EQ(tables.posix_peao_inici[white][square_of("e2")], 1);
    EXPECT_EQ(tables.posix_peao_inici[white][square_of("a4")], 0);
}
TEST_F(PositionalTables, OpeningPawnsOfBlackPeakOnE5) { expect_peak(tables.posix_peao_inici[black], 10, 4, 4); }
TEST_F(PositionalTables, KnightsOfWhitePeakOnE5) { expect_peak(tables.posix_cavalo[white], 10, 4, 4); }
TEST_F(PositionalTables, KnightsOfBlackPeakOnE4) { expect_peak(tables.posix_cavalo[black], 10, 4, 3); }
TEST_F(PositionalTables, BishopsOfWhitePeakOnD5) { expect_peak(tables.posix_bispo[white], 10, 3, 4); }
TEST_F(PositionalTables, BishopsOfBlackPeakOnD4) { expect_peak(tables.posix_bispo[black], 10, 3, 3); }
TEST_F(PositionalTables, QueensOfWhitePeakOnE6) { expect_peak(tables.posix_dama[white], 10, 4, 5); }
TEST_F(PositionalTables, QueensOfBlackPeakOnE3) { expect_peak(tables.posix_dama[black], 10, 4, 2); }
TEST_F(PositionalTables, BareKingOfWhitePeaksOnE4) { expect_peak(tables.posix_reifinal[white], 500, 4, 3); }
TEST_F(PositionalTables, BareKingOfBlackPeaksOnE5) { expect_peak(tables.posix_reifinal[black], 500, 4, 4); }

TEST_F(PositionalTables, BareKingIsWorth250OnItsPeakAnd14InTheFarCorner) {
    EXPECT_EQ(tables.posix_reifinal[white][square_of("e4")], 250);
    EXPECT_EQ(tables.posix_reifinal[white][square_of("a8")], 14);  // 500 over 16 + 16 + 2
    EXPECT_EQ(tables.posix_reifinal[black][square_of("e5")], 250);
    EXPECT_EQ(tables.posix_reifinal[black][square_of("a1")], 14);
}

TEST_F(PositionalTables, RooksAreAtHomeEverywhere) {
    EXPECT_EQ(tables.posix_torre[white], IntTable{});
    EXPECT_EQ(tables.posix_torre[black], IntTable{});
}

TEST_F(PositionalTables, MiddleGamePawnsCountByTheirRank) {
    for (int f = 0; f < 8; ++f) {
        expect_file(tables.posix_peao_medio[white], f, {0, 0, 0, 1, 2, 5, 12, 25});
        expect_file(tables.posix_peao_medio[black], f, {25, 12, 5, 2, 1, 0, 0, 0});
    }
}

TEST_F(PositionalTables, EndGamePawnsCountLessOnTheEdge) {
    for (const int f : {0, 7}) {
        expect_file(posix_peao_final[white], f, {0, 0, 20, 20, 20, 25, 30, 100});
        expect_file(posix_peao_final[black], f, {100, 30, 25, 20, 20, 20, 0, 0});
    }
    for (int f = 1; f <= 6; ++f) {
        expect_file(posix_peao_final[white], f, {0, 0, 25, 25, 25, 30, 35, 100});
        expect_file(posix_peao_final[black], f, {100, 35, 30, 25, 25, 25, 0, 0});
    }
}

TEST_F(PositionalTables, CentroIsFourTenthsInTheMiddleAndLeastInTheCorner) {
    EXPECT_EQ(centro[square_of("d4")], 0.4F);
    EXPECT_EQ(centro[square_of("e5")], 0.4F);
    EXPECT_EQ(centro[square_of("a1")], static_cast<float>(1.0 / 26.5));
    EXPECT_EQ(centro[square_of("h8")], static_cast<float>(1.0 / 26.5));
    EXPECT_EQ(centro[square_of("c3")], static_cast<float>(1.0 / 6.5));
    EXPECT_EQ(centro[square_of("a4")], static_cast<float>(1.0 / 14.5));
}

TEST_F(PositionalTables, CentrooIsTwentyInTheMiddle) {
    EXPECT_EQ(centroo[square_of("d4")], 20.0F);
    EXPECT_EQ(centroo[square_of("a1")], static_cast<float>(50.0 / 26.5));
    EXPECT_EQ(centroo[square_of("f6")], static_cast<float>(50.0 / 6.5));
    EXPECT_EQ(centroo[square_of("d1")], static_cast<float>(50.0 / 14.5));
}

// Rounded once, from double: fifty times the rounded weight would differ.
TEST_F(PositionalTables, WeightsAreRoundedOnce) {
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            const double d = (f - 3.5) * (f - 3.5) + (r - 3.5) * (r - 3.5) + 2.0;
            EXPECT_TRUE(same_bits(centro[square(f, r)], static_cast<float>(1.0 / d))) << f << ' ' << r;
            EXPECT_TRUE(same_bits(centroo[square(f, r)], static_cast<float>(50.0 / d))) << f << ' ' << r;
        }
    }
}

TEST_F(PositionalTables, PromoGrowsTowardTheColoursLastRank) {
    constexpr std::array<float, 8> from_below{static_cast<float>(1.0 / 100),
                                              static_cast<float>(1.0 / 74),
                                              static_cast<float>(1.0 / 52),
                                              static_cast<float>(1.0 / 34),
                                              static_cast<float>(1.0 / 20),
                                              0.1F,
                                              0.25F,
                                              0.5F};
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            EXPECT_EQ(promo[white][square(f, r)], from_below[r]) << f << ' ' << r;
            EXPECT_EQ(promo[black][square(f, 7 - r)], from_below[r]) << f << ' ' << r;
        }
    }
}

TEST_F(PositionalTables, OfOneColourAreTheOthersMirroredByRank) {
    const auto expect_mirror = [](const std::array<IntTable, 2>& t) {
        for (int f = 0; f < 8; ++f) {
            for (int r = 0; r < 8; ++r) {
                EXPECT_EQ(t[white][square(f, r)], t[black][square(f, 7 - r)]) << f << ' ' << r;
            }
        }
    };
    expect_mirror(posix_peao_final);
    for (const auto* t : every_table()) {
        expect_mirror(*t);
    }
}

class FillingTables : public ::testing::Test {
protected:
    void SetUp() override {
        fresh_process();
        for (auto* t : every_table()) {
            *t = {};
        }
    }
};

// What the first search of a game reads before it fills the rest.
TEST_F(FillingTables, NewGameFillsPawnsAndKnightsOfTheEnginesColour) {
    begin_game(black);
    EXPECT_EQ(tables.posix_peao_inici[black][square_of("e5")], 5);
    EXPECT_EQ(tables.posix_cavalo[black][square_of("e4")], 5);
    EXPECT_EQ(tables.posix_peao_inici[white], IntTable{});
    EXPECT_EQ(tables.posix_cavalo[white], IntTable{});
    EXPECT_EQ(tables.posix_bispo[black], IntTable{});
    EXPECT_EQ(tables.posix_dama[black], IntTable{});
}

TEST_F(FillingTables, EverySearchFillsAllTablesOfItsColour) {
    place_fen("4k3/8/8/8/8/8/8/4K3 b - - 0 1");
    expect_peak(tables.posix_peao_inici[black], 10, 4, 4);
    expect_peak(tables.posix_cavalo[black], 10, 4, 3);
    expect_peak(tables.posix_bispo[black], 10, 3, 3);
    expect_peak(tables.posix_dama[black], 10, 4, 2);
    expect_peak(tables.posix_reifinal[black], 500, 4, 4);
    EXPECT_EQ(tables.posix_peao_medio[black][square_of("a2")], 12);
    for (const auto* t : every_table()) {
        EXPECT_EQ((*t)[white], IntTable{});
    }
}

TEST(Proximidade, IsTheSquaredDistancePlusTwo) {
    EXPECT_EQ(proximidade(square_of("d4"), square_of("d4")), 2);
    EXPECT_EQ(proximidade(square_of("d5"), square_of("d4")), 3);
    EXPECT_EQ(proximidade(square_of("a1"), square_of("h8")), 100);
    EXPECT_EQ(proximidade(square_of("h1"), square_of("f4")), 15);
}

}  // namespace
