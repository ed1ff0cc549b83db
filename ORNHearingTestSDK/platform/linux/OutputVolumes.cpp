#include <ORNHearingTestSDK/platform/linux/OutputVolumes.h>

#include <ORNHearingTestSDK/platform/linux/LibPulse.h>

namespace orn {
namespace {

/// The outcome of a change of volume and of muting, each of which the server answers.
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

void setWithoutWaiting(pa_context* context, const DrivenVolumes::Setting& setting) {
  const auto& [output, loudness] = setting;
  for (pa_operation* operation :
       {libpulse().pa_context_set_sink_volume_by_name(context, output.sink.c_str(), &loudness.volume, nullptr, nullptr),
        libpulse().pa_context_set_sink_mute_by_name(context, output.sink.c_str(), loudness.isMuted, nullptr,
                                                    nullptr)}) {
    if (operation) libpulse().pa_operation_unref(operation);
  }
}

/// With the lock held.
std::error_code setAndWait(PulseConnection& connection, const DrivenVolumes::Setting& setting) {
  const auto& [output, loudness] = setting;
  pa_context* context = connection.context();
  if (!context) return std::make_error_code(std::errc::no_such_device);
  Answers answers{connection};
  pa_operation* operations[] = {
      libpulse().pa_context_set_sink_volume_by_name(context, output.sink.c_str(), &loudness.volume, take, &answers),
      libpulse().pa_context_set_sink_mute_by_name(context, output.sink.c_str(), loudness.isMuted, take, &answers)};
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

DrivenVolumes::Time timeNow() { return DrivenVolumes::Time(libpulse().pa_rtclock_now()); }

}  // namespace

OutputVolumes::OutputVolumes(SoundServer& server) : server_(server) {
  const PulseLock lock(server_.connection());
  observer_ = server_.addObserver([this](const SoundServerState& now) {
    for (const DrivenVolumes::Setting& setting : volumes_.see(now, timeNow())) {
      if (pa_context* context = server_.connection().context()) setWithoutWaiting(context, setting);
    }
  });
}

OutputVolumes::~OutputVolumes() {
  const PulseLock lock(server_.connection());
  server_.removeObserver(observer_);
}

void OutputVolumes::begin() {
  const PulseLock lock(server_.connection());
  volumes_.begin();
}

std::error_code OutputVolumes::make(Change change, float volume) {
  (void)server_.state();
  server_.refreshAndWait();  // what the user has changed a moment ago is to be put back too
  std::error_code first;
  {
    const PulseLock lock(server_.connection());
    const SoundServerState now = server_.knownState();
    const auto settings = (volumes_.*change)(now, volume);
    if (settings.empty() && !now.current()) first = std::make_error_code(std::errc::no_such_device);
    for (const DrivenVolumes::Setting& setting : settings) {
      const std::error_code error = setAndWait(server_.connection(), setting);
      if (!error) volumes_.wasMade(setting, timeNow());
      if (!first) first = error;
    }
  }
  server_.refreshAndWait();
  return first;
}

}  // namespace orn
