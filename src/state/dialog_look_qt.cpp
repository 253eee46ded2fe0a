#include "state/dialog_look_qt.h"

#include "controls/color_qt.h"
#include "state/color_slots.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

#include <algorithm>

namespace kv {
namespace {

constexpr double kReadable = 4.5;  // contrast of texts, WCAG 2 level AA
constexpr double kVisible = 3.0;   // and of what is no text
constexpr double kLine = 0.30;     // shares of the text's colour in the ground's
constexpr double kEdge = 0.55;
constexpr double kHover = 0.10;
constexpr double kPressed = 0.20;
constexpr double kFaded = 0.55;
constexpr double kRadius = 4.0;
constexpr int kRowGap = 6;  // between the texts of two rows
constexpr int kComboInset = 5;

QColor BlackOrWhite(const QColor& ground) {
  const QColor black(Qt::black);
  const QColor white(Qt::white);
  return ContrastRatio(black, ground) > ContrastRatio(white, ground) ? black : white;
}

QColor On(const QColor& ground, const QColor& wanted, double contrast) {
  return ContrastRatio(wanted, ground) >= contrast ? wanted : BlackOrWhite(ground);
}

// The line around something that can be used must be seen.
QColor Edge(const QColor& ground, const QColor& text) {
  const QColor edge = Blend(ground, text, kEdge);
  return ContrastRatio(edge, ground) >= kVisible ? edge : Blend(ground, text, 0.75);
}

bool Has(const QStyleOption& option, QStyle::StateFlag flag) {
  return option.state.testFlag(flag);
}

// Has the focus, and the user works with the keyboard.
bool HasKeys(const QStyleOption& option) {
  return Has(option, QStyle::State_HasFocus) && Has(option, QStyle::State_KeyboardFocusChange);
}

// A rectangle whose outline of `width` falls on whole pixels.
QRectF Inner(const QRect& rect, double width) {
  return QRectF(rect).adjusted(width / 2, width / 2, -width / 2, -width / 2);
}

struct Ink {
  QColor fill;
  QColor edge;
  double width = 1.0;
};

void DrawBox(QPainter& painter, const QRect& rect, const Ink& ink, double radius) {
  painter.setPen(QPen(ink.edge, ink.width));
  painter.setBrush(ink.fill.isValid() ? QBrush(ink.fill) : QBrush(Qt::NoBrush));
  painter.drawRoundedRect(Inner(rect, ink.width), radius, radius);
}

Ink InkOfIndicator(const QStyleOption& option, bool on) {
  const QPalette& palette = option.palette;
  const QColor base = palette.color(QPalette::Base);
  const QColor accent = palette.color(QPalette::BrightText);
  Ink ink{on ? accent : base,
          on ? accent : Edge(base, palette.color(QPalette::Active, QPalette::Text))};
  if (Has(option, QStyle::State_MouseOver)) ink.edge = on ? ink.edge : accent;
  if (Has(option, QStyle::State_Sunken)) ink.fill = Blend(ink.fill, accent, kPressed);
  if (!Has(option, QStyle::State_Enabled)) {
    const QColor window = palette.color(QPalette::Window);
    ink.fill = Blend(ink.fill, window, kFaded);
    ink.edge = Blend(ink.edge, window, kFaded);
  }
  return ink;
}

void DrawCheck(const QStyleOption& option, QPainter& painter) {
  const bool on = Has(option, QStyle::State_On) || Has(option, QStyle::State_NoChange);
  const Ink ink = InkOfIndicator(option, on);
  const int side = std::min(option.rect.width(), option.rect.height());
  const QRect box =
      QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, QSize(side, side), option.rect);
  DrawBox(painter, box, ink, side * 0.2);
  if (!on) return;
  QPen pen(BlackOrWhite(ink.fill), side * 0.13);
  pen.setCapStyle(Qt::RoundCap);
  pen.setJoinStyle(Qt::RoundJoin);
  painter.setPen(pen);
  const auto at = [&box, side](double x, double y) {
    return QPointF(box.x() + side * x, box.y() + side * y);
  };
  QPainterPath tick(at(0.25, 0.53));
  tick.lineTo(at(0.43, 0.71));
  tick.lineTo(at(0.76, 0.31));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(tick);
}

void DrawRadio(const QStyleOption& option, QPainter& painter) {
  const bool on = Has(option, QStyle::State_On);
  const Ink ink = InkOfIndicator(option, on);
  const int side = std::min(option.rect.width(), option.rect.height());
  painter.setPen(QPen(ink.edge, ink.width));
  painter.setBrush(ink.fill);
  const QRectF ring = Inner(QRect(option.rect.topLeft(), QSize(side, side)), ink.width);
  painter.drawEllipse(ring);
  if (!on) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(BlackOrWhite(ink.fill));
  painter.drawEllipse(ring.center(), side * 0.2, side * 0.2);
}

Ink InkOfButton(const QStyleOption& option, bool first) {
  const QPalette& palette = option.palette;
  const QColor text = palette.color(QPalette::ButtonText);
  Ink ink{palette.color(QPalette::Button), {}};
  ink.edge = first ? palette.color(QPalette::Highlight) : Edge(ink.fill, text);
  if (Has(option, QStyle::State_MouseOver)) ink.fill = Blend(ink.fill, text, kHover);
  if (Has(option, QStyle::State_Sunken)) ink.fill = Blend(ink.fill, text, kPressed);
  if (!Has(option, QStyle::State_Enabled)) {
    ink.edge = Blend(ink.edge, palette.color(QPalette::Window), kFaded);
  }
  if (HasKeys(option))
    ink = {Blend(ink.fill, text, kHover), palette.color(QPalette::BrightText), 2};
  return ink;
}

void DrawFocus(const QStyleOption& option, QPainter& painter) {
  if (!Has(option, QStyle::State_KeyboardFocusChange)) return;
  DrawBox(painter, option.rect, {{}, option.palette.color(QPalette::BrightText), 2.0},
          kRadius - 1.0);
}

QColor LineColor(const QStyleOption& option) {
  return Blend(option.palette.color(QPalette::Window), option.palette.color(QPalette::WindowText),
               kLine);
}

void DrawTab(const QStyleOption& option, QPainter& painter) {
  const QColor window = option.palette.color(QPalette::Window);
  const QColor text = option.palette.color(QPalette::WindowText);
  const QRect& rect = option.rect;
  constexpr int kMarkHeight = 3;
  const bool selected = Has(option, QStyle::State_Selected);
  if (selected || Has(option, QStyle::State_MouseOver)) {
    painter.fillRect(rect, Blend(window, text, selected ? kHover : kHover / 2));
  }
  painter.fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), LineColor(option));
  if (selected) {
    painter.fillRect(QRect(rect.left(), rect.bottom() - kMarkHeight + 1, rect.width(), kMarkHeight),
                     option.palette.color(QPalette::Highlight));
  }
}

