#include "memory/game_memory.h"

#include <algorithm>
#include <functional>
#include <string_view>

namespace ondrel {
namespace {

// A record in static memory: its pages come into being only when it is first written.
struct Record {
    LineKey mem;             // the line
    SearchDemand mem_param;  // with the score in `outcome`
    SearchOutcome outcome;   // mem_parammove, mem_paramch
};

constexpr int buckets = 1 << 16;
constexpr int no_record = 0;  // links count records from 1, so that zeroed memory is an empty index

// Lifetime: the process. The records of one bucket are chained by rising number, so that the first match of a walk is
// the lowest.
struct GameMemory {
    std::array<Record, mem_records> records;
    std::array<int, buckets> first;
    std::array<int, mem_records> next;
    int used;  // records ever written since the memory was emptied
    int inc1;  // the next one to write
};
GameMemory memory;

int bucket_of(const LineKey& text) {
    return static_cast<int>(std::hash<std::string_view>{}({text.data(), text.size()}) % buckets);
}

void take_from_chain(int i) {
    int* link = &memory.first[bucket_of(memory.records[i].mem)];
    while (*link != i + 1) {
        link = &memory.next[*link - 1];
    }
    *link = memory.next[i];
}

void enter_in_chain(int i) {
    int* link = &memory.first[bucket_of(memory.records[i].mem)];
    while (*link != no_record && *link < i + 1) {
        link = &memory.next[*link - 1];
    }
    memory.next[i] = *link;
    *link = i + 1;
}

}  // namespace

std::optional<SearchOutcome> hash_mem_scan(const LineKey& inn, SearchDemand demand) {
    for (int link = memory.first[bucket_of(inn)]; link != no_record; link = memory.next[link - 1]) {
        const Record& x = memory.records[link - 1];
        if (demand.tempo <= x.mem_param.tempo && demand.deep <= x.mem_param.deep && x.mem == inn) {
            return x.outcome;
        }
    }
    return {};
}

void hash_mem_build(const LineKey& inn, SearchDemand demand, const SearchOutcome& outcome) {
    const int i = memory.inc1;
    if (i < memory.used) {
        take_from_chain(i);
    }
    memory.records[i] = {inn, demand, outcome};
    enter_in_chain(i);
    memory.inc1 = i + 1;
    memory.used = std::max(memory.used, memory.inc1);
    if (memory.inc1 == mem_records - 1) {
        memory.inc1 = 0;
    }
}

void clear_game_memory() {
    if (memory.used == 0) {
        return;
    }
    memory.first.fill(no_record);
    memory.used = 0;
    memory.inc1 = 0;
}

int next_mem_record() { return memory.inc1; }

}  // namespace ondrel
