#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

namespace orn::contract {

/// A new folder, removed with all in it when this object goes.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    const auto clock = std::chrono::steady_clock::now().time_since_epoch().count();
    for (int i = 0; !std::filesystem::create_directory(path_); ++i) {
      path_ = std::filesystem::temp_directory_path() /
              ("backend-contract." + std::to_string(clock) + "." + std::to_string(i));
    }
  }
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string path() const { return path_.string(); }

  /// A new file in it, and its path.
  template <class Bytes>
  std::string write(const std::string& name, const Bytes& bytes) const {
    std::ofstream(path_ / name, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return (path_ / name).string();
  }

 private:
  std::filesystem::path path_ = std::filesystem::temp_directory_path();
};

}  // namespace orn::contract
