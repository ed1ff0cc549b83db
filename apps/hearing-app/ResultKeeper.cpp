#include "hearing-app/ResultKeeper.h"

#include <chrono>
#include <utility>

#include <ORNHearingTestSDK/results/ResultSubmission.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>
#include <ORNHearingTestSDK/results/TestHistory.h>
#include <ORNHearingTestSDK/screens/ServiceNotices.h>

namespace orn {
namespace {

std::vector<UnsentResult> leftOver() {
  const auto identity = serviceIdentity();
  return identity ? UnsentResults::ofUser(identity->userID) : std::vector<UnsentResult>();
}

}  // namespace

ResultKeeper::Ended ResultKeeper::keep(const FinishedTest& test) {
  // The result belongs to the user of the settings from here on: it is submitted for them.
  const auto identity = serviceIdentity();
  const UnsentResult result{identity ? identity->userID : "", std::chrono::floor<std::chrono::seconds>(test.ended),
                            test.left, test.right, test.device};
  return submissionBegins(result, identity && UnsentResults::add(result));
}

ResultKeeper::Ended ResultKeeper::submissionBegins(const UnsentResult& result, bool isKept) {
  ++underWay_;
  return [weak = weak_from_this(), result, isKept](const std::optional<Error>& error) {
    if (const auto self = weak.lock()) self->submissionEnded(result, isKept, error);
  };
}

void ResultKeeper::submissionEnded(const UnsentResult& result, bool isKept, const std::optional<Error>& error) {
  --underWay_;
  if (!error) {
    UnsentResults::remove(result);
  } else {
    say_(noticeOfSubmission(*error, isKept || (!result.user.empty() && UnsentResults::add(result))));
  }
  if (!isSubmitting() && onIdle) onIdle();
}

std::size_t ResultKeeper::unsent() const { return leftOver().size(); }

void ResultKeeper::submitUnsent() {
  TestHistory::fetch(
      [weak = weak_from_this(), results = leftOver()](const std::optional<Error>& error, const nlohmann::json& stored) {
        const auto self = weak.lock();
        if (!self) return;
        if (error) return self->say_(noticeOfSubmission(*error, true));
        std::vector<UnsentResult> missing;
        for (const UnsentResult& one : results) {
          if (one.isAmong(stored)) {
            UnsentResults::remove(one);
          } else {
            missing.push_back(one);
          }
        }
        self->submitNext(std::move(missing));
      });
}

void ResultKeeper::submitNext(std::vector<UnsentResult> results) {
  if (results.empty()) return say_(QStringLiteral("测试结果已经提交到测试记录。"));
  const UnsentResult next = results.front();
  results.erase(results.begin());
  ResultSubmission::submit(
      next.left, next.right, next.headset,
      [weak = weak_from_this(), ended = submissionBegins(next, true), rest = std::move(results)](const auto& error) {
        ended(error);
        const auto self = weak.lock();
        if (self && !error) self->submitNext(rest);
      });
}

}  // namespace orn
