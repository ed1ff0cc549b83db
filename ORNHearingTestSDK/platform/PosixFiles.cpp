#include <ORNHearingTestSDK/platform/PosixFiles.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace orn {
namespace {

bool writeAll(int file, std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

std::optional<std::vector<std::uint8_t>> readFile(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
  if (file.bad()) return std::nullopt;
  return bytes;
}

bool replaceFile(const std::string& path, std::span<const std::uint8_t> bytes) {
  std::string fresh = path + ".XXXXXX";
  const int file = mkostemp(fresh.data(), O_CLOEXEC);
  if (file < 0) return false;
  bool whole = writeAll(file, bytes) && fsync(file) == 0;
  whole = close(file) == 0 && whole;
  if (whole && rename(fresh.c_str(), path.c_str()) == 0) return true;
  unlink(fresh.c_str());
  return false;
}

bool fileExists(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

bool removeFile(const std::string& path) {
  std::error_code error;
  return std::filesystem::remove(path, error);
}

bool makeFolders(const std::string& path) {
  std::error_code error;
  if (path.empty() || std::filesystem::is_directory(path, error)) return !path.empty();
  if (!makeFolders(std::filesystem::path(path).parent_path())) return false;
  // Another process may have made it meanwhile.
  return mkdir(path.c_str(), 0700) == 0 || std::filesystem::is_directory(path, error);
}

}  // namespace orn
