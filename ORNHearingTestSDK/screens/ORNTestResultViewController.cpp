#include <ORNHearingTestSDK/screens/ORNTestResultViewController.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include <QtCore/QStringList>
#include <QtGui/QImage>
#include <QtWidgets/QLabel>
#include <QtWidgets/QScrollArea>

#include <ORNHearingTestSDK/engine/LevelScale.h>
#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/screens/Animation.h>
#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/AudiogramSummary.h>
#include <ORNHearingTestSDK/screens/ChessboardResultView.h>
#include <ORNHearingTestSDK/screens/NavigationController.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>
#include <ORNHearingTestSDK/screens/ORNTestHistoryViewController.h>
#include <ORNHearingTestSDK/screens/PhotoAlbum.h>
#include <ORNHearingTestSDK/screens/TapRecognizer.h>
#include <ORNHearingTestSDK/screens/TextLabel.h>

namespace orn {
namespace {

constexpr std::chrono::milliseconds kFullView{200};
constexpr double kVerdictLineSpace = 5;
constexpr int kBodySize = 15;
constexpr int kSmallSize = 12;
constexpr double kLongestLine = 580;  // of a text, on windows wider than a phone

const std::string& valueOf(const EarResult& ear, const std::string& hz) {
  static const std::string none;
  const auto found = ear.find(hz);
  return found == ear.end() ? none : found->second;
}

QString lossSentence(bool isLeft, std::int64_t loss) {
  return QStringLiteral("您的%1的平均听力损失为%2分贝，%3\n\n")
      .arg(earName(isLeft))
      .arg(loss)
      .arg(QString::fromStdString(ORNHearingTest::computeResultString(loss)));
}

}  // namespace

ORNTestResultViewController::ORNTestResultViewController() = default;
ORNTestResultViewController::~ORNTestResultViewController() { takeFullViewAway(); }

std::shared_ptr<ORNTestResultViewController> ORNTestResultViewController::init() {
  return std::shared_ptr<ORNTestResultViewController>(new ORNTestResultViewController);
}

void ORNTestResultViewController::showTestResultViewControllerByNavigation(
    const std::shared_ptr<NavigationController>& navigation, const std::optional<QString>& leftBarTitle,
    Action leftBarAction, const std::optional<QString>& rightBarTitle, Action rightBarAction) {
  showByNavigation(navigation, leftBarTitle, std::move(leftBarAction), rightBarTitle, std::move(rightBarAction));
}

const EarResult& ORNTestResultViewController::converLeft() {
  if (!converLeft_) {
    converLeft_.emplace();
    for (const auto& [hz, db] : left_) {
      if (intValue(db) != -1) converLeft_->emplace(hz, db);
    }
  }
  return *converLeft_;
}

const EarResult& ORNTestResultViewController::converRight() {
  if (!converRight_) {
    converRight_.emplace();
    for (const auto& [hz, ignored] : converLeft()) {  // not the right ear's own keys, which is meant
      const auto found = right_.find(hz);
      if (found != right_.end() && intValue(found->second) != -1) converRight_->insert(*found);
    }
  }
  return *converRight_;
}

std::int32_t ORNTestResultViewController::countOfSection(ChessboardResultView& /*view*/) { return 1; }

std::vector<std::string> ORNTestResultViewController::hzsOfChessboardView(ChessboardResultView& /*view*/) {
  std::vector<std::string> keys;
  for (const auto& [hz, ignored] : converLeft()) keys.push_back(hz);  // which are in ascending order
  return keys;
}

QPointF ORNTestResultViewController::pointAtHz(ChessboardResultView& /*view*/, const std::string& hz,
                                               std::int32_t index, bool isLeft, std::int32_t /*insection*/) {
  const std::int64_t level = intValue(valueOf(isLeft ? left_ : right_, hz));
  const std::int64_t row = kResultScale.rowOf(level);  // cut towards zero, so 12 dB is row 4
  return {static_cast<double>(index), static_cast<double>(row)};
}

QWidget* ORNTestResultViewController::loadView(QWidget* parent) {
  auto* scroll = new QScrollArea(parent);
  makePhoneScrolling(scroll);
  scroll->setFocusPolicy(Qt::ClickFocus);  // the keys of its contents scroll it
  scroll->viewport()->setObjectName(QLatin1String(kGroundName));
  content_ = new QWidget;
  content_->setObjectName(QLatin1String(kGroundName));
  content_->setAutoFillBackground(true);
  scroll->setWidget(content_);
  return scroll;
}

void ORNTestResultViewController::viewDidLoad() {
  setTitle(QStringLiteral("测试结果"));
  const std::int64_t leftLoss = ORNHearingTest::computeEarTestResult(converLeft());
  const std::int64_t rightLoss = ORNHearingTest::computeEarTestResult(converRight());
  makeFullView();
  verdict_ = lossSentence(false, rightLoss) + lossSentence(true, leftLoss) +
             QStringLiteral("对上述结果如有疑问，请添加奥伦声客服QQ：6180339887 进行咨询。\n\n\n");
  makeLabels();
  layOut();
}

void ORNTestResultViewController::makeFullView() {
  source_ = std::make_shared<ChessboardResultViewDataSouce>();
  const auto self = weakSelf(this);
  source_->countOfSection = [self](ChessboardResultView& view) {
    const auto screen = self.lock();
    return screen ? screen->countOfSection(view) : 0;
  };
  source_->hzsOfChessboardView = [self](ChessboardResultView& view) {
    const auto screen = self.lock();
    return screen ? screen->hzsOfChessboardView(view) : std::vector<std::string>();
  };
  source_->pointAtHz = [self](ChessboardResultView& view, const std::string& hz, std::int32_t index, bool isLeft,
                              std::int32_t insection) {
    const auto screen = self.lock();
    return screen ? screen->pointAtHz(view, hz, index, isLeft, insection) : QPointF();
  };
  fullView_ = new ChessboardResultView(view());
  fullView_->hide();
  fullView_->setGeometry({{}, mainScreen()});
  fullView_->setDatasouce(source_);
  fullView_->setAccessibleName(audiogramSummary(converRight(), false) + QStringLiteral("。") +
                               audiogramSummary(converLeft(), true));
  fullView_->setAccessibleDescription(QStringLiteral("点击返回"));
  new TapRecognizer(fullView_, [self] {
    if (const auto screen = self.lock()) screen->hideFullView();
  });
}

void ORNTestResultViewController::makeLabels() {
  chessboard_ = new QLabel(content_);
  chessboard_->setScaledContents(true);
  chessboard_->setAccessibleName(fullView_->accessibleName());
  seeLargeLabel_ = new TextLabel(content_);
  seeLargeLabel_->setPlainText(QStringLiteral("点击查看大图"), systemFont(kSmallSize), Qt::red, Qt::AlignHCenter);
  xitongfenxiLabel_ = new TextLabel(content_);
  xitongfenxiLabel_->setPlainText(QStringLiteral("—— 言语频率(0.5-4KHz)平均听阈 ——"), systemFont(kBodySize),
                                  kDarkGrayColour, Qt::AlignHCenter);
  resutLabel_ = new TextLabel(content_);
  AttributedText verdict =
      ORNScreenUtils::getAttributedWithString(verdict_, kVerdictLineSpace, 0, systemFont(kBodySize));
  verdict.addColor(kDarkGrayColour, 0, verdict_.size());
  resutLabel_->setAttributedText(verdict);
  copyLabel_ = new TextLabel(content_);
  copyLabel_->setPlainText(QStringLiteral("奥伦声提供技术支持"), systemFont(kSmallSize), kLightGrayColour,
                           Qt::AlignHCenter);
  new TapRecognizer(chessboard_, [self = weakSelf(this)] {
    if (const auto screen = self.lock()) screen->showFullView();
  });
}

void ORNTestResultViewController::layOut() {
  if (!content_ || !fullView_) return;
  const double width = mainScreen().width(), half = mainScreen().height() / 2.0;
  const int halfWidth = mainScreen().width() / 2, halfHeight = mainScreen().height() / 2;
  content_->resize(mainScreen().width(), content_->height());  // how far its lines can reach
  chessboard_->setGeometry(halfWidth / 2, topBars(), halfWidth, halfHeight);
  seeLargeLabel_->setFrame({30, 65 + half, width - 60, 10});
  xitongfenxiLabel_->setFrame({30, 80 + half, width - 60, 40});
  const double lines = std::min(width - 60, kLongestLine);
  const double height =
      ORNScreenUtils::getAttributionHeightWithString(verdict_, kVerdictLineSpace, 0, systemFont(kBodySize), lines)
          .height();
  resutLabel_->setFrame({(width - lines) / 2, 120 + half, lines, height + 10});
  copyLabel_->setFrame({10, 120 + half + height + 10, width - 20, 20});
  content_->resize(mainScreen().width(), qRound(120 + half + height + 10 + 20));
  if (isFullViewShown()) {
    fullView_->setGeometry(0, statusBarHeight(), mainScreen().width(), mainScreen().height() - statusBarHeight());
  } else {
    fullView_->setGeometry({{}, mainScreen()});
    chessboard_->setPixmap(QPixmap::fromImage(ORNScreenUtils::getImageFromView(*fullView_)));
  }
}

bool ORNTestResultViewController::isFullViewShown() const { return fullView_ && fullView_->parentWidget() != view(); }

bool ORNTestResultViewController::escapePressed() {
  if (!isFullViewShown()) return false;
  hideFullView();
  return true;
}

QWidget* ORNTestResultViewController::firstFocus() const { return chessboard_; }

ChessboardResultView* ORNTestResultViewController::chessView() {
  if (!fullView_ && view()) {
    fullView_ = new ChessboardResultView(view());
    fullView_->setGeometry(0, topBars(), mainScreen().width(), mainScreen().height() - topBars());
    fullView_->show();
  }
  return fullView_;
}

void ORNTestResultViewController::showFullView() {
  if (!window() || !fullView_) return;
  window()->showOverEverything(fullView_);
  const QRect from = fullView_->geometry();
  animate(fullView_, kFullView, [board = fullView_, from, top = statusBarHeight()](double progress) {
    board->setGeometry(from.adjusted(0, qRound((top - from.top()) * progress), 0, 0));
  });
}

void ORNTestResultViewController::hideFullView() {
  // Nothing moves, and then the view is gone at once, which is meant, see docs/BEHAVIOURS.md.
  Platform::current().runLoop->performAfterDelay(kFullView, [self = weakSelf(this)] {
    if (const auto screen = self.lock()) screen->takeFullViewAway();
  });
}

void ORNTestResultViewController::takeFullViewAway() {
  if (!view() || !isFullViewShown()) return;
  fullView_->hide();
  fullView_->setParent(view());
  view()->update();
  layOut();
  if (window()) window()->focusFront();
}

void ORNTestResultViewController::viewDidDisappear() { takeFullViewAway(); }

void ORNTestResultViewController::gotolishi() {
  if (const auto navigation = navigationController()) navigation->push(ORNTestHistoryViewController::init());
}

void ORNTestResultViewController::backClicked() {
  if (const auto navigation = navigationController()) navigation->pop();
}

void ORNTestResultViewController::takePhoto(QWidget* /*sender*/) {
  if (!chessboard_) return;
  const QImage image = chessboard_->pixmap(Qt::ReturnByValue).toImage();
  takePhotoComplete(image, saveToPhotoAlbum(image));
}

void ORNTestResultViewController::takePhotoComplete(const QImage& /*image*/, bool /*didFinishSaving*/) {}

}  // namespace orn
