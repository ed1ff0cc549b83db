#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <utility>

#include <QtWidgets/QGraphicsOpacityEffect>

#include <ORNHearingTestSDK/audio/ORNSystemVolumeManager.h>
#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>
#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/engine/ORNAutoHearingTest.h>
#include <ORNHearingTestSDK/engine/ORNStandardHearingTest.h>
#include <ORNHearingTestSDK/engine/SessionCalibration.h>
#include <ORNHearingTestSDK/platform/AudioSession.h>
#include <ORNHearingTestSDK/platform/MainQueue.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/screens/Animation.h>
#include <ORNHearingTestSDK/screens/AudiogramSummary.h>
#include <ORNHearingTestSDK/screens/ChessboardView.h>
#include <ORNHearingTestSDK/screens/HeardButton.h>
#include <ORNHearingTestSDK/screens/NavigationController.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/ORNTestResultViewController.h>
#include <ORNHearingTestSDK/screens/SpokenChildren.h>

namespace orn {
namespace {

constexpr std::int32_t kAutomaticTest = 0;
constexpr std::chrono::milliseconds kChangeOfEar{1000};

QString testTitle(bool isLeft) { return QStringLiteral("%1测试").arg(earName(isLeft)); }

/// Exactly the manual test, not one of the timed ones that are built on it.
bool isManual(const std::shared_ptr<ORNHearingTest>& session) {
  const ORNHearingTest* test = session.get();
  return dynamic_cast<const ORNManualHearingTest*>(test) && !dynamic_cast<const ORNAutoHearingTest*>(test) &&
         !dynamic_cast<const ORNStandardHearingTest*>(test);
}

}  // namespace

std::shared_ptr<ORNHearingTestViewController> ORNHearingTestViewController::init() { return nullptr; }

std::shared_ptr<ORNHearingTestViewController> ORNHearingTestViewController::make() {
  std::shared_ptr<ORNHearingTestViewController> made(new ORNHearingTestViewController);
  made->watchSession();
  made->watchBoards();
  return made;
}

std::shared_ptr<ORNHearingTestViewController> ORNHearingTestViewController::initKV50TestByCompletionHandler(
    CompletionHandler completionHandler) {
  const auto made = make();
  const auto address = ORNHearingTest::getKV50Mac();
  if (!address) return made;
  made->test_ = ORNHearingTest::initWithTestType(kAutomaticTest);
  made->test_->setDelegate(made->sessionDelegate_);
  made->test_->setKV50MAC(*address, [done = std::move(completionHandler)](std::optional<Error> error) {
    if (done) done(std::move(error));
  });
  made->isFirstRight_ = true;
  made->test_->setTestHzs(made->testHzs());
  return made;
}

std::shared_ptr<ORNHearingTestViewController> ORNHearingTestViewController::initEarphoneTestByCompletionHandler(
    CompletionHandler completionHandler) {
  const auto made = make();
  const auto session = ORNManualHearingTest::initWithTestType(kAutomaticTest);
  made->test_ = session;
  session->setDelegate(made->sessionDelegate_);
  session->setEarPlugModel(kEarphoneModel, [done = std::move(completionHandler)](std::optional<Error> error) {
    if (done) done(std::move(error));
  });
  made->isFirstRight_ = true;
  session->setTestHzs(made->testHzs());
  return made;
}

std::shared_ptr<ORNHearingTestViewController> ORNHearingTestViewController::initTestByPath(
    OutputPath path, CompletionHandler completionHandler) {
  const auto made = make();
  const auto device =
      path == OutputPath::Audiometer ? ORNHearingTest::getKV50Mac() : std::optional<std::string>(kEarphoneModel);
  if (!device) {
    MainQueue::current().tell(std::move(completionHandler),
                              Error{kNoCalibrationDomain, 0, "no audiometer is connected"});
    return made;
  }
  const auto session = ORNManualHearingTest::initWithTestType(kAutomaticTest);
  made->test_ = session;
  session->setDelegate(made->sessionDelegate_);
  session->setTestHzs(made->testHzs());
  fetchCalibration(*session, path, *device, std::move(completionHandler));
  return made;
}

ORNHearingTestViewController::~ORNHearingTestViewController() {
  try {
    withTest([](ORNHearingTest& session) { session.endTest(); });
    putVolumeBack();
  } catch (const std::logic_error&) {
    // The platform has gone before its windows; there is no volume to put back.
  }
}

const std::vector<std::string>& ORNHearingTestViewController::testHzs() {
  if (testHzs_.empty()) testHzs_ = testedHzs();
  return testHzs_;
}

std::vector<std::string> ORNHearingTestViewController::testedHzs() { return frequencyKeys(kShortTestOrder); }

void ORNHearingTestViewController::showHearingTestViewControllerByNavigation(
    const std::shared_ptr<NavigationController>& navigation, const std::optional<QString>& leftBarTitle,
    Action leftBarAction, const std::optional<QString>& rightBarTitle, Action rightBarAction) {
  showByNavigation(navigation, leftBarTitle, std::move(leftBarAction), rightBarTitle, std::move(rightBarAction));
}

void ORNHearingTestViewController::watchSession() {
  sessionDelegate_ = std::make_shared<ORNHearingTestDelegate>();
  // Each call holds the screen, which may be let go of by what the call leads to.
  const auto forward = [self = weakSelf(this)](auto operation) {
    return [self, operation](auto&&... arguments) {
      if (const auto screen = self.lock()) ((*screen).*operation)(arguments...);
    };
  };
  using Self = ORNHearingTestViewController;
  sessionDelegate_->willTestAtHz = forward(&Self::willTestAtHz);
  sessionDelegate_->willSelectedAtHz = forward(&Self::willSelectedAtHz);
  sessionDelegate_->oneEarCompleteWithResult = forward(&Self::oneEarCompleteWithResult);
  sessionDelegate_->completeWithLeftResult = forward(&Self::completeWithLeftResult);
  sessionDelegate_->toneMissing = forward(&Self::toneMissing);
  sessionDelegate_->submissionEnded = forward(&Self::submissionEnded);
}

void ORNHearingTestViewController::watchBoards() {
  boardDelegate_ = std::make_shared<ChessboardViewDelegate>();
  boardDelegate_->chessboardViewTouchedAtHz = [self = weakSelf(this)](const std::string& hz, const std::string& db) {
    if (const auto screen = self.lock()) screen->chessboardViewTouchedAtHz(hz, db);
  };
  boardSource_ = std::make_shared<ChessboardViewDataSource>();
  boardSource_->hzsOfChessboardView = [self = weakSelf(this)](ChessboardView& view) {
    const auto screen = self.lock();
    return screen ? screen->hzsOfChessboardView(view) : std::vector<std::string>();
  };
}

void ORNHearingTestViewController::observeRoute() {
  routeObserver_ = std::make_shared<AudioSessionObserver>();
  routeObserver_->routeChange = [self = weakSelf(this)](std::int32_t reason) {
    if (const auto screen = self.lock()) screen->handleRouteChangeNotification(reason);
  };
  Platform::current().audioSession->addObserver(routeObserver_);
}

void ORNHearingTestViewController::viewDidLoad() {
  driveVolume();
  for (ChessboardView* one : {chessView(), rightChessView()}) {
    one->setDelegate(boardDelegate_);
    one->setDatasource(boardSource_);
  }
  setLeftBarItem({QStringLiteral("取消"), [self = weakSelf(this)] {
                    if (const auto screen = self.lock()) screen->showEndAlert();
                  }});
  spoken_ = new SpokenChildren(view(), [this] { return spokenViews(); });
  raiseBoard(!isFirstRight_);
  setDragButtonEnable(true);
  setTitle(testTitle(!isFirstRight_));
  showTishi();
  observeRoute();
}

void ORNHearingTestViewController::viewDidAppear() {
  driveVolume();
  setBoardsTouchable(isManual(test_));
}

void ORNHearingTestViewController::viewDidDisappear() {
  withTest([](ORNHearingTest& session) { session.pauseTest(); });
  putVolumeBack();
}

/// No tone that is still due may sound where there is no screen.
void ORNHearingTestViewController::didLeaveStack() {
  withTest([](ORNHearingTest& session) { session.endTest(); });
  if (isTellingComplete_) isSubmitting_ = false;               // a session that has ended by then submits nothing
  const bool isWindowGoing = window() && window()->isGoing();  // and perhaps the host with it
  const auto told = onLeft;
  if (told && !isWindowGoing) told(isComplete_);
}

/// Saves the user's volume once, until it is put back: between two times on screen it is the user's own.
void ORNHearingTestViewController::driveVolume() {
  if (!std::exchange(drivesVolume_, true)) ORNSystemVolumeManager::saveSystemVolume();
  ORNSystemVolumeManager::setSystemVolumeToMax();
}

void ORNHearingTestViewController::putVolumeBack() {
  if (std::exchange(drivesVolume_, false)) ORNSystemVolumeManager::reStoreSystemVolume();
}

void ORNHearingTestViewController::layOut() {
  for (ChessboardView* one : {chessView(), rightChessView()}) {
    if (one) one->setGeometry(boardFrame());
  }
  placeHeardButton();
}

QRect ORNHearingTestViewController::boardFrame() const {
  const auto navigation = navigationController();
  const int top = navigation && navigation->isTranslucent() ? topBars() : 0;
  return {0, top, mainScreen().width(), mainScreen().height() - top};
}

ChessboardView* ORNHearingTestViewController::makeBoard(QPointer<ChessboardView>& slot, bool isLeft) {
  if (!slot && view()) {
    slot = new ChessboardView(view());
    slot->setIsTestLeft(isLeft);
    slot->setGeometry(boardFrame());
    slot->show();
    describeBoard(isLeft);
  }
  return slot;
}

ChessboardView* ORNHearingTestViewController::chessView() { return makeBoard(chessView_, true); }
ChessboardView* ORNHearingTestViewController::rightChessView() { return makeBoard(rightChessView_, false); }

void ORNHearingTestViewController::raiseBoard(bool isLeft) {
  isLeftOnTop_ = isLeft;
  if (ChessboardView* upper = board(isLeft)) upper->raise();
  if (spoken_) spoken_->changed();
}

/// Not the board that is covered.
QWidgetList ORNHearingTestViewController::spokenViews() const {
  QWidgetList views;
  if (QWidget* upper = isLeftOnTop_ ? chessView_ : rightChessView_) views << upper;
  if (heardDragButton_ && !heardDragButton_->isHidden()) views << heardDragButton_;
  return views;
}

void ORNHearingTestViewController::setBoardsTouchable(bool isTouchable) {
  for (ChessboardView* one : {chessView(), rightChessView()}) {
    if (one) one->setEnabled(isTouchable);
  }
}

/// Thresholds only: nothing but the ear may tell that a tone sounds.
void ORNHearingTestViewController::describeBoard(bool isLeft) {
  ChessboardView* described = isLeft ? chessView_ : rightChessView_;
  if (!described) return;
  const auto result = test_ ? test_->getTestResult(isLeft) : std::nullopt;
  described->setAccessibleName(audiogramSummary(result.value_or(EarResult()), isLeft));
}

HeardButton* ORNHearingTestViewController::heardButton() {
  if (!heardDragButton_ && view()) {
    heardDragButton_ = new HeardButton(view());
    placeHeardButton();
    heardDragButton_->onDrag = [self = weakSelf(this)](QPointF location) {
      if (const auto screen = self.lock()) screen->dragMoving(location);
    };
    QObject::connect(heardDragButton_, &HeardButton::clicked, [self = weakSelf(this)] {
      if (const auto screen = self.lock()) screen->heardButtonClicked();
    });
  }
  return heardDragButton_;
}

QWidget* ORNHearingTestViewController::firstFocus() const { return heardDragButton_; }

/// The first place of the button; a change of the window's size brings it back there.
void ORNHearingTestViewController::placeHeardButton() {
  if (!heardDragButton_) return;
  heardDragButton_->move((mainScreen().width() - HeardButton::kSize) / 2, mainScreen().height() - HeardButton::kSize);
}

void ORNHearingTestViewController::setDragButtonEnable(bool enabled) {
  if (!enabled) {
    if (heardDragButton_) heardDragButton_->hide();
  } else if (HeardButton* button = heardButton()) {
    button->show();
    button->raise();
  }
}

void ORNHearingTestViewController::heardButtonClicked() {
  withTest([](ORNHearingTest& session) { session.listened(); });
}

void ORNHearingTestViewController::dragMoving(QPointF location) {
  if (!heardDragButton_) return;
  heardDragButton_->move(location.toPoint() - QPoint(heardDragButton_->width() / 2, heardDragButton_->height() / 2));
}

void ORNHearingTestViewController::dragEnded(QPointF location) { dragMoving(location); }

void ORNHearingTestViewController::willTestAtHz(ORNHearingTest& /*hearingTest*/, const std::string& hz,
                                                const std::string& db, float /*volume*/, bool isLeft) {
  if (ChessboardView* told = board(isLeft)) told->drawTestAtHz(hz, db);
}

void ORNHearingTestViewController::willSelectedAtHz(ORNHearingTest& /*hearingTest*/, const std::string& hz,
                                                    const std::string& db, bool isLeft) {
  if (ChessboardView* told = board(isLeft)) told->drawSelectAtHz(hz, db);
  describeBoard(isLeft);
}

void ORNHearingTestViewController::oneEarCompleteWithResult(ORNHearingTest& /*hearingTest*/,
                                                            const EarResult& /*result*/, bool isLeft) {
  if (ChessboardView* told = board(isLeft)) told->drawTestEnd();
  showOneEarEndToast();
}

void ORNHearingTestViewController::completeWithLeftResult(ORNHearingTest& /*hearingTest*/, const EarResult& left,
                                                          const EarResult& right) {
  if (ChessboardView* told = board(isTestLeft())) told->drawTestEnd();
  setBoardsTouchable(false);
  isUnderWay_ = false;
  Platform::current().runLoop->performAfterDelay(std::chrono::nanoseconds(0), [self = weakSelf(this)] {
    if (const auto screen = self.lock()) screen->gotoResultVC();
  });
  tellComplete(left, right);
}

void ORNHearingTestViewController::tellComplete(const EarResult& left, const EarResult& right) {
  isComplete_ = isSubmitting_ = isTellingComplete_ = true;
  const ORNManualHearingTest* session = test_ ? test_->manualTest() : nullptr;
  const std::string device = session ? session->deviceInUse().value_or("") : "";
  if (const auto told = onComplete) told(finishedTest(left, right, device));
  isTellingComplete_ = false;
}

void ORNHearingTestViewController::submissionEnded(ORNHearingTest& /*hearingTest*/, const std::optional<Error>& error) {
  isSubmitting_ = false;
  if (const auto told = onSubmitted) told(error);
}

std::vector<std::string> ORNHearingTestViewController::hzsOfChessboardView(ChessboardView& /*view*/) {
  std::vector<std::string> sorted = testHzs();
  std::stable_sort(sorted.begin(), sorted.end(), [](const std::string& first, const std::string& second) {
    return integerValue(first) < integerValue(second);
  });
  return sorted;
}

void ORNHearingTestViewController::chessboardViewTouchedAtHz(const std::string& hz, const std::string& db) {
  withTest([&](ORNHearingTest& session) { session.playAtHz(hz, db); });
}

void ORNHearingTestViewController::handleRouteChangeNotification(std::int32_t reason) {
  if (reason != kAudioSessionRouteChangeReasonOldDeviceUnavailable) return;
  MainQueue::current().dispatchAsync([self = weakSelf(this)] {
    if (const auto screen = self.lock()) screen->showDuankaiTishi();
  });
}

void ORNHearingTestViewController::cancelButtonClicked() { dismiss(); }

bool ORNHearingTestViewController::asksBeforeClosing() const { return isUnderWay_ && !isAlertRead(kEndAlert); }

void ORNHearingTestViewController::askBeforeClosing() {
  closesWindow_ = true;
  showEndAlert();
}

void ORNHearingTestViewController::changeToAnother() {
  setTitle(testTitle(isFirstRight_));
  if (ChessboardView* old = board(!isFirstRight_)) {
    QWidget* picture = makePicture(old);
    auto* opacity = new QGraphicsOpacityEffect(picture);
    picture->setGraphicsEffect(opacity);
    raiseBoard(isFirstRight_);
    picture->raise();
    setDragButtonEnable(true);
    animate(
        picture, kChangeOfEar, [opacity](double progress) { opacity->setOpacity(1 - progress); },
        [picture] { picture->deleteLater(); });
  }
  withTest([](ORNHearingTest& session) { session.startTest(!session.isTestLeft()); });
}

void ORNHearingTestViewController::gotoResultVC() {
  // A test that is over can be neither started nor ended.
  for (const int tag : {kInstructionAlert, kChangeEarAlert, kEndAlert}) withdrawAlert(tag);
  const auto result = ORNTestResultViewController::init();
  if (test_) {
    result->setLeft(test_->getTestResult(true).value_or(EarResult()));
    result->setRight(test_->getTestResult(false).value_or(EarResult()));
  }
  const auto close = [weak = std::weak_ptr(result)] {
    if (const auto screen = weak.lock()) screen->dismiss();
  };
  result->showTestResultViewControllerByNavigation(navigationController(), QStringLiteral("完成"), close, std::nullopt,
                                                   nullptr);
}

}  // namespace orn
