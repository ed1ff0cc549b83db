#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <QtCore/QPointF>
#include <QtWidgets/QWidget>

#include <ORNHearingTestSDK/screens/ScreensExport.h>

class QPainter;

namespace orn {

/// What both audiogram views share: a grid of frequency columns and level rows, in whole points, with its layout taken
/// afresh from the widget's size at each draw.
///
/// The names are crossed and meant so: X names the level axis, which runs down, Y the frequency axis, which runs to the
/// right. Main thread.
class ORN_SCREENS_EXPORT ChessboardBase : public QWidget {
 public:
  ~ChessboardBase() override;

  /// Size of the widget, and of the board within its margins, at the last draw.
  std::int64_t viewWidth() const { return viewWidth_; }
  std::int64_t viewHeight() const { return viewHeight_; }
  std::int64_t chessboardWidth() const { return chessboardWidth_; }
  std::int64_t chessboardHeight() const { return chessboardHeight_; }

  /// Distance between two level rows and between two frequency columns at the last draw, in points. Infinite where
  /// there is a single row or column.
  float xAxisStep() const { return xAxisStep_; }
  float yAxisStep() const { return yAxisStep_; }

  /// The frequency columns from left to right, such as "1000hz": asked of the data source once, at the first use, and
  /// kept; without one the seven frequencies from 125 to 8000 Hz.
  const std::vector<std::string>& hzs();
  void setHzs(std::vector<std::string> hzs) { hzs_ = std::move(hzs); }

  /// Where a cell, given as (column, row), stands in the widget by the last draw.
  QPointF getDrawPoint(QPointF point) const;

  /// Draws the whole board, at the size of the widget and in its coordinates, with any painter, such as that of a
  /// bitmap. Coordinates that are not finite are left out.
  virtual void drawRect(QPainter& painter) = 0;

 protected:
  explicit ChessboardBase(QWidget* parent);

  /// The data source's frequencies; nothing if it does not answer.
  virtual std::optional<std::vector<std::string>> askForHzs() = 0;

  /// Takes the layout from the widget's size for a grid of that many rows.
  void layOut(std::int64_t rows);

  void paintEvent(QPaintEvent* event) override;

 private:
  std::int64_t viewWidth_ = 0, viewHeight_ = 0;
  std::int64_t chessboardWidth_ = 0, chessboardHeight_ = 0;
  float xAxisStep_ = 0, yAxisStep_ = 0;
  std::optional<std::vector<std::string>> hzs_;
};

}  // namespace orn
