#pragma once

#include <functional>
#include <memory>
#include <span>

#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioOutput.h>

#include "simulation/listener/VirtualListener.h"

namespace orn {

class HostApplication;
class ORNManualHearingTest;

/// A virtual listener in front of the screens, for one test after another: it hears the output's samples and presses
/// the button for "heard". Main thread; it must go before the application.
class ScreenListener {
 public:
  /// How a press is made; by default it clicks the button, or tells the session where no button shows.
  using Press = std::function<void()>;

  ScreenListener(SimulatedAudioOutput& output, const HostApplication& host, simulation::ListenerTraits traits,
                 Press press = {});
  ~ScreenListener();
  ScreenListener(const ScreenListener&) = delete;
  ScreenListener& operator=(const ScreenListener&) = delete;

  /// Whether it listens; at first it does not.
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
  std::shared_ptr<ScreenListener*> self_;  // held weakly by the output's calls and by delayed presses
};

/// A listener with a loss at high frequencies, a larger one in the right ear.
simulation::ListenerTraits sampleListener();

}  // namespace orn
