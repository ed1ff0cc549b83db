#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/PosixFileManager.h>

namespace orn {

/// Files in the page's memory; the documents are kept in IndexedDB, to which each change is written in the background.
class WebFileManager final : public PosixFileManager {
 public:
  std::string documentsDirectory() const override;
  bool writeAtomically(const std::string& path, std::span<const std::uint8_t> bytes) override;
  bool removeFile(const std::string& path) override;
};

}  // namespace orn
