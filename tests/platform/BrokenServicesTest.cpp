#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <thread>
#include <utility>

#include <ORNHearingTestSDK/platform/contract/DeviceContract.h>

#include "BrokenCopies.h"
#include "LinuxBackend.h"
#include "examples/backend-contracts/SimulatedBackend.h"

namespace orn::contract {
namespace {

using namespace std::chrono_literals;

bool isHere(std::thread::id here) { return std::this_thread::get_id() == here; }

struct ChangedSession final : AudioSession {
  using Tell = std::function<void(const AudioSessionObserver&, std::int32_t)>;

  explicit ChangedSession(std::shared_ptr<AudioSession> session) : real(std::move(session)) {}

  std::error_code setActive(bool active) override { return real->setActive(active); }
  std::error_code setCategory(AudioSessionCategory category, std::uint32_t options) override {
    return configure ? configure() : real->setCategory(category, options);
  }
  std::optional<std::string> routeText() const override { return text ? text() : real->routeText(); }
  AudioRouteDescription currentRoute() const override { return route ? route() : real->currentRoute(); }
  float outputVolume() const override { return real->outputVolume(); }
  std::error_code setOutputVolume(float level) override {
    return volume ? volume(level) : real->setOutputVolume(level);
  }
  void addObserver(std::weak_ptr<const AudioSessionObserver> observer) override {
    if (adding) adding(observer);
    const auto forwards = [observer](const Tell& tell, std::int32_t value) {
      if (const auto alive = observer.lock()) tell(*alive, value);
    };
    wrapped.push_back(std::make_shared<AudioSessionObserver>(
        AudioSessionObserver{[this, forwards](std::int32_t reason) { forwards(tellRoute, reason); },
                             [this, forwards](std::int32_t type) { forwards(tellInterruption, type); }}));
    real->addObserver(wrapped.back());
  }

  std::shared_ptr<AudioSession> real;
  std::vector<std::shared_ptr<const AudioSessionObserver>> wrapped;
  std::function<std::error_code()> configure;
  std::function<std::optional<std::string>()> text;
  std::function<AudioRouteDescription()> route;
  std::function<std::error_code(float)> volume;
  std::function<void(std::weak_ptr<const AudioSessionObserver>)> adding;
  Tell tellRoute = [](const AudioSessionObserver& observer, std::int32_t reason) {
    if (observer.routeChange) observer.routeChange(reason);
  };
  Tell tellInterruption = [](const AudioSessionObserver& observer, std::int32_t type) {
    if (observer.interruption) observer.interruption(type);
  };
};

std::function<AudioSessionUnderTest()> sessionThat(const std::function<void(ChangedSession&, AudioSession&)>& change) {
  return [change] {
    AudioSessionUnderTest copy = example::session();
    const auto changed = std::make_shared<ChangedSession>(copy.session);
    change(*changed, *copy.session);
    copy.session = changed;
    return copy;
  };
}

std::function<AudioSessionUnderTest()> volumeThat(const std::function<float(float)>& change) {
  return sessionThat([change](ChangedSession& session, AudioSession& real) {
    session.volume = [&real, change](float level) { return real.setOutputVolume(change(level)); };
  });
}

const std::vector<BrokenCopy<AudioSessionUnderTest>> kSessions = {
    {"it is activated", sessionThat([](ChangedSession& session, AudioSession&) {
       session.configure = [] { return std::make_error_code(std::errc::operation_not_permitted); };
     })},
    {"an output has a route text",
     sessionThat([](ChangedSession& session, AudioSession&) { session.text = [] { return std::nullopt; }; })},
    {"an output is a port", sessionThat([](ChangedSession& session, AudioSession& real) {
       session.route = [&real] {
         auto route = real.currentRoute();
         for (AudioPort& port : route.outputs) port.portName.clear();
         return route;
       };
     })},
    {"the volume that is set", volumeThat([](float level) { return level == 0.9F ? 0.8F : level; })},
    {"beyond 0 and 1", volumeThat([](float level) { return level > 1 ? 0 : level; })},
    {"without an output there is", sessionThat([](ChangedSession& session, AudioSession& real) {
       session.text = [&real] { return real.routeText().value_or("Speaker"); };
     })},
    {"without an output setOutputVolume()", sessionThat([](ChangedSession& session, AudioSession& real) {
       session.volume = [&real](float level) { return (void)real.setOutputVolume(level), std::error_code(); };
     })},
    {"a new device becomes", sessionThat([](ChangedSession& session, AudioSession& real) {
       session.route = [&real, first = std::make_shared<std::optional<AudioRouteDescription>>()] {
         if (!real.routeText()) return AudioRouteDescription();
         if (!*first) *first = real.currentRoute();
         return **first;
       };
     })},
    {"a device that goes", sessionThat([](ChangedSession& session, AudioSession&) {
       session.tellRoute = [tell = session.tellRoute](const auto& observer, std::int32_t reason) {
         tell(observer, reason == kAudioSessionRouteChangeReasonOldDeviceUnavailable ? 0 : reason);
       };
     })},
    {"an interruption", sessionThat([](ChangedSession& session, AudioSession&) {
       session.tellInterruption = [tell = session.tellInterruption](const auto& observer, std::int32_t) {
         tell(observer, 1);
       };
     })},
    {"notices come on", sessionThat([](ChangedSession& session, AudioSession&) {
       session.tellRoute = [tell = session.tellRoute](const auto& observer, std::int32_t reason) {
         std::thread([&] { tell(observer, reason); }).join();
       };
     })},
    {"an empty member", sessionThat([](ChangedSession& session, AudioSession&) {
       session.tellRoute = [](const auto& observer, std::int32_t reason) { observer.routeChange(reason); };
     })},
    {"an observer is not kept", sessionThat([](ChangedSession& session, AudioSession&) {
       session.adding = [kept = std::shared_ptr<const AudioSessionObserver>()](const auto& observer) mutable {
         if (!kept) kept = observer.lock();
       };
     })},
    {"an observer may let go", sessionThat([](ChangedSession& session, AudioSession&) {
       // Whoever is there when a notice begins is told, whatever happens meanwhile.
       const auto all = std::make_shared<std::vector<std::weak_ptr<const AudioSessionObserver>>>();
       session.adding = [all](const auto& observer) { all->push_back(observer); };
       session.tellRoute = [all, tell = session.tellRoute](const auto& observer, std::int32_t reason) {
         if (all->front().lock().get() != &observer) return;
         std::vector<std::shared_ptr<const AudioSessionObserver>> held;
         for (const auto& one : *all) held.push_back(one.lock());
         for (const auto& one : held) {
           if (one) tell(*one, reason);
         }
       };
     })},
};

/// A session whose requests a test changes, by their number and with the handler that the reply is meant for.
struct ChangedURLSession final : URLSession {
  using Task = std::function<void(URLRequest, CompletionHandler, int number)>;

