// The game-long memory: every search finished by the process, by the text of its position line.
#pragma once

namespace ondrel {

constexpr int registros_mem = 100000;  // records; the last one is never written

inline int inc1 = 0;  // the next record to write, 0..99998

// Looks up inn among the records made with at least the present tempo and deep. On a hit sets mem_TEST and leaves the
// record's score in E, its move in abcd and its letter in PR; the lowest matching record wins.
void hash_mem_scan();

// Stores inn, tempo, deep, E, abcd and PR, without looking for an older record of the same line.
void hash_mem_build();

// Empties the memory.
void limpa_memoria();

}  // namespace ondrel
