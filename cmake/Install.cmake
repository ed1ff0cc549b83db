# What is installed, in parts: Core, LinuxBackend and Screens to run with, Development to build with, and Tools. The CMake
# package: find_package(ORNHearingTestSDK) gives the target ORN::HearingTestSDK; COMPONENTS LinuxBackend, Screens and
# BackendContracts add ORN::LinuxBackend, ORN::HearingTestScreens, which needs Qt, and ORN::BackendContracts. For other
# build systems there is a file for pkg-config for each shared library.

include(CMakePackageConfigHelpers)

set(ORN_PACKAGE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/ORNHearingTestSDK)
file(RELATIVE_PATH ORN_PREFIX_FROM_PKGCONFIG ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})

# orn_install_library(LIBRARY COMPONENT): a library with its headers and the file that CMake finds it by.
function(orn_install_library library component)
  install(
    TARGETS ${library}
    EXPORT ${library}Targets
    LIBRARY COMPONENT ${component} NAMELINK_COMPONENT Development
    ARCHIVE COMPONENT Development
    FILE_SET HEADERS COMPONENT Development)
  install(
    EXPORT ${library}Targets
    NAMESPACE ORN::
    DESTINATION ${ORN_PACKAGE_FOLDER}
    COMPONENT Development)
endfunction()

# orn_install_pkgconfig(LIBRARY): the same library for pkg-config.
function(orn_install_pkgconfig library)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${library}.pc.in ${PROJECT_BINARY_DIR}/${library}.pc @ONLY)
  install(
    FILES ${PROJECT_BINARY_DIR}/${library}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT Development)
endfunction()

orn_install_library(ORNHearingTestSDK Core)
orn_install_pkgconfig(ORNHearingTestSDK)
orn_install_library(ORNBackendContracts Development)
if(ORN_BUILD_LINUX_BACKEND)
  orn_install_library(ORNHearingTestLinuxBackend LinuxBackend)
  orn_install_pkgconfig(ORNHearingTestLinuxBackend)
endif()
if(ORN_BUILD_SCREENS)
  orn_install_library(ORNHearingTestScreens Screens)
  orn_install_pkgconfig(ORNHearingTestScreens)
endif()

configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/ORNHearingTestSDKConfig.cmake.in ${PROJECT_BINARY_DIR}/ORNHearingTestSDKConfig.cmake
  INSTALL_DESTINATION ${ORN_PACKAGE_FOLDER})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ORNHearingTestSDKConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(
  FILES ${PROJECT_BINARY_DIR}/ORNHearingTestSDKConfig.cmake ${PROJECT_BINARY_DIR}/ORNHearingTestSDKConfigVersion.cmake
  DESTINATION ${ORN_PACKAGE_FOLDER}
  COMPONENT Development)

if(ORN_BUILD_PROGRAMS)
  set(programs hearing-test hearing-service)
  if(ORN_BUILD_SCREENS)
    list(APPEND programs hearing-app)
  endif()
  install(TARGETS ${programs} RUNTIME COMPONENT Tools)
endif()
