#pragma once

#include <QtCore/QString>

namespace orn {

/// Walks through every screen, alert and state in virtual time and saves each as a PNG file in the folder, once as a
/// phone of 375 by 667 points shows it and once as one of 1080 by 2160 pixels, 3 to a point. The folder is made where
/// there is none. Throws std::runtime_error if that, or a step, fails. Needs a QApplication; main thread.
void walkForScreenshots(const QString& folder);

}  // namespace orn
