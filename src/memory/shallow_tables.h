// The memory of plies 3, 4 and 5: whole nodes under the exact window in which they were searched, one table for each ply
// and colour. A search uses the tables of one chain only: 3b, 4p, 5b when White moves at the root, else 3p, 4b, 5p.
// Called by the nodes of these plies (search/node.h); the tables are cleared by the root and by the front end.
#pragma once

#include "base/types.h"

#include <optional>

namespace ondrel {

constexpr int shallow_records = 10000;  // of a table; the last one is never written

// Everything that a hit must equal; the floats as numbers, so that no record of a window without numbers ever matches.
struct NodeKey {
    Board hashtable;         // tab2 after the move of the node
    float alfa, beta, deep;  // the window of the node and its depth
    std::uint8_t PVSm, PVSm2;

    bool operator==(const NodeKey& x) const {
        return PVSm == x.PVSm && PVSm2 == x.PVSm2 && alfa == x.alfa && beta == x.beta && deep == x.deep &&
               hashtable == x.hashtable;
    }
};

// hash_table_scan<N><c>: the stored value of the node, if there is one; the lowest matching record wins.
std::optional<float> hash_table_scan(int n, Colour c, const NodeKey& key);

// hash_table_build<N><c>: writes the key of the node being entered to the record at inc<N><c>.
void hash_table_build(int n, Colour c, const NodeKey& key);

// Completes that record with the node's value and advances the ring. Tells whether the ring has wrapped.
bool hash_table_store(int n, Colour c, float value);

// inc<N><c>: the next record to write, 0..9998.
int next_shallow_record(int n, Colour c);

// Empties one table, the tables of the chain in which `own` moves at the root, all six.
void clear_shallow_table(int n, Colour c);
void clear_shallow_chain(Colour own);
void clear_shallow_tables();

}  // namespace ondrel
