#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <system_error>

#include <ORNHearingTestSDK/platform/linux/LibPulse.h>

namespace orn {

/// The one connection to the sound server that all sound of a platform shares, and its thread. It connects when it is
/// first asked to; when the server goes away or is not there, it tries again, after 0.1 s at first and then less and
/// less often, but at least every 5 s.
///
/// The thread holds the lock in every callback; any other thread takes it by PulseLock.
class PulseConnection {
 public:
  PulseConnection(std::string applicationName, std::string server);
  ~PulseConnection();
  PulseConnection(const PulseConnection&) = delete;
  PulseConnection& operator=(const PulseConnection&) = delete;

  /// Called on the connection's thread when the server has come and when it has gone. Set before start().
  std::function<void()> onReady, onLost;

  /// Begins to connect, unless that was done before. Any thread but the connection's own, without the lock.
  void start();

  /// Connects and waits for the server's first answer; false if there is no server. On the same threads.
  bool waitUntilReady();

  /// Leaves the server for good; with the lock held.
  void leave();

  /// With the lock held: the context, or null while there is no server.
  pa_context* context() const;

  /// With the lock held: another context on the same thread; connects it to the same server, and returns false if that
  /// can't even begin; closes it and sets it to null.
  pa_context* newContext() const;
  bool connect(pa_context* context) const;
  static void close(pa_context*& context);

  /// With the lock held, on any thread but the connection's own: waits until a condition holds that callbacks bring
  /// about, each of which has to signal(). False if it does not hold within a second; a server that has let a second
  /// pass is waited for only a moment until it says something again.
  bool waitUntil(const std::function<bool()>& holds);
  void signal() { libpulse().pa_threaded_mainloop_signal(loop_, 0); }

  /// With the lock held: false once the server has let a wait end without an answer, until heardOfServer() is called
  /// for something that it says.
  bool isAnswering() const { return isAnswering_; }
  void heardOfServer() { isAnswering_ = true; }

  /// With the lock held: why no device is known: std::errc::no_such_device or timed_out.
  std::error_code absence() const;

 private:
  friend class PulseLock;

  void tryToConnect();
  void stateChanged();
  void tryLater();

  std::string applicationName_, server_;
  pa_threaded_mainloop* loop_;
  pa_context* context_ = nullptr;
  pa_time_event* retry_ = nullptr;
  std::chrono::milliseconds delay_;
  bool isRunning_ = false;
  bool wasReady_ = false;
  bool isAnswering_ = true;
  bool hasAnswered_ = false;  // the server came, refused, or let its time pass, at least once
};

/// Holds the lock of a connection. Not on the connection's own thread, which holds it anyway.
class PulseLock {
 public:
  explicit PulseLock(const PulseConnection& connection) : loop_(connection.loop_) {
    libpulse().pa_threaded_mainloop_lock(loop_);
  }
  ~PulseLock() { libpulse().pa_threaded_mainloop_unlock(loop_); }
  PulseLock(const PulseLock&) = delete;
  PulseLock& operator=(const PulseLock&) = delete;

 private:
  pa_threaded_mainloop* loop_;
};

}  // namespace orn
