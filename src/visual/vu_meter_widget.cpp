#include "visual/vu_meter_widget.h"

#include "controls/color_qt.h"
#include "visual/meter_accessible_qt.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

#include <cmath>
#include <utility>

namespace kv {
namespace {

constexpr std::int16_t kLeft = 1;

std::int16_t ButtonMask(Qt::MouseButtons buttons) {
  int mask = 0;
  if (buttons.testFlag(Qt::LeftButton)) mask |= kLeft;
  if (buttons.testFlag(Qt::RightButton)) mask |= 2;
  if (buttons.testFlag(Qt::MiddleButton)) mask |= 4;
  return static_cast<std::int16_t>(mask);
}

std::int16_t ShiftMask(Qt::KeyboardModifiers modifiers) {
  int mask = 0;
  if (modifiers.testFlag(Qt::ShiftModifier)) mask |= 1;
  if (modifiers.testFlag(Qt::ControlModifier)) mask |= 2;
  if (modifiers.testFlag(Qt::AltModifier)) mask |= 4;
  return static_cast<std::int16_t>(mask);
}

QFont ToQFont(const MeterFont& font) {
  QFont result(QString::fromStdString(font.family));
  result.setPointSizeF(font.points > 0.0F ? font.points : MeterFont().points);
  return result;
}

}  // namespace

VuMeterWidget::VuMeterWidget(TimerSource& timers, std::unique_ptr<AudioCapture> capture,
                             const VuMeterProperties& properties, QWidget* parent)
    : QWidget(parent), capture_(std::move(capture)) {
  InstallMeterAccessibility();
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  meter_ =
      std::make_unique<VuMeter>(timers, *capture_, static_cast<VuMeterView&>(*this), properties);
  VuMeterWidget::PropertiesChanged();
}

VuMeterWidget::~VuMeterWidget() = default;

QSize VuMeterWidget::sizeHint() const {
  return {qRound(meter_->Properties().scalewidth), qRound(meter_->Properties().scaleheight)};
}

QSize VuMeterWidget::ScreenSize(double scale) const {
  return {qRound(width() * scale), qRound(height() * scale)};
}

float VuMeterWidget::SurfaceWidth() const {
  return static_cast<float>(ScreenSize(devicePixelRatioF()).width());
}

float VuMeterWidget::SurfaceHeight() const {
  return static_cast<float>(ScreenSize(devicePixelRatioF()).height());
}

void VuMeterWidget::PrepareSurface() {
  if (surface_asked_) return;
  surface_asked_ = true;
  const double scale = devicePixelRatioF();
  const QSize size = ScreenSize(scale);
  const bool other_size = surface_image_.size() != size;
  if (other_size) surface_image_ = QImage(size, QImage::Format_RGB32);
  if (other_size || meter_->AutoRedraw()) {
    surface_image_.fill(ToQColor(meter_->Properties().backcolor, palette()));
  }
  surface_.width = surface_image_.width();
  surface_.height = surface_image_.height();
  surface_.stride = static_cast<std::int32_t>(surface_image_.bytesPerLine());
  surface_.scale = static_cast<float>(scale);
  surface_.pixels =
      surface_image_.isNull() ? nullptr : reinterpret_cast<std::uint32_t*>(surface_image_.bits());
}

std::int32_t VuMeterWidget::SurfaceHandle1() {
  PrepareSurface();
  return SurfaceHandle1Of(&surface_);
}

std::int32_t VuMeterWidget::SurfaceHandle2() {
  PrepareSurface();
  return SurfaceHandle2Of(&surface_);
}

void VuMeterWidget::ShowFrame(bool Cancel) {
  const bool asked = std::exchange(surface_asked_, false);
  if (Cancel) {
    // Nobody paints: nothing of what was there stays.
    if (!asked) surface_image_ = QImage();
    if (asked || !surface_shown_) update();
    surface_shown_ = true;
    return;
  }
  const bool changed = style_ && !look_.size.isEmpty() && style_->Update(*meter_);
  if (changed || std::exchange(surface_shown_, false)) update();
  surface_image_ = QImage();
}

void VuMeterWidget::PropertiesChanged() {
  if (!meter_) return;  // its constructor reports too
  const VuMeterProperties& properties = meter_->Properties();
  setAcceptDrops(properties.oledropmode == 1);
  if (properties.vustyle != shown_style_) {
    shown_style_ = properties.vustyle;
    style_ = MakeVuStylePainter(static_cast<VuStyle>(shown_style_));
    look_ = VuLook();
  }
  updateGeometry();
  update();
}

VuLook VuMeterWidget::Look(double scale) const {
  const VuMeterProperties& properties = meter_->Properties();
  const auto color = [this](std::int32_t value) { return ToQColor(value, palette()); };
  VuLook look;
  look.back = color(properties.backcolor);
  look.fore = color(properties.forecolor);
  look.peak = color(properties.PeakColor);
  look.lines = color(properties.ScaleColor[0]);
  look.marks = color(properties.ScaleColor[1]);
  look.numbers = color(properties.ScaleColor[2]);
  look.emblem = color(properties.ScaleColor[3]);
  look.numbers_font = ToQFont(properties.scalanumbersfont);
  look.emblem_font = ToQFont(properties.emblemfont);
  look.needle_length = properties.needlelengthproc / 100.0;
  look.numbers_distance = properties.scalanumbersproc / 100.0;
  look.size = ScreenSize(scale);
  look.scale = scale;
  return look;
}

void VuMeterWidget::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QTransform device = painter.deviceTransform();
  const double scale = device.m11();
  if (surface_shown_) {
    if (surface_image_.isNull()) {
      painter.fillRect(rect(), ToQColor(meter_->Properties().backcolor, palette()));
    } else {
      painter.drawImage(QRectF(rect()), surface_image_);
    }
    return;
  }
  const VuLook look = Look(scale);
  if (look.size.isEmpty()) return;
  if (look != look_) {
    look_ = look;
    style_->SetLook(look);
    style_->Update(*meter_);
  }
  // At a fractional scale the control's corner need not fall on a pixel; the drawing does.
  painter.fillRect(rect(), look.back);
  painter.scale(1 / scale, 1 / scale);
  painter.translate(std::round(device.dx()) - device.dx(), std::round(device.dy()) - device.dy());
  style_->Paint(painter);
}

