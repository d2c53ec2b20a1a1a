// A board as 64-bit words, bit = board index, beside its 64 bytes: the same position, asked in sets of squares. Bits
// ascend in the scan order of the board.
#pragma once

#include "base/types.h"

#include <bit>

namespace ondrel {

using Mascara = std::uint64_t;

// Index of a kind of man in Mascaras::tipo.
constexpr int tipo_de(int v) {
    switch (v) {
        case peao: return 0;
        case cavalo: return 1;
        case bispo: return 2;
        case torre: return 3;
        case dama: return 4;
        default: return 5;
    }
}

constexpr Mascara bit(int i) { return Mascara{1} << static_cast<unsigned>(i); }

struct Mascaras {
    std::array<Mascara, 2> cor{};   // the men of a Cor
    std::array<Mascara, 6> tipo{};  // the men of a kind, of both colours

    [[nodiscard]] constexpr Mascara ocupadas() const { return cor[brancas] | cor[pretas]; }
    [[nodiscard]] constexpr Mascara de(Cor c, Peca x) const { return cor[c] & tipo[tipo_de(x)]; }

    constexpr bool operator==(const Mascaras&) const = default;

    // Puts a man of c on a square, or takes him from it.
    constexpr void troca(Cor c, int v, Mascara casas) {
        cor[c] ^= casas;
        tipo[tipo_de(v)] ^= casas;
    }

