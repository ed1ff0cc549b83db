#pragma once

#include <ORNHearingTestSDK/platform/Export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Version of the library as a number and as a text.
ORN_EXPORT extern const double ORNHearingTestSDKVersionNumber;
ORN_EXPORT extern const unsigned char ORNHearingTestSDKVersionString[];

#ifdef __cplusplus
}
#endif
