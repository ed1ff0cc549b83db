#pragma once

#include <pulse/pulseaudio.h>

#include <ORNHearingTestSDK/platform/linux/SharedLibrary.h>

namespace orn {

/// The functions of libpulse that are used.
struct LibPulse : SharedLibrary {
  LibPulse() : SharedLibrary("libpulse.so.0") {}

  ORN_FUNCTION(pa_context_connect);
  ORN_FUNCTION(pa_context_disconnect);
  ORN_FUNCTION(pa_context_errno);
  ORN_FUNCTION(pa_context_get_server_info);
  ORN_FUNCTION(pa_context_get_sink_info_list);
  ORN_FUNCTION(pa_context_get_state);
  ORN_FUNCTION(pa_context_new);
  ORN_FUNCTION(pa_context_rttime_new);
  ORN_FUNCTION(pa_context_rttime_restart);
  ORN_FUNCTION(pa_context_set_sink_mute_by_name);
  ORN_FUNCTION(pa_context_set_sink_volume_by_name);
  ORN_FUNCTION(pa_context_set_state_callback);
  ORN_FUNCTION(pa_context_set_subscribe_callback);
  ORN_FUNCTION(pa_context_subscribe);
  ORN_FUNCTION(pa_context_unref);
  ORN_FUNCTION(pa_cvolume_avg);
  ORN_FUNCTION(pa_cvolume_set);
  ORN_FUNCTION(pa_operation_cancel);
  ORN_FUNCTION(pa_operation_get_state);
  ORN_FUNCTION(pa_operation_unref);
  ORN_FUNCTION(pa_proplist_free);
  ORN_FUNCTION(pa_proplist_gets);
  ORN_FUNCTION(pa_proplist_new);
  ORN_FUNCTION(pa_proplist_sets);
  ORN_FUNCTION(pa_rtclock_now);
  ORN_FUNCTION(pa_stream_connect_playback);
  ORN_FUNCTION(pa_stream_cork);
  ORN_FUNCTION(pa_stream_disconnect);
  ORN_FUNCTION(pa_stream_flush);
  ORN_FUNCTION(pa_stream_get_buffer_attr);
  ORN_FUNCTION(pa_stream_get_context);
  ORN_FUNCTION(pa_stream_get_state);
  ORN_FUNCTION(pa_stream_is_corked);
  ORN_FUNCTION(pa_stream_is_suspended);
  ORN_FUNCTION(pa_stream_new_with_proplist);
  ORN_FUNCTION(pa_stream_set_event_callback);
  ORN_FUNCTION(pa_stream_set_started_callback);
  ORN_FUNCTION(pa_stream_set_state_callback);
  ORN_FUNCTION(pa_stream_set_suspended_callback);
  ORN_FUNCTION(pa_stream_set_underflow_callback);
  ORN_FUNCTION(pa_stream_set_write_callback);
  ORN_FUNCTION(pa_stream_unref);
  ORN_FUNCTION(pa_stream_writable_size);
  ORN_FUNCTION(pa_stream_write);
  ORN_FUNCTION(pa_strerror);
  ORN_FUNCTION(pa_threaded_mainloop_free);
  ORN_FUNCTION(pa_threaded_mainloop_get_api);
  ORN_FUNCTION(pa_threaded_mainloop_lock);
  ORN_FUNCTION(pa_threaded_mainloop_new);
  ORN_FUNCTION(pa_threaded_mainloop_signal);
  ORN_FUNCTION(pa_threaded_mainloop_start);
  ORN_FUNCTION(pa_threaded_mainloop_stop);
  ORN_FUNCTION(pa_threaded_mainloop_unlock);
  ORN_FUNCTION(pa_threaded_mainloop_wait);
};

/// Loaded at the first call, which throws std::runtime_error if it can't be. Any thread.
inline const LibPulse& libpulse() {
  static const LibPulse library;
  return library;
}

}  // namespace orn
