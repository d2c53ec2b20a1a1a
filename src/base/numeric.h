// Numeric rules that every score obeys. Each holds for any argument: none divides by zero, none casts out of range.
#pragma once

#include <cfloat>
#include <cmath>
#include <limits>

namespace ondrel {

// Whole expressions are summed in long double and rounded once. Neither double nor a pair of doubles will do: of the
// same sum they can store another float.
static_assert(
    LDBL_MANT_DIG == 64 || LDBL_MANT_DIG == 113,
    "Ondrel's scores need a long double of 64 or 113 significant bits: this compiler (or -mlong-double-64) has "
    "another one");
static_assert(FLT_EVAL_METHOD == 0,
              "Ondrel's scores need float and double computed as such: on 32-bit x86 add -msse2 -mfpmath=sse");

// x / y in extended precision. A divisor of zero, which only a board without a king can bring here, gives what the
// division would: an infinity of the dividend's sign, or no number.
inline long double ratio(long double x, long double y) {
    if (y != 0) {
        return x / y;
    }
    if (x == 0) {
        return std::numeric_limits<long double>::quiet_NaN();
    }
    return std::copysign(std::numeric_limits<long double>::infinity(), x);
}

// Natural logarithm of x / y in extended precision; no number where the ratio is negative or none.
inline long double log_of_ratio(long double x, long double y) { return std::log(ratio(x, y)); }

// Cut toward zero. What no int can hold, and what is no number, becomes the lowest int.
inline int to_int(long double x) {
    constexpr long double limit = 2147483648.0L;
    return x > -limit && x < limit ? static_cast<int>(x) : std::numeric_limits<int>::min();
}

}  // namespace ondrel
