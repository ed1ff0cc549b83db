#pragma once

#include <functional>
#include <list>
#include <optional>
#include <string>

#include <ORNHearingTestSDK/platform/linux/DefaultSinkQuestion.h>
#include <ORNHearingTestSDK/platform/linux/PulseConnection.h>
#include <ORNHearingTestSDK/platform/linux/SoundOutput.h>

namespace orn {

/// The sound server as this process knows it: the connection, and the outputs, which are asked for anew whenever the
/// server says that something has changed.
class SoundServer {
 public:
  /// Told on the connection's thread, with its lock, of each new state.
  using StateObserver = std::function<void(const SoundServerState& now)>;

  /// An empty server text stands for the user's own server. Connects to nothing yet.
  SoundServer(std::string applicationName, std::string server);
  ~SoundServer();
  SoundServer(const SoundServer&) = delete;
  SoundServer& operator=(const SoundServer&) = delete;

  PulseConnection& connection() { return connection_; }

  /// Begins to connect and returns at once.
  void watch() { connection_.start(); }

  /// The state as last reported; connects and waits for the first one if need be, and asks again where it is old. While
  /// the server has outputs and no default one, the default is waited for, until 0.7 s after it was first missing. Not
  /// on the connection's thread and not with the lock.
  SoundServerState state();

  /// The same with the lock held, and without waiting.
  const SoundServerState& knownState() const { return state_; }
  bool isKnown() const { return hasAnswered_; }

  /// Asks again; with the lock held.
  void refresh();

  /// The same, and waits for the answer; not on the connection's thread.
  void refreshAndWait();

  /// Adds an observer; with the lock held. It is told until it is removed.
  std::list<StateObserver>::iterator addObserver(StateObserver observer);
  void removeObserver(std::list<StateObserver>::iterator observer) { observers_.erase(observer); }

  /// A stream was asked by the server to make way for something more important (true), or may go on (false). Set while
  /// nothing is played; called on the connection's thread.
  std::function<void(bool begins)> onInterruption;

 private:
  void serverIsReady();
  void askAgainAfter(pa_usec_t delay);
  bool isSettling() const;
  void askForSinks();
  void addSink(const pa_sink_info* sink, int end);
  void answered();
  void change(SoundServerState now);

  SoundServerState state_, answer_;
  bool isAsking_ = false;
  bool isStale_ = false;
  bool hasAnswered_ = false;
  pa_usec_t askedAt_ = 0;
  std::optional<pa_usec_t> unsettledSince_;
  pa_time_event* again_ = nullptr;  // freed with the connection's loop
  std::list<StateObserver> observers_;
  PulseConnection connection_;
  DefaultSinkQuestion defaultSink_{connection_};
};

}  // namespace orn
