// The game-long memory: every search finished by the process, by the text of its position line. Asked by the root before
// a search, told by the front end after one.
#pragma once

#include "base/types.h"

#include <optional>

namespace ondrel {

constexpr int mem_records = 100000;  // the last one is never written

// inn: the line as key, filled up with '9'.
constexpr int longest_key = 1000;
using LineKey = std::array<char, longest_key>;

// What a search is asked with, and what it came to.
struct SearchDemand {
    float tempo, deep;
};
struct SearchOutcome {
    float E;    // its score
    Move abcd;  // its move
    char PR;    // and the letter for it
};

// Looks up the key among the records made with at least this demand; the lowest matching record wins.
std::optional<SearchOutcome> hash_mem_scan(const LineKey& inn, SearchDemand demand);

// Stores the outcome, without looking for an older record of the same line.
void hash_mem_build(const LineKey& inn, SearchDemand demand, const SearchOutcome& outcome);

// Empties the memory.
void clear_game_memory();

// inc1: the next record to write, 0..99998.
int next_mem_record();

}  // namespace ondrel
