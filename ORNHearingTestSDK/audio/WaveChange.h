#pragma once

#include <stdint.h>

#include <ORNHearingTestSDK/platform/Export.h>

#ifdef __cplusplus
extern "C" {
#endif

// Sample blocks are signed 16-bit little-endian mono; sizes are in bytes and count one cycle of the input. Amplitudes
// are factors on the sample value. Each product is truncated toward zero and kept to its lower 16 bits: it wraps, it
// does not clip. One outside the 32-bit range, or not a number, gives the sample 0. Of a last sample cut short by an
// odd size the high byte reads as 0; blocks have room for that sample whole. Every result comes from malloc and is the
// caller's to free. Null for a null input, if memory runs out or if the size of the block would overflow. Any thread.

/// Bytes of a header of createWaveHeader: 44.
ORN_EXPORT int32_t getWaveHeaderSize(void);

/// The header of a PCM WAV file of `dataSize` bytes of samples; null if memory runs out.
ORN_EXPORT uint8_t* createWaveHeader(uint32_t dataSize, uint16_t channels, uint32_t sampleRate, uint16_t bitsPerSample);

/// Null is allowed for both.
ORN_EXPORT void freeWaveHeader(uint8_t* header);
ORN_EXPORT void freeWaveData(uint8_t* data);

/// One cycle times `amplitude`, `size` bytes; an empty block for a size below 1.
ORN_EXPORT uint8_t* creatWaveData(const uint8_t* data, int64_t size, float amplitude);

/// `repetitions` cycles under one linear ramp of the gain that moves at every sample; the last one is a sample's step
/// short of `end`. An empty block for a size or a count below 1.
ORN_EXPORT uint8_t* creatWaveDataF(const uint8_t* data, int64_t size, int32_t repetitions, float start, float end);

/// `rampTimes` cycles, each at one gain, and behind them `steadyTimes` cycles at `end`. The ramp rises from 0 to one
/// step short of |start - end|, whichever of the two is larger: only the size of the change counts, and this is meant,
/// see docs/BEHAVIOURS.md. A count below 1 leaves its part out.
ORN_EXPORT uint8_t* creatWaveDataByTimes(const uint8_t* data, int64_t size, float start, float end, int32_t steadyTimes,
                                         int32_t rampTimes);

#ifdef __cplusplus
}
#endif
