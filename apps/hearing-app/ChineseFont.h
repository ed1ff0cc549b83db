#pragma once

namespace orn {

/// Whether the system has a font for the texts of the screens, which are Chinese. Needs the QApplication.
bool hasChineseFont();

/// Says in English that there is none, on stderr and in a window, and returns when that has been closed. Each character
/// would be a box, and nobody can take a test by boxes.
void sayThatChineseFontIsMissing();

}  // namespace orn
