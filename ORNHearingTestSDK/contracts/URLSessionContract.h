#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/contracts/Contract.h>
#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn::contract {

/// A new session, and addresses to ask. The suite lets go of the session first; the hooks must not hold it. An address
/// or a hook may be empty, and the contracts that need it are not checked then.
struct URLSessionUnderTest {
  std::shared_ptr<URLSession> session;  ///< A new session.

  /// Lets a span of the machine's time pass, in which its loop makes the calls that are due.
  std::function<void(std::chrono::nanoseconds span)> runFor;

  /// For a simulated session, which is used on the main thread and calls its handlers from the loop.
  bool callsFromLoop = false;

  std::string answeringUrl;     ///< Answers every request with `answer`, as the body of a status 200.
  std::string answer;           ///< The body that comes from answeringUrl.
  std::string brokenStatusUrl;  ///< The same with a status 500.
  std::string refusingUrl;      ///< Takes no connection.
  std::string silentUrl;        ///< Takes requests and never answers.

  /// Every request that has arrived so far, in order; the timeout is not looked at.
  std::function<std::vector<URLRequest>()> arrived;
};

Report checkURLSession(const std::function<URLSessionUnderTest()>& make);

}  // namespace orn::contract
