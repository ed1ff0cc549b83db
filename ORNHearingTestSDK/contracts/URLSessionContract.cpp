#include <ORNHearingTestSDK/contracts/URLSessionContract.h>

#include <algorithm>
#include <mutex>
#include <thread>
#include <utility>

#include <ORNHearingTestSDK/contracts/Checking.h>

namespace orn::contract {
namespace {

using namespace std::chrono_literals;

/// A session, its replies, and the threads on which they came.
class URLCheck {
 public:
  explicit URLCheck(URLSessionUnderTest session) : backend(std::move(session)) {}

  /// A request to a URL; ends the check if that is empty.
  URLRequest request(const std::string& url, const char* hook, std::chrono::milliseconds timeout = 20s) const {
    if (url.empty()) throw NotChecked{std::string("needs the address ") + hook};
    return {.url = url, .method = "Post", .headers = {{"app-version", "1"}}, .body = "a=1&", .timeout = timeout};
  }
  URLRequest answered() const { return request(backend.answeringUrl, "answeringUrl"); }

  void ask(const URLRequest& request) { backend.session->dataTask(request, handler()); }

  URLSession::CompletionHandler handler() {
    return [notes = notes_](URLReply reply) {
      const std::lock_guard lock(notes->mutex);
      notes->replies.push_back(std::move(reply));
      notes->threads.push_back(std::this_thread::get_id());
    };
  }

  /// The replies so far.
  std::vector<URLReply> replies() const {
    const std::lock_guard lock(notes_->mutex);
    return notes_->replies;
  }
  std::vector<std::thread::id> threads() const {
    const std::lock_guard lock(notes_->mutex);
    return notes_->threads;
  }

  /// Waits until that many replies have come.
  std::vector<URLReply> wait(std::size_t count) {
    for (int i = 0; i < 600 && replies().size() < count; ++i) backend.runFor(10ms);
    expect(replies().size() >= count,
           std::to_string(replies().size()) + " replies came instead of " + std::to_string(count));
    return replies();
  }

  void expectAnswers(std::size_t count) {
    for (const URLReply& reply : wait(count)) {
      expect(!reply.error, "an error came: " + reply.error.value_or(Error{}).message);
      expect(reply.body == backend.answer, "the body is another");
    }
  }

  void expectError() {
    const URLReply reply = wait(1).front();
    expect(!reply.body && reply.error, "there is a body, or no error");
    expect(!reply.error->domain.empty(), "the error does not say who speaks");
    expect(!reply.error->message.empty() && reply.error->message.find('\n') == std::string::npos,
           "the error's message is not one line");
  }

  URLSessionUnderTest backend;

 private:
  struct Notes {
    std::mutex mutex;
    std::vector<URLReply> replies;
    std::vector<std::thread::id> threads;
  };

