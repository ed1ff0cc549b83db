#include "hearing-app/WatchedURLSession.h"

#include <exception>
#include <utility>

#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {

WatchedURLSession::WatchedURLSession(std::shared_ptr<URLSession> session, std::weak_ptr<RunLoop> runLoop, Judge judge,
                                     Watcher watcher)
    : session_(std::move(session)),
      runLoop_(std::move(runLoop)),
      judge_(std::move(judge)),
      watcher_(std::move(watcher)) {}

WatchedURLSession::~WatchedURLSession() = default;

void WatchedURLSession::dataTask(URLRequest request, CompletionHandler completionHandler) {
  const auto tell = [ended = watcher_(request), runLoop = runLoop_](const URLReply& result) {
    const auto loop = runLoop.lock();
    if (loop && ended) loop->dispatchAsync([ended, result] { ended(result); });
  };
  try {
    session_->dataTask(request,
                       [request, judge = judge_, tell, handler = std::move(completionHandler)](URLReply reply) {
                         const URLReply result = judge(request, std::move(reply));
                         handler(result);
                         tell(result);  // the handler has handed on what it has to hand on, so this comes after it
                       });
  } catch (const std::exception& error) {  // the machine lacks what a request needs
    tell({std::nullopt, Error{"transport", 0, error.what()}});
    throw;
  }
}

}  // namespace orn
