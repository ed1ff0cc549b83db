#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ORNHearingTestSDK/contracts/TemporaryFolder.h>
#include <ORNHearingTestSDK/platform/linux/LinuxDevice.h>
#include <ORNHearingTestSDK/platform/linux/LinuxFileManager.h>
#include <ORNHearingTestSDK/platform/linux/LinuxUserDefaults.h>

#include "Environment.h"

namespace orn {
namespace {

/// A folder that goes with the test, and an environment of the test's own.
class LinuxFolders : public testing::Test {
 protected:
  void write(const std::string& path, const std::string& bytes) const {
    std::filesystem::create_directories(std::filesystem::path(root_ + path).parent_path());
    std::ofstream(root_ + path, std::ios::binary) << bytes;
  }

  contract::TemporaryFolder folder_;
  const std::string root_ = folder_.path();
  const Environment home_{"HOME", (root_ + "/home").c_str()};
  const Environment data_{"XDG_DATA_HOME", nullptr}, config_{"XDG_CONFIG_HOME", nullptr};
};

TEST_F(LinuxFolders, FollowTheBaseDirectorySpecification) {
  const std::string given = root_ + "/given", home = root_ + "/home/", application = "org.app";
  for (const char* base : {static_cast<const char*>(nullptr), "", "relative/path"}) {
    for (const Environment* one : {&data_, &config_}) one->set(base);
    EXPECT_EQ(LinuxFileManager(application).documentsDirectory(), home + ".local/share/org.app/documents");
    EXPECT_EQ(LinuxUserDefaults::defaultPath(application), home + ".config/org.app/defaults.plist");
  }
  for (std::filesystem::path made = home + ".local/share/org.app/documents"; made != root_; made = made.parent_path()) {
    EXPECT_EQ(std::filesystem::status(made).permissions(), std::filesystem::perms::owner_all) << made;
  }
  for (const Environment* one : {&data_, &config_}) one->set((given + "/").c_str());
  for (const auto& [name, folder] : {std::pair("org.app", "/org.app"), {"../up", "/.._up"}, {"..", "/_"}, {"", "/_"}}) {
    EXPECT_EQ(LinuxFileManager(name).documentsDirectory(), given + folder + "/documents");
    EXPECT_EQ(LinuxUserDefaults::defaultPath(name), given + folder + "/defaults.plist");
  }
}

TEST_F(LinuxFolders, WithoutAHomeVariableTheUserDatabaseTellsIt) {
  home_.set(nullptr);
  const passwd* const entry = getpwuid(getuid());
  const std::string home = entry ? entry->pw_dir : "";
  EXPECT_EQ(LinuxUserDefaults::defaultPath("a"), (home == "/" ? "" : home) + "/.config/a/defaults.plist");
}

TEST_F(LinuxFolders, TheMachineIsTheFirstThatSaysWhatItIs) {
  utsname system{};
  uname(&system);
  const auto machine = [&] { return LinuxDevice("org.app", "1.2", root_).machine(); };
  EXPECT_EQ(machine(), system.machine);
  write("/proc/device-tree/model", std::string(" Board 4\0more\0", 14));
  EXPECT_EQ(machine(), "Board 4");
  write("/sys/class/dmi/id/product_name", " \n");
  EXPECT_EQ(machine(), "Board 4");
  write("/sys/class/dmi/id/product_name", "\tLaptop X 1 \nsecond line\n");
  EXPECT_EQ(machine(), "Laptop X 1");
}

TEST_F(LinuxFolders, TheSystemVersionIsThatOfOsRelease) {
  const auto version = [&] { return LinuxDevice("org.app", "1.2", root_).systemVersion(); };
  EXPECT_EQ(version(), "");
  write("/usr/lib/os-release", "NAME=x\nVERSION_ID=11\n");
  EXPECT_EQ(version(), "11");
  const struct {
    const char *release, *version;
  } table[] = {{"PRETTY_NAME=\"Name 12\"\nVERSION_ID=\"12\"\n", "12"},
               {"VERSION_ID='12.5'", "12.5"},
               {"VERSION_ID=1\r\nVERSION_ID=2\r\n", "2"},
               {"#VERSION_ID=3\nXVERSION_ID=4\nPRETTY_NAME=\"Joe's \\\"rolling\\\" \\$1\"\n", "Joe's \"rolling\" $1"},
               {"VERSION_ID=\nPRETTY_NAME=Rolling", "Rolling"},
               {"VERSION_ID=\"5\\", "5\\"},
               {"", ""}};
  for (const auto& [release, expected] : table) {
    write("/etc/os-release", release);
    EXPECT_EQ(version(), expected) << release;
  }
}

}  // namespace
}  // namespace orn
