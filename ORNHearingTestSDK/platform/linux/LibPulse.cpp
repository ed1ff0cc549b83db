#include <ORNHearingTestSDK/platform/linux/LibPulse.h>

namespace orn {

const LibPulse& libpulse() {
  static const LibPulse library;
  return library;
}

}  // namespace orn
