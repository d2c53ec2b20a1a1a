#include "standard_uci/words.h"

#include <algorithm>
#include <cctype>
#include <limits>

namespace ondrel::standard_uci {
namespace {

constexpr std::string_view white_space(" \t\r\n\v\f\0", 7);

}  // namespace

Words words_of(std::string_view line) {
    Words words;
    for (auto from = line.find_first_not_of(white_space); from != std::string_view::npos;) {
        const auto to = std::min(line.find_first_of(white_space, from), line.size());
        words.emplace_back(line.substr(from, to - from));
        from = line.find_first_not_of(white_space, to);
    }
    return words;
}

std::string joined(const Words& words, std::size_t first) {
    std::string text;
    for (std::size_t k = first; k < words.size(); ++k) {
        text += (k > first ? " " : "") + words[k];
    }
    return text;
}

std::pair<std::string, std::string> name_and_value(const Words& words) {
    const auto last = std::find(words.rbegin(), words.rend(), "value");
    if (last == words.rend()) {
        return {joined(words), ""};
    }
    return {joined(Words(words.begin(), std::prev(last.base()))), joined(Words(last.base(), words.end()))};
}

std::string lower_case(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](unsigned char x) { return static_cast<char>(std::tolower(x)); });
    return result;
}

std::optional<std::int64_t> number_in(std::string_view word) {
    using Limits = std::numeric_limits<std::int64_t>;
    const char* const end = word.data() + word.size();
    std::int64_t number = 0;
    const auto read = std::from_chars(word.data(), end, number);
    if (read.ptr != end || word.empty() || read.ec == std::errc::invalid_argument) {
        return std::nullopt;
    }
    if (read.ec == std::errc::result_out_of_range) {
        return word[0] == '-' ? Limits::min() : Limits::max();
    }
    return number;
}

}  // namespace ondrel::standard_uci
