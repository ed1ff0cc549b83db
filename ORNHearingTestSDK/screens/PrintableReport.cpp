#include <ORNHearingTestSDK/screens/PrintableReport.h>

#include <QtCore/QBuffer>
#include <QtCore/QStringList>
#include <QtGui/QAbstractTextDocumentLayout>
#include <QtGui/QPainter>
#include <QtGui/QPdfWriter>
#include <QtGui/QTextDocument>

#include <ORNHearingTestSDK/common/DateText.h>
#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/results/HearingScore.h>
#include <ORNHearingTestSDK/screens/AudiogramDrawing.h>
#include <ORNHearingTestSDK/screens/AudiogramSummary.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>

namespace orn {
namespace {

constexpr int kReportResolution = 72;
constexpr int kReportMargin = 48;
constexpr QSize kReportBoard(340, 430);
constexpr int kTopOfScale = 90;  // in dB HL, where a search ends whether the tone was heard or not

QString escaped(const std::string& utf8) { return QString::fromStdString(utf8).toHtmlEscaped(); }

QString cell(const QString& contents, const char* kind = "td") {
  return QStringLiteral("<%1 align=center>%2</%1>").arg(QLatin1String(kind), contents);
}

QString printedThreshold(const EarResult& ear, const std::string& hz) {
  const auto found = ear.find(hz);
  if (found == ear.end() || intValue(found->second) == -1) return QStringLiteral("—");
  return escaped(found->second) + (intValue(found->second) >= kTopOfScale ? QStringLiteral(" *") : QString());
}

bool reachesTop(const EarResult& ear) {
  for (const auto& [hz, db] : ear) {
    if (intValue(db) >= kTopOfScale) return true;
  }
  return false;
}

QString thresholdTable(const FinishedTest& test) {
  EarResult columns = test.left;
  columns.insert(test.right.begin(), test.right.end());
  QString head = cell(QStringLiteral("频率 (Hz)"), "th"), rows[2];
  for (const auto& [hz, ignored] : columns) head += cell(QString::number(intValue(hz)), "th");
  for (const bool isLeft : {false, true}) {
    rows[isLeft] = cell(earName(isLeft) + QStringLiteral("听阈 (dB HL)"));
    for (const auto& [hz, ignored] : columns)
      rows[isLeft] += cell(printedThreshold(isLeft ? test.left : test.right, hz));
  }
  return QStringLiteral(
             "<table border=1 cellspacing=0 cellpadding=5 width='100%'><tr>%1</tr><tr>%2</tr><tr>%3</tr></table>")
      .arg(head, rows[0], rows[1]);
}

QString printedVerdict(const FinishedTest& test, bool isLeft) {
  const EarResult& ear = isLeft ? test.left : test.right;
  const std::int64_t loss = isLeft ? test.leftLoss : test.rightLoss;
  const QString found =
      ear.empty()
          ? QStringLiteral("没有结果")
          : QStringLiteral("平均听力损失 %1 分贝，%2").arg(loss).arg(escaped(HearingScore::computeResultString(loss)));
  return QStringLiteral("<p><b>%1：</b>%2</p>").arg(earName(isLeft), found);
}

QString reportHeading(const FinishedTest& test) {
  const QString date = escaped(dateText(test.ended, "%Y-%m-%d %H:%M"));
  const QString device = test.device.empty() ? QStringLiteral("未知") : escaped(test.device);
  const QString level = test.levelVerification.empty() ? QStringLiteral("未核验") : escaped(test.levelVerification);
  return QStringLiteral("<h2 align=center>纯音听力测试报告</h2><p>测试时间：%1<br>测试设备：%2<br>声级核验：%3</p>")
      .arg(date, device, level);
}

QString findings(const FinishedTest& test) {
  QString html = thresholdTable(test) + printedVerdict(test, false) + printedVerdict(test, true);
  if (reachesTop(test.left) || reachesTop(test.right)) {
    html += QStringLiteral("<p>* 已达测试上限 %1 dB HL，实际听阈可能更高。</p>").arg(kTopOfScale);
  }
  return html +
         QStringLiteral("<p>平均听力损失按用户资料中的年龄和性别修正。本报告是自助筛查的结果，不能代替专业诊断。</p>");
}

/// Draws a text as wide as the page from the painter's origin on; its height in points.
double drawText(QPainter& painter, const QString& html, double width) {
  QTextDocument document;
  QFont font = ORNScreenUtils::systemFontOfSize(11);
  document.setDefaultFont(font);
  document.documentLayout()->setPaintDevice(painter.device());
  document.setTextWidth(width);
  document.setHtml(html);
  document.drawContents(&painter);
  return document.size().height();
}

}  // namespace

QByteArray printableReport(const FinishedTest& test) {
  QBuffer file;
  file.open(QIODevice::WriteOnly);
  QPdfWriter page(&file);
  page.setPageSize(QPageSize(QPageSize::A4));
  page.setPageMargins({});
  page.setResolution(kReportResolution);
  page.setTitle(QStringLiteral("纯音听力测试报告"));
  {
    QPainter painter(&page);
    const double width = page.width() - 2 * kReportMargin;
    painter.translate(kReportMargin, kReportMargin);
    painter.translate(0, drawText(painter, reportHeading(test), width) + 6);
    painter.save();
    painter.translate((width - kReportBoard.width()) / 2, 0);
    drawAudiogram(painter, kReportBoard, test.left, test.right);
    painter.restore();
    painter.translate(0, kReportBoard.height() + 12);
    drawText(painter, findings(test), width);
  }
  return file.data();
}

}  // namespace orn
