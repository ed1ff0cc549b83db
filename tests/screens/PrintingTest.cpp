// Finished tests on paper: what a reader of the files finds in them.
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

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
  const QString text = textOf(pdf).simplified();
  for (const QString& part :
       {QString("测试时间：2026-01-01 "), QString("AA:BB:CC:DD:EE:FF"), QString("声级核验：未核验"),
        QString("右耳听阈 (dB HL) 40 — —"), QString("左耳听阈 (dB HL) 15 90 *"), QString("* 已达测试上限"),
        QString("左耳：平均听力损失 %1 分贝").arg(test.leftLoss)}) {
    EXPECT_TRUE(text.contains(part)) << part.toStdString() << " in " << text.toStdString();
  }
  const QImage page = pageOf(pdf);
  for (const bool isRed : {false, true}) EXPECT_GT(count(page, isRed), 20);
  EXPECT_TRUE(printed("pdfinfo", {folder.filePath("a.pdf")}).simplified().contains("Pages: 1 "));
  test.levelVerification = "coupler <2026>";
  EXPECT_TRUE(textOf(printableReport(test)).contains("声级核验：coupler <2026>"));
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
