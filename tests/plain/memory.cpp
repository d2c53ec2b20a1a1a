#include "plain/memory.h"

#include <algorithm>

#include "plain/node.h"

namespace plain {

// --- Shallow tables ---

static ShallowTables::Table::Window window_of(int N) {
    const float alpha = std::max(tree.alfa[2], tree.alfa[0]);
    const float beta = N == 3 ? tree.beta[1] : std::min(tree.beta[3], tree.beta[1]);
    return {N == 5 ? std::max(tree.alfa[4], alpha) : alpha, beta, static_cast<float>(tree.deep), 0};
}

bool hash_table_scan(int N, Colour c) {
    const auto& table = shallow.table[N][c];
    const auto now = window_of(N);
    for (int i = 0; i < 10000; ++i) {
        const auto& then = table.Hashtable[i];
        if (then.alpha == now.alpha && then.beta == now.beta && then.deep == now.deep &&
            table.PVSm[i].PVSm == tree.PVSm && table.PVSm[i].PVSm2 == tree.PVSm2 && table.hashtable[i] == tree.tab2) {
            value_of(N) = then.value;
            return true;
        }
    }
    return false;
}

void hash_table_build(int N, Colour c) {
    auto& table = shallow.table[N][c];
    const float value = table.Hashtable[table.inc].value;
    table.hashtable[table.inc] = tree.tab2;
    table.Hashtable[table.inc] = window_of(N);
    table.Hashtable[table.inc].value = value;
    table.PVSm[table.inc] = {tree.PVSm, tree.PVSm2};
}

void store_and_advance(int N, Colour c) {
    auto& table = shallow.table[N][c];
    table.Hashtable[table.inc].value = value_of(N);
    ++table.inc;
    if (table.inc == 9999) {
        table.inc = 0;
        shallow.FULL[N] = true;
    }
}

void clear_shallow_tables_of_search(Colour root_side) {
    for (const int N : {3, 4, 5}) {
        shallow.table[N][N == 4 ? other(root_side) : root_side] = {};
    }
}

void clear_all_shallow_tables() {
    clear_shallow_tables_of_search(white);
    clear_shallow_tables_of_search(black);
}

int hash_figure() {
    const int x = shallow.FULL[3] ? 10000 : shallow.table[3][white].inc;
    const int y = shallow.FULL[4] ? 10000 : shallow.table[4][black].inc;
    const int z = shallow.FULL[5] ? 10000 : shallow.table[5][white].inc;
    return (x + y + z) / 30;
}

// --- The memory of finished searches ---

constexpr int searches_kept = 100000;

struct FinishedSearch {
    float tempo, deep, E;
};

// 100 MB, which the system provides only once they are written.
static std::array<std::array<char, 1000>, searches_kept> mem;
static std::array<FinishedSearch, searches_kept> mem_param;
static std::array<Move, searches_kept> mem_parammove;
static std::array<char, searches_kept> mem_paramch;

void set_inn(const std::string& line) {
    game_memory.inn.fill('9');
    std::copy_n(line.begin(), std::min<std::size_t>(line.size(), 1000), game_memory.inn.begin());
    game_memory.HASH_MEM = line.size() < 1000;
}

void hash_mem_scan() {
    const auto t = static_cast<float>(tree.tempo);
    const auto d = static_cast<float>(tree.deep);
    for (int i = 0; i < searches_kept; ++i) {
        if (t <= mem_param[i].tempo && d <= mem_param[i].deep && mem[i] == game_memory.inn) {
            game_memory.mem_TEST = true;
            root.E = mem_param[i].E;
            root.a = mem_parammove[i].a;
            root.b = mem_parammove[i].b;
            root.c = mem_parammove[i].c;
            root.d = mem_parammove[i].d;
            root.PR = mem_paramch[i];
            return;
        }
    }
}

void hash_mem_build() {
    const int i = game_memory.inc1;
    mem[i] = game_memory.inn;
    mem_param[i] = {static_cast<float>(tree.tempo), static_cast<float>(tree.deep), root.E};
    mem_parammove[i] = {root.a, root.b, root.c, root.d};
    mem_paramch[i] = root.PR;
    if (game_memory.inc1 < searches_kept - 1) {
        ++game_memory.inc1;
    }
    if (game_memory.inc1 == searches_kept - 1) {
        game_memory.inc1 = 0;
    }
}

void clear_game_memory() {
    for (auto& text : mem) {
        text.fill('9');
    }
    mem_param.fill({-1000.0F, -1000.0F, -1000.0F});
    mem_parammove.fill({9, 9, 9, 9});
    mem_paramch.fill('x');
    game_memory.inc1 = 0;
}

}  // namespace plain
