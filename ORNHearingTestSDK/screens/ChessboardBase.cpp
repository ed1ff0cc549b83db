#include <ORNHearingTestSDK/screens/ChessboardBase.h>

#include <algorithm>
#include <cmath>

#include <QtGui/QColor>
#include <QtGui/QPainter>

#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/screens/BoardGrid.h>
#include <ORNHearingTestSDK/screens/BoardLabels.h>
#include <ORNHearingTestSDK/screens/Watermark.h>

namespace orn {
namespace {

constexpr std::int64_t kBoardMargin = 50;
constexpr std::int64_t kInset = 5;  // from the board's edge to its first row and column
constexpr float kOrigin = kBoardMargin + kInset;
constexpr float kOvershoot = 1;  // of the lines beyond the outermost rows and columns

const BoardLabel kUnit{12, 20, 47, QStringLiteral("dBHL")};

// Divisions by a zero are meant, see docs/BEHAVIOURS.md: a single row or column has no distance to the next.
float step(std::int64_t length, std::int64_t lines) {
  return static_cast<float>(length - 2 * kInset) / static_cast<float>(lines - 1);
}

float at(float distance, std::int64_t index) { return kOrigin + distance * static_cast<float>(index); }

QString frequencyName(const std::string& hz, bool isLast) {
  const std::int32_t value = intValue(hz);
  if (value < 1000) return QString::number(value);
  return QString::number(value / 1000) + QLatin1String(isLast ? "K Hz" : "K");
}

}  // namespace

ChessboardBase::ChessboardBase(QWidget* parent) : QWidget(parent) { setAttribute(Qt::WA_OpaquePaintEvent); }

ChessboardBase::~ChessboardBase() = default;

const std::vector<std::string>& ChessboardBase::hzs() {
  if (!hzs_) hzs_ = askForHzs();
  if (!hzs_) hzs_ = frequencyKeys(kToneFrequencies);
  return *hzs_;
}

QPointF ChessboardBase::getDrawPoint(QPointF point) const {
  return {kOrigin + static_cast<double>(yAxisStep_) * point.x(), kOrigin + static_cast<double>(xAxisStep_) * point.y()};
}

void ChessboardBase::layOut(std::int64_t rows) {
  viewWidth_ = width();
  viewHeight_ = height();
  chessboardWidth_ = viewWidth_ - 2 * kBoardMargin;
  chessboardHeight_ = viewHeight_ - 2 * kBoardMargin;
  xAxisStep_ = step(chessboardHeight_, rows);
  yAxisStep_ = step(chessboardWidth_, static_cast<std::int64_t>(hzs().size()));
}

void ChessboardBase::drawGround(QPainter& painter) const {
  painter.fillRect(rect(), Qt::white);
  const auto whole = [](std::int64_t length) { return static_cast<int>(length); };
  const std::int64_t height = chessboardWidth_ * 608 / 1044;
  drawWatermark(
      painter, QRect(whole(chessboardWidth_ / 6 + kBoardMargin), whole((chessboardHeight_ - height) / 2 + kBoardMargin),
                     whole(chessboardWidth_ * 2 / 3), whole(height)));
}

void ChessboardBase::drawGrid(QPainter& painter, std::int64_t rows, const QColor& color) {
  const float begin = kOrigin - kOvershoot;
  const float right = static_cast<float>(viewWidth_) - begin, bottom = static_cast<float>(viewHeight_) - begin;
  std::vector<QLineF> lines;
  for (std::int64_t i = 0; i < rows; ++i) {
    const float y = std::trunc(at(xAxisStep_, i));
    if (std::isfinite(y)) lines.emplace_back(begin, y, right, y);
  }
  for (std::int64_t j = 0; j < std::ssize(hzs()); ++j) {
    const float x = std::trunc(at(yAxisStep_, j));
    if (std::isfinite(x)) lines.emplace_back(x, begin, x, bottom);
  }
  drawGridLines(painter, lines, color);
}

void ChessboardBase::drawFrequencyLabels(QPainter& painter, std::int64_t rows, double distance, double fontSize) {
  const std::int64_t columns = std::ssize(hzs());
  const double y = at(xAxisStep_, rows - 1) + distance;
  std::vector<BoardLabel> labels;
  for (std::int64_t j = 0; j < columns; ++j) {
    labels.push_back({at(yAxisStep_, j) - yAxisStep_ / 2, y, yAxisStep_,
                      frequencyName(hzs()[static_cast<std::size_t>(j)], j == columns - 1)});
  }
  painter.setPen(Qt::black);
  drawLabels(painter, labels, fontSize, Qt::AlignHCenter);
}

double ChessboardBase::fittingFontSize(const QPainter& painter, double wanted) const {
  return fittingSize(painter, {kUnit}, wanted);
}

void ChessboardBase::drawLevelLabels(QPainter& painter, const LevelScale& scale, double fontSize) const {
  // On a board much higher than a phone's, half a step would lift the labels into the unit and out of the view.
  const double raised = std::min(xAxisStep_ / 2 - scale.lowered, kOrigin - kUnit.y - lineHeight(painter, fontSize));
  const double width = std::clamp(kOrigin - 1 - scale.halfMark, kUnit.width / 2, kUnit.width);
  std::vector<BoardLabel> levels;
  for (std::int64_t i = 0; i < scale.rows; i += scale.every) {
    levels.push_back({0, at(xAxisStep_, i) - raised, width, QString::number(scale.firstDB + kStepDB * i)});
  }
  painter.setPen(Qt::black);
  drawLabels(painter, levels, fontSize, Qt::AlignRight);
  drawLabels(painter, {kUnit}, fontSize, Qt::AlignRight);
}

void ChessboardBase::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  drawRect(painter);
}

}  // namespace orn
