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

/// The real settings of a Linux program, of which a test changes operations.
struct ChangedDefaults final : UserDefaults {
  explicit ChangedDefaults(std::shared_ptr<UserDefaults> defaults) : real(std::move(defaults)) {}

  std::optional<DefaultsValue> value(const std::string& key) const override {
    return reading ? reading(key, real->value(key)) : real->value(key);
  }
  void setValue(const std::string& key, DefaultsValue value) override {
    if (!taking || taking(key, value)) real->setValue(key, std::move(value));
  }
  void removeValue(const std::string& key) override {
    if (!removing || removing(key)) real->removeValue(key);
  }
  bool synchronize() override {
    isSynchronized = true;
    const bool isWritten = real->synchronize();
    return isWritten || claims;
  }

  std::shared_ptr<UserDefaults> real;
  std::function<std::optional<DefaultsValue>(const std::string&, std::optional<DefaultsValue>)> reading;
  std::function<bool(const std::string&, const DefaultsValue&)> taking;
  std::function<bool(const std::string&)> removing;
  bool isSynchronized = false;
  bool claims = false;
};

std::function<UserDefaultsUnderTest()> defaultsThat(const std::function<void(ChangedDefaults&)>& change) {
  return [change] {
    UserDefaultsUnderTest copy = linuxDefaults();
    const auto changed = std::make_shared<ChangedDefaults>(copy.defaults);
    change(*changed);
    copy.defaults = changed;
    return copy;
  };
}

std::optional<DefaultsValue> dateAsNumber(std::optional<DefaultsValue> value) {
  const auto* date = value ? std::get_if<std::chrono::system_clock::time_point>(&*value) : nullptr;
  if (date) return static_cast<double>(date->time_since_epoch().count());
  return value;
}

const std::vector<BrokenCopy<UserDefaultsUnderTest>> kDefaults = {
    {"a key that was never set", defaultsThat([](ChangedDefaults& defaults) {
       defaults.reading = [](const std::string& key, auto value) {
         return key == "never set" ? std::optional<DefaultsValue>(false) : value;
       };
     })},
    {"a value comes back", defaultsThat([](ChangedDefaults& defaults) {
       defaults.reading = [&defaults](const std::string& key, auto value) {
         return defaults.isSynchronized || key == "key" ? value : dateAsNumber(value);
       };
     })},
    {"a value that is set again", defaultsThat([](ChangedDefaults& defaults) {
       defaults.taking = [&defaults](const std::string& key, const DefaultsValue& value) {
         return !std::holds_alternative<bool>(value) || !defaults.real->value(key);
       };
     })},
    {"a value that is removed", defaultsThat([](ChangedDefaults& defaults) {
       defaults.removing = [](const std::string& key) { return key != "key"; };
     })},
    {"synchronize() succeeds", defaultsThat([](ChangedDefaults& defaults) {
       defaults.reading = [&defaults](const std::string& key, auto value) {
         return defaults.isSynchronized && key == "key0" ? std::nullopt : value;
       };
     })},
    {"what was synchronized",
     [] {
       UserDefaultsUnderTest copy = linuxDefaults();
       copy.reopen = [reopen = copy.reopen] {
         const auto changed = std::make_shared<ChangedDefaults>(reopen());
         changed->reading = [](const auto&, auto value) { return dateAsNumber(value); };
         return changed;
       };
       return copy;
     }},
    {"any thread", defaultsThat([](ChangedDefaults& defaults) {
       defaults.taking = [](const std::string& key, auto&) { return key != "b7"; };
     })},
    {"synchronize() on a full disk", defaultsThat([](ChangedDefaults& defaults) { defaults.claims = true; })},
};

struct ChangedFiles final : FileManager {
  explicit ChangedFiles(std::shared_ptr<FileManager> files) : real(std::move(files)) {}

