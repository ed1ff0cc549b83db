#include <set>

#include "BoardPixels.h"

namespace orn {
namespace {

using ORNScreenUtilsTest = BoardTest;

TEST_F(ORNScreenUtilsTest, ImagesSuitThePixelRatioAndKeepTheirSize) {
  for (const auto& [name, width] : {std::pair("111", 60),
                                    {"222", 60},
                                    {"bg", 540},
                                    {"hearing_roger_bg_default", 150},
                                    {"hearing_roger_bg_pressed", 150},
                                    {"icon_female", 80},
                                    {"icon_male", 80},
                                    {"shuiyin", 696},
                                    {"nothing", 0},
                                    {"../image.bundle/bg", 0}}) {
    for (const auto& [ratio, pixels] : {std::pair(0.5, 1), {1.25, 2}, {1e9, 3}}) {
      const QImage image = ORNScreenUtils::imageResource(name, ratio);
      EXPECT_EQ(image.size().width(), width * pixels) << name << " at " << ratio;
      EXPECT_EQ(image.deviceIndependentSize().width(), width) << name << " at " << ratio;
    }
  }
  QImage image = paper({200, 100});
  image.fill(Qt::red);
  const auto thumbnail = ORNScreenUtils::thumbnailWithImageWithoutScale(image, {100, 100});
  ASSERT_TRUE(thumbnail);
  const auto drawn = placesOf(*thumbnail, Qt::red, false, 99);
  EXPECT_TRUE(drawn.front() == 25 && drawn.back() == 74 && thumbnail->pixelColor(99, 24).alpha() == 0);
  EXPECT_FALSE(ORNScreenUtils::thumbnailWithImageWithoutScale({}, {100, 100}));
  EXPECT_FALSE(ORNScreenUtils::thumbnailWithImageWithoutScale(image, {0, 100}));
}

TEST_F(ORNScreenUtilsTest, ColoursReadAsHexadecimalNumbers) {
  EXPECT_EQ(ORNScreenUtils::colorFromHexRGB("2fb791"), QColor(47, 183, 145));
  for (const auto& [text, color] : {std::pair("80000000", 0x80000000U),
                                    {" 0xFF2FB791", 0xFF2FB791U},
                                    {"", 0U},
                                    {"red", 0U},
                                    {"12z", 0x12U},
                                    {"123456789ab", 0xFFFFFFFFU}}) {
    EXPECT_EQ(ORNScreenUtils::colorFromHexARGB(text), QColor::fromRgba(color)) << text;
  }
}

TEST_F(ORNScreenUtilsTest, TextsHaveGlyphsAndTheSpaceThatTheyAreMeasuredAt) {
  const QFont font = ORNScreenUtils::systemFontOfSize(12);
  const auto size = [&](const QString& text, double kern = 0) {
    return ORNScreenUtils::getAttributionHeightWithString(text, 15, kern, font, 50);
  };
  const double line = size("听力").height();
  EXPECT_EQ(size(""), QSizeF(0, 0));
  EXPECT_NEAR(size("听力\n检测").height(), 2 * line + 15, 0.1);
  EXPECT_NEAR(size("听力检测听力检测").height(), 2 * line + 15, 0.1) << "wraps";
  EXPECT_NEAR(size("听力", 3).width(), size("听力").width() + 6, 0.1);
  std::set<std::vector<uchar>> glyphs;
  for (const char* text : {"左", "右", "听", "到", "了", " "}) {
    auto colored = ORNScreenUtils::getAttributedWithString(QString("黑\n") + text, 15, 0, font);
    colored.addColor(Qt::red, 2, 1);
    QImage image = paper({60, 60});
    QPainter painter(&image);
    colored.draw(painter, QRectF(0, 0, 60, 60), Qt::AlignHCenter);
    const QImage second = image.copy(0, 30, 60, 30);
    EXPECT_EQ(image.copy(0, 0, 60, 30).isGrayscale(), true);
    EXPECT_EQ(second.isGrayscale(), *text == ' ');
    glyphs.insert({second.constBits(), second.constBits() + second.sizeInBytes()});
  }
  EXPECT_EQ(glyphs.size(), 6U) << "is a Chinese font installed?";
}

}  // namespace
}  // namespace orn
