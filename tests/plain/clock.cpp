// The clock of the plain engine: real time.
#include <chrono>

#include "plain/state.h"

namespace plain {

int clock_reading() {
    using std::chrono::steady_clock;
    static const auto start = steady_clock::now();
    return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - start).count());
}

}  // namespace plain
