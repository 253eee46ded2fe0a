#include "system/message_pump_qt.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

namespace kv {

void MessagePumpQt::PumpOnce() {
  QCoreApplication::processEvents();
}

void MessagePumpQt::WaitAndPump(int milliseconds) {
  if (milliseconds <= 0) {
    PumpOnce();
    return;
  }
  QTimer limit;  // an event like any other, so it ends the wait
  limit.setTimerType(Qt::PreciseTimer);
  limit.setSingleShot(true);
  limit.start(milliseconds);
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

}  // namespace kv
