#pragma once

#include <functional>
#include <memory>

#include <QtCore/QPointer>

#include <ORNHearingTestSDK/screens/Screen.h>

#include "hearing-app/Profile.h"

class QLabel;
class QLineEdit;
class QRadioButton;
class QVBoxLayout;

namespace orn {

/// Asks for the profile, and says what is missing from it. Nothing is chosen beforehand: a wrong age or sex would make
/// a wrong score. Main thread.
class ProfileScreen final : public Screen {
 public:
  static std::shared_ptr<ProfileScreen> init();
  ~ProfileScreen() override;

  /// Called once, with a complete profile.
  std::function<void(const Profile&)> onDone;

  QWidget* firstFocus() const override;

 protected:
  void viewDidLoad() override;

 private:
  ProfileScreen();

  void addFields(QVBoxLayout* column);
  void addSexes(QVBoxLayout* column);
  void done();

  /// Empty if the profile is complete.
  struct Complaint {
    QString text;
    QWidget* field = nullptr;
  };
  Complaint complaint() const;

  QPointer<QLineEdit> name_, birthday_, phone_;
  QPointer<QRadioButton> man_, woman_;
  QPointer<QLabel> complaint_;
};

}  // namespace orn
