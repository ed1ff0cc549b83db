#pragma once

namespace orn {

/// Whether the system has a font for the texts of the screens, which are Chinese. After the QApplication.
bool hasChineseFont();

/// Says in English that there is none, on stderr and in a window, and returns when that has been closed. Of the texts
/// nothing but boxes would be seen, and nobody can take a test by these.
void sayThatChineseFontIsMissing();

}  // namespace orn
