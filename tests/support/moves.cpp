#include "support/moves.h"

#include "base/probe.h"
#include "search/seams.h"

#include <algorithm>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace teste {

Textos textos(const std::vector<Lance>& lances) {
    Textos t;
    for (const Lance m : lances) {
        t.push_back(texto(m));
    }
    return t;
}

Textos em_ordem(Textos t) {
    std::sort(t.begin(), t.end());
    return t;
}

int quantos(const Textos& lista, std::string_view lance) {
    return static_cast<int>(std::count(lista.begin(), lista.end(), lance));
}

Textos da_casa(const Textos& lista, std::string_view casa) {
    Textos t;
    for (const std::string& x : lista) {
        if (x.starts_with(casa)) {
            t.push_back(x);
        }
    }
    return t;
}

plain::Position posicao(std::string_view fen) {
    const auto lida = plain::from_fen(fen);
    if (!lida) {
        throw std::invalid_argument("malformed FEN: " + std::string(fen));
    }
    return *lida;
}

std::string fen_espelhado(std::string_view fen) { return plain::to_fen(plain::mirrored(posicao(fen))); }

std::string espelhado(std::string_view casas) {
    std::string t(casas);
    for (char& x : t) {
        if (x >= '1' && x <= '8') {
            x = static_cast<char>('1' + '8' - x);
        }
    }
    return t;
}

Textos espelhados(const Textos& lances) {
    Textos t;
    for (const std::string& x : lances) {
        t.push_back(espelhado(x));
    }
    return t;
}

Tabuleiro espelhado(const Tabuleiro& t) {
    Tabuleiro visto{};
    for (int i = 0; i < 64; ++i) {
        visto[ondrel::casa(i / 8, 7 - i % 8)] = static_cast<std::int8_t>(-t[i]);
    }
    return visto;
}

namespace {

int ply_dos_filhos = 0;
Textos vistos;
Filhos::AoEntrar mostra;

void zera_valor_do_filho() {
    if (ply_dos_filhos < ondrel::ultima_ply) {
        valor_do_filho(ply_dos_filhos) = ply_dos_filhos % 2 == 0 ? ondrel::inicio_alfa : ondrel::inicio_beta;
    }
}

bool nota_o_filho(int n, Lance m) {
    if (n == ply_dos_filhos + 1) {
        vistos.push_back(texto(m));
        zera_valor_do_filho();
        if (mostra) {
            mostra(m);
        }
    }
    return false;
}

ondrel::Cor cor_da_ply(int n) { return ondrel::ply[n].joga_com_b_deep ? ondrel::brancas : ondrel::pretas; }
int indice(std::string_view casa) { return ondrel::casa(casa[0] - 'a', casa[1] - '1'); }

}  // namespace

Filhos::Filhos(int n, AoEntrar ao_entrar) {
    ply_dos_filhos = n;
    mostra = std::move(ao_entrar);
    vistos.clear();
    ondrel::entra_no_filho = nota_o_filho;
}

Filhos::~Filhos() {
    ondrel::entra_no_filho = nullptr;
    mostra = {};
}

Textos Filhos::lances() const { return vistos; }
void Filhos::esquece() { vistos.clear(); }

float& valor_do_no(int n) { return n % 2 == 0 ? ondrel::alfa[n] : ondrel::beta[n]; }
float& valor_do_filho(int n) { return valor_do_no(n + 1); }
std::uint8_t& corte_do_no(int n) { return n % 2 == 0 ? ondrel::corte_beta[n - 1] : ondrel::corte_alfa[n - 1]; }

void sem_relato(const std::function<void()>& busca) {
    std::ostringstream para_nada;
    auto* const antes = std::cout.rdbuf(para_nada.rdbuf());
    busca();
    std::cout.rdbuf(antes);
}

void roda_capturas(int n, std::string_view vitima, bool forma_de_teste) {
    ondrel::gerador_da_ply(n, cor_da_ply(n), indice(vitima), forma_de_teste);
}
void roda_livres(int n, std::string_view casa, bool forma_de_teste) {
    ondrel::analiselivre_da_ply(n, cor_da_ply(n), indice(casa), forma_de_teste);
}
void roda_promocoes(int n, std::string_view casa) {
    ondrel::analisepositive_peao_da_ply(n, cor_da_ply(n), indice(casa));
}
void roda_etapa_da_ply_1(int K, std::string_view casa) {
    ondrel::analisepositive_da_ply_1(cor_da_ply(1), K, indice(casa));
}
void roda_ordem(int n) { ondrel::ordem_dos_lances_da_ply(n, cor_da_ply(n)); }

std::vector<Caso> das_duas_cores(std::string_view fen, const Textos& lances) {
    return {{std::string(fen), lances}, {fen_espelhado(fen), espelhados(lances)}};
}

}  // namespace teste
