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

namespace orn {

class ChessboardResultView;

/// Gives the points of a finished audiogram. An empty member is an operation that gives nothing.
struct ChessboardResultViewDataSouce {
  /// How many result sets there are; each gets a fainter shade. No more than 100 are drawn.
  std::function<std::int32_t(ChessboardResultView& view)> countOfSection;

  /// The columns from left to right, such as "1000hz".
  std::function<std::vector<std::string>(ChessboardResultView& view)> hzsOfChessboardView;

  /// The point of a frequency such as "1000hz" as (column, row), where row r stands for -10 + 5 x r dB; fractions are
  /// welcome. Coordinates that are not finite leave the point and its lines out.
  std::function<QPointF(ChessboardResultView& view, const std::string& hz, std::int32_t index, bool isLeft,
                        std::int32_t insection)>
      pointAtHz;
};

/// The finished audiogram of both ears on one grid from -10 to 120 dB: blue crosses for the left ear, red circles for
/// the right one, each joined by lines. Texts and marks follow the width, with 320 points as the reference. The points
/// are asked for at each draw. Main thread.
class ORN_SCREENS_EXPORT ChessboardResultView final : public ChessboardBase {
 public:
  explicit ChessboardResultView(QWidget* parent = nullptr);  ///< In a parent, or a window of its own.
  ~ChessboardResultView() override;

  /// Not owned.
  std::shared_ptr<ChessboardResultViewDataSouce> datasouce() const { return datasouce_.lock(); }
  void setDatasouce(std::weak_ptr<ChessboardResultViewDataSouce> datasouce) { datasouce_ = std::move(datasouce); }

  void drawRect(QPainter& painter) override;

 protected:
  std::optional<std::vector<std::string>> askForHzs() override;

 private:
  struct Scale;

  void drawLeftEar(QPainter& painter, const Scale& scale, const std::vector<QPointF>& points, double shade) const;
  void drawRightEar(QPainter& painter, const Scale& scale, const std::vector<QPointF>& points, double shade) const;
  void drawLegend(QPainter& painter, double fontSize) const;

  /// What the data source gives for one ear, in the widget's coordinates.
  std::vector<QPointF> earPoints(bool isLeft, std::int32_t section);

  std::weak_ptr<ChessboardResultViewDataSouce> datasouce_;
};

}  // namespace orn
