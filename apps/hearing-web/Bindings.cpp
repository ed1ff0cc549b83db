// What the page's script calls.

#include <emscripten/bind.h>
#include <emscripten/val.h>

#include <memory>
#include <string>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/platform/AudioOutput.h>
#include <ORNHearingTestSDK/platform/web/WebPlatform.h>

#include "HearingPage.h"

namespace {

using emscripten::val;
using orn::web::HearingPage;

/// Keys of frequencies given in Hz, separated by commas; those of the short test if there are none.
std::vector<std::string> frequencies(const std::string& text) {
  std::vector<std::string> keys;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find(',', at), text.size());
    keys.push_back(text.substr(at, end - at) + "hz");
    at = end + 1;
  }
  return keys.empty() ? orn::frequencyKeys(orn::kShortTestOrder) : keys;
}

std::shared_ptr<HearingPage> newPage(const std::string& hzs, val tell) {
  return std::make_shared<HearingPage>(
      frequencies(hzs), [tell](const std::string& event, const nlohmann::json& what) { tell(event, what.dump()); });
}

bool answerCheck(HearingPage& page, int heard) { return page.answerCheck(static_cast<orn::ChannelAnswer>(heard)); }

/// Takes thresholds in dB HL by frequency in Hz, as JSON.
void invite(HearingPage& page, const std::string& left, const std::string& right) {
  orn::simulation::ListenerTraits listener;
  for (const auto& [text, ear] : {std::pair{&left, &listener.left}, {&right, &listener.right}}) {
    const auto thresholds = nlohmann::json::parse(*text);
    for (const auto& [hz, db] : thresholds.items()) ear->emplace(std::stoi(hz), db.get<double>());
  }
  page.invite(listener);
}

double lapses() { return static_cast<double>(orn::Platform::current().audioOutput->lapses()); }

}  // namespace

EMSCRIPTEN_BINDINGS(hearing) {
  emscripten::class_<HearingPage>("HearingPage")
      .smart_ptr_constructor("HearingPage", &newPage)
      .function("playCheck", &HearingPage::playCheck)
      .function("answerCheck", &answerCheck)
      .function("checkFinding", &HearingPage::checkFinding)
      .function("invite", &invite)
      .function("startEar", &HearingPage::startEar)
      .function("press", &HearingPage::press)
      .function("pause", &HearingPage::pause)
      .function("goOn", &HearingPage::goOn);
  emscripten::function("lapses", &lapses);
}

int main() {
  orn::Platform::setCurrent(orn::webPlatform("hearing-web", "1"));
  return 0;
}
