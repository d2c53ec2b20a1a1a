// Whatever comes in: nothing crashes, nothing hangs, and every search writes its one reply.
#include "base/root.h"
#include "support/dialogue.h"
#include "support/engine.h"
#include "support/plain_chess.h"
#include "support/process.h"
#include "uci/position.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <random>
#include <regex>

namespace {

using namespace teste;
using namespace ondrel;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool com_sanitizer = true;
#elif defined(__has_feature)
constexpr bool com_sanitizer = __has_feature(address_sanitizer);
#else
constexpr bool com_sanitizer = false;
#endif

const std::string sem_lances = "setoption name Deep value 0";
const std::string raso = "setoption name Deep value 1";
const std::string fora_do_livro = "position startpos moves e2e4 a7a6";
const std::string inicial = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";

bool e_resposta(const std::string& linha) {
    static const std::regex forma("bestmove [a-h][1-8][a-h][1-8]q?");
    return std::regex_match(linha, forma);
}

class BadInput : public testing::Test {
protected:
    void SetUp() override { processo_novo(); }

    // The search of the position ends by itself: a final report and one reply, last of all.
    static void espera_uma_resposta(const std::string& posicao, const std::string& deep = sem_lances,
                                    const std::string& go = "go") {
        processo_novo();
        const auto respostas = dialogo({deep, posicao, go, "isready"});
        const std::string mostrada = posicao.substr(0, 200);
        ASSERT_EQ(respostas.size(), 4U) << mostrada;
        EXPECT_EQ(respostas[1], Linhas{}) << mostrada;
        ASSERT_GE(respostas[2].size(), 2U) << mostrada;
        EXPECT_TRUE(e_resposta(respostas[2].back())) << respostas[2].back() << " to " << mostrada;
        EXPECT_EQ(quantas_comecam(respostas[2], "bestmove"), 1) << mostrada;
        EXPECT_TRUE((respostas[2].end() - 2)->starts_with("info score ")) << mostrada;
        EXPECT_EQ(respostas[3], Linhas{"readyok"}) << mostrada;
    }

