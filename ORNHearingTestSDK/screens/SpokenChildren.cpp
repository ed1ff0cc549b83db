#include <ORNHearingTestSDK/screens/SpokenChildren.h>

#include <utility>

#include <QtWidgets/QAccessibleWidget>

namespace orn {
namespace {

/// A widget as screen readers know it, with the children that it is to have for them.
class SpokenParent : public QAccessibleWidget {
 public:
  SpokenParent(QWidget* widget, const SpokenChildren* children)
      : QAccessibleWidget(widget, children->role()), children_(children) {}

  int childCount() const override { return static_cast<int>(children_->now().size()); }

  QAccessibleInterface* child(int index) const override {
    return QAccessible::queryAccessibleInterface(children_->now().value(index));
  }

  int indexOfChild(const QAccessibleInterface* child) const override {
    return static_cast<int>(children_->now().indexOf(qobject_cast<QWidget*>(child ? child->object() : nullptr)));
  }

 private:
  const SpokenChildren* children_;  // which the widget owns
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  if (!widget) return nullptr;
  for (const QObject* one : widget->children()) {
    if (const auto* children = dynamic_cast<const SpokenChildren*>(one)) return new SpokenParent(widget, children);
  }
  return nullptr;
}

void tell(QWidget* widget, QAccessible::Event event) {
  QAccessibleEvent change(widget, event);
  QAccessible::updateAccessibility(&change);
}

}  // namespace

SpokenChildren::SpokenChildren(QWidget* widget, std::function<QWidgetList()> children, QAccessible::Role role)
    : QObject(widget), children_(std::move(children)), role_(role) {
  static const bool isInstalled = [] {
    QAccessible::installFactory(makeInterface);
    return true;
  }();
  Q_UNUSED(isInstalled);
}

void SpokenChildren::changed() {
  const QWidgetList children = now();
  // A reader that is started later finds these, and is to be told when they go.
  const auto before = std::exchange(last_, {children.begin(), children.end()});
  if (!QAccessible::isActive()) return;
  for (const QPointer<QWidget>& one : before) {
    if (one && !children.contains(one)) tell(one, QAccessible::ObjectDestroyed);
  }
  for (QWidget* one : children) {
    if (!before.contains(one)) tell(one, QAccessible::ObjectCreated);
  }
}

}  // namespace orn
