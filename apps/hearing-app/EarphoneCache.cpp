#include "hearing-app/EarphoneCache.h"

#include <algorithm>
#include <string>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/platform/FileManager.h>
#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {
namespace {

/// The model that the device selection tests with.
constexpr auto kModel = "1";

}  // namespace

void clearEarphoneCache() {
  FileManager& files = *Platform::current().fileManager;
  const std::string folder = files.documentsDirectory();
  if (folder.empty()) return;
  std::string name = ORNHearingTest::platform() + "_" + kModel;
  std::replace(name.begin(), name.end(), '/', '_');  // as the library names it
  files.removeFile(folder + "/" + name);
}

}  // namespace orn
