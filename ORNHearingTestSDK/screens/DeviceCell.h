#pragma once

#include <string>

#include <QtCore/QString>

#include <ORNHearingTestSDK/screens/AttributedText.h>
#include <ORNHearingTestSDK/screens/TableCell.h>

class QLabel;

namespace orn {

class TextLabel;

/// One way of testing: its picture, its name and, beneath that, whether its device is there.
class DeviceCell : public TableCell {
 public:
  /// What of the width the texts don't have.
  static constexpr int kBesideText = 100;

  static QString identifier() { return QStringLiteral("TTT"); }

  DeviceCell();

  void setContents(const std::string& imageName, const AttributedText& title, const AttributedText& detail);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void showImage(const std::string& name, double pixelRatio);
  void layOut();

  QLabel* image_;
  TextLabel *title_, *detail_;
  AttributedText detailText_;
  std::string imageName_;
  double imageRatio_ = 0;
};

}  // namespace orn
