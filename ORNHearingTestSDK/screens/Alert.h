#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace orn {

/// A question or a notice, for as long as it takes the user to answer it. Its handler is told its tag and the index of
/// the button, counted from 0 in the order given here.
struct Alert {
  int tag = 0;            ///< By which its answer is known.
  QString title;          ///< In bold.
  QString message;        ///< Below it.
  QStringList buttons;    ///< From left to right, or from the top.
  int cancelButton = -1;  ///< The button that the escape key presses; if negative, an only button.
};

}  // namespace orn
