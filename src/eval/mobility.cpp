#include "eval/mobility.h"

#include "base/ply_stack.h"
#include "board/apply.h"
#include "board/attacks.h"

namespace ondrel {
namespace {

template <Cor c>
void verifica_liberdade_de(const Tabuleiro& de, Lance m) {
    tab2t = de;
    transfere(tab2t, m);
    promove<c>(tab2t, m);
    YY = 0;
    for (int i = 0; i < 64; ++i) {
        if (tab2t[i] == codigo(c, rei) && casa_atacada<c>(tab2t, i / 8, i % 8)) {
            YY = 1;
        }
    }
}

}  // namespace

void verifica_liberdade(Cor c, const Tabuleiro& de, Lance m) {
    if (c == brancas) {
        verifica_liberdade_de<brancas>(de, m);
    } else {
        verifica_liberdade_de<pretas>(de, m);
    }
}

void King_safety(Cor c, Contagem& lado, int f, int r) {
    const Cor inimiga = outra(c);
    lado.centro += centroo[casa(f, r)];
    soma(lado.atack_ksf, 1.0 / proximidade(f, r, p_x_R[inimiga], p_y_R[inimiga]));
    soma(lado.defesa_ksf, 1.0 / proximidade(f, r, p_x_R[c], p_y_R[c]));
}

}  // namespace ondrel
