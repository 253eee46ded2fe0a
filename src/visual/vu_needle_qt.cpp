// The needle instrument: a volume indicator with its two scales, a lamp for peaks, and a kestrel.
//
// The arc of the scale stands three quarters up the instrument's height, where a needle of 75 %
// ends.
#include "controls/color_qt.h"
#include "visual/vu_styles_qt.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QRadialGradient>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace kv {
namespace {

constexpr double kHalfSweep = 46.0 * std::numbers::pi / 180.0;  // from the middle to an end
constexpr double kHighestVu = 3.0;
constexpr double kArc = 0.76;     // of the height above the pivot, as all that follow
constexpr double kMark = 0.045;   // length of a long mark
constexpr double kHidden = 0.16;  // below the window's edge
constexpr double kCover = 0.27;
constexpr double kTop = 0.94;      // the window's upper edge, unless the numbers stand higher
constexpr double kAcross = 0.69;   // half of the instrument's width
constexpr double kReadable = 7.5;  // desktop pixels; smaller texts are left out

struct VuMark {
  double vu;
  const char* text;  // null: a short mark without a number
  bool always;       // also where there is little room
};
constexpr std::array kMarks = {
    VuMark{-20, "20", true},     VuMark{-10, "10", true},      VuMark{-7, "7", true},
    VuMark{-6, nullptr, false},  VuMark{-5, "5", true},        VuMark{-4, nullptr, false},
    VuMark{-3, "3", true},       VuMark{-2, "2", false},       VuMark{-1, "1", false},
    VuMark{0, "0", true},        VuMark{1, "1", false},        VuMark{2, "2", false},
    VuMark{3, "3", true},        VuMark{-0.5, nullptr, false}, VuMark{0.5, nullptr, false},
    VuMark{1.5, nullptr, false}, VuMark{2.5, nullptr, false},
};

// From above, wings spread: the left half, from the beak to the middle of the tail, as one start
// and curves of three points.
constexpr std::array kKestrel = {
    QPointF(0, -62),      QPointF(-4, -61.2),   QPointF(-7.2, -58.6),  QPointF(-8.2, -54.4),
    QPointF(-8.8, -51.6), QPointF(-9, -50),     QPointF(-11.4, -48.4), QPointF(-18, -45),
    QPointF(-27, -54),    QPointF(-40, -59),    QPointF(-70, -69),     QPointF(-112, -58),
    QPointF(-146, -26),   QPointF(-122, -32),   QPointF(-104, -30),    QPointF(-88, -27.5),
    QPointF(-72, -27),    QPointF(-58, -23),    QPointF(-47, -17.5),   QPointF(-35, -13),
    QPointF(-24, -6),     QPointF(-16.4, 5),    QPointF(-13.6, 10),    QPointF(-11.6, 15),
    QPointF(-10.4, 22),   QPointF(-17, 35),     QPointF(-24, 49),      QPointF(-31, 62),
    QPointF(-21, 68),     QPointF(-10.5, 70.6), QPointF(0, 70.8),
};

QPainterPath Kestrel() {
  QPainterPath left(kKestrel[0]);
  for (std::size_t i = 1; i + 2 < kKestrel.size(); i += 3)
    left.cubicTo(kKestrel[i], kKestrel[i + 1], kKestrel[i + 2]);
  left.closeSubpath();
  return left.united(QTransform::fromScale(-1, 1).map(left));
}

// The angle of a deflection, from the upright, to the right.
double Angle(double deflection) {
  return kHalfSweep * (2.0 * deflection / DeflectionOfVu(kHighestVu) - 1.0);
}

class VuNeedlePainter : public VuStylePainter {
 public:
  void SetLook(const VuLook& look) override {
    look_ = look;
    const double width = look.size.width();
    const double height = look.size.height();
    margin_ = std::max(1.0, std::min(width, height) * 0.03);
    const double top = std::max(kTop, std::max(look.numbers_distance, look.needle_length) + 0.07);
    radius_ =
        std::min((width - 2 * margin_) / (2 * kAcross), (height - 2 * margin_) / (top - kHidden));
    radius_ = std::max(radius_, 1.0);
    const double box_height = radius_ * (top - kHidden);
    pivot_ = QPointF(width / 2, (height + box_height) / 2 + radius_ * kHidden);
    box_ = QRectF(width / 2 - radius_ * kAcross, (height - box_height) / 2, 2 * radius_ * kAcross,
                  box_height);
    small_ = radius_ < 110 * look.scale;
    tiny_ = radius_ < 60 * look.scale;
    DrawStill();
    tip_ = QPointF();
  }

