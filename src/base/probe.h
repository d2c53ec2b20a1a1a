// Probes of the test build: what the search does, seen from outside. In the shipped program they are nothing.
#pragma once

#include "base/root.h"

#ifndef ONDREL_TRACE
#define ONDREL_TRACE 0
#endif

namespace ondrel {

constexpr bool rastreado = ONDREL_TRACE != 0;

// The rules of the selective search whose acting is counted.
enum class Regra : std::uint8_t {
    reducao,            // a reduced run
    reducao_repetida,   // its value would cut the parent: run again
    amr,                // an Amr run
    amr_refuta,         // it refutes the parent
    null_move,          // a null-move pass
    null_move_resolve,  // it settles the node
    iid,                // an IID pass
    sonda_da_ply_1,     // a scout pass of ply 1
    sonda_da_ply_1_resolve,
    sonda_da_ply_2,  // a scout pass of ply 2
    sonda_da_ply_2_resolve,
    passe_pleno,           // a full pass of ply 1
    alarga_a_raiz,         // the root window widened at depth 9
    vertical_corta,        // the vertical filter ends a node
    vertical_encurta,      // it gives up two plies
    vertical_avisa_o_pai,  // it ends the parent's loop
    extensao,              // the search extension
    tempo_esgotado,        // the time check fires
    porta,                 // the gate ends a line
    preguica,              // the lazy test spares a judgement
    julgamento,            // a leaf is judged in full
    repeticao,             // ply 2 finds a repetition
    scan,                  // a scan of a shallow table
    scan_acerta,           // it hits
    quantas
};

inline std::array<std::uint64_t, static_cast<std::size_t>(Regra::quantas)> vezes{};

// Probes that a test may set. `entra_no_filho` sees the ply and move of every child of a node (ply 1: a root move)
// before it is searched and may keep the search from entering it; `volta_do_filho` sees it come back, with the count of
// nodes at its entry and its value.
inline bool (*entra_no_filho)(int n, Lance m) = nullptr;
inline void (*volta_do_filho)(std::uint32_t entrada, int n, float v) = nullptr;

// Searches a child through the probes.
template <class Busca>
inline void observa_filho(int n, Lance m, const float& v, Busca busca) {
    if constexpr (rastreado) {
        const std::uint32_t entrada = nodes;
        if (entra_no_filho == nullptr || entra_no_filho(n, m)) {
            busca();
        }
        if (volta_do_filho != nullptr) {
            volta_do_filho(entrada, n, v);
        }
    } else {
        busca();
    }
}

inline void conta(Regra r) {
    if constexpr (rastreado) {
        ++vezes[static_cast<std::size_t>(r)];
    }
}

}  // namespace ondrel
