#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/common/EarResult.h>
#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

/// What one finished test hands over for storing.
struct TestSubmission {
  EarResult left;
  EarResult right;
  std::optional<std::string> earPlugModel;  ///< The earphones' model, or the audiometer's address in its place.
};

/// Takes finished tests. Nothing is sent anywhere yet: they wait here in memory, in the order of their coming, and no
/// completion is called. Main thread.
class ORN_EXPORT ResultSubmission {
 public:
  using Completion = std::function<void(std::optional<Error>)>;

  ResultSubmission() = delete;

  static void listenTestWithLeft(EarResult left, EarResult right, std::optional<std::string> earPlugModel,
                                 Completion completion);

  /// The tests that wait, on the platform in force.
  static const std::vector<TestSubmission>& waiting();
};

}  // namespace orn
