#pragma once

#include <memory>
#include <string>

#include <ORNHearingTestSDK/platform/FileManager.h>

namespace orn {

/// The machine's files, without the cached calibrations that the library would use and this host would not; they read
/// as if they were not there, so that the service is asked and writes them anew. Any thread.
///
/// For whoever writes a host, two things hide here. An audiometer's cached reply opens a test whatever it holds, and
/// one without the records for that test leads to no tone. And the earphones' cached reply never calls back, since only
/// an answer of the service does: the device selection waits for that call, so with the file in place a tap on the
/// earphone row opens no test and leaves the row dead. The price is that earphones can't be tested while the service is
/// out of reach.
class CalibrationFiles final : public FileManager {
 public:
  explicit CalibrationFiles(std::shared_ptr<FileManager> files) : files_(std::move(files)) {}

  std::string documentsDirectory() const override { return files_->documentsDirectory(); }
  std::optional<std::string> resourceBundle(const std::string& name) const override {
    return files_->resourceBundle(name);
  }
  std::optional<std::vector<std::uint8_t>> contents(const std::string& path) const override;
  bool writeAtomically(const std::string& path, std::span<const std::uint8_t> bytes) override {
    return files_->writeAtomically(path, bytes);
  }
  bool fileExists(const std::string& path) const override { return files_->fileExists(path); }
  bool removeFile(const std::string& path) override { return files_->removeFile(path); }

 private:
  std::shared_ptr<FileManager> files_;
};

}  // namespace orn
