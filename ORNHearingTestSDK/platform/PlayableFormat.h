#pragma once

#include <ORNHearingTestSDK/platform/AudioQueue.h>

namespace orn {

/// Whether a format is the one that queues play: 16-bit signed mono PCM at 48000 Hz.
inline bool isPlayable(const AudioStreamBasicDescription& format) {
  return format.mFormatID == kAudioFormatLinearPCM && format.mSampleRate == 48000 && format.mChannelsPerFrame == 1 &&
         format.mBitsPerChannel == 16 &&
         format.mFormatFlags == (kLinearPCMFormatFlagIsSignedInteger | kLinearPCMFormatFlagIsPacked);
}

}  // namespace orn
