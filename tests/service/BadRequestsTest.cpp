#include <gmock/gmock.h>

#include "hearing-service/Request.h"
#include "tests/service/ClientAndService.h"

namespace orn::service {
namespace {

using nlohmann::json;
using namespace std::string_literals;

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
};

TEST_F(BadRequests, OfAnotherMethodOrAnUnknownPath) {
  for (const char* method : {"POST", "post", "Posts", "GET", "DELETE"}) {
    expectRefusal(kSubmit, submission().dump(), method);
    expectRefusal(kHistory, "sdkKey=k&sdkUseId=u&", method);
  }
  for (const char* target : {"/", "*", "/vrdnx/user/sdkRegister/", "/vrdnx/user/sdkregister",
                             "//vrdnx/user/sdkRegister", "/vrdnx/user/sdkRegister?x=1", "/vrdnx/user/sdk%52egister",
                             "/vrdnx/../vrdnx/user/sdkRegister", "http://127.0.0.1/vrdnx/user/sdkRegister"}) {
    expectRefusal(target, profile().dump());
  }
  // A submission's path has exactly a user and a key.
  for (const std::string& rest :
       {""s, "u"s, "u/"s, "/k"s, "u/k/"s, "u/k/x"s, "u//k"s, "u/k?"s, "u/k?a=b"s, "u/k#x"s, "u%/k"s, "u%4/k"s,
        "u%G0/k"s, "u/%-1"s, "u%00/k"s, "u%FF/k"s, "u%C0%AF/k"s, std::string(257, 'u') + "/k"}) {
    expectRefusal("/vrdnx/user/sdkJonDiagnose2/" + rest, submission().dump());
  }
}

TEST_F(BadRequests, OfABodyThatIsNotOfItsForm) {
  for (const std::string& body :
       {""s, "{"s, "[]"s, "null"s, "5"s, "{}"s, "{}{}"s, "<html>"s, "a=b&"s, "{\"base\":"s + std::string(100'000, '['),
        "\0"s, profile().dump() + ",", R"({"base":"1",)" + submission().dump().substr(1)}) {
    for (const char* target : {kRegister, kSubmit}) expectRefusal(target, body);
  }
  for (const std::string& body :
       {""s, "&"s, "x"s, "{}"s, "sdkKey=k"s, "sdkKey=k&sdkUseId=&"s, "sdkKey=k&sdkUseId=u&x=1&"s,
        "sdkKey=k&sdkUseId=u&sdkKey=k&"s, "&sdkKey=k&sdkUseId=u"s, "sdkKey=k&sdkUseId=u%0"s, "sdkKey=k&sdkUseId=u%00"s,
        "sdkKey=k&sdkUseId=u%FF"s, "sdkKey=k&sdkUseId=a\0b"s, "sdkKey=k&sdkUseId="s + std::string(257, 'u')}) {
    expectRefusal(kHistory, body);
  }
  for (const char* body : {"correct_name=c&appkey=k&", "correct_name=c&mac=&appkey=k&", "correct_name=c&mac=m&",
                           "mac=m&earplug_model=e&correct_name=c&appkey=k&"}) {
    expectRefusal(kCalibration, body);
  }
}

TEST_F(BadRequests, OfAFieldThatIsMissingOrUnknownOrHoldsWhatItCannot) {
  const std::string nul("a\0b", 3);
  using Values = std::vector<json>;
  const struct {
    const char* target;
    json good;
    std::map<std::string, Values> bad;
  } table[] = {{kSubmit,
                submission(),
                {{"left1000hz",
                  {"", "-11", "121", "20.5", "1e1", "+5", " 5", "5 ", "0x5", "--1", "-", "0005", "4294967296", "\u0665",
                   20, nullptr, true, json::array(), json::object()}},
                 {"base", {"", "2", "-1", "true", "00"}},
                 {"headset", {nul}},
                 {"correctName", {std::string(257, 'x')}},
                 {"left3000hz", {"20"}},
                 {"", {""}}}},
               {kRegister,
                profile(),
                {{"gender", {"", "2", "true"}},
                 {"birthday", {"", "1980-3-5", "198003055", "19800230", "19801301", "+1980035", "1980030x"}},
                 {"username", {nul, std::string(257, '1')}},
                 {"sdkUseId", {""}},
                 {"sdkKey", {""}},
                 {"email", {""}}}}};
  for (const auto& [target, good, bad] : table) {
    for (const auto& [name, values] : bad) {
      for (const json& value : values) {
        json body = good;
        body[name] = value;
        expectRefusal(target, body.dump());
      }
    }
    for (const auto& [name, value] : good.items()) {
      json body = good;
      body.erase(name);
      expectRefusal(target, body.dump());
    }
  }
  for (const std::string& bad : {"\xFF"s, "\xC0\xAF"s, "\xED\xA0\x80"s, "\\ud800"s, "\n"s}) {
    std::string body = profile().dump();
    expectRefusal(kRegister, body.insert(body.find("Li"), bad));
  }
}

TEST_F(BadRequests, OfABodyLargerThanAMebibyteOrThatNeverEnds) {
  std::string body = submission().dump();
  body.append(kLargestBody - body.size(), ' ');
  expectRefusal(kSubmit, body + " ");
  expectRefusal(kSubmit, body + body + body);
  Connection connection(service_->port());
  connection.send("Post "s + kSubmit + " HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n");
  const auto sendForever = [&] {
    for (int i = 0; i < 10'000; ++i) connection.send("10000\r\n" + std::string(0x10000, ' ') + "\r\n");
  };
  EXPECT_THROW(sendForever(), std::runtime_error);
  EXPECT_EQ(answer(kSubmit, body).at("rspCode"), 0);
}

}  // namespace
}  // namespace orn::service
