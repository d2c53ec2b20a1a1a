#include "support/dialogue.h"

#include "uci/command_loop.h"

#include <algorithm>
#include <iostream>
#include <sstream>
#include <streambuf>

namespace teste {
namespace {

// Standard input and output taken over for a time.
class Desvio {
public:
    Desvio(std::streambuf* entrada, std::streambuf* saida)
        : cin_(std::cin.rdbuf(entrada)), cout_(std::cout.rdbuf(saida)) {
        std::cin.clear();
    }
    ~Desvio() {
        std::cin.rdbuf(cin_);
        std::cout.rdbuf(cout_);
    }
    Desvio(const Desvio&) = delete;
    Desvio& operator=(const Desvio&) = delete;

private:
    std::streambuf* cin_;
    std::streambuf* cout_;
};

// Gives out one line at a time, and takes what was written before each.
class LinhaALinha : public std::streambuf {
public:
    LinhaALinha(const std::vector<Fala>& falas, std::ostringstream& saida) : falas_(falas), saida_(saida) {}

    std::vector<Linhas> respostas() {
        recolhe();
        return {respostas_.begin() + 1, respostas_.end()};  // the first stands before the first line
    }

protected:
    int_type underflow() override {
        if (proxima_ == falas_.size()) {
            return traits_type::eof();
        }
        recolhe();
        const Fala& fala = falas_[proxima_];
        ++proxima_;
        fala.antes();
        linha_ = fala.linha + '\n';
        setg(linha_.data(), linha_.data(), linha_.data() + linha_.size());
        return traits_type::to_int_type(*gptr());
    }

private:
    void recolhe() {
        std::istringstream de(saida_.str());
        saida_.str({});
        Linhas& linhas = respostas_.emplace_back();
        for (std::string linha; std::getline(de, linha);) {
            linhas.push_back(linha);
        }
    }

    const std::vector<Fala>& falas_;
    std::ostringstream& saida_;
    std::size_t proxima_ = 0;
    std::string linha_;
    std::vector<Linhas> respostas_;
};

}  // namespace

std::vector<Linhas> dialogo(const std::vector<Fala>& falas) {
    std::ostringstream saida;
    LinhaALinha entrada(falas, saida);
    const Desvio desvio(&entrada, saida.rdbuf());
    ondrel::laco_de_comandos();
    return entrada.respostas();
}

std::string com_entrada(std::string_view entrada, const std::function<void()>& rotina) {
    std::istringstream de{std::string(entrada)};
    std::ostringstream para;
    const Desvio desvio(de.rdbuf(), para.rdbuf());
    rotina();
    return para.str();
}

int quantas_comecam(const Linhas& linhas, std::string_view comeco) {
    return static_cast<int>(
        std::ranges::count_if(linhas, [comeco](const std::string& linha) { return linha.starts_with(comeco); }));
}

}  // namespace teste
