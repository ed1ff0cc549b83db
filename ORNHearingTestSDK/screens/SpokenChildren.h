#pragma once

#include <functional>

#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtGui/QAccessible>
#include <QtWidgets/QWidget>

namespace orn {

/// Decides which children of a widget a screen reader is told of, and in which order: what is covered is not spoken,
/// and what stands at the top comes first. It lives as long as the widget. Main thread.
class SpokenChildren : public QObject {
 public:
  SpokenChildren(QWidget* widget, std::function<QWidgetList()> children, QAccessible::Role role = QAccessible::Client);

  QWidgetList now() const { return children_(); }
  QAccessible::Role role() const { return role_; }

  /// Tells a screen reader that listens of children that have come or gone since the last call.
  void changed();

 private:
  std::function<QWidgetList()> children_;
  QAccessible::Role role_;
  QList<QPointer<QWidget>> last_;  // those of the last call
};

}  // namespace orn
