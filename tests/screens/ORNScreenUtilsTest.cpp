#include <set>

#include "BoardPixels.h"

namespace orn {
namespace {

using ORNScreenUtilsTest = BoardTest;

TEST_F(ORNScreenUtilsTest, ImagesSuitThePixelRatioAndKeepTheirSize) {
  for (const char* name : {"111", "222", "bg", "hearing_roger_bg_default", "hearing_roger_bg_pressed", "icon_female",
                           "icon_male", "shuiyin"}) {
    const QImage plain = ORNScreenUtils::imageResource(name, 0.5);
    EXPECT_GE(plain.width(), 60) << name;
    EXPECT_EQ(ORNScreenUtils::imageResource(name, 1.25).size(), plain.size() * 2) << name;
    EXPECT_EQ(ORNScreenUtils::imageResource(name, 1e9).size(), plain.size() * 3) << name;
    EXPECT_EQ(ORNScreenUtils::imageResource(name, 3).deviceIndependentSize(), QSizeF(plain.size())) << name;
  }
  for (const char* name : {"nothing", "../image.bundle/bg"}) {
    EXPECT_TRUE(ORNScreenUtils::imageResource(name, 1).isNull()) << name;
    EXPECT_TRUE(ORNScreenUtils::imageWithContentsOfFile(name, 3).isNull()) << name;
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
  const auto read = [](const char* text) { return ORNScreenUtils::colorFromHexARGB(text).rgba(); };
  EXPECT_EQ(ORNScreenUtils::colorFromHexRGB("2fb791"), QColor(47, 183, 145));
  EXPECT_EQ(read("80000000"), 0x80000000U);
  EXPECT_EQ(read(" 0xFF2FB791"), 0xFF2FB791U);
  EXPECT_TRUE(read("") == 0 && read("red") == 0 && read("12z") == 0x12 && read("123456789ab") == 0xFFFFFFFF);
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
  EXPECT_LT(size("听力检测听。").width(), size("听力检测").width()) << "no character is left alone";
  EXPECT_TRUE(size("KV60SKV60SKV60S").width() <= 50 && size("KV60SKV60SKV60S").height() > line) << "wraps a word too";
  EXPECT_NEAR(size("听力", 3).width(), size("听力").width() + 6, 0.1);
  std::set<QByteArray> glyphs;
  for (const char* text : {"左", "右", "听", "到", "了", " "}) {
    auto colored = ORNScreenUtils::getAttributedWithString(QString("黑\n") + text, 15, 0, font);
    colored.addColor(Qt::red, 2, 1);
    QImage image = paper({60, 60});
    QPainter painter(&image);
    colored.draw(painter, QRectF(0, 0, 60, 60), Qt::AlignHCenter);
    const QImage second = image.copy(0, 30, 60, 30);
    EXPECT_EQ(image.copy(0, 0, 60, 30).isGrayscale(), true);
    EXPECT_EQ(second.isGrayscale(), *text == ' ');
    glyphs.insert({reinterpret_cast<const char*>(second.constBits()), second.sizeInBytes()});
  }
  EXPECT_EQ(glyphs.size(), 6U) << "is a Chinese font installed?";
}

}  // namespace
}  // namespace orn
