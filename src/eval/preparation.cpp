#include "eval/preparation.h"

#include "base/bounds.h"
#include "base/numeric.h"
#include "board/apply.h"
#include "eval/walk.h"

namespace ondrel {
namespace {

void acha_rei(Cor c) {
    for (int i = 0; i < 64; ++i) {
        if (tab[i] == codigo(c, rei)) {
            p_x_R[c] = i / 8;
            p_y_R[c] = i % 8;
        }
    }
}

// A bare king is hunted, and its table weighs more. Below the weight of a king the table stands as it was.
void preenche_Xr(Cor c) {
    constexpr float rei_so = 110.0F;
    if (material_a[c] < rei_so) {
        return;
    }
    const int numerador = material_a[c] == rei_so ? 375 : 15;
    for (int i = 0; i < 64; ++i) {
        Xr[c][i] = numerador / proximidade(i / 8, i % 8, p_x_R[c], p_y_R[c]);
    }
}

// Nearness to the foremost pawn; of several on one rank, that of the highest file.
void preenche_XP(Cor c) {
    XP[c] = {};
    int peao_mais_avancado = -1;
    for (int i = 0; i < 8; ++i) {
        for (int f = 0; f < 8; ++f) {
            if (tab[casa(f, fila(c, i))] == codigo(c, peao)) {
                peao_mais_avancado = casa(f, fila(c, i));
            }
        }
    }
    if (peao_mais_avancado < 0) {
        return;
    }
    for (int i = 0; i < 64; ++i) {
        XP[c][i] = 75 / proximidade(i / 8, i % 8, peao_mais_avancado / 8, peao_mais_avancado % 8);
    }
}

void conta_material() {
    std::array<int, 2> peoes{};
    material_a = {};
    npecas = {};
    npecas_dp = {};
    for (const int x : tab) {
        if (x == vazia) {
            continue;
        }
        const Cor c = x > 0 ? brancas : pretas;
        const int v = valor_da_peca(x);
        material_a[c] += static_cast<float>(v);
        npecas[c] += v != rei ? 1 : 0;
        npecas_dp[c] += v != rei && v != peao ? 1 : 0;
        peoes[c] += v == peao ? 1 : 0;
    }
    for (const Cor c : {brancas, pretas}) {
        materialmaior[c] = material_a[c] - 10.0F * static_cast<float>(peoes[c]) - 110.0F;
    }
    const Cor minha = joga_com_b ? brancas : pretas;
    materialflot0 = material_a[minha] - material_a[outra(minha)];
}

long double avanco_por_homem(const Contagem& x) {
    return (static_cast<long double>(x.avanco) + 0.1) / (x.pecas + x.peoes + 1);
}
long double peoes_por_casa(const Contagem& x) { return static_cast<long double>(x.peoes + 1) / x.caixa(); }

// The balance of the root position. Total material and advancement count against the engine here.
void equilibra(Cor own) {
    contagem = {};
    Caminhada<Passeio::balanco, brancas, brancas>(tab, contagem).percorre();
    const Contagem& eu = contagem[own];
    const Contagem& outro = contagem[outra(own)];
    long double s = 0.1 * ln_da_razao(static_cast<long double>(material_a[outra(own)]) + 0.1,
                                      static_cast<long double>(material_a[own]) + 0.1);
    s += 2 * ln_da_razao(static_cast<long double>(eu.pontos) + 10.1, static_cast<long double>(outro.pontos) + 10.1);
    s += 5 * ln_da_razao(static_cast<long double>(eu.defesa_ksf) + 3 + eu.abrigo,
                         static_cast<long double>(outro.atack_ksf) + 3);
    s += 5 * ln_da_razao(static_cast<long double>(eu.atack_ksf) + 3,
                         static_cast<long double>(outro.defesa_ksf) + 3 + outro.abrigo);
    s += MOB * ln_da_razao(eu.mobilidade + 3, outro.mobilidade + 3);
    s += avanco_por_homem(outro);
    s -= avanco_por_homem(eu);
    s += peoes_por_casa(eu);
    s -= peoes_por_casa(outro);
    regimen = static_cast<float>(s);
}

// What a later preparation may find as this one left it.
void prepara_o_que_fica() {
    for (const Cor c : {pretas, brancas}) {
        acha_rei(c);
        preenche_Xr(c);
    }
    extraeval = 0;
    conta_material();
    X = 1;
}

// What the next preparation makes anew.
void prepara_o_que_passa() {
    preenche_XP(pretas);
    preenche_XP(brancas);
    equilibra(joga_com_b ? brancas : pretas);
}

}  // namespace

void init_tabuleiro(bool mais_lances) {
    aplica_na_raiz();
    prepara_o_que_fica();
    if (!mais_lances) {
        prepara_o_que_passa();
    }
    pp = 0;
    if (!deeppromo) {
        PRe = '0';
    }
}

void prepara_posicao_do_fen() {
    conta_material();
    prepara_o_que_fica();
    prepara_o_que_passa();
}

}  // namespace ondrel
