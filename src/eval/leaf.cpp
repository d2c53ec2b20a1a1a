#include "eval/leaf.h"

#include "base/bounds.h"
#include "base/options.h"
#include "base/root.h"
#include "eval/extra_eval.h"
#include "eval/judgement.h"
#include "eval/mobility.h"
#include "eval/walk.h"

#include <cassert>
#include <cmath>
#include <cstring>
#include <utility>

namespace ondrel {
namespace {

// --- What is fixed for a search ---

constexpr int maior_proximidade = 100;
using PorProximidade = std::array<double, maior_proximidade + 1>;
using PorCasa = std::array<double, 64>;

struct Constantes {
    // What the rest depends on.
    Cor own = brancas;
    std::array<int, 2> npecas{-1, -1};
    std::array<float, 2> materialmaior{};
    float agresprxrei = 0;

    bool menos_de_15 = false;
    bool menos_de_11 = false;
    std::array<bool, 2> final_para{};  // the enemy of this colour is down to a queen or less
    std::array<bool, 2> inimigo_sem_homens{};
    // Terms by the nearness of the enemy king, by Cor, and by the square.
    std::array<PorProximidade, 2> cavalo, torre, dama, rei;
    PorCasa centro_do_cavalo, centro_da_dama, centro_do_rei;
    int bispo_na_diagonal = 0;
};

Constantes k;

// Nearness of two squares by index, and the share that an attacked square adds to a sum.
constexpr std::array<std::array<std::uint8_t, 64>, 64> perto = [] {
    std::array<std::array<std::uint8_t, 64>, 64> t{};
    for (int i = 0; i < 64; ++i) {
        for (int j = 0; j < 64; ++j) {
            t[i][j] = static_cast<std::uint8_t>(proximidade(i / 8, i % 8, j / 8, j % 8));
        }
    }
    return t;
}();
constexpr std::array<PorCasa, 64> inverso = [] {
    std::array<PorCasa, 64> t{};
    for (int i = 0; i < 64; ++i) {
        for (int j = 0; j < 64; ++j) {
            t[i][j] = 1.0 / perto[i][j];
        }
    }
    return t;
}();
constexpr PorProximidade vinte_e_cinco_avos = [] {
    PorProximidade t{};
    for (int n = 2; n <= maior_proximidade; ++n) {
        t[n] = 25.0 / n;
    }
    return t;
}();

void por_proximidade(PorProximidade& t, double numerador) {
    for (int n = 2; n <= maior_proximidade; ++n) {
        t[n] = numerador / n;
    }
}

void por_centro(PorCasa& t, double peso) {
    for (int i = 0; i < 64; ++i) {
        t[i] = peso * static_cast<double>(centro[i]);
    }
}

// --- Squares of the pawns' terms ---

// Squares where a pawn shelters a king of c on i.
constexpr std::array<std::array<Mascara, 64>, 2> abrigos = [] {
    std::array<std::array<Mascara, 64>, 2> t{};
    for (const Cor c : {brancas, pretas}) {
        for (int i = 0; i < 64; ++i) {
            for (int f = i / 8 - 1; f <= i / 8 + 1; ++f) {
                for (int adiante = 0; adiante <= 2; ++adiante) {
                    const int r = i % 8 + sinal(c) * adiante;
                    t[c][i] |= no_tabuleiro(f, r) ? bit(casa(f, r)) : 0;
                }
            }
        }
    }
    return t;
}();

// Where an enemy pawn stops a breakthrough of a pawn of c on i toward the higher [0] or lower [1] file; no square at
// all where the rule has none to walk.
constexpr std::array<std::array<std::array<Mascara, 2>, 64>, 2> rompimentos = [] {
    std::array<std::array<std::array<Mascara, 2>, 64>, 2> t{};
    for (const Cor c : {brancas, pretas}) {
        for (int i = 0; i < 64; ++i) {
            for (int lado = 0; lado < 2; ++lado) {
                for (int adiante = fila(c, i % 8) + 2; adiante <= 6; ++adiante) {
                    const int alem = i / 8 + (lado == 0 ? 2 : -2);
                    t[c][i][lado] |= bit(casa(i / 8, fila(c, adiante)));
                    t[c][i][lado] |= alem >= 0 && alem < 8 ? bit(casa(alem, fila(c, adiante))) : 0;
                }
            }
        }
    }
    return t;
}();

// Ranks 0 to 7 of one file of a set.
constexpr unsigned coluna(Mascara m, int f) { return static_cast<unsigned>(m >> static_cast<unsigned>(8 * f)) & 0xFFU; }

constexpr std::array<unsigned, 256> espelho = [] {
    std::array<unsigned, 256> t{};
    for (unsigned x = 0; x < 256; ++x) {
        for (unsigned r = 0; r < 8; ++r) {
            t[x] |= ((x >> r) & 1U) << (7 - r);
        }
    }
    return t;
}();

// The same file as the colour sees it.
template <Cor c>
constexpr unsigned coluna_vista(Mascara m, int f) {
    return c == brancas ? coluna(m, f) : espelho[coluna(m, f)];
}

// --- The walk ---

constexpr int mais_marcas = 64 * 27 + 16;  // the attacks of a board full of queens, and room to copy past the end

// Squares attacked by each colour, in the order of summation.
std::array<std::array<std::uint8_t, mais_marcas>, 2> marcas;

// The counters of one colour while the walk runs.
struct Lado {
    std::uint8_t* fim;  // of the colour's squares in `marcas`
    float posicao = 0;
    int mobilidade = 0;
    int alvos = 0;
    int apoios = 0;

