#include <thread>
#include <utility>

#include "BrokenCopies.h"
#include "examples/backend-contracts/SimulatedBackend.h"

namespace orn::contract {
namespace {

using namespace std::chrono_literals;

struct BrokenNetwork final : URLSession {
  void dataTask(URLRequest request, CompletionHandler handler) override {
    if (breaks("a request that is not answered")) request.timeout = 24h;
    if (breaks("method, headers and body")) request.headers.pop_back();
    if (breaks("dataTask() returns")) return handler({"the answer", {}});
    if (breaks("a handler may ask again") && isWithin) return;
    if (breaks("requests may be under way")) std::swap(request.url, before);
    real->dataTask(request, [this, handler](URLReply reply) {
      if (breaks("the body of the reply")) reply.body = reply.body->substr(1);
      if (breaks("whatever the status")) reply = {std::nullopt, Error{"http", 500, "bad"}};
      if (breaks("an address that nobody")) reply = {};
      if (breaks("the handler is called exactly once")) handler(reply);
      if (breaks("handlers come on")) return std::thread([&] { handler(reply); }).join();
      isWithin = true;
      handler(std::move(reply));
      isWithin = false;
    });
  }

  std::shared_ptr<URLSession> real;
  std::string before;  // the address of the request before this one
  bool isWithin = false;
};

TEST(BrokenCopies, OfTheNetworkAreNamed) {
  expectEachNamed<URLSessionUnderTest>(checkURLSession, [] {
    URLSessionUnderTest copy = example::network();
    copy.brokenStatusUrl = copy.answeringUrl;
    const auto broken = std::make_shared<BrokenNetwork>();
    broken->real = std::exchange(copy.session, broken);
    return copy;
  });
}

}  // namespace
}  // namespace orn::contract
