#include <ORNHearingTestSDK/common/Base64.h>

#include <algorithm>

#include <openssl/evp.h>

namespace orn {
namespace {

// OpenSSL counts in int: long inputs go through it in slices of whole groups.
constexpr std::size_t kGroupsAtOnce = 1 << 20;
constexpr std::size_t kBytesInGroup = 3, kCharactersInGroup = 4;

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::size_t paddingLength(std::string_view text) { return text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0; }

bool isWellFormed(std::string_view text) {
  if (text.size() % kCharactersInGroup != 0) return false;
  text.remove_suffix(paddingLength(text));
  return text.find_first_not_of(kAlphabet) == std::string_view::npos;
}

}  // namespace

std::optional<Bytes> decodeBase64(std::string_view text) {
  if (!isWellFormed(text)) return std::nullopt;
  Bytes bytes(text.size() / kCharactersInGroup * kBytesInGroup);
  auto* to = bytes.data();
  for (auto rest = text; !rest.empty();) {
    const auto slice = rest.substr(0, kGroupsAtOnce * kCharactersInGroup);
    const int written =
        EVP_DecodeBlock(to, reinterpret_cast<const unsigned char*>(slice.data()), static_cast<int>(slice.size()));
    if (written < 0) return std::nullopt;
    to += written;
    rest.remove_prefix(slice.size());
  }
  bytes.resize(bytes.size() - paddingLength(text));  // EVP_DecodeBlock counts padding as zero bytes
  return bytes;
}

std::string encodeBase64(std::span<const std::uint8_t> bytes) {
  std::string text((bytes.size() + kBytesInGroup - 1) / kBytesInGroup * kCharactersInGroup, '\0');
  auto* to = reinterpret_cast<unsigned char*>(text.data());
  while (!bytes.empty()) {
    const auto slice = bytes.first(std::min(bytes.size(), kGroupsAtOnce * kBytesInGroup));
    to += EVP_EncodeBlock(to, slice.data(), static_cast<int>(slice.size()));
    bytes = bytes.subspan(slice.size());
  }
  return text;
}

}  // namespace orn
