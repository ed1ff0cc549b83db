#pragma once

#include <string>

#include <ORNHearingTestSDK/common/EarResult.h>

namespace orn {

/// Draws the audiogram of both ears and writes it as PNG, at the size of a phone's screen, two pixels a point. Needs no
/// display. Throws std::runtime_error if the file can't be written.
void writeAudiogramPicture(const std::string& path, const EarResult& left, const EarResult& right);

}  // namespace orn
