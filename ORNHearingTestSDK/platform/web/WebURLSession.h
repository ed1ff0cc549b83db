#pragma once

#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

/// Requests by fetch(). Handlers come from the page's event loop, on the main thread. A browser's rules for requests
/// apply: it writes the names of the common methods in capitals, sends no body with GET, and asks other hosts only
/// where they allow it.
class WebURLSession final : public URLSession {
 public:
  void dataTask(URLRequest request, CompletionHandler completionHandler) override;
};

}  // namespace orn
