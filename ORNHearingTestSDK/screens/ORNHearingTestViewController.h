#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <QtCore/QPointF>
#include <QtCore/QPointer>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/screens/Screen.h>

namespace orn {

class ChessboardView;
class HeardButton;
class SpokenChildren;
struct AudioSessionObserver;
struct ChessboardViewDataSource;
struct ChessboardViewDelegate;

/// The screen on which the user takes the test, the right ear first: a board for each ear, of which the upper one is
/// seen, the button for "heard", and the alerts that lead from one ear to the other. It drives the device's volume to
/// full while it is on screen. When it leaves its stack, the test ends for good. Main thread.
class ORN_SCREENS_EXPORT ORNHearingTestViewController final : public Screen {
 public:
  using CompletionHandler = ORNHearingTest::CompletionHandler;

  static constexpr int kInstructionAlert = 11118;
  static constexpr int kChangeEarAlert = 11119;
  static constexpr int kEndAlert = 99999;
  static constexpr int kDisconnectedAlert = 7764776;
  static constexpr int kReservedAlert = 111222;
  static constexpr int kToneMissingAlert = 7764777;

  /// Always null: the two creators below make a screen.
  static std::shared_ptr<ORNHearingTestViewController> init();

  /// A test by the audiometer that is connected. The handler is told the error of the calibration's fetch, perhaps
  /// within this call. Without an audiometer the screen has no session and the handler is never called.
  static std::shared_ptr<ORNHearingTestViewController> initKV50TestByCompletionHandler(
      CompletionHandler completionHandler);

  /// A test by earphones. The handler is not called if the calibration came from the cache.
  static std::shared_ptr<ORNHearingTestViewController> initEarphoneTestByCompletionHandler(
      CompletionHandler completionHandler);

  ~ORNHearingTestViewController() override;

  /// The session, which this screen owns; null if there was no audiometer.
  const std::shared_ptr<ORNHearingTest>& test() const { return test_; }
  void setTest(std::shared_ptr<ORNHearingTest> test) { test_ = std::move(test); }

  /// What this screen wants to hear of its session; for a host that sets a session of its own.
  const std::shared_ptr<ORNHearingTestDelegate>& hearingTestDelegate() const { return sessionDelegate_; }

  bool isFirstRight() const { return isFirstRight_; }
  void setIsFirstRight(bool isFirstRight) { isFirstRight_ = isFirstRight; }

  /// The frequencies in test order.
  const std::vector<std::string>& testHzs();
  /// Those of every such screen, for hosts that look into a calibration before there is one.
  static std::vector<std::string> testedHzs();

  // Made at first use; null while the screen has no view.
  ChessboardView* chessView();
  ChessboardView* rightChessView();
  HeardButton* heardButton();
  QWidget* firstFocus() const override;

  /// In mid-test, from the first ear's beginning until both are done or the device is gone: what has been measured
  /// would be lost.
  bool asksBeforeClosing() const override;
  void askBeforeClosing() override;

  void showHearingTestViewControllerByNavigation(const std::shared_ptr<NavigationController>& navigation,
                                                 const std::optional<QString>& leftBarTitle, Action leftBarAction,
                                                 const std::optional<QString>& rightBarTitle, Action rightBarAction);

  // What the session tells.
  void willTestAtHz(ORNHearingTest& hearingTest, const std::string& hz, const std::string& db, float volume,
                    bool isLeft);
  void willSelectedAtHz(ORNHearingTest& hearingTest, const std::string& hz, const std::string& db, bool isLeft);
  void oneEarCompleteWithResult(ORNHearingTest& hearingTest, const EarResult& result, bool isLeft);
  void completeWithLeftResult(ORNHearingTest& hearingTest, const EarResult& left, const EarResult& right);
  void toneMissing(ORNHearingTest& hearingTest, ToneMissingReason reason, bool isLeft);

  // What the boards ask and tell.
  std::vector<std::string> hzsOfChessboardView(ChessboardView& view);
  void chessboardViewTouchedAtHz(const std::string& hz, const std::string& db);

  /// True puts the button for "heard" on top of all, false takes it out of the view.
  void setDragButtonEnable(bool enabled);
  void heardButtonClicked();

  /// Moves the button's middle to a point of the view, wherever that is.
  void dragMoving(QPointF location);
  /// The same; nothing calls it.
  void dragEnded(QPointF location);

  void showTishi();
  void showEndAlert();
  void showOneEarEndToast();
  void showDuankaiTishi();
  void handleRouteChangeNotification(std::int32_t reason);
  void cancelButtonClicked();
  void changeToAnother();
  void gotoResultVC();

 protected:
  void alertView(int tag, int buttonIndex) override;
  void viewDidLoad() override;
  void viewDidAppear() override;
  void viewDidDisappear() override;
  void didLeaveStack() override;
  void layOut() override;

 private:
  ORNHearingTestViewController() = default;
  static std::shared_ptr<ORNHearingTestViewController> make();

  /// Absent objects do nothing.
  template <class Operation>
  void withTest(Operation operation) {
    if (const auto session = test_) operation(*session);
  }
  bool isTestLeft() const { return test_ && test_->isTestLeft(); }

  void endTest();
  void watchSession();
  void watchBoards();
  void observeRoute();
  void driveVolume();
  void putVolumeBack();
  ChessboardView* board(bool isLeft) { return isLeft ? chessView() : rightChessView(); }
  ChessboardView* makeBoard(QPointer<ChessboardView>& slot, bool isLeft);
  QRect boardFrame() const;
  void placeHeardButton();
  void setBoardsTouchable(bool isTouchable);
  void raiseBoard(bool isLeft);
  QWidgetList spokenViews() const;
  void describeBoard(bool isLeft);

  std::shared_ptr<ORNHearingTest> test_;
  bool isFirstRight_ = true;
  bool drivesVolume_ = false;
  bool isUnderWay_ = false;
  bool closesWindow_ = false;  // once the end question is answered so
  bool isLeftOnTop_ = false;
  std::vector<std::string> testHzs_;
  QPointer<HeardButton> heardDragButton_;
  QPointer<ChessboardView> chessView_, rightChessView_;
  std::shared_ptr<ORNHearingTestDelegate> sessionDelegate_;
  std::shared_ptr<ChessboardViewDelegate> boardDelegate_;
  std::shared_ptr<ChessboardViewDataSource> boardSource_;
  std::shared_ptr<AudioSessionObserver> routeObserver_;
  QPointer<SpokenChildren> spoken_;
};

}  // namespace orn
