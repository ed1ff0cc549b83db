#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include <ORNHearingTestSDK/platform/URLSession.h>
#include <ORNHearingTestSDK/results/ServiceHost.h>

namespace orn {

// The conventions that every request to the cloud service keeps to. Main thread, unless said otherwise. One request is
// sent for each operation; none is queued, retried or cancelled.

using FormFields = std::vector<std::pair<std::string, std::string>>;

/// User defaults that requests read, beside the service's host.
inline constexpr auto kAppKeyDefault = "APPKEY";
inline constexpr auto kUserIDDefault = "USERID";

/// The application key and the user's id, where both are stored.
struct ServiceIdentity {
  std::string appKey;  ///< The application's.
  std::string userID;  ///< The user's.
};
ORN_EXPORT std::optional<ServiceIdentity> serviceIdentity();

/// Whether a service host is stored that a request can be sent to.
ORN_EXPORT bool isServiceHostSet();

/// The stored application key, or the empty text.
std::string appKeyOrEmpty();

/// A request to a path below the service's first segment, with the method "Post" and a timeout of 10 s. Its address is
/// empty if no usable service host is set; sendRequest() then answers with a transport error.
URLRequest serviceRequest(const std::string& path);

/// Adds the common headers and raises the timeout to 180 s.
ORN_EXPORT void setHttpHeader(URLRequest& request);

/// Fields as key, "=", value, "&" each, the last "&" kept, escaped as a whole: a value's own "&", "=", ":" and "+"
/// stand.
void setFormBody(URLRequest& request, const FormFields& fields);

/// A pretty-printed JSON object; an empty body if it has no form as JSON.
void setJSONBody(URLRequest& request, const nlohmann::json& fields);

/// What came of a request.
struct ServiceReply {
  std::optional<std::string> body;     ///< The bytes as received.
  std::optional<Error> sessionError;   ///< Present without a body, absent with one.
  std::optional<Error> parseError;     ///< Present if there is a body that is neither a JSON object nor a JSON list.
  std::optional<Error> envelopeError;  ///< Present if there is a body that is not a JSON object.
  std::optional<Error> refusal;        ///< Present if its "rspCode" is not 0: the service's own number and words.

  /// What the callback is told of an operation that reads nothing in the reply.
  const std::optional<Error>& error() const { return body ? parseError : sessionError; }
  /// What the callback is told of an operation that reads the reply.
  const std::optional<Error>& readingError() const { return body ? envelopeError : sessionError; }

  /// What a callback that is told in full is told: the same, or the refusal.
  const std::optional<Error>& failure() const { return readingError() ? readingError() : refusal; }
};

/// The domain of a refusal's error.
inline constexpr auto kServiceDomain = "service";

/// The domain of the error where nothing was sent, since it is not known for whom.
inline constexpr auto kNotRegisteredDomain = "registration";

/// Whether an operation tells a refusal by the service as an error, or like a success.
enum class Refusals { LookLikeSuccess, AreErrors };

/// Sends a request. The handler is called once, on a thread of the URL session, with the reply and its JSON object,
/// which is empty unless there is one.
void sendRequest(URLRequest request, std::function<void(const ServiceReply&, nlohmann::json)> handler);

/// The text's JSON object; an empty one, and an error, if the text is anything else. Any thread.
nlohmann::json parseObject(const std::string& text, std::optional<Error>& error);

}  // namespace orn
