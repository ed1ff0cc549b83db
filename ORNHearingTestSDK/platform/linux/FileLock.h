#pragma once

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace orn {

/// An advisory lock on the file of that path, which is made if it is missing. It keeps out other objects of this kind
/// in any process until this one is destroyed or its process ends. Waits for whoever holds it.
class FileLock {
 public:
  explicit FileLock(const std::string& path) : file_(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    if (file_ < 0) return;
    do {
      held_ = flock(file_, LOCK_EX) == 0;
    } while (!held_ && errno == EINTR);
  }
  ~FileLock() {
    if (file_ >= 0) close(file_);
  }
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

  /// False if the file can't be made or locked.
  bool held() const { return held_; }

 private:
  int file_;
  bool held_ = false;
};

}  // namespace orn
