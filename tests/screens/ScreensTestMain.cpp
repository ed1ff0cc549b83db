#include <cstdlib>

#include <QtWidgets/QApplication>
#include <gmock/gmock.h>

int main(int argc, char** argv) {
  // Without a display, at one pixel per point, with the same fonts and style, whatever the machine is set to.
  for (const char* name : {"QT_FONT_DPI", "QT_QPA_PLATFORMTHEME", "QT_SCREEN_SCALE_FACTORS", "QT_STYLE_OVERRIDE"}) {
    unsetenv(name);
  }
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  setenv("QT_SCALE_FACTOR", "1", 1);
  setenv("FONTCONFIG_FILE", ORN_TEST_FONTS, 1);
  setenv("TZ", "UTC", 1);
  testing::InitGoogleMock(&argc, argv);
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
