// System-wide hot keys: keys that reach the program even when it has no focus.
//
// `OSTHotkey` is what a form holds, one or more of them; `OSTHotKeyModule` keeps what all of them
// share and is owned by the shell, one for the program, with the platform's keys behind it. A key
// is told by its virtual-key code and a mask of kMod... Interface thread only.
#pragma once

#include "system/timers.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace kv {

inline constexpr unsigned kModAlt = 1;
inline constexpr unsigned kModControl = 2;
inline constexpr unsigned kModShift = 4;
inline constexpr unsigned kModWin = 8;

// The desktop's keys.
class HotKeyPlatform {
 public:
  virtual ~HotKeyPlatform() = default;

  // From now on the key calls `on_hot_key` with `id`. False, and nothing changed, when another
  // program owns it, the keyboard has no such key or the desktop gives no keys away.
  virtual bool RegisterHotKey(int id, unsigned Modifiers, int VirtualKey) = 0;

  // Gives a key back; an id that is not registered is ignored.
  virtual void UnregisterHotKey(int id) = 0;

  // Called for each press, also for those of a held key that repeats.
  std::function<void(int id)> on_hot_key;
};

class OSTHotKeyModule {
 public:
  // `platform` must outlive the module.
  explicit OSTHotKeyModule(HotKeyPlatform& platform);
  OSTHotKeyModule(const OSTHotKeyModule&) = delete;
  OSTHotKeyModule& operator=(const OSTHotKeyModule&) = delete;
  ~OSTHotKeyModule();

  bool AsignNewHotKey(int VirtualKey, unsigned Modifiers);
  void RemoveHotKeys();

  // True once for all presses since the last call; `Id` is the later one's.
  bool TakePressed(std::uint8_t& Id);

 private:
  HotKeyPlatform& platform_;
  bool HotKeyPressed_ = false;
  std::uint8_t HotKeyId_ = 0;
  bool HotKeyHooked_ = false;  // a key was registered once
  int LastHotKeyId_ = 0;       // the highest in use; -1 after removal
};

class OSTHotkey {
 public:
  // Both must outlive the control.
  OSTHotkey(OSTHotKeyModule& module, TimerSource& time);
  OSTHotkey(const OSTHotkey&) = delete;
  OSTHotkey& operator=(const OSTHotkey&) = delete;
  // Releases all keys, those of other controls too.
  ~OSTHotkey();

  // Asks for a key. It gets the next identifier: 1 for the first of a process, 0 for the first
  // after RemoveHotKeys. False, and the identifier is not used up, when the key is not to be had.
  bool AsignNewHotKey(int VirtualKey, unsigned Modifiers);

  // Releases all keys.
  void RemoveHotKeys();

  // A key was pressed; at most one call in 50 ms, for the latest press. `Id` is the low byte of the
  // key's identifier.
  std::function<void(std::uint8_t& Id)> KeyPressed;

 private:
  void Tick();

  OSTHotKeyModule& module_;
  std::unique_ptr<Timer> EventTimer_;
};

}  // namespace kv
