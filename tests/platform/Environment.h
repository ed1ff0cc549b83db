#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace orn {

/// Sets a variable of the environment, or removes it, until this object goes.
class Environment {
 public:
  Environment(const char* name, const char* value) : name_(name) {
    if (const char* const before = getenv(name)) before_ = before;
    set(value);
  }
  ~Environment() { set(before_ ? before_->c_str() : nullptr); }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

  void set(const char* value) const { value ? setenv(name_, value, 1) : unsetenv(name_); }

 private:
  const char* name_;
  std::optional<std::string> before_;
};

}  // namespace orn
