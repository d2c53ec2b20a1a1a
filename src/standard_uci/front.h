// The front: the process that the client talks to. It lives in one event loop between the client, the worker and the
// clock, and leaves the decisions to the session.
#pragma once

namespace ondrel::standard_uci {

// The argument by which the executable knows that it is to be a worker.
constexpr const char* worker_argument = "--worker-of";

// Runs until the client says quit or its input ends.
int run_front();

}  // namespace ondrel::standard_uci
