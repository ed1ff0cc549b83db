#include <ORNHearingTestSDK/results/HearingScore.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/common/DefaultsReading.h>
#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/common/ORNUtils.h>
#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/platform/UserDefaults.h>
#include <ORNHearingTestSDK/results/UserProfile.h>

namespace orn {
namespace {

constexpr std::int64_t kRowLength = 2 * kToneFrequencies.size();

/// Allowances in dB by age band, in pairs of a man's and a woman's for 125 to 8000 Hz.
constexpr std::array<std::int32_t, 6 * kRowLength> KHearingThresholds{
    0, 0, 0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,   // under 30
    1, 1, 1,  1,  1,  1,  2,  1,  2,  1,  3,  2,  3,  2,   // 30 to 39
    2, 2, 2,  2,  3,  3,  6,  4,  8,  4,  9,  6,  11, 7,   // 40 to 49
    4, 4, 4,  4,  7,  6,  12, 8,  16, 9,  18, 12, 23, 15,  // 50 to 59
    6, 6, 7,  7,  12, 11, 20, 13, 28, 16, 32, 21, 39, 27,  // 60 to 69
    9, 9, 11, 11, 19, 16, 31, 20, 43, 24, 49, 32, 60, 41,  // 70 and over
};

/// Whole years of 365 days since the stored birthday; 0 without one.
std::int64_t ageInYears() {
  const Platform& platform = Platform::current();
  const auto stored = platform.userDefaults->value(kBirthdayDefault);
  const auto* birthday = stored ? std::get_if<std::chrono::system_clock::time_point>(&*stored) : nullptr;
  if (!birthday) return 0;
  return ORNUtils::getUserAgeByBday(*birthday);
}

std::int64_t rowFor(std::int64_t age) { return age < 30 ? 0 : std::min<std::int64_t>(age / 10 - 2, 5); }

/// Octaves above the lowest frequency of a frequency key.
std::int64_t octaveOf(const std::string& hz) {
  const std::int32_t q = intValue(hz) / kToneFrequencies.front();
  return q < 1 ? 0 : static_cast<std::int64_t>(std::log2(static_cast<double>(q)));
}

std::int32_t allowanceAt(std::int64_t flatIndex) {
  constexpr std::int64_t oldest = 5 * kRowLength;
  // Past the table the oldest band goes on.
  if (flatIndex >= oldest) flatIndex = oldest + (flatIndex - oldest) % kRowLength;
  return KHearingThresholds[static_cast<std::size_t>(flatIndex)];
}

}  // namespace

std::int64_t HearingScore::computeEarTestResult(const EarResult& earResult) {
  std::vector<std::pair<std::string, std::int32_t>> kept;
  for (const auto& [hz, threshold] : earResult) {
    if (doubleValue(threshold) != -1) kept.emplace_back(hz, intValue(threshold));
  }
  const std::int64_t age = ageInYears();
  if (age < 0 || kept.empty()) return 0;
  const std::int64_t sex = boolValue(Platform::current().userDefaults->value(kUserSexDefault)) ? 1 : 0;
  const auto count = static_cast<std::int64_t>(kept.size());
  const std::int64_t row = rowFor(age);
  std::int64_t sum = 0;
  for (std::int64_t i = 0; i < count; ++i) {
    const auto& [hz, threshold] = kept[static_cast<std::size_t>(i)];
    // The column goes by the entry's place and the octave is added to it, on into the next band: every score rests on
    // this reading, and it is meant, see docs/BEHAVIOURS.md.
    const std::int64_t index = sex + 2 * i + octaveOf(hz) % count;
    sum += std::int64_t{threshold} - allowanceAt(kRowLength * row + index);
  }
  return std::max<std::int64_t>(sum, 0) / count;
}

std::string HearingScore::computeResultString(std::int64_t loss) {
  if (loss <= 25) return "属于正常。希望您继续保持好听力，聆听到老!";
  if (loss <= 40) {
    return "属于轻度听力损失。意味着您的听力不会影响您正常的生活与工作学习，建议您保持良好的生活和饮食习惯,"
           "保护听力从现在做起。";
  }
  if (loss <= 55) {
    return "属于中度听力损失。这种程度的损失意味着您在平时交流时存在轻微障碍，如果您不注意听，"
           "可能无法听清对方的聊天内容,需要您交流的时候时刻集中注意力。";
  }
  if (loss <= 70) {
    return "属于中重度听力损失。这种程度的损失意味着您在平时交流时存在比较大的问题，"
           "需要对方重复说话或者提高音量,才能正常理解对方的聊天内容。";
  }
  if (loss <= 90) {
    return "属于重度听力损失。这种程度的损失意味着您在平时交流时存在很大的问题，不仅需要对方提高音量交谈，"
           "还需要借助于看对方口型来帮助了解聊天内容。";
  }
  return "属于极重度听力损失。这种程度的损失意味着您的生活受到严重的听力困扰。"
         "如果您继续保持这种听力损失，将会出现口齿不清的情况。";
}

}  // namespace orn
