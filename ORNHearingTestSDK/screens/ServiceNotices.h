#pragma once

#include <QtCore/QString>

#include <ORNHearingTestSDK/platform/URLSession.h>
#include <ORNHearingTestSDK/screens/ScreensExport.h>

namespace orn {

// What a host can say of the service to its user where the screens say nothing, in their language; for an alert of the
// window, say. The history speaks for itself. Any thread.

/// Of ORNSelectTypeDelegate::calibrationFailed.
ORN_SCREENS_EXPORT QString noticeOfCalibration(const Error& error);

/// Of UserProfile::registerUser, for a host that sends the profile again at its next start.
ORN_SCREENS_EXPORT QString noticeOfRegistration(const Error& error);

/// Of ORNHearingTestViewController::onSubmitted. A result that the host has kept can be submitted later.
ORN_SCREENS_EXPORT QString noticeOfSubmission(const Error& error, bool isKept);

}  // namespace orn
