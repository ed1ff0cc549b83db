#include <algorithm>
#include <cmath>
#include <cstring>
#include <thread>

#include <ORNHearingTestSDK/contracts/AudioCheck.h>
#include <ORNHearingTestSDK/contracts/AudioOutputContract.h>
#include <ORNHearingTestSDK/contracts/AudioPlayerContract.h>
#include <ORNHearingTestSDK/contracts/AudioQueueContract.h>

#include "BrokenCopies.h"
#include "ChangedSound.h"
#include "examples/backend-contracts/SimulatedBackend.h"

namespace orn::contract {
namespace {

using Copy = BrokenCopy<AudioUnderTest>;
using Buffer = AudioQueueBuffer;

const std::error_code kFine;

std::function<AudioUnderTest()> outputThat(const std::function<void(ChangedOutput&, AudioUnderTest&)>& change) {
  return [change] {
    AudioUnderTest copy = example::audio();
    const auto changed = std::make_shared<ChangedOutput>(copy.output);
    change(*changed, copy);
    copy.output = changed;
    return copy;
  };
}

/// A change of each queue, which keeps account of its buffers.
std::function<AudioUnderTest()> queueThat(const std::function<void(ChangedQueue&)>& change) {
  return outputThat([change](ChangedOutput& output, AudioUnderTest&) {
    output.queue = [change](ChangedQueue& queue) { change(queue); };
  });
}

std::function<AudioUnderTest()> playerThat(const std::function<void(ChangedPlayer&)>& change) {
  return outputThat([change](ChangedOutput& output, AudioUnderTest&) {
    output.player = [change](ChangedPlayer& player, auto) { change(player); };
  });
}

/// A queue whose n-th callback is changed.
std::function<AudioUnderTest()> callbackThat(const std::function<void(ChangedQueue&, Buffer&, int number)>& change) {
  return queueThat([change](ChangedQueue& queue) {
    queue.hand->back = [&queue, change, number = 0](Buffer& buffer) mutable { change(queue, buffer, ++number); };
  });
}

/// A queue whose n-th enqueueing is changed.
std::function<AudioUnderTest()> enqueueThat(
    const std::function<std::error_code(ChangedQueue&, Buffer&, int number)>& change) {
  return queueThat([change](ChangedQueue& queue) {
    queue.enqueue = [&queue, change, number = 0](Buffer& buffer) mutable { return change(queue, buffer, ++number); };
  });
}

/// Keeps `enqueued` true: what is enqueued and has not been handed back.
void keepAccount(ChangedQueue& queue) {
  queue.enqueue = [&queue](Buffer& buffer) {
    std::erase(queue.enqueued, &buffer);
    queue.enqueued.push_back(&buffer);
    return queue.real->enqueueBuffer(buffer);
  };
  queue.hand->back = [&queue](Buffer& buffer) {
    std::erase(queue.enqueued, &buffer);
    queue.handBack(buffer);
  };
}

std::function<AudioUnderTest()> volumeThat(const std::function<float(float)>& change) {
  return queueThat([change](ChangedQueue& queue) {
    queue.volume = [&queue, change](float volume) { return queue.real->setVolume(change(volume)); };
  });
}

/// Queues that were destroyed and play on.
auto graveyard() { return std::make_shared<std::vector<std::shared_ptr<AudioQueue>>>(); }

const std::vector<Copy> kQueues = {
    {"buffers of any length",
     enqueueThat([held = std::make_shared<Buffer*>()](ChangedQueue& queue, Buffer& buffer, int n) {
       // The second and the third change places, if they are small.
       if (buffer.mAudioData.size() > 1500 || n == 1) return queue.real->enqueueBuffer(buffer);
       if (n == 2) return *held = &buffer, kFine;
       const auto error = queue.real->enqueueBuffer(buffer);
       return *held ? queue.real->enqueueBuffer(*std::exchange(*held, nullptr)) : error;
     })},
    {"nothing sounds and no buffer", enqueueThat([](ChangedQueue& queue, Buffer& buffer, int) {
       const auto error = queue.real->enqueueBuffer(buffer);
       queue.real->start();
       return error;
     })},
    {"each buffer is handed back", callbackThat([](ChangedQueue& queue, Buffer& buffer, int n) {
       if (n != 2) queue.handBack(buffer);
     })},
    {"each buffer is handed back", queueThat([](ChangedQueue& queue) {
       keepAccount(queue);
       queue.hand->back = [&queue, back = queue.hand->back](Buffer& buffer) {
         back(buffer);
         if (queue.enqueued.empty()) back(buffer);
       };
     })},
    {"all callbacks", callbackThat([](ChangedQueue& queue, Buffer& buffer, int n) {
       if (n != 2) return queue.handBack(buffer);
       std::thread([&] { queue.handBack(buffer); }).join();
     })},
    {"what the callback enqueues", enqueueThat([](ChangedQueue& queue, Buffer& buffer, int n) {
       return n == 10 && buffer.mAudioData.size() == QueueUnderTest::kBlock ? kFine : queue.real->enqueueBuffer(buffer);
     })},
    {"setVolume() may be called", queueThat([](ChangedQueue& queue) {
       const auto isWithin = std::make_shared<bool>(false);
       queue.hand->back = [&queue, isWithin](Buffer& buffer) {
         *isWithin = true;
         queue.handBack(buffer);
         *isWithin = false;
       };
       queue.volume = [&queue, isWithin](float volume) { return *isWithin ? kFine : queue.real->setVolume(volume); };
     })},
    {"a queue that runs dry", queueThat([](ChangedQueue& queue) {
       keepAccount(queue);
       queue.hand->back = [&queue, back = queue.hand->back](Buffer& buffer) {
         back(buffer);
         if (queue.enqueued.empty()) queue.real->pause();
       };
     })},
    {"a buffer's bytes are copied", queueThat([](ChangedQueue& queue) {
       const auto all = std::make_shared<std::vector<Buffer*>>();
       queue.enqueue = [&queue, all](Buffer& buffer) {
         const auto error = queue.real->enqueueBuffer(buffer);
         if (!error) all->push_back(&buffer);
         return error;
       };
       queue.starting = [&queue, all] {
         for (Buffer* buffer : std::exchange(*all, {})) {
           if (!queue.isRunning) queue.real->enqueueBuffer(*buffer);
         }
         queue.isRunning = true;
         return queue.real->start();
       };
     })},
    {"a buffer that is enqueued again", queueThat([](ChangedQueue& queue) {
       keepAccount(queue);
       queue.enqueue = [&queue, enqueue = queue.enqueue](Buffer& buffer) {
         const bool isIn = std::find(queue.enqueued.begin(), queue.enqueued.end(), &buffer) != queue.enqueued.end();
         return isIn ? kFine : enqueue(buffer);
       };
       queue.stopping = [&queue] {
         queue.enqueued.clear();
         return queue.real->stop();
       };
     })},
    {"a buffer without bytes", enqueueThat([](ChangedQueue& queue, Buffer& buffer, int) {
       (void)queue.real->enqueueBuffer(buffer);
       return kFine;
     })},
    {"no more is played", enqueueThat([](ChangedQueue& queue, Buffer& buffer, int) {
       if (buffer.mAudioDataByteSize > buffer.mAudioData.size())
         return std::make_error_code(std::errc::invalid_argument);
       return queue.real->enqueueBuffer(buffer);
     })},
    {"a new buffer is zeroed", queueThat([](ChangedQueue& queue) {
       queue.allocated = [](Buffer& buffer) { std::memset(buffer.mAudioData.data(), 1, buffer.mAudioData.size()); };
     })},
    {"the volume is a linear gain",
     volumeThat([](float volume) { return std::abs(volume) < 0.3F ? volume * volume : volume; })},
    {"beyond 0 and 1", volumeThat([](float volume) { return std::isnan(volume) ? 1 : volume; })},
    {"beyond 0 and 1", volumeThat([](float volume) { return std::abs(volume); })},
    {"start() is harmless", outputThat([](ChangedOutput& output, AudioUnderTest& copy) {
       const auto all = std::make_shared<std::vector<ChangedQueue*>>();
       output.queue = [all](ChangedQueue& queue) {
         all->push_back(&queue);
         queue.starting = [&queue] {
           const auto error = queue.real->start();
           const bool wasRunning = std::exchange(queue.isRunning, !error);
           return wasRunning && !error ? std::make_error_code(std::errc::already_connected) : error;
         };
         queue.pausing = [&queue] { return queue.isRunning = false, queue.real->pause(); };
         queue.stopping = [&queue] { return queue.isRunning = false, queue.real->stop(); };
       };
       copy.takeDeviceAway = [all, away = copy.takeDeviceAway] {
         for (ChangedQueue* queue : *all) queue->isRunning = false;
         away();
       };
     })},
    {"pause() stops the sound",
     queueThat([](ChangedQueue& queue) { queue.pausing = [&queue] { return queue.real->stop(); }; })},
    {"no callback comes between", queueThat([](ChangedQueue& queue) {
       keepAccount(queue);
       queue.pausing = [&queue] {
         for (int i = 0; i < 2; ++i) queue.handBack(*queue.enqueued.back());
         return queue.real->pause();
       };
     })},
    {"stop() stops the sound",
     queueThat([](ChangedQueue& queue) { queue.stopping = [&queue] { return queue.real->pause(); }; })},
    {"stop() hands nothing back", queueThat([](ChangedQueue& queue) {
       keepAccount(queue);
       queue.stopping = [&queue] {
         const auto error = queue.real->stop();
         for (Buffer* buffer : std::exchange(queue.enqueued, {})) queue.handBack(*buffer);
         return error;
       };
     })},
    {"the destructor waits", queueThat([after = graveyard()](ChangedQueue& queue) {
       queue.dropped = [after](ChangedQueue& gone) {
         gone.real->setVolume(0);
         gone.hand->back = [hand = gone.hand.get(), real = gone.real.get()](Buffer& buffer) {
           hand->callback(*real, buffer);
         };
         after->push_back(gone.real);
       };
     })},
    {"the destructor drops", queueThat([after = graveyard()](ChangedQueue& queue) {
       queue.dropped = [after](ChangedQueue& gone) {
         gone.hand->back = [](Buffer&) {};
         after->push_back(gone.real);
       };
     })},
    {"a queue whose device goes",
     queueThat([](ChangedQueue& queue) { queue.starting = [&queue] { return (void)queue.real->start(), kFine; }; })},
    {"what was queued when", outputThat([](ChangedOutput& output, AudioUnderTest& copy) {
       const auto all = std::make_shared<std::vector<ChangedQueue*>>();
       output.queue = [all](ChangedQueue& queue) { all->push_back(&queue); };
       copy.takeDeviceAway = [all, away = copy.takeDeviceAway] {
         for (ChangedQueue* queue : *all) queue->real->stop();
         away();
       };
     })},
};

std::function<AudioUnderTest()> panThat(const std::function<float(float)>& change) {
  return playerThat([change](ChangedPlayer& player) {
    player.panning = [&player, change](float pan) { player.real->setPan(change(pan)); };
  });
}

std::function<AudioUnderTest()> gainThat(const std::function<float(float)>& change) {
  return playerThat([change](ChangedPlayer& player) {
    player.scaling = [&player, change](float volume) { player.real->setVolume(change(volume)); };
  });
}

/// The file with ten samples of silence at its end.
Bytes longerFile(std::span<const std::uint8_t> given) {
  Bytes file(given.begin(), given.end());
  file.resize(file.size() + 20);
  for (const std::size_t place : {4U, 40U}) {
    std::uint32_t size = 0;
    std::memcpy(&size, &file[place], sizeof(size));
    size += 20;
    std::memcpy(&file[place], &size, sizeof(size));
  }
  return file;
}

const std::vector<Copy> kPlayers = {
    {"0 loops", playerThat([](ChangedPlayer& player) { player.real->setNumberOfLoops(1); })},
    {"a number of loops", playerThat([](ChangedPlayer& player) {
       player.looping = [](int loops) { return loops > 0 ? loops - 1 : loops; };
     })},
    {"a number of loops", outputThat([](ChangedOutput& output, AudioUnderTest&) { output.data = longerFile; })},
    {"-1 plays forever",
     playerThat([](ChangedPlayer& player) { player.looping = [](int loops) { return loops < 0 ? 9 : loops; }; })},
    {"after its end", playerThat([](ChangedPlayer& player) {
       player.playing = [&player] { return player.plays > 1 ? player.real->prepareToPlay() : player.real->play(); };
     })},
    {"play() is harmless", playerThat([](ChangedPlayer& player) {
       player.playing = [&player] {
         if (player.plays > 1) player.real = player.again();
         return player.real->play();
       };
     })},
    {"stop() stops the sound",
     playerThat([](ChangedPlayer& player) { player.stopping = [&player] { player.real = player.again(); }; })},
    {"prepareToPlay()",
     playerThat([](ChangedPlayer& player) { player.preparing = [&player] { return player.real->play(); }; })},
    {"pan -1 is left only", panThat([](float pan) { return pan == 1 ? -1 : pan; })},
    {"between, the far side", panThat([](float pan) { return pan * std::abs(pan); })},
    {"the volume is a linear gain", gainThat([](float volume) { return volume == 2.5F ? 1 : volume; })},
    {"samples beyond", outputThat([](ChangedOutput&, AudioUnderTest& copy) {
       copy.heard = [heard = copy.heard] {
         auto samples = heard();
         std::replace(samples.begin(), samples.end(), std::int16_t{32767}, std::int16_t{-32768});
         return samples;
       };
     })},
    {"a pan or a volume that is no number", panThat([](float pan) { return std::isnan(pan) ? 0 : pan; })},
    {"a pan or a volume that is no number", gainThat([](float gain) { return std::isnan(gain) ? 1 : gain; })},
    {"a pan and a volume are heard", playerThat([](ChangedPlayer& player) {
       player.panning = player.scaling = [](float) {};
       player.playing = [&player] {
         player.real->setPan(player.pan());
         player.real->setVolume(player.volume());
         return player.real->play();
       };
     })},
    {"pan() and volume()",
     playerThat([](ChangedPlayer& player) { player.told = [](float volume) { return std::min(volume, 1.0F); }; })},
    {"a player whose device goes", playerThat([](ChangedPlayer& player) {
       player.playing = [&player] { return (void)player.real->play(), kFine; };
     })},
};

const std::vector<Copy> kOutputs = {
    {"there is a queue", outputThat([](ChangedOutput& output, AudioUnderTest&) {
       output.format = [](AudioStreamBasicDescription format) { return format.mSampleRate = 48000, format; };
     })},
    {"playerWithData() is null", outputThat([](ChangedOutput& output, AudioUnderTest&) {
       output.data = [](std::span<const std::uint8_t> given) {
         return given.size() == 200 ? waveFile(ramp(10)) : Bytes(given.begin(), given.end());
       };
     })},
    {"playerWithData() copies", outputThat([](ChangedOutput& output, AudioUnderTest&) {
       output.player = [real = output.real.get()](ChangedPlayer& player, std::span<const std::uint8_t> given) {
         player.playing = [&player, real, given] {
           if (!player.isLoopSet) player.real = real->playerWithData(given);
           return player.real->play();
         };
       };
     })},
    {"playerWithContentsOfFile() plays", outputThat([](ChangedOutput& output, AudioUnderTest&) {
       output.file = [](const std::string&) { return nullptr; };
     })},
    {"playerWithContentsOfFile() is null", outputThat([](ChangedOutput& output, AudioUnderTest&) {
       output.file = [real = output.real.get()](const std::string& path) {
         auto player = real->playerWithContentsOfFile(path);
         return player ? std::move(player) : real->playerWithData(waveFile(ramp(10)));
       };
     })},
    {"queues and players", outputThat([](ChangedOutput& output, AudioUnderTest&) {
       const auto hasPlayer = std::make_shared<bool>(false);
       output.player = [hasPlayer](auto&, auto) { *hasPlayer = true; };
       output.queue = [hasPlayer](ChangedQueue& queue) {
         if (*hasPlayer) queue.real->setVolume(0);
       };
     })},
    {"what an output made", outputThat([kept = std::make_shared<std::vector<std::shared_ptr<AudioOutput>>>()](
                                           ChangedOutput& output, AudioUnderTest&) { kept->push_back(output.real); })},
    {"useCurrentDevice() succeeds", outputThat([](ChangedOutput& output, AudioUnderTest&) {
       output.choosing = [real = output.real.get(), isFirst = true]() mutable {
         return std::exchange(isFirst, false) ? std::make_error_code(std::errc::no_such_device)
                                              : real->useCurrentDevice();
       };
     })},
    {"useCurrentDevice() gives",
     outputThat([](ChangedOutput& output, AudioUnderTest&) { output.choosing = [] { return kFine; }; })},
    {"status() gives", outputThat([](ChangedOutput& output, AudioUnderTest&) { output.heard = [] { return kFine; }; })},
    {"sound that is whole", outputThat([](ChangedOutput& output, AudioUnderTest&) {
       const auto stops = std::make_shared<std::uint64_t>(0);
       output.player = [stops](ChangedPlayer& player, auto) {
         player.stopping = [&player, stops] { ++*stops, player.real->stop(); };
       };
       output.lapsed = [stops, real = output.real.get()] { return real->lapses() + *stops; };
     })},
    {"a device that goes", outputThat([](ChangedOutput& output, AudioUnderTest& copy) {
       const auto unseen = std::make_shared<std::uint64_t>(0);
       output.lapsed = [unseen, real = output.real.get()] { return real->lapses() - *unseen; };
       copy.takeDeviceAway = [unseen, real = output.real.get(), away = copy.takeDeviceAway] {
         *unseen -= real->lapses();
         away();
         *unseen += real->lapses();
       };
     })},
    {"a queue that runs dry is a lapse", outputThat([](ChangedOutput& output, AudioUnderTest&) {
       output.lapsed = [real = output.real.get()] { return std::min<std::uint64_t>(real->lapses(), 1); };
     })},
};

TEST(BrokenCopies, OfTheQueueAreNamed) { expectNamed("AudioQueue", checkAudioQueue, kQueues); }
TEST(BrokenCopies, OfThePlayerAreNamed) { expectNamed("AudioPlayer", checkAudioPlayer, kPlayers); }
TEST(BrokenCopies, OfTheOutputAreNamed) { expectNamed("AudioOutput", checkAudioOutput, kOutputs); }

}  // namespace
}  // namespace orn::contract
