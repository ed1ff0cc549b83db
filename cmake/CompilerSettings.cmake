# Warnings, floating-point rules and the rule of export that the targets of this project share.

add_library(orn_settings INTERFACE)
target_compile_options(
  orn_settings
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wconversion
            -Wnon-virtual-dtor
            # Sample arithmetic is bit-exact: every product is rounded on its own.
            -ffp-contract=off
            # g++ 12 reports "a" + std::to_string(b) falsely.
            $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(ORN_WERROR)
  target_compile_options(orn_settings INTERFACE -Werror)
endif()

# orn_export_public(LIBRARY): nothing but the public names leaves the shared library.
function(orn_export_public library)
  set(map ${PROJECT_SOURCE_DIR}/cmake/Exports.map)
  target_link_options(${library} PRIVATE -Wl,--version-script=${map})
  set_property(TARGET ${library} APPEND PROPERTY LINK_DEPENDS ${map})
endfunction()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()
