#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QtCore/QPointer>
#include <QtCore/QSizeF>

#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>
#include <ORNHearingTestSDK/platform/URLSession.h>
#include <ORNHearingTestSDK/screens/TableScreen.h>

namespace orn {

class AttributedText;
class DeviceCell;
class ORNHearingTestViewController;
class ShopFooterView;
class UserHeaderView;
struct AudioSessionObserver;

/// What the host is told of the device selection. An empty member is not called.
struct ORNSelectTypeDelegate {
  std::function<void(QWidget* sender)> buyButtonClick;  ///< The user wants to buy an audiometer.

  /// A test has its calibration and is about to be presented. False holds it back: the host shows it when it likes, in
  /// a stack of its own, after a ChannelCheckScreen for example.
  ///
  /// The moment, too, to set the test's onComplete, onSubmitted and onLeft.
  std::function<bool(const std::shared_ptr<ORNHearingTestViewController>& test)> shouldPresentTest;

  /// No test opens, since the calibration of the device that the user chose could not be had, and why: noticeOf...() of
  /// ServiceNotices.h says it in words. With this member the selection asks for calibrations in full, see
  /// fetchCalibration(): earphones whose calibration is cached open their test too, and a reply that is not enough
  /// opens none and is not kept.
  std::function<void(const Error& error)> calibrationFailed;
};

/// Where a user begins: the two ways of testing, each with whether its device is connected at this moment. A tap on one
/// whose device is there fetches its calibration and then presents the test. The row takes no other tap meanwhile;
/// after a moment it shows that it waits, and a button there or the escape key gives up. Main thread.
class ORN_SCREENS_EXPORT ORNSelectTypeViewController final : public TableScreen {
 public:
  static std::shared_ptr<ORNSelectTypeViewController> init();  ///< A new screen.
  ~ORNSelectTypeViewController() override;

  /// Not owned.
  std::shared_ptr<ORNSelectTypeDelegate> delegate() const { return delegate_.lock(); }
  void setDelegate(std::weak_ptr<ORNSelectTypeDelegate> delegate) { delegate_ = std::move(delegate); }

  /// The test screen that is being prepared or shown, kept until the next one takes its place, or longer, until its
  /// submission has ended.
  const std::shared_ptr<ORNHearingTestViewController>& testVC() const { return testVC_; }
  void setTestVC(std::shared_ptr<ORNHearingTestViewController> testVC);

  /// Always empty; the tests are the history screen's.
  std::vector<std::string> tests() const { return {}; }

  /// Sizes of the rows' detail texts as last shown, in points.
  QSizeF jianceyiSize() const { return jianceyiSize_; }
  QSizeF erjiSize() const { return erjiSize_; }  ///< That of the earphones' row.

  /// Makes the bar items whose titles are given and pushes the screen.
  void showSelectTypeViewControllerByNavigation(const std::shared_ptr<NavigationController>& navigation,
                                                const std::optional<QString>& leftBarTitle, Action leftBarAction,
                                                const std::optional<QString>& rightBarTitle, Action rightBarAction);

  /// For hosts that turn their window with the device: portrait only.
  bool shouldAutorotate() const { return false; }
  std::uint32_t supportedInterfaceOrientations() const { return 2; }  ///< 2 for portrait.

  int numberOfSectionsInTableView(TableView& tableView) override;
  int numberOfRowsInSection(TableView& tableView, int section) override;
  int heightForRowAtIndexPath(TableView& tableView, IndexPath indexPath) override;
  TableCell* cellForRowAtIndexPath(TableView& tableView, IndexPath indexPath) override;
  void didSelectRowAtIndexPath(TableView& tableView, IndexPath indexPath) override;

  void goToShop(QWidget* sender);  ///< Tells the delegate that the user wants to buy.

  // For a host's own controls.
  void gotolishi();  ///< Opens the history.
  /// Fetches the calibration of the earphones and presents the test, whatever is connected.
  void startErjiTest();

  void handleRouteChangeNotification(std::int32_t reason);  ///< Shows the rows anew.

  /// Gives up whatever is being prepared.
  bool escapePressed() override;

 protected:
  void viewDidLoad() override;
  void viewDidAppear() override;
  void layOut() override;

 private:
  ORNSelectTypeViewController();

  void addHeaderAndFooter();
  AttributedText detailOfRow(int row, QSizeF& size) const;
  void startAudiometerRow(DeviceCell* cell);
  void startEarphoneRow(DeviceCell* cell);
  int closeRow(int row, DeviceCell* cell);
  void waitInRow(int row, int start, const std::weak_ptr<void>& fetch);
  void openRow(int row, int start);
  bool giveUpRow(int row);
  void refuse(const QString& message);
  std::shared_ptr<ORNHearingTestViewController> makeTest(OutputPath path, int start,
                                                         std::function<void(std::optional<Error>)> done);
  void gotoTest(int start);

  std::weak_ptr<ORNSelectTypeDelegate> delegate_;
  std::shared_ptr<ORNHearingTestViewController> testVC_;
  std::vector<std::shared_ptr<ORNHearingTestViewController>> submitting_;
  int starts_ = 0;  // of tests, by a row or by the host

  /// A row whose test is being prepared.
  struct PreparedRow {
    int start = 0;  // 0 for none
    QPointer<DeviceCell> cell;
  };
  PreparedRow& preparedRow(int row) { return prepared_[static_cast<std::size_t>(row)]; }
  std::array<PreparedRow, 2> prepared_;
  QSizeF jianceyiSize_{0, 0}, erjiSize_{0, 0};
  QPointer<UserHeaderView> header_;
  QPointer<ShopFooterView> footer_;
  std::shared_ptr<AudioSessionObserver> routeObserver_;
};

}  // namespace orn
