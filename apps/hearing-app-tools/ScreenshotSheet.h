#pragma once

#include <QtCore/QRect>
#include <QtCore/QStringList>
#include <QtGui/QImage>

#include "hearing-app/OtherModes.h"

namespace orn {

/// The names of the pictures that a walk has left in the folder, in the order of their places on the sheet.
QStringList screenshotNames(const QString& folder, const ScreenSize& screen);

/// All of them at a third of their size, row by row.
QImage screenshotSheet(const QString& folder, const ScreenSize& screen);

/// Where the picture of this number is on it, in pixels.
QRect placeOnSheet(int number, const ScreenSize& screen);

}  // namespace orn
