#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orn {

/// The whole of a regular file, or nothing if it can't be read. Any thread.
std::optional<std::vector<std::uint8_t>> readFile(const std::string& path);

/// Writes a new file beside the old one, forces it to the disk and puts it in the old one's place. False if any step
/// failed; the old file is whole then and no other is left. Any thread.
bool replaceFile(const std::string& path, std::span<const std::uint8_t> bytes);

}  // namespace orn
