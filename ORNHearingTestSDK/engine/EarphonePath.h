#pragma once

#include <memory>

#include <ORNHearingTestSDK/calibration/CalibrationRecords.h>
#include <ORNHearingTestSDK/engine/SoundPath.h>

namespace orn {

/// To earphones: each tone is a looping recording, with its own stereo position and gain.
class EarphonePath final : public SoundPath {
 public:
  /// On a session's records, which must outlive it.
  explicit EarphonePath(const CalibrationRecords& records) : records_(records) {}

  void startEar(const std::shared_ptr<PlayerGetDataSouce>& session) override;
  Preparation prepare(ORNHearingTestItem& item, bool isLeft) override;
  void leave(ORNHearingTestItem& item) override;
  void silence(ORNHearingTestItem& item) override;
  void pause(const PlayerGetDataSouce& session, ORNHearingTestItem* item) override;
  void resume() override;  ///< Nothing: a stopped recording is not resumed.

 private:
  bool play(ORNHearingTestItem& item, float volume) override;

  const CalibrationRecords& records_;
};

}  // namespace orn
