// The memory of finished searches: which position lines are answered from it, with what, and how its ring turns.
#include "memory/game_memory.h"

#include "support/engine.h"
#include "support/process.h"
#include "support/sanitizers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <optional>
#include <random>
#include <sstream>

namespace {

using namespace ondrel;
using namespace teste;

constexpr int linhas_do_anel = registros_mem - 1;

constexpr auto torres = "position fen 8/5pk1/6p1/8/3R4/6P1/r4PK1/8 w - - 0 1";
constexpr auto damas = "position fen 6k1/5ppp/8/8/8/8/1Q3PPP/6K1 w - - 0 1";
constexpr auto uma_hora = "go wtime 3600000 btime 3600000";     // seven digits: 3000000 ms
constexpr auto cinco_minutos = "go wtime 300000 btime 300000";  // six digits: 300000 ms
constexpr auto dois_minutos = "go wtime 200000 btime 200000";   // 200000 ms

// The lines of a conversation that show whether there was a search, and what came out of it.
struct Resposta {
    std::vector<std::string> linhas;

    [[nodiscard]] std::string lance() const { return linhas.empty() ? "" : linhas.back(); }
    [[nodiscard]] std::string final() const { return linhas.size() < 2 ? "" : linhas[linhas.size() - 2]; }
    // A search reports its root moves; an answer from memory is the final line alone, without a node.
    [[nodiscard]] bool procurou() const { return linhas.size() != 2; }
    [[nodiscard]] bool sem_nodes() const { return final().find(" nodes 0 ") != std::string::npos; }
};

Resposta pergunta(std::string_view posicao, std::string_view go) {
    return {conversa({std::string(posicao), std::string(go)})};
}

void escolhe_profundidade(std::string_view valor) { opcao("Deep", valor); }

// Fills the key with a line as the preparation of a search does.
void poe_chave(std::string_view linha) {
    inn.fill('9');
    std::copy(linha.begin(), linha.end(), inn.begin());
}

void guarda(std::string_view linha, int com_tempo, int com_deep, float score, Lance m = {1, 0, 2, 2},
            char letra = '0') {
    poe_chave(linha);
    tempo = com_tempo;
    deep = com_deep;
    E = score;
    abcd = m;
    PR = letra;
    hash_mem_build();
}

// The score found, nothing for a miss.
std::optional<float> procura(std::string_view linha, int com_tempo, int com_deep) {
    poe_chave(linha);
    tempo = com_tempo;
    deep = com_deep;
    mem_TEST = 0;
    hash_mem_scan();
    return mem_TEST ? std::optional(E) : std::nullopt;
}

class MemoriaDaPartida : public testing::Test {
protected:
    void SetUp() override {
        processo_novo();
        escolhe_profundidade("2");
        opcao("Time control", "false");
    }
};

// --- In the conversation ---

TEST_F(MemoriaDaPartida, a_repeated_position_line_is_answered_without_a_search) {
    const Resposta primeira = pergunta(torres, cinco_minutos);
    EXPECT_TRUE(primeira.procurou());
    const float score = E;
    const Lance m = abcd;
    E = 0;
    abcd = {0, 0, 0, 0};
    const Resposta segunda = pergunta(torres, cinco_minutos);
    EXPECT_FALSE(segunda.procurou());
    EXPECT_TRUE(segunda.sem_nodes()) << segunda.final();
    EXPECT_EQ(segunda.lance(), primeira.lance());
    EXPECT_EQ(E, score);
    EXPECT_EQ(abcd, m);
}

TEST_F(MemoriaDaPartida, the_same_line_with_a_shorter_clock_hits) {
    const Resposta primeira = pergunta(torres, cinco_minutos);
    const Resposta segunda = pergunta(torres, dois_minutos);
    EXPECT_FALSE(segunda.procurou());
    EXPECT_EQ(segunda.lance(), primeira.lance());
}

TEST_F(MemoriaDaPartida, the_same_line_with_a_longer_clock_misses) {
    pergunta(torres, cinco_minutos);
    EXPECT_TRUE(pergunta(torres, uma_hora).procurou());
    // That search is remembered too, and answers what the first one could not.
    EXPECT_FALSE(pergunta(torres, uma_hora).procurou());
}

TEST_F(MemoriaDaPartida, a_lower_depth_hits_and_a_higher_one_misses) {
    pergunta(torres, cinco_minutos);
    escolhe_profundidade("1");
    EXPECT_FALSE(pergunta(torres, cinco_minutos).procurou());
    escolhe_profundidade("3");
    EXPECT_TRUE(pergunta(torres, cinco_minutos).procurou());
}

// The depth is read after the clock: a short one lowers the demand in both.
TEST_F(MemoriaDaPartida, a_clock_that_lowers_the_depth_lowers_the_demand) {
    pergunta(torres, cinco_minutos);
    escolhe_profundidade("8");
    EXPECT_FALSE(pergunta(torres, "go wtime 150 btime 150").procurou());  // three digits: depth 1
}

TEST_F(MemoriaDaPartida, the_stored_score_is_shown_as_after_a_search) {
    const Resposta primeira = pergunta("position fen 7k/8/5K2/8/8/8/8/6R1 w - - 0 1", cinco_minutos);
    ASSERT_EQ(primeira.final().substr(0, 22), "info score mate 1  dep");
    const Resposta segunda = pergunta("position fen 7k/8/5K2/8/8/8/8/6R1 w - - 0 1", cinco_minutos);
    EXPECT_FALSE(segunda.procurou());
    // Nothing was searched, so the depth shown is that of no ply.
    EXPECT_EQ(segunda.final(), "info score mate 1  depth 1 nodes 0 pv " + segunda.lance().substr(9));
}

TEST_F(MemoriaDaPartida, a_stored_promotion_keeps_its_letter) {
    constexpr auto promove = "position fen 8/4P1k1/8/8/8/8/6K1/8 w - - 0 1";
    const Resposta primeira = pergunta(promove, cinco_minutos);
    ASSERT_EQ(primeira.lance(), "bestmove e7e8q");
    const Resposta segunda = pergunta(promove, cinco_minutos);
    EXPECT_FALSE(segunda.procurou());
    EXPECT_EQ(segunda.lance(), "bestmove e7e8q");
    // The letter belongs to that record alone.
    EXPECT_EQ(pergunta(torres, cinco_minutos).lance().size(), std::string("bestmove e7e8").size());
}

// The reply is not played: the board stays that of the position line.
TEST_F(MemoriaDaPartida, a_stored_move_is_not_played_on_the_root_board) {
    pergunta(torres, cinco_minutos);
    const Tabuleiro depois_de_buscar = tab;
    coloca(torres);
    const Tabuleiro da_linha = tab;
    EXPECT_NE(depois_de_buscar, da_linha);
    ASSERT_FALSE(pergunta(torres, cinco_minutos).procurou());
    EXPECT_EQ(tab, da_linha);
}

TEST_F(MemoriaDaPartida, an_answer_from_memory_is_not_stored_again) {
    pergunta(torres, cinco_minutos);
    EXPECT_EQ(inc1, 1);
    ASSERT_FALSE(pergunta(torres, cinco_minutos).procurou());
    EXPECT_EQ(inc1, 1);
}

TEST_F(MemoriaDaPartida, the_same_position_given_by_a_FEN_is_another_key) {
    opcao("Own book", "false");
    const std::string lances = "position startpos moves a2a3 a7a6";
    pergunta(lances, cinco_minutos);
    EXPECT_TRUE(
        pergunta("position fen rnbqkbnr/1ppppppp/p7/8/8/P7/1PPPPPPP/RNBQKBNR w KQkq - 0 2", cinco_minutos).procurou());
    EXPECT_FALSE(pergunta(lances, cinco_minutos).procurou());
}

// The key is the text, so that a transposition is another position.
TEST_F(MemoriaDaPartida, the_same_position_by_another_order_of_moves_is_another_key) {
    opcao("Own book", "false");
    pergunta("position startpos moves a2a3 a7a6 h2h3 h7h6", cinco_minutos);
    EXPECT_TRUE(pergunta("position startpos moves h2h3 a7a6 a2a3 h7h6", cinco_minutos).procurou());
}

TEST_F(MemoriaDaPartida, with_Memory_off_nothing_is_stored) {
    opcao("Memory", "false");
    pergunta(torres, cinco_minutos);
    EXPECT_EQ(inc1, 0);
    opcao("Memory", "true");
    EXPECT_TRUE(pergunta(torres, cinco_minutos).procurou());
}

TEST_F(MemoriaDaPartida, with_Memory_off_nothing_is_looked_up) {
    pergunta(torres, cinco_minutos);
    opcao("Memory", "false");
    EXPECT_TRUE(pergunta(torres, cinco_minutos).procurou());
}

TEST_F(MemoriaDaPartida, uci_empties_the_memory_and_with_Memory_off_leaves_it) {
    pergunta(torres, cinco_minutos);
    opcao("Memory", "false");
    conversa({"uci"});
    EXPECT_EQ(inc1, 1);
    opcao("Memory", "true");
    EXPECT_FALSE(pergunta(torres, cinco_minutos).procurou());
    conversa({"uci"});
    EXPECT_EQ(inc1, 0);
    EXPECT_TRUE(pergunta(torres, cinco_minutos).procurou());
}

TEST_F(MemoriaDaPartida, the_button_Clear_memory_empties_it) {
    pergunta(torres, cinco_minutos);
    conversa({"setoption name Clear memory"});
    EXPECT_EQ(inc1, 0);
    EXPECT_TRUE(pergunta(torres, cinco_minutos).procurou());
}

TEST_F(MemoriaDaPartida, it_outlasts_a_new_game_and_other_positions) {
    pergunta(torres, cinco_minutos);
    conversa({"position startpos"});
    pergunta(damas, cinco_minutos);
    conversa({"position startpos moves e2e4", "setoption name Clear deep memory"});
    EXPECT_FALSE(pergunta(torres, cinco_minutos).procurou());
}

// A line of the length wanted: nothing behind the castling field of a FEN is read but the en-passant square.
std::string linha_de_tamanho(std::size_t tamanho) {
    std::string linha = std::string(torres) + ' ';
    linha.append(tamanho - linha.size(), '1');
    return linha;
}

TEST_F(MemoriaDaPartida, a_line_of_1000_characters_or_more_is_never_remembered) {
    for (const std::size_t tamanho : {std::size_t{1000}, std::size_t{1001}, std::size_t{2500}}) {
        pergunta(linha_de_tamanho(tamanho), cinco_minutos);
        EXPECT_EQ(inc1, 0) << tamanho;
        EXPECT_TRUE(pergunta(linha_de_tamanho(tamanho), cinco_minutos).procurou()) << tamanho;
    }
    pergunta(linha_de_tamanho(999), cinco_minutos);
    EXPECT_EQ(inc1, 1);
    EXPECT_FALSE(pergunta(linha_de_tamanho(999), cinco_minutos).procurou());
}

// Nor is it looked up, though its first thousand characters may be those of a record.
TEST_F(MemoriaDaPartida, a_line_of_1000_characters_is_not_looked_up) {
    const std::string com_999 = linha_de_tamanho(999);
    pergunta(com_999, cinco_minutos);
    EXPECT_TRUE(pergunta(com_999 + '9', cinco_minutos).procurou());
}

// What the record holds of the demand is the depth that the search ended with, not the one it began with.
TEST_F(MemoriaDaPartida, the_depth_stored_is_the_last_one_searched) {
    escolhe_profundidade("7");
    pergunta("position fen 8/8/4k3/8/8/4K3/4P3/8 w - - 0 1", cinco_minutos);
    const int ultima = deepp;
    ASSERT_EQ(ultima, 13);
    // The passes go on by two plies while one more stays below the limit.
    EXPECT_TRUE(procura("position fen 8/8/4k3/8/8/4K3/4P3/8 w - - 0 1", 300000, 13));
    EXPECT_FALSE(procura("position fen 8/8/4k3/8/8/4K3/4P3/8 w - - 0 1", 300000, 14));
}

// --- Records ---

TEST_F(MemoriaDaPartida, a_record_gives_back_move_letter_and_score) {
    guarda("position fen a", 1000, 5, -12.25F, {4, 6, 4, 7}, 'q');
    abcd = {0, 0, 0, 0};
    PR = '0';
    EXPECT_EQ(procura("position fen a", 1000, 5), -12.25F);
    EXPECT_EQ(abcd, (Lance{4, 6, 4, 7}));
    EXPECT_EQ(PR, 'q');
}

TEST_F(MemoriaDaPartida, a_miss_leaves_move_letter_and_score_alone) {
    guarda("position fen a", 1000, 5, -12.25F, {4, 6, 4, 7}, 'q');
    abcd = {1, 2, 3, 4};
    PR = 'x';
    E = 5.5F;
    EXPECT_FALSE(procura("position fen b", 1000, 5));
    EXPECT_EQ(abcd, (Lance{1, 2, 3, 4}));
    EXPECT_EQ(PR, 'x');
    EXPECT_EQ(E, 5.5F);
}

TEST_F(MemoriaDaPartida, time_and_depth_must_both_suffice) {
    guarda("position fen a", 1000, 5, 1.0F);
    EXPECT_TRUE(procura("position fen a", 1000, 5));
    EXPECT_TRUE(procura("position fen a", 999, 4));
    EXPECT_FALSE(procura("position fen a", 1001, 5));
    EXPECT_FALSE(procura("position fen a", 1000, 6));
    EXPECT_FALSE(procura("position fen a", 1001, 4));
    EXPECT_FALSE(procura("position fen a", 999, 6));
}

TEST_F(MemoriaDaPartida, the_lowest_record_that_suffices_answers) {
    guarda("position fen a", 1000, 5, 1.0F);
    guarda("position fen a", 3000, 9, 2.0F);
    guarda("position fen a", 3000, 9, 3.0F);
    EXPECT_EQ(procura("position fen a", 1000, 5), 1.0F);
    EXPECT_EQ(procura("position fen a", 2000, 5), 2.0F);
    EXPECT_EQ(procura("position fen a", 1000, 9), 2.0F);
}

TEST_F(MemoriaDaPartida, all_thousand_characters_of_the_key_count) {
    guarda(std::string(999, 'a'), 1000, 5, 1.0F);
    EXPECT_TRUE(procura(std::string(999, 'a'), 1000, 5));
    EXPECT_FALSE(procura(std::string(998, 'a') + 'b', 1000, 5));
    EXPECT_FALSE(procura(std::string(998, 'a'), 1000, 5));
    EXPECT_FALSE(procura(std::string(1000, 'a'), 1000, 5));
}

TEST_F(MemoriaDaPartida, the_ring_holds_99999_records_and_overwrites_the_oldest) {
    for (int k = 0; k < linhas_do_anel; ++k) {
        ASSERT_EQ(inc1, k);
        guarda(std::to_string(k) + ' ', 1000, 5, static_cast<float>(k));
    }
    EXPECT_EQ(inc1, 0) << "after record 99998 comes record 0";
    EXPECT_EQ(procura("0 ", 1000, 5), 0.0F);
    EXPECT_EQ(procura("99998 ", 1000, 5), 99998.0F);
    guarda("new", 1000, 5, -1.0F);
    EXPECT_EQ(procura("new", 1000, 5), -1.0F);
    EXPECT_FALSE(procura("0 ", 1000, 5));
    EXPECT_EQ(procura("1 ", 1000, 5), 1.0F);
    EXPECT_EQ(inc1, 1);
}

// --- Against a memory without an index ---

// The same ring with nothing but a walk from the first record on; equal keys have equal numbers.
struct MemoriaSimples {
    struct Registro {
        int chave;
        float tempo, deep, score;
    };
    std::vector<Registro> registros;
    int proximo = 0;

