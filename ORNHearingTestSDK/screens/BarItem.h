#pragma once

#include <functional>

#include <QtCore/QString>

namespace orn {

/// A button of the navigation bar.
struct BarItem {
  QString title;                 ///< As it is shown.
  std::function<void()> action;  ///< What a click does.
};

}  // namespace orn
