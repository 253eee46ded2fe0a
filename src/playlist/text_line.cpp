#include "playlist/text_line.h"

#include "controls/accessible_qt.h"
#include "playlist/text_line_accessible_qt.h"
#include "system/paths.h"
#include "system/shown_text.h"
#include "system/text_platform_qt.h"

#include <QPainter>

#include <cstddef>
#include <string_view>

namespace kv {
namespace {

constexpr std::size_t kLongest = 1000;  // characters
constexpr int kPathMargin = 5;

}  // namespace

TextLine::TextLine(Shorten how, QWidget* parent) : QWidget(parent), how_(how) {
  InstallTextLineAccessibility();
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void TextLine::SetText(const std::string& text) {
  if (text == text_) return;
  text_ = text;
  AnnounceChange(*this, QAccessible::NameChanged);
  update();
}

QString TextLine::Whole() const {
  return ToQString(ShownText(text_, kLongest));
}

QString TextLine::Shown() const {
  const QFontMetrics metrics = fontMetrics();
  if (how_ == Shorten::kEnd) {
    return metrics.elidedText(Whole(), Qt::ElideRight, width());
  }
  const MeasureText measure = [&metrics](std::string_view text) {
    return metrics.horizontalAdvance(ToQString(text));
  };
  return ToQString(ShownText(CompactPathForWidth(text_, measure, width() - kPathMargin), kLongest));
}

QSize TextLine::sizeHint() const {
  return {0, fontMetrics().height()};
}

void TextLine::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, Shown());
}

}  // namespace kv
