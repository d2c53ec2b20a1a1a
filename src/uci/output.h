// Standard output: whole lines only, each one insertion and one flush.
#pragma once

#include <string_view>

namespace ondrel {

// Makes every insertion a flush, and a line end the same byte on every system; called once, before anything is written.
void open_output();

// Writes the text and a line end.
void write_line(std::string_view text);

}  // namespace ondrel
