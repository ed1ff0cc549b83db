#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>

#include <set>

#include <QtGui/QFontMetricsF>
#include <gtest/gtest.h>

#include "BoardPixels.h"

namespace orn {
namespace {

using ORNScreenUtilsTest = BoardTest;

TEST_F(ORNScreenUtilsTest, ImagesSuitThePixelRatioAndKeepTheirSize) {
  for (const auto& [name, width] : {std::pair("111", 60),
                                    {"222", 60},
                                    {"bg", 540},
                                    {"icon_male", 80},
                                    {"icon_female", 80},
                                    {"shuiyin", 696},
                                    {"hearing_roger_bg_default", 150},
                                    {"hearing_roger_bg_pressed", 150}}) {
    for (const auto& [ratio, pixels] : {std::pair(0.5, 1), {1.0, 1}, {1.25, 2}, {2.0, 2}, {3.0, 3}, {1e9, 3}}) {
      const QImage image = ORNScreenUtils::imageResource(name, ratio);
      EXPECT_EQ(image.width(), width * pixels) << name << " at " << ratio;
      EXPECT_EQ(image.deviceIndependentSize().width(), width);
    }
  }
  for (const char* missing : {"nothing", "../image.bundle/bg", ""}) {
    EXPECT_TRUE(ORNScreenUtils::imageResource(missing, 1).isNull()) << missing;
  }
}

TEST_F(ORNScreenUtilsTest, ChineseCharactersHaveGlyphsOfTheirOwn) {
  std::set<std::vector<uchar>> glyphs;
  for (const char* text : {"左", "右", "听", "到", "了", " "}) {
    const QImage image = paper({40, 40}, {{{5, 5, 30, 30}, text, 20, Qt::AlignLeft}});
    glyphs.insert({image.constBits(), image.constBits() + image.sizeInBytes()});
  }
  EXPECT_EQ(glyphs.size(), 6U) << "is a Chinese font installed?";
}

TEST_F(ORNScreenUtilsTest, ThumbnailsAreFittedAndCentred) {
  struct Row {
    QSize image;
    QRect drawn;
  };
  for (const auto& [size, drawn] : {Row{{200, 100}, {0, 25, 100, 50}}, Row{{100, 200}, {25, 0, 50, 100}}}) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    const auto thumbnail = ORNScreenUtils::thumbnailWithImageWithoutScale(image, {100, 100});
    ASSERT_TRUE(thumbnail);
    EXPECT_EQ(thumbnail->size(), QSize(100, 100));
    for (const QPoint point : {drawn.topLeft(), drawn.bottomRight()}) EXPECT_EQ(thumbnail->pixelColor(point), Qt::red);
    EXPECT_EQ(thumbnail->pixelColor(drawn.topLeft() - QPoint(drawn.x() / 25, drawn.y() / 25)).alpha(), 0);
  }
  EXPECT_FALSE(ORNScreenUtils::thumbnailWithImageWithoutScale({}, {100, 100}));
  EXPECT_FALSE(ORNScreenUtils::thumbnailWithImageWithoutScale(QImage(1, 1, QImage::Format_RGB32), {0, 100}));
}

TEST_F(ORNScreenUtilsTest, ColoursReadAsHexadecimalNumbers) {
  EXPECT_EQ(ORNScreenUtils::colorFromHexRGB("2fb791"), QColor(47, 183, 145));
  for (const auto& [text, color] : {std::pair("80000000", QColor(0, 0, 0, 128)),
                                    {" 0xFF2FB791", QColor(47, 183, 145)},
                                    {"", QColor(0, 0, 0, 0)},
                                    {"red", QColor(0, 0, 0, 0)},
                                    {"12z", QColor(0, 0, 18, 0)},
                                    {"123456789ab", QColor(255, 255, 255)}}) {
    EXPECT_EQ(ORNScreenUtils::colorFromHexARGB(text), color) << text;
  }
}

TEST_F(ORNScreenUtilsTest, TextsTakeTheSpaceThatTheyAreMeasuredAt) {
  const QFont font = ORNScreenUtils::systemFontOfSize(12);
  const double line = QFontMetricsF(font).lineSpacing();
  const auto size = [&](const QString& text, double width, double kern = 0) {
    return ORNScreenUtils::getAttributionHeightWithString(text, 15, kern, font, width);
  };
  EXPECT_EQ(size("", 100), QSizeF(0, 0));
  EXPECT_NEAR(size("听力", 100).height(), line, 2);
  EXPECT_NEAR(size("听力\n检测", 100).height(), 2 * size("听力", 100).height() + 15, 0.1);
  EXPECT_EQ(size("听力检测听力检测", 50).height(), size("听力检测\n听力检测", 50).height());
  EXPECT_LE(size("听力检测听力检测", 50).width(), 50);
  EXPECT_NEAR(size("听力", 100, 3).width(), size("听力", 100).width() + 6, 0.1);

  auto text = ORNScreenUtils::getAttributedWithString("黑\n红", 15, 0, font);
  text.addColor(Qt::red, 2, 1);
  text.addColor(Qt::blue, 90, -5);
  QImage image = picture({60, 60}, 1);
  QPainter painter(&image);
  text.draw(painter, QRectF(0, 0, 60, 60), Qt::AlignHCenter);
  painter.end();
  for (const bool isSecond : {false, true}) {
    const QImage half = image.copy(0, isSecond ? 30 : 0, 60, 30);
    int red = 0, black = 0;
    for (int y = 0; y < 30; ++y) {
      for (const int x : placesOf(half, Qt::white, true, y)) EXPECT_GE(x, 0);
      for (int x = 0; x < 60; ++x) {
        const QColor color = half.pixelColor(x, y);
        red += color.red() == 255 && color.green() < 100;
        black += color.red() < 100;
      }
    }
    EXPECT_EQ(red > 0, isSecond);
    EXPECT_EQ(black > 0, !isSecond);
  }
}

}  // namespace
}  // namespace orn
