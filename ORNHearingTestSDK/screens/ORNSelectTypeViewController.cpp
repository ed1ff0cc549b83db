#include <ORNHearingTestSDK/screens/ORNSelectTypeViewController.h>

#include <utility>

#include <ORNHearingTestSDK/common/DefaultsReading.h>
#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/platform/AudioSession.h>
#include <ORNHearingTestSDK/platform/MainQueue.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/results/UserProfile.h>
#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/DeviceCell.h>
#include <ORNHearingTestSDK/screens/NavigationController.h>
#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>
#include <ORNHearingTestSDK/screens/ORNTestHistoryViewController.h>
#include <ORNHearingTestSDK/screens/ShopFooterView.h>
#include <ORNHearingTestSDK/screens/UserHeaderView.h>

namespace orn {
namespace {

constexpr int kAudiometerRow = 0;
constexpr int kEarphoneRow = 1;
constexpr int kRowMargin = 60;
constexpr int kSectionSpacing = 18;
constexpr double kDetailLineSpace = 4;
constexpr int kTitleSize = 18;
constexpr int kDetailSize = 12;

/// Earphones count only without an audiometer.
bool areEarphonesConnected() { return !ORNHearingTest::getKV50Mac() && ORNHearingTest::hasHeadset(); }

QString audiometerDetail() {
  const QString description =
      QStringLiteral("听力检测仪是一款专业的听力检测设备，经过严格的医学校准，采用最新的技术手段制作，测试结果准确。");
  const auto address = ORNHearingTest::getKV50Mac();
  if (!address) return description + QStringLiteral("\n连接方法：打开手机设置－蓝牙－连接KV60S");
  return QStringLiteral("已连接，蓝牙地址%1\n").arg(QString::fromStdString(*address)) + description;
}

QString earphoneDetail() {
  return (areEarphonesConnected() ? QStringLiteral("已连接，") : QString()) +
         QStringLiteral("推荐耳机是指经过奥伦声校准的耳机，使用奥伦声推荐耳机测听，测听结果误差很小。");
}

/// What the platform's formatter makes of an absent name.
constexpr auto kAbsentName = "(null)";

}  // namespace

ORNSelectTypeViewController::ORNSelectTypeViewController() = default;
ORNSelectTypeViewController::~ORNSelectTypeViewController() = default;

std::shared_ptr<ORNSelectTypeViewController> ORNSelectTypeViewController::init() {
  return std::shared_ptr<ORNSelectTypeViewController>(new ORNSelectTypeViewController);
}

void ORNSelectTypeViewController::showSelectTypeViewControllerByNavigation(
    const std::shared_ptr<NavigationController>& navigation, const std::optional<QString>& leftBarTitle,
    Action leftBarAction, const std::optional<QString>& rightBarTitle, Action rightBarAction) {
  showByNavigation(navigation, leftBarTitle, std::move(leftBarAction), rightBarTitle, std::move(rightBarAction));
}

void ORNSelectTypeViewController::viewDidLoad() {
  setTitle(QStringLiteral("选择设备"));
  tableView()->setSource(this);
  tableView()->setSectionSpacing(kSectionSpacing);
  routeObserver_ = std::make_shared<AudioSessionObserver>();
  routeObserver_->routeChange = [self = weakSelf(this)](std::int32_t reason) {
    if (const auto screen = self.lock()) screen->handleRouteChangeNotification(reason);
  };
  Platform::current().audioSession->addObserver(routeObserver_);
  addHeaderAndFooter();
  tableView()->reloadData();
}

void ORNSelectTypeViewController::addHeaderAndFooter() {
  const auto& defaults = *Platform::current().userDefaults;
  const std::string name = textValue(defaults.value(kUserNameDefault)).value_or(kAbsentName);
  header_ = new UserHeaderView(boolValue(defaults.value(kUserSexDefault)), QString::fromStdString(name));
  footer_ = new ShopFooterView([self = weakSelf(this)](QWidget* sender) {
    if (const auto screen = self.lock()) screen->goToShop(sender);
  });
  header_->setWidth(mainScreen().width());
  footer_->setWidth(mainScreen().width());
  tableView()->setTableHeaderView(header_);
  tableView()->setTableFooterView(footer_);
}

/// The rows' heights are known only once their cells have been shown.
void ORNSelectTypeViewController::viewDidAppear() { reloadDataOnMainThread(); }

void ORNSelectTypeViewController::layOut() {
  if (!header_) return;
  header_->setWidth(mainScreen().width());
  footer_->setWidth(mainScreen().width());
  TableScreen::layOut();
  reloadDataOnMainThread();
}

void ORNSelectTypeViewController::handleRouteChangeNotification(std::int32_t /*reason*/) { reloadDataOnMainThread(); }

int ORNSelectTypeViewController::numberOfSectionsInTableView(TableView& /*tableView*/) { return 1; }

int ORNSelectTypeViewController::numberOfRowsInSection(TableView& /*tableView*/, int /*section*/) { return 2; }

int ORNSelectTypeViewController::heightForRowAtIndexPath(TableView& /*tableView*/, IndexPath indexPath) {
  return qRound((indexPath.row == kAudiometerRow ? jianceyiSize_ : erjiSize_).height()) + kRowMargin;
}

AttributedText ORNSelectTypeViewController::detailOfRow(int row, QSizeF& size) const {
  const QString text = row == kAudiometerRow ? audiometerDetail() : earphoneDetail();
  const QFont font = systemFont(kDetailSize);
  size = ORNScreenUtils::getAttributionHeightWithString(text, kDetailLineSpace, 0, font,
                                                        tableView()->columnWidth() - DeviceCell::kBesideText);
  AttributedText detail = ORNScreenUtils::getAttributedWithString(text, kDetailLineSpace, 0, font);
  detail.addColor(kDarkGrayColour, 0, text.size());
  return detail;
}

TableCell* ORNSelectTypeViewController::cellForRowAtIndexPath(TableView& tableView, IndexPath indexPath) {
  auto* cell = dynamic_cast<DeviceCell*>(tableView.dequeueReusableCell(DeviceCell::identifier(), indexPath));
  if (!cell) cell = new DeviceCell;
  if (indexPath.row == kAudiometerRow) {
    const AttributedText title(QStringLiteral("听力检测仪"), 0, 0, systemFont(kTitleSize));
    cell->setContents("111", title, detailOfRow(indexPath.row, jianceyiSize_));
  } else {
    const AttributedText title = ORNScreenUtils::getAttributedWithString(QStringLiteral("推荐耳机"), kDetailLineSpace,
                                                                         0, systemFont(kTitleSize));
    cell->setContents("222", title, detailOfRow(indexPath.row, erjiSize_));
  }
  return cell;
}

void ORNSelectTypeViewController::didSelectRowAtIndexPath(TableView& tableView, IndexPath indexPath) {
  auto* cell = dynamic_cast<DeviceCell*>(tableView.cellForRow(indexPath));
  if (indexPath.row == kAudiometerRow) {
    startAudiometerRow(cell);
  } else {
    startEarphoneRow(cell);
  }
  tableView.deselectRow(indexPath);
}

void ORNSelectTypeViewController::startAudiometerRow(DeviceCell* cell) {
  if (!ORNHearingTest::getKV50Mac()) {
    return refuse(QStringLiteral("请先连接听力检测仪，连接方法：打开手机设置－蓝牙－连接KV60S"));
  }
  const int start = closeRow(kAudiometerRow, cell);
  auto fetch = std::make_shared<char>();
  const std::weak_ptr<void> fetched = fetch;
  setTestVC(makeTest(OutputPath::Audiometer, start,
                     [self = weakSelf(this), start, fetch = std::move(fetch)](const std::optional<Error>& error) {
                       // Later, since a cached calibration calls this before the test screen has been kept.
                       if (!error) {
                         MainQueue::current().dispatchAsync([self, start] {
                           if (const auto screen = self.lock()) screen->gotoTest(start);
                         });
                       }
                       if (const auto screen = self.lock()) screen->openRow(kAudiometerRow, start);
                     }));
  waitInRow(kAudiometerRow, start, fetched);
}

void ORNSelectTypeViewController::startEarphoneRow(DeviceCell* cell) {
  if (!areEarphonesConnected()) return refuse(QStringLiteral("请先连接测试耳机，并正确佩戴左右耳"));
  const int start = closeRow(kEarphoneRow, cell);
  auto fetch = std::make_shared<char>();
  const std::weak_ptr<void> fetched = fetch;
  // A cached calibration does not call back, unless it is asked for in full: the cell then stays closed, which is
  // meant, see docs/BEHAVIOURS.md.
  setTestVC(makeTest(OutputPath::Earphones, start,
                     [self = weakSelf(this), start, fetch = std::move(fetch)](const std::optional<Error>& error) {
                       const auto screen = self.lock();
                       if (screen && !error) screen->gotoTest(start);
                       if (screen) screen->openRow(kEarphoneRow, start);
                     }));
  waitInRow(kEarphoneRow, start, fetched);
}

/// A second tap must not start a second test while the calibration is fetched.
int ORNSelectTypeViewController::closeRow(int row, DeviceCell* cell) {
  if (cell) cell->setUserInteractionEnabled(false);
  preparedRow(row) = {++starts_, cell};
  return starts_;
}

void ORNSelectTypeViewController::waitInRow(int row, int start, const std::weak_ptr<void>& fetch) {
  const PreparedRow& prepared = preparedRow(row);
  if (prepared.start != start || !prepared.cell) return;  // its calibration was there at once
  prepared.cell->waitFor(fetch, [self = weakSelf(this), row] {
    if (const auto screen = self.lock()) screen->giveUpRow(row);
  });
}

void ORNSelectTypeViewController::openRow(int row, int start) {
  if (preparedRow(row).start != start) return;  // given up, and perhaps tapped again
  const QPointer<DeviceCell> cell = std::exchange(preparedRow(row), {}).cell;
  if (!cell) return;
  cell->stopWaiting();
  cell->setUserInteractionEnabled(true);
}

/// A calibration that comes after that opens no test.
bool ORNSelectTypeViewController::giveUpRow(int row) {
  const PreparedRow prepared = preparedRow(row);
  if (!prepared.cell || !prepared.cell->isWaiting()) return false;
  if (prepared.start == starts_) ++starts_;
  openRow(row, prepared.start);
  return true;
}

bool ORNSelectTypeViewController::escapePressed() {
  const bool isAudiometerMeant = giveUpRow(kAudiometerRow), areEarphonesMeant = giveUpRow(kEarphoneRow);
  return isAudiometerMeant || areEarphonesMeant;
}

void ORNSelectTypeViewController::refuse(const QString& message) {
  showAlert({0, QStringLiteral("温馨提示"), message, {QStringLiteral("好的")}});
}

void ORNSelectTypeViewController::startErjiTest() {
  const int start = ++starts_;
  setTestVC(makeTest(OutputPath::Earphones, start, [self = weakSelf(this), start](const std::optional<Error>& error) {
    const auto screen = self.lock();
    if (screen && !error) screen->gotoTest(start);
  }));
}

/// Told in full if the host wants to hear of failures, otherwise as little as the other two creators tell.
std::shared_ptr<ORNHearingTestViewController> ORNSelectTypeViewController::makeTest(
    OutputPath path, int start, std::function<void(std::optional<Error>)> done) {
  const auto told = delegate();
  if (told && told->calibrationFailed) {
    return ORNHearingTestViewController::initTestByPath(
        path, [self = weakSelf(this), start, done = std::move(done)](const std::optional<Error>& error) {
          done(error);
          const auto screen = self.lock();
          const auto listening = screen ? screen->delegate() : nullptr;
          const bool isWanted = error && screen && screen->starts_ == start;  // not given up meanwhile
          if (isWanted && listening && listening->calibrationFailed) listening->calibrationFailed(*error);
        });
  }
  return path == OutputPath::Audiometer
             ? ORNHearingTestViewController::initKV50TestByCompletionHandler(std::move(done))
             : ORNHearingTestViewController::initEarphoneTestByCompletionHandler(std::move(done));
}

void ORNSelectTypeViewController::setTestVC(std::shared_ptr<ORNHearingTestViewController> testVC) {
  std::erase_if(submitting_, [](const auto& test) { return !test->isSubmitting(); });
  if (testVC_ && testVC_ != testVC && testVC_->isSubmitting()) submitting_.push_back(testVC_);
  testVC_ = std::move(testVC);
}

/// The test whose calibration has come, unless another one has been started since.
void ORNSelectTypeViewController::gotoTest(int start) {
  if (start != starts_ || !testVC_ || testVC_->navigationController()) return;
  const auto told = delegate();
  if (told && told->shouldPresentTest && !told->shouldPresentTest(testVC_)) return;
  const auto navigation = NavigationController::initWithRootViewController(testVC_);
  navigation->setTranslucent(true);
  present(navigation);
}

void ORNSelectTypeViewController::goToShop(QWidget* sender) {
  const auto told = delegate();
  if (told && told->buyButtonClick) told->buyButtonClick(sender);
}

void ORNSelectTypeViewController::gotolishi() {
  if (const auto navigation = navigationController()) navigation->push(ORNTestHistoryViewController::init());
}

}  // namespace orn
