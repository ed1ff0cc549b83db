#include <ORNHearingTestSDK/platform/linux/PulseStream.h>

#include <memory>
#include <string_view>
#include <utility>

#include <ORNHearingTestSDK/platform/SampleFormat.h>
#include <ORNHearingTestSDK/platform/linux/LibPulse.h>
#include <ORNHearingTestSDK/platform/linux/PulseError.h>

namespace orn {
namespace {

constexpr auto kStreamName = "Hearing test";

/// The role makes the server ask the stream to make way for a call; and the server is to restore nothing of an earlier
/// session on it, least of all a volume.
pa_proplist* properties() {
  pa_proplist* list = libpulse().pa_proplist_new();
  libpulse().pa_proplist_sets(list, PA_PROP_MEDIA_ROLE, "music");
  libpulse().pa_proplist_sets(list, "state.restore-props", "false");
  libpulse().pa_proplist_sets(list, "state.restore-target", "false");
  return list;
}

SoundWatch::Time now() { return SoundWatch::Time(libpulse().pa_rtclock_now()); }

}  // namespace

PulseStream::PulseStream(std::shared_ptr<SoundDevice> device, PulseStreamFormat format, Writer& writer)
    : device_(std::move(device)), format_(format), writer_(writer), watch_(device_->lapseCounter()) {}

PulseStream::~PulseStream() { close(); }

std::error_code PulseStream::open() {
  const SoundOutput* output = device_->present();
  if (isReady_ && output && output->key == deviceKey_) return {};
  close();
  if (!output) return device_->connection().absence();
  if (const std::error_code error = connect(*output)) {
    close();
    return error;
  }
  return {};
}

std::error_code PulseStream::connect(const SoundOutput& output) {
  PulseConnection& connection = device_->connection();
  pa_context* context = connection.context();
  if (!context) return std::make_error_code(std::errc::not_connected);
  const pa_sample_spec samples{PA_SAMPLE_S16LE, kSampleRate, format_.channels};
  const std::unique_ptr<pa_proplist, decltype(LibPulse::pa_proplist_free)> list(properties(),
                                                                                libpulse().pa_proplist_free);
  stream_ = libpulse().pa_stream_new_with_proplist(context, kStreamName, &samples, nullptr, list.get());
  if (!stream_) return pulseError(libpulse().pa_context_errno(context));
  deviceKey_ = output.key;
  device_->add(*this);

  setCallbacks();
  // A stream whose latency the server chooses would be shifted in time, and one that the server may move could end up
  // on a loudspeaker. The volume is given, so that the server puts none of its own on the stream.
  const auto flags = static_cast<pa_stream_flags_t>(PA_STREAM_START_CORKED | PA_STREAM_INTERPOLATE_TIMING |
                                                    PA_STREAM_AUTO_TIMING_UPDATE | PA_STREAM_DONT_MOVE);
  const pa_buffer_attr buffer{.maxlength = ~0U,
                              .tlength = format_.bufferBytes,
                              .prebuf = std::uint32_t{format_.channels} * 2,  // whatever comes is played
                              .minreq = format_.requestBytes,
                              .fragsize = ~0U};
  pa_cvolume full;
  libpulse().pa_cvolume_set(&full, format_.channels, PA_VOLUME_NORM);
  if (libpulse().pa_stream_connect_playback(stream_, output.key.sink.c_str(), &buffer, flags, &full, nullptr) < 0) {
    return pulseError(libpulse().pa_context_errno(context));
  }
  connection.waitUntil([this] { return !stream_ || libpulse().pa_stream_get_state(stream_) != PA_STREAM_CREATING; });
  if (isReady_) return {};
  if (stream_ && libpulse().pa_stream_get_state(stream_) == PA_STREAM_CREATING) {
    device_->server().refresh();  // tells when it answers again
    return std::make_error_code(std::errc::timed_out);
  }
  return std::make_error_code(std::errc::no_such_device);
}

void PulseStream::setCallbacks() {
  libpulse().pa_stream_set_state_callback(
      stream_, [](pa_stream*, void* self) { static_cast<PulseStream*>(self)->stateChanged(); }, this);
  libpulse().pa_stream_set_write_callback(
      stream_, [](pa_stream*, std::size_t, void* self) { static_cast<PulseStream*>(self)->ask(); }, this);
  libpulse().pa_stream_set_event_callback(
      stream_,
      [](pa_stream*, const char* name, pa_proplist*, void* self) { static_cast<PulseStream*>(self)->eventCame(name); },
      this);
  libpulse().pa_stream_set_started_callback(
      stream_, [](pa_stream*, void* self) { static_cast<PulseStream*>(self)->watch_.started(now()); }, this);
  libpulse().pa_stream_set_underflow_callback(
      stream_, [](pa_stream*, void* self) { static_cast<PulseStream*>(self)->ranDry(); }, this);
  libpulse().pa_stream_set_suspended_callback(
      stream_, [](pa_stream*, void* self) { static_cast<PulseStream*>(self)->heldBackChanged(); }, this);
}

void PulseStream::serverWasHeardOf() {
  device_->connection().heardOfServer();
  watch_.answered(now());
}

void PulseStream::ask() {
  serverWasHeardOf();
  writer_.serverWantsSamples();
}

void PulseStream::ranDry() { watch_.ranDry(now(), writer_.isAtEnd()); }

void PulseStream::heldBackChanged() {
  watch_.setHeldBack(isInterrupted_ || libpulse().pa_stream_is_suspended(stream_) == 1, now());
}

std::error_code PulseStream::status() const { return watch_.status(now()); }

void PulseStream::lookForLapse() { watch_.look(now()); }

void PulseStream::stateChanged() {
  const pa_stream_state_t state = libpulse().pa_stream_get_state(stream_);
  if (state == PA_STREAM_READY) {
    isReady_ = true;
    bufferBytes_ = libpulse().pa_stream_get_buffer_attr(stream_)->tlength;
    serverWasHeardOf();
  } else if (!PA_STREAM_IS_GOOD(state)) {
    loseDevice();
  }
  device_->connection().signal();
}

void PulseStream::eventCame(std::string_view name) {
  const bool begins = name == PA_STREAM_EVENT_REQUEST_CORK;
  if (!begins && name != PA_STREAM_EVENT_REQUEST_UNCORK) return;
  isInterrupted_ = begins;
  heldBackChanged();
  // The server has muted the stream by now; corked, it goes on later with the very next sample.
  check(libpulse().pa_stream_cork(stream_, begins || !isMeantToPlay_, nullptr, nullptr));
  if (const auto& tell = device_->server().onInterruption) tell(begins);
}

std::error_code PulseStream::check(pa_operation* operation) const {
  if (!operation) return pulseError(libpulse().pa_context_errno(libpulse().pa_stream_get_context(stream_)));
  libpulse().pa_operation_unref(operation);
  return {};
}

std::error_code PulseStream::play() {
  const std::error_code error = start();
  device_->startEnded(*this, isReady_ ? std::error_code{} : error);
  return error;
}

std::error_code PulseStream::start() {
  if (const std::error_code error = open()) return error;
  writer_.serverWantsSamples();
  isMeantToPlay_ = true;
  watch_.setToPlay(true, now());
  if (isInterrupted_) return std::make_error_code(std::errc::device_or_resource_busy);
  if (libpulse().pa_stream_is_corked(stream_) == 0) return {};
  const auto tell = [](pa_stream*, int, void* connection) { static_cast<PulseConnection*>(connection)->signal(); };
  PulseConnection& connection = device_->connection();
  pa_operation* uncork = libpulse().pa_stream_cork(stream_, 0, tell, &connection);
  if (!uncork) return check(nullptr);
  const auto isRunning = [uncork] { return libpulse().pa_operation_get_state(uncork) == PA_OPERATION_RUNNING; };
  // A server that does not answer must not pass for one that plays.
  const bool hasAnswered = connection.waitUntil([&] { return !stream_ || !isRunning(); });
  libpulse().pa_operation_unref(uncork);
  if (!hasAnswered) {
    device_->server().refresh();  // tells when it answers again
    return std::make_error_code(std::errc::timed_out);
  }
  if (isReady_) serverWasHeardOf();
  return isReady_ ? std::error_code{} : std::make_error_code(std::errc::no_such_device);
}

std::error_code PulseStream::pause() {
  isMeantToPlay_ = false;
  watch_.setToPlay(false, now());
  device_->silenced(*this);
  if (!isReady_ || libpulse().pa_stream_is_corked(stream_) == 1) return {};
  return check(libpulse().pa_stream_cork(stream_, 1, nullptr, nullptr));
}

std::error_code PulseStream::drop() {
  if (!isReady_) return {};
  watch_.dropped(now());
  return check(libpulse().pa_stream_flush(stream_, nullptr, nullptr));
}

std::size_t PulseStream::room() const {
  const std::size_t bytes = isReady_ ? libpulse().pa_stream_writable_size(stream_) : 0;
  return bytes == static_cast<std::size_t>(-1) ? 0 : bytes;
}

std::error_code PulseStream::write(std::span<const std::int16_t> samples) {
  if (!isReady_) return std::make_error_code(std::errc::not_connected);
  if (libpulse().pa_stream_write(stream_, samples.data(), samples.size_bytes(), nullptr, 0, PA_SEEK_RELATIVE) < 0) {
    return pulseError(libpulse().pa_context_errno(libpulse().pa_stream_get_context(stream_)));
  }
  watch_.wrote(now());
  return {};
}

void PulseStream::close() {
  isReady_ = isMeantToPlay_ = isInterrupted_ = false;
  watch_.lost(now());
  if (!stream_) return;
  device_->remove(*this);
  libpulse().pa_stream_set_state_callback(stream_, nullptr, nullptr);
  libpulse().pa_stream_set_write_callback(stream_, nullptr, nullptr);
  libpulse().pa_stream_set_event_callback(stream_, nullptr, nullptr);
  libpulse().pa_stream_set_started_callback(stream_, nullptr, nullptr);
  libpulse().pa_stream_set_underflow_callback(stream_, nullptr, nullptr);
  libpulse().pa_stream_set_suspended_callback(stream_, nullptr, nullptr);
  if (PA_STREAM_IS_GOOD(libpulse().pa_stream_get_state(stream_))) libpulse().pa_stream_disconnect(stream_);
  libpulse().pa_stream_unref(stream_);
  stream_ = nullptr;
}

void PulseStream::loseDevice() {
  close();
  device_->connection().signal();
  writer_.deviceWasLost();
}

}  // namespace orn
