#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include <ORNHearingTestSDK/common/EarResult.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>

namespace orn {

/// Sends finished tests to the service. A submission is not kept and not tried again; without a stored application key
/// and user id nothing is sent and no callback comes. Callbacks come once, on the main thread. Main thread.
class ORN_EXPORT ResultSubmission {
 public:
  /// The first argument is always nothing. Success and a refusal by the service look alike.
  using Completion = std::function<void(std::nullptr_t, std::optional<Error>)>;
  /// Told an error, or nothing if the service has the result.
  using Ended = std::function<void(const std::optional<Error>&)>;
  using PostCompletion = std::function<void(std::optional<Error>)>;  ///< Told an error or nothing; a refusal is none.

  ResultSubmission() = delete;

  /// A finished test to the service. `earPlugModel` is the earphones' model, or the audiometer's address in its place;
  /// the empty text if there is neither.
  static void listenTestWithLeft(const EarResult& left, const EarResult& right,
                                 const std::optional<std::string>& earPlugModel, Completion completion);

  /// The same, told in full: no error if the service has taken the result, else the transport's or the parser's error,
  /// a refusal as an error of the domain kServiceDomain, or one of kNotRegistered if there was nobody to send it for.
  static void submit(const EarResult& left, const EarResult& right, const std::optional<std::string>& earPlugModel,
                     Ended ended);
  static constexpr auto kNotRegistered = kNotRegisteredDomain;  ///< The same as kNotRegisteredDomain.

  /// A second entry for the host: `base` goes with the result, no common headers are sent and the timeout is 10 s.
  static void postListenTestWithLeft(const EarResult& left, const EarResult& right, bool base,
                                     const std::optional<std::string>& earPlugModel, PostCompletion completion);
};

}  // namespace orn
