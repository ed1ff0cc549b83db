#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include <ORNHearingTestSDK/engine/ORNHearingTestDelegate.h>
#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

class ORNManualHearingTest;

/// Where a tone of the check was heard.
enum class ChannelAnswer { Left, Right, Both, Nothing };

/// What the answers come to.
enum class ChannelFinding {
  Fine,     ///< Each tone was heard where it belongs.
  Swapped,  ///< Each was heard at the other ear: the thresholds of a test would be the other ear's.
  Mixed,    ///< An ear gets the other one's tone.
  Silent,   ///< A tone was not heard. At this level that can be a hearing loss too.
};

/// A check before a test: one clear tone to each ear, 1000 Hz at 60 dB HL by the calibration and the way of the test's
/// own tones, and the user says where it was heard. So swapped or mixed channels and a silent output are found before a
/// threshold is. The right ear comes first. Nothing is recorded. Main thread.
///
/// An audiometer gets one stream for both ears, so there is nothing to tell apart: the check is one tone, heard or not.
///
/// The level holds at the device's full volume, which is the caller's to set, as it is for a test.
class ORN_EXPORT ChannelCheck {
 public:
  /// With the calibration of a session, which is not kept, not started and not changed.
  explicit ChannelCheck(const ORNManualHearingTest& session);
  /// A tone falls silent at once.
  ~ChannelCheck();
  ChannelCheck(const ChannelCheck&) = delete;
  ChannelCheck& operator=(const ChannelCheck&) = delete;

  /// Whether the ears get tones of their own.
  bool tellsEarsApart() const;

  std::size_t tones() const { return tellsEarsApart() ? 2 : 1; }  ///< Tones of a whole check.
  std::size_t answered() const { return answers_.size(); }        ///< How many tones have been answered.

  /// Starts the tone whose answer is due, for two seconds, as often as wanted; why it does not sound, if it does not.
  /// Nothing happens when all are answered.
  std::optional<ToneMissingReason> play();

  /// A tone falls silent at once.
  void stop();

  /// Takes the answer to the tone that was played last, which falls silent. False, and the same tone is due again, if
  /// it has not been played, or not whole: of a tone that the output lost nobody can say that it was not heard.
  bool answer(ChannelAnswer heard);

  /// Nothing until all are answered.
  std::optional<ChannelFinding> finding() const;

  /// Forgets all answers.
  void startAgain();

 private:
  class Tone;

  bool isLeftDue() const { return answers_.size() == 1; }

  std::shared_ptr<Tone> tone_;
  std::vector<ChannelAnswer> answers_;
};

}  // namespace orn
