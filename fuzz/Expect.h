#pragma once

#include <cstdio>
#include <cstdlib>

namespace orn::fuzz {

/// Ends the program, which is how a fuzzer is told of a fault, unless what must hold does.
inline void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

}  // namespace orn::fuzz
