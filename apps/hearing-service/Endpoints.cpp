#include "hearing-service/Endpoints.h"

#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/Version.h>

#include "hearing-service/BadRequest.h"
#include "hearing-service/FieldRules.h"
#include "hearing-service/HistoryRecord.h"
#include "hearing-service/PercentDecoding.h"
#include "hearing-service/RequestBody.h"
#include "hearing-service/SampleReplies.h"

namespace orn::service {
namespace {

using nlohmann::json;
using std::chrono::system_clock;

constexpr std::string_view kMethod = "Post";  // not "POST": clients send it in just this spelling
constexpr std::string_view kCalibrationPath = "/vrdnx/user/findSdkDeviceValue";
constexpr std::string_view kHistoryPath = "/vrdnx/user/acquireListenTest";
constexpr std::string_view kRegistrationPath = "/vrdnx/user/sdkRegister";
constexpr std::string_view kSubmissionPath = "/vrdnx/user/sdkJonDiagnose2/";
constexpr std::string_view kHealthPath = "/health";

json success() { return {{"rspCode", Outcome::Success}, {"rspDesc", "ok"}}; }

json findSdkDeviceValue(const Request& request) {
  static constexpr std::array<std::string_view, 3> byAddress = {"correct_name", "mac", "appkey"};
  static constexpr std::array<std::string_view, 3> byModel = {"correct_name", "earplug_model", "appkey"};
  const Fields fields = formFields(request.body);
  const std::string_view asked = fields.contains("mac") ? "mac" : "earplug_model";
  requireExactly(fields, asked == "mac" ? byAddress : byModel);
  // An empty application key is fine here: clients send it before they have one.
  const std::string& machine = fields.at("correct_name");
  const std::string& hardware = requiredText(fields, asked);
  return asked == "mac" ? audiometerReply(machine, hardware) : earphonesReply(machine, hardware);
}

json acquireListenTest(const Request& request, TestStore& store) {
  static constexpr std::array<std::string_view, 2> names = {"sdkKey", "sdkUseId"};
  const Fields fields = formFields(request.body);
  requireExactly(fields, names);
  json list = json::array();
  for (const StoredTest& test : store.tests({requiredText(fields, "sdkKey"), requiredText(fields, "sdkUseId")})) {
    list.push_back(historyRecord(test));
  }
  json reply = success();
  reply["listenTests"] = std::move(list);
  return reply;
}

json sdkRegister(const Request& request, TestStore& store) {
  static constexpr std::array<std::string_view, 7> names = {"sdkUseId", "sdkCode",  "sdkKey",  "gender",
                                                            "phone",    "birthday", "username"};
  const Fields fields = jsonFields(request.body);
  requireExactly(fields, names);
  requireGender(fields.at("gender"));
  requireBirthday(fields.at("birthday"));
  store.putProfile({requiredText(fields, "sdkKey"), requiredText(fields, "sdkUseId")}, fields);
  return success();
}

/// From "<user id>/<app key>", both percent-escaped. An escaped slash is part of the text.
Account accountOfPath(std::string_view path) {
  const auto slash = path.find('/');
  if (slash == std::string_view::npos) throw BadRequest("the path lacks the application key");
  if (path.find_first_of("?#") != std::string_view::npos || path.find('/', slash + 1) != std::string_view::npos) {
    throw BadRequest("the path has more than user id and application key");
  }
  Account account{.appKey = checkedText(percentDecoded(path.substr(slash + 1))),
                  .userId = checkedText(percentDecoded(path.substr(0, slash)))};
  if (account.appKey.empty() || account.userId.empty()) throw BadRequest("user id or application key is empty");
  return account;
}

/// A user needs no profile to submit tests.
json sdkJonDiagnose2(const Request& request, TestStore& store, system_clock::time_point now) {
  const Account account = accountOfPath(std::string_view(request.target).substr(kSubmissionPath.size()));
  const Fields fields = jsonFields(request.body);
  requireExactly(fields, kTestFields);
  for (const std::string_view name : FieldNames(kTestFields).first(kThresholdCount))
    requireThreshold(fields.find(name)->second);
  requireBase(fields.at("base"));
  store.addTest(account, fields, now);
  return success();
}

json health() {
  json reply = success();
  reply["version"] = reinterpret_cast<const char*>(ORNHearingTestSDKVersionString);
  return reply;
}

json carriedOut(const Request& request, TestStore& store, system_clock::time_point now) {
  if (request.target == kHealthPath && request.method == "GET") return health();
  if (request.method != kMethod) throw BadRequest("the method is not Post");
  if (request.body.size() > kLargestBody) throw BadRequest("the body is larger than 1 MiB");
  if (request.target == kCalibrationPath) return findSdkDeviceValue(request);
  if (request.target == kHistoryPath) return acquireListenTest(request, store);
  if (request.target == kRegistrationPath) return sdkRegister(request, store);
  if (request.target.starts_with(kSubmissionPath)) return sdkJonDiagnose2(request, store, now);
  throw BadRequest("unknown path");
}

}  // namespace

std::string pathOfNobody(std::string_view target) {
  for (const std::string_view path : {kCalibrationPath, kHistoryPath, kRegistrationPath, kHealthPath}) {
    if (target == path) return std::string(path);
  }
  return target.starts_with(kSubmissionPath) ? std::string(kSubmissionPath) + "*" : "(unknown path)";
}

json refusal(Outcome outcome, std::string_view why) { return {{"rspCode", outcome}, {"rspDesc", why}}; }

json replyTo(const Request& request, TestStore& store, system_clock::time_point now) {
  try {
    return carriedOut(request, store, now);
  } catch (const BadRequest& error) {
    return refusal(Outcome::BadRequest, error.what());
  } catch (const DatabaseError& error) {
    return refusal(Outcome::StoreFailure, error.what());
  }
}

}  // namespace orn::service