void DrawCombo(const QStyleOptionComboBox& option, QPainter& painter) {
  DrawBox(painter, option.rect, InkOfButton(option, false), kRadius);
  const double side = option.fontMetrics.height() * 0.22;
  const QPointF middle(option.direction == Qt::RightToLeft ? option.rect.left() + 3 * side
                                                           : option.rect.right() - 3 * side,
                       option.rect.center().y() + 0.5);
  QPainterPath arrow(middle + QPointF(-side, -side / 2));
  arrow.lineTo(middle + QPointF(0, side / 2));
  arrow.lineTo(middle + QPointF(side, -side / 2));
  painter.setPen(QPen(option.palette.color(QPalette::ButtonText), 1.5));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(arrow);
}

void DrawArrow(QPainter& painter, const QRect& rect, bool horizontal, bool back) {
  const double side = std::min(rect.width(), rect.height()) * 0.18;
  const double way = back ? -side : side;
  const QPointF middle = QRectF(rect).center();
  const auto at = [&](double along, double across) {
    return middle + (horizontal ? QPointF(along, across) : QPointF(across, along));
  };
  QPainterPath arrow(at(-way / 2, -side));
  arrow.lineTo(at(way / 2, 0));
  arrow.lineTo(at(-way / 2, side));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(arrow);
}

