#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QtCore/QSize>

#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {

// What the program does besides being a host of the library; another host needs none of it. It is implemented in the
// folder hearing-app-tools, and in this folder only main() uses it.

/// The exit code of a mode's event loop when the user wants the other mode.
inline constexpr int kOtherMode = 1000;

/// Runs the whole application on a simulated machine with a service of its own, beside a panel that plugs and unplugs
/// its devices. `begin` gets the machine once the window is shown and the service has started; `onOtherMode` is called
/// when the user leaves the simulation. With `endsAtFirstFrame` the event loop ends at the first frame. Needs the
/// QApplication; returns the program's exit code.
int runSimulated(const std::function<void(const Platform&)>& begin, const std::function<void()>& onOtherMode,
                 bool endsAtFirstFrame);

/// A screen: its size in points, and its pixels per point.
struct ScreenSize {
  QSize points;
  int ratio = 1;
  QSize pixels() const { return points * ratio; }
};

/// Saves every screen and dialog as PNG in a folder, at each of these sizes, and a sheet of all pictures of a size that
/// are there; makes its own QApplication. Returns the program's exit code; throws a std::exception on a failure.
int takeScreenshots(int& argc, char** argv, const std::string& folder, const std::vector<ScreenSize>& screens);

}  // namespace orn
