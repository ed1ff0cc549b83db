#include "SessionScript.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <utility>

#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/audio/ORNPlayer.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>

namespace orn {
namespace {

std::string side(bool isLeft) { return isLeft ? "L" : "R"; }

std::chrono::nanoseconds span(double seconds) {
  return std::chrono::round<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds));
}

}  // namespace

std::string text(const EarResult& result) {
  std::string all;
  for (const auto& [hz, db] : result) all += (all.empty() ? "" : " ") + hz + "=" + db;
  return all;
}

SessionScript::SessionScript(Type type, Path path) {
  Platform::setCurrent(machine.platform());
  for (const char* key : {kAppKeyDefault, kUserIDDefault, kServiceHostDefault}) {
    machine.userDefaults->setValue(key, std::string("given"));
  }
  ORNPlayer::shareInstance()->setPlayerOf1000Hz_40Down(quiet1000);
  ORNPlayer::shareInstance()->setPlayerOf1000Hz_40Up(loud1000);
  session = std::dynamic_pointer_cast<ORNManualHearingTest>(ORNHearingTest::initWithTestType(type));
  session->setDelegate(delegate);
  if (path == Audiometer) {
    session->setKV50MAC("AA:BB:CC:DD:EE:FF");
    session->setAb(record("-50"));
    machine.audioOutput->keepSamples();
  } else {
    session->setEarPlugModel("model");
    session->setLeftVolume(record("-60"));
    session->setRightVolue(record("-60"));
  }
  watch();
}

SessionScript::~SessionScript() { Platform::clearCurrent(); }

std::shared_ptr<ORNDeviceVolumeIOS> SessionScript::record(const std::string& value) {
  auto made = std::make_shared<ORNDeviceVolumeIOS>();
  using Record = ORNDeviceVolumeIOS;
  for (const auto set : {&Record::setS125, &Record::setS250, &Record::setS500, &Record::setS1000, &Record::setS2000,
                         &Record::setS4000, &Record::setS8000}) {
    ((*made).*set)(value);
  }
  return made;
}

void SessionScript::watch() {
  delegate->willTestAtHz = [this](ORNHearingTest&, const std::string& hz, const std::string& db, float volume,
                                  bool isLeft) {
    note(side(isLeft) + " " + hz + " " + db);
    userMeets(db);
    if (onTone) onTone(hz, db, volume);
  };
  delegate->willSelectedAtHz = [this](ORNHearingTest&, const std::string& hz, const std::string& db, bool isLeft) {
    note(side(isLeft) + " -> " + hz + " " + db);
  };
  delegate->oneEarCompleteWithResult = [this](ORNHearingTest&, const EarResult& result, bool isLeft) {
    note(side(isLeft) + " complete " + text(result));
  };
  delegate->completeWithLeftResult = [this](ORNHearingTest&, const EarResult& left, const EarResult& right) {
    note("complete L " + text(left) + " R " + text(right));
  };
  delegate->toneMissing = [this](ORNHearingTest&, ToneMissingReason reason, bool isLeft) {
    constexpr const char* names[] = {"calibration", "recording", "output"};
    note(side(isLeft) + " missing " + names[static_cast<int>(reason)]);
  };
}

void SessionScript::note(const std::string& what) {
  std::ostringstream line;
  line << now() << " " << what;
  trace_.push_back(line.str());
}

void SessionScript::userMeets(const std::string& db) {
  if (!hears_(std::atoi(db.c_str()))) return;
  const std::weak_ptr<ORNManualHearingTest> pressed = session;
  machine.runLoop->performAfterDelay(std::chrono::milliseconds(500), [pressed] {
    if (const auto alive = pressed.lock()) alive->listened();
  });
}

void SessionScript::presses(const std::string& letters) {
  auto left = letters;
  std::erase(left, ' ');
  hears_ = [left, next = std::size_t{0}](int) mutable { return next < left.size() && left[next++] == 'H'; };
}

void SessionScript::hearsFrom(int level) {
  hears_ = [level](int one) { return one >= level; };
}

void SessionScript::run(double seconds) { machine.virtualTime->runFor(span(seconds)); }

double SessionScript::now() const { return std::chrono::duration<double>(machine.runLoop->now()).count(); }

void SessionScript::at(double seconds, std::function<void()> what) {
  machine.runLoop->performAfterDelay(span(seconds) - machine.runLoop->now(), std::move(what));
}

Lines SessionScript::takeTrace() { return std::exchange(trace_, {}); }

Lines SessionScript::submissions() const {
  Lines all;
  for (const URLRequest& request : machine.urlSession->requests()) {
    const auto body = nlohmann::json::parse(request.body);
    all.push_back("L " + body["left1000hz"].get<std::string>() + " R " + body["right1000hz"].get<std::string>() + " " +
                  body["headset"].get<std::string>());
  }
  return all;
}

int SessionScript::loudest(double from, double to) const {
  const auto& samples = machine.audioOutput->keptSamples();
  const auto place = [&](double seconds) {
    return samples.begin() + std::min<std::ptrdiff_t>(2 * static_cast<std::ptrdiff_t>(seconds * 48000),
                                                      static_cast<std::ptrdiff_t>(samples.size()));
  };
  int most = 0;
  for (auto one = place(from); one < place(to); ++one) most = std::max(most, std::abs(int{*one}));
  return most;
}

}  // namespace orn
