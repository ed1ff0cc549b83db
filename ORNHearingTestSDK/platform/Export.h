#pragma once

// Every public header comes by here first. What follows the sentence stops the compiler before pages of other errors.
#if defined(__cplusplus) && __cplusplus < 202002L
#error "ORNHearingTestSDK needs C++20: compile with -std=c++20"
#include <ORNHearingTestSDK/needs-cxx20>
#endif

/// Marks what the shared library offers to its users; everything else stays hidden in it.
#define ORN_EXPORT __attribute__((visibility("default")))
