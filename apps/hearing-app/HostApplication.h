#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QtCore/QString>

#include <ORNHearingTestSDK/platform/Platform.h>

#include "hearing-app/Profile.h"

class QAbstractButton;

namespace orn {

class ClosingDelay;
class NavigationController;
class NavigationWindow;
class ORNHearingTest;
class ORNHearingTestViewController;
class ORNSelectTypeViewController;
class ResultKeeper;
class ServiceScreen;
struct ORNSelectTypeDelegate;

/// A setting that this application adds to the library's.
inline constexpr auto kShopURLDefault = "SHOPURL";  ///< http or https

/// Whether an application works on a real machine and with a real service, or on simulated ones; it then says so all
/// the time.
enum class Mode { Real, Simulation };

/// The application: its window with the device selection, the ways to the history and to the shop, and what it says of
/// the service. First it asks for what it needs, the service's address and a profile; before the first test of a device
/// it offers a check of its channels. Main thread, after the QApplication.
///
/// For developers of hosts: ResultKeeper and ClosingDelay see to it that no result is lost.
class HostApplication {
 public:
  /// Puts the platform in force for as long as it lives. A given profile is registered without asking for one.
  explicit HostApplication(Platform platform, const std::optional<Profile>& profile = {}, Mode mode = Mode::Real);
  ~HostApplication();
  HostApplication(const HostApplication&) = delete;
  HostApplication& operator=(const HostApplication&) = delete;

  /// Shows the window: the device selection, or first the questions for the service and for a profile where there is
  /// none. Once it has been painted, calls the action and then makes the first requests to the service, which take
  /// their time.
  void open(const std::function<void()>& whenShown = {});

  /// The user wants to see the other mode: the simulation, or the real application again. Without it neither is
  /// offered.
  std::function<void()> onOtherMode;

  NavigationWindow& window() const { return *window_; }

  /// Null while the service or the profile is asked for.
  const std::shared_ptr<ORNSelectTypeViewController>& selection() const { return selection_; }

  /// The session of the test that is shown or was shown last; null if there was none.
  std::shared_ptr<ORNHearingTest> session() const;

  /// The visible button for "heard"; null if there is none.
  QAbstractButton* heardButton() const;

 private:
  struct Life {};  // held weakly by calls that come later

  std::shared_ptr<ServiceScreen> makeServiceScreen();
  void askForService();
  void askForProfile(const std::shared_ptr<NavigationController>& before = {});
  void goOn();
  void openSelection();
  void changeService();
  bool offersCheck(const std::shared_ptr<ORNHearingTestViewController>& test);
  void meetService();
  void registerProfile();
  void openShop();
  void offerUnsentResults();
  void watch(ORNHearingTestViewController& test);
  void delayClosing();
  void say(const QString& message);

  const Mode mode_;
  std::shared_ptr<Life> life_ = std::make_shared<Life>();
  std::shared_ptr<ResultKeeper> results_;
  std::unique_ptr<NavigationWindow> window_;
  std::unique_ptr<ClosingDelay> closing_;
  std::shared_ptr<ORNSelectTypeViewController> selection_;
  std::shared_ptr<ORNSelectTypeDelegate> delegate_;
};

}  // namespace orn
