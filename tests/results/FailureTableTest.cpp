#include <thread>
#include <utility>

#include <ORNHearingTestSDK/results/ResultSubmission.h>

#include "ServiceScript.h"

namespace orn {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;

/// What an operation's callback is told with such a service: "nothing", "ok", "within the call: ok", "ok again ok".
std::string heardBy(const std::string& operation, const std::function<void(ServiceScript&)>& service) {
  ServiceScript script;
  script.knowsUser();
  service(script);
  std::string heard;
  bool isWithin = true;
  serviceOperations().at(operation)([&](const std::string& what) {
    if (!heard.empty()) heard += " again ";
    heard += (isWithin ? "within the call: " : "") + what;
  });
  isWithin = false;
  script.run();
  return heard.empty() ? "nothing" : heard;
}

std::string heardBy(const std::string& operation, const std::string& reply) {
  return heardBy(operation, [&](ServiceScript& script) { script.answers(reply); });
}

std::function<void(ServiceScript&)> without(const char* key) {
  return [key](ServiceScript& script) { script.machine.userDefaults->removeValue(key); };
}

/// A service to which every request fails before it is sent.
void withoutNetwork(ServiceScript& script) {
  struct NoNetwork : URLSession {
    void dataTask(URLRequest, CompletionHandler) override { throw std::runtime_error("no library"); }
  };
  Platform platform = script.machine.platform();
  platform.urlSession = std::make_shared<NoNetwork>();
  Platform::setCurrent(platform);
}

TEST(FailureTable, TellsEachCallbackWhatCameOfItsRequest) {
  const struct {
    const char *operation, *withoutUser, *notJson, *noObject, *refused, *accepted;
  } table[] = {
      {"getListenTest", "nothing", "json", "json", "ok", "ok [{\"id\":2},{\"id\":1}]"},
      {"fetch history", "registration 0", "json", "json", "service", "ok [{\"id\":2},{\"id\":1}]"},
      {"listenTest", "nothing", "json", "json", "ok", "ok"},
      {"submit", "registration 0", "json", "json", "service", "ok"},
      {"postListenTest", "nothing", "json", "ok", "ok", "ok"},
      {"setAppUserID", "ok", "json", "ok", "ok", "ok"},
      {"registerUser", "ok", "json", "json", "service", "ok"},
      {"setKV50MAC", "ok", "ok", "ok", "ok", "ok"},
      {"getTestHistoryByMAC", "ok", "ok", "ok", "ok", "ok"},
      {"setEarPlugModel", "ok", "ok", "ok", "ok", "ok"},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.operation);
    EXPECT_EQ(heardBy(row.operation, &ServiceScript::fails), "transport 7 gone");
    EXPECT_EQ(heardBy(row.operation, without("SERVICEHOST")), "transport 0");
    EXPECT_EQ(heardBy(row.operation, withoutNetwork), "transport 0");
    for (const char* key : {"APPKEY", "USERID"}) EXPECT_EQ(heardBy(row.operation, without(key)), row.withoutUser);
    for (const std::string& reply : {"<html>"s, ""s, "{\"rspCode\":0"s, "{\"rspCode\":0}}"s, "{\"a\":\"\xFF\"}"s, "\0"s,
                                     "null"s, "5"s, "\"{}\""s, "{\"a\":1e999}"s, std::string(1'000'000, '[')}) {
      EXPECT_EQ(heardBy(row.operation, reply), row.notJson) << reply.substr(0, 20);
    }
    for (const char* reply : {"[]", "[{\"rspCode\":1}]"}) EXPECT_EQ(heardBy(row.operation, reply), row.noObject);
    for (const char* code : {"1", "-1", "\"1\"", "true", "4294967296"}) {
      EXPECT_EQ(heardBy(row.operation, "{\"rspCode\":"s + code + ",\"listenTests\":[1]}"), row.refused) << code;
    }
    for (const char* code : {"0", "\"0\"", "null", "\"\"", "false"}) {
      const std::string reply = "{\"rspCode\":"s + code + ",\"listenTests\":[{\"id\":2},{\"id\":1}]}";
      EXPECT_EQ(heardBy(row.operation, reply), row.accepted) << code;
    }
  }
  EXPECT_EQ(heardBy("getListenTest", "{\"rspCode\":0,\"listenTests\":null}"), "ok");
  EXPECT_EQ(heardBy("getListenTest", "{\"rspCode\":0,\"listenTests\":[]}"), "ok []");
}

TEST(FailureTable, TellsARefusalOrALossInItsOwnWordsOnOneShortLine) {
  const std::string ears = "\u542c\u529b", filler(1000, 'x');
  const std::pair<URLReply, std::string> table[] = {
      {{R"({"rspCode":7,"rspDesc":"no such user"})", {}}, "service 7: no such user"},
      {{R"({"rspCode":"-2","rspDesc":")" + ears + R"("})", {}}, "service -2: " + ears},
      {{R"({"rspCode":1,"rspDesc":"a\r\n\tb\u0000\u0085\u2028c\u007f"})", {}}, "service 1: a   b   c "},
      {{R"({"rspCode":1,"rspDesc":")" + filler.substr(0, 199) + ears + "\"}", {}},
       "service 1: " + filler.substr(0, 199) + "..."},
      {{R"({"rspCode":1e30,"rspDesc":5})", {}}, "service 2147483647: refused without a word"},
      {{{}, Error{"transport", 7, "\xFF\r\n\u542c" + filler}},
       "transport 7: ?  \u542c" + filler.substr(0, 194) + "..."},
      {{std::string(1'000'000, '['), {}}, "json 2: the reply is nested too deep"},
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

/// Answers on another thread, as a real session does.
struct OtherThreadSession final : URLSession {
  void dataTask(URLRequest, CompletionHandler done) override {
    std::thread([&] { done(reply); }).join();
  }
  URLReply reply;
};

TEST(FailureTable, CallbacksComeOnTheMainThreadFromItsLoop) {
  const auto session = std::make_shared<OtherThreadSession>();
  for (const URLReply& reply : {URLReply{R"({"rspCode":0,"listenTests":[1],"deviceVolumeIOS":[{"ear":1}]})", {}},
                                URLReply{"<html>", {}}, URLReply{{}, Error{"transport", 7, "gone"}}}) {
    session->reply = reply;
    for (const auto& [name, start] : serviceOperations()) {
      ServiceScript script;
      script.knowsUser();
      Platform platform = script.machine.platform();
      platform.urlSession = session;
      Platform::setCurrent(platform);
      std::vector<std::thread::id> calledOn;
      start([&](const std::string&) { calledOn.push_back(std::this_thread::get_id()); });
      EXPECT_THAT(calledOn, ElementsAre()) << name << " called back outside the loop";
      script.run();
      EXPECT_THAT(calledOn, ElementsAre(std::this_thread::get_id())) << name;
    }
  }
}

}  // namespace
}  // namespace orn
