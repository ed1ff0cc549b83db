#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QtCore/QString>

#include <ORNHearingTestSDK/platform/URLSession.h>
#include <ORNHearingTestSDK/results/FinishedTest.h>

#include "hearing-app/UnsentResults.h"

namespace orn {

/// Sees to it that no finished test is lost: a result stays on the disk from the start of its submission until the
/// service has taken it, even if this program ends in between. What is left over can be submitted later, once: a result
/// that the service already holds, because only its answer was lost, is not sent again. Main thread.
class ResultKeeper : public std::enable_shared_from_this<ResultKeeper> {
 public:
  /// `say` tells the user what became of a result.
  explicit ResultKeeper(std::function<void(const QString&)> say) : say_(std::move(say)) {}

  using Ended = std::function<void(const std::optional<Error>&)>;

  /// Call it when a test is finished and its submission begins; returns what to call when the submission has ended.
  Ended keep(const FinishedTest& test);

  bool isSubmitting() const { return underWay_ > 0; }
  /// Called when the last submission that was under way has ended.
  std::function<void()> onIdle;

  /// How many results of the user of the settings are left over, including those under way.
  std::size_t unsent() const;
  /// Submits them one after the other, until one fails.
  void submitUnsent();

 private:
  Ended submissionBegins(const UnsentResult& result, bool isKept);
  void submissionEnded(const UnsentResult& result, bool isKept, const std::optional<Error>& error);
  void submitNext(std::vector<UnsentResult> results);

  std::function<void(const QString&)> say_;
  int underWay_ = 0;
};

}  // namespace orn
