#pragma once

#include <functional>

class QWidget;

namespace orn {

/// Calls an action once a window, which has been told to show, has been painted for the first time.
void afterFirstFrame(QWidget& window, std::function<void()> action);

}  // namespace orn
