#include "playlist/row_delegate_qt.h"

#include "controls/svg_face_qt.h"
#include "playlist/list_rows.h"
#include "playlist/rows_model_qt.h"

#include <QFontMetrics>
#include <QHelpEvent>
#include <QPainter>
#include <QTextDocument>
#include <QToolTip>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace kv {
namespace {

constexpr int kIconSize = 16;
constexpr int kIconRoom = 22;
constexpr int kPadding = 7;  // left and right of a text
constexpr int kRowSpace = 6;

// By RowIcon, from 1.
constexpr std::array<const char*, 3> kIconDrawings = {"menu/recent_audio", "menu/recent_media",
                                                      "menu/recent_url"};

QFont FontOf(const QStyleOptionViewItem& option, const QModelIndex& index) {
  QFont font = option.font;
  if (index.data(RowsModel::kPlayingRole).toBool()) font.setBold(true);
  return font;
}

}  // namespace

RowDelegate::RowDelegate(ArtFile art, QAbstractItemView& view)
    : QStyledItemDelegate(&view), art_(std::move(art)), view_(view) {}

int RowDelegate::RowHeight() const {
  return std::max(view_.fontMetrics().height(), kIconSize) + kRowSpace;
}

int RowDelegate::WidthFor(const QString& text, int column) const {
  QFont font = view_.font();
  font.setBold(true);
  return QFontMetrics(font).horizontalAdvance(text) + 2 * kPadding + 2 +
         (column == 0 ? kIconRoom : 0);
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& /*option*/,
                            const QModelIndex& index) const {
  return {WidthFor(index.data(Qt::DisplayRole).toString(), index.column()), RowHeight()};
}

QRect RowDelegate::TextRect(const QRect& cell, int column) const {
  const int icon = column == 0 ? kIconRoom : 0;
  return cell.adjusted(kPadding + icon, 0, -kPadding, 0);
}

const QPixmap& RowDelegate::Icon(int icon) const {
  const double scale = view_.devicePixelRatioF();
  if (scale != icons_scale_) {
    icons_scale_ = scale;
    for (std::size_t i = 0; i < icons_.size(); ++i) {
      icons_[i] = RenderFace(art_(kIconDrawings[i]), {}, {kIconSize, kIconSize}, scale);
    }
  }
  const auto index = static_cast<std::size_t>(std::clamp(icon, 1, 3)) - 1;
  return icons_[index];
}

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
  const bool selected = (option.state & QStyle::State_Selected) != 0;
  const bool playing = index.data(RowsModel::kPlayingRole).toBool();
  const QRect cell = option.rect;
  if (selected) painter->fillRect(cell, look_.selected_back);
  if (view_.hasFocus() && index.row() == view_.currentIndex().row()) {
    painter->setPen(look_.focus);
    painter->drawLine(cell.topLeft(), cell.topRight());
    painter->drawLine(cell.bottomLeft(), cell.bottomRight());
  }
  if (index.column() == 0) {
    painter->save();
    painter->setClipRect(cell, Qt::IntersectClip);
    painter->drawPixmap(cell.left() + kPadding - 1, cell.top() + (cell.height() - kIconSize) / 2,
                        Icon(index.data(RowsModel::kIconRole).toInt()));
    painter->restore();
  }
  const QString text = index.data(Qt::DisplayRole).toString();
  if (text.isEmpty()) return;
  const QRect place = TextRect(cell, index.column());
  const QFont font = FontOf(option, index);
  const QFontMetrics metrics(font);
  painter->setFont(font);
  if (playing) {
    painter->setPen(selected ? look_.selected_playing : look_.playing);
  } else {
    painter->setPen(selected ? look_.selected_text : look_.text);
  }
  painter->drawText(place, index.data(Qt::TextAlignmentRole).toInt() | Qt::TextSingleLine,
                    metrics.elidedText(text, Qt::ElideRight, place.width()));
}

bool RowDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                            const QStyleOptionViewItem& option, const QModelIndex& index) {
  const QString text = index.data(Qt::DisplayRole).toString();
  const QFontMetrics metrics(FontOf(option, index));
  const bool cut = metrics.horizontalAdvance(text) > TextRect(option.rect, index.column()).width();
  if (event->type() != QEvent::ToolTip || !cut) {
    QToolTip::hideText();
    return false;
  }
  QToolTip::showText(event->globalPos(), Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal), view,
                     view->visualRect(index));
  return true;
}

}  // namespace kv
