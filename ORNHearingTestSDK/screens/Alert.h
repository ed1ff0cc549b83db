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
  QStringList buttons;    ///< From left to right, or from above.
  int cancelButton = -1;  ///< What the escape key stands for; an only button where negative.
};

}  // namespace orn