    // The line has no answer, idle or between moves, and both loops go on behind it.
    static void espera_silencio(const std::string& linha) {
        processo_novo();
        EXPECT_EQ(conversa({linha, "isready", "position startpos", linha, "isready"}),
                  (Linhas{"readyok", "bestmove e2e4", "readyok"}))
            << linha.substr(0, 200);
    }
};

// --- Length ---

const std::vector<std::size_t> tamanhos{0,   1,    2,    3,    4,    5,    8,    9,     10,    15,     16,
                                        17,  18,   20,   28,   29,   37,   50,   100,   255,   256,    998,
                                        999, 1000, 1001, 1023, 1024, 1025, 4096, 65535, 65536, 1000000};

TEST_F(BadInput, LinesOfNoughtToAMillionCharactersAreDropped) {
    for (const std::size_t n : tamanhos) {
        for (const char x : {'x', ' ', '/', '0', 's', 'g', '\0'}) {
            espera_silencio(std::string(n, x));
        }
    }
}

TEST_F(BadInput, LongLinesWhileWaitingForGoAreDropped) {
    for (const std::size_t n : tamanhos) {
        const auto respostas = dialogo(
            {sem_lances, "position fen 4k3/8/8/8/8/8/8/4K3 w - - 0 1", std::string(n, 'p'), std::string(n, ' '), "go"});
        EXPECT_EQ(quantas_comecam(respostas[4], "bestmove"), 1) << n;
    }
}

TEST_F(BadInput, OptionLinesOfAnyLengthAreDroppedOrRead) {
    for (const std::size_t n : tamanhos) {
        espera_silencio("setoption name " + std::string(n, 'C'));
        espera_silencio("setoption name Castle value value " + std::string(n, '9'));
        EXPECT_EQ(roque_v, n == 0 ? 3 : 10);
    }
}

TEST_F(BadInput, FenLinesOfAnyLength) {
    for (const std::size_t n : {0U, 1U, 7U, 8U, 9U, 64U, 65U, 1000U, 1000000U}) {
        for (const char x : {'8', '1', 'K', 'k', '/', ' ', 'x', '\0'}) {
            espera_uma_resposta("position fen " + std::string(n, x));
        }
    }
}

TEST_F(BadInput, GoLinesOfAnyLength) {
    for (const std::size_t n : tamanhos) {
        for (const char* comeco : {"go", "go ", "go wtime ", "go movestogo ", "go movestogo 40 wtime "}) {
            for (const char x : {'9', ' ', 't'}) {
                const auto respostas = dialogo({sem_lances, "position fen 4k3/8/8/8/8/8/8/4K3 w - - 0 1",
                                                std::string(comeco) + std::string(n, x)});
                EXPECT_EQ(quantas_comecam(respostas[2], "bestmove"), 1) << comeco << n << x;
            }
        }
    }
}

TEST_F(BadInput, MillionCharactersOfMoves) {
    std::string linha = "position startpos moves";
    while (linha.size() < 1000000) {
        linha += " e2e4";
    }
    EXPECT_EQ(quantas_comecam(conversa({sem_lances, linha, "go"}), "bestmove"), 1);
}

// --- FENs ---

TEST_F(BadInput, FenCutOffAtEveryCharacter) {
    const std::string linha = "position fen 4k2r/3P4/8/8/3pP3/8/7p/R3K3 b Qk e3 0 1 moves d4e3 d7e8q";
    for (std::size_t n = std::string("position f").size(); n <= linha.size(); ++n) {
        espera_uma_resposta(linha.substr(0, n));
    }
}

TEST_F(BadInput, FullFenCutOffAtEveryCharacterIsReplayed) {
    const std::string linha =
        "position fen r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1 moves "
        "e1g1 e8c8 a2a4 b4a3";
    for (std::size_t n = 0; n <= linha.size(); ++n) {
        coloca(linha.substr(0, n));
        EXPECT_LE(std::ranges::count_if(tab, [](int x) { return x != 0; }), 32) << n;
    }
    EXPECT_EQ(nb, 4);
}

TEST_F(BadInput, FenWithoutKings) {
    for (const char* fen :
         {"8/8/8/8/8/8/8/8 w - - 0 1", "8/8/8/8/8/8/8/8 b KQkq e3 0 1", "8/pppp4/8/8/8/8/PPPP4/8 w - - 0 1",
          "8/pppp4/8/8/8/8/PPPP4/8 b KQkq - 0 1", "rnbq1bnr/8/8/8/8/8/8/RNBQ1BNR w KQkq - 0 1",
          "4k3/8/8/8/8/8/8/RNBQ1BNR w KQ - 0 1", "4k3/8/8/8/8/8/8/RNBQ1BNR b kq - 0 1",
          "rnbq1bnr/8/8/8/8/8/8/4K3 w KQ - 0 1", "rnbq1bnr/8/8/8/8/8/8/4K3 b kq - 0 1", "8/8/8/8/8/8/8/K7 w - - 0 1",
          "8/8/8/8/8/8/8/k7 w - - 0 1", "8/P7/8/8/8/8/p7/8 w - - 0 1"}) {
        espera_uma_resposta(std::string("position fen ") + fen, raso);
    }
}

std::string oito_filas(const std::string& uma, const std::string& outra_fila) {
    std::string campo = uma;
    for (int r = 1; r < 8; ++r) {
        campo.append("/").append(r % 2 == 0 ? uma : outra_fila);
    }
    return campo;
}

TEST_F(BadInput, FenWithSixtyFourQueens) {
    espera_uma_resposta("position fen " + oito_filas("QQQQQQQQ", "QQQQQQQQ") + " w KQkq - 0 1", raso);
    espera_uma_resposta("position fen " + oito_filas("qqqqqqqq", "qqqqqqqq") + " w - - 0 1", raso);
    espera_uma_resposta("position fen " + oito_filas("QQQQqqqq", "QQQQqqqq") + " b - - 0 1");
}

TEST_F(BadInput, FenWithSixtyFourOfAnyMan) {
    for (const char man : {'P', 'p', 'N', 'n', 'B', 'b', 'R', 'r', 'K', 'k'}) {
        const std::string fila(8, man);
        espera_uma_resposta("position fen " + oito_filas(fila, fila) + " w KQkq - 0 1", raso);
        espera_uma_resposta("position fen " + oito_filas(fila, fila) + " b KQkq - 0 1", raso);
    }
}

TEST_F(BadInput, FenWithManyKings) {
    for (const char* fen : {"kkk5/8/8/8/8/8/8/5KKK w KQkq - 0 1", "kKkK4/8/8/8/8/8/8/4KkKk b - - 0 1",
                            "4k3/8/8/3kK3/8/8/8/4K3 w KQkq - 0 1"}) {
        espera_uma_resposta(std::string("position fen ") + fen, raso);
    }
}

TEST_F(BadInput, FenWithPawnsOnTheFirstAndLastRank) {
    for (const char* fen : {"PPPPkPPP/8/8/8/8/8/8/ppppKppp w - - 0 1", "PPPPkPPP/8/8/8/8/8/8/ppppKppp b - - 0 1",
                            "ppppkppp/8/8/8/8/8/8/PPPPKPPP w - - 0 1", "ppppkppp/8/8/8/8/8/8/PPPPKPPP b KQkq - 0 1",
                            "p3k2P/P6p/8/8/8/8/P6p/p3K2P w - - 0 1", "p3k2P/P6p/8/8/8/8/P6p/p3K2P b - - 0 1"}) {
        espera_uma_resposta(std::string("position fen ") + fen, raso);
    }
}

TEST_F(BadInput, FenOfFourFields) {
    espera_uma_resposta("position fen 4k3/8/8/8/8/8/4P3/4K3 w - -", raso);
    EXPECT_EQ(joga_com_b, 1);
    EXPECT_EQ(tabr1[0][0], 1);  // no move was replayed
}

TEST_F(BadInput, FenOfFewerFields) {
    for (const char* fen : {"4k3/8/8/8/8/8/4P3/4K3 w -", "4k3/8/8/8/8/8/4P3/4K3 w", "4k3/8/8/8/8/8/4P3/4K3 ",
                            "4k3/8/8/8/8/8/4P3/4K3", "4k3", "", "w - - 0 1"}) {
        espera_uma_resposta(std::string("position fen ") + fen, raso);
    }
    espera_uma_resposta("position fen", raso);
}

TEST_F(BadInput, FenThatIsNone) {
    for (const char* fen : {"blah", "blah blah blah", "////////////////", "9/9/9/9",
                            "kkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkk w", "4k3\t8\t8 w", "-1/-1/-1 w - - -1 -1"}) {
        espera_uma_resposta(std::string("position fen ") + fen, raso);
    }
}

TEST_F(BadInput, FenWithASideInCheckThatIsNotToMove) {
    espera_uma_resposta("position fen 4k3/8/8/8/8/8/4R3/4K3 w - - 0 1", raso);
    espera_uma_resposta("position fen 4k3/4q3/8/8/8/8/4R3/4K3 b - - 0 1", raso);
}

TEST_F(BadInput, FenWithAnEnPassantNobodyCanHaveLeft) {
    for (const char* campo : {"a3", "h3", "a6", "h6", "d3", "d6"}) {
        espera_uma_resposta(std::string("position fen 4k3/8/8/1pP1pP2/1Pp1pP2/8/8/4K3 w - ") + campo + " 0 1", raso);
        espera_uma_resposta(std::string("position fen 4k3/8/8/1pP1pP2/1Pp1pP2/8/8/4K3 b - ") + campo + " 0 1", raso);
    }
}

TEST_F(BadInput, FenWithCastlingRightsWithoutKingAndRook) {
    espera_uma_resposta("position fen 4k3/8/8/8/8/8/8/4K3 w KQkq - 0 1", raso);
    espera_uma_resposta("position fen r6r/4k3/8/8/8/8/4K3/R6R b KQkq - 0 1", raso);
}

// --- Moves ---

std::string repetidos(const std::vector<std::string>& lances, std::size_t quantos) {
    std::string texto;
    for (std::size_t k = 0; k < quantos; ++k) {
        texto.append(" ").append(lances[k % lances.size()]);
    }
    return texto;
}

const std::vector<std::string> cavalos{"g1f3", "g8f6", "f3g1", "f6g8"};

TEST_F(BadInput, GamesOfThousandsOfMoves) {
    for (const std::size_t n : {199U, 999U, 1000U, 1001U, 2000U, 4000U}) {
        espera_uma_resposta("position startpos moves" + repetidos(cavalos, n));
        EXPECT_EQ(tabr1[0][casa(5, 2)], cavalo);
    }
    espera_uma_resposta("position fen " + inicial + " w KQkq - 0 1 moves" + repetidos(cavalos, 2000));
}

TEST_F(BadInput, GameOfTwoThousandRandomMoves) {
    std::mt19937 sorte(7);
    for (int partida = 0; partida < 5; ++partida) {
        std::string linha = "position startpos moves";
        for (int k = 0; k < 2000; ++k) {
            linha += ' ';
            for (const char primeira : {'a', '1', 'a', '1'}) {
                linha += static_cast<char>(primeira + static_cast<int>(sorte() % 8));
            }
            if (sorte() % 8 == 0) {
                linha += "qrbnQx"[sorte() % 5];
            }
        }
        espera_uma_resposta(linha);
    }
}

TEST_F(BadInput, MovesFromEmptySquares) {
    for (const char* lances : {"e4e5 e5e4", "a3h8 h6a1", "e3e1 e6e8", "d4d4 d5d5", "e1e1 e8e8"}) {
        espera_uma_resposta(std::string("position startpos moves ") + lances, raso);
    }
}

TEST_F(BadInput, IllegalMovesInTheList) {
    for (const char* lances : {"e2e5 e7e4", "a1a8 h8h1", "e1e8 d8d1", "e1c1 e8g8", "b1b1 g8g8", "e7e5 e2e4",
                               "e2e8q e7e1n", "e4e5 0000", "0000 0000", "zzzz zzzz", "e2 e7", "e2e4e7 e7"}) {
        espera_uma_resposta(std::string("position startpos moves ") + lances, raso);
    }
}

TEST_F(BadInput, PositionOfOneMoveThatIsNone) {
    for (const char* resto : {"", " ", " e", " e2", " e2e", " zzzz", " 0000", " a1h8", " e4e5"}) {
        processo_novo();
        const Linhas linhas = conversa({"setoption name Own book value false", raso,
                                        std::string("position startpos moves") + resto, "go", "isready"});
        EXPECT_EQ(quantas_comecam(linhas, "bestmove"), 1) << resto;
        EXPECT_EQ(linhas.back(), "readyok") << resto;
    }
}

TEST_F(BadInput, GoInMateAndStalemate) {
    for (const char* fen : {"rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3",        // mated
                            "R5k1/5ppp/8/8/8/8/8/4K3 b - - 0 1", "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1",  // stalemated
                            "8/8/8/8/8/6q1/5p2/5K2 w - - 0 1"}) {
        const std::string linha = std::string("position fen ") + fen;
        for (const char* deep :
             {"setoption name Deep value 0", "setoption name Deep value 3", "setoption name Deep value 9"}) {
            espera_uma_resposta(linha, deep);
        }
        const Linhas linhas = conversa({linha, "go"});
        // The worst score, less the steps of the root window.
        constexpr std::string_view comeco = "info score cp ";
        ASSERT_TRUE(linhas.front().starts_with(comeco)) << linhas.front();
        EXPECT_NEAR(std::stod(linhas.front().substr(comeco.size())), -100000000, 2000);
    }
}

// --- Bytes ---

TEST_F(BadInput, EveryByteAlone) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string x(1, static_cast<char>(byte));
        EXPECT_EQ(conversa_crua(x + "\nisready\nposition startpos\n" + x + "\nisready\n"),
                  "readyok\nbestmove e2e4\nreadyok\n")
            << byte;
    }
}

