// Shared types: colours, piece codes, boards, squares and moves.
#pragma once

#include <array>
#include <cstdint>

namespace ondrel {

// The two colours. Families of routines and tables exist once per colour and take it as template argument or index.
enum Cor : int { brancas = 0, pretas = 1 };

constexpr Cor outra(Cor c) { return c == brancas ? pretas : brancas; }
constexpr int sinal(Cor c) { return c == brancas ? 1 : -1; }

// Piece codes: identity and value in the score unit (one pawn = 10) at once. Black pieces are the negatives.
enum Peca : int { vazia = 0, peao = 10, cavalo = 32, bispo = 33, torre = 50, dama = 90, rei = 110 };

// Order in which a node walks its own pieces.
constexpr std::array<Peca, 6> ordem_das_pecas{peao, cavalo, bispo, torre, dama, rei};
// Order in which a node walks its victims: the knight before the bishop though its code is the lower.
constexpr std::array<Peca, 5> ordem_das_vitimas{dama, torre, cavalo, bispo, peao};

constexpr int codigo(Cor c, Peca x) { return sinal(c) * x; }
constexpr bool da_cor(Cor c, int x) { return c == brancas ? x > 0 : x < 0; }
constexpr int valor_da_peca(int x) { return x < 0 ? -x : x; }

// A board: 64 signed piece codes, index file * 8 + rank (a1 = 0, a2 = 1, b1 = 8, h8 = 63), 0 for empty.
using Tabuleiro = std::array<std::int8_t, 64>;

constexpr int casa(int file, int rank) { return file * 8 + rank; }
constexpr bool no_tabuleiro(int file, int rank) { return file >= 0 && file < 8 && rank >= 0 && rank < 8; }

// A rank counted from the colour's own side: 0 is its first rank, 6 its seventh.
constexpr int fila(Cor c, int rank) { return c == brancas ? rank : 7 - rank; }

// A move: from file, from rank, to file, to rank, each 0..7; a = -1 marks an empty slot.
struct Lance {
    int a, b, c, d;

    constexpr bool operator==(const Lance&) const = default;
    [[nodiscard]] constexpr int origem() const { return casa(a, b); }
    [[nodiscard]] constexpr int destino() const { return casa(c, d); }
};

constexpr Lance nenhum_lance{-1, -1, -1, -1};

constexpr Lance roque_curto(Cor c) { return {4, fila(c, 0), 6, fila(c, 0)}; }
constexpr Lance roque_longo(Cor c) { return {4, fila(c, 0), 2, fila(c, 0)}; }

// A step on the board: files and ranks to add.
struct Passo {
    int file, rank;
};

// The orders of direction are the order of search and of summation: nothing may reorder them.
constexpr std::array<Passo, 4> passos_da_torre{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}};
constexpr std::array<Passo, 4> passos_do_bispo{{{1, 1}, {1, -1}, {-1, -1}, {-1, 1}}};
constexpr std::array<Passo, 8> passos_da_dama{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {1, -1}, {-1, -1}, {-1, 1}}};
constexpr std::array<Passo, 8> passos_do_rei{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {-1, -1}, {1, 1}, {-1, 1}, {1, -1}}};
constexpr std::array<Passo, 8> saltos_do_cavalo{
    {{2, 1}, {2, -1}, {-2, -1}, {-2, 1}, {-1, 2}, {1, 2}, {1, -2}, {-1, -2}}};

// The 22 flag bytes that travel with a board; each 0 or 1, the first index a Cor.
struct Bandeiras {
    std::array<std::uint8_t, 2> R_jm{};    // R_b_jm, R_p_jm: the king has moved
    std::array<std::uint8_t, 2> T_a_jm{};  // T_b_a_jm, T_p_a_jm: a rook has left file a
    std::array<std::uint8_t, 2> T_h_jm{};  // T_b_h_jm, T_p_h_jm: a rook has left file h
    // pba .. pbh, ppa .. pph: the last half-move was a double step of this colour's pawn on that file
    std::array<std::array<std::uint8_t, 8>, 2> p_ah{};
};
static_assert(sizeof(Bandeiras) == 22);

constexpr Tabuleiro tabuleiro_inicial = [] {
    Tabuleiro t{};
    constexpr std::array<Peca, 8> primeira_fila{torre, cavalo, bispo, dama, rei, bispo, cavalo, torre};
    for (int f = 0; f < 8; ++f) {
        t[casa(f, 0)] = static_cast<std::int8_t>(primeira_fila[f]);
        t[casa(f, 1)] = peao;
        t[casa(f, 6)] = -peao;
        t[casa(f, 7)] = static_cast<std::int8_t>(-primeira_fila[f]);
    }
    return t;
}();

}  // namespace ondrel
