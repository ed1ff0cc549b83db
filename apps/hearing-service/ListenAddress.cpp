#include "hearing-service/ListenAddress.h"

#include <arpa/inet.h>
#include <netinet/in.h>

namespace orn::service {

std::optional<ListenAddress> ListenAddress::parse(const std::string& text, std::uint16_t port) {
  ListenAddress address;
  auto& ipv4 = reinterpret_cast<sockaddr_in&>(address.bytes);
  auto& ipv6 = reinterpret_cast<sockaddr_in6&>(address.bytes);
  if (inet_pton(AF_INET, text.c_str(), &ipv4.sin_addr) == 1) {
    ipv4.sin_family = AF_INET;
    ipv4.sin_port = htons(port);
    address.text = text;
  } else if (inet_pton(AF_INET6, text.c_str(), &ipv6.sin6_addr) == 1) {
    ipv6.sin6_family = AF_INET6;
    ipv6.sin6_port = htons(port);
    address.text = "[" + text + "]";
  } else {
    return std::nullopt;
  }
  return address;
}

bool ListenAddress::isLoopback() const {
  if (isIPv6()) return IN6_IS_ADDR_LOOPBACK(&reinterpret_cast<const sockaddr_in6&>(bytes).sin6_addr);
  constexpr std::uint32_t kLoopbackNet = 127;
  return ntohl(reinterpret_cast<const sockaddr_in&>(bytes).sin_addr.s_addr) >> 24 == kLoopbackNet;
}

}  // namespace orn::service