TEST_F(BadInput, EveryByteInEveryPlaceOfAPosition) {
    const std::string fen = "position fen 4k3/8/8/8/8/8/4P3/4K3 w - e3 0 1 moves e2e4";
    const std::string inicio_ = "position startpos moves e2e4 e7e5";
    for (int byte = 0; byte < 256; ++byte) {
        for (const std::string& linha : {fen, inicio_}) {
            for (std::size_t k = 0; k < linha.size(); ++k) {
                std::string outra_linha = linha;
                outra_linha[k] = static_cast<char>(byte);
                coloca(outra_linha);
                EXPECT_TRUE(no_tabuleiro(abcd.a, abcd.b) && no_tabuleiro(abcd.c, abcd.d));
            }
        }
    }
}

TEST_F(BadInput, EveryByteInAMoveIsSearched) {
    for (int byte = 0; byte < 256; ++byte) {
        if (byte != '\n' && byte != '\r') {
            const std::string x(1, static_cast<char>(byte));
            espera_uma_resposta("position fen 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1 moves e2e" + x + " e8e7");
        }
    }
}

std::string ruido(std::mt19937& sorte, std::size_t n) {
    std::string texto(n, '\0');
    std::ranges::generate(texto, [&sorte] { return static_cast<char>(sorte() % 256); });
    return texto;
}

