#include "eval/leaf_sets.h"

#include "base/options.h"
#include "base/root.h"
#include "eval/leaf_rays.h"
#include "eval/leaf_weights.h"
#include "eval/mobility.h"

#include <cmath>

namespace ondrel {
namespace {

// --- Sums over attacked squares ---

constexpr int oposta(int d) {
    for (int k = 0; k < direcoes; ++k) {
        if (passos_da_dama[k].file == -passos_da_dama[d].file && passos_da_dama[k].rank == -passos_da_dama[d].rank) {
            return k;
        }
    }
    return d;
}

// A weight of each square, summed beforehand for what a man attacks. The sum over a line, from the first man above to
// the first below, is the difference of two sums from the end of the line; the man's own square is in it.
struct SomaDeAtaques {
    bool pronta = false;
    std::array<int, 64> peso{};
    // By direction and last square as seen: one of the two sums, signed.
    std::array<std::array<int, 64>, direcoes> ate{};
    std::array<int, 64> cavalo{}, rei{};
    std::array<std::array<int, 64>, 2> peao{};
};

std::array<SomaDeAtaques, 64> perto_do_rei;  // 1/d to a king on the square
SomaDeAtaques no_centro;                     // centroo

constexpr double unidades_do_rei = 1 << 20;
constexpr double unidades_do_centro = 1 << 15;

template <class Peso>
void soma_ataques(SomaDeAtaques& s, Peso peso) {
    const auto do_conjunto = [&s](Mascara casas) {
        int total = 0;
        por_casa(casas, [&](int j) { total += s.peso[j]; });
        return total;
    };
    for (int i = 0; i < 64; ++i) {
        s.peso[i] = static_cast<int>(std::lround(peso(i)));
    }
    for (int i = 0; i < 64; ++i) {
        for (int d = 0; d < direcoes; ++d) {
            const Mascara abaixo = direcao_sobe(d) ? raios[oposta(d)][i] : raios[d][i];
            s.ate[d][vista(d, i)] = direcao_sobe(d) ? do_conjunto(abaixo) + s.peso[i] : -do_conjunto(abaixo);
        }
        s.cavalo[i] = do_conjunto(saltos_de_cavalo[i].casas);
        s.rei[i] = do_conjunto(saltos_de_rei[i].casas);
        for (const Cor c : {brancas, pretas}) {
            s.peao[c][i] = do_conjunto(saltos_de_peao[c][i].casas);
        }
    }
    s.pronta = true;
}

const SomaDeAtaques& ataques_perto_de(int rei_em) {
    SomaDeAtaques& s = perto_do_rei[rei_em];
    if (!s.pronta) {
        soma_ataques(s, [rei_em](int j) { return unidades_do_rei / perto[rei_em][j]; });
    }
    return s;
}

const SomaDeAtaques& ataques_ao_centro() {
    if (!no_centro.pronta) {
        soma_ataques(no_centro, [](int j) { return unidades_do_centro * static_cast<double>(centroo[j]); });
    }
    return no_centro;
}

// --- The counters of one colour ---

struct Contas {
    int mobilidade, alvos, apoios;
    int rei_inimigo, rei_proprio, centro;  // sums over the squares attacked
    int posicao_inteira;                   // the whole-number terms of the positional sum
    double posicao;                        // and the others
};

struct Exame {
    const Mascaras& m;
    Ocupadas ocupadas;
    std::array<int, 2> rei_em;  // the kings as the last tests left them
    std::array<const SomaDeAtaques*, 2> ataques;
    const SomaDeAtaques& centro;
    std::array<Contas, 2> lado;
};

// Squares that a man of c attacks.
template <Cor c>
void conta_ataques(Exame& x, Mascara atacadas, int quantas) {
    const int proprias = std::popcount(atacadas & x.m.cor[c]);
    x.lado[c].apoios += proprias;
    x.lado[c].alvos += std::popcount(atacadas & x.m.cor[outra(c)]);
    x.lado[c].mobilidade += quantas - proprias;
}

// A man of the side to move before richer enemies.
template <Cor stm, Cor c, Peca quem>
void conta_mais_ricos(Exame& x, Mascara atacadas) {
    if constexpr (c == stm && (quem == cavalo || quem == bispo || quem == torre)) {
        const Mascara inimigos = atacadas & x.m.cor[outra(c)];
        for (const Peca v : {bispo, torre, dama, rei}) {
            if (v > quem) {
                x.lado[c].posicao_inteira += (v - quem) * std::popcount(inimigos & x.m.tipo[tipo_de(v)]);
            }
        }
    }
}

template <Cor c>
void soma_saltos(Exame& x, int i, std::array<int, 64> SomaDeAtaques::*quem) {
    Contas& eu = x.lado[c];
    eu.rei_inimigo += (x.ataques[outra(c)]->*quem)[i];
    eu.rei_proprio += (x.ataques[c]->*quem)[i];
    eu.centro += (x.centro.*quem)[i];
}

template <Cor stm, Cor c, Peca quem, int... d>
void anda_nos_raios(Exame& x, int i, std::integer_sequence<int, d...>) {
    const std::array<Alcance, sizeof...(d)> raios_dele{alcance<d>(i, x.ocupadas)...};
    constexpr int primeira = quem == bispo ? 4 : 0;
    constexpr int linhas = sizeof...(d) / 2;
    const auto soma = [&](const SomaDeAtaques& s) {
        return (s.ate[d][raios_dele[d - primeira].ultima] + ...) - linhas * s.peso[i];
    };
    Contas& eu = x.lado[c];
    eu.rei_inimigo += soma(*x.ataques[outra(c)]);
    eu.rei_proprio += soma(*x.ataques[c]);
    eu.centro += soma(x.centro);
    const Mascara de_lado = ((d < 2 ? raios_dele[d - primeira].casas : 0) | ...);  // along the ranks
    const Mascara demais = ((d < 2 ? 0 : raios_dele[d - primeira].casas) | ...);
    const Mascara atacadas = de_lado | demais;
    conta_ataques<c>(x, atacadas, std::popcount(atacadas));
    conta_mais_ricos<stm, c, quem>(x, atacadas);
    // A rook or queen behind an own rook or queen.
    const Mascara pesadas = x.m.cor[c] & (x.m.tipo[tipo_de(torre)] | x.m.tipo[tipo_de(dama)]);
    if constexpr (quem == torre) {
        eu.posicao_inteira += torre_apoia_de_lado * std::popcount(de_lado & pesadas) +
                              torre_apoia_de_frente * std::popcount(demais & pesadas);
    } else if constexpr (quem == dama) {
        eu.posicao_inteira += dama_apoia * std::popcount(atacadas & pesadas);
    }
}

// --- Men ---

constexpr Mascara fila_em_mascara(Cor c, int r) { return 0x0101010101010101U << static_cast<unsigned>(fila(c, r)); }
constexpr Mascara coluna_em_mascara(int f) { return Mascara{0xFF} << static_cast<unsigned>(8 * f); }

template <Cor c>
void desenvolvidos(Exame& x) {
    const Mascara leves_e_damas = x.m.de(c, cavalo) | x.m.de(c, bispo) | x.m.de(c, dama);
    x.lado[c].posicao_inteira +=
        homem_desenvolvido * (std::popcount(leves_e_damas & ~fila_em_mascara(c, 0)) +
                              std::popcount(x.m.de(c, torre) & ~(coluna_em_mascara(0) | coluna_em_mascara(7))));
}

template <Cor stm, Cor c>
void cavalos(Exame& x) {
    Contas& eu = x.lado[c];
    por_casa(x.m.de(c, cavalo), [&](int i) {
        eu.posicao += pesos.cavalo[c][perto[i][x.rei_em[outra(c)]]] + pesos.centro_do_cavalo[i];
        soma_saltos<c>(x, i, &SomaDeAtaques::cavalo);
        conta_ataques<c>(x, saltos_de_cavalo[i].casas, saltos_de_cavalo[i].quantas);
        conta_mais_ricos<stm, c, cavalo>(x, saltos_de_cavalo[i].casas);
    });
}

template <Cor stm, Cor c>
void bispos(Exame& x) {
    const Mascara homens = x.m.de(c, bispo);
    x.lado[c].posicao_inteira += pesos.bispo_na_diagonal * std::popcount(homens & diagonais_longas);
    por_casa(homens, [&](int i) { anda_nos_raios<stm, c, bispo>(x, i, Diagonais{}); });
}

template <Cor stm, Cor c>
void torres(Exame& x) {
    Contas& eu = x.lado[c];
    const Mascara homens = x.m.de(c, torre);
    if (pesos.menos_de_11) {
        eu.posicao_inteira += torre_adiantada * std::popcount(homens & (fila_em_mascara(c, 6) | fila_em_mascara(c, 7)));
    }
    por_casa(homens, [&](int i) {
        if (pesos.menos_de_15) {
            eu.posicao += pesos.torre[c][perto[i][x.rei_em[outra(c)]]];
        }
        anda_nos_raios<stm, c, torre>(x, i, Retas{});
    });
}

template <Cor stm, Cor c>
void damas(Exame& x) {
    Contas& eu = x.lado[c];
    por_casa(x.m.de(c, dama), [&](int i) {
        eu.posicao += pesos.dama[c][perto[i][x.rei_em[outra(c)]]] + pesos.centro_da_dama[i];
        anda_nos_raios<stm, c, dama>(x, i, Todas{});
    });
}

template <Cor c>
void reis(Exame& x) {
    Contas& eu = x.lado[c];
    por_casa(x.m.de(c, rei), [&](int i) {
        if (pesos.inimigo_sem_homens[c]) {
            eu.posicao += pesos.rei[c][perto[i][x.rei_em[outra(c)]]];
        }
        if (pesos.final_para[c]) {
            eu.posicao += pesos.centro_do_rei[i];
            soma_saltos<c>(x, i, &SomaDeAtaques::rei);
            conta_ataques<c>(x, saltos_de_rei[i].casas, saltos_de_rei[i].quantas);
        }
    });
}

// --- Pawns, all at once, by the items of their terms ---

constexpr Mascara filas_ate(Cor c, int r) {
    Mascara m = 0;
    for (int k = 0; k <= r; ++k) {
        m |= fila_em_mascara(c, k);
    }
    return m;
}

// A set n ranks further, or back, as the colour sees it; what leaves the board is gone.
template <Cor c>
constexpr Mascara avanca(Mascara m, int n = 1) {
    m &= filas_ate(c, 7 - n);
    return c == brancas ? m << static_cast<unsigned>(n) : m >> static_cast<unsigned>(n);
}
template <Cor c>
constexpr Mascara recua(Mascara m, int n = 1) {
    return avanca<outra(c)>(m, n);
}

// How many squares of the set lie beside the squares of another, each counted from either side.
constexpr int aos_lados(Mascara casas, Mascara de) {
    return std::popcount((de << 8U) & casas) + std::popcount((de >> 8U) & casas);
}

// The worth of what pawns attack, seen from the squares before them: value by kind, halved or whole.
template <Cor c>
int valor_dos_alvos(const Exame& x, Mascara a_frente, int divisor, bool peoes_tambem) {
    int total = 0;
    for (const Peca v : {peao, cavalo, bispo, torre, dama, rei}) {
        if (v != peao || peoes_tambem) {
            total += v / divisor * aos_lados(x.m.de(outra(c), v), a_frente);
        }
    }
    return total;
}

template <Cor stm, Cor c>
void peoes_atacam(Exame& x, Mascara meus) {
    Contas& eu = x.lado[c];
    const Mascara a_frente = avanca<c>(meus);
    const int alvos = aos_lados(x.m.cor[outra(c)], a_frente);
    eu.alvos += alvos;
    eu.apoios += aos_lados(x.m.cor[c], a_frente);
    const Mascara um_passo = a_frente & ~x.ocupadas.diretas;
    const Mascara dois_passos = avanca<c>(um_passo & fila_em_mascara(c, 2)) & ~x.ocupadas.diretas;
    eu.mobilidade += alvos + std::popcount(um_passo) + std::popcount(dois_passos);
    if (alvos == 0) {
        return;
    }
    if constexpr (c == stm) {
        eu.posicao += valor_dos_alvos<c>(x, a_frente, 1, true) * static_cast<double>(agres) - 10.0 * alvos;
    } else {
        const Mascara defendidos = meus & (a_frente << 8U | a_frente >> 8U);
        eu.posicao_inteira += valor_dos_alvos<c>(x, avanca<c>(defendidos), 2, false);
    }
}

template <Cor c>
void peoes_marcam(Exame& x, Mascara meus) {
    Contas& eu = x.lado[c];
    const auto& perto_do_inimigo = x.ataques[outra(c)]->peao[c];
    const auto& perto_do_proprio = x.ataques[c]->peao[c];
    por_casa(meus, [&](int i) {
        eu.rei_inimigo += perto_do_inimigo[i];
        eu.rei_proprio += perto_do_proprio[i];
        eu.centro += x.centro.peao[c][i];
    });
}

template <Cor c>
void peoes_no_final(Exame& x, Mascara meus) {
    por_casa(meus, [&](int i) {
        x.lado[c].posicao += peao_do_final(c, i, x.rei_em[c]);
        x.lado[outra(c)].posicao += vinte_e_cinco_avos[perto[i][x.rei_em[outra(c)]]];
    });
}

// Breakthroughs: no pawn on the square of the capture, and no enemy pawn to stop it on the own file or on the file
// beyond.
template <Cor c>
int rompimentos(Mascara meus, Mascara deles) {
    Mascara parados = recua<c>(deles & filas_ate(c, 6), 2);
    parados |= recua<c>(parados, 1);
    parados |= recua<c>(parados, 2);
    parados |= recua<c>(parados, 4);
    const Mascara cheias = recua<c>(meus | deles);
    const Mascara quem = meus & filas_ate(c, 4) & ~parados;
    return std::popcount(quem & ~coluna_em_mascara(7) & ~(parados >> 16U) & ~(cheias >> 8U)) +
           std::popcount(quem & ~coluna_em_mascara(0) & ~(parados << 16U) & ~(cheias << 8U));
}

// Passed pawns, and the own pawns beside the way of each pawn up to its first stop: all pawns go forward together.
template <Cor c>
int passados(Mascara meus, Mascara deles) {
    const Mascara livres = ~(meus | deles | deles << 8U | deles >> 8U) & filas_ate(c, 6);
    int ao_lado = 0;
    Mascara chegam = 0;
    for (Mascara andam = avanca<c>(meus) & livres; andam != 0; andam = avanca<c>(andam) & livres) {
        ao_lado += aos_lados(meus, andam);
        chegam |= andam & fila_em_mascara(c, 6);
    }
    return peao_ao_lado * ao_lado + peao_livre * std::popcount(chegam);
}

template <Cor stm, Cor c>
void peoes(Exame& x) {
    const Mascara meus = x.m.de(c, peao);
    const Mascara deles = x.m.de(outra(c), peao);
    if (pesos.final_para[c]) {
        peoes_no_final<c>(x, meus);
    } else {
        peoes_marcam<c>(x, meus);
    }
    peoes_atacam<stm, c>(x, meus);
    x.lado[c].posicao_inteira += peao_na_setima * std::popcount(meus & fila_em_mascara(c, 6)) +
                                 peao_vizinho * aos_lados(meus, meus) +
                                 peao_protege * aos_lados(meus, avanca<c>(meus)) +
                                 peao_rompe * rompimentos<c>(meus, deles) + passados<c>(meus, deles);
}

// --- The counters that need no attacks ---

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

int soma_das_filas(Cor c, Mascara homens) {
    constexpr Mascara um = 0xAAAAAAAAAAAAAAAAU;
    constexpr Mascara dois = 0xCCCCCCCCCCCCCCCCU;
    constexpr Mascara quatro = 0xF0F0F0F0F0F0F0F0U;
    const int filas =
        std::popcount(homens & um) + 2 * std::popcount(homens & dois) + 4 * std::popcount(homens & quatro);
    return c == brancas ? filas + std::popcount(homens) : 8 * std::popcount(homens) - filas;
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

template <Cor c>
void fecha_contas(const Exame& x) {
    const Contas& contas = x.lado[c];
    const Mascara peoes = x.m.de(c, peao);
    const int menores = std::popcount(x.m.de(c, cavalo) | x.m.de(c, bispo));
    const int torres = std::popcount(x.m.de(c, torre));
    const int damas = std::popcount(x.m.de(c, dama));
    Contagem& eu = contagem[c];
    eu = {};
    eu.posicao = static_cast<float>(contas.posicao_inteira + contas.posicao);
    eu.centro = static_cast<float>(contas.centro / unidades_do_centro);
    eu.atack_ksf = static_cast<float>(contas.rei_inimigo / unidades_do_rei);
    eu.defesa_ksf = static_cast<float>(contas.rei_proprio / unidades_do_rei);
    eu.mobilidade = contas.mobilidade;
    eu.alvos = contas.alvos;
    eu.apoios = contas.apoios;
    eu.pecas = menores + torres + damas;
    eu.pontos = 3 * menores + 5 * torres + 9 * damas;
    eu.peoes = std::popcount(peoes);
    eu.avanco = soma_das_filas(c, x.m.cor[c]);
    eu.abrigo = pesos.final_para[c] ? 0 : std::popcount(peoes & abrigos[c][x.rei_em[c]]);
    mede_caixa(eu, peoes | x.m.de(c, rei));
}

template <Cor stm, Cor c>
void conta_cor(Exame& x) {
    peoes<stm, c>(x);
    desenvolvidos<c>(x);
    cavalos<stm, c>(x);
    bispos<stm, c>(x);
    torres<stm, c>(x);
    damas<stm, c>(x);
    reis<c>(x);
}

}  // namespace

template <Cor stm>
void conta_em_conjuntos(const Mascaras& m) {
    const int rei_branco = casa(p_x_R[brancas], p_y_R[brancas]);
    const int rei_preto = casa(p_x_R[pretas], p_y_R[pretas]);
    Exame x{m,
            ocupadas_vistas(m.ocupadas()),
            {rei_branco, rei_preto},
            {&ataques_perto_de(rei_branco), &ataques_perto_de(rei_preto)},
            ataques_ao_centro(),
            {{{0, 0, 0, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 0, 0, 0}}}};
    conta_cor<stm, brancas>(x);
    conta_cor<stm, pretas>(x);
    fecha_contas<brancas>(x);
    fecha_contas<pretas>(x);
}

template void conta_em_conjuntos<brancas>(const Mascaras& m);
template void conta_em_conjuntos<pretas>(const Mascaras& m);

}  // namespace ondrel
