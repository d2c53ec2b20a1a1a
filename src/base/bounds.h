// Bounds, limits, stored moves and the counters of the selective search. The number in a name's stem is the index.
#pragma once

#include "base/ply_stack.h"

namespace ondrel {

constexpr float inicio_alfa = -16500.0F;  // start value of alfa<N>: no move finished yet
constexpr float inicio_beta = 16500.0F;   // start value of beta<N>
constexpr float mate_minimo = 3300.0F;    // a value of this size or more is a forced mate

// Size of the mate of ply N: the side to reply there has no legal move and is in check.
constexpr float mate_da_ply(int n) { return 16500.0F - 1100.0F * static_cast<float>((n + 1) / 2); }

// Values of the nodes, from the view of the root side: alfa<N> at even N, beta<N> at odd N. alfa[0] is the root's
// bound, written by the root routines, ply 1 and the schedule; the rest by its own node, and by a null-move pass
// above it for its time.
inline std::array<float, ultima_ply + 1> alfa{};
inline std::array<float, ultima_ply + 1> beta{};
inline float ALFA0 = inicio_alfa;  // alfa0 as the previous depth left it
inline float BETA1 = inicio_beta;  // beta1 as the shallow pass of the root move found it

// corte_alfa<N-1> stops the move loop of an odd node N, corte_beta<N-1> that of an even one.
inline std::array<std::uint8_t, ultima_ply> corte_alfa{};
inline std::array<std::uint8_t, ultima_ply> corte_beta{};

// Limits: MAXcut[0] is MAXcut, the root's own; at even N an upper, at odd N (negated) a lower limit of the node's
// value. MAXcutt holds the values of the search; ply 1, ply 2 and the schedule change MAXcut for a pass.
inline std::array<float, ultima_ply> MAXcut{};
inline std::array<float, ultima_ply> MAXcutt{};

// Stored moves, kept from node to node. Quiet slot aa<N>, bb<N>, cc<N>, dd<N>; of ply 1 aa1v, bb1v, cc1v, dd1v.
inline std::array<Lance, ultima_ply> aa_dd;
// Capture slot aa<N>g .. dd<N>g, victim's square first, attacker's behind it; of ply 1 aa1 .. dd1, attacker first.
inline std::array<Lance, ultima_ply> aag_ddg;

// Worth of the incoming move: recomputed on entry of a node, not stacked.
inline int promocao = 0;  // 80 for a promotion
inline int ppassado = 0;  // 10 for an en-passant capture
inline int nd = 0;        // the node entered last

// Selective search: written by the nodes.
constexpr int plies_seletivas = 10;                       // indices 2 to 9 are in use
inline std::array<int, plies_seletivas> curr_N{};         // curr2 .. curr9: children entered from the present parent
inline std::array<std::uint8_t, plies_seletivas> LmrT{};  // Lmr<N>T: no more reductions below this parent
inline std::array<std::uint8_t, plies_seletivas> AmrT{};  // Amr<N>T: no more Amr below this parent
inline std::uint8_t LMRtest = 0;                          // the full pass of a move that came through its scout pass
inline std::uint8_t PVSm = 0;                             // scout pass of ply 1
inline std::uint8_t PVSm2 = 0;                            // scout pass of ply 2

// Leaf evaluation.
inline float extraeval = 0;     // the judgement of the last leaf, -50..50
inline float extraevalll = 0;   // the base value of the root move
inline std::uint8_t EMPAT = 0;  // the last leaf is a dead draw

// The bound that the node of ply n writes, and the flag of its move loop.
template <bool par>
inline float& valor(int n) {
    return par ? alfa[n] : beta[n];
}
template <bool par>
inline std::uint8_t& corte(int n) {
    return par ? corte_beta[n - 1] : corte_alfa[n - 1];
}
template <bool par>
constexpr float valor_inicial = par ? inicio_alfa : inicio_beta;

}  // namespace ondrel
