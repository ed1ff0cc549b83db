#pragma once

#include <memory>
#include <vector>

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <ORNHearingTestSDK/screens/ScreensExport.h>

namespace orn {

class NavigationBar;
class NavigationWindow;
class Screen;
class SpokenChildren;

/// A stack of screens under one navigation bar, of which the last one shows. It owns its screens. Changes hold at once;
/// what slides is only their picture. Main thread.
class ORN_SCREENS_EXPORT NavigationController : public std::enable_shared_from_this<NavigationController> {
 public:
  static constexpr int kBarHeight = 44;  ///< In points.

  static std::shared_ptr<NavigationController> init();  ///< An empty stack.
  /// A stack with its first screen.
  static std::shared_ptr<NavigationController> initWithRootViewController(const std::shared_ptr<Screen>& screen);

  ~NavigationController();
  NavigationController(const NavigationController&) = delete;
  NavigationController& operator=(const NavigationController&) = delete;

  /// Puts a screen on top. Nothing happens for one that already stands in a stack.
  void push(const std::shared_ptr<Screen>& screen);

  /// Takes the top screen away, unless it is the only one.
  void pop();

  /// Takes away a screen and all above it, unless that would leave none.
  void pop(const std::shared_ptr<Screen>& screen);

  const std::vector<std::shared_ptr<Screen>>& screens() const { return screens_; }  ///< From the bottom up.
  std::shared_ptr<Screen> topScreen() const;                                        ///< Null in an empty stack.

  /// Whether the screens' views reach up under the bar, which they do unless this is set to false.
  bool isTranslucent() const { return isTranslucent_; }
  void setTranslucent(bool isTranslucent);

  /// The bar shows what the top screen says.
  void updateBar();

 private:
  friend class NavigationWindow;
  NavigationController() = default;

  void enter(NavigationWindow* window);
  void leave();
  void setOnScreen(bool isOnScreen);
  void layOut();
  QWidget* container() const { return container_; }

  void showTop();
  void focusTop() const;
  int contentTop() const;
  QWidgetList spokenViews() const;
  void slide(QWidget* view, QWidget* picture, bool isComing);

  std::vector<std::shared_ptr<Screen>> screens_;
  QPointer<NavigationWindow> window_;
  QPointer<QWidget> container_;
  QPointer<NavigationBar> bar_;
  QPointer<SpokenChildren> spoken_;
  bool isTranslucent_ = true;
  bool isOnScreen_ = false;
};

}  // namespace orn
