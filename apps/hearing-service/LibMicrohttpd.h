#pragma once

#include <microhttpd.h>

#include <ORNHearingTestSDK/platform/linux/SharedLibrary.h>

namespace orn::service {

/// What is used of libmicrohttpd.
struct LibMicrohttpd : SharedLibrary {
  LibMicrohttpd() : SharedLibrary("libmicrohttpd.so.12") {}

  ORN_FUNCTION(MHD_add_response_header);
  ORN_FUNCTION(MHD_create_response_from_callback);
  ORN_FUNCTION(MHD_destroy_response);
  ORN_FUNCTION(MHD_get_daemon_info);
  ORN_FUNCTION(MHD_queue_response);
  ORN_FUNCTION(MHD_start_daemon);
  ORN_FUNCTION(MHD_stop_daemon);
};

/// Loaded at the first call, which throws std::runtime_error if it can't be: an application with a service of its own
/// need not wait for it at its start. Any thread.
inline const LibMicrohttpd& libmicrohttpd() {
  static const LibMicrohttpd library;
  return library;
}

}  // namespace orn::service
