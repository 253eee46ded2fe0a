#include "state/frm_capture.h"

#include "system/translation_qt.h"

#include <QCloseEvent>
#include <QColor>
#include <QCursor>
#include <QFont>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace kv {
namespace {

constexpr int kGlassPixels = 11;  // of the desktop, odd: one is in the middle
constexpr int kZoom = 12;
constexpr int kGlassSide = kGlassPixels * kZoom;
constexpr int kLabelHeight = 26;
constexpr int kGap = 20;  // between pointer and glass

}  // namespace

frmCapture::frmCapture(QImage desktop, const QRect& area,
                       std::function<void(std::int32_t color)> done, QWidget* owner)
    : QWidget(owner, Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                         Qt::BypassWindowManagerHint),
      desktop_(std::move(desktop)),
      done_(std::move(done)) {
  setObjectName(QStringLiteral("frmCapture"));
  setWindowTitle(QTr("Color capture - Kestrelview"));
  setAttribute(Qt::WA_DeleteOnClose);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setWindowModality(Qt::ApplicationModal);
  setMouseTracking(true);
  setCursor(Qt::CrossCursor);
  setGeometry(area);
}

void frmCapture::Form_Load() {
  show();
  raise();
  activateWindow();
  setFocus();
  // The window manager does not know this window and gives it no keys of its own accord.
  grabKeyboard();
  PassOver(mapFromGlobal(QCursor::pos()));
}

QPoint frmCapture::PixelAt(QPoint point) const {
  const QPointF pixel = QPointF(point) * desktop_.devicePixelRatio();
  return {std::clamp(static_cast<int>(pixel.x()), 0, desktop_.width() - 1),
          std::clamp(static_cast<int>(pixel.y()), 0, desktop_.height() - 1)};
}

void frmCapture::PassOver(QPoint point) {
  if (desktop_.isNull()) return;
  update(Glass().adjusted(-2, -2, 2, 2));
  pointer_ = point;
  const QRgb pixel = desktop_.pixel(PixelAt(point));
  CapturedColor_ = qRed(pixel) | qGreen(pixel) << 8 | qBlue(pixel) << 16;
  update(Glass().adjusted(-2, -2, 2, 2));
}

QRect frmCapture::Glass() const {
  const QSize size(kGlassSide, kGlassSide + kLabelHeight);
  QPoint corner = pointer_ + QPoint(kGap, kGap);
  if (corner.x() + size.width() > width()) corner.rx() = pointer_.x() - kGap - size.width();
  if (corner.y() + size.height() > height()) corner.ry() = pointer_.y() - kGap - size.height();
  return {corner, size};
}

void frmCapture::mouseMoveEvent(QMouseEvent* event) {
  PassOver(event->position().toPoint());
}

void frmCapture::mousePressEvent(QMouseEvent* /*event*/) {
  pressed_ = true;
}

void frmCapture::mouseReleaseEvent(QMouseEvent* /*event*/) {
  if (pressed_) close();  // the release of a button that chose from a menu is none of ours
}

void frmCapture::keyPressEvent(QKeyEvent* event) {
  constexpr Qt::KeyboardModifiers kHeld = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;
  const int key = event->key();
  const bool holds = key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt;
  if (holds || (event->modifiers() & kHeld) != 0) return;
  CapturedColor_ = -1;
  close();
}

void frmCapture::closeEvent(QCloseEvent* event) {
  // Out of the way before anybody is told, who may have something to ask.
  releaseKeyboard();
  hide();
  event->accept();
  if (const auto done = std::exchange(done_, nullptr)) done(CapturedColor_);
}

void frmCapture::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.setClipRegion(event->region());
  painter.drawImage(0, 0, desktop_);
  if (CapturedColor_ < 0) return;
  const QRect glass = Glass();
  const QPoint middle = PixelAt(pointer_);
  for (int row = 0; row < kGlassPixels; ++row) {
    for (int column = 0; column < kGlassPixels; ++column) {
      const QPoint pixel = middle + QPoint(column - kGlassPixels / 2, row - kGlassPixels / 2);
      painter.fillRect(glass.x() + column * kZoom, glass.y() + row * kZoom, kZoom, kZoom,
                       desktop_.valid(pixel) ? desktop_.pixelColor(pixel) : QColor(Qt::black));
    }
  }
  const int inset = kGlassPixels / 2 * kZoom;
  const QRect taken(glass.x() + inset, glass.y() + inset, kZoom - 1, kZoom - 1);
  painter.setPen(Qt::black);
  painter.drawRect(taken.adjusted(-1, -1, 1, 1));
  painter.setPen(Qt::white);
  painter.drawRect(taken);

  const QColor color(CapturedColor_ & 0xFF, CapturedColor_ >> 8 & 0xFF, CapturedColor_ >> 16);
  const QRect label(glass.x(), glass.y() + kGlassSide, kGlassSide, kLabelHeight);
  painter.fillRect(label, Qt::black);
  painter.fillRect(label.adjusted(5, 5, -(kGlassSide - kLabelHeight), -5), color);
  painter.setPen(Qt::white);
  QFont font = painter.font();
  font.setPixelSize(kLabelHeight / 2);
  painter.setFont(font);
  painter.drawText(label.adjusted(kLabelHeight + 8, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                   color.name().toUpper());
  painter.setPen(Qt::black);
  painter.drawRect(glass.adjusted(-1, -1, 0, 0));
  painter.setPen(Qt::white);
  painter.drawRect(glass.adjusted(-2, -2, 1, 1));
}

}  // namespace kv
