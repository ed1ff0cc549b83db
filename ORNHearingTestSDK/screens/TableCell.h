#pragma once

#include <QtCore/QPointF>
#include <QtWidgets/QAbstractButton>

#include <ORNHearingTestSDK/screens/ScreensExport.h>

namespace orn {

/// One row of a TableView, found by its identifier when it is used again for another row. A click selects the row. A
/// disabled cell takes no clicks and looks as it did.
class ORN_SCREENS_EXPORT TableCell : public QAbstractButton {
 public:
  explicit TableCell(QString reuseIdentifier);

  const QString& reuseIdentifier() const { return reuseIdentifier_; }

  bool isSelected() const { return isSelected_; }
  void setSelected(bool isSelected);

  /// The mark at the right edge that leads on.
  void setDisclosureMark(bool isShown) { hasDisclosureMark_ = isShown; }
  void setCornerRadius(int radius) { cornerRadius_ = radius; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  void paintDisclosureMark(QPainter& painter) const;

  QString reuseIdentifier_;
  bool isSelected_ = false;
  bool hasDisclosureMark_ = false;
  int cornerRadius_ = 0;
  QPointF pressedAt_;
};

}  // namespace orn
