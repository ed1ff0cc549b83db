#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

/// Scripted replies. A request that no script matches fails with a transport error, and so does one whose scripted
/// delay is longer than its timeout. Handlers are called from the loop. Main thread.
class ORN_EXPORT SimulatedURLSession final : public URLSession {
 public:
  /// Answers as that loop's time passes.
  explicit SimulatedURLSession(std::shared_ptr<RunLoop> runLoop) : runLoop_(std::move(runLoop)) {}

  /// Every request whose address holds the text gets this reply after the delay; of several scripts that match, the
  /// last one counts.
  void script(std::string addressPart, URLReply reply, std::chrono::milliseconds delay = std::chrono::milliseconds{10});

  /// What was asked so far, in order.
  const std::vector<URLRequest>& requests() const { return requests_; }

  void dataTask(URLRequest request, CompletionHandler completionHandler) override;

 private:
  struct Script {
    std::string addressPart;
    URLReply reply;
    std::chrono::milliseconds delay;
  };

  Script scriptFor(const URLRequest& request) const;

  std::shared_ptr<RunLoop> runLoop_;
  std::vector<Script> scripts_;
  std::vector<URLRequest> requests_;
};

}  // namespace orn
