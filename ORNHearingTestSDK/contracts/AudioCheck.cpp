#include <ORNHearingTestSDK/contracts/AudioCheck.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include <ORNHearingTestSDK/platform/PlayableFormat.h>

namespace orn::contract {
namespace {

constexpr auto kStep = 20ms;
constexpr auto kAWhile = 200ms;
constexpr int kMostSteps = 150;

bool isSilent(std::int16_t sample) { return sample == 0; }

void append(Bytes& bytes, std::uint32_t value, int size) {
  for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void append(Bytes& bytes, const char* name) {
  for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<std::uint8_t>(name[i]));
}

Samples withoutSilenceAround(const Samples& samples) {
  const auto first = std::find_if_not(samples.begin(), samples.end(), isSilent);
  const auto last = std::find_if_not(samples.rbegin(), samples.rend(), isSilent).base();
  return first < last ? Samples(first, last) : Samples();
}

}  // namespace

AudioStreamBasicDescription toneFormat() { return kToneFormat; }

Samples ramp(std::size_t count, std::int16_t first) {
  Samples samples(count);
  for (std::int16_t& sample : samples) sample = first++;
  return samples;
}

Samples constant(std::size_t count, std::int16_t value) { return Samples(count, value); }

Bytes waveFile(const Samples& samples) {
  const auto size = static_cast<std::uint32_t>(2 * samples.size());
  Bytes file;
  append(file, "RIFF");
  append(file, 36 + size, 4);
  append(file, "WAVE");
  append(file, "fmt ");
  append(file, 16, 4);
  append(file, 1, 2);                // PCM
  append(file, 1, 2);                // channels
  append(file, kSampleRate, 4);      // frames per second
  append(file, 2 * kSampleRate, 4);  // bytes per second
  append(file, 2, 2);                // bytes per frame
  append(file, 16, 2);               // bits per sample
  append(file, "data");
  append(file, size, 4);
  for (const std::int16_t sample : samples) append(file, static_cast<std::uint16_t>(sample), 2);
  return file;
}

QueueUnderTest::QueueUnderTest(AudioOutput& output, Refill refill)
    : queue_(output.newOutputQueue(toneFormat(), [notes = notes_, refill](AudioQueue& queue, AudioQueueBuffer& buffer) {
        {
          const std::lock_guard lock(notes->mutex);
          notes->handedBack.push_back(&buffer);
          notes->threads.insert(std::this_thread::get_id());
        }
        if (refill) refill(queue, buffer);
      })) {
  expect(queue_ != nullptr, "there is no queue for the format of the tones");
}

QueueUnderTest::~QueueUnderTest() = default;

AudioQueueBuffer& QueueUnderTest::newBuffer(std::size_t frames) {
  AudioQueueBuffer* buffer = queue_->allocateBuffer(static_cast<std::uint32_t>(2 * frames));
  expect(buffer && buffer->mAudioData.size() == 2 * frames, "a new buffer does not have the room that was asked for");
  return *buffer;
}

void QueueUnderTest::fill(AudioQueueBuffer& buffer, const Samples& samples) {
  std::memcpy(buffer.mAudioData.data(), samples.data(), std::min(buffer.mAudioData.size(), 2 * samples.size()));
  buffer.mAudioDataByteSize = static_cast<std::uint32_t>(2 * samples.size());
}

AudioQueueBuffer& QueueUnderTest::enqueue(const Samples& samples) {
  AudioQueueBuffer& buffer = newBuffer(samples.size());
  fill(buffer, samples);
  const auto error = queue_->enqueueBuffer(buffer);
  expect(!error, "a buffer is not taken: " + error.message());
  return buffer;
}

std::vector<AudioQueueBuffer*> QueueUnderTest::enqueueBlocks(const Samples& samples) {
  std::vector<AudioQueueBuffer*> buffers;
  for (std::size_t i = 0; i < samples.size(); i += kBlock) {
    const auto block = std::span(samples).subspan(i, std::min(kBlock, samples.size() - i));
    buffers.push_back(&enqueue(Samples(block.begin(), block.end())));
  }
  return buffers;
}

void QueueUnderTest::start() {
  const auto error = queue_->start();
  expect(!error, "the queue does not start: " + error.message());
}

std::vector<AudioQueueBuffer*> QueueUnderTest::handedBack() const {
  const std::lock_guard lock(notes_->mutex);
  return notes_->handedBack;
}

std::size_t QueueUnderTest::threads() const {
  const std::lock_guard lock(notes_->mutex);
  return notes_->threads.size();
}

std::unique_ptr<AudioPlayer> AudioCheck::newPlayer(const Samples& samples, int loops) {
  auto player = output().playerWithData(waveFile(samples));
  expect(player != nullptr, "there is no player for a recording in the format of the tones");
  player->setNumberOfLoops(loops);
  return player;
}

void AudioCheck::takeDeviceAway() { needed(audio_.takeDeviceAway, "takeDeviceAway")(); }
void AudioCheck::bringDeviceBack() { needed(audio_.bringDeviceBack, "bringDeviceBack")(); }

void AudioCheck::listen() {
  if (!audio_.heard) return;
  const auto frames = audio_.heard();
  for (std::size_t i = 0; i < frames.size(); ++i) channels_[i % 2].push_back(frames[i]);
}

void AudioCheck::runFor(std::chrono::nanoseconds span) {
  audio_.runFor(span);
  listen();
}

bool AudioCheck::runUntil(const std::function<bool()>& holds) {
  listen();
  for (int i = 0; i < kMostSteps && !holds(); ++i) runFor(kStep);
  return holds();
}

void AudioCheck::forget() {
  listen();
  for (Samples& channel : channels_) channel.clear();
}

const Samples& AudioCheck::heard(std::size_t channel) const {
  (void)needed(audio_.heard, "heard");
  return channels_[channel];
}

Samples AudioCheck::sound(std::size_t channel) const {
  Samples sound;
  std::copy_if(heard(channel).begin(), heard(channel).end(), std::back_inserter(sound),
               [](std::int16_t one) { return !isSilent(one); });
  return sound;
}

void AudioCheck::expectSound(const Samples& samples, bool withGaps) {
  const std::size_t least = samples.size() - std::min(samples.size(), framesHeldBack());
  runUntil([&] { return sound(0).size() >= least && sound(1).size() >= least; });
  runFor(kAWhile);
  for (const std::size_t channel : {0U, 1U}) {
    const Samples got = withGaps ? sound(channel) : withoutSilenceAround(heard(channel));
    const auto which = std::string(channel == 0 ? "left: " : "right: ");
    const auto differs = std::mismatch(got.begin(), got.end(), samples.begin(), samples.end(),
                                       [](int one, int other) { return std::abs(one - other) <= 1; });
    expect(differs.first == got.end() && got.size() >= least && got.size() <= samples.size(),
           which + "of " + std::to_string(samples.size()) + " frames the first " +
               std::to_string(differs.first - got.begin()) + " came as they were sent; in all there were " +
               std::to_string(got.size()));
  }
}

void AudioCheck::expectFrames(std::size_t frames) {
  expect(runUntil([&] { return sound(0).size() >= frames; }), "nothing is heard, or too little");
}

void AudioCheck::expectItFallsSilent(const std::string& after) {
  const bool fellSilent = runUntil([&] {
    for (Samples& channel : channels_) channel.clear();
    runFor(kAWhile);
    return sound(0).empty() && sound(1).empty();
  });
  expect(fellSilent, "it goes on sounding after " + after);
}

void AudioCheck::expectSilence(const std::string& when) {
  forget();
  runFor(2 * kAWhile);
  expect(sound(0).empty() && sound(1).empty(), "something is heard " + when);
}

bool AudioCheck::isSteady(std::size_t channel, double value) const {
  constexpr std::size_t enough = 480;
  return heard(channel).size() >= enough && std::all_of(heard(channel).end() - enough, heard(channel).end(),
                                                        [&](int one) { return std::abs(one - value) <= 1; });
}

void AudioCheck::expectSteady(double left, double right, const std::string& when) {
  const bool isRight = runUntil([&] { return isSteady(0, left) && isSteady(1, right); });
  const auto last = [&](std::size_t channel) {
    return heard(channel).empty() ? "nothing" : std::to_string(heard(channel).back());
  };
  expect(isRight, when + ": " + last(0) + " is heard on the left and " + last(1) + " on the right, instead of " +
                      std::to_string(std::lround(left)) + " and " + std::to_string(std::lround(right)));
}

}  // namespace orn::contract
