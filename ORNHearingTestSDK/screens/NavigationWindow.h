#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <ORNHearingTestSDK/screens/Alert.h>
#include <ORNHearingTestSDK/screens/ScreensExport.h>

namespace orn {

class AlertView;
class NavigationController;
class Screen;
class SpokenChildren;

/// The window that all screens live in: a stack of screens, the stacks that are presented over it, views over
/// everything, and alerts on top of all. As large as a phone's screen at first; any size is fine. The screens call its
/// size "the main screen". A screen counts as on screen while the window is shown. It goes before the platform does.
/// Its colours are its own, whatever palette or style sheet the host has. Main thread.
///
/// Told to close while the screen in front has something to lose, such as half a test, it stays and lets the screen
/// ask. Told once more while the user looks at the question, it closes.
class ORN_SCREENS_EXPORT NavigationWindow : public QWidget {
 public:
  explicit NavigationWindow(QWidget* parent = nullptr);  ///< In a parent, or a window of its own.
  ~NavigationWindow() override;

  /// The stack at the bottom. A host pushes its first screen here.
  std::shared_ptr<NavigationController> navigation() const { return stacks_.front(); }

  /// The stack that the user sees.
  std::shared_ptr<NavigationController> front() const { return stacks_.back(); }

  /// Room at the top that belongs to the device, in points; 0 on a desktop.
  int statusBarHeight() const { return statusBarHeight_; }
  void setStatusBarHeight(int height);

  /// Shows a stack over the presenter's. False, and nothing happens, unless the presenter is in front.
  bool present(const std::shared_ptr<NavigationController>& navigation,
               const std::shared_ptr<NavigationController>& presenter);

  /// Takes a presented stack and all above it away. False, and nothing happens, for any other.
  bool dismiss(const std::shared_ptr<NavigationController>& navigation);

  /// Alerts pile up: the newest shows, and its answer uncovers the one before. The handler is told tag and index.
  void showAlert(const Alert& alert, std::function<void(int tag, int buttonIndex)> handler = {});

  /// Puts a view over all screens and bars, beneath the alerts. Hiding it takes it away.
  void showOverEverything(QWidget* view);

  /// Gives the keyboard to what the user sees: to where it was before something covered that, if that is still there.
  void focusFront();

  /// Whether a question would come before the window closed.
  bool asksBeforeClosing() const;

  /// Closes without a question, as a program that is told to end must.
  void setClosesUnasked(bool closesUnasked) { closesUnasked_ = closesUnasked; }

  /// Whether the window is being destroyed.
  bool isGoing() const { return isGoing_; }

  QSize sizeHint() const override;  ///< A phone's screen.

 protected:
  void resizeEvent(QResizeEvent* event) override;  ///< Qt's; handled here.
  void showEvent(QShowEvent* event) override;      ///< Qt's; handled here.
  void hideEvent(QHideEvent* event) override;      ///< Qt's; handled here.
  void closeEvent(QCloseEvent* event) override;    ///< Qt's; handled here.
  void changeEvent(QEvent* event) override;        ///< Qt's; handled here.
  void keyPressEvent(QKeyEvent* event) override;   ///< Qt's; handled here.
  bool focusNextPrevChild(bool next) override;     ///< Qt's; handled here.

 private:
  friend class Screen;
  struct ShownAlert {
    AlertView* view;
    const Screen* owner;  // whose handler is told; null for a host's own
    int tag;
  };

  void showAlert(const Alert& alert, std::function<void(int tag, int buttonIndex)> handler, const Screen* owner);
  bool showsAlert(const Screen* owner, int tag) const;
  bool isAlertRead(const Screen* owner, int tag) const;

  /// Unanswered. Of one tag, or of any.
  void withdrawAlerts(const Screen* owner, std::optional<int> tag = {});
  template <class Condition>
  void takeAway(Condition isMeant);
  void arrangeAlerts();
  bool isCovered() const;
  QWidgetList spokenViews() const;
  void keepColours();

  std::vector<std::shared_ptr<NavigationController>> stacks_;
  std::vector<ShownAlert> alerts_;
  QPointer<QWidget> overEverything_;
  SpokenChildren* spoken_;
  bool closesUnasked_ = false, isGoing_ = false;
  int statusBarHeight_ = 0;
};

}  // namespace orn