  // A quarter of a pixel at the needle's end is not seen.
  bool Update(const VuMeter& meter) override {
    const double angle = Angle(meter.Needle().Deflection());
    const QPointF tip = At(angle, look_.needle_length);
    const bool lamp = meter.Needle().PeakLamp();
    const bool changed =
        lamp != lamp_ || std::abs(tip.x() - tip_.x()) > 0.25 || std::abs(tip.y() - tip_.y()) > 0.25;
    if (!changed) return false;
    tip_ = tip;
    angle_ = angle;
    lamp_ = lamp;
    return true;
  }

  void Paint(QPainter& painter) override {
    painter.drawImage(0, 0, still_);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    if (lamp_ && !tiny_) {
      painter.setBrush(look_.peak);
      painter.drawEllipse(LampCenter(), LampRadius(), LampRadius());
    }
    painter.setClipRect(box_);
    painter.setBrush(look_.fore);
    painter.drawPolygon(NeedlePolygon(angle_));
    painter.setClipping(false);
    DrawCover(painter);
    painter.setRenderHint(QPainter::Antialiasing, false);
  }

 private:
  QPointF At(double angle, double distance) const {
    return pivot_ + radius_ * distance * QPointF(std::sin(angle), -std::cos(angle));
  }

  QPointF LampCenter() const { return At(kHalfSweep * 0.80, 0.50); }
  double LampRadius() const { return radius_ * 0.022; }

  // Twice as broad at the cover as at its end.
  QPolygonF NeedlePolygon(double angle) const {
    const double half = std::max(0.55 * look_.scale, radius_ * 0.0042);
    const QPointF across(std::cos(angle), std::sin(angle));
    const QPointF foot = At(angle, kCover * 0.8);
    const QPointF tip = At(angle, look_.needle_length);
    return QPolygonF({foot - across * half * 2, tip - across * half, tip + across * half,
                      foot + across * half * 2});
  }

  void DrawCover(QPainter& painter) const {
    painter.setClipRect(box_);
    painter.setPen(QPen(Blend(look_.back, look_.lines, 0.45), std::max(1.0, look_.scale)));
    painter.setBrush(Blend(look_.back, look_.fore, 0.13));
    painter.drawEllipse(pivot_, radius_ * kCover, radius_ * kCover);
    painter.setClipping(false);
  }

  void DrawStill() {
    still_ = BlankPicture(look_);
    QPainter painter(&still_);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    DrawFace(painter);
    DrawScale(painter);
    if (!tiny_) {
      DrawNumbers(painter);
      DrawEmblem(painter);
    }
  }

  // As if lit from below.
  void DrawFace(QPainter& painter) const {
    QRadialGradient light(pivot_, radius_ * 1.15);
    light.setColorAt(0.0, Blend(look_.back, look_.fore, 0.17));
    light.setColorAt(1.0, Blend(look_.back, look_.fore, 0.03));
    painter.setPen(QPen(Blend(look_.back, look_.lines, 0.28), std::max(1.0, look_.scale)));
    painter.setBrush(light);
    const double round = radius_ * 0.035;
    const double half = std::max(1.0, look_.scale) / 2;
    painter.drawRoundedRect(box_.adjusted(half, half, -half, -half), round, round);
  }

