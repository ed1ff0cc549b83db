#include <atomic>
#include <cctype>
#include <mutex>
#include <thread>
#include <utility>

#include "BrokenCopies.h"
#include "LinuxBackend.h"
#include "examples/backend-contracts/SimulatedBackend.h"

namespace orn::contract {
namespace {

using namespace std::chrono_literals;

/// A session whose requests a test changes, by their number and with the handler that the reply is meant for.
struct ChangedURLSession final : URLSession {
  using Task = std::function<void(URLRequest, CompletionHandler, int number)>;

  void dataTask(URLRequest request, CompletionHandler handler) override {
    task(std::move(request), std::move(handler), ++count);
  }

  Task task;
  std::atomic<int> count = 0;
};

using Change = std::function<void(ChangedURLSession& session, URLSessionUnderTest& copy, URLSession& real)>;

std::function<URLSessionUnderTest()> networkThat(
    const Change& change, const std::function<URLSessionUnderTest()>& make = [] {
      auto copy = example::network();
      copy.brokenStatusUrl = copy.answeringUrl + "/whatever";
      return copy;
    }) {
  return [change, make] {
    URLSessionUnderTest copy = make();
    const auto changed = std::make_shared<ChangedURLSession>();
    change(*changed, copy, *copy.session);
    copy.session = std::shared_ptr<URLSession>(changed.get(), [changed = std::shared_ptr<ChangedURLSession>(changed),
                                                               real = copy.session](URLSession*) mutable {
      real.reset();  // its threads end before what they use
      changed.reset();
    });
    return copy;
  };
}

std::function<URLSessionUnderTest()> requestThat(const std::function<void(URLRequest&)>& change) {
  return networkThat([change](ChangedURLSession& session, URLSessionUnderTest&, URLSession& real) {
    session.task = [&real, change](URLRequest request, auto handler, int) {
      change(request);
      real.dataTask(std::move(request), std::move(handler));
    };
  });
}

/// Changes how the handler gets the reply to the session's first and only request.
std::function<URLSessionUnderTest()> onlyReplyThat(
    const std::function<void(const URLRequest&, URLReply, const URLSession::CompletionHandler&)>& change) {
  return networkThat([change](ChangedURLSession& session, URLSessionUnderTest&, URLSession& real) {
    session.task = [&real, &session, change](const URLRequest& request, auto handler, int) {
      real.dataTask(request, [&session, change, request, handler](URLReply reply) {
        session.count == 1 ? change(request, std::move(reply), handler) : handler(std::move(reply));
      });
    };
  });
}

const std::vector<BrokenCopy<URLSessionUnderTest>> kNetworks = {
    {"the body of the reply", onlyReplyThat([](const URLRequest& request, URLReply reply, const auto& handler) {
       if (reply.body && request.url.ends_with("/answer")) reply.body->pop_back();
       handler(std::move(reply));
     })},
    {"whatever the status is", onlyReplyThat([](const URLRequest& request, URLReply reply, const auto& handler) {
       if (request.url.ends_with("/whatever")) reply = {std::nullopt, Error{"http", 500, "broken"}};
       handler(std::move(reply));
     })},
    {"the handler is called exactly once",
     onlyReplyThat([](const URLRequest&, const URLReply& reply, const auto& handler) {
       for (int i = 0; i < 2; ++i) handler(reply);
     })},
    {"dataTask() returns", networkThat([](ChangedURLSession& session, URLSessionUnderTest& copy, URLSession& real) {
       session.task = [&real, url = copy.answeringUrl, answer = copy.answer](const URLRequest& request, auto handler,
                                                                             int number) {
         if (number > 1 || request.url != url) return real.dataTask(request, std::move(handler));
         real.dataTask(request, [](auto) {});
         handler({answer, {}});
       };
     })},
    {"handlers come", onlyReplyThat([](const URLRequest&, const URLReply& reply, const auto& handler) {
       std::thread([&] { handler(reply); }).join();
     })},
    {"handlers come", networkThat(
                          [](ChangedURLSession& session, URLSessionUnderTest& copy, URLSession& real) {
                            // On the main thread, where the loop would run.
                            struct Replies {
                              std::mutex mutex;
                              std::vector<std::function<void()>> waiting;
                            };
                            const auto replies = std::make_shared<Replies>();
                            session.task = [&real, replies](URLRequest request, auto handler, int) {
                              real.dataTask(std::move(request), [replies, handler](const URLReply& reply) {
                                const std::lock_guard lock(replies->mutex);
                                replies->waiting.emplace_back([handler, reply] { handler(reply); });
                              });
                            };
                            copy.runFor = [replies, runFor = copy.runFor](auto span) {
                              runFor(span);
                              std::vector<std::function<void()>> come;
                              {
                                const std::lock_guard lock(replies->mutex);
                                come.swap(replies->waiting);
                              }
                              for (const auto& reply : come) reply();
                            };
                          },
                          linuxNetwork)},
    {"an address that nobody", onlyReplyThat([](const URLRequest& request, URLReply reply, const auto& handler) {
       if (request.url.ends_with("/nobody")) reply = {};
       handler(std::move(reply));
     })},
    {"a request that is not answered", requestThat([](URLRequest& request) { request.timeout = 24h; })},
    {"method, headers and body", requestThat([](URLRequest& request) {
       for (char& letter : request.method) letter = static_cast<char>(std::toupper(letter));
     })},
    {"method, headers and body", requestThat([](URLRequest& request) {
       std::erase_if(request.headers, [](const auto& header) { return header.second.empty(); });
     })},
    {"requests may be under way", networkThat([](ChangedURLSession& session, URLSessionUnderTest&, URLSession& real) {
       session.task = [&real, waiting = std::make_shared<std::vector<URLSession::CompletionHandler>>()](
                          URLRequest request, auto handler, int) {
         waiting->push_back(std::move(handler));
         real.dataTask(std::move(request), [waiting](URLReply reply) {
           const auto youngest = std::move(waiting->back());
           waiting->pop_back();
           youngest(std::move(reply));
         });
       };
     })},
    {"any thread may ask", networkThat(
                               [](ChangedURLSession& session, URLSessionUnderTest&, URLSession& real) {
                                 session.task = [&real, here = std::this_thread::get_id()](
                                                    const URLRequest& request, const auto& handler, int number) {
                                   const bool isOther = std::this_thread::get_id() != here && number > 5;
                                   real.dataTask(request, [isOther, handler](URLReply reply) {
                                     if (isOther) reply = {std::nullopt, Error{"transport", 1, "busy"}};
                                     handler(std::move(reply));
                                   });
                                 };
                               },
                               linuxNetwork)},
    {"a handler may ask again", networkThat([](ChangedURLSession& session, URLSessionUnderTest&, URLSession& real) {
       session.task = [&real, isWithin = std::make_shared<bool>(false)](URLRequest request, auto handler, int) {
         if (*isWithin) return;
         real.dataTask(std::move(request), [isWithin, handler](URLReply reply) {
           *isWithin = true;
           handler(std::move(reply));
           *isWithin = false;
         });
       };
     })},
};

TEST(BrokenCopies, OfTheNetworkAreNamed) { expectNamed("URLSession", checkURLSession, kNetworks); }

}  // namespace
}  // namespace orn::contract
