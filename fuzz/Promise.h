// What a fuzzer holds the program to.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace fuzz {

// Ends the run with the promise in words where it was not held.
inline void Require(bool held, std::string_view promise, std::string_view where = {}) {
  if (held) return;
  std::fprintf(stderr, "Broken promise: %.*s %.*s\n", static_cast<int>(promise.size()), promise.data(),
               static_cast<int>(where.size()), where.data());
  std::abort();
}

}  // namespace fuzz
