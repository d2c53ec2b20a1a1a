// Option lines and go lines, which are both read by characters at fixed places: whatever stands there, a setting keeps to
// its scale, and the clock to its budgets.
#include "fresh_process.h"

#include "uci/go.h"
#include "uci/options.h"

namespace {

using namespace ondrel;

void confere_relogio() {
    fuzz::exige(tempo >= 10000 && tempo <= 10000000, "tempo");
    fuzz::exige(limite_suave() > 0 && limite_duro() > limite_suave(), "limits");
    fuzz::exige(IIDS <= 1 && EXTRA_EVAL <= 1 && SEARCH_E <= 1, "flags of low time");
}

void le(const std::string& linha) {
    in = linha;
    if (in_em(0) == 'g' && in_em(1) == 'o') {
        tempo = 300000;
        le_relogio_do_go();
        confere_relogio();
    } else {
        le_opcao();
    }
    fuzz::confere_opcoes();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dados, std::size_t tamanho) {
    fuzz::estado_novo();
    if (tamanho > 0) {
        npecas = {dados[0] % 16, dados[0] / 16};
    }
    for (const std::string& linha :
         fuzz::linhas(dados + std::min<std::size_t>(tamanho, 1), tamanho - std::min<std::size_t>(tamanho, 1))) {
        le(linha);
    }
    return 0;
}
