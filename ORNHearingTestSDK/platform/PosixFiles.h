#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// The whole of a regular file, or nothing if it can't be read. Any thread.
ORN_EXPORT std::optional<std::vector<std::uint8_t>> readFile(const std::string& path);

/// Writes a new file beside the old one, forces it to the disk and puts it in the old one's place. False if any step
/// failed; then the old file is whole and no other is left. Any thread.
ORN_EXPORT bool replaceFile(const std::string& path, std::span<const std::uint8_t> bytes);

/// Whether there is a file or a folder of that name. Any thread.
ORN_EXPORT bool fileExists(const std::string& path);

/// Removes a file or an empty folder; false if there was none or it could not be removed. Any thread.
ORN_EXPORT bool removeFile(const std::string& path);

/// Makes a folder, by its absolute path, and those above it that are missing, for this user alone. True if it is there
/// in the end. Any thread.
ORN_EXPORT bool makeFolders(const std::string& path);

}  // namespace orn
