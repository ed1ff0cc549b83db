#include <ORNHearingTestSDK/platform/PlistXml.h>

#include <plist/plist.h>

#include <limits>
#include <string_view>

#include <ORNHearingTestSDK/platform/PointForDecimals.h>

namespace orn {
namespace {

/// libplist frees a list level by level on the stack. A count of all levels bounds their depth, too.
bool isNestedTooOften(std::string_view xml) {
  constexpr int most = 10'000;
  int count = 0;
  for (const std::string_view opening : {"<array", "<dict"}) {
    for (auto at = xml.find(opening); at != xml.npos; at = xml.find(opening, at + 1)) ++count;
  }
  return count > most;
}

bool isSafe(std::string_view xml) {
  return xml.size() <= std::numeric_limits<std::uint32_t>::max() && xml.find('\0') == xml.npos &&
         !isNestedTooOften(xml);
}

}  // namespace

void PlistFree::operator()(void* node) const { plist_free(node); }

PlistNode plistOfXml(std::span<const std::uint8_t> bytes) {
  const std::string_view xml(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (!isSafe(xml)) return nullptr;
  const PointForDecimals point;
  plist_t root = nullptr;
  plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &root);
  return PlistNode(root);
}

std::optional<std::string> xmlOfPlist(void* node) {
  const PointForDecimals point;
  char* xml = nullptr;
  std::uint32_t length = 0;
  plist_to_xml(node, &xml, &length);
  const PlistText held(xml);
  if (!xml) return std::nullopt;
  return std::string(xml, length);
}

}  // namespace orn
