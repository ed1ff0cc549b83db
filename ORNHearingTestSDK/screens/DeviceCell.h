#pragma once

#include <functional>
#include <memory>
#include <string>

#include <QtCore/QString>

#include <ORNHearingTestSDK/screens/AttributedText.h>
#include <ORNHearingTestSDK/screens/TableCell.h>

class QLabel;
class QPushButton;

namespace orn {

class BusySign;
class TextLabel;

/// One way of testing: its picture, its name and, beneath that, whether its device is there. While its test is being
/// prepared, a wheel turns there beside a button that gives up.
class DeviceCell : public TableCell {
 public:
  /// The part of the width that the texts can't use.
  static constexpr int kBesideText = 100;

  static QString identifier() { return QStringLiteral("TTT"); }

  DeviceCell();

  void setContents(const std::string& imageName, const AttributedText& title, const AttributedText& detail);

  /// Shows that it waits for as long as the object lives. The action is called where the user gives up.
  void waitFor(std::weak_ptr<void> object, std::function<void()> giveUp);
  void stopWaiting();
  bool isWaiting() const;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void showImage(const std::string& name, double pixelRatio);
  void layOut();
  void showWaiting(bool isWaiting);

  BusySign* busy_;
  QPushButton* giveUp_;
  std::function<void()> onGiveUp_;
  QLabel* image_;
  TextLabel *title_, *detail_;
  AttributedText detailText_;
  std::string imageName_;
  double imageRatio_ = 0;
};

}  // namespace orn
