// Numeric rules that every score obeys.
#pragma once

#include <cmath>
#include <limits>

namespace ondrel {

// Natural logarithm of x / y in extended precision. A divisor of zero, which only a board without a king can
// bring here, gives what the division would: infinity or no number.
inline long double ln_da_razao(long double x, long double y) {
    if (y == 0) {
        return x == 0 ? std::numeric_limits<long double>::quiet_NaN() : std::numeric_limits<long double>::infinity();
    }
    return std::log(x / y);
}

// Cut toward zero. What no int can hold, and what is no number, becomes the lowest int.
inline int inteiro(long double x) {
    constexpr long double limite = 2147483648.0L;
    return x > -limite && x < limite ? static_cast<int>(x) : std::numeric_limits<int>::min();
}

}  // namespace ondrel
