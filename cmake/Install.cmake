# The CMake package: find_package(ORNHearingTestSDK) gives the target ORN::HearingTestSDK, and with COMPONENTS Screens
# also ORN::HearingTestScreens, which needs Qt. COMPONENTS BackendContracts adds ORN::BackendContracts.

include(CMakePackageConfigHelpers)

set(ORN_PACKAGE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/ORNHearingTestSDK)

set_target_properties(ORNHearingTestSDK PROPERTIES EXPORT_NAME HearingTestSDK)
install(TARGETS ORNHearingTestSDK EXPORT ORNHearingTestSDKTargets)
install(EXPORT ORNHearingTestSDKTargets NAMESPACE ORN:: DESTINATION ${ORN_PACKAGE_FOLDER})

# Every header that exports something, or that such a header includes.
set(ORN_PRIVATE_HEADERS
    AlertView Animation Appearance AttributedButton AudioCheck AudioSessionObservers AudiogramSummary BoardGrid BoardLabels
    BoardMarks CalibrationFetch CallbackThread Checking DefaultsPlist DefaultsReading DeviceCell FileLock FingerScroller
    HeardButton HistoryCell JsonReading LibraryFolder LinuxAudioOutput LinuxAudioPlayer LinuxAudioQueue
    LinuxAudioSession MainQueue NavigationBar OutputVolumes PerPlatform PercentEscapes PhotoAlbum PlayableFormat
    PlistXml PosixFiles PropertyList PulseConnection PulseError PulseStream RequestCheck ReturnKey
    SectionHeading ShopFooterView SimulatedAudioPlayer SimulatedAudioQueue SimulatedMixer SoundDevice
    SoundOutput SoundServer StereoGain TapRecognizer TemporaryFolder TextLabel Transfer TransferQueue UserFolders UserHeaderView
    Utf8 Watermark WaveFile XmlText)
list(TRANSFORM ORN_PRIVATE_HEADERS APPEND "\\.h")
list(JOIN ORN_PRIVATE_HEADERS "|" ORN_PRIVATE_HEADERS)
install(
  DIRECTORY ${PROJECT_SOURCE_DIR}/ORNHearingTestSDK
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING
  PATTERN "*.h"
  PATTERN "*.inc"
  REGEX "/(${ORN_PRIVATE_HEADERS})$" EXCLUDE
  REGEX "/(screens|platform/qt)$" EXCLUDE)

set_target_properties(ORNBackendContracts PROPERTIES EXPORT_NAME BackendContracts)
install(TARGETS ORNBackendContracts EXPORT ORNBackendContractsTargets)
install(EXPORT ORNBackendContractsTargets NAMESPACE ORN:: DESTINATION ${ORN_PACKAGE_FOLDER})

if(ORN_BUILD_SCREENS)
  set_target_properties(ORNHearingTestScreens PROPERTIES EXPORT_NAME HearingTestScreens)
  install(TARGETS ORNHearingTestScreens EXPORT ORNHearingTestScreensTargets)
  install(EXPORT ORNHearingTestScreensTargets NAMESPACE ORN:: DESTINATION ${ORN_PACKAGE_FOLDER})
  foreach(folder screens platform/qt)
    install(
      DIRECTORY ${PROJECT_SOURCE_DIR}/ORNHearingTestSDK/${folder}/
      DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ORNHearingTestSDK/${folder}
      FILES_MATCHING
      PATTERN "*.h"
      REGEX "/(${ORN_PRIVATE_HEADERS})$" EXCLUDE)
  endforeach()
endif()

configure_package_config_file(cmake/ORNHearingTestSDKConfig.cmake.in ORNHearingTestSDKConfig.cmake
                              INSTALL_DESTINATION ${ORN_PACKAGE_FOLDER})
write_basic_package_version_file(ORNHearingTestSDKConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ORNHearingTestSDKConfig.cmake
              ${PROJECT_BINARY_DIR}/ORNHearingTestSDKConfigVersion.cmake DESTINATION ${ORN_PACKAGE_FOLDER})

install(TARGETS hearing-test)
