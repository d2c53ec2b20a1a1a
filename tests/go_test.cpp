// The go line: its clock by the count of digits and the first of them, and the limits that follow from it.
#include "uci/go.h"

#include "base/root.h"
#include "support/dialogue.h"
#include "support/engine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using namespace teste;
using namespace ondrel;

// What a go line may change.
struct Relogio {
    int tempo, deep;
    bool folga;  // SEARCH_E, IIDS and EXTRA_EVAL stand: no low time

    bool operator==(const Relogio&) const = default;
};

void PrintTo(const Relogio& x, std::ostream* os) {
    *os << "tempo " << x.tempo << " deep " << x.deep << (x.folga ? "" : " low time");
}

class Go : public testing::Test {
protected:
    void SetUp() override { processo_novo(); }

    // As after a position with that many men and the default options.
    static void prepara(int n) {
        deep = 9;
        tempo = 300000;
        SEARCH_E = IIDS = EXTRA_EVAL = 1;
        npecas = {n - n / 2, n / 2};
    }

    static Relogio le(const std::string& linha, int n = 30) {
        prepara(n);
        in = linha;
        le_relogio_do_go();
        EXPECT_EQ(SEARCH_E, IIDS);
        EXPECT_EQ(SEARCH_E, EXTRA_EVAL);
        return {tempo, deep, SEARCH_E != 0};
    }
};

// The first clock behind each of the four beginnings, and a second one that nobody reads.
const std::vector<std::string> comecos{"go wtime ",
                                       "go btime ",
                                       "go movestogo 5 wtime ",
                                       "go movestogo 40 wtime ",
                                       "go movestogo 120 wtime ",
                                       "go movestogo 5 btime ",
                                       "go movestogo 40 btime "};

constexpr Relogio sem_relogio{300000, 9, true};

// --- Digits ---

TEST_F(Go, ClockIsReadByItsDigitsInEveryForm) {
    const std::vector<std::pair<std::string, Relogio>> linhas{
        {"7", {300000, 0, false}},           {"99", {300000, 0, false}},        {"999", {300000, 1, false}},
        {"9999", {300000, 3, false}},        {"99999", {90000, 7, true}},       {"123456", {100000, 9, true}},
        {"9876543", {9000000, 9, true}},     {"12345678", {10000000, 9, true}}, {"123456789", {10000000, 9, true}},
        {"1234567890", {10000000, 9, true}},
    };
    for (const std::string& comeco : comecos) {
        for (const auto& [digitos, esperado] : linhas) {
            EXPECT_EQ(le(comeco + digitos + " btime 1 winc 0 binc 0"), esperado) << comeco << digitos;
        }
    }
}

TEST_F(Go, LowTimeGoesDeeperWithFewMen) {
    struct Linha {
        const char* clock;
        int n, deep;
    };
    for (const Linha& x : {Linha{"5", 0, 0}, Linha{"5", 30, 0}, Linha{"50", 0, 1}, Linha{"50", 1, 1}, Linha{"50", 2, 0},
                           Linha{"500", 3, 3}, Linha{"500", 4, 1}, Linha{"500", 0, 3}, Linha{"5000", 5, 5},
                           Linha{"5000", 6, 3}, Linha{"5000", 0, 5}, Linha{"5000", 30, 3}}) {
        EXPECT_EQ(le(std::string("go wtime ") + x.clock + " btime 1", x.n), (Relogio{300000, x.deep, false}))
            << x.clock << " with " << x.n;
    }
}

TEST_F(Go, FirstDigitGivesTheBudget) {
    for (int F = 1; F <= 9; ++F) {
        const std::string digito = std::to_string(F);
        EXPECT_EQ(le("go wtime " + digito + "00000 btime 1").tempo, F * 100000);
        EXPECT_EQ(le("go wtime " + digito + "99999 btime 1").tempo, F * 100000);
        EXPECT_EQ(le("go wtime " + digito + "999999 btime 1").tempo, F * 1000000);
        EXPECT_EQ(le("go wtime " + digito + "9999 btime 1").tempo, F * 10000);
    }
}

