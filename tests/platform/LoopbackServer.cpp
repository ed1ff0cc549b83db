#include "LoopbackServer.h"

#include <sys/socket.h>

#include <csignal>
#include <stdexcept>
#include <utility>

#include <openssl/bio.h>
#include <openssl/ssl.h>

namespace orn {
namespace {

int socketOf(BIO& connection) { return static_cast<int>(BIO_get_fd(&connection, nullptr)); }

/// Head and body, or less if the other side goes.
std::string requestFrom(BIO& connection) {
  std::string request;
  std::size_t wanted = std::string::npos;
  char bytes[65'536];
  while (request.size() < wanted) {
    const int got = BIO_read(&connection, bytes, sizeof(bytes));
    if (got <= 0) break;
    request.append(bytes, static_cast<std::size_t>(got));
    const std::size_t head = request.find("\r\n\r\n");
    if (wanted != std::string::npos || head == std::string::npos) continue;
    const std::size_t length = request.find("Content-Length: ");
    wanted = head + 4 + (length < head ? std::stoul(request.substr(length + 16, 20)) : 0);
  }
  return request;
}

void waitUntilClosed(BIO& connection) {
  char byte = 0;
  while (recv(socketOf(connection), &byte, 1, 0) > 0) {
  }
}

}  // namespace

LoopbackServer::LoopbackServer(std::shared_ptr<SSL_CTX> tls)
    : tls_(std::move(tls)), listener_(BIO_new_accept("127.0.0.1:0"), BIO_free_all) {
  if (BIO_do_accept(listener_.get()) != 1) throw std::runtime_error("no loopback server");
  port_ = std::stoi(BIO_get_accept_port(listener_.get()));
  accepting_ = std::thread([this] { accept(); });
}

LoopbackServer::~LoopbackServer() {
  shutdown(socketOf(*listener_), SHUT_RDWR);
  accepting_.join();
}

void LoopbackServer::script(const std::string& path, std::string bytes) {
  const std::lock_guard lock(mutex_);
  answers_.insert_or_assign(path, std::move(bytes));
}

void LoopbackServer::waitForRequests(std::size_t count) const {
  std::unique_lock lock(mutex_);
  come_.wait(lock, [&] { return requests_.size() >= count; });
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
  while (BIO_do_accept(listener_.get()) == 1) {
    BIO* const plain = BIO_pop(listener_.get());
    connections_.emplace_back(tls_ ? BIO_push(BIO_new_ssl(tls_.get(), 0), plain) : plain, BIO_free_all);
    threads_.emplace_back([this, &connection = *connections_.back()] { serve(connection); });
  }
  for (const auto& connection : connections_) shutdown(socketOf(*connection), SHUT_RDWR);
  for (std::thread& thread : threads_) thread.join();
  connections_.clear();
}

void LoopbackServer::serve(BIO& connection) {
  const std::string request = requestFrom(connection);
  if (!request.empty()) {
    const std::lock_guard lock(mutex_);
    requests_.push_back(request);
    come_.notify_all();
  }
  const auto answer = answerTo(request);
  if (answer) BIO_write(&connection, answer->data(), static_cast<int>(answer->size()));  // blocks until all is sent
  if (!answer && !request.empty()) waitUntilClosed(connection);
  if (tls_) BIO_ssl_shutdown(&connection);
  shutdown(socketOf(connection), SHUT_WR);
  waitUntilClosed(connection);
}

std::optional<std::string> LoopbackServer::answerTo(const std::string& request) const {
  const std::size_t start = request.find(' ') + 1;
  const std::lock_guard lock(mutex_);
  const auto found = answers_.find(request.substr(start, request.find(' ', start) - start));
  return found == answers_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace orn