TEST_F(BadInput, BinaryNoise) {
    std::mt19937 sorte(1);
    for (int k = 0; k < 20; ++k) {
        EXPECT_EQ(conversa_crua(ruido(sorte, 10000) + "\nisready\n"), "readyok\n");
    }
}

TEST_F(BadInput, BinaryNoiseBehindEveryCommand) {
    std::mt19937 sorte(2);
    for (const char* comeco :
         {"position ", "position fen ", "position startpos moves ", "position startpos moves e2e4 ", "setoption name ",
          "setoption name Castle value value ", "uci", "isready", "quit"}) {
        for (int k = 0; k < 6; ++k) {
            std::string resto = ruido(sorte, 200);
            std::erase_if(resto, [](char x) { return x == '\n' || x == '\r'; });
            processo_novo();
            const Linhas linhas = conversa({sem_lances, comeco + resto, "go", "isready"});
            EXPECT_EQ(linhas.back(), "readyok") << comeco;
            EXPECT_LE(quantas_comecam(linhas, "bestmove"), 1) << comeco;
        }
    }
}

// Conversations with a few characters changed, lost or doubled.
TEST_F(BadInput, DamagedConversations) {
    const std::string inteira =
        "uci\nisready\nposition fen 4k3/7p/8/8/3pP3/8/P7/R3K3 b Q e3 0 1\ngo wtime 1000 btime 1000\n"
        "position fen 4k3/7p/8/8/3pP3/8/P7/R3K3 b Q e3 0 1 moves d4e3 e1c1\ngo movestogo 40 wtime 500 btime 1\n"
        "setoption name Castle value value 9\nisready\nposition startpos\ngo\nposition startpos moves e2e4\n";
    std::mt19937 sorte(3);
    for (int k = 0; k < 60; ++k) {
        std::string texto = inteira;
        for (int mudancas = 1 + static_cast<int>(sorte() % 6); mudancas > 0; --mudancas) {
            const std::size_t onde = sorte() % texto.size();
            switch (sorte() % 4) {
                case 0: texto[onde] = static_cast<char>(sorte() % 256); break;
                case 1: texto.erase(onde, 1 + sorte() % 4); break;
                case 2: texto.insert(onde, texto.substr(onde, 1 + sorte() % 20)); break;
                default: std::swap(texto[onde], texto[sorte() % texto.size()]); break;
            }
        }
        processo_novo();
        const std::string saida = conversa_crua(sem_lances + "\n" + texto + "\nquit\n");
        EXPECT_TRUE(saida.empty() || saida.back() == '\n');
    }
}

