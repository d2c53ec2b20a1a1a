// The options: what the reply to uci advertises, and how a setoption line is understood.
#pragma once

#include <array>
#include <string>

namespace plain {

extern const std::array<const char*, 33> option_lines;

// A line is told by single characters at fixed positions and tried against every option.
void set_option(const std::string& line);

}  // namespace plain
