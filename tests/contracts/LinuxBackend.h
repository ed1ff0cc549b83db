#pragma once

#include <memory>
#include <thread>

#include <ORNHearingTestSDK/contracts/RunLoopContract.h>
#include <ORNHearingTestSDK/contracts/TemporaryFolder.h>
#include <ORNHearingTestSDK/contracts/URLSessionContract.h>
#include <ORNHearingTestSDK/contracts/UserDefaultsContract.h>
#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>
#include <ORNHearingTestSDK/platform/linux/LinuxURLSession.h>
#include <ORNHearingTestSDK/platform/linux/LinuxUserDefaults.h>

#include "../platform/LoopbackServer.h"
#include "ContractExpectations.h"

// The parts of the Linux backend that need no sound server, as the suite of contracts takes them.

namespace orn::contract {

inline RunLoopUnderTest linuxLoop() {
  const auto made = std::make_shared<LinuxRunLoop>();
  return {made,
          [weak = std::weak_ptr(made)](std::chrono::nanoseconds span) {
            const auto loop = weak.lock();
            loop->performAfterDelay(span, [loop = loop.get()] { loop->stop(); });
            loop->run();
          },
          true};
}

inline URLSessionUnderTest linuxNetwork() {
  const auto server = std::make_shared<LoopbackServer>();
  server->script("/answer", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nthe answer");
  server->script("/broken", "HTTP/1.1 500 Broken\r\nContent-Length: 10\r\n\r\nthe answer");
  return {.session = std::make_shared<LinuxURLSession>(),
          .runFor = [server](std::chrono::nanoseconds span) { std::this_thread::sleep_for(span); },
          .answeringUrl = server->url("/answer"),
          .answer = "the answer",
          .brokenStatusUrl = server->url("/broken"),
          .refusingUrl = "http://127.0.0.1:1/",
          .silentUrl = server->url("/silent"),
          .arrived = {}};  // LinuxURLSessionTest looks at every byte
}

/// A file of settings in a folder that is removed with it.
inline UserDefaultsUnderTest linuxDefaults() {
  const auto folder = std::make_shared<TemporaryFolder>();
  const auto open = [folder] { return std::make_shared<LinuxUserDefaults>(folder->path() + "/defaults.plist"); };
  return {open(), open, withFullDisk};
}

}  // namespace orn::contract