// --- Line ends and blanks ---

// The output without what the clock says.
std::string sem_tempo(const std::string& saida) {
    static const std::regex relogio(" time [0-9]+|info nps [0-9]+\n");
    return std::regex_replace(saida, relogio, "");
}

TEST_F(BadInput, LinesMayEndInCarriageReturnAndLineFeed) {
    const std::string lf =
        raso + "\nuci\nisready\n" + fora_do_livro + "\ngo wtime 300000 btime 300000\nisready\nquit\n";
    const std::string antes = sem_tempo(conversa_crua(lf));
    processo_novo();
    EXPECT_EQ(sem_tempo(conversa_crua(std::regex_replace(lf, std::regex("\n"), "\r\n"))), antes);
    EXPECT_EQ(antes.find('\r'), std::string::npos);
}

TEST_F(BadInput, OnlyOneCarriageReturnIsOfTheLineEnd) {
    EXPECT_EQ(conversa_crua("isready\r\r\nisready\r\nis\rready\n\r\n"), "readyok\n");
}

TEST_F(BadInput, LeadingBlanksMakeAnotherLine) {
    for (const char* linha : {" uci", " isready", " quit", " position startpos", " position startpos moves e2e4 e7e5",
                              " position fen 4k3/8/8/8/8/8/8/4K3 w - - 0 1", "\tisready", " go"}) {
        espera_silencio(linha);
    }
}

