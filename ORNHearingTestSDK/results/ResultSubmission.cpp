#include <ORNHearingTestSDK/results/ResultSubmission.h>

#include <utility>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/PercentEscapes.h>
#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/platform/Device.h>
#include <ORNHearingTestSDK/platform/MainQueue.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/results/HearingScore.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>

namespace orn {
namespace {

using nlohmann::json;

void addEar(json& body, const std::string& ear, const EarResult& result) {
  for (const std::string& hz : frequencyKeys(kToneFrequencies)) {
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

/// What of a reply a callback is told.
using Telling = const std::optional<Error>& (ServiceReply::*)() const;

void send(URLRequest request, Telling telling, ResultSubmission::Ended ended) {
  sendRequest(std::move(request),
              [main = MainQueue::current(), telling, ended = std::move(ended)](
                  const ServiceReply& reply, const json&) mutable { main.tell(std::move(ended), (reply.*telling)()); });
}

void sendResult(const EarResult& left, const EarResult& right, const std::optional<std::string>& earPlugModel,
                const ServiceIdentity& identity, Telling telling, ResultSubmission::Ended ended) {
  URLRequest request = submissionRequest(identity);
  setHttpHeader(request);
  setJSONBody(request, submissionBody(left, right, "0", earPlugModel));
  send(std::move(request), telling, std::move(ended));
}

}  // namespace

void ResultSubmission::listenTestWithLeft(const EarResult& left, const EarResult& right,
                                          const std::optional<std::string>& earPlugModel, Completion completion) {
  const auto identity = serviceIdentity();
  if (!identity) return;
  // The service's own code makes no difference to this callback.
  sendResult(left, right, earPlugModel, *identity, &ServiceReply::readingError,
             [done = std::move(completion)](const std::optional<Error>& error) {
               if (done) done(nullptr, error);
             });
}

void ResultSubmission::submit(const EarResult& left, const EarResult& right,
                              const std::optional<std::string>& earPlugModel, Ended ended) {
  if (const auto identity = serviceIdentity()) {
    return sendResult(left, right, earPlugModel, *identity, &ServiceReply::failure, std::move(ended));
  }
  const Error error{kNotRegistered, 0, "nothing was sent: no application key or no user id is stored"};
  MainQueue::current().tell(std::move(ended), error);
}

void ResultSubmission::postListenTestWithLeft(const EarResult& left, const EarResult& right, bool base,
                                              const std::optional<std::string>& earPlugModel,
                                              PostCompletion completion) {
  const auto identity = serviceIdentity();
  if (!identity) return;
  // Both losses are computed and dropped, and that is meant, see docs/BEHAVIOURS.md.
  (void)HearingScore::computeEarTestResult(left);
  (void)HearingScore::computeEarTestResult(right);
  URLRequest request = submissionRequest(*identity);
  setJSONBody(request, submissionBody(left, right, base ? "1" : "0", earPlugModel));
  send(std::move(request), &ServiceReply::error, std::move(completion));
}

}  // namespace orn
