#include <algorithm>
#include <set>
#include <utility>

#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/results/ResultSubmission.h>

#include "ServiceScript.h"

namespace orn {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using nlohmann::json;
using testing::ElementsAre;
using testing::UnorderedElementsAreArray;
using Headers = std::vector<std::pair<std::string, std::string>>;

const std::string kBase = "http://service.example:8080/vrdnx/user/";

void ignore(const std::string&) {}

/// The fields of a form body, each with the "&" that ends it, in alphabetical order.
std::string sortedFields(const std::string& body) {
  std::multiset<std::string> fields;
  for (std::size_t begin = 0; begin < body.size();) {
    const auto end = std::min(body.find('&', begin), body.size() - 1) + 1;
    fields.insert(body.substr(begin, end - begin));
    begin = end;
  }
  std::string all;
  for (const auto& one : fields) all += one;
  return all;
}

Headers headers(const char* contentType, bool isCommon) {
  Headers all{{"Accept", "application/json"}, {"Content-Type", contentType}};
  if (isCommon) {
    all.insert(all.end(), {{"app-version", "42"},
                           {"app-product", "SDK"},
                           {"app-channel", "org.example.host"},
                           {"system-version", "9.9"},
                           {"device-model", "Phone1,1"},
                           {"system-product", "iOS"}});
  }
  return all;
}

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
    *machine.device = {};
    machine.device->givenMachine = "Phone1,1";
    machine.device->givenSystemVersion = "9.9";
    machine.device->givenApplicationIdentifier = "org.example.host";
    machine.device->givenApplicationVersion = "42";
  }

  URLRequest requestOf(const std::string& operation) {
    const auto before = requestCount();
    serviceOperation(operation).start(ignore);
    run();  // a request that is still under way when the loop goes would hold it
    if (requestCount() == before + 1) return machine.urlSession->requests().back();
    ADD_FAILURE() << operation << " sent nothing";
    return {};
  }
};

TEST_F(ServiceRequest, GoesOutToTheLetter) {
  knowsUser();
  const json measured = {{"left1000hz", "40"}, {"right1000hz", "35"}, {"right2000hz", "30"}};
  json posted = submission(measured);
  posted["base"] = "1";
  const json profile = {{"sdkUseId", "id"}, {"sdkCode", "Phone1,1"},  {"sdkKey", "key"},   {"gender", "1"},
                        {"phone", "phone"}, {"birthday", "19700101"}, {"username", "name"}};
  const struct {
    const char* operation;
    std::string path;
    bool isCommon;
    std::string form;
    json object;
  } table[] = {
      {"getListenTest", "acquireListenTest", true, "sdkKey=key&sdkUseId=user&", {}},
      {"listenTest", "sdkJonDiagnose2/user/key", true, "", submission(measured)},
      {"postListenTest", "sdkJonDiagnose2/user/key", false, "", posted},
      {"setAppUserID", "sdkRegister", true, "", profile},
      {"setKV50MAC", "findSdkDeviceValue", false, "appkey=key&correct_name=Phone1,1&mac=AA:BB:CC:DD:EE:FF&", {}},
      {"getTestHistoryByMAC",
       "findSdkDeviceValue",
       false,
       "appkey=key&correct_name=Phone1,1&mac=AA:BB:CC:DD:EE:FF&",
       {}},
      {"setEarPlugModel", "findSdkDeviceValue", false, "appkey=key&correct_name=Phone1,1&earplug_model=1&", {}},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.operation);
    const URLRequest request = requestOf(row.operation);
    const bool isForm = !row.form.empty();
    EXPECT_EQ(request.url, kBase + row.path);
    EXPECT_EQ(request.method, "Post");
    EXPECT_EQ(request.timeout, row.isCommon ? 180s : 10s);
    EXPECT_THAT(request.headers, UnorderedElementsAreArray(headers(
                                     isForm ? "application/x-www-form-urlencoded" : "application/json", row.isCommon)));
    if (isForm) {
      EXPECT_EQ(sortedFields(request.body), row.form);
    } else {
      EXPECT_EQ(json::parse(request.body), row.object);
      EXPECT_NE(request.body.find('\n'), std::string::npos) << "is to be pretty-printed";
    }
  }
}

