#pragma once

#include <vector>

#include <QtCore/QLineF>

class QColor;
class QPainter;

namespace orn {

/// Draws level and upright lines as whole pixels at any pixel ratio: half a point wide, but never thinner than a pixel,
/// both ends included. Where two of them cross, the colour counts once. The painter may scale and move, no more.
void drawGridLines(QPainter& painter, const std::vector<QLineF>& lines, const QColor& color);

}  // namespace orn
