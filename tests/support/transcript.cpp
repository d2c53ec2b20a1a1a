#include "support/transcript.h"

#include <string_view>

namespace teste {

namespace {

// Takes a field and its value out of the line; tells whether it was there.
bool tira_campo(std::string& linha, std::string_view nome) {
    const std::string campo = ' ' + std::string(nome) + ' ';
    const auto onde = linha.find(campo);
    if (onde == std::string::npos) {
        return false;
    }
    const auto fim = linha.find(' ', onde + campo.size());
    linha.erase(onde, fim == std::string::npos ? fim : fim - onde);
    return true;
}

}  // namespace

std::vector<std::string> sem_relogio(const std::vector<std::string>& linhas) {
    std::vector<std::string> restantes;
    for (std::string linha : linhas) {
        if (!linha.starts_with("info nps ")) {
            tira_campo(linha, "time");
            restantes.push_back(linha);
        }
    }
    return restantes;
}

std::vector<std::string> sem_profundidades(const std::vector<std::string>& linhas) {
    std::vector<std::string> restantes = sem_relogio(linhas);
    for (std::string& linha : restantes) {
        if (linha.starts_with("info ") && !tira_campo(linha, "seldepth")) {
            tira_campo(linha, "depth");
        }
    }
    return restantes;
}

}  // namespace teste
