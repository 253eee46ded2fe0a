// The X server behind the toolkit. Inside the platform files of this room only; interface thread.
#pragma once

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace kv {

// The server gives its answers as memory of the C library.
struct FreeXcb {
  void operator()(void* answer) const { std::free(answer); }
};
template <class T>
using XcbAnswer = std::unique_ptr<T, FreeXcb>;

// The toolkit's own connection; null where it does not talk to an X server.
xcb_connection_t* X11Connection();

// The window that all others lie in.
xcb_window_t X11RootWindow(xcb_connection_t* connection);

// The window manager's frame around a window; 0 when it has none. Its moves are told to this
// program from now on.
xcb_window_t WatchX11Frame(xcb_connection_t* connection, xcb_window_t window);

// A mouse button is held, and not over a window of this program: the window manager drags
// something. False where there is no X server.
bool MouseHeldByOthers();

}  // namespace kv
