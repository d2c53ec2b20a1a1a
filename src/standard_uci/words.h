// Lines cut into words, and numbers in words, for every protocol spoken here.
#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ondrel::standard_uci {

using Words = std::vector<std::string>;

// Cut at white space of any kind and amount.
Words words_of(std::string_view line);

std::string joined(const Words& words, std::size_t first = 0);

// "<name> value <value>" in its two parts. Names may hold the word themselves, values do not.
std::pair<std::string, std::string> name_and_value(const Words& words);

std::string lower_case(std::string_view text);

// The whole word as a number; a number too big for the type is its biggest or smallest.
std::optional<std::int64_t> number_in(std::string_view word);

}  // namespace ondrel::standard_uci
