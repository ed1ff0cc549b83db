#include <ORNHearingTestSDK/engine/ChannelCheck.h>

#include <chrono>
#include <cstdint>
#include <span>
#include <utility>

#include <ORNHearingTestSDK/audio/Player.h>
#include <ORNHearingTestSDK/engine/AudiometerPath.h>
#include <ORNHearingTestSDK/engine/EarphonePath.h>
#include <ORNHearingTestSDK/engine/HearingTestGrid.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/engine/ToneStream.h>
#include <ORNHearingTestSDK/platform/AudioOutput.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {
namespace {

constexpr auto kHz = "1000hz";
constexpr int kLevel = 60;
constexpr std::chrono::seconds kLength{2};
/// What the stream needs for its fade-out, which comes after what is queued already.
constexpr std::chrono::milliseconds kFadeOut{600};

std::unique_ptr<SoundPath> pathWith(const CalibrationRecords& records, bool isStream) {
  if (isStream) return std::make_unique<AudiometerPath>(records);
  return std::make_unique<EarphonePath>(records);
}

/// As a session's grid has it.
std::shared_ptr<ORNHearingTestItem> itemFor(bool isLeft) {
  return makeColumn({.hzValue = kHz, .pan = isLeft ? -1.0F : 1.0F}).at(static_cast<int>(kGridScale.rowOf(kLevel)));
}

}  // namespace

/// The tone that sounds, or sounded last.
class ChannelCheck::Tone final : public PlayerGetDataSouce, public std::enable_shared_from_this<Tone> {
 public:
  explicit Tone(const ORNManualHearingTest& session)
      : records_(session), isStream_(session.KV50MAC().has_value()), path_(pathWith(records_, isStream_)) {}

  bool isStream() const { return isStream_; }

  std::optional<ToneMissingReason> start(bool isLeft) {
    stop();
    wasWhole_ = false;
    auto item = itemFor(isLeft);
    const SoundPath::Preparation prepared = path_->prepare(*item, isLeft);
    if (prepared.missing) return prepared.missing;
    Platform::current().audioOutput->useCurrentDevice();
    stream_.setCurrentItem(nullptr);
    stream_.setCurrentItem(item);  // with none before it: the tone fades in
    item_ = std::move(item);
    path_->startEar(shared_from_this());
    if (const auto missing = path_->start(*item_, prepared.volume)) {
      stop();
      wasWhole_ = false;
      return missing;
    }
    after(kLength, &Tone::end);
    return std::nullopt;
  }

  /// At once.
  void stop() {
    if (!item_) return;
    judge();
    silence();
  }

  /// Whether all of the last tone was played, told once.
  bool takeWhole() { return std::exchange(wasWhole_, false); }

  std::span<const std::uint8_t> playerGetData() override { return stream_.nextBlock(); }

 private:
  void judge() {
    if (!item_->needStop()) wasWhole_ = path_->hasSoundedWhole();
  }

  void end() {
    judge();
    path_->silence(*item_);
    if (isStream_) return after(kFadeOut, &Tone::silence);
    silence();
  }

  void silence() {
    ++start_;
    std::exchange(item_, nullptr)->stop();
    if (!isStream_) return;
    const auto player = Player::shareInstance();
    // A test that has begun has the player for itself. Stopped and not paused: no tone may be left in its queue.
    if (player->dataSouce().lock().get() == this) player->stop();
  }

  void after(std::chrono::nanoseconds delay, void (Tone::*operation)()) {
    Platform::current().runLoop->performAfterDelay(delay, [self = weak_from_this(), start = start_, operation] {
      const auto tone = self.lock();
      if (tone && tone->item_ && tone->start_ == start) ((*tone).*operation)();
    });
  }

  const CalibrationRecords records_;
  const bool isStream_;
  const std::unique_ptr<SoundPath> path_;
  ToneStream stream_;
  std::shared_ptr<ORNHearingTestItem> item_;  // null while nothing sounds
  int start_ = 0;
  bool wasWhole_ = false;
};

ChannelCheck::ChannelCheck(const ORNManualHearingTest& session) : tone_(std::make_shared<Tone>(session)) {}

ChannelCheck::~ChannelCheck() {
  if (Platform::isInForce()) stop();
}

bool ChannelCheck::tellsEarsApart() const { return !tone_->isStream(); }

std::optional<ToneMissingReason> ChannelCheck::play() {
  if (finding()) return std::nullopt;
  return tone_->start(isLeftDue());
}

void ChannelCheck::stop() { tone_->stop(); }

bool ChannelCheck::answer(ChannelAnswer heard) {
  stop();
  if (finding() || !tone_->takeWhole()) return false;
  answers_.push_back(heard);
  return true;
}

std::optional<ChannelFinding> ChannelCheck::finding() const {
  if (answers_.size() < tones()) return std::nullopt;
  using enum ChannelAnswer;
  for (const ChannelAnswer one : answers_) {
    if (one == Nothing) return ChannelFinding::Silent;
  }
  if (!tellsEarsApart()) return ChannelFinding::Fine;
  const ChannelAnswer toRight = answers_[0], toLeft = answers_[1];
  if (toRight == Right && toLeft == Left) return ChannelFinding::Fine;
  if (toRight == Left && toLeft == Right) return ChannelFinding::Swapped;
  return ChannelFinding::Mixed;
}

void ChannelCheck::startAgain() {
  stop();
  tone_->takeWhole();
  answers_.clear();
}

}  // namespace orn
