#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// Files of the application and of the library. Paths are absolute UTF-8 texts. Any thread.
class ORN_EXPORT FileManager {
 public:
  virtual ~FileManager() = default;

  /// Folder for files that last, always the same one, without a slash at its end. It exists, unless it can't be made.
  virtual std::string documentsDirectory() const = 0;

  /// Folder of a resource bundle of the library, such as "wav.bundle"; nothing where there is none.
  virtual std::optional<std::string> resourceBundle(const std::string& name) const = 0;

  /// The whole file, or nothing if it can't be read.
  virtual std::optional<std::vector<std::uint8_t>> contents(const std::string& path) const = 0;

  /// Writes the whole file or leaves the old one whole, also for whoever reads meanwhile, and leaves no other file
  /// beside it; false if it was not written.
  virtual bool writeAtomically(const std::string& path, std::span<const std::uint8_t> bytes) = 0;

  virtual bool fileExists(const std::string& path) const = 0;  ///< Whether there is a file at a path.

  /// False if there was nothing to remove or it could not be removed.
  virtual bool removeFile(const std::string& path) = 0;
};

}  // namespace orn
