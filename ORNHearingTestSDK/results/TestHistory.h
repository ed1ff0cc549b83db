#pragma once

#include <functional>
#include <optional>

#include <nlohmann/json_fwd.hpp>

#include <ORNHearingTestSDK/results/ServiceRequest.h>

namespace orn {

/// The tests that the service has stored for the user.
class ORN_EXPORT TestHistory {
 public:
  /// An error or nothing, then the list or null: dictionaries as the service sent them, in its order. A refusal by the
  /// service gives neither, or is the error where refusals are errors.
  using Completion = std::function<void(std::optional<Error>, const nlohmann::json& listenTests)>;

  TestHistory() = delete;

  /// Without a stored application key and user id nothing is sent and no callback comes; else it comes once, on the
  /// main thread. Main thread.
  static void getListenTestWithCompletion(Completion completion, Refusals refusals = Refusals::LookLikeSuccess);

  /// The same, told in full: the completion is called once in every case, later and on the main thread. A refusal is an
  /// error of the domain kServiceDomain, and one of kNotRegisteredDomain says that there was nobody to ask for. Main
  /// thread.
  static void fetch(Completion completion);
};

}  // namespace orn