// The knob must be seen in every scheme, which shades of the ground are not.
void DrawScrollBar(const QStyle& style, const QStyleOptionSlider& option, QPainter& painter,
                   const QWidget* widget) {
  const bool horizontal = option.orientation == Qt::Horizontal;
  const QColor ground = option.palette.color(QPalette::Base);
  const QColor text = option.palette.color(QPalette::Text);
  painter.fillRect(option.rect, Blend(ground, text, kHover / 2));
  const auto part = [&](QStyle::SubControl which) {
    return style.subControlRect(QStyle::CC_ScrollBar, &option, which, widget);
  };
  constexpr int kAside = 3;
  const QRectF knob = QRectF(part(QStyle::SC_ScrollBarSlider))
                          .adjusted(horizontal ? 0 : kAside, horizontal ? kAside : 0,
                                    horizontal ? 0 : -kAside, horizontal ? -kAside : 0);
  const bool active = option.activeSubControls.testFlag(QStyle::SC_ScrollBarSlider) &&
                      (Has(option, QStyle::State_MouseOver) || Has(option, QStyle::State_Sunken));
  const QColor edge = Edge(ground, text);
  painter.setPen(Qt::NoPen);
  painter.setBrush(active ? Blend(edge, text, 0.5) : edge);
  painter.drawRoundedRect(knob, kRadius, kRadius);
  painter.setPen(QPen(edge, 1.5));
  DrawArrow(painter, part(QStyle::SC_ScrollBarSubLine), horizontal, true);
  DrawArrow(painter, part(QStyle::SC_ScrollBarAddLine), horizontal, false);
}

class Painting {
 public:
  explicit Painting(QPainter& painter) : painter_(painter) {
    painter_.save();
    painter_.setRenderHint(QPainter::Antialiasing);
  }
  Painting(const Painting&) = delete;
  Painting& operator=(const Painting&) = delete;
  ~Painting() { painter_.restore(); }

 private:
  QPainter& painter_;
};

}  // namespace

QPalette DialogPalette(const ColorTable& colors, const QPalette& theme) {
  const auto slot = [&](ColorSlot which) { return ToQColor(ColorOf(colors, which), theme); };
  const QColor window = slot(ColorSlot::kGeneralBack);
  const QColor text = On(window, slot(ColorSlot::kGeneralText), kReadable);
  const QColor button = slot(ColorSlot::kButtonBack);
  const QColor base = slot(ColorSlot::kPlaylistBack);
  // What marks, ticks and frames must be seen on all three grounds.
  QColor accent = slot(ColorSlot::kMenuHighlightBorder);
  if (ContrastRatio(accent, window) < kVisible || ContrastRatio(accent, base) < kVisible) {
    accent = text;
  }

  QPalette palette(button, window);
  palette.setColor(QPalette::WindowText, text);
  palette.setColor(QPalette::ButtonText, On(button, text, kReadable));
  palette.setColor(QPalette::Base, base);
  palette.setColor(QPalette::AlternateBase, Blend(base, text, kHover / 2));
  palette.setColor(QPalette::Text, On(base, slot(ColorSlot::kPlaylistText), kReadable));
  palette.setColor(QPalette::Highlight, accent);
  palette.setColor(QPalette::HighlightedText, BlackOrWhite(accent));
  palette.setColor(QPalette::BrightText, accent);
  palette.setColor(QPalette::PlaceholderText, Blend(palette.color(QPalette::Text), base, 0.35));
  palette.setColor(QPalette::ToolTipBase, slot(ColorSlot::kMenuBack));
  palette.setColor(QPalette::ToolTipText,
                   On(slot(ColorSlot::kMenuBack), slot(ColorSlot::kMenuText), kReadable));
  palette.setColor(QPalette::Link, On(window, slot(ColorSlot::kPlaylistPlaying), kReadable));
  palette.setColor(QPalette::LinkVisited, palette.color(QPalette::Link));
  const struct {
    QPalette::ColorRole role;
    QColor ground;
  } faded[] = {
      {QPalette::WindowText, window}, {QPalette::ButtonText, button}, {QPalette::Text, base}};
  for (const auto& [role, ground] : faded) {
    palette.setColor(QPalette::Disabled, role, Blend(palette.color(role), ground, 0.5));
  }
  return palette;
}

