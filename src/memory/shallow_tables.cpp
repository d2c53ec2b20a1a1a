#include "memory/shallow_tables.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace ondrel {
namespace {

using Link = std::int16_t;
constexpr int buckets = 16384;
constexpr Link none = -1;

// A ring of records with an index over them. Records of one bucket are chained by rising number, so that the first match
// of a walk is the lowest.
struct Table {
    std::array<NodeKey, shallow_records> key{};
    std::array<float, shallow_records> value{};
    std::array<Link, shallow_records> next{};
    std::array<Link, shallow_records> bucket_of{};  // the bucket a record is chained in, `none` if in none
    std::array<Link, buckets> first{};
    int used = 0;        // records ever written since the table was emptied
    int inc = 0;         // inc<N><c>, the next record to write
    bool ready = false;  // the index has been laid out
};

// Lifetime: the process; the contents last for a pass or a search.
std::array<std::array<Table, 2>, 3> tables_by_ply;

Table& table(int n, Colour c) {
    Table& t = tables_by_ply[n - 3][c];
    if (!t.ready) {
        t.first.fill(none);
        t.bucket_of.fill(none);
        t.ready = true;
    }
    return t;
}

Link bucket_of(const NodeKey& k) {
    std::uint64_t h = 0;
    const auto mix = [&h](std::uint64_t x) { h = (std::rotl(h, 5) ^ x) * 0x9E3779B97F4A7C15U; };
    for (std::size_t i = 0; i < k.hashtable.size(); i += sizeof(std::uint64_t)) {
        std::uint64_t x = 0;
        std::memcpy(&x, k.hashtable.data() + i, sizeof x);
        mix(x);
    }
    // Adding zero makes the two zeros, which compare equal, one.
    mix(std::bit_cast<std::uint32_t>(k.alfa + 0.0F));
    mix(std::bit_cast<std::uint32_t>(k.beta + 0.0F));
    mix(std::bit_cast<std::uint32_t>(k.deep));
    return static_cast<Link>((h ^ (h >> 32U)) % buckets);
}

void take_from_chain(Table& t, Link i) {
    if (t.bucket_of[i] == none) {
        return;
    }
    Link* link = &t.first[t.bucket_of[i]];
    while (*link != i) {
        link = &t.next[*link];
    }
    *link = t.next[i];
    t.bucket_of[i] = none;
}

void enter_in_chain(Table& t, Link i) {
    const Link bucket = bucket_of(t.key[i]);
    Link* link = &t.first[bucket];
    while (*link != none && *link < i) {
        link = &t.next[*link];
    }
    t.next[i] = *link;
    *link = i;
    t.bucket_of[i] = bucket;
}

}  // namespace

std::optional<float> hash_table_scan(int n, Colour c, const NodeKey& key) {
    const Table& t = table(n, c);
    for (Link i = t.first[bucket_of(key)]; i != none; i = t.next[i]) {
        if (t.key[i] == key) {
            return t.value[i];
        }
    }
    return {};
}

void hash_table_build(int n, Colour c, const NodeKey& key) {
    Table& t = table(n, c);
    const auto i = static_cast<Link>(t.inc);
    take_from_chain(t, i);
    t.key[i] = key;
}

bool hash_table_store(int n, Colour c, float value) {
    Table& t = table(n, c);
    t.value[t.inc] = value;
    enter_in_chain(t, static_cast<Link>(t.inc));
    ++t.inc;
    t.used = std::max(t.used, t.inc);
    const bool wraps = t.inc == shallow_records - 1;
    if (wraps) {
        t.inc = 0;
    }
    return wraps;
}

int next_shallow_record(int n, Colour c) { return table(n, c).inc; }

void clear_shallow_table(int n, Colour c) {
    Table& t = table(n, c);
    if (t.used > 0) {
        t.first.fill(none);
        std::fill_n(t.bucket_of.begin(), t.used, none);
        t.used = 0;
    }
    t.inc = 0;
}

void clear_shallow_chain(Colour own) {
    clear_shallow_table(3, own);
    clear_shallow_table(4, other(own));
    clear_shallow_table(5, own);
}

void clear_shallow_tables() {
    clear_shallow_chain(white);
    clear_shallow_chain(black);
}

}  // namespace ondrel
