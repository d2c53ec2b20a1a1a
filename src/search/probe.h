// What the tests may watch of a search: how often a rule has acted, and the children of nodes as they are entered and
// left. A probe changes nothing. In the shipped program all of this is nothing.
#pragma once

#include "base/types.h"

namespace ondrel {

#ifdef ONDREL_PROBES
constexpr bool probed = true;
#else
constexpr bool probed = false;
#endif

// The rules of the selective search whose acting is counted.
enum class Rule : std::uint8_t {
    reduction,           // a reduced run
    reduction_repeated,  // its value would cut the parent: run again
    amr,                 // an Amr run
    amr_refutes,         // it refutes the parent
    null_move,           // a null-move pass
    null_move_settles,   // it settles the node
    iid,                 // an IID pass
    scout_of_ply_1,      // a scout pass of ply 1
    scout_of_ply_1_settles,
    scout_of_ply_2,  // a scout pass of ply 2
    scout_of_ply_2_settles,
    full_pass,             // a full pass of ply 1
    root_widened,          // the root window widened at depth 9
    vertical_ends_node,    // the vertical filter ends a node
    vertical_shortens,     // it gives up two plies
    vertical_ends_parent,  // it ends the parent's loop
    extension,             // the search extension
    out_of_time,           // the time check fires
    gate,                  // the gate ends a line
    lazy,                  // the lazy test spares a judgement
    judged,                // a leaf is judged
    judged_exactly,        // and not by an estimate
    settled,               // an estimate is made exact later
    repetition,            // ply 2 finds a repetition
    scan,                  // a scan of a shallow table
    scan_hits,             // it hits
    count
};

struct Probes {
    std::array<std::uint64_t, static_cast<std::size_t>(Rule::count)> times{};
    void (*child_entered)(int n, Move m) = nullptr;  // ply and move of a child about to be searched
    void (*child_left)(int n, Move m, float value) = nullptr;
};
inline Probes probes;

inline void count_rule(Rule r) {
    if constexpr (probed) {
        ++probes.times[static_cast<std::size_t>(r)];
    }
}

// Searches a child of ply n, by `run`, under the eyes of the probes; its value is read when it has come back.
template <class Run>
inline void watch_child(int n, Move m, const float& value, Run run) {
    if constexpr (probed) {
        if (probes.child_entered != nullptr) {
            probes.child_entered(n, m);
        }
    }
    run();
    if constexpr (probed) {
        if (probes.child_left != nullptr) {
            probes.child_left(n, m, value);
        }
    }
}

}  // namespace ondrel
