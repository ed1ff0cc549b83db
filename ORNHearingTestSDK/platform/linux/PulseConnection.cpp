#include <ORNHearingTestSDK/platform/linux/PulseConnection.h>

#include <algorithm>
#include <new>
#include <utility>

namespace orn {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kFirstDelay = 100ms, kLongestDelay = 5s, kLongestWait = 1s, kShortWait = 100ms;

pa_usec_t after(std::chrono::microseconds delay) {
  return libpulse().pa_rtclock_now() + static_cast<pa_usec_t>(delay.count());
}

}  // namespace

PulseConnection::PulseConnection(std::string applicationName, std::string server)
    : applicationName_(std::move(applicationName)),
      server_(std::move(server)),
      loop_(libpulse().pa_threaded_mainloop_new()),
      delay_(kFirstDelay) {
  if (!loop_) throw std::bad_alloc();
}

PulseConnection::~PulseConnection() {
  {
    const PulseLock lock(*this);
    leave();
  }
  if (isRunning_) libpulse().pa_threaded_mainloop_stop(loop_);
  libpulse().pa_threaded_mainloop_free(loop_);
}

void PulseConnection::leave() {
  if (retry_) libpulse().pa_threaded_mainloop_get_api(loop_)->time_free(std::exchange(retry_, nullptr));
  close(context_);
}

void PulseConnection::start() {
  const PulseLock lock(*this);
  if (isRunning_) return;
  tryToConnect();
  isRunning_ = libpulse().pa_threaded_mainloop_start(loop_) == 0;
}

bool PulseConnection::waitUntilReady() {
  start();
  const PulseLock lock(*this);
  if (!isRunning_) return false;
  waitUntil([this] { return hasAnswered_; });
  hasAnswered_ = true;  // a silent server counts as none, and is waited for only once
  return context() != nullptr;
}

pa_context* PulseConnection::context() const {
  return context_ && libpulse().pa_context_get_state(context_) == PA_CONTEXT_READY ? context_ : nullptr;
}

bool PulseConnection::waitUntil(const std::function<bool()>& holds) {
  struct Wait {
    PulseConnection& connection;
    bool isOver = false;
  } wait{*this};
  const auto end = [](pa_mainloop_api*, pa_time_event*, const timeval*, void* waiting) {
    static_cast<Wait*>(waiting)->isOver = true;
    static_cast<Wait*>(waiting)->connection.signal();
  };
  pa_time_event* limit =
      context_ ? libpulse().pa_context_rttime_new(context_, after(isAnswering_ ? kLongestWait : kShortWait), end, &wait)
               : nullptr;
  while (limit && !wait.isOver && !holds()) libpulse().pa_threaded_mainloop_wait(loop_);
  if (limit) libpulse().pa_threaded_mainloop_get_api(loop_)->time_free(limit);
  if (holds()) return true;
  if (wait.isOver) isAnswering_ = false;
  return false;
}

std::error_code PulseConnection::absence() const {
  return std::make_error_code(isAnswering_ ? std::errc::no_such_device : std::errc::timed_out);
}

pa_context* PulseConnection::newContext() const {
  pa_context* context =
      libpulse().pa_context_new(libpulse().pa_threaded_mainloop_get_api(loop_), applicationName_.c_str());
  if (!context) throw std::bad_alloc();
  return context;
}

bool PulseConnection::connect(pa_context* context) const {
  const char* server = server_.empty() ? nullptr : server_.c_str();
  return libpulse().pa_context_connect(context, server, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0;
}

void PulseConnection::close(pa_context*& context) {
  if (!context) return;
  libpulse().pa_context_set_state_callback(context, nullptr, nullptr);
  libpulse().pa_context_disconnect(context);
  libpulse().pa_context_unref(context);
  context = nullptr;
}

void PulseConnection::tryToConnect() {
  close(context_);
  context_ = newContext();
  libpulse().pa_context_set_state_callback(
      context_, [](pa_context*, void* self) { static_cast<PulseConnection*>(self)->stateChanged(); }, this);
  if (!connect(context_)) tryLater();
}

void PulseConnection::stateChanged() {
  const pa_context_state_t state = libpulse().pa_context_get_state(context_);
  if (state == PA_CONTEXT_READY) {
    hasAnswered_ = wasReady_ = isAnswering_ = true;
    delay_ = kFirstDelay;
    if (onReady) onReady();
  } else if (!PA_CONTEXT_IS_GOOD(state)) {
    tryLater();
  }
  signal();
}

void PulseConnection::tryLater() {
  hasAnswered_ = isAnswering_ = true;  // there is no server that could be silent
  if (std::exchange(wasReady_, false) && onLost) onLost();
  if (retry_) return;
  retry_ = libpulse().pa_context_rttime_new(
      context_, after(delay_),
      [](pa_mainloop_api* api, pa_time_event* event, const timeval*, void* self) {
        auto& connection = *static_cast<PulseConnection*>(self);
        api->time_free(event);
        connection.retry_ = nullptr;
        connection.tryToConnect();
      },
      this);
  delay_ = std::min(delay_ * 2, kLongestDelay);
}

}  // namespace orn
