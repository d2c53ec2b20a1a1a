// Castling: what the caller asks of flags and squares, and the test of the squares that the king passes and reaches.
#include "support/engine.h"
#include "support/moves.h"

#include "base/bounds.h"
#include "board/castling.h"
#include "search/root_routines.h"
#include "search/score_windows.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace teste;
using namespace ondrel;

class Castling : public ::testing::Test {
protected:
    void SetUp() override { processo_novo(); }
};

void testa_roque(Cor c, int n, Lado k) {
    c == brancas ? verifica_roque_deep<brancas>(n, k) : verifica_roque_deep<pretas>(n, k);
}
void testa_roque_da_raiz(Cor c, Lado k) { c == brancas ? verifica_roque<brancas>(k) : verifica_roque<pretas>(k); }

std::string nome_do_roque(Cor c, Lado k) { return texto(k == lado_curto ? roque_curto(c) : roque_longo(c)); }

// R of the castling on the white board, and on its mirror image for Black: both must agree, at any ply and at the root.
bool recusado(std::string_view campo, Lado k) {
    const Tabuleiro t = tabuleiro(campo);
    int respostas = 0;
    for (const Cor c : {brancas, pretas}) {
        for (const int n : {1, 2, 23}) {
            ply[n].tabd = c == brancas ? t : espelhado(t);
            R = 2;
            testa_roque(c, n, k);
            EXPECT_LE(R, 1);
            respostas += R;
        }
        tab = c == brancas ? t : espelhado(t);
        R = 2;
        testa_roque_da_raiz(c, k);
        respostas += R;
    }
    EXPECT_TRUE(respostas == 0 || respostas == 8) << campo;
    return respostas == 8;
}

// The moves that the king's root routines would search for the captures of pawns, castling among them.
Textos lances_do_rei_na_raiz(Cor c) {
    const Filhos filhos(0);
    alfa[0] = inicio_alfa;
    limites_de_mate();
    SCAN1 = SCANT = 0;
    for (const bool ch : {true, false}) {
        for (ataque = 100; ataque >= -100; --ataque) {
            c == brancas ? analise100<brancas>(positive1, ch, rei, 4, 0) : analise100<pretas>(positive1, ch, rei, 4, 7);
        }
    }
    return filhos.lances();
}

// Whether the generators try the castling, at several plies and at the root, for both colours.
bool tentado(std::string_view fen, Lado k) {
    int vezes_ = 0;
    for (const Caso& caso : das_duas_cores(fen, {})) {
        for (const int n : {1, 2, 3, 8, 9}) {
            const Cor c = monta_ply(n, caso.fen);
            vezes_ += quantos(textos(lances_tentados(n)), nome_do_roque(c, k));
        }
        const Cor c = coloca_fen(caso.fen);
        vezes_ += quantos(lances_do_rei_na_raiz(c), nome_do_roque(c, k));
    }
    EXPECT_TRUE(vezes_ == 0 || vezes_ == 12) << fen << ' ' << vezes_;
    return vezes_ == 12;
}

// --- The squares of the king's path ---

TEST_F(Castling, AnOpenPathIsNotRefused) {
    EXPECT_FALSE(recusado("r3k2r/8/8/8/8/8/8/R3K2R", lado_curto));
    EXPECT_FALSE(recusado("r3k2r/8/8/8/8/8/8/R3K2R", lado_longo));
}

TEST_F(Castling, ARookOnTheOpenFFileRefusesTheShortSide) {
    EXPECT_TRUE(recusado("5rk1/8/8/8/8/8/8/R3K2R", lado_curto));
    EXPECT_FALSE(tentado("5rk1/8/8/8/8/8/8/R3K2R w KQ - 0 1", lado_curto));
    EXPECT_TRUE(tentado("5rk1/8/8/8/8/8/8/R3K2R w KQ - 0 1", lado_longo));
}

// The rook alone crosses b1.
TEST_F(Castling, ARookOnTheOpenBFileDoesNotRefuseTheLongSide) {
    EXPECT_FALSE(recusado("1r4k1/8/8/8/8/8/8/R3K2R", lado_longo));
    EXPECT_TRUE(tentado("1r4k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", lado_longo));
}

