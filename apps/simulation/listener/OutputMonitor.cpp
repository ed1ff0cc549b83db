#include "simulation/listener/OutputMonitor.h"

#include <array>
#include <stdexcept>
#include <utility>

#include <pulse/error.h>
#include <pulse/simple.h>

#include <ORNHearingTestSDK/platform/SampleFormat.h>
#include <ORNHearingTestSDK/platform/linux/SharedLibrary.h>

namespace orn::simulation {
namespace {

constexpr std::size_t kFrames = 480;  // 10 ms

struct LibPulseSimple : SharedLibrary {
  LibPulseSimple() : SharedLibrary("libpulse-simple.so.0") {}

  ORN_FUNCTION(pa_simple_free);
  ORN_FUNCTION(pa_simple_new);
  ORN_FUNCTION(pa_simple_read);
  ORN_FUNCTION(pa_strerror);
};

/// Loaded at the first call, so that a program that records no output starts without it.
const LibPulseSimple& libpulseSimple() {
  static const LibPulseSimple library;
  return library;
}

pa_simple* openMonitor(const std::string& server, const std::string& source) {
  const pa_sample_spec samples{PA_SAMPLE_S16LE, kSampleRate, 2};
  pa_buffer_attr buffer{.maxlength = ~0U, .tlength = ~0U, .prebuf = ~0U, .minreq = ~0U, .fragsize = 4 * kFrames};
  int error = 0;
  pa_simple* stream = libpulseSimple().pa_simple_new(
      server.empty() ? nullptr : server.c_str(), "Virtual listener", PA_STREAM_RECORD,
      source.empty() ? "@DEFAULT_MONITOR@" : source.c_str(), "Monitor", &samples, nullptr, &buffer, &error);
  if (!stream) throw std::runtime_error(std::string("can't record the output: ") + libpulseSimple().pa_strerror(error));
  return stream;
}

}  // namespace

OutputMonitor::OutputMonitor(const std::string& server, const std::string& source, Listener listener)
    : stream_(openMonitor(server, source)),
      listener_(std::move(listener)),
      thread_([this](const std::stop_token& stop) { record(stop); }) {}

OutputMonitor::~OutputMonitor() {
  thread_.request_stop();
  thread_.join();
  libpulseSimple().pa_simple_free(stream_);
}

void OutputMonitor::record(const std::stop_token& stop) {
  std::array<std::int16_t, 2 * kFrames> samples{};
  while (!stop.stop_requested() &&
         libpulseSimple().pa_simple_read(stream_, samples.data(), sizeof(samples), nullptr) == 0) {
    listener_(samples);
  }
}

}  // namespace orn::simulation