TEST_F(Go, ZeroAsTheFirstDigitSetsNothing) {
    for (const char* clock : {"00000", "09999", "000000", "099999", "0000000"}) {
        EXPECT_EQ(le(std::string("go wtime ") + clock + " btime 1"), sem_relogio) << clock;
    }
}

// Eight digits do not ask for the first.
TEST_F(Go, ZeroAsTheFirstOfEightDigitsIsLongAllTheSame) {
    EXPECT_EQ(le("go wtime 00000000 btime 1"), (Relogio{10000000, 9, true}));
}

TEST_F(Go, ClockAtTheEndOfTheLineIsReadAsEightDigits) {
    for (const std::string& comeco : comecos) {
        for (const char* clock : {"300000", "5", "99999", ""}) {
            EXPECT_EQ(le(comeco + clock), (Relogio{10000000, 9, true})) << comeco << clock;
        }
    }
}

// The blank is looked for at seven positions behind the first digit, not at the first digit itself.
TEST_F(Go, DigitsAreTheDistanceToTheFirstBlankBehindTheFirst) {
    EXPECT_EQ(le("go wtime  5 btime 1"), (Relogio{300000, 0, false}));   // blank, digit, blank: two
    EXPECT_EQ(le("go wtime  300000 btime 1"), sem_relogio);              // seven, the first no digit
    EXPECT_EQ(le("go wtime abc btime 1"), (Relogio{300000, 1, false}));  // three
    EXPECT_EQ(le("go wtime 1234567x btime 1"), (Relogio{10000000, 9, true}));
}

// A minus is a digit like any other: an interface whose time is up gets a quick reply.
TEST_F(Go, NegativeTimeCountsItsMinus) {
    EXPECT_EQ(le("go wtime -5 btime 1"), (Relogio{300000, 0, false}));
    EXPECT_EQ(le("go wtime -50 btime 1"), (Relogio{300000, 1, false}));
    EXPECT_EQ(le("go wtime -100 btime 1"), (Relogio{300000, 3, false}));
    EXPECT_EQ(le("go wtime -1000 btime 1"), sem_relogio);
    EXPECT_EQ(le("go wtime -10000 btime 1"), sem_relogio);
}

// --- Forms ---

TEST_F(Go, LineWithoutAClockChangesNothing) {
    for (const char* linha :
         {"go", "go ", "go infinite", "go movetime 1000", "go depth 10", "go ponder", "go mate 3", "go nodes 100000",
          "go winc 0 wtime 5 btime 5", "go ponder wtime 5 btime 5", "go movestogo 1234 wtime 5 btime 5"}) {
        EXPECT_EQ(le(linha), sem_relogio) << linha;
    }
}

TEST_F(Go, OnlyTheFirstClockIsReadWhoseverItIs) {
    EXPECT_EQ(le("go wtime 300000 btime 5 winc 0 binc 0").tempo, 300000);
    EXPECT_EQ(le("go btime 300000 wtime 5 winc 0 binc 0").tempo, 300000);
    EXPECT_EQ(le("go btime 5 wtime 300000 "), (Relogio{300000, 0, false}));
}

TEST_F(Go, MovesToGoAreNotRead) {
    for (const char* quantos : {"1", "9", "10", "99", "100", "999"}) {
        EXPECT_EQ(le(std::string("go movestogo ") + quantos + " wtime 200000 btime 5"), (Relogio{200000, 9, true}));
    }
}

