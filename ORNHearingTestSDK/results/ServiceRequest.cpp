#include <ORNHearingTestSDK/results/ServiceRequest.h>

#include <strings.h>

#include <algorithm>
#include <exception>
#include <limits>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/DefaultsReading.h>
#include <ORNHearingTestSDK/common/JsonReading.h>
#include <ORNHearingTestSDK/common/OneLine.h>
#include <ORNHearingTestSDK/common/PercentEscapes.h>
#include <ORNHearingTestSDK/platform/Device.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {
namespace {

using nlohmann::json;

std::optional<std::string> storedText(const char* key) {
  return textValue(Platform::current().userDefaults->value(key));
}

/// Why no request can go to the host that is stored; nothing if one can.
std::optional<std::string> complaintAboutStoredHost() {
  constexpr auto kWants = "the user default SERVICEHOST wants host or host:port, with https:// in front for TLS";
  const auto value = Platform::current().userDefaults->value(kServiceHostDefault);
  const auto host = textValue(value);
  if (!value || host == "") return std::string("no service host is set: ") + kWants;
  const auto complaint = host ? complaintAboutServiceHost(*host) : std::optional<std::string>("it is no text");
  if (!complaint) return std::nullopt;
  return "the service host that is set can't be used, " + *complaint + ": " + kWants;
}

/// In place of an earlier value.
void setHeader(URLRequest& request, const char* name, std::string value) {
  std::erase_if(request.headers, [&](const auto& header) { return strcasecmp(header.first.c_str(), name) == 0; });
  request.headers.emplace_back(name, std::move(value));
}

void setBody(URLRequest& request, std::string body, const char* contentType) {
  request.body = std::move(body);
  setHeader(request, "Accept", "application/json");
  setHeader(request, "Content-Type", contentType);
}

/// A JSON object or list; null, and an error, if the text is neither.
json parseJSON(const std::string& text, std::optional<Error>& error) {
  if (isNestedTooDeep(text)) {
    error = Error{"json", 2, "the reply is nested too deep"};
    return {};
  }
  try {
    json value = json::parse(text);
    if (value.is_structured()) return value;
    error = Error{"json", 1, "the reply is neither a JSON object nor a list"};
  } catch (const json::exception& failure) {
    error = Error{"json", failure.id, oneLine(failure.what())};
  }
  return {};
}

json asObject(json value, std::optional<Error>& error) {
  if (value.is_object()) return value;
  if (!error) error = Error{"json", 3, "the reply is no JSON object"};
  return json::object();
}

std::optional<Error> refusalIn(const json& reply) {
  using Codes = std::numeric_limits<int>;
  const std::int64_t code = jsonInteger(jsonMember(reply, "rspCode"));
  if (code == 0) return std::nullopt;
  const std::string words = oneLine(jsonText(jsonMember(reply, "rspDesc")).value_or(""));
  const auto number = std::clamp<std::int64_t>(code, Codes::min(), Codes::max());
  return Error{kServiceDomain, static_cast<int>(number), words.empty() ? "refused without a word" : words};
}

}  // namespace

std::optional<ServiceIdentity> serviceIdentity() {
  auto appKey = storedText(kAppKeyDefault);
  auto userID = storedText(kUserIDDefault);
  if (!appKey || !userID) return std::nullopt;
  return ServiceIdentity{std::move(*appKey), std::move(*userID)};
}

bool isServiceHostSet() { return !complaintAboutStoredHost(); }

std::string appKeyOrEmpty() { return storedText(kAppKeyDefault).value_or(""); }

URLRequest serviceRequest(const std::string& path) {
  URLRequest request;
  if (isServiceHostSet()) request.url = serviceOrigin(*storedText(kServiceHostDefault)) + "/vrdnx/" + path;
  request.method = "Post";  // to the letter, as the service wants it
  request.timeout = std::chrono::seconds(10);
  return request;
}

void setHttpHeader(URLRequest& request) {
  const Device& device = *Platform::current().device;
  setHeader(request, "app-version", device.applicationVersion());
  request.timeout = std::chrono::seconds(180);
  setHeader(request, "app-product", "SDK");
  setHeader(request, "app-channel", device.applicationIdentifier());
  setHeader(request, "system-version", device.systemVersion());
  setHeader(request, "device-model", device.machine());
  setHeader(request, "system-product", "iOS");
}

void setFormBody(URLRequest& request, const FormFields& fields) {
  std::string text;
  for (const auto& [key, value] : fields) text += key + "=" + value + "&";
  setBody(request, percentEscaped(text, kLegalInURL), "application/x-www-form-urlencoded");
}

void setJSONBody(URLRequest& request, const json& fields) {
  std::string body;
  try {
    body = fields.dump(2);
  } catch (const json::exception&) {
    body.clear();
  }
  setBody(request, std::move(body), "application/json");
}

json parseObject(const std::string& text, std::optional<Error>& error) {
  json value = parseJSON(text, error);
  return asObject(std::move(value), error);
}

void sendRequest(URLRequest request, std::function<void(const ServiceReply&, json)> handler) {
  auto received = [handler = std::move(handler)](URLReply reply) {
    ServiceReply result{std::move(reply.body), std::move(reply.error), {}, {}, {}};
    json object = json::object();
    if (result.sessionError) result.sessionError->message = oneLine(result.sessionError->message);
    if (result.body) {
      result.sessionError.reset();
      json value = parseJSON(*result.body, result.parseError);
      result.envelopeError = result.parseError;
      object = asObject(std::move(value), result.envelopeError);
      result.refusal = refusalIn(object);
    }
    handler(result, std::move(object));
  };
  const Platform& platform = Platform::current();
  const auto fail = [&](const std::string& message) {
    platform.runLoop->dispatchAsync([received, message] { received({{}, Error{"transport", 0, message}}); });
  };
  if (request.url.empty()) {
    return fail(complaintAboutStoredHost().value_or("the request has no address"));
  }
  try {
    platform.urlSession->dataTask(std::move(request), received);
  } catch (const std::exception& error) {  // the machine lacks what a request needs
    fail(error.what());
  }
}

}  // namespace orn
