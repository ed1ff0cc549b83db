#include <ORNHearingTestSDK/platform/linux/LinuxAudioSession.h>

#include <utility>

namespace orn {
namespace {

constexpr std::int32_t kInterruptionBegins = 1;

}  // namespace

LinuxAudioSession::LinuxAudioSession(std::shared_ptr<SoundServer> server, std::weak_ptr<RunLoop> runLoop)
    : server_(std::move(server)), runLoop_(std::move(runLoop)), volumes_(*server_) {
  const PulseLock lock(server_->connection());
  stateObserver_ = server_->addObserver([this](const SoundServerState& now) {
    // Compared with the last change: a server may report a new device first, and later that it has become the default.
    const auto reason = routeChangeReason(atLastRouteChange_, now);
    if (!reason) return;
    atLastRouteChange_ = now;
    tellOnMainThread(&AudioSessionObserver::routeChange, *reason);
  });
  server_->onInterruption = [this](bool begins) {
    tellOnMainThread(&AudioSessionObserver::interruption,
                     begins ? kInterruptionBegins : kAudioSessionInterruptionTypeEnded);
  };
}

LinuxAudioSession::~LinuxAudioSession() {
  const PulseLock lock(server_->connection());
  server_->removeObserver(stateObserver_);
  server_->onInterruption = nullptr;
}

void LinuxAudioSession::tellOnMainThread(AudioSessionObservers::Notice notice, std::int32_t value) {
  const auto loop = runLoop_.lock();
  if (!loop) return;
  loop->dispatchAsync([weak = std::weak_ptr(observers_), notice, value] {
    if (const auto observers = weak.lock()) observers->tell(notice, value);
  });
}

std::optional<std::string> LinuxAudioSession::routeText() const {
  const SoundServerState state = server_->state();
  const SoundOutput* current = state.current();
  return current ? std::optional(current->routeText()) : std::nullopt;
}

AudioRouteDescription LinuxAudioSession::currentRoute() const {
  const SoundServerState state = server_->state();
  const SoundOutput* current = state.current();
  AudioRouteDescription route;
  if (current) route.outputs.push_back(current->port());
  return route;
}

float LinuxAudioSession::outputVolume() const {
  const SoundServerState state = server_->state();
  const SoundOutput* current = state.current();
  return current ? current->loudness() : 0;
}

void LinuxAudioSession::addObserver(std::weak_ptr<const AudioSessionObserver> observer) {
  server_->watch();
  observers_->add(std::move(observer));
}

}  // namespace orn
