#include <ORNHearingTestSDK/platform/AudioOutput.h>

#include <ORNHearingTestSDK/platform/PosixFiles.h>

namespace orn {

std::unique_ptr<AudioPlayer> AudioOutput::playerWithContentsOfFile(const std::string& path) {
  const auto file = readFile(path);
  return file ? playerWithData(*file) : nullptr;
}

}  // namespace orn
