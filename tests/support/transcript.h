// What the engine wrote, without what is the clock's.
#pragma once

#include <string>
#include <vector>

namespace tests {

// The lines without their field "time N", and without the "info nps" lines.
std::vector<std::string> without_clock(const std::vector<std::string>& lines);

// The same without the depths that the process has reached: the field "seldepth N" of every line, and the depth of the
// final line of a search, the only one without that field.
std::vector<std::string> without_depths_reached(const std::vector<std::string>& lines);

}  // namespace tests
