#include "memory/game_memory.h"

#include "base/options.h"
#include "base/root.h"

#include <algorithm>
#include <functional>
#include <string_view>

namespace ondrel {
namespace {

// A record in static memory: its pages come into being only when it is first written.
struct Registro {
    std::array<char, 1000> mem;  // the line, filled up with '9'
    float tempo, deep, E;        // mem_param
    Lance abcd;                  // mem_parammove
    char PR;                     // mem_paramch
};

std::array<Registro, registros_mem> registros;

constexpr int gavetas = 1 << 16;
constexpr int nenhum = 0;  // links count records from 1, so that zeroed memory is an empty index

// The records of one drawer are chained by rising number, so that the first match of a walk is the lowest.
std::array<int, gavetas> primeiro;
std::array<int, registros_mem> proximo;
int usados = 0;

int gaveta(const std::array<char, 1000>& texto) {
    return static_cast<int>(std::hash<std::string_view>{}({texto.data(), texto.size()}) % gavetas);
}

void desliga(int i) {
    int* elo = &primeiro[gaveta(registros[i].mem)];
    while (*elo != i + 1) {
        elo = &proximo[*elo - 1];
    }
    *elo = proximo[i];
}

void liga(int i) {
    int* elo = &primeiro[gaveta(registros[i].mem)];
    while (*elo != nenhum && *elo < i + 1) {
        elo = &proximo[*elo - 1];
    }
    proximo[i] = *elo;
    *elo = i + 1;
}

}  // namespace

void hash_mem_scan() {
    const auto t = static_cast<float>(tempo);
    const auto d = static_cast<float>(deep);
    for (int elo = primeiro[gaveta(inn)]; elo != nenhum; elo = proximo[elo - 1]) {
        const Registro& x = registros[elo - 1];
        if (t <= x.tempo && d <= x.deep && x.mem == inn) {
            mem_TEST = 1;
            E = x.E;
            abcd = x.abcd;
            PR = x.PR;
            return;
        }
    }
}

void hash_mem_build() {
    if (inc1 < usados) {
        desliga(inc1);
    }
    registros[inc1] = {inn, static_cast<float>(tempo), static_cast<float>(deep), E, abcd, PR};
    liga(inc1);
    ++inc1;
    usados = std::max(usados, inc1);
    if (inc1 == registros_mem - 1) {
        inc1 = 0;
    }
}

void limpa_memoria() {
    primeiro.fill(nenhum);
    usados = 0;
    inc1 = 0;
}

}  // namespace ondrel
