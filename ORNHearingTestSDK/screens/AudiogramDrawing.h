#pragma once

#include <QtCore/QSize>

#include <ORNHearingTestSDK/common/EarResult.h>

class QPainter;

namespace orn {

/// Draws the audiogram of both ears from the painter's origin on, so many points large.
void drawAudiogram(QPainter& painter, QSize size, const EarResult& left, const EarResult& right);

}  // namespace orn