TEST_F(Castling, AnAttackedRookDoesNotRefuseEitherSide) {
    EXPECT_TRUE(tentado("r6r/6k1/8/8/8/8/8/R3K2R w KQ - 0 1", lado_longo));
    EXPECT_TRUE(tentado("r6r/6k1/8/8/8/8/8/R3K2R w KQ - 0 1", lado_curto));
}

TEST_F(Castling, AKnightOnB3RefusesTheLongSide) {
    EXPECT_TRUE(recusado("6k1/8/8/8/8/1n6/8/R3K2R", lado_longo));
    EXPECT_FALSE(recusado("6k1/8/8/8/8/1n6/8/R3K2R", lado_curto));
    EXPECT_FALSE(tentado("6k1/8/8/8/8/1n6/8/R3K2R w KQ - 0 1", lado_longo));
}

TEST_F(Castling, ABishopOnA6RefusesTheShortSide) {
    EXPECT_TRUE(recusado("6k1/8/b7/8/8/8/8/R3K2R", lado_curto));
    EXPECT_FALSE(recusado("6k1/8/b7/8/8/8/8/R3K2R", lado_longo));
    EXPECT_FALSE(recusado("6k1/8/b7/1p6/8/8/8/R3K2R", lado_curto)) << "behind a pawn it is blind";
    EXPECT_FALSE(tentado("6k1/8/b7/8/8/8/8/R3K2R w KQ - 0 1", lado_curto));
}

struct Atacante {
    char homem;
    const char* casas;
};

void recusam(Lado k, std::initializer_list<Atacante> atacantes) {
    for (const Atacante& a : atacantes) {
        const std::string casas(a.casas);
        for (std::size_t i = 0; i < casas.size(); i += 3) {
            plain::Position p = posicao("8/8/8/8/8/8/8/R3K2R w KQ - 0 1");
            p.put(casas[i] - 'a', casas[i + 1] - '1', a.homem);
            const std::string fen = plain::to_fen(p);
            EXPECT_TRUE(recusado(fen.substr(0, fen.find(' ')), k)) << a.homem << casas.substr(i, 2);
        }
    }
}

TEST_F(Castling, EveryAttackerOfTheLongPathRefusesIt) {
    recusam(lado_longo, {{'p', "e2 c2"},
                         {'k', "e2 c2 d2"},
                         {'n', "f2 b2 c3 e3"},
                         {'b', "e2 f3 g4 h5 c2 b3 a4"},
                         {'q', "e2 f3 g4 h5 c2 b3 a4 d2 d3 d4 d5 d6 d7 d8"},
                         {'r', "d2 d3 d4 d5 d6 d7 d8"}});
    recusam(lado_longo, {{'p', "d2 b2"},
                         {'k', "d2 b2 c2 b1"},
                         {'n', "e2 a2 b3 d3"},
                         {'b', "d2 e3 f4 g5 h6 b2 a3"},
                         {'q', "b2 a3 c2 c3 c4 c5 c6 c7 c8"},
                         {'r', "c2 c3 c4 c5 c6 c7 c8"}});
}

TEST_F(Castling, EveryAttackerOfTheShortPathRefusesIt) {
    recusam(lado_curto, {{'p', "g2 e2"},
                         {'k', "g2 e2 f2"},
                         {'n', "h2 d2 e3 g3"},
                         {'b', "g2 h3 e2 d3 c4 b5 a6"},
                         {'q', "g2 h3 e2 d3 c4 b5 a6 f2 f3 f4 f5 f6 f7 f8"},
                         {'r', "f2 f3 f4 f5 f6 f7 f8"}});
    recusam(lado_curto, {{'p', "h2 f2"},
                         {'k', "h2 f2 g2"},
                         {'n', "e2 f3 h3"},
                         {'b', "f2 e3 d4 c5 b6 a7 h2"},
                         {'q', "h2 g2 g3 g4 g5 g6 g7 g8"},
                         {'r', "g2 g3 g4 g5 g6 g7 g8"}});
}

