#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <QtCore/QPointF>

#include <ORNHearingTestSDK/screens/ChessboardBase.h>

class QTouchEvent;

namespace orn {

class BoardMarks;

/// Told of the cells that are touched. An empty member is not called.
struct ChessboardViewDelegate {
  /// `hz` and `db` are texts such as "1000hz" and "40db".
  std::function<void(const std::string& hz, const std::string& db)> chessboardViewTouchedAtHz;
};

class ChessboardView;

/// Gives the frequencies. An empty member is not called.
struct ChessboardViewDataSource {
  /// The columns from left to right, such as "1000hz".
  std::function<std::vector<std::string>(ChessboardView& view)> hzsOfChessboardView;
};

/// The live audiogram of one ear: a moving mark for the tone that sounds, a fixed mark for each threshold found, and,
/// once the ear is finished, a line that joins them. Blue crosses for the left ear, red circles for the right one.
///
/// It draws what it is told and knows nothing of the test. Main thread.
class ORN_SCREENS_EXPORT ChessboardView final : public ChessboardBase {
 public:
  explicit ChessboardView(QWidget* parent = nullptr);  ///< In a parent, or a window of its own.
  ~ChessboardView() override;

  /// Stands for the absence of a point, in either coordinate.
  static constexpr double kNoPoint = -200;

  /// Not owned.
  std::shared_ptr<ChessboardViewDelegate> delegate() const { return delegate_.lock(); }
  void setDelegate(std::weak_ptr<ChessboardViewDelegate> delegate) { delegate_ = std::move(delegate); }
  std::shared_ptr<ChessboardViewDataSource> datasource() const { return datasource_.lock(); }  ///< Not owned.
  void setDatasource(std::weak_ptr<ChessboardViewDataSource> datasource) { datasource_ = std::move(datasource); }

  /// Whether this board shows the left ear.
  bool isTestLeft() const { return isTestLeft_; }
  void setIsTestLeft(bool isTestLeft) { isTestLeft_ = isTestLeft; }

  bool isTestEnd() const { return isTestEnd_; }                  ///< Whether the ear is finished.
  void setIsTestEnd(bool isTestEnd) { isTestEnd_ = isTestEnd; }  ///< Says whether the ear is finished.

  /// Levels in dB; -1 selects the default. Rows run in steps of 5 dB from the lower to below the upper one.
  std::int64_t maxDB() const { return maxDB_; }
  std::int64_t minDB() const { return minDB_; }  ///< The lowest level, in dB HL.
  void setMaxDB(std::int64_t maxDB) { maxDB_ = maxDB; }
  void setMinDB(std::int64_t minDB) { minDB_ = minDB; }
  void setMaxDB(std::int64_t maxDB, std::int64_t minDB);

  std::int64_t getMaxDBWithDefault() const;  ///< The highest level, or its default where none is set.

  /// 15 by default. Once minDB is set, the answer is maxDB, which is meant, see docs/BEHAVIOURS.md.
  std::int64_t getMinDBWithDefault() const;

  /// How many level rows there are; 16 by default. No more than 1000 of them are drawn or touched.
  std::int64_t kXAxisNumber() const;

  /// The fixed mark of each column in the widget's coordinates; (-200, -200) where there is none yet.
  const std::vector<QPointF>& pointsArray();
  void setPointsArray(std::vector<QPointF> points) { pointsArray_ = std::move(points); }

  /// The moving mark in the widget's coordinates, and as (column, row).
  QPointF currentTestPoint() const { return currentTestPoint_; }
  QPointF currentTestPointBack() const { return currentTestPointBack_; }  ///< The cell before.
  void setCurrentTestPoint(QPointF point) { currentTestPoint_ = point; }
  void setCurrentTestPointBack(QPointF point) { currentTestPointBack_ = point; }

  /// Whether a point lies on the board; its left and top edges count, the right and bottom ones don't.
  bool isTouchInBoardArea(QPointF point) const;

  /// The cell nearest to a touch, by the layout of the last draw, the upper or left one of two that are equally near.
  /// Outside the board (-200, -200), and both indices stay as they are. XAxisIndex is the column, YAxisIndex the row.
  QPointF adjustCurrentTouchPoint(QPointF point, std::int64_t& XAxisIndex, std::int64_t& YAxisIndex);

  /// The (column, row) of a tone; a frequency that is not shown gets a column far outside the view.
  QPointF convert2Point(const std::string& hz, const std::string& db);

  /// Moves the moving mark; one off the board is not seen.
  void drawTestAtHz(const std::string& hz, const std::string& db);
  void drawTestAtPoint(QPointF point);  ///< The same by its cell.

  /// Fixes the mark of a column and takes the moving mark away; nothing happens for a column that there is not.
  void drawSelectAtHz(const std::string& hz, const std::string& db);
  void drawSelectAtPoint(QPointF point);  ///< The same by its cell.

  /// The ear is finished, for good. Asks for no redraw: the line shows at the next one.
  void drawTestEnd() { isTestEnd_ = true; }

  void drawRect(QPainter& painter) override;

 protected:
  std::optional<std::vector<std::string>> askForHzs() override;
  bool event(QEvent* event) override;                   ///< Qt's; handled here.
  void mousePressEvent(QMouseEvent* event) override;    ///< Qt's; handled here.
  void mouseReleaseEvent(QMouseEvent* event) override;  ///< Qt's; handled here.

 private:
  /// A touch that began on this view has ended there.
  void touchEnded(QPointF point);
  void touch(QTouchEvent& event);

  /// Takes the layout; the marks, which are points of the view, follow a change of its size.
  void layOutBoard();
  void drawMarks(QPainter& painter);
  void addMark(BoardMarks& marks, QPointF point) const;

  std::weak_ptr<ChessboardViewDelegate> delegate_;
  std::weak_ptr<ChessboardViewDataSource> datasource_;
  bool isTestLeft_ = false;
  bool isTestEnd_ = false;
  std::int64_t maxDB_ = -1, minDB_ = -1;
  std::optional<std::vector<QPointF>> pointsArray_;
  QPointF currentTestPoint_{kNoPoint, kNoPoint};
  QPointF currentTestPointBack_;
  QPointF markSteps_;  // the distances of columns and rows by which the marks stand
  int touchId_ = -1;
};

}  // namespace orn
