#include "LoopbackServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <string_view>

namespace orn {
namespace {

constexpr std::chrono::seconds kGiveUp{20};

/// Head and body, or less if the other side goes.
std::string readRequest(int connection) {
  std::string request;
  std::size_t wanted = std::string::npos;
  char bytes[65'536];
  while (request.size() < wanted) {
    const ssize_t got = recv(connection, bytes, sizeof(bytes), 0);
    if (got <= 0) break;
    request.append(bytes, static_cast<std::size_t>(got));
    const std::size_t head = request.find("\r\n\r\n");
    if (wanted != std::string::npos || head == std::string::npos) continue;
    const std::size_t length = request.find("Content-Length: ");
    wanted = head + 4 + (length < head ? std::stoul(request.substr(length + 16, 20)) : 0);
  }
  return request;
}

void sendAll(int connection, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
}

void waitUntilClosed(int connection) {
  char byte = 0;
  while (recv(connection, &byte, 1, 0) > 0) {
  }
}

}  // namespace

LoopbackServer::LoopbackServer() : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener_, generic, size) != 0 || listen(listener_, SOMAXCONN) != 0 ||
      getsockname(listener_, generic, &size) != 0) {
    throw std::runtime_error("no loopback server");
  }
  port_ = ntohs(address.sin_port);
  accepting_ = std::thread([this] { accept(); });
}

LoopbackServer::~LoopbackServer() {
  shutdown(listener_, SHUT_RDWR);
  accepting_.join();
  for (const int connection : connections_) shutdown(connection, SHUT_RDWR);
  for (std::thread& thread : threads_) thread.join();
  for (const int connection : connections_) close(connection);
  close(listener_);
}

void LoopbackServer::script(const std::string& path, std::string bytes, std::size_t waitForRequests) {
  const std::lock_guard lock(mutex_);
  answers_.insert_or_assign(path, Answer{std::move(bytes), waitForRequests});
}

bool LoopbackServer::waitForRequests(std::size_t count) const {
  std::unique_lock lock(mutex_);
  return come_.wait_for(lock, kGiveUp, [&] { return requests_.size() >= count; });
}

std::vector<std::string> LoopbackServer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

void LoopbackServer::accept() {
  while (true) {
    const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (connection < 0) return;
    connections_.push_back(connection);
    threads_.emplace_back([this, connection] { serve(connection); });
  }
}

void LoopbackServer::serve(int connection) {
  const std::string request = readRequest(connection);
  {
    const std::lock_guard lock(mutex_);
    requests_.push_back(request);
    come_.notify_all();
  }
  answer(connection, request);
  shutdown(connection, SHUT_WR);
  waitUntilClosed(connection);
}

void LoopbackServer::answer(int connection, const std::string& request) {
  const std::size_t start = request.find(' ') + 1;
  const auto answer = answerTo(request.substr(start, request.find(' ', start) - start));
  if (answer && waitForRequests(answer->waitForRequests)) return sendAll(connection, answer->bytes);
  waitUntilClosed(connection);
}

std::optional<LoopbackServer::Answer> LoopbackServer::answerTo(const std::string& path) const {
  const std::lock_guard lock(mutex_);
  const auto found = answers_.find(path);
  return found == answers_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace orn
