#include "system/x11_qt.h"

#include <QGuiApplication>

#include <cstdint>

namespace kv {

xcb_connection_t* X11Connection() {
  const auto* const x11 =
      qApp == nullptr ? nullptr : qApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 != nullptr ? x11->connection() : nullptr;
}

xcb_window_t X11RootWindow(xcb_connection_t* connection) {
  return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

xcb_window_t WatchX11Frame(xcb_connection_t* connection, xcb_window_t window) {
  const xcb_window_t root = X11RootWindow(connection);
  xcb_window_t frame = window;
  for (;;) {
    const XcbAnswer<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, frame), nullptr));
    if (!tree) return 0;
    if (tree->parent == root) break;
    frame = tree->parent;
  }
  if (frame == window) return 0;
  const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection, frame, XCB_CW_EVENT_MASK, &events);
  xcb_flush(connection);
  return frame;
}

bool MouseHeldByOthers() {
  xcb_connection_t* const connection = X11Connection();
  if (connection == nullptr || QGuiApplication::mouseButtons() != Qt::NoButton) return false;
  const XcbAnswer<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(
      connection, xcb_query_pointer(connection, X11RootWindow(connection)), nullptr));
  constexpr unsigned kButtons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
  return pointer && (pointer->mask & kButtons) != 0;
}

}  // namespace kv
