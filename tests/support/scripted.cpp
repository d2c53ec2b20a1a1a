#include "support/scripted.h"

#include "search/schedule.h"
#include "support/plain_chess.h"

#include <iostream>
#include <stdexcept>
#include <utility>

namespace teste {

using namespace ondrel;

namespace {

Roteiro::Fala fala_atual;
std::vector<Chamada> feitas;

Chamada agora(int n, Lance m) {
    return {n,     m,     deep,     DEEP,   HASHf,      deeppromo, PVSm,    PVSm2, LMRtest,
            SCAN1, SCANT, pempatee, ataque, ESTRATEGIA, E,         alfa[0], ALFA0, MAXcut};
}

bool pergunta(int n, Lance m) {
    feitas.push_back(agora(n, m));
    const std::optional<float> v = fala_atual(feitas.back());
    if (v) {
        (n % 2 == 0 ? alfa[n] : beta[n]) = *v;
    }
    return !v;
}

}  // namespace

Roteiro::Roteiro(Fala fala) {
    feitas.clear();
    fala_atual = std::move(fala);
    entra_no_filho = pergunta;
}

Roteiro::~Roteiro() { entra_no_filho = nullptr; }

const std::vector<Chamada>& Roteiro::chamadas() const { return feitas; }

std::vector<std::string> Roteiro::lances(int n) const {
    std::vector<std::string> textos;
    for (const Chamada& x : feitas) {
        if (x.n == n) {
            textos.push_back(texto(x.m));
        }
    }
    return textos;
}

std::size_t Roteiro::quantas(int n) const { return lances(n).size(); }

Roteiro::Fala sempre(int n, float valor) {
    return [n, valor](const Chamada& x) { return x.n == n ? std::optional(valor) : std::nullopt; };
}

Escrita::Escrita() : antes_(std::cout.rdbuf(para_.rdbuf())) {}
Escrita::~Escrita() { std::cout.rdbuf(antes_); }

void busca_nua() {
    LMR = 0;
    NULL_MOVE = 0;
    PVS = 0;
    TURBO = 0;
    VERTICAL_filt = 0;
    SEARCH_E = 0;
    TC = 0;
    HASHf = 0;
    pempatee = 0;
}

float mate_na_ply(int n) {
    const auto tamanho = static_cast<float>(16500 - 1100 * ((n + 1) / 2));
    return n % 2 == 0 ? -tamanho : tamanho;
}

std::string espelho(std::string_view fen) {
    const std::optional<plain::Position> p = plain::from_fen(fen);
    if (!p) {
        throw std::invalid_argument("no position: " + std::string(fen));
    }
    return plain::to_fen(plain::mirrored(*p));
}

Lance espelho(Lance m) { return {m.a, 7 - m.b, m.c, 7 - m.d}; }

void busca_inteira(Cor minha) {
    const Escrita calada;
    busca_na_raiz(minha);
}

}  // namespace teste
