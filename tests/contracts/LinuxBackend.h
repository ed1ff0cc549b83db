#pragma once

#include <atomic>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <thread>

#include <ORNHearingTestSDK/contracts/RunLoopContract.h>
#include <ORNHearingTestSDK/contracts/URLSessionContract.h>
#include <ORNHearingTestSDK/contracts/UserDefaultsContract.h>
#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>
#include <ORNHearingTestSDK/platform/linux/LinuxURLSession.h>
#include <ORNHearingTestSDK/platform/linux/LinuxUserDefaults.h>

#include "../platform/LoopbackServer.h"
#include "ContractExpectations.h"

// The parts of the Linux backend that need no sound server, as the suite of contracts wants them.

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

/// The request that these bytes are, but for its address.
inline URLRequest parsed(const std::string& bytes) {
  URLRequest request;
  std::istringstream lines(bytes);
  std::string line;
  std::getline(lines, line);
  request.method = line.substr(0, line.find(' '));
  while (std::getline(lines, line) && line != "\r") {
    line.pop_back();
    const std::size_t colon = line.find(':');
    const std::size_t value = line.find_first_not_of(' ', colon + 1);
    request.headers.emplace_back(line.substr(0, colon), value == std::string::npos ? "" : line.substr(value));
  }
  request.body = bytes.substr(bytes.find("\r\n\r\n") + 4);
  return request;
}

inline URLSessionUnderTest linuxNetwork() {
  const auto server = std::make_shared<LoopbackServer>();
  server->script("/answer", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nthe answer");
  server->script("/broken", "HTTP/1.1 500 Broken\r\nContent-Length: 10\r\n\r\nthe answer");
  return {.session = std::make_shared<LinuxURLSession>(),
          .runFor = [](std::chrono::nanoseconds span) { std::this_thread::sleep_for(span); },
          .answeringUrl = server->url("/answer"),
          .answer = "the answer",
          .brokenStatusUrl = server->url("/broken"),
          .refusingUrl = "http://127.0.0.1:1/",
          .silentUrl = server->url("/silent"),
          .arrived =
              [server] {
                std::vector<URLRequest> requests;
                for (const std::string& bytes : server->requests()) requests.push_back(parsed(bytes));
                return requests;
              }};
}

/// A file of settings in a folder that goes with it.
inline UserDefaultsUnderTest linuxDefaults() {
  std::string name = std::filesystem::temp_directory_path() / "defaults.XXXXXX";
  const std::shared_ptr<std::string> folder(new std::string(mkdtemp(name.data())), [](std::string* path) {
    std::filesystem::remove_all(*path);
    delete path;
  });
  const auto open = [folder] { return std::make_shared<LinuxUserDefaults>(*folder + "/defaults.plist"); };
  return {open(), open, withFullDisk};
}

}  // namespace orn::contract
