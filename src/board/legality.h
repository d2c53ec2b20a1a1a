// Moves and their legality in sets of squares. Everything here leaves Y and the king squares as the trial of the move
// on tab2 and the test of the mover's king would; a checked build makes that trial and compares.
#pragma once

#include "board/apply.h"
#include "board/attacks.h"

#include <cassert>

namespace ondrel {

// Whether the pawn move m of c captures en passant, by the flags of the ply.
template <Cor c>
inline bool e_en_passant(const Ply& no, Lance m) {
    return m.d == fila(c, 5) && no.jm_D.p_ah[outra(c)][m.c] && no.tabd[m.origem()] == codigo(c, peao);
}

// The position after the move m of c on a ply.
template <Cor c>
inline Mascaras depois(const Ply& no, Lance m) {
    Mascaras x = no.mascaras;
    const int de = m.origem();
    const int para = m.destino();
    const int v = valor_da_peca(no.tabd[de]);
    if (v == peao && e_en_passant<c>(no, m)) {
        x.troca(c, peao, bit(de));
        const int vitima = casa(m.c, fila(c, 4));
        if (vitima != de) {
            x.tira(no.tabd[vitima], vitima);
        }
        x.tira(no.tabd[para], para);
        x.troca(c, peao, bit(para));
        return x;
    }
    // Castling rights without a king on his square move whatever stands there, nothing or an enemy included.
    const Cor dono = no.tabd[de] == codigo(c, static_cast<Peca>(v)) ? c : outra(c);
    x.tira(no.tabd[para], para);
    x.tira(no.tabd[de], de);
    if (v == vazia) {
        return x;
    }
    const bool promocao_a_dama = dono == c && v == peao && m.d == fila(c, 7);
    x.troca(dono, promocao_a_dama ? dama : v, bit(para));
    if (dono == c && v == rei && de == casa(4, fila(c, 0)) && (m.c == 2 || m.c == 6)) {
        x.troca(c, torre, bit(casa(m.c == 2 ? 0 : 7, fila(c, 0))) | bit(casa(m.c == 2 ? 3 : 5, fila(c, 0))));
    }
    return x;
}

// Leaves on tab2 the trial of the move m of c that enters ply n.
template <Cor c>
inline void faz_ensaio(int n, Lance m) {
    if (ensaio_alheio[n] != nullptr) {
        tab2 = *ensaio_alheio[n];
    } else {
        init_tabuleiro2_deep<c>(n - 1, m);
    }
}

// The position on tab2 after faz_ensaio.
template <Cor c>
inline Mascaras mascaras_do_ensaio(int n, Lance m) {
    return ensaio_alheio[n] != nullptr ? mascaras_de(*ensaio_alheio[n]) : depois<c>(ply[n - 1], m);
}

// Keeps tab2 as the trial of the castling that is about to enter ply n, until it goes out of scope, if no king of c
// stands on his square.
template <Cor c>
class EnsaioDoRoque {
public:
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): ensaio_ is filled only where it is lent
    explicit EnsaioDoRoque(int n) : n_(n) {
        if (ply[n - 1].tabd[casa(4, fila(c, 0))] != codigo(c, rei)) {
            ensaio_ = tab2;
            ensaio_alheio[n] = &ensaio_;
        }
    }
    ~EnsaioDoRoque() { ensaio_alheio[n_] = nullptr; }
    EnsaioDoRoque(const EnsaioDoRoque&) = delete;
    EnsaioDoRoque& operator=(const EnsaioDoRoque&) = delete;

private:
    int n_;
    Tabuleiro ensaio_;
};

// verifica_rei_<c>, asked in sets.
template <Cor c>
inline bool rei_atacado(const Mascaras& m) {
    Y = 0;
    const Mascara ocupadas = m.ocupadas();
    por_casa(m.de(c, rei), [&](int i) {
        p_x_R[c] = i / 8;
        p_y_R[c] = i % 8;
        if (atacada(m, c, i, ocupadas)) {
            Y = 1;
        }
    });
    return Y;
}

// Finds the men that give check to the king of c on ply n and those that are pinned before it.
template <Cor c>
inline void prepara_legalidade(int n) {
    Ply& no = ply[n];
    const Mascaras& m = no.mascaras;
    const Mascara reis = m.de(c, rei);
    no.cravadas = 0;
    no.em_xeque = false;
    no.destinos = ~Mascara{0};
    if (std::popcount(reis) != 1) {
        no.rei_em = sem_rei;
        return;
    }
    const int i = primeira_casa(reis);
    const Mascara inimigas = m.cor[outra(c)];
    const Mascara ocupadas = m.ocupadas();
    no.rei_em = i;
    const auto xeque_de = [&](Mascara casas) {
        no.destinos &= casas;
        no.em_xeque = true;
    };
    por_casa(inimigas & ((saltos_de_peao[c][i].casas & m.tipo[tipo_de(peao)]) |
                         (saltos_de_cavalo[i].casas & m.tipo[tipo_de(cavalo)]) |
                         (saltos_de_rei[i].casas & m.tipo[tipo_de(rei)])),
             [&](int de) { xeque_de(bit(de)); });
    por_casa(inimigas & (((m.tipo[tipo_de(torre)] | m.tipo[tipo_de(dama)]) & cruz[i]) |
                         ((m.tipo[tipo_de(bispo)] | m.tipo[tipo_de(dama)]) & xis[i])),
             [&](int de) {
                 const Mascara caminho = entre(i, de);
                 const Mascara no_caminho = caminho & ocupadas;
                 if (no_caminho == 0) {
                     xeque_de(caminho | bit(de));
                 } else if ((no_caminho & (no_caminho - 1)) == 0) {
                     no.cravadas |= no_caminho & m.cor[c];
                 }
             });
}

// Whether the move of a man of c on ply n leaves its king safe. The plain cases are told from the sets of the node.
template <Cor c>
inline bool deixa_o_rei_seguro(const Ply& no, Lance m) {
    const int de = m.origem();
    const int para = m.destino();
    if (de == no.rei_em) {
        p_x_R[c] = m.c;
        p_y_R[c] = m.d;
        return !atacada(no.mascaras, c, para, no.mascaras.ocupadas() & ~bit(de));
    }
    if (no.rei_em == sem_rei || e_en_passant<c>(no, m)) {
        return !rei_atacado<c>(depois<c>(no, m));
    }
    p_x_R[c] = no.rei_em / 8;
    p_y_R[c] = no.rei_em % 8;
    return (no.destinos & bit(para)) != 0 &&
           ((no.cravadas & bit(de)) == 0 || direcao[no.rei_em][de] == direcao[no.rei_em][para]);
}

// The legality test of a candidate m of c on ply n.
template <Cor c>
inline bool legal(int n, Lance m) {
    const Ply& no = ply[n];
    Y = deixa_o_rei_seguro<c>(no, m) ? 0 : 1;
#if ONDREL_CHECKED
    const auto veredicto = std::array<int, 3>{Y, p_x_R[c], p_y_R[c]};
    init_tabuleiro2_deep<c>(n, m);
    verifica_rei<c>();
    assert((veredicto == std::array<int, 3>{Y, p_x_R[c], p_y_R[c]}));
    assert(mascaras_de(tab2) == depois<c>(no, m));
#endif
    return !Y;
}

}  // namespace ondrel
