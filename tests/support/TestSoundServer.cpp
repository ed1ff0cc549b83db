#include "support/TestSoundServer.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <thread>

namespace orn {
namespace {

using namespace std::chrono_literals;

std::string newFolder() {
  std::string name = "/tmp/orn-sound-XXXXXX";
  if (!mkdtemp(name.data())) throw std::runtime_error("no folder for the sound server");
  return name;
}

}  // namespace

TestSoundServer::TestSoundServer(ServerKind kind) : kind_(kind), folder_(newFolder()) { start(); }

TestSoundServer::~TestSoundServer() {
  kill();
  std::error_code error;
  std::filesystem::remove_all(folder_, error);
}

std::string TestSoundServer::address() const {
  return "unix:" + folder_ + (kind_ == ServerKind::PulseAudio ? "/native" : "/pulse/native");
}

pid_t TestSoundServer::launch(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  const std::string bus = kind_ == ServerKind::PulseAudio ? "disabled:" : "unix:path=" + folder_ + "/bus";
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("can't start " + command.front());
  if (child == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (const char* name : {"XDG_RUNTIME_DIR", "HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME"}) {
      setenv(name, folder_.c_str(), 1);
    }
    for (const char* name : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"}) setenv(name, bus.c_str(), 1);
    const int log = open((folder_ + "/log").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    dup2(log, 1);
    dup2(log, 2);
    execvp(arguments[0], arguments.data());
    _exit(127);
  }
  processes_.push_back(child);
  return child;
}

void TestSoundServer::kill(pid_t process) {
  ::kill(process, SIGKILL);
  waitpid(process, nullptr, 0);
  std::erase(processes_, process);
}

void TestSoundServer::start() {
  if (kind_ == ServerKind::PulseAudio) {
    launch({"pulseaudio", "-n", "--daemonize=no", "--fail=yes", "--exit-idle-time=-1", "--use-pid-file=no",
            "--log-target=stderr",
            "--load=module-native-protocol-unix socket=" + folder_ + "/native auth-anonymous=1 auth-cookie-enabled=0"});
  } else {
    launch({"dbus-daemon", "--session", "--nofork", "--address=unix:path=" + folder_ + "/bus"});
    while (!std::filesystem::exists(folder_ + "/bus")) std::this_thread::sleep_for(5ms);
    launch({"pipewire"});
    while (!std::filesystem::exists(folder_ + "/pipewire-0")) std::this_thread::sleep_for(5ms);
    launch({"wireplumber"});
    launch({"pipewire-pulse"});
  }
  for (int i = 0; i < 500; ++i) {
    if (control("info").find("Default Sink") != std::string::npos) return giveTime();
    std::this_thread::sleep_for(10ms);
  }
  throw std::runtime_error("the sound server does not answer");
}

/// A busy machine wakes the server's processes late, and without a sound card nothing is lost by longer periods.
void TestSoundServer::giveTime() {
  if (kind_ == ServerKind::PipeWire) changeMetadata({"-n", "settings", "0", "clock.force-quantum", "4096"});
}

void TestSoundServer::changeMetadata(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "pw-metadata");
  const pid_t child = launch(arguments);
  waitpid(child, nullptr, 0);
  std::erase(processes_, child);
}

void TestSoundServer::kill() {
  for (const pid_t process : processes_) ::kill(process, SIGKILL);
  for (const pid_t process : processes_) waitpid(process, nullptr, 0);
  processes_.clear();
  for (const char* name : {"/native", "/pulse/native", "/pipewire-0", "/bus"}) {
    std::filesystem::remove(folder_ + name);
  }
}

void TestSoundServer::standStill() const {
  for (const pid_t process : processes_) ::kill(process, SIGSTOP);
}

void TestSoundServer::goOn() const {
  for (const pid_t process : processes_) ::kill(process, SIGCONT);
}

std::string TestSoundServer::control(const std::string& arguments) const {
  const std::string command =
      "LC_ALL=C HOME=" + folder_ + " PULSE_SERVER=" + address() + " pactl " + arguments + " 2>&1";
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) throw std::runtime_error("can't run pactl");
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
  for (int i = 0; i < 300 && control("list short sinks").find("\t" + name + "\t") == std::string::npos; ++i) {
    std::this_thread::sleep_for(10ms);
  }
  if (printed.empty() || !std::isdigit(static_cast<unsigned char>(printed[0]))) {
    throw std::runtime_error("no sink: " + printed);
  }
  return printed.substr(0, printed.find('\n'));
}

void TestSoundServer::setDefault(const std::string& sink) const {
  for (int i = 0; i < 300 && control("get-default-sink").find(sink) == std::string::npos; ++i) {
    control("set-default-sink " + sink);
    std::this_thread::sleep_for(10ms);
  }
}

void TestSoundServer::remove(const std::string& module) { control("unload-module " + module); }

std::string TestSoundServer::addAudiometer() {
  return addSink(
      "audiometer", "KV50-1234 Audiometer",
      {"api.bluez5.address=AA:BB:CC:DD:EE:FF", "device.string=AA:BB:CC:DD:EE:FF", "device.form_factor=headset"});
}

std::string TestSoundServer::volumes(const std::string& sink) const {
  return control("get-sink-volume " + sink + "; LC_ALL=C PULSE_SERVER=" + address() + " pactl get-sink-mute " + sink);
}

}  // namespace orn
