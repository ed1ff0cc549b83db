#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

// libplist, held so that its memory is freed and no file can bring it down. Any thread.

/// Ends a property list's node.
struct ORN_EXPORT PlistFree {
  void operator()(void* node) const;  ///< Does it.
};
using PlistNode = std::unique_ptr<void, PlistFree>;

/// Ends a text of the property list's library.
struct PlistTextFree {
  void operator()(char* text) const { std::free(text); }  ///< Does it.
};
using PlistText = std::unique_ptr<char, PlistTextFree>;

/// The root of an XML property list; null if the bytes are none, or hold what libplist would crash on: NUL, or more
/// than 10,000 lists and dictionaries, which could stand within each other.
ORN_EXPORT PlistNode plistOfXml(std::span<const std::uint8_t> bytes);

/// Nothing if there is no memory. The node stays the caller's.
ORN_EXPORT std::optional<std::string> xmlOfPlist(void* node);

}  // namespace orn
