#include "system/hot_keys.h"

#include <utility>

namespace kv {
namespace {

constexpr int kEventMilliseconds = 50;

}  // namespace

OSTHotKeyModule::OSTHotKeyModule(HotKeyPlatform& platform) : platform_(platform) {
  platform_.on_hot_key = [this](int id) {
    HotKeyPressed_ = true;
    HotKeyId_ = static_cast<std::uint8_t>(id & 0xFF);
  };
}

OSTHotKeyModule::~OSTHotKeyModule() {
  RemoveHotKeys();
  platform_.on_hot_key = nullptr;
}

bool OSTHotKeyModule::AsignNewHotKey(int VirtualKey, unsigned Modifiers) {
  if (!platform_.RegisterHotKey(LastHotKeyId_ + 1, Modifiers, VirtualKey)) return false;
  ++LastHotKeyId_;
  HotKeyHooked_ = true;
  return true;
}

void OSTHotKeyModule::RemoveHotKeys() {
  if (!HotKeyHooked_) return;
  for (int id = 0; id <= LastHotKeyId_; ++id) platform_.UnregisterHotKey(id);
  LastHotKeyId_ = -1;
}

bool OSTHotKeyModule::TakePressed(std::uint8_t& Id) {
  if (!std::exchange(HotKeyPressed_, false)) return false;
  Id = std::exchange(HotKeyId_, std::uint8_t{0});
  return true;
}

OSTHotkey::OSTHotkey(OSTHotKeyModule& module, TimerSource& time)
    : module_(module),
      EventTimer_(time.MakeTimer(TimerKind::kOrdinary, kEventMilliseconds, [this] { Tick(); })) {}

OSTHotkey::~OSTHotkey() {
  RemoveHotKeys();
}

bool OSTHotkey::AsignNewHotKey(int VirtualKey, unsigned Modifiers) {
  if (!module_.AsignNewHotKey(VirtualKey, Modifiers)) return false;
  EventTimer_->SetEnabled(true);
  return true;
}

void OSTHotkey::RemoveHotKeys() {
  module_.RemoveHotKeys();
}

void OSTHotkey::Tick() {
  std::uint8_t id = 0;
  if (module_.TakePressed(id) && KeyPressed) KeyPressed(id);
}

}  // namespace kv
