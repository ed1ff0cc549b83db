#include <atomic>
#include <cctype>
#include <thread>
#include <utility>

#include "BrokenCopies.h"
#include "LinuxBackend.h"
#include "examples/backend-contracts/SimulatedBackend.h"

namespace orn::contract {
namespace {

using namespace std::chrono_literals;

struct BrokenNetwork final : URLSession {
  explicit BrokenNetwork(const URLSessionUnderTest& copy) : answer(copy.answer), real(copy.session) {}

  void dataTask(URLRequest request, CompletionHandler handler) override {
    const int number = ++count;
    if (breaks("a request that is not answered")) request.timeout = 24h;
    if (breaks("method, headers and body"))
      std::erase_if(request.headers, [](const auto& header) { return header.second.empty(); });
    if (breaks("dataTask() returns") && number == 1 && request.url.ends_with("/answer")) {
      real->dataTask(std::move(request), [](auto) {});
      return handler({answer, {}});
    }
    if (breaks("a handler may ask again") && isWithin) return;
    if (breaks("requests may be under way")) waiting.push_back(handler);
    const bool isOther = std::this_thread::get_id() != here && number > 5;
    real->dataTask(request, [=, this](URLReply reply) { answerWith(std::move(reply), request.url, handler, isOther); });
  }

  void answerWith(URLReply reply, const std::string& url, CompletionHandler handler, bool isOther) {
    const bool isOnly = count == 1;
    if (breaks("the body of the reply") && isOnly && reply.body && url.ends_with("/answer")) reply.body->pop_back();
    if (breaks("whatever the status") && url.ends_with("/whatever")) reply = {std::nullopt, Error{"http", 500, "bad"}};
    if (breaks("an address that nobody") && isOnly && url.ends_with("/nobody")) reply = {};
    if (breaks("any thread may ask") && isOther) reply = {std::nullopt, Error{"transport", 1, "busy"}};
    if (breaks("the handler is called exactly once") && isOnly) handler(reply);
    if (breaks("handlers come on") && isOnly) return std::thread([&] { handler(reply); }).join();
    if (breaks("requests may be under way")) {
      handler = std::move(waiting.back());
      waiting.pop_back();
    }
    isWithin = true;
    handler(std::move(reply));
    isWithin = false;
  }

  std::string answer;
  std::atomic<int> count = 0;
  std::atomic<bool> isWithin = false;
  std::vector<CompletionHandler> waiting;
  std::thread::id here = std::this_thread::get_id();
  std::shared_ptr<URLSession> real;  // the last one: its threads end before what they use
};

/// The simulated session does not check that any thread may ask.
URLSessionUnderTest brokenNetwork() {
  URLSessionUnderTest copy = breaks("any thread may ask") ? linuxNetwork() : example::network();
  if (copy.brokenStatusUrl.empty()) copy.brokenStatusUrl = copy.answeringUrl + "/whatever";
  copy.session = std::make_shared<BrokenNetwork>(copy);
  return copy;
}

TEST(BrokenCopies, OfTheNetworkAreNamed) { expectEachNamed<URLSessionUnderTest>(checkURLSession, brokenNetwork); }

}  // namespace
}  // namespace orn::contract
