#include "support/TestSoundServer.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <thread>

namespace orn {

using namespace std::chrono_literals;

namespace {

/// A busy machine gets there late; a server that does not get there at all is an error.
template <class Condition>
void waitUntil(Condition isSo) {
  for (int i = 0; !isSo(); ++i) {
    if (i == 2000) throw std::runtime_error("the sound server does not answer");
    std::this_thread::sleep_for(10ms);
  }
}

}  // namespace

TestSoundServer::TestSoundServer(ServerKind kind) : kind_(kind) { start(); }

std::string TestSoundServer::address() const {
  return "unix:" + folder() + (kind_ == ServerKind::PulseAudio ? "/native" : "/pulse/native");
}

std::string TestSoundServer::environment() const {
  const std::string bus = kind_ == ServerKind::PulseAudio ? "disabled:" : "unix:path=" + folder() + "/bus";
  std::string variables = "env LC_ALL=C DBUS_SESSION_BUS_ADDRESS=" + bus + " DBUS_SYSTEM_BUS_ADDRESS=" + bus;
  for (const char* name : {"XDG_RUNTIME_DIR", "HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME"}) {
    variables += std::string(" ") + name + "=" + folder();
  }
  return variables + " ";
}

void TestSoundServer::launch(const std::string& command) {
  programs_.emplace_back(environment() + command + " >>" + folder() + "/log 2>&1");
}

std::unique_ptr<Program> TestSoundServer::startCall() const {
  return std::make_unique<Program>("pacat --playback --property=media.role=phone --server=" + address() +
                                   " /dev/zero >/dev/null 2>&1");
}

void TestSoundServer::start() {
  if (kind_ == ServerKind::PulseAudio) {
    launch(
        "pulseaudio -n --daemonize=no --fail=yes --exit-idle-time=-1 --use-pid-file=no --log-target=stderr"
        " '--load=module-native-protocol-unix auth-anonymous=1 auth-cookie-enabled=0 socket=" +
        folder() + "/native'");
  } else {
    launch("dbus-daemon --session --nofork --address=unix:path=" + folder() + "/bus");
    waitUntil([&] { return std::filesystem::exists(folder() + "/bus"); });
    launch("pipewire");
    waitUntil([&] { return std::filesystem::exists(folder() + "/pipewire-0"); });
    launch("wireplumber");
    launch("pipewire-pulse");
  }
  waitUntil([&] { return control("info").find("Default Sink") != std::string::npos; });
  // A busy machine wakes the server's processes late, and without a sound card nothing is lost by longer periods.
  if (kind_ == ServerKind::PipeWire) changeMetadata("-n settings 0 clock.force-quantum 4096");
}

void TestSoundServer::kill() {
  signal(SIGKILL);
  programs_.clear();
  for (const char* name : {"/native", "/pulse/native", "/pipewire-0", "/bus"}) {
    std::filesystem::remove(folder() + name);
  }
}

void TestSoundServer::signal(int number) const {
  for (const Program& one : programs_) ::kill(one.process(), number);
}

std::string TestSoundServer::run(const std::string& command) const {
  FILE* pipe = popen((environment() + "PULSE_SERVER=" + address() + " " + command + " 2>&1").c_str(), "r");
  if (!pipe) throw std::runtime_error("can't run " + command);
  std::string printed;
  std::array<char, 4096> part{};
  while (const std::size_t size = fread(part.data(), 1, part.size(), pipe)) printed.append(part.data(), size);
  pclose(pipe);
  return printed;
}

std::string TestSoundServer::addSink(const std::string& name, const std::string& description,
                                     const std::vector<std::string>& properties) {
  std::string all = "device.description='" + description + "'";
  for (const std::string& property : properties) all += " " + property;
  const std::string printed = control("load-module module-null-sink sink_name=" + name +
                                      (kind_ == ServerKind::PulseAudio ? " norewinds=1 format=s16le" : "") +
                                      " rate=48000 channels=2 channel_map=front-left,front-right"
                                      " \"sink_properties=\\\"" +
                                      all + "\\\"\"");
  if (printed.empty() || !std::isdigit(static_cast<unsigned char>(printed[0]))) {
    throw std::runtime_error("no sink: " + printed);
  }
  waitUntil([&] { return control("list short sinks").find("\t" + name + "\t") != std::string::npos; });
  return printed.substr(0, printed.find('\n'));
}

void TestSoundServer::setDefault(const std::string& sink) const {
  waitUntil([&] {
    const bool isDefault = control("get-default-sink").find(sink) != std::string::npos;
    if (!isDefault) control("set-default-sink " + sink);
    return isDefault;
  });
}

void TestSoundServer::remove(const std::string& module) { control("unload-module " + module); }

std::string TestSoundServer::addAudiometer() {
  return addSink(
      "audiometer", "KV50-1234 Audiometer",
      {"api.bluez5.address=AA:BB:CC:DD:EE:FF", "device.string=AA:BB:CC:DD:EE:FF", "device.form_factor=headset"});
}

std::string TestSoundServer::volumes(const std::string& sink) const {
  return control("get-sink-volume " + sink) + control("get-sink-mute " + sink);
}

}  // namespace orn