    // Empties a square that holds x, 0 for none.
    constexpr void tira(int x, int i) {
        if (x != vazia) {
            troca(x > 0 ? brancas : pretas, valor_da_peca(x), bit(i));
        }
    }
};

constexpr Mascaras mascaras_de(const Tabuleiro& t) {
    Mascaras m;
    for (int i = 0; i < 64; ++i) {
        m.tira(t[i], i);
    }
    return m;
}

// The first and the last square of a set, which must hold one: the question is not asked again, as <bit> would.
constexpr int primeira_casa(Mascara m) { return __builtin_ctzll(m); }
constexpr int ultima_casa(Mascara m) { return 63 ^ __builtin_clzll(m); }

// Calls `f` with the index of every square of the set, ascending.
template <class F>
constexpr void por_casa(Mascara m, F f) {
    for (; m != 0; m &= m - 1) {
        f(primeira_casa(m));
    }
}

// --- Geometry ---

// Directions in the order of the queen's rays; of these the rook has the first four and the bishop the last four.
constexpr int direcoes = 8;

// Whether the board index rises along a direction.
constexpr bool direcao_sobe(int d) {
    return passos_da_dama[d].file > 0 || (passos_da_dama[d].file == 0 && passos_da_dama[d].rank > 0);
}

// Rays from a square to the edge, by direction and square: their squares as a set, and in order, the nearest first.
using Fileira = std::array<std::uint8_t, 8>;

template <class T, class F>
constexpr std::array<std::array<T, 64>, direcoes> tabela_de_raios(F acrescenta) {
    std::array<std::array<T, 64>, direcoes> t{};
    for (int d = 0; d < direcoes; ++d) {
        for (int i = 0; i < 64; ++i) {
            int quantas = 0;
            const Passo s = passos_da_dama[d];
            for (int f = i / 8 + s.file, r = i % 8 + s.rank; no_tabuleiro(f, r); f += s.file, r += s.rank) {
                acrescenta(t[d][i], casa(f, r), quantas++);
            }
        }
    }
    return t;
}

constexpr auto raios = tabela_de_raios<Mascara>([](Mascara& m, int i, int) { m |= bit(i); });
constexpr auto raios_em_ordem =
    tabela_de_raios<Fileira>([](Fileira& x, int i, int k) { x[k] = static_cast<std::uint8_t>(i); });

// The squares that a man attacks by single steps, as a set and in the order of the steps.
struct Saltos {
    Mascara casas = 0;
    std::array<std::uint8_t, 8> em_ordem{};
    int quantas = 0;
};

template <std::size_t quantos>
constexpr std::array<Saltos, 64> tabela_de_saltos(const std::array<Passo, quantos>& passos) {
    std::array<Saltos, 64> t{};
    for (int i = 0; i < 64; ++i) {
        for (const Passo s : passos) {
            const int f = i / 8 + s.file;
            const int r = i % 8 + s.rank;
            if (no_tabuleiro(f, r)) {
                t[i].casas |= bit(casa(f, r));
                t[i].em_ordem[t[i].quantas++] = static_cast<std::uint8_t>(casa(f, r));
            }
        }
    }
    return t;
}

constexpr std::array<Saltos, 64> saltos_de_cavalo = tabela_de_saltos(saltos_do_cavalo);
constexpr std::array<Saltos, 64> saltos_de_rei = tabela_de_saltos(passos_do_rei);
// The squares that a pawn attacks, the higher file first.
constexpr std::array<std::array<Saltos, 64>, 2> saltos_de_peao{
    tabela_de_saltos(std::array<Passo, 2>{{{1, 1}, {-1, 1}}}),
    tabela_de_saltos(std::array<Passo, 2>{{{1, -1}, {-1, -1}}})};

// The direction from one square to another, -1 if no ray joins them.
constexpr std::array<std::array<std::int8_t, 64>, 64> direcao = [] {
    std::array<std::array<std::int8_t, 64>, 64> t{};
    for (int i = 0; i < 64; ++i) {
        t[i].fill(-1);
        for (int d = 0; d < direcoes; ++d) {
            por_casa(raios[d][i], [&](int k) { t[i][k] = static_cast<std::int8_t>(d); });
        }
    }
    return t;
}();

constexpr std::array<Mascara, 64> cruz = [] {
    std::array<Mascara, 64> t{};
    for (int i = 0; i < 64; ++i) {
        for (int d = 0; d < 4; ++d) {
            t[i] |= raios[d][i];
        }
    }
    return t;
}();
constexpr std::array<Mascara, 64> xis = [] {
    std::array<Mascara, 64> t{};
    for (int i = 0; i < 64; ++i) {
        for (int d = 4; d < 8; ++d) {
            t[i] |= raios[d][i];
        }
    }
    return t;
}();

// The first man on a ray; the ray must hold one.
template <int d>
inline int primeiro_no_raio(Mascara homens_no_raio) {
    return direcao_sobe(d) ? primeira_casa(homens_no_raio) : ultima_casa(homens_no_raio);
}
inline int primeiro_no_raio(int d, Mascara homens_no_raio) {
    return direcao_sobe(d) ? primeira_casa(homens_no_raio) : ultima_casa(homens_no_raio);
}

// How many squares of a ray are empty before its first man.
inline int livres_no_raio(int i, int d, Mascara ocupadas) {
    const Mascara raio = raios[d][i];
    const Mascara no_raio = raio & ocupadas;
    if (no_raio == 0) {
        return std::popcount(raio);
    }
    // Along a ray that rises the squares before the first man lie under its bit, along one that falls above it.
    const Mascara abaixo = (no_raio & (0 - no_raio)) - 1;
    const Mascara acima = ~Mascara{0} << 1U << static_cast<unsigned>(ultima_casa(no_raio));
    return std::popcount(raio & (direcao_sobe(d) ? abaixo : acima));
}

// The squares strictly between two squares on a ray.
inline Mascara entre(int de, int ate) {
    const int d = direcao[de][ate];
    return raios[d][de] & ~raios[d][ate] & ~bit(ate);
}

// --- Attacks ---

// Men of c that attack square i over the men `ocupadas`.
inline Mascara atacantes(const Mascaras& m, Cor c, int i, Mascara ocupadas) {
    Mascara a = (saltos_de_peao[outra(c)][i].casas & m.tipo[tipo_de(peao)]) |
                (saltos_de_cavalo[i].casas & m.tipo[tipo_de(cavalo)]) | (saltos_de_rei[i].casas & m.tipo[tipo_de(rei)]);
    a &= m.cor[c];
    const Mascara retas = m.cor[c] & (m.tipo[tipo_de(torre)] | m.tipo[tipo_de(dama)]) & cruz[i];
    const Mascara diagonais = m.cor[c] & (m.tipo[tipo_de(bispo)] | m.tipo[tipo_de(dama)]) & xis[i];
    por_casa(retas | diagonais, [&](int de) {
        if ((entre(i, de) & ocupadas) == 0) {
            a |= bit(de);
        }
    });
    return a;
}

// Whether a man of the other colour attacks a square of c: casa_atacada, asked in sets.
inline bool atacada(const Mascaras& m, Cor c, int i, Mascara ocupadas) {
    const Cor inimiga = outra(c);
    const Mascara de_perto = (saltos_de_peao[c][i].casas & m.tipo[tipo_de(peao)]) |
                             (saltos_de_cavalo[i].casas & m.tipo[tipo_de(cavalo)]) |
                             (saltos_de_rei[i].casas & m.tipo[tipo_de(rei)]);
    if ((de_perto & m.cor[inimiga]) != 0) {
        return true;
    }
    Mascara de_longe = m.cor[inimiga] & (((m.tipo[tipo_de(torre)] | m.tipo[tipo_de(dama)]) & cruz[i]) |
                                         ((m.tipo[tipo_de(bispo)] | m.tipo[tipo_de(dama)]) & xis[i]));
    for (; de_longe != 0; de_longe &= de_longe - 1) {
        if ((entre(i, primeira_casa(de_longe)) & ocupadas) == 0) {
            return true;
        }
    }
    return false;
}

}  // namespace ondrel
