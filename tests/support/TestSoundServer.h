#pragma once

#include <list>
#include <memory>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/contracts/TemporaryFolder.h>

#include "support/Program.h"

namespace orn {

enum class ServerKind { PulseAudio, PipeWire };

/// A sound server without a sound card, of this test's own. Its processes end with the test, whatever becomes of it.
class TestSoundServer {
 public:
  explicit TestSoundServer(ServerKind kind);

  /// As PULSE_SERVER would name it.
  std::string address() const;
  std::string folder() const { return folder_.path(); }

  /// Starts the processes and waits until the server answers. Kills them.
  void start();
  void kill();

  /// Lets the processes stand still, and go on.
  void standStill() const { signal(SIGSTOP); }
  void goOn() const { signal(SIGCONT); }

  /// Adds an output; the properties as key=value texts. Gives the number by which it is removed.
  std::string addSink(const std::string& name, const std::string& description,
                      const std::vector<std::string>& properties = {});
  void remove(const std::string& module);

  /// The audiometer KV50-1234 at AA:BB:CC:DD:EE:FF, and plain loudspeakers.
  std::string addAudiometer();
  std::string addSpeaker() { return addSink("speaker", "Speakers"); }

  /// Makes an output the default one, and waits until it is.
  void setDefault(const std::string& sink) const;

  /// Runs pw-metadata with these arguments, which changes what the programs of PipeWire have agreed about.
  void changeMetadata(const std::string& arguments) const { run("pw-metadata " + arguments); }

  /// Starts a call, which is a program that plays.
  std::unique_ptr<Program> startCall() const;

  /// Runs pactl with these arguments, and gives what it prints.
  std::string control(const std::string& arguments) const { return run("pactl " + arguments); }

  /// Volumes of the channels of an output, and whether it is muted, as the server prints them.
  std::string volumes(const std::string& sink) const;

 private:
  void launch(const std::string& command);
  void signal(int number) const;
  std::string run(const std::string& command) const;
  std::string environment() const;

  ServerKind kind_;
  contract::TemporaryFolder folder_;
  std::list<Program> programs_;
};

}  // namespace orn
