// The engine's clock, for tests: it counts its own readings instead of time, and reading k gives k steps. The time
// limits of a search are then the same on every machine. The step in milliseconds is taken from the environment.
#include <cstdlib>

#include "base/clock.h"

namespace ondrel {

int clock_ms() {
    static const int step = [] {
        const char* const text = std::getenv("ONDREL_CLOCK_STEP");
        return text != nullptr ? std::atoi(text) : 1;
    }();
    static int reading = 0;
    ++reading;
    return static_cast<int>(static_cast<unsigned>(reading) * static_cast<unsigned>(step));
}

}  // namespace ondrel
