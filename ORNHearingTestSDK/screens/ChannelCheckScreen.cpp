#include <ORNHearingTestSDK/screens/ChannelCheckScreen.h>

#include <stdexcept>
#include <utility>

#include <QtWidgets/QHBoxLayout>

#include <ORNHearingTestSDK/audio/ORNSystemVolumeManager.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/platform/AudioSession.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/screens/ChannelCheckPage.h>

namespace orn {
namespace {

constexpr int kPageMargin = 24;

struct FindingText {
  QString heading, text;
};

FindingText textOf(ChannelFinding finding, bool tellsEarsApart) {
  switch (finding) {
    case ChannelFinding::Fine:
      return {QStringLiteral("声音正常"), tellsEarsApart ? QStringLiteral("左右声道都正确，可以进入测试了。")
                                                         : QStringLiteral("听力检测仪有声音，可以进入测试了。")};
    case ChannelFinding::Swapped:
      return {QStringLiteral("左右声道反了"),
              QStringLiteral("左耳的声音在右耳响起，右耳的声音在左耳响起，这样测出的结果左右颠倒。\n\n"
                             "请检查耳机是否左右戴反，换过来以后再查一次。")};
    case ChannelFinding::Mixed:
      return {QStringLiteral("左右声道没有分开"),
              QStringLiteral("一只耳朵听到了另一只耳朵的声音，这样无法分别测试两只耳朵。\n\n"
                             "请检查耳机插头是否插到底，关闭系统的单声道、环绕声等音效，然后再查一次。")};
    case ChannelFinding::Silent:
    default:
      return {QStringLiteral("有声音没有听到"), QStringLiteral("请检查耳机是否戴好、连接好，然后再查一次。\n\n"
                                                               "如果您平时就听不到这么大的声音，也可以直接进入测试。")};
  }
}

QString introduction(bool tellsEarsApart) {
  return tellsEarsApart ? QStringLiteral(
                              "测试前先检查一下左右声道是否正确、有没有声音。\n\n"
                              "请戴好耳机，标有 L 的一侧戴左耳，标有 R 的一侧戴右耳。"
                              "接下来播放两次声音，请回答在哪一侧听到。")
                        : QStringLiteral(
                              "测试前先检查一下有没有声音。\n\n"
                              "请戴好听力检测仪。接下来播放一次声音，请回答有没有听到。\n\n"
                              "听力检测仪两侧播放相同的声音，所以这里不能检查左右声道。");
}

QString notice() { return QStringLiteral("温馨提示"); }

}  // namespace

ChannelCheckScreen::ChannelCheckScreen(const ORNManualHearingTest& test) : check_(test) {}

ChannelCheckScreen::~ChannelCheckScreen() {
  try {
    putVolumeBack();
  } catch (const std::logic_error&) {
    // The platform has gone before its windows; there is no volume to put back.
  }
}

std::shared_ptr<ChannelCheckScreen> ChannelCheckScreen::initWithTest(const ORNManualHearingTest& test) {
  return std::shared_ptr<ChannelCheckScreen>(new ChannelCheckScreen(test));
}

QWidget* ChannelCheckScreen::firstFocus() const { return page_ ? page_->first() : view(); }

void ChannelCheckScreen::viewDidLoad() {
  setTitle(QStringLiteral("声音检查"));
  setLeftBarItem({QStringLiteral("取消"), on([](ChannelCheckScreen& screen) { screen.dismiss(); })});
  new QHBoxLayout(view());
  layOut();
  observeRoute();
  showIntroduction();
}

void ChannelCheckScreen::layOut() {
  view()->layout()->setContentsMargins(kPageMargin, topBars() + kPageMargin, kPageMargin, kPageMargin);
}

void ChannelCheckScreen::viewDidAppear() { driveVolume(); }

void ChannelCheckScreen::viewDidDisappear() {
  check_.stop();
  putVolumeBack();
}

void ChannelCheckScreen::driveVolume() {
  if (!std::exchange(drivesVolume_, true)) ORNSystemVolumeManager::saveSystemVolume();
  ORNSystemVolumeManager::setSystemVolumeToMax();
}

void ChannelCheckScreen::putVolumeBack() {
  if (std::exchange(drivesVolume_, false)) ORNSystemVolumeManager::reStoreSystemVolume();
}

void ChannelCheckScreen::observeRoute() {
  routeObserver_ = std::make_shared<AudioSessionObserver>();
  routeObserver_->routeChange = [self = weakSelf(this)](std::int32_t reason) {
    const auto screen = self.lock();
    if (!screen || !screen->drivesVolume_ || reason != kAudioSessionRouteChangeReasonOldDeviceUnavailable) return;
    screen->check_.stop();
    screen->showAlert({kDisconnectedAlert,
                       notice(),
                       QStringLiteral("您的测试设备已断开，请连接后重新测试"),
                       {QStringLiteral("我知道了")}});
  };
  Platform::current().audioSession->addObserver(routeObserver_);
}

std::function<void()> ChannelCheckScreen::on(std::function<void(ChannelCheckScreen&)> action) {
  return [self = weakSelf(this), action = std::move(action)] {
    if (const auto screen = self.lock()) action(*screen);
  };
}

ChannelCheckPage* ChannelCheckScreen::newPage(const QString& heading, const QString& text) {
  if (page_) {
    page_->hide();
    page_->deleteLater();  // one of its own buttons is being clicked
  }
  page_ = new ChannelCheckPage(heading, text, view());
  view()->layout()->addWidget(page_);
  page_->show();
  return page_;
}

void ChannelCheckScreen::showIntroduction() {
  check_.startAgain();
  ChannelCheckPage* page = newPage({}, introduction(check_.tellsEarsApart()));
  page->addRow({{QStringLiteral("开始检查"), on(&ChannelCheckScreen::showQuestion)}});
  page->addQuiet({QStringLiteral("跳过检查"), on([](ChannelCheckScreen& screen) { screen.leaveFor(std::nullopt); })});
  page->first()->setFocus();
}

void ChannelCheckScreen::showQuestion() {
  const auto choice = [this](const QString& title, ChannelAnswer heard) {
    return ChannelCheckPage::Choice{title, on([heard](ChannelCheckScreen& screen) { screen.answer(heard); })};
  };
  const auto nothing = choice(QStringLiteral("没听到"), ChannelAnswer::Nothing);
  if (check_.tellsEarsApart()) {
    const QString which = QStringLiteral("第 %1 次，共 %2 次").arg(check_.answered() + 1).arg(check_.tones());
    ChannelCheckPage* page = newPage(which, QStringLiteral("您在哪一侧听到了声音？"));
    page->addRow(
        {choice(QStringLiteral("左"), ChannelAnswer::Left), choice(QStringLiteral("右"), ChannelAnswer::Right)});
    page->addRow({choice(QStringLiteral("两侧"), ChannelAnswer::Both), nothing});
  } else {
    newPage({}, QStringLiteral("您听到声音了吗？"))
        ->addRow({choice(QStringLiteral("有声音"), ChannelAnswer::Both), nothing});
  }
  page_->addQuiet({QStringLiteral("再听一次"), on(&ChannelCheckScreen::play)});
  page_->setFocus();  // so that the key that led here presses no answer
  play();
}

void ChannelCheckScreen::play() {
  page_->setNote({});
  if (!check_.play()) return;
  showIntroduction();
  showAlert({kToneMissingAlert,
             notice(),
             QStringLiteral("测试设备没有播放声音，无法检查。请检查设备的连接后再试"),
             {QStringLiteral("我知道了")}});
}

void ChannelCheckScreen::answer(ChannelAnswer heard) {
  if (!check_.answer(heard)) return page_->setNote(QStringLiteral("声音没有播放完整，请再听一次。"));
  if (const auto finding = check_.finding()) return showFinding(*finding);
  showQuestion();
}

void ChannelCheckScreen::showFinding(ChannelFinding finding) {
  const FindingText texts = textOf(finding, check_.tellsEarsApart());
  ChannelCheckPage* page = newPage(texts.heading, texts.text);
  const auto goOn = on([finding](ChannelCheckScreen& screen) { screen.leaveFor(finding); });
  const ChannelCheckPage::Choice again{QStringLiteral("再查一次"), on(&ChannelCheckScreen::showIntroduction)};
  if (finding == ChannelFinding::Fine) {
    page->addRow({{QStringLiteral("进入测试"), goOn}});
    page->addQuiet(again);
  } else {
    page->addRow({again});
    if (finding == ChannelFinding::Silent) page->addQuiet({QStringLiteral("仍然进入测试"), goOn});
  }
  page->first()->setFocus();
}

/// The volume goes back first: a test that follows keeps what it finds as the user's.
void ChannelCheckScreen::leaveFor(std::optional<ChannelFinding> finding) {
  const auto alive = shared_from_this();
  check_.stop();
  putVolumeBack();
  if (const auto told = std::exchange(onDone, nullptr)) told(finding);
}

void ChannelCheckScreen::alertView(int tag, int /*buttonIndex*/) {
  if (tag == kDisconnectedAlert) dismiss();
}

}  // namespace orn
