// What the judgement of a leaf depends on besides the leaf, as far as it may change between two searches, or between
// root moves: whatever keeps judgements or parts of them keeps the stamp of the context with them.
#pragma once

#include "base/square_sets.h"

namespace ondrel {

struct Context {
    Colour own = white;
    std::array<int, 2> npecas{-1, -1};
    std::array<float, 2> materialmaior{};
    float regimen = 0;
    float agres = 0, agresprxrei = 0, MOB = 0, PM = 0;

    bool operator==(const Context&) const = default;
};

struct StampedContext {
    Context of;
    std::uint32_t stamp = 1;  // another one for each change
};

// Written by the two functions below alone. Lifetime: the program's, so that no stamp comes twice.
inline StampedContext context;

// Brings the context up to date for the colour that the engine plays. Called by prepare_weights.
void refresh_context(Colour own);

// Leaves nothing that is kept in force. Called for a new process.
inline void renew_context() { ++context.stamp; }

}  // namespace ondrel
