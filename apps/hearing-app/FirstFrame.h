#pragma once

#include <functional>

class QWidget;

namespace orn {

/// Calls an action once a window has been painted for the first time. Call it after show().
void afterFirstFrame(QWidget& window, std::function<void()> action);

}  // namespace orn
