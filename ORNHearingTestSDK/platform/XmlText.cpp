#include <ORNHearingTestSDK/platform/XmlText.h>

#include <algorithm>

#include <ORNHearingTestSDK/platform/Utf8.h>

namespace orn {
namespace {

bool isForeignControl(char c) { return c >= 0 && c < 0x20 && c != '\t' && c != '\n' && c != '\r'; }

}  // namespace

bool isXmlText(std::string_view text) {
  constexpr std::string_view noCharacters[] = {"\xEF\xBF\xBE", "\xEF\xBF\xBF"};  // U+FFFE and U+FFFF
  return isUtf8(text) && std::none_of(text.begin(), text.end(), isForeignControl) &&
         text.find(noCharacters[0]) == text.npos && text.find(noCharacters[1]) == text.npos;
}

}  // namespace orn
