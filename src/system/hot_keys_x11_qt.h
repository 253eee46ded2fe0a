// Hot keys as grabs of the X server, and the choice of what this desktop offers.
//
// A key is grabbed with CapsLock and NumLock in every state. Uses the toolkit's own connection, so
// that presses come through its event loop. Interface thread only.
#pragma once

#include "system/hot_keys.h"
#include "system/x11_qt.h"

#include <QAbstractNativeEventFilter>

#include <memory>
#include <vector>

namespace kv {

class X11HotKeys : public HotKeyPlatform, private QAbstractNativeEventFilter {
 public:
  // `connection` is X11Connection(), not null, and must outlive this object.
  explicit X11HotKeys(xcb_connection_t* connection);
  ~X11HotKeys() override;

  bool RegisterHotKey(int id, unsigned Modifiers, int VirtualKey) override;
  void UnregisterHotKey(int id) override;

 private:
  struct Grab {
    int id;
    xcb_keycode_t keycode;
    std::uint16_t modifiers;
    std::uint16_t num_lock;  // the bit of that lock; 0 where there is none
  };

  bool nativeEventFilter(const QByteArray& event_type, void* message, qintptr* result) override;
  bool GrabWithLocks(const Grab& grab);
  void UngrabWithLocks(const Grab& grab);

  xcb_connection_t* connection_;
  xcb_window_t root_;
  std::vector<Grab> grabs_;
};

// The hot keys of this desktop: grabs on X11, else the desktop portal; never null. Where there is
// neither, every key is refused.
std::unique_ptr<HotKeyPlatform> MakeHotKeyPlatform();

}  // namespace kv