QPalette ListPalette(const ColorTable& colors, const QPalette& theme) {
  QPalette palette = DialogPalette(colors, theme);
  const QColor back = ToQColor(ColorOf(colors, ColorSlot::kMenuHighlight), theme);
  const QColor text = ToQColor(ColorOf(colors, ColorSlot::kMenuHighlightText), theme);
  palette.setColor(QPalette::Highlight, back);
  palette.setColor(QPalette::HighlightedText, On(back, text, kReadable));
  return palette;
}

DialogStyle::DialogStyle() : QProxyStyle(QStringLiteral("fusion")) {}

void DialogStyle::ApplyTo(QWidget& window) {
  window.setStyle(this);
  for (QWidget* const child : window.findChildren<QWidget*>()) child->setStyle(this);
}

void DialogStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                QPainter* painter, const QWidget* widget) const {
  const Painting painting(*painter);
  switch (element) {
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
      return DrawCheck(*option, *painter);
    case PE_IndicatorRadioButton:
      return DrawRadio(*option, *painter);
    case PE_PanelButtonCommand: {
      const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option);
      const bool first =
          button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton);
      return DrawBox(*painter, option->rect, InkOfButton(*option, first), kRadius);
    }
    case PE_FrameDefaultButton:
      return;
    case PE_FrameFocusRect:
      return DrawFocus(*option, *painter);
    case PE_FrameTabWidget:
      return;
    case PE_FrameTabBarBase:
      return painter->fillRect(
          QRect(option->rect.left(), option->rect.bottom(), option->rect.width(), 1),
          LineColor(*option));
    case PE_Frame:
      return DrawBox(*painter, option->rect, {{}, LineColor(*option)}, 1.0);
    default:
      QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void DialogStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
  if (element == CE_TabBarTabShape) {
    DrawTab(*option, *painter);
  } else {
    QProxyStyle::drawControl(element, option, painter, widget);
  }
}

void DialogStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                     QPainter* painter, const QWidget* widget) const {
  const auto* const combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
  const auto* const slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control == CC_ComboBox && combo != nullptr && !combo->editable) {
    const Painting painting(*painter);
    DrawCombo(*combo, *painter);
  } else if (control == CC_ScrollBar && slider != nullptr) {
    const Painting painting(*painter);
    DrawScrollBar(*this, *slider, *painter, widget);
  } else {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
  }
}

QRect DialogStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                  SubControl part, const QWidget* widget) const {
  const QRect rect = QProxyStyle::subControlRect(control, option, part, widget);
  const bool text = control == CC_ComboBox && part == SC_ComboBoxEditField;
  const bool to_left = option->direction == Qt::RightToLeft;
  return text ? rect.adjusted(to_left ? 0 : kComboInset, 0, to_left ? -kComboInset : 0, 0) : rect;
}

int DialogStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                             const QWidget* widget) const {
  constexpr int kSmallest = 16;
  switch (metric) {
    // The marks grow with the text that they stand at.
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight: {
      const int text = widget != nullptr   ? widget->fontMetrics().height()
                       : option != nullptr ? option->fontMetrics.height()
                                           : 0;
      return std::max(kSmallest, text * 9 / 10);
    }
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
      return 8;
    case PM_TabBarTabHSpace:
      return 28;
    case PM_TabBarTabVSpace:
      return 16;
    case PM_TabBarBaseOverlap:
    case PM_TabBarTabShiftVertical:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
      return 0;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

// The buttons of boxes bear words alone, as all others do.
int DialogStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* more) const {
  return hint == SH_DialogButtonBox_ButtonsHaveIcons
             ? 0
             : QProxyStyle::styleHint(hint, option, widget, more);
}

QSize DialogStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                    const QSize& size, const QWidget* widget) const {
  QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
  if (type == CT_PushButton || type == CT_ComboBox) {
    const int text = option->fontMetrics.height();
    result = result.expandedTo(QSize(0, text + 14)) + QSize(text / 2 + kComboInset, 0);
  }
  if (type == CT_ItemViewItem) result += QSize(0, kRowGap);
  return result;
}

}  // namespace kv
