#include "standard_uci/options.h"

#include "standard_uci/engine_port.h"

#include <algorithm>
#include <array>

namespace ondrel::standard_uci {
namespace {

// Hash and Threads have one value each: clients set them whether or not there is a choice.
constexpr std::array<std::string_view, 8> own_options{
    "Hash type spin default 16 min 16 max 16",
    "Threads type spin default 1 min 1 max 1",
    "Ponder type check default false",
    "MultiPV type spin default 1 min 1 max 10",
    "Move Overhead type spin default 10 min 0 max 5000",
    "Clock type combo default full var full var engine",
    "UCI_Chess960 type check default false",
    "UCI_AnalyseMode type check default false",
};

// What go says in their place, and what is settled before the engine hears of it.
constexpr std::array<std::string_view, 3> not_passed_on{"Deep", "Time control", "UCI_Chess960"};

constexpr std::string_view own_book = "Own book";

// A book that answers at once is not what a client expects that has not asked for it.
std::string with_book_off(const std::string& announcement) {
    return announcement.starts_with(own_book) ? "Own book type check default false" : announcement;
}

OptionKind kind_of(const std::string& word) {
    if (word == "spin") {
        return OptionKind::spin;
    }
    if (word == "combo") {
        return OptionKind::combo;
    }
    return word == "button" ? OptionKind::button : OptionKind::check;
}

// Reads "<name> type <kind> default <value> min <n> max <n> var <choice> ...".
Option option_from(std::string announcement) {
    const Words words = words_of(announcement);
    const auto type = std::ranges::find(words, "type");
    Option option;
    option.name = joined(Words(words.begin(), type));
    option.kind = kind_of(*std::next(type));
    for (auto word = std::next(type, 2); word != words.end(); word += 2) {
        const std::string& value = *std::next(word);
        if (*word == "default") {
            option.value = value;
        } else if (*word == "var") {
            option.choices.push_back(value);
        } else {
            (*word == "min" ? option.least : option.most) = number_in(value).value_or(0);
        }
    }
    option.announcement = std::move(announcement);
    return option;
}

// The value as the option keeps it; empty if it is none for it.
std::string accepted(const Option& option, const std::string& value) {
    const std::string small = lower_case(value);
    switch (option.kind) {
        case OptionKind::check: return small == "true" || small == "false" ? small : "";
        case OptionKind::spin: {
            const auto number = number_in(value);
            return number && *number >= option.least && *number <= option.most ? std::to_string(*number) : "";
        }
        case OptionKind::combo: {
            const auto found =
                std::ranges::find_if(option.choices, [&](const auto& x) { return lower_case(x) == small; });
            return found == option.choices.end() ? "" : *found;
        }
        case OptionKind::button: break;
    }
    return "";
}

std::string range_of(const Option& option) {
    switch (option.kind) {
        case OptionKind::check: return "true or false";
        case OptionKind::spin: return std::to_string(option.least) + " to " + std::to_string(option.most);
        default: return joined(option.choices);
    }
}

}  // namespace

Options::Options() {
    for (const std::string_view announcement : own_options) {
        add(std::string(announcement), false);
    }
    for (const EngineOption& x : engine_options()) {
        const bool passed_on = std::ranges::none_of(not_passed_on, [&](std::string_view name) {
            return x.announcement.starts_with(std::string(name) + " type ");
        });
        if (passed_on) {
            add(with_book_off(x.announcement), true);
        }
    }
}

void Options::add(std::string announcement, bool of_engine) {
    options_.push_back(option_from(std::move(announcement)));
    options_.back().of_engine = of_engine;
}

const Option* Options::set(const SetOption& wanted, std::string& fault) {
    const std::string name = lower_case(wanted.name);
    const auto option = std::ranges::find_if(options_, [&](const Option& x) { return lower_case(x.name) == name; });
    if (option == options_.end()) {
        fault = wanted.name.empty() ? "setoption: no name" : "setoption: no option '" + wanted.name + "'";
        return nullptr;
    }
    if (option->kind != OptionKind::button) {
        std::string taken = accepted(*option, wanted.value);
        if (taken.empty()) {
            fault = "setoption: '" + wanted.value + "' is no value of " + option->name + ": " + range_of(*option);
            return nullptr;
        }
        option->value = std::move(taken);
        option->was_set = true;
    }
    return &*option;
}

const std::string& Options::value(std::string_view name) const {
    return std::ranges::find(options_, name, &Option::name)->value;
}

bool Options::is_on(std::string_view name) const { return value(name) == "true"; }

std::int64_t Options::number(std::string_view name) const { return number_in(value(name)).value_or(0); }

}  // namespace ondrel::standard_uci
