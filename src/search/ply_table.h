// What differs from ply to ply, in one table.
#pragma once

#include "base/ply_stack.h"

#include <array>

namespace ondrel {

enum class Folha : std::uint8_t {
    nenhuma,
    material,       // the root's lead after the move
    razao_simples,  // lead less the plain ratio of the mover's material to the other's
    extra_eval,     // material, logarithm and extra_eval_<o>
    extra_evall     // the same with extra_evall_<c>
};
enum class Lances : std::uint8_t { comuns, por_etapas, promocoes_antes, nenhum };
enum class Memoria : std::uint8_t { nenhuma, repeticao, tabela_rasa };
enum class Vertical : std::uint8_t { nenhum, da_ply_7, das_plies_9_a_21, da_ply_23 };

constexpr int nunca = -1;

struct LinhaDaPly {
    int folha_deep;                 // a leaf when deep equals this
    int porta_de, porta_ate;        // the gate stands while DEEP lies in this range
    Folha folha;                    // what a leaf is worth
    Lances lances;                  // moves besides the common order
    Memoria memoria;                // what may answer for the node
    int scan_deep;                  // least deep at which the shallow table is scanned
    int volta_deep;                 // below this deep the node returns at once
    int null_move;                  // least NULL_MOVE of the null-move pass; 0: none
    int null_deep;                  // and its least deep
    bool iid;                       // the IID pass
    int lmr, amr;                   // least deep of late-move reduction and of Amr; 0: none
    Vertical vertical;              // rules of the vertical filter
    int extensao_de, extensao_ate;  // the search extension stands while DEEP lies in this range
    int relogio_deep;               // the time check stands while deep is above this
    bool limpa_captura;             // the capture slot is dropped when deep is N + 1
    bool deep_corta;                // deep equal to N ends the generators of captures and pieces
    bool pai_corta;                 // a flag set by the child's filter counts as a cut
    bool promove;                   // pawns of the seventh rank take part in the generators
    int roque;                      // castling value
};

// clang-format off
constexpr auto nao = false;
constexpr auto sim = true;

constexpr std::array<LinhaDaPly, ultima_ply + 1> tabela_das_plies{{
//  leaf   gate DEEP  value of a             moves besides            answered by            scan, null move IID  least deep  vertical filter           extension  time  slot  deep  flag  pawn castling
//  deep   from..to   leaf                   the common order                                return N_M deep      LMR Amr                               DEEP       deep  reset cuts  cuts  7th  value
  {nunca, nunca, nunca, Folha::nenhuma,      Lances::nenhum,          Memoria::nenhuma,      0, 0, 0, 0, nao,  0,  0, Vertical::nenhum,           nunca, nunca, 99, nao, nao, nao, nao, 10},  // 0: the root
  {    0, nunca, nunca, Folha::material,     Lances::por_etapas,      Memoria::nenhuma,      0, 0, 1, 7, sim,  0,  0, Vertical::nenhum,           nunca, nunca, 99, nao, nao, nao, sim, 10},  // 1
  {    1, nunca, nunca, Folha::razao_simples, Lances::comuns,         Memoria::repeticao,    0, 1, 1, 7, sim,  9,  9, Vertical::nenhum,           nunca, nunca, 99, nao, nao, nao, sim,  9},  // 2
  {nunca, nunca, nunca, Folha::nenhuma,      Lances::comuns,          Memoria::tabela_rasa,  3, 3, 2, 7, sim,  9,  9, Vertical::nenhum,           nunca, nunca, 99, nao, nao, nao, sim,  9},  // 3
  {    3, nunca, nunca, Folha::extra_eval,   Lances::comuns,          Memoria::tabela_rasa,  8, 3, 2, 9, nao,  9,  9, Vertical::nenhum,           nunca, nunca, 99, nao, nao, nao, sim,  8},  // 4
  {nunca, nunca, nunca, Folha::nenhuma,      Lances::comuns,          Memoria::tabela_rasa,  8, 4, 2, 9, nao,  9,  9, Vertical::nenhum,           nunca, nunca, 99, nao, nao, nao, sim,  8},  // 5
  {    5, nunca, nunca, Folha::extra_eval,   Lances::comuns,          Memoria::nenhuma,      0, 6, 0, 0, nao,  9, 11, Vertical::nenhum,           nunca, nunca, 99, sim, nao, sim, sim,  7},  // 6
  {nunca, nunca, nunca, Folha::nenhuma,      Lances::promocoes_antes, Memoria::nenhuma,      0, 7, 0, 0, nao,  9, 11, Vertical::da_ply_7,         nunca, nunca,  8, nao, sim, nao, nao,  7},  // 7
  {    7, nunca, nunca, Folha::extra_eval,   Lances::comuns,          Memoria::nenhuma,      0, 8, 0, 0, nao, 11, 13, Vertical::nenhum,           nunca, nunca, 99, sim, nao, nao, sim,  6},  // 8
  {nunca, nunca, nunca, Folha::nenhuma,      Lances::promocoes_antes, Memoria::nenhuma,      0, 9, 0, 0, nao, 11, 13, Vertical::das_plies_9_a_21, 9,   9,   10, nao, sim, nao, nao,  6},      // 9
  {    9,   9,   9, Folha::extra_eval,       Lances::comuns,          Memoria::nenhuma,      0, 10, 0, 0, nao, 0,  0, Vertical::nenhum,           nunca, nunca, 99, sim, nao, nao, sim,  5},  // 10
  {nunca,   9,   9, Folha::extra_evall,      Lances::promocoes_antes, Memoria::nenhuma,      0, 11, 0, 0, nao, 0,  0, Vertical::das_plies_9_a_21, 9,   11,  12, nao, sim, nao, nao,  5},      // 11
  {   11,   0,  11, Folha::extra_eval,       Lances::comuns,          Memoria::nenhuma,      0, 12, 0, 0, nao, 0,  0, Vertical::nenhum,           nunca, nunca, 99, sim, nao, nao, sim,  4},  // 12
  {nunca,   0,  11, Folha::extra_evall,      Lances::promocoes_antes, Memoria::nenhuma,      0, 13, 0, 0, nao, 0,  0, Vertical::das_plies_9_a_21, 11,  13,  14, nao, sim, nao, nao,  4},      // 13
  {   13,   0,  13, Folha::extra_eval,       Lances::comuns,          Memoria::nenhuma,      0, 14, 0, 0, nao, 0,  0, Vertical::nenhum,           nunca, nunca, 99, sim, nao, nao, sim,  3},  // 14
  {nunca,   0,  13, Folha::extra_evall,      Lances::promocoes_antes, Memoria::nenhuma,      0, 15, 0, 0, nao, 0,  0, Vertical::das_plies_9_a_21, 13,  15,  16, nao, sim, nao, nao,  3},      // 15
  {   15,   0,  15, Folha::extra_eval,       Lances::comuns,          Memoria::nenhuma,      0, 16, 0, 0, nao, 0,  0, Vertical::nenhum,           nunca, nunca, 99, sim, nao, nao, sim,  2},  // 16
  {nunca,   0,  15, Folha::extra_evall,      Lances::promocoes_antes, Memoria::nenhuma,      0, 17, 0, 0, nao, 0,  0, Vertical::das_plies_9_a_21, 15,  17,  18, nao, sim, nao, nao,  2},      // 17
  {   17,   0,  17, Folha::extra_eval,       Lances::comuns,          Memoria::nenhuma,      0, 18, 0, 0, nao, 0,  0, Vertical::nenhum,           nunca, nunca, 99, sim, nao, nao, sim,  2},  // 18
  {nunca,   0,  17, Folha::extra_evall,      Lances::promocoes_antes, Memoria::nenhuma,      0, 19, 0, 0, nao, 0,  0, Vertical::das_plies_9_a_21, 17,  19,  20, nao, sim, nao, nao,  2},      // 19
  {   19,   0,  19, Folha::extra_eval,       Lances::comuns,          Memoria::nenhuma,      0, 20, 0, 0, nao, 0,  0, Vertical::nenhum,           nunca, nunca, 99, sim, nao, nao, sim,  2},  // 20
  {nunca,   0,  19, Folha::extra_evall,      Lances::promocoes_antes, Memoria::nenhuma,      0, 21, 0, 0, nao, 0,  0, Vertical::das_plies_9_a_21, 19,  21,  22, nao, sim, nao, nao,  2},      // 21
  {   21,   0,  21, Folha::extra_eval,       Lances::comuns,          Memoria::nenhuma,      0, 22, 0, 0, nao, 0,  0, Vertical::nenhum,           nunca, nunca, 99, sim, nao, nao, sim,  2},  // 22
  {nunca,   0,  21, Folha::extra_evall,      Lances::promocoes_antes, Memoria::nenhuma,      0, 23, 0, 0, nao, 0,  0, Vertical::da_ply_23,        nunca, nunca, 99, nao, sim, nao, nao,  2},  // 23
  {   23, nunca, nunca, Folha::extra_eval,   Lances::nenhum,          Memoria::nenhuma,      0, 24, 0, 0, nao, 0,  0, Vertical::nenhum,           nunca, nunca, 99, nao, nao, nao, nao,  0},  // 24: leaf only
}};
// clang-format on

// The ply of a routine. All members of a family are one template; the ply travels as an argument that knows its parity
// at compile time and its number at run time, so that each routine exists four times (two colours, two parities).
template <bool par_>
struct PlyMovel {
    static constexpr bool par = par_;  // even: the root side replies and the node maximises
    int numero;

    constexpr operator int() const { return numero; }  // NOLINT(google-explicit-constructor): a ply is its number
    [[nodiscard]] constexpr PlyMovel<!par> filha() const { return {numero + 1}; }
};

}  // namespace ondrel
