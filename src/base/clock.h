// The one source of time. Its definition stands in an object of its own, so that a test can link another.
#pragma once

namespace ondrel {

// Milliseconds of real time since the start of the process.
int clock_ms();

}  // namespace ondrel
