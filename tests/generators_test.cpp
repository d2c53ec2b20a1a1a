// The generators of plies 2 to 23: their orders, which are the orders of search, and what they do with each child.
#include "support/engine.h"
#include "support/moves.h"

#include "base/bounds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

namespace {

using namespace teste;
using namespace ondrel;

class Captures : public ::testing::Test {
protected:
    void SetUp() override { processo_novo(); }
};

class QuietMoves : public Captures {};
class CutOffs : public Captures {};

constexpr int plies[] = {2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23};

Textos capturas(int n, std::string_view fen, std::string_view vitima) {
    monta_ply(n, fen);
    return textos(gera_capturas(n, vitima));
}

Textos livres(int n, std::string_view fen, std::string_view casa) {
    monta_ply(n, fen);
    return textos(gera_livres(n, casa));
}

// --- Captures: the order of the attackers ---

TEST_F(Captures, WhitesAttackersComeInTheOrderOfTheRays) {
    const char* fen = "3R4/1QN1NB1k/1N3N2/R2q3R/1NP1PN2/2N1N3/8/3Q2K1 w - - 0 1";
    for (const int n : plies) {
        EXPECT_EQ(capturas(n, fen, "d5"), (Textos{"e4d5", "c4d5", "f7d5", "b7d5", "h5d5", "a5d5", "d8d5", "d1d5",
                                                  "f6d5", "f4d5", "b4d5", "b6d5", "c7d5", "e7d5", "e3d5", "c3d5"}))
            << n;
    }
}

// Black's pawns stand above the victim: the two lower diagonals come last. The other rays and the knights keep their
// order.
TEST_F(Captures, BlacksAttackersComeInTheOrderOfTheRays) {
    const char* fen = "3r2k1/2n1n3/1np1pn2/r2Q3r/1n3n2/2n1n3/1q3b1K/3q4 b - - 0 1";
    for (const int n : plies) {
        EXPECT_EQ(capturas(n, fen, "d5"), (Textos{"e6d5", "c6d5", "h5d5", "a5d5", "d8d5", "d1d5", "f6d5", "f4d5",
                                                  "b4d5", "b6d5", "c7d5", "e7d5", "e3d5", "c3d5"}))
            << n;
    }
    EXPECT_EQ(capturas(2, "6k1/1b3b2/8/3Q4/8/8/1q3b1K/7q b - - 0 1", "d5"), (Textos{"f7d5", "b7d5", "h1d5"}));
    EXPECT_EQ(capturas(2, "6k1/1b3b2/8/3Q4/8/1b3b2/7K/8 b - - 0 1", "d5"), (Textos{"f7d5", "b7d5", "f3d5", "b3d5"}));
    EXPECT_EQ(capturas(2, "6K1/1B3B2/8/3q4/8/1B3B2/7k/8 w - - 0 1", "d5"), (Textos{"f3d5", "b3d5", "f7d5", "b7d5"}));
}

TEST_F(Captures, OfTwoPiecesOfAKindTheOneOnTheEarlierRayComesFirst) {
    EXPECT_EQ(capturas(4, "6k1/8/8/8/Q2p3Q/8/8/6K1 w - - 0 1", "d4"), (Textos{"h4d4", "a4d4"}));
    EXPECT_EQ(capturas(4, "6k1/8/8/3R4/3p4/3R4/8/6K1 w - - 0 1", "d4"), (Textos{"d5d4", "d3d4"}));
    EXPECT_EQ(capturas(4, "6k1/8/8/2Q1Q3/3p4/2Q1Q3/8/1K6 w - - 0 1", "d4"), (Textos{"e3d4", "c3d4", "e5d4", "c5d4"}));
}

TEST_F(Captures, TheKingTakesFromTheFirstStepOfEveryRay) {
    for (const Caso& caso : das_duas_cores("7k/8/8/3p4/8/8/8/8 w - - 0 1", {})) {
        for (const char* de : {"e4", "c4", "e6", "c6", "e5", "c5", "d6", "d4"}) {
            plain::Position p = posicao(caso.fen);
            const bool brancas_jogam = p.white_to_move;
            const std::string aqui = brancas_jogam ? de : espelhado(de);
            p.put(aqui[0] - 'a', aqui[1] - '1', brancas_jogam ? 'K' : 'k');
            const std::string vitima = brancas_jogam ? "d5" : "d4";
            EXPECT_EQ(capturas(5, plain::to_fen(p), vitima), (Textos{aqui + vitima}));
        }
    }
    EXPECT_EQ(capturas(5, "7k/8/8/3p1K2/8/8/8/8 w - - 0 1", "d5"), Textos{}) << "two steps away";
}

TEST_F(Captures, APawnTakesForwardAndFromTheFirstStepOnly) {
    for (const auto& [fen, esperados] : {std::pair{"7k/8/8/3p4/4P3/8/8/K7 w - - 0 1", Textos{"e4d5"}},
                                         {"7k/8/4P3/3p4/8/8/8/K7 w - - 0 1", Textos{}},
                                         {"7k/8/8/3p4/3P4/8/8/K7 w - - 0 1", Textos{}},
                                         {"7k/8/8/3pP3/8/8/8/K7 w - - 0 1", Textos{}},
                                         {"7k/8/8/3p4/8/5P2/8/K7 w - - 0 1", Textos{}}}) {
        for (const Caso& caso : das_duas_cores(fen, esperados)) {
            const bool brancas_jogam = posicao(caso.fen).white_to_move;
            EXPECT_EQ(capturas(4, caso.fen, brancas_jogam ? "d5" : "d4"), caso.lances) << caso.fen;
        }
    }
}

// The ray ends at the first man, attacker or not.
TEST_F(Captures, AMenBehindAnotherIsNotSeen) {
    EXPECT_EQ(capturas(4, "6k1/8/8/3p4/8/3Q4/8/3R2K1 w - - 0 1", "d5"), (Textos{"d3d5"}));
    EXPECT_EQ(capturas(4, "6k1/8/8/3p4/8/3N4/8/3R2K1 w - - 0 1", "d5"), Textos{});
    EXPECT_EQ(capturas(4, "6k1/8/8/3p4/3n4/8/8/3R2K1 w - - 0 1", "d5"), Textos{});
    EXPECT_EQ(capturas(4, "6k1/8/4P3/3p4/8/8/B7/6K1 w - - 0 1", "d5"), (Textos{"a2d5"}));
    EXPECT_EQ(capturas(4, "6k1/5B2/4P3/3p4/8/8/8/6K1 w - - 0 1", "d5"), Textos{}) << "behind the own pawn";
    EXPECT_EQ(capturas(4, "6k1/8/8/3p4/4P3/5B2/8/6K1 w - - 0 1", "d5"), (Textos{"e4d5"}));
}

TEST_F(Captures, BishopsTakeAlongDiagonalsAndRooksAlongLinesOnly) {
    EXPECT_EQ(capturas(4, "6k1/8/8/3p3B/8/8/8/3B2K1 w - - 0 1", "d5"), Textos{});
    EXPECT_EQ(capturas(4, "6k1/5R2/8/3p4/8/1R6/8/6K1 w - - 0 1", "d5"), Textos{});
}

TEST_F(Captures, IllegalOnesAreDroppedAndTheWalkGoesOn) {
    nodes = 0;
    EXPECT_EQ(capturas(4, "6k1/8/8/3p4/8/3R1B2/8/4rK2 w - - 0 1", "d5"), Textos{}) << "in check by the rook";
    EXPECT_EQ(nodes, 0U);
    EXPECT_EQ(capturas(4, "5rk1/8/8/3p4/8/3R1B2/8/5K2 w - - 0 1", "d5"), (Textos{"d3d5"})) << "the bishop is pinned";
    EXPECT_EQ(capturas(4, "3r2k1/8/8/3p4/4K3/8/8/3R4 w - - 0 1", "d5"), (Textos{"d1d5"})) << "the pawn is defended";
}

TEST_F(Captures, EnPassantIsNotAmongThem) {
    EXPECT_EQ(capturas(4, "6k1/8/8/3Pp3/8/8/8/6K1 w - e6 0 1", "e5"), Textos{});
}

// --- Captures: the pawn on the seventh rank ---

TEST_F(Captures, APawnOnTheSeventhRankTakesAtPliesTwoToSixAndAtEvenPlies) {
    for (const Caso& caso : das_duas_cores("3r2k1/4P3/8/8/8/8/8/6K1 w - - 0 1", {"e7d8"})) {
        const std::string vitima = caso.lances[0].substr(2);
        for (const int n : plies) {
            const bool ausente = n % 2 == 1 && n >= 7;
            EXPECT_EQ(capturas(n, caso.fen, vitima), ausente ? Textos{} : caso.lances) << n;
        }
    }
}

TEST_F(Captures, AtOddPliesFromSevenOnThatPawnEndsItsRay) {
    for (const Caso& caso : das_duas_cores("3r2k1/4P3/5B2/8/8/8/8/6K1 w - - 0 1", {})) {
        for (const int n : {7, 9, 23}) {
            EXPECT_EQ(capturas(n, caso.fen, posicao(caso.fen).white_to_move ? "d8" : "d1"), Textos{}) << n;
        }
    }
}

// --- Captures: victims ---

TEST_F(Captures, TheMostValuableVictimComesFirstAndTheKingNever) {
    const char* fen = "k7/8/1q3p2/2r1b3/3N4/1n3p2/2b1n3/7K w - - 0 1";
    for (const int n : {2, 3, 6, 7, 8}) {
        monta_ply(n, fen);
        Textos lances = textos(lances_tentados(n));
        lances.resize(3);
        EXPECT_EQ(lances, (Textos{"d4b3", "d4e2", "d4c2"})) << "knights before the bishop, ply " << n;
    }
    for (const Caso& caso : das_duas_cores("7k/5p2/8/q3r2n/8/2b5/8/R3R2K w - - 0 1", {"a1a5", "e1e5"})) {
        for (const int n : {2, 3, 6, 7, 8}) {
            monta_ply(n, caso.fen);
            Textos lances = textos(lances_tentados(n));
            lances.resize(2);
            EXPECT_EQ(lances, caso.lances) << n;
        }
    }
    // White to move with Black's king attacked: no such position arises, and no victim is made of it.
    monta_ply(4, "R3k3/8/8/8/8/8/8/6K1 w - - 0 1");
    EXPECT_EQ(quantos(textos(lances_tentados(4)), "a8e8"), 0);
}

TEST_F(Captures, VictimsOfAKindAreVisitedByFileAndThenByRank) {
    monta_ply(4, "7k/8/5p2/1p6/3N4/1p3p2/2p1p3/7K w - - 0 1");
    Textos lances = textos(lances_tentados(4));
    lances.resize(4);
    EXPECT_EQ(lances, (Textos{"d4b3", "d4b5", "d4c2", "d4e2"}));
}

// --- Captures: the slot ---

TEST_F(Captures, TheFullFormPassesTheStoredOneByAndTheTestFormTriesItAlone) {
    for (const int n : plies) {
        monta_ply(n, "6k1/8/8/3q4/4P3/1B3N2/3R4/6K1 w - - 0 1");
        aag_ddg[n] = lance("d5b3");
        EXPECT_EQ(textos(gera_capturas(n, "d5")), (Textos{"e4d5", "d2d5"})) << n;
        EXPECT_EQ(textos(gera_capturas(n, "d5", true)), (Textos{"b3d5"})) << n;
        EXPECT_EQ(texto(aag_ddg[n]), "d5b3");
    }
}

TEST_F(Captures, AStoredCaptureThatDoesNotFitTheBoardIsPassedByWithoutHarm) {
    const char* fen = "6k1/8/8/3q4/4P3/1B3N2/3R4/6K1 w - - 0 1";
    monta_ply(4, fen);
    const Textos todos = textos(lances_tentados(4));
    for (const char* gaveta : {"d5h1", "a1b3", "g8b3", "d5g8", "e4d5", "f3d5", "d5f3"}) {
        monta_ply(4, fen);
        aag_ddg[4] = lance(gaveta);
        EXPECT_EQ(textos(lances_tentados(4)), todos) << gaveta;
        EXPECT_EQ(texto(aag_ddg[4]), gaveta);
    }
}

TEST_F(Captures, AStoredCaptureThatFitsComesFirstAndOnce) {
    for (const Caso& caso : das_duas_cores("6k1/8/8/3q4/4P3/1B3N2/3R4/6K1 w - - 0 1", {"d2d5"})) {
        for (const int n : {2, 3, 6, 7, 8, 9}) {
            monta_ply(n, caso.fen);
            const Lance m = lance(caso.lances[0]);
            aag_ddg[n] = {m.c, m.d, m.a, m.b};
            const Textos lances = textos(lances_tentados(n));
            EXPECT_EQ(lances.front(), caso.lances[0]) << n;
            EXPECT_EQ(quantos(lances, caso.lances[0]), 1) << n;
        }
    }
}

// --- Quiet moves: the orders ---

struct Ordem {
    const char* fen;
    const char* casa;
    Textos lances;
};

// The kings are out of the way, and the steps are those of the board, not of the colour.
const Ordem ordens[] = {
    {"7k/8/8/8/3N4/8/8/7K w - - 0 1", "d4", {"d4f5", "d4f3", "d4b3", "d4b5", "d4c6", "d4e6", "d4e2", "d4c2"}},
    {"7k/8/8/8/2B5/8/8/7K w - - 0 1",
     "c4",
     {"c4d5", "c4e6", "c4f7", "c4g8", "c4d3", "c4e2", "c4f1", "c4b3", "c4a2", "c4b5", "c4a6"}},
    {"7k/8/8/8/3R4/8/8/7K w - - 0 1",
     "d4",
     {"d4e4", "d4f4", "d4g4", "d4h4", "d4c4", "d4b4", "d4a4", "d4d5", "d4d6", "d4d7", "d4d8", "d4d3", "d4d2", "d4d1"}},
    {"7k/8/8/8/2Q5/8/8/7K w - - 0 1", "c4", {"c4d4", "c4e4", "c4f4", "c4g4", "c4h4", "c4b4", "c4a4", "c4c5", "c4c6",
                                             "c4c7", "c4c8", "c4c3", "c4c2", "c4c1", "c4d5", "c4e6", "c4f7", "c4g8",
                                             "c4d3", "c4e2", "c4f1", "c4b3", "c4a2", "c4b5", "c4a6"}},
    {"7k/8/8/8/3K4/8/8/8 w - - 0 1", "d4", {"d4e4", "d4c4", "d4d5", "d4d3", "d4c3", "d4e5", "d4c5", "d4e3"}},
};

TEST_F(QuietMoves, EachPieceHasItsOrderTheNearestSquareFirst) {
    for (const Ordem& o : ordens) {
        for (int n = 1; n <= 23; ++n) {
            EXPECT_EQ(livres(n, o.fen, o.casa), o.lances) << n;
        }
    }
}

TEST_F(QuietMoves, BlacksPiecesHaveTheSameOrder) {
    for (const Ordem& o : ordens) {
        // The colours exchanged, the squares kept.
        std::string fen = o.fen;
        const std::size_t fim_do_campo = fen.find(' ');
        for (std::size_t i = 0; i < fim_do_campo; ++i) {
            const char x = fen[i];
            if (x >= 'a' && x <= 'z') {
                fen[i] = static_cast<char>(x - 'a' + 'A');
            } else if (x >= 'A' && x <= 'Z') {
                fen[i] = static_cast<char>(x - 'A' + 'a');
            }
        }
        fen[fim_do_campo + 1] = 'b';
        for (const int n : {1, 2, 3, 8, 9}) {
            EXPECT_EQ(livres(n, fen, o.casa), o.lances) << n << ' ' << fen;
        }
    }
}

TEST_F(QuietMoves, ARayEndsAtTheFirstManAndNothingIsTaken) {
    for (const Caso& caso : das_duas_cores("7k/8/3p4/8/1P1R1n2/8/3K4/8 w - - 0 1", {"d4e4", "d4c4", "d4d5", "d4d3"})) {
        for (const int n : {1, 2, 3, 8, 9}) {
            const std::string de = caso.lances[0].substr(0, 2);
            EXPECT_EQ(em_ordem(livres(n, caso.fen, de)), em_ordem(caso.lances)) << n;
        }
    }
    EXPECT_EQ(em_ordem(livres(4, "7k/8/2p1P3/5n2/3N4/8/8/K7 w - - 0 1", "d4")),
              (Textos{"d4b3", "d4b5", "d4c2", "d4e2", "d4f3"}));
}

TEST_F(QuietMoves, AKingsStepToAnOccupiedSquareIsNone) {
    EXPECT_EQ(livres(4, "7k/8/8/2ppp3/2PKP3/2PPP3/8/8 w - - 0 1", "d4"), Textos{});
    EXPECT_EQ(livres(4, "7k/8/8/3p4/3K4/3P4/8/8 w - - 0 1", "d4"), (Textos{"d4c3", "d4e5", "d4c5", "d4e3"}));
}

TEST_F(QuietMoves, IllegalOnesAreDropped) {
    EXPECT_EQ(em_ordem(livres(4, "4r2k/8/8/8/4R3/8/8/4K3 w - - 0 1", "e4")),
              (Textos{"e4e2", "e4e3", "e4e5", "e4e6", "e4e7"}));
}

// --- Quiet moves: pawns ---

TEST_F(QuietMoves, TheDoubleStepComesBeforeTheSingleOne) {
    for (const Caso& caso : das_duas_cores("7k/8/8/8/8/8/3P4/K7 w - - 0 1", {"d2d4", "d2d3"})) {
        for (int n = 1; n <= 23; ++n) {
            EXPECT_EQ(livres(n, caso.fen, caso.lances[0].substr(0, 2)), caso.lances) << n;
        }
    }
}

TEST_F(QuietMoves, APawnDoesNotJump) {
    for (const Caso& caso : das_duas_cores("7k/8/8/8/3n4/8/3P4/K7 w - - 0 1", {"d2d3"})) {
        EXPECT_EQ(livres(4, caso.fen, caso.lances[0].substr(0, 2)), caso.lances);
    }
    for (const Caso& caso : das_duas_cores("7k/8/8/8/8/3n4/3P4/K7 w - - 0 1", {"d2d3"})) {
        EXPECT_EQ(livres(4, caso.fen, caso.lances[0].substr(0, 2)), Textos{});
    }
}

TEST_F(QuietMoves, OnlyFromItsOwnRankAPawnStepsTwice) {
    for (const Caso& caso : das_duas_cores("7k/8/8/8/8/3P4/8/K7 w - - 0 1", {"d3d4"})) {
        EXPECT_EQ(livres(4, caso.fen, caso.lances[0].substr(0, 2)), caso.lances);
    }
}

TEST_F(QuietMoves, EnPassantComesBeforeThePush) {
    for (const Caso& caso : das_duas_cores("7k/8/8/3Pp3/8/8/8/K7 w - e6 0 1", {"d5e6", "d5d6"})) {
        for (int n = 1; n <= 23; ++n) {
            EXPECT_EQ(livres(n, caso.fen, caso.lances[0].substr(0, 2)), caso.lances) << n;
        }
    }
}

TEST_F(QuietMoves, EnPassantToTheHigherFileComesFirst) {
    for (const Caso& caso : das_duas_cores("7k/8/8/2pPp3/8/8/8/K7 w - e6 0 1", {"d5e6", "d5c6", "d5d6"})) {
        for (const int n : {1, 2, 3, 8, 9}) {
            const Cor c = monta_ply(n, caso.fen);
            ply[n].jm_D.p_ah[outra(c)][2] = 1;
            EXPECT_EQ(textos(gera_livres(n, caso.lances[0].substr(0, 2))), caso.lances) << n;
        }
    }
}

TEST_F(QuietMoves, EnPassantNeedsTheFlagTheRankAndAnEmptySquare) {
    const auto tentados = [](const Caso& caso, auto marca) {
        const Cor c = monta_ply(4, caso.fen);
        marca(ply[4].jm_D.p_ah, c);
        return textos(gera_livres(4, caso.lances[0].substr(0, 2)));
    };
    for (const Caso& caso : das_duas_cores("7k/8/8/2pPp3/8/8/8/K7 w - - 0 1", {"d5d6"})) {
        EXPECT_EQ(tentados(caso, [](auto&, Cor) {}), caso.lances);
        EXPECT_EQ(tentados(caso, [](auto& p, Cor c) { p[c].fill(1); }), caso.lances) << "the own colour's flags";
        EXPECT_EQ(tentados(caso, [](auto& p, Cor c) { p[outra(c)][3] = p[outra(c)][5] = 1; }), caso.lances)
            << "other files";
    }
    for (const Caso& caso : das_duas_cores("7k/8/2r1n3/2pPp3/8/8/8/K7 w - - 0 1", {"d5d6"})) {
        EXPECT_EQ(tentados(caso, [](auto& p, Cor c) { p[outra(c)].fill(1); }), caso.lances) << "occupied";
    }
    for (const Caso& caso : das_duas_cores("7k/8/8/8/2pPp3/8/8/K7 w - - 0 1", {"d4d5"})) {
        EXPECT_EQ(tentados(caso, [](auto& p, Cor c) { p[outra(c)].fill(1); }), caso.lances) << "another rank";
    }
}

TEST_F(QuietMoves, EnPassantOfTheEdgeFilesStaysOnTheBoard) {
    for (const Caso& caso : das_duas_cores("7k/8/8/Pp6/8/8/8/K7 w - b6 0 1", {"a5b6", "a5a6"})) {
        const Cor c = monta_ply(4, caso.fen);
        ply[4].jm_D.p_ah[outra(c)].fill(1);
        EXPECT_EQ(textos(gera_livres(4, caso.lances[0].substr(0, 2))), caso.lances);
    }
    for (const Caso& caso : das_duas_cores("k7/8/8/6pP/8/8/8/K7 w - g6 0 1", {"h5g6", "h5h6"})) {
        const Cor c = monta_ply(4, caso.fen);
        ply[4].jm_D.p_ah[outra(c)].fill(1);
        EXPECT_EQ(textos(gera_livres(4, caso.lances[0].substr(0, 2))), caso.lances);
    }
}

TEST_F(QuietMoves, ThePushToTheLastRankIsLeftOutAtOddPliesFromSevenOn) {
    for (const Caso& caso : das_duas_cores("7k/3P4/8/8/8/8/8/K7 w - - 0 1", {"d7d8"})) {
        for (int n = 1; n <= 23; ++n) {
            const bool ausente = n % 2 == 1 && n >= 7;
            EXPECT_EQ(livres(n, caso.fen, caso.lances[0].substr(0, 2)), ausente ? Textos{} : caso.lances) << n;
        }
    }
}

TEST_F(QuietMoves, PromotionIsToAQueen) {
    for (const Caso& caso : das_duas_cores("7k/3P4/8/8/8/8/8/K7 w - - 0 1", {"d7d8"})) {
        const Cor c = monta_ply(4, caso.fen);
        const Filhos filhos(4, [&](Lance m) { EXPECT_EQ(tab2[m.destino()], codigo(c, dama)); });
        roda_livres(4, caso.lances[0].substr(0, 2));
        EXPECT_EQ(filhos.lances(), caso.lances);
    }
}

TEST_F(QuietMoves, PawnsAreVisitedByFileAndTheMostAdvancedFirst) {
    for (const Caso& caso : das_duas_cores("7k/8/1P6/1p2P3/1P6/4P3/8/K7 w - - 0 1", {"b6b7", "e5e6", "e3e4"})) {
        for (const int n : {1, 2, 3, 8, 9}) {
            monta_ply(n, caso.fen);
            Textos lances = textos(lances_tentados(n));
            lances.resize(3);
            EXPECT_EQ(lances, caso.lances) << n;
        }
    }
}

TEST_F(QuietMoves, PiecesAreVisitedInTheirOrder) {
    for (const Caso& caso : das_duas_cores("7k/8/8/8/8/8/7P/KQRBN3 w - - 0 1", {})) {
        for (const int n : {1, 2, 3, 8, 9}) {
            monta_ply(n, caso.fen);
            std::string colunas;
            for (const std::string& m : textos(lances_tentados(n))) {
                if (colunas.empty() || colunas.back() != m[0]) {
                    colunas += m[0];
                }
            }
            EXPECT_EQ(colunas, "hedcba") << "pawn, knight, bishop, rook, queen, king";
        }
    }
}

TEST_F(QuietMoves, PiecesOfAKindAreVisitedByFileAndThenByRank) {
    for (const int n : {1, 2, 3, 8, 9}) {
        monta_ply(n, "k7/8/3N4/6N1/1N6/8/3N4/6K1 w - - 0 1");
        std::string casas;
        for (const std::string& m : textos(lances_tentados(n))) {
            if (!casas.ends_with(m.substr(0, 2))) {
                casas += m.substr(0, 2);
            }
        }
        EXPECT_EQ(casas, "b4d2d6g5g1");
    }
}

// --- Quiet moves: castling ---

TEST_F(QuietMoves, CastlingComesBeforeTheKingsSteps) {
    for (const Caso& caso : das_duas_cores("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        const bool brancas_jogam = posicao(caso.fen).white_to_move;
        Textos esperados = caso.lances;
        for (const char* m : {"e1f1", "e1d1", "e1e2", "e1f2", "e1d2"}) {
            esperados.push_back(brancas_jogam ? m : espelhado(m));
        }
        if (brancas_jogam) {
            esperados = {"e1g1", "e1c1", "e1f1", "e1d1", "e1e2", "e1f2", "e1d2"};
        } else {
            esperados = {"e8g8", "e8c8", "e8f8", "e8d8", "e8e7", "e8d7", "e8f7"};
        }
        for (const int n : plies) {
            EXPECT_EQ(livres(n, caso.fen, brancas_jogam ? "e1" : "e8"), esperados) << n;
        }
    }
}

TEST_F(QuietMoves, ThePliesCastlingValueStandsDuringTheRecursionAlone) {
    const int valor_da_ply[] = {0, 10, 9, 9, 8, 8, 7, 7, 6, 6, 5, 5, 4, 4, 3, 3, 2, 2, 2, 2, 2, 2, 2, 2};
    for (const Caso& caso : das_duas_cores("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        for (const int n : plies) {
            for (const bool teste : {false, true}) {
                for (const std::string& m : caso.lances) {
                    const Cor c = monta_ply(n, caso.fen);
                    if (teste) {
                        aa_dd[n] = lance(m);
                    }
                    roque = {77, 77};
                    int vistos = 0;
                    const Filhos filhos(n, [&](Lance l) {
                        if (texto(l) == m) {
                            ++vistos;
                            EXPECT_EQ(roque[c], valor_da_ply[n]) << n;
                            EXPECT_EQ(roque[outra(c)], 77) << "the other colour's is left alone";
                        } else if (l.origem() == casa(4, fila(c, 0)) && std::abs(l.c - l.a) != 2) {
                            EXPECT_EQ(roque[c], 0);
                        }
                    });
                    roda_livres(n, c == brancas ? "e1" : "e8", teste);
                    EXPECT_EQ(vistos, 1) << n << m << teste;
                    EXPECT_EQ(roque[c], 0) << n;
                }
            }
        }
    }
}

TEST_F(QuietMoves, TheKingsWalkTellsWhetherItsSideIsInCheck) {
    for (const bool teste : {false, true}) {
        for (const Caso& caso : das_duas_cores("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1"})) {
            for (int n = 1; n <= 23; ++n) {
                monta_ply(n, caso.fen);
                aa_dd[n] = lance("a1a2");
                gera_livres(n, caso.lances[0], teste);
                EXPECT_EQ(ply[n].XEQUE_MATE, 0) << n << teste;
            }
        }
        for (const Caso& caso : das_duas_cores("4r1k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1"})) {
            for (int n = 1; n <= 23; ++n) {
                monta_ply(n, caso.fen);
                gera_livres(n, caso.lances[0], teste);
                EXPECT_EQ(ply[n].XEQUE_MATE, 1) << n << teste;
            }
        }
    }
}

