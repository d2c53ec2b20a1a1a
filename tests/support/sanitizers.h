// Whether the test is built with the address sanitizer: all is several times slower then, and memory in use says
// nothing.
#pragma once

namespace tests {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool with_sanitizers = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool with_sanitizers = true;
#else
constexpr bool with_sanitizers = false;
#endif
#else
constexpr bool with_sanitizers = false;
#endif

}  // namespace tests
