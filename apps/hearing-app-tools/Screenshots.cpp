#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <sys/wait.h>
#include <unistd.h>

#include <QtWidgets/QApplication>

#include "hearing-app-tools/ScreenshotWalk.h"
#include "hearing-app/OtherModes.h"

namespace orn {
namespace {

/// The ratio of a screen holds for a whole process.
int takeThoseOf(const PhoneScreen& screen, int& argc, char** argv, const std::string& folder) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  setenv("QT_SCALE_FACTOR", std::to_string(screen.ratio).c_str(), 1);
  QApplication application(argc, argv);
  walkForScreenshots(QString::fromStdString(folder), screen);
  return 0;
}

}  // namespace

int takeScreenshots(int& argc, char** argv, const std::string& folder) {
  std::filesystem::create_directories(folder);
  const pid_t other = fork();
  if (other < 0) throw std::system_error(errno, std::generic_category(), "can't start a process");
  if (other == 0) return takeThoseOf({{360, 720}, 3}, argc, argv, folder);
  const int result = takeThoseOf({{375, 667}, 1}, argc, argv, folder);
  int status = 0;
  const bool isGone = waitpid(other, &status, 0) == other;
  return isGone && WIFEXITED(status) && WEXITSTATUS(status) == 0 ? result : 1;
}

}  // namespace orn
