// Tests for check. A square that is not on the board is never attacked and attacks nothing.
#pragma once

#include "base/ply_stack.h"

namespace ondrel {

template <Cor c>
inline bool peao_ataca(const Tabuleiro& t, int f, int r) {
    const int frente = r + sinal(c);
    const int inimigo = codigo(outra(c), peao);
    return (no_tabuleiro(f + 1, frente) && t[casa(f + 1, frente)] == inimigo) ||
           (no_tabuleiro(f - 1, frente) && t[casa(f - 1, frente)] == inimigo);
}

template <std::size_t quantos>
inline bool salto_ataca(const Tabuleiro& t, int f, int r, int inimigo, const std::array<Passo, quantos>& saltos) {
    for (const Passo s : saltos) {
        if (no_tabuleiro(f + s.file, r + s.rank) && t[casa(f + s.file, r + s.rank)] == inimigo) {
            return true;
        }
    }
    return false;
}

// A queen or a piece of the kind `quem` attacks along one of its rays: the first man met counts, whoever it is.
inline bool raio_ataca(const Tabuleiro& t, int f, int r, int inimigo, int dama_inimiga,
                       const std::array<Passo, 4>& raios) {
    for (const Passo s : raios) {
        int cf = f + s.file;
        int cr = r + s.rank;
        while (no_tabuleiro(cf, cr) && t[casa(cf, cr)] == vazia) {
            cf += s.file;
            cr += s.rank;
        }
        if (no_tabuleiro(cf, cr) && (t[casa(cf, cr)] == inimigo || t[casa(cf, cr)] == dama_inimiga)) {
            return true;
        }
    }
    return false;
}

// Whether a man of the other colour attacks (f, r), seen from a king of c there.
template <Cor c>
inline bool casa_atacada(const Tabuleiro& t, int f, int r) {
    constexpr Cor inimiga = outra(c);
    constexpr int dama_inimiga = codigo(inimiga, dama);
    return peao_ataca<c>(t, f, r) || salto_ataca(t, f, r, codigo(inimiga, rei), passos_do_rei) ||
           salto_ataca(t, f, r, codigo(inimiga, cavalo), saltos_do_cavalo) ||
           raio_ataca(t, f, r, codigo(inimiga, bispo), dama_inimiga, passos_do_bispo) ||
           raio_ataca(t, f, r, codigo(inimiga, torre), dama_inimiga, passos_da_torre);
}

// verifica_rei_<c>: Y tells whether a king of c on tab2 is attacked; p_x_R and p_y_R take the square of the king found
// last. Without a king Y is 0 and the square keeps its value.
template <Cor c>
inline void verifica_rei() {
    Y = 0;
    for (int i = 0; i < 64; ++i) {
        if (tab2[i] == codigo(c, rei)) {
            p_x_R[c] = i / 8;
            p_y_R[c] = i % 8;
            if (casa_atacada<c>(tab2, i / 8, i % 8)) {
                Y = 1;
            }
        }
    }
}

// verifica_xeque_<c>: XEQUE tells whether c, who has just moved, attacks a king of the other colour on tab2.
template <Cor c>
inline void verifica_xeque() {
    XEQUE = 0;
    for (int i = 0; i < 64; ++i) {
        if (tab2[i] == codigo(outra(c), rei) && casa_atacada<outra(c)>(tab2, i / 8, i % 8)) {
            XEQUE = 1;
        }
    }
}

// verifica_xequemate<c>d<N>, and with n = 0 the root form: XM tells whether (file, rank) is attacked on tabd<N>.
template <Cor c>
inline void verifica_xequemate(int n, int file, int rank) {
    XM = casa_atacada<c>(ply[n].tabd, file, rank) ? 1 : 0;
}

}  // namespace ondrel
