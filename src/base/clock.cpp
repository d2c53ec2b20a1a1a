#include "base/clock.h"

#include <chrono>

namespace ondrel {
namespace {

const std::chrono::steady_clock::time_point start_of_process = std::chrono::steady_clock::now();

}  // namespace

int clock_ms() {
    using std::chrono::duration_cast;
    using std::chrono::milliseconds;
    return static_cast<int>(duration_cast<milliseconds>(std::chrono::steady_clock::now() - start_of_process).count());
}

}  // namespace ondrel
