// Whether a king is attacked, and what becomes of a node without a reply.
#include "support/engine.h"
#include "support/moves.h"

#include "base/bounds.h"
#include "board/apply.h"
#include "board/attacks.h"
#include "board/castling.h"

#include <gtest/gtest.h>

#include <cctype>
#include <random>
#include <string>

namespace {

using namespace teste;
using namespace ondrel;

class Check : public ::testing::Test {
protected:
    void SetUp() override { processo_novo(); }
};

class MateAndStalemate : public Check {};

Tabuleiro como_tabuleiro(const plain::Position& p) {
    Tabuleiro t{};
    for (int i = 0; i < 64; ++i) {
        const char letra = p.at(i / 8, i % 8);
        const bool branca = letra < 'a';
        int v = 0;
        switch (branca ? letra : static_cast<char>(std::toupper(letra))) {
            case 'P': v = 10; break;
            case 'N': v = 32; break;
            case 'B': v = 33; break;
            case 'R': v = 50; break;
            case 'Q': v = 90; break;
            case 'K': v = 110; break;
            default: break;
        }
        t[i] = static_cast<std::int8_t>(branca ? v : -v);
    }
    return t;
}

void testa_rei(Cor c) { c == brancas ? verifica_rei<brancas>() : verifica_rei<pretas>(); }
void testa_xeque(Cor c) { c == brancas ? verifica_xeque<brancas>() : verifica_xeque<pretas>(); }
void testa_xequemate(Cor c, int n, int f, int r) {
    c == brancas ? verifica_xequemate<brancas>(n, f, r) : verifica_xequemate<pretas>(n, f, r);
}

// Whether the white king is attacked on the board; and, the board being mirrored, the black one. All three tests must
// agree, each with its own flag.
bool atacado(const Tabuleiro& t) {
    bool resposta = false;
    for (const Cor c : {brancas, pretas}) {
        tab2 = c == brancas ? t : espelhado(t);
        Y = XEQUE = XM = 2;
        testa_rei(c);
        testa_xeque(outra(c));
        ply[7].tabd = tab2;
        testa_xequemate(c, 7, p_x_R[c], p_y_R[c]);
        EXPECT_EQ(XEQUE, Y);
        EXPECT_EQ(XM, Y);
        EXPECT_TRUE(Y == 0 || Y == 1);
        EXPECT_TRUE(c == brancas || (Y == 1) == resposta) << "the colours differ";
        resposta = Y == 1;
    }
    return resposta;
}

bool atacado(std::string_view campo) { return atacado(tabuleiro(campo)); }

TEST_F(Check, SevenStepsFromCornerToCornerAreSeen) {
    for (const char homem : {'q', 'b'}) {
        for (const auto& [rei_, longe] : {std::pair{0, 63}, {63, 0}, {7, 56}, {56, 7}}) {
            Tabuleiro t{};
            t[rei_] = 110;
            t[longe] = static_cast<std::int8_t>(homem == 'q' ? -90 : -33);
            EXPECT_TRUE(atacado(t)) << rei_;
            t[longe] = static_cast<std::int8_t>(homem == 'q' ? 90 : 33);
            EXPECT_FALSE(atacado(t)) << "one's own";
        }
    }
    EXPECT_FALSE(atacado("7q/8/8/3P4/4P3/2P5/8/K7")) << "the pawn on c3 stands between";
}

TEST_F(Check, TheOtherKingNextToItAttacks) {
    for (const int passo : {-9, -8, -7, -1, 1, 7, 8, 9}) {
        Tabuleiro t{};
        t[27] = 110;
        t[27 + passo] = -110;
        EXPECT_TRUE(atacado(t)) << passo;
    }
    EXPECT_FALSE(atacado("8/8/8/3k4/8/3K4/8/8"));
}

TEST_F(Check, AKingMayNotStepNextToTheOther) {
    monta_ply(2, "8/8/8/3k4/8/3K4/8/8 w - - 0 1");
    init_tabuleiro2_deep<brancas>(2, lance("d3d4"));
    verifica_rei<brancas>();
    EXPECT_EQ(Y, 1);
    EXPECT_EQ(em_ordem(textos(lances_tentados(2))), (Textos{"d3c2", "d3c3", "d3d2", "d3e2", "d3e3"}));
}

TEST_F(Check, AnAttackerBehindAManOfEitherColourIsBlind) {
    for (const char* campo : {"4q3/8/4P3/8/8/8/8/4K3", "4q3/8/4n3/8/8/8/8/4K3", "8/8/8/7q/6n1/8/8/3K4",
                              "8/8/8/8/8/8/8/K2N3r", "8/8/8/8/8/8/8/K2n3r", "8/6b1/8/4P3/8/8/8/K7"}) {
        EXPECT_FALSE(atacado(campo)) << campo;
    }
    EXPECT_TRUE(atacado("4q3/4q3/8/8/8/8/8/4K3"));
}

TEST_F(Check, APawnAttacksForwardOnly) {
    EXPECT_TRUE(atacado("8/8/8/8/8/4p3/3K4/8"));
    EXPECT_TRUE(atacado("8/8/8/8/8/4p3/5K2/8"));
    for (const char* campo : {"8/8/8/8/3K4/4p3/8/8", "8/8/8/8/5K2/4p3/8/8", "8/8/8/8/8/4p3/4K3/8",
                              "8/8/8/8/4K3/4p3/8/8", "8/8/8/8/8/3Kp3/8/8"}) {
        EXPECT_FALSE(atacado(campo)) << campo;
    }
}

TEST_F(Check, EdgesDoNotWrapAround) {
    for (const char* campo : {"8/8/8/8/8/7p/K7/8", "8/8/8/8/8/p7/7K/8", "8/8/8/7n/8/8/8/K7", "8/8/8/8/8/7k/K7/8",
                              "8/8/8/8/8/7k/8/K7", "7n/8/8/8/8/8/8/K7", "8/8/8/8/8/8/7n/K7"}) {
        EXPECT_FALSE(atacado(campo)) << campo;
    }
}

// Every king's square against every attacker on every other.
TEST_F(Check, TwoMenOnAnEmptyBoardAgreeWithThePlainRules) {
    for (int k = 0; k < 64; ++k) {
        for (int i = 0; i < 64; ++i) {
            for (const char homem : {'p', 'n', 'b', 'r', 'q', 'k', 'P', 'N', 'B', 'R', 'Q'}) {
                if (i == k) {
                    continue;
                }
                plain::Position p;
                p.squares.fill(plain::empty_square);
                p.put(k / 8, k % 8, 'K');
                p.put(i / 8, i % 8, homem);
                ASSERT_EQ(atacado(como_tabuleiro(p)), plain::is_attacked(p, k / 8, k % 8, false)) << k << homem << i;
            }
        }
    }
}

// Crowded boards, legal or not.
TEST_F(Check, RandomBoardsAgreeWithThePlainRules) {
    std::mt19937 sorteio(20260712);  // NOLINT(cert-msc51-cpp): the same boards every time
    constexpr std::string_view homens = "PNBRQpnbrqpn....................";
    int xeques = 0;
    for (int vez = 0; vez < 3000; ++vez) {
        plain::Position p;
        for (int i = 0; i < 64; ++i) {
            p.put(i / 8, i % 8, homens[sorteio() % homens.size()]);
        }
        const auto k = static_cast<int>(sorteio() % 64);
        p.put(k / 8, k % 8, 'K');
        const bool esperado = plain::is_attacked(p, k / 8, k % 8, false);
        xeques += esperado ? 1 : 0;
        ASSERT_EQ(atacado(como_tabuleiro(p)), esperado) << plain::to_fen(p);
    }
    EXPECT_GT(xeques, 500);
    EXPECT_LT(xeques, 2500);
}

TEST_F(Check, PositionsOfTheCollectionAgreeWithThePlainRules) {
    int xeques = 0;
    for (const plain::Position& p : plain::data_positions("positions.fen")) {
        tab2 = como_tabuleiro(p);
        for (const Cor c : {brancas, pretas}) {
            const bool esperado = plain::in_check(p, c == brancas);
            testa_rei(c);
            testa_xeque(outra(c));
            EXPECT_EQ(Y == 1, esperado) << plain::to_fen(p);
            EXPECT_EQ(XEQUE == 1, esperado) << plain::to_fen(p);
            EXPECT_EQ(tab2[casa(p_x_R[c], p_y_R[c])], codigo(c, rei));
            xeques += esperado ? 1 : 0;
        }
    }
    EXPECT_GE(xeques, 20);
}

// The victim is gone from the trial, so that the rank lies open through both pawns.
TEST_F(Check, EnPassantThatOpensTheRankIsIllegal) {
    for (const Caso& caso : das_duas_cores("8/8/8/K2pP2r/8/8/8/4k3 w - d6 0 1", {"e5d6"})) {
        const Cor c = monta_ply(3, caso.fen);
        const Lance m = lance(caso.lances[0]);
        c == brancas ? init_tabuleiro2_deep<brancas>(3, m) : init_tabuleiro2_deep<pretas>(3, m);
        testa_rei(c);
        EXPECT_EQ(Y, 1);
        EXPECT_EQ(quantos(textos(lances_tentados(3)), caso.lances[0]), 0);
    }
}

TEST_F(Check, AfterACastlingTestTheRooksCheckIsSeen) {
    for (const auto& [fen, lado] : {std::pair{"5k2/8/8/8/8/8/8/R3K2R w KQ - 0 1", lado_curto},
                                    {"3k4/8/8/8/8/8/8/R3K2R w KQ - 0 1", lado_longo}}) {
        for (const Caso& caso : das_duas_cores(fen, {})) {
            const Cor c = monta_ply(3, caso.fen);
            c == brancas ? verifica_roque_deep<brancas>(3, lado) : verifica_roque_deep<pretas>(3, lado);
            testa_xeque(c);
            EXPECT_EQ(XEQUE, 1);
            c == brancas ? verifica_roque_deep<brancas>(3, lado == lado_curto ? lado_longo : lado_curto)
                         : verifica_roque_deep<pretas>(3, lado == lado_curto ? lado_longo : lado_curto);
            testa_xeque(c);
            EXPECT_EQ(XEQUE, 0);
        }
    }
}

TEST_F(Check, WithoutAKingThereIsNoCheckAndItsSquareStays) {
    tab2 = tabuleiro("8/8/8/3q4/8/8/8/8");
    p_x_R = {3, 5};
    p_y_R = {4, 6};
    Y = XEQUE = 1;
    verifica_rei<brancas>();
    verifica_xeque<pretas>();
    EXPECT_EQ(Y, 0);
    EXPECT_EQ(XEQUE, 0);
    EXPECT_EQ(p_x_R, (std::array{3, 5}));
    EXPECT_EQ(p_y_R, (std::array{4, 6}));
}

TEST_F(Check, OnlyTheTestOfTheOwnKingNotesASquare) {
    tab2 = tabuleiro("8/1k6/8/8/8/8/6K1/8");
    p_x_R = {0, 0};
    p_y_R = {0, 0};
    verifica_xeque<brancas>();
    verifica_xeque<pretas>();
    EXPECT_EQ(p_x_R, (std::array{0, 0}));
    verifica_rei<brancas>();
    EXPECT_EQ(p_x_R, (std::array{6, 0}));
    EXPECT_EQ(p_y_R, (std::array{1, 0}));
    verifica_rei<pretas>();
    EXPECT_EQ(p_x_R, (std::array{6, 1}));
    EXPECT_EQ(p_y_R, (std::array{1, 6}));
}

TEST_F(Check, EveryKingOnTheBoardIsTested) {
    for (const auto& [campo, esperado] :
         {std::pair{"8/8/8/8/8/q7/8/K6K", 1}, {"8/8/8/8/8/7q/8/K6K", 1}, {"8/8/8/8/8/3q4/8/K6K", 0}}) {
        tab2 = tabuleiro(campo);
        verifica_rei<brancas>();
        verifica_xeque<pretas>();
        EXPECT_EQ(Y, esperado) << campo;
        EXPECT_EQ(XEQUE, esperado) << campo;
        EXPECT_EQ(p_x_R[brancas], 7) << "the last one found";
    }
}

TEST_F(Check, LegalityOfATrialIsTheMoversKingAlone) {
    // The white rook may give check; it may not leave the pin.
    monta_ply(4, "4r1k1/8/8/8/8/8/4R3/4K3 w - - 0 1");
    const Textos lances = textos(lances_tentados(4));
    EXPECT_EQ(quantos(lances, "e2e8"), 1);
    EXPECT_EQ(quantos(lances, "e2g2"), 0);
}

// --- The square of a king on the ply's own board ---

TEST_F(MateAndStalemate, TheSquareIsTestedOnTheBoardOfThePly) {
    for (const int n : {0, 1, 2, 23}) {
        ply[n].tabd = tabuleiro("4q3/8/8/8/8/8/8/4K3");
        tab2 = tabuleiro("8/8/8/8/8/8/8/4K3");
        const Tabuleiro antes = tab2;
        p_x_R = {0, 0};
        verifica_xequemate<brancas>(n, 4, 0);
        EXPECT_EQ(XM, 1);
        verifica_xequemate<brancas>(n, 3, 0);  // the square given, not the king's
        EXPECT_EQ(XM, 0);
        EXPECT_EQ(tab2, antes);
        EXPECT_EQ(p_x_R[brancas], 0);
        ply[n].tabd = {};
    }
}

TEST_F(MateAndStalemate, AnAttackedKingCastlesToNeitherSide) {
    for (const Caso& caso : das_duas_cores("4q2k/8/8/8/8/8/8/R3K2R w KQ - 0 1", {"e1g1", "e1c1"})) {
        for (const int n : {1, 2, 5, 8}) {
            monta_ply(n, caso.fen);
            const Textos lances = textos(lances_tentados(n));
            EXPECT_EQ(quantos(lances, caso.lances[0]) + quantos(lances, caso.lances[1]), 0) << n;
            EXPECT_EQ(ply[n].XEQUE_MATE, 1) << n;
            EXPECT_FALSE(lances.empty());
        }
        coloca_fen(caso.fen);
        const Textos lances = textos(lances_da_raiz());
        EXPECT_EQ(quantos(lances, caso.lances[0]) + quantos(lances, caso.lances[1]), 0);
    }
    // The same without the queen.
    monta_ply(2, "7k/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    const Textos lances = textos(lances_tentados(2));
    EXPECT_EQ(quantos(lances, "e1g1") + quantos(lances, "e1c1"), 2);
    EXPECT_EQ(ply[2].XEQUE_MATE, 0);
}

// Searches the move at ply n and gives the value of the node, from the view of the root side.
float valor_depois(int n, std::string_view fen, std::string_view m) {
    processo_novo();
    monta_ply(n - 1, fen);
    emp = -7;
    float v = 0;
    sem_relato([&] { v = busca_no(n, lance(m)); });
    return v;
}

// The sooner the mate, the larger its size: 16500 less 1100 for every move of the mating side.
float tamanho_do_mate(int n) { return 16500.0F - 1100.0F * static_cast<float>((n + 1) / 2); }

TEST_F(MateAndStalemate, NoReplyToACheckIsMateAtEveryPly) {
    for (const auto& [fen, m] :
         {std::pair{"6k1/5ppp/8/8/8/8/8/R3K3 w - - 0 1", "a1a8"}, {"k7/2Q5/1K6/8/8/8/8/8 w - - 0 1", "c7b7"}}) {
        for (const Caso& caso : das_duas_cores(fen, {m})) {
            for (int n = 1; n <= 23; ++n) {
                const float v = valor_depois(n, caso.fen, caso.lances[0]);
                EXPECT_EQ(v, n % 2 == 0 ? -tamanho_do_mate(n) : tamanho_do_mate(n)) << "ply " << n << ' ' << caso.fen;
                EXPECT_EQ(nd, n);
                EXPECT_EQ(ply[n].X_D, 1);
                EXPECT_EQ(ply[n].XEQUE_MATE, 1);
            }
        }
    }
}

TEST_F(MateAndStalemate, NoReplyWithoutCheckIsADrawAtEveryPly) {
    for (const Caso& caso : das_duas_cores("k7/8/1K6/8/8/8/8/2Q5 w - - 0 1", {"c1c7"})) {
        for (int n = 1; n <= 23; ++n) {
            const float v = valor_depois(n, caso.fen, caso.lances[0]);
            EXPECT_EQ(v, -7.0F) << "ply " << n << ' ' << caso.fen;
            EXPECT_EQ(nd, n);
            EXPECT_EQ(ply[n].X_D, 1);
            EXPECT_EQ(ply[n].XEQUE_MATE, 0);
        }
    }
}

// Replies that would leave the king attacked are no replies, though there are pieces to move.
TEST_F(MateAndStalemate, IllegalRepliesAreNone) {
    // Smothered: every black man is shut in or pinned.
    for (const Caso& caso : das_duas_cores("6rk/6pp/7N/8/8/8/8/4K3 w - - 0 1", {"h6f7"})) {
        EXPECT_EQ(valor_depois(4, caso.fen, caso.lances[0]), -tamanho_do_mate(4));
        EXPECT_EQ(ply[4].X_D, 1);
        EXPECT_EQ(nd, 4);
    }
    // Stalemate with a pinned bishop.
    for (const Caso& caso : das_duas_cores("kb5R/8/1K6/8/8/8/8/8 w - - 0 1", {"h8g8"})) {
        EXPECT_EQ(valor_depois(4, caso.fen, caso.lances[0]), -7.0F);
        EXPECT_EQ(ply[4].X_D, 1);
        EXPECT_EQ(nd, 4);
    }
}

// X_D alone does not tell mate: children that were entered have moved nd on.
TEST_F(MateAndStalemate, RepliesThatImproveNothingAreStillReplies) {
    for (const bool em_xeque : {false, true}) {
        for (const int n : {2, 3, 6, 9, 12}) {
            monta_ply(n - 1, "4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
            emp = -7;
            const Filhos entrados(n, [n](Lance) { nd = n + 1; });
            const float v = busca_no(n, lance(em_xeque ? "a1a8" : "a1a2"));
            EXPECT_FALSE(entrados.lances().empty());
            EXPECT_EQ(ply[n].X_D, 1) << n;
            EXPECT_EQ(v, n % 2 == 0 ? -16500.0F : 16500.0F) << n << ": the start value stands";
        }
    }
}

TEST_F(MateAndStalemate, AnImprovementClearsTheFlagOfNoReply) {
    for (const int n : {2, 3, 6, 9, 12}) {
        monta_ply(n - 1, "4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
        const Filhos folhas(n, [n](Lance) { valor_do_filho(n) = 5.0F; });  // leaves do not touch nd
        EXPECT_EQ(busca_no(n, lance("a1a2")), 5.0F) << n;
        EXPECT_EQ(ply[n].X_D, 0) << n;
        EXPECT_EQ(nd, n);
    }
}

}  // namespace