TEST_F(BadInput, OptionsWithoutNameOrValue) {
    for (const char* linha :
         {"setoption", "setoption ", "setoption name", "setoption name ", "setoption name  value ", "setoption value 3",
          "setoption name Deep", "setoption name Deep value", "setoption name Deep value ",
          "setoption name Time usage value 0", "setoption name Clear", "setoption name value value value"}) {
        espera_silencio(linha);
        EXPECT_EQ(deepp, 17);
        EXPECT_EQ(Tu, 3);
    }
}

TEST_F(BadInput, NegativeAndBrokenClocks) {
    for (const char* go :
         {"go wtime -1 btime -1", "go wtime -100 btime -100", "go wtime -99999 btime 1", "go wtime", "go wtime ",
          "go wtime x", "go wtime 99999999999999999999 btime 1", "go movestogo", "go movestogo 1",
          "go movestogo -1 wtime -1", "go depth -1", "go movetime -1", "go perft 5"}) {
        espera_uma_resposta("position fen 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", raso, go);
    }
}

// With the clock alone to end it: a nonsense position with every option as it is.
TEST_F(BadInput, NonsenseIsSearchedWithinItsClock) {
    for (const char* fen : {"kkk5/pp6/8/8/8/8/6PP/5KKK w - - 0 1", "8/pp6/8/8/8/8/6PP/8 b - - 0 1",
                            "PPPPk3/8/8/8/8/8/8/ppppK3 w - - 0 1"}) {
        for (const char* go :
             {"go wtime 5 btime 5", "go wtime 50 btime 5", "go wtime 500 btime 5", "go wtime 5000 btime 5"}) {
            espera_uma_resposta(std::string("position fen ") + fen, "setoption name Deep value 9", go);
        }
    }
}

// --- End of input ---

TEST_F(BadInput, EndOfInputAtEveryCharacterOfAConversation) {
    const std::string inteira =
        "uci\nisready\n" + sem_lances + "\nposition startpos\ngo wtime 1000 btime 1000\n" +
        "position fen 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1 moves e2e4\ngo wtime 1000 btime 1000\nisready\nquit\n";
    const std::size_t no_fen = inteira.find("position f") + 10;
    const std::size_t no_comeco = inteira.find("position startpos") + 17;
    for (std::size_t n = 0; n <= inteira.size(); ++n) {
        processo_novo();
        const std::string saida = conversa_crua(inteira.substr(0, n));
        int respostas = 0;
        for (std::size_t k = saida.find("bestmove"); k != std::string::npos; k = saida.find("bestmove", k + 1)) {
            ++respostas;
        }
        // A position that has been begun is searched, since the end of input stands for its go.
        EXPECT_EQ(respostas, (n >= no_comeco ? 1 : 0) + (n >= no_fen ? 1 : 0)) << n;
    }
}

