#include "memory/shallow_tables.h"

#include "base/bounds.h"
#include "base/options.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace ondrel {
namespace {

// Everything that a hit must equal; the floats as numbers, so that no record of a window without numbers ever matches.
struct Chave {
    Tabuleiro hashtable;     // tab2
    float alfa, beta, deep;  // the window of the node and its depth
    std::uint8_t PVSm, PVSm2;

    bool operator==(const Chave& x) const {
        return PVSm == x.PVSm && PVSm2 == x.PVSm2 && alfa == x.alfa && beta == x.beta && deep == x.deep &&
               hashtable == x.hashtable;
    }
};

constexpr int gavetas = 16384;
constexpr std::int16_t nenhum = -1;

// A ring of records with an index over them. Records of one drawer are chained by rising number, so that the first
// match of a walk is the lowest.
struct Tabela {
    std::array<Chave, registros_rasos> chave{};
    std::array<float, registros_rasos> valor{};
    std::array<std::int16_t, registros_rasos> proximo{};
    std::array<std::int16_t, registros_rasos> gaveta_de{};  // the drawer a record is chained in, nenhum if in none
    std::array<std::int16_t, gavetas> primeiro{};
    int usados = 0;       // records ever written since the table was emptied
    bool pronta = false;  // the index has been laid out
};

std::array<std::array<Tabela, 2>, 3> tabelas;

Tabela& tabela(int n, Cor c) {
    Tabela& t = tabelas[n - 3][c];
    if (!t.pronta) {
        t.primeiro.fill(nenhum);
        t.gaveta_de.fill(nenhum);
        t.pronta = true;
    }
    return t;
}

std::int16_t gaveta(const Chave& k) {
    std::uint64_t h = 0;
    const auto mistura = [&h](std::uint64_t x) { h = (std::rotl(h, 5) ^ x) * 0x9E3779B97F4A7C15U; };
    for (std::size_t i = 0; i < k.hashtable.size(); i += sizeof(std::uint64_t)) {
        std::uint64_t x = 0;
        std::memcpy(&x, k.hashtable.data() + i, sizeof x);
        mistura(x);
    }
    // Adding zero makes the two zeros, which compare equal, one.
    mistura(std::bit_cast<std::uint32_t>(k.alfa + 0.0F));
    mistura(std::bit_cast<std::uint32_t>(k.beta + 0.0F));
    mistura(std::bit_cast<std::uint32_t>(k.deep));
    return static_cast<std::int16_t>((h ^ (h >> 32U)) % gavetas);
}

Chave chave_do_no(int n) {
    float maior_alfa = std::max(alfa[2], alfa[0]);
    float menor_beta = beta[1];
    if (n == 5) {
        maior_alfa = std::max(maior_alfa, alfa[4]);
    }
    if (n >= 4) {
        menor_beta = std::min(menor_beta, beta[3]);
    }
    return {tab2, maior_alfa, menor_beta, static_cast<float>(deep), PVSm, PVSm2};
}

void desliga(Tabela& t, std::int16_t i) {
    if (t.gaveta_de[i] == nenhum) {
        return;
    }
    std::int16_t* elo = &t.primeiro[t.gaveta_de[i]];
    while (*elo != i) {
        elo = &t.proximo[*elo];
    }
    *elo = t.proximo[i];
    t.gaveta_de[i] = nenhum;
}

void liga(Tabela& t, std::int16_t i) {
    const std::int16_t g = gaveta(t.chave[i]);
    std::int16_t* elo = &t.primeiro[g];
    while (*elo != nenhum && *elo < i) {
        elo = &t.proximo[*elo];
    }
    t.proximo[i] = *elo;
    *elo = i;
    t.gaveta_de[i] = g;
}

}  // namespace

void hash_table_scan(int n, Cor c) {
    const Tabela& t = tabela(n, c);
    const Chave k = chave_do_no(n);
    for (std::int16_t i = t.primeiro[gaveta(k)]; i != nenhum; i = t.proximo[i]) {
        if (t.chave[i] == k) {
            HASHTABLE[n] = 1;
            (n % 2 == 0 ? alfa : beta)[n] = t.valor[i];
            return;
        }
    }
}

void hash_table_build(int n, Cor c) {
    Tabela& t = tabela(n, c);
    const auto i = static_cast<std::int16_t>(inc[n][c]);
    desliga(t, i);
    t.chave[i] = chave_do_no(n);
}

void hash_table_store(int n, Cor c, float valor_do_no) {
    Tabela& t = tabela(n, c);
    int& i = inc[n][c];
    t.valor[i] = valor_do_no;
    liga(t, static_cast<std::int16_t>(i));
    ++i;
    t.usados = std::max(t.usados, i);
    if (i == registros_rasos - 1) {
        i = 0;
        FULL[n] = 1;
    }
}

void limpa_tabela_rasa(int n, Cor c) {
    Tabela& t = tabela(n, c);
    if (t.usados > 0) {
        t.primeiro.fill(nenhum);
        std::fill_n(t.gaveta_de.begin(), t.usados, nenhum);
        t.usados = 0;
    }
    inc[n][c] = 0;
}

void limpa_cadeia_rasa(Cor raiz) {
    limpa_tabela_rasa(3, raiz);
    limpa_tabela_rasa(4, outra(raiz));
    limpa_tabela_rasa(5, raiz);
}

void limpa_tabelas_rasas() {
    limpa_cadeia_rasa(brancas);
    limpa_cadeia_rasa(pretas);
}

}  // namespace ondrel
