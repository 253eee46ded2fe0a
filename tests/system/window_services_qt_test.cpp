#include "system/window_services_qt.h"

#include "support/fake_pump.h"

#include <QGuiApplication>
#include <QListWidget>
#include <QWidget>

#include <gtest/gtest.h>

namespace kv {
namespace {

Qt::CursorShape Pointer() {
  const QCursor* pointer = QGuiApplication::overrideCursor();
  return pointer == nullptr ? Qt::ArrowCursor : pointer->shape();
}

TEST(WindowServicesQt, PointerIsCountedAndHiddenBeatsBusy) {
  FakePump pump;
  {
    WindowServicesQt services(pump);
    const auto hide = [&](bool hidden) {
      services.SetCursorHidden(hidden);
      return Pointer();
    };
    hide(true);
    EXPECT_EQ(hide(true), Qt::BlankCursor);
    services.SetBusyPointer(true);
    EXPECT_EQ(pump.Pumps(), 1);
    EXPECT_EQ(Pointer(), Qt::BlankCursor);
    EXPECT_EQ(hide(false), Qt::BlankCursor);
    EXPECT_EQ(hide(false), Qt::WaitCursor);
    services.SetBusyPointer(true);
    services.SetBusyPointer(false);
    EXPECT_EQ(Pointer(), Qt::ArrowCursor);
    hide(false);  // shown once more than hidden
    EXPECT_EQ(hide(true), Qt::ArrowCursor);
    EXPECT_EQ(hide(true), Qt::BlankCursor);
  }
  EXPECT_EQ(Pointer(), Qt::ArrowCursor);  // nothing stays behind
}

TEST(WindowServicesQt, OneWindowIsLockedAtATime) {
  FakePump pump;
  WindowServicesQt services(pump);
  QListWidget first;
  QWidget second;
  services.LockWindowRedraw(&first);
  services.LockWindowRedraw(&second);
  EXPECT_FALSE(first.updatesEnabled());
  EXPECT_TRUE(second.updatesEnabled());
  services.LockWindowRedraw(nullptr);
  EXPECT_TRUE(first.updatesEnabled());
  {
    QWidget gone;
    services.LockWindowRedraw(&gone);
  }
  services.LockWindowRedraw(&second);  // a window that is gone locks nothing
  EXPECT_FALSE(second.updatesEnabled());
}

}  // namespace
}  // namespace kv
