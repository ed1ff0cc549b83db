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

/// Whether there is a file or a folder of that name. Any thread.
bool fileExists(const std::string& path);

/// Removes a file or an empty folder; false if there was none or it could not be removed. Any thread.
bool removeFile(const std::string& path);

/// Makes a folder, by its absolute path, and those above it that are missing, for this user alone. True if it stands
/// there in the end. Any thread.
bool makeFolders(const std::string& path);

}  // namespace orn
