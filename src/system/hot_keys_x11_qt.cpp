#include "system/hot_keys_x11_qt.h"

#include "system/hot_keys_portal_qt.h"
#include "system/key_symbols.h"

#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <optional>
#include <span>

namespace kv {
namespace {

constexpr std::uint32_t kKeysymNumLock = 0xFF7F;
constexpr std::uint32_t kKeysymAlt = 0xFFE9;
constexpr std::uint32_t kKeysymSuper = 0xFFEB;

// Of a key event's state; above stand mouse buttons and the keyboard's group.
constexpr unsigned kAllModifiers = 0xFF;

class Keyboard {
 public:
  explicit Keyboard(xcb_connection_t* connection) {
    const xcb_setup_t* const setup = xcb_get_setup(connection);
    first_ = setup->min_keycode;
    const int count = setup->max_keycode - setup->min_keycode + 1;
    const auto symbols = xcb_get_keyboard_mapping(connection, first_, static_cast<uint8_t>(count));
    const auto modifiers = xcb_get_modifier_mapping(connection);
    symbols_.reset(xcb_get_keyboard_mapping_reply(connection, symbols, nullptr));
    modifiers_.reset(xcb_get_modifier_mapping_reply(connection, modifiers, nullptr));
  }

  // The key that gives `keysym` most easily: without Shift rather than with it.
  std::optional<xcb_keycode_t> KeycodeOf(std::uint32_t keysym) const {
    if (!symbols_ || keysym == 0) return std::nullopt;
    const std::span<const xcb_keysym_t> all(
        xcb_get_keyboard_mapping_keysyms(symbols_.get()),
        static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(symbols_.get())));
    const std::size_t columns = symbols_->keysyms_per_keycode;
    for (std::size_t column = 0; column < columns; ++column) {
      for (std::size_t at = column; at < all.size(); at += columns) {
        if (all[at] == keysym) return static_cast<xcb_keycode_t>(first_ + at / columns);
      }
    }
    return std::nullopt;
  }

  // The mask bit that a modifier key sets; 0 when it sets none.
  std::uint16_t MaskOf(std::uint32_t keysym) const {
    const std::optional<xcb_keycode_t> keycode = KeycodeOf(keysym);
    if (!modifiers_ || !keycode) return 0;
    const std::span<const xcb_keycode_t> all(
        xcb_get_modifier_mapping_keycodes(modifiers_.get()),
        static_cast<std::size_t>(xcb_get_modifier_mapping_keycodes_length(modifiers_.get())));
    const auto found = std::find(all.begin(), all.end(), *keycode);
    if (found == all.end()) return 0;
    const auto row = (found - all.begin()) / modifiers_->keycodes_per_modifier;
    return static_cast<std::uint16_t>(1U << row);
  }

 private:
  xcb_keycode_t first_ = 0;
  XcbAnswer<xcb_get_keyboard_mapping_reply_t> symbols_;
  XcbAnswer<xcb_get_modifier_mapping_reply_t> modifiers_;
};

constexpr std::uint16_t kCapsLock = XCB_MOD_MASK_LOCK;

// `modifiers` with the locks in every state.
std::array<std::uint16_t, 4> WithLocks(std::uint16_t modifiers, std::uint16_t num_lock) {
  const auto with = [modifiers](unsigned locks) {
    return static_cast<std::uint16_t>(modifiers | locks);
  };
  return {with(0), with(kCapsLock), with(num_lock), with(kCapsLock | unsigned{num_lock})};
}

// Nothing for a modifier that this keyboard does not have.
std::optional<std::uint16_t> XcbModifiers(const Keyboard& keyboard, unsigned Modifiers) {
  const struct {
    unsigned modifier;
    std::uint16_t mask;
  } rows[] = {{kModShift, XCB_MOD_MASK_SHIFT},
              {kModControl, XCB_MOD_MASK_CONTROL},
              {kModAlt, keyboard.MaskOf(kKeysymAlt)},
              {kModWin, keyboard.MaskOf(kKeysymSuper)}};
  unsigned mask = 0;
  for (const auto& row : rows) {
    if ((Modifiers & row.modifier) == 0) continue;
    if (row.mask == 0) return std::nullopt;
    mask |= row.mask;
    Modifiers &= ~row.modifier;
  }
  if (Modifiers != 0) return std::nullopt;
  return static_cast<std::uint16_t>(mask);
}

// Hot keys of a desktop that gives none away.
class NoHotKeys : public HotKeyPlatform {
 public:
  bool RegisterHotKey(int /*id*/, unsigned /*Modifiers*/, int /*VirtualKey*/) override {
    return false;
  }
  void UnregisterHotKey(int /*id*/) override {}
};

}  // namespace

