#include <ORNHearingTestSDK/platform/linux/SoundServer.h>

#include <utility>

#include <ORNHearingTestSDK/platform/linux/LibPulse.h>

namespace orn {
namespace {

// Microseconds.
constexpr pa_usec_t kSettled = 250'000, kNotSettled = 50'000, kLongestSettling = 700'000, kOld = 1'000'000;

void letGo(pa_operation* operation) {
  if (operation) libpulse().pa_operation_unref(operation);
}

}  // namespace

SoundServer::SoundServer(std::string applicationName, std::string server)
    : connection_(std::move(applicationName), std::move(server)) {
  connection_.onReady = [this] { serverIsReady(); };
  connection_.onLost = [this] {
    defaultSink_.cancel();
    isAsking_ = isStale_ = false;
    hasAnswered_ = true;
    change({});
  };
}

/// After this no callback comes that would need what is being destroyed.
SoundServer::~SoundServer() {
  const PulseLock lock(connection_);
  connection_.leave();
  defaultSink_.cancel();
}

void SoundServer::serverIsReady() {
  pa_context* context = connection_.context();
  libpulse().pa_context_set_subscribe_callback(
      context,
      [](pa_context*, pa_subscription_event_type_t, uint32_t, void* self) {
        static_cast<SoundServer*>(self)->refresh();
        static_cast<SoundServer*>(self)->askAgainAfter(kSettled);
      },
      this);
  // A card also reports plugs that don't change the active ports of its sinks.
  const auto interests = static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SERVER |
                                                             PA_SUBSCRIPTION_MASK_CARD);
  letGo(libpulse().pa_context_subscribe(context, interests, nullptr, nullptr));
  refresh();
}

/// A server that is made of several programs reports a new output before all of them know it, and may not report that
/// it has become the default one.
void SoundServer::askAgainAfter(pa_usec_t delay) {
  if (!connection_.context()) return;
  const pa_usec_t due = libpulse().pa_rtclock_now() + delay;
  if (again_) return libpulse().pa_context_rttime_restart(connection_.context(), again_, due);
  again_ = libpulse().pa_context_rttime_new(
      connection_.context(), due,
      [](pa_mainloop_api* api, pa_time_event* event, const timeval*, void* self) {
        api->time_free(event);
        static_cast<SoundServer*>(self)->again_ = nullptr;
        static_cast<SoundServer*>(self)->refresh();
      },
      this);
}

void SoundServer::refresh() {
  if (!connection_.context()) return;
  isStale_ = isAsking_;
  if (isAsking_) return;
  isAsking_ = true;
  askedAt_ = libpulse().pa_rtclock_now();
  // In this order: a device that goes between the two answers then counts as gone, and not as left for another one.
  defaultSink_.ask([this](std::optional<std::string> sink) {
    // A question that fails on its way says nothing about the device that a test is on.
    answer_ = {{}, std::move(sink).value_or(state_.defaultSink)};
    askForSinks();
  });
}

void SoundServer::askForSinks() {
  letGo(libpulse().pa_context_get_sink_info_list(
      connection_.context(),
      [](pa_context*, const pa_sink_info* sink, int end, void* self) {
        static_cast<SoundServer*>(self)->addSink(sink, end);
      },
      this));
}

void SoundServer::addSink(const pa_sink_info* sink, int end) {
  if (end != 0) {
    answered();
  } else if (sink) {
    answer_.outputs.push_back(SoundOutput::of(*sink));
  }
}

void SoundServer::answered() {
  isAsking_ = false;
  hasAnswered_ = true;
  change(std::exchange(answer_, {}));
  // A change that was reported while the answer was under way may be missing in it.
  if (std::exchange(isStale_, false)) return refresh();
  if (isSettling() && !again_) askAgainAfter(kNotSettled);
}

bool SoundServer::isSettling() const {
  return unsettledSince_ && libpulse().pa_rtclock_now() < *unsettledSince_ + kLongestSettling;
}

void SoundServer::change(SoundServerState now) {
  state_ = std::move(now);
  if (state_.isSettled()) {
    unsettledSince_.reset();
  } else if (!unsettledSince_) {
    unsettledSince_ = libpulse().pa_rtclock_now();
  }
  connection_.heardOfServer();
  for (const StateObserver& observer : observers_) observer(state_);
  connection_.signal();
}

SoundServerState SoundServer::state() {
  const bool isReady = connection_.waitUntilReady();
  const PulseLock lock(connection_);
  if (isReady) connection_.waitUntil([this] { return (hasAnswered_ && !isSettling()) || !connection_.context(); });
  // So a change that the server did not report is known soon after somebody has looked.
  if (libpulse().pa_rtclock_now() > askedAt_ + kOld) refresh();
  return state_;
}

void SoundServer::refreshAndWait() {
  const PulseLock lock(connection_);
  refresh();
  connection_.waitUntil([this] { return !isAsking_ || !connection_.context(); });
}

std::list<SoundServer::StateObserver>::iterator SoundServer::addObserver(StateObserver observer) {
  return observers_.insert(observers_.end(), std::move(observer));
}

}  // namespace orn
