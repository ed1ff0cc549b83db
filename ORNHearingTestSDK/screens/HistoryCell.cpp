#include <ORNHearingTestSDK/screens/HistoryCell.h>

#include <ORNHearingTestSDK/results/HistoryScores.h>
#include <ORNHearingTestSDK/results/ORNListenTest.h>
#include <ORNHearingTestSDK/results/TestTime.h>
#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>
#include <ORNHearingTestSDK/screens/TextLabel.h>

namespace orn {
namespace {

constexpr double kCellLineSpace = 4;
constexpr int kFontSize = 18;

}  // namespace

TextLabel* HistoryCell::viewWithTag(int tag) {
  const QString name = QString::number(tag);
  auto* label = findChild<TextLabel*>(name);
  if (!label) {
    label = new TextLabel(this);
    label->setObjectName(name);
    label->show();
  }
  return label;
}

void HistoryCell::setText(int tag, const QString& text, const QRectF& frame) {
  TextLabel* label = viewWithTag(tag);
  label->setFrame(frame);
  label->setAttributedText(ORNScreenUtils::getAttributedWithString(text, kCellLineSpace, 0, systemFont(kFontSize)));
}

void HistoryCell::setTest(const ORNListenTest& test, int width, int mainScreenWidth) {
  const HistoryScores scores = scoresOf(test);
  const double most = 2.0 * width / 3;
  setText(kRightTag, QStringLiteral("右耳得分：%1分").arg(scores.right), {10, 20, most, 30});
  setText(kLeftTag, QStringLiteral("左耳得分：%1分").arg(scores.left), {10, 50, most, 30});
  setText(kTotalTag, QStringLiteral("您的听力总得分："), {10, 80, most, 30});
  const QString time = QString::fromStdString(testTimeText(test.createDate()));
  setText(kTimeTag, QStringLiteral("测试时间：%1").arg(time), {10, 110, static_cast<double>(width), 30});

  TextLabel* badge = viewWithTag(kBadgeTag);
  badge->setFrame({mainScreenWidth - 80.0, 45, 60, 60});
  badge->setGround(ORNScreenUtils::colorFromHexRGB("2fb791"), 30);
  const QString total = QString::number(scores.total);
  AttributedText text = ORNScreenUtils::getAttributedWithString(total, kCellLineSpace, 0, systemFont(30, QFont::Bold));
  text.addColor(Qt::white, 0, total.size());
  badge->setAttributedText(text, Qt::AlignHCenter);
  setAccessibleName(QStringLiteral("右耳得分%1分，左耳得分%2分，听力总得分%3，测试时间%4")
                        .arg(scores.right)
                        .arg(scores.left)
                        .arg(total, time));
}

}  // namespace orn
