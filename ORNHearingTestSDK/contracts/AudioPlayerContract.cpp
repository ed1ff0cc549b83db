#include <ORNHearingTestSDK/contracts/AudioPlayerContract.h>

#include <limits>

#include <ORNHearingTestSDK/contracts/AudioCheck.h>

namespace orn::contract {
namespace {

constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();
constexpr std::size_t kSecond = kSampleRate;

Samples times(const Samples& samples, int count) {
  Samples all;
  for (int i = 0; i < count; ++i) all.insert(all.end(), samples.begin(), samples.end());
  return all;
}

void play(AudioPlayer& player) {
  const auto error = player.play();
  expect(!error, "it does not play: " + error.message());
}

/// Plays a value of 8000 with a pan and a volume, and expects these shares of it on the left and right.
void expectGains(AudioCheck& check, float pan, float volume, double left, double right) {
  const auto player = check.newPlayer(constant(4800, 8000));
  player->setPan(pan);
  player->setVolume(volume);
  play(*player);
  check.expectSteady(8000 * left, 8000 * right, "pan " + std::to_string(pan) + ", volume " + std::to_string(volume));
  player->stop();
  check.expectItFallsSilent("stop()");
}

const Contract<AudioCheck> kAudioPlayerContracts[] = {
    {"0 loops, the start value, play once",
     [](AudioCheck& check) {
       const auto player = check.output().playerWithData(waveFile(ramp(4800)));
       expect(player != nullptr, "there is no player");
       play(*player);
       check.expectSound(ramp(4800));
     }},

    {"a number of loops plays that often again, without a seam",
     [](AudioCheck& check) {
       const auto player = check.newPlayer(ramp(4800), 2);
       play(*player);
       check.expectSound(times(ramp(4800), 3));
     }},

    {"-1 plays forever",
     [](AudioCheck& check) {
       const auto player = check.newPlayer(ramp(2400), -1);
       play(*player);
       check.expectFrames(kSecond);
     }},

    {"after its end play() begins anew",
     [](AudioCheck& check) {
       if (check.framesHeldBack() > 0)
         throw NotChecked{"a device that holds back the end of a sound never comes to it"};
       const auto player = check.newPlayer(ramp(4800), 0);
       play(*player);
       check.expectSound(ramp(4800));
       check.forget();
       play(*player);
       check.expectSound(ramp(4800));
     }},

    {"play() is harmless while it plays",
     [](AudioCheck& check) {
       const auto player = check.newPlayer(ramp(30000), 0);
       play(*player);
       check.expectFrames(1000);
       play(*player);
       check.expectSound(ramp(30000));
     }},

    {"stop() stops the sound and keeps the place",
     [](AudioCheck& check) {
       // The device may have taken samples that were not heard yet; they may come again.
       constexpr int ahead = 9600;
       const auto player = check.newPlayer(ramp(32000), 0);
       play(*player);
       check.expectFrames(12000);
       player->stop();
       check.runFor(300ms);
       const Samples before = check.sound();
       check.expectItFallsSilent("stop()");
       check.forget();
       play(*player);
       check.expectFrames(1000);
       const int last = before.back(), next = check.sound().front();
       expect(next > last - ahead && next < last + ahead,
              "it stopped at frame " + std::to_string(last - 100) + " and went on at " + std::to_string(next - 100));
     }},

    {"prepareToPlay() makes no sound",
     [](AudioCheck& check) {
       const auto player = check.newPlayer(ramp(4800), 0);
       const auto error = player->prepareToPlay();
       expect(!error, "it can't be prepared: " + error.message());
       check.expectSilence("before play()");
       play(*player);
       check.expectSound(ramp(4800));
     }},

    {"pan -1 is left only, 0 both at full strength, 1 right only",
     [](AudioCheck& check) {
       expectGains(check, -1, 1, 1, 0);
       expectGains(check, 0, 1, 1, 1);
       expectGains(check, 1, 1, 0, 1);
     }},

    {"between, the far side loses what the pan takes from it; beyond, the nearer end counts",
     [](AudioCheck& check) {
       expectGains(check, -0.25F, 1, 1, 0.75);
       expectGains(check, 0.5F, 1, 0.5, 1);
       expectGains(check, -7, 1, 1, 0);
     }},

    {"the volume is a linear gain that is not limited to 1",
     [](AudioCheck& check) {
       expectGains(check, 0, 0.1F, 0.1, 0.1);
       expectGains(check, 0, 0.5F, 0.5, 0.5);
       expectGains(check, 0, 2.5F, 2.5, 2.5);
     }},

    {"samples beyond the range of 16 bits clip",
     [](AudioCheck& check) {
       const auto player = check.newPlayer(constant(4800, 20000)), low = check.newPlayer(constant(4800, -20000));
       for (const auto& [one, end] : {std::pair{player.get(), 32767.0}, {low.get(), -32768.0}}) {
         one->setVolume(3);
         play(*one);
         check.expectSteady(end, end, "a gain of 3 on 20000");
         one->stop();
         check.expectItFallsSilent("stop()");
       }
     }},

    {"a pan or a volume that is no number is silence",
     [](AudioCheck& check) {
       for (const bool isPan : {true, false}) {
         const auto player = check.newPlayer(constant(4800, 8000));
         if (isPan) player->setPan(kNoNumber);
         if (!isPan) player->setVolume(kNoNumber);
         play(*player);
         check.expectSilence(isPan ? "with a pan that is no number" : "with a volume that is no number");
       }
     }},

    {"a pan and a volume are heard while it plays",
     [](AudioCheck& check) {
       const auto player = check.newPlayer(constant(4800, 8000));
       play(*player);
       check.expectSteady(8000, 8000, "at first");
       player->setVolume(0.5F);
       check.expectSteady(4000, 4000, "after setVolume(0.5)");
       player->setPan(-1);
       check.expectSteady(4000, 0, "after setPan(-1)");
     }},

    {"pan() and volume() give what was set, and 0 and 1 before",
     [](AudioCheck& check) {
       const auto player = check.newPlayer(ramp(4800));
       expect(player->pan() == 0 && player->volume() == 1, "the start values are others");
       player->setPan(-0.25F);
       player->setVolume(2.5F);
       expect(player->pan() == -0.25F && player->volume() == 2.5F, "another value comes back");
     }},

    {"a player whose device goes falls silent, and play() fails until it is back and goes on then",
     [](AudioCheck& check) {
       const auto player = check.newPlayer(constant(4800, 8000));
       play(*player);
       check.expectSteady(8000, 8000, "at first");
       check.takeDeviceAway();
       expect(bool(player->play()), "play() does not tell that there is no device");
       player->stop();
       check.bringDeviceBack();
       check.expectSilence("before a new play()");
       play(*player);
       check.expectSteady(8000, 8000, "with the device back");
     }},
};

}  // namespace

Report checkAudioPlayer(const std::function<AudioUnderTest()>& make) {
  return checkAll<AudioCheck>("AudioPlayer", kAudioPlayerContracts, make);
}

}  // namespace orn::contract
