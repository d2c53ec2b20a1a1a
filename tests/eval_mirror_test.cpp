// Black is White seen from the other side: a position with colours and ranks exchanged gives the exchanged counters.
//
// What does not carry over:
//  - float sums: squares are walked ranks upward for either colour, so the same terms are added in another order and
//    may round to other last bits. Integers are compared exactly, sums closely.
//  - nothing else under this mirror: the bishop tables peak on file d where the others peak on e, and the nearness to
//    pawns prefers the higher file, but both hold for either colour. Files are therefore no mirror at all.
#include "support/evaluation.h"

#include "eval/root_trial.h"
#include "eval/strategy.h"
#include "eval/tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace {

using namespace ondrel;
using namespace teste;

constexpr std::array<Cor, 2> cores{brancas, pretas};

// Sums of a few hundred terms in float.
constexpr float folga = 1e-5F;

bool perto(float a, float b, float escala) { return std::fabs(a - b) <= folga * (escala + std::fabs(a)); }

void espera_espelho(const Contagem& a, const Contagem& b, const std::string& onde) {
    EXPECT_EQ(a.mobilidade, b.mobilidade) << onde;
    EXPECT_EQ(a.alvos, b.alvos) << onde;
    EXPECT_EQ(a.apoios, b.apoios) << onde;
    EXPECT_EQ(a.pecas, b.pecas) << onde;
    EXPECT_EQ(a.peoes, b.peoes) << onde;
    EXPECT_EQ(a.pontos, b.pontos) << onde;
    EXPECT_EQ(a.avanco, b.avanco) << onde;
    EXPECT_EQ(a.abrigo, b.abrigo) << onde;
    EXPECT_EQ(a.caixa(), b.caixa()) << onde;
    EXPECT_EQ(a.menor_file, b.menor_file) << onde;
    EXPECT_EQ(a.maior_file, b.maior_file) << onde;
    EXPECT_EQ(a.menor_rank, 7 - b.maior_rank) << onde;
    EXPECT_EQ(a.maior_rank, 7 - b.menor_rank) << onde;
    EXPECT_TRUE(perto(a.posicao, b.posicao, 1)) << onde << ": " << a.posicao << ' ' << b.posicao;
    EXPECT_TRUE(perto(a.centro, b.centro, 1)) << onde << ": " << a.centro << ' ' << b.centro;
    EXPECT_TRUE(perto(a.atack_ksf, b.atack_ksf, 1)) << onde << ": " << a.atack_ksf << ' ' << b.atack_ksf;
    EXPECT_TRUE(perto(a.defesa_ksf, b.defesa_ksf, 1)) << onde << ": " << a.defesa_ksf << ' ' << b.defesa_ksf;
}

void espera_espelho(const std::array<Contagem, 2>& a, const std::array<Contagem, 2>& b, const std::string& onde) {
    espera_espelho(a[brancas], b[pretas], onde + " White");
    espera_espelho(a[pretas], b[brancas], onde + " Black");
}

class EvalMirror : public ::testing::Test {
protected:
    void SetUp() override {
        processo_novo();
        agres = 2;
        agresprxrei = 3;
    }
    static const std::vector<plain::Position>& posicoes() {
        static const std::vector<plain::Position> todas = plain::data_positions("positions.fen");
        return todas;
    }
    static Cor espelhada(Cor c) { return outra(c); }
};

TEST_F(EvalMirror, Leaves) {
    for (const plain::Position& p : posicoes()) {
        const std::string fen = plain::to_fen(p);
        for (const Cor own : cores) {
            for (const Cor stm : cores) {
                poe_folha(fen);
                extraevalll = 0.5F;
                roque = {1, 0};
                const float v = julga(own, stm);
                const auto aqui = contagem;
                poe_folha(plain::to_fen(plain::mirrored(p)));
                extraevalll = 0.5F;
                roque = {0, 1};
                const float la = julga(espelhada(own), espelhada(stm));
                espera_espelho(aqui, contagem, fen);
                EXPECT_NEAR(v, la, 1e-3) << fen;
            }
        }
        if (HasFailure()) {
            return;
        }
    }
}

