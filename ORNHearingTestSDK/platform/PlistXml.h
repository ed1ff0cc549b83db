#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

// libplist, wrapped so that its memory is freed and no file can make it crash. Any thread.

/// Frees a node of a property list.
struct ORN_EXPORT PlistFree {
  void operator()(void* node) const;  ///< Frees it.
};
using PlistNode = std::unique_ptr<void, PlistFree>;

/// Frees a text of libplist's.
struct PlistTextFree {
  void operator()(char* text) const { std::free(text); }  ///< Frees it.
};
using PlistText = std::unique_ptr<char, PlistTextFree>;

/// The root of an XML property list; null if the bytes are not one, or hold what libplist would crash on: NUL, or more
/// than 10,000 lists and dictionaries, which could be nested.
ORN_EXPORT PlistNode plistOfXml(std::span<const std::uint8_t> bytes);

/// Nothing if there is no memory. The node stays the caller's.
ORN_EXPORT std::optional<std::string> xmlOfPlist(void* node);

}  // namespace orn
