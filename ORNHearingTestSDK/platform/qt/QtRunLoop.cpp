#include <ORNHearingTestSDK/platform/qt/QtRunLoop.h>

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <QtCore/QSocketNotifier>
#include <QtCore/QTimer>

namespace orn {

using std::chrono::nanoseconds;

namespace {
constexpr nanoseconds kLongestWait = std::chrono::hours(1);
}

/// Counts the calls that were handed over and not yet seen; its descriptor is readable while there are any. Any thread.
class QtRunLoop::WakeUp {
 public:
  WakeUp() : descriptor_(eventfd(0, EFD_SEMAPHORE | EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), "can't make the loop's descriptor");
  }
  ~WakeUp() { close(descriptor_); }
  WakeUp(const WakeUp&) = delete;
  WakeUp& operator=(const WakeUp&) = delete;

  int descriptor() const { return descriptor_; }

  void add() {
    // Fails only when 2^64 calls wait, which then keep it readable.
    (void)eventfd_write(descriptor_, 1);
  }

  void take() {
    eventfd_t one = 0;
    (void)eventfd_read(descriptor_, &one);
  }

 private:
  const int descriptor_;
};

QtRunLoop::QtRunLoop()
    : wakeUp_(std::make_unique<WakeUp>()),
      notifier_(std::make_unique<QSocketNotifier>(wakeUp_->descriptor(), QSocketNotifier::Read)),
      timer_(std::make_unique<QTimer>()) {
  timer_->setSingleShot(true);
  timer_->setTimerType(Qt::PreciseTimer);
  QObject::connect(timer_.get(), &QTimer::timeout, [this] { turn(); });
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] {
    wakeUp_->take();
    turn();
  });
}

QtRunLoop::~QtRunLoop() = default;

void QtRunLoop::turn() {
  // Armed before the call as well, so that a loop nested in the call makes the calls that follow.
  armTimer();
  makeDueCall();
  armTimer();
}

void QtRunLoop::armTimer() {
  using std::chrono::milliseconds;
  const auto due = nextDue();
  if (!due) return timer_->stop();
  // Never early, since the timer counts whole milliseconds, and within its range.
  const nanoseconds time = now();
  const bool isDue = *due <= time;
  timer_->start(isDue ? milliseconds(0) : std::chrono::ceil<milliseconds>(std::min(*due - time, kLongestWait)));
}

void QtRunLoop::wake() { wakeUp_->add(); }

}  // namespace orn
