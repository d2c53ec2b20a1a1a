// Whether the test is built with the address sanitizer: all is several times slower then, and memory in use says
// nothing.
#pragma once

namespace teste {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool com_sanitizers = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool com_sanitizers = true;
#else
constexpr bool com_sanitizers = false;
#endif
#else
constexpr bool com_sanitizers = false;
#endif

}  // namespace teste
