#include <ORNHearingTestSDK/screens/ChessboardBase.h>

#include <QtGui/QPainter>

namespace orn {
namespace {

constexpr std::int64_t kMargin = 50;
constexpr std::int64_t kInset = 5;  // from the board's edge to its first row and column

// Divisions by a zero are meant: a single row or column has no distance to the next.
float step(std::int64_t length, std::int64_t lines) {
  return static_cast<float>(length - 2 * kInset) / static_cast<float>(lines - 1);
}

}  // namespace

ChessboardBase::ChessboardBase(QWidget* parent) : QWidget(parent) { setAttribute(Qt::WA_OpaquePaintEvent); }

ChessboardBase::~ChessboardBase() = default;

const std::vector<std::string>& ChessboardBase::hzs() {
  if (!hzs_) hzs_ = askForHzs();
  if (!hzs_) hzs_ = {"125hz", "250hz", "500hz", "1000hz", "2000hz", "4000hz", "8000hz"};
  return *hzs_;
}

QPointF ChessboardBase::getDrawPoint(QPointF point) const {
  constexpr double origin = kMargin + kInset;
  return {origin + static_cast<double>(yAxisStep_) * point.x(), origin + static_cast<double>(xAxisStep_) * point.y()};
}

void ChessboardBase::layOut(std::int64_t rows) {
  viewWidth_ = width();
  viewHeight_ = height();
  chessboardWidth_ = viewWidth_ - 2 * kMargin;
  chessboardHeight_ = viewHeight_ - 2 * kMargin;
  xAxisStep_ = step(chessboardHeight_, rows);
  yAxisStep_ = step(chessboardWidth_, static_cast<std::int64_t>(hzs().size()));
}

void ChessboardBase::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  drawRect(painter);
}

}  // namespace orn
