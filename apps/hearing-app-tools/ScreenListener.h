#pragma once

#include <functional>
#include <memory>
#include <span>

#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioOutput.h>

#include "simulation/listener/VirtualListener.h"

namespace orn {

class HostApplication;
class ORNManualHearingTest;

/// A virtual listener in front of the screens: hears the samples of the output and presses the button for "heard", from
/// one test to the next. Main thread; gone before the application.
class ScreenListener {
 public:
  /// How a press is made; by default it clicks the button, or tells the session where no button shows.
  using Press = std::function<void()>;

  ScreenListener(SimulatedAudioOutput& output, const HostApplication& host, simulation::ListenerTraits traits,
                 Press press = {});
  ~ScreenListener();
  ScreenListener(const ScreenListener&) = delete;
  ScreenListener& operator=(const ScreenListener&) = delete;

  /// Whether it listens, which it does not at first.
  void setListening(bool isListening);

 private:
  void hear(std::span<const std::int16_t> samples);
  void meet(const std::shared_ptr<ORNManualHearingTest>& session);
  void click() const;

  const HostApplication& host_;
  simulation::ListenerTraits traits_;
  Press press_;
  bool isListening_ = false;
  std::shared_ptr<ORNManualHearingTest> session_;
  std::unique_ptr<simulation::VirtualListener> listener_;
  std::shared_ptr<ScreenListener*> self_;  // what the output's calls and late presses look for
};

/// Someone whose hearing falls off towards the high tones, more so on the right.
simulation::ListenerTraits sampleListener();

}  // namespace orn
