#include <utility>

#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/results/ResultSubmission.h>

#include "ServiceScript.h"

namespace orn {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::UnorderedElementsAreArray;
using Headers = std::vector<std::pair<std::string, std::string>>;

const std::string kBase = "http://service.example:8080/vrdnx/user/";

const Headers kCommonHeaders{
    {"app-version", "42"},     {"app-product", "SDK"},       {"app-channel", "org.example.host"},
    {"system-version", "9.9"}, {"device-model", "Phone1,1"}, {"system-product", "iOS"}};

json submission(const json& changed) {
  json body = {{"base", "0"}, {"headset", "model"}, {"correctName", "Phone1,1"}};
  for (const std::string hz : {"125", "250", "500", "1000", "2000", "4000", "8000"}) {
    body["left" + hz + "hz"] = body["right" + hz + "hz"] = "-1";
  }
  body.update(changed);
  return body;
}

struct ServiceRequest : testing::Test, ServiceScript {
  ServiceRequest() {
    machine.device->givenMachine = "Phone1,1";
    machine.device->givenSystemVersion = "9.9";
    machine.device->givenApplicationIdentifier = "org.example.host";
    machine.device->givenApplicationVersion = "42";
  }

  URLRequest requestOf(const std::string& operation) {
    const auto before = requestCount();
    serviceOperations().at(operation)([](auto&&) {});
    run();  // a request still under way would keep the loop alive
    if (requestCount() == before + 1) return machine.urlSession->requests().back();
    ADD_FAILURE() << operation << " sent nothing";
    return {};
  }
};

TEST_F(ServiceRequest, GoesOutToTheLetter) {
  knowsUser();
  const json measured = submission({{"left1000hz", "40"}, {"right1000hz", "35"}, {"right2000hz", "30"}});
  json posted = measured;
  posted["base"] = "1";
  const json profile = {{"sdkUseId", "id"}, {"sdkCode", "Phone1,1"},  {"sdkKey", "key"},   {"gender", "1"},
                        {"phone", "phone"}, {"birthday", "19700101"}, {"username", "name"}};
  const std::string device = "correct_name=Phone1,1&";
  const struct {
    const char* operation;
    std::string path;
    bool isCommon;
    std::string form;
    json object;
  } table[] = {
      {"getListenTest", "acquireListenTest", true, "sdkKey=key&sdkUseId=user&", {}},
      {"listenTest", "sdkJonDiagnose2/user/key", true, "", measured},
      {"postListenTest", "sdkJonDiagnose2/user/key", false, "", posted},
      {"setAppUserID", "sdkRegister", true, "", profile},
      {"setKV50MAC", "findSdkDeviceValue", false, device + "mac=AA:BB:CC:DD:EE:FF&appkey=key&", {}},
      {"getTestHistoryByMAC", "findSdkDeviceValue", false, device + "mac=AA:BB:CC:DD:EE:FF&appkey=key&", {}},
      {"setEarPlugModel", "findSdkDeviceValue", false, device + "earplug_model=1&appkey=key&", {}},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.operation);
    const URLRequest request = requestOf(row.operation);
    EXPECT_EQ(request.url, kBase + row.path);
    EXPECT_EQ(request.method, "Post");
    EXPECT_EQ(request.timeout, row.isCommon ? 180s : 10s);
    Headers headers = row.isCommon ? kCommonHeaders : Headers();
    headers.emplace_back("Accept", "application/json");
    headers.emplace_back("Content-Type", row.form.empty() ? "application/json" : "application/x-www-form-urlencoded");
    EXPECT_THAT(request.headers, UnorderedElementsAreArray(headers));
    EXPECT_EQ(request.body, row.form.empty() ? row.object.dump(2) : row.form);
  }
}

TEST_F(ServiceRequest, OfTheHostsOwnHasItsHeadersReplaced) {
  URLRequest request;
  request.headers = {{"App-Version", "1"}};
  ORNHearingTest::setHttpHeader(request);
  EXPECT_THAT(request.headers, UnorderedElementsAreArray(kCommonHeaders));
}

