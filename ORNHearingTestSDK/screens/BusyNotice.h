#pragma once

#include <memory>

#include <QtWidgets/QLabel>

namespace orn {

class BusySign;

/// A line in the middle of a view, beneath a turning wheel, while something is waited for. Main thread.
class BusyNotice : public QLabel {
 public:
  BusyNotice(const QString& text, QWidget* parent);

  /// Waits for as long as the object lives, which the callback that is waited for holds.
  void waitFor(const std::weak_ptr<void>& object);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void layOut();

  BusySign* busy_;
};

}  // namespace orn
