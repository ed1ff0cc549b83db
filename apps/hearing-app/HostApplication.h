#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <QtCore/QString>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/URLSession.h>

#include "hearing-app/Profile.h"

class QAbstractButton;

namespace orn {

class ClosingDelay;
class NavigationWindow;
class ORNHearingTest;
class ORNSelectTypeViewController;
class ResultKeeper;
struct ORNSelectTypeDelegate;

/// The settings that this application adds to the library's.
inline constexpr auto kShopURLDefault = "SHOPURL";  ///< http or https

/// The application: its window with the device selection, the way to the history and to the shop, and what the user is
/// told of the service. Main thread, after the QApplication.
///
/// What a host developer minds besides: which replies of the service are good for a test (judged()) and which cached
/// ones (CalibrationFiles), and that no result is lost (ResultKeeper, ClosingDelay).
class HostApplication {
 public:
  /// Puts the platform in force for its life. A given profile is registered without asking for one.
  explicit HostApplication(Platform platform, const std::optional<Profile>& profile = {});
  ~HostApplication();
  HostApplication(const HostApplication&) = delete;
  HostApplication& operator=(const HostApplication&) = delete;

  /// Shows the window: the device selection, or first the question for a profile where there is none. Once it has been
  /// painted, calls an action, and then meets the service, whose first request takes its time.
  void open(const std::function<void()>& whenShown = {});

  NavigationWindow& window() const { return *window_; }

  /// Null while the profile is asked for.
  const std::shared_ptr<ORNSelectTypeViewController>& selection() const { return selection_; }

  /// The session of the test that is shown or was shown last; null if there was none.
  std::shared_ptr<ORNHearingTest> session() const;

  /// The visible button for "heard"; null if there is none.
  QAbstractButton* heardButton() const;

 private:
  struct Life {};  // what calls that come later look for

  void askForProfile();
  void openSelection();
  void meetService();
  void registerProfile();
  void openShop();
  void offerUnsentResults();
  std::function<void(const URLReply&)> watch(const URLRequest& request);
  void delayClosing();
  void say(const QString& message);

  std::shared_ptr<Life> life_ = std::make_shared<Life>();
  std::shared_ptr<ResultKeeper> results_;
  std::unique_ptr<NavigationWindow> window_;
  std::unique_ptr<ClosingDelay> closing_;
  std::shared_ptr<ORNSelectTypeViewController> selection_;
  std::shared_ptr<ORNSelectTypeDelegate> delegate_;
};

}  // namespace orn
