#include "shell/time_strip.h"

#include <QPainter>

#include <algorithm>

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
  raw_font_ = QRawFont::fromFont(font);
}

void TimeStrip::Cls() {
  if (lines_.empty()) return;
  lines_.clear();
  pace_.Wanted();
}

void TimeStrip::Print(int x, const QString& text) {
  lines_.push_back({x, text, Glyphs(text)});
  pace_.Wanted();
}

QString TimeStrip::Text() const {
  QStringList texts;
  for (const Line& line : lines_) texts.push_back(line.text.trimmed());
  return texts.join(QLatin1Char(' '));
}

// Times change 33 times a second. Their characters stand side by side in any order, so the work of
// a text layout, which is most of what printing costs, can be left out.
QGlyphRun TimeStrip::Glyphs(const QString& text) const {
  QGlyphRun run;
  const bool plain = std::all_of(text.begin(), text.end(), [](QChar c) { return c < QChar(0x7F); });
  if (!plain || !raw_font_.isValid()) return run;
  const QList<quint32> indexes = raw_font_.glyphIndexesForString(text);
  const QList<QPointF> advances = raw_font_.advancesForGlyphIndexes(indexes);
  if (indexes.contains(0) || advances.size() != indexes.size()) return run;
  QList<QPointF> positions;
  QPointF at;
  for (const QPointF& advance : advances) {
    positions.push_back(at);
    at += advance;
  }
  run.setRawFont(raw_font_);
  run.setGlyphIndexes(indexes);
  run.setPositions(positions);
  return run;
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
  const QFontMetrics metrics = fontMetrics();
  const int baseline = (height() - metrics.height()) / 2 + metrics.ascent();
  for (const Line& line : lines_) {
    if (!line.glyphs.isEmpty()) {
      painter.drawGlyphRun(QPointF(line.x, baseline), line.glyphs);
      continue;
    }
    painter.drawText(rect().adjusted(line.x, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, line.text);
  }
}

}  // namespace kv
