#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <system_error>

#include <pulse/stream.h>

#include <ORNHearingTestSDK/platform/linux/SoundDevice.h>
#include <ORNHearingTestSDK/platform/linux/SoundWatch.h>

namespace orn {

/// The format of a stream: 16-bit samples at 48000 Hz.
struct PulseStreamFormat {
  std::uint8_t channels;
  std::uint32_t bufferBytes;   ///< How much of it the server holds.
  std::uint32_t requestBytes;  ///< How much of that has to be free before the server asks for more.
};

/// Playback on the device of a test, at full volume and with its samples unchanged. Every call needs the lock; open()
/// and play() wait for the server, and are not for the connection's thread. An error leaves the stream closed or as it
/// was.
class PulseStream {
 public:
  /// Who fills a stream: called on the connection's thread, with the lock.
  class Writer {
   public:
    virtual ~Writer() = default;
    /// There is room for samples.
    virtual void serverWantsSamples() = 0;
    /// All of the sound was written, and the server is to run dry.
    virtual bool isAtEnd() const = 0;
    /// The device or the server has gone, and what the server held with it; the stream is closed.
    virtual void deviceWasLost() = 0;
  };

  PulseStream(std::shared_ptr<SoundDevice> device, PulseStreamFormat format, Writer& writer);
  ~PulseStream();
  PulseStream(const PulseStream&) = delete;
  PulseStream& operator=(const PulseStream&) = delete;

  /// Opens it, still silent, on the present device, unless it is open. std::errc::no_such_device without one, timed_out
  /// for a server that does not answer.
  std::error_code open();
  bool isOpen() const { return isReady_; }
  const SoundOutputKey& device() const { return deviceKey_; }

  /// Opens it, has it filled, and lets it sound; or silences it, while the server keeps what it holds. As long as the
  /// server wants the stream to make way, it is silent all the same, and play() gives
  /// std::errc::device_or_resource_busy; it sounds when the server allows it.
  std::error_code play();
  std::error_code pause();

  /// Drops what the server holds.
  std::error_code drop();

  /// Room for samples, in bytes; 0 while it is closed.
  std::size_t room() const;
  std::uint32_t bufferBytes() const { return bufferBytes_; }
  std::error_code write(std::span<const std::int16_t> samples);

  void close();

  /// Closes it and tells the writer.
  void loseDevice();

  /// Whether its sound is heard when it should be, without waiting: std::errc::device_or_resource_busy or timed_out.
  std::error_code status() const;

  /// Counts what is missing right now.
  void lookForLapse();

 private:
  std::error_code connect(const SoundOutput& output);
  void setCallbacks();
  std::error_code start();
  void serverWasHeardOf();
  void ask();
  void ranDry();
  void stateChanged();
  void eventCame(std::string_view name);
  void heldBackChanged();
  std::error_code check(pa_operation* operation) const;

  std::shared_ptr<SoundDevice> device_;
  PulseStreamFormat format_;
  Writer& writer_;
  pa_stream* stream_ = nullptr;
  SoundOutputKey deviceKey_;
  std::uint32_t bufferBytes_ = 0;
  bool isReady_ = false;
  bool isMeantToPlay_ = false;
  bool isInterrupted_ = false;
  SoundWatch watch_;
};

}  // namespace orn
