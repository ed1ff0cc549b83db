#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QtCore/QPointF>
#include <QtCore/QPointer>

#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>
#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/results/FinishedTest.h>
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
  using CompletionHandler = ORNHearingTest::CompletionHandler;  ///< Told an error or nothing.

  static constexpr int kInstructionAlert = 11118;     ///< Tag of the instruction before the test.
  static constexpr int kChangeEarAlert = 11119;       ///< Tag of the alert between the ears.
  static constexpr int kEndAlert = 99999;             ///< Tag of the question whether to end the test.
  static constexpr int kDisconnectedAlert = 7764776;  ///< Tag of the alert that the device is gone.
  static constexpr int kReservedAlert = 111222;       ///< A tag without an alert.
  static constexpr int kToneMissingAlert = 7764777;   ///< Tag of the alert that no tone sounds.

  /// Always null: the two creators below make a screen.
  static std::shared_ptr<ORNHearingTestViewController> init();

  /// A test by the audiometer that is connected. The handler is told the error of the calibration's fetch, perhaps
  /// within this call. Without an audiometer the screen has no session and the handler is never called.
  static std::shared_ptr<ORNHearingTestViewController> initKV50TestByCompletionHandler(
      CompletionHandler completionHandler);

  /// A test by earphones. The handler is not called if the calibration came from the cache.
  static std::shared_ptr<ORNHearingTestViewController> initEarphoneTestByCompletionHandler(
      CompletionHandler completionHandler);

  /// A test by the device of a path that is connected, or by earphones whether any are. The handler is called once, on
  /// the main thread and after this has returned, without an error only if the test can be taken; see
  /// fetchCalibration(). Without an audiometer the screen has no session, and that is the error.
  static std::shared_ptr<ORNHearingTestViewController> initTestByPath(OutputPath path,
                                                                      CompletionHandler completionHandler);

  ~ORNHearingTestViewController() override;

  // For the host, who sets them before the screen is shown; an empty one is not called. Any of them may let go of the
  // screen.

  /// Both ears have all their thresholds. The result is submitted after this call, which is the moment to keep it.
  std::function<void(const FinishedTest& test)> onComplete;

  /// The submission has ended: without an error if the service has taken the result, else with the reason. Called for
  /// as long as somebody holds the screen; the device selection does so until then.
  std::function<void(const std::optional<Error>& error)> onSubmitted;

  /// The screen has left its stack, and with it the results if it was complete. Nothing sounds any more and the volume
  /// is the user's again. Not called where the window goes first.
  std::function<void(bool isComplete)> onLeft;

  /// From onComplete until onSubmitted.
  bool isSubmitting() const { return isSubmitting_; }

  /// The session, which this screen owns; null if there was no audiometer.
  const std::shared_ptr<ORNHearingTest>& test() const { return test_; }
  void setTest(std::shared_ptr<ORNHearingTest> test) { test_ = std::move(test); }

  /// What this screen wants to hear of its session; for a host that sets a session of its own.
  const std::shared_ptr<ORNHearingTestDelegate>& hearingTestDelegate() const { return sessionDelegate_; }

  bool isFirstRight() const { return isFirstRight_; }  ///< Whether the right ear is the first; at first it is.
  void setIsFirstRight(bool isFirstRight) { isFirstRight_ = isFirstRight; }  ///< Says so, before the screen is shown.

  /// The frequencies in test order.
  const std::vector<std::string>& testHzs();
  /// Those of every such screen, for hosts that look into a calibration before there is one.
  static std::vector<std::string> testedHzs();

  // Made at first use; null while the screen has no view.
  ChessboardView* chessView();       ///< The left ear's board.
  ChessboardView* rightChessView();  ///< The right ear's board.
  HeardButton* heardButton();        ///< The button for "heard".
  QWidget* firstFocus() const override;

  /// In mid-test, from the first ear's beginning until both are done or the device is gone: what has been measured
  /// would be lost.
  bool asksBeforeClosing() const override;
  void askBeforeClosing() override;  ///< Pauses, and asks whether to end the test.

  /// Makes the bar items whose titles are given and pushes the screen.
  void showHearingTestViewControllerByNavigation(const std::shared_ptr<NavigationController>& navigation,
                                                 const std::optional<QString>& leftBarTitle, Action leftBarAction,
                                                 const std::optional<QString>& rightBarTitle, Action rightBarAction);

  // What the session tells.
  /// Marks the tone on its ear's board.
  void willTestAtHz(ORNHearingTest& hearingTest, const std::string& hz, const std::string& db, float volume,
                    bool isLeft);
  /// Marks the threshold on its ear's board.
  void willSelectedAtHz(ORNHearingTest& hearingTest, const std::string& hz, const std::string& db, bool isLeft);
  /// Shows the alert between the ears.
  void oneEarCompleteWithResult(ORNHearingTest& hearingTest, const EarResult& result, bool isLeft);
  /// Opens the result, at the loop's next turn.
  void completeWithLeftResult(ORNHearingTest& hearingTest, const EarResult& left, const EarResult& right);
  void toneMissing(ORNHearingTest& hearingTest, ToneMissingReason reason, bool isLeft);  ///< Says why, and then leaves.
  void submissionEnded(ORNHearingTest& hearingTest, const std::optional<Error>& error);  ///< Tells the host.

  // What the boards ask and tell.
  std::vector<std::string> hzsOfChessboardView(ChessboardView& view);  ///< The frequencies in ascending order.
  /// Presents that cell in a manual test.
  void chessboardViewTouchedAtHz(const std::string& hz, const std::string& db);

  /// True puts the button for "heard" on top of all, false takes it out of the view.
  void setDragButtonEnable(bool enabled);
  void heardButtonClicked();  ///< The user has heard a tone.

  /// Moves the button's middle to a point of the view, wherever that is.
  void dragMoving(QPointF location);
  /// The same; nothing calls it.
  void dragEnded(QPointF location);

  void showTishi();           ///< Shows the instruction.
  void showEndAlert();        ///< Pauses, and asks whether to end the test.
  void showOneEarEndToast();  ///< Shows the alert between the ears.
  void showDuankaiTishi();    ///< Pauses, and says that the device is gone.
  /// Where the device is gone, says so at the loop's next turn.
  void handleRouteChangeNotification(std::int32_t reason);
  void cancelButtonClicked();  ///< Leaves.
  void changeToAnother();      ///< Brings up the other ear's board and starts that ear.
  void gotoResultVC();         ///< Opens the result on the same stack.

 protected:
  void alertView(int tag, int buttonIndex) override;  ///< An alert was answered.
  void viewDidLoad() override;
  void viewDidAppear() override;
  void viewDidDisappear() override;
  void didLeaveStack() override;
  void layOut() override;

 private:
  ORNHearingTestViewController() = default;
  static std::shared_ptr<ORNHearingTestViewController> make();
  void tellComplete(const EarResult& left, const EarResult& right);

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
  bool isComplete_ = false, isTellingComplete_ = false, isSubmitting_ = false;
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
