// libmpv's functions, found while the program runs.
//
// The library brings two hundred others with it, and loading them takes longer than all the rest of
// a start. So the program does not link it: the engine loads it on a thread of its own while the
// window comes up, and a start that only hands its path over never does. The members are the
// functions of <mpv/client.h> and <mpv/render.h> without their prefix. Any thread.
#pragma once

#include <mpv/client.h>
#include <mpv/render.h>

namespace kv {

struct MpvLibrary {
  decltype(&mpv_create) create = nullptr;
  decltype(&mpv_initialize) initialize = nullptr;
  decltype(&mpv_destroy) destroy = nullptr;
  decltype(&mpv_terminate_destroy) terminate_destroy = nullptr;
  decltype(&mpv_set_option_string) set_option_string = nullptr;
  decltype(&mpv_command_async) command_async = nullptr;
  decltype(&mpv_set_property_async) set_property_async = nullptr;
  decltype(&mpv_get_property_async) get_property_async = nullptr;
  decltype(&mpv_observe_property) observe_property = nullptr;
  decltype(&mpv_wait_event) wait_event = nullptr;
  decltype(&mpv_set_wakeup_callback) set_wakeup_callback = nullptr;
  decltype(&mpv_hook_add) hook_add = nullptr;
  decltype(&mpv_hook_continue) hook_continue = nullptr;
  decltype(&mpv_request_log_messages) request_log_messages = nullptr;
  decltype(&mpv_render_context_create) render_context_create = nullptr;
  decltype(&mpv_render_context_free) render_context_free = nullptr;
  decltype(&mpv_render_context_render) render_context_render = nullptr;
  decltype(&mpv_render_context_update) render_context_update = nullptr;
  decltype(&mpv_render_context_set_update_callback) render_context_set_update_callback = nullptr;

  // False when the library, or one of the functions, is not there; none may be called then.
  bool loaded = false;
};

// The library, loaded by the first call, which takes a twentieth of a second. It is never unloaded.
const MpvLibrary& Mpv();

}  // namespace kv
