#pragma once

#include <QtCore/QString>

#include "hearing-app-tools/ScreenshotScript.h"

namespace orn {

/// Walks through every screen, alert and state in virtual time and saves each as a PNG file in the folder, which is
/// made if it is missing. Throws std::runtime_error if that, or a step, fails. Needs a QApplication at the screen's
/// ratio; main thread.
void walkForScreenshots(const QString& folder, const ScreenSize& screen);

}  // namespace orn
