// What a front end may ask of the search besides its result: to be told of each root move, to look on while it runs, and
// to keep it to some root moves. All of it is off unless it is set; the search itself reads nothing else of it.
#pragma once

#include "base/types.h"

namespace ondrel {

// The root moves that may be searched. The others are visited like those of another pass: they are classified, since
// castling is judged by what the visit before it left, but they do not pass the gate.
struct RootFilter {
    bool on = false;
    std::array<std::array<bool, squares>, squares> allowed{};  // by from-square and to-square

    [[nodiscard]] bool passes(Move m) const { return !on || allowed[m.from()][m.to()]; }
};

// Lifetime: the process; set by the front end.
struct Observers {
    // Called after each root move that was searched to its end, in the build pass too: not where a repetition, the null
    // move or a mate of the IID pass has settled it; the value stands in beta[1], the line in A0_D7.
    void (*root_move_searched)() = nullptr;
    // Called on entry of every node of plies 2 and 3: often enough to watch the search, too seldom to slow it.
    void (*shallow_node_entered)() = nullptr;
    RootFilter root_filter;
};
inline Observers observers;

inline void tell_root_move_searched() {
    if (observers.root_move_searched != nullptr) {
        observers.root_move_searched();
    }
}

inline void tell_shallow_node_entered() {
    if (observers.shallow_node_entered != nullptr) {
        observers.shallow_node_entered();
    }
}

}  // namespace ondrel
