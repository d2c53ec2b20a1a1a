// The plain engine as the judge of the fast one: told the state that the engine has, and asked the same question.
#pragma once

#include "support/engine.h"

#include "plain/state.h"

namespace tests {

// A colour and a move as the plain engine has them.
constexpr plain::Colour to_plain(Colour c) { return c == ondrel::white ? plain::white : plain::black; }
constexpr plain::Move to_plain(Move m) { return {m.from_file, m.from_rank, m.to_file, m.to_rank}; }

// Puts over all that an evaluation reads: the settings, the root and its preparation, the boards, the line.
void tell_plain();

// What the plain engine says of the leaf on tab2; the state is put over first.
struct PlainLeaf {
    float extraeval;
    bool EMPAT;
};
PlainLeaf plain_leaf(Colour own, Colour stm);

// Of the root move of own whose position stands on tab2: its base value.
float plain_base_value(Colour own);

// Of the replies of ply n, on the position and with the bounds that set_up_ply and the test have made: its value, the
// flag that stops its move loop, and the nodes searched. For plies and depths without scans of the shallow tables.
struct PlainReplies {
    float value;
    bool cut;
    int nodes;
};
PlainReplies plain_replies(int n);

}  // namespace tests
