#include "controls/scroller_art_qt.h"

#include "controls/color_qt.h"
#include "controls/scroller_model.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <algorithm>
#include <optional>

namespace kv {

namespace {

const QColor kBlack(0, 0, 0);
const QColor kWhite(255, 255, 255);

bool IsDark(const QColor& color) {
  return ContrastRatio(color, kWhite) > ContrastRatio(color, kBlack);
}

// A line of the model as a rectangle `thickness` device pixels wide, centred on the line.
QRect LineRect(const std::optional<ScrollerLine>& line, double scale, int thickness) {
  if (!line) return {};
  const double half = thickness / 2.0;
  const bool vertical = line->x1 == line->x2 && line->y1 != line->y2;
  const double x1 = std::min(line->x1, line->x2) * scale - (vertical ? half : 0);
  const double y1 = std::min(line->y1, line->y2) * scale - (vertical ? 0 : half);
  const int left = qRound(x1);
  const int top = qRound(y1);
  if (vertical) return {left, top, thickness, qRound(std::max(line->y1, line->y2) * scale) - top};
  return {left, top, qRound(std::max(line->x1, line->x2) * scale) - left, thickness};
}

// The faces of a knob from its base colour; the light always comes from above.
struct KnobColors {
  QColor top;
  QColor bottom;
  QColor border;
  QColor gloss;
  QColor grip_dark;
  QColor grip_light;
};

KnobColors ColorsOfKnob(const ScrollerLook& look) {
  QColor base = look.knob;
  if (!base.isValid()) base = Blend(look.back, kWhite, IsDark(look.back) ? 0.42 : 0.55);
  if (look.enabled && look.hover && !look.pressed) base = Blend(base, kWhite, 0.20);
  if (look.pressed) base = Blend(base, kBlack, 0.10);
  KnobColors colors;
  colors.top = Blend(base, kWhite, 0.28);
  colors.bottom = Blend(base, kBlack, 0.22);
  if (look.pressed) std::swap(colors.top, colors.bottom);
  colors.border = Blend(base, kBlack, 0.62);
  colors.gloss = Blend(base, kWhite, look.pressed ? 0.18 : 0.60);
  colors.grip_dark = Blend(base, kBlack, 0.58);
  colors.grip_light = Blend(base, kWhite, 0.50);
  if (!look.enabled) {
    for (QColor* color : {&colors.top, &colors.bottom, &colors.border, &colors.gloss,
                          &colors.grip_dark, &colors.grip_light}) {
      *color = Blend(*color, look.back, 0.62);
    }
  }
  return colors;
}

void PaintBuiltInKnob(QPainter& painter, const QRect& knob, const ScrollerLook& look,
                      double scale) {
  const KnobColors colors = ColorsOfKnob(look);
  const int hair = std::max(1, qRound(scale));
  const double radius = 2.5 * scale;

  QPainterPath outline;
  outline.addRoundedRect(knob, radius, radius);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool ring = look.keyboard_focus && look.enabled;
  painter.fillPath(outline, ring ? look.focus : colors.border);
  const int rim = ring ? 2 * hair : hair;
  const QRect face = knob.adjusted(rim, rim, -rim, -rim);
  QPainterPath body;
  const double inner = std::max(0.0, radius - rim);
  body.addRoundedRect(face, inner, inner);
  QLinearGradient shade(face.left(), face.top(), face.left(), face.top() + face.height());
  shade.setColorAt(0, colors.top);
  shade.setColorAt(1, colors.bottom);
  painter.fillPath(body, shade);
  painter.setRenderHint(QPainter::Antialiasing, false);

  // The lit edge, and three grip lines across the travel; the middle one marks the value.
  painter.fillRect(face.left() + hair, face.top(), face.width() - 2 * hair, hair, colors.gloss);
  const int step = 2 * hair;
  for (int i = -1; i <= 1; ++i) {
    if (look.vertical) {
      const int length = i == 0 ? face.width() - 4 * hair : face.width() / 2;
      const int x = face.left() + (face.width() - length) / 2;
      const int y = face.top() + (face.height() - hair) / 2 + i * step;
      painter.fillRect(x, y, length, hair, i == 0 ? colors.grip_dark : colors.grip_light);
    } else {
      const int length = i == 0 ? face.height() - 4 * hair : face.height() / 2;
      const int x = face.left() + (face.width() - hair) / 2 + i * step;
      const int y = face.top() + (face.height() - length) / 2;
      painter.fillRect(x, y, hair, length, i == 0 ? colors.grip_dark : colors.grip_light);
    }
  }
}

void PaintCustomKnob(QPainter& painter, const QRect& knob, const ScrollerLook& look, double scale) {
  if (look.knob.isValid()) painter.fillRect(knob, look.knob);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.setOpacity(look.enabled ? 1.0 : 0.45);
  painter.drawPixmap(knob, look.custom_knob, look.custom_knob.rect());
  painter.setOpacity(1.0);
  if (look.keyboard_focus && look.enabled) {
    const int hair = std::max(1, qRound(scale));
    QPen pen(look.focus, hair);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setPen(pen);
    painter.drawRect(QRectF(knob).adjusted(hair / 2.0, hair / 2.0, -hair / 2.0, -hair / 2.0));
  }
}

// The lines are cut into the surface: shaded towards the light, lit on the other side.
void PaintGrooveEdges(QPainter& painter, const QRect& line, const ScrollerLook& look, QPoint step) {
  if (line.isEmpty()) return;
  painter.fillRect(line.translated(-step), Blend(look.back, kBlack, 0.35));
  painter.fillRect(line.translated(step), Blend(look.back, kWhite, IsDark(look.back) ? 0.12 : 0.7));
}

}  // namespace

ScrollerScene LayOutScroller(const ScrollerModel& model, double scale) {
  const int hair = std::max(1, qRound(scale));
  const ScrollerLines lines = model.Lines();
  ScrollerScene scene;
  scene.control =
      QRect(0, 0, qRound(model.ScaleWidth() * scale), qRound(model.ScaleHeight() * scale));
  scene.knob = QRect(qRound(model.KnobLeft() * scale), qRound(model.KnobTop() * scale),
                     qRound(model.Knob().width * scale), qRound(model.Knob().height * scale));
  scene.axis = LineRect(lines.axis, scale, hair) & scene.control;
  scene.center = LineRect(lines.center, scale, hair) & scene.control;
  scene.range = LineRect(lines.range, scale, 3 * hair) & scene.control;
  if (lines.knob_range) {
    ScrollerLine line = *lines.knob_range;
    line.x1 += model.KnobLeft();
    line.x2 += model.KnobLeft();
    line.y1 += model.KnobTop();
    line.y2 += model.KnobTop();
    scene.knob_range = LineRect(line, scale, hair) & scene.knob;
  }
  return scene;
}

void PaintScroller(QPainter& painter, const ScrollerScene& scene, const ScrollerLook& look,
                   double scale) {
  const int hair = std::max(1, qRound(scale));
  painter.fillRect(scene.control, look.back);
  if (!look.picture.isNull()) {
    const QSizeF size = look.picture.deviceIndependentSize() * scale;
    painter.drawPixmap(QRectF(QPointF(0, 0), size), look.picture, QRectF(look.picture.rect()));
  }
  const double fade = look.enabled ? 0.0 : 0.6;
  const QColor center_line = Blend(look.center_line, look.back, fade);
  const QColor range = Blend(look.range, look.back, fade);
  PaintGrooveEdges(painter, scene.axis, look, {hair, 0});
  PaintGrooveEdges(painter, scene.center, look, {0, hair});
  painter.fillRect(scene.axis, center_line);
  painter.fillRect(scene.center, center_line);
  painter.fillRect(scene.range, range);
  if (look.custom_knob.isNull()) {
    PaintBuiltInKnob(painter, scene.knob, look, scale);
  } else {
    PaintCustomKnob(painter, scene.knob, look, scale);
  }
  painter.fillRect(scene.knob_range, range);
}

}  // namespace kv
