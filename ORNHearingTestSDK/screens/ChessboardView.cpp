#include <ORNHearingTestSDK/screens/ChessboardView.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include <QtCore/QPointer>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QTouchEvent>

#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/screens/BoardMarks.h>

namespace orn {
namespace {

constexpr std::int64_t kUnset = -1;
constexpr std::int64_t kMostRows = 1000;
constexpr double kHalfMark = 5;
constexpr std::int64_t kNotFound = std::numeric_limits<std::int64_t>::max();

std::int64_t difference(std::int64_t a, std::int64_t b) {
  std::int64_t result = 0;
  if (!__builtin_sub_overflow(a, b, &result)) return result;
  return a < b ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
}

struct Snapped {
  std::int64_t index;
  float position;
};

/// The line nearest to a position, of lines that stand `step` apart from 55 on.
Snapped nearestLine(float position, float step, std::int64_t lines) {
  constexpr float origin = 55;
  const float last = origin + step * static_cast<float>(lines - 1);
  if (position <= origin) return {0, origin};
  if (position >= last) return {lines - 1, last};
  for (std::int64_t i = 0; i < std::min(lines, kMostRows); ++i) {
    const float line = std::trunc(origin + step * static_cast<float>(i));
    if (position - line - step / 2 <= 0) return {i, line};
  }
  return {0, static_cast<float>(ChessboardView::kNoPoint)};
}

}  // namespace

ChessboardView::ChessboardView(QWidget* parent) : ChessboardBase(parent) { setAttribute(Qt::WA_AcceptTouchEvents); }

ChessboardView::~ChessboardView() = default;

void ChessboardView::setMaxDB(std::int64_t maxDB, std::int64_t minDB) {
  maxDB_ = maxDB;
  minDB_ = minDB;
}

std::int64_t ChessboardView::getMaxDBWithDefault() const { return maxDB_ == kUnset ? 95 : maxDB_; }

std::int64_t ChessboardView::getMinDBWithDefault() const { return minDB_ == kUnset ? 15 : maxDB_; }

std::int64_t ChessboardView::kXAxisNumber() const {
  return difference(getMaxDBWithDefault(), getMinDBWithDefault()) / kStepDB;
}

std::optional<std::vector<std::string>> ChessboardView::askForHzs() {
  const auto source = datasource_.lock();
  if (!source || !source->hzsOfChessboardView) return std::nullopt;
  return source->hzsOfChessboardView(*this);
}

const std::vector<QPointF>& ChessboardView::pointsArray() {
  if (!pointsArray_) pointsArray_ = std::vector(hzs().size(), QPointF(kNoPoint, kNoPoint));
  return *pointsArray_;
}

QPointF ChessboardView::convert2Point(const std::string& hz, const std::string& db) {
  const auto found = std::find(hzs().begin(), hzs().end(), hz);
  const std::int64_t column = found == hzs().end() ? kNotFound : found - hzs().begin();
  const std::int64_t row = difference(integerValue(db), getMinDBWithDefault()) / kStepDB;
  return {static_cast<double>(column), static_cast<double>(row)};
}

void ChessboardView::drawTestAtHz(const std::string& hz, const std::string& db) {
  drawTestAtPoint(convert2Point(hz, db));
}

void ChessboardView::drawTestAtPoint(QPointF point) {
  currentTestPoint_ = getDrawPoint(point);
  currentTestPointBack_ = point;
  update();
}

void ChessboardView::drawSelectAtHz(const std::string& hz, const std::string& db) {
  drawSelectAtPoint(convert2Point(hz, db));
}

void ChessboardView::drawSelectAtPoint(QPointF point) {
  const double column = std::trunc(point.x());
  if (!(column >= 0 && column < static_cast<double>(pointsArray().size()))) return;
  (*pointsArray_)[static_cast<std::size_t>(column)] = getDrawPoint(point);
  currentTestPoint_ = {kNoPoint, kNoPoint};
  update();
}

bool ChessboardView::isTouchInBoardArea(QPointF point) const {
  const int right = width() - 50, bottom = height() - 50;
  return point.x() >= 50 && point.y() >= 50 && point.x() < right && point.y() < bottom;
}

QPointF ChessboardView::adjustCurrentTouchPoint(QPointF point, std::int64_t& XAxisIndex, std::int64_t& YAxisIndex) {
  if (!isTouchInBoardArea(point)) return {kNoPoint, kNoPoint};
  const Snapped row = nearestLine(static_cast<float>(point.y()), xAxisStep(), kXAxisNumber());
  const Snapped column =
      nearestLine(static_cast<float>(point.x()), yAxisStep(), static_cast<std::int64_t>(hzs().size()));
  XAxisIndex = column.index;
  YAxisIndex = row.index;
  return {static_cast<double>(column.position), static_cast<double>(row.position)};
}

void ChessboardView::touchEnded(QPointF point) {
  if (!isTouchInBoardArea(point)) return;
  std::int64_t column = -1, row = -1;
  const QPointF snapped = adjustCurrentTouchPoint(point, column, row);
  const bool isCell = column >= 0 && column < static_cast<std::int64_t>(hzs().size()) && row >= 0;
  if (const auto receiver = delegate_.lock(); isCell && receiver && receiver->chessboardViewTouchedAtHz) {
    const std::string db = std::to_string(row * kStepDB + getMinDBWithDefault()) + "db";
    const std::string hz = hzs()[static_cast<std::size_t>(column)];
    const QPointer<ChessboardView> stillThere(this);
    receiver->chessboardViewTouchedAtHz(hz, db);
    if (!stillThere) return;
  }
  currentTestPoint_ = snapped;
  update();
}

bool ChessboardView::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
      if (!isEnabled()) break;
      touch(static_cast<QTouchEvent&>(*event));
      return true;
    default:
      break;
  }
  return ChessboardBase::event(event);
}

