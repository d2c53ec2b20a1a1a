// Position lines: the FEN, the move list, and the preparation of the search, the position searched by nobody. Each line
// meets what the lines before it have left.
#include "fresh_process.h"

#include "eval/preparation.h"
#include "search/score_windows.h"

namespace {

using namespace ondrel;

void confere_posicao() {
    for (const std::int8_t x : tab) {
        fuzz::exige(x == vazia || std::ranges::count(ordem_das_pecas, valor_da_peca(x)) == 1, "a man of no kind");
    }
    fuzz::exige(joga_com_b == 0 || joga_com_b == 1, "joga_com_b");
    fuzz::exige(nb >= 1 && nb <= 100000, "nb");
    for (const int x : {abcd.a, abcd.b, abcd.c, abcd.d}) {
        fuzz::exige(x >= 0 && x < 8, "a square outside the board");
    }
    for (const Cor c : {brancas, pretas}) {
        fuzz::exige(npecas[c] >= 0 && npecas[c] <= 64 && npecas_dp[c] >= 0 && npecas_dp[c] <= npecas[c], "counts");
        fuzz::exige(material_a[c] >= 0 && material_a[c] <= 64 * 110, "material");
    }
    fuzz::exige(HASH_MEM == (in.size() < inn.size() ? 1 : 0), "HASH_MEM");
}

void repete(const std::string& linha) {
    in = linha;
    joga_c_ob = 0;
    joga_c_fen = 0;
    if (in.size() > 9 && in[0] == 'p' && in[9] == 's') {
        joga_c_ob = 1;
    } else {
        joga_c_fen = 1;
    }
    deep = deepp;
    le_posicao();
    const Cor minha = joga_com_b ? brancas : pretas;
    prepara_busca(minha);
    janelas_de_placar(minha);
    confere_posicao();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dados, std::size_t tamanho) {
    if (tamanho == 0) {
        return 0;
    }
    fuzz::estado_novo();
    // The first byte says what the other lines of a conversation could have said.
    CHESS_960 = dados[0] % 2;
    OwnBook = dados[0] / 2 % 2;
    for (const std::string& linha : fuzz::linhas(dados + 1, tamanho - 1)) {
        repete(linha);
    }
    return 0;
}
