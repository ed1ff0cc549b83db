#pragma once

#include <QtGui/QImage>
#include <QtWidgets/QWidget>

namespace orn {

class TextLabel;

/// The user at the head of the device selection: a round picture on a backdrop, and the name. Half as high as wide, up
/// to the width of a table's column.
class UserHeaderView : public QWidget {
 public:
  UserHeaderView(bool isWoman, const QString& name);

  /// Takes the height that goes with the width.
  void setWidth(int width);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QImage backdrop_, avatar_;
  TextLabel* name_;
};

}  // namespace orn
