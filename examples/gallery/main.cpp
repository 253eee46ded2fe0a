// gallery [--second]: shows the controls of the player and what can be set of them. Its windows
// snap to each other and to the work area, and Ctrl+Alt+K is its hot key. --second opens another
// window.
#include "gallery_window.h"
#include "system/docking_qt.h"
#include "system/hot_keys_x11_qt.h"
#include "system/timers_qt.h"

#include <QApplication>
#include <QLabel>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  kv::TimerSourceQt time;
  const auto keys = kv::MakeHotKeyPlatform();
  kv::OSTHotKeyModule hot_keys(*keys);
  kv::OSTHotkey hot_key(hot_keys, time);
  kv::Docking docking(time);

  kv::GalleryWindow window(time);
  window.ShowHotKey(hot_key.AsignNewHotKey('K', kv::kModControl | kv::kModAlt) ? "Ctrl+Alt+K"
                                                                               : "refused");
  hot_key.KeyPressed = [&window, presses = 0](std::uint8_t& id) mutable {
    window.ShowHotKey("key " + std::to_string(id) + ", " + std::to_string(++presses));
  };
  docking.DockWindow(window);
  window.show();

  QLabel second(QStringLiteral("Another window"));
  second.setWindowTitle(QStringLiteral("Second"));
  second.resize(200, 150);
  docking.DockWindow(second);
  if (QApplication::arguments().contains(QStringLiteral("--second"))) second.show();
  return QApplication::exec();
}
