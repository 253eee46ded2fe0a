#include "visual/frm_vumeter.h"

#include "system/text_platform_qt.h"
#include "system/translation_qt.h"
#include "view/key_codes_qt.h"

#include <QAction>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QPointer>
#include <QResizeEvent>
#include <QScreen>
#include <QWheelEvent>

#include <algorithm>
#include <utility>
#include <vector>

namespace kv {
namespace {

constexpr QSize kFirstSize(480, 270);
constexpr QSize kSmallest(120, 68);

}  // namespace

frmVumeter::frmVumeter(const Parts& parts, std::unique_ptr<AudioCapture> capture, QWidget* owner)
    : QWidget(owner, Qt::Window),
      parts_(parts),
      dialogs_(this),
      VuMeter1_(new VuMeterWidget(parts.time, std::move(capture), WindowMeterProperties(), this)),
      meter_(*VuMeter1_),
      rules_({*this, meter_, parts.hosting, parts.settings, parts.state, dialogs_, parts.time,
              parts.main_meter}) {
  setObjectName(QStringLiteral("frmVumeter"));
  setAttribute(Qt::WA_DeleteOnClose);
  setMinimumSize(kSmallest);
  resize(kFirstSize);
  VuMeter1_->move(0, 0);
  VuMeter1_->setAccessibleName(QTr("Level meter"));
  VuMeter1_->Meter().Frame = [this](std::vector<std::uint8_t>& Samples, std::int32_t& Count,
                                    std::int32_t /*Level*/, bool& Cancel) {
    parts_.hosting.Frame(meter_, isVisible() && !isMinimized(), Samples, Count, Cancel);
  };
  VuMeterEvents& events = VuMeter1_->Events();
  events.Click = [this] { rules_.VuMeter1_Click(); };
  events.DblClick = [this] { rules_.VuMeter1_DblClick(); };
  events.MouseDown = [this](std::int16_t Button, std::int16_t Shift, float X, float Y) {
    rules_.VuMeter1_MouseDown({Button, Shift, X, Y});
  };
  events.MouseMove = [this](std::int16_t Button, std::int16_t Shift, float X, float Y) {
    rules_.VuMeter1_MouseMove({Button, Shift, X, Y});
  };
  events.MouseUp = [this](std::int16_t Button, std::int16_t Shift, float X, float Y) {
    rules_.VuMeter1_MouseUp({Button, Shift, X, Y});
  };
}

frmVumeter::~frmVumeter() {
  // Deleted without having been closed, with its owner.
  QueryUnload(MeterUnloadMode::kProgram);
}

void frmVumeter::Form_Load() {
  const QPointer<frmVumeter> alive(this);
  SetCaption(Tr("VuMeter - Kestrelview"));
  rules_.Form_Load();
  if (!alive || unloaded_) return;
  show();
}

void frmVumeter::Form_Unload(bool session) {
  QueryUnload(session ? MeterUnloadMode::kSession : MeterUnloadMode::kProgram);
  close();
}

void frmVumeter::QueryUnload(MeterUnloadMode mode) {
  if (!std::exchange(unloaded_, true)) rules_.Form_QueryUnload(mode);
}

void frmVumeter::closeEvent(QCloseEvent* event) {
  QueryUnload(event->spontaneous() ? MeterUnloadMode::kUser : MeterUnloadMode::kProgram);
  event->accept();
}

void frmVumeter::resizeEvent(QResizeEvent* event) {
  VuMeter1_->resize(event->size());
}

void frmVumeter::keyPressEvent(QKeyEvent* event) {
  const KeyStroke key = KeyStrokeOf(*event);
  if (!rules_.Form_KeyDown(key.key_code, key.shift)) QWidget::keyPressEvent(event);
}

void frmVumeter::keyReleaseEvent(QKeyEvent* event) {
  if (!event->isAutoRepeat()) parts_.host.MeterWindowKeyUp(*event);
}

void frmVumeter::wheelEvent(QWheelEvent* event) {
  parts_.host.MeterWindowWheel(*event);
}

// The mouse brings the menu by itself; this is the Menu key.
void frmVumeter::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() == QContextMenuEvent::Keyboard) PopUpMenu();
}

void frmVumeter::SetCaption(const std::string& text) {
  setWindowTitle(ToQString(text));
}

// In sight, whatever the settings say and whichever screens there are now.
void frmVumeter::Move(const MeterWindowPlace& place) {
  const QRect wanted(place.left, place.top, std::max(place.width, kSmallest.width()),
                     std::max(place.height, kSmallest.height()));
  const QScreen* screen = QGuiApplication::screenAt(wanted.center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  const QRect room = screen->availableGeometry();
  const QSize size = wanted.size().boundedTo(room.size());
  resize(size);
  move(std::clamp(wanted.left(), room.left(), room.right() + 1 - size.width()),
       std::clamp(wanted.top(), room.top(), room.bottom() + 1 - size.height()));
}

// Of the outer corner, and of the inner size.
MeterWindowPlace frmVumeter::Place() const {
  const QRect normal = isMaximized() || isFullScreen() ? normalGeometry() : geometry();
  const QPoint corner = isMaximized() || isFullScreen() ? normal.topLeft() : pos();
  return {corner.x(), corner.y(), normal.width(), normal.height()};
}

void frmVumeter::OpenPluginManager() {
  parts_.host.ShowPlugins();
}

void frmVumeter::PopUpMenu() {
  // The window can go down while the menu is open, and takes it along.
  const QPointer<QMenu> mnu(new QMenu(this));
  connect(mnu->addAction(QTr("Plugin manager...")), &QAction::triggered, this,
          &frmVumeter::OpenPluginManager, Qt::QueuedConnection);
  mnu->addSeparator();
  QAction* const configure = mnu->addAction(QTr("Configure plugin..."));
  configure->setEnabled(rules_.CanConfigure());
  connect(
      configure, &QAction::triggered, this, [this] { ConfigMainPlugin(); }, Qt::QueuedConnection);
  mnu->exec(underMouse() ? QCursor::pos() : mapToGlobal(rect().center()));
  delete mnu.data();
}

}  // namespace kv
