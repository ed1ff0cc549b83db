#pragma once

#include <curl/curl.h>

#include <ORNHearingTestSDK/platform/linux/SharedLibrary.h>

namespace orn {

/// The functions of libcurl that are used.
struct LibCurl : SharedLibrary {
  LibCurl() : SharedLibrary("libcurl.so.4") {}

  ORN_FUNCTION(curl_easy_cleanup);
  ORN_FUNCTION(curl_easy_init);
  ORN_FUNCTION(curl_easy_setopt);
  ORN_FUNCTION(curl_easy_strerror);
  ORN_FUNCTION(curl_global_init);
  ORN_FUNCTION(curl_multi_add_handle);
  ORN_FUNCTION(curl_multi_cleanup);
  ORN_FUNCTION(curl_multi_info_read);
  ORN_FUNCTION(curl_multi_init);
  ORN_FUNCTION(curl_multi_perform);
  ORN_FUNCTION(curl_multi_poll);
  ORN_FUNCTION(curl_multi_remove_handle);
  ORN_FUNCTION(curl_multi_strerror);
  ORN_FUNCTION(curl_multi_wakeup);
  ORN_FUNCTION(curl_slist_append);
  ORN_FUNCTION(curl_slist_free_all);
};

/// Loaded at the first call, which throws std::runtime_error if it can't be. Any thread.
inline const LibCurl& libcurl() {
  static const LibCurl library;
  return library;
}

}  // namespace orn
