#include "eval/extra_eval.h"

#include "eval/judgement.h"
#include "eval/leaf.h"
#include "eval/walk.h"

namespace ondrel {
namespace {

// The rule itself, in the terms in which it is told: what the leaf's fast form is held against.
template <Cor own, Cor stm>
void julga_pela_regra() {
    EMPAT = empate_por_material() ? 1 : 0;
    contagem = {};
    Caminhada<Passeio::folha, own, stm>(tab2, contagem).percorre();
    extraeval = limita(julgamento<true>(own, extraevalll));
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
    prepara_julgamento(c);
    julga_a_folha<c, c>(tab2, mascaras_de(tab2));
    if (deep > ddep) {
        ddep = deep;
    }
}

template <Cor c>
void extra_evall() {
    prepara_julgamento(c);
    julga_a_folha<c, outra(c)>(tab2, mascaras_de(tab2));
}

template <Cor c>
void valor_base() {
    contagem = {};
    Caminhada<Passeio::base, c, outra(c)>(tab2, contagem).percorre();
    const float s = julgamento<false>(c, 0);
    long double base = 0.01 * static_cast<long double>(s);
    base += termo_do_regimen(0.01, c);
    base += termo_do_regimen(0.001, outra(c));
    extraevalll = static_cast<float>(base);
}

template void extra_eval<brancas>();
template void extra_eval<pretas>();
template void extra_evall<brancas>();
template void extra_evall<pretas>();
template void valor_base<brancas>();
template void valor_base<pretas>();

}  // namespace ondrel
