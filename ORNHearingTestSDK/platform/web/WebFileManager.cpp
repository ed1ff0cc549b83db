#include <ORNHearingTestSDK/platform/web/WebFileManager.h>

#include <emscripten/emscripten.h>

// The documents folder is there before main(), with what was kept of it.
// clang-format off
EM_JS(void, orn_web_keep_documents, (), {
  // One after another; what changes meanwhile is written by the next one.
  const ornKept = Module.ornKept = Module.ornKept || { isUnderWay: false, isDue: false };
  const keep = () => {
    if (ornKept.isUnderWay) return void (ornKept.isDue = true);
    ornKept.isUnderWay = true;
    ornKept.isDue = false;
    FS.syncfs(false, (error) => {
      if (error) console.warn("the documents could not be kept: " + error);
      ornKept.isUnderWay = false;
      if (ornKept.isDue) keep();
    });
  };
  keep();
});
// clang-format on

namespace orn {

std::string WebFileManager::documentsDirectory() const { return "/documents"; }

bool WebFileManager::writeAtomically(const std::string& path, std::span<const std::uint8_t> bytes) {
  const bool isWritten = PosixFileManager::writeAtomically(path, bytes);
  if (isWritten) orn_web_keep_documents();
  return isWritten;
}

bool WebFileManager::removeFile(const std::string& path) {
  const bool isRemoved = PosixFileManager::removeFile(path);
  if (isRemoved) orn_web_keep_documents();
  return isRemoved;
}

}  // namespace orn
