#pragma once

#include <string>

namespace CLI {
class App;
}

namespace orn {

/// `hearing-test register`: stores the user's profile with the service and in the settings.
class RegisterCommand {
 public:
  explicit RegisterCommand(CLI::App& app);
  int run();

 private:
  std::string host_, appKey_, id_, name_, birthday_, phone_;
  bool isWoman_ = false;
};

}  // namespace orn
