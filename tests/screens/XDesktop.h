#pragma once

#include <chrono>
#include <memory>
#include <string>

#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtGui/qwindowdefs.h>

namespace orn {

/// An X server without a screen and a message bus of its own, for as long as this lives: this process is their client
/// from here on. Throws std::runtime_error where one does not start.
class XDesktop {
 public:
  XDesktop();
  ~XDesktop();

  /// Gives the keyboard to a window, which a window manager would do.
  void focus(WId window);

  /// Strikes a key on the server's keyboard, by its X name.
  void strike(const char* key);

 private:
  std::string start(QProcess& server, const QStringList& command);

  struct Connection;
  QTemporaryDir folder_;
  QProcess display_, bus_;
  std::unique_ptr<Connection> connection_;
};

}  // namespace orn
