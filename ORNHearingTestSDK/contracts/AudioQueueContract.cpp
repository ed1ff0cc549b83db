#include <ORNHearingTestSDK/contracts/AudioQueueContract.h>

#include <algorithm>
#include <limits>

#include <ORNHearingTestSDK/contracts/AudioCheck.h>

namespace orn::contract {
namespace {

constexpr std::size_t kBlock = QueueUnderTest::kBlock;

/// Longer than any device takes samples ahead of what is heard.
Samples longSound() { return ramp(8 * kBlock); }

/// Plays until it is heard; returns the first buffer.
AudioQueueBuffer& playLongSound(QueueUnderTest& queue, AudioCheck& check) {
  AudioQueueBuffer& first = *queue.enqueueBlocks(longSound()).front();
  queue.start();
  check.expectFrames(1000);
  return first;
}

const Contract<AudioCheck> kAudioQueueContracts[] = {
    {"buffers of any length are played in the order in which they were enqueued, each sample unchanged, left and right",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       Samples all;
       for (const std::size_t frames : {1U, 5U, 700U, 5000U, 20U}) {
         const Samples part = ramp(frames, static_cast<std::int16_t>(100 + all.size()));
         queue.enqueue(part);
         all.insert(all.end(), part.begin(), part.end());
       }
       queue.start();
       check.expectSound(all);
     }},

    {"nothing sounds and no buffer is handed back before start()",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       queue.enqueueBlocks(ramp(3 * kBlock));
       check.expectSilence("before start()");
       expect(queue.handedBack().empty(), "a buffer was handed back");
     }},

    {"each buffer is handed back once for each time it was enqueued, in order",
     [](AudioCheck& check) {
       constexpr std::size_t refills = 8, count = 3;
       std::atomic<std::size_t> refilled = 0;
       QueueUnderTest queue(check.output(), [&](AudioQueue& self, AudioQueueBuffer& buffer) {
         if (refilled++ < refills) self.enqueueBuffer(buffer);
       });
       const auto buffers = queue.enqueueBlocks(ramp(count * kBlock));
       queue.start();
       // The last ones are handed back only by a device that holds nothing back.
       const std::size_t least = refills + (check.framesHeldBack() > 0 ? 0 : count);
       check.runUntil([&] { return queue.handedBack().size() >= least; });
       check.runFor(200ms);
       const auto got = queue.handedBack();
       expect(got.size() >= least && got.size() <= refills + count,
              std::to_string(got.size()) + " callbacks came for " + std::to_string(refills + count) + " buffers");
       for (std::size_t i = 0; i < got.size(); ++i) expect(got[i] == buffers[i % count], "they came in another order");
     }},

