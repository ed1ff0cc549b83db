#pragma once

#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

/// Requests by fetch(). Handlers come from the page's event loop, on the main thread. What a browser does to requests
/// holds: it writes the names of the common methods in capitals, sends no body by GET, and asks other hosts only where
/// they allow it.
class WebURLSession final : public URLSession {
 public:
  void dataTask(URLRequest request, CompletionHandler completionHandler) override;
};

}  // namespace orn