  std::shared_ptr<Notes> notes_ = std::make_shared<Notes>();
};

const Contract<URLCheck> kURLSessionContracts[] = {
    {"the body of the reply comes whole",
     [](URLCheck& check) {
       check.ask(check.answered());
       check.expectAnswers(1);
     }},

    {"whatever the status is, the body is the reply",
     [](URLCheck& check) {
       check.ask(check.request(check.backend.brokenStatusUrl, "brokenStatusUrl"));
       check.expectAnswers(1);
     }},

    {"the handler is called exactly once",
     [](URLCheck& check) {
       check.ask(check.answered());
       check.wait(1);
       check.backend.runFor(200ms);
       expect(check.replies().size() == 1, "it was called again");
     }},

    {"dataTask() returns before the handler is called",
     [](URLCheck& check) {
       // A handler on another thread waits for the end of the call.
       std::mutex isGoingOn;
       bool isWithin = true, wasWithin = false;
       const auto here = std::this_thread::get_id();
       {
         const std::lock_guard lock(isGoingOn);
         check.backend.session->dataTask(check.answered(), [&, done = check.handler()](URLReply reply) {
           if (std::this_thread::get_id() == here) {
             wasWithin = isWithin;
           } else {
             const std::lock_guard wait(isGoingOn);
           }
           done(std::move(reply));
         });
         isWithin = false;
       }
       check.wait(1);
       expect(!wasWithin, "it was called from within");
     }},

    {"handlers come on a thread of the session's own, or from the loop in a simulated one",
     [](URLCheck& check) {
       check.ask(check.answered());
       check.wait(1);
       const bool isMain = check.threads().front() == std::this_thread::get_id();
       expect(isMain == check.backend.callsFromLoop, isMain ? "one came on the main thread" : "one came elsewhere");
     }},

    {"an address that nobody answers at is an error without a body",
     [](URLCheck& check) {
       check.ask(check.request(check.backend.refusingUrl, "refusingUrl"));
       check.expectError();
     }},

    {"a request that is not answered ends in an error at its timeout",
     [](URLCheck& check) {
       check.ask(check.request(check.backend.silentUrl, "silentUrl", 50ms));
       check.expectError();
     }},

    {"method, headers and body go out to the letter",
     [](URLCheck& check) {
       const auto& arrived = needed(check.backend.arrived, "arrived");
       for (const std::string method : {"Post", "get", "POST"}) {
         URLRequest request = check.answered();
         request.method = method;
         request.headers = {{"Accept", "application/json"}, {"app-version", ""}, {"b", "c: d"}};
         request.body = std::string("name=\xE5\x90\x8D&\0&", 11);
         const std::size_t before = check.replies().size();
         check.ask(request);
         check.wait(before + 1);
         expect(!arrived().empty(), "nothing arrived");
         const URLRequest last = arrived().back();
         expect(last.method == method, "the method " + method + " arrived as " + last.method);
         expect(last.body == request.body, "the body arrived as another one");
         for (const auto& header : request.headers) {
           expect(std::find(last.headers.begin(), last.headers.end(), header) != last.headers.end(),
                  "the header " + header.first + " did not arrive as it was sent");
         }
       }
     }},

    {"requests may be under way at the same time, and each gets its own reply",
     [](URLCheck& check) {
       constexpr std::size_t count = 20;
       std::vector<std::string> bodies(count);
       std::mutex mutex;
       const auto askFor = [&](std::size_t i) {
         const auto request = i % 2 == 0 ? check.answered() : check.request(check.backend.refusingUrl, "refusingUrl");
         check.backend.session->dataTask(request, [&, i, done = check.handler()](URLReply reply) {
           {
             const std::lock_guard lock(mutex);
             bodies[i] = reply.body.value_or("none");
           }
           done(std::move(reply));
         });
       };
       for (std::size_t i = 0; i < count; ++i) askFor(i);
       check.wait(count);
       for (std::size_t i = 0; i < count; ++i) {
         expect(bodies[i] == (i % 2 == 0 ? check.backend.answer : "none"), "a request got the reply of another");
       }
     }},

    {"any thread may ask",
     [](URLCheck& check) {
       if (check.backend.callsFromLoop) throw NotChecked{"a simulated session is used on the main thread"};
       constexpr std::size_t count = 10;
       const URLRequest request = check.answered();
       std::vector<std::thread> callers;
       for (std::size_t i = 0; i < count; ++i) callers.push_back(newThread([&] { check.ask(request); }));
       for (std::thread& caller : callers) caller.join();
       check.expectAnswers(count);
     }},

    {"a handler may ask again",
     [](URLCheck& check) {
       const URLRequest request = check.answered();
       check.backend.session->dataTask(request, [&, done = check.handler()](URLReply reply) {
         check.ask(request);
         done(std::move(reply));
       });
       check.wait(2);
     }},
};

}  // namespace

Report checkURLSession(const std::function<URLSessionUnderTest()>& make) {
  return checkAll<URLCheck>("URLSession", kURLSessionContracts, make);
}

}  // namespace orn::contract
