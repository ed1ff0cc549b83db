#pragma once

#include <functional>
#include <memory>
#include <string>

#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

class RunLoop;

/// Lets a host know what became of the library's requests, some of which fail without a word to anyone.
class WatchedURLSession final : public URLSession {
 public:
  /// Called on the main thread, after the library's own handling there.
  using Watcher = std::function<void(const std::string& url, const URLReply& reply)>;

  WatchedURLSession(std::shared_ptr<URLSession> session, std::weak_ptr<RunLoop> runLoop, Watcher watcher);
  ~WatchedURLSession() override;

  void dataTask(URLRequest request, CompletionHandler completionHandler) override;

 private:
  std::shared_ptr<URLSession> session_;
  std::weak_ptr<RunLoop> runLoop_;
  Watcher watcher_;
};

}  // namespace orn
