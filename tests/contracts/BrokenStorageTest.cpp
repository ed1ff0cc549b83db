#include <algorithm>
#include <filesystem>
#include <fstream>
#include <thread>
#include <utility>

#include "BrokenCopies.h"
#include "LinuxBackend.h"
#include "examples/backend-contracts/SimulatedBackend.h"

namespace orn::contract {
namespace {

using namespace std::chrono_literals;
using Bytes = std::vector<std::uint8_t>;

/// The settings of a Linux program, whose keys and values the suite chose.
struct BrokenDefaults final : UserDefaults {
  explicit BrokenDefaults(std::shared_ptr<UserDefaults> defaults, bool reopened = false)
      : real(std::move(defaults)), isReopened(reopened) {}

  std::optional<DefaultsValue> value(const std::string& key) const override {
    const auto found = real->value(key);
    if (breaks("a key that was never set") && key == "never set") return false;
    if (breaks("synchronize() succeeds") && isSynchronized && key == "key0") return std::nullopt;
    const bool losesTypes = (breaks("a value comes back") && !isSynchronized && !isReopened && key != "key") ||
                            (breaks("what was synchronized") && isReopened);
    if (losesTypes && found && std::holds_alternative<std::chrono::system_clock::time_point>(*found)) return 1e9;
    return found;
  }
  void setValue(const std::string& key, DefaultsValue value) override {
    if (breaks("a value that is set again") && std::holds_alternative<bool>(value) && real->value(key)) return;
    if (breaks("any thread") && key == "b7") return;
    real->setValue(key, std::move(value));
  }
  void removeValue(const std::string& key) override {
    if (!breaks("a value that is removed") || key != "key") real->removeValue(key);
  }
  bool synchronize() override {
    isSynchronized = true;
    return real->synchronize() || breaks("synchronize() on a full disk");
  }

  std::shared_ptr<UserDefaults> real;
  bool isReopened, isSynchronized = false;
};

void overwrite(const std::string& path, std::span<const std::uint8_t> bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

struct BrokenFiles final : FileManager {
  std::string documentsDirectory() const override {
    return real->documentsDirectory() + (breaks("the documents folder") ? "/" : "");
  }
  std::optional<std::string> resourceBundle(const std::string& name) const override {
    const auto found = real->resourceBundle(name);
    return found || !breaks("the library's bundles") ? found : real->documentsDirectory();
  }
  std::optional<Bytes> contents(const std::string& path) const override {
    auto bytes = real->contents(path);
    if (breaks("what was written is read") && bytes) std::erase(*bytes, 0);
    return bytes || !breaks("what is no file") ? bytes : Bytes();
  }
  bool writeAtomically(const std::string& path, std::span<const std::uint8_t> bytes) override {
    if (breaks("a path is UTF-8") && std::any_of(path.begin(), path.end(), [](char c) { return c < 0; })) return false;
    if (breaks("whoever reads meanwhile") && bytes.size() == 200'000) {
      overwrite(path, bytes.first(1000));
      std::this_thread::sleep_for(1ms);
    }
    const bool isWritten = real->writeAtomically(path, bytes);
    if (breaks("writing leaves no other") && isWritten) overwrite(path + std::to_string(++count), bytes);
    if (breaks("a write that breaks off") && !isWritten) overwrite(path, bytes.first(1));
    return isWritten || (breaks("a write that can't be made") && path.ends_with("/x"));
  }
  bool fileExists(const std::string& path) const override {
    return real->fileExists(path) && !(breaks("fileExists() tells") && std::filesystem::is_empty(path));
  }
  bool removeFile(const std::string& path) override { return real->removeFile(path) || breaks("removeFile() removes"); }

  std::shared_ptr<FileManager> real = example::files().files;
  int count = 0;
};

TEST(BrokenCopies, OfTheSettingsAreNamed) {
  expectEachNamed<UserDefaultsUnderTest>(checkUserDefaults, [] {
    UserDefaultsUnderTest copy = linuxDefaults();
    copy.defaults = std::make_shared<BrokenDefaults>(copy.defaults);
    copy.reopen = [reopen = copy.reopen] { return std::make_shared<BrokenDefaults>(reopen(), true); };
    return copy;
  });
}

TEST(BrokenCopies, OfTheFilesAreNamed) {
  expectEachNamed<FileManagerUnderTest>(checkFileManager, [] {
    return FileManagerUnderTest{std::make_shared<BrokenFiles>(), withFullDisk};
  });
}

}  // namespace
}  // namespace orn::contract
