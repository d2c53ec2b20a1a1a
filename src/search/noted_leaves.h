// Values known by an estimate only. Called by the steps of a node (node.h) wherever a value is written, compared or
// handed up.
//
// A leaf is worth a material score and a judgement; an estimate of the judgement, at most estimate_slack off, tells most
// of the time all that anybody reads: on which side of a bound the value lies. So the last ply that generates replies
// takes the estimate for the value and notes the leaf behind it. What is noted is settled, that is judged to the last
// bit, as soon as a comparison comes too close, or before anybody keeps the value.
//
// In the names below p is the ply of the value at hand, an odd one; g, even, is its parent, q the parent of g.
#pragma once

#include "eval/leaf.h"
#include "eval/weights.h"
#include "search/probe.h"
#include "search/state.h"

#include <algorithm>
#include <cmath>

namespace ondrel {

constexpr int first_estimated_ply = 6;
// Plies up to this one keep values in tables, repeat passes and make null moves: they read values to the last bit.
constexpr int last_exact_ply = 5;

struct NotedLeaf {
    PieceSets sets{};
    std::array<int, 2> king{};
    std::array<int, 2> roque{};
    float material_score = 0;
};

// By the ply whose value is the estimate of the leaf. Lifetime: the value.
struct NotedLeaves {
    std::array<std::uint8_t, last_ply + 2> is_noted{};
    std::array<NotedLeaf, last_ply + 2> leaf{};
};
inline NotedLeaves noted;

inline void note_leaf(int n, const Leaf& leaf, float material_score) {
    noted.is_noted[n] = 1;
    noted.leaf[n] = {leaf.sets, leaf.king, leaf.roque, material_score};
}

// Whatever ply n is worth from here on is exact, until a leaf is noted.
inline void forget_note(int n) { noted.is_noted[n] = 0; }

template <class P>
inline void begin_value(P n) {
    value<P::even>(n) = start_value<P::even>;
    forget_note(n);
}

// How far the value of ply n may lie from what it stands for.
inline float slack_of(int n) { return noted.is_noted[n] ? estimate_slack : 0.0F; }

inline bool is_close(float v, float bound, float slack) { return std::abs(v - bound) <= slack; }

// Makes the value of ply n exact.
inline void settle(int n) {
    if (noted.is_noted[n]) {
        count_rule(Rule::settled);
        const NotedLeaf& x = noted.leaf[n];
        judge_leaf(weights.own, {x.sets, x.king, x.roque});
        (n % 2 == 0 ? bounds.alfa : bounds.beta)[n] = x.material_score + judgement.extraeval;
        forget_note(n);
    }
}

// Before the value of a child of ply n is compared with that of ply n.
template <class P>
inline void settle_if_close(P n) {
    const float slack = slack_of(n) + slack_of(n + 1);
    if (slack != 0 && is_close(value<!P::even>(n + 1), value<P::even>(n), slack)) {
        settle(n);
        settle(n + 1);
    }
}

// Ply n has just taken in the value of its child, and with it the leaf behind that.
inline void take_note(int n) {
    noted.is_noted[n] = noted.is_noted[n + 1];
    if (noted.is_noted[n]) {
        noted.leaf[n] = noted.leaf[n + 1];
    }
}

// Whether the parent of p can do with an estimate of p's value. It can
// (a) where the value falls short of what g has, and does not reach the bounds above g: nobody takes it in;
// (b) where it is more than q has: it ends g, whose value q does not take in;
// (c) where it is less than what q's parent has: whatever g makes of it, it is not what decides there. g may take it in;
//     while g has no more than that, the highest bound above its children is another one, and exact; and if g comes to
//     no more, it ends q, and the value goes the same way from there.
inline bool parent_can_do_with_estimate(int p) {
    const int g = p - 1;
    const int q = p - 2;
    const float v = bounds.beta[p];
    const auto lies_below = [v](float bound, float slack) { return v < bound - slack; };
    if (lies_below(bounds.alfa[g], estimate_slack + slack_of(g)) && lies_below(ply[g].chain, estimate_slack)) {
        return true;
    }
    if (v > bounds.beta[q] + estimate_slack) {
        return true;
    }
    const float above = bounds.alfa[q - 1];
    return lies_below(above, estimate_slack) && above < least_mate && !is_close(v, ply[g].chain, estimate_slack) &&
           !is_close(v, ply[g].cut_at, estimate_slack);
}

// At the end of node n: settles its value, unless nobody reads more of it than on which side it lies.
template <class P>
inline void hand_up(P n) {
    if (!noted.is_noted[n]) {
        return;
    }
    if constexpr (P::even) {
        const bool ends_nothing_above = bounds.alfa[n] > bounds.beta[n - 1] + estimate_slack;
        if (!ends_nothing_above && n - 1 <= last_exact_ply) {
            settle(n);
        }
    } else if (!parent_can_do_with_estimate(n)) {
        settle(n);
    }
}

}  // namespace ondrel