TEST_F(QuietMoves, OtherPiecesWalksDoNotTell) {
    monta_ply(4, "6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    gera_livres(4, "a1");
    EXPECT_EQ(ply[4].XEQUE_MATE, 1);
}

TEST_F(QuietMoves, ASideInCheckDoesNotCastle) {
    for (const Caso& caso : das_duas_cores("4r1k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        for (const int n : plies) {
            const Textos lances = livres(n, caso.fen, caso.lances[0].substr(0, 2));
            EXPECT_EQ(quantos(lances, caso.lances[0]) + quantos(lances, caso.lances[1]), 0) << n;
            monta_ply(n, caso.fen);
            aa_dd[n] = lance(caso.lances[0]);
            EXPECT_EQ(gera_livres(n, caso.lances[0].substr(0, 2), true).size(), 0U) << n;
        }
    }
}

TEST_F(QuietMoves, AStoredCastlingIsTriedByTheTestFormAndPassedByInTheWalk) {
    for (const Caso& caso : das_duas_cores("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        for (const std::string& m : caso.lances) {
            for (const int n : {2, 3, 8, 9, 23}) {
                monta_ply(n, caso.fen);
                aa_dd[n] = lance(m);
                EXPECT_EQ(textos(gera_livres(n, m.substr(0, 2), true)), (Textos{m})) << n;
                EXPECT_EQ(quantos(textos(gera_livres(n, m.substr(0, 2))), m), 0) << n;
            }
        }
    }
}

TEST_F(QuietMoves, AtPlyOneTheKingsWalkHasNoCastling) {
    for (const Caso& caso : das_duas_cores("6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        const Textos lances = livres(1, caso.fen, caso.lances[0].substr(0, 2));
        EXPECT_EQ(lances.size(), 5U);
        EXPECT_EQ(quantos(lances, caso.lances[0]) + quantos(lances, caso.lances[1]), 0);
    }
}

// --- Quiet moves: the slot ---

TEST_F(QuietMoves, AStoredMoveComesBeforeTheWalkAndOnce) {
    for (const Caso& caso :
         das_duas_cores("7k/8/3p4/8/1P1R1n2/4P3/3K4/8 w - - 0 1", {"d4d3", "e3f4", "d4f4", "d4d6"})) {
        for (const int n : {1, 2, 3, 6, 7, 8}) {
            monta_ply(n, caso.fen);
            aa_dd[n] = lance(caso.lances[0]);
            const Textos lances = textos(lances_tentados(n));
            EXPECT_EQ(quantos(lances, caso.lances[0]), 1) << n;
            EXPECT_EQ(lances[3], caso.lances[0]) << n << ": behind the three captures";
        }
    }
}

TEST_F(QuietMoves, TheTestFormTriesTheStoredMoveAlone) {
    for (const Ordem& o : ordens) {
        for (const int n : {1, 2, 3, 8, 9}) {
            for (const std::string& m : o.lances) {
                monta_ply(n, o.fen);
                aa_dd[n] = lance(m);
                EXPECT_EQ(textos(gera_livres(n, o.casa, true)), (Textos{m})) << n;
                Textos outros = o.lances;
                outros.erase(std::find(outros.begin(), outros.end(), m));
                EXPECT_EQ(textos(gera_livres(n, o.casa)), outros) << n;
            }
        }
    }
}

TEST_F(QuietMoves, AStoredMoveOfAnotherKindOfPieceIsHarmless) {
    const char* fen = "7k/8/8/8/3N4/8/8/7K w - - 0 1";
    monta_ply(4, fen);
    const Textos todos = textos(lances_tentados(4));
    for (const char* gaveta : {"d4d8", "d4g7", "d4d5", "d4h8", "h8g8", "a1a2", "d4d4"}) {
        monta_ply(4, fen);
        aa_dd[4] = lance(gaveta);
        EXPECT_EQ(textos(lances_tentados(4)), todos) << gaveta;
    }
}

TEST_F(QuietMoves, AtPlyOneARefutedRootMoveHasNoMoreReplies) {
    for (const Ordem& o : ordens) {
        for (const bool teste : {false, true}) {
            monta_ply(1, o.fen);
            aa_dd[1] = lance(o.lances[0]);
            alfa[0] = 5.0F;
            beta[1] = 5.0F;
            EXPECT_EQ(gera_livres(1, o.casa, teste).size(), 0U);
            EXPECT_EQ(ply[1].XEQUE_MATE, 1);
            beta[1] = 5.5F;
            EXPECT_GT(gera_livres(1, o.casa, teste).size(), 0U);
        }
    }
}

// --- The bound ---

TEST_F(CutOffs, TheBestChildMakesTheBoundOfThePly) {
    const float valores[] = {3.0F, -2.0F, 7.0F, 7.0F, -5.0F};
    for (const int n : plies) {
        for (const bool capturar : {false, true}) {
            monta_ply(n, capturar ? "3R4/8/8/R2q3R/4P3/8/3R4/6K1 w - - 0 1" : "7k/8/8/8/3N4/8/8/7K w - - 0 1");
            std::size_t i = 0;
            const Filhos filhos(n, [&](Lance) { valor_do_filho(n) = valores[i++ % 5]; });
            capturar ? roda_capturas(n, "d5") : roda_livres(n, "d4");
            EXPECT_GE(i, 5U);
            EXPECT_EQ(valor_do_no(n), n % 2 == 0 ? 7.0F : -5.0F) << n;
            EXPECT_EQ(ply[n].X_D, 0) << n;
            EXPECT_EQ(corte_do_no(n), 0) << n;
        }
    }
}

TEST_F(CutOffs, WithoutAnImprovementThePlyHasShownNoReply) {
    for (const int n : plies) {
        monta_ply(n, "7k/8/8/8/3N4/8/8/7K w - - 0 1");
        valor_do_no(n) = 4.0F;
        const Filhos filhos(n, [n](Lance) { valor_do_filho(n) = 4.0F; });  // as good is no improvement
        roda_livres(n, "d4");
        EXPECT_EQ(filhos.lances().size(), 8U);
        EXPECT_EQ(ply[n].X_D, 1) << n;
        EXPECT_EQ(valor_do_no(n), 4.0F);
    }
}

TEST_F(CutOffs, IllegalCandidatesLeaveThePlyWithoutReply) {
    for (const int n : plies) {
        monta_ply(n, "5rk1/8/8/3p4/8/5B2/8/5K2 w - - 0 1");
        const Filhos filhos(n, [n](Lance) { valor_do_filho(n) = 0.0F; });
        roda_capturas(n, "d5");
        roda_livres(n, "f3");
        EXPECT_EQ(filhos.lances().size(), 0U) << n;
        EXPECT_EQ(ply[n].X_D, 1) << n;
    }
}

// --- Cut-offs: the chain ---

enum Gerador { captura, captura_teste, livre_, livre_teste };

// How many of the first generator's moves are tried, the children being worth v; and whether its flag was set.
struct Corrida {
    std::size_t tentados;
    bool cortou;
    std::string gaveta;
};

Corrida corre(int n, Gerador g, float v) {
    const bool de_captura = g == captura || g == captura_teste;
    const bool teste = g == captura_teste || g == livre_teste;
    aa_dd[n] = aag_ddg[n] = nenhum_lance;
    if (teste) {
        (de_captura ? aag_ddg : aa_dd)[n] = lance(de_captura ? "d5e4" : "d2d4");
    }
    valor_do_no(n) = n % 2 == 0 ? inicio_alfa : inicio_beta;
    corte_do_no(n) = 0;
    const Filhos filhos(n, [&](Lance) { valor_do_filho(n) = v; });
    de_captura ? roda_capturas(n, "d5", teste) : roda_livres(n, "d2", teste);
    return {filhos.lances().size(), corte_do_no(n) != 0, texto(de_captura ? aag_ddg[n] : aa_dd[n])};
}

// Two captures of the queen, and a rook with quiet moves.
const char* const alvo = "7k/8/8/3q4/4P3/1B6/3R4/6K1 w - - 0 1";

// A value that crosses the bound of any ancestor of the other side ends the node.
TEST_F(CutOffs, EveryAncestorOfTheOtherSideCuts) {
    for (const int n : plies) {
        for (const Gerador g : {captura, captura_teste, livre_, livre_teste}) {
            for (int k = n - 1; k >= 0; --k) {
                monta_ply(n, alvo);
                const bool do_outro_lado = (n - k) % 2 == 1;
                // Just reached; the plies between are open.
                (n % 2 == 0 ? beta : alfa)[k] = 6.0F;
                EXPECT_EQ(corre(n, g, 6.0F).cortou, do_outro_lado) << n << ' ' << k << ' ' << g;
                EXPECT_FALSE(corre(n, g, n % 2 == 0 ? 5.75F : 6.25F).cortou) << n << ' ' << k << ' ' << g;
                EXPECT_EQ(corre(n, g, n % 2 == 0 ? 6.25F : 5.75F).cortou, do_outro_lado) << n << ' ' << k << ' ' << g;
            }
        }
    }
}

TEST_F(CutOffs, TheOwnLimitOfThePlyCuts) {
    for (const int n : plies) {
        for (const Gerador g : {captura, captura_teste, livre_, livre_teste}) {
            monta_ply(n, alvo);
            MAXcut.fill(100000.0F);
            MAXcut[n] = 50.0F;
            const float s = n % 2 == 0 ? 1.0F : -1.0F;
            EXPECT_TRUE(corre(n, g, s * 50.0F).cortou) << n << ' ' << g;
            EXPECT_TRUE(corre(n, g, s * 51.0F).cortou) << n << ' ' << g;
            EXPECT_FALSE(corre(n, g, s * 49.0F).cortou) << n << ' ' << g;
            EXPECT_FALSE(corre(n, g, s * -60.0F).cortou) << n << ' ' << g;
        }
    }
}

TEST_F(CutOffs, ACutStopsTheWalkAndTheFullFormStoresTheMove) {
    for (const int n : plies) {
        monta_ply(n, alvo);
        (n % 2 == 0 ? beta : alfa)[n - 1] = 6.0F;
        const Corrida c = corre(n, captura, 6.0F);
        EXPECT_EQ(c.tentados, 1U) << n;
        EXPECT_EQ(c.gaveta, "d5e4") << n;
        const Corrida l = corre(n, livre_, 6.0F);
        EXPECT_EQ(l.tentados, 1U) << n;
        EXPECT_EQ(l.gaveta, "d2e2") << n;
    }
}

TEST_F(CutOffs, WithoutACutNothingIsStored) {
    for (const int n : plies) {
        monta_ply(n, alvo);
        const Corrida c = corre(n, captura, 0.0F);
        EXPECT_GT(c.tentados, 1U) << n;
        EXPECT_EQ(aag_ddg[n].a, -1) << n;
        corre(n, livre_, 0.0F);
        EXPECT_EQ(aa_dd[n].a, -1) << n;
    }
}

TEST_F(CutOffs, AFlagSetBelowCountsAtPlySixAlone) {
    for (const int n : plies) {
        if (n % 2 == 1) {
            continue;
        }
        monta_ply(n, alvo);
        aa_dd[n] = aag_ddg[n] = nenhum_lance;
        corte_beta[n - 1] = 0;
        Filhos filhos(n, [n](Lance) { corte_beta[n - 1] = 1; });
        roda_capturas(n, "d5");
        EXPECT_EQ(filhos.lances().size(), n == 6 ? 1U : 3U) << n;
        EXPECT_EQ(aag_ddg[n].a != -1, n == 6) << n;
        filhos.esquece();
        corte_beta[n - 1] = 0;
        roda_livres(n, "d2");
        EXPECT_EQ(filhos.lances().size() == 1, n == 6) << n;
        EXPECT_EQ(aa_dd[n].a != -1, n == 6) << n;
    }
}

// --- The last ply that generates replies is content with its first move ---

TEST_F(CutOffs, AtItsLastPlyOneSearchedMoveIsEnoughAtOddPliesFromSevenOn) {
    for (const int n : plies) {
        const bool basta = n % 2 == 1 && n >= 7;
        for (const auto& [fen, casa_, quantos_ha] : {std::tuple{"7k/8/8/8/3N4/8/8/7K w - - 0 1", "d4", 8U},
                                                     {"7k/8/8/8/2B5/8/8/7K w - - 0 1", "c4", 11U},
                                                     {"7k/8/8/8/3R4/8/8/7K w - - 0 1", "d4", 14U},
                                                     {"7k/8/8/8/2Q5/8/8/7K w - - 0 1", "c4", 25U},
                                                     {"7k/8/8/8/3K4/8/8/8 w - - 0 1", "d4", 8U},
                                                     {"6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1", 7U}}) {
            monta_ply(n, fen);
            deep = n;
            EXPECT_EQ(gera_livres(n, casa_).size(), basta ? 1U : quantos_ha) << n << ' ' << fen;
            EXPECT_EQ(corte_do_no(n), basta ? 1 : 0) << n;
            EXPECT_EQ(aa_dd[n].a != -1, basta) << n;
        }
        monta_ply(n, alvo);
        deep = n;
        EXPECT_EQ(gera_capturas(n, "d5").size(), basta ? 1U : 3U) << n;
        EXPECT_EQ(corte_do_no(n), basta ? 1 : 0) << n;
        EXPECT_EQ(texto(aag_ddg[n]) == "d5e4", basta) << n;
    }
}

TEST_F(CutOffs, OneMoveIsNotEnoughAtAnyOtherDepth) {
    for (const int n : {7, 9, 15, 23}) {
        for (const int d : {n - 2, n + 2}) {
            monta_ply(n, alvo);
            deep = d;
            EXPECT_EQ(gera_capturas(n, "d5").size(), 3U) << n;
            EXPECT_GT(gera_livres(n, "d2").size(), 1U) << n;
        }
    }
}

TEST_F(CutOffs, PawnPushesAreNotEnough) {
    for (const Caso& caso : das_duas_cores("7k/8/8/8/8/8/3P4/K7 w - - 0 1", {"d2d4", "d2d3"})) {
        for (const int n : {7, 9, 15, 23}) {
            monta_ply(n, caso.fen);
            deep = n;
            EXPECT_EQ(textos(gera_livres(n, caso.lances[0].substr(0, 2))), caso.lances) << n;
            EXPECT_EQ(corte_do_no(n), 0) << n;
        }
    }
}

TEST_F(CutOffs, AnEnPassantIsEnoughInBothForms) {
    for (const Caso& caso : das_duas_cores("7k/8/8/2pPp3/8/8/8/K7 w - e6 0 1", {"d5e6", "d5c6", "d5d6"})) {
        const std::string de = caso.lances[0].substr(0, 2);
        for (const int n : plies) {
            const bool basta = n % 2 == 1 && n >= 7;
            const Cor c = monta_ply(n, caso.fen);
            deep = n;
            ply[n].jm_D.p_ah[outra(c)][2] = 1;
            EXPECT_EQ(gera_livres(n, de).size(), basta ? 1U : 3U) << n;
            EXPECT_EQ(corte_do_no(n), basta ? 1 : 0) << n;
            for (const std::string& m : {caso.lances[0], caso.lances[1]}) {
                aa_dd[n] = lance(m);
                corte_do_no(n) = 0;
                EXPECT_EQ(textos(gera_livres(n, de, true)), (Textos{m})) << n;
                EXPECT_EQ(corte_do_no(n), basta ? 1 : 0) << n << m;
            }
        }
    }
}

TEST_F(CutOffs, TheTestFormsOfPiecesAndCapturesGoOn) {
    for (const int n : {7, 9, 15, 23}) {
        for (const Ordem& o : ordens) {
            monta_ply(n, o.fen);
            deep = n;
            aa_dd[n] = lance(o.lances[0]);
            EXPECT_EQ(gera_livres(n, o.casa, true).size(), 1U);
            EXPECT_EQ(corte_do_no(n), 0) << n << ' ' << o.fen;
        }
        monta_ply(n, alvo);
        deep = n;
        aag_ddg[n] = lance("d5e4");
        EXPECT_EQ(gera_capturas(n, "d5", true).size(), 1U);
        EXPECT_EQ(corte_do_no(n), 0) << n;
        monta_ply(n, "6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1");
        deep = n;
        aa_dd[n] = lance("e1g1");
        EXPECT_EQ(gera_livres(n, "e1", true).size(), 1U);
        EXPECT_EQ(corte_do_no(n), 0) << n;
    }
}

}  // namespace
