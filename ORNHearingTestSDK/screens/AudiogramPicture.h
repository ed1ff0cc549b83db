#pragma once

#include <QtCore/QByteArray>

#include <ORNHearingTestSDK/common/EarResult.h>
#include <ORNHearingTestSDK/screens/ScreensExport.h>

namespace orn {

/// PNG is a bitmap of two pixels a point; the others can be drawn at any size.
enum class PictureFormat { Png, Svg, Pdf };

/// The audiogram of both ears as a file's contents, at the size of a phone's screen, 375 by 667 points. A threshold
/// that is absent or "-1" is left out, with its lines. Needs a QApplication, no display, and a platform in force, whose
/// image bundle has the watermark. Main thread.
ORN_SCREENS_EXPORT QByteArray audiogramPicture(const EarResult& left, const EarResult& right, PictureFormat format);

}  // namespace orn
