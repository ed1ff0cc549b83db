#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <QtCore/QPointF>
#include <QtWidgets/QWidget>

#include <ORNHearingTestSDK/screens/ScreensExport.h>

class QColor;
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

  /// Distance between two level rows in dB.
  static constexpr std::int64_t kStepDB = 5;

  /// Size of the widget, and of the board within its margins, at the last draw.
  std::int64_t viewWidth() const { return viewWidth_; }
  std::int64_t viewHeight() const { return viewHeight_; }              ///< Height of the widget.
  std::int64_t chessboardWidth() const { return chessboardWidth_; }    ///< Width of the board.
  std::int64_t chessboardHeight() const { return chessboardHeight_; }  ///< Height of the board.

  /// Distance between two level rows and between two frequency columns at the last draw, in points. Infinite where
  /// there is a single row or column.
  float xAxisStep() const { return xAxisStep_; }
  float yAxisStep() const { return yAxisStep_; }  ///< Between two frequency columns.

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
  explicit ChessboardBase(QWidget* parent);  ///< In a parent.

  /// The data source's frequencies; nothing if it does not answer.
  virtual std::optional<std::vector<std::string>> askForHzs() = 0;

  // The steps of a draw that both views share, in their order. The layout comes first; the rest follow it.

  /// Takes the layout from the widget's size for a grid of that many rows.
  void layOut(std::int64_t rows);

  /// The white ground, and the watermark on it.
  void drawGround(QPainter& painter) const;

  void drawGrid(QPainter& painter, std::int64_t rows, const QColor& color);  ///< The lines of rows and columns.

  /// The names of the columns, centred beneath them, `distance` points below the last row.
  void drawFrequencyLabels(QPainter& painter, std::int64_t rows, double distance, double fontSize);

  /// The size at which the widest text beside the rows fits there: that which is wanted, or a smaller one.
  double fittingFontSize(const QPainter& painter, double wanted) const;

  /// Which rows carry a level: every so many of them, from the first one with its level in dB on. The top of a label is
  /// `lowered` points below the middle between its row and the one above; labels keep clear of marks that reach
  /// `halfMark` to the left.
  struct LevelScale {
    std::int64_t rows;     ///< How many there are.
    std::int64_t every;    ///< From one label to the next, in rows.
    std::int64_t firstDB;  ///< Level of the first row, in dB.
    double lowered;        ///< In points.
    double halfMark;       ///< In points.
  };

  /// The levels at the left, and the unit above them.
  void drawLevelLabels(QPainter& painter, const LevelScale& scale, double fontSize) const;

  void paintEvent(QPaintEvent* event) override;  ///< Draws by drawRect().

 private:
  std::int64_t viewWidth_ = 0, viewHeight_ = 0;
  std::int64_t chessboardWidth_ = 0, chessboardHeight_ = 0;
  float xAxisStep_ = 0, yAxisStep_ = 0;
  std::optional<std::vector<std::string>> hzs_;
};

}  // namespace orn
