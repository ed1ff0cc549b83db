#pragma once

#include <functional>
#include <memory>

#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

class RunLoop;

/// Lets a host judge the replies to the library's requests, some of which fail without a word to anyone, and know what
/// became of each.
class WatchedURLSession final : public URLSession {
 public:
  /// Makes of a reply what the library gets. On the session's thread.
  using Judge = std::function<URLReply(const URLRequest&, URLReply)>;
  /// Called on the main thread, after the library's own handling there; may be empty.
  using Ended = std::function<void(const URLReply&)>;
  /// Told of each request as it starts, where it is started.
  using Watcher = std::function<Ended(const URLRequest&)>;

  WatchedURLSession(std::shared_ptr<URLSession> session, std::weak_ptr<RunLoop> runLoop, Judge judge, Watcher watcher);
  ~WatchedURLSession() override;

  void dataTask(URLRequest request, CompletionHandler completionHandler) override;

 private:
  std::shared_ptr<URLSession> session_;
  std::weak_ptr<RunLoop> runLoop_;
  Judge judge_;
  Watcher watcher_;
};

}  // namespace orn