  void dataTask(URLRequest request, CompletionHandler handler) override {
    task(std::move(request), std::move(handler), ++count);
  }

  Task task;
  std::atomic<int> count = 0;
};

using Change = std::function<void(ChangedURLSession& session, URLSessionUnderTest& copy, URLSession& real)>;

std::function<URLSessionUnderTest()> networkThat(
    const Change& change, const std::function<URLSessionUnderTest()>& make = [] {
      auto copy = example::network();
      copy.brokenStatusUrl = copy.answeringUrl + "/whatever";
      return copy;
    }) {
  return [change, make] {
    URLSessionUnderTest copy = make();
    const auto changed = std::make_shared<ChangedURLSession>();
    change(*changed, copy, *copy.session);
    copy.session = std::shared_ptr<URLSession>(changed.get(), [changed = std::shared_ptr<ChangedURLSession>(changed),
                                                               real = copy.session](URLSession*) mutable {
      real.reset();  // its threads end before what they use
      changed.reset();
    });
    return copy;
  };
}

std::function<URLSessionUnderTest()> requestThat(const std::function<void(URLRequest&)>& change) {
  return networkThat([change](ChangedURLSession& session, URLSessionUnderTest&, URLSession& real) {
    session.task = [&real, change](URLRequest request, auto handler, int) {
      change(request);
      real.dataTask(std::move(request), std::move(handler));
    };
  });
}

/// Changes how the handler gets the reply to the session's first and only request.
std::function<URLSessionUnderTest()> onlyReplyThat(
    const std::function<void(const URLRequest&, URLReply, const URLSession::CompletionHandler&)>& change) {
  return networkThat([change](ChangedURLSession& session, URLSessionUnderTest&, URLSession& real) {
    session.task = [&real, &session, change](const URLRequest& request, auto handler, int) {
      real.dataTask(request, [&session, change, request, handler](URLReply reply) {
        session.count == 1 ? change(request, std::move(reply), handler) : handler(std::move(reply));
      });
    };
  });
}

const std::vector<BrokenCopy<URLSessionUnderTest>> kNetworks = {
    {"the body of the reply", onlyReplyThat([](const URLRequest& request, URLReply reply, const auto& handler) {
       if (reply.body && request.url.ends_with("/answer")) reply.body->pop_back();
       handler(std::move(reply));
     })},
    {"whatever the status is", onlyReplyThat([](const URLRequest& request, URLReply reply, const auto& handler) {
       if (request.url.ends_with("/whatever")) reply = {std::nullopt, Error{"http", 500, "broken"}};
       handler(std::move(reply));
     })},
    {"the handler is called exactly once",
     onlyReplyThat([](const URLRequest&, const URLReply& reply, const auto& handler) {
       for (int i = 0; i < 2; ++i) handler(reply);
     })},
    {"dataTask() returns", networkThat([](ChangedURLSession& session, URLSessionUnderTest& copy, URLSession& real) {
       session.task = [&real, url = copy.answeringUrl, answer = copy.answer](const URLRequest& request, auto handler,
                                                                             int number) {
         if (number > 1 || request.url != url) return real.dataTask(request, std::move(handler));
         real.dataTask(request, [](auto) {});
         handler({answer, {}});
       };
     })},
    {"handlers come", onlyReplyThat([](const URLRequest&, const URLReply& reply, const auto& handler) {
       std::thread([&] { handler(reply); }).join();
     })},
    {"handlers come", networkThat(
                          [](ChangedURLSession& session, URLSessionUnderTest& copy, URLSession& real) {
                            // On the main thread, where the loop would run.
                            struct Replies {
                              std::mutex mutex;
                              std::vector<std::function<void()>> waiting;
                            };
                            const auto replies = std::make_shared<Replies>();
                            session.task = [&real, replies](URLRequest request, auto handler, int) {
                              real.dataTask(std::move(request), [replies, handler](const URLReply& reply) {
                                const std::lock_guard lock(replies->mutex);
                                replies->waiting.emplace_back([handler, reply] { handler(reply); });
                              });
                            };
                            copy.runFor = [replies, runFor = copy.runFor](auto span) {
                              runFor(span);
                              std::vector<std::function<void()>> come;
                              {
                                const std::lock_guard lock(replies->mutex);
                                come.swap(replies->waiting);
                              }
                              for (const auto& reply : come) reply();
                            };
                          },
                          linuxNetwork)},
    {"an address that nobody", onlyReplyThat([](const URLRequest& request, URLReply reply, const auto& handler) {
       if (request.url.ends_with("/nobody")) reply = {};
       handler(std::move(reply));
     })},
    {"a request that is not answered", requestThat([](URLRequest& request) { request.timeout = 24h; })},
    {"method, headers and body", requestThat([](URLRequest& request) {
       for (char& letter : request.method) letter = static_cast<char>(std::toupper(letter));
     })},
    {"method, headers and body", requestThat([](URLRequest& request) {
       std::erase_if(request.headers, [](const auto& header) { return header.second.empty(); });
     })},
    {"requests may be under way", networkThat([](ChangedURLSession& session, URLSessionUnderTest&, URLSession& real) {
       session.task = [&real, waiting = std::make_shared<std::vector<URLSession::CompletionHandler>>()](
                          URLRequest request, auto handler, int) {
         waiting->push_back(std::move(handler));
         real.dataTask(std::move(request), [waiting](URLReply reply) {
           const auto youngest = std::move(waiting->back());
           waiting->pop_back();
           youngest(std::move(reply));
         });
       };
     })},
    {"any thread may ask", networkThat(
                               [](ChangedURLSession& session, URLSessionUnderTest&, URLSession& real) {
                                 session.task = [&real, here = std::this_thread::get_id()](
                                                    const URLRequest& request, const auto& handler, int number) {
                                   const bool isOther = !isHere(here) && number > 5;
                                   real.dataTask(request, [isOther, handler](URLReply reply) {
                                     if (isOther) reply = {std::nullopt, Error{"transport", 1, "busy"}};
                                     handler(std::move(reply));
                                   });
                                 };
                               },
                               linuxNetwork)},
    {"a handler may ask again", networkThat([](ChangedURLSession& session, URLSessionUnderTest&, URLSession& real) {
       session.task = [&real, isWithin = std::make_shared<bool>(false)](URLRequest request, auto handler, int) {
         if (*isWithin) return;
         real.dataTask(std::move(request), [isWithin, handler](URLReply reply) {
           *isWithin = true;
           handler(std::move(reply));
           *isWithin = false;
         });
       };
     })},
};

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

struct ChangedDevice final : Device {
  explicit ChangedDevice(std::function<std::string()> text) : model(std::move(text)) {}
  std::string machine() const override { return model(); }
  std::string systemVersion() const override { return "1"; }
  std::string applicationIdentifier() const override { return "org.app"; }
  std::string applicationVersion() const override { return "1"; }

  std::function<std::string()> model;
};

std::function<std::shared_ptr<Device>()> deviceThat(const std::function<std::string()>& model) {
  return [model] { return std::make_shared<ChangedDevice>(model); };
}

const std::vector<BrokenCopy<std::shared_ptr<Device>>> kDevices = {
    {"every text is one line", deviceThat([] { return "Board 4\n"; })},
    {"the texts stay the same",
     deviceThat([count = std::make_shared<std::atomic<int>>(0)] { return std::to_string(++*count); })},
};

TEST(BrokenCopies, OfTheSessionAreNamed) { expectNamed("AudioSession", checkAudioSession, kSessions); }
TEST(BrokenCopies, OfTheNetworkAreNamed) { expectNamed("URLSession", checkURLSession, kNetworks); }
TEST(BrokenCopies, OfTheSettingsAreNamed) { expectNamed("UserDefaults", checkUserDefaults, kDefaults); }
TEST(BrokenCopies, OfTheFilesAreNamed) { expectNamed("FileManager", checkFileManager, kFiles); }
TEST(BrokenCopies, OfTheDeviceAreNamed) { expectNamed("Device", checkDevice, kDevices); }

}  // namespace
}  // namespace orn::contract
