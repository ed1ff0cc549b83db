#include <algorithm>
#include <fstream>
#include <thread>

#include "BrokenCopies.h"
#include "LinuxBackend.h"
#include "examples/backend-contracts/SimulatedBackend.h"

namespace orn::contract {
namespace {

using namespace std::chrono_literals;
using Bytes = std::vector<std::uint8_t>;

struct BrokenNetwork final : URLSession {
  void dataTask(URLRequest request, CompletionHandler handler) override {
    if (breaks("a request that is not answered")) request.timeout = 24h;
    if (breaks("method, headers and body")) request.headers.pop_back();
    if (breaks("dataTask() returns")) return handler({"the answer", {}});
    if (breaks("a handler may ask again") && isWithin) return;
    if (breaks("requests may be under way")) std::swap(request.url, before);
    real->dataTask(request, [this, handler](URLReply reply) {
      if (breaks("the body of the reply")) reply.body = reply.body->substr(1);
      if (breaks("whatever the status")) reply = {std::nullopt, Error{"http", 500, "bad"}};
      if (breaks("an address that nobody")) reply = {};
      if (breaks("the handler is called exactly once")) handler(reply);
      if (breaks("handlers come on")) return std::thread([&] { handler(reply); }).join();
      isWithin = true;
      handler(std::move(reply));
      isWithin = false;
    });
  }

  std::shared_ptr<URLSession> real;
  std::string before;  // the address of the request before this one
  bool isWithin = false;
};

struct BrokenDefaults final : UserDefaults {
  std::optional<DefaultsValue> value(const std::string& key) const override {
    const auto found = real->value(key);
    if (breaks("a key that was never set") && !found) return false;
    if (breaks("a value comes back") && found && found->index() > 2) return 1e9;
    return found;
  }
  void setValue(const std::string& key, DefaultsValue value) override {
    if (breaks("a value that is set again") && real->value(key)) return;
    if (!breaks("any thread") || key != "b7") real->setValue(key, std::move(value));
  }
  void removeValue(const std::string& key) override {
    if (!breaks("a value that is removed")) real->removeValue(key);
  }
  bool synchronize() override {
    const bool isDone = real->synchronize();
    return breaks("synchronize() on a full disk") || (isDone && !breaks("synchronize() succeeds"));
  }

  std::shared_ptr<UserDefaults> real;
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
    return real->resourceBundle(breaks("the library's bundles") ? "wav.bundle" : name);
  }
  std::optional<Bytes> contents(const std::string& path) const override {
    auto bytes = real->contents(path);
    if (breaks("what was written is read") && bytes) std::erase(*bytes, 0);
    return bytes || !breaks("what is no file") ? bytes : Bytes();
  }
  bool writeAtomically(const std::string& path, std::span<const std::uint8_t> bytes) override {
    if (breaks("a path is UTF-8") && std::any_of(path.begin(), path.end(), [](char c) { return c < 0; })) return false;
    if (breaks("whoever reads meanwhile")) {
      overwrite(path, bytes.first(bytes.size() / 2));
      std::this_thread::sleep_for(1ms);
    }
    const bool isWritten = real->writeAtomically(path, bytes);
    if (breaks("writing leaves no other")) overwrite(path + std::to_string(++count), bytes);
    if (breaks("a write that breaks off") && !isWritten) overwrite(path, {});
    return isWritten || breaks("a write that can't be made");
  }
  bool fileExists(const std::string& path) const override {
    return breaks("fileExists() tells") || real->fileExists(path);
  }
  bool removeFile(const std::string& path) override { return real->removeFile(path) || breaks("removeFile() removes"); }

  std::shared_ptr<FileManager> real;
  int count = 0;
};

TEST(BrokenCopies, OfTheNetworkAreNamed) {
  expectEachNamed<URLSessionUnderTest>(checkURLSession, [] {
    URLSessionUnderTest copy = example::network();
    copy.brokenStatusUrl = copy.answeringUrl;
    return brokenIn<BrokenNetwork>(copy, &URLSessionUnderTest::session);
  });
}

TEST(BrokenCopies, OfTheSettingsAreNamed) {
  expectEachNamed<UserDefaultsUnderTest>(checkUserDefaults, [] {
    UserDefaultsUnderTest copy = linuxDefaults();
    if (breaks("what was synchronized")) copy.reopen = [] { return std::make_shared<SimulatedUserDefaults>(); };
    return brokenIn<BrokenDefaults>(copy, &UserDefaultsUnderTest::defaults);
  });
}

TEST(BrokenCopies, OfTheFilesAreNamed) {
  expectEachNamed<FileManagerUnderTest>(checkFileManager, [] {
    return brokenIn<BrokenFiles>({example::files().files, withFullDisk}, &FileManagerUnderTest::files);
  });
}

}  // namespace
}  // namespace orn::contract
