#include "hearing-service/HearingService.h"

#include <utility>
#include <nlohmann/json.hpp>

#include "hearing-service/Endpoints.h"

namespace orn::service {
namespace {

using Kind = Misbehaviour::Kind;

constexpr std::size_t kHugeBody = std::size_t{20} << 20;
constexpr auto kGarbage = "<html>\xff\xfe{\"rspCode\":";

HttpReply bent(HttpReply reply, Kind kind) {
  if (kind == Kind::Status500) reply.status = 500;
  if (kind == Kind::NoBody) reply.body.clear();
  if (kind == Kind::Garbage) reply.body = kGarbage;
  if (kind == Kind::Half) reply.breaksAfter = reply.body.size() / 2;
  if (kind == Kind::Huge && reply.body.size() < kHugeBody) reply.padding = kHugeBody - reply.body.size();
  return reply;
}

}  // namespace

HearingService::HearingService(ServiceOptions options)
    : store_(options.database, [this, isEnding = std::move(options.isEnding)] { return isStopping_ || isEnding(); }),
      now_(std::move(options.now)),
      log_(options.log),
      detail_(options.detail),
      misbehaviour_(options.misbehaviour),
      server_(
          options.listening, [this](const Request& request) { return answer(request); }, options.log) {}

HearingService::~HearingService() {
  const std::lock_guard lock(mutex_);
  isStopping_ = true;
  stopping_.notify_all();
}

void HearingService::misbehave(Misbehaviour how) {
  const std::lock_guard lock(mutex_);
  misbehaviour_ = how;
}

Misbehaviour HearingService::misbehaviour() {
  const std::lock_guard lock(mutex_);
  return misbehaviour_;
}

void HearingService::wait(std::chrono::milliseconds time) {
  std::unique_lock lock(mutex_);
  stopping_.wait_for(lock, time, [this] { return isStopping_.load(); });
}

HttpReply HearingService::answer(const Request& request) {
  const auto begun = std::chrono::steady_clock::now();
  const Misbehaviour how = misbehaviour();
  const auto reply = how.kind == Kind::Refuse ? refusal(Outcome::BadRequest, "refused as it was told to")
                                              : replyTo(request, store_, now_());
  if (how.kind == Kind::Delay) wait(how.delay);
  HttpReply sent = bent({.status = 200, .body = reply.dump(), .padding = 0, .breaksAfter = {}}, how.kind);
  if (log_) log_(logLine(request, sent.status, reply, std::chrono::steady_clock::now() - begun, detail_));
  return sent;
}

}  // namespace orn::service
