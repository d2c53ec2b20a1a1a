#include "base/clock.h"

#include <chrono>

namespace ondrel {
namespace {

const std::chrono::steady_clock::time_point partida = std::chrono::steady_clock::now();

}  // namespace

int relogio() {
    using std::chrono::duration_cast;
    using std::chrono::milliseconds;
    return static_cast<int>(duration_cast<milliseconds>(std::chrono::steady_clock::now() - partida).count());
}

}  // namespace ondrel
