// Whole conversations, held against what the engine once wrote to them. A recording is a text file: lines that begin
// "> " are given to the engine, lines that begin "< " are what it wrote, without what the clock puts into them. The clocks
// given are far from any limit and the depths are set, so that nothing depends on the machine. Blanks at the end of a
// line belong to it: the engine writes the eight moves of a line of play as eight fields, used or not.
#include "support/plain_chess.h"
#include "support/process.h"
#include "support/transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

using namespace teste;

struct Gravacao {
    std::string dadas;                   // the input, line ends included
    std::vector<std::string> esperadas;  // the output
};

Gravacao le_gravacao(const std::filesystem::path& arquivo) {
    Gravacao g;
    std::ifstream de(arquivo);
    for (std::string linha; std::getline(de, linha);) {
        if (linha.starts_with("> ")) {
            g.dadas += linha.substr(2) + '\n';
        } else if (linha.starts_with("< ")) {
            g.esperadas.push_back(linha.substr(2));
        } else {
            throw std::runtime_error(arquivo.string() + ": neither given nor expected: " + linha);
        }
    }
    return g;
}

std::vector<std::string> nomes_das_gravacoes() {
    std::vector<std::string> nomes;
    for (const auto& x : std::filesystem::directory_iterator(plain::data_file("recordings"))) {
        nomes.push_back(x.path().stem().string());
    }
    std::ranges::sort(nomes);
    return nomes;
}

std::string nome_do_teste(const testing::TestParamInfo<std::string>& x) {
    std::string nome = x.param;
    std::ranges::replace_if(
        nome, [](char letra) { return letra == '-' || letra == '.'; }, '_');
    return nome;
}

class Gravacoes : public testing::TestWithParam<std::string> {};

TEST_P(Gravacoes, are_repeated_line_by_line) {
    const Gravacao g = le_gravacao(plain::data_file("recordings") / (GetParam() + ".txt"));
    ASSERT_FALSE(g.dadas.empty());
    const Resultado r = roda(g.dadas, std::chrono::seconds(200));
    EXPECT_EQ(r.codigo, 0);
    EXPECT_EQ(r.erro, "");
    const std::vector<std::string> escritas = sem_relogio(r.linhas());
    for (std::size_t k = 0; k < std::min(escritas.size(), g.esperadas.size()); ++k) {
        ASSERT_EQ(escritas[k], g.esperadas[k]) << "output line " << k + 1;
    }
    EXPECT_EQ(escritas.size(), g.esperadas.size());
}

INSTANTIATE_TEST_SUITE_P(Conversas, Gravacoes, testing::ValuesIn(nomes_das_gravacoes()), nome_do_teste);

}  // namespace
