#pragma once

#include <ORNHearingTestSDK/platform/AudioQueue.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>

namespace orn {

/// The format that queues play.
inline constexpr AudioStreamBasicDescription kToneFormat{
    .mSampleRate = kSampleRate,
    .mFormatID = kAudioFormatLinearPCM,
    .mFormatFlags = kLinearPCMFormatFlagIsSignedInteger | kLinearPCMFormatFlagIsPacked,
    .mBytesPerPacket = 2,
    .mFramesPerPacket = 1,
    .mBytesPerFrame = 2,
    .mChannelsPerFrame = 1,
    .mBitsPerChannel = 16};

/// Whether a format is that one, as far as it says what a sample is.
inline bool isPlayable(const AudioStreamBasicDescription& format) {
  return format.mFormatID == kToneFormat.mFormatID && format.mSampleRate == kToneFormat.mSampleRate &&
         format.mChannelsPerFrame == kToneFormat.mChannelsPerFrame &&
         format.mBitsPerChannel == kToneFormat.mBitsPerChannel && format.mFormatFlags == kToneFormat.mFormatFlags;
}

}  // namespace orn