TEST_F(ServiceRequest, AFormBodyIsEscapedAsAWhole) {
  // "&", "=", ":" and "+" of a value go out unprotected.
  const std::pair<std::string, std::string> table[] = {
      {"a&b=c:d+e", "a&b=c:d+e"},
      {" %#<>[]\\^`{|}\"", "%20%25%23%3C%3E%5B%5D%5C%5E%60%7B%7C%7D%22"},
      {"$-_.!*'(),;/?@~", "$-_.!*'(),;/?@~"},
      {"\u597d\u00fc", "%E5%A5%BD%C3%BC"},
      {"\r\n\t\0\x7F"s, "%0D%0A%09%00%7F"},
  };
  for (const auto& [key, escaped] : table) {
    knowsUser(key, "u");
    EXPECT_EQ(requestOf("getListenTest").body, "sdkKey=" + escaped + "&sdkUseId=u&");
  }
}

TEST_F(ServiceRequest, UserIdAndKeyStayOneSegmentEach) {
  const std::pair<std::string, std::string> table[] = {
      {"a/b", "a%2Fb"}, {"a?b", "a%3Fb"},        {"a#b", "a%23b"},       {"a b", "a%20b"}, {"100%", "100%25"},
      {"\n", "%0A"},    {"\u597d", "%E5%A5%BD"}, {"A-z.0_~", "A-z.0_~"}, {"", ""},
  };
  for (const auto& [id, escaped] : table) {
    for (const char* operation : {"listenTest", "postListenTest"}) {
      knowsUser("k" + id, id + "u");
      EXPECT_EQ(requestOf(operation).url, kBase + "sdkJonDiagnose2/" + escaped + "u/k" + escaped);
    }
  }
}

TEST_F(ServiceRequest, GoesUnderTlsWhereTheHostSaysSo) {
  knowsUser();
  for (const char* host : {"https://service.example", "https://service.example:8443", "https://[::1]:8443"}) {
    machine.userDefaults->setValue("SERVICEHOST", std::string(host));
    EXPECT_EQ(requestOf("getListenTest").url, host + "/vrdnx/user/acquireListenTest"s);
  }
}

TEST_F(ServiceRequest, IsNotMadeToWhatIsNotAHostAndTheCallbackIsToldWhy) {
  knowsUser();
  const std::pair<const char*, std::vector<DefaultsValue>> table[] = {
      {"it is no text", {true}},
      {"no service host is set: ", {""s}},
      {"names no host", {"https://"s}},
      {"a path", {"a/b"s, "https://a/"s, "a?b"s, "a#b"s}},
      {"a user name", {"user@a"s, "https://user:word@a"s}},
      {"a blank", {"https:// a"s, "a\r\nX: y"s}},
      {"another scheme", {"HTTPS://a"s, "https://https://a"s}},
      {"a character", {"%61"s, "\u542c"s}}};
  for (const auto& [why, hosts] : table) {
    for (const DefaultsValue& host : hosts) {
      machine.userDefaults->setValue("SERVICEHOST", host);
      std::string heard;
      ResultSubmission::submit({}, {}, "model", [&](const std::optional<Error>& error) { heard += error->message; });
      run();
      EXPECT_THAT(heard, AllOf(HasSubstr(why), HasSubstr("SERVICEHOST"), Not(HasSubstr("word"))));
    }
  }
  EXPECT_EQ(requestCount(), 0U);
}

TEST_F(ServiceRequest, SubmissionCarriesNothingButTheSevenFrequenciesAndWhatIsKnown) {
  knowsUser();
  const auto sent = [&] { return run(), json::parse(machine.urlSession->requests().back().body); };
  ORNHearingTest::listenTestWithLeft({{"750hz", "10"}, {"0125hz", "10"}, {"125", "10"}}, {{"8000hz", ""}}, "AA:BB", {});
  EXPECT_EQ(sent(), submission({{"right8000hz", ""}, {"headset", "AA:BB"}}));
  ORNManualHearingTest::postListenTestWithLeft({}, {}, false, 0, 0, {}, {}, {}, {}, std::nullopt, {});
  EXPECT_EQ(sent(), submission({{"headset", ""}}));
}

}  // namespace
}  // namespace orn
