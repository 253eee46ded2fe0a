// A separator: a groove two pixels thick, drawn in two colours, horizontal or vertical by the shape
// of the control, which takes that thickness itself. Owned by its parent; interface thread only.
#pragma once

#include "controls/property_fields.h"
#include "controls/surface_events_qt.h"

#include <QColor>
#include <QWidget>

#include <array>
#include <cstdint>

namespace kv {

// All stored properties with their defaults.
struct Line3dProperties {
  bool Enabled = false;                                             // hears the mouse
  std::int32_t Color1 = 0x808080;                                   // of the upper or left line
  std::int32_t Color2 = 0xFFFFFF;                                   // of the lower or right line
  std::int32_t BackColor = static_cast<std::int32_t>(0x8000000FU);  // around a thicker groove

  friend bool operator==(const Line3dProperties&, const Line3dProperties&) = default;
};

using Line3dField = PropertyField<Line3dProperties>;
inline constexpr std::array kLine3dFields = {
    Line3dField{"Enabled", &Line3dProperties::Enabled},
    Line3dField{"Color1", &Line3dProperties::Color1, PropertyKind::kColor},
    Line3dField{"Color2", &Line3dProperties::Color2, PropertyKind::kColor},
    Line3dField{"BackColor", &Line3dProperties::BackColor, PropertyKind::kColor},
};

class line3d : public QWidget {
  Q_OBJECT

 public:
  explicit line3d(QWidget* parent = nullptr);

  // Takes over a whole record as it was stored.
  void LoadProperties(const Line3dProperties& properties);
  const Line3dProperties& Properties() const { return properties_; }

  // The upper or left line, and the lower or right one.
  void SetColors(const QColor& Color1, const QColor& Color2);

  // Heard only while the control is enabled.
  SurfaceEvents& Events() { return events_; }

  void Refresh() { update(); }
  void ReDraw() { update(); }

  QSize sizeHint() const override { return {kThickness, kThickness}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  static constexpr int kThickness = 2;  // 30 twips

  Line3dProperties properties_;
  SurfaceEvents events_;
};

}  // namespace kv
