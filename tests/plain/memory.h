// The two memories: whole searches by the text of their position line, nodes of plies 3 to 5 by board and window.
#pragma once

#include "plain/state.h"

namespace plain {

// --- Shallow tables: hashtable<N><c>, Hashtable<N><c>, PVSm<N><c>, inc<N><c> ---
struct ShallowTables {
    struct Table {
        std::vector<Board> hashtable = std::vector<Board>(10000);
        struct Window {
            float alpha = 0, beta = 0, deep = 0, value = 0;
        };
        std::vector<Window> Hashtable = std::vector<Window>(10000);
        struct Scouts {
            bool PVSm = false, PVSm2 = false;
        };
        std::vector<Scouts> PVSm = std::vector<Scouts>(10000);
        int inc = 0;
    };
    std::array<std::array<Table, 2>, 6> table;  // by ply, 3 to 5, and colour
    std::array<bool, 6> FULL{};
    bool HASHf = true;
};
inline ShallowTables shallow;

bool hash_table_scan(int N, Colour c);  // HASHTABLE<N>: on a hit the value is in the bound of the ply
void hash_table_build(int N, Colour c);
void store_and_advance(int N, Colour c);
void clear_shallow_tables_of_search(Colour root_side);
void clear_all_shallow_tables();
int hash_figure();

// --- The memory of finished searches; its key is inn ---
struct GameMemory {
    std::array<char, 1000> inn{};
    bool HASH_MEM = false;
    bool mem_TEST = false;
    int inc1 = 0;
};
inline GameMemory game_memory;

void set_inn(const std::string& line);
void hash_mem_scan();
void hash_mem_build();
void clear_game_memory();

}  // namespace plain
