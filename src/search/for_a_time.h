// Changes of search state that last for a subtree: each is undone when it goes out of scope, so that no way out of a node
// can forget it.
#pragma once

#include "search/state.h"

namespace ondrel {

// Lowers deep, and takes the shallow tables out of use.
class ReducedDepth {
public:
    ReducedDepth(int by, bool without_tables) : deep_(search.deep), HASHf_(search.HASHf) {
        search.deep -= by;
        if (without_tables) {
            search.HASHf = 0;
        }
    }
    ~ReducedDepth() {
        search.deep = deep_;
        search.HASHf = HASHf_;
    }
    ReducedDepth(const ReducedDepth&) = delete;
    ReducedDepth& operator=(const ReducedDepth&) = delete;

private:
    int deep_;
    std::uint8_t HASHf_;
};

// Takes the bounds of the own parity of ply n out of the chains above it.
template <class P>
class NeutralBounds {
public:
    explicit NeutralBounds(P n) : n_(n) {
        for (int k = n_ - 2; k >= 0; k -= 2) {
            saved_[k] = value<P::even>(k);
            value<P::even>(k) = start_value<P::even>;
        }
    }
    ~NeutralBounds() {
        for (int k = n_ - 2; k >= 0; k -= 2) {
            value<P::even>(k) = saved_[k];
        }
    }
    NeutralBounds(const NeutralBounds&) = delete;
    NeutralBounds& operator=(const NeutralBounds&) = delete;

private:
    P n_;
    std::array<float, 4> saved_{};  // null moves stand at plies 1 to 5
};

// The scout pass of ply 2: tightens the limits of the odd plies to within a tenth of a pawn of beta1.
class ScoutLimits {
public:
    ScoutLimits() {
        root_move.PVSm2 = 1;
        for (int k = 3; k < last_ply; k += 2) {
            if (bounds.beta[1] - width > -bounds.MAXcut[k]) {
                bounds.MAXcut[k] = width - bounds.beta[1];
            }
        }
    }
    ~ScoutLimits() {
        root_move.PVSm2 = 0;
        for (int k = 3; k < last_ply; k += 2) {
            bounds.MAXcut[k] = bounds.MAXcutt[k];
        }
    }
    ScoutLimits(const ScoutLimits&) = delete;
    ScoutLimits& operator=(const ScoutLimits&) = delete;

    static constexpr float width = 1.0F;
};

// Marks a castling of c in the line by its value.
class CastlingMark {
public:
    CastlingMark(Colour c, int worth) : c_(c) { pass.roque[c] = worth; }
    ~CastlingMark() { pass.roque[c_] = 0; }
    CastlingMark(const CastlingMark&) = delete;
    CastlingMark& operator=(const CastlingMark&) = delete;

private:
    Colour c_;
};

}  // namespace ondrel