    void soma_inteiro(int x) { posicao += static_cast<float>(x); }  // a float and an integer: one rounding either way
    void soma(double x) { posicao = static_cast<float>(static_cast<double>(posicao) + x); }
};

struct Folha_em_exame {
    const Tabuleiro& t;
    const Mascaras& m;
    Mascara ocupadas;
    std::array<int, 2> rei_em;  // the kings as the last tests left them
    std::array<Lado, 2> lado{{{marcas[brancas].data()}, {marcas[pretas].data()}}};
};

template <Cor c>
int perto_do_rei_inimigo(const Folha_em_exame& x, int i) {
    return perto[i][x.rei_em[outra(c)]];
}

// A set of squares that a man of c attacks, all marked by now.
template <Cor c>
void conta_ataques(Folha_em_exame& x, Mascara atacadas) {
    const int proprias = std::popcount(atacadas & x.m.cor[c]);
    x.lado[c].apoios += proprias;
    x.lado[c].alvos += std::popcount(atacadas & x.m.cor[outra(c)]);
    x.lado[c].mobilidade += std::popcount(atacadas) - proprias;
}

// The terms of one man met by an attack: a richer enemy before the side to move, a rook or queen backed along a line.
template <Cor stm, Cor c, Peca quem>
void encontra(Folha_em_exame& x, int i, int d) {
    const int v = sinal(c) * x.t[i];
    if (v < 0) {
        if (c == stm && (quem == cavalo || quem == bispo || quem == torre) && -v > quem) {
            x.lado[c].soma_inteiro(-v - quem);
        }
    } else if ((quem == torre || quem == dama) && (v == torre || v == dama)) {
        x.lado[c].soma_inteiro(quem == dama ? 1 : (d < 2 ? 3 : 5));
    }
}

template <Cor stm, Cor c, Peca quem, int d>
void encontra_no_raio(Folha_em_exame& x, int i, Mascara contam) {
    if (const Mascara no_raio = contam & raios[d][i]; no_raio != 0) {
        encontra<stm, c, quem>(x, primeira_casa(no_raio), d);
    }
}

// The men that, met by an attack of this kind, bring a term.
template <Cor stm, Cor c, Peca quem>
Mascara homens_que_contam(const Mascaras& m) {
    Mascara contam = 0;
    if (c == stm && quem != dama && quem != rei) {
        contam = m.tipo[tipo_de(dama)] | m.tipo[tipo_de(rei)] | (quem != torre ? m.tipo[tipo_de(torre)] : 0) |
                 (quem == cavalo ? m.tipo[tipo_de(bispo)] : 0);
        contam &= m.cor[outra(c)];
    }
    if (quem == torre || quem == dama) {
        contam |= m.cor[c] & (m.tipo[tipo_de(torre)] | m.tipo[tipo_de(dama)]);
    }
    return contam;
}

template <Cor stm, Cor c, Peca quem>
void anda_aos_saltos(Folha_em_exame& x, const Saltos& saltos) {
    Lado& eu = x.lado[c];
    std::memcpy(eu.fim, saltos.em_ordem.data(), saltos.em_ordem.size());
    eu.fim += saltos.quantas;
    conta_ataques<c>(x, saltos.casas);
    if (quem == cavalo && (saltos.casas & homens_que_contam<stm, c, quem>(x.m)) != 0) {
        for (int n = 0; n < saltos.quantas; ++n) {
            if (x.t[saltos.em_ordem[n]] != vazia) {
                encontra<stm, c, quem>(x, saltos.em_ordem[n], 0);
            }
        }
    }
}

// Marks a ray up to its first man, without asking whether it has one: the far corner, whose own rays in the direction
// are empty, stands in for him.
template <int d>
Mascara anda_no_raio(std::uint8_t*& fim, Mascara ocupadas, int i) {
    constexpr Mascara canto = direcao_sobe(d) ? bit(63) : bit(0);
    std::memcpy(fim, raios_em_ordem[d][i].data(), sizeof(Fileira));
    const Mascara raio = raios[d][i];
    const int primeiro = primeiro_no_raio<d>((raio & ocupadas) | canto);
    const Mascara atacadas = raio & ~raios[d][primeiro];
    fim += std::popcount(atacadas);
    return atacadas;
}

template <Cor stm, Cor c, Peca quem, int... d>
void anda_nos_raios(Folha_em_exame& x, int i, std::integer_sequence<int, d...>) {
    Mascara atacadas = 0;
    std::uint8_t* fim = x.lado[c].fim;
    ((atacadas |= anda_no_raio<d>(fim, x.ocupadas, i)), ...);
    x.lado[c].fim = fim;
    conta_ataques<c>(x, atacadas);
    if (const Mascara contam = atacadas & homens_que_contam<stm, c, quem>(x.m); contam != 0) {
        ((encontra_no_raio<stm, c, quem, d>(x, i, contam)), ...);
    }
}

using Retas = std::integer_sequence<int, 0, 1, 2, 3>;
using Diagonais = std::integer_sequence<int, 4, 5, 6, 7>;
using Todas = std::integer_sequence<int, 0, 1, 2, 3, 4, 5, 6, 7>;

// --- Men, by the rows of their terms ---

template <Cor stm, Cor c>
void homem_cavalo(Folha_em_exame& x, int i) {
    if (fila(c, i % 8) != 0) {
        x.lado[c].soma_inteiro(15);
    }
    x.lado[c].soma(k.cavalo[c][perto_do_rei_inimigo<c>(x, i)] + k.centro_do_cavalo[i]);
    anda_aos_saltos<stm, c, cavalo>(x, saltos_de_cavalo[i]);
}

template <Cor stm, Cor c>
void homem_bispo(Folha_em_exame& x, int i) {
    constexpr Mascara diagonais_longas = 0x8142241818244281U;
    if (fila(c, i % 8) != 0) {
        x.lado[c].soma_inteiro(15);
    }
    if ((bit(i) & diagonais_longas) != 0) {
        x.lado[c].soma_inteiro(k.bispo_na_diagonal);
    }
    anda_nos_raios<stm, c, bispo>(x, i, Diagonais{});
}

template <Cor stm, Cor c>
void homem_torre(Folha_em_exame& x, int i) {
    if (i / 8 != 0 && i / 8 != 7) {
        x.lado[c].soma_inteiro(15);
    }
    if (k.menos_de_15) {
        x.lado[c].soma(k.torre[c][perto_do_rei_inimigo<c>(x, i)]);
    }
    if (k.menos_de_11 && fila(c, i % 8) >= 6) {
        x.lado[c].soma_inteiro(11);
    }
    anda_nos_raios<stm, c, torre>(x, i, Retas{});
}

template <Cor stm, Cor c>
void homem_dama(Folha_em_exame& x, int i) {
    if (fila(c, i % 8) != 0) {
        x.lado[c].soma_inteiro(15);
    }
    x.lado[c].soma(k.dama[c][perto_do_rei_inimigo<c>(x, i)] + k.centro_da_dama[i]);
    anda_nos_raios<stm, c, dama>(x, i, Todas{});
}

template <Cor stm, Cor c>
void homem_rei(Folha_em_exame& x, int i) {
    if (k.final_para[c]) {
        x.lado[c].soma(k.centro_do_rei[i]);
    }
    if (k.inimigo_sem_homens[c]) {
        x.lado[c].soma(k.rei[c][perto_do_rei_inimigo<c>(x, i)]);
    }
    if (k.final_para[c]) {
        anda_aos_saltos<stm, c, rei>(x, saltos_de_rei[i]);
    }
}

// --- Pawns, by the items of their terms ---

template <Cor c>
constexpr int um_passo(int i) {
    return i + sinal(c);
}

template <Cor stm, Cor c>
void peao_captura(Folha_em_exame& x, int i, Mascara alvos, Mascara meus) {
    // The higher file first: for both colours the higher square.
    for (Mascara resto = alvos; resto != 0; resto ^= bit(ultima_casa(resto))) {
        const int v = valor_da_peca(x.t[ultima_casa(resto)]);
        if constexpr (c == stm) {
            x.lado[c].soma(v * static_cast<double>(agres) - 10.0);
        } else if (v > peao && (saltos_de_peao[outra(c)][i].casas & meus) != 0) {
            x.lado[c].soma_inteiro(v / 2);
        }
    }
}

// The ranks of a pawn's way to promotion up to its seventh: its own file, and both files beside.
struct Caminho {
    Mascara frente = 0;
    Mascara lados = 0;
};
constexpr std::array<std::array<Caminho, 64>, 2> caminhos = [] {
    std::array<std::array<Caminho, 64>, 2> t{};
    for (const Cor c : {brancas, pretas}) {
        for (int i = 0; i < 64; ++i) {
            for (int adiante = fila(c, i % 8) + 1; adiante <= 6; ++adiante) {
                t[c][i].frente |= bit(casa(i / 8, fila(c, adiante)));
                t[c][i].lados |= i / 8 < 7 ? bit(casa(i / 8 + 1, fila(c, adiante))) : 0;
                t[c][i].lados |= i / 8 > 0 ? bit(casa(i / 8 - 1, fila(c, adiante))) : 0;
            }
        }
    }
    return t;
}();

// Own pawns beside the way count up to the rank of the first stop; a way without a stop is a passed pawn's.
template <Cor c>
void peao_passado(Folha_em_exame& x, int i, Mascara meus, Mascara deles) {
    const Caminho& caminho = caminhos[c][i];
    const Mascara paradas = (caminho.frente & (meus | deles)) | (caminho.lados & deles);
    const Mascara ao_lado = caminho.lados & meus;
    if (ao_lado != 0) {
        const int f = i / 8;
        // All three files laid over one another, as the colour sees them.
        const unsigned parada = coluna_vista<c>(paradas, f) | (f < 7 ? coluna_vista<c>(paradas, f + 1) : 0U) |
                                (f > 0 ? coluna_vista<c>(paradas, f - 1) : 0U);
        const unsigned percorrido = (parada & (0U - parada)) - 1U;
        int dez = f < 7 ? std::popcount(coluna_vista<c>(ao_lado, f + 1) & percorrido) : 0;
        dez += f > 0 ? std::popcount(coluna_vista<c>(ao_lado, f - 1) & percorrido) : 0;
        for (; dez > 0; --dez) {
            x.lado[c].soma_inteiro(10);
        }
    }
    if (paradas == 0 && caminho.frente != 0) {
        x.lado[c].soma_inteiro(33);
    }
}

template <Cor stm, Cor c>
void homem_peao(Folha_em_exame& x, int i) {
    Lado& eu = x.lado[c];
    const Saltos& diagonais = saltos_de_peao[c][i];
    const Mascara meus = x.m.de(c, peao);
    const Mascara deles = x.m.de(outra(c), peao);
    if (k.final_para[c]) {
        eu.soma(100.0 * static_cast<double>(promo[c][i]) + vinte_e_cinco_avos[perto[i][x.rei_em[c]]]);
        x.lado[outra(c)].soma(vinte_e_cinco_avos[perto_do_rei_inimigo<c>(x, i)]);
    } else {
        std::memcpy(eu.fim, diagonais.em_ordem.data(), diagonais.em_ordem.size());
        eu.fim += diagonais.quantas;
    }
    if (const Mascara alvos = diagonais.casas & x.m.cor[outra(c)]; alvos != 0) {
        eu.mobilidade += std::popcount(alvos);
        eu.alvos += std::popcount(alvos);
        peao_captura<stm, c>(x, i, alvos, meus);
    }
    const int r = fila(c, i % 8);
    if (r < 7 && x.t[um_passo<c>(i)] == vazia) {
        eu.mobilidade += r == 1 && x.t[um_passo<c>(um_passo<c>(i))] == vazia ? 2 : 1;
    }
    eu.apoios += std::popcount(diagonais.casas & x.m.cor[c]);
    if (r == 6) {
        eu.soma_inteiro(100);
    }
    const Mascara vizinhas = bit(i) << 8U | bit(i) >> 8U;
    for (int n = std::popcount(vizinhas & meus); n > 0; --n) {
        eu.soma_inteiro(13);
    }
    for (int n = std::popcount(diagonais.casas & meus); n > 0; --n) {
        eu.soma_inteiro(11);
    }
    if (r <= 4) {
        for (const int lado : {0, 1}) {
            const int f = i / 8 + (lado == 0 ? 1 : -1);
            if (f >= 0 && f < 8 && ((meus | deles) & bit(casa(f, i % 8 + sinal(c)))) == 0 &&
                (rompimentos[c][i][lado] & deles) == 0) {
                eu.soma_inteiro(25);
            }
        }
    }
    peao_passado<c>(x, i, meus, deles);
}

// --- The sums over attacked squares ---

// Two sums side by side, in double but rounded to float at every step, as the rule demands.
using DoisDuplos = double __attribute__((vector_size(16)));
using DoisReais = float __attribute__((vector_size(8)));

// One colour's chains: they are long, and run beside those of the other colour.
struct Cadeia {
    const std::uint8_t* proxima;
    const std::uint8_t* fim;
    const double* ao_inimigo;  // shares by square, to the enemy king
    const double* ao_proprio;  // and to the own
    DoisDuplos rei{0, 0};      // atack_ksf, defesa_ksf
    float centro = 0;

