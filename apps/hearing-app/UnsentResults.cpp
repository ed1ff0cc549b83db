#include "hearing-app/UnsentResults.h"

#include <algorithm>

#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/platform/FileManager.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/results/ORNListenTest.h>

namespace orn {
namespace {

using nlohmann::json;
using std::chrono::seconds;
using std::chrono::system_clock;

constexpr auto kFile = "/unsent-results.json";

/// How far the service's clock may be behind this machine's.
constexpr std::chrono::hours kClocksApart{1};

/// Seconds that a date can hold, in round numbers.
constexpr std::int64_t kEndOfDates = 9'000'000'000;

FileManager& files() { return *Platform::current().fileManager; }

std::optional<std::string> path() {
  const std::string folder = files().documentsDirectory();
  return folder.empty() ? std::nullopt : std::optional(folder + kFile);
}

std::string textIn(const json& object, const std::string& key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : "";
}

/// The thresholds of an ear, whose fields an entry of the file and a stored test have in common.
EarResult earIn(const json& fields, const std::string& ear) {
  EarResult result;
  for (const std::string& hz : frequencyKeys(kToneFrequencies)) {
    const std::string threshold = textIn(fields, ear + hz);
    if (!threshold.empty() && threshold != "-1") result[hz] = threshold;
  }
  return result;
}

void putEar(json& fields, const std::string& ear, const EarResult& result) {
  for (const auto& [hz, threshold] : result) fields[ear + hz] = threshold;
}

json entryOf(const UnsentResult& result) {
  json entry{{"user", result.user},
             {"ended", std::chrono::floor<seconds>(result.ended.time_since_epoch()).count()},
             {"headset", result.headset}};
  putEar(entry, "left", result.left);
  putEar(entry, "right", result.right);
  return entry;
}

std::optional<UnsentResult> resultOf(const json& entry) {
  if (!entry.is_object() || textIn(entry, "user").empty()) return std::nullopt;
  const auto ended = entry.find("ended");
  const bool isDate = ended != entry.end() && ended->is_number_integer() && *ended >= 0 && *ended < kEndOfDates;
  if (!isDate) return std::nullopt;
  return UnsentResult{textIn(entry, "user"), system_clock::time_point(seconds(ended->get<std::int64_t>())),
                      earIn(entry, "left"), earIn(entry, "right"), textIn(entry, "headset")};
}

/// Empty where the file is missing or holds no list.
json kept() {
  const auto file = path();
  const auto bytes = file ? files().contents(*file) : std::nullopt;
  json list = bytes ? json::parse(bytes->begin(), bytes->end(), nullptr, false) : json::array();
  return list.is_array() ? list : json::array();
}

bool keep(const json& list) {
  const auto file = path();
  if (!file) return false;
  const std::string text = list.dump(2, ' ', false, json::error_handler_t::replace);
  return files().writeAtomically(*file, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

}  // namespace

bool UnsentResult::isAmong(const json& storedTests) const {
  return storedTests.is_array() && std::any_of(storedTests.begin(), storedTests.end(), [this](const json& stored) {
           if (!stored.is_object() || textIn(stored, "headset") != headset) return false;
           const auto since = std::chrono::duration<double, std::milli>((ended - kClocksApart).time_since_epoch());
           return ORNListenTest::modelObjectWithDictionary(stored)->createDate() >= since.count() &&
                  earIn(stored, "left") == left && earIn(stored, "right") == right;
         });
}

std::vector<UnsentResult> UnsentResults::ofUser(const std::string& user) {
  std::vector<UnsentResult> results;
  for (const json& entry : kept()) {
    if (auto result = resultOf(entry); result && result->user == user) results.push_back(std::move(*result));
  }
  return results;
}

bool UnsentResults::add(const UnsentResult& result) {
  json list = kept();
  list.push_back(entryOf(result));
  return keep(list);
}

void UnsentResults::remove(const UnsentResult& result) {
  json list = kept();
  const auto found = std::find(list.begin(), list.end(), entryOf(result));
  if (found == list.end()) return;
  list.erase(found);
  if (!list.empty()) {
    keep(list);
  } else if (const auto file = path()) {
    files().removeFile(*file);
  }
}

}  // namespace orn
