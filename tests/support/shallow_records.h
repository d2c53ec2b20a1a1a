// Records in the shallow tables, for tests that ask no more than how many there are.
#pragma once

#include "memory/shallow_tables.h"

#include <array>

namespace tests {

// Completes records until that many stand in the table of ply n and colour c; in all six tables.
inline void complete_records(int n, ondrel::Colour c, int records) {
    while (ondrel::next_shallow_record(n, c) < records) {
        ondrel::hash_table_build(n, c, ondrel::NodeKey{});
        ondrel::hash_table_store(n, c, 0);
    }
}
inline void complete_records_everywhere(int records) {
    for (int n = 3; n <= 5; ++n) {
        complete_records(n, ondrel::white, records);
        complete_records(n, ondrel::black, records);
    }
}

// The records of the chain in which `own` moves at the root: plies 3, 4 and 5.
inline std::array<int, 3> records_of_chain(ondrel::Colour own) {
    return {ondrel::next_shallow_record(3, own), ondrel::next_shallow_record(4, ondrel::other(own)),
            ondrel::next_shallow_record(5, own)};
}

}  // namespace tests