X11HotKeys::X11HotKeys(xcb_connection_t* connection)
    : connection_(connection), root_(X11RootWindow(connection)) {
  qApp->installNativeEventFilter(this);
}

X11HotKeys::~X11HotKeys() {
  if (qApp != nullptr) qApp->removeNativeEventFilter(this);
  if (X11Connection() != connection_) return;  // closed, and the grabs with it
  for (const Grab& grab : grabs_) UngrabWithLocks(grab);
}

bool X11HotKeys::RegisterHotKey(int id, unsigned Modifiers, int VirtualKey) {
  const Keyboard keyboard(connection_);
  const auto keycode = keyboard.KeycodeOf(KeySymbolOf(VirtualKey).keysym);
  const auto modifiers = XcbModifiers(keyboard, Modifiers);
  if (!keycode || !modifiers) return false;
  // The server lets one program grab a key twice, and would call once.
  const Grab grab{id, *keycode, *modifiers, keyboard.MaskOf(kKeysymNumLock)};
  const bool ours = std::any_of(grabs_.begin(), grabs_.end(), [&grab](const Grab& old) {
    return old.id == grab.id || (old.keycode == grab.keycode && old.modifiers == grab.modifiers);
  });
  if (ours || !GrabWithLocks(grab)) return false;
  grabs_.push_back(grab);
  return true;
}

void X11HotKeys::UnregisterHotKey(int id) {
  const auto grab =
      std::find_if(grabs_.begin(), grabs_.end(), [id](const Grab& g) { return g.id == id; });
  if (grab == grabs_.end()) return;
  UngrabWithLocks(*grab);
  grabs_.erase(grab);
}

// All or nothing: a key that another program owns in one state of the locks is its key.
bool X11HotKeys::GrabWithLocks(const Grab& grab) {
  std::array<xcb_void_cookie_t, 4> asked{};
  const auto states = WithLocks(grab.modifiers, grab.num_lock);
  std::transform(states.begin(), states.end(), asked.begin(), [&](std::uint16_t modifiers) {
    return xcb_grab_key_checked(connection_, 0, root_, modifiers, grab.keycode, XCB_GRAB_MODE_ASYNC,
                                XCB_GRAB_MODE_ASYNC);
  });
  bool granted = true;
  for (const xcb_void_cookie_t cookie : asked) {
    const XcbAnswer<xcb_generic_error_t> error(xcb_request_check(connection_, cookie));
    if (error) granted = false;
  }
  // Only what is ours is given back; the grabs of others stay.
  if (!granted) UngrabWithLocks(grab);
  return granted;
}

void X11HotKeys::UngrabWithLocks(const Grab& grab) {
  for (const std::uint16_t modifiers : WithLocks(grab.modifiers, grab.num_lock)) {
    xcb_ungrab_key(connection_, grab.keycode, root_, modifiers);
  }
  xcb_flush(connection_);
}

bool X11HotKeys::nativeEventFilter(const QByteArray& event_type, void* message,
                                   qintptr* /*result*/) {
  if (event_type != "xcb_generic_event_t") return false;
  const auto* const event = static_cast<const xcb_generic_event_t*>(message);
  const int type = event->response_type & 0x7F;  // without the mark of sent events
  if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE) return false;
  const auto* const key = static_cast<const xcb_key_press_event_t*>(message);
  if (key->event != root_) return false;
  for (const Grab& grab : grabs_) {
    const unsigned locks = kCapsLock | unsigned{grab.num_lock};
    const unsigned held = key->state & kAllModifiers & ~locks;
    if (grab.keycode != key->detail || grab.modifiers != held) continue;
    if (type == XCB_KEY_PRESS && on_hot_key) on_hot_key(grab.id);
    return true;
  }
  return false;
}

std::unique_ptr<HotKeyPlatform> MakeHotKeyPlatform() {
  if (xcb_connection_t* const connection = X11Connection()) {
    return std::make_unique<X11HotKeys>(connection);
  }
  if (PortalHotKeys::Available()) return std::make_unique<PortalHotKeys>();
  return std::make_unique<NoHotKeys>();
}

}  // namespace kv