  std::string documentsDirectory() const override { return real->documentsDirectory() + ending; }
  std::optional<std::string> resourceBundle(const std::string& name) const override {
    const auto found = real->resourceBundle(name);
    return found || !anyBundle ? found : real->documentsDirectory();
  }
  std::optional<std::vector<std::uint8_t>> contents(const std::string& path) const override {
    return reading ? reading(path, real->contents(path)) : real->contents(path);
  }
  bool writeAtomically(const std::string& path, std::span<const std::uint8_t> bytes) override {
    return writing ? writing(path, bytes) : real->writeAtomically(path, bytes);
  }
  bool fileExists(const std::string& path) const override {
    return real->fileExists(path) && (!existing || existing(path));
  }
  bool removeFile(const std::string& path) override { return real->removeFile(path) || claims; }

  std::shared_ptr<FileManager> real;
  std::string ending;
  bool anyBundle = false, claims = false;
  std::function<std::optional<std::vector<std::uint8_t>>(const std::string&, std::optional<std::vector<std::uint8_t>>)>
      reading;
  std::function<bool(const std::string&, std::span<const std::uint8_t>)> writing;
  std::function<bool(const std::string&)> existing;
};

std::function<FileManagerUnderTest()> filesThat(const std::function<void(ChangedFiles&)>& change) {
  return [change] {
    const auto changed = std::make_shared<ChangedFiles>(example::files().files);
    change(*changed);
    return FileManagerUnderTest{changed, withFullDisk};
  };
}

void overwrite(const std::string& path, std::span<const std::uint8_t> bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

using Bytes = std::span<const std::uint8_t>;

const std::vector<BrokenCopy<FileManagerUnderTest>> kFiles = {
    {"the documents folder", filesThat([](ChangedFiles& files) { files.ending = "/"; })},
    {"the library's bundles", filesThat([](ChangedFiles& files) { files.anyBundle = true; })},
    {"what was written is read", filesThat([](ChangedFiles& files) {
       files.reading = [](auto&, auto bytes) {
         if (bytes) bytes->erase(std::find(bytes->begin(), bytes->end(), 0), bytes->end());
         return bytes;
       };
     })},
    {"a path is UTF-8", filesThat([](ChangedFiles& files) {
       files.writing = [&files](const std::string& path, Bytes bytes) {
         const bool isPlain = std::all_of(path.begin(), path.end(), [](char c) { return c > 0; });
         return isPlain && files.real->writeAtomically(path, bytes);
       };
     })},
    {"writing leaves no other", filesThat([](ChangedFiles& files) {
       files.writing = [&files, count = 0](const std::string& path, Bytes bytes) mutable {
         const bool isWritten = files.real->writeAtomically(path, bytes);
         if (isWritten && count < 9) overwrite(path + std::to_string(count++), bytes);
         return isWritten;
       };
     })},
    {"whoever reads meanwhile", filesThat([](ChangedFiles& files) {
       files.writing = [&files](const std::string& path, Bytes bytes) {
         if (bytes.size() == 200'000) {
           overwrite(path, bytes.first(1000));
           std::this_thread::sleep_for(1ms);
         }
         return files.real->writeAtomically(path, bytes);
       };
     })},
    {"a write that can't be made", filesThat([](ChangedFiles& files) {
       files.writing = [&files](const std::string& path, Bytes bytes) {
         return files.real->writeAtomically(path, bytes) || path.ends_with("/x");
       };
     })},
    {"a write that breaks off", filesThat([](ChangedFiles& files) {
       files.writing = [&files](const std::string& path, Bytes bytes) {
         const bool isWritten = files.real->writeAtomically(path, bytes);
         if (!isWritten) overwrite(path, bytes.first(1));
         return isWritten;
       };
     })},
    {"what is no file", filesThat([](ChangedFiles& files) {
       files.reading = [](auto&, auto bytes) { return bytes ? bytes : std::vector<std::uint8_t>(); };
     })},
    {"fileExists() tells", filesThat([](ChangedFiles& files) {
       files.existing = [](const std::string& path) { return std::filesystem::file_size(path) > 0; };
     })},
    {"removeFile() removes", filesThat([](ChangedFiles& files) { files.claims = true; })},
};

TEST(BrokenCopies, OfTheSettingsAreNamed) { expectNamed("UserDefaults", checkUserDefaults, kDefaults); }
TEST(BrokenCopies, OfTheFilesAreNamed) { expectNamed("FileManager", checkFileManager, kFiles); }

}  // namespace
}  // namespace orn::contract
