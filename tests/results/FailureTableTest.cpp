#include <atomic>
#include <thread>
#include <utility>

#include <ORNHearingTestSDK/results/ResultSubmission.h>

#include "ServiceScript.h"

namespace orn {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;

/// What an operation's callback hears: "nothing", "ok", "within the call: ok" or, of two calls, "ok and ok".
std::string heardBy(ServiceScript& script, const ServiceOperation& operation) {
  std::string heard;
  bool isWithin = true;
  operation.start([&](const std::string& what) {
    if (!heard.empty()) heard += " and ";
    heard += (isWithin ? "within the call: " : "") + what;
  });
  isWithin = false;
  script.run();
  return heard.empty() ? "nothing" : heard;
}

std::string heardBy(const std::string& operation, const std::optional<std::string>& reply) {
  ServiceScript script;
  script.knowsUser();
  reply ? script.answers(*reply) : script.fails();
  const std::string heard = heardBy(script, serviceOperation(operation));
  EXPECT_EQ(script.requestCount(), 1U);
  return heard;
}

TEST(FailureTable, TellsEachCallbackWhatCameOfItsRequest) {
  const struct {
    const char* operation;
    std::string noBody, notJson, noObject, refused, accepted;
  } table[] = {
      {"getListenTest", "transport 7 gone", "json", "json", "ok", "ok [{\"id\":2},{\"id\":1}]"},
      {"listenTest", "transport 7 gone", "json", "json", "ok", "ok"},
      {"submit", "transport 7 gone", "json", "json", "service", "ok"},
      {"fetch history", "transport 7 gone", "json", "json", "service", "ok [{\"id\":2},{\"id\":1}]"},
      {"registerUser", "transport 7 gone", "json", "json", "service", "ok"},
      {"postListenTest", "transport 7 gone", "json", "ok", "ok", "ok"},
      {"setAppUserID", "transport 7 gone", "json", "ok", "ok", "ok"},
      {"setKV50MAC", "transport 7 gone", "ok", "ok", "ok", "ok"},
      {"getTestHistoryByMAC", "transport 7 gone", "ok", "ok", "ok", "ok"},
      {"setEarPlugModel", "transport 7 gone", "ok", "ok", "ok", "ok"},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.operation);
    EXPECT_EQ(heardBy(row.operation, std::nullopt), row.noBody);
    for (const std::string& reply : {"<html>"s, ""s, "{\"rspCode\":0"s, "{\"rspCode\":0}}"s, "{\"a\":\"\xFF\"}"s, "\0"s,
                                     "null"s, "5"s, "\"{}\""s, "{\"a\":1e999}"s, std::string(1'000'000, '[')}) {
      EXPECT_EQ(heardBy(row.operation, reply), row.notJson) << reply.substr(0, 20);
    }
    for (const char* reply : {"[]", "[{\"rspCode\":1}]"}) {
      EXPECT_EQ(heardBy(row.operation, reply), row.noObject) << reply;
    }
    for (const char* code : {"1", "-1", "\"1\"", "true", "4294967296"}) {
      EXPECT_EQ(heardBy(row.operation, "{\"rspCode\":"s + code + ",\"listenTests\":[1]}"), row.refused) << code;
    }
    for (const char* code : {"0", "\"0\"", "null", "\"\"", "false"}) {
      EXPECT_EQ(heardBy(row.operation, "{\"rspCode\":"s + code + ",\"listenTests\":[{\"id\":2},{\"id\":1}]}"),
                row.accepted)
          << code;
    }
  }
  EXPECT_EQ(heardBy("getListenTest", "{\"rspCode\":0,\"listenTests\":null}"), "ok");
  EXPECT_EQ(heardBy("getListenTest", "{\"rspCode\":0,\"listenTests\":[]}"), "ok []");
}

TEST(FailureTable, WithoutAKeyNothingIsSentAndOnlyTheTypedOperationsTellIt) {
  const std::pair<const char*, const char*> table[] = {{"getListenTest", "nothing"},
                                                       {"listenTest", "nothing"},
                                                       {"postListenTest", "nothing"},
                                                       {"submit", "registration 0"},
                                                       {"fetch history", "registration 0"}};
  for (const char* missing : {"APPKEY", "USERID"}) {
    for (const auto& [operation, heard] : table) {
      ServiceScript script;
      script.knowsUser();
      script.machine.userDefaults->removeValue(missing);
      EXPECT_EQ(heardBy(script, serviceOperation(operation)), heard) << operation << " without " << missing;
      EXPECT_EQ(script.requestCount(), 0U);
    }
  }
}

