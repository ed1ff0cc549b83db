#pragma once

// All that an application needs of the core, in one include. The backends (platform/linux/LinuxPlatform.h,
// platform/simulated/SimulatedPlatform.h), the screens (screens/...) and the exported C functions have headers of their
// own, each for what it is linked with.

#include <ORNHearingTestSDK/audio/AudioRoute.h>
#include <ORNHearingTestSDK/audio/ORNSystemVolumeManager.h>
#include <ORNHearingTestSDK/calibration/CalibrationCache.h>
#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>
#include <ORNHearingTestSDK/calibration/ORNDeviceVolumeIOS.h>
#include <ORNHearingTestSDK/common/EarResult.h>
#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/common/Version.h>
#include <ORNHearingTestSDK/engine/ChannelCheck.h>
#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/engine/ORNHearingTestDelegate.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/engine/SessionCalibration.h>
#include <ORNHearingTestSDK/platform/AudioSession.h>
#include <ORNHearingTestSDK/platform/Device.h>
#include <ORNHearingTestSDK/platform/FileManager.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/platform/URLSession.h>
#include <ORNHearingTestSDK/platform/UserDefaults.h>
#include <ORNHearingTestSDK/results/AppRegistration.h>
#include <ORNHearingTestSDK/results/FinishedTest.h>
#include <ORNHearingTestSDK/results/HearingScore.h>
#include <ORNHearingTestSDK/results/HistoryScores.h>
#include <ORNHearingTestSDK/results/ORNListenTest.h>
#include <ORNHearingTestSDK/results/ResultSubmission.h>
#include <ORNHearingTestSDK/results/ServiceHost.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>
#include <ORNHearingTestSDK/results/TestCSV.h>
#include <ORNHearingTestSDK/results/TestHistory.h>
#include <ORNHearingTestSDK/results/TestTime.h>
#include <ORNHearingTestSDK/results/UserProfile.h>
