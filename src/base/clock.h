// The one source of time.
#pragma once

namespace ondrel {

// Milliseconds of real time since the start of the process.
int relogio();

}  // namespace ondrel
