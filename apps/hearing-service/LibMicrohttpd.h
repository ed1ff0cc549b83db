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

}  // namespace orn::service
