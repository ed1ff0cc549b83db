#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "hearing-service/Request.h"

struct MHD_Daemon;

namespace orn::service {

/// What goes back to the client, as JSON.
struct HttpReply {
  unsigned status = 200;
  std::string body;
  std::size_t padding = 0;                 ///< Number of spaces behind the body.
  std::optional<std::size_t> breaksAfter;  ///< The connection ends after so many bytes of the body, all announced.
};

/// HTTP/1.1 on 127.0.0.1 for up to 256 connections at once; more have to wait.
class HttpServer {
 public:
  /// Called on a thread of the connection's own, so that a slow reply holds up nobody else. If it throws, the
  /// connection ends without a reply.
  using Handler = std::function<HttpReply(const Request&)>;

  /// Port 0 takes a free one. Throws std::runtime_error if the port can't be had.
  HttpServer(std::uint16_t port, Handler handler);

  std::uint16_t port() const { return port_; }

 private:
  struct Stopping {
    void operator()(MHD_Daemon* daemon) const;  // returns once no handler runs any more
  };

  Handler handler_;
  std::unique_ptr<MHD_Daemon, Stopping> daemon_;
  std::uint16_t port_ = 0;
};

}  // namespace orn::service