    {"all callbacks of a queue come on one thread",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       const auto buffers = queue.enqueueBlocks(ramp(4 * kBlock));
       queue.start();
       check.runUntil([&] { return queue.handedBack().size() >= buffers.size(); });
       expect(queue.threads() == 1, "they came on " + std::to_string(queue.threads()) + " threads");
     }},

    {"what the callback enqueues follows without a gap",
     [](AudioCheck& check) {
       const Samples whole = ramp(8 * kBlock);
       for (const auto& [frames, count] : {std::pair{kBlock / 2, 6}, {kBlock / 4, 3}}) {
         std::size_t place = 0;
         const auto fillNext = [&, frames = frames](AudioQueueBuffer& buffer) {
           const auto part = std::span(whole).subspan(place, frames);
           QueueUnderTest::fill(buffer, Samples(part.begin(), part.end()));
           place += part.size();
         };
         QueueUnderTest queue(check.output(), [&](AudioQueue& self, AudioQueueBuffer& buffer) {
           if (place == whole.size()) return;
           fillNext(buffer);
           self.enqueueBuffer(buffer);
         });
         for (int i = 0; i < count; ++i) {
           AudioQueueBuffer& buffer = queue.newBuffer(frames);
           fillNext(buffer);
           expect(!queue->enqueueBuffer(buffer), "a buffer is not taken");
         }
         check.forget();
         queue.start();
         check.expectSound(whole);
       }
     }},

    {"setVolume() may be called from within the callback",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output(), [](AudioQueue& self, AudioQueueBuffer& buffer) {
         self.setVolume(0.5F);
         self.enqueueBuffer(buffer);
       });
       for (int i = 0; i < 3; ++i) queue.enqueue(constant(kBlock, 8000));
       queue.start();
       check.expectSteady(4000, 4000, "after a callback set the volume to a half");
     }},

    {"a queue that runs dry is silent and goes on when a buffer is enqueued",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       const Samples whole = ramp(6 * kBlock);
       queue.enqueueBlocks(Samples(whole.begin(), whole.begin() + 3 * kBlock));
       queue.start();
       check.runFor(1s);
       queue.enqueueBlocks(Samples(whole.begin() + 3 * kBlock, whole.end()));
       check.expectSound(whole, true);
     }},

    {"a buffer's bytes are copied before enqueueBuffer() returns",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       AudioQueueBuffer& buffer = queue.enqueue(ramp(2 * kBlock));
       QueueUnderTest::fill(buffer, ramp(2 * kBlock, 9000));
       queue.start();
       check.expectSound(ramp(2 * kBlock));
     }},

    {"a buffer that is enqueued again gives up its place and is played last, with its new contents",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       AudioQueueBuffer& first = queue.enqueue(constant(kBlock, 9000));
       queue.enqueue(ramp(kBlock));
       QueueUnderTest::fill(first, ramp(kBlock, static_cast<std::int16_t>(100 + kBlock)));
       expect(!queue->enqueueBuffer(first), "it is not taken");
       queue.start();
       check.expectSound(ramp(2 * kBlock));
     }},

    {"a buffer without bytes or of another queue gives invalid_argument and is not enqueued",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output()), other(check.output());
       AudioQueueBuffer& empty = queue.newBuffer(kBlock);
       AudioQueueBuffer& foreign = other.newBuffer(kBlock);
       QueueUnderTest::fill(foreign, ramp(kBlock));
       for (AudioQueueBuffer* buffer : {&empty, &foreign}) {
         expect(queue->enqueueBuffer(*buffer) == std::errc::invalid_argument, "it is taken, or another error comes");
       }
       queue.start();
       check.expectSilence("of such a buffer");
       expect(queue.handedBack().empty(), "it was handed back");
     }},

    {"no more is played of a buffer than its room holds",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       AudioQueueBuffer& buffer = queue.newBuffer(2 * kBlock);
       QueueUnderTest::fill(buffer, ramp(2 * kBlock));
       buffer.mAudioDataByteSize *= 2;
       expect(!queue->enqueueBuffer(buffer), "a buffer that claims more than its room is not taken");
       queue.start();
       check.expectSound(ramp(2 * kBlock));
     }},

    {"a new buffer is zeroed",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       const auto room = queue.newBuffer(kBlock).mAudioData;
       expect(std::all_of(room.begin(), room.end(), [](auto byte) { return byte == 0; }), "it holds something");
     }},

    {"the volume is a linear gain, and 1 before it is set",
     [](AudioCheck& check) {
       for (const float volume : {0.5F, 0.25F, 1.0F, 0.1F}) {
         QueueUnderTest queue(check.output());
         expect(!queue->setVolume(volume), "the volume is not taken");
         queue.enqueueBlocks(constant(3 * kBlock, 8000));
         queue.start();
         check.expectSteady(8000 * volume, 8000 * volume, "volume " + std::to_string(volume));
       }
     }},

    {"beyond 0 and 1 the nearer end counts, and a volume that is not a number is silence",
     [](AudioCheck& check) {
       constexpr float infinite = std::numeric_limits<float>::infinity(),
                       none = std::numeric_limits<float>::quiet_NaN();
       for (const auto& [volume, level] : {std::pair{-1.0F, 0}, {none, 0}, {2.0F, 1}, {infinite, 1}}) {
         QueueUnderTest queue(check.output());
         expect(!queue->setVolume(volume), "the volume is not taken");
         queue.enqueueBlocks(constant(3 * kBlock, 8000));
         queue.start();
         if (level > 0) check.expectSteady(8000, 8000, "volume " + std::to_string(volume));
         if (level == 0) check.expectSilence("with volume " + std::to_string(volume));
       }
     }},

    {"start() is harmless on a running queue",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       playLongSound(queue, check);
       queue.start();
       check.expectSound(longSound());
     }},

    {"pause() stops the sound, and start() goes on with the very next sample",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       playLongSound(queue, check);
       expect(!queue->pause(), "it can't be paused");
       check.runFor(400ms);
       const std::size_t before = check.sound().size();
       check.runFor(400ms);
       expect(check.sound().size() == before, "it goes on sounding after pause()");
       queue.start();
       check.expectSound(longSound(), true);
     }},

    {"no callback comes between pause() and start()",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       playLongSound(queue, check);
       const std::size_t before = queue.handedBack().size();
       expect(!queue->pause(), "it can't be paused");
       check.runFor(800ms);
       expect(queue.handedBack().size() <= before + 1, "buffers were handed back");  // one may have been running
     }},

    {"stop() stops the sound and drops what is queued",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       AudioQueueBuffer& buffer = playLongSound(queue, check);
       expect(!queue->stop(), "it can't be stopped");
       check.expectItFallsSilent("stop()");
       queue.start();
       check.expectSilence("of what was queued before stop()");
       check.forget();
       QueueUnderTest::fill(buffer, ramp(kBlock));
       expect(!queue->enqueueBuffer(buffer), "a buffer that was dropped is not taken");
       queue.enqueue(ramp(kBlock, static_cast<std::int16_t>(100 + kBlock)));
       check.expectSound(ramp(2 * kBlock));
     }},

    {"stop() hands nothing back",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       playLongSound(queue, check);
       expect(!queue->stop(), "it can't be stopped");
       check.runFor(100ms);  // a callback may have been running
       const std::size_t before = queue.handedBack().size();
       check.runFor(400ms);
       expect(before <= 3 && queue.handedBack().size() == before, "buffers were handed back that were never played");
     }},

    {"the destructor waits for a running callback, and none comes after it",
     [](AudioCheck& check) {
       struct State {
         std::atomic<int> begun = 0, ended = 0;
       };
       const auto state = std::make_shared<State>();
       QueueUnderTest queue(check.output(), [state](AudioQueue&, AudioQueueBuffer&) {
         ++state->begun;
         std::this_thread::sleep_for(30ms);
         ++state->ended;
       });
       queue.enqueueBlocks(longSound());
       queue.start();
       expect(check.runUntil([&] { return state->begun > 0; }), "no buffer is handed back");
       queue.destroy();
       const int begun = state->begun, ended = state->ended;
       expect(begun == ended, "a callback was still running");
       check.runFor(300ms);
       expect(state->begun == begun, "a callback came");
     }},

    {"the destructor drops what is queued",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       playLongSound(queue, check);
       queue.destroy();
       check.runFor(200ms);
       check.expectSilence("after the destructor");
     }},

    {"a queue whose device goes falls silent and does not start until it is back",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       playLongSound(queue, check);
       check.takeDeviceAway();
       expect(queue->start() == std::errc::no_such_device, "start() does not tell that there is no device");
       check.bringDeviceBack();
       check.expectSilence("before a new start()");
     }},

    {"what was queued when the device went comes after a start() with the device back",
     [](AudioCheck& check) {
       QueueUnderTest queue(check.output());
       playLongSound(queue, check);
       check.takeDeviceAway();
       check.bringDeviceBack();
       check.forget();
       queue.start();
       const int last = longSound().back() - static_cast<int>(check.framesHeldBack());
       expect(check.runUntil([&] { return !check.sound().empty() && check.sound().back() >= last; }),
              "it does not go on to its end");
     }},
};

}  // namespace

Report checkAudioQueue(const std::function<AudioUnderTest()>& make) {
  return checkAll<AudioCheck>("AudioQueue", kAudioQueueContracts, make);
}

}  // namespace orn::contract
