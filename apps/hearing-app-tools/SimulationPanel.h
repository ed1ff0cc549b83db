#pragma once

#include <functional>

#include <QtWidgets/QWidget>

class QVBoxLayout;

namespace orn {

class ScreenListener;
class SimulatedHost;

/// The small window beside the application that plugs, unplugs and interrupts the simulated devices and lets a virtual
/// listener press.
class SimulationPanel final : public QWidget {
 public:
  /// Both must outlive the panel.
  SimulationPanel(SimulatedHost& host, ScreenListener& listener);

 private:
  void addButton(QVBoxLayout* column, const QString& text, std::function<void()> action);
  void addCheck(QVBoxLayout* column, const QString& text, std::function<void(bool)> action);
};

}  // namespace orn
