// A request of any method, path and body to the reference service: it answers, and can list what it has stored.

#include <fuzzer/FuzzedDataProvider.h>

#include <chrono>
#include <memory>
#include <nlohmann/json.hpp>

#include "fuzz/Expect.h"
#include "hearing-service/Endpoints.h"

namespace {

using namespace orn::service;

/// Replaced from time to time, so that it stays small.
TestStore& store() {
  constexpr int kRequestsOfAStore = 500;
  static std::unique_ptr<TestStore> one;
  static int requests = 0;
  if (!one || ++requests % kRequestsOfAStore == 0) one = std::make_unique<TestStore>(":memory:");
  return *one;
}

Request formed(FuzzedDataProvider& data) {
  static const std::string known[] = {"/vrdnx/user/findSdkDeviceValue", "/vrdnx/user/acquireListenTest",
                                      "/vrdnx/user/sdkRegister", "/vrdnx/user/sdkJonDiagnose2/"};
  Request request;
  request.method = data.ConsumeIntegralInRange(0, 15) > 0 ? "Post" : data.ConsumeRandomLengthString(8);
  request.target = data.PickValueInArray(known) + data.ConsumeRandomLengthString(32);
  request.body = data.ConsumeRemainingBytesAsString();
  return request;
}

/// The text up to the first line break is the target, the rest the body; so the corpus can be read.
Request plain(const std::string& text) {
  const auto end = text.find('\n');
  return {"Post", text.substr(0, end), end == std::string::npos ? "" : text.substr(end + 1)};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const bool isPlain = size > 0 && bytes[0] == '/';
  const Request request = isPlain ? plain(data.ConsumeRemainingBytesAsString()) : formed(data);
  const auto now = std::chrono::system_clock::time_point(std::chrono::hours(490'000));
  const auto reply = replyTo(request, store(), now);
  const auto code = reply.at("rspCode").get<int>();
  orn::fuzz::expect(code == 0 || code == 1, "a request is good or bad, and the store holds");
  reply.dump();  // throws on a text that is not UTF-8
  return 0;
}
