#include "eval/judgement.h"

#include "base/numeric.h"
#include "base/options.h"
#include "base/root.h"
#include "eval/mobility.h"

#include <algorithm>
#include <cmath>

namespace ondrel {
namespace {

// --- The terms in extended precision ---

// How far the men of a colour have come, per man.
long double avanco_por_homem(const Contagem& x) {
    return (static_cast<long double>(x.avanco) + 0.1) / (x.pecas + x.peoes + 1);
}

// How densely the pawns fill the box of pawns and king.
long double peoes_por_casa(const Contagem& x) { return static_cast<long double>(x.peoes + 1) / x.caixa(); }

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

// Without aggressiveness the pawns' targets can bring a sum below zero: it counts as a little more, so that its logarithm
// is a number.
constexpr double menor_posicao = 0.1;
long double posicao_e_centro(const Contagem& x) {
    return std::max<long double>(static_cast<long double>(x.posicao) + static_cast<long double>(x.centro) + 10.1,
                                 menor_posicao);
}

// --- The same in double ---

constexpr int maior_conta = 512;

// Logarithms of a count and an offset.
std::array<double, maior_conta> tabela_de_ln(double mais) {
    std::array<double, maior_conta> t{};
    for (int n = 0; n < maior_conta; ++n) {
        t[n] = std::log(n + mais);
    }
    return t;
}

const std::array<double, maior_conta> ln_mais_3 = tabela_de_ln(3.0);
const std::array<double, maior_conta> ln_mais_10_1 = tabela_de_ln(10.1);

bool cabe_nas_tabelas(const Contagem& x) {
    return x.mobilidade < maior_conta && x.alvos < maior_conta && x.apoios < maior_conta && x.pontos < maior_conta;
}

// Castling terms are few: each is worked out once for a weight.
double termo_do_roque_rapido(Cor own) {
    return roque[brancas] == 0 && roque[pretas] == 0 ? 0.0 : static_cast<double>(termo_do_roque(own));
}

// Within a few units of 1e-13 of the sum, if the logarithm is in double.
template <class Real>
double soma_aproximada(Cor own, double inicio) {
    const auto ln = [](double x) { return static_cast<double>(std::log(static_cast<Real>(x))); };
    const Contagem& eu = contagem[own];
    const Contagem& outro = contagem[outra(own)];
    const auto avanco = [](const Contagem& x) { return (x.avanco + 0.1) / (x.pecas + x.peoes + 1); };
    const auto peoes = [](const Contagem& x) { return static_cast<double>(x.peoes + 1) / x.caixa(); };
    const auto posicao = [](const Contagem& x) {
        return std::max(static_cast<double>(x.posicao) + static_cast<double>(x.centro) + 10.1, menor_posicao);
    };
    const auto defende = [](const Contagem& x) { return x.abrigo + static_cast<double>(x.defesa_ksf) + 3; };
    const auto ataca_o_rei = [](const Contagem& x) { return static_cast<double>(x.atack_ksf) + 3; };
    const auto peso = static_cast<double>(regimen);
    return inicio + avanco(eu) + peoes(eu) - avanco(outro) - peoes(outro) +
           2 * (ln_mais_10_1[eu.pontos] - ln_mais_10_1[outro.pontos]) + termo_do_roque_rapido(own) +
           0.01 * peso * (ln_mais_3[eu.alvos] - ln_mais_3[eu.apoios]) +
           0.001 * peso * (ln_mais_3[outro.alvos] - ln_mais_3[outro.apoios]) +
           5 * ln(defende(eu) * ataca_o_rei(eu) / (ataca_o_rei(outro) * defende(outro))) +
           static_cast<double>(MOB) * (ln_mais_3[eu.mobilidade] - ln_mais_3[outro.mobilidade]) +
           static_cast<double>(PM) * ln(posicao(eu) / posicao(outro));
}

}  // namespace

long double termo_do_regimen(double peso, Cor c) {
    return peso * static_cast<long double>(regimen) * ln_da_razao(contagem[c].alvos + 3, contagem[c].apoios + 3);
}

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
        s += termo_do_regimen(0.01, own);
        s += termo_do_regimen(0.001, outra(own));
    }
    s += 5 * ln_da_razao(defesa(eu), ataque_ao_rei(outro));
    s += 5 * ln_da_razao(ataque_ao_rei(eu), defesa(outro));
    s += MOB * ln_da_razao(eu.mobilidade + 3, outro.mobilidade + 3);
    s += PM * ln_da_razao(posicao_e_centro(eu), posicao_e_centro(outro));
    return static_cast<float>(s);
}

template float julgamento<true>(Cor own, long double inicio);
template float julgamento<false>(Cor own, long double inicio);

float julgamento_rapido(Cor own, float inicio) {
    // The sum in double is off by far less than this; where no float lies so near, both round alike.
    constexpr double folga = 1e-10;
    if (cabe_nas_tabelas(contagem[brancas]) && cabe_nas_tabelas(contagem[pretas])) {
        const double s = soma_aproximada<double>(own, static_cast<double>(inicio));
        const auto r = static_cast<float>(s - folga);
        if (r == static_cast<float>(s + folga)) {
            return r;
        }
    }
    return julgamento<true>(own, inicio);
}

bool julgamento_estimado(Cor own, float inicio, float& estimativa) {
    const auto firme = [](const Contagem& x) { return cabe_nas_tabelas(x) && x.posicao + x.centro >= 0; };
    if (!firme(contagem[brancas]) || !firme(contagem[pretas])) {
        return false;
    }
    estimativa = static_cast<float>(soma_aproximada<float>(own, static_cast<double>(inicio)));
    return true;
}

float limita(float r) { return r > piecesac ? piecesac : (r < -piecesac ? -piecesac : r); }

}  // namespace ondrel