void ChessboardView::touch(QTouchEvent& event) {
  event.accept();
  if (event.type() == QEvent::TouchBegin) touchId_ = event.points().first().id();
  if (event.type() == QEvent::TouchCancel) touchId_ = -1;
  for (const QEventPoint& point : event.points()) {
    if (point.id() != touchId_ || point.state() != QEventPoint::Released) continue;
    touchId_ = -1;
    return touchEnded(point.position());
  }
}

void ChessboardView::mousePressEvent(QMouseEvent* event) { event->setAccepted(event->button() == Qt::LeftButton); }

void ChessboardView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) touchEnded(event->position());
}

void ChessboardView::drawRect(QPainter& painter) {
  const std::int64_t rows = kXAxisNumber(), drawnRows = std::min(rows, kMostRows);
  layOut(rows);
  painter.save();
  drawGround(painter);
  drawGrid(painter, drawnRows, Qt::black);
  drawFrequencyLabels(painter, rows, 15, 12);
  drawLevelLabels(painter, {drawnRows, 1, getMinDBWithDefault(), 4, kHalfMark}, 10);
  drawMarks(painter);
  painter.restore();
}

void ChessboardView::drawMarks(QPainter& painter) {
  const bool isMoving = currentTestPoint_.x() != kNoPoint && currentTestPoint_.y() != kNoPoint;
  if (!isTestEnd_ && isMoving) {
    BoardMarks moving(rect());
    addMark(moving, currentTestPoint_);
    // Nobody sets a colour for the circle, so it has the one that every drawing begins with.
    moving.strokeSmooth(painter, isTestLeft_ ? Qt::green : Qt::black);
  }
  const QColor color = isTestLeft_ ? Qt::blue : Qt::red;
  BoardMarks fixed(rect()), joining(rect());
  for (std::size_t i = 0; i < pointsArray().size(); ++i) {
    addMark(fixed, pointsArray()[i]);
    if (i > 0) joining.addLine(pointsArray()[i - 1], pointsArray()[i]);
  }
  fixed.strokeSmooth(painter, color);
  if (isTestEnd_) joining.strokeUnsmoothed(painter, color);
}

void ChessboardView::addMark(BoardMarks& marks, QPointF point) const {
  if (isTestLeft_) {
    marks.addCross(point, kHalfMark);
  } else {
    marks.addCircle(point, kHalfMark);
  }
}

}  // namespace orn
