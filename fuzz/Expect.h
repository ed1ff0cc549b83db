#pragma once

#include <cstdio>
#include <cstdlib>

namespace orn::fuzz {

/// Aborts the program, by which the fuzzer notices a fault, unless the condition holds.
inline void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

}  // namespace orn::fuzz
