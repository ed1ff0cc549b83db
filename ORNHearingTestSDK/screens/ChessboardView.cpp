#include <ORNHearingTestSDK/screens/ChessboardView.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QTouchEvent>

#include <ORNHearingTestSDK/common/NumericText.h>

namespace orn {
namespace {

constexpr std::int64_t kUnset = -1;
constexpr std::int64_t kStepDB = 5;
constexpr std::int64_t kMostRows = 1000;
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
    receiver->chessboardViewTouchedAtHz(hz, db);
  }
  currentTestPoint_ = snapped;
  update();
}

bool ChessboardView::event(QEvent* event) { return ChessboardBase::event(event); }
void ChessboardView::mousePressEvent(QMouseEvent* event) { event->setAccepted(event->button() == Qt::LeftButton); }
void ChessboardView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) touchEnded(event->position());
}

void ChessboardView::drawRect(QPainter& painter) {
  layOut(kXAxisNumber());
  painter.fillRect(rect(), Qt::white);
}

}  // namespace orn
