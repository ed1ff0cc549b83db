#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "hearing-service/Request.h"
#include "hearing-service/RequestLog.h"

struct MHD_Daemon;

namespace orn::service {

/// What goes back to the client, as JSON.
struct HttpReply {
  unsigned status = 200;
  std::string body;
  std::size_t padding = 0;                 ///< Number of spaces after the body.
  std::optional<std::size_t> breaksAfter;  ///< The connection ends after so many bytes of those announced.
};

/// Where and how a server listens.
struct Listening {
  std::string address = "127.0.0.1";  ///< Numeric, IPv4 or IPv6.
  std::uint16_t port = 0;             ///< 0 takes a free one.
  std::string certificate, key;       ///< PEM texts; with both it speaks only TLS 1.2 or newer.

  bool isSecure() const { return !certificate.empty(); }
};

/// HTTP/1.1 for up to 256 connections at once; more have to wait.
class HttpServer {
 public:
  /// Called on the connection's own thread, so that a slow reply holds up nobody else. If it throws, the connection
  /// ends without a reply.
  using Handler = std::function<HttpReply(const Request&)>;

  /// The log is told of connections that end without the handler. Throws std::runtime_error if the address, the port,
  /// the certificate or the key can't be used.
  HttpServer(const Listening& listening, Handler handler, Log log);
  ~HttpServer();

  std::uint16_t port() const { return port_; }

 private:
  struct Stopping {
    void operator()(MHD_Daemon* daemon) const;  // returns once no handler runs any more
  };

  struct Answering;
  std::unique_ptr<Answering> answering_;
  std::unique_ptr<MHD_Daemon, Stopping> daemon_;
  std::uint16_t port_ = 0;
};

}  // namespace orn::service
