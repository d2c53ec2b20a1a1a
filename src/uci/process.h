// The state of a process that begins. Called by main, and by the bench, the tests and the fuzzers, which hold one
// conversation after the other in one process.
#pragma once

namespace ondrel {

// Puts every setting, table, memory and stored value back to what it is before the first line is read.
void begin_process();

}  // namespace ondrel
