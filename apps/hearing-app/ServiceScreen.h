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

/// Asks where the service is, which everything else comes from, and says what is wrong with an address. Where there is
/// none it leads to the simulation. Main thread.
class ServiceScreen final : public Screen {
 public:
  /// With the address so far.
  static std::shared_ptr<ServiceScreen> initWithHost(const std::string& host);
  ~ServiceScreen() override;

  /// Told of each address that is entered and that a request can be sent to.
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
