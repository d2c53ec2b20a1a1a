// A clock that goes on by its readings: what a program does with it depends on nothing but the program. The profile of
// an optimised build is taken so, since with the real clock no two would be the same.
#include "base/clock.h"

namespace ondrel {

int clock_ms() {
    constexpr unsigned readings_of_a_millisecond = 64;
    static unsigned readings = 0;
    return static_cast<int>(++readings / readings_of_a_millisecond);
}

}  // namespace ondrel
