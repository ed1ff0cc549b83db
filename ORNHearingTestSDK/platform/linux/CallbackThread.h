#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include <ORNHearingTestSDK/platform/AudioQueue.h>

namespace orn {

/// The thread of a queue on which buffers are handed back, one at a time and in order. It holds no lock while it does.
class CallbackThread {
 public:
  explicit CallbackThread(std::function<void(AudioQueueBuffer&)> handBack);

  /// Ends after the callback that is going on. Not from within one.
  ~CallbackThread();
  CallbackThread(const CallbackThread&) = delete;
  CallbackThread& operator=(const CallbackThread&) = delete;

  /// Makes room, so that add() allocates nothing for as many buffers.
  void reserve(std::size_t buffers);

  void add(AudioQueueBuffer& buffer);

  /// While it holds back, no new callback begins.
  void setHeldBack(bool heldBack);

  /// Forgets a buffer that waits; or all of them.
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