// One enemy man on every square: only attackers of the two squares refuse.
TEST_F(Castling, OneAttackerAnywhereAgreesWithThePlainRules) {
    for (const Lado k : {lado_curto, lado_longo}) {
        const int cruzada = k == lado_curto ? 5 : 3;
        const int chegada = k == lado_curto ? 6 : 2;
        for (int i = 0; i < 64; ++i) {
            for (const char homem : {'p', 'n', 'b', 'r', 'q', 'k'}) {
                plain::Position p = posicao("8/8/8/8/8/8/8/R3K2R w KQ - 0 1");
                if (p.at(i / 8, i % 8) != plain::empty_square || i == casa(cruzada, 0) || i == casa(chegada, 0)) {
                    continue;
                }
                p.put(i / 8, i % 8, homem);
                const std::string fen = plain::to_fen(p);
                const bool atravessa = plain::is_attacked(p, cruzada, 0, false);
                p.put(cruzada, 0, 'R');
                p.put(k == lado_curto ? 7 : 0, 0, plain::empty_square);
                p.put(chegada, 0, 'K');
                p.put(4, 0, plain::empty_square);
                const bool chega = plain::is_attacked(p, chegada, 0, false);
                EXPECT_EQ(recusado(fen.substr(0, fen.find(' ')), k), atravessa || chega) << homem << i << ' ' << k;
            }
        }
    }
}

TEST_F(Castling, TheKingItselfShieldsTheCrossedSquareAndTheRookTheDestination) {
    EXPECT_FALSE(recusado("6k1/8/8/8/8/8/8/R3K2r", lado_longo));
    EXPECT_FALSE(recusado("6k1/8/8/8/8/8/8/r3K2R", lado_curto));
}

TEST_F(Castling, TheOwnMenRefuseNothing) {
    EXPECT_FALSE(recusado("6k1/8/8/8/8/1N1N1N2/1P1P1P1P/R3K2R", lado_longo));
    EXPECT_FALSE(recusado("6k1/8/8/8/8/1N1N1N2/1P1P1P1P/R3K2R", lado_curto));
}

// --- What the test leaves ---

TEST_F(Castling, TheCastledPositionIsLeftWhateverTheAnswer) {
    for (const auto& [campo, k, depois, r] :
         {std::tuple{"6k1/8/8/8/8/8/8/R3K2R", lado_curto, "6k1/8/8/8/8/8/8/R4RK1", 0},
          {"6k1/8/8/8/8/8/8/R3K2R", lado_longo, "6k1/8/8/8/8/8/8/2KR3R", 0},
          {"5rk1/8/8/8/8/8/8/R3K2R", lado_curto, "5rk1/8/8/8/8/8/8/R4RK1", 1},
          {"6rk/8/8/8/8/8/8/R3K2R", lado_curto, "6rk/8/8/8/8/8/8/R4RK1", 1},
          {"3r2k1/8/8/8/8/8/8/R3K2R", lado_longo, "3r2k1/8/8/8/8/8/8/2KR3R", 1}}) {
        for (const Cor c : {brancas, pretas}) {
            const Tabuleiro t = c == brancas ? tabuleiro(campo) : espelhado(tabuleiro(campo));
            ply[6].tabd = t;
            tab2 = {};
            testa_roque(c, 6, k);
            EXPECT_EQ(R, r) << campo;
            EXPECT_EQ(c == brancas ? tab2 : espelhado(tab2), tabuleiro(depois)) << campo;
            EXPECT_EQ(ply[6].tabd, t) << campo;
        }
    }
}

TEST_F(Castling, TheAnswerIsMadeAnewAtEachCall) {
    ply[6].tabd = tabuleiro("5rk1/8/8/8/8/8/8/R3K2R");
    testa_roque(brancas, 6, lado_curto);
    ASSERT_EQ(R, 1);
    testa_roque(brancas, 6, lado_longo);
    EXPECT_EQ(R, 0);
}