TEST_F(Go, FormIsKnownBySingleCharacters) {
    EXPECT_EQ(le("goXXtXXXX200000 "), (Relogio{200000, 9, true}));
    EXPECT_EQ(le("goXmXXXXXXXXXXXXtXXXX200000 "), (Relogio{200000, 9, true}));
    EXPECT_EQ(le("goXmXXXXXXXXXXXXXtXXXX200000 "), (Relogio{200000, 9, true}));
    EXPECT_EQ(le("goXmXXXXXXXXXXXXXXtXXXX200000 "), (Relogio{200000, 9, true}));
    EXPECT_EQ(le("goXXXXXXXXXXXXXXtXXXX200000 "), sem_relogio);
}

// --- The examples of play ---

TEST_F(Go, FiveMinutesChangeNothing) { EXPECT_EQ(le("go wtime 300000 btime 300000"), sem_relogio); }

TEST_F(Go, UnderAHundredSecondsIsOnePassOfSeven) {
    EXPECT_EQ(le("go wtime 99999 btime 99999"), (Relogio{90000, 7, true}));
}

TEST_F(Go, TwentyFiveSecondsAreLowTimeForAMediumMachine) {
    EXPECT_EQ(le("go wtime 25000 btime 25000"), (Relogio{20000, 5, false}));
}

TEST_F(Go, BlackTakesTheClockOfWhite) {
    coloca("position startpos moves g2g4");
    ASSERT_EQ(coloca("position startpos moves g2g4 e7e5 f2f3"), pretas);
    in = "go wtime 5000 btime 300000";
    le_relogio_do_go();
    EXPECT_EQ(deep, 3);
    EXPECT_EQ(IIDS, 0);
}

TEST_F(Go, MovesToGoFortyOfTwoMinutes) {
    EXPECT_EQ(le("go movestogo 40 wtime 120000 btime 120000"), (Relogio{100000, 9, true}));
}

// --- The table by CPU power ---

struct Potencia {
    const char* nome;
    int CPU, T, A, B, C, D, E;
};

class GoPower : public testing::TestWithParam<Potencia> {
protected:
    void SetUp() override {
        processo_novo();
        opcao("CPU power level", GetParam().nome);
        ASSERT_EQ(CPU, GetParam().CPU);
    }

    static int deep_de(int F, int n) {
        deep = 17;
        SEARCH_E = IIDS = EXTRA_EVAL = 1;
        npecas = {n, 0};
        in = "go wtime " + std::to_string(F) + "0000 btime 1";
        le_relogio_do_go();
        EXPECT_EQ(tempo, F * 10000);
        EXPECT_EQ(SEARCH_E, F * 10000 <= GetParam().T ? 0 : 1) << F;
        EXPECT_EQ(IIDS, SEARCH_E);
        EXPECT_EQ(EXTRA_EVAL, SEARCH_E);
        return deep;
    }
};

// 70 to 90 seconds: rule 2 alone.
TEST_P(GoPower, UpToNinetySeconds) {
    for (const int F : {7, 8, 9}) {
        EXPECT_EQ(deep_de(F, GetParam().A), 9);
        EXPECT_EQ(deep_de(F, GetParam().A + 1), 7);
        EXPECT_EQ(deep_de(F, 0), 9);
        EXPECT_EQ(deep_de(F, 30), 7);
    }
}

// 40 to 60 seconds: rule 3 over rule 2, so that A no longer counts.
TEST_P(GoPower, UpToSixtySeconds) {
    for (const int F : {4, 5, 6}) {
        EXPECT_EQ(deep_de(F, GetParam().B), 9);
        EXPECT_EQ(deep_de(F, GetParam().B + 1), 7);
        EXPECT_EQ(deep_de(F, GetParam().A), 7);
        EXPECT_EQ(deep_de(F, 0), 9);
        EXPECT_EQ(deep_de(F, 30), 7);
    }
}

