#include <ORNHearingTestSDK/screens/ChessboardResultView.h>

#include <algorithm>

#include <QtGui/QColor>
#include <QtGui/QPainter>

#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/screens/BoardLabels.h>
#include <ORNHearingTestSDK/screens/BoardMarks.h>

namespace orn {
namespace {

constexpr std::int64_t kRows = 27;
constexpr std::int32_t kMostSections = 100;

/// Components beyond 0 and 1 count as those.
QColor color(double red, double green, double blue, double alpha) {
  const auto component = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
  return QColor::fromRgbF(component(red), component(green), component(blue), component(alpha));
}

}  // namespace

struct ChessboardResultView::Scale {
  double halfMark, alpha;
};

ChessboardResultView::ChessboardResultView(QWidget* parent) : ChessboardBase(parent) {}

ChessboardResultView::~ChessboardResultView() = default;

std::optional<std::vector<std::string>> ChessboardResultView::askForHzs() {
  const auto source = datasouce_.lock();
  if (!source || !source->hzsOfChessboardView) return std::nullopt;
  return source->hzsOfChessboardView(*this);
}

void ChessboardResultView::drawRect(QPainter& painter) {
  layOut(kRows);
  const double width = static_cast<double>(viewWidth());
  const double fontSize = fittingFontSize(painter, static_cast<float>(width * 10 / 320));
  const Scale scale{static_cast<float>(width * 4 / 320), static_cast<float>(width / 320)};
  painter.save();
  drawGround(painter);
  drawGrid(painter, kRows, color(0, 0, 0, 0.6));
  drawFrequencyLabels(painter, kRows, 5, fontSize);
  drawLevelLabels(painter, {kRows, 2, -10, 0, scale.halfMark}, fontSize);
  const auto source = datasouce_.lock();
  const std::int32_t sections = source && source->countOfSection ? source->countOfSection(*this) : 0;
  for (std::int32_t s = 0; s < std::min(sections, kMostSections); ++s) {
    const double shade = 1 - 0.2 * s;
    drawLeftEar(painter, scale, earPoints(true, s), shade);
    drawRightEar(painter, scale, earPoints(false, s), shade);
  }
  drawLegend(painter, fontSize);
  painter.restore();
}

std::vector<QPointF> ChessboardResultView::earPoints(bool isLeft, std::int32_t section) {
  const auto source = datasouce_.lock();
  std::vector<QPointF> points;
  if (!source || !source->pointAtHz) return points;
  for (const std::string& hz : hzs()) {
    const auto column = static_cast<std::int32_t>(points.size());
    const std::string key = std::to_string(intValue(hz)) + "hz";
    points.push_back(getDrawPoint(source->pointAtHz(*this, key, column, isLeft, section)));
  }
  return points;
}

// The two ears are drawn differently, which is meant: the left ear's lines are smooth and of one stroke with its
// crosses, the right ear's lines are stroked one at a time and are not smooth.

void ChessboardResultView::drawLeftEar(QPainter& painter, const Scale& scale, const std::vector<QPointF>& points,
                                       double shade) const {
  BoardMarks marks(rect());
  for (std::size_t i = 0; i < points.size(); ++i) {
    marks.addCross(points[i], scale.halfMark);
    if (i > 0) marks.addLine(points[i - 1], points[i]);
  }
  marks.strokeSmooth(painter, color(0, 0, shade, scale.alpha));
}

void ChessboardResultView::drawRightEar(QPainter& painter, const Scale& scale, const std::vector<QPointF>& points,
                                        double shade) const {
  for (std::size_t i = 0; i < points.size(); ++i) {
    BoardMarks circle(rect());
    circle.addCircle(points[i], scale.halfMark);
    circle.strokeSmooth(painter, color(shade, 0, 0, 1));
    if (i == 0) continue;
    BoardMarks line(rect());
    line.addLine(points[i - 1], points[i]);
    line.strokeUnsmoothed(painter, color(shade, 0, 0, scale.alpha));
  }
}

void ChessboardResultView::drawLegend(QPainter& painter, double fontSize) const {
  const std::int64_t width = chessboardWidth() / 4;
  const auto draw = [&](std::int64_t quarters, const QString& text, Qt::GlobalColor textColor) {
    const std::int64_t x = chessboardWidth() * quarters / 4 + 50;
    painter.setPen(textColor);
    drawLabels(painter, {{static_cast<double>(x), 20, static_cast<double>(width), text}}, fontSize, Qt::AlignLeft,
               false);
  };
  draw(1, QStringLiteral("X左耳"), Qt::blue);
  draw(3, QStringLiteral("O右耳"), Qt::red);
}

}  // namespace orn
