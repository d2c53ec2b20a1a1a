#include "uci/go.h"

#include "base/options.h"
#include "base/root.h"

#include <array>
#include <string_view>

namespace ondrel {
namespace {

// Where the digits of the first clock begin; 0 if the line has none of the known shapes.
std::size_t comeco_do_relogio() {
    if (in_em(3) == 'm') {
        for (std::size_t digitos = 1; digitos <= 3; ++digitos) {
            if (in_em(15 + digitos) == 't') {
                return 20 + digitos;
            }
        }
    }
    return in_em(4) == 't' ? 9 : 0;
}

// The distance to the first blank, looked for at the seven positions behind the first digit; 8 if it is farther off.
int conta_digitos(std::size_t comeco) {
    int digitos = 1;
    while (digitos < 8 && in_em(comeco + static_cast<std::size_t>(digitos)) != ' ') {
        ++digitos;
    }
    return digitos;
}

void pouco_tempo() {
    SEARCH_E = 0;
    IIDS = 0;
    EXTRA_EVAL = 0;
}

// With few men left, one step deeper.
void deep_por_homens(int sempre, int com_poucos, int poucos) { deep = homens() <= poucos ? com_poucos : sempre; }

// The row of a CPU power: the budget up to which time is short, and the men up to which depths rise.
struct Potencia {
    int CPU, T, A, B, C, D, E;
};
constexpr std::array<Potencia, 4> potencias{{{5, 10000, 15, 11, 17, 7, 9},
                                             {1, 20000, 13, 9, 15, 5, 7},
                                             {2, 30000, 11, 7, 13, 3, 5},
                                             {3, 50000, 9, 5, 11, 1, 3}}};

// Under 100 seconds: a later rule overrides an earlier one.
void menos_de_100_segundos(const Potencia& x) {
    if (tempo <= x.T) {
        pouco_tempo();
    }
    if (tempo <= 90000) {
        deep_por_homens(7, 9, x.A);
    }
    if (tempo <= 60000) {
        deep_por_homens(7, 9, x.B);
    }
    if (tempo <= 30000) {
        deep_por_homens(5, 7, x.C);
        if (homens() <= x.D) {
            deep = 9;
        }
    }
    if (tempo <= 10000) {
        deep_por_homens(5, 7, x.E);
    }
}

// A first digit of 1 to 9 times the unit; anything else sets nothing.
bool toma_tempo(char F, int unidade) {
    if (F < '1' || F > '9') {
        return false;
    }
    tempo = (F - '0') * unidade;
    return true;
}

void toma_menos_de_100_segundos(char F) {
    if (!toma_tempo(F, 10000)) {
        return;
    }
    for (const Potencia& x : potencias) {
        if (x.CPU == CPU) {
            menos_de_100_segundos(x);
        }
    }
}

}  // namespace

void le_relogio_do_go() {
    const std::size_t comeco = comeco_do_relogio();
    if (comeco == 0) {
        return;
    }
    const char F = in_em(comeco);
    switch (conta_digitos(comeco)) {
        case 1:
            pouco_tempo();
            deep = 0;
            break;
        case 2:
            pouco_tempo();
            deep_por_homens(0, 1, 1);
            break;
        case 3:
            pouco_tempo();
            deep_por_homens(1, 3, 3);
            break;
        case 4:
            pouco_tempo();
            deep_por_homens(3, 5, 5);
            break;
        case 5: toma_menos_de_100_segundos(F); break;
        case 6: toma_tempo(F, 100000); break;
        case 7: toma_tempo(F, 1000000); break;
        default: tempo = 10000000; break;
    }
}

}  // namespace ondrel