// 20 and 30 seconds: rule 4.
TEST_P(GoPower, UpToThirtySeconds) {
    for (const int F : {2, 3}) {
        EXPECT_EQ(deep_de(F, GetParam().D), 9);
        EXPECT_EQ(deep_de(F, GetParam().D + 1), 7);
        EXPECT_EQ(deep_de(F, GetParam().C), 7);
        EXPECT_EQ(deep_de(F, GetParam().C + 1), 5);
        EXPECT_EQ(deep_de(F, 0), 9);
        EXPECT_EQ(deep_de(F, 30), 5);
    }
}

// 10 seconds: rule 5 over rule 4.
TEST_P(GoPower, UpToTenSeconds) {
    EXPECT_EQ(deep_de(1, GetParam().E), 7);
    EXPECT_EQ(deep_de(1, GetParam().E + 1), 5);
    EXPECT_EQ(deep_de(1, GetParam().D), 7);
    EXPECT_EQ(deep_de(1, 0), 7);
    EXPECT_EQ(deep_de(1, 30), 5);
}

TEST_P(GoPower, MenOfBothColoursCount) {
    const int n = GetParam().A;
    deep_de(9, 30);
    for (const int pretos : {0, 1, n}) {
        npecas = {n - pretos, pretos};
        le_relogio_do_go();
        EXPECT_EQ(deep, 9);
        npecas = {n - pretos, pretos + 1};
        le_relogio_do_go();
        EXPECT_EQ(deep, 7);
    }
}

TEST_P(GoPower, LongClocksDoNotAskForThePower) {
    for (const char* linha : {"go wtime 100000 btime 1", "go wtime 1000000 btime 1", "go wtime 10000000 btime 1"}) {
        deep = 9;
        SEARCH_E = 1;
        npecas = {0, 0};
        in = linha;
        le_relogio_do_go();
        EXPECT_EQ(deep, 9);
        EXPECT_EQ(SEARCH_E, 1);
    }
}

INSTANTIATE_TEST_SUITE_P(Go, GoPower,
                         testing::Values(Potencia{"extreme", 5, 10000, 15, 11, 17, 7, 9},
                                         Potencia{"high", 1, 20000, 13, 9, 15, 5, 7},
                                         Potencia{"medium", 2, 30000, 11, 7, 13, 3, 5},
                                         Potencia{"low", 3, 50000, 9, 5, 11, 1, 3}),
                         [](const auto& info) { return std::string(info.param.nome); });

// --- Limits ---

TEST_F(Go, LimitsOfAFullBoardAndFiveMinutes) {
    prepara(30);
    EXPECT_EQ(limite_suave(), 2000);
    EXPECT_EQ(limite_duro(), 20000);
}

TEST_F(Go, LimitsRoundTheMenDown) {
    prepara(29);  // 29 / 3 = 9
    EXPECT_EQ(limite_suave(), 300000 / 140);
    EXPECT_EQ(limite_duro(), 300000 / 14);
    Tu = 10;
    EXPECT_EQ(limite_suave(), 300000 / 70);
    EXPECT_EQ(limite_duro(), 300000 / 7);
    prepara(0);
    EXPECT_EQ(limite_suave(), 6000);
    EXPECT_EQ(limite_duro(), 60000);
    tempo = 99;
    EXPECT_EQ(limite_suave(), 1);
    EXPECT_EQ(limite_duro(), 19);
}

// --- Whole searches ---

bool chega_a(const Linhas& linhas, const std::string& depth) {
    return std::ranges::any_of(linhas, [&](const auto& x) { return x.find(" depth " + depth + " ") != x.npos; });
}

// Two walls of pawns, a king shut in behind each: so few moves that every depth is done in no time.
const std::string muralha = "position fen k2b4/p1pPp2p/P1P1P3/8/8/p1p1p3/P1PpP2P/K2B4 w - - 0 1";

TEST_F(Go, InfiniteEndsByItself) {
    const Linhas linhas = conversa({"setoption name Deep value 1", "position startpos moves e2e4 a7a6", "go infinite"});
    EXPECT_EQ(quantas_comecam(linhas, "bestmove "), 1);
    EXPECT_EQ(tempo, 300000);
}

