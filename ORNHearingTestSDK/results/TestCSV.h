#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/Export.h>
#include <ORNHearingTestSDK/results/FinishedTest.h>

namespace orn {

/// A finished test as CSV by RFC 4180, in UTF-8: a line of names, then a line for each threshold, the right ear's
/// first, in ascending order of frequency. The end of the test is in UTC; a threshold that was not measured is left
/// empty.
///
///     ended,device,level_verification,ear,frequency_hz,threshold_db_hl,ear_loss_db
///     2026-03-05T09:30:00Z,1,,right,1000,35,27
///
/// Reads nothing of the platform. Any thread.
ORN_EXPORT std::string csvOf(const FinishedTest& test);

}  // namespace orn
