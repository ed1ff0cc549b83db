#pragma once

#include <memory>

#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn::simulation {

/// Makes each request wait for its reply before it returns, so that a program in virtual time can use a real service.
/// The handler still runs on the other session's thread.
class BlockingURLSession final : public URLSession {
 public:
  explicit BlockingURLSession(std::shared_ptr<URLSession> session) : session_(std::move(session)) {}

  void dataTask(URLRequest request, CompletionHandler completionHandler) override;

 private:
  std::shared_ptr<URLSession> session_;
};

}  // namespace orn::simulation
