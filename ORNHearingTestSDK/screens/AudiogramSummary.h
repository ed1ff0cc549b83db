#pragma once

#include <QtCore/QString>

#include <ORNHearingTestSDK/common/EarResult.h>

namespace orn {

/// One ear of an audiogram in words, for screen readers; entries without a result are left out.
QString audiogramSummary(const EarResult& ear, bool isLeft);

/// "左耳" or "右耳".
QString earName(bool isLeft);

}  // namespace orn
