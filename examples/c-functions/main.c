/* The exported functions and tables from C: writes two seconds of 1000 Hz at a tenth of full scale as a WAV file.
   Usage: c-functions FILE */

#include <stdio.h>

#include <ORNHearingTestSDK/audio/SineTables.h>
#include <ORNHearingTestSDK/audio/WaveChange.h>
#include <ORNHearingTestSDK/common/Version.h>

enum { kRate = 48000, kSeconds = 2, kCycles = 1000 * kSeconds, kFadeCycles = 50 };

static int writeWave(FILE* file) {
  const int64_t cycle = sizeof WAV_b_1000_DATA;
  const uint32_t size = (uint32_t)(cycle * kCycles);
  uint8_t* header = createWaveHeader(size, 1, kRate, 16);
  uint8_t* samples = creatWaveDataByTimes(WAV_b_1000_DATA, cycle, 0, 0.1F, kCycles - kFadeCycles, kFadeCycles);
  const int isWritten = header && samples &&
                        fwrite(header, 1, (size_t)getWaveHeaderSize(), file) == (size_t)getWaveHeaderSize() &&
                        fwrite(samples, 1, size, file) == size;
  freeWaveData(samples);
  freeWaveHeader(header);
  return isWritten;
}

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  FILE* file = fopen(argv[1], "wb");
  if (!file) {
    perror(argv[1]);
    return 1;
  }
  const int isWritten = writeWave(file);
  const int isClosed = fclose(file) == 0;
  printf("version %.1f: %s\n", ORNHearingTestSDKVersionNumber, isWritten && isClosed ? "written" : "not written");
  return isWritten && isClosed ? 0 : 1;
}
