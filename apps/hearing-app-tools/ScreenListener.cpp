#include "hearing-app-tools/ScreenListener.h"

#include <chrono>
#include <utility>

#include <QtWidgets/QAbstractButton>

#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/engine/PresentationClock.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>

#include "hearing-app/HostApplication.h"
#include "simulation/listener/HearingLevel.h"

namespace orn {

ScreenListener::ScreenListener(SimulatedAudioOutput& output, const HostApplication& host,
                               simulation::ListenerTraits traits, Press press)
    : host_(host),
      traits_(std::move(traits)),
      press_(press ? std::move(press) : [this] { click(); }),
      self_(std::make_shared<ScreenListener*>(this)) {
  output.addListener([weak = std::weak_ptr(self_)](std::int64_t, std::span<const std::int16_t> samples) {
    if (const auto self = weak.lock()) (*self)->hear(samples);
  });
}

ScreenListener::~ScreenListener() = default;

void ScreenListener::setListening(bool isListening) {
  isListening_ = isListening;
  listener_.reset();  // what it hears next does not continue what it heard last
}

void ScreenListener::hear(std::span<const std::int16_t> samples) {
  if (!isListening_) return;
  const auto session = std::dynamic_pointer_cast<ORNManualHearingTest>(host_.session());
  if (!session) return;
  if (session != session_ || !listener_) meet(session);
  listener_->setEar(session->isTestLeft());
  listener_->hear(samples);
}

void ScreenListener::meet(const std::shared_ptr<ORNManualHearingTest>& session) {
  session_ = session;
  const OutputPath path = session->KV50MAC() ? OutputPath::Audiometer : OutputPath::Earphones;
  listener_ = std::make_unique<simulation::VirtualListener>(
      traits_, std::chrono::seconds(PresentationClock::getPlayTime()),
      [session, path](std::int32_t hz, double amplitude) { return simulation::levelOf(*session, path, hz, amplitude); },
      [weak = std::weak_ptr(self_)](std::chrono::milliseconds reaction) {
        Platform::current().runLoop->performAfterDelay(reaction, [weak] {
          const auto self = weak.lock();
          if (self && (*self)->isListening_) (*self)->press_();
        });
      });
}

void ScreenListener::click() const {
  if (QAbstractButton* button = host_.heardButton()) {
    button->click();
  } else if (session_) {
    session_->listened();
  }
}

simulation::ListenerTraits sampleListener() {
  simulation::ListenerTraits traits;
  traits.right = {{500, 25}, {1000, 30}, {2000, 45}, {4000, 60}};
  traits.left = {{500, 20}, {1000, 20}, {2000, 30}, {4000, 40}};
  return traits;
}

}  // namespace orn
