#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include <ORNHearingTestSDK/audio/Player.h>
#include <ORNHearingTestSDK/engine/ORNHearingTestDelegate.h>
#include <ORNHearingTestSDK/engine/ORNHearingTestItem.h>

namespace orn {

class AudioOutput;

/// One of the two ways by which a session's tones reach the ear: what differs between them, each with its calibration.
/// It alone decides whether a tone sounds. Main thread.
class SoundPath {
 public:
  virtual ~SoundPath() = default;

  /// What a tone is started with, or why it would be silent.
  struct Preparation {
    std::optional<ToneMissingReason> missing;  ///< Why the tone can't sound; nothing if it can.
    float volume = 0;                          ///< The gain or amplitude that the delegate is told.
  };

  /// An ear begins, with the session as the source of samples.
  virtual void startEar(const std::shared_ptr<PlayerGetDataSouce>& session) = 0;

  /// Gives an item its level and its sound, without a sound yet.
  virtual Preparation prepare(ORNHearingTestItem& item, bool isLeft) = 0;

  /// Starts the tone of a prepared item, which is the current one by now. Why it does not sound, if it does not.
  std::optional<ToneMissingReason> start(ORNHearingTestItem& item, float volume);

  /// Whether all of the tone that was started last was played until now.
  bool hasSoundedWhole() const;

  /// The host is about to look for another tone.
  virtual void leave(ORNHearingTestItem& item) = 0;

  /// The user has heard an item, whose sound ends.
  virtual void silence(ORNHearingTestItem& item) = 0;

  /// `item` is the current one; null without one.
  virtual void pause(const PlayerGetDataSouce& session, ORNHearingTestItem* item) = 0;
  virtual void resume() = 0;  ///< Goes on after a pause.

 protected:
  SoundPath() = default;
  SoundPath(const SoundPath&) = default;             ///< A copy of nothing: paths have no state of their own here.
  SoundPath& operator=(const SoundPath&) = default;  ///< The same.

 private:
  /// False if the sound did not start.
  virtual bool play(ORNHearingTestItem& item, float volume) = 0;

  std::uint64_t lapsesBefore_ = 0;
};

}  // namespace orn
