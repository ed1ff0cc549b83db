#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include <ORNHearingTestSDK/engine/ChannelCheck.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/platform/AudioSession.h>

#include "simulation/listener/VirtualListener.h"

namespace orn::web {

/// One test on the page, from the channel check to the result, on the earphone path with the sample calibration. Events
/// tell what happens, each a name and an object. No user is registered, so nothing is ever submitted. Main thread.
class HearingPage : public std::enable_shared_from_this<HearingPage> {
 public:
  using Tell = std::function<void(const std::string& event, const nlohmann::json& what)>;

  HearingPage(const std::vector<std::string>& frequencies, Tell tell);
  ~HearingPage();
  HearingPage(const HearingPage&) = delete;
  HearingPage& operator=(const HearingPage&) = delete;

  /// Plays the channel check's tone; false if it does not sound.
  bool playCheck();
  bool answerCheck(ChannelAnswer heard);
  /// The number of the ChannelFinding, or -1 until all tones have been answered.
  int checkFinding() const;

  /// A virtual listener takes the test: it hears the samples that leave the page's output, and nothing else.
  void invite(const simulation::ListenerTraits& listener);

  void startEar(bool isLeft);

  /// A press, and how long ago it was made: one that had to wait for a busy main thread does not answer a tone that has
  /// begun since.
  void press(double millisecondsAgo);

  void pause();
  void goOn();

 private:
  void watchDelegate();
  void watchOutput();
  void answer(std::chrono::nanoseconds time);

  Tell tell_;
  std::shared_ptr<ORNManualHearingTest> session_;
  std::shared_ptr<ORNHearingTestDelegate> delegate_ = std::make_shared<ORNHearingTestDelegate>();
  std::shared_ptr<AudioSessionObserver> observer_ = std::make_shared<AudioSessionObserver>();
  std::unique_ptr<ChannelCheck> check_;
  std::unique_ptr<simulation::VirtualListener> listener_;
  bool isUnderWay_ = false;  // an ear is being tested
  std::chrono::nanoseconds toneStart_{0};
  std::chrono::nanoseconds heardAgo_{0};  // when what the listener now hears left the output
};

}  // namespace orn::web