  void DrawArc(QPainter& painter, double from, double to, const QColor& color, double width,
               double distance) const {
    const double r = radius_ * distance;
    const double to_sixteenths = 16.0 * 180.0 / std::numbers::pi;
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::FlatCap));
    painter.setBrush(Qt::NoBrush);
    painter.drawArc(QRectF(pivot_.x() - r, pivot_.y() - r, 2 * r, 2 * r),
                    qRound((std::numbers::pi / 2 - to) * to_sixteenths),
                    qRound((to - from) * to_sixteenths));
  }

  void DrawScale(QPainter& painter) const {
    const double thin = std::max(look_.scale, radius_ * 0.006);
    const double zero = Angle(1.0);
    DrawArc(painter, Angle(0.0), zero, look_.lines, thin, kArc);
    const double band = tiny_ ? 2 * thin : radius_ * 0.022;
    DrawArc(painter, zero, Angle(DeflectionOfVu(kHighestVu)), look_.peak, band,
            kArc + band / 2 / radius_ - thin / 2 / radius_);
    for (const VuMark& mark : kMarks) {
      const bool major = mark.text != nullptr;
      if (tiny_ ? !mark.always : small_ && !major) continue;
      const double angle = Angle(DeflectionOfVu(mark.vu));
      painter.setPen(QPen(mark.vu > 0 ? look_.peak : look_.marks, major ? thin : thin * 0.7,
                          Qt::SolidLine, Qt::FlatCap));
      painter.drawLine(At(angle, kArc), At(angle, kArc + (major ? kMark : kMark * 0.6)));
    }
    if (small_) return;
    // Percents of 0 VU, below the arc.
    for (int percent = 0; percent <= 100; percent += 5) {
      const bool major = percent % 20 == 0;
      const double angle = Angle(percent / 100.0);
      painter.setPen(QPen(Blend(look_.back, look_.marks, 0.6), thin * 0.6));
      painter.drawLine(At(angle, kArc), At(angle, kArc - (major ? 0.024 : 0.013)));
    }
  }

  void DrawText(QPainter& painter, const QString& text, double angle, double distance) const {
    const QFontMetricsF metrics(painter.font());
    const QPointF center = At(angle, distance);
    const double width = metrics.horizontalAdvance(text);
    painter.drawText(QPointF(center.x() - width / 2, center.y() + metrics.capHeight() / 2), text);
  }

  void DrawNumbers(QPainter& painter) const {
    const double points = look_.numbers_font.pointSizeF() / 8.25;
    const double size = std::max(radius_ * 0.060 * points, 7.0 * look_.scale);
    painter.setFont(FontOfPixels(look_.numbers_font, size));
    for (const VuMark& mark : kMarks) {
      if (mark.text == nullptr || (small_ && !mark.always)) continue;
      painter.setPen(mark.vu > 0 ? look_.peak : look_.numbers);
      DrawText(painter, QString::fromLatin1(mark.text), Angle(DeflectionOfVu(mark.vu)),
               look_.numbers_distance);
    }
    painter.setFont(FontOfPixels(look_.numbers_font, size * 1.25));
    painter.setPen(look_.numbers);
    const double below = kHalfSweep * 1.17;
    DrawText(painter, QString(QChar(0x2212)), -below, kArc);
    painter.setPen(look_.peak);
    DrawText(painter, QStringLiteral("+"), below, kArc);
    if (size * 0.66 < kReadable * look_.scale) return;
    painter.setFont(FontOfPixels(look_.numbers_font, size * 0.66));
    painter.setPen(Blend(look_.back, look_.numbers, 0.6));
    for (int percent = 0; percent <= 100; percent += 20)
      DrawText(painter, QString::number(percent), Angle(percent / 100.0), kArc - 0.058);
  }

  void DrawEmblem(QPainter& painter) const {
    const double points = look_.emblem_font.pointSizeF() / 8.25;
    painter.save();
    painter.translate(At(0.0, 0.54));
    const double wings = radius_ * 0.24 / 292.0;
    painter.scale(wings, wings);
    painter.fillPath(Kestrel(), Blend(look_.back, look_.emblem, 0.75));
    painter.restore();

    QFont font = FontOfPixels(look_.emblem_font, radius_ * 0.085 * points);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(look_.emblem);
    DrawText(painter, QStringLiteral("VU"), 0.0, 0.39);
    const double fine = radius_ * 0.036 * points;
    if (fine >= kReadable * look_.scale) {
      font = FontOfPixels(look_.emblem_font, fine);
      painter.setFont(font);
      painter.setPen(Blend(look_.back, look_.emblem, 0.7));
      DrawText(painter, QStringLiteral("Kestrelview"), 0.0, 0.32);
      painter.setPen(Blend(look_.back, look_.peak, 0.75));
      const QFontMetricsF metrics(font);
      const QString peak = QStringLiteral("PEAK");
      painter.drawText(LampCenter() + QPointF(-metrics.horizontalAdvance(peak) / 2,
                                              LampRadius() + metrics.ascent() * 1.15),
                       peak);
    }
    painter.setPen(QPen(Blend(look_.back, look_.peak, 0.6), std::max(1.0, look_.scale * 0.8)));
    painter.setBrush(Blend(look_.back, look_.peak, 0.2));
    painter.drawEllipse(LampCenter(), LampRadius(), LampRadius());
  }

  VuLook look_;
  double margin_ = 1.0;
  double radius_ = 1.0;
  QPointF pivot_;
  QRectF box_;
  bool small_ = false;
  bool tiny_ = false;
  QImage still_;
  QPointF tip_;
  double angle_ = -kHalfSweep;
  bool lamp_ = false;
};

}  // namespace

std::unique_ptr<VuStylePainter> MakeVuNeedlePainter() {
  return std::make_unique<VuNeedlePainter>();
}

}  // namespace kv
