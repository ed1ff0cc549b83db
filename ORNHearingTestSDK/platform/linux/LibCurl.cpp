#include <ORNHearingTestSDK/platform/linux/LibCurl.h>

namespace orn {

const LibCurl& libcurl() {
  static const LibCurl library;
  return library;
}

}  // namespace orn
