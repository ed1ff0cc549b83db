#pragma once

#include <functional>

#include <QtWidgets/QWidget>

namespace orn {

class AttributedButton;

/// The foot of the device selection: the way to the shop, and the credit.
class ShopFooterView : public QWidget {
 public:
  /// The action is told the button.
  explicit ShopFooterView(std::function<void(QWidget* sender)> goToShop);

  void setWidth(int width);

 private:
  AttributedButton *buy_, *credit_;
};

}  // namespace orn
