#pragma once

#include <QtCore/QRect>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtGui/QPalette>

class QPainter;
class QString;
class QAbstractScrollArea;
class QPushButton;

namespace orn {

// How all screens look.

inline const QColor kAccentColour{0x17, 0x8a, 0x69};  ///< Dark enough for text on white.
inline const QColor kSeparatorColour{0xd8, 0xdc, 0xda};
inline const QColor kPressedColour{0xe6, 0xee, 0xeb};
inline const QColor kFocusColour{0x17, 0x8a, 0x69, 0xb0};

// The platform's names for two grays.
inline const QColor kDarkGrayColour{0x55, 0x55, 0x55};
inline const QColor kLightGrayColour{0xaa, 0xaa, 0xaa};

QFont systemFont(double size, QFont::Weight weight = QFont::Normal);

/// Black on white, whatever the desktop's colours are: the audiograms are drawn that way.
QPalette lightPalette();

/// The same against a host's style sheet. Widgets of this name are the white grounds.
QString ownColours();
inline constexpr auto kGroundName = "ground";

/// Makes a button nothing but its text, in the accent colour; it shows when it is pressed and when it has the keyboard.
void makeTextButton(QPushButton* button);

/// A slim vertical scroll bar only, and scrolling by finger.
void makePhoneScrolling(QAbstractScrollArea* area);

void drawFocusFrame(QPainter& painter, const QRectF& rect, double radius);

}  // namespace orn
