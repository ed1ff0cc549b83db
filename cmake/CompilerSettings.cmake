# Warnings and floating-point rules that every target of this project shares.

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

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()
