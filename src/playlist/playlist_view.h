// `pList`: the rows on the screen, with their columns, and what the user does to them by hand.
//
// Its selection and that of the rows are one, whoever changes it. Keys that are commands are left
// to the form. Owned by `frmPlaylist`; interface thread only.
#pragma once

#include "playlist/columns_header.h"
#include "playlist/dropped_media.h"
#include "playlist/list_rows.h"
#include "playlist/playlist_look_qt.h"
#include "playlist/row_delegate_qt.h"
#include "playlist/rows_model_qt.h"
#include "state/settings.h"

#include <QTableView>

namespace kv {

class PlaylistView : public QTableView {
  Q_OBJECT

 public:
  // `rows` must outlive the view, `model` is set for good.
  PlaylistView(ListRows& rows, RowsModel& model, RowDelegate::ArtFile art, QWidget* parent);

  void SetLook(const PlaylistLook& look);

  // Order and widths of the columns. What is stored is taken when the first width is above 0, and
  // made sense of whatever it is.
  void LoadColumns(const Settings& settings);
  void StoreColumns(Settings& settings) const;

  // Counted: nothing is painted while locked.
  void LockRedraw(bool locked);

  // The selected row that commands for one row mean: the current one, else the first; 0 none.
  int SelectedRow() const;

  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  // Letters are commands here, not the beginning of a name.
  void keyboardSearch(const QString& /*search*/) override {}

 Q_SIGNALS:
  void RowDoubleClicked();
  void HeaderClicked(int index);     // of the column, from 1
  void MenuWanted(QPoint position);  // of the desktop
  void MediaDropped(const kv::DroppedMedia& media);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void changeEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

 protected Q_SLOTS:
  void dataChanged(const QModelIndex& first, const QModelIndex& last,
                   const QList<int>& roles) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

 private:
  void SetUpHeader();
  void ApplyRowHeight();
  void FollowRows(int first, int last);
  void FollowMove(int first, int last, int step);
  void ShowRow(int row);
  void ShowColumn(int column);
  void UpdateRows(int first, int last);

  ListRows& rows_;
  RowsModel& model_;
  RowDelegate* delegate_;
  ColumnsHeader* header_;
  int locks_ = 0;
  bool following_ = false;  // the rows' selection is being taken over
};

}  // namespace kv
