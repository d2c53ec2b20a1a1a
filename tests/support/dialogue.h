// The conversation line by line: what the engine writes to each line, and how its state stands when it asks for the
// next one.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tests {

// A line for the engine; `on_request` runs when the engine asks for it, with all before it done.
struct Spoken {
    // cppcheck-suppress noExplicitConstructor; a text is a line
    Spoken(const char* text) : line(text) {}
    // cppcheck-suppress noExplicitConstructor; a text is a line
    Spoken(std::string text) : line(std::move(text)) {}
    Spoken(std::string text, std::function<void()> look) : line(std::move(text)), on_request(std::move(look)) {}

    std::string line;
    std::function<void()> on_request = [] {};
};

using Lines = std::vector<std::string>;

// Holds the conversation and gives for each line that the engine read what it wrote before it asked for the next one.
// The last item also holds what it wrote after the end of input. Lines behind a quit have no item.
std::vector<Lines> dialogue(const std::vector<Spoken>& spoken);

// Runs `routine` with the text as standard input; what it writes comes back.
std::string with_input(std::string_view input, const std::function<void()>& routine);

// How many lines begin so.
int count_starting(const Lines& lines, std::string_view start);
// How many hold the text.
int count_holding(const Lines& lines, std::string_view text);

}  // namespace tests
