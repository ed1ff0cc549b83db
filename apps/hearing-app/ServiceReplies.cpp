#include "hearing-app/ServiceReplies.h"

#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>
#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>

namespace orn {
namespace {

std::optional<Error> failureIn(const std::string& body) {
  const auto reply = nlohmann::json::parse(body, nullptr, false);
  if (!reply.is_object()) return Error{"json", 0, "the reply is no JSON object"};
  const auto code = reply.find("rspCode");  // one that is not there reads as 0, as everywhere
  if (code == reply.end() || code->is_null() || *code == 0 || *code == "0") return std::nullopt;
  return Error{kServiceDomain, 0, "the service does not take it"};
}

bool isCalibrationFor(const URLRequest& request, const std::string& body) {
  const bool isByAddress = ("&" + request.body).find("&mac=") != std::string::npos;
  const auto path = isByAddress ? OutputPath::Audiometer : OutputPath::Earphones;
  return isCalibration(path, body, ORNHearingTestViewController::testedHzs());
}

}  // namespace

Asked askedFor(const std::string& url) {
  const auto isTo = [&](const char* endpoint) { return url.find(endpoint) != std::string::npos; };
  if (isTo("/user/findSdkDeviceValue")) return Asked::Calibration;
  if (isTo("/user/sdkJonDiagnose2/")) return Asked::Submission;
  return Asked::Other;
}

URLReply judged(const URLRequest& request, URLReply reply) {
  const Asked asked = askedFor(request.url);
  if (!reply.body || asked == Asked::Other) return reply;
  std::optional<Error> failure;
  if (asked == Asked::Submission) {
    failure = failureIn(*reply.body);
  } else if (!isCalibrationFor(request, *reply.body)) {
    failure = Error{kNoCalibration, 0, "no calibration for this device"};
  }
  return failure ? URLReply{std::nullopt, failure} : reply;
}

}  // namespace orn