void VuMeterWidget::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  update();
}

void VuMeterWidget::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  update();
}

void VuMeterWidget::Raise(const VuMeterEvents::Mouse& handler, std::int16_t button,
                          QMouseEvent* event) {
  if (!handler) {
    // Who wants the release or the click must take the press.
    event->setAccepted(events_.Click || events_.MouseDown || events_.MouseUp);
    return;
  }
  const double scale = devicePixelRatioF();
  const auto call = handler;  // it may end this control's life
  call(button, ShiftMask(event->modifiers()), static_cast<float>(event->position().x() * scale),
       static_cast<float>(event->position().y() * scale));
}

void VuMeterWidget::mousePressEvent(QMouseEvent* event) {
  left_down_ = event->button() == Qt::LeftButton;
  Raise(events_.MouseDown, ButtonMask(event->button()), event);
}

void VuMeterWidget::mouseMoveEvent(QMouseEvent* event) {
  Raise(events_.MouseMove, ButtonMask(event->buttons()), event);
}

void VuMeterWidget::mouseReleaseEvent(QMouseEvent* event) {
  const bool click = event->button() == Qt::LeftButton && std::exchange(left_down_, false) &&
                     rect().contains(event->position().toPoint());
  const QPointer<VuMeterWidget> alive(this);
  Raise(events_.MouseUp, ButtonMask(event->button()), event);
  if (!alive || !click || !events_.Click) return;
  const auto call = events_.Click;
  call();
}

void VuMeterWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  left_down_ = false;
  if (!events_.DblClick || event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  const auto call = events_.DblClick;
  call();
}

void VuMeterWidget::dragEnterEvent(QDragEnterEvent* event) {
  event->setAccepted(static_cast<bool>(events_.OLEDragDrop));
  if (events_.OLEDragDrop) event->acceptProposedAction();
}

void VuMeterWidget::dropEvent(QDropEvent* event) {
  if (!events_.OLEDragDrop) return;
  const auto call = events_.OLEDragDrop;
  call(*event);
}

}  // namespace kv
