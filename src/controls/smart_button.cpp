#include "controls/smart_button.h"

#include "controls/accessible_qt.h"
#include "controls/color_qt.h"
#include "controls/svg_face_qt.h"

#include <QMouseEvent>
#include <QPainter>

namespace kv {
namespace {

constexpr QSize kButtonSize(32, 30);
constexpr int kFaceSize = 22;
constexpr double kCorner = 5.0;
constexpr double kHoverShade = 0.12;
constexpr double kPressShade = 0.26;
constexpr double kDisabledFade = 0.62;

}  // namespace

SmartButton::SmartButton(QWidget* parent) : QAbstractButton(parent) {
  InstallControlsAccessibility();
  setFocusPolicy(Qt::NoFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  back_ = palette().button().color();
  ink_ = palette().buttonText().color();
}

void SmartButton::SetFace(const QString& file) {
  if (file == file_) return;
  file_ = file;
  face_ = QPixmap();
  update();
}

void SmartButton::SetColors(const QColor& back, const QColor& ink) {
  back_ = back;
  ink_ = ink;
  face_ = QPixmap();
  update();
}

void SmartButton::SetLabel(const QString& label) {
  setToolTip(label);
  setAccessibleName(label);
}

void SmartButton::SetState(const QString& text, bool on) {
  if (text == state_text_ && on == state_on_) return;
  state_text_ = text;
  const bool turned = on != state_on_;
  state_on_ = on;
  AnnounceChange(*this, QAccessible::DescriptionChanged);
  if (!turned || !QAccessible::isActive()) return;
  QAccessible::State changed;
  changed.checked = true;
  QAccessibleStateChangeEvent event(this, changed);
  QAccessible::updateAccessibility(&event);
}

QSize SmartButton::sizeHint() const {
  return kButtonSize;
}

void SmartButton::RenderFacePixmap(double scale) {
  if (!face_.isNull() && qFuzzyCompare(face_.devicePixelRatio(), scale)) return;
  const QColor ink = isEnabled() ? ink_ : Blend(ink_, back_, kDisabledFade);
  face_ = RenderFace(file_, ink, QSize(kFaceSize, kFaceSize), scale);
}

void SmartButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rect(), back_);
  const QRectF ground = QRectF(rect()).adjusted(1.0, 1.0, -1.0, -1.0);
  const bool pressed = isDown();
  if (isEnabled() && (hover_ || pressed || hasFocus())) {
    painter.setPen(hasFocus() ? QPen(ink_, 1.0) : QPen(Qt::NoPen));
    painter.setBrush(Blend(back_, ink_, pressed ? kPressShade : kHoverShade));
    painter.drawRoundedRect(ground, kCorner, kCorner);
  }
  if (face_enabled_ != isEnabled()) {
    face_enabled_ = isEnabled();
    face_ = QPixmap();
  }
  RenderFacePixmap(devicePixelRatioF());
  const int drop = pressed ? 1 : 0;
  painter.drawPixmap(QPoint((width() - kFaceSize) / 2, (height() - kFaceSize) / 2 + drop), face_);
}

void SmartButton::enterEvent(QEnterEvent* event) {
  hover_ = true;
  update();
  QAbstractButton::enterEvent(event);
}

void SmartButton::leaveEvent(QEvent* event) {
  hover_ = false;
  update();
  QAbstractButton::leaveEvent(event);
}

void SmartButton::mouseDoubleClickEvent(QMouseEvent* event) {
  // The toolkit takes the second press for another click; here it is an event of its own.
  if (event->button() == Qt::LeftButton && on_double_click) on_double_click();
  event->accept();
}

}  // namespace kv
