#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <sys/wait.h>
#include <unistd.h>

#include <QtWidgets/QApplication>

#include "hearing-app-tools/ScreenshotSheet.h"
#include "hearing-app-tools/ScreenshotWalk.h"
#include "hearing-app/OtherModes.h"

namespace orn {
namespace {

/// In a process of its own, since the ratio of a screen holds for a whole process.
int takeThoseOf(const ScreenSize& screen, int& argc, char** argv, const std::string& folder) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  setenv("QT_SCALE_FACTOR", std::to_string(screen.ratio).c_str(), 1);
  QApplication application(argc, argv);
  const QString path = QString::fromStdString(folder);
  walkForScreenshots(path, screen);
  const QSize size = screen.pixels();
  const QString sheet = QStringLiteral("%1/sheet.%2x%3.png").arg(path).arg(size.width()).arg(size.height());
  if (!screenshotSheet(path, screen).save(sheet)) throw std::runtime_error("can't write " + sheet.toStdString());
  return 0;
}

}  // namespace

int takeScreenshots(int& argc, char** argv, const std::string& folder, const std::vector<ScreenSize>& screens) {
  std::filesystem::create_directories(folder);
  std::vector<pid_t> children;
  for (const ScreenSize& screen : screens) {
    const pid_t child = fork();
    if (child < 0) throw std::system_error(errno, std::generic_category(), "can't start a process");
    if (child == 0) return takeThoseOf(screen, argc, argv, folder);
    children.push_back(child);
  }
  bool isFine = true;
  for (const pid_t child : children) {
    int status = 0;
    isFine = waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0 && isFine;
  }
  return isFine ? 0 : 1;
}

}  // namespace orn
