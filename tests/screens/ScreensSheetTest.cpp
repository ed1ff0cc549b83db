// What every screen, alert and state looks like.
#include <cstdlib>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/contracts/TemporaryFolder.h>

#include "hearing-app-tools/ScreenshotSheet.h"
#include "hearing-app-tools/ScreenshotWalk.h"

namespace orn {
namespace {

/// Whether somebody would see a difference; another processor's rounding is none.
bool looksTheSame(const QImage& one, const QImage& other) {
  if (one.size() != other.size()) return false;
  const auto isNear = [](int a, int b) { return std::abs(a - b) <= 12; };
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      const QRgb a = one.pixel(x, y), b = other.pixel(x, y);
      if (!isNear(qRed(a), qRed(b)) || !isNear(qGreen(a), qGreen(b)) || !isNear(qBlue(a), qBlue(b))) return false;
    }
  }
  return true;
}

TEST(Screens, LookAsTheirSheetShows) {
  const contract::TemporaryFolder temporary;
  const QString folder = QString::fromStdString(temporary.path());
  const ScreenSize screen{{375, 667}};
  walkForScreenshots(folder, screen);
  const QImage found = screenshotSheet(folder, screen), sheet(ORN_SCREENS_SHEET);
  EXPECT_EQ(found.size(), sheet.size()) << "scripts/pictures.sh makes it anew";
  const QStringList names = screenshotNames(folder, screen);
  for (int number = 0; number < names.size(); ++number) {
    const QRect place = placeOnSheet(number, screen);
    EXPECT_TRUE(looksTheSame(found.copy(place), sheet.copy(place))) << names[number].toStdString();
  }
}

}  // namespace
}  // namespace orn
