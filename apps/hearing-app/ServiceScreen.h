#pragma once

#include <functional>
#include <memory>
#include <string>

#include <QtCore/QPointer>

#include <ORNHearingTestSDK/screens/Screen.h>

class QLabel;
class QLineEdit;
class QVBoxLayout;

namespace orn {

/// Asks for the address of the service, from which everything else comes, and says what is wrong with an address.
/// Without a service the user can go to the simulation. Main thread.
class ServiceScreen final : public Screen {
 public:
  /// With the present address, which may be empty.
  static std::shared_ptr<ServiceScreen> initWithHost(const std::string& host);
  ~ServiceScreen() override;

  /// Called with each address that is entered and to which a request can be sent.
  std::function<void(const std::string& host)> onDone;

  /// The user wants to see the simulation. Set it before the screen is shown; without it there is no such button.
  std::function<void()> onSimulation;

  QWidget* firstFocus() const override;

 protected:
  void viewDidLoad() override;

 private:
  explicit ServiceScreen(const std::string& host);

  void offerSimulation(QVBoxLayout* form);
  void done();

  std::string host_;
  QPointer<QLineEdit> address_;
  QPointer<QLabel> complaint_;
};

}  // namespace orn