TEST(FailureTable, TellsARefusalOrALossInItsOwnWordsOnOneShortLine) {
  const std::string ears = "\u542c\u529b", filler(1000, 'x');
  const std::pair<URLReply, std::string> table[] = {
      {{R"({"rspCode":7,"rspDesc":"no such user"})", {}}, "service 7: no such user"},
      {{R"({"rspCode":"-2","rspDesc":")" + ears + R"("})", {}}, "service -2: " + ears},
      {{R"({"rspCode":1,"rspDesc":"a\r\n\tb\u0000\u0085\u2028c\u007f"})", {}}, "service 1: a   b   c "},
      {{R"({"rspCode":1,"rspDesc":")" + filler + "\"}", {}}, "service 1: " + filler.substr(0, 200) + "..."},
      {{R"({"rspCode":1,"rspDesc":")" + filler.substr(0, 199) + ears + "\"}", {}},
       "service 1: " + filler.substr(0, 199) + "..."},
      {{R"({"rspCode":1e30,"rspDesc":5})", {}}, "service 2147483647: refused without a word"},
      {{R"({"rspCode":1,"rspDesc":""})", {}}, "service 1: refused without a word"},
      {{{}, Error{"transport", 7, "\xFF\r\n\u542c" + filler}},
       "transport 7: ?  \u542c" + filler.substr(0, 194) + "..."},
      {{"{\"a\xFF\n" + filler, {}}, ""},
      {{"\x01\xE5\x90", {}}, ""},
  };
  for (const auto& [reply, expected] : table) {
    ServiceScript script;
    script.knowsUser();
    script.machine.urlSession->script("", reply);
    std::optional<Error> heard;
    ResultSubmission::submit({}, {}, "model", [&](const std::optional<Error>& error) { heard = error; });
    script.run();
    ASSERT_TRUE(heard) << expected;
    if (!expected.empty()) {
      EXPECT_EQ(heard->domain + " " + std::to_string(heard->code) + ": " + heard->message, expected);
    }
    EXPECT_LE(heard->message.size(), 203U);
    EXPECT_EQ(heard->message.find('\n'), std::string::npos);
    EXPECT_NO_THROW((void)nlohmann::json(heard->message).dump()) << "is to be UTF-8";
  }
}

/// Answers on threads of its own, as a real session does.
class OtherThreadSession final : public URLSession {
 public:
  explicit OtherThreadSession(URLReply reply) : reply_(std::move(reply)) {}

  void dataTask(URLRequest, CompletionHandler completionHandler) override {
    threads_.emplace_back([reply = reply_, done = std::move(completionHandler)] { done(reply); });
  }
  void join() {
    for (std::thread& one : std::exchange(threads_, {})) one.join();
  }

 private:
  URLReply reply_;
  std::vector<std::thread> threads_;  // libc++ 14 has no jthread
};

TEST(FailureTable, CallbacksComeOnTheMainThreadFromItsLoop) {
  const URLReply replies[] = {{R"({"rspCode":0,"listenTests":[1],"deviceVolumeIOS":[{"ear":1}]})", {}},
                              {"<html>", {}},
                              {{}, Error{"transport", 7, "gone"}}};
  for (const URLReply& reply : replies) {
    for (const auto& operation : serviceOperations()) {
      ServiceScript script;
      script.knowsUser();
      const auto session = std::make_shared<OtherThreadSession>(reply);
      Platform platform = script.machine.platform();
      platform.urlSession = session;
      Platform::setCurrent(platform);
      std::vector<std::thread::id> calledOn;
      std::atomic<int> calls = 0;
      operation.start([&](const std::string&) {
        ++calls;
        calledOn.push_back(std::this_thread::get_id());
      });
      session->join();
      EXPECT_EQ(calls, 0) << operation.name << " called back outside the loop";
      script.run();
      EXPECT_THAT(calledOn, ElementsAre(std::this_thread::get_id())) << operation.name;
    }
  }
}

}  // namespace
}  // namespace orn
