#pragma once

#include <QtGui/QKeyEvent>
#include <QtWidgets/QAbstractButton>

namespace orn {

/// Lets the return key click a button, once however long it is held; false for any other key.
inline bool clickByReturnKey(QAbstractButton& button, const QKeyEvent& event) {
  if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter) return false;
  if (!event.isAutoRepeat()) button.click();
  return true;
}

}  // namespace orn
