#include "standard_uci/commands.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

namespace ondrel::standard_uci {
namespace {

constexpr std::array<std::pair<std::string_view, Verb>, 11> verbs{{
    {"uci", Verb::uci},
    {"debug", Verb::debug},
    {"isready", Verb::isready},
    {"setoption", Verb::setoption},
    {"register", Verb::registration},
    {"ucinewgame", Verb::ucinewgame},
    {"position", Verb::position},
    {"go", Verb::go},
    {"stop", Verb::stop},
    {"ponderhit", Verb::ponderhit},
    {"quit", Verb::quit},
}};

std::optional<Verb> verb_of(std::string_view word) {
    const auto* const found = std::ranges::find(verbs, word, &std::pair<std::string_view, Verb>::first);
    return found == verbs.end() ? std::nullopt : std::optional(found->second);
}

using Limit = std::optional<std::int64_t> GoLimits::*;

constexpr std::array<std::pair<std::string_view, Limit>, 9> limits_with_number{{
    {"wtime", &GoLimits::wtime},
    {"btime", &GoLimits::btime},
    {"winc", &GoLimits::winc},
    {"binc", &GoLimits::binc},
    {"movestogo", &GoLimits::movestogo},
    {"movetime", &GoLimits::movetime},
    {"nodes", &GoLimits::nodes},
    {"depth", &GoLimits::depth},
    {"mate", &GoLimits::mate},
}};

Limit limit_of(std::string_view word) {
    const auto* const found = std::ranges::find(limits_with_number, word, &std::pair<std::string_view, Limit>::first);
    return found == limits_with_number.end() ? nullptr : found->second;
}

bool looks_like_a_move(std::string_view word) {
    const auto between = [&](std::size_t k, char low, char high) { return word[k] >= low && word[k] <= high; };
    return (word.size() == 4 || word.size() == 5) && between(0, 'a', 'h') && between(1, '1', '8') &&
           between(2, 'a', 'h') && between(3, '1', '8');
}

// Takes the number behind the word at k, if there is one, and moves k on.
void take_number(GoLimits& limits, const Words& words, std::size_t& k, Limit limit) {
    const auto number = k + 1 < words.size() ? number_in(words[k + 1]) : std::nullopt;
    if (!number) {
        limits.faults.push_back("go: no number behind '" + words[k] + "'");
        return;
    }
    limits.*limit = number;
    ++k;
}

}  // namespace

std::optional<Command> read_command(std::string_view line) {
    Words words = words_of(line);
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (const auto verb = verb_of(*word)) {
            return Command{*verb, Words(std::next(word), words.end())};
        }
    }
    return std::nullopt;
}

SetOption read_setoption(const Words& words) {
    const auto name = std::ranges::find(words, "name");
    if (name == words.end()) {
        return {};
    }
    SetOption option;
    std::tie(option.name, option.value) = name_and_value(Words(std::next(name), words.end()));
    return option;
}

PositionWords read_position(const Words& words) {
    const auto is_start = [](const std::string& x) { return x == "startpos" || x == "fen"; };
    const auto start = std::ranges::find_if(words, is_start);
    const auto moves = std::find(start, words.end(), "moves");
    PositionWords position;
    if (start == words.end()) {
        position.fault = words.empty() ? "position: neither startpos nor fen"
                                       : "position: neither startpos nor fen, but '" + words[0] + "'";
        return position;
    }
    position.from_start = *start == "startpos";
    if (!position.from_start) {
        position.fen.assign(std::next(start), moves);
    }
    if (moves != words.end()) {
        position.moves.assign(std::next(moves), words.end());
    }
    return position;
}

GoLimits read_go(const Words& words) {
    GoLimits limits;
    for (std::size_t k = 0; k < words.size(); ++k) {
        if (const Limit limit = limit_of(words[k]); limit != nullptr) {
            take_number(limits, words, k, limit);
        } else if (words[k] == "infinite") {
            limits.infinite = true;
        } else if (words[k] == "ponder") {
            limits.ponder = true;
        } else if (words[k] == "searchmoves") {
            for (; k + 1 < words.size() && looks_like_a_move(words[k + 1]); ++k) {
                limits.searchmoves.push_back(words[k + 1]);
            }
        }
    }
    return limits;
}

}  // namespace ondrel::standard_uci
