// Finished tests on paper: what a reader of the files finds in them.
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>

#include <ORNHearingTestSDK/results/HearingScore.h>
#include <ORNHearingTestSDK/screens/AudiogramPicture.h>
#include <ORNHearingTestSDK/screens/PrintableReport.h>

#include "BoardPixels.h"

namespace orn {
namespace {

struct Printing : BoardTest {
  QString keep(const char* name, const QByteArray& contents) const {
    QFile file(folder.filePath(name));
    EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(contents) == contents.size());
    return file.fileName();
  }
  static QString printed(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished() && process.exitCode() == 0) << program.toStdString();
    return QString::fromUtf8(process.readAllStandardOutput());
  }
  QString textOf(const QByteArray& pdf) const { return printed("pdftotext", {"-layout", keep("a.pdf", pdf), "-"}); }

  /// Without its spaces and line breaks, which are the page's.
  static QString bare(const QString& text) { return QString(text).remove(QRegularExpression("\\s")); }

  /// The page as pixels, 72 per inch.
  QImage pageOf(const QByteArray& pdf) const {
    printed("pdftoppm", {"-r", "72", "-png", "-singlefile", keep("a.pdf", pdf), folder.filePath("page")});
    return QImage(folder.filePath("page.png"));
  }

  QTemporaryDir folder;
  const EarResult left{{"500hz", "15"}, {"1000hz", "90"}}, right{{"500hz", "40"}, {"4000hz", "-1"}};
};

/// How many points are strongly of one colour.
int count(const QImage& image, bool isRed) {
  int found = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor one = image.pixelColor(x, y);
      found += isRed ? one.red() - one.blue() > 120 : one.blue() - one.red() > 120;
    }
  }
  return found;
}

TEST_F(Printing, AnAudiogramIsTheSameInEveryFormat) {
  const QImage png = QImage::fromData(audiogramPicture(left, right, PictureFormat::Png)).scaled(375, 667);
  const QImage pdf = pageOf(audiogramPicture(left, right, PictureFormat::Pdf));
  EXPECT_EQ(pdf.size(), QSize(375, 667));
  for (const bool isRed : {false, true}) {
    EXPECT_GT(count(png, isRed), 20);
    EXPECT_NEAR(count(pdf, isRed), count(png, isRed), 0.5 * count(png, isRed));
  }
  const QByteArray svg = audiogramPicture(left, right, PictureFormat::Svg);
  for (const char* part : {"viewBox=\"0 0 375 667\"", ">500</text>", ">4K Hz</text>", ">左耳</text>"}) {
    EXPECT_TRUE(svg.contains(part)) << part;
  }
}

TEST_F(Printing, AReportHoldsAllThatIsKnownOfTheTestOnOnePage) {
  FinishedTest test = finishedTest(left, right, "AA:BB:CC:DD:EE:FF");
  const QByteArray pdf = printableReport(test);
  const auto verdict = [](int loss) { return QString::fromStdString(HearingScore::computeResultString(loss)); };
  const QString limit = "* 已达测试上限 90 dB HL，实际听阈可能更高。";
  const QString expected =
      "纯音听力测试报告 测试时间：2026-01-01 00:00 测试设备：AA:BB:CC:DD:EE:FF 声级核验：未核验 "
      "dBHL X左耳 O右耳 -10 0 10 20 30 40 50 60 70 80 90 100 110 120 500 1K 4K Hz "
      "频率 (Hz) 500 1000 4000 右耳听阈 (dB HL) 40 — — 左耳听阈 (dB HL) 15 90 * — "
      "右耳：平均听力损失 40 分贝，" +
      verdict(40) + "左耳：平均听力损失 52 分贝，" + verdict(52) + limit +
      "平均听力损失按用户资料中的年龄和性别修正。本报告是自助筛查的结果，不能代替专业诊断。";
  EXPECT_EQ(bare(textOf(pdf)).toStdString(), bare(expected).toStdString());
  const QImage page = pageOf(pdf);
  for (const bool isRed : {false, true}) EXPECT_GT(count(page, isRed), 20);
  EXPECT_TRUE(printed("pdfinfo", {folder.filePath("a.pdf")}).simplified().contains("Pages: 1 "));
  test.levelVerification = "coupler <2026>";
  EXPECT_TRUE(textOf(printableReport(test)).contains("声级核验：coupler <2026>"));
  test.left = {{"500hz", "89"}};
  EXPECT_FALSE(bare(textOf(printableReport(test))).contains(bare(limit)));
  EXPECT_TRUE(textOf(printableReport({})).contains("没有结果"));
}

TEST_F(Printing, TheProgramDrawsWhatItFound) {
  const auto draws = [](const QString& file) {
    return 0 == QProcess::execute(ORN_HEARING_TEST, {"simulate", "--frequencies", "1000,500", "--left",
                                                     "500=30,1000=50", "--right", "500=15,1000=15", "--png", file});
  };
  EXPECT_FALSE(draws(folder.filePath("no/such/folder.png")));
  ASSERT_TRUE(draws(folder.filePath("a.png")));
  QImage image(folder.filePath("a.png"));
  image.setDevicePixelRatio(2);
  const double row = 557.0 / 26;
  EXPECT_EQ(at(image, 187.5, 55 + 10 * row), QColor(Qt::blue)) << "half way from 30 to 50 dB";
  EXPECT_EQ(at(image, 187.5, 55 + 5 * row), QColor(Qt::red));
}

}  // namespace
}  // namespace orn
