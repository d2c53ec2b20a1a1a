#include "eval/strategy.h"

#include "base/options.h"
#include "base/root.h"
#include "eval/extra_eval.h"
#include "eval/root_trial.h"

#include <algorithm>

namespace ondrel {
namespace {

// What the mover's attacks on an enemy man of value v are worth. The rows list attackers on purpose as they do: no
// queen against a bishop, no piece against its like.
template <Cor c>
int ameaca(int v, int i) {
    const Ataques& meus = ataca[c];
    const bool indefesa = ataca[outra(c)].N_A[i] == 0;
    switch (v) {
        case rei: return npecas[outra(c)] != 0 && meus.N_A[i] != 0 ? 11 * agreschrei : 0;
        case dama: return meus.peao[i] + meus.bispo[i] + meus.cavalo[i] + meus.torre[i] != 0 ? 100 : 0;
        case torre:
            if (meus.peao[i] + meus.bispo[i] + meus.cavalo[i] != 0) {
                return 50;
            }
            return meus.dama[i] + meus.rei[i] != 0 && indefesa ? 25 : 0;
        case cavalo:
            if (meus.peao[i] != 0) {
                return 35;
            }
            return meus.bispo[i] + meus.torre[i] + meus.dama[i] + meus.rei[i] != 0 && indefesa ? 17 : 0;
        case bispo:
            if (meus.peao[i] != 0) {
                return 30;
            }
            return meus.cavalo[i] + meus.torre[i] + meus.rei[i] != 0 && indefesa ? 15 : 0;
        default:
            return meus.peao[i] + ataca[outra(c)].peao[i] == 0 && indefesa &&
                           meus.bispo[i] + meus.cavalo[i] + meus.torre[i] + meus.dama[i] + meus.rei[i] != 0
                       ? 10
                       : 0;
    }
}

// What the enemy's attacks on an own man of value v cost.
template <Cor c>
int perigo(int v, int i) {
    const Ataques& meus = ataca[c];
    const Ataques& deles = ataca[outra(c)];
    const bool em_minoria = deles.N_A[i] > meus.N_A[i];
    const bool sem_peao = meus.peao[i] == 0;
    switch (v) {
        case dama:
            return deles.peao[i] + deles.bispo[i] + deles.cavalo[i] + deles.torre[i] != 0 ||
                           (em_minoria && sem_peao && meus.bispo[i] + meus.cavalo[i] + meus.torre[i] <= 1)
                       ? 100
                       : 0;
        case torre:
            return deles.peao[i] + deles.bispo[i] + deles.cavalo[i] != 0 ||
                           (em_minoria && sem_peao && meus.bispo[i] + meus.cavalo[i] <= 1)
                       ? 50
                       : 0;
        case cavalo:
        case bispo: return deles.peao[i] != 0 || (em_minoria && sem_peao) ? 30 : 0;
        case peao: return em_minoria ? 10 : 0;
        default: return 0;
    }
}

// A pawn late in the game: pushed the more the better the mover stands. Wraps at 32 bits, as castling, which keeps
// what the visit before it left, is scaled again and again.
template <Cor c>
void incentiva(int contas) {
    const float minha = material_a[c];
    const float dela = material_a[outra(c)];
    const int igual_ou_nao = minha > dela ? 1 : (minha == dela ? 0 : -1);
    if (contas < 0) {
        MATRIZ /= 4 - igual_ou_nao;
    } else {
        MATRIZ = static_cast<int>(static_cast<std::uint32_t>(MATRIZ) * static_cast<std::uint32_t>(4 + igual_ou_nao));
    }
}

}  // namespace

template <Cor c>
void verifica_estrategia() {
    valor_base<c>();
    classifica<c>();
}

template <Cor c>
void classifica() {
    int contas = 0;
    for (int i = 0; i < 64; ++i) {
        const int x = tab2[i];
        if (da_cor(outra(c), x)) {
            contas += ameaca<c>(valor_da_peca(x), i);
        } else if (da_cor(c, x)) {
            contas -= perigo<c>(valor_da_peca(x), i);
        }
    }
    if (incentiva_promo) {
        incentiva<c>(contas);
    }
    ATAQUE = static_cast<int>(static_cast<std::uint32_t>(contas) + static_cast<std::uint32_t>(MATRIZ * matrix));
    ESTRATEGIA = std::clamp(ATAQUE, -100, 100);
}

template void verifica_estrategia<brancas>();
template void verifica_estrategia<pretas>();
template void classifica<brancas>();
template void classifica<pretas>();

}  // namespace ondrel
