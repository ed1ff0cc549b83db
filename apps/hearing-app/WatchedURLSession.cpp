#include "hearing-app/WatchedURLSession.h"

#include <utility>

#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {

WatchedURLSession::WatchedURLSession(std::shared_ptr<URLSession> session, std::weak_ptr<RunLoop> runLoop,
                                     Watcher watcher)
    : session_(std::move(session)), runLoop_(std::move(runLoop)), watcher_(std::move(watcher)) {}

WatchedURLSession::~WatchedURLSession() = default;

void WatchedURLSession::dataTask(URLRequest request, CompletionHandler completionHandler) {
  std::string url = request.url;
  session_->dataTask(std::move(request), [url = std::move(url), handler = std::move(completionHandler),
                                          runLoop = runLoop_, watcher = watcher_](const URLReply& reply) {
    handler(reply);
    // The handler has handed on what it has to hand on, so this comes after it.
    if (const auto loop = runLoop.lock()) loop->dispatchAsync([url, reply, watcher] { watcher(url, reply); });
  });
}

}  // namespace orn
