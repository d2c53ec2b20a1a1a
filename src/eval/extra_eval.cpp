#include "eval/extra_eval.h"

#include "base/numeric.h"
#include "eval/walk.h"

namespace ondrel {
namespace {

// How far the men of a colour have come, per man.
long double avanco_por_homem(const Contagem& x) {
    return (static_cast<long double>(x.avanco) + 0.1) / (x.pecas + x.peoes + 1);
}

// How densely the pawns fill the box of pawns and king.
long double peoes_por_casa(const Contagem& x) { return static_cast<long double>(x.peoes + 1) / x.caixa(); }

// Hits against support, weighed by the balance of the root.
long double termo_do_regimen(double peso, const Contagem& x) {
    return peso * static_cast<long double>(regimen) * ln_da_razao(x.alvos + 3, x.apoios + 3);
}

// Castling in the line; no term at all if neither side has castled.
float termo_do_roque(Cor own) {
    if (roque[brancas] == 0 && roque[pretas] == 0) {
        return 0;
    }
    return static_cast<float>(roque_v * ln_da_razao(roque[own] + 3, roque[outra(own)] + 3));
}

long double pontos(const Contagem& x) { return static_cast<long double>(x.pontos) + 10.1; }
long double defesa(const Contagem& x) { return x.abrigo + static_cast<long double>(x.defesa_ksf) + 3; }
long double ataque_ao_rei(const Contagem& x) { return static_cast<long double>(x.atack_ksf) + 3; }
long double posicao_e_centro(const Contagem& x) {
    return static_cast<long double>(x.posicao) + static_cast<long double>(x.centro) + 10.1;
}

// The sum of all terms on top of `inicio`, in the order that fixes its rounding. The base value of a root move goes
// without the terms in regimen.
template <bool com_regimen>
float julgamento(Cor own, long double inicio) {
    const Contagem& eu = contagem[own];
    const Contagem& outro = contagem[outra(own)];
    long double s = inicio;
    s += avanco_por_homem(eu);
    s += peoes_por_casa(eu);
    s -= avanco_por_homem(outro);
    s -= peoes_por_casa(outro);
    s += 2 * ln_da_razao(pontos(eu), pontos(outro));
    s += termo_do_roque(own);
    if constexpr (com_regimen) {
        s += termo_do_regimen(0.01, eu);
        s += termo_do_regimen(0.001, outro);
    }
    s += 5 * ln_da_razao(defesa(eu), ataque_ao_rei(outro));
    s += 5 * ln_da_razao(ataque_ao_rei(eu), defesa(outro));
    s += MOB * ln_da_razao(eu.mobilidade + 3, outro.mobilidade + 3);
    s += PM * ln_da_razao(posicao_e_centro(eu), posicao_e_centro(outro));
    return static_cast<float>(s);
}

template <Cor own, Cor stm>
void julga_a_folha() {
    EMPAT = empate_por_material() ? 1 : 0;
    contagem = {};
    Caminhada<Passeio::folha, own, stm>(tab2, contagem).percorre();
    extraeval = julgamento<true>(own, extraevalll);
    if (extraeval > piecesac) {
        extraeval = piecesac;
    } else if (extraeval < -piecesac) {
        extraeval = -piecesac;
    }
}

}  // namespace

bool empate_por_material() {
    std::array<int, 2> cavalos{};
    std::array<int, 2> bispos{};
    for (const int x : tab2) {
        const Cor c = x > 0 ? brancas : pretas;
        switch (valor_da_peca(x)) {
            case peao:
            case torre:
            case dama: return false;
            case cavalo: ++cavalos[c]; break;
            case bispo: ++bispos[c]; break;
            default: break;
        }
    }
    const auto nao_ganha = [&](Cor c) {
        return (bispos[c] == 0 && cavalos[c] <= 2) || (cavalos[c] == 0 && bispos[c] <= 1);
    };
    return nao_ganha(brancas) && nao_ganha(pretas);
}

template <Cor c>
void extra_eval() {
    julga_a_folha<c, c>();
    if (deep > ddep) {
        ddep = deep;
    }
}

template <Cor c>
void extra_evall() {
    julga_a_folha<c, outra(c)>();
}

template <Cor c>
void valor_base() {
    contagem = {};
    Caminhada<Passeio::base, c, outra(c)>(tab2, contagem).percorre();
    const float s = julgamento<false>(c, 0);
    long double base = 0.01 * static_cast<long double>(s);
    base += termo_do_regimen(0.01, contagem[c]);
    base += termo_do_regimen(0.001, contagem[outra(c)]);
    extraevalll = static_cast<float>(base);
}

template void extra_eval<brancas>();
template void extra_eval<pretas>();
template void extra_evall<brancas>();
template void extra_evall<pretas>();
template void valor_base<brancas>();
template void valor_base<pretas>();

}  // namespace ondrel
