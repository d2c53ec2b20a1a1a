// The nodes of the tree, deep_<c><N>, and what they are made of.
#pragma once

#include "plain/state.h"

namespace plain {

// --- Nodes: c makes the move of ply N, still unplayed on the board of ply N-1; the value is left in the ply's bound ---
void deep_root_move(Colour c, Move m);    // deep_<c>1
void deep_node(Colour c, int N, Move m);  // deep_<c>2 to deep_<c>24

// One run of a node; with `passed` the move is not played. `trial` is tab2 as it stood at the node's entry.
void run_node(Colour c, int N, Move m, bool passed, const Board& trial);

// The moves that colour o has on tabd<N>, until the flag of the node is set.
void move_order(Colour o, int N);

// --- Bounds ---
constexpr float start_value(int N) { return N % 2 == 0 ? -16500.0F : 16500.0F; }
constexpr float mate_value(int N) {
    const auto size = static_cast<float>(16500 - 1100 * ((N + 1) / 2));
    return N % 2 == 0 ? -size : size;
}
float& value_of(int N);       // alfa<N> at even plies, beta<N> at odd ones
bool& move_loop_flag(int N);  // corte_beta<N-1>, corte_alfa<N-1>
bool score_is_held(float first_limit);

// --- Parts of a node ---
bool gives_check(Colour o, const Board& trial);            // is o in check after the trial? sets Y
void weigh_move(Colour c, const Board& board, Move m);     // promocao, ppassado
void set_material(int N, Colour c, int from_ply, Move m);  // of ply N, the move having been weighed
void copy_ply(int from, int to);

// --- Reductions and the like ---
// Runs the node in the loop of reductions; true when a pass of the mover has refuted the parent.
bool retry_loop(Colour c, int N, Move m, const Board& trial);
// True when the node is finished with the value of the pass.
bool null_move_pass(Colour c, int N, Move m, const Board& trial);
enum class Next { go_on, finish };
Next filters_and_clock(Colour c, int N, Move m, const Board& trial, int& saved_deep);
bool soft_limit_passed();

// --- Generators: colour o moves on tabd<N>; with `only_slot` the stored move alone is tried ---
void gerador(Colour o, int N, int victim_file, int victim_rank, bool only_slot);
void analiselivre(Colour o, int N, int piece, int f, int r, bool only_slot);
void analisepositive_peao(Colour o, int N, int f, int r);                   // promotions at odd plies from 7
void analisepositive_deep1(Colour o, int victim, int piece, int f, int r);  // a stage of ply 1
void analisepositivetest_deep1(Colour o, int piece, int f, int r);

}  // namespace plain
