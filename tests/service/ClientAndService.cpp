#include "tests/service/ClientAndService.h"

#include <array>
#include <cstdlib>
#include <stdexcept>
#include <netinet/in.h>
#include <sqlite3.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orn::service {

using nlohmann::json;

Connection::Connection(std::uint16_t port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    close(socket_);
    throw std::runtime_error("can't connect");
  }
}

Connection::~Connection() { close(socket_); }

void Connection::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) throw std::runtime_error("can't send");
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

std::string Connection::receiveAll() {
  std::string text;
  std::array<char, 65536> buffer;
  for (ssize_t count = 1; count > 0;) {
    count = recv(socket_, buffer.data(), buffer.size(), 0);
    if (count > 0) text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return text;
}

std::string requestText(std::string_view method, std::string_view target, std::string_view body) {
  std::string text;
  text.append(method).append(" ").append(target).append(" HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n");
  return text.append("Content-Length: ").append(std::to_string(body.size())).append("\r\n\r\n").append(body);
}

Reply parsedReply(const std::string& text) {
  const auto head = text.find("\r\n\r\n");
  if (head == std::string::npos) return {};
  const auto length = text.find("Content-Length: ");
  return {.status = std::atoi(text.c_str() + text.find(' ')),
          .announced = length < head ? std::stoul(text.substr(length + 16)) : 0,
          .body = text.substr(head + 4)};
}

Reply ask(std::uint16_t port, std::string_view target, std::string_view body, std::string_view method) {
  Connection connection(port);
  connection.send(requestText(method, target, body));
  return parsedReply(connection.receiveAll());
}

json submission(const std::map<std::string, std::string>& fields) {
  json body = {{"base", "0"}, {"headset", "AA:BB:CC:DD:EE:FF"}, {"correctName", "Phone1,1"}};
  for (const std::string hz : {"125hz", "250hz", "500hz", "1000hz", "2000hz", "4000hz", "8000hz"}) {
    body["left" + hz] = body["right" + hz] = "20";
  }
  for (const auto& [name, value] : fields) body[name] = value;
  return body;
}

json profile(const std::map<std::string, std::string>& fields) {
  json body = {{"sdkUseId", "u"}, {"sdkCode", "Phone1,1"},  {"sdkKey", "k"},   {"gender", "1"},
               {"phone", "555"},  {"birthday", "19800305"}, {"username", "Li"}};
  for (const auto& [name, value] : fields) body[name] = value;
  return body;
}

void ServiceTest::start(ServiceOptions options) {
  service_.reset();
  options.database = folder_.path() + "/tests.db";
  service_.emplace(std::move(options));
}

json ServiceTest::answer(std::string_view target, std::string_view body) {
  return ask(service_->port(), target, body).json();
}

std::vector<json> ServiceTest::history(std::string_view userId, std::string_view key) {
  const json reply = answer(kHistory, "sdkUseId=" + std::string(userId) + "&sdkKey=" + std::string(key) + "&");
  EXPECT_EQ(reply.at("rspCode"), 0);
  return reply.at("listenTests");
}

std::vector<std::vector<std::string>> ServiceTest::rows(const std::string& sql) {
  std::vector<std::vector<std::string>> found;
  const auto add = [](void* list, int count, char** values, char**) {
    static_cast<decltype(found)*>(list)->emplace_back(values, values + count);
    return 0;
  };
  sqlite3* database = nullptr;
  EXPECT_EQ(sqlite3_open((folder_.path() + "/tests.db").c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, sql.c_str(), add, &found, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
  sqlite3_close(database);
  return found;
}

}  // namespace orn::service
