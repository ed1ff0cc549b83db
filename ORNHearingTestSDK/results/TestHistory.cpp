#include <ORNHearingTestSDK/results/TestHistory.h>

#include <memory>
#include <utility>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/platform/MainQueue.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>

namespace orn {

using nlohmann::json;

void TestHistory::getListenTestWithCompletion(Completion completion, Refusals refusals) {
  const auto identity = serviceIdentity();
  if (!identity) return;
  URLRequest request = serviceRequest("user/acquireListenTest");
  setHttpHeader(request);
  setFormBody(request, {{"sdkKey", identity->appKey}, {"sdkUseId", identity->userID}});
  sendRequest(std::move(request), [main = MainQueue::current(), refusals, done = std::move(completion)](
                                      const ServiceReply& reply, json object) mutable {
    // Moved and shared: a long list is not copied on its way.
    const auto tests = std::make_shared<json>();
    if (!reply.failure() && object.contains("listenTests")) *tests = std::move(object["listenTests"]);
    main.dispatchAsync([done = std::move(done), tests,
                        error = refusals == Refusals::AreErrors ? reply.failure() : reply.readingError()] {
      if (done) done(error, *tests);
    });
  });
}

void TestHistory::fetch(Completion completion) {
  if (serviceIdentity()) return getListenTestWithCompletion(std::move(completion), Refusals::AreErrors);
  const Error error{kNotRegisteredDomain, 0, "nothing was asked: no application key or no user id is stored"};
  MainQueue::current().tell(std::move(completion), error, nullptr);
}

}  // namespace orn
