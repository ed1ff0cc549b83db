#include <ORNHearingTestSDK/screens/ORNTestHistoryViewController.h>

#include <algorithm>
#include <utility>

#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/results/HistoryScores.h>
#include <ORNHearingTestSDK/results/ORNListenTest.h>
#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/BusyNotice.h>
#include <ORNHearingTestSDK/screens/HistoryCell.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>
#include <ORNHearingTestSDK/screens/ORNTestResultViewController.h>
#include <ORNHearingTestSDK/screens/SectionHeading.h>

namespace orn {

using nlohmann::json;

ORNTestHistoryViewController::ORNTestHistoryViewController() : tests_(std::make_unique<json>()) {}
ORNTestHistoryViewController::~ORNTestHistoryViewController() = default;

std::shared_ptr<ORNTestHistoryViewController> ORNTestHistoryViewController::init() {
  return std::shared_ptr<ORNTestHistoryViewController>(new ORNTestHistoryViewController);
}

void ORNTestHistoryViewController::showTestHistoryViewControllerByNavigation(
    const std::shared_ptr<NavigationController>& navigation, const std::optional<QString>& leftBarTitle,
    Action leftBarAction, const std::optional<QString>& rightBarTitle, Action rightBarAction) {
  showByNavigation(navigation, leftBarTitle, std::move(leftBarAction), rightBarTitle, std::move(rightBarAction));
}

void ORNTestHistoryViewController::viewDidLoad() {
  setTitle(QStringLiteral("测试记录"));
  tableView()->setSource(this);
  auto fetch = std::make_shared<char>();
  const std::weak_ptr<void> fetched = fetch;
  ORNHearingTest::getListenTestWithCompletion(
      [self = weakSelf(this), fetch = std::move(fetch)](const std::optional<Error>& error, const json& listenTests) {
        if (const auto screen = self.lock()) screen->fetched(error, listenTests);
      });
  busy_ = new BusyNotice(QStringLiteral("正在获取测试记录…"), tableView()->viewport());
  busy_->waitFor(fetched);
}

void ORNTestHistoryViewController::fetched(const std::optional<Error>& error, const json& listenTests) {
  if (busy_) busy_->waitFor({});
  if (error) {
    showNotice(QStringLiteral("未获取到测试记录"));
    return;
  }
  *tests_ = listenTests;
  reloadDataOnMainThread();
  if (count() == 0) showNotice(QStringLiteral("您还没有测试记录"));
}

void ORNTestHistoryViewController::showNotice(const QString& message) {
  showAlert({0, QStringLiteral("温馨提示"), message, {QStringLiteral("好的")}});
}

int ORNTestHistoryViewController::count() const {
  return tests_->is_array() ? static_cast<int>(tests_->size()) : 0;  // the service may send anything
}

std::shared_ptr<ORNListenTest> ORNTestHistoryViewController::testOfSection(int section) const {
  return ORNListenTest::modelObjectWithDictionary((*tests_)[static_cast<std::size_t>(section)]);
}

int ORNTestHistoryViewController::numberOfSectionsInTableView(TableView& /*tableView*/) { return count(); }

int ORNTestHistoryViewController::numberOfRowsInSection(TableView& /*tableView*/, int /*section*/) { return 1; }

int ORNTestHistoryViewController::heightForRowAtIndexPath(TableView& /*tableView*/, IndexPath /*indexPath*/) {
  return HistoryCell::kHeight;
}

int ORNTestHistoryViewController::heightForHeaderInSection(TableView& /*tableView*/, int /*section*/) {
  return SectionHeading::kHeight;
}

QWidget* ORNTestHistoryViewController::viewForHeaderInSection(TableView& /*tableView*/, int section) {
  return new SectionHeading(QStringLiteral("测试记录：%1").arg(section + 1), ORNScreenUtils::colorFromHexRGB("2fb791"));
}

TableCell* ORNTestHistoryViewController::cellForRowAtIndexPath(TableView& tableView, IndexPath indexPath) {
  auto* cell = dynamic_cast<HistoryCell*>(tableView.dequeueReusableCell(HistoryCell::identifier(), indexPath));
  if (!cell) cell = new HistoryCell;
  if (indexPath.section < count()) {
    cell->setTest(*testOfSection(indexPath.section), tableView.columnWidth(),
                  std::min(mainScreen().width(), TableView::kWidestColumn));
  }
  return cell;
}

void ORNTestHistoryViewController::didSelectRowAtIndexPath(TableView& /*tableView*/, IndexPath indexPath) {
  if (indexPath.section >= count()) return;
  const auto result = ORNTestResultViewController::init();
  const auto test = testOfSection(indexPath.section);
  result->setLeft(earResultOf(*test, true));
  result->setRight(earResultOf(*test, false));
  result->showTestResultViewControllerByNavigation(navigationController(), std::nullopt, nullptr, std::nullopt,
                                                   nullptr);
}

}  // namespace orn
