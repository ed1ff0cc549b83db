#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// What went wrong with a request, or with reading its reply.
struct Error {
  std::string domain;   ///< Who speaks, such as "transport" or "json".
  int code = 0;         ///< That domain's own number.
  std::string message;  ///< One line for a person.
};

/// What is asked.
struct URLRequest {
  std::string url;                                           ///< The address, http or https.
  std::string method;                                        ///< Sent to the letter, whatever its case.
  std::vector<std::pair<std::string, std::string>> headers;  ///< Names and values, in order.
  std::string body;                                          ///< The bytes to send.
  std::chrono::milliseconds timeout{10'000};                 ///< From start to end.
};

/// What came back: body bytes, or an error. The status code is not part of it, since the library never reads it.
struct URLReply {
  std::optional<std::string> body;  ///< The bytes that came.
  std::optional<Error> error;       ///< Present if and only if there is no body.
};

/// HTTP requests to the cloud service.
class ORN_EXPORT URLSession {
 public:
  using CompletionHandler = std::function<void(URLReply)>;  ///< Told the reply.

  virtual ~URLSession() = default;

  /// Starts a request and returns at once. The handler is called exactly once, on a thread of the session's own and
  /// never from within this call (a simulated session, used on the main thread, calls it from the loop). It may ask
  /// again. Several requests may be under way. Any thread.
  virtual void dataTask(URLRequest request, CompletionHandler completionHandler) = 0;
};

}  // namespace orn
