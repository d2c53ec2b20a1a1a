// Windows that plies 1 and 2 open on the limits MAXcut<N> for one pass.
#pragma once

#include "search/filters.h"

#include <algorithm>

namespace ondrel {

constexpr int ultima_par = 22;

// --- Ply 2 ---

// Tightens the limits of the odd plies to within a tenth of a pawn of beta1 until it goes out of scope.
class JanelaDaPly2 {
public:
    JanelaDaPly2() {
        PVSm2 = 1;
        for (int k = 3; k < ultima_ply; k += 2) {
            if (beta[1] - 1.0F > -MAXcut[k]) {
                MAXcut[k] = 1.0F - beta[1];
            }
        }
    }
    ~JanelaDaPly2() {
        PVSm2 = 0;
        for (int k = 3; k < ultima_ply; k += 2) {
            MAXcut[k] = MAXcutt[k];
        }
    }
    JanelaDaPly2(const JanelaDaPly2&) = delete;
    JanelaDaPly2& operator=(const JanelaDaPly2&) = delete;
};

// --- Ply 1 ---

// The limits of the even plies below ply 1.
template <class Regra>
inline void limites_pares(Regra regra) {
    for (int k = 2; k <= ultima_par; k += 2) {
        MAXcut[k] = regra(k);
    }
}

inline void devolve_limites_pares() {
    limites_pares([](int k) { return MAXcutt[k]; });
}

// The opponent's last capture counts on top of the balance: it is about to be taken back.
inline float saldo_da_raiz() { return materialflot0 + static_cast<float>(valor_da_peca(peca)); }

inline void janela_turbo(float w) {
    limites_pares([w](int k) { return std::min(MAXcutt[k], E + w); });
}

// The root score has reached the depth before's and x.
inline bool placar_acima(float x) { return alfa[0] >= 5.0F || (alfa[0] >= ALFA0 && alfa[0] >= x); }

// The first Turbo rule, the only one of the IID pass.
inline void turbo_largo() {
    if (E >= saldo_da_raiz() - 33.0F) {
        janela_turbo(33.0F);
    }
}

// All rules around E: each starts from the saved limits again, so that the last one that applies wins.
inline void turbo_estreito() {
    const float F = saldo_da_raiz();
    turbo_largo();
    if (E >= F - 10.0F && placar_mantido() && deep > 8) {
        janela_turbo(10.0F);
    }
    if (deep != 9) {
        return;
    }
    if (E >= F - 15.0F && placar_acima(-15.0F)) {
        janela_turbo(9.0F);
    }
    if (E >= F - 5.0F && placar_acima(-5.0F)) {
        janela_turbo(5.0F);
    }
    if (E >= F && placar_acima(0.0F)) {
        janela_turbo(3.0F);
    }
    if (DEEP9 && alfa[0] >= -15.0F) {
        janela_turbo(1.0F);
    }
}

// Narrows further around E by what the IID pass found.
inline void turbo_por_BETA1() {
    if (E < saldo_da_raiz() - 10.0F || !placar_mantido()) {
        return;
    }
    const float w = E > BETA1 ? 1.0F : (E == BETA1 ? 3.0F : 7.0F);
    limites_pares([w](int k) { return std::min(MAXcut[k], E + w); });
}

// The windows of a scout or full pass.
inline void abre_turbo(bool iid_correu) {
    if (!TURBO) {
        return;
    }
    turbo_estreito();
    if (iid_correu) {
        turbo_por_BETA1();
    }
}

// The scout pass's own limits on top.
inline void abre_janela_de_sonda() {
    if (SCAN1) {
        limites_pares([](int k) { return std::min(MAXcutt[k], ALFA0 + 5.0F); });
    }
    if (SCANT && ALFA0 != inicio_alfa && placar_mantido()) {
        const double limite = static_cast<double>(alfa[0]) + 0.001;
        limites_pares([limite](int k) {
            return static_cast<double>(MAXcut[k]) > limite ? static_cast<float>(limite) : MAXcut[k];
        });
    }
}

}  // namespace ondrel
