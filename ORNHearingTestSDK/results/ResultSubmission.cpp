#include <ORNHearingTestSDK/results/ResultSubmission.h>

#include <utility>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/PercentEscapes.h>
#include <ORNHearingTestSDK/platform/Device.h>
#include <ORNHearingTestSDK/platform/MainQueue.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/results/HearingScore.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>

namespace orn {
namespace {

using nlohmann::json;

void addEar(json& body, const std::string& ear, const EarResult& result) {
  for (const char* hz : {"125hz", "250hz", "500hz", "1000hz", "2000hz", "4000hz", "8000hz"}) {
    const auto threshold = result.find(hz);
    body[ear + hz] = threshold == result.end() ? "-1" : threshold->second;
  }
}

json submissionBody(const EarResult& left, const EarResult& right, const char* base,
                    const std::optional<std::string>& earPlugModel) {
  json body;
  addEar(body, "left", left);
  addEar(body, "right", right);
  body["base"] = base;
  body["headset"] = earPlugModel.value_or("");
  body["correctName"] = Platform::current().device->machine();
  return body;
}

URLRequest submissionRequest(const ServiceIdentity& identity) {
  // Escaped, so that an id is one segment of the path whatever it holds.
  return serviceRequest("user/sdkJonDiagnose2/" + percentEscaped(identity.userID, kUnreserved) + "/" +
                        percentEscaped(identity.appKey, kUnreserved));
}

}  // namespace

void ResultSubmission::listenTestWithLeft(const EarResult& left, const EarResult& right,
                                          const std::optional<std::string>& earPlugModel, Completion completion) {
  const json body = submissionBody(left, right, "0", earPlugModel);
  const auto identity = serviceIdentity();
  if (!identity) return;
  URLRequest request = submissionRequest(*identity);
  setHttpHeader(request);
  setJSONBody(request, body);
  // The service's own code makes no difference to the callback.
  sendRequest(std::move(request), [main = MainQueue::current(), done = std::move(completion)](const ServiceReply& reply,
                                                                                              const json&) mutable {
    main.dispatchAsync([done = std::move(done), error = reply.readingError()] {
      if (done) done(nullptr, error);
    });
  });
}

void ResultSubmission::postListenTestWithLeft(const EarResult& left, const EarResult& right, bool base,
                                              const std::optional<std::string>& earPlugModel,
                                              PostCompletion completion) {
  const auto identity = serviceIdentity();
  if (!identity) return;
  // Both losses are computed and dropped, and that is meant.
  (void)HearingScore::computeEarTestResult(left);
  (void)HearingScore::computeEarTestResult(right);
  URLRequest request = submissionRequest(*identity);
  setJSONBody(request, submissionBody(left, right, base ? "1" : "0", earPlugModel));
  sendRequest(std::move(request), [main = MainQueue::current(), done = std::move(completion)](const ServiceReply& reply,
                                                                                              const json&) mutable {
    main.dispatchAsync([done = std::move(done), error = reply.error()] {
      if (done) done(error);
    });
  });
}

}  // namespace orn
