#include <ORNHearingTestSDK/platform/simulated/SimulatedURLSession.h>

#include <algorithm>
#include <utility>

namespace orn {

void SimulatedURLSession::script(std::string addressPart, URLReply reply, std::chrono::milliseconds delay) {
  scripts_.push_back({std::move(addressPart), std::move(reply), delay});
}

SimulatedURLSession::Script SimulatedURLSession::scriptFor(const URLRequest& request) const {
  const auto fits = [&](const Script& one) { return request.url.find(one.addressPart) != std::string::npos; };
  const auto found = std::find_if(scripts_.rbegin(), scripts_.rend(), fits);
  if (found == scripts_.rend()) return {"", {{}, Error{"transport", 1, "no reply is scripted for " + request.url}}, {}};
  if (found->delay > request.timeout)
    return {"", {{}, Error{"transport", 2, "the request timed out"}}, request.timeout};
  return *found;
}

void SimulatedURLSession::dataTask(URLRequest request, CompletionHandler completionHandler) {
  const Script found = scriptFor(request);
  requests_.push_back(std::move(request));
  runLoop_->performAfterDelay(found.delay, [reply = found.reply, done = std::move(completionHandler)] { done(reply); });
}

}  // namespace orn
