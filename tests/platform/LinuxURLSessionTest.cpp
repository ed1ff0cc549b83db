#include <functional>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ORNHearingTestSDK/platform/linux/LinuxURLSession.h>

#include "Environment.h"
#include "LoopbackServer.h"
#include "tls/TestAuthority.h"

namespace orn {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::size_t kMiB = 1024 * 1024;

/// So many replies, each by a word: its body, or "code: message". A session gives them one after another.
class Replies {
 public:
  explicit Replies(std::size_t count) : count_(count) {}

  URLSession::CompletionHandler handler() { return std::bind_front(&Replies::add, this); }

  void add(const URLReply& reply) {
    EXPECT_EQ(reply.error ? reply.error->domain : "transport", "transport");
    words_.push_back(reply.body ? *reply.body : std::to_string(reply.error->code) + ": " + reply.error->message);
    const auto all = all_;  // this object may go as soon as they are told
    if (words_.size() == count_) all->set_value(words_);
  }

  std::vector<std::string> wait() { return all_->get_future().get(); }

 private:
  const std::size_t count_;
  std::vector<std::string> words_;
  const std::shared_ptr<std::promise<std::vector<std::string>>> all_ =
      std::make_shared<std::promise<std::vector<std::string>>>();
};

URLRequest post(std::string url, std::chrono::milliseconds timeout = 60s) {
  return {.url = std::move(url), .method = "Post", .headers = {}, .body = "a=1&", .timeout = timeout};
}

std::string http(const std::string& body, const std::string& status = "200 OK", const std::string& headers = "") {
  return "HTTP/1.1 " + status + "\r\n" + headers + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

class LinuxURLSessionTest : public testing::Test {
 protected:
  std::string replyTo(const URLRequest& request) {
    Replies replies(1);
    LinuxURLSession session;
    session.dataTask(request, replies.handler());
    return replies.wait().at(0);
  }

  std::string answerTo(const std::string& bytes) {
    server_.script("/answer", bytes);
    return replyTo(post(server_.url("/answer")));
  }

  LoopbackServer server_;
};

TEST_F(LinuxURLSessionTest, ARequestGoesOutToTheLetter) {
  const Environment proxy("http_proxy", "http://127.0.0.1:1"), lower("no_proxy", nullptr), upper("NO_PROXY", nullptr);
  const std::string host = "\r\nHost: 127.0.0.1:" + std::to_string(server_.port());
  const std::tuple<std::string, std::string, bool, std::string> table[] = {
      {"Post", "/vrdnx/user/find?x=1&y=%20", true, std::string("name=\xE5\x90\x8D&\0&", 11)},
      {"get", "/a/../b", true, ""},
      {"POST", "/large", false, std::string(2 * kMiB, 'x')}};  // libcurl would send "Expect" ahead of it
  for (const auto& [method, path, hasType, body] : table) {
    server_.script(path, http("fine"));
    URLRequest request{server_.url(path), method, {{"app-version", ""}}, body};
    if (hasType) request.headers.emplace_back("content-type", "text/plain");
    EXPECT_EQ(replyTo(request), "fine");
    const std::string headers = std::string("\r\napp-version:") + (hasType ? "\r\ncontent-type: text/plain" : "");
    const std::string length = "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    EXPECT_TRUE(server_.requests().back() == method + " " + path + " HTTP/1.1" + host + headers + length + body)
        << server_.requests().back().substr(0, 1000);
  }
}

TEST_F(LinuxURLSessionTest, AReplyIsItsBodyOrWhatIsWrongWithIt) {
  const std::string zipped("\x1F\x8B\x08\0bytes", 9);
  const std::pair<std::string, testing::Matcher<std::string>> table[] = {
      {http("{\"rspCode\":0}", "500 Broken"), "{\"rspCode\":0}"},
      {http("no", "401 Unauthorized", "WWW-Authenticate: Basic\r\n"), "no"},
      {http(zipped, "200 OK", "Content-Encoding: gzip\r\n"), zipped},
      {http("elsewhere", "302 Found", "Location: /other\r\n"), "elsewhere"},
      {http(""), "0: the reply has no body"},
      {"HTTP/1.1 200 OK\r\nContent-Length: 20\r\n\r\nhalf a bod", HasSubstr("18: ")},
      {"", HasSubstr("52: ")},
      {"no HTTP at all", HasSubstr("1: ")}};
  for (const auto& [bytes, expected] : table) EXPECT_THAT(answerTo(bytes), expected) << bytes;
  EXPECT_EQ(server_.requests().size(), std::size(table)) << "a redirect or a second try was sent";
  const std::string largest(16 * kMiB, 'x'), tooLarge = "0: the reply is larger than 16 MiB";
  EXPECT_TRUE(answerTo(http(largest)) == largest);
  EXPECT_EQ(answerTo(http(largest + "x")), tooLarge);
  EXPECT_EQ(answerTo("HTTP/1.1 200 OK\r\n\r\n" + std::string(20 * kMiB, 'x')), tooLarge);
  for (const auto timeout : {30ms, 0ms, -1ms}) {
    EXPECT_THAT(replyTo(post(server_.url("/never"), timeout)), HasSubstr("28: ")) << timeout.count();
  }
}

TEST_F(LinuxURLSessionTest, WhatCantGoOutAsGivenIsAnError) {
  const std::string url = server_.url("/x"), nul(1, '\0'), rest = url.substr(7), injected = "\r\nInjected: 1";
  using Header = std::pair<std::string, std::string>;
  std::vector<URLRequest> requests;
  for (const std::string& address :
       {""s, "no address"s, rest, "http://"s, "http://127.0.0.1:99999999/"s, "ftp://" + rest, "file:///etc/hostname"s,
        "http://user:word@" + rest, url + " HTTP/1.1", url + injected, url + nul + "y"}) {
    requests.push_back(post(address));
  }
  for (const std::string& method : {""s, "Po st"s, "Post" + injected, nul}) {
    requests.emplace_back(post(url)).method = method;
  }
  for (const Header& header : {Header("", "x"), {"a b", "x"}, {"a:", "x"}, {"a", "x" + injected}, {"a", "x" + nul}}) {
    requests.emplace_back(post(url)).headers = {header};
  }
  for (const URLRequest& request : requests) {
    EXPECT_THAT(replyTo(request), testing::MatchesRegex("[0-9]+: .+")) << request.url << " " << request.method;
  }
  EXPECT_EQ(server_.requests().size(), 0U);
}

TEST_F(LinuxURLSessionTest, AsksOnlyWhoProvesItsName) {
  TestAuthority authority, unknown;
  const std::string here = "IP:127.0.0.1", own = authority.certificate();
  const std::pair<TestAuthority::Issued, std::string> table[] = {
      {authority.issue("DNS:localhost," + here), "^fine$"},
      {unknown.issue(here), "^60: .*unable to get local issuer certificate"},
      {authority.issue("DNS:other.example,IP:127.0.0.2"), "^60: .*(name|IP address).* '127.0.0.1'"},
  };
  for (const auto& [shown, expected] : table) {
    const std::pair<const char*, std::string> trust[] = {
        {own.c_str(), expected}, {nullptr, "^60: "}, {"/no/such/file", "^77: "}};
    for (const auto& [trusted, said] : trust) {
      const Environment file("SSL_CERT_FILE", trusted);
      LoopbackServer server(serverContext(shown));
      server.script("/x", http("fine"));
      const std::string reply = replyTo(post(server.url("/x")));
      EXPECT_THAT(reply, testing::ContainsRegex(said));
      EXPECT_EQ(server.requests().size(), reply == "fine" ? 1U : 0U);
    }
  }
}

TEST_F(LinuxURLSessionTest, NeverGoesOnInPlain) {
  TestAuthority authority;
  const Environment trusted("SSL_CERT_FILE", authority.certificate().c_str());
  server_.script("/x", http("plain"));
  EXPECT_THAT(replyTo(post("https" + server_.url("/x").substr(4), 1s)), HasSubstr("28: "));
  server_.waitForRequests(1);
  LoopbackServer secure(serverContext(authority.issue("IP:127.0.0.1")));
  secure.script("/x", http("elsewhere", "307 Temporary Redirect", "Location: " + server_.url("/x") + "\r\n"));
  EXPECT_EQ(replyTo(post(secure.url("/x"))), "elsewhere");
  EXPECT_THAT(server_.requests(), testing::Each(testing::Not(HasSubstr("Post"))));
}

TEST_F(LinuxURLSessionTest, ItsEndAnswersWhatIsUnderWayEvenIfAHandlerBringsItAbout) {
  const std::string ended = "0: the session has ended";
  server_.script("/answer", http("answer"));
  for (const bool isByHandler : {false, true}) {
    Replies replies(3);
    auto session = std::make_unique<LinuxURLSession>();
    const std::size_t before = server_.requests().size();
    for (int i = 0; i < 2; ++i) session->dataTask(post(server_.url("/never")), replies.handler());
    server_.waitForRequests(before + 2);
    session->dataTask(post(server_.url(isByHandler ? "/answer" : "/never")), [&](const URLReply& answer) {
      if (isByHandler) session.reset();
      replies.add(answer);
    });
    if (!isByHandler) session.reset();
    EXPECT_THAT(replies.wait(), ElementsAre(isByHandler ? "answer" : ended, ended, ended));
  }
}

TEST_F(LinuxURLSessionTest, AHandlerMayHoldTheSessionsLastReference) {
  server_.script("/answer", http("answer"));
  Replies replies(2);
  auto session = std::make_shared<LinuxURLSession>();
  const std::weak_ptr<LinuxURLSession> watched = session;
  auto& asked = *session;
  asked.dataTask(post(server_.url("/answer")), [&replies, session = std::move(session)](const URLReply& answer) {
    session->dataTask(post("http://"), replies.handler());
    replies.add(answer);
  });
  EXPECT_THAT(replies.wait(), testing::SizeIs(2));
  EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace orn
