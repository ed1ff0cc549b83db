#pragma once

#include <QtCore/QString>

#include <ORNHearingTestSDK/platform/URLSession.h>
#include <ORNHearingTestSDK/screens/ScreensExport.h>

namespace orn {

// What a host can tell its user about the service where the screens tell nothing, in their language; for an alert of
// the window, for example. The history has notices of its own. Any thread.

/// Of ORNSelectTypeDelegate::calibrationFailed.
ORN_SCREENS_EXPORT QString noticeOfCalibration(const Error& error);

/// Of UserProfile::registerUser, for a host that sends the profile again at its next start.
ORN_SCREENS_EXPORT QString noticeOfRegistration(const Error& error);

/// Of ORNHearingTestViewController::onSubmitted. A result that the host has kept can be submitted later.
ORN_SCREENS_EXPORT QString noticeOfSubmission(const Error& error, bool isKept);

}  // namespace orn
