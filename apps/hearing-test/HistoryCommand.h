#pragma once

#include <string>

namespace CLI {
class App;
}

namespace orn {

/// `hearing-test history`: the stored tests of the registered user with their scores.
class HistoryCommand {
 public:
  explicit HistoryCommand(CLI::App& app);
  int run();

 private:
  std::string host_;
  bool json_ = false;
};

}  // namespace orn