// --- What the caller asks ---

const char* const livre_fen = "6k1/8/8/8/8/8/8/R3K2R w KQ - 0 1";

TEST_F(Castling, BothSidesAreTriedFromAnOpenPosition) {
    EXPECT_TRUE(tentado(livre_fen, lado_curto));
    EXPECT_TRUE(tentado(livre_fen, lado_longo));
}

TEST_F(Castling, EachRightStandsForItsSide) {
    EXPECT_TRUE(tentado("6k1/8/8/8/8/8/8/R3K2R w K - 0 1", lado_curto));
    EXPECT_FALSE(tentado("6k1/8/8/8/8/8/8/R3K2R w K - 0 1", lado_longo));
    EXPECT_FALSE(tentado("6k1/8/8/8/8/8/8/R3K2R w Q - 0 1", lado_curto));
    EXPECT_TRUE(tentado("6k1/8/8/8/8/8/8/R3K2R w Q - 0 1", lado_longo));
    EXPECT_FALSE(tentado("6k1/8/8/8/8/8/8/R3K2R w - - 0 1", lado_curto));
    EXPECT_FALSE(tentado("6k1/8/8/8/8/8/8/R3K2R w - - 0 1", lado_longo));
}

TEST_F(Castling, FlagsOfKingAndRooksForbidIt) {
    for (const Caso& caso : das_duas_cores(livre_fen, {"e1g1", "e1c1"})) {
        for (const int n : {1, 2, 9}) {
            const auto tentados = [&](auto marca) {
                const Cor c = monta_ply(n, caso.fen);
                marca(ply[n].jm_D, c);
                const Textos lances = textos(lances_tentados(n));
                return std::pair(quantos(lances, caso.lances[0]), quantos(lances, caso.lances[1]));
            };
            EXPECT_EQ(tentados([](Bandeiras&, Cor) {}), std::pair(1, 1));
            EXPECT_EQ(tentados([](Bandeiras& m, Cor c) { m.R_jm[c] = 1; }), std::pair(0, 0));
            EXPECT_EQ(tentados([](Bandeiras& m, Cor c) { m.T_h_jm[c] = 1; }), std::pair(0, 1));
            EXPECT_EQ(tentados([](Bandeiras& m, Cor c) { m.T_a_jm[c] = 1; }), std::pair(1, 0));
            EXPECT_EQ(
                tentados([](Bandeiras& m, Cor c) { m.R_jm[outra(c)] = m.T_a_jm[outra(c)] = m.T_h_jm[outra(c)] = 1; }),
                std::pair(1, 1))
                << "the other colour's flags";
        }
    }
}

TEST_F(Castling, EverySquareBetweenMustBeEmpty) {
    for (const char* fen : {"6k1/8/8/8/8/8/8/RN2K2R w KQ - 0 1", "6k1/8/8/8/8/8/8/R1B1K2R w KQ - 0 1",
                            "6k1/8/8/8/8/8/8/R2QK2R w KQ - 0 1", "6k1/8/8/8/8/8/8/Rn2K2R w KQ - 0 1"}) {
        EXPECT_FALSE(tentado(fen, lado_longo)) << fen;
        EXPECT_TRUE(tentado(fen, lado_curto)) << fen;
    }
    for (const char* fen : {"6k1/8/8/8/8/8/8/R3KB1R w KQ - 0 1", "6k1/8/8/8/8/8/8/R3K1NR w KQ - 0 1",
                            "6k1/8/8/8/8/8/8/R3K1bR w KQ - 0 1"}) {
        EXPECT_FALSE(tentado(fen, lado_curto)) << fen;
        EXPECT_TRUE(tentado(fen, lado_longo)) << fen;
    }
}

