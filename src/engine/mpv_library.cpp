#include "engine/mpv_library.h"

#include <dlfcn.h>

namespace kv {
namespace {

// The file of the interface version that <mpv/client.h> describes.
constexpr const char* kLibrary = "libmpv.so.2";
static_assert(MPV_CLIENT_API_VERSION >> 16 == 2);

template <typename Function>
bool Find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  return function != nullptr;
}

MpvLibrary Load() {
  MpvLibrary mpv;
  void* library = dlopen(kLibrary, RTLD_LAZY | RTLD_LOCAL);
  if (library == nullptr) return mpv;
  mpv.loaded = Find(library, "mpv_create", mpv.create) &&
               Find(library, "mpv_initialize", mpv.initialize) &&
               Find(library, "mpv_destroy", mpv.destroy) &&
               Find(library, "mpv_terminate_destroy", mpv.terminate_destroy) &&
               Find(library, "mpv_set_option_string", mpv.set_option_string) &&
               Find(library, "mpv_command_async", mpv.command_async) &&
               Find(library, "mpv_set_property_async", mpv.set_property_async) &&
               Find(library, "mpv_get_property_async", mpv.get_property_async) &&
               Find(library, "mpv_observe_property", mpv.observe_property) &&
               Find(library, "mpv_wait_event", mpv.wait_event) &&
               Find(library, "mpv_set_wakeup_callback", mpv.set_wakeup_callback) &&
               Find(library, "mpv_hook_add", mpv.hook_add) &&
               Find(library, "mpv_hook_continue", mpv.hook_continue) &&
               Find(library, "mpv_request_log_messages", mpv.request_log_messages) &&
               Find(library, "mpv_render_context_create", mpv.render_context_create) &&
               Find(library, "mpv_render_context_free", mpv.render_context_free) &&
               Find(library, "mpv_render_context_render", mpv.render_context_render) &&
               Find(library, "mpv_render_context_update", mpv.render_context_update) &&
               Find(library, "mpv_render_context_set_update_callback",
                    mpv.render_context_set_update_callback);
  return mpv;
}

}  // namespace

const MpvLibrary& Mpv() {
  static const MpvLibrary library = Load();
  return library;
}

}  // namespace kv
