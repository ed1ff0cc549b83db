#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include <QtWidgets/QWidget>

namespace orn {

/// A turning wheel for something that is waited for. It comes only after a moment, so that what is there at once does
/// not flicker, and goes by itself with what it waits for. Main thread.
class BusySign : public QWidget {
 public:
  static constexpr int kSize = 20;
  static constexpr std::chrono::milliseconds kPatience{300};

  explicit BusySign(QWidget* parent);

  /// Waits for as long as the object lives, which the callback that is waited for holds.
  void waitFor(std::weak_ptr<void> object);
  bool isWaiting() const { return !object_.expired(); }

  /// The wheel has come or gone.
  std::function<void(bool isShown)> onChange;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void turn(int wait);
  void tell(bool isShown);

  std::weak_ptr<void> object_;
  int waits_ = 0;
  int spoke_ = 0;
};

}  // namespace orn
