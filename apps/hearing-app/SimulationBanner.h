#pragma once

#include <QtWidgets/QLabel>

namespace orn {

class NavigationWindow;

/// A strip along the top of a window, which says that all of it is a simulation. Main thread.
class SimulationBanner final : public QLabel {
 public:
  explicit SimulationBanner(NavigationWindow& window);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace orn
