#pragma once

#include <string>
#include <vector>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <gtest/gtest.h>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/PosixFileManager.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>
#include <ORNHearingTestSDK/screens/ChessboardBase.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>

namespace orn {

inline const std::vector<std::string> kFour{"500hz", "1000hz", "2000hz", "4000hz"};

/// A library whose bundles have been lost.
struct NoBundles : PosixFileManager {
  std::string documentsDirectory() const override { return "/nowhere"; }
  std::optional<std::string> resourceBundle(const std::string&) const override { return std::nullopt; }
};

/// Boards on a simulated machine, and what their pixels show. Points are in the board's own coordinates.
class BoardTest : public testing::Test {
 protected:
  struct Text {
    QRectF rect;
    QString text;
    double size;
    Qt::Alignment alignment;
    QColor color = Qt::black;
    bool isSmooth = true;
  };

  BoardTest() { Platform::setCurrent(machine_.platform()); }
  ~BoardTest() override { Platform::clearCurrent(); }

  void loseBundles() {
    Platform platform = machine_.platform();
    platform.fileManager = std::make_shared<NoBundles>();
    Platform::setCurrent(platform);
  }

  static QImage picture(QSize size, int ratio) {
    QImage image(size * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    return image;
  }

  static QImage draw(ChessboardBase& board, int ratio = 1) {
    QImage image = picture(board.size(), ratio);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    board.drawRect(painter);
    return image;
  }

  /// White paper with these texts, each hanging from the top of its rectangle.
  static QImage paper(QSize size, const std::vector<Text>& texts, int ratio = 1) {
    QImage image = picture(size, ratio);
    QPainter painter(&image);
    for (const Text& text : texts) {
      QFont font = ORNScreenUtils::systemFontOfSize(text.size);
      if (!text.isSmooth) font.setStyleStrategy(QFont::NoAntialias);
      painter.setFont(font);
      painter.setPen(text.color);
      painter.drawText(text.rect, Qt::AlignTop | Qt::TextDontClip | Qt::TextWordWrap | text.alignment, text.text);
    }
    return image;
  }

  /// The colour of the pixel whose upper left corner stands at a point.
  static QColor at(const QImage& image, double x, double y) {
    const double ratio = image.devicePixelRatio();
    return image.pixelColor(static_cast<int>(x * ratio), static_cast<int>(y * ratio));
  }

  /// Where a line of pixels, level or upright, has a colour.
  static std::vector<int> placesOf(const QImage& image, QColor color, bool isLevel, int line) {
    std::vector<int> places;
    for (int i = 0; i < (isLevel ? image.width() : image.height()); ++i) {
      if ((isLevel ? image.pixelColor(i, line) : image.pixelColor(line, i)) == color) places.push_back(i);
    }
    return places;
  }

  SimulatedPlatform machine_;
};

}  // namespace orn
