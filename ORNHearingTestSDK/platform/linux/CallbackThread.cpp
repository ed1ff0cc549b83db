#include <ORNHearingTestSDK/platform/linux/CallbackThread.h>

#include <utility>

namespace orn {

CallbackThread::CallbackThread(std::function<void(AudioQueueBuffer&)> handBack)
    : handBack_(std::move(handBack)), thread_([this] { run(); }) {}

CallbackThread::~CallbackThread() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  changed_.notify_one();
  thread_.join();
}

void CallbackThread::reserve(std::size_t buffers) {
  const std::lock_guard lock(mutex_);
  waiting_.reserve(buffers);
}

void CallbackThread::add(AudioQueueBuffer& buffer) {
  {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(&buffer);
  }
  changed_.notify_one();
}

void CallbackThread::setHeldBack(bool heldBack) {
  {
    const std::lock_guard lock(mutex_);
    isHeldBack_ = heldBack;
  }
  changed_.notify_one();
}

void CallbackThread::forget(const AudioQueueBuffer& buffer) {
  const std::lock_guard lock(mutex_);
  std::erase(waiting_, &buffer);
}

void CallbackThread::forgetAll() {
  const std::lock_guard lock(mutex_);
  waiting_.clear();
}

void CallbackThread::run() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return isEnding_ || (!isHeldBack_ && !waiting_.empty()); });
    if (isEnding_) return;
    AudioQueueBuffer& buffer = *waiting_.front();
    waiting_.erase(waiting_.begin());
    lock.unlock();
    handBack_(buffer);
    lock.lock();
  }
}

}  // namespace orn
