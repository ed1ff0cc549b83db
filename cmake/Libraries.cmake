# orn_library(LIBRARY NAME): a library of this project, known as ORN::NAME, shared or static as BUILD_SHARED_LIBS says.
function(orn_library library name)
  add_library(${library})
  add_library(ORN::${name} ALIAS ${library})
  set_target_properties(
    ${library}
    PROPERTIES EXPORT_NAME ${name}
               DEFINE_SYMBOL ""
               VERSION ${PROJECT_VERSION}
               SOVERSION ${PROJECT_VERSION_MAJOR})
  target_compile_features(${library} PUBLIC cxx_std_20)
  target_link_libraries(${library} PRIVATE $<BUILD_INTERFACE:orn_settings>)
  orn_export_public(${library})
endfunction()

# orn_internals(NAME LIBRARY SOURCES...): sources of a library that export nothing, compiled once: a test or fuzzer that
# links with NAME can call them.
function(orn_internals name library)
  add_library(${name} OBJECT ${ARGN})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE orn_settings)
  target_sources(${library} PRIVATE $<TARGET_OBJECTS:${name}>)
endfunction()

# orn_headers(LIBRARY HEADERS...): headers of this folder that are installed with the library, each under the path by
# which it is included.
function(orn_headers library)
  target_sources(${library} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${ARGN})
endfunction()
