// The same lines give the same lines: in another process, and in one process that has forgotten what it remembers. All
// state is static and outlives the search, so that whatever a search leaves behind would show here.
#include "support/plain_chess.h"
#include "support/process.h"
#include "support/transcript.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace teste;
using Linhas = std::vector<std::string>;

// Searches of all kinds, without the clock: from the start position and from FEN, for both colours, with every option
// as shipped but for the depth.
Linhas conversa_variada() {
    Linhas linhas{"setoption name Time control value false", "setoption name Own book value false"};
    const auto pergunta = [&linhas](char deep, std::string_view posicao) {
        linhas.push_back(std::string("setoption name Deep value ") + deep);
        linhas.push_back("position " + std::string(posicao));
        linhas.emplace_back("go wtime 99999999 btime 99999999");
    };
    pergunta('2', "startpos moves e2e4 e7e5 g1f3");
    pergunta('2', "startpos moves d2d4 g8f6 c2c4 e7e6");
    pergunta('5', "fen 8/5pk1/6p1/3P4/8/6P1/2p2PK1/8 w - - 0 1");
    pergunta('5', "fen 8/2p2pk1/1p4p1/8/P1P2P2/6K1/6P1/8 b - - 0 1");
    pergunta('3', "fen r3k2r/pp3ppp/8/3q4/3Q4/8/PP3PPP/R3K2R w KQkq - 0 1");
    pergunta('2', "fen 8/1P4k1/8/8/8/8/1p4K1/8 b - - 0 1");
    pergunta('4', "fen 8/8/3k4/8/8/3K4/3P4/8 w - - 0 1 moves d3e4 d6e6");
    return linhas;
}

// Other searches, which leave other things behind: stored moves, bounds, flags of castling and of double steps.
Linhas outra_conversa() {
    return {"setoption name Time control value false",
            "setoption name Deep value 3",
            "position fen rnb1kbn1/pp1p2p1/3r4/q1p1p1Bp/P3PpP1/2NP3P/1PP1QP2/R3KBNR b Qq g3 0 11",
            "go wtime 99999999 btime 99999999",
            "position fen 5rk1/1b3p1p/pp3p2/3n1N2/1P6/P1qB1PP1/3Q3P/4R1K1 w - - 0 1",
            "go wtime 500 btime 500",
            "setoption name Deep value 5",
            "position fen 8/8/8/8/8/2k5/1p6/K7 w - - 0 1",
            "go wtime 99999999 btime 99999999"};
}

std::string texto(const Linhas& linhas) {
    std::string todas;
    for (const std::string& linha : linhas) {
        todas += linha + '\n';
    }
    return todas;
}

Linhas junta(std::initializer_list<Linhas> partes) {
    Linhas todas;
    for (const Linhas& parte : partes) {
        todas.insert(todas.end(), parte.begin(), parte.end());
    }
    return todas;
}

// What the process has written to the lines behind the last "isready".
Linhas depois_do_sinal(const Linhas& linhas) {
    const auto sinal = std::find(linhas.rbegin(), linhas.rend(), "readyok");
    EXPECT_NE(sinal, linhas.rend());
    return {sinal.base(), linhas.end()};
}

const Linhas esquece{"setoption name Clear memory", "setoption name Clear deep memory", "isready"};

TEST(Determinismo, two_processes_write_the_same) {
    const std::string entrada = texto(conversa_variada());
    const Linhas uma = sem_relogio(roda(entrada).linhas());
    const Linhas outra = sem_relogio(roda(entrada).linhas());
    EXPECT_GT(uma.size(), 60U);
    EXPECT_EQ(uma, outra);
}

// The deepest ply shown is of the process, and so it is left out.
TEST(Determinismo, one_process_writes_the_same_twice_once_its_memory_is_cleared) {
    const Linhas conversa = conversa_variada();
    const Linhas primeira = sem_profundidades(roda(texto(conversa)).linhas());
    const Linhas duas = sem_profundidades(roda(texto(junta({conversa, esquece, conversa}))).linhas());
    EXPECT_EQ(depois_do_sinal(duas), primeira);
}

TEST(Determinismo, a_process_that_remembers_answers_the_second_time_from_memory) {
    const Linhas conversa = conversa_variada();
    const Linhas duas = sem_profundidades(roda(texto(junta({conversa, {"isready"}, conversa}))).linhas());
    const Linhas segunda = depois_do_sinal(duas);
    EXPECT_EQ(std::ranges::count_if(segunda, [](const std::string& x) { return x.starts_with("bestmove"); }), 7);
    EXPECT_EQ(segunda.size(), 14U) << "a final line and a reply each";
}

TEST(Determinismo, a_search_does_not_depend_on_the_searches_before_it) {
    const Linhas conversa = conversa_variada();
    const Linhas sozinha = sem_profundidades(roda(texto(conversa)).linhas());
    const Linhas depois = sem_profundidades(roda(texto(junta({outra_conversa(), esquece, conversa}))).linhas());
    EXPECT_EQ(depois_do_sinal(depois), sozinha);
}

TEST(Determinismo, a_game_does_not_depend_on_the_game_before_it) {
    const Linhas conversa{"setoption name Own book value false",
                          "setoption name Deep value 2",
                          "position startpos",
                          "position startpos moves g1f3",
                          "position startpos moves g1f3 d7d5 d2d4",
                          "go wtime 99999999 btime 99999999"};
    const Linhas sozinha = sem_profundidades(roda(texto(conversa)).linhas());
    const Linhas depois = sem_profundidades(roda(texto(junta({outra_conversa(), esquece, conversa}))).linhas());
    EXPECT_EQ(depois_do_sinal(depois), sozinha);
}

// Each search begins with empty shallow tables, though nobody has cleared them: a position searched again takes as many
// nodes as the first time.
TEST(Determinismo, a_position_searched_again_writes_the_same) {
    Linhas uma_vez;
    Linhas duas_vezes;
    Linhas pergunta;
    for (const std::string& linha : conversa_variada()) {
        pergunta.push_back(linha);
        if (linha.starts_with("go ")) {
            uma_vez = junta({uma_vez, pergunta, {"isready"}});
            duas_vezes = junta({duas_vezes, pergunta, {"setoption name Clear memory"}, pergunta, {"isready"}});
            pergunta.clear();
        }
    }
    // Between two signals stands one answer, and then the same answer twice.
    const auto respostas = [](const Linhas& linhas) {
        std::vector<Linhas> todas(1);
        for (const std::string& linha : linhas) {
            if (linha == "readyok") {
                todas.emplace_back();
            } else {
                todas.back().push_back(linha);
            }
        }
        return todas;
    };
    const auto simples = respostas(sem_profundidades(roda(texto(uma_vez)).linhas()));
    const auto dobradas = respostas(sem_profundidades(roda(texto(duas_vezes)).linhas()));
    ASSERT_EQ(simples.size(), 8U);
    ASSERT_EQ(dobradas.size(), simples.size());
    for (std::size_t k = 0; k < simples.size(); ++k) {
        EXPECT_EQ(dobradas[k], junta({simples[k], simples[k]})) << "question " << k;
    }
}

}  // namespace
