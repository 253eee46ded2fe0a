// How a row of the playlist is drawn: icon, number and texts on one line, the playing one bold in
// its colour. Does no more than that, so that a window full of cells is drawn in a few
// milliseconds. Owned by its view; interface thread only.
#pragma once

#include "playlist/playlist_look_qt.h"

#include <QAbstractItemView>
#include <QPixmap>
#include <QStyledItemDelegate>

#include <array>
#include <functional>

namespace kv {

class RowDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  // Answers the whole path of a drawing by its name.
  using ArtFile = std::function<QString(const char* name)>;

  RowDelegate(ArtFile art, QAbstractItemView& view);

  void SetLook(const PlaylistLook& look) { look_ = look; }

  // The height that all rows have, in the font of the view.
  int RowHeight() const;

  // The width of a cell that shows all of `text`, playing or not.
  int WidthFor(const QString& text, int column) const;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  // Tells a text that does not fit into its cell.
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;

 private:
  QRect TextRect(const QRect& cell, int column) const;
  const QPixmap& Icon(int icon) const;

  ArtFile art_;
  QAbstractItemView& view_;
  PlaylistLook look_;
  mutable std::array<QPixmap, 3> icons_;  // for the scale below
  mutable double icons_scale_ = 0.0;
};

}  // namespace kv
