#include <ORNHearingTestSDK/contracts/AudioOutputContract.h>

#include <algorithm>
#include <utility>

#include <ORNHearingTestSDK/contracts/AudioCheck.h>
#include <ORNHearingTestSDK/contracts/TemporaryFolder.h>

namespace orn::contract {
namespace {

/// Files that are not recordings in the tones' format, by what is wrong with them.
std::vector<std::pair<const char*, Bytes>> otherFiles() {
  const Bytes whole = waveFile(ramp(100));
  std::vector<std::pair<const char*, Bytes>> files{{"nothing", {}}, {"no WAV file", Bytes(200, 7)}};
  files.emplace_back("a file cut off", Bytes(whole.begin(), whole.end() - 1));
  files.emplace_back("a header cut off", Bytes(whole.begin(), whole.begin() + 30));
  const struct {
    const char* what;
    std::size_t place;
    std::uint8_t byte;
  } changes[] = {{"another compression", 20, 3}, {"two channels", 22, 2}, {"44100 Hz", 24, 0x44}, {"8 bits", 34, 8}};
  for (const auto& [what, place, byte] : changes) files.emplace_back(what, whole).second[place] = byte;
  return files;
}

const Contract<AudioCheck> kAudioOutputContracts[] = {
    {"there is a queue for 16-bit signed mono PCM at 48000 Hz, and for no other format",
     [](AudioCheck& check) {
       const auto newQueue = [&](const AudioStreamBasicDescription& format) {
         return check.output().newOutputQueue(format, [](AudioQueue&, AudioQueueBuffer&) {});
       };
       expect(newQueue(toneFormat()) != nullptr, "there is none");
       std::vector<std::pair<const char*, AudioStreamBasicDescription>> others(5, {"", toneFormat()});
       others[0].first = "44100 Hz", others[0].second.mSampleRate = 44100;
       others[1].first = "two channels", others[1].second.mChannelsPerFrame = 2;
       others[2].first = "8 bits", others[2].second.mBitsPerChannel = 8;
       others[3].first = "unsigned samples", others[3].second.mFormatFlags = kLinearPCMFormatFlagIsPacked;
       others[4].first = "no PCM", others[4].second.mFormatID = 0;
       for (const auto& [what, format] : others) expect(!newQueue(format), std::string("there is one for ") + what);
     }},

    {"playerWithData() is null for anything but a WAV file in the tones' format",
     [](AudioCheck& check) {
       for (const auto& [what, file] : otherFiles()) {
         expect(!check.output().playerWithData(file), std::string("there is a player for ") + what);
       }
     }},

    {"playerWithData() copies the bytes",
     [](AudioCheck& check) {
       Bytes file = waveFile(ramp(4800));
       const auto player = check.output().playerWithData(file);
       expect(player != nullptr, "there is no player");
       const Bytes other = waveFile(ramp(4800, 9000));
       std::copy(other.begin(), other.end(), file.begin());
       expect(!player->play(), "it does not play");
       check.expectSound(ramp(4800));
     }},

    {"playerWithContentsOfFile() plays a WAV file",
     [](AudioCheck& check) {
       const TemporaryFolder folder;
       const auto player = check.output().playerWithContentsOfFile(folder.write("tone.wav", waveFile(ramp(4800))));
       expect(player != nullptr, "there is no player");
       expect(!player->play(), "it does not play");
       check.expectSound(ramp(4800));
     }},

    {"playerWithContentsOfFile() is null for a file that can't be read or is not such a file",
     [](AudioCheck& check) {
       const TemporaryFolder folder;
       const auto player = [&](const std::string& path) { return check.output().playerWithContentsOfFile(path); };
       expect(!player(folder.path() + "/missing.wav"), "there is a player for a file that is not there");
       expect(!player(folder.path()), "there is a player for a folder");
       for (const auto& [what, file] : otherFiles()) {
         expect(!player(folder.write("other.wav", file)), std::string("there is a player for ") + what);
       }
     }},

    {"queues and players sound together and add up",
     [](AudioCheck& check) {
       const auto left = check.newPlayer(constant(4800, 1000)), both = check.newPlayer(constant(4800, 300));
       left->setPan(-1);
       QueueUnderTest queue(check.output(),
                            [](AudioQueue& self, AudioQueueBuffer& buffer) { self.enqueueBuffer(buffer); });
       for (int i = 0; i < 3; ++i) queue.enqueue(constant(QueueUnderTest::kBlock, 50));
       expect(!left->play() && !both->play(), "a player does not play");
       queue.start();
       check.expectSteady(1350, 350, "two players and a queue");
     }},

    {"what an output made may outlive it, and is silent then",
     [](AudioCheck& check) {
       const auto player = check.newPlayer(constant(4800, 8000));
       QueueUnderTest queue(check.output());
       queue.enqueueBlocks(ramp(8 * QueueUnderTest::kBlock));
       expect(!player->play(), "a player does not play");
       queue.start();
       check.expectFrames(1000);
       check.dropOutput();
       (void)player->play();
       (void)queue->start();
       player->setVolume(1);
       check.expectItFallsSilent("the output's end");
       player->stop();
       (void)queue->pause();
       (void)queue->stop();
     }},

    {"useCurrentDevice() succeeds while there is a device",
     [](AudioCheck& check) { expect(!check.output().useCurrentDevice(), "it fails"); }},

    {"useCurrentDevice() gives no_such_device while there is none",
     [](AudioCheck& check) {
       check.takeDeviceAway();
       expect(check.output().useCurrentDevice() == std::errc::no_such_device, "it succeeds, or gives another error");
       check.bringDeviceBack();
       expect(!check.output().useCurrentDevice(), "it fails with the device back");
     }},

    {"status() gives no_such_device while the device is not there, and no error while all is heard",
     [](AudioCheck& check) {
       const auto player = check.newPlayer(constant(4800, 1000));
       const auto expectFine = [&](const std::string& when) {
         check.expectSteady(1000, 1000, when);
         const auto error = check.output().status();
         expect(!error, when + " there is an error: " + error.message());
       };
       expect(!player->play(), "a player does not play");
       expectFine("at first");
       check.takeDeviceAway();
       expect(check.output().status() == std::errc::no_such_device, "it has no error, or another one");
       check.bringDeviceBack();
       (void)check.output().useCurrentDevice();
       expect(!player->play(), "a player does not play with the device back");
       expectFine("with the device back");
     }},

    {"sound that is whole is not a lapse, nor is a pause, a stop, or the end of a recording",
     [](AudioCheck& check) {
       const auto looping = check.newPlayer(constant(4800, 1000)), once = check.newPlayer(constant(4800, 300), 0);
       QueueUnderTest queue(check.output(),
                            [](AudioQueue& self, AudioQueueBuffer& buffer) { self.enqueueBuffer(buffer); });
       const std::uint64_t before = check.output().lapses();
       queue.start();
       for (int i = 0; i < 3; ++i) queue.enqueue(constant(QueueUnderTest::kBlock, 50));
       for (int turn = 0; turn < 3; ++turn) {
         queue.start();
         expect(!looping->play() && !once->play(), "a player does not play");
         check.runFor(600ms);
         looping->setVolume(0.5F);
         looping->setPan(-1);
         expect(!queue->setVolume(0.5F), "the volume is not taken");
         check.runFor(300ms);
         looping->stop();
         expect(!queue->pause(), "it can't be paused");
         check.runFor(600ms);
       }
       expect(!queue->stop(), "it can't be stopped");
       check.runFor(600ms);
       const std::uint64_t lapses = check.output().lapses() - before;
       expect(lapses == 0, "there were " + std::to_string(lapses));
     }},

    {"a device that goes is a lapse of what sounded, and a start that fails is not",
     [](AudioCheck& check) {
       const auto player = check.newPlayer(constant(4800, 1000));
       expect(!player->play(), "a player does not play");
       check.expectFrames(1000);
       const std::uint64_t before = check.output().lapses();
       check.takeDeviceAway();
       const std::uint64_t without = check.output().lapses();
       expect(without > before, "there was none");
       (void)player->play();
       expect(check.output().lapses() == without, "a start without a device is one");
     }},

    {"a queue that runs dry is a lapse, each time",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       queue.start();
       for (int time = 0; time < 2; ++time) {
         const std::uint64_t before = check.output().lapses();
         queue.enqueueBlocks(constant(4 * QueueUnderTest::kBlock, 1000));
         expect(check.runUntil([&] { return check.output().lapses() > before; }), "there was none");
         check.runFor(400ms);
         expect(check.output().lapses() == before + 1, "once counts more than one");
       }
     }},
};

}  // namespace

Report checkAudioOutput(const std::function<AudioUnderTest()>& make) {
  return checkAll<AudioCheck>("AudioOutput", kAudioOutputContracts, make);
}

}  // namespace orn::contract