    void soma_uma() {
        const int i = *proxima++;
        const DoisDuplos parcelas{ao_inimigo[i], ao_proprio[i]};
        rei = __builtin_convertvector(__builtin_convertvector(rei + parcelas, DoisReais), DoisDuplos);
        centro += centroo[i];
    }
    // Takes up what the walk has found so far, if it is enough: the chain then runs in the shadow of the walk.
    void soma_quatro(const std::uint8_t* ate_aqui) {
        if (ate_aqui - proxima >= 4) {
            soma_uma();
            soma_uma();
            soma_uma();
            soma_uma();
        }
    }
    [[nodiscard]] bool falta() const { return proxima != fim; }
};

Cadeia cadeia_de(Cor c, const Folha_em_exame& x) {
    return {marcas[c].data(), x.lado[c].fim, inverso[x.rei_em[outra(c)]].data(), inverso[x.rei_em[c]].data()};
}

void toma_somas(Cor c, const Cadeia& cadeia) {
    contagem[c].atack_ksf = static_cast<float>(cadeia.rei[0]);
    contagem[c].defesa_ksf = static_cast<float>(cadeia.rei[1]);
    contagem[c].centro = cadeia.centro;
}

// What the walk has left of the chains.
void soma_resto(const Folha_em_exame& x, Cadeia& b, Cadeia& p) {
    b.fim = x.lado[brancas].fim;
    p.fim = x.lado[pretas].fim;
    while (b.falta() && p.falta()) {
        b.soma_uma();
        p.soma_uma();
    }
    while (b.falta()) {
        b.soma_uma();
    }
    while (p.falta()) {
        p.soma_uma();
    }
    toma_somas(brancas, b);
    toma_somas(pretas, p);
}

template <Cor stm>
void percorre(Folha_em_exame& x) {
    Cadeia b = cadeia_de(brancas, x);
    Cadeia p = cadeia_de(pretas, x);
    for (Mascara resto = x.ocupadas; resto != 0; resto &= resto - 1) {
        const int i = primeira_casa(resto);
        switch (x.t[i]) {
            case peao: homem_peao<stm, brancas>(x, i); break;
            case -peao: homem_peao<stm, pretas>(x, i); break;
            case cavalo: homem_cavalo<stm, brancas>(x, i); break;
            case -cavalo: homem_cavalo<stm, pretas>(x, i); break;
            case bispo: homem_bispo<stm, brancas>(x, i); break;
            case -bispo: homem_bispo<stm, pretas>(x, i); break;
            case torre: homem_torre<stm, brancas>(x, i); break;
            case -torre: homem_torre<stm, pretas>(x, i); break;
            case dama: homem_dama<stm, brancas>(x, i); break;
            case -dama: homem_dama<stm, pretas>(x, i); break;
            case rei: homem_rei<stm, brancas>(x, i); break;
            default: homem_rei<stm, pretas>(x, i); break;
        }
        b.soma_quatro(x.lado[brancas].fim);
        p.soma_quatro(x.lado[pretas].fim);
    }
    soma_resto(x, b, p);
}

// --- The counters that sets give at once ---

int soma_das_filas(Cor c, Mascara homens) {
    constexpr Mascara um = 0xAAAAAAAAAAAAAAAAU;
    constexpr Mascara dois = 0xCCCCCCCCCCCCCCCCU;
    constexpr Mascara quatro = 0xF0F0F0F0F0F0F0F0U;
    const int soma = std::popcount(homens & um) + 2 * std::popcount(homens & dois) + 4 * std::popcount(homens & quatro);
    return c == brancas ? soma + std::popcount(homens) : 8 * std::popcount(homens) - soma;
}

void mede_caixa(Contagem& eu, Mascara peoes_e_rei) {
    if (peoes_e_rei == 0) {
        return;
    }
    eu.menor_file = primeira_casa(peoes_e_rei) / 8;
    eu.maior_file = ultima_casa(peoes_e_rei) / 8;
    Mascara filas = peoes_e_rei | peoes_e_rei >> 32U;
    filas |= filas >> 16U;
    filas |= filas >> 8U;
    filas &= 0xFFU;
    eu.menor_rank = primeira_casa(filas);
    eu.maior_rank = ultima_casa(filas);
}

void conta_homens(Cor c, const Folha_em_exame& x) {
    Contagem& eu = contagem[c];
    const Mascara peoes = x.m.de(c, peao);
    const int menores = std::popcount(x.m.de(c, cavalo) | x.m.de(c, bispo));
    const int torres = std::popcount(x.m.de(c, torre));
    const int damas = std::popcount(x.m.de(c, dama));
    eu.posicao = x.lado[c].posicao;
    eu.mobilidade = x.lado[c].mobilidade;
    eu.alvos = x.lado[c].alvos;
    eu.apoios = x.lado[c].apoios;
    eu.pecas = menores + torres + damas;
    eu.pontos = 3 * menores + 5 * torres + 9 * damas;
    eu.peoes = std::popcount(peoes);
    eu.avanco = soma_das_filas(c, x.m.cor[c]);
    eu.abrigo = k.final_para[c] ? 0 : std::popcount(peoes & abrigos[c][x.rei_em[c]]);
    mede_caixa(eu, peoes | x.m.de(c, rei));
}

bool empate_de(const Mascaras& m) {
    if ((m.tipo[tipo_de(peao)] | m.tipo[tipo_de(torre)] | m.tipo[tipo_de(dama)]) != 0) {
        return false;
    }
    const auto nao_ganha = [&](Cor c) {
        const int cavalos = std::popcount(m.de(c, cavalo));
        const int bispos = std::popcount(m.de(c, bispo));
        return (bispos == 0 && cavalos <= 2) || (cavalos == 0 && bispos <= 1);
    };
    return nao_ganha(brancas) && nao_ganha(pretas);
}

}  // namespace

void prepara_julgamento(Cor own) {
    if (k.own == own && k.npecas == npecas && k.materialmaior == materialmaior && k.agresprxrei == agresprxrei) {
        return;
    }
    k.own = own;
    k.npecas = npecas;
    k.materialmaior = materialmaior;
    k.agresprxrei = agresprxrei;
    k.menos_de_15 = homens() < 15;
    k.menos_de_11 = homens() < 11;
    k.bispo_na_diagonal = k.menos_de_15 ? 5 : 11;
    por_centro(k.centro_do_cavalo, k.menos_de_15 ? 10.0 : 25.0);
    por_centro(k.centro_da_dama, k.menos_de_15 ? 15.0 : 10.0);
    por_centro(k.centro_do_rei, 50.0);
    for (const Cor c : {brancas, pretas}) {
        const double ap = c == own ? static_cast<double>(agresprxrei) : 1.0;
        k.final_para[c] = materialmaior[outra(c)] <= 90.0F;
        k.inimigo_sem_homens[c] = npecas[outra(c)] == 0;
        por_proximidade(k.cavalo[c], (k.menos_de_15 ? 15.0 : 5.0) * ap);
        por_proximidade(k.torre[c], 10.0 * ap);
        por_proximidade(k.dama[c], (k.menos_de_15 ? 25.0 : 5.0) * ap);
        por_proximidade(k.rei[c], 75.0 * ap);
    }
}

#if ONDREL_CHECKED
namespace {

bool iguais(float x, float y) { return std::bit_cast<std::uint32_t>(x) == std::bit_cast<std::uint32_t>(y); }

// The rule itself, square by square, gives the same to the last bit.
template <Cor own, Cor stm>
void prova_pela_regra(const Tabuleiro& t) {
    const std::array<Contagem, 2> rapidas = contagem;
    contagem = {};
    Caminhada<Passeio::folha, own, stm>(t, contagem).percorre();
    for (const Cor c : {brancas, pretas}) {
        const Contagem& x = rapidas[c];
        const Contagem& y = contagem[c];
        assert(iguais(x.posicao, y.posicao) && iguais(x.centro, y.centro) && iguais(x.atack_ksf, y.atack_ksf) &&
               iguais(x.defesa_ksf, y.defesa_ksf));
        assert(x.mobilidade == y.mobilidade && x.alvos == y.alvos && x.apoios == y.apoios && x.abrigo == y.abrigo);
        assert(x.pecas == y.pecas && x.peoes == y.peoes && x.pontos == y.pontos && x.avanco == y.avanco);
        assert(x.caixa() == y.caixa());
    }
    assert(iguais(extraeval, limita(julgamento<true>(own, extraevalll))) || std::isnan(extraeval));
}

}  // namespace
#endif

template <Cor own, Cor stm>
void julga_a_folha(const Tabuleiro& t, const Mascaras& m) {
    Folha_em_exame x{t, m, m.ocupadas(), {casa(p_x_R[brancas], p_y_R[brancas]), casa(p_x_R[pretas], p_y_R[pretas])}};
    contagem = {};
    percorre<stm>(x);
    EMPAT = empate_de(m) ? 1 : 0;
    conta_homens(brancas, x);
    conta_homens(pretas, x);
    extraeval = limita(julgamento_rapido(own, extraevalll));
#if ONDREL_CHECKED
    prova_pela_regra<own, stm>(t);
#endif
}

template void julga_a_folha<brancas, brancas>(const Tabuleiro& t, const Mascaras& m);
template void julga_a_folha<brancas, pretas>(const Tabuleiro& t, const Mascaras& m);
template void julga_a_folha<pretas, brancas>(const Tabuleiro& t, const Mascaras& m);
template void julga_a_folha<pretas, pretas>(const Tabuleiro& t, const Mascaras& m);

}  // namespace ondrel
