#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include <ORNHearingTestSDK/audio/SineTables.h>
#include <ORNHearingTestSDK/common/Bytes.h>
#include <ORNHearingTestSDK/platform/AudioPlayer.h>

namespace orn {

/// Place of an item in its grid: x the frequency's index, y the row.
struct GridPoint {
  double x = 0;  ///< Column, from 0.
  double y = 0;  ///< Row; 0 stands for the lowest level.
};

/// One tone of a session: a frequency at a level for an ear. Main thread, but for the sample operations and the fields
/// that they read, which are the audio thread's too.
class ORN_EXPORT ORNHearingTestItem {
 public:
  ORNHearingTestItem() = default;
  ~ORNHearingTestItem();
  ORNHearingTestItem(const ORNHearingTestItem&) = delete;
  ORNHearingTestItem& operator=(const ORNHearingTestItem&) = delete;

  GridPoint point() const { return point_; }          ///< Its place in the grid.
  void setPoint(GridPoint point) { point_ = point; }  ///< Takes its place in the grid.

  /// The tone's player on the earphone path, shared with other items.
  const std::shared_ptr<AudioPlayer>& player() const { return player_; }
  void setPlayer(std::shared_ptr<AudioPlayer> player) { player_ = std::move(player); }

  /// Kept and without effect.
  float volume() const { return volume_; }
  void setVolume(float volume) { volume_ = volume; }

  /// Frequency key, such as "1000hz", and level, such as "40db". Not to be changed once a session has the item.
  const std::string& hzValue() const { return hzValue_; }
  void setHzValue(std::string hzValue);
  const std::string& dbValue() const { return dbValue_; }  ///< Its level, such as "40db".
  void setDbValue(std::string dbValue) { dbValue_ = std::move(dbValue); }

  /// The key's leading number, in Hz.
  std::int32_t frequency() const { return frequency_; }
  /// Whether the stream can make this tone: one of the seven frequencies.
  bool hasTable() const { return table_.has_value(); }

  /// 0 not judged, 1 heard, -1 not heard.
  std::int32_t hearStatus() const { return hearStatus_; }
  void setHearStatus(std::int32_t hearStatus) { hearStatus_ = hearStatus; }

  /// Stereo position on the earphone path: -1 left, 1 right.
  float pan() const { return pan_; }
  void setPan(float pan) { pan_ = pan; }

  /// Target amplitude on the audiometer path, 0 to 1, a factor on full-scale samples.
  float zhenfu() const { return zhenfu_.load(std::memory_order_relaxed); }
  void setZhenfu(float zhenfu) { zhenfu_.store(zhenfu, std::memory_order_relaxed); }

  /// Amplitude that the stream's fade has reached.
  float adjustzhenfu() const { return adjustzhenfu_.load(std::memory_order_relaxed); }
  void setAdjustzhenfu(float adjustzhenfu) { adjustzhenfu_.store(adjustzhenfu, std::memory_order_relaxed); }

  /// The stream is to fade this item out, for good.
  bool needStop() const { return needStop_.load(std::memory_order_relaxed); }
  void setNeedStop(bool needStop) { needStop_.store(needStop, std::memory_order_relaxed); }

  /// Presentations at this level heard and not heard, in the standard test.
  std::int64_t heardTimes() const { return heardTimes_; }
  void setHeardTimes(std::int64_t heardTimes) { heardTimes_ = heardTimes; }
  std::int64_t notHeardTimes() const { return notHeardTimes_; }  ///< How often it was presented and not heard.
  void setNotHeardTimes(std::int64_t notHeardTimes) { notHeardTimes_ = notHeardTimes; }

  /// The item 5 dB louder; null at the end.
  std::shared_ptr<ORNHearingTestItem> nextItem() const { return nextItem_.lock(); }
  void setNextItem(const std::shared_ptr<ORNHearingTestItem>& item) { nextItem_ = item; }
  /// The one 5 dB quieter; null at the end.
  std::shared_ptr<ORNHearingTestItem> prevItem() const { return prevItem_.lock(); }
  void setPrevItem(const std::shared_ptr<ORNHearingTestItem>& item) { prevItem_ = item; }

  void play();  ///< Plays its recording, if there is a player.
  void stop();  ///< Stops its recording, if there is a player.

  /// One cycle of the tone at `zhenfu`, made at first use and kept whatever `zhenfu` becomes; empty for a frequency
  /// outside the seven. Any thread; valid as long as the item.
  std::span<const std::uint8_t> wavData();

  /// The table of the item's frequency and its length in bytes; neither is written for a frequency outside the seven.
  void getDataPoint(const std::uint8_t*& dataPoint, std::int32_t& length) const;

  /// One block with a linear ramp of the amplitude, never below 0; empty for a frequency outside the seven.
  Bytes getDataFrom(float from, float to) const;

  /// The same into a block of kBlockBytes, without an allocation, and limited to full scale; false, and nothing
  /// written, for a frequency outside the seven.
  bool rampInto(std::span<std::uint8_t> block, float from, float to) const;

  /// The table scaled by `zhenfu`.
  Bytes getData(const std::uint8_t* dataPoint, std::int64_t length) const;

 private:
  GridPoint point_;
  std::shared_ptr<AudioPlayer> player_;
  float volume_ = 0;
  std::string hzValue_;
  std::int32_t frequency_ = 0;
  std::optional<SineTable> table_;
  std::string dbValue_;
  std::int32_t hearStatus_ = 0;
  float pan_ = 0;
  std::atomic<float> zhenfu_ = 0;
  std::atomic<float> adjustzhenfu_ = 0;
  std::atomic<bool> needStop_ = false;
  std::int64_t heardTimes_ = 0;
  std::int64_t notHeardTimes_ = 0;
  std::weak_ptr<ORNHearingTestItem> nextItem_;
  std::weak_ptr<ORNHearingTestItem> prevItem_;
  std::atomic<const Bytes*> wavData_ = nullptr;
};

}  // namespace orn
