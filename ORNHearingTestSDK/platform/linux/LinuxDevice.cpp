#include <ORNHearingTestSDK/platform/linux/LinuxDevice.h>

#include <sys/utsname.h>

#include <cstddef>
#include <sstream>
#include <utility>

#include <ORNHearingTestSDK/platform/PosixFiles.h>

namespace orn {
namespace {

std::string textOf(const std::string& path) {
  const auto bytes = readFile(path);
  return bytes ? std::string(bytes->begin(), bytes->end()) : std::string();
}

/// The text without the spaces at its ends, up to its first line break or NUL.
std::string firstLine(const std::string& text) {
  const std::string line = text.substr(0, text.find_first_of(std::string("\n\r\0", 3)));
  const std::size_t first = line.find_first_not_of(" \t");
  return first == std::string::npos ? "" : line.substr(first, line.find_last_not_of(" \t") + 1 - first);
}

std::string machineOf(const std::string& root) {
  for (const char* file : {"/sys/class/dmi/id/product_name", "/proc/device-tree/model"}) {
    if (std::string model = firstLine(textOf(root + file)); !model.empty()) return model;
  }
  utsname system{};
  return uname(&system) == 0 ? system.machine : "";
}

/// A value as a shell would read it; os-release uses no more of the shell than this.
std::string unquoted(const std::string& value) {
  std::string plain;
  char quote = 0;
  for (std::size_t i = 0; i < value.size(); ++i) {
    const char c = value[i];
    if (quote ? c == quote : c == '"' || c == '\'') {
      quote = quote ? '\0' : c;
    } else if (c == '\\' && quote != '\'' && i + 1 < value.size()) {
      plain += value[++i];
    } else {
      plain += c;
    }
  }
  return plain;
}

std::string assignedIn(const std::string& assignments, const std::string& name) {
  std::istringstream lines(assignments);
  std::string value;
  for (std::string line; std::getline(lines, line);) {
    line = firstLine(line);
    if (line.starts_with(name + "=")) value = unquoted(line.substr(name.size() + 1));
  }
  return value;
}

std::string systemVersionOf(const std::string& root) {
  const std::string local = root + "/etc/os-release";
  const std::string release = textOf(fileExists(local) ? local : root + "/usr/lib/os-release");
  const std::string version = assignedIn(release, "VERSION_ID");
  return version.empty() ? assignedIn(release, "PRETTY_NAME") : version;
}

}  // namespace

LinuxDevice::LinuxDevice(std::string applicationIdentifier, std::string applicationVersion, const std::string& root)
    : applicationIdentifier_(std::move(applicationIdentifier)),
      applicationVersion_(std::move(applicationVersion)),
      machine_(machineOf(root)),
      systemVersion_(systemVersionOf(root)) {}

LinuxDevice::~LinuxDevice() = default;

std::string LinuxDevice::machine() const { return machine_; }
std::string LinuxDevice::systemVersion() const { return systemVersion_; }
std::string LinuxDevice::applicationIdentifier() const { return applicationIdentifier_; }
std::string LinuxDevice::applicationVersion() const { return applicationVersion_; }

}  // namespace orn
