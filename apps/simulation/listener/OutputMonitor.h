#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <thread>

struct pa_simple;

namespace orn::simulation {

/// Records what an output of the sound server plays, from its monitor source.
class OutputMonitor {
 public:
  /// Called with interleaved left and right samples at 48000 Hz, 480 frames at a time and without a gap, on the
  /// monitor's own thread.
  using Listener = std::function<void(std::span<const std::int16_t> samples)>;

  /// The server is as PULSE_SERVER would name it, empty for the user's own; the source is the name of a monitor, empty
  /// for that of the default output. Throws std::runtime_error if it can't be recorded.
  OutputMonitor(const std::string& server, const std::string& source, Listener listener);

  /// Waits for a call of the listener that is under way.
  ~OutputMonitor();
  OutputMonitor(const OutputMonitor&) = delete;
  OutputMonitor& operator=(const OutputMonitor&) = delete;

 private:
  void record(const std::stop_token& stop);

  pa_simple* stream_;
  Listener listener_;
  std::jthread thread_;
};

}  // namespace orn::simulation
