#pragma once

#include <ORNHearingTestSDK/platform/Export.h>

/// The keys of a stored test, for hosts that read the service's dictionaries themselves.
#ifdef __cplusplus
extern "C" {
#endif

ORN_EXPORT extern const char* const kORNListenTestCorrectName;
ORN_EXPORT extern const char* const kORNListenTestId;
ORN_EXPORT extern const char* const kORNListenTestLeft1000hz;
ORN_EXPORT extern const char* const kORNListenTestOrdinaryEmail;
ORN_EXPORT extern const char* const kORNListenTestPersonID;
ORN_EXPORT extern const char* const kORNListenTestLeftResultD;
ORN_EXPORT extern const char* const kORNListenTestLeft125hz;
ORN_EXPORT extern const char* const kORNListenTestRight4000hz;
ORN_EXPORT extern const char* const kORNListenTestLeftScore;
ORN_EXPORT extern const char* const kORNListenTestDiagnose;
ORN_EXPORT extern const char* const kORNListenTestScore;
ORN_EXPORT extern const char* const kORNListenTestOrdinaryUserID;
ORN_EXPORT extern const char* const kORNListenTestRightResult;
ORN_EXPORT extern const char* const kORNListenTestLeftResult;
ORN_EXPORT extern const char* const kORNListenTestLeft2000hz;
ORN_EXPORT extern const char* const kORNListenTestLeft250hz;
ORN_EXPORT extern const char* const kORNListenTestGrade;
ORN_EXPORT extern const char* const kORNListenTestRightScore;
ORN_EXPORT extern const char* const kORNListenTestRightResulD;
ORN_EXPORT extern const char* const kORNListenTestLeft500hz;
ORN_EXPORT extern const char* const kORNListenTestDeviceVolumeIOS;
ORN_EXPORT extern const char* const kORNListenTestRight8000hz;
ORN_EXPORT extern const char* const kORNListenTestRight500hz;
ORN_EXPORT extern const char* const kORNListenTestRight125hz;
ORN_EXPORT extern const char* const kORNListenTestNoise;
ORN_EXPORT extern const char* const kORNListenTestOrdinaryPhone;
ORN_EXPORT extern const char* const kORNListenTestRight2000hz;
ORN_EXPORT extern const char* const kORNListenTestCreateDate;
ORN_EXPORT extern const char* const kORNListenTestOrdinaryUserName;
ORN_EXPORT extern const char* const kORNListenTestBase;
ORN_EXPORT extern const char* const kORNListenTestRight250hz;
ORN_EXPORT extern const char* const kORNListenTestCorrectModel;
ORN_EXPORT extern const char* const kORNListenTestPersonName;
ORN_EXPORT extern const char* const kORNListenTestRight1000hz;
ORN_EXPORT extern const char* const kORNListenTestCalibration;
ORN_EXPORT extern const char* const kORNListenTestLeft4000hz;
ORN_EXPORT extern const char* const kORNListenTestHeadset;
ORN_EXPORT extern const char* const kORNListenTestVersions;
ORN_EXPORT extern const char* const kORNListenTestLeft8000hz;

#ifdef __cplusplus
}
#endif
