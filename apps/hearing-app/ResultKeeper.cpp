#include "hearing-app/ResultKeeper.h"

#include <chrono>
#include <utility>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/results/ResultSubmission.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>
#include <ORNHearingTestSDK/results/TestHistory.h>

#include "hearing-app/ServiceNotices.h"

namespace orn {
namespace {

std::vector<UnsentResult> leftOver() {
  const auto identity = serviceIdentity();
  return identity ? UnsentResults::ofUser(identity->userID) : std::vector<UnsentResult>();
}

/// Begins to be somebody's at its submission, which goes out for the user of the settings.
std::optional<UnsentResult> newResult(const std::string& body) {
  auto result = UnsentResult::ofSubmission(body);
  const auto identity = serviceIdentity();
  if (!result || !identity) return std::nullopt;
  result->user = identity->userID;
  result->ended = std::chrono::floor<std::chrono::seconds>(Platform::current().runLoop->date());
  return result;
}

}  // namespace

std::function<void(const URLReply&)> ResultKeeper::submissionBegins(const URLRequest& request) {
  bool isKept = resubmitted_.has_value();
  auto result = isKept ? std::exchange(resubmitted_, std::nullopt) : newResult(request.body);
  if (!result) return {};
  if (!isKept) isKept = UnsentResults::add(*result);
  ++underWay_;
  return [weak = weak_from_this(), result = std::move(*result), isKept](const URLReply& reply) {
    if (const auto self = weak.lock()) self->submissionEnded(result, isKept, reply);
  };
}

void ResultKeeper::submissionEnded(const UnsentResult& result, bool isKept, const URLReply& reply) {
  --underWay_;
  if (!reply.error) {
    UnsentResults::remove(result);
  } else {
    say_(noticeOfSubmission(*reply.error, isKept || UnsentResults::add(result)));
  }
  if (!isSubmitting() && onIdle) onIdle();
}

std::size_t ResultKeeper::unsent() const { return leftOver().size(); }

void ResultKeeper::submitUnsent() {
  TestHistory::getListenTestWithCompletion(
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
      },
      Refusals::AreErrors);
}

void ResultKeeper::submitNext(std::vector<UnsentResult> results) {
  if (results.empty()) return say_(QStringLiteral("测试结果已经提交到测试记录。"));
  const UnsentResult next = results.front();
  results.erase(results.begin());
  resubmitted_ = next;
  ResultSubmission::submit(next.left, next.right, next.headset,
                           [weak = weak_from_this(), rest = std::move(results)](const std::optional<Error>& error) {
                             const auto self = weak.lock();
                             if (self && !error) self->submitNext(rest);  // of an error the end of the submission tells
                           });
  resubmitted_.reset();
}

}  // namespace orn
