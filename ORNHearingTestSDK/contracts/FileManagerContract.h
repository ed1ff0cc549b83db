#pragma once

#include <functional>
#include <memory>

#include <ORNHearingTestSDK/contracts/Contract.h>
#include <ORNHearingTestSDK/platform/FileManager.h>

namespace orn::contract {

/// A file manager whose documents folder holds nothing that matters; the suite writes there. The hook may be empty, and
/// the contract that needs it is not checked then.
struct FileManagerUnderTest {
  std::shared_ptr<FileManager> files;  ///< A file manager whose documents folder may be written to.

  /// Makes a call while the disk takes nothing more, or only a few hundred bytes.
  std::function<void(const std::function<void()>& call)> withFullDisk;
};

Report checkFileManager(const std::function<FileManagerUnderTest()>& make);

}  // namespace orn::contract
