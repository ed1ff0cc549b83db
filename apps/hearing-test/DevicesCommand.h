#pragma once

namespace CLI {
class App;
}

namespace orn {

/// `hearing-test devices`: where the sound of this machine goes, as the library sees it.
class DevicesCommand {
 public:
  explicit DevicesCommand(CLI::App& app);

  /// The exit code: 0 on success.
  int run();

 private:
  bool json_ = false;
};

}  // namespace orn