TEST_F(Go, DepthDoesNotLimitTheDepth) {
    const Linhas linhas = conversa({"setoption name Deep value 2", "position startpos moves e2e4 a7a6", "go depth 1"});
    EXPECT_TRUE(chega_a(linhas, "4"));
}

TEST_F(Go, SevenIsASinglePass) {
    const Linhas linhas = conversa({muralha, "go wtime 99999 btime 99999"});
    EXPECT_TRUE(chega_a(linhas, "8"));
    EXPECT_FALSE(chega_a(linhas, "10"));
}

// The position line, not go, starts the clock: a late go finds the time over.
Linhas busca_atrasada(bool time_control, int ms) {
    const auto respostas =
        dialogo({std::string("setoption name Time control value ") + (time_control ? "true" : "false"),
                 muralha,
                 {"go wtime 100000 btime 100000", [ms] { inicio -= ms; }}});
    return respostas[2];
}

TEST_F(Go, WithoutTimeControlTheSearchGoesOnToTheLastDepth) { EXPECT_TRUE(chega_a(busca_atrasada(false, 4000), "24")); }

TEST_F(Go, WithTimeControlNoDepthIsBegunPastTheSoftLimit) {
    const Linhas linhas = busca_atrasada(true, 4000);
    EXPECT_TRUE(chega_a(linhas, "10"));
    EXPECT_FALSE(chega_a(linhas, "12"));
    EXPECT_LT(limite_suave(), 4000);
    EXPECT_GT(limite_duro(), 4000);
}

int relatos(const Linhas& linhas) {
    return static_cast<int>(
        std::ranges::count_if(linhas, [](const auto& x) { return x.find(" currmove ") != x.npos; }));
}

// Past the soft limit the depth that has begun is finished, with all its moves.
TEST_F(Go, PastTheSoftLimitAllMovesOfTheDepthAreSearched) { EXPECT_GT(relatos(busca_atrasada(true, 4000)), 1); }

// Past the hard limit it ends with the first line that is deep enough to look at the clock.
TEST_F(Go, PastTheHardLimitTheSearchStopsWithinTheMove) {
    const Linhas linhas = busca_atrasada(true, 20000);
    EXPECT_GE(20000, limite_duro());
    EXPECT_EQ(relatos(linhas), 1);
    EXPECT_EQ(quantas_comecam(linhas, "bestmove "), 1);
}

TEST_F(Go, WithoutTimeControlThereIsNoHardLimit) { EXPECT_TRUE(chega_a(busca_atrasada(false, 1000000), "24")); }

TEST_F(Go, LowTimeLastsForOneMove) {
    const auto respostas =
        dialogo({{muralha}, {"go wtime 5000 btime 5000"}, {muralha + " "}, {"go wtime 3000000 btime 3000000", [] {
                                                                                EXPECT_EQ(SEARCH_E, 1);
                                                                                EXPECT_EQ(IIDS, 1);
                                                                                EXPECT_EQ(EXTRA_EVAL, 1);
                                                                                EXPECT_EQ(tempo, 300000);
                                                                                EXPECT_EQ(deep, 9);
                                                                            }}});
    EXPECT_FALSE(chega_a(respostas[1], "8"));
    EXPECT_TRUE(chega_a(respostas[3], "12"));
}

TEST_F(Go, LowTimeReturnsToTheSettingsNotToOne) {
    dialogo({"setoption name Search extension value false",
             "setoption name Extra evaluation value false",
             muralha,
             "go wtime 50 btime 50",
             muralha,
             {"go wtime 50 btime 50", [] {
                  EXPECT_EQ(SEARCH_E, 0);
                  EXPECT_EQ(EXTRA_EVAL, 0);
                  EXPECT_EQ(IIDS, 1);
              }}});
}

}  // namespace
