#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <sys/socket.h>

namespace orn::service {

/// A numeric IPv4 or IPv6 address of this machine, and a port.
struct ListenAddress {
  sockaddr_storage bytes{};
  std::string text;  ///< The address alone, as it is written in a URL.

  /// Nothing if the text is not such an address, for instance a name.
  static std::optional<ListenAddress> parse(const std::string& text, std::uint16_t port);

  bool isIPv6() const { return bytes.ss_family == AF_INET6; }
  /// Whether only this machine can reach it.
  bool isLoopback() const;
};

}  // namespace orn::service
