// What the interface sees of a search: the running lines and the final one.
#include "uci/report.h"

#include "base/bounds.h"
#include "base/clock.h"
#include "memory/shallow_tables.h"
#include "search/tree.h"
#include "support/dialogue.h"
#include "support/engine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>

namespace {

using namespace teste;
using namespace ondrel;

struct Mate {
    float score;
    int numero;
};

// The two nearest own mates are both "mate 1", so that the engine's own run one number behind.
constexpr std::array<Mate, 24> degraus{{
    {15400.0F, 1},   {14300.0F, 1},   {13200.0F, 2},   {12100.0F, 3},   {11000.0F, 4},   {9900.0F, 5},
    {8800.0F, 6},    {7700.0F, 7},    {6600.0F, 8},    {5500.0F, 9},    {4400.0F, 10},   {3300.0F, 11},
    {-15400.0F, -1}, {-14300.0F, -2}, {-13200.0F, -3}, {-12100.0F, -4}, {-11000.0F, -5}, {-9900.0F, -6},
    {-8800.0F, -7},  {-7700.0F, -8},  {-6600.0F, -9},  {-5500.0F, -10}, {-4400.0F, -11}, {-3300.0F, -12},
}};

class Report : public testing::Test {
protected:
    void SetUp() override {
        processo_novo();
        deep = 9;
        ddep = 14;
        dddep = 11;
        curr = 3;
        nodes = 123456;
        emp = emppp = -15;
        ABCD = {'e', '2', 'e', '4'};
        for (auto& lance : A0_D7) {
            lance = {' ', ' ', ' ', ' '};
        }
        A0_D7[0] = {'g', '1', 'f', '3'};
        A0_D7[1] = {'b', '8', 'c', '6'};
        inicio = relogio() - 7;
    }

    static std::string escrito(void (*relator)()) { return com_entrada("", relator); }

    static std::string final(float score) {
        EP = score;
        return escrito(info_final);
    }

    // The running report: the line of the move and that of the speed, either may be empty.
    struct Relato {
        std::string lance, velocidade;
    };
    static Relato corrente(float score) {
        beta[1] = score;
        std::istringstream de(escrito(info_deept));
        Relato r;
        for (std::string linha; std::getline(de, linha);) {
            (linha.starts_with("info nps ") ? r.velocidade : r.lance) = linha;
        }
        return r;
    }

    // The value behind "info score cp ".
    static std::string cp(const std::string& linha) {
        constexpr std::string_view comeco = "info score cp ";
        EXPECT_TRUE(linha.starts_with(comeco)) << linha;
        return linha.substr(comeco.size(), linha.find(' ', comeco.size()) - comeco.size());
    }

