#pragma once

/// Marks what the shared library offers to its users; everything else stays hidden in it.
#define ORN_EXPORT __attribute__((visibility("default")))
