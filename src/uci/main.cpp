// ondrel: the engine behind its own front end, on standard input and output.
#include "uci/command_loop.h"
#include "uci/output.h"
#include "uci/process.h"

int main() {
    ondrel::begin_process();
    ondrel::open_output();
    ondrel::run_command_loop();
    return 0;
}
