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
            # g++ 12 warns falsely of "a" + std::to_string(b), and of texts in a default argument in braces.
            $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
            $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
if(ORN_WERROR)
  target_compile_options(orn_settings INTERFACE -Werror)
endif()

# orn_export_public(LIBRARY): the shared library exports nothing but the public names, if the linker can do that.
include(CheckLinkerFlag)
set(ORN_EXPORTS ${PROJECT_SOURCE_DIR}/cmake/Exports.map)
check_linker_flag(CXX -Wl,--version-script=${ORN_EXPORTS} ORN_LINKER_TAKES_EXPORTS)
function(orn_export_public library)
  get_target_property(type ${library} TYPE)
  if(ORN_LINKER_TAKES_EXPORTS AND type STREQUAL SHARED_LIBRARY)
    target_link_options(${library} PRIVATE -Wl,--version-script=${ORN_EXPORTS})
    set_property(TARGET ${library} APPEND PROPERTY LINK_DEPENDS ${ORN_EXPORTS})
  endif()
endfunction()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND PROJECT_IS_TOP_LEVEL)
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()
