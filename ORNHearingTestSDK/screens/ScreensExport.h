#pragma once

#include <ORNHearingTestSDK/platform/Export.h>

/// Marks what the screens library offers to its users; everything else stays hidden in it.
#define ORN_SCREENS_EXPORT __attribute__((visibility("default")))
