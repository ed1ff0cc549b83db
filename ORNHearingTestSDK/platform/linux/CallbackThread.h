#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include <ORNHearingTestSDK/platform/AudioQueue.h>

namespace orn {

/// The thread of a queue on which buffers are handed back, one at a time and in order. No lock is held meanwhile.
class CallbackThread {
 public:
  explicit CallbackThread(std::function<void(AudioQueueBuffer&)> handBack);

  /// Waits for the callback that is running. Not to be called from within one.
  ~CallbackThread();
  CallbackThread(const CallbackThread&) = delete;
  CallbackThread& operator=(const CallbackThread&) = delete;

  /// Makes room for that many buffers, so that add() allocates nothing.
  void reserve(std::size_t buffers);

  void add(AudioQueueBuffer& buffer);

  /// While held back, no new callback begins.
  void setHeldBack(bool heldBack);

  /// Forgets a waiting buffer, or all of them.
  void forget(const AudioQueueBuffer& buffer);
  void forgetAll();

 private:
  void run();

  std::function<void(AudioQueueBuffer&)> handBack_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<AudioQueueBuffer*> waiting_;
  bool isHeldBack_ = true;
  bool isEnding_ = false;
  std::thread thread_;
};

}  // namespace orn
