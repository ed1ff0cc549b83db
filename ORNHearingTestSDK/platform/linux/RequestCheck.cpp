#include <ORNHearingTestSDK/platform/linux/RequestCheck.h>

#include <algorithm>
#include <string_view>

namespace orn {
namespace {

/// A token of RFC 9110, section 5.6.2.
bool isToken(std::string_view text) {
  constexpr std::string_view marks = "!#$%&'*+-.^_`|~";
  return !text.empty() && std::all_of(text.begin(), text.end(), [&](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || marks.find(c) != marks.npos;
  });
}

bool fitsOneLine(std::string_view text) { return text.find_first_of(std::string_view("\r\n\0", 3)) == text.npos; }

}  // namespace

std::optional<std::string> complaintAbout(const URLRequest& request) {
  // libcurl would guess a scheme from the host's name.
  if (request.url.find("://") == std::string::npos) return "the address has no scheme";
  if (!fitsOneLine(request.url)) return "the address holds a line break or NUL";
  if (!isToken(request.method)) return "the method is no HTTP method";
  for (const auto& [name, value] : request.headers) {
    if (!isToken(name)) return "a header's name is no HTTP header name";
    if (!fitsOneLine(value)) return "the header " + name + " holds a line break or NUL";
  }
  return std::nullopt;
}

}  // namespace orn
