#pragma once

#include <vector>

#include <QtCore/QString>
#include <QtCore/Qt>

class QPainter;

namespace orn {

/// A text that hangs from `y` within `width` points from `x` on; it wraps between words and nothing of it is cut off.
struct BoardLabel {
  double x, y, width;
  QString text;
};

/// The size at which each of the labels fits into its width: that which is wanted, or a smaller one.
double fittingSize(const QPainter& painter, const std::vector<BoardLabel>& labels, double wantedSize);

/// Height of a line of the system's font.
double lineHeight(const QPainter& painter, double size);

/// Draws the labels in the system's font and the painter's colour, all at the size that fits them. Labels with a
/// coordinate that is not finite are left out, and all where no letter would be as high as a point.
void drawLabels(QPainter& painter, const std::vector<BoardLabel>& labels, double wantedSize, Qt::Alignment alignment,
                bool isSmooth = true);

}  // namespace orn
