#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <QtCore/QPointF>
#include <QtCore/QPointer>

#include <ORNHearingTestSDK/common/EarResult.h>
#include <ORNHearingTestSDK/screens/Screen.h>

class QImage;
class QLabel;

namespace orn {

class ChessboardResultView;
class TextLabel;
struct ChessboardResultViewDataSouce;

/// The result of one test: the audiogram at half size, which a tap opens over everything, and the loss of each ear in
/// words, the right one first. Both results must be set before it is shown. Main thread.
class ORN_SCREENS_EXPORT ORNTestResultViewController final : public Screen {
 public:
  static std::shared_ptr<ORNTestResultViewController> init();  ///< A new screen.
  ~ORNTestResultViewController() override;

  const EarResult& left() const { return left_; }                ///< As they were set.
  void setLeft(EarResult left) { left_ = std::move(left); }      ///< Takes the left ear's thresholds.
  const EarResult& right() const { return right_; }              ///< As they were set.
  void setRight(EarResult right) { right_ = std::move(right); }  ///< Takes the right ear's thresholds.

  /// The results without their "-1" entries, made at first use. Where the left ear has no result, the right one's is
  /// left out too, which is meant.
  const EarResult& converLeft();
  const EarResult& converRight();

  /// Makes the bar items whose titles are given and pushes the screen.
  void showTestResultViewControllerByNavigation(const std::shared_ptr<NavigationController>& navigation,
                                                const std::optional<QString>& leftBarTitle, Action leftBarAction,
                                                const std::optional<QString>& rightBarTitle, Action rightBarAction);

  // What the audiogram asks.
  std::int32_t countOfSection(ChessboardResultView& view);  ///< Always 1.
  /// The left ear's frequencies, in ascending order.
  std::vector<std::string> hzsOfChessboardView(ChessboardResultView& view);

  /// From the results as they were set: a level that is missing stands at 0 dB.
  QPointF pointAtHz(ChessboardResultView& view, const std::string& hz, std::int32_t index, bool isLeft,
                    std::int32_t insection);

  // For a host's own controls.
  void gotolishi();    ///< Opens the history.
  void backClicked();  ///< Goes back to the screen before.
  /// The audiogram at full size; null while the screen has no view.
  ChessboardResultView* chessView();
  /// Saves the audiogram as a PNG file in the user's picture folder, and says nothing of it, whether it works or not.
  void takePhoto(QWidget* sender);
  void takePhotoComplete(const QImage& image, bool didFinishSaving);  ///< Does nothing.

  void showFullView();  ///< Opens the audiogram over everything.
  void hideFullView();  ///< Takes it away again, a moment later.

  QWidget* firstFocus() const override;
  bool escapePressed() override;

 protected:
  QWidget* loadView(QWidget* parent) override;
  void viewDidLoad() override;
  void viewDidDisappear() override;
  void layOut() override;

 private:
  ORNTestResultViewController();

  void makeFullView();
  void makeLabels();
  void takeFullViewAway();
  bool isFullViewShown() const;

  EarResult left_, right_;
  std::optional<EarResult> converLeft_, converRight_;
  QString verdict_;
  QPointer<QWidget> content_;
  QPointer<TextLabel> resutLabel_, seeLargeLabel_, xitongfenxiLabel_, copyLabel_;
  QPointer<QLabel> chessboard_;
  QPointer<ChessboardResultView> fullView_;
  std::shared_ptr<ChessboardResultViewDataSouce> source_;
};

}  // namespace orn
