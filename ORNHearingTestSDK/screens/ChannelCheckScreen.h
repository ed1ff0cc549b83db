#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QtCore/QPointer>

#include <ORNHearingTestSDK/engine/ChannelCheck.h>
#include <ORNHearingTestSDK/screens/Screen.h>

namespace orn {

class ChannelCheckPage;
struct AudioSessionObserver;

/// The screen of a ChannelCheck, for a host to show before a test: it plays the tones, asks where each was heard, and
/// says what to do about what it found. It drives the device's volume to full while it is on screen, and has put it
/// back before it tells its end. Main thread.
///
/// A host pushes it, or presents it in a stack of its own, and shows the test when onDone is called, in the same stack
/// for example.
class ORN_SCREENS_EXPORT ChannelCheckScreen final : public Screen {
 public:
  static constexpr int kDisconnectedAlert = 7764778;  ///< Tag of the alert that the device is gone.
  static constexpr int kToneMissingAlert = 7764779;   ///< Tag of the alert that no tone sounds.

  /// For a session that is about to begin and has its calibration; it is not kept, not started and not changed.
  static std::shared_ptr<ChannelCheckScreen> initWithTest(const ORNManualHearingTest& test);
  ~ChannelCheckScreen() override;

  /// The user wants to go on to the test. Told what was found, which is Fine or Silent: with channels that are swapped
  /// or mixed the user can only check again. Nothing if the user skipped the check.
  std::function<void(std::optional<ChannelFinding>)> onDone;

  QWidget* firstFocus() const override;

 protected:
  void viewDidLoad() override;
  void viewDidAppear() override;
  void viewDidDisappear() override;
  void layOut() override;
  void alertView(int tag, int buttonIndex) override;

 private:
  explicit ChannelCheckScreen(const ORNManualHearingTest& test);

  void observeRoute();
  void driveVolume();
  void putVolumeBack();

  void showIntroduction();
  void showQuestion();
  void showFinding(ChannelFinding finding);

  void play();
  void answer(ChannelAnswer heard);
  void leaveFor(std::optional<ChannelFinding> finding);

  ChannelCheckPage* newPage(const QString& heading, const QString& text);
  std::function<void()> on(std::function<void(ChannelCheckScreen&)> action);

  ChannelCheck check_;
  bool drivesVolume_ = false;
  QPointer<ChannelCheckPage> page_;
  std::shared_ptr<AudioSessionObserver> routeObserver_;
};

}  // namespace orn
