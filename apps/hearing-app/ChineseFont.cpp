#include "hearing-app/ChineseFont.h"

#include <algorithm>
#include <cstdio>

#include <QtGui/QFont>
#include <QtGui/QFontDatabase>
#include <QtGui/QGlyphRun>
#include <QtGui/QRawFont>
#include <QtGui/QTextLayout>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>

namespace orn {
namespace {

constexpr auto kNotice =
    "This system has no font for Chinese, the language of all texts of the application.\n"
    "Install one and open the application again. On Debian and Ubuntu: apt install fonts-wqy-microhei";

/// Where a system has no font at all, every glyph is a box and none of them has the number 0.
bool isStandIn(const QRawFont& font) {
  return font.fontTable("cmap").isEmpty() && QFontDatabase::families(QFontDatabase::SimplifiedChinese).isEmpty();
}

}  // namespace

/// By what the toolkit would draw, whichever of the system's fonts it takes: glyph 0 is the box.
bool hasChineseFont() {
  QTextLayout text(QStringLiteral("听"), QFont());
  text.beginLayout();
  text.createLine();
  text.endLayout();
  const auto runs = text.glyphRuns();
  return !runs.isEmpty() && std::all_of(runs.begin(), runs.end(), [](const QGlyphRun& run) {
    return !run.glyphIndexes().contains(0) && !isStandIn(run.rawFont());
  });
}

void sayThatChineseFontIsMissing() {
  std::fprintf(stderr, "hearing-app: %s\n", kNotice);
  QLabel window(QString::fromLatin1(kNotice));
  window.setWindowTitle(QStringLiteral("hearing-app"));
  window.setWordWrap(true);
  window.setMargin(24);
  window.setMinimumWidth(320);
  window.setTextInteractionFlags(Qt::TextSelectableByMouse);
  window.show();
  QApplication::exec();
}

}  // namespace orn