    [[nodiscard]] std::optional<float> procura(int chave, int t, int d) const {
        for (const Registro& x : registros) {
            if (x.chave == chave && static_cast<float>(t) <= x.tempo && static_cast<float>(d) <= x.deep) {
                return x.score;
            }
        }
        return std::nullopt;
    }
    void guarda(const Registro& x) {
        if (static_cast<std::size_t>(proximo) == registros.size()) {
            registros.push_back(x);
        } else {
            registros[proximo] = x;
        }
        proximo = proximo + 1 == linhas_do_anel ? 0 : proximo + 1;
    }
    void limpa() {
        registros.clear();
        proximo = 0;
    }
};

TEST_F(MemoriaDaPartida, a_million_operations_find_what_a_walk_over_all_records_finds) {
    constexpr std::array<int, 6> tempos{10000, 90000, 300000, 300001, 3000000, 10000000};
    constexpr std::array<int, 6> profundidades{0, 1, 5, 9, 13, 17};
    constexpr int chaves = 60;
    constexpr int operacoes = com_sanitizers ? 150000 : 1000000;
    MemoriaSimples simples;
    std::mt19937 acaso(11);
    const auto sorteado = [&acaso](int n) { return static_cast<int>(acaso() % static_cast<std::uint32_t>(n)); };
    int diferencas = 0;
    int acertos = 0;
    int falhas = 0;
    int voltas = 0;
    for (int k = 0; k < operacoes; ++k) {
        const int chave = sorteado(chaves);
        const std::string linha = "position fen " + std::string(static_cast<std::size_t>(chave), 'k');
        const int o_que = sorteado(100);
        if (o_que < 55) {
            // Seldom with as much as a hard question asks for, so that the first record of a line seldom answers it.
            const int t = tempos[sorteado(sorteado(50) == 0 ? 6 : 4)];
            const int d = profundidades[sorteado(5)];
            guarda(linha, t, d, static_cast<float>(k % 1000000));
            simples.guarda({chave, static_cast<float>(t), static_cast<float>(d), static_cast<float>(k % 1000000)});
            diferencas += inc1 != simples.proximo ? 1 : 0;
            voltas += inc1 == 0 ? 1 : 0;
        } else {
            const int t = tempos[sorteado(sorteado(200) == 0 ? 6 : 3)];
            const int d = profundidades[sorteado(sorteado(200) == 0 ? 6 : 4)];
            const auto do_motor = procura(linha, t, d);
            diferencas += do_motor != simples.procura(chave, t, d) ? 1 : 0;
            (do_motor ? acertos : falhas) += 1;
        }
        if (sorteado(400000) == 0) {
            limpa_memoria();
            simples.limpa();
        }
    }
    EXPECT_EQ(diferencas, 0);
    EXPECT_GT(acertos, operacoes / 10);
    EXPECT_GT(falhas, operacoes / 5000);
    EXPECT_TRUE(com_sanitizers || voltas > 1) << voltas;
}

// --- Of the process ---

// A hundred megabytes stand ready for records, but take none of the machine's memory until they are written.
TEST_F(MemoriaDaPartida, memory_in_use_grows_with_what_is_stored) {
    if (com_sanitizers) {
        GTEST_SKIP() << "the sanitizers have memory of their own";
    }
    Processo motor;
    motor.escreve("uci");
    std::string linha;
    while (linha != "uciok") {
        ASSERT_TRUE(motor.le(linha));
    }
    std::ifstream de("/proc/" + std::to_string(motor.pid()) + "/status");
    std::string campo;
    int kB = 0;
    while (de >> campo && campo != "VmRSS:") {
    }
    ASSERT_TRUE(de >> kB);
    EXPECT_GT(kB, 100);
    EXPECT_LT(kB, 10 * 1024);
}

}  // namespace
