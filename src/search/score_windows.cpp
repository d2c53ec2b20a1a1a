#include "search/score_windows.h"

#include "base/bounds.h"
#include "base/numeric.h"
#include "base/options.h"
#include "base/root.h"

namespace ondrel {
namespace {

enum Modo : int { desligado = 0, manual = 1, automatico = 2, pleno = 3 };

constexpr int ultima_do_filtro = 17;
constexpr int primeira_positiva = 6;
constexpr int primeira_negativa = 5;

// Size of the nearest mate that can still follow from ply n; the root's own limit is that of ply 1.
float escada(int n) { return n == 0 ? mate_da_ply(1) : mate_da_ply(n + 1); }

// Sets the limits of one parity from `de` on.
template <class Valor>
void limites(int de, Valor valor) {
    for (int n = de; n <= ultima_do_filtro; n += 2) {
        MAXcut[n] = valor(n);
    }
}

// A root position in the terms of the windows, each sum in extended precision.
struct Saldo {
    long double m;  // material balance
    long double p;  // size of the man that the opponent's last move took
    long double L;  // weighed logarithm of the material ratio

    // The positive and the negative bound `margem` away.
    [[nodiscard]] float acima(float margem) const { return static_cast<float>(m + margem + p + L); }
    [[nodiscard]] float abaixo(float margem) const { return static_cast<float>(margem - m - L); }
};

bool quase_so(Cor c) {
    const float w = material_a[c];
    return w == 110.0F || ((w == 142.0F || w == 143.0F) && npecas[c] == 1) || (w == 174.0F && npecas[c] == 2);
}

void positiva_manual(const Saldo& s) {
    const auto nivel = static_cast<float>(positfilter + s.m + s.p + s.L);
    limites(0, [&](int n) { return n < primeira_positiva ? escada(n) : nivel; });
}

void negativa_manual(const Saldo& s) {
    const float nivel = s.abaixo(negatfilter);
    limites(1, [&](int n) { return n < primeira_negativa ? escada(n) : nivel; });
}

void positiva_automatica(const Saldo& s, Cor minha) {
    const float nivel = s.m <= -33 ? 1100.0F : s.acima(s.m < 50 ? 100.0F : 90.0F);
    limites(primeira_positiva, [&](int) { return nivel; });
    if (quase_so(outra(minha))) {
        limites(0, escada);
        if (material_a[outra(minha)] == 110.0F && material_a[minha] >= 160.0F) {
            limites(primeira_positiva, [](int) { return 1100.0F; });
        }
    }
    if (quase_so(minha)) {
        limites(2, [&](int) { return s.acima(90.0F); });
    }
}

void positiva_plena(const Saldo& s, Cor minha) {
    if (homens() > 20) {
        MAXcut[0] = s.acima(33.0F);
    }
    const float margem = s.m <= -33 ? 50.0F : (s.m < 50 ? 32.0F : (s.m < 90 ? 33.0F : 10.0F));
    limites(primeira_positiva, [&](int) { return s.acima(margem); });
    if (quase_so(minha)) {
        limites(0, [&](int) { return s.acima(50.0F); });
    }
}

float margem_negativa(float m) {
    if (Negative_filter == automatico) {
        return m < 50 ? 100.0F : 90.0F;
    }
    return m <= -33 ? 90.0F : (m < 50 ? 50.0F : (m < 90 ? 32.0F : 33.0F));
}

void negativa_automatica_ou_plena(const Saldo& s, Cor minha) {
    const bool larga = Negative_filter == automatico && s.m <= -33;
    const float nivel = larga ? 1100.0F : s.abaixo(margem_negativa(static_cast<float>(s.m)));
    limites(primeira_negativa, [&](int) { return nivel; });
    if (quase_so(outra(minha))) {
        limites(1, [&](int) { return s.abaixo(33.0F); });
    }
    if (quase_so(minha)) {
        limites(1, escada);
    }
}

}  // namespace

void limites_de_mate() {
    for (int n = 0; n < ultima_ply; ++n) {
        MAXcut[n] = escada(n);
    }
    MAXcutt = MAXcut;
}

void janelas_de_placar(Cor minha) {
    const Saldo s{materialflot0, static_cast<long double>(minha == brancas ? peca : -peca),
                  ln_da_razao(material_a[minha], material_a[outra(minha)]) * MQ};
    if (Positive_filter == manual) {
        positiva_manual(s);
    } else {
        limites(0, escada);
    }
    if (Negative_filter == manual) {
        negativa_manual(s);
    } else {
        limites(1, escada);
    }
    if (Positive_filter == automatico) {
        positiva_automatica(s, minha);
    } else if (Positive_filter == pleno) {
        positiva_plena(s, minha);
    }
    if (Negative_filter == automatico || Negative_filter == pleno) {
        negativa_automatica_ou_plena(s, minha);
    }
}

}  // namespace ondrel
