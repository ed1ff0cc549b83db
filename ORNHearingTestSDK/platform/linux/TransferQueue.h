#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

class Transfer;

/// The requests of one session, and the loop that serves them.
class TransferQueue {
 public:
  /// Throws std::runtime_error if the loop could not be woken.
  TransferQueue();
  ~TransferQueue();

  /// Any thread.
  void add(URLRequest request, URLSession::CompletionHandler completionHandler);

  /// Makes run() answer every request with an error and return. Any thread.
  void end();

  /// Serves requests on the calling thread until end().
  void run();

 private:
  struct Release {
    void operator()(void* multi) const;
  };

  using Transfers = std::vector<std::unique_ptr<Transfer>>;

  bool hasEnded();
  Transfers takeAdded();
  void begin(std::unique_ptr<Transfer> transfer);
  void answerFinished();
  void failRunning(const std::string& message);
  void failAll(const std::string& message);

  const std::unique_ptr<void, Release> multi_;
  std::mutex mutex_;
  bool ended_ = false;
  Transfers added_;

  std::unordered_map<void*, std::unique_ptr<Transfer>> running_;  // by handle; only run() touches it
};

}  // namespace orn
