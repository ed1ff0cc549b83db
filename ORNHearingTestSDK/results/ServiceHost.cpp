#include <ORNHearingTestSDK/results/ServiceHost.h>

#include <algorithm>
#include <cctype>

namespace orn {
namespace {

constexpr std::string_view kSecure = "https://";

/// Only what names a host and a port: nothing that would lead a request elsewhere.
bool isOfHost(unsigned char c) { return std::isalnum(c) || c == '.' || c == '-' || c == ':' || c == '[' || c == ']'; }

}  // namespace

std::optional<std::string> complaintAboutServiceHost(std::string_view text) {
  const bool isSecure = text.starts_with(kSecure);
  if (isSecure) text.remove_prefix(kSecure.size());
  if (text.empty()) return isSecure ? "it names no host behind https://" : "it is empty";
  if (text.find("://") != text.npos) return "it has another scheme than https://";
  const auto* const wrong = std::find_if_not(text.begin(), text.end(), isOfHost);
  if (wrong == text.end()) return std::nullopt;
  const auto c = static_cast<unsigned char>(*wrong);
  if (c <= ' ' || c == 0x7F) return "it holds a blank or control character";
  if (text.find('@') != text.npos) return "it holds a user name";
  if (c == '/' || c == '?' || c == '#') return "it holds a path, and takes a host alone";
  return "it holds a character that no host has";
}

std::string serviceOrigin(const std::string& host) { return host.starts_with(kSecure) ? host : "http://" + host; }

}  // namespace orn
