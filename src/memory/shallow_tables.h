// The memory of plies 3, 4 and 5: whole nodes under the exact window in which they were searched, one table for each
// ply and colour. A search uses the tables of one chain only: 3b, 4p, 5b when White moves at the root, else 3p, 4b, 5p.
#pragma once

#include "base/types.h"

namespace ondrel {

constexpr int registros_rasos = 10000;  // records; the last one is never written

// In use, by ply (3 to 5) and Cor: inc3b .. inc5p, the next record to write; 0..9998.
inline std::array<std::array<int, 2>, 6> inc{};

inline std::array<std::uint8_t, 6> HASHTABLE{};  // HASHTABLE3 .. 5: the last scan of that ply was a hit
inline std::array<std::uint8_t, 6> FULL{};       // FULL3 .. 5: the ring of that ply has wrapped

// hash_table_scan<N><c>: looks up tab2, the bounds above ply n, deep, PVSm and PVSm2. On a hit sets HASHTABLE[n] and
// writes the stored value to the ply's bound; the lowest matching record wins.
void hash_table_scan(int n, Cor c);

// hash_table_build<N><c>: writes the key of the node being entered to the record at inc[n][c].
void hash_table_build(int n, Cor c);

// Completes that record with the node's value and advances the ring.
void hash_table_store(int n, Cor c, float valor_do_no);

// Empties one table.
void limpa_tabela_rasa(int n, Cor c);

// Empties the tables of the chain in which `raiz` moves at the root.
void limpa_cadeia_rasa(Cor raiz);

// Empties all six.
void limpa_tabelas_rasas();

}  // namespace ondrel
