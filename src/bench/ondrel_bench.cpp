// ondrel-bench: searches a fixed set of positions to a fixed depth, without the clock, and shows the nodes, the speed
// and a signature. The signature is of every line that the engine writes, so that a change which is to leave the search
// alone must leave the signature as it was.
#include "bench/positions.h"

#include "base/root.h"
#include "uci/command_loop.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <sstream>

namespace {

using namespace ondrel;
using relogio_do_banco = std::chrono::steady_clock;

// FNV-1a of all lines so far.
class Assinatura {
public:
    void junta(std::string_view texto) {
        for (const char x : texto) {
            soma_ = (soma_ ^ static_cast<unsigned char>(x)) * 0x100000001B3U;
        }
    }
    [[nodiscard]] std::uint64_t soma() const { return soma_; }

private:
    std::uint64_t soma_ = 0xCBF29CE484222325U;
};

// The line without what the clock has put there; empty for a line that is the clock's alone.
std::string sem_relogio(std::string linha) {
    constexpr std::string_view campo = " time ";
    if (linha.starts_with("info nps")) {
        return {};
    }
    if (const auto onde = linha.find(campo); onde != std::string::npos) {
        const auto fim_do_campo = linha.find(' ', onde + campo.size());
        linha.erase(onde, fim_do_campo == std::string::npos ? std::string::npos : fim_do_campo - onde);
    }
    return linha;
}

// What the engine is told for one position. The new game that goes before it makes the state fresh.
std::string conversa_da_posicao(const PosicaoDoBanco& x) {
    std::string linhas =
        "setoption name Own book value true\n"
        "position startpos\n"
        "setoption name Own book value false\n"
        "setoption name Time control value false\n"
        "setoption name Clear memory\n"
        "setoption name Clear deep memory\n"
        "setoption name Deep value ";
    linhas += x.deep;
    linhas += "\nposition ";
    linhas += x.posicao;
    linhas += "\ngo wtime 99999999 btime 99999999\n";
    return linhas;
}

// Holds the conversation and returns what the engine has written.
std::string busca_posicao(const PosicaoDoBanco& x) {
    std::istringstream de(conversa_da_posicao(x));
    std::ostringstream para;
    auto* const entrada = std::cin.rdbuf(de.rdbuf());
    auto* const saida = std::cout.rdbuf(para.rdbuf());
    std::cin.clear();
    ddep = 0;  // the deepest ply is of the process, and is shown
    laco_de_comandos();
    std::cin.rdbuf(entrada);
    std::cout.rdbuf(saida);
    return para.str();
}

// Adds the lines to the signature and returns the reply.
std::string assina(const std::string& texto, Assinatura& assinatura) {
    std::istringstream de(texto);
    std::string resposta;
    for (std::string linha; std::getline(de, linha); resposta = linha) {
        if (const std::string limpa = sem_relogio(linha); !limpa.empty()) {
            assinatura.junta(limpa);
            assinatura.junta("\n");
        }
    }
    return resposta;
}

void busca_todas(bool so_as_rapidas) {
    Assinatura assinatura;
    std::uint64_t total = 0;
    std::chrono::duration<double> tempo_total{};
    int numero = 0;
    for (const PosicaoDoBanco& x : posicoes_do_banco) {
        ++numero;
        if (so_as_rapidas && !x.rapida) {
            continue;
        }
        const auto antes = relogio_do_banco::now();
        const std::string texto = busca_posicao(x);
        const std::chrono::duration<double> gasto = relogio_do_banco::now() - antes;
        const std::string resposta = assina(texto, assinatura);
        total += nodes;
        tempo_total += gasto;
        std::printf("%2d %10u nodes %8.3f s  Deep %c  %-15s  %s\n", numero, nodes, gasto.count(), x.deep,
                    resposta.c_str(), x.posicao.data());
        std::fflush(stdout);
    }
    const double segundos = tempo_total.count();
    std::printf("Time: %.3f s\n", segundos);
    std::printf("Speed: %.0f nodes/s\n", segundos > 0 ? static_cast<double>(total) / segundos : 0.0);
    std::printf("Bench: %llu %016llx\n", static_cast<unsigned long long>(total),
                static_cast<unsigned long long>(assinatura.soma()));
}

}  // namespace

int main(int quantos, char** argumentos) {
    if (quantos > 2 || (quantos == 2 && std::strcmp(argumentos[1], "quick") != 0)) {
        std::fprintf(stderr, "usage: ondrel-bench [quick]\n");
        return 2;
    }
    busca_todas(quantos == 2);
    return 0;
}
