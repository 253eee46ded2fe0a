// How `SmartMenu` is laid out and drawn: one look on every desktop, in colours that it is given.
//
// A column for pictures and check boxes, the caption, the accelerator set to the right, an arrow
// for submenus. Owned by the menu; interface thread only.
#pragma once

#include "controls/smart_menu.h"

#include <QProxyStyle>

namespace kv {

class SmartMenuStyle : public QProxyStyle {
  Q_OBJECT

 public:
  SmartMenuStyle();

  void SetColors(const SmartMenuColors& colors);

  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                         const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* result) const override;

 private:
  void DrawItem(const QStyleOptionMenuItem& item, QPainter& painter) const;
  void DrawScroller(const QStyleOptionMenuItem& item, QPainter& painter) const;

  SmartMenuColors colors_;
};

}  // namespace kv
