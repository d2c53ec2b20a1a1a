// What the fuzzers share: the engine as it is when a process begins, the lines of an input, and what must hold whatever
// they say.
#pragma once

#include "base/options.h"
#include "uci/process.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

// Ends the run with a word, for libFuzzer to keep the input.
[[noreturn]] inline void fail(std::string_view what) {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(what.size()), what.data());
    std::abort();
}

inline void require(bool holds, std::string_view what) {
    if (!holds) {
        fail(what);
    }
}

// A setting that no option line can have given would be read by rules that know nothing of it.
inline void check_settings() {
    using ondrel::options;
    constexpr std::array digits_and_ten{0, 1, 2, 3, 4, 5, 6, 7, 8, 10};
    constexpr std::array filter_levels{0.0F, 10.0F, 33.0F, 32.0F, 50.0F, 90.0F, 110.0F, 100.0F};
    constexpr std::array confidences{10, 7, 5, 3, 0, -3, -5, -7, -10};
    const auto one_of = [](const auto& values, auto x) {
        return std::ranges::any_of(values, [x](auto v) { return static_cast<decltype(x)>(v) == x; });
    };
    require(one_of(std::array{5, 1, 2, 3}, options.CPU), "CPU");
    require(one_of(std::array{0, 1, 3, 5, 7, 9, 11, 13, 15, 17}, options.deepp), "deepp");
    require(options.Tu > 0 && one_of(digits_and_ten, options.Tu), "Tu");
    for (const int flag :
         {int{options.TC}, int{options.SEARCH_EE}, int{options.PVS}, int{options.TURBO}, int{options.VERTICAL_filt},
          int{options.LMR}, options.matrix, int{options.EXTRA_EVALL}, int{options.extradef}, int{options.OwnBook},
          int{options.HASH1}, int{options.HASHf}, int{options.FULL_inf}, int{options.CHESS_960}}) {
        require(flag == 0 || flag == 1, "a flag");
    }
    require(options.Positive_filterp >= 0 && options.Positive_filterp <= 3, "Positive_filterp");
    require(options.Negative_filterp >= 0 && options.Negative_filterp <= 3, "Negative_filterp");
    require(one_of(filter_levels, options.positfilter) && one_of(filter_levels, options.negatfilter), "levels");
    require(options.NULL_MOVE >= 0 && options.NULL_MOVE <= 2, "NULL_MOVE");
    require(options.Temperamento >= 1 && options.Temperamento <= 3, "Temperamento");
    require(options.agres >= 0 && options.agres <= 9, "agres");
    require(options.agresprxrei >= 0 && options.agresprxrei <= 9, "agresprxrei");
    require(one_of(digits_and_ten, options.agreschrei), "agreschrei");
    require(one_of(digits_and_ten, options.roque_v), "roque_v");
    require(one_of(digits_and_ten, options.PM), "PM");
    require(one_of(digits_and_ten, options.MOB), "MOB");
    require(one_of(digits_and_ten, options.MQ), "MQ");
    require(one_of(confidences, options.empp), "empp");
}

// The lines of the input, as a reader of lines sees them.
inline std::vector<std::string> lines_of(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> lines(1);
    for (std::size_t k = 0; k < size; ++k) {
        if (data[k] == '\n') {
            lines.emplace_back();
        } else {
            lines.back() += static_cast<char>(data[k]);
        }
    }
    return lines;
}

}  // namespace fuzz
