#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include <QtWidgets/QWidget>

#include <ORNHearingTestSDK/screens/Alert.h>

class QBoxLayout;
class QFrame;
class QPushButton;

namespace orn {

/// An alert as it shows: a card in the middle of its parent, which it dims and closes off from mouse and keyboard.
///
/// A key may have been meant for what the alert has covered, such as a press for a tone. So an only button takes the
/// keyboard a moment after the alert has come into view, and ignores a key that is held since before; the escape and
/// tabulator keys, which mean nothing there, hold at once. A line beneath the card says which keys answer.
class AlertView : public QWidget {
 public:
  AlertView(const Alert& alert, QWidget* parent);

  /// Called once, with the button that answers the alert.
  std::function<void(int buttonIndex)> onAnswer;

  static constexpr std::chrono::milliseconds kKeyPause{1000};

  /// Fades in and announces itself to screen readers.
  void appear();
  void takeFocus();

  /// Whether it has been in view for kKeyPause.
  bool isRead() const { return isRead_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  void addTexts(const Alert& alert, QBoxLayout* column);
  void addButtons(const Alert& alert, QBoxLayout* column);
  void addHint(QBoxLayout* column);
  void answer(int buttonIndex);

  QFrame* card_;
  std::vector<QPushButton*> buttons_;
  int cancelButton_;
  double opacity_ = 0;
  int timesShown_ = 0;
  bool isRead_ = false;
};

}  // namespace orn
