#include "uci/report.h"

#include "base/bounds.h"
#include "base/clock.h"
#include "base/numeric.h"
#include "base/options.h"
#include "base/root.h"
#include "memory/shallow_tables.h"
#include "search/tree.h"
#include "uci/output.h"

#include <string>
#include <string_view>

namespace ondrel {
namespace {

// The steps of the mate ladder, 15400 down to 3300. The two nearest own mates are both "mate 1".
constexpr int degraus = 12;

// "info score mate <n> " for a score on the ladder, empty for any other.
std::string texto_de_mate(float score) {
    for (int k = 1; k <= degraus; ++k) {
        const float degrau = mate_da_ply(2 * k);
        if (score == degrau) {
            return "info score mate " + std::to_string(k == 1 ? 1 : k - 1) + " ";
        }
        if (score == -degrau) {
            return "info score mate " + std::to_string(-k) + " ";
        }
    }
    return {};
}

bool profundidade_par() { return deep % 2 == 0; }

// The draw offset of a shown score, a pawn up or down by the parity of the depth until the draw score has risen.
int desconto() {
    const int O = emp == emppp ? 100 : 0;
    return profundidade_par() ? -O : O;
}

std::string texto_de_centipeoes(float score) {
    const auto centipeoes = static_cast<std::int64_t>(inteiro(static_cast<double>(score) * 10.0));
    return "info score cp " + std::to_string(centipeoes + desconto());
}

std::string texto_dos_nodes() { return " nodes " + std::to_string(static_cast<std::int32_t>(nodes)); }

// Records in use of a ply's table, full or not; of the same three tables for both colours.
int registros_em_uso(int n, Cor c) { return FULL[n] ? registros_rasos : inc[n][c]; }

int hashfull() {
    return (registros_em_uso(3, brancas) + registros_em_uso(4, pretas) + registros_em_uso(5, brancas)) / 30;
}

std::string texto_da_linha() {
    std::string texto = " pv";
    for (const auto& lance : A0_D7) {
        texto += ' ';
        texto.append(lance.data(), lance.size());
    }
    return texto;
}

// Without Full info a move far below the material balance is not shown; a mate always is.
bool mostra(float score) {
    const float S = score * 10.0F;
    return FULL_inf || S + static_cast<float>(desconto()) >= materialflot0 * 10.0F - 150.0F;
}

std::string texto_do_lance_atual() {
    std::string texto = " depth " + std::to_string(deep + 1) + " seldepth " + std::to_string(ddep + 1) + " currmove ";
    texto.append(A0_D7[0].data(), A0_D7[0].size());
    texto += " currmovenumber " + std::to_string(curr) + texto_dos_nodes() + " time " + std::to_string(tempo_usado());
    if (HASHf) {
        texto += " hashfull " + std::to_string(hashfull());
    }
    return texto + texto_da_linha();
}

}  // namespace

void info_deept() {
    if (!EXTRA_EVAL) {
        ddep = deep;
    }
    fim = relogio();
    std::string comeco = texto_de_mate(beta[1]);
    if (comeco.empty() && mostra(beta[1])) {
        comeco = texto_de_centipeoes(beta[1]);
    }
    if (!comeco.empty()) {
        escreve_linha(comeco + texto_do_lance_atual());
    }
    if (const int usado = tempo_usado(); usado != 0) {
        const auto nps = static_cast<std::int64_t>(static_cast<std::int32_t>(nodes) / usado) * 1000;
        escreve_linha("info nps " + std::to_string(nps));
    }
    if (ddep > dddep) {
        dddep = ddep;
    }
}

void info_final() {
    if (!EXTRA_EVAL) {
        dddep = deep;
    }
    std::string texto = texto_de_mate(EP);
    if (texto.empty()) {
        texto = texto_de_centipeoes(EP);
    }
    texto += " depth " + std::to_string(dddep + 1) + texto_dos_nodes() + " pv ";
    texto.append(ABCD.data(), ABCD.size());
    escreve_linha(texto);
}

}  // namespace ondrel
