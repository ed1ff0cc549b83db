#include <ORNHearingTestSDK/platform/web/WebStream.h>

#include <algorithm>
#include <map>
#include <utility>

#include <ORNHearingTestSDK/platform/web/WebSound.h>

extern "C" {
void orn_web_make(int id);
void orn_web_drop(int id);
void orn_web_play(int id);
void orn_web_pause(int id);
void orn_web_clear(int id, int turn);
void orn_web_gain(int id, float left, float right);
void orn_web_feed(int id, const std::int16_t* samples, int count, int isLast);
}

namespace orn {
namespace {

std::map<int, WebStream*>& streams() {
  static std::map<int, WebStream*> all;
  return all;
}

}  // namespace

WebStream::WebStream(std::shared_ptr<WebOutputState> output, std::size_t ahead, Source source)
    : output_(std::move(output)), ahead_(ahead), source_(std::move(source)) {
  static int lastId = 0;
  id_ = ++lastId;
  streams().emplace(id_, this);
  orn_web_make(id_);
}

WebStream::~WebStream() {
  streams().erase(id_);
  orn_web_drop(id_);
}

std::error_code WebStream::device() const {
  if (!output_->isOpen) return std::make_error_code(std::errc::no_such_device);
  return webSoundStatus();
}

std::error_code WebStream::play() {
  if (const auto missing = device()) return missing;
  if (isPlaying_) return {};
  isPlaying_ = true;
  feed();
  orn_web_play(id_);
  return {};
}

void WebStream::pause() {
  if (std::exchange(isPlaying_, false)) orn_web_pause(id_);
}

void WebStream::clear() {
  fed_ = played_ = 0;
  orn_web_clear(id_, ++turn_);
}

void WebStream::setGain(StereoGain gain) { orn_web_gain(id_, gain.left, gain.right); }

void WebStream::feed() {
  while (isPlaying_ && fed_ - played_ < static_cast<double>(ahead_)) {
    const auto [samples, isLast] = source_(ahead_ - static_cast<std::size_t>(fed_ - played_));
    if (samples.empty()) return;
    fed_ += static_cast<double>(samples.size());
    orn_web_feed(id_, samples.data(), static_cast<int>(samples.size()), isLast ? 1 : 0);
    if (isLast) return;
  }
}

void WebStream::reported(int id, int turn, double played, int timesDry, bool hasEnded) {
  const auto found = streams().find(id);
  if (found == streams().end() || found->second->turn_ != turn) return;
  WebStream& stream = *found->second;
  stream.played_ = std::max(stream.played_, played);
  stream.output_->lapses += static_cast<std::uint64_t>(timesDry);
  if (hasEnded) {
    stream.isPlaying_ = false;
    stream.clear();
    if (stream.onEnd) stream.onEnd();
    return;
  }
  if (!stream.isPlaying_) return;
  if (timesDry > 0) stream.output_->runLoop->performAfterDelay({}, [id] { goOnAfterDryness(id); });
  stream.feed();
  if (stream.onProgress) stream.onProgress();  // last: it may destroy the stream
}

void WebStream::goOnAfterDryness(int id) {
  const auto found = streams().find(id);
  if (found != streams().end() && found->second->isPlaying_) orn_web_play(id);
}

void WebStream::silence(const WebOutputState& output) {
  for (const auto& [id, stream] : streams()) {
    if (stream->output_.get() == &output) stream->pause();
  }
}

/// Counts one lapse for each output whose sound is cut off, none for one that had nothing to play.
void WebStream::deviceHasGone() {
  std::map<WebOutputState*, bool> silenced;
  for (const auto& [id, stream] : streams()) {
    if (stream->isPlaying_ && stream->fed_ > stream->played_) silenced[stream->output_.get()] = true;
    stream->pause();
  }
  for (const auto& [output, hadSound] : silenced) ++output->lapses;
}

}  // namespace orn
