// How the player's dialogs look: a palette made from the colours of the settings, and a style that
// draws the same quiet controls on every desktop.
//
// Interface thread only.
#pragma once

#include "state/color_file.h"

#include <QPalette>
#include <QProxyStyle>
#include <QWidget>

namespace kv {

// For a window and all that is in it. A colour that cannot be read on its ground gives way to black
// or white, so that no scheme locks the user out of the dialogs. What is ticked or has
// the focus takes the role BrightText. `theme` is the desktop's, for system colours.
QPalette DialogPalette(const ColorTable& colors, const QPalette& theme);

// The same for a list of rows of which some are chosen.
QPalette ListPalette(const ColorTable& colors, const QPalette& theme);

class DialogStyle : public QProxyStyle {
  Q_OBJECT

 public:
  DialogStyle();

  // Gives this style to `window` and all that is in it by now; it must outlive them.
  void ApplyTo(QWidget& window);

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* more) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                         const QWidget* widget) const override;
};

}  // namespace kv
