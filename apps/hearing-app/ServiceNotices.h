#pragma once

#include <optional>
#include <string>

#include <QtCore/QString>

#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

// What the application says of the service where the library says nothing. The history speaks for itself.

/// Nothing where all is well, or where somebody else says it.
std::optional<QString> noticeOfReply(const std::string& url, const URLReply& reply);

QString noticeOfRegistration(const Error& error);

/// Nothing where a host is set that a request can be sent to.
std::optional<QString> noticeOfMissingHost();

/// Whether a text can be the service's host, as host or host:port.
bool isServiceHost(const std::string& text);

/// Whether a reply may have left a calibration in the cache.
bool isCalibrationReply(const std::string& url);

}  // namespace orn
