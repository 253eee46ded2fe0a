#include "shell/time_strip.h"

#include <QPainter>

namespace kv {
namespace {

constexpr int kFontPixels = 11;
// Eleven digits and points must fit between two print positions, 64 pixels apart.
constexpr int kFontStretch = 85;

}  // namespace

TimeStrip::TimeStrip(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  QFont font = this->font();
  font.setPixelSize(kFontPixels);
  font.setStretch(kFontStretch);
  setFont(font);
}

void TimeStrip::Cls() {
  if (lines_.empty()) return;
  lines_.clear();
  update();
}

void TimeStrip::Print(int x, const QString& text) {
  lines_.push_back({x, text});
  update();
}

void TimeStrip::SetColors(const QColor& back, const QColor& text) {
  back_ = back;
  ink_ = text;
  update();
}

void TimeStrip::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), back_);
  painter.setPen(ink_);
  for (const Line& line : lines_) {
    painter.drawText(rect().adjusted(line.x, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, line.text);
  }
}

}  // namespace kv
