// The judgement of a leaf. Called by the leaves of the tree (search/leaf_value.h), which estimate first and make the estimate
// exact where that matters; and through extra_eval and extra_evall, the judgement in one step.
#pragma once

#include "eval/leaf_cache.h"

namespace ondrel {

// What the last judgement left, read by the node at once. extraevalll is written by verifica_estrategia and stays for all
// leaves under one root move.
struct Judgement {
    float extraeval = 0;     // -50..50, score units, in the view of the colour that the engine plays
    float extraevalll = 0;   // the base value of the root move, score units
    std::uint8_t EMPAT = 0;  // no side has mating material
};
inline Judgement judgement;

// A leaf: the position after the last move of the line, the kings where the tests last saw them, and the castling values
// of the line.
struct Leaf {
    const PieceSets& sets;
    std::array<int, 2> king;
    std::array<int, 2> roque;
};

// How far at most an estimate lies from the judgement, score units.
constexpr float estimate_slack = 0.01F;

// Estimates the leaf for `own`, the colour that the engine plays, with `stm` to move: leaves EMPAT, and in extraeval the
// judgement or what lies within estimate_slack of it, as the answer tells; extraeval as it was where neither can be had.
template <Colour own, Colour stm>
Known estimate_leaf(const Leaf& leaf);

// Makes the judgement of the leaf that was estimated last exact.
template <Colour own, Colour stm>
void judge_estimated_leaf(const Leaf& leaf);

// The judgement, in one step, of a leaf with `own` to move.
void judge_leaf(Colour own, const Leaf& leaf);

// extra_eval_<own>: judges the position on tab2 after the opponent's move, extra_evall_<own>: after the engine's own.
// ddep is the node's to raise.
template <Colour own>
void extra_eval(const std::array<int, 2>& roque);
template <Colour own>
void extra_evall(const std::array<int, 2>& roque);

}  // namespace ondrel
