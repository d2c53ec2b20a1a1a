// One executable for both processes: started by a client it is the front, which starts it again as its worker.
#include "standard_uci/front.h"
#include "standard_uci/worker.h"

#include <cstring>

int main(int argc, char** argv) {
    constexpr int arguments_of_worker = 4;
    if (argc == arguments_of_worker && std::strcmp(argv[1], ondrel::standard_uci::worker_argument) == 0) {
        return ondrel::standard_uci::run_worker(argv[2], argv[3]);
    }
    return ondrel::standard_uci::run_front();
}
