#include "eval/leaf_sums.h"

#include "base/options.h"
#include "base/root.h"
#include "eval/leaf_rays.h"
#include "eval/leaf_weights.h"
#include "eval/mobility.h"

#include <cstring>

namespace ondrel {
namespace {

// The share that an attacked square adds to the sum of a king.
constexpr std::array<PorCasa, 64> inverso = [] {
    std::array<PorCasa, 64> t{};
    for (int i = 0; i < 64; ++i) {
        for (int j = 0; j < 64; ++j) {
            t[i][j] = 1.0 / perto[i][j];
        }
    }
    return t;
}();

// --- Squares of the pawns' terms ---

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
    std::uint8_t* fim = nullptr;  // of the colour's squares in `marcas`
    float posicao = 0;

    void soma_inteiro(int x) { posicao += static_cast<float>(x); }  // a float and an integer: one rounding either way
    void soma(double x) { posicao = static_cast<float>(static_cast<double>(posicao) + x); }
};

struct FolhaEmExame {
    const Tabuleiro& t;
    const Mascaras& m;
    Ocupadas ocupadas{};
    std::array<int, 2> rei_em{};  // the kings as the last tests left them
    std::array<Lado, 2> lado{{{marcas[brancas].data()}, {marcas[pretas].data()}}};
};

template <Cor c>
int perto_do_rei_inimigo(const FolhaEmExame& x, int i) {
    return perto[i][x.rei_em[outra(c)]];
}

// The terms of one man met by an attack: a richer enemy before the side to move, a rook or queen backed along a line.
template <Cor stm, Cor c, Peca quem>
void encontra(FolhaEmExame& x, int i, int d) {
    const int v = sinal(c) * x.t[i];
    if (v < 0) {
        if (c == stm && (quem == cavalo || quem == bispo || quem == torre) && -v > quem) {
            x.lado[c].soma_inteiro(-v - quem);
        }
    } else if ((quem == torre || quem == dama) && (v == torre || v == dama)) {
        x.lado[c].soma_inteiro(quem == dama ? dama_apoia : (d < 2 ? torre_apoia_de_lado : torre_apoia_de_frente));
    }
}

template <Cor stm, Cor c, Peca quem, int d>
void encontra_no_raio(FolhaEmExame& x, int i, Mascara contam) {
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
void anda_aos_saltos(FolhaEmExame& x, const Saltos& saltos) {
    Lado& eu = x.lado[c];
    std::memcpy(eu.fim, saltos.em_ordem.data(), saltos.em_ordem.size());
    eu.fim += saltos.quantas;
    if (quem == cavalo && (saltos.casas & homens_que_contam<stm, c, quem>(x.m)) != 0) {
        for (int n = 0; n < saltos.quantas; ++n) {
            if (x.t[saltos.em_ordem[n]] != vazia) {
                encontra<stm, c, quem>(x, saltos.em_ordem[n], 0);
            }
        }
    }
}

// Marks a ray up to its first man.
template <int d>
Mascara anda_no_raio(std::uint8_t*& fim, Ocupadas ocupadas, int i) {
    std::memcpy(fim, raios_em_ordem[d][i].data(), sizeof(Fileira));
    const Mascara atacadas = alcance<d>(i, ocupadas).casas;
    fim += std::popcount(atacadas);
    return atacadas;
}

template <Cor stm, Cor c, Peca quem, int... d>
void anda_nos_raios(FolhaEmExame& x, int i, std::integer_sequence<int, d...>) {
    Mascara atacadas = 0;
    std::uint8_t* fim = x.lado[c].fim;
    ((atacadas |= anda_no_raio<d>(fim, x.ocupadas, i)), ...);
    x.lado[c].fim = fim;
    if (const Mascara contam = atacadas & homens_que_contam<stm, c, quem>(x.m); contam != 0) {
        ((encontra_no_raio<stm, c, quem, d>(x, i, contam)), ...);
    }
}

// --- Men, by the rows of their terms ---

template <Cor stm, Cor c>
void homem_cavalo(FolhaEmExame& x, int i) {
    if (fila(c, i % 8) != 0) {
        x.lado[c].soma_inteiro(homem_desenvolvido);
    }
    x.lado[c].soma(pesos.cavalo[c][perto_do_rei_inimigo<c>(x, i)] + pesos.centro_do_cavalo[i]);
    anda_aos_saltos<stm, c, cavalo>(x, saltos_de_cavalo[i]);
}

template <Cor stm, Cor c>
void homem_bispo(FolhaEmExame& x, int i) {
    if (fila(c, i % 8) != 0) {
        x.lado[c].soma_inteiro(homem_desenvolvido);
    }
    if ((bit(i) & diagonais_longas) != 0) {
        x.lado[c].soma_inteiro(pesos.bispo_na_diagonal);
    }
    anda_nos_raios<stm, c, bispo>(x, i, Diagonais{});
}

template <Cor stm, Cor c>
void homem_torre(FolhaEmExame& x, int i) {
    if (i / 8 != 0 && i / 8 != 7) {
        x.lado[c].soma_inteiro(homem_desenvolvido);
    }
    if (pesos.menos_de_15) {
        x.lado[c].soma(pesos.torre[c][perto_do_rei_inimigo<c>(x, i)]);
    }
    if (pesos.menos_de_11 && fila(c, i % 8) >= 6) {
        x.lado[c].soma_inteiro(torre_adiantada);
    }
    anda_nos_raios<stm, c, torre>(x, i, Retas{});
}

template <Cor stm, Cor c>
void homem_dama(FolhaEmExame& x, int i) {
    if (fila(c, i % 8) != 0) {
        x.lado[c].soma_inteiro(homem_desenvolvido);
    }
    x.lado[c].soma(pesos.dama[c][perto_do_rei_inimigo<c>(x, i)] + pesos.centro_da_dama[i]);
    anda_nos_raios<stm, c, dama>(x, i, Todas{});
}

template <Cor stm, Cor c>
void homem_rei(FolhaEmExame& x, int i) {
    if (pesos.final_para[c]) {
        x.lado[c].soma(pesos.centro_do_rei[i]);
    }
    if (pesos.inimigo_sem_homens[c]) {
        x.lado[c].soma(pesos.rei[c][perto_do_rei_inimigo<c>(x, i)]);
    }
    if (pesos.final_para[c]) {
        anda_aos_saltos<stm, c, rei>(x, saltos_de_rei[i]);
    }
}

// --- Pawns, by the items of their terms ---

template <Cor stm, Cor c>
void peao_captura(FolhaEmExame& x, int i, Mascara alvos, Mascara meus) {
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
void peao_passado(FolhaEmExame& x, int i, Mascara meus, Mascara deles) {
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
            x.lado[c].soma_inteiro(peao_ao_lado);
        }
    }
    if (paradas == 0 && caminho.frente != 0) {
        x.lado[c].soma_inteiro(peao_livre);
    }
}

template <Cor stm, Cor c>
void homem_peao(FolhaEmExame& x, int i) {
    Lado& eu = x.lado[c];
    const Saltos& diagonais = saltos_de_peao[c][i];
    const Mascara meus = x.m.de(c, peao);
    const Mascara deles = x.m.de(outra(c), peao);
    if (pesos.final_para[c]) {
        eu.soma(peao_do_final(c, i, x.rei_em[c]));
        x.lado[outra(c)].soma(vinte_e_cinco_avos[perto_do_rei_inimigo<c>(x, i)]);
    } else {
        std::memcpy(eu.fim, diagonais.em_ordem.data(), diagonais.em_ordem.size());
        eu.fim += diagonais.quantas;
    }
    if (const Mascara alvos = diagonais.casas & x.m.cor[outra(c)]; alvos != 0) {
        peao_captura<stm, c>(x, i, alvos, meus);
    }
    const int r = fila(c, i % 8);
    if (r == 6) {
        eu.soma_inteiro(peao_na_setima);
    }
    const Mascara vizinhas = bit(i) << 8U | bit(i) >> 8U;
    for (int n = std::popcount(vizinhas & meus); n > 0; --n) {
        eu.soma_inteiro(peao_vizinho);
    }
    for (int n = std::popcount(diagonais.casas & meus); n > 0; --n) {
        eu.soma_inteiro(peao_protege);
    }
    if (r <= 4) {
        for (const int lado : {0, 1}) {
            const int f = i / 8 + (lado == 0 ? 1 : -1);
            if (f >= 0 && f < 8 && ((meus | deles) & bit(casa(f, i % 8 + sinal(c)))) == 0 &&
                (rompimentos[c][i][lado] & deles) == 0) {
                eu.soma_inteiro(peao_rompe);
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
    const std::uint8_t* proxima = nullptr;
    const std::uint8_t* fim = nullptr;
    const double* ao_inimigo = nullptr;  // shares by square, to the enemy king
    const double* ao_proprio = nullptr;  // and to the own
    DoisDuplos rei{0, 0};                // atack_ksf, defesa_ksf
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

Cadeia cadeia_de(Cor c, const FolhaEmExame& x) {
    return {marcas[c].data(), x.lado[c].fim, inverso[x.rei_em[outra(c)]].data(), inverso[x.rei_em[c]].data()};
}

void toma_somas(Cor c, const FolhaEmExame& x, const Cadeia& cadeia) {
    contagem[c].posicao = x.lado[c].posicao;
    contagem[c].atack_ksf = static_cast<float>(cadeia.rei[0]);
    contagem[c].defesa_ksf = static_cast<float>(cadeia.rei[1]);
    contagem[c].centro = cadeia.centro;
}

// What the walk has left of the chains.
void soma_resto(const FolhaEmExame& x, Cadeia& b, Cadeia& p) {
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
    toma_somas(brancas, x, b);
    toma_somas(pretas, x, p);
}

template <Cor stm>
void percorre(FolhaEmExame& x) {
    Cadeia b = cadeia_de(brancas, x);
    Cadeia p = cadeia_de(pretas, x);
    for (Mascara resto = x.ocupadas.diretas; resto != 0; resto &= resto - 1) {
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

}  // namespace

template <Cor stm>
void soma_em_ordem(const Tabuleiro& t, const Mascaras& m) {
    FolhaEmExame x{t,
                   m,
                   ocupadas_vistas(m.ocupadas()),
                   {casa(p_x_R[brancas], p_y_R[brancas]), casa(p_x_R[pretas], p_y_R[pretas])}};
    percorre<stm>(x);
}

template void soma_em_ordem<brancas>(const Tabuleiro& t, const Mascaras& m);
template void soma_em_ordem<pretas>(const Tabuleiro& t, const Mascaras& m);

}  // namespace ondrel
