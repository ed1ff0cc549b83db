#pragma once

#include <functional>
#include <vector>

#include <QtWidgets/QWidget>

#include <ORNHearingTestSDK/screens/Alert.h>

class QBoxLayout;
class QFrame;
class QPushButton;

namespace orn {

/// An alert as it shows: a card in the middle of its parent, which it dims and closes off from mouse and keyboard.
class AlertView : public QWidget {
 public:
  AlertView(const Alert& alert, QWidget* parent);

  /// Told of the button that answers the alert; called once.
  std::function<void(int buttonIndex)> onAnswer;

  /// Fades in and makes itself heard to screen readers.
  void appear();
  void takeFocus();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  void addTexts(const Alert& alert, QBoxLayout* column);
  void addButtons(const Alert& alert, QBoxLayout* column);
  void answer(int buttonIndex);

  QFrame* card_;
  std::vector<QPushButton*> buttons_;
  int cancelButton_;
  double opacity_ = 0;
};

}  // namespace orn
