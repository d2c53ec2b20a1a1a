// The tables of plies 3, 4 and 5: what makes a record the same, which record answers, how the ring turns, and when the
// search uses them at all.
#include "memory/shallow_tables.h"

#include "support/engine.h"
#include "support/sanitizers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <random>

namespace {

using namespace ondrel;
using namespace teste;

constexpr std::array<int, 3> plies_com_tabela{3, 4, 5};
constexpr int linhas_do_anel = registros_rasos - 1;

// The bound that a node of ply n writes.
float& valor_da_ply(int n) { return n % 2 == 0 ? alfa[n] : beta[n]; }

// Scans, from the state as it stands; nothing for a miss.
std::optional<float> procura_na_tabela(int n, Cor c) {
    HASHTABLE[n] = 0;
    hash_table_scan(n, c);
    return HASHTABLE[n] ? std::optional(valor_da_ply(n)) : std::nullopt;
}

void guarda_na_tabela(int n, Cor c, float v) {
    hash_table_build(n, c);
    hash_table_store(n, c, v);
}

// A position that no other number gives.
Tabuleiro tabuleiro_numero(int k) {
    Tabuleiro t = tabuleiro_inicial;
    for (int i = 0; i < 32; ++i, k /= 2) {
        t[i] = static_cast<std::int8_t>(k % 2 != 0 ? -cavalo : bispo);
    }
    return t;
}

class TabelasRasas : public testing::Test {
protected:
    void SetUp() override {
        processo_novo();
        FULL = {};
        tab2 = tabuleiro_inicial;
        abre_janelas();
        deep = 9;
        PVSm = 0;
        PVSm2 = 0;
    }

    static void abre_janelas() {
        alfa.fill(-50.0F);
        beta.fill(50.0F);
    }

