#include <ORNHearingTestSDK/common/Version.h>

const double ORNHearingTestSDKVersionNumber = 1.0;
const unsigned char ORNHearingTestSDKVersionString[] = "ORNHearingTestSDK 1.0";
