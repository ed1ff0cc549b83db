#pragma once

#include <QtGui/QPainter>
#include <gtest/gtest.h>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>
#include <ORNHearingTestSDK/screens/ChessboardBase.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>

namespace orn {

inline const std::vector<std::string> kFour{"500hz", "1000hz", "2000hz", "4000hz"};

/// Boards on a simulated machine, and what their pixels show. Points are in the board's own coordinates.
struct BoardTest : testing::Test {
  BoardTest() { Platform::setCurrent(machine.platform()); }
  ~BoardTest() override { Platform::clearCurrent(); }

  static QImage paper(QSize size, int ratio = 1) {
    QImage image(size * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    return image;
  }

  static QImage draw(ChessboardBase& board, int ratio = 1) {
    QImage image = paper(board.size(), ratio);
    QPainter painter(&image);
    board.drawRect(painter);
    return image;
  }

  /// Writes a text aligned to the top of a rectangle.
  static void write(QImage& image, const QRectF& rect, const QString& text, double size, Qt::Alignment alignment,
                    QColor color = Qt::black, bool isSmooth = true) {
    QPainter painter(&image);
    QFont font = ORNScreenUtils::systemFontOfSize(size);
    if (!isSmooth) font.setStyleStrategy(QFont::NoAntialias);
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(rect, Qt::AlignTop | Qt::TextDontClip | Qt::TextWordWrap | alignment, text);
  }

  /// The colour of the pixel whose upper left corner is at a point.
  static QColor at(const QImage& image, double x, double y) {
    return image.pixelColor((QPointF(x, y) * image.devicePixelRatio() - QPointF(0.499, 0.499)).toPoint());
  }

  /// The places where a line of pixels, horizontal or vertical, has a colour.
  static std::vector<int> placesOf(const QImage& image, QColor color, bool isLevel, int line) {
    std::vector<int> places;
    for (int i = 0; i < (isLevel ? image.width() : image.height()); ++i) {
      if ((isLevel ? image.pixelColor(i, line) : image.pixelColor(line, i)) == color) places.push_back(i);
    }
    return places;
  }

  SimulatedPlatform machine;
};

}  // namespace orn
