#include <gmock/gmock.h>

#include "hearing-service/Request.h"
#include "tests/service/ClientAndService.h"

namespace orn::service {
namespace {

using nlohmann::json;
using namespace std::string_literals;

std::vector<std::string> namesOf(const json& object) {
  std::vector<std::string> names;
  for (const auto& [name, value] : object.items()) names.push_back(name);
  return names;
}

struct BadRequests : ServiceTest {
  /// Refused, with status 200, a reason and nothing stored.
  void expectRefusal(const std::string& target, const std::string& body, const std::string& method = "Post") {
    SCOPED_TRACE(method + " " + target + "\n" + body.substr(0, 300));
    const Reply reply = ask(service_->port(), target, body, method);
    EXPECT_EQ(reply.status, 200);
    const json answer = reply.json();
    ASSERT_TRUE(answer.is_object());
    EXPECT_EQ(answer["rspCode"], 1);
    EXPECT_FALSE(answer["rspDesc"].get<std::string>().empty());
    EXPECT_EQ(rows("SELECT 1 FROM tests UNION ALL SELECT 1 FROM profiles").size(), 0U);
  }

  void expectSubmissionRefused(const std::map<std::string, std::string>& fields) {
    expectRefusal(kSubmit, submission(fields).dump());
  }
};

TEST_F(BadRequests, OfAnotherMethod) {
  for (const char* method : {"POST", "post", "PosT", "Posts", "GET", "PUT", "DELETE"}) {
    expectRefusal(kSubmit, submission().dump(), method);
    expectRefusal(kHistory, "sdkKey=k&sdkUseId=u&", method);
  }
}

TEST_F(BadRequests, OfAnUnknownPath) {
  for (const char* target : {"/", "*", "/vrdnx/user/", "/vrdnx/user/sdkRegister/", "/vrdnx/user/sdkregister",
                             "//vrdnx/user/sdkRegister", "/vrdnx/user/sdkRegister?x=1", "/vrdnx/user/sdk%52egister",
                             "/vrdnx/../vrdnx/user/sdkRegister", "http://127.0.0.1/vrdnx/user/sdkRegister"}) {
    expectRefusal(target, profile().dump());
  }
}

TEST_F(BadRequests, OfAPathWithoutExactlyAUserAndAKey) {
  for (const char* rest :
       {"",     "u",     "u/",   "/k",    "/",      "//",    "u/k/",  "u/k/x",  "u//k",   "u/k?",   "u/k?a=b",
        "u?/k", "u/k#x", "u%/k", "u%4/k", "u%G0/k", "u/%-1", "u/%+1", "u%00/k", "u/k%00", "u%FF/k", "u%C0%AF/k"}) {
    expectRefusal("/vrdnx/user/sdkJonDiagnose2/"s + rest, submission().dump());
  }
  expectRefusal("/vrdnx/user/sdkJonDiagnose2/" + std::string(257, 'u') + "/k", submission().dump());
}

TEST_F(BadRequests, OfABodyThatIsNoObjectOfTexts) {
  for (const std::string& body :
       {""s, "{"s, "[]"s, "null"s, "5"s, "\"{}\""s, "{}"s, "{}{}"s, "<html>"s, "a=b&"s, std::string(100'000, '['),
        "{\"base\":"s + std::string(100'000, '['), "\0"s, profile().dump() + ","}) {
    expectRefusal(kRegister, body);
    expectRefusal(kSubmit, body);
  }
  json nested = submission();
  for (const json& value : {json(20), json(nullptr), json(true), json::array(), json::object(), json(20.5)}) {
    nested["left500hz"] = value;
    expectRefusal(kSubmit, nested.dump());
  }
}

TEST_F(BadRequests, OfMissingUnknownOrRepeatedFields) {
  for (const std::string& name : namesOf(submission())) {
    json body = submission();
    body.erase(name);
    expectRefusal(kSubmit, body.dump());
    body["Left125hz"] = "20";
    expectRefusal(kSubmit, body.dump());
  }
  for (const std::string& name : namesOf(profile())) {
    json body = profile();
    body.erase(name);
    expectRefusal(kRegister, body.dump());
  }
  expectSubmissionRefused({{"left3000hz", "20"}});
  expectSubmissionRefused({{"", ""}});
  expectRefusal(kRegister, profile({{"email", ""}}).dump());
  std::string twice = submission().dump();
  expectRefusal(kSubmit, twice.insert(1, "\"base\":\"1\","));
}

TEST_F(BadRequests, OfTextsThatFieldsCannotHold) {
  for (const char* threshold :
       {"", "-11", "121", "20.5", "1e1", "+5", " 5", "5 ", "0x5", "--1", "-", "NaN", "0005", "4294967296", "\u0665"}) {
    expectSubmissionRefused({{"left1000hz", threshold}});
    expectSubmissionRefused({{"right8000hz", threshold}});
  }
  for (const char* base : {"", "2", "-1", "true", "00"}) {
    expectSubmissionRefused({{"base", base}});
    expectRefusal(kRegister, profile({{"gender", base}}).dump());
  }
  for (const char* date : {"", "1980-3-5", "198003055", "19800230", "19801301", "00000000", "+1980035", "1980030x"}) {
    expectRefusal(kRegister, profile({{"birthday", date}}).dump());
  }
}

TEST_F(BadRequests, OfTextsThatNoFieldCanHold) {
  const std::string nul("a\0b", 3);
  for (const std::string& name : namesOf(profile())) {
    expectRefusal(kRegister, profile({{name, nul}}).dump());
    expectRefusal(kRegister, profile({{name, std::string(257, '1')}}).dump());
  }
  expectSubmissionRefused({{"headset", nul}});
  expectSubmissionRefused({{"correctName", std::string(257, 'x')}});
  for (const std::string& bad : {"\xFF"s, "\xC0\xAF"s, "\xED\xA0\x80"s, "\\ud800"s, "\n"s}) {
    std::string body = profile().dump();
    expectRefusal(kRegister, body.insert(body.find("Li"), bad));
  }
  for (const char* field : {"sdkUseId", "sdkKey"}) expectRefusal(kRegister, profile({{field, ""}}).dump());
}

TEST_F(BadRequests, OfABadForm) {
  for (const std::string& body :
       {""s, "&"s, "x"s, "{}"s, "sdkKey=k"s, "sdkKey=k&sdkUseId=&"s, "sdkKey=&sdkUseId=u&"s,
        "sdkKey=k&sdkUseId=u&x=1&"s, "sdkKey=k&sdkUseId=u&sdkKey=k&"s, "&sdkKey=k&sdkUseId=u"s, "sdkKey=k&sdkUseId=u%"s,
        "sdkKey=k&sdkUseId=u%0"s, "sdkKey=k&sdkUseId=u%00"s, "sdkKey=k&sdkUseId=u%FF"s, "sdkKey=k&sdkUseId=\xFF"s,
        "sdkKey=k&sdkUseId=a\0b"s, "sdkKey=k&sdkUseId="s + std::string(257, 'u')}) {
    expectRefusal(kHistory, body);
  }
  for (const char* body :
       {"correct_name=c&appkey=k&", "correct_name=c&mac=&appkey=k&", "correct_name=c&mac=m&",
        "correct_name=c&earplug_model=&appkey=k&", "mac=m&earplug_model=e&correct_name=c&appkey=k&"}) {
    expectRefusal(kCalibration, body);
  }
}

TEST_F(BadRequests, OfABodyLargerThanAMebibyte) {
  std::string body = submission().dump();
  body.append(kLargestBody - body.size(), ' ');
  expectRefusal(kSubmit, body + " ");
  expectRefusal(kSubmit, body + body + body);
  EXPECT_EQ(answer(kSubmit, body).at("rspCode"), 0);
}

TEST_F(BadRequests, ThatNeverEndsIsCutOff) {
  Connection connection(service_->port());
  connection.send("Post "s + kSubmit + " HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n");
  const std::string chunk = "10000\r\n" + std::string(0x10000, ' ') + "\r\n";
  const auto sendForever = [&] {
    for (int i = 0; i < 10'000; ++i) connection.send(chunk);
  };
  EXPECT_THROW(sendForever(), std::runtime_error);
  EXPECT_EQ(answer(kSubmit, submission().dump()).at("rspCode"), 0);
}

}  // namespace
}  // namespace orn::service
