#pragma once

#include <memory>

#include <ORNHearingTestSDK/calibration/CalibrationRecords.h>
#include <ORNHearingTestSDK/engine/SoundPath.h>

namespace orn {

/// To the audiometer: one stream of samples, which Player asks the session for and in which a change of tone is a fade.
class AudiometerPath final : public SoundPath {
 public:
  /// On a session's records, which must outlive it.
  explicit AudiometerPath(const CalibrationRecords& records) : records_(records) {}

  /// Amplitude of a level in dB HL at a frequency key; an absent record counts as zeros.
  double amplitude(std::int32_t db, const std::string& hz) const;

  void startEar(const std::shared_ptr<PlayerGetDataSouce>& session) override;
  Preparation prepare(ORNHearingTestItem& item, bool isLeft) override;
  void leave(ORNHearingTestItem& item) override;
  void silence(ORNHearingTestItem& item) override;
  void pause(const PlayerGetDataSouce& session, ORNHearingTestItem* item) override;
  void resume() override;  ///< The stream plays on.

 private:
  bool play(ORNHearingTestItem& item, float volume) override;

  const CalibrationRecords& records_;
};

}  // namespace orn
