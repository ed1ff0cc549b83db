#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <optional>
#include <system_error>

#include <ORNHearingTestSDK/platform/linux/SoundServer.h>

namespace orn {

class PulseStream;

/// The device that tones go to. It is chosen when a test starts and kept until one is chosen again: when it goes away,
/// its streams fall silent and are never moved to another one.
class SoundDevice {
 public:
  explicit SoundDevice(std::shared_ptr<SoundServer> server);
  ~SoundDevice();
  SoundDevice(const SoundDevice&) = delete;
  SoundDevice& operator=(const SoundDevice&) = delete;

  SoundServer& server() { return *server_; }
  PulseConnection& connection() { return server_->connection(); }

  /// Chooses the server's current output; without one, nothing is chosen and false comes back. Main thread.
  bool chooseCurrent();

  /// Chooses the current output if none was chosen yet. Main thread.
  void chooseIfNone();

  /// With the lock held: the device, if it is there.
  const SoundOutput* present() const;

  /// With the lock held, without waiting: whether what should sound is heard, and how often it was not.
  std::error_code status() const;
  std::uint64_t lapses();

  /// With the lock held: how a stream's start ended, which counts until another stream starts or that one is silenced.
  void startEnded(const PulseStream& stream, std::error_code error) { lastStart_ = {&stream, error}; }
  void silenced(const PulseStream& stream);

  /// The counter of what was not heard, for the streams; guarded by the lock.
  std::uint64_t& lapseCounter() { return lapses_; }

  /// With the lock held: the output that made it has gone, and nothing sounds any more.
  void close();

  // With the lock held: the streams that are open on the device.
  void add(PulseStream& stream) { streams_.push_back(&stream); }
  void remove(PulseStream& stream) { streams_.remove(&stream); }

 private:
  void silenceIfGone();

  std::shared_ptr<SoundServer> server_;
  std::optional<SoundOutputKey> chosen_;
  bool isClosed_ = false;
  std::list<PulseStream*> streams_;
  struct {
    const PulseStream* stream = nullptr;
    std::error_code error;
  } lastStart_;
  std::uint64_t lapses_ = 0;
  std::list<SoundServer::StateObserver>::iterator observer_;
};

}  // namespace orn