    // Whether a change of the state makes a record of ply n unknown.
    template <class Muda>
    static bool muda_a_chave(int n, Muda muda) {
        limpa_tabelas_rasas();
        guarda_na_tabela(n, brancas, 1.0F);
        muda();
        return !procura_na_tabela(n, brancas);
    }
};

// --- The key ---

TEST_F(TabelasRasas, a_record_answers_under_the_window_it_was_made_in) {
    for (const int n : plies_com_tabela) {
        guarda_na_tabela(n, brancas, 12.5F);
        EXPECT_EQ(procura_na_tabela(n, brancas), 12.5F) << "ply " << n;
    }
}

TEST_F(TabelasRasas, a_hit_writes_the_value_of_its_own_ply_and_nothing_else) {
    for (const int n : plies_com_tabela) {
        guarda_na_tabela(n, brancas, 7.0F);
        auto alfa_esperado = alfa;
        auto beta_esperado = beta;
        (n % 2 == 0 ? alfa_esperado : beta_esperado)[n] = 7.0F;
        ASSERT_TRUE(procura_na_tabela(n, brancas)) << "ply " << n;
        EXPECT_EQ(alfa, alfa_esperado) << "ply " << n;
        EXPECT_EQ(beta, beta_esperado) << "ply " << n;
        abre_janelas();
    }
}

TEST_F(TabelasRasas, a_miss_writes_nothing) {
    for (const int n : plies_com_tabela) {
        const auto alfa_antes = alfa;
        const auto beta_antes = beta;
        EXPECT_FALSE(procura_na_tabela(n, brancas)) << "ply " << n;
        EXPECT_EQ(alfa, alfa_antes) << "ply " << n;
        EXPECT_EQ(beta, beta_antes) << "ply " << n;
    }
}

TEST_F(TabelasRasas, the_same_position_at_ply_4_with_another_beta3_misses) {
    guarda_na_tabela(4, pretas, 3.0F);
    beta[3] = 49.0F;
    EXPECT_FALSE(procura_na_tabela(4, pretas));
    beta[3] = 50.0F;
    EXPECT_TRUE(procura_na_tabela(4, pretas));
}

// The window is what the bounds above the node come to: one that is not the tightest may be anything.
TEST_F(TabelasRasas, the_alpha_key_is_the_highest_alfa_above_the_node) {
    for (const int n : plies_com_tabela) {
        for (const int k : {0, 2, 4}) {
            const bool acima = k < 4 || n == 5;
            abre_janelas();
            EXPECT_EQ(muda_a_chave(n, [k] { alfa[k] = -49.0F; }), acima) << "ply " << n << ", alfa" << k;
            abre_janelas();
            EXPECT_FALSE(muda_a_chave(n, [k] { alfa[k] = -51.0F; })) << "ply " << n << ", alfa" << k;
        }
    }
}

TEST_F(TabelasRasas, the_beta_key_is_the_lowest_beta_above_the_node) {
    for (const int n : plies_com_tabela) {
        for (const int k : {1, 3}) {
            const bool acima = k == 1 || n > 3;
            abre_janelas();
            beta[k == 1 ? 3 : 1] = 60.0F;
            beta[k] = 60.0F;
            EXPECT_EQ(muda_a_chave(n, [k] { beta[k] = 59.0F; }), acima) << "ply " << n << ", beta" << k;
        }
        abre_janelas();
        beta[3] = 40.0F;
        EXPECT_EQ(muda_a_chave(n, [] { beta[1] = 51.0F; }), n == 3) << "ply " << n << ", beta1 above beta3";
    }
}

TEST_F(TabelasRasas, a_position_seen_in_the_scout_pass_of_ply_1_is_not_found_in_the_full_pass) {
    for (const int n : plies_com_tabela) {
        PVSm = 1;
        EXPECT_TRUE(muda_a_chave(n, [] { PVSm = 0; })) << "ply " << n;
        EXPECT_TRUE(muda_a_chave(n, [] { PVSm = 1; })) << "ply " << n;
    }
}

TEST_F(TabelasRasas, a_position_seen_in_the_scout_pass_of_ply_2_is_not_found_in_the_full_pass) {
    for (const int n : plies_com_tabela) {
        PVSm2 = 1;
        EXPECT_TRUE(muda_a_chave(n, [] { PVSm2 = 0; })) << "ply " << n;
        EXPECT_TRUE(muda_a_chave(n, [] { PVSm2 = 1; })) << "ply " << n;
    }
}

TEST_F(TabelasRasas, another_depth_is_another_key) {
    for (const int n : plies_com_tabela) {
        deep = 9;
        EXPECT_TRUE(muda_a_chave(n, [] { deep = 11; })) << "ply " << n;
    }
}

TEST_F(TabelasRasas, every_square_of_the_position_counts) {
    for (int i = 0; i < 64; ++i) {
        tab2 = tabuleiro_inicial;
        EXPECT_TRUE(muda_a_chave(5, [i] { tab2[i] = tab2[i] == dama ? torre : dama; })) << "square " << i;
    }
}

// The bounds are compared as numbers: the two zeros are one, and what is no number is like nothing.
TEST_F(TabelasRasas, bounds_are_compared_as_numbers) {
    alfa[0] = alfa[2] = 0.0F;
    EXPECT_FALSE(muda_a_chave(3, [] { alfa[0] = alfa[2] = -0.0F; }));
    beta[1] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_TRUE(muda_a_chave(3, [] {}));
}

TEST_F(TabelasRasas, the_tables_of_white_and_black_never_mix) {
    for (const int n : plies_com_tabela) {
        guarda_na_tabela(n, brancas, 1.0F);
        EXPECT_FALSE(procura_na_tabela(n, pretas)) << "ply " << n;
        guarda_na_tabela(n, pretas, 2.0F);
        EXPECT_EQ(procura_na_tabela(n, pretas), 2.0F) << "ply " << n;
        EXPECT_EQ(procura_na_tabela(n, brancas), 1.0F) << "ply " << n;
    }
}

TEST_F(TabelasRasas, the_tables_of_the_plies_never_mix) {
    for (const int n : plies_com_tabela) {
        guarda_na_tabela(n, brancas, static_cast<float>(n));
        for (const int outro : plies_com_tabela) {
            EXPECT_EQ(procura_na_tabela(outro, brancas).has_value(), outro <= n) << n << " and " << outro;
            abre_janelas();
        }
    }
}

// --- The ring ---

TEST_F(TabelasRasas, of_equal_records_the_lowest_answers) {
    guarda_na_tabela(4, brancas, 1.0F);
    guarda_na_tabela(4, brancas, 2.0F);
    EXPECT_EQ(procura_na_tabela(4, brancas), 1.0F);
}

// The lowest is not the oldest once the ring has turned.
TEST_F(TabelasRasas, the_lowest_record_answers_when_it_is_the_newest_too) {
    guarda_na_tabela(4, brancas, 1.0F);
    guarda_na_tabela(4, brancas, 2.0F);
    inc[4][brancas] = 0;
    guarda_na_tabela(4, brancas, 3.0F);
    EXPECT_EQ(procura_na_tabela(4, brancas), 3.0F);
}

TEST_F(TabelasRasas, the_record_at_9999_is_never_written) {
    for (const int n : plies_com_tabela) {
        FULL = {};
        for (int k = 0; k < linhas_do_anel - 1; ++k) {
            tab2 = tabuleiro_numero(k);
            guarda_na_tabela(n, pretas, static_cast<float>(k));
            ASSERT_EQ(inc[n][pretas], k + 1);
        }
        EXPECT_EQ(FULL[n], 0) << "ply " << n;
        tab2 = tabuleiro_numero(9998);
        guarda_na_tabela(n, pretas, 9998.0F);
        EXPECT_EQ(inc[n][pretas], 0) << "after record 9998 comes record 0, ply " << n;
        EXPECT_EQ(FULL[n], 1) << "ply " << n;
    }
}

TEST_F(TabelasRasas, a_full_ring_overwrites_the_oldest_record) {
    for (int k = 0; k < linhas_do_anel; ++k) {
        tab2 = tabuleiro_numero(k);
        guarda_na_tabela(5, brancas, static_cast<float>(k));
    }
    tab2 = tabuleiro_numero(20000);
    guarda_na_tabela(5, brancas, 20000.0F);
    EXPECT_EQ(procura_na_tabela(5, brancas), 20000.0F);
    tab2 = tabuleiro_numero(0);
    EXPECT_FALSE(procura_na_tabela(5, brancas));
    for (const int k : {1, 5000, 9998}) {
        tab2 = tabuleiro_numero(k);
        EXPECT_EQ(procura_na_tabela(5, brancas), static_cast<float>(k));
    }
}

// A node's own children store in the tables of the plies below, never in its own.
TEST_F(TabelasRasas, a_record_under_construction_keeps_its_key) {
    const Tabuleiro do_pai = tab2;
    hash_table_build(3, brancas);
    tab2 = tabuleiro_numero(1);
    guarda_na_tabela(4, pretas, 1.0F);
    alfa[0] = 30.0F;
    hash_table_store(3, brancas, 2.0F);
    EXPECT_FALSE(procura_na_tabela(3, brancas));
    tab2 = do_pai;
    alfa[0] = -50.0F;
    EXPECT_EQ(procura_na_tabela(3, brancas), 2.0F);
}

TEST_F(TabelasRasas, clearing_one_table_leaves_the_others) {
    for (const int n : plies_com_tabela) {
        for (const Cor c : {brancas, pretas}) {
            guarda_na_tabela(n, c, 5.0F);
        }
    }
    limpa_tabela_rasa(4, pretas);
    for (const int n : plies_com_tabela) {
        for (const Cor c : {brancas, pretas}) {
            abre_janelas();
            const bool limpa = n == 4 && c == pretas;
            EXPECT_EQ(inc[n][c], limpa ? 0 : 1) << n << ' ' << c;
            EXPECT_EQ(procura_na_tabela(n, c).has_value(), !limpa) << n << ' ' << c;
        }
    }
}

void enche_as_seis() {
    for (const int n : plies_com_tabela) {
        guarda_na_tabela(n, brancas, 5.0F);
        guarda_na_tabela(n, pretas, 5.0F);
    }
}

TEST_F(TabelasRasas, the_preparation_of_a_search_clears_the_chain_of_its_colour) {
    for (const Cor minha : {brancas, pretas}) {
        limpa_tabelas_rasas();
        enche_as_seis();
        coloca_fen(minha == brancas ? "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1" : "4k3/8/8/8/8/8/4P3/4K3 b - - 0 1");
        for (const int n : plies_com_tabela) {
            // 3b, 4p, 5b when White moves at the root, 3p, 4b, 5p when Black does.
            const Cor da_cadeia = n == 4 ? outra(minha) : minha;
            EXPECT_EQ(inc[n][da_cadeia], 0) << "ply " << n;
            EXPECT_EQ(inc[n][outra(da_cadeia)], 1) << "ply " << n;
        }
    }
}

TEST_F(TabelasRasas, without_Deep_memory_the_preparation_of_a_search_clears_nothing) {
    enche_as_seis();
    opcao("Deep memory", "false");
    coloca_fen("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
    for (const int n : plies_com_tabela) {
        EXPECT_EQ(inc[n], (std::array{1, 1})) << "ply " << n;
    }
}

TEST_F(TabelasRasas, the_button_Clear_deep_memory_empties_all_six) {
    enche_as_seis();
    conversa({"setoption name Clear deep memory"});
    for (const int n : plies_com_tabela) {
        for (const Cor c : {brancas, pretas}) {
            EXPECT_EQ(inc[n][c], 0) << n << ' ' << c;
            EXPECT_FALSE(procura_na_tabela(n, c)) << n << ' ' << c;
        }
    }
}

// --- In the search ---

constexpr auto meio_de_jogo = "r1bq1rk1/ppp2ppp/2np1n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1BQ1RK1 w - - 0 7";

constexpr auto final_de_peoes = "8/5pk1/6p1/3P4/8/6P1/2p2PK1/8 w - - 0 1";
constexpr auto final_de_cavalos = "8/5pk1/6p1/4n3/8/5NP1/5PK1/8 w - - 0 1";

void busca_com(std::string_view valor_de_deep, std::string_view fen = final_de_peoes) {
    conversa({"setoption name Deep value " + std::string(valor_de_deep), "setoption name Time control value false",
              "position fen " + std::string(fen), "go wtime 99999999 btime 99999999"});
}

TEST_F(TabelasRasas, with_deep_7_nothing_is_stored_at_plies_4_and_5_but_at_ply_3_it_is) {
    busca_com("4");
    EXPECT_GT(inc[3][brancas], 0);
    EXPECT_EQ(inc[4][pretas], 0);
    EXPECT_EQ(inc[5][brancas], 0);
}

TEST_F(TabelasRasas, with_deep_9_all_three_plies_store) {
    busca_com("5", final_de_peoes);
    EXPECT_GT(inc[3][brancas], 0);
    EXPECT_GT(inc[4][pretas], 0);
    EXPECT_GT(inc[5][brancas], 0);
}

TEST_F(TabelasRasas, below_deep_3_nothing_is_stored) {
    busca_com("1");
    EXPECT_EQ(inc[3][brancas], 0);
    busca_com("2");
    EXPECT_GT(inc[3][brancas], 0);
}

TEST_F(TabelasRasas, a_search_stores_in_the_chain_of_the_root_side_alone) {
    busca_com("5", "8/5pk1/6p1/3P4/8/6P1/2p2PK1/8 b - - 0 1");
    for (const int n : plies_com_tabela) {
        const Cor da_cadeia = n == 4 ? brancas : pretas;
        EXPECT_GT(inc[n][da_cadeia], 0) << "ply " << n;
        EXPECT_EQ(inc[n][outra(da_cadeia)], 0) << "ply " << n;
    }
}

TEST_F(TabelasRasas, without_Deep_memory_nothing_is_stored) {
    opcao("Deep memory", "false");
    busca_com("3");
    for (const int n : plies_com_tabela) {
        EXPECT_EQ(inc[n], (std::array{0, 0})) << "ply " << n;
    }
    EXPECT_EQ(quantas_vezes(Regra::scan), 0U);
}

// Searches white's move at ply n twice over and tells how many nodes the second time took.
std::uint32_t nodes_da_segunda_vez(int n, Lance m, float& primeiro, float& segundo) {
    const auto uma_vez = [&] {
        if (n % 2 == 0) {
            ply[n - 1].joga_com_b_deep = 1;
        }
        return busca_no(n, m);
    };
    primeiro = uma_vez();
    const std::uint32_t antes = nodes;
    segundo = uma_vez();
    return nodes - antes;
}

TEST_F(TabelasRasas, a_hit_replaces_the_node) {
    for (const int n : plies_com_tabela) {
        monta_ply(n - 1, meio_de_jogo);
        limpa_tabelas_rasas();
        deep = n == 3 ? 4 : 8;
        EXTRA_EVAL = 0;
        NULL_MOVE = 0;
        float primeiro = 0;
        float segundo = 1;
        EXPECT_EQ(nodes_da_segunda_vez(n, lance("c3d5"), primeiro, segundo), 1U) << "ply " << n;
        EXPECT_EQ(primeiro, segundo) << "ply " << n;
    }
}

TEST_F(TabelasRasas, plies_4_and_5_do_not_scan_below_deep_8) {
    for (const int n : {4, 5}) {
        monta_ply(n - 1, meio_de_jogo);
        limpa_tabelas_rasas();
        deep = 7;
        EXTRA_EVAL = 0;
        NULL_MOVE = 0;
        float primeiro = 0;
        float segundo = 1;
        EXPECT_GT(nodes_da_segunda_vez(n, lance("c3d5"), primeiro, segundo), 1U) << "ply " << n;
        EXPECT_EQ(primeiro, segundo) << "ply " << n;
    }
}

// A value searched at a lowered depth is not remembered: the IID, null-move and reduced runs go without the tables.
int registros_feitos() {
    int soma = 0;
    for (const int n : plies_com_tabela) {
        soma += inc[n][brancas] + inc[n][pretas] + FULL[n] * linhas_do_anel;
    }
    return soma;
}

struct Olhar {
    int sem_tabelas = 0;         // children entered while the tables were out of use
    int guardados_sem_elas = 0;  // records made from one such child to the next
    int iid_com_tabelas = 0;     // children of ply 1's IID pass, lower than any other, that had them
    int antes = -1;              // records when the last child was entered without the tables
};
Olhar olhar;

bool olha_a_tabela(int n, Lance /*m*/) {
    if (HASHf) {
        olhar.antes = -1;
        olhar.iid_com_tabelas += n == 2 && deep < 7 ? 1 : 0;
        return true;
    }
    ++olhar.sem_tabelas;
    if (olhar.antes >= 0) {
        olhar.guardados_sem_elas += registros_feitos() - olhar.antes;
    }
    olhar.antes = registros_feitos();
    return true;
}

TEST_F(TabelasRasas, the_passes_at_a_lowered_depth_go_without_the_tables) {
    olhar = {};
    entra_no_filho = olha_a_tabela;
    busca_com("5", final_de_cavalos);
    entra_no_filho = nullptr;
    EXPECT_GT(quantas_vezes(Regra::iid), 0U);
    EXPECT_GT(olhar.sem_tabelas, 0);
    EXPECT_EQ(olhar.guardados_sem_elas, 0);
    EXPECT_EQ(olhar.iid_com_tabelas, 0);
    EXPECT_EQ(HASHf, 1);
}

TEST_F(TabelasRasas, a_search_finds_again_what_it_has_stored) {
    busca_com("5", final_de_peoes);
    EXPECT_GT(quantas_vezes(Regra::scan_acerta), 0U);
    EXPECT_GT(quantas_vezes(Regra::scan), quantas_vezes(Regra::scan_acerta));
}

// --- Against a table without an index ---

// What a record is known by, with the bounds as the node's window gives them.
struct ChaveSimples {
    int posicao;
    float alfa, beta;
    int deep;
    std::uint8_t PVSm, PVSm2;

    bool operator==(const ChaveSimples&) const = default;
};

// The same ring with nothing but a walk from the first record on.
struct TabelaSimples {
    std::vector<ChaveSimples> chave;
    std::vector<float> valor;
    int proximo = 0;
    bool cheia = false;

    [[nodiscard]] std::optional<float> procura(const ChaveSimples& k) const {
        for (std::size_t i = 0; i < chave.size(); ++i) {
            if (chave[i] == k) {
                return valor[i];
            }
        }
        return std::nullopt;
    }
    void guarda(const ChaveSimples& k, float v) {
        if (static_cast<std::size_t>(proximo) == chave.size()) {
            chave.push_back(k);
            valor.push_back(v);
        } else {
            chave[proximo] = k;
            valor[proximo] = v;
        }
        if (++proximo == linhas_do_anel) {
            proximo = 0;
            cheia = true;
        }
    }
    void limpa() {
        chave.clear();
        valor.clear();
        proximo = 0;
    }
};

class DuasTabelas {
public:
    // The engine's six tables and six plain ones, driven over keys drawn from so many positions.
    DuasTabelas(std::uint32_t semente, int posicoes) : acaso_(semente), posicoes_(posicoes) {}

    // One node of the search with children at the plies below: a scan, and after a miss a build, the children and the
    // store. Any difference is counted.
    void no(int n, Cor c) {
        sorteia(n);
        const ChaveSimples k = chave_;
        const int posicao = k.posicao;
        if (compara_procura(n, c, k)) {
            return;
        }
        tab2 = tabuleiro_numero(posicao);
        hash_table_build(n, c);
        const int filhos = n < 5 ? sorteado(3) : 0;
        for (int i = 0; i < filhos; ++i) {
            no(n + 1, outra(c));
        }
        const auto v = static_cast<float>(sorteado(1000000));
        hash_table_store(n, c, v);
        simples_[n - 3][c].guarda(k, v);
        ++operacoes;
        compara_anel(n, c);
    }

    // A store without a scan before it: equal records come to stand side by side.
    void guarda_sem_olhar(int n, Cor c) {
        sorteia(n);
        const auto v = static_cast<float>(sorteado(1000000));
        guarda_na_tabela(n, c, v);
        simples_[n - 3][c].guarda(chave_, v);
        ++operacoes;
        compara_anel(n, c);
    }

    void procura(int n, Cor c) {
        sorteia(n);
        compara_procura(n, c, chave_);
    }

    void limpa(int n, Cor c) {
        limpa_tabela_rasa(n, c);
        simples_[n - 3][c].limpa();
        ++operacoes;
        compara_anel(n, c);
    }

    void limpa_cadeia(Cor raiz) {
        limpa_cadeia_rasa(raiz);
        for (const int n : plies_com_tabela) {
            simples_[n - 3][n == 4 ? outra(raiz) : raiz].limpa();
        }
        ++operacoes;
    }

    int sorteado(int quantos) { return static_cast<int>(acaso_() % static_cast<std::uint32_t>(quantos)); }

    int operacoes = 0;
    int diferencas = 0;
    int acertos = 0;
    int falhas = 0;
    int voltas = 0;  // times that a ring has turned

private:
    // Draws a state for a node of ply n, and its key by the rule of the windows.
    void sorteia(int n) {
        constexpr std::array<float, 4> alfas{-30.0F, -0.0F, 0.0F, 12.5F};
        constexpr std::array<float, 3> betas{12.5F, 40.0F, inicio_beta};
        constexpr std::array<int, 3> profundidades{9, 11, 8};
        const int posicao = sorteado(posicoes_);
        tab2 = tabuleiro_numero(posicao);
        for (const int k : {0, 2, 4}) {
            alfa[k] = alfas[sorteado(4)];
        }
        for (const int k : {1, 3, 5}) {
            beta[k] = betas[sorteado(3)];
        }
        deep = profundidades[sorteado(3)];
        PVSm = static_cast<std::uint8_t>(sorteado(2));
        PVSm2 = static_cast<std::uint8_t>(sorteado(2));
        const float maior = n == 5 ? std::max({alfa[4], alfa[2], alfa[0]}) : std::max(alfa[2], alfa[0]);
        chave_ = {posicao, maior, n == 3 ? beta[1] : std::min(beta[3], beta[1]), deep, PVSm, PVSm2};
    }

    bool compara_procura(int n, Cor c, const ChaveSimples& k) {
        const auto do_motor = procura_na_tabela(n, c);
        diferencas += do_motor != simples_[n - 3][c].procura(k) ? 1 : 0;
        (do_motor ? acertos : falhas) += 1;
        ++operacoes;
        return do_motor.has_value();
    }

    void compara_anel(int n, Cor c) {
        const TabelaSimples& s = simples_[n - 3][c];
        diferencas += inc[n][c] != s.proximo || (s.cheia && !FULL[n]) ? 1 : 0;
        voltas += s.proximo == 0 && !s.chave.empty() ? 1 : 0;
    }

    std::mt19937 acaso_;
    int posicoes_;
    ChaveSimples chave_{};
    std::array<std::array<TabelaSimples, 2>, 3> simples_;
};

constexpr int operacoes_por_teste = com_sanitizers ? 50000 : 1000000;

// As the search goes: no record twice, tables cleared by chains.
TEST_F(TabelasRasas, a_million_nodes_find_what_a_walk_over_all_records_finds) {
    DuasTabelas duas(1, 30);
    while (duas.operacoes < operacoes_por_teste) {
        duas.no(3, duas.sorteado(2) == 0 ? brancas : pretas);
        if (duas.sorteado(20000) == 0) {
            duas.limpa_cadeia(duas.sorteado(2) == 0 ? brancas : pretas);
        }
    }
    EXPECT_EQ(duas.diferencas, 0);
    EXPECT_GT(duas.acertos, operacoes_por_teste / 10);
    EXPECT_GT(duas.falhas, operacoes_por_teste / 100);
}

// As no search goes: many equal records, rings that turn again and again, single tables cleared half full.
TEST_F(TabelasRasas, a_million_stores_and_scans_find_what_a_walk_over_all_records_finds) {
    DuasTabelas duas(2, 8);
    while (duas.operacoes < operacoes_por_teste) {
        const Cor c = duas.sorteado(2) == 0 ? brancas : pretas;
        const int n = 3 + duas.sorteado(3);
        duas.sorteado(3) == 0 ? duas.procura(n, c) : duas.guarda_sem_olhar(n, c);
        if (duas.sorteado(100000) == 0) {
            duas.limpa(n, c);
        }
    }
    EXPECT_EQ(duas.diferencas, 0);
    EXPECT_GT(duas.acertos, operacoes_por_teste / 10);
    EXPECT_TRUE(com_sanitizers || duas.voltas > 12);
}

// So many positions that rings turn with no record twice: a scan must miss what was overwritten.
TEST_F(TabelasRasas, nodes_of_very_many_positions_forget_what_was_overwritten) {
    DuasTabelas duas(3, 400);
    const int quantos = com_sanitizers ? 12000 : 30000;
    while (duas.operacoes < quantos * 2) {
        duas.no(5, brancas);
    }
    EXPECT_EQ(duas.diferencas, 0);
    EXPECT_GT(duas.acertos, quantos / 10);
    EXPECT_TRUE(com_sanitizers || duas.voltas > 0);
}

}  // namespace