TEST(BadInputProcess, EndOfInputWhileIdle) {
    Processo engine;
    engine.fecha_entrada();
    EXPECT_EQ(engine.espera_fim(), 0);
}

TEST(BadInputProcess, EndOfInputWhileWaitingForGo) {
    Processo engine;
    engine.escreve(raso);
    engine.escreve(fora_do_livro);
    engine.fecha_entrada();
    std::string linha;
    std::string ultima;
    while (engine.le(linha)) {
        ultima = linha;
    }
    EXPECT_TRUE(e_resposta(ultima)) << ultima;
    EXPECT_EQ(engine.espera_fim(), 0);
}

TEST(BadInputProcess, EndOfInputDuringASearch) {
    Processo engine;
    engine.escreve("setoption name Deep value 3");
    engine.escreve(fora_do_livro);
    engine.escreve("go infinite");
    std::string linha;
    ASSERT_TRUE(engine.le(linha));  // it searches
    engine.fecha_entrada();
    std::string ultima;
    while (engine.le(linha)) {
        ultima = linha;
    }
    EXPECT_TRUE(e_resposta(ultima)) << ultima;
    EXPECT_EQ(engine.espera_fim(), 0);
}

TEST(BadInputProcess, CommandsQueuedBehindASearchAreAnsweredAfterIt) {
    const Resultado r = roda(raso + "\n" + fora_do_livro + "\ngo\nisready\nstop\nisready\nquit\nisready\n");
    EXPECT_EQ(r.codigo, 0);
    const auto linhas = r.linhas();
    ASSERT_GE(linhas.size(), 3U);
    EXPECT_TRUE(e_resposta(*(linhas.end() - 3)));
    EXPECT_EQ(*(linhas.end() - 2), "readyok");
    EXPECT_EQ(linhas.back(), "readyok");
    EXPECT_EQ(r.quantas("readyok"), 2);
}

TEST(BadInputProcess, NoiseLeavesNoTrace) {
    std::mt19937 sorte(4);
    const Resultado r = roda(ruido(sorte, 300000) + "\nisready\nquit\n");
    EXPECT_EQ(r.saida, "readyok\n");
    EXPECT_EQ(r.erro, "");
    EXPECT_EQ(r.codigo, 0);
    EXPECT_EQ(r.sinal, 0);
}

TEST(BadInputProcess, LineOfAMillionCharacters) {
    const Resultado r = roda(std::string(1000000, 'p') + "\nisready\n" + std::string(1000000, '\0') + "\nquit\n");
    EXPECT_EQ(r.saida, "readyok\n");
    EXPECT_EQ(r.codigo, 0);
}

// --- Starting up ---

TEST(BadInputProcess, AnswersUciAtOnce) {
    auto melhor = std::chrono::milliseconds(1000000);
    for (int k = 0; k < 5; ++k) {
        const auto antes = std::chrono::steady_clock::now();
        Processo engine;
        engine.escreve("uci");
        std::string linha;
        while (engine.le(linha) && linha != "uciok") {
        }
        ASSERT_EQ(linha, "uciok");
        melhor = std::min(
            melhor, std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - antes));
    }
    EXPECT_LT(melhor.count(), com_sanitizer ? 5000 : 50);
}

TEST(BadInputProcess, StartsInLittleMemory) {
    if (com_sanitizer) {
        GTEST_SKIP() << "the sanitizer's own memory counts as the engine's";
    }
    Processo engine;
    engine.escreve("uci");
    engine.escreve("isready");
    std::string linha;
    while (engine.le(linha) && linha != "readyok") {
    }
    std::ifstream estado("/proc/" + std::to_string(engine.pid()) + "/status");
    int kilobytes = -1;
    while (std::getline(estado, linha)) {
        if (linha.starts_with("VmRSS:")) {
            kilobytes = std::stoi(linha.substr(6));
        }
    }
    EXPECT_GT(kilobytes, 0);
    EXPECT_LT(kilobytes, 10 * 1024);
}

}  // namespace
