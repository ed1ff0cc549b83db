# What is installed, in four parts: Core and Screens to run with, Development to build with, and Tools. The CMake package:
# find_package(ORNHearingTestSDK) gives the target ORN::HearingTestSDK, and with COMPONENTS Screens also
# ORN::HearingTestScreens, which needs Qt; COMPONENTS BackendContracts adds ORN::BackendContracts. For other build systems
# there are two files for pkg-config.

include(CMakePackageConfigHelpers)

set(ORN_PACKAGE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/ORNHearingTestSDK)

# orn_install_library(LIBRARY COMPONENT NAME): a shared library as ORN::NAME, with its file for pkg-config.
function(orn_install_library library component name)
  set_target_properties(${library} PROPERTIES EXPORT_NAME ${name})
  install(
    TARGETS ${library}
    EXPORT ${library}Targets
    LIBRARY COMPONENT ${component} NAMELINK_COMPONENT Development)
  install(
    EXPORT ${library}Targets
    NAMESPACE ORN::
    DESTINATION ${ORN_PACKAGE_FOLDER}
    COMPONENT Development)
  file(RELATIVE_PATH ORN_PREFIX_FROM_PKGCONFIG ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
  configure_file(cmake/${library}.pc.in ${library}.pc @ONLY)
  install(
    FILES ${PROJECT_BINARY_DIR}/${library}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT Development)
endfunction()

orn_install_library(ORNHearingTestSDK Core HearingTestSDK)

# Every header that exports something, or that such a header includes.
set(ORN_PRIVATE_HEADERS
    AlertView Animation Appearance AttributedButton AudioCheck AudiogramSummary AudioSessionObservers BoardGrid
    BoardLabels BoardMarks CalibrationFetch CallbackThread Checking DefaultSinkQuestion DefaultsPlist DefaultsReading
    DeviceCell FileLock FingerScroller HeardButton HistoryCell JsonReading LibCurl LibPulse LibraryFolder
    LinuxAudioOutput LinuxAudioPlayer LinuxAudioQueue LinuxAudioSession MainQueue NavigationBar OneLine OutputVolumes PercentEscapes
    PerPlatform PhotoAlbum PlayableFormat PlistXml PosixFiles PropertyList PulseConnection PulseError PulseStream
    RequestCheck ReturnKey SectionHeading SharedLibrary ShopFooterView SimulatedAudioPlayer SimulatedAudioQueue
    SimulatedMixer SoundDevice SoundOutput SoundServer StereoGain TapRecognizer TemporaryFolder TextLabel Transfer TransferQueue
    UserFolders UserHeaderView Utf8 Watermark WaveFile XmlText)
list(TRANSFORM ORN_PRIVATE_HEADERS APPEND "\\.h")
list(JOIN ORN_PRIVATE_HEADERS "|" ORN_PRIVATE_HEADERS)
install(
  DIRECTORY ${PROJECT_SOURCE_DIR}/ORNHearingTestSDK
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  COMPONENT Development
  FILES_MATCHING
  PATTERN "*.h"
  PATTERN "*.inc"
  REGEX "/(${ORN_PRIVATE_HEADERS})$" EXCLUDE
  REGEX "/(screens|platform/qt)$" EXCLUDE)

set_target_properties(ORNBackendContracts PROPERTIES EXPORT_NAME BackendContracts)
install(
  TARGETS ORNBackendContracts
  EXPORT ORNBackendContractsTargets
  ARCHIVE COMPONENT Development)
install(
  EXPORT ORNBackendContractsTargets
  NAMESPACE ORN::
  DESTINATION ${ORN_PACKAGE_FOLDER}
  COMPONENT Development)

if(ORN_BUILD_SCREENS)
  orn_install_library(ORNHearingTestScreens Screens HearingTestScreens)
  foreach(folder screens platform/qt)
    install(
      DIRECTORY ${PROJECT_SOURCE_DIR}/ORNHearingTestSDK/${folder}/
      DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ORNHearingTestSDK/${folder}
      COMPONENT Development
      FILES_MATCHING
      PATTERN "*.h"
      REGEX "/(${ORN_PRIVATE_HEADERS})$" EXCLUDE)
  endforeach()
endif()

configure_package_config_file(cmake/ORNHearingTestSDKConfig.cmake.in ORNHearingTestSDKConfig.cmake
                              INSTALL_DESTINATION ${ORN_PACKAGE_FOLDER})
write_basic_package_version_file(ORNHearingTestSDKConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(
  FILES ${PROJECT_BINARY_DIR}/ORNHearingTestSDKConfig.cmake ${PROJECT_BINARY_DIR}/ORNHearingTestSDKConfigVersion.cmake
  DESTINATION ${ORN_PACKAGE_FOLDER}
  COMPONENT Development)

set(programs hearing-test hearing-service)
if(ORN_BUILD_SCREENS)
  list(APPEND programs hearing-app)
endif()
install(TARGETS ${programs} RUNTIME COMPONENT Tools)