TEST_F(ServiceRequest, AFormBodyIsEscapedAsAWhole) {
  // "&", "=", ":" and "+" of a value go out unprotected.
  const std::pair<std::string, std::string> table[] = {
      {"a&b=c:d+e", "a&b=c:d+e"},
      {" %#<>[]\\^`{|}\"", "%20%25%23%3C%3E%5B%5D%5C%5E%60%7B%7C%7D%22"},
      {"$-_.!*'(),;/?@~", "$-_.!*'(),;/?@~"},
      {"\u597d\u00fc", "%E5%A5%BD%C3%BC"},
      {"\r\n\t\0\x7F"s, "%0D%0A%09%00%7F"},
      {"", ""},
  };
  for (const auto& [key, escaped] : table) {
    knowsUser(key, "u");
    const std::string body = requestOf("getListenTest").body;
    EXPECT_TRUE(body == "sdkKey=" + escaped + "&sdkUseId=u&" || body == "sdkUseId=u&sdkKey=" + escaped + "&") << body;
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

TEST_F(ServiceRequest, ThatCannotBeMadeIsATransportErrorOfEveryOperation) {
  struct NoNetwork : URLSession {
    void dataTask(URLRequest, CompletionHandler) override { throw std::runtime_error("no library"); }
  };
  knowsUser();
  const auto allHearOfIt = [this] {
    for (const auto& operation : serviceOperations()) {
      std::vector<std::string> heard;
      operation.start([&](const std::string& what) { heard.push_back(what); });
      EXPECT_THAT(heard, ElementsAre()) << operation.name << " called back within the call";
      run();
      EXPECT_THAT(heard, ElementsAre("transport 0")) << operation.name;
    }
  };
  const auto host = machine.userDefaults->value("SERVICEHOST");
  machine.userDefaults->removeValue("SERVICEHOST");
  allHearOfIt();
  machine.userDefaults->setValue("SERVICEHOST", host.value());
  Platform platform = machine.platform();
  platform.urlSession = std::make_shared<NoNetwork>();
  Platform::setCurrent(platform);
  allHearOfIt();
}

TEST_F(ServiceRequest, IsNotMadeToWhatIsNoHostAndTheCallbackHearsWhy) {
  knowsUser();
  const std::pair<DefaultsValue, std::string> table[] = {{true, "it is no text"},
                                                         {""s, "no service host is set: "},
                                                         {"https://"s, "names no host"},
                                                         {"a/b"s, "a path"},
                                                         {"https://a/"s, "a path"},
                                                         {"a?b"s, "a path"},
                                                         {"a#b"s, "a path"},
                                                         {"user@a"s, "a user name"},
                                                         {"https://user:word@a"s, "a user name"},
                                                         {"https:// a"s, "a blank"},
                                                         {"a\r\nX: y"s, "a blank"},
                                                         {"HTTPS://a"s, "another scheme"},
                                                         {"https://https://a"s, "another scheme"},
                                                         {"%61"s, "a character"},
                                                         {"\u542c"s, "a character"}};
  for (const auto& [host, why] : table) {
    machine.userDefaults->setValue("SERVICEHOST", host);
    std::string heard;
    ResultSubmission::submit({}, {}, "model", [&](const std::optional<Error>& error) { heard += error->message; });
    run();
    EXPECT_THAT(heard, testing::AllOf(testing::HasSubstr(why), testing::HasSubstr("SERVICEHOST"),
                                      testing::Not(testing::HasSubstr("word"))));
  }
  EXPECT_EQ(requestCount(), 0U);
}

TEST_F(ServiceRequest, SubmissionCarriesWhatWasMeasured) {
  knowsUser();
  const auto body = [&](const EarResult& left, const EarResult& right, const std::optional<std::string>& model) {
    ORNHearingTest::listenTestWithLeft(left, right, model, nullptr);
    run();
    return json::parse(machine.urlSession->requests().back().body);
  };
  EXPECT_EQ(body({}, {{"1000hz", "15"}, {"2000hz", "20"}}, "model"),
            submission({{"right1000hz", "15"}, {"right2000hz", "20"}}));
  EXPECT_EQ(body({{"750hz", "10"}, {"0125hz", "10"}, {"125", "10"}}, {{"8000hz", ""}}, "AA:BB"),
            submission({{"right8000hz", ""}, {"headset", "AA:BB"}}));

  const auto posted = [&](bool base, const std::optional<std::string>& model) {
    ORNManualHearingTest::postListenTestWithLeft({}, {}, base, 0, 0, {}, {}, {}, {}, model, nullptr);
    run();
    return json::parse(machine.urlSession->requests().back().body);
  };
  EXPECT_EQ(posted(false, ""), submission({{"headset", ""}}));
  EXPECT_EQ(posted(true, std::nullopt), submission({{"headset", ""}, {"base", "1"}}));
}

}  // namespace
}  // namespace orn
