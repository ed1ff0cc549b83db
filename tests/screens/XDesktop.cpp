#include "XDesktop.h"

#include <signal.h>
#include <sys/prctl.h>

#include <cstdlib>
#include <stdexcept>

// Last, since it has macros for common words.
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>

namespace orn {

struct XDesktop::Connection {
  Display* display = XOpenDisplay(nullptr);
  ~Connection() {
    if (display) XCloseDisplay(display);
  }
};

XDesktop::XDesktop() {
  setenv("XDG_RUNTIME_DIR", folder_.path().toUtf8(), 1);
  setenv("HOME", folder_.path().toUtf8(), 1);
  const std::string number =
      start(display_, {"Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp"});
  setenv("DISPLAY", (":" + number).c_str(), 1);
  setenv("DBUS_SESSION_BUS_ADDRESS", start(bus_, {"dbus-daemon", "--session", "--nofork", "--print-address=1"}).c_str(),
         1);
  connection_ = std::make_unique<Connection>();
  if (!connection_->display) throw std::runtime_error("no connection to the X server");
}

XDesktop::~XDesktop() {
  connection_.reset();
  for (QProcess* one : {&bus_, &display_}) {
    one->terminate();
    if (!one->waitForFinished(5000)) one->kill(), one->waitForFinished();
  }
}

/// Gives the line that the server says where it is with.
std::string XDesktop::start(QProcess& server, const QStringList& command) {
  server.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
  server.setStandardErrorFile(QProcess::nullDevice());
  server.start(command.first(), command.mid(1));
  while (!server.canReadLine()) {
    if (!server.waitForReadyRead(20'000)) throw std::runtime_error("can't start " + command.first().toStdString());
  }
  return server.readLine().trimmed().toStdString();
}

void XDesktop::focus(WId window) {
  XSetInputFocus(connection_->display, window, RevertToParent, CurrentTime);
  XSync(connection_->display, False);
}

void XDesktop::strike(const char* key) {
  Display* display = connection_->display;
  const KeyCode code = XKeysymToKeycode(display, XStringToKeysym(key));
  XTestFakeKeyEvent(display, code, True, CurrentTime);
  XTestFakeKeyEvent(display, code, False, CurrentTime);
  XSync(display, False);
}

}  // namespace orn
