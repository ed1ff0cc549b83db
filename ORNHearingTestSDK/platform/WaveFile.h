#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// The samples of a WAV file: 16-bit mono PCM at 48000 Hz. Nothing if the bytes are another format or cut off. Any
/// thread. Chunks as in the Multimedia Programming Interface and Data Specifications 1.0 (IBM and Microsoft, 1991).
ORN_EXPORT std::optional<std::vector<std::int16_t>> samplesOfWaveFile(std::span<const std::uint8_t> file);

}  // namespace orn
