#pragma once

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

struct bio_st;
struct ssl_ctx_st;

namespace orn {

/// An HTTP server on 127.0.0.1, in plain or under TLS, that sends scripted bytes and keeps what it was sent. A thread
/// for each connection.
class LoopbackServer {
 public:
  explicit LoopbackServer(std::shared_ptr<ssl_ctx_st> tls = nullptr);
  ~LoopbackServer();
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  int port() const { return port_; }
  std::string url(const std::string& path) const {
    return (tls_ ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(port_) + path;
  }

  /// What a request of that path is answered with before the connection is closed. A path without a script is never
  /// answered.
  void script(const std::string& path, std::string bytes);

  /// Waits until that many requests have come.
  void waitForRequests(std::size_t count) const;

  /// Every request in full, in the order of their coming.
  std::vector<std::string> requests() const;

 private:
  void accept();
  void serve(bio_st& connection);
  std::optional<std::string> answerTo(const std::string& request) const;

  const std::shared_ptr<ssl_ctx_st> tls_;
  const std::shared_ptr<bio_st> listener_;
  int port_ = 0;
  mutable std::mutex mutex_;
  mutable std::condition_variable come_;
  std::map<std::string, std::string> answers_;
  std::vector<std::string> requests_;
  std::vector<std::shared_ptr<bio_st>> connections_;
  std::vector<std::thread> threads_;
  std::thread accepting_;
};

}  // namespace orn
