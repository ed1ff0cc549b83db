#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QtCore/QPointer>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtWidgets/QWidget>

#include <ORNHearingTestSDK/screens/Alert.h>
#include <ORNHearingTestSDK/screens/BarItem.h>
#include <ORNHearingTestSDK/screens/ScreensExport.h>

namespace orn {

class NavigationController;
class NavigationWindow;

/// One screen of the application: a title, the items of the navigation bar, and a view that is made when the screen
/// first comes into a window. It belongs to the navigation controller that it was pushed on, to whoever else holds it,
/// and to nobody else; it may be let go of at any moment, also from within its own operations. Main thread.
class ORN_SCREENS_EXPORT Screen : public std::enable_shared_from_this<Screen> {
 public:
  using Action = std::function<void()>;  ///< What a click does.

  virtual ~Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  const QString& title() const { return title_; }  ///< Shown in the bar.
  void setTitle(const QString& title);             ///< Takes the title.

  /// Without a left item the bar leads back to the screen before, where there is one.
  const std::optional<BarItem>& leftBarItem() const { return leftBarItem_; }
  void setLeftBarItem(BarItem item);
  const std::optional<BarItem>& rightBarItem() const { return rightBarItem_; }  ///< Nothing where there is none.
  void setRightBarItem(BarItem item);

  /// The view, which the window owns; null before the first time on screen and after the window has gone.
  QWidget* view() const { return view_; }

  /// Where the screen stands; null before it is pushed and after it is popped.
  std::shared_ptr<NavigationController> navigationController() const { return navigationController_.lock(); }

  /// The controller that the screen was last shown by, whether it still stands there or not.
  std::shared_ptr<NavigationController> navi() const { return navi_.lock(); }

  /// Makes the bar item of each title that is given and pushes this screen, animated.
  void showByNavigation(const std::shared_ptr<NavigationController>& navigation,
                        const std::optional<QString>& leftBarTitle, Action leftBarAction,
                        const std::optional<QString>& rightBarTitle, Action rightBarAction);
  void leftButtonClick() const;   ///< Does what the left item of showByNavigation() does.
  void rightButtonClick() const;  ///< Does what the right item of showByNavigation() does.

  /// Shows another stack over this screen's own. Nothing happens if something is shown over it already, or if this
  /// screen is in no window.
  void present(const std::shared_ptr<NavigationController>& navigation);

  /// Takes away the presented stack that this screen stands in. Where its stack was not presented, the screen itself is
  /// popped; a screen that stands nowhere stays as it is.
  void dismiss();

  /// What gets the keyboard when the screen appears.
  virtual QWidget* firstFocus() const { return view_; }

  /// Whether the window's closing must wait for an answer of the user. While the question is in view and could have
  /// been read, it need not.
  virtual bool asksBeforeClosing() const { return false; }
  virtual void askBeforeClosing() {}  ///< Asks; the window closes or stays by the answer.

  /// The escape key, where nothing else wants it. Tells whether it had a meaning.
  virtual bool escapePressed() { return false; }

 protected:
  Screen() = default;

  /// This screen as its own class, not held.
  template <class Class>
  std::weak_ptr<Class> weakSelf(Class* self) {
    return std::shared_ptr<Class>(shared_from_this(), self);
  }

  /// The window's size in points.
  QSize mainScreen() const;
  int barHeight() const;                                           ///< Of the navigation bar, in points; 0 without one.
  int statusBarHeight() const;                                     ///< Of the device's own bar, in points.
  int topBars() const { return barHeight() + statusBarHeight(); }  ///< Both.
  NavigationWindow* window() const;  ///< Null before the first time on screen and after the window has gone.

  /// Shows an alert over everything; alertView() is told the answer. It goes unanswered when the screen leaves its
  /// stack. Nothing happens on a screen that stands in no stack, or while an alert of its own with that tag is there.
  void showAlert(const Alert& alert);
  void withdrawAlert(int tag);

  /// Whether an alert of this screen with that tag has been in view long enough to be read.
  bool isAlertRead(int tag) const;
  /// An alert of this screen's was answered, by the button of that index.
  virtual void alertView(int tag, int buttonIndex);

  virtual QWidget* loadView(QWidget* parent);  ///< Makes the view.
  virtual void viewDidLoad() {}                ///< The view has been made.
  virtual void viewDidAppear() {}              ///< The screen has come into view.
  virtual void viewDidDisappear() {}           ///< The screen has gone out of view.

  /// The screen stands in no stack any more, whether it was on screen or covered.
  virtual void didLeaveStack() {}

  /// The window has another size.
  virtual void layOut() {}

 private:
  friend class NavigationController;
  void attach(const std::shared_ptr<NavigationController>& navigation) { navigationController_ = navigation; }
  void load(NavigationWindow* window, QWidget* parent);
  void detach();
  void setOnScreen(bool isOnScreen);
  void barChanged() const;

  QString title_;
  std::optional<BarItem> leftBarItem_, rightBarItem_;
  Action leftBarAction_, rightBarAction_;
  std::weak_ptr<NavigationController> navigationController_, navi_;
  QPointer<NavigationWindow> window_;
  QPointer<QWidget> view_;
  bool isOnScreen_ = false;
};

}  // namespace orn
