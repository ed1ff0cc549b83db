#include "LoopbackServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <openssl/ssl.h>

namespace orn {
namespace {

constexpr std::chrono::seconds kGiveUp{20};

}  // namespace

/// A connection's two directions.
class Channel {
 public:
  Channel(int connection, SSL_CTX* tls) : connection_(connection), tls_(tls ? SSL_new(tls) : nullptr, SSL_free) {
    if (!tls_) return;
    SSL_set_fd(tls_.get(), connection);
    isOpen_ = SSL_accept(tls_.get()) == 1;
  }

  /// Head and body, or less if the other side goes.
  std::string readRequest() {
    std::string request;
    std::size_t wanted = std::string::npos;
    char bytes[65'536];
    while (request.size() < wanted) {
      const auto got = read(bytes, sizeof(bytes));
      if (got <= 0) break;
      request.append(bytes, static_cast<std::size_t>(got));
      const std::size_t head = request.find("\r\n\r\n");
      if (wanted != std::string::npos || head == std::string::npos) continue;
      const std::size_t length = request.find("Content-Length: ");
      wanted = head + 4 + (length < head ? std::stoul(request.substr(length + 16, 20)) : 0);
    }
    return request;
  }

  void sendAll(std::string_view bytes) {
    while (!bytes.empty()) {
      const auto sent = write(bytes);
      if (sent <= 0) return;
      bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
  }

  void sendEnd() {
    if (tls_ && isOpen_) SSL_shutdown(tls_.get());
    shutdown(connection_, SHUT_WR);
  }

  void waitUntilClosed() {
    char byte = 0;
    while (recv(connection_, &byte, 1, 0) > 0) {
    }
  }

 private:
  ssize_t read(char* bytes, std::size_t size) {
    if (!isOpen_) return -1;
    return tls_ ? SSL_read(tls_.get(), bytes, static_cast<int>(size)) : recv(connection_, bytes, size, 0);
  }

  ssize_t write(std::string_view bytes) {
    if (!isOpen_) return -1;
    return tls_ ? SSL_write(tls_.get(), bytes.data(), static_cast<int>(bytes.size()))
                : send(connection_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
  }

  const int connection_;
  const std::unique_ptr<SSL, decltype(&SSL_free)> tls_;
  bool isOpen_ = true;
};

LoopbackServer::LoopbackServer(std::shared_ptr<SSL_CTX> tls)
    : tls_(std::move(tls)), listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
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

void LoopbackServer::script(const std::string& path, std::string bytes) {
  const std::lock_guard lock(mutex_);
  answers_.insert_or_assign(path, std::move(bytes));
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
  // A client that goes early; OpenSSL's writes can't be told to raise no signal.
  sigset_t brokenPipe;
  sigemptyset(&brokenPipe);
  sigaddset(&brokenPipe, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
  while (true) {
    const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (connection < 0) return;
    connections_.push_back(connection);
    threads_.emplace_back([this, connection] { serve(connection); });
  }
}

void LoopbackServer::serve(int connection) {
  Channel channel(connection, tls_.get());
  const std::string request = channel.readRequest();
  if (!request.empty()) {
    const std::lock_guard lock(mutex_);
    requests_.push_back(request);
    come_.notify_all();
  }
  const auto answer = answerTo(request);
  if (answer) channel.sendAll(*answer);
  if (!answer && !request.empty()) channel.waitUntilClosed();
  channel.sendEnd();
  channel.waitUntilClosed();
}

std::optional<std::string> LoopbackServer::answerTo(const std::string& request) const {
  const std::size_t start = request.find(' ') + 1;
  const std::lock_guard lock(mutex_);
  const auto found = answers_.find(request.substr(start, request.find(' ', start) - start));
  return found == answers_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace orn
