#pragma once

#include <QtCore/QString>

#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

// What the application says of the service where the library says nothing. The history speaks for itself.

QString noticeOfCalibration(const Error& error);
QString noticeOfRegistration(const Error& error);

/// A result that is kept can be submitted later.
QString noticeOfSubmission(const Error& error, bool isKept);

/// Whether a host is set that a request can be sent to.
bool isServiceHostSet();

}  // namespace orn
