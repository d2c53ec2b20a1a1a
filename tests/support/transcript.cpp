#include "support/transcript.h"

#include <string_view>

namespace tests {

namespace {

// Takes a field and its value out of the line; tells whether it was there.
bool take_out_field(std::string& line, std::string_view name) {
    const std::string field = ' ' + std::string(name) + ' ';
    const auto begin = line.find(field);
    if (begin == std::string::npos) {
        return false;
    }
    const auto end = line.find(' ', begin + field.size());
    line.erase(begin, end == std::string::npos ? end : end - begin);
    return true;
}

}  // namespace

std::vector<std::string> without_clock(const std::vector<std::string>& lines) {
    std::vector<std::string> remaining;
    for (std::string line : lines) {
        if (!line.starts_with("info nps ")) {
            take_out_field(line, "time");
            remaining.push_back(line);
        }
    }
    return remaining;
}

std::vector<std::string> without_depths_reached(const std::vector<std::string>& lines) {
    std::vector<std::string> remaining = without_clock(lines);
    for (std::string& line : remaining) {
        if (line.starts_with("info ") && !take_out_field(line, "seldepth")) {
            take_out_field(line, "depth");
        }
    }
    return remaining;
}

}  // namespace tests
