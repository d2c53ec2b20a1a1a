#include "uci/output.h"

#include <iostream>
#include <string>

namespace ondrel {

void open_output() {
    std::ios::sync_with_stdio(false);
    std::cin.tie(nullptr);
    std::cout.setf(std::ios::unitbuf);
}

void write_line(std::string_view text) {
    std::string line(text);
    line += '\n';
    std::cout << line;
}

}  // namespace ondrel