// The rook was taken on its corner: no flag tells, the board does.
TEST_F(Castling, TheCornerMustHoldTheOwnRook) {
    for (const char* fen :
         {"6k1/8/8/8/8/8/8/R3K2b w KQ - 0 1", "6k1/8/8/8/8/8/8/R3K2N w KQ - 0 1", "6k1/8/8/8/8/8/8/R3K3 w KQ - 0 1"}) {
        EXPECT_FALSE(tentado(fen, lado_curto)) << fen;
        EXPECT_TRUE(tentado(fen, lado_longo)) << fen;
    }
    for (const char* fen :
         {"6k1/8/8/8/8/8/8/b3K2R w KQ - 0 1", "6k1/8/8/8/8/8/8/Q3K2R w KQ - 0 1", "6k1/8/8/8/8/8/8/4K2R w KQ - 0 1"}) {
        EXPECT_FALSE(tentado(fen, lado_longo)) << fen;
        EXPECT_TRUE(tentado(fen, lado_curto)) << fen;
    }
}

// A king that has not moved stands on its square: nobody looks.
TEST_F(Castling, TheKingsSquareIsNotLookedAt) {
    for (const Caso& caso : das_duas_cores("6k1/8/8/8/8/4K3/8/R6R w - - 0 1", {"e1g1", "e1c1"})) {
        const Cor c = monta_ply(2, caso.fen);
        ply[2].jm_D.R_jm[c] = ply[2].jm_D.T_a_jm[c] = ply[2].jm_D.T_h_jm[c] = 0;
        const Textos lances = textos(lances_tentados(2));
        EXPECT_EQ(quantos(lances, caso.lances[0]), 1);
        EXPECT_EQ(quantos(lances, caso.lances[1]), 1);
    }
}

// The castled position comes to the child by the castling test alone: no trial, and no test that would note the king.
TEST_F(Castling, NoTrialIsMadeForIt) {
    for (const Caso& caso : das_duas_cores(livre_fen, {"e1g1"})) {
        const Cor c = monta_ply(4, caso.fen);
        p_x_R = {1, 1};
        p_y_R = {1, 1};
        int vistas = 0;
        const Filhos filhos(4, [&](Lance m) {
            if (texto(m) == caso.lances[0]) {
                ++vistas;
                EXPECT_EQ(p_x_R[c], 1);
                EXPECT_EQ(c == brancas ? tab2 : espelhado(tab2), tabuleiro("6k1/8/8/8/8/8/8/R4RK1"));
            }
        });
        roda_livres(4, c == brancas ? "e1" : "e8");
        EXPECT_EQ(vistas, 1);
    }
}

// --- The gate of the root forms ---

TEST_F(Castling, TheGateOfTheRootKnowsEachCastling) {
    const Lance lances[] = {lance("e1c1"), lance("e1g1"), lance("e8c8"), lance("e8g8")};
    for (const Lance guardado : lances) {
        for (const auto& [c, k, este] : {std::tuple{brancas, lado_longo, 0},
                                         {brancas, lado_curto, 1},
                                         {pretas, lado_longo, 2},
                                         {pretas, lado_curto, 3}}) {
            tab = tabuleiro("r3k2r/8/8/8/8/8/8/R3K2R");
            aab_ddb = guardado;
            const bool e_ele = guardado == lances[este];
            const auto porta = [&, c = c, k = k](int scan1, int scant) {
                SCAN1 = static_cast<std::uint8_t>(scan1);
                SCANT = static_cast<std::uint8_t>(scant);
                TEST1IID = 2;
                testa_roque_da_raiz(c, k);
                return static_cast<int>(TEST1IID);
            };
            EXPECT_EQ(porta(0, 0), 1);
            EXPECT_EQ(porta(1, 0), e_ele ? 1 : 0) << texto(guardado) << este;
            EXPECT_EQ(porta(0, 1), e_ele ? 0 : 1) << texto(guardado) << este;
        }
    }
}

TEST_F(Castling, ThePlyFormsLeaveTheGateAlone) {
    ply[3].tabd = tabuleiro("r3k2r/8/8/8/8/8/8/R3K2R");
    SCAN1 = 1;
    aab_ddb = lance("a1a2");
    TEST1IID = 1;
    testa_roque(brancas, 3, lado_curto);
    EXPECT_EQ(TEST1IID, 1);
}

}  // namespace
