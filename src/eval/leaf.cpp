#include "eval/leaf.h"

#include "base/bounds.h"
#include "base/options.h"
#include "base/root.h"
#include "eval/judgement.h"
#include "eval/leaf_sets.h"
#include "eval/leaf_sums.h"
#include "eval/leaf_weights.h"
#include "eval/mobility.h"
#include "eval/walk.h"

#include <cassert>
#include <cmath>

namespace ondrel {
namespace {

void por_proximidade(PorProximidade& t, double numerador) {
    for (int n = 2; n <= maior_proximidade; ++n) {
        t[n] = numerador / n;
    }
}

void por_centro(PorCasa& t, double peso) {
    for (int i = 0; i < 64; ++i) {
        t[i] = peso * static_cast<double>(centro[i]);
    }
}

bool empate_de(const Mascaras& m) {
    if ((m.tipo[tipo_de(peao)] | m.tipo[tipo_de(torre)] | m.tipo[tipo_de(dama)]) != 0) {
        return false;
    }
    const auto nao_ganha = [&](Cor c) {
        const int cavalos = std::popcount(m.de(c, cavalo));
        const int bispos = std::popcount(m.de(c, bispo));
        return (bispos == 0 && cavalos <= 2) || (cavalos == 0 && bispos <= 1);
    };
    return nao_ganha(brancas) && nao_ganha(pretas);
}

}  // namespace

void prepara_julgamento(Cor own) {
    if (pesos.own == own && pesos.npecas == npecas && pesos.materialmaior == materialmaior &&
        pesos.agresprxrei == agresprxrei) {
        return;
    }
    pesos.own = own;
    pesos.npecas = npecas;
    pesos.materialmaior = materialmaior;
    pesos.agresprxrei = agresprxrei;
    pesos.menos_de_15 = homens() < 15;
    pesos.menos_de_11 = homens() < 11;
    pesos.bispo_na_diagonal = pesos.menos_de_15 ? 5 : 11;
    por_centro(pesos.centro_do_cavalo, pesos.menos_de_15 ? 10.0 : 25.0);
    por_centro(pesos.centro_da_dama, pesos.menos_de_15 ? 15.0 : 10.0);
    por_centro(pesos.centro_do_rei, 50.0);
    for (const Cor c : {brancas, pretas}) {
        const double ap = c == own ? static_cast<double>(agresprxrei) : 1.0;
        pesos.final_para[c] = materialmaior[outra(c)] <= 90.0F;
        pesos.inimigo_sem_homens[c] = npecas[outra(c)] == 0;
        por_proximidade(pesos.cavalo[c], (pesos.menos_de_15 ? 15.0 : 5.0) * ap);
        por_proximidade(pesos.torre[c], 10.0 * ap);
        por_proximidade(pesos.dama[c], (pesos.menos_de_15 ? 25.0 : 5.0) * ap);
        por_proximidade(pesos.rei[c], 75.0 * ap);
    }
}

#if ONDREL_CHECKED
namespace {

bool iguais(float x, float y) { return std::bit_cast<std::uint32_t>(x) == std::bit_cast<std::uint32_t>(y); }

// The rule itself, square by square, gives the same to the last bit.
template <Cor own, Cor stm>
void prova_pela_regra(const Tabuleiro& t) {
    const std::array<Contagem, 2> rapidas = contagem;
    contagem = {};
    Caminhada<Passeio::folha, own, stm>(t, contagem).percorre();
    for (const Cor c : {brancas, pretas}) {
        const Contagem& x = rapidas[c];
        const Contagem& y = contagem[c];
        assert(iguais(x.posicao, y.posicao) && iguais(x.centro, y.centro) && iguais(x.atack_ksf, y.atack_ksf) &&
               iguais(x.defesa_ksf, y.defesa_ksf));
        assert(x.mobilidade == y.mobilidade && x.alvos == y.alvos && x.apoios == y.apoios && x.abrigo == y.abrigo);
        assert(x.pecas == y.pecas && x.peoes == y.peoes && x.pontos == y.pontos && x.avanco == y.avanco);
        assert(x.caixa() == y.caixa());
    }
    assert(iguais(extraeval, limita(julgamento<true>(own, extraevalll))) || std::isnan(extraeval));
}

}  // namespace
#endif

template <Cor own, Cor stm>
bool estima_a_folha(const Mascaras& m) {
    EMPAT = empate_de(m) ? 1 : 0;
    conta_em_conjuntos<stm>(m);
    float estimativa = 0;
    if (!julgamento_estimado(own, extraevalll, estimativa)) {
        return false;
    }
    extraeval = limita(estimativa);
    return true;
}

template <Cor own, Cor stm>
void afina_a_folha(const Tabuleiro& t, const Mascaras& m) {
    soma_em_ordem<stm>(t, m);
    extraeval = limita(julgamento_rapido(own, extraevalll));
#if ONDREL_CHECKED
    prova_pela_regra<own, stm>(t);
#endif
}

template <Cor own, Cor stm>
void julga_a_folha(const Tabuleiro& t, const Mascaras& m) {
    EMPAT = empate_de(m) ? 1 : 0;
    conta_em_conjuntos<stm>(m);
    afina_a_folha<own, stm>(t, m);
}

#if ONDREL_CHECKED
template <Cor own, Cor stm>
void prova_a_estimativa(const Tabuleiro& t, const Mascaras& m) {
    const std::array<Contagem, 2> estimadas = contagem;
    const float estimativa = extraeval;
    afina_a_folha<own, stm>(t, m);
    assert(std::abs(extraeval - estimativa) <= folga_da_estimativa);
    contagem = estimadas;
    extraeval = estimativa;
}

template void prova_a_estimativa<brancas, brancas>(const Tabuleiro& t, const Mascaras& m);
template void prova_a_estimativa<brancas, pretas>(const Tabuleiro& t, const Mascaras& m);
template void prova_a_estimativa<pretas, brancas>(const Tabuleiro& t, const Mascaras& m);
template void prova_a_estimativa<pretas, pretas>(const Tabuleiro& t, const Mascaras& m);
#endif

template bool estima_a_folha<brancas, brancas>(const Mascaras& m);
template bool estima_a_folha<brancas, pretas>(const Mascaras& m);
template bool estima_a_folha<pretas, brancas>(const Mascaras& m);
template bool estima_a_folha<pretas, pretas>(const Mascaras& m);
template void afina_a_folha<brancas, brancas>(const Tabuleiro& t, const Mascaras& m);
template void afina_a_folha<brancas, pretas>(const Tabuleiro& t, const Mascaras& m);
template void afina_a_folha<pretas, brancas>(const Tabuleiro& t, const Mascaras& m);
template void afina_a_folha<pretas, pretas>(const Tabuleiro& t, const Mascaras& m);
template void julga_a_folha<brancas, brancas>(const Tabuleiro& t, const Mascaras& m);
template void julga_a_folha<brancas, pretas>(const Tabuleiro& t, const Mascaras& m);
template void julga_a_folha<pretas, brancas>(const Tabuleiro& t, const Mascaras& m);
template void julga_a_folha<pretas, pretas>(const Tabuleiro& t, const Mascaras& m);

}  // namespace ondrel
