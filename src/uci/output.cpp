#include "uci/output.h"

#include <iostream>
#include <string>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <cstdio>
#endif

namespace ondrel {
namespace {

// The same bytes on every system: Windows would put a carriage return before each line end, and end the input at Ctrl-Z.
void pass_bytes_as_they_are() {
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
#endif
}

}  // namespace

void open_output() {
    pass_bytes_as_they_are();
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
