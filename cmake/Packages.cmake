# Debian packages of the installed parts, made by `make deb`.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ornhearingtestsdk)
set(CPACK_PACKAGE_CONTACT "ORNHearingTestSDK developers <developers@ornhearingtestsdk.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_OUTPUT_FILE_PREFIX ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)

set(CPACK_COMPONENTS_ALL Core Development Tools)
if(ORN_BUILD_SCREENS)
  list(INSERT CPACK_COMPONENTS_ALL 1 Screens)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# What a binary needs is read from it; our own libraries are known by the shlibs files made here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)

# What a binary loads only when it needs it can't be read from it, nor whom libcurl trusts.
set(loaded_by_core "ca-certificates, libcurl4, libpulse0")
set(loaded_by_tools libmicrohttpd12)

# orn_deb(COMPONENT NAME SECTION DESCRIPTION [DEPENDS [RECOMMENDS]])
function(orn_deb component name section description)
  string(TOUPPER ${component} key)
  set(CPACK_COMPONENT_${key}_DESCRIPTION ${description} PARENT_SCOPE)
  set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(CPACK_DEBIAN_${key}_PACKAGE_DEPENDS ${ARGV4} PARENT_SCOPE)
  set(CPACK_DEBIAN_${key}_PACKAGE_RECOMMENDS ${ARGV5} PARENT_SCOPE)
endfunction()

set(same "(= ${PROJECT_VERSION})")
orn_deb(Core libornhearingtestsdk${PROJECT_VERSION_MAJOR} libs "Hearing test library: calibrated tones, thresholds, results"
        "${loaded_by_core}")
orn_deb(Screens libornhearingtestscreens${PROJECT_VERSION_MAJOR} libs "Screens and audiogram views of the hearing test library, on Qt"
        "libornhearingtestsdk${PROJECT_VERSION_MAJOR} ${same}" fonts-wqy-microhei)
set(dev_depends "libornhearingtestsdk${PROJECT_VERSION_MAJOR} ${same}, nlohmann-json3-dev")
set(tools_depends "libornhearingtestsdk${PROJECT_VERSION_MAJOR} ${same}, ${loaded_by_tools}")
if(ORN_BUILD_SCREENS)
  string(APPEND dev_depends ", libornhearingtestscreens${PROJECT_VERSION_MAJOR} ${same}")
  string(APPEND tools_depends ", libornhearingtestscreens${PROJECT_VERSION_MAJOR} ${same}")
endif()
orn_deb(Development libornhearingtestsdk-dev libdevel "Headers and build files of the hearing test library" "${dev_depends}" qt6-base-dev)
orn_deb(Tools ornhearingtestsdk-tools science "Hearing test application, command line and reference service" "${tools_depends}")

include(CPack)
