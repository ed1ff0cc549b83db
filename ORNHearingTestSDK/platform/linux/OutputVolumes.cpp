#include <ORNHearingTestSDK/platform/linux/OutputVolumes.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/platform/linux/LibPulse.h>
#include <ORNHearingTestSDK/platform/linux/PulseError.h>

namespace orn {
namespace {

/// A server may put a volume of its own on an output that has come back, a moment after it came.
constexpr pa_usec_t kHold = 2'000'000;

/// What became of a change of volume and of muting, both of which the server answers.
struct Answers {
  PulseConnection& connection;
  int missing = 2;
  bool isRefused = false;
};

void take(pa_context*, int success, void* answers) {
  auto& all = *static_cast<Answers*>(answers);
  --all.missing;
  all.isRefused = all.isRefused || success == 0;
  all.connection.signal();
}

void setWithoutWaiting(pa_context* context, const std::string& sink, const pa_cvolume& volume, bool isMuted) {
  for (pa_operation* operation :
       {libpulse().pa_context_set_sink_volume_by_name(context, sink.c_str(), &volume, nullptr, nullptr),
        libpulse().pa_context_set_sink_mute_by_name(context, sink.c_str(), isMuted, nullptr, nullptr)}) {
    if (operation) libpulse().pa_operation_unref(operation);
  }
}

/// With the lock held.
std::error_code setAndWait(PulseConnection& connection, const std::string& sink, const pa_cvolume& volume,
                           bool isMuted) {
  pa_context* context = connection.context();
  if (!context) return std::make_error_code(std::errc::no_such_device);
  Answers answers{connection};
  pa_operation* operations[] = {
      libpulse().pa_context_set_sink_volume_by_name(context, sink.c_str(), &volume, take, &answers),
      libpulse().pa_context_set_sink_mute_by_name(context, sink.c_str(), isMuted, take, &answers)};
  const bool isAnswered = operations[0] && operations[1] &&
                          connection.waitUntil([&] { return answers.missing == 0 || !connection.context(); });
  for (pa_operation* operation : operations) {
    if (!operation) continue;
    libpulse().pa_operation_cancel(operation);  // a late answer must not find the answers gone
    libpulse().pa_operation_unref(operation);
  }
  if (!isAnswered) return std::make_error_code(std::errc::timed_out);
  return answers.missing > 0 || answers.isRefused ? std::make_error_code(std::errc::no_such_device) : std::error_code{};
}

}  // namespace

OutputVolumes::OutputVolumes(SoundServer& server) : server_(server) {
  const PulseLock lock(server_.connection());
  observer_ = server_.addObserver([this](const SoundServerState& now) { putBackWhatAppeared(now); });
}

OutputVolumes::~OutputVolumes() {
  const PulseLock lock(server_.connection());
  server_.removeObserver(observer_);
}

std::error_code OutputVolumes::set(float volume) {
  const SoundServerState state = server_.state();
  std::error_code error = std::make_error_code(std::errc::no_such_device);
  {
    const PulseLock lock(server_.connection());
    if (putBackAt_ == volume || isOriginal(volume)) {
      putBackAt_ = volume;
      error = putBack();
    } else if (const SoundOutput* current = state.current()) {
      putBackAt_.reset();
      error = drive(*current, volume);
    }
  }
  server_.refreshAndWait();
  return error;
}

/// Whether a volume is meant as putting back. Driving to full is not, unless an output that was full has gone since.
bool OutputVolumes::isOriginal(float volume) const {
  const auto isPresent = [this](const std::string& sink) {
    const auto& outputs = server_.knownState().outputs;
    return std::any_of(outputs.begin(), outputs.end(), [&](const auto& output) { return output.key.sink == sink; });
  };
  return std::any_of(originals_.begin(), originals_.end(), [&](const auto& one) {
    const auto& [sink, original] = one;
    return *original.loudness == volume && !original.isDue && (volume != 1 || !isPresent(sink));
  });
}

std::error_code OutputVolumes::drive(const SoundOutput& output, float volume) {
  Original& original = originals_[output.key.sink];
  if (!original.loudness) original = {output.loudness(), output.volume, output.isMuted, false, {}};
  original.isDue = false;
  const float level = std::isnan(volume) ? 0.0F : std::clamp(volume, 0.0F, 1.0F);
  pa_cvolume all;
  libpulse().pa_cvolume_set(&all, output.volume.channels,
                            static_cast<pa_volume_t>(std::lround(level * PA_VOLUME_NORM)));
  return setAndWait(server_.connection(), output.key.sink, all, false);
}

std::error_code OutputVolumes::putBack() {
  std::error_code first;
  for (auto& [sink, original] : originals_) original.isDue = true;
  for (const SoundOutput& output : std::vector(server_.knownState().outputs)) {
    const auto original = originals_.find(output.key.sink);
    if (original == originals_.end()) continue;
    const std::error_code error =
        setAndWait(server_.connection(), output.key.sink, original->second.volume, original->second.isMuted);
    if (error && !first) first = error;
    if (!error) originals_.erase(output.key.sink);
  }
  return first;
}

void OutputVolumes::putBackWhatAppeared(const SoundServerState& now) {
  pa_context* context = server_.connection().context();
  if (!context) return;
  for (const SoundOutput& output : now.outputs) {
    const auto found = originals_.find(output.key.sink);
    if (found == originals_.end() || !found->second.isDue) continue;
    Original& original = found->second;
    if (!original.holdUntil) original.holdUntil = libpulse().pa_rtclock_now() + kHold;
    if (libpulse().pa_rtclock_now() > *original.holdUntil) {
      originals_.erase(found);
    } else if (libpulse().pa_cvolume_equal(&output.volume, &original.volume) == 0 ||
               output.isMuted != original.isMuted) {
      setWithoutWaiting(context, output.key.sink, original.volume, original.isMuted);
    }
  }
}

}  // namespace orn
