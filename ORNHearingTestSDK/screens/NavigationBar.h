#pragma once

#include <optional>

#include <QtWidgets/QWidget>

#include <ORNHearingTestSDK/screens/BarItem.h>

class QLabel;
class QPushButton;

namespace orn {

/// The bar over a stack of screens: one item at each side and the title between them.
class NavigationBar : public QWidget {
 public:
  explicit NavigationBar(QWidget* parent);

  void setItems(const QString& title, std::optional<BarItem> left, std::optional<BarItem> right);

  void setTranslucent(bool isTranslucent);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QPushButton* makeButton();
  static void fill(QPushButton* button, const std::optional<BarItem>& item);

  QLabel* title_;
  QPushButton *left_, *right_;
  std::optional<BarItem> leftItem_, rightItem_;
  bool isTranslucent_ = true;
};

}  // namespace orn
