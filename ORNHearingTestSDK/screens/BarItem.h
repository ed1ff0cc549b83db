#pragma once

#include <functional>

#include <QtCore/QString>

namespace orn {

/// A button of the navigation bar.
struct BarItem {
  QString title;
  std::function<void()> action;
};

}  // namespace orn
