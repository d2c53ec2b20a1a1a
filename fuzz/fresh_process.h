// What the fuzzers share: the engine as it is when a process begins, and an output that is looked at and thrown away.
#pragma once

#include "support/fresh_state.h"
#include "uci/command_loop.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

using teste::estado_novo;

// Ends the run with a word, for libFuzzer to keep the input.
[[noreturn]] inline void falha(std::string_view o_que) {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(o_que.size()), o_que.data());
    std::abort();
}

inline void exige(bool vale, std::string_view o_que) {
    if (!vale) {
        falha(o_que);
    }
}

// A setting that no option line can have given would be read by rules that know nothing of it.
inline void confere_opcoes() {
    using namespace ondrel;
    constexpr std::array dez{0, 1, 2, 3, 4, 5, 6, 7, 8, 10};
    constexpr std::array niveis{0.0F, 10.0F, 33.0F, 32.0F, 50.0F, 90.0F, 110.0F, 100.0F};
    constexpr std::array confiancas{10, 7, 5, 3, 0, -3, -5, -7, -10};
    const auto um_de = [](const auto& valores, auto x) {
        return std::ranges::any_of(valores, [x](auto v) { return static_cast<decltype(x)>(v) == x; });
    };
    exige(um_de(std::array{5, 1, 2, 3}, CPU), "CPU");
    exige(um_de(std::array{0, 1, 3, 5, 7, 9, 11, 13, 15, 17}, deepp) && deep >= 0 && deep <= 23, "deep");
    exige(Tu > 0 && um_de(dez, Tu), "Tu");
    for (const int marca :
         {int{TC}, int{SEARCH_EE}, int{PVS}, int{TURBO}, int{VERTICAL_filt}, int{LMR}, matrix, int{EXTRA_EVALL},
          int{extradef}, int{OwnBook}, int{HASH1}, int{HASHf}, int{FULL_inf}, int{CHESS_960}}) {
        exige(marca == 0 || marca == 1, "a flag");
    }
    exige(Positive_filterp >= 0 && Positive_filterp <= 3 && Negative_filterp >= 0 && Negative_filterp <= 3, "filters");
    exige(um_de(niveis, positfilter) && um_de(niveis, negatfilter), "levels");
    exige(NULL_MOVE >= 0 && NULL_MOVE <= 2, "NULL_MOVE");
    exige(Temperamento >= 1 && Temperamento <= 3, "Temperamento");
    exige(agres >= 0 && agres <= 9 && agresprxrei >= 0 && agresprxrei <= 9, "agres");
    exige(um_de(dez, agreschrei) && um_de(dez, roque_v), "agreschrei, roque_v");
    exige(um_de(dez, PM) && um_de(dez, MOB) && um_de(dez, MQ), "PM, MOB, MQ");
    exige(um_de(confiancas, empp), "empp");
}

// The lines of the input, as a reader of lines sees them.
inline std::vector<std::string> linhas(const std::uint8_t* dados, std::size_t tamanho) {
    std::vector<std::string> todas(1);
    for (std::size_t k = 0; k < tamanho; ++k) {
        if (dados[k] == '\n') {
            todas.emplace_back();
        } else {
            todas.back() += static_cast<char>(dados[k]);
        }
    }
    return todas;
}

}  // namespace fuzz
