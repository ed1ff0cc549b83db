#include "hearing-app-tools/SimulatedHost.h"

#include <stdexcept>
#include <utility>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

#include <ORNHearingTestSDK/platform/linux/LinuxURLSession.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>
#include <ORNHearingTestSDK/results/UserProfile.h>

#include "hearing-service/HearingService.h"
#include "simulation/calibration/SampleCalibration.h"
#include "simulation/runs/BlockingURLSession.h"

namespace orn {
namespace {

constexpr float kUsersVolume = 0.4F;

SimulatedPlatform machineOn(std::shared_ptr<RunLoop> realTime) {
  return realTime ? SimulatedPlatform(std::move(realTime)) : SimulatedPlatform();
}

}  // namespace

/// In memory where the system has such a place: waiting for a disk would hold up the start.
struct SimulatedHost::Folder {
  static QString place() {
    const QString inMemory = QStringLiteral("/dev/shm");
    return QFileInfo(inMemory).isWritable() ? inMemory : QDir::tempPath();
  }
  QTemporaryDir made{place() + QStringLiteral("/hearing-app-XXXXXX")};
};

SimulatedHost::SimulatedHost(std::shared_ptr<RunLoop> realTime)
    : folder_(std::make_unique<Folder>()), machine_(machineOn(std::move(realTime))) {
  if (!folder_->made.isValid()) throw std::runtime_error("can't make a temporary folder");
  machine_.audioSession->setOutputVolume(kUsersVolume);
  urlSession_ = std::make_shared<LinuxURLSession>();
  if (machine_.virtualTime) urlSession_ = std::make_shared<simulation::BlockingURLSession>(urlSession_);
}

SimulatedHost::~SimulatedHost() = default;

service::HearingService& SimulatedHost::startService() {
  service::ServiceOptions options;
  options.database = folder_->made.filePath(QStringLiteral("tests.db")).toStdString();
  service_ = std::make_unique<service::HearingService>(std::move(options));
  machine_.userDefaults->setValue(kServiceHostDefault, "127.0.0.1:" + std::to_string(service_->port()));
  return *service_;
}

Platform SimulatedHost::platform() const {
  Platform platform = machine_.platform();
  platform.urlSession = urlSession_;
  return platform;
}

void SimulatedHost::plugAudiometer() { machine_.audioSession->plugAudiometer("KV60S", simulation::kSimulatedAddress); }

Profile sampleProfile() {
  return {QStringLiteral("小明"), false, *UserProfile::birthdayOf("1990-03-05"), QStringLiteral("13800000000")};
}

}  // namespace orn