    static void espera_cp(float score, const char* texto) {
        EXPECT_EQ(cp(final(score)), texto) << "deep " << deep;
        EXPECT_EQ(cp(corrente(score).lance), texto) << "deep " << deep;
    }
};

// --- Mates ---

TEST_F(Report, EveryStepOfTheLadderIsAMateInBothReports) {
    for (const int d : {9, 10}) {
        for (const Mate& x : degraus) {
            deep = d;
            dddep = 11;
            const std::string comeco = "info score mate " + std::to_string(x.numero) + "  depth ";
            EXPECT_EQ(final(x.score), comeco + "12 nodes 123456 pv e2e4\n");
            EXPECT_TRUE(corrente(x.score).lance.starts_with(comeco + std::to_string(d + 1) + " seldepth 15 "))
                << corrente(x.score).lance;
        }
    }
}

TEST_F(Report, OnlyTheLadderItselfIsAMate) {
    for (const Mate& x : degraus) {
        for (const float y : {std::nextafter(x.score, 0.0F), std::nextafter(x.score, 2.0F * x.score)}) {
            EXPECT_TRUE(final(y).starts_with("info score cp ")) << y;
            EXPECT_TRUE(corrente(y).lance.starts_with("info score cp ")) << y;
        }
    }
    for (const float y : {16500.0F, -16500.0F, 2200.0F, -2200.0F, 0.0F}) {
        EXPECT_TRUE(final(y).starts_with("info score cp ")) << y;
    }
}

TEST_F(Report, MateOneAndMateTwo) {
    EXPECT_TRUE(final(14300.0F).starts_with("info score mate 1 "));
    EXPECT_TRUE(final(13200.0F).starts_with("info score mate 2 "));
}

TEST_F(Report, FarthestMateAgainstTheEngine) { EXPECT_TRUE(final(-3300.0F).starts_with("info score mate -12 ")); }

// --- Centipawns and the draw offset ---

TEST_F(Report, OffsetGoesWithTheParityOfTheDepth) {
    for (deep = 0; deep <= 23; ++deep) {
        espera_cp(15.0F, deep % 2 == 0 ? "50" : "250");
        espera_cp(-15.0F, deep % 2 == 0 ? "-250" : "-50");
    }
}

TEST_F(Report, PawnAndAHalfAtNineAndTen) {
    deep = 9;
    espera_cp(15.0F, "250");
    deep = 10;
    espera_cp(15.0F, "50");
}

TEST_F(Report, OffsetVanishesOnceTheDrawScoreHasRisen) {
    emp = emppp + 10;
    for (deep = 0; deep <= 23; ++deep) {
        espera_cp(15.0F, "150");
    }
}

TEST_F(Report, CentipawnsAreCutTowardZeroBeforeTheOffset) {
    emp = 0;
    for (const auto& [score, texto] : {std::pair{0.06F, "0"},
                                       {-0.06F, "0"},
                                       {1.55F, "15"},
                                       {-1.55F, "-15"},
                                       {-0.15F, "-1"},
                                       {123.456F, "1234"},
                                       {-123.456F, "-1234"}}) {
        espera_cp(score, texto);
    }
    emp = emppp;
    espera_cp(-0.06F, "100");
    espera_cp(-0.15F, "99");
    deep = 8;
    espera_cp(0.15F, "-99");
}

TEST_F(Report, NoLegalMoveShowsTheWorstScore) {
    EXPECT_EQ(cp(final(-10000000.0F)), "-99999900");
    deep = 8;
    EXPECT_EQ(cp(final(-10000000.0F)), "-100000100");
}

// --- The final line ---

TEST_F(Report, FinalLineIsComplete) { EXPECT_EQ(final(15.0F), "info score cp 250 depth 12 nodes 123456 pv e2e4\n"); }

TEST_F(Report, FinalDepthIsThatOfTheSearchWithoutExtraEvaluation) {
    EXTRA_EVAL = 0;
    deep = 5;
    EXPECT_EQ(final(15.0F), "info score cp 250 depth 6 nodes 123456 pv e2e4\n");
    EXPECT_EQ(dddep, 5);
}

TEST_F(Report, FinalLineLooksAtNoRunningScore) {
    beta[1] = 14300.0F;
    EXPECT_EQ(cp(final(15.0F)), "250");
    EP = 14300.0F;
    EXPECT_EQ(cp(corrente(15.0F).lance), "250");
}

// --- The running line ---

// The fields behind the score, the time taken out of the line since it is the clock's.
std::string com_tempo(const std::string& linha, std::string antes, const std::string& depois) {
    const auto k = linha.find(" time ") + 6;
    return antes.append(" time ").append(linha.substr(k, linha.find(' ', k) - k)).append(depois);
}

const std::string pv_de_dois = " pv g1f3 b8c6                              ";

TEST_F(Report, RunningLineIsComplete) {
    const std::string linha = corrente(15.0F).lance;
    EXPECT_EQ(linha,
              com_tempo(linha, "info score cp 250 depth 10 seldepth 15 currmove g1f3 currmovenumber 3 nodes 123456",
                        " hashfull 0" + pv_de_dois));
    EXPECT_EQ(pv_de_dois.size(), 3 + 8 * 5U);
}

TEST_F(Report, WithoutDeepMemoryTheLineLosesItsHashfullAlone) {
    HASHf = 0;
    inc[3][brancas] = 3000;
    const std::string linha = corrente(15.0F).lance;
    EXPECT_EQ(linha,
              com_tempo(linha, "info score cp 250 depth 10 seldepth 15 currmove g1f3 currmovenumber 3 nodes 123456",
                        pv_de_dois));
}

TEST_F(Report, AllEightMovesAreWritten) {
    for (std::size_t k = 0; k < 8; ++k) {
        A0_D7[k] = {static_cast<char>('a' + k), '2', static_cast<char>('a' + k), '4'};
    }
    EXPECT_TRUE(corrente(15.0F).lance.ends_with(" pv a2a4 b2b4 c2c4 d2d4 e2e4 f2f4 g2g4 h2h4"));
}

TEST_F(Report, SeldepthIsTheDepthWithoutExtraEvaluation) {
    EXTRA_EVAL = 0;
    EXPECT_NE(corrente(15.0F).lance.find(" depth 10 seldepth 10 "), std::string::npos);
    EXPECT_EQ(ddep, 9);
}

TEST_F(Report, DeepestPlyIsKept) {
    corrente(15.0F);
    EXPECT_EQ(dddep, 14);
    ddep = 12;
    corrente(15.0F);
    EXPECT_EQ(dddep, 14);
    EXPECT_EQ(final(15.0F).substr(0, 26), "info score cp 250 depth 15");
}

TEST_F(Report, NodesAreShownSigned) {
    nodes = 0xFFFFFFFFU;
    EXPECT_NE(final(15.0F).find(" nodes -1 "), std::string::npos);
    EXPECT_NE(corrente(15.0F).lance.find(" nodes -1 "), std::string::npos);
}

// --- Time ---

TEST_F(Report, TimeCountsFromThePositionLine) {
    const int antes = relogio() - inicio;
    const std::string linha = corrente(15.0F).lance;
    const int depois = relogio() - inicio;
    const int mostrado = std::stoi(linha.substr(linha.find(" time ") + 6));
    EXPECT_GE(mostrado, antes);
    EXPECT_LE(mostrado, depois);
    EXPECT_EQ(mostrado, fim - inicio);
}

TEST_F(Report, SpeedDividesFirst) {
    nodes = 99999;
    const Relato r = corrente(15.0F);
    const int tempo_mostrado = std::stoi(r.lance.substr(r.lance.find(" time ") + 6));
    EXPECT_EQ(r.velocidade, "info nps " + std::to_string(99999 / tempo_mostrado * 1000));
    EXPECT_TRUE(r.velocidade.ends_with("000"));
}

TEST_F(Report, FewNodesInAMillisecondAreNoSpeedAtAll) {
    nodes = 5;
    EXPECT_EQ(corrente(15.0F).velocidade, "info nps 0");
}

TEST_F(Report, NoSpeedWithinTheTickOfThePosition) {
    bool no_mesmo_instante = false;
    for (int tentativa = 0; tentativa < 1000 && !no_mesmo_instante; ++tentativa) {
        inicio = relogio();
        const Relato r = corrente(15.0F);
        no_mesmo_instante = fim == inicio;
        EXPECT_EQ(r.velocidade.empty(), no_mesmo_instante);
        EXPECT_FALSE(r.lance.empty());
    }
    EXPECT_TRUE(no_mesmo_instante);
}

// --- Hash figure ---

std::string hashfull_de(const std::string& linha) {
    const auto k = linha.find(" hashfull ") + 10;
    return linha.substr(k, linha.find(' ', k) - k);
}

TEST_F(Report, HashFigureIsTheSumOfThreeTables) {
    inc[3] = {100, 9000};
    inc[4] = {9000, 20};
    inc[5] = {9, 9000};
    EXPECT_EQ(hashfull_de(corrente(15.0F).lance), "4");  // 129 / 30, the other chain aside
    inc[3][brancas] = 9998;
    EXPECT_EQ(hashfull_de(corrente(15.0F).lance), "334");  // 10027 / 30
}

TEST_F(Report, HashFigureOfAFullTableIsTenThousand) {
    inc[3][brancas] = inc[4][pretas] = inc[5][brancas] = 3;
    FULL[3] = 1;
    EXPECT_EQ(hashfull_de(corrente(15.0F).lance), "333");  // 10006 / 30
    FULL[4] = 1;
    EXPECT_EQ(hashfull_de(corrente(15.0F).lance), "666");
    FULL[5] = 1;
    EXPECT_EQ(hashfull_de(corrente(15.0F).lance), "1000");
    FULL[3] = FULL[4] = 0;
    EXPECT_EQ(hashfull_de(corrente(15.0F).lance), "333");
}

TEST_F(Report, HashFigureOfAGameAsBlackIsThatOfTheSameThreeTables) {
    joga_com_b = 0;
    inc[3] = {0, 9000};
    inc[4] = {9000, 0};
    inc[5] = {0, 9000};
    EXPECT_EQ(hashfull_de(corrente(15.0F).lance), "0");
}

// --- Full info ---

TEST_F(Report, WithoutFullInfoALosingMoveIsNotShown) {
    FULL_inf = 0;
    const Relato r = corrente(-200.0F);
    EXPECT_EQ(r.lance, "");
    EXPECT_TRUE(r.velocidade.starts_with("info nps "));
}

TEST_F(Report, FullInfoShowsALosingMove) { EXPECT_EQ(cp(corrente(-200.0F).lance), "-1900"); }

// Shown from 15 points below the material balance on, with the offset as it is shown.
TEST_F(Report, WithoutFullInfoTheMarginIsFifteenPointsAroundTheMaterial) {
    FULL_inf = 0;
    struct Margem {
        int deep;
        bool desconta;
        float primeiro;  // the lowest score shown, material 20 ahead
    };
    // 20 - 15 = 5 points; the offset is 10.
    for (const Margem& x : {Margem{9, true, -5.0F}, Margem{10, true, 15.0F}, Margem{9, false, 5.0F},
                            Margem{10, false, 5.0F}, Margem{0, true, 15.0F}, Margem{23, true, -5.0F}}) {
        deep = x.deep;
        emp = x.desconta ? emppp : emppp + 10;
        materialflot0 = 20.0F;
        EXPECT_NE(corrente(x.primeiro).lance, "") << deep;
        EXPECT_EQ(corrente(x.primeiro - 0.25F).lance, "") << deep;
    }
}

TEST_F(Report, WithoutFullInfoMatesAreShownAllTheSame) {
    FULL_inf = 0;
    materialflot0 = 500.0F;
    for (const Mate& x : degraus) {
        EXPECT_TRUE(corrente(x.score).lance.starts_with("info score mate ")) << x.score;
    }
}

TEST_F(Report, WithoutFullInfoTheFinalLineStands) {
    FULL_inf = 0;
    EXPECT_EQ(cp(final(-200.0F)), "-1900");
}

TEST_F(Report, DeepestPlyIsKeptOfAMoveThatIsNotShown) {
    FULL_inf = 0;
    corrente(-200.0F);
    EXPECT_EQ(dddep, 14);
}

// --- In a whole search ---

TEST_F(Report, BuildPassIsSilent) {
    const Linhas linhas =
        conversa({"setoption name Deep value 5", "position fen 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", "go"});
    int relatos = 0;
    for (const std::string& linha : linhas) {
        relatos += linha.find(" currmove ") != linha.npos ? 1 : 0;
        EXPECT_EQ(linha.find(" currmove ") != linha.npos && linha.find(" depth 8 ") != linha.npos, false) << linha;
    }
    EXPECT_GT(relatos, 0);
}

TEST_F(Report, EveryRootMoveIsReportedOnce) {
    const Linhas linhas = conversa({"setoption name Deep value 0", "position startpos moves e2e4 a7a6", "go"});
    for (int k = 1; k <= 30; ++k) {
        const std::string numero = " currmovenumber " + std::to_string(k) + " ";
        EXPECT_EQ(std::ranges::count_if(linhas, [&](const auto& x) { return x.find(numero) != x.npos; }), 1) << k;
    }
    EXPECT_EQ(quantas_comecam(linhas, "info score "), 31);  // 30 moves and the final line
}

TEST_F(Report, UnreachedMovesOfTheLineAreBlank) {
    const Linhas linhas = conversa({"setoption name Deep value 0", "position startpos moves e2e4 a7a6", "go"});
    for (const std::string& linha : linhas) {
        if (const auto pv = linha.find(" pv "); linha.find(" currmove ") != linha.npos) {
            EXPECT_EQ(linha.size() - pv, 3 + 8 * 5U) << linha;
            EXPECT_EQ(linha.substr(pv + 4, 4), linha.substr(linha.find(" currmove ") + 10, 4));
        }
    }
}

TEST_F(Report, NodesCountOneSearch) {
    const std::vector<Fala> falas{"setoption name Deep value 0",       "setoption name Memory value false",
                                  "position startpos moves e2e4 a7a6", "go",
                                  "position startpos moves e2e4 a7a6", "go"};
    const auto respostas = dialogo(falas);
    EXPECT_EQ(*(respostas[3].end() - 2), *(respostas[5].end() - 2));
}

}  // namespace
