#pragma once

#include <chrono>
#include <functional>

class QWidget;

namespace orn {

/// Changes something of a widget over a span of the platform's time, so that it can be followed in virtual time as
/// well. `step` gets the progress from 0 to 1, eased, the first time within this call; `completion` comes after the
/// last step. Neither comes once the widget has gone. Main thread.
void animate(QWidget* widget, std::chrono::milliseconds duration, std::function<void(double progress)> step,
             std::function<void()> completion = {});

/// The widget's picture as it looks now, in its place and over it; it takes no events. For what slides while the widget
/// itself has already gone. Main thread.
QWidget* makePicture(QWidget* widget);

}  // namespace orn
