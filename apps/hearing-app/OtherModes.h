#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QtCore/QSize>

#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {

// What the program does beside being a host of the library. A host of one's own needs none of it; the folder
// hearing-app-tools has it, and none of this folder's files but the program's main() knows of it.

/// What the event loop of a mode ends with when its user wants the other one.
inline constexpr int kOtherMode = 1000;

/// The whole application on a simulated machine with a service of its own, and beside it the panel that plugs and
/// unplugs. `begin` is handed the machine once the window is shown and the service has begun; at the first frame the
/// event loop ends where that is asked; `onOtherMode` is called when the user has seen enough of it. Needs the
/// QApplication; the answer is the program's exit code.
int runSimulated(const std::function<void(const Platform&)>& begin, const std::function<void()>& onOtherMode,
                 bool endsAtFirstFrame);

/// A screen: its size in points, and pixels to a point.
struct ScreenSize {
  QSize points;
  int ratio = 1;
  QSize pixels() const { return points * ratio; }
};

/// Saves every screen and dialog as PNG in a folder, on each of these sizes; makes its own QApplication. The answer is
/// the program's exit code; what goes wrong is thrown, as std::exception.
int takeScreenshots(int& argc, char** argv, const std::string& folder, const std::vector<ScreenSize>& screens);

}  // namespace orn
