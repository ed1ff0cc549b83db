#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <system_error>

namespace orn {

/// Whether the sound of one stream is whole, by what its server says and by what it fails to say in time. It is told of
/// everything with the time of a steady clock, and knows no server. One thread at a time.
class SoundWatch {
 public:
  using Time = std::chrono::microseconds;

  /// A server that plays asks for samples several times within the 0.24 s that it holds, and a device holds some tens
  /// of milliseconds more. When no request has come for this long, the sound has stopped.
  static constexpr Time kPatience{300'000};

  /// For this long after samples were dropped, for others to be written in their place, an underflow that is reported
  /// is due to that and no lapse.
  static constexpr Time kAfterDrop{200'000};

  /// Lapses are added to a counter that outlives this.
  explicit SoundWatch(std::uint64_t& lapses) : lapses_(lapses) {}

  /// It is to sound, or to be silent.
  void setToPlay(bool isToPlay, Time now);

  /// The server holds it back, or lets it go on.
  void setHeldBack(bool isHeldBack, Time now);

  void wrote(Time now);
  void dropped(Time now);

  /// The server has asked for samples, or answered.
  void answered(Time now);

  /// It plays samples again, having had none; it has none any more, which is as it should be at the sound's end.
  void started(Time now);
  void ranDry(Time now, bool isAtEnd);

  /// The device or the server has gone; all begins anew.
  void lost(Time now);

  /// std::errc::device_or_resource_busy, timed_out, or no error.
  std::error_code status(Time now) const;

  /// Counts what is missing right now, once.
  void look(Time now);

 private:
  bool isStalled(Time now) const;
  bool hasSound() const { return isSounding_ || holdsSamples_; }
  void waitForServer(Time now);

  std::uint64_t& lapses_;
  bool isToPlay_ = false;
  bool isHeldBack_ = false;
  bool isSounding_ = false;    // as the server said
  bool holdsSamples_ = false;  // the server does
  bool isCounted_ = false;     // what is missing right now
  std::optional<Time> waitsSince_, droppedAt_;
};

}  // namespace orn
