// Every way in which a tone may not sound: it is never judged, the host is told why, and the test goes on where it was.

#include <gmock/gmock.h>

#include <ORNHearingTestSDK/audio/ORNPlayer.h>

#include "SessionScript.h"

namespace orn {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The library's bundles, or none.
class Bundles final : public PosixFileManager {
 public:
  std::string documentsDirectory() const override { return {}; }
  std::optional<std::string> resourceBundle(const std::string& name) const override {
    return areShipped ? PosixFileManager::resourceBundle(name) : std::nullopt;
  }

  bool areShipped = true;
};

/// A right ear that hears 1000 Hz from 60 dB on. The library's own recordings play, as in a real test.
struct Ear : SessionScript {
  Ear(Type type, Path path) : SessionScript(type, path) {
    Platform platform = machine.platform();
    platform.fileManager = bundles;
    Platform::setCurrent(platform);
    session->setTestHzs({"1000hz"});
    if (path == Earphones) machine.audioOutput->keepSamples();
    hearsFrom(60);
  }

  std::shared_ptr<Bundles> bundles = std::make_shared<Bundles>();
};

struct Way {
  std::string name, told;
  std::function<void(Ear&, bool isBroken)> set;
  std::vector<SessionScript::Path> paths{SessionScript::Earphones, SessionScript::Audiometer};
};

/// Puts a record in place of the good one.
std::function<void(Ear&, bool)> calibration(const ORNManualHearingTest::Record& broken) {
  return [broken](Ear& ear, bool isBroken) {
    const auto record = isBroken ? broken : SessionScript::record("-60");
    ear.session->setAb(record);
    ear.session->setRightVolue(record);
  };
}

const Way kNoDevice{"no device", " R missing output",
                    [](Ear& ear, bool isBroken) { ear.machine.audioOutput->setDevicePresent(!isBroken); }};
const Way kHeldBack{"held back", " R missing output",
                    [](Ear& ear, bool isBroken) { ear.machine.audioOutput->setHeldBack(isBroken); }};
const Way kOutputs[] = {kNoDevice, kHeldBack};

const Way kWays[] = {
    kNoDevice,
    kHeldBack,
    {"no record", " R missing calibration", calibration(nullptr)},
    {"no value", " R missing calibration", calibration(std::make_shared<ORNDeviceVolumeIOS>())},
    {"no amplitude", " R missing calibration", calibration(SessionScript::record("1e9")), {SessionScript::Audiometer}},
    {"no tone files",
     " R missing recording",
     [](Ear& ear, bool isBroken) { ear.bundles->areShipped = !isBroken; },
     {SessionScript::Earphones}},
};

void forEach(std::span<const Way> ways, const std::function<void(Ear&, const Way&)>& meet) {
  for (const Way& way : ways) {
    for (const auto path : way.paths) {
      for (const auto type : {SessionScript::Auto, SessionScript::Standard}) {
        SCOPED_TRACE(way.name + " path " + std::to_string(path) + " type " + std::to_string(type));
        Ear ear(type, path);
        meet(ear, way);
      }
    }
  }
}

bool isStandard(const Ear& ear) { return ear.session->hzs().size() > 1; }

std::string firstTone(const Ear& ear) { return isStandard(ear) ? " R 1000hz 60db" : " R 1000hz 40db"; }

/// Runs until the first threshold and expects the true one.
void expectTruth(Ear& ear) {
  std::string found;
  ear.delegate->willSelectedAtHz = [&](auto&&, const std::string& hz, const std::string& db, bool) {
    if (found.empty()) found = hz + " " + db;
  };
  ear.machine.virtualTime->runUntil([&] { return !found.empty(); }, std::chrono::seconds(100));
  EXPECT_EQ(found, "1000hz 60db");
}

TEST(Silence, FromTheStartIsToldAndNotJudgedAndEndsWhereTheTestBegan) {
  forEach(kWays, [](Ear& ear, const Way& way) {
    way.set(ear, true);
    ear.at(10, [&] { ear.session->listened(); });
    EXPECT_THAT(ear.traceOfEar(kRight, 20), ElementsAre("4" + way.told));
    EXPECT_THAT(*ear.session->getTestResult(kRight), IsEmpty());
    EXPECT_EQ(ear.session->getTestProgress(), 0);
    EXPECT_EQ(ear.loudest(0, 20), 0);
    ear.session->continueTest();
    EXPECT_THAT(ear.trace(4), ElementsAre("20" + way.told));
    way.set(ear, false);
    ear.session->continueTest();
    EXPECT_THAT(ear.trace(1), ElementsAre("24" + firstTone(ear)));
    EXPECT_GT(ear.loudest(24.3, 25), 0);
    expectTruth(ear);
  });
}

TEST(Silence, IsTriedAgainOncePerToneWhereTheHostContinuesWithinTheTelling) {
  forEach(kWays, [](Ear& ear, const Way& way) {
    const auto told = ear.delegate->toneMissing;
    ear.delegate->toneMissing = [told](ORNHearingTest& test, ToneMissingReason reason, bool isLeft) {
      told(test, reason, isLeft);
      dynamic_cast<ORNManualHearingTest&>(test).playAtHz("1000hz", "60");
      test.continueTest();
    };
    way.set(ear, true);
    ear.at(14, [&] { way.set(ear, false); });
    EXPECT_THAT(ear.traceOfEar(kRight, 17),
                ElementsAre("4" + way.told, "8" + way.told, "12" + way.told, "16" + firstTone(ear)));
    EXPECT_GT(ear.loudest(16.3, 17), 0);
    expectTruth(ear);
  });
}

TEST(Silence, AfterAPressTakesNothingFromIt) {
  forEach(std::span(kOutputs, 1), [](Ear& ear, const Way& way) {
    ear.hearsFrom(15);
    ear.at(5.5, [&] { way.set(ear, true); });
    EXPECT_THAT(ear.traceOfEar(kRight, 9), ElementsAre("4" + firstTone(ear), "8 R missing output"))
        << "of the next tone";
    way.set(ear, false);
    ear.session->continueTest();
    EXPECT_THAT(ear.trace(1), ElementsAre(isStandard(ear) ? "9 R 1000hz 50db" : "9 R 1000hz 30db"));
  });
}

TEST(Silence, WithinAToneHasItPresentedAgainAndInTheLastOfFourPausesTheTest) {
  forEach(kOutputs, [](Ear& ear, const Way& way) {
    ear.hearsFrom(100);
    for (const double start : {4, 8, 12, 16}) {
      ear.at(start + 1, [&] { way.set(ear, true); });
      ear.at(start + 2, [&] { way.set(ear, false); });
    }
    const std::string tone = firstTone(ear);
    EXPECT_THAT(ear.traceOfEar(kRight, 60),
                ElementsAre("4" + tone, "8" + tone, "12" + tone, "16" + tone, "20 R missing output"));
    EXPECT_GT(ear.loudest(8.3, 9), 0);
    // Once more: the sound is gone at the tone's end, and back later.
    ear.session->continueTest();
    ear.at(63.9, [&] { way.set(ear, true); });
    EXPECT_THAT(ear.trace(10), ElementsAre("60" + tone, "64 R missing output"));
    way.set(ear, false);
    ear.hearsFrom(60);
    ear.session->continueTest();
    expectTruth(ear);
  });
}

TEST(Silence, InOneToneNowAndThenCostsOnlyTime) {
  forEach(kOutputs, [](Ear& ear, const Way& way) {
    ear.hearsFrom(100);
    for (const double start : {4, 12, 20, 28, 36}) {
      ear.at(start + 1, [&] { way.set(ear, true); });
      ear.at(start + 2, [&] { way.set(ear, false); });
    }
    EXPECT_THAT(ear.traceOfEar(kRight, 43), testing::Not(Contains(HasSubstr("missing"))));
  });
}

TEST(Silence, OfTheToneAfterAThresholdIsToldOnce) {
  Ear ear(SessionScript::Standard, SessionScript::Earphones);
  ear.presses("HHHHHHHH");
  ear.at(35.9, [&] { kNoDevice.set(ear, true); });
  const Lines trace = ear.traceOfEar(kRight, 50);
  EXPECT_THAT(Lines(trace.end() - 2, trace.end()), ElementsAre("36 R -> 1000hz 15db", "36 R missing output"));
}

TEST(Silence, OfAManualToneRecordsNothing) {
  for (const Way& way : kWays) {
    for (const auto path : way.paths) {
      Ear ear(SessionScript::Manual, path);
      ear.session->startTest(kRight);
      for (const bool isBroken : {true, false}) {
        way.set(ear, isBroken);
        ear.session->playAtHz("1000hz", "60");
        ear.session->listened();
        const Lines whole{"0 R 1000hz 60db", "0 R -> 1000hz 60db", "0 R complete 1000hz=60"};
        EXPECT_EQ(ear.takeTrace(), isBroken ? Lines{"0" + way.told} : whole) << way.name;
      }
    }
  }
}

TEST(Silence, OfAFrequencyWithoutATableIsToldOnTheAudiometer) {
  for (const char* hz : {"750hz", "abc", "", "99999999999999999999hz", "-1000hz"}) {
    Ear ear(SessionScript::Auto, SessionScript::Audiometer);
    ear.session->setTestHzs({hz});
    EXPECT_THAT(ear.traceOfEar(kRight, 60), ElementsAre("4 R missing recording")) << hz;
    EXPECT_EQ(ear.loudest(0, 60), 0);
  }
}

}  // namespace
}  // namespace orn
