#pragma once

class QPainter;
class QRect;

namespace orn {

/// Stretches the library's watermark into a rectangle, in points; nothing happens where the image is missing.
void drawWatermark(QPainter& painter, const QRect& rect);

}  // namespace orn
