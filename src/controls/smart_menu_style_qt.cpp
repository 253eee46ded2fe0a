#include "controls/smart_menu_style_qt.h"

#include "controls/color_qt.h"
#include "controls/smart_menu_accessible_qt.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOptionMenuItem>

#include <algorithm>

namespace kv {
namespace {

// Device-independent pixels.
constexpr int kIconSize = 16;
constexpr int kIconColumn = 28;
constexpr int kCaptionGap = 24;  // between caption and accelerator
constexpr int kArrowColumn = 20;
constexpr int kRowPadding = 4;  // above and below the text
constexpr int kSeparatorHeight = 7;
constexpr int kSeparatorInset = 4;
constexpr int kScrollerHeight = 16;
constexpr int kFrameWidth = 2;
constexpr double kMarkSize = 13.0;
constexpr double kCorner = 2.5;

constexpr double kDisabledFade = 0.45;
constexpr double kQuietInk = 0.5;  // boxes that are not checked

// A scheme of one colour must still leave a menu to be read and to be put right with.
constexpr double kReadable = 1.5;
QColor ReadableOn(const QColor& ground, const QColor& ink) {
  if (ContrastRatio(ink, ground) >= kReadable) return ink;
  const QColor white(255, 255, 255);
  const QColor black(0, 0, 0);
  return ContrastRatio(white, ground) > ContrastRatio(black, ground) ? white : black;
}

QPen InkPen(const QColor& ink, double width) {
  return {ink, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void DrawCheckBox(QPainter& painter, const QRect& column, const QColor& ink, const QColor& ground,
                  bool checked) {
  QRectF box(0, 0, kMarkSize, kMarkSize);
  box.moveCenter(QRectF(column).center());
  painter.setBrush(Qt::NoBrush);
  painter.setPen(InkPen(checked ? ink : Blend(ground, ink, kQuietInk), 1.0));
  painter.drawRoundedRect(box, kCorner, kCorner);
  if (!checked) return;
  painter.setPen(InkPen(ink, 2.0));
  const auto at = [&box](double x, double y) {
    return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
  };
  const QPointF tick[] = {at(0.24, 0.52), at(0.43, 0.72), at(0.78, 0.28)};
  painter.drawPolyline(tick, 3);
}

void DrawArrow(QPainter& painter, const QPointF& tip, const QPointF& along, const QColor& ink) {
  const QPointF across(-along.y(), along.x());
  const QPointF arrow[] = {tip - along + across, tip, tip - along - across};
  painter.setBrush(Qt::NoBrush);
  painter.setPen(InkPen(ink, 1.5));
  painter.drawPolyline(arrow, 3);
}

}  // namespace

SmartMenuStyle::SmartMenuStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {
  InstallMenuAccessibility();
  SetColors({Qt::white, Qt::black, Qt::gray, Qt::darkBlue, Qt::darkBlue, Qt::white, Qt::black});
}

void SmartMenuStyle::SetColors(const SmartMenuColors& colors) {
  colors_ = colors;
  colors_.text = ReadableOn(colors.background, colors.text);
  colors_.disabled_text = ReadableOn(colors.background, colors.disabled_text);
  colors_.highlight_text = ReadableOn(colors.highlight, colors.highlight_text);
  // What is chosen must show by its ground or its border.
  const double shown = std::max(ContrastRatio(colors.highlight, colors.background),
                                ContrastRatio(colors.highlight_border, colors.background));
  constexpr double kVisible = 1.1;
  if (shown < kVisible) colors_.highlight_border = colors_.text;
}

void SmartMenuStyle::drawControl(ControlElement element, const QStyleOption* option,
                                 QPainter* painter, const QWidget* widget) const {
  const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
  if (element == CE_MenuItem && item != nullptr) {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    DrawItem(*item, *painter);
    painter->restore();
  } else if (element == CE_MenuScroller && item != nullptr) {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    DrawScroller(*item, *painter);
    painter->restore();
  } else if (element == CE_MenuEmptyArea || element == CE_MenuHMargin ||
             element == CE_MenuVMargin) {
    painter->fillRect(option->rect, colors_.background);
  } else {
    QProxyStyle::drawControl(element, option, painter, widget);
  }
}

void SmartMenuStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                   QPainter* painter, const QWidget* widget) const {
  if (element == PE_PanelMenu || element == PE_FrameMenu) {
    painter->fillRect(option->rect, colors_.background);
  } else {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void SmartMenuStyle::DrawItem(const QStyleOptionMenuItem& item, QPainter& painter) const {
  painter.fillRect(item.rect, colors_.background);
  if (item.menuItemType == QStyleOptionMenuItem::Separator) {
    const QRect line(item.rect.left() + kSeparatorInset, item.rect.center().y(),
                     item.rect.width() - 2 * kSeparatorInset, 1);
    painter.fillRect(line, colors_.separator);
    return;
  }
  const bool enabled = item.state.testFlag(State_Enabled);
  const bool selected = item.state.testFlag(State_Selected);
  QColor ground = colors_.background;
  QColor ink = enabled ? colors_.text : Blend(colors_.disabled_text, ground, kDisabledFade);
  if (selected) {
    // A disabled entry can be reached by the keyboard and shows it by the border alone.
    if (enabled) {
      ground = colors_.highlight;
      ink = colors_.highlight_text;
    }
    painter.setPen(QPen(colors_.highlight_border, 1.0));
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(item.rect).adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
  }

  const auto place = [&item](const QRect& left_to_right) {
    return visualRect(item.direction, item.rect, left_to_right);
  };
  const QRect row = item.rect;
  const QRect column = place(QRect(row.left(), row.top(), kIconColumn, row.height()));
  if (item.checkType != QStyleOptionMenuItem::NotCheckable) {
    DrawCheckBox(painter, column, ink, ground, item.checked);
  } else if (!item.icon.isNull()) {
    QRect picture(0, 0, kIconSize, kIconSize);
    picture.moveCenter(column.center());
    const double scale = painter.deviceTransform().m11();
    painter.drawPixmap(picture, item.icon.pixmap(picture.size(), scale,
                                                 enabled ? QIcon::Normal : QIcon::Disabled));
  }

  const qsizetype tab = item.text.indexOf(QLatin1Char('\t'));
  const QString caption = item.text.left(tab);
  const QRect texts(row.left() + kIconColumn, row.top(), row.width() - kIconColumn - kArrowColumn,
                    row.height());
  painter.setFont(item.font);
  painter.setPen(ink);
  // The captions mask "&"; without the flag for mnemonics both would be drawn.
  painter.drawText(place(texts),
                   static_cast<int>(Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextHideMnemonic |
                                    visualAlignment(item.direction, Qt::AlignLeft)),
                   caption);
  if (tab >= 0) {
    painter.drawText(place(texts),
                     static_cast<int>(Qt::AlignVCenter | Qt::TextSingleLine |
                                      visualAlignment(item.direction, Qt::AlignRight)),
                     item.text.mid(tab + 1));
  }
  if (item.menuItemType == QStyleOptionMenuItem::SubMenu) {
    const bool mirrored = item.direction == Qt::RightToLeft;
    const QRectF end(
        place(QRect(row.right() + 1 - kArrowColumn, row.top(), kArrowColumn, row.height())));
    const double step = mirrored ? -3.5 : 3.5;
    DrawArrow(painter, end.center() + QPointF(step / 2.0, 0.0), QPointF(step, 0.0), ink);
  }
}

void SmartMenuStyle::DrawScroller(const QStyleOptionMenuItem& item, QPainter& painter) const {
  painter.fillRect(item.rect, colors_.background);
  const double step = item.state.testFlag(State_DownArrow) ? 3.5 : -3.5;
  const QColor ink = item.state.testFlag(State_Enabled)
                         ? colors_.text
                         : Blend(colors_.background, colors_.text, kQuietInk);
  DrawArrow(painter, QRectF(item.rect).center() + QPointF(0.0, step / 2.0), QPointF(0.0, step),
            ink);
}

QSize SmartMenuStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                       const QSize& size, const QWidget* widget) const {
  const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
  if (type != CT_MenuItem || item == nullptr) {
    return QProxyStyle::sizeFromContents(type, option, size, widget);
  }
  if (item->menuItemType == QStyleOptionMenuItem::Separator)
    return {size.width(), kSeparatorHeight};
  // The toolkit counts the accelerators as a column and adds its width itself.
  const QFontMetrics metrics(item->font);
  const QString caption = item->text.section(QLatin1Char('\t'), 0, 0);
  const int text = metrics.size(Qt::TextSingleLine | Qt::TextHideMnemonic, caption).width();
  const int height = std::max(metrics.height(), kIconSize) + 2 * kRowPadding;
  return {kIconColumn + text + kCaptionGap + kArrowColumn, height};
}

int SmartMenuStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                                const QWidget* widget) const {
  switch (metric) {
    case PM_SmallIconSize:
      return kIconSize;
    case PM_MenuPanelWidth:
      return kFrameWidth;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
      return 0;
    case PM_MenuScrollerHeight:
      return kScrollerHeight;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int SmartMenuStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                              QStyleHintReturn* result) const {
  switch (hint) {
    case SH_Menu_Scrollable:
    case SH_Menu_MouseTracking:
    case SH_Menu_AllowActiveAndDisabled:
    case SH_Menu_SpaceActivatesItem:
    case SH_Menu_KeyboardSearch:  // no caption has a mnemonic
      return 1;
    default:
      return QProxyStyle::styleHint(hint, option, widget, result);
  }
}

}  // namespace kv