TEST_F(EvalMirror, BaseValues) {
    for (const plain::Position& p : posicoes()) {
        const std::string fen = plain::to_fen(p);
        for (const Cor own : cores) {
            poe_folha(fen);
            const float v = valor_da_base(own);
            const auto aqui = contagem;
            poe_folha(plain::to_fen(plain::mirrored(p)));
            const float la = valor_da_base(espelhada(own));
            espera_espelho(aqui, contagem, fen);
            EXPECT_NEAR(v, la, 1e-4) << fen;
        }
        if (HasFailure()) {
            return;
        }
    }
}

TEST_F(EvalMirror, Preparation) {
    for (const plain::Position& p : posicoes()) {
        const std::string fen = plain::to_fen(p);
        coloca_fen(fen);
        const float aqui = regimen;
        const auto contado = contagem;
        const auto rei_perto = Xr;
        const auto peao_perto = XP;
        const float diferenca = materialflot0;
        coloca_fen(plain::to_fen(plain::mirrored(p)));
        EXPECT_NEAR(aqui, regimen, 1e-4) << fen;
        EXPECT_EQ(diferenca, materialflot0) << fen;
        espera_espelho(contado, contagem, fen);
        for (int f = 0; f < 8; ++f) {
            for (int r = 0; r < 8; ++r) {
                for (const Cor c : cores) {
                    EXPECT_EQ(rei_perto[c][casa(f, r)], Xr[espelhada(c)][casa(f, 7 - r)]) << fen;
                    EXPECT_EQ(peao_perto[c][casa(f, r)], XP[espelhada(c)][casa(f, 7 - r)]) << fen;
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
    for (const plain::Position& p : posicoes()) {
        const std::string fen = plain::to_fen(p);
        const std::string la = plain::to_fen(plain::mirrored(p));
        const std::vector<plain::Move> lances = plain::legal_moves(p);
        // Some moves of each position are enough.
        for (std::size_t i = 0; i < lances.size(); i += 5) {
            const Lance m{lances[i].from_file, lances[i].from_rank, lances[i].to_file, lances[i].to_rank};
            const auto classifica = [](const std::string& onde, Lance x) {
                const Cor c = coloca_fen(onde);
                nb = 75;
                init_tabuleiro2(x);
                c == brancas ? verifica_estrategia<brancas>() : verifica_estrategia<pretas>();
                return std::pair{ATAQUE, ESTRATEGIA};
            };
            EXPECT_EQ(classifica(fen, m), classifica(la, {m.a, 7 - m.b, m.c, 7 - m.d})) << fen << ' ' << texto(m);
        }
        if (HasFailure()) {
            return;
        }
    }
}

// --- What is no mirror ---

TEST_F(EvalMirror, OfFilesDoesNotHoldForBishops) {
    coloca_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_NE(posix_bispo[brancas][casa_de("d5")], posix_bispo[brancas][casa_de("e5")]);
    EXPECT_EQ(posix_bispo[brancas][casa_de("d5")], posix_cavalo[brancas][casa_de("e5")]);
}

TEST_F(EvalMirror, OfFilesDoesNotHoldForTheForemostPawn) {
    coloca_fen("4k3/8/8/8/1P4P1/8/8/4K3 w - - 0 1");
    EXPECT_GT(XP[brancas][casa_de("g4")], XP[brancas][casa_de("b4")]);
}

// The order of the additions shows in the last bits of some position at least; were it not so, the mirror could be
// asked for to the last bit.
TEST_F(EvalMirror, IsNotOneOfTheLastBits) {
    int diferentes = 0;
    for (const plain::Position& p : posicoes()) {
        poe_folha(plain::to_fen(p));
        julga(brancas, brancas);
        const auto aqui = contagem;
        poe_folha(plain::to_fen(plain::mirrored(p)));
        julga(pretas, pretas);
        diferentes += mesmos_bits(aqui[brancas].centro, contagem[pretas].centro) ? 0 : 1;
    }
    EXPECT_GT(diferentes, 0);
}

}  // namespace
